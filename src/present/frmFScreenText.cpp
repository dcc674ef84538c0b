// What is typed, pasted, copied and taken back in the full-screen view, and how it comes to the
// document.
#include <exception>
#include <functional>
#include <utility>

#include "base/ProgramSettings.h"
#include "base/TabExpansion.h"
#include "platform/HeldKeys.h"
#include "present/frmFScreen.h"
#include "rtf/DarkEditor.h"
#include "rtf/EditCommands.h"
#include "widgets/FrmTxt.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kWriteTimer = 1;
// Writing a long song back takes a while: then it waits until the typing pauses.
constexpr std::int64_t kQuickMs = 60;
constexpr UINT kPauseMs = 400;

// Keys that change a text or could: all characters, and of the others those that delete, cut, paste
// or format.
bool edits(UINT message, WPARAM wParam) {
    if (message == WM_CHAR)
        return true;
    const bool isCommand = isHeld(VK_CONTROL) && !isHeld(VK_MENU) && wParam != 'C' &&
                           wParam != VK_INSERT && wParam >= '0' && wParam <= 'Z';
    return isCommand || pastes(strokeOf(wParam)) || wParam == VK_RETURN || wParam == VK_BACK ||
           wParam == VK_DELETE;
}

}  // namespace

// As in the editor: blanks instead of tabs, also in what is pasted.
bool frmFScreen::onTextInput(UINT message, WPARAM wParam) try {
    if (message == WM_DROPFILES)
        return true;
    if (message == WM_MOUSEWHEEL)
        return false;
    if (isDark_ && message == WM_KEYDOWN) {
        const KeyStroke stroke = strokeOf(wParam);
        const bool takesAway = cuts(stroke) && !isFixed();
        if (takesAway || copies(stroke)) {
            copyInOwnColours(takesAway);
            return true;
        }
    }
    const bool isPage =
        message == WM_KEYDOWN && !isHeld(VK_SHIFT) && (wParam == VK_PRIOR || wParam == VK_NEXT);
    if (isPage && panel_.run().isPaused() && panel_.turnsRun(wParam))
        return true;
    // A click into the text and a pedal that sends Enter must not write into the song.
    if (songLines_ > 0 && !panel_.run().isRunning())
        return edits(message, wParam) && !(message == WM_KEYDOWN && wParam == 'A');
    if (panel_.run().isRunning())
        return (message == WM_KEYDOWN && panel_.turnsRun(wParam)) || edits(message, wParam);
    if (message == WM_SYSKEYDOWN)
        return shownFollower().onKeyDown(strokeOf(wParam));
    if (message == WM_KEYDOWN)
        return onTextKey(wParam);
    if (shownFollower().onCharacter(static_cast<char16_t>(wParam)))
        return true;
    if (wParam != u'\t')
        return false;
    if (!isHeld(VK_SHIFT))
        shownText().type(expandTabs(u"\t", columnOfSelection(shownText())));
    return true;
} catch (const std::exception& error) {
    onException(error);
    return true;
}

bool frmFScreen::onTextKey(WPARAM key) {
    const KeyStroke stroke = strokeOf(key);
    if (!pastes(stroke))
        return shownFollower().onKeyDown(stroke);
    shownFollower().commandBegins();
    paste();
    return true;
}

RichEdit::TypingFormat frmFScreen::textFont() const {
    return {editorFontFace(services_), kEditorFontPoints};
}

void frmFScreen::follow(bool on) {
    follower_.setOn(on);
    follower2_.setOn(on);
}

void frmFScreen::finishEdits() {
    shownFollower().commandBegins();
    writeBack();
}

// Neither the run nor its buttons may move or close the text meanwhile.
void frmFScreen::waitFor(const std::function<void()>& action) {
    const HWND focus = ::GetFocus();
    waits_ = true;
    panel_.enableAll(false);
    const auto goOn = [&] {
        panel_.enableAll(true);
        waits_ = false;
        if (::IsWindow(focus))
            ::SetFocus(focus);
    };
    try {
        action();
    } catch (...) {
        goOn();
        throw;
    }
    goOn();
}

std::optional<Text> frmFScreen::expandPasted(Text text, std::size_t startColumn) {
    std::optional<Text> expanded;
    ask([&](HWND view) {
        expanded = FrmTxt(services_).convert(view, std::move(text), startColumn);
    });
    return expanded;
}

void frmFScreen::ask(const std::function<void(HWND view)>& question) {
    waitFor([&] { callbacks_.undisturbed([&] { question(handle()); }); });
}

// All of the song changes; who plays it looks at this page.
void frmFScreen::changeKey(int steps) {
    shownFollower().commandBegins();
    const auto step = [&] {
        bool changed = false;
        waitFor([&] { changed = callbacks_.changeKey(handle(), steps); });
        return changed;
    };
    restore(step, Shown::Page);
}

// The control would put the light colours there.
void frmFScreen::copyInOwnColours(bool cuts) {
    RichEdit& text = shownText();
    const Selection selection = text.selection();
    if (selection.begin == selection.end)
        return;
    const auto put = services_.clipboard.put(toCrLf(text.textBetween(selection)),
                                             dark_.restored(text.selectionRtf()));
    if (!put) {
        services_.messages.show(u"The text cannot be copied.\r\n\r\n" + put.cause, kMessageTitle,
                                MessageIcon::Information, MessageButtons::Ok);
        return;
    }
    if (cuts)
        text.change([&text] { text.clear(); });
}

void frmFScreen::paste() {
    const auto expand = [this](Text text, std::size_t startColumn) {
        return expandPasted(std::move(text), startColumn);
    };
    bool pasted = false;
    shownFollower().around([&] {
        DarkEditor dark(shownText(), dark_);
        Editor& editor = isDark_ ? static_cast<Editor&>(dark) : shownText();
        pasted = pasteClipboard(editor, services_.clipboard, services_.messages,
                                editorFontFace(services_), expand);
    });
    if (pasted) {
        shownText().scrollCaretIntoView();
        textChanged();
    }
}

void frmFScreen::textChanged() {
    if (songLines_ > 0)
        return;  // it is no song
    unwritten_ = true;
    reducedEdited_ = reduced_;
    if (writeMs_ <= kQuickMs)
        writeBack();
    else
        ::SetTimer(handle(), kWriteTimer, kPauseMs, nullptr);
}

// The document becomes what the view is, as one step of undo.
bool frmFScreen::writeBack() {
    ::KillTimer(handle(), kWriteTimer);
    if (!unwritten_)
        return true;
    const std::int64_t start = services_.clock.nowMs();
    const HWND focus = ::GetFocus();
    bool written = false;
    {
        const EditorWork work(rtftext_);
        written = rtftext_.loadRtf(songOf(shownText()));
        if (written)
            rtftext_.select(shownText().selection());
    }
    if (!written) {
        // Once is enough: the next key would bring the same message.
        if (!std::exchange(writeFailed_, true))
            reportFailure(services_.messages,
                          u"What was typed here cannot be put into the song. It is still in this "
                          u"view; please copy it.");
        return false;
    }
    unwritten_ = writeFailed_ = false;
    callbacks_.changed();
    if (::IsWindow(focus))
        ::SetFocus(focus);
    writeMs_ = services_.clock.nowMs() - start;
    panel_.songChanged();
    return true;
}

// A step that the document makes by itself, shown here.
void frmFScreen::restore(const std::function<bool()>& step, Shown shown) {
    if (!writeBack() || !step())
        return;
    takeBackground();
    RichEdit& text = shownText();
    const EditorWork work(text);
    const ScrollPosition page = text.scrollPosition();
    const Text before = text.text().chars;
    if (!reload(text)) {
        // What it shows is no longer the song.
        reportFailure(services_.messages, u"This step cannot be shown here.");
        close();
        return;
    }
    text.select(rtftext_.selection());
    if (shown == Shown::Page)
        text.scrollTo(page);
    else
        showDifference(text, page, before, rtftext_.selection().begin);
    reducedEdited_ = reduced_;
    panel_.songChanged();
}

}  // namespace melvorin
