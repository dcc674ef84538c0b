#include "widgets/frmFont.h"

#include <algorithm>
#include <array>

#include "base/ProgramSettings.h"
#include "rtf/EditCommands.h"
#include "widgets/frmFontParts.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kTm1 = 1;
// Often enough to follow the hand; in a selection of 5,000 lines each look takes about 12 ms.
constexpr UINT kTm1Ms = 200;
constexpr UINT_PTR kTypingTimer = 2;
// What is typed is taken when the typing pauses for so long: half a size is no size.
constexpr UINT kTypingMs = 400;

// Posted: a box must not come up while the focus moves.
constexpr UINT kBadSize = WM_APP + 1;

// kept: settings-blanks
constexpr TextView kSettingsTitle = u" Melvorin     ";
constexpr TextView kSettingsText = u"Your New Chord Notations will be created with the Font: ";

void setText(HWND window, TextView text) {
    ::SetWindowTextW(window, wide(Text(text)));
}

bool isChecked(HWND control) {
    return ::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

}  // namespace

frmFont::frmFont(const Services& services, RichEdit& rtftext, Callbacks callbacks)
    : Form(services),
      rtftext_(rtftext),
      callbacks_(std::move(callbacks)),
      sounds_(services_),
      Command1_(sounds_),
      Command2_(sounds_),
      Command3_(sounds_) {
    for (std::size_t i = 0; i < kSwatchCount; ++i)
        G1_.emplace_back(sounds_);
}

// ---- The window -------------------------------------------------------------------------------

bool frmFont::open(HWND owner) {
    if (!isOpen()) {
        // What the former window showed is gone with it.
        exampleFont_.reset();
        if (!createWindow(owner))
            return false;
        fillLists();
        stop_ = 0;
        typedIn_ = 0;
        typedSize_ = false;
        followSelection();
        ::SetTimer(handle(), kTm1, kTm1Ms, nullptr);
        ::SetFocus(item(kText2));
    }
    bringForward();
    return true;
}

LRESULT frmFont::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_TIMER:
            onTimer(wParam);
            return 0;
        case WM_MEASUREITEM:
            onMeasureItem(lParam);
            return TRUE;
        case WM_DRAWITEM:
            onDrawItem(lParam);
            return TRUE;
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(lParam) == item(kLabel4))
                return onLabelColour(reinterpret_cast<HDC>(wParam));
            return passOn(message, wParam, lParam);
        case WM_SYSCOLORCHANGE:
            showExample();
            return passOn(message, wParam, lParam);
        case kBadSize:
            tellBadSize();
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void frmFont::onClose() {
    if (!tellBadSize())
        takeTyped();
    Form::onClose();
}

// A letter of the example is as large as its place allows.
void frmFont::onPlaced() {
    if (exampleFont_)
        showExample();
}

void frmFont::onCommand(int id, int code) {
    if (filling_)
        return;
    switch (id) {
        case IDOK:
            if (!tellBadSize())
                takeTyped();
            return;
        case kText2:
        case kT1:
            if (code == EN_CHANGE)
                onTyped(id);
            else if (code == EN_KILLFOCUS)
                onBoxLeft(id);
            return;
        case kList1:
            if (code == LBN_SELCHANGE)
                onFaceChosen();
            return;
        case kList2:
            if (code == LBN_SELCHANGE)
                onSizeChosen();
            return;
        default:
            break;
    }
    if (code == BN_CLICKED)
        onClicked(id);
}

void frmFont::onClicked(int id) {
    if (id >= kCheck1 && id <= kCheck3)
        onStyleClicked(id);
    else if (id == kCommand3)
        onMoreColours();
    else if (id == kCommand1)
        onSave();
    else if (id >= kG1 && id < kG1 + static_cast<int>(kSwatchCount))
        applyColour(swatches()[static_cast<std::size_t>(id - kG1)].colour);
    else
        Form::onCommand(id, BN_CLICKED);
}

void frmFont::onTimer(UINT_PTR timer) {
    if (timer == kTypingTimer)
        takeTyped();
    else if (timer == kTm1 && typedIn_ == 0)
        followSelection();
}

// ---- Changes ----------------------------------------------------------------------------------

bool frmFont::mayChange() {
    return isOpen() && !callbacks_.isBusy();
}

// One visible step and one step of undo.
template <class Change>
void frmFont::apply(Change change) {
    if (!mayChange()) {
        showStyle();
        return;
    }
    {
        const EditorWork work(rtftext_);
        change();
    }
    callbacks_.changed();
    if (isOpen())
        followSelection();
}

void frmFont::applyFace(TextView face) {
    const Text chosen(face);
    apply([&] { setFace(rtftext_, chosen); });
}

void frmFont::applySize(int halfPoints) {
    apply([&] { rtftext_.setSelectionSize(halfPoints); });
}

void frmFont::onFaceChosen() {
    typedIn_ = 0;
    const LRESULT row = ::SendMessageW(item(kList1), LB_GETCURSEL, 0, 0);
    if (row >= 0 && ::IsWindowVisible(handle()))
        applyFace(faces_[static_cast<std::size_t>(row)]);
}

void frmFont::onSizeChosen() {
    typedIn_ = 0;
    const LRESULT row = ::SendMessageW(item(kList2), LB_GETCURSEL, 0, 0);
    if (row >= 0)
        applySize(2 * fontSizes()[static_cast<std::size_t>(row)]);
}

// The example shows at once what is typed; the editor gets it when the typing pauses.
void frmFont::onTyped(int id) {
    typedIn_ = id;
    typedSize_ = typedSize_ || id == kT1;
    ::SetTimer(handle(), kTypingTimer, kTypingMs, nullptr);
    const Text typed = windowText(item(id));
    if (id == kText2) {
        const auto found = findFace(faces_, typed);
        ::SendMessageW(item(kList1), LB_SETCURSEL, found ? *found : static_cast<WPARAM>(-1), 0);
        if (found)
            style_.face = faces_[*found];
    } else if (const auto size = parseFontSize(typed)) {
        style_.halfPoints = size;
    }
    showExample();
}

void frmFont::takeTyped() {
    // While another command is under way it waits; the timer goes on.
    if (!isOpen() || callbacks_.isBusy())
        return;
    ::KillTimer(handle(), kTypingTimer);
    const int box = std::exchange(typedIn_, 0);
    style_ = rtftext_.selectionStyle();
    if (box == kText2)
        takeTypedFace();
    else if (box == kT1)
        takeTypedSize();
}

// A size that is none is told when the user has done with the box, not while it is typed.
void frmFont::onBoxLeft(int id) {
    if (id == kT1 && isBadSize())
        ::PostMessageW(handle(), kBadSize, 0, 0);
    else
        takeTyped();
}

bool frmFont::isBadSize() const {
    const Text typed = windowText(item(kT1));
    return typedSize_ && typed.find_first_not_of(u' ') != Text::npos && !parseFontSize(typed);
}

bool frmFont::tellBadSize() {
    if (!isBadSize() || callbacks_.isBusy())
        return false;
    const Text typed = windowText(item(kT1));
    typedSize_ = false;
    typedIn_ = 0;
    ::KillTimer(handle(), kTypingTimer);
    services_.messages.show(u"\"" + typed +
                                u"\" is no size of letters. Sizes go from 4 to 400 "
                                u"points, in halves: 10 or 10.5.",
                            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
    style_ = rtftext_.selectionStyle();
    setText(item(kT1), {});
    showStyle();
    return true;
}

void frmFont::takeTypedFace() {
    const auto found = findFace(faces_, windowText(item(kText2)));
    if (found && faces_[*found] != style_.face)
        applyFace(faces_[*found]);
    else
        showExample();
    // The box keeps what is typed while more may follow.
    if (::GetFocus() != item(kText2))
        showStyle();
}

void frmFont::takeTypedSize() {
    const auto size = parseFontSize(windowText(item(kT1)));
    typedSize_ = typedSize_ && !size;
    if (size && size != style_.halfPoints)
        applySize(*size);
    else
        showExample();
    if (::GetFocus() != item(kT1))
        showStyle();
}

// A style that is mixed in the selection becomes the style of all of it.
void frmFont::onStyleClicked(int id) {
    const TextEffect effect = id == kCheck1 ? kBold : id == kCheck2 ? kItalic : kUnderline;
    apply([&] { toggle(rtftext_, effect); });
}

void frmFont::applyColour(Rgb colour) {
    const bool isText = isChecked(item(kOp1Text));
    apply([&] {
        if (isText)
            rtftext_.setSelectionColour(colour);
        else
            rtftext_.setBackground(colour);
    });
    if (rtftext_.isEmpty())
        ::SetFocus(rtftext_.handle());
}

void frmFont::onMoreColours() {
    if (!mayChange())
        return;
    const Rgb shown = isChecked(item(kOp1Text)) ? style_.colour.value_or(Rgb{}) : rtftext_.paper();
    if (const auto colour = services_.colors.choose(shown))
        applyColour(*colour);
}

void frmFont::onSwatchKey(int keyCode) {
    if (keyCode < VK_LEFT || keyCode > VK_DOWN)
        return;
    const Arrow arrow = keyCode == VK_LEFT    ? Arrow::Left
                        : keyCode == VK_RIGHT ? Arrow::Right
                        : keyCode == VK_UP    ? Arrow::Up
                                              : Arrow::Down;
    std::array<Area, kSwatchCount> areas;
    for (std::size_t i = 0; i < kSwatchCount; ++i) {
        RECT place{};
        ::GetWindowRect(G1_[i].handle(), &place);
        areas[i] = areaOf(place);
    }
    moveStop(neighbour(areas, stop_, arrow));
    ::SetFocus(G1_[stop_].handle());
}

// Tab finds the swatches where the user left them.
void frmFont::moveStop(std::size_t index) {
    const auto setStop = [&](bool on) {
        const HWND window = G1_[stop_].handle();
        const LONG_PTR style = ::GetWindowLongPtrW(window, GWL_STYLE);
        ::SetWindowLongPtrW(window, GWL_STYLE,
                            on ? style | WS_TABSTOP : style & ~LONG_PTR{WS_TABSTOP});
    };
    setStop(false);
    stop_ = index;
    setStop(true);
}

void frmFont::onSave() {
    const TextView face = isChecked(item(kOption1)) ? kCourierNew : kLucidaConsole;
    if (storeEditorFont(services_, face))
        // kept: settings-blanks
        services_.messages.show(Text(kSettingsText) + Text(face) + u"      ", kSettingsTitle,
                                MessageIcon::Information, MessageButtons::Ok);
    else
        reportFailure(services_.messages, u"Melvorin cannot write its settings file \"" +
                                              programIniPath(services_.program) +
                                              u"\". The default font is as it was.");
}

// ---- What the controls show -------------------------------------------------------------------

void frmFont::followSelection() {
    const SelectionStyle style = rtftext_.selectionStyle();
    const Selection selection = rtftext_.selection();
    const bool isSame = style == style_ && rtftext_.background() == background_ &&
                        selection == selection_ && exampleFont_;
    if (isSame)
        return;
    style_ = style;
    firstColour_ = style.colour ? *style.colour : colourOfFirst(selection);
    selection_ = selection;
    background_ = rtftext_.background();
    showStyle();
}

// Where a selection has several colours the example has that of its first character.
Rgb frmFont::colourOfFirst(Selection selection) {
    const EditorWork work(rtftext_);
    const ScrollPosition page = rtftext_.scrollPosition();
    rtftext_.select({selection.begin, selection.begin + 1});
    const Rgb colour = rtftext_.selectionStyle().colour.value_or(Rgb{});
    rtftext_.select(selection);
    rtftext_.scrollTo(page);
    return colour;
}

void frmFont::showStyle() {
    filling_ = true;
    setChecked(item(kCheck1), style_.bold);
    setChecked(item(kCheck2), style_.italic);
    setChecked(item(kCheck3), style_.underline);
    markFace(style_.face.value_or(Text()));
    markSize(style_.halfPoints);
    filling_ = false;
    showExample();
}

void frmFont::markFace(TextView face) {
    const auto row = std::find(faces_.begin(), faces_.end(), face);
    ::SendMessageW(
        item(kList1), LB_SETCURSEL,
        row == faces_.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(row - faces_.begin()),
        0);
    // The text under the user's hands stays as typed, unless it means another font.
    const auto typed = findFace(faces_, windowText(item(kText2)));
    const bool isTyping = ::GetFocus() == item(kText2) && typed && faces_[*typed] == face;
    if (!isTyping)
        setText(item(kText2), face);
}

void frmFont::markSize(std::optional<int> halfPoints) {
    const std::span<const int> sizes = fontSizes();
    const auto row = std::find_if(sizes.begin(), sizes.end(),
                                  [&](int points) { return 2 * points == halfPoints; });
    ::SendMessageW(
        item(kList2), LB_SETCURSEL,
        row == sizes.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(row - sizes.begin()), 0);
    if (parseFontSize(windowText(item(kT1))) != halfPoints || !halfPoints)
        setText(item(kT1), halfPoints ? fontSizeText(*halfPoints) : Text());
}

void frmFont::showExample() {
    const HWND label = item(kLabel4);
    RECT client{};
    ::GetClientRect(label, &client);
    const int wanted =
        ::MulDiv(style_.halfPoints.value_or(2 * kEditorFontPoints), systemDpi(), 144);
    // A letter stays whole: larger sizes are shown as large as the label allows.
    const int height = std::min(wanted, static_cast<int>(client.bottom) * 2 / 3);
    const Text face = style_.face.value_or(Text());
    UniqueFont font = makeFont(face, height, style_);
    ::SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    exampleFont_ = std::move(font);
    exampleBrush_.reset(::CreateSolidBrush(colourRef(rtftext_.paper())));
    ::InvalidateRect(label, nullptr, TRUE);
    const Text size =
        style_.halfPoints ? fontSizeText(*style_.halfPoints) + u" pt" : Text(u"several sizes");
    setText(item(kLabel3), (face.empty() ? Text(u"Several fonts") : face) + u", " + size);
}

LRESULT frmFont::onLabelColour(HDC dc) const {
    ::SetTextColor(dc, colourRef(style_.colour.value_or(firstColour_)));
    ::SetBkColor(dc, colourRef(rtftext_.paper()));
    return reinterpret_cast<LRESULT>(exampleBrush_.get());
}

}  // namespace melvorin
