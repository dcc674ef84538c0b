// The controls of the font and colours window: what they are, where they stand, the lists' rows.
#include "base/ProgramSettings.h"
#include "platform/ControlSize.h"
#include "widgets/frmFontParts.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kTextIndent = 4;  // in boxes and lists
constexpr int kListHeight = 130;
constexpr int kNamedWidth = 108;  // of a swatch with a name
constexpr int kOtherWidth = 20;
constexpr int kSwatchHeight = Spacing::kButtonHeight;

constexpr int kNamedColumns = 4;
constexpr int kOtherColumns = 14;

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
    if (!createForm(L"MelvorinfrmFont", L"Fonte", owner))
        return false;
    filling_ = true;
    createControls(owner);
    filling_ = false;
    return true;
}

// In the order in which Tab walks them.
void frmFont::createControls(HWND owner) {
    const Cell font = createPair(L"Font", 224, kText2, kList1).grows(1, 1);
    const Cell size = createPair(L"Size", 64, kT1, kList2);
    const Cell styles = createStyleBoxes();
    const Cell colours = group(L"Colors", createSwatches());
    const Cell example = createExample();
    const Cell settings = createSettings();
    const Cell leave = button(Command2_, IDCANCEL, u"&Exit", WS_TABSTOP | WS_GROUP);
    const Cell foot = columnOf({settings.grows(1, 1), atRight({leave})}).grows(1, 0);
    layOut(gridOf(2, {rowOf({font, size, styles}), example,  //
                      colours, foot}),
           owner);
}

// A box to type in and the list below it.
Cell frmFont::createPair(const wchar_t* caption, int width, int boxId, int listId) {
    const Cell box = edit(boxId);
    ::SendMessageW(windowOf(box), EM_SETMARGINS, EC_LEFTMARGIN, scaled(kTextIndent));
    const Cell list = control(L"LISTBOX", L"",
                              WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT |
                                  LBS_OWNERDRAWFIXED | LBS_HASSTRINGS,
                              listId, WS_EX_CLIENTEDGE);
    for (const Cell& cell : {box, list})
        ::SetWindowSubclass(windowOf(cell), pairProcedure, 0, reinterpret_cast<DWORD_PTR>(this));
    return group(caption, columnOf({box, list.least(width, kListHeight).grows(1, 1)}).close())
        .grows(0, 1);
}

Cell frmFont::createStyleBoxes() {
    const auto styleBox = [this](const wchar_t* text, int id) {
        return control(L"BUTTON", text, WS_TABSTOP | BS_3STATE, id);
    };
    const Cell look = columnOf({styleBox(L"Bold", kCheck1), styleBox(L"Italic", kCheck2),
                                styleBox(L"Underline", kCheck3)});
    const Cell appearance = group(L"Appearance", look.close());
    const Cell where =
        columnOf({option(L"In the Text", kOp1Text, true), option(L"In the Back", kOp1Back, false)});
    const Cell apply = group(L"Apply Color", where.close());
    setChecked(item(kOp1Text), true);
    return columnOf({appearance, apply.grows(0, 1)}).grows(0, 0);
}

Cell frmFont::createExample() {
    constexpr DWORD style = SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX;
    const Cell letters = control(L"STATIC", L"Abc", style, kLabel4, WS_EX_STATICEDGE);
    const Cell words = label(L"", style | SS_ENDELLIPSIS, kLabel3);
    return group(L"Example", columnOf({letters.grows(1, 1), words}).close());
}

Cell frmFont::createSettings() {
    const Cell choice =
        columnOf({label(L"The font of new chord notations:"),
                  option(L"Use Courier New as your Default Font", kOption1, true),
                  option(L"Use Lucida Console as your Default Font", kOption2, false)});
    const Cell save = button(Command1_, kCommand1, u"Save", WS_TABSTOP | WS_GROUP);
    return group(L"Settings", columnOf({choice.close().grows(1, 1), atRight({save})}));
}

// The named colours four to a row; below three of them, and as wide, the others.
Cell frmFont::createSwatches() {
    Cell named = gridOf(kNamedColumns - 1, {}).grows(kNamedColumns - 1, 0);
    Cell lastNamed = columnOf({}).grows(1, 0);
    Cell others = gridOf(kOtherColumns, {}).close();
    for (std::size_t i = 0; i < kSwatchCount; ++i) {
        const bool isNamed = i < kNamedSwatchCount;
        const bool isLast = i % kNamedColumns == kNamedColumns - 1;
        Cell& place = !isNamed ? others : isLast ? lastNamed : named;
        place.cells.push_back(
            createSwatch(i).least(isNamed ? kNamedWidth : kOtherWidth, kSwatchHeight).grows(1, 0));
    }
    const Cell more = button(Command3_, kCommand3, u"More Colors", WS_TABSTOP | WS_GROUP);
    const Cell low = columnOf({blank().grows(0, 1), more.grows(1, 0)}).grows(1, 0);
    return gridOf(2, {named, lastNamed,  //
                      others, low});
}

// The swatches are one stop of Tab; the arrow keys walk among them.
Cell frmFont::createSwatch(std::size_t index) {
    const Swatch& swatch = swatches()[index];
    TarnelButton& made = G1_[index];
    Cell cell = button(made, kG1 + static_cast<int>(index), swatch.name,
                       index == 0 ? WS_TABSTOP | WS_GROUP : 0);
    ButtonProperties look;
    look.Caption = swatch.name;
    look.BackColor = colourRef(swatch.colour);
    look.ForeColor = colourRef(inkOn(swatch.colour));
    made.setProperties(look);
    // A colour without a caption tells what it is when the pointer rests on it.
    if (swatch.name.empty()) {
        made.setName(swatchTitle(swatch));
        addTip(made.handle(), swatchTitle(swatch));
    }
    made.setTakesArrows(true);
    made.onEvent([this, index](const ButtonEvent& event) {
        if (event.kind == ButtonEventKind::KeyDown)
            onSwatchKey(event.keyCode);
        else if (event.kind == ButtonEventKind::MouseDown)
            moveStop(index);
    });
    return cell;
}

void frmFont::fillLists() {
    filling_ = true;
    faces_ = shownFaces(installedFaces());
    for (const Text& face : faces_)
        ::SendMessageW(item(kList1), LB_ADDSTRING, 0, lparamOf(wide(face)));
    for (const int size : fontSizes())
        ::SendMessageW(item(kList2), LB_ADDSTRING, 0, lparamOf(wide(fontSizeText(2 * size))));
    const bool isCourier = editorFontFace(services_) == kCourierNew;
    setChecked(item(kOption1), isCourier);
    setChecked(item(kOption2), !isCourier);
    filling_ = false;
}

LRESULT CALLBACK frmFont::pairProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR subclass, DWORD_PTR self) {
    const int id = ::GetDlgCtrlID(window);
    const bool isBox = id == kText2 || id == kT1;
    const int partner = id == kText2 ? kList1 : id == kT1 ? kList2 : id == kList1 ? kText2 : kT1;
    const HWND other = reinterpret_cast<frmFont*>(self)->item(partner);
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

// As high as the box above the list, so that the letters of any system font have room.
void frmFont::onMeasureItem(LPARAM lParam) const {
    reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight =
        static_cast<UINT>(neededSize(item(kText2), 0).height);
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
