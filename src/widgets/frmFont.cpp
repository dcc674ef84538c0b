#include "widgets/frmFont.h"

#include <algorithm>
#include <exception>

#include "app/ProgramSettings.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kTm1 = 1;
// Often enough to follow the hand; in a selection of 5,000 lines each look takes about 12 ms.
constexpr UINT kTm1Ms = 200;
constexpr UINT_PTR kTypingTimer = 2;
// What is typed is taken when the typing pauses for so long: half a size is no size.
constexpr UINT kTypingMs = 400;

constexpr TextView kSettingsTitle = u" Melvorin     ";
constexpr TextView kSettingsText = u"Your New Chord Notations will be created with the Font: ";

// ---- Layout, in pixels at 96 dpi: one margin, one gap, one height for what stands in a row ----

constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kBox = 22;
constexpr int kCheck = 22;
constexpr int kButton = 26;
constexpr int kButtonWidth = 96;
constexpr int kCaption = 20;  // from a frame's top to its first control

constexpr int kFontWidth = 220;
constexpr int kSizeWidth = 88;
constexpr int kStyleWidth = 132;
constexpr int kRightWidth = 288;
constexpr int kLeftWidth = kFontWidth + kGap + kSizeWidth + kGap + kStyleWidth;
constexpr int kClientWidth = kMargin + kLeftWidth + kGap + kRightWidth + kMargin;

constexpr int kAppearanceHeight = kCaption + 3 * kCheck + kMargin;
constexpr int kApplyHeight = kCaption + 2 * kCheck + kMargin;
constexpr int kTopHeight = kAppearanceHeight + kGap + kApplyHeight;
constexpr int kColoursHeight = kCaption + 5 * kButton + 4 * kGap + kMargin;
constexpr int kSettingsHeight = kColoursHeight - kGap - kButton;
constexpr int kSecondTop = kMargin + kTopHeight + kGap;
constexpr int kClientHeight = kSecondTop + kColoursHeight + kMargin;

constexpr int kNamedColumns = 4;
constexpr int kOtherColumns = 14;
constexpr int kListRow = 20;
constexpr int kTextIndent = 4;  // in boxes and lists

RECT box(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
}

Text windowText(HWND window) {
    Text text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(static_cast<std::size_t>(
        ::GetWindowTextW(window, wideBuffer(text), static_cast<int>(text.size()))));
    return text;
}

void setText(HWND window, TextView text) {
    ::SetWindowTextW(window, wide(Text(text)));
}

int CALLBACK collectFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM faces) {
    reinterpret_cast<std::vector<Text>*>(faces)->emplace_back(textOf(font->lfFaceName));
    return 1;
}

std::vector<Text> installedFaces() {
    std::vector<Text> faces;
    LOGFONTW any{};
    any.lfCharSet = DEFAULT_CHARSET;
    const WindowDc screen(nullptr);
    ::EnumFontFamiliesExW(screen.get(), &any, collectFace, lparamOf(&faces), 0);
    return faces;
}

// Letters of a symbol font are no letters: its name would not be readable in its own shape.
bool isSymbolFont(HDC dc) {
    TEXTMETRICW metrics{};
    return ::GetTextMetricsW(dc, &metrics) && metrics.tmCharSet == SYMBOL_CHARSET;
}

UniqueFont makeFont(TextView face, int height, const SelectionStyle& style) {
    return UniqueFont(::CreateFontW(
        -height, 0, 0, 0, style.bold.value_or(false) ? FW_BOLD : FW_NORMAL,
        style.italic.value_or(false), style.underline.value_or(false), FALSE, DEFAULT_CHARSET,
        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, wide(Text(face))));
}

COLORREF colourRef(Rgb colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

Rgb systemColour(int index) {
    const COLORREF colour = ::GetSysColor(index);
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

void check(HWND control, std::optional<bool> state) {
    const WPARAM shown = !state ? BST_INDETERMINATE : *state ? BST_CHECKED : BST_UNCHECKED;
    ::SendMessageW(control, BM_SETCHECK, shown, 0);
}

bool isChecked(HWND control) {
    return ::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool sameStyle(const SelectionStyle& a, const SelectionStyle& b) {
    return a.face == b.face && a.halfPoints == b.halfPoints && a.bold == b.bold &&
           a.italic == b.italic && a.underline == b.underline && a.colour == b.colour;
}

}  // namespace

frmFont::frmFont(const Services& services, RichEdit& rtftext, Callbacks callbacks)
    : services_(services),
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
        RECT frame{0, 0, scaled(kClientWidth), scaled(kClientHeight)};
        // Children are not clipped: the frames leave their inside to the window.
        constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
        ::AdjustWindowRectEx(&frame, style, FALSE, WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT);
        WindowSpec spec;
        spec.className = L"MelvorinfrmFont";
        spec.caption = L"Fonte";
        spec.style = style;
        spec.extendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
        spec.width = static_cast<int>(frame.right - frame.left);
        spec.height = static_cast<int>(frame.bottom - frame.top);
        spec.parent = owner;
        if (!create(spec))
            return false;
        createControls();
        fillLists();
        followSelection();
        ::SetTimer(handle(), kTm1, kTm1Ms, nullptr);
        lastFocus_ = control(kText2);
        centreOver(handle(), owner);
        ::ShowWindow(handle(), SW_SHOW);
    }
    ::SetActiveWindow(handle());
    ::SetFocus(lastFocus_);
    return true;
}

bool frmFont::translate(MSG& message) {
    const bool isMine = isOpen() && (message.hwnd == handle() || ::IsChild(handle(), message.hwnd));
    return isMine && ::IsDialogMessageW(handle(), &message);
}

void frmFont::onException(const std::exception& error) {
    reportFailure(services_.messages, u"An internal error: " + fromUtf8(error.what()));
}

LRESULT frmFont::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_TIMER:
            onTimer(wParam);
            return 0;
        case WM_ACTIVATE:
            onActivate(wParam);
            return 0;
        case WM_SETFOCUS:
            ::SetFocus(lastFocus_);
            return 0;
        case WM_MEASUREITEM:
            onMeasureItem(lParam);
            return TRUE;
        case WM_DRAWITEM:
            onDrawItem(lParam);
            return TRUE;
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(lParam) == control(kLabel4))
                return onLabelColour(reinterpret_cast<HDC>(wParam));
            return passOn(message, wParam, lParam);
        case WM_SYSCOLORCHANGE:
            showExample();
            return passOn(message, wParam, lParam);
        case WM_CLOSE:
            takeTyped();
            destroy();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void frmFont::onCommand(int id, int code) {
    if (filling_)
        return;
    switch (id) {
        case IDOK:
            takeTyped();
            return;
        case IDCANCEL:
            ::SendMessageW(handle(), WM_CLOSE, 0, 0);
            return;
        case kText2:
        case kT1:
            if (code == EN_CHANGE)
                onTyped(id);
            else if (code == EN_KILLFOCUS)
                takeTyped();
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
    if (code != BN_CLICKED)
        return;
    if (id >= kCheck1 && id <= kCheck3)
        onStyleClicked(id);
    else if (id == kCommand3)
        onMoreColours();
    else if (id == kCommand1)
        onSave();
    else if (id >= kG1 && id < kG1 + static_cast<int>(kSwatchCount))
        applyColour(swatches()[static_cast<std::size_t>(id - kG1)].colour);
}

void frmFont::onTimer(UINT_PTR timer) {
    if (timer == kTypingTimer)
        takeTyped();
    else if (timer == kTm1 && typedIn_ == 0)
        followSelection();
}

void frmFont::onActivate(WPARAM wParam) {
    if (LOWORD(wParam) != WA_INACTIVE)
        return;
    const HWND focus = ::GetFocus();
    if (::IsChild(handle(), focus))
        lastFocus_ = focus;
}

// ---- Controls ---------------------------------------------------------------------------------

HWND frmFont::add(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                  const RECT& place, DWORD extendedStyle) {
    const HWND window = ::CreateWindowExW(
        extendedStyle, className, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
        place.right - place.left, place.bottom - place.top, handle(),
        reinterpret_cast<HMENU>(INT_PTR{id}), ::GetModuleHandleW(nullptr), nullptr);
    ::SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(uiFont()), FALSE);
    return window;
}

// In the order in which Tab walks them.
void frmFont::createControls() {
    filling_ = true;
    const auto group = [&](const wchar_t* caption, int left, int top, int width, int height) {
        add(L"BUTTON", caption, BS_GROUPBOX, 0, box(left, top, width, height));
    };
    constexpr DWORD listStyle = WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
                                LBS_OWNERDRAWFIXED | LBS_HASSTRINGS;
    constexpr DWORD editStyle = WS_TABSTOP | ES_AUTOHSCROLL;
    constexpr DWORD checkStyle = WS_TABSTOP | BS_3STATE;
    constexpr DWORD radioStyle = BS_AUTORADIOBUTTON;

    int left = kMargin;
    const int top = kMargin;
    const int boxTop = top + kCaption;
    const int listTop = boxTop + kBox + kGap / 2;
    const int listHeight = kTopHeight - kCaption - kBox - kGap / 2 - kMargin;
    group(L"Font", left, top, kFontWidth, kTopHeight);
    int inner = kFontWidth - 2 * kMargin;
    add(L"EDIT", L"", editStyle, kText2, box(left + kMargin, boxTop, inner, kBox),
        WS_EX_CLIENTEDGE);
    add(L"LISTBOX", L"", listStyle, kList1, box(left + kMargin, listTop, inner, listHeight),
        WS_EX_CLIENTEDGE);

    left += kFontWidth + kGap;
    group(L"Size", left, top, kSizeWidth, kTopHeight);
    inner = kSizeWidth - 2 * kMargin;
    add(L"EDIT", L"", editStyle, kT1, box(left + kMargin, boxTop, inner, kBox), WS_EX_CLIENTEDGE);
    add(L"LISTBOX", L"", listStyle, kList2, box(left + kMargin, listTop, inner, listHeight),
        WS_EX_CLIENTEDGE);
    for (const int id : {kText2, kList1, kT1, kList2})
        ::SetWindowSubclass(control(id), pairProcedure, static_cast<UINT_PTR>(id),
                            reinterpret_cast<DWORD_PTR>(this));

    for (const int id : {kText2, kT1})
        ::SendMessageW(control(id), EM_SETMARGINS, EC_LEFTMARGIN, scaled(kTextIndent));

    left += kSizeWidth + kGap;
    inner = kStyleWidth - 2 * kMargin;
    group(L"Appearance", left, top, kStyleWidth, kAppearanceHeight);
    const auto row = [&](int line, int from) {
        return box(left + kMargin, from + kCaption + line * kCheck, inner, kCheck);
    };
    add(L"BUTTON", L"Bold", checkStyle, kCheck1, row(0, top));
    add(L"BUTTON", L"Italic", checkStyle, kCheck2, row(1, top));
    add(L"BUTTON", L"Underline", checkStyle, kCheck3, row(2, top));
    const int applyTop = top + kAppearanceHeight + kGap;
    group(L"Apply Color", left, applyTop, kStyleWidth, kApplyHeight);
    add(L"BUTTON", L"In the Text", radioStyle | WS_GROUP | WS_TABSTOP, kOp1Text, row(0, applyTop));
    add(L"BUTTON", L"In the Back", radioStyle, kOp1Back, row(1, applyTop));
    check(control(kOp1Text), true);

    group(L"Colors", kMargin, kSecondTop, kLeftWidth, kColoursHeight);
    createSwatches();
    createTips();

    left = kMargin + kLeftWidth + kGap;
    inner = kRightWidth - 2 * kMargin;
    group(L"Example", left, top, kRightWidth, kTopHeight);
    const int exampleHeight = kTopHeight - kCaption - kCheck - kMargin;
    add(L"STATIC", L"Abc", SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX, kLabel4,
        box(left + kMargin, boxTop, inner, exampleHeight), WS_EX_STATICEDGE);
    add(L"STATIC", L"", SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX | SS_ENDELLIPSIS, kLabel3,
        box(left + kMargin, boxTop + exampleHeight + kGap / 2, inner, kCheck));

    group(L"Settings", left, kSecondTop, kRightWidth, kSettingsHeight);
    const int choiceTop = kSecondTop + kCaption + kCheck;
    add(L"STATIC", L"The font of new chord notations:", SS_CENTERIMAGE, 0,
        box(left + kMargin, kSecondTop + kCaption, inner, kCheck));
    add(L"BUTTON", L"Use Courier New as your Default Font", radioStyle | WS_GROUP | WS_TABSTOP,
        kOption1, box(left + kMargin, choiceTop, inner, kCheck));
    add(L"BUTTON", L"Use Lucida Console as your Default Font", radioStyle, kOption2,
        box(left + kMargin, choiceTop + kCheck, inner, kCheck));
    const int buttonLeft = left + kRightWidth - kButtonWidth;
    Command1_.create(handle(), kCommand1,
                     box(buttonLeft - kMargin, kSecondTop + kSettingsHeight - kMargin - kButton,
                         kButtonWidth, kButton),
                     u"Save", WS_TABSTOP | WS_GROUP);
    Command2_.create(handle(), IDCANCEL,
                     box(buttonLeft, kClientHeight - kMargin - kButton, kButtonWidth, kButton),
                     u"&Exit", WS_TABSTOP | WS_GROUP);
    filling_ = false;
}

// The swatches are one stop of Tab; the arrow keys walk among them.
void frmFont::createSwatches() {
    placeNamedSwatches();
    placeOtherSwatches();
    for (std::size_t i = 0; i < kSwatchCount; ++i) {
        const Swatch& swatch = swatches()[i];
        const Area& area = swatchAreas_[i];
        TarnelButton& button = G1_[i];
        button.create(handle(), kG1 + static_cast<int>(i),
                      {area.left, area.top, area.left + area.width, area.top + area.height},
                      swatch.name, i == 0 ? WS_TABSTOP | WS_GROUP : 0);
        ButtonProperties look;
        look.Caption = swatch.name;
        look.BackColor = colourRef(swatch.colour);
        look.ForeColor = colourRef(inkOn(swatch.colour));
        button.setProperties(look);
        if (swatch.name.empty())
            button.setName(swatchTitle(swatch));
        button.setTakesArrows(true);
        button.onEvent([this, i](const ButtonEvent& event) {
            if (event.kind == ButtonEventKind::KeyDown)
                onSwatchKey(i, event.keyCode);
        });
    }
    const Area& lastNamed = swatchAreas_[kNamedSwatchCount - 1];
    const Area& last = swatchAreas_.back();
    Command3_.create(
        handle(), kCommand3,
        {lastNamed.left, last.top, lastNamed.left + lastNamed.width, last.top + last.height},
        u"More Colors", WS_TABSTOP | WS_GROUP);
}

// A colour without a caption tells what it is when the pointer rests on it.
void frmFont::createTips() {
    const HWND tips = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                        WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                                        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, handle(),
                                        nullptr, ::GetModuleHandleW(nullptr), nullptr);
    for (std::size_t i = kNamedSwatchCount; i < kSwatchCount; ++i) {
        Text title = swatchTitle(swatches()[i]);
        TTTOOLINFOW tool{};
        tool.cbSize = TTTOOLINFOW_V1_SIZE;
        tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
        tool.hwnd = handle();
        tool.uId = reinterpret_cast<UINT_PTR>(G1_[i].handle());
        tool.lpszText = wideBuffer(title);
        ::SendMessageW(tips, TTM_ADDTOOLW, 0, lparamOf(&tool));
    }
}

// Four to a row, over the whole width of their frame.
void frmFont::placeNamedSwatches() {
    const int left = 2 * kMargin;
    const int width = (kLeftWidth - 2 * kMargin - (kNamedColumns - 1) * kGap) / kNamedColumns;
    for (int i = 0; i < static_cast<int>(kNamedSwatchCount); ++i) {
        const RECT place =
            box(left + i % kNamedColumns * (width + kGap),
                kSecondTop + kCaption + i / kNamedColumns * (kButton + kGap), width, kButton);
        swatchAreas_[static_cast<std::size_t>(i)] = {
            static_cast<int>(place.left), static_cast<int>(place.top),
            static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
    }
}

// Two rows below, as wide as three of the named ones.
void frmFont::placeOtherSwatches() {
    const Area& first = swatchAreas_[0];
    const Area& third = swatchAreas_[2];
    const int gap = scaled(kGap) / 2;
    const int width = third.left + third.width - first.left;
    const int columnWidth = (width - (kOtherColumns - 1) * gap) / kOtherColumns;
    // What does not divide evenly goes between the columns.
    const auto leftOf = [&](int column) {
        return first.left + column * (width - columnWidth) / (kOtherColumns - 1);
    };
    for (int i = 0; i < static_cast<int>(kSwatchCount - kNamedSwatchCount); ++i) {
        const int top = scaled(kSecondTop + kCaption + (3 + i / kOtherColumns) * (kButton + kGap));
        swatchAreas_[kNamedSwatchCount + static_cast<std::size_t>(i)] = {
            leftOf(i % kOtherColumns), top, columnWidth, scaled(kButton)};
    }
}

void frmFont::fillLists() {
    filling_ = true;
    faces_ = shownFaces(installedFaces());
    for (const Text& face : faces_)
        ::SendMessageW(control(kList1), LB_ADDSTRING, 0, lparamOf(wide(face)));
    for (const int size : fontSizes())
        ::SendMessageW(control(kList2), LB_ADDSTRING, 0, lparamOf(wide(fontSizeText(2 * size))));
    const bool isCourier = editorFontFace(services_) == kCourierNew;
    check(control(kOption1), isCourier);
    check(control(kOption2), !isCourier);
    filling_ = false;
}

LRESULT CALLBACK frmFont::pairProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR id, DWORD_PTR self) {
    const bool isBox = id == kText2 || id == kT1;
    const HWND other = reinterpret_cast<frmFont*>(self)->control(id == kText2   ? kList1
                                                                 : id == kT1    ? kList2
                                                                 : id == kList1 ? kText2
                                                                                : kT1);
    if (isBox && message == WM_KEYDOWN &&
        (wParam == VK_UP || wParam == VK_DOWN || wParam == VK_PRIOR || wParam == VK_NEXT))
        return ::SendMessageW(other, message, wParam, lParam);
    if (!isBox && message == WM_CHAR && wParam > ' ') {
        ::SetFocus(other);
        ::SendMessageW(other, EM_SETSEL, 0, -1);
        return ::SendMessageW(other, message, wParam, lParam);
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
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
    apply([&] { rtftext_.setSelectionFace(chosen); });
}

void frmFont::applySize(int halfPoints) {
    apply([&] { rtftext_.setSelectionSize(halfPoints); });
}

void frmFont::onFaceChosen() {
    typedIn_ = 0;
    const LRESULT row = ::SendMessageW(control(kList1), LB_GETCURSEL, 0, 0);
    if (row >= 0 && ::IsWindowVisible(handle()))
        applyFace(faces_[static_cast<std::size_t>(row)]);
}

void frmFont::onSizeChosen() {
    typedIn_ = 0;
    const LRESULT row = ::SendMessageW(control(kList2), LB_GETCURSEL, 0, 0);
    if (row >= 0)
        applySize(2 * fontSizes()[static_cast<std::size_t>(row)]);
}

// The example shows at once what is typed; the editor gets it when the typing pauses.
void frmFont::onTyped(int id) {
    typedIn_ = id;
    ::SetTimer(handle(), kTypingTimer, kTypingMs, nullptr);
    const Text typed = windowText(control(id));
    if (id == kText2) {
        const auto found = findFace(faces_, typed);
        ::SendMessageW(control(kList1), LB_SETCURSEL, found ? *found : static_cast<WPARAM>(-1), 0);
        if (found)
            style_.face = faces_[*found];
    } else if (const auto size = parseFontSize(typed)) {
        style_.halfPoints = size;
    }
    showExample();
}

void frmFont::takeTyped() {
    if (!isOpen())
        return;
    ::KillTimer(handle(), kTypingTimer);
    const int box = std::exchange(typedIn_, 0);
    style_ = rtftext_.selectionStyle();
    if (box == kText2)
        takeTypedFace();
    else if (box == kT1)
        takeTypedSize();
}

void frmFont::takeTypedFace() {
    const auto found = findFace(faces_, windowText(control(kText2)));
    if (found && faces_[*found] != style_.face)
        applyFace(faces_[*found]);
    else
        showExample();
    // The box keeps what is typed while more may follow.
    if (::GetFocus() != control(kText2))
        showStyle();
}

void frmFont::takeTypedSize() {
    const auto size = parseFontSize(windowText(control(kT1)));
    if (size && size != style_.halfPoints)
        applySize(*size);
    else
        showExample();
    if (::GetFocus() != control(kT1))
        showStyle();
}

// A style that is mixed in the selection becomes the style of all of it.
void frmFont::onStyleClicked(int id) {
    const bool on = !isChecked(control(id));
    const auto set = id == kCheck1   ? &RichEdit::setBold
                     : id == kCheck2 ? &RichEdit::setItalic
                                     : &RichEdit::setUnderline;
    apply([&] { (rtftext_.*set)(on); });
}

void frmFont::applyColour(Rgb colour) {
    const bool isText = isChecked(control(kOp1Text));
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
    const Rgb shown = isChecked(control(kOp1Text)) ? style_.colour.value_or(Rgb{}) : backColour();
    if (const auto colour = services_.colors.choose(shown))
        applyColour(*colour);
}

void frmFont::onSwatchKey(std::size_t index, int keyCode) {
    if (keyCode < VK_LEFT || keyCode > VK_DOWN)
        return;
    const Arrow arrow = keyCode == VK_LEFT    ? Arrow::Left
                        : keyCode == VK_RIGHT ? Arrow::Right
                        : keyCode == VK_UP    ? Arrow::Up
                                              : Arrow::Down;
    const std::size_t next = neighbour(swatchAreas_, index, arrow);
    const auto setStop = [&](std::size_t which, bool on) {
        const HWND window = G1_[which].handle();
        const LONG_PTR style = ::GetWindowLongPtrW(window, GWL_STYLE);
        ::SetWindowLongPtrW(window, GWL_STYLE,
                            on ? style | WS_TABSTOP : style & ~LONG_PTR{WS_TABSTOP});
    };
    setStop(index, false);
    setStop(next, true);
    ::SetFocus(G1_[next].handle());
}

void frmFont::onSave() {
    const TextView face = isChecked(control(kOption1)) ? kCourierNew : kLucidaConsole;
    if (storeEditorFont(services_, face))
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
    const bool isSame = sameStyle(style, style_) && rtftext_.background() == background_ &&
                        selection == selection_ && exampleFont_;
    if (isSame)
        return;
    style_ = style;
    selection_ = selection;
    background_ = rtftext_.background();
    showStyle();
}

void frmFont::showStyle() {
    filling_ = true;
    check(control(kCheck1), style_.bold);
    check(control(kCheck2), style_.italic);
    check(control(kCheck3), style_.underline);
    markFace(style_.face.value_or(Text()));
    markSize(style_.halfPoints);
    filling_ = false;
    showExample();
}

void frmFont::markFace(TextView face) {
    const auto row = std::find(faces_.begin(), faces_.end(), face);
    ::SendMessageW(
        control(kList1), LB_SETCURSEL,
        row == faces_.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(row - faces_.begin()),
        0);
    // The text under the user's hands stays as typed, unless it means another font.
    const auto typed = findFace(faces_, windowText(control(kText2)));
    const bool isTyping = ::GetFocus() == control(kText2) && typed && faces_[*typed] == face;
    if (!isTyping)
        setText(control(kText2), face);
}

void frmFont::markSize(std::optional<int> halfPoints) {
    const std::span<const int> sizes = fontSizes();
    const auto row = std::find_if(sizes.begin(), sizes.end(),
                                  [&](int points) { return 2 * points == halfPoints; });
    ::SendMessageW(
        control(kList2), LB_SETCURSEL,
        row == sizes.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(row - sizes.begin()), 0);
    if (parseFontSize(windowText(control(kT1))) != halfPoints || !halfPoints)
        setText(control(kT1), halfPoints ? fontSizeText(*halfPoints) : Text());
}

Rgb frmFont::backColour() const {
    return rtftext_.background().value_or(systemColour(COLOR_WINDOW));
}

void frmFont::showExample() {
    const HWND label = control(kLabel4);
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
    exampleBrush_.reset(::CreateSolidBrush(colourRef(backColour())));
    ::InvalidateRect(label, nullptr, TRUE);
    const Text size =
        style_.halfPoints ? fontSizeText(*style_.halfPoints) + u" pt" : Text(u"several sizes");
    setText(control(kLabel3), (face.empty() ? Text(u"Several fonts") : face) + u", " + size);
}

LRESULT frmFont::onLabelColour(HDC dc) const {
    ::SetTextColor(dc, colourRef(style_.colour.value_or(inkOn(backColour()))));
    ::SetBkColor(dc, colourRef(backColour()));
    return reinterpret_cast<LRESULT>(exampleBrush_.get());
}

// ---- The font list ----------------------------------------------------------------------------

void frmFont::onMeasureItem(LPARAM lParam) const {
    reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight = static_cast<UINT>(scaled(kListRow));
}

HFONT frmFont::faceFont(const Text& face) {
    UniqueFont& font = faceFonts_[face];
    if (!font)
        font = makeFont(face, scaled(14), {});
    return font.get();
}

void frmFont::onDrawItem(LPARAM lParam) {
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    const bool isFace = item.CtlID == kList1;
    const std::size_t row = item.itemID;
    if (row >= (isFace ? faces_.size() : fontSizes().size()))
        return;
    const bool isSelected = (item.itemState & ODS_SELECTED) != 0;
    ::SetTextColor(item.hDC, ::GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    ::SetBkColor(item.hDC, ::GetSysColor(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    ::ExtTextOutW(item.hDC, 0, 0, ETO_OPAQUE, &item.rcItem, nullptr, 0, nullptr);
    const Text text = isFace ? faces_[row] : fontSizeText(2 * fontSizes()[row]);
    RECT place = item.rcItem;
    place.left += scaled(kTextIndent);
    const SelectedObject font(item.hDC, isFace ? faceFont(text) : uiFont());
    if (isSymbolFont(item.hDC))
        ::SelectObject(item.hDC, uiFont());
    ::DrawTextW(item.hDC, wide(text), -1, &place,
                DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (item.itemState & ODS_FOCUS)
        ::DrawFocusRect(item.hDC, &item.rcItem);
}

}  // namespace melvorin
