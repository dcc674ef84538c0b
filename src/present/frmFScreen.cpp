#include "present/frmFScreen.h"

#include <windowsx.h>

#include <algorithm>
#include <exception>
#include <functional>

#include "base/DiagramFont.h"
#include "base/ProgramSettings.h"
#include "dictionary/RichEditDiagrams.h"
#include "platform/HeldKeys.h"

namespace melvorin {
namespace {

constexpr int kFSRTB = 101;
constexpr int kFSRTB2 = 102;

}  // namespace

frmFScreen::frmFScreen(const Services& services, RichEdit& rtftext, Callbacks callbacks)
    : services_(services),
      rtftext_(rtftext),
      callbacks_(std::move(callbacks)),
      follower_(FSRTB_, [this] { return textFont(); }),
      follower2_(FSRTB2_, [this] { return textFont(); }),
      panel_(services_, *this) {
    FSRTB_.setFrameless();
    FSRTB2_.setFrameless();
}

// ---- The window -------------------------------------------------------------------------------

bool frmFScreen::open(HWND owner) {
    if (isOpen()) {
        panel_.showPanel();
        return true;
    }
    owner_ = owner;
    ::ShowOwnedPopups(owner, FALSE);
    bool opened = false;
    try {
        opened = createWindow(owner) && panel_.open();
    } catch (...) {
        giveUp();
        throw;
    }
    if (!opened) {
        giveUp();
        return false;
    }
    ::EnableWindow(owner, FALSE);
    return true;
}

// A view that could not be opened leaves the program as it was.
void frmFScreen::giveUp() {
    panel_.rest(owner_);
    destroy();
    ::ShowOwnedPopups(owner_, TRUE);
}

bool frmFScreen::createWindow(HWND owner) {
    RECT over{};
    ::GetWindowRect(owner, &over);
    const Area screen = services_.screen.monitorOf(areaOf(over)).whole;
    covered_ = screen;
    WindowSpec spec;
    spec.className = L"MelvorinfrmFScreen";
    spec.caption = L"Melvorin";
    spec.style = WS_POPUP | WS_CLIPCHILDREN;
    spec.x = screen.left;
    spec.y = screen.top;
    spec.width = screen.width;
    spec.height = screen.height;
    spec.parent = owner;
    if (!create(spec))
        return false;
    const Text face = editorFontFace(services_);
    FSRTB_.createOnLoad(handle(), kFSRTB, face, kEditorFontPoints);
    FSRTB2_.createOnLoad(handle(), kFSRTB2, face, kEditorFontPoints);
    for (RichEdit* const text : {&FSRTB_, &FSRTB2_}) {
        text->setTypingRule([this](TextView former) -> std::optional<RichEdit::TypingFormat> {
            if (!isDiagramFace(former))
                return std::nullopt;
            RichEdit::TypingFormat format = textFont();
            if (isDark_)
                format.colour = dark_.lightOf(format.colour);
            return format;
        });
        text->setInputFilter([this](UINT message, WPARAM wParam, LPARAM lParam) {
            if (message == WM_DROPFILES)
                ::DragFinish(reinterpret_cast<HDROP>(wParam));
            const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            if (message == WM_LBUTTONDBLCLK)
                return RichEditDiagrams(shownText()).selectAt(point) ||
                       shownFollower().selectChordAt(point);
            return onTextInput(message, wParam);
        });
    }
    reduced_ = reducedEdited_ = unwritten_ = waits_ = writeFailed_ = false;
    songLines_ = 0;
    writeMs_ = 0;
    if (!load()) {
        reportFailure(services_.messages,
                      u"The song cannot be shown on the full screen. It is as it was in the "
                      u"editor.");
        return false;
    }
    // The panel is the one to be active.
    ::ShowWindow(handle(), SW_SHOWNA);
    ::RedrawWindow(handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return true;
}

// The second text is none until it is wanted: filled behind the first one it would be seen by
// nobody, and opening would take twice as long. The caret goes to its place before anything is
// drawn.
bool frmFScreen::load() {
    FSRTB_.show(true);
    FSRTB2_.show(false);
    takeBackground();
    placeTexts();
    const EditorWork work(FSRTB_);
    if (!show(FSRTB_, rtftext_.rtf()))
        return false;
    caretToEnd();
    if (fitsWidth_)
        fitWidth();
    return true;
}

// The song in the colours of the view.
bool frmFScreen::show(RichEdit& text, std::string_view rtf) {
    return text.loadRtf(isDark_ ? dark_.darkened(rtf) : std::string(rtf));
}

// What a text of the view has, in the song's own colours.
std::string frmFScreen::songOf(const RichEdit& text) const {
    return isDark_ ? dark_.restored(text.rtf()) : text.rtf();
}

void frmFScreen::takeBackground() {
    const auto colour = isDark_ ? std::optional(DarkColours::kBackground) : rtftext_.background();
    FSRTB_.setBackground(colour);
    FSRTB2_.setBackground(colour);
    const Rgb paper = FSRTB_.paper();
    background_.reset(::CreateSolidBrush(RGB(paper.red, paper.green, paper.blue)));
    ::InvalidateRect(handle(), nullptr, TRUE);
}

bool frmFScreen::close() {
    if (!isOpen())
        return true;
    if (waits_)
        return false;
    shownFollower().commandBegins();
    if (!writeBack() &&
        services_.messages.show(u"What was typed here is not in the song and would be lost.\r\n\r\n"
                                u"Leave it all the same?",
                                kMessageTitle, MessageIcon::Question,
                                MessageButtons::YesNo) != Answer::Yes)
        return false;
    unwritten_ = false;
    // First, else another program's window would come up.
    ::EnableWindow(owner_, TRUE);
    panel_.rest(owner_);
    destroy();
    ::SetActiveWindow(owner_);
    ::SetFocus(rtftext_.handle());
    rtftext_.scrollCaretIntoView();
    return true;
}

// Also where the owner goes and takes the view along.
void frmFScreen::onDestroy() {
    FSRTB_.destroy();
    FSRTB2_.destroy();
    ::EnableWindow(owner_, TRUE);
    ::ShowOwnedPopups(owner_, TRUE);
}

void frmFScreen::cover(const Area& screen) {
    covered_ = screen;
    ::SetWindowPos(handle(), nullptr, screen.left, screen.top, screen.width, screen.height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    panel_.arrange();
}

// A monitor that was pulled out, or one that has turned: the song is on the nearest one, and who
// plays it has something else to do.
void frmFScreen::onDisplayChange() {
    RECT own{};
    ::GetWindowRect(handle(), &own);
    const Area screen = services_.screen.monitorOf(areaOf(own)).whole;
    // The system may have moved the window already.
    if (screen != covered_)
        panel_.pause();
    cover(screen);
    if (fitsWidth_)
        fitWidth();
}

void frmFScreen::placeTexts() {
    RECT client{};
    ::GetClientRect(handle(), &client);
    const RECT place = rectOf(
        placeText(static_cast<int>(client.right), static_cast<int>(client.bottom), systemDpi()));
    for (RichEdit* const text : {&FSRTB_, &FSRTB2_})
        text->place(place);
}

// ---- Messages ---------------------------------------------------------------------------------

void frmFScreen::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

LRESULT frmFScreen::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            placeTexts();
            return 0;
        case WM_SETFOCUS:
            ::SetFocus(shownText().handle());
            return 0;
        case WM_ERASEBKGND:
            return onErase(reinterpret_cast<HDC>(wParam));
        case WM_COMMAND:
            onCommand(wParam, lParam);
            return 0;
        case WM_NOTIFY:
            if (reinterpret_cast<const NMHDR*>(lParam)->code == EN_SELCHANGE) {
                if (!panel_.run().isRunning())
                    shownFollower().caretMoved();
                panel_.showCursorLine(
                    static_cast<int>(shownText().lineOf(shownText().selection().begin)) + 1);
            }
            return 0;
        case WM_TIMER:
            writeBack();
            return 0;
        case WM_DISPLAYCHANGE:
            onDisplayChange();
            return 0;
        case WM_POWERBROADCAST:
            // Asleep nobody plays.
            if (wParam == PBT_APMSUSPEND || wParam == PBT_APMRESUMEAUTOMATIC)
                panel_.pause();
            return TRUE;
        case WM_SYSCOMMAND:
            return panel_.refuses(wParam) ? 0 : passOn(message, wParam, lParam);
        case WM_CLOSE:
            close();
            return 0;
        case WM_DESTROY:
            onDestroy();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

// Around the text it looks as behind it.
LRESULT frmFScreen::onErase(HDC dc) const {
    RECT client{};
    ::GetClientRect(handle(), &client);
    ::FillRect(dc, &client, background_.get());
    return 1;
}

void frmFScreen::onCommand(WPARAM wParam, LPARAM lParam) {
    const bool isShown = reinterpret_cast<HWND>(lParam) == shownText().handle();
    if (HIWORD(wParam) == EN_CHANGE && isShown && !shownText().atWork())
        textChanged();
}

bool frmFScreen::isOurs(HWND window) const {
    const HWND root = ::GetAncestor(window, GA_ROOT);
    for (HWND owner = root; owner != nullptr; owner = ::GetWindow(owner, GW_OWNER)) {
        if (owner == handle())
            return true;
    }
    return false;
}

bool frmFScreen::translate(MSG& message) try {
    // A window that asks something has its keys to itself.
    if (!isOpen() || waits_ || !isOurs(message.hwnd))
        return false;
    return onViewKey(message) || panel_.translate(message);
} catch (const std::exception& error) {
    onException(error);
    return true;
}

// What acts the same in the view, on its panel and on its bars; and the view's own keys.
bool frmFScreen::onViewKey(const MSG& message) {
    const bool inView = ::GetAncestor(message.hwnd, GA_ROOT) == handle();
    if (message.message == WM_MOUSEWHEEL) {
        const bool zooms = (GET_KEYSTATE_WPARAM(message.wParam) & MK_CONTROL) != 0;
        if (zooms)
            run(GET_WHEEL_DELTA_WPARAM(message.wParam) > 0 ? ViewKey::Larger : ViewKey::Smaller);
        else if (!inView && !panel_.isShown())
            ::SendMessageW(shownText().handle(), message.message, message.wParam, message.lParam);
        else
            return false;
        return true;
    }
    if (panel_.takesPedal(message))
        return true;
    if (!isKeyDown(message))
        return false;
    const KeyStroke stroke = strokeOf(message.wParam);
    auto command = runBy(kShiftedViewKeys, stroke);
    if (!command)
        command = runWithoutShift(kViewKeys, stroke);
    if (command) {
        const std::int64_t start = services_.clock.nowMs();
        run(*command);
        // Of what takes so long the clock of a run would not see the second in which a line is due.
        constexpr std::int64_t longMs = 500;
        if (services_.clock.nowMs() - start >= longMs)
            panel_.heldUp();
        return true;
    }
    if (!inView || message.wParam != VK_ESCAPE)
        return false;
    panel_.showPanel();
    return true;
}

void frmFScreen::run(ViewKey command) {
    switch (command) {
        case ViewKey::Larger:
        case ViewKey::Smaller:
            fitsWidth_ = false;
            return setZoom(zoomed(FSRTB_.zoom(), command == ViewKey::Larger));
        case ViewKey::AsItWas:
            fitsWidth_ = false;
            return setZoom(100);
        case ViewKey::FitWidth:
            fitsWidth_ = true;
            return fitWidth();
        case ViewKey::Dark:
            return switchDark();
        case ViewKey::NextMonitor:
            return toNextMonitor();
        case ViewKey::Undo:
        case ViewKey::Redo:
            // A running song is not changed.
            if (!panel_.run().isRunning())
                restore(command == ViewKey::Undo ? callbacks_.undo : callbacks_.redo);
            return;
        case ViewKey::HalfStepDown:
        case ViewKey::HalfStepUp:
            if (!panel_.run().isRunning())
                changeKey(command == ViewKey::HalfStepUp ? 1 : -1);
            return;
    }
}

bool frmFScreen::takesKey(WPARAM key) {
    const auto command = runWithoutShift(kPedalKeys, strokeOf(key));
    if (!command)
        return false;
    const bool isPage = *command == PedalKey::PageForward || *command == PedalKey::PageBack;
    const bool isForward = *command == PedalKey::PageForward || *command == PedalKey::LineForward;
    if (isPage)
        turnPage(isForward);
    else
        turnBy(isForward ? 1 : -1);
    return true;
}

}  // namespace melvorin
