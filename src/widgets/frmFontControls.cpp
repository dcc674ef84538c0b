// The controls of the font and colours window: what they are, where they stand, the lists' rows.
#include "base/ProgramSettings.h"
#include "widgets/frmFontParts.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi: one margin, one gap, one height for what stands in a row.

constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kBox = 22;
constexpr int kCheck = 22;
constexpr int kButton = 26;
constexpr int kButtonWidth = 96;
constexpr int kCaption = 20;  // from a frame's top to its first control

constexpr int kFirstTop = kMargin + kCaption;

constexpr int kFontWidth = 256;
constexpr int kSizeWidth = 88;
constexpr int kStyleWidth = 126;
constexpr int kRightWidth = 308;
constexpr int kSizeLeft = kMargin + kFontWidth + kGap;
constexpr int kStyleLeft = kSizeLeft + kSizeWidth + kGap;
constexpr int kLeftWidth = kFontWidth + kGap + kSizeWidth + kGap + kStyleWidth;
constexpr int kRightLeft = kMargin + kLeftWidth + kGap;
constexpr int kRightInner = kRightWidth - 2 * kMargin;
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

constexpr DWORD kFirstOption = BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP;

RECT box(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
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

}  // namespace

bool frmFont::createWindow(HWND owner) {
    // kept: fonte
    WindowSpec spec = smallWindow(L"MelvorinfrmFont", L"Fonte", scaled(kClientWidth),
                                  scaled(kClientHeight), owner);
    // Children are not clipped: the frames leave their inside to the window.
    spec.style &= ~DWORD{WS_CLIPCHILDREN};
    spec.extendedStyle |= WS_EX_CONTROLPARENT;
    if (!create(spec))
        return false;
    filling_ = true;
    createControls();
    filling_ = false;
    return true;
}

HWND frmFont::add(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                  const RECT& place, DWORD extendedStyle) {
    return createControl(handle(), className, text, style, id, place, extendedStyle);
}

HWND frmFont::addFrame(const wchar_t* caption, int left, int top, int width, int height) {
    return add(L"BUTTON", caption, BS_GROUPBOX, 0, box(left, top, width, height));
}

// In the order in which Tab walks them.
void frmFont::createControls() {
    createPair(L"Font", kMargin, kFontWidth, kText2, kList1);
    createPair(L"Size", kSizeLeft, kSizeWidth, kT1, kList2);
    createStyleBoxes();
    addFrame(L"Colors", kMargin, kSecondTop, kLeftWidth, kColoursHeight);
    createSwatches();
    createTips();
    createExample();
    createSettings();
    Command2_.create(handle(), IDCANCEL,
                     box(kClientWidth - kMargin - kButtonWidth, kClientHeight - kMargin - kButton,
                         kButtonWidth, kButton),
                     u"&Exit", WS_TABSTOP | WS_GROUP);
}

// A box to type in and the list below it.
void frmFont::createPair(const wchar_t* caption, int left, int width, int boxId, int listId) {
    constexpr DWORD listStyle = WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
                                LBS_OWNERDRAWFIXED | LBS_HASSTRINGS;
    constexpr int listTop = kFirstTop + kBox + kGap / 2;
    addFrame(caption, left, kMargin, width, kTopHeight);
    const HWND edit =
        add(L"EDIT", L"", WS_TABSTOP | ES_AUTOHSCROLL, boxId,
            box(left + kMargin, kFirstTop, width - 2 * kMargin, kBox), WS_EX_CLIENTEDGE);
    ::SendMessageW(edit, EM_SETMARGINS, EC_LEFTMARGIN, scaled(kTextIndent));
    const HWND list = add(L"LISTBOX", L"", listStyle, listId,
                          box(left + kMargin, listTop, width - 2 * kMargin, kTopHeight - listTop),
                          WS_EX_CLIENTEDGE);
    for (const HWND window : {edit, list})
        ::SetWindowSubclass(window, pairProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

void frmFont::createStyleBoxes() {
    constexpr DWORD checkStyle = WS_TABSTOP | BS_3STATE;
    constexpr int applyTop = kMargin + kAppearanceHeight + kGap;
    const auto row = [&](int line, int frameTop) {
        return box(kStyleLeft + kMargin, frameTop + kCaption + line * kCheck,
                   kStyleWidth - 2 * kMargin, kCheck);
    };
    addFrame(L"Appearance", kStyleLeft, kMargin, kStyleWidth, kAppearanceHeight);
    add(L"BUTTON", L"Bold", checkStyle, kCheck1, row(0, kMargin));
    add(L"BUTTON", L"Italic", checkStyle, kCheck2, row(1, kMargin));
    add(L"BUTTON", L"Underline", checkStyle, kCheck3, row(2, kMargin));
    addFrame(L"Apply Color", kStyleLeft, applyTop, kStyleWidth, kApplyHeight);
    add(L"BUTTON", L"In the Text", kFirstOption, kOp1Text, row(0, applyTop));
    add(L"BUTTON", L"In the Back", BS_AUTORADIOBUTTON, kOp1Back, row(1, applyTop));
    setChecked(control(kOp1Text), true);
}

void frmFont::createExample() {
    constexpr DWORD style = SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX;
    constexpr int height = kTopHeight - kCaption - kCheck - kMargin;
    addFrame(L"Example", kRightLeft, kMargin, kRightWidth, kTopHeight);
    add(L"STATIC", L"Abc", style, kLabel4,
        box(kRightLeft + kMargin, kFirstTop, kRightInner, height), WS_EX_STATICEDGE);
    add(L"STATIC", L"", style | SS_ENDELLIPSIS, kLabel3,
        box(kRightLeft + kMargin, kFirstTop + height + kGap / 2, kRightInner, kCheck));
}

void frmFont::createSettings() {
    const auto row = [&](int line) {
        return box(kRightLeft + kMargin, kSecondTop + kCaption + line * kCheck, kRightInner,
                   kCheck);
    };
    addFrame(L"Settings", kRightLeft, kSecondTop, kRightWidth, kSettingsHeight);
    add(L"STATIC", L"The font of new chord notations:", SS_CENTERIMAGE, 0, row(0));
    add(L"BUTTON", L"Use Courier New as your Default Font", kFirstOption, kOption1, row(1));
    add(L"BUTTON", L"Use Lucida Console as your Default Font", BS_AUTORADIOBUTTON, kOption2,
        row(2));
    Command1_.create(handle(), kCommand1,
                     box(kRightLeft + kRightWidth - kMargin - kButtonWidth,
                         kSecondTop + kSettingsHeight - kMargin - kButton, kButtonWidth, kButton),
                     u"Save", WS_TABSTOP | WS_GROUP);
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
                onSwatchKey(event.keyCode);
            else if (event.kind == ButtonEventKind::MouseDown)
                moveStop(i);
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
    for (std::size_t i = kNamedSwatchCount; i < kSwatchCount; ++i)
        addTip(G1_[i].handle(), swatchTitle(swatches()[i]));
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
    setChecked(control(kOption1), isCourier);
    setChecked(control(kOption2), !isCourier);
    filling_ = false;
}

LRESULT CALLBACK frmFont::pairProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR subclass, DWORD_PTR self) {
    const int id = ::GetDlgCtrlID(window);
    const bool isBox = id == kText2 || id == kT1;
    const int partner = id == kText2 ? kList1 : id == kT1 ? kList2 : id == kList1 ? kText2 : kT1;
    const HWND other = reinterpret_cast<frmFont*>(self)->control(partner);
    if (isBox && message == WM_KEYDOWN &&
        (wParam == VK_UP || wParam == VK_DOWN || wParam == VK_PRIOR || wParam == VK_NEXT))
        return ::SendMessageW(other, message, wParam, lParam);
    // What stands in a box is mostly to be replaced.
    if (isBox && message == WM_LBUTTONDOWN && ::GetFocus() != window) {
        ::SetFocus(window);
        ::SendMessageW(window, EM_SETSEL, 0, -1);
        return 0;
    }
    if (!isBox && message == WM_CHAR && wParam > ' ') {
        ::SetFocus(other);
        ::SendMessageW(other, EM_SETSEL, 0, -1);
        return ::SendMessageW(other, message, wParam, lParam);
    }
    return subclassDefault(pairProcedure, subclass, window, message, wParam, lParam);
}

// ---- The lists' rows ----------------------------------------------------------------------------

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
