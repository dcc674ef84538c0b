#include "tablature/FrmTab.h"

#include <algorithm>

#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi: one spacing for everything.
constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kGroupTop = 18;  // from the top of a frame to what stands in it
constexpr int kGroupHeight = 54;
constexpr int kInstrumentWidth = 150;
constexpr int kColumnsWidth = 90;
constexpr int kOptionWidth = 300;
constexpr int kOptionHeight = 22;
constexpr int kListHeight = 200;
constexpr int kBoxInset = 10;
constexpr int kButtonHeight = 26;
constexpr int kInsertWidth = 130;
constexpr int kExitWidth = 88;

constexpr int kStrings = 6;
constexpr int kPreviewColumns = 57;
constexpr int kPreviewRows = kStrings + 2;
constexpr TextView kHint = u"Choose which string is on the top.";

int widthOf(const RECT& rectangle) {
    return static_cast<int>(rectangle.right - rectangle.left);
}

// The place of a part, from its left top corner and size at 96 dpi.
RECT placeOf(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
}

}  // namespace

// ---- The window -------------------------------------------------------------------------------

bool FrmTab::open(HWND owner) {
    if (isOpen() && previewFace_ != editorFontFace(services_)) {
        const LRESULT chosen[] = {::SendMessageW(item(C1), CB_GETCURSEL, 0, 0),
                                  ::SendMessageW(item(C2), CB_GETCURSEL, 0, 0)};
        const UINT highOnTop = ::IsDlgButtonChecked(handle(), Ot1);
        const UINT lowOnTop = ::IsDlgButtonChecked(handle(), Ot2);
        destroy();
        if (!createWindow(owner))
            return false;
        ::SendMessageW(item(C1), CB_SETCURSEL, static_cast<WPARAM>(chosen[0]), 0);
        ::SendMessageW(item(C2), CB_SETCURSEL, static_cast<WPARAM>(chosen[1]), 0);
        ::CheckDlgButton(handle(), Ot1, highOnTop);
        ::CheckDlgButton(handle(), Ot2, lowOnTop);
        showPreview();
    }
    if (!isOpen() && !createWindow(owner))
        return false;
    bringForward();
    return true;
}

bool FrmTab::createWindow(HWND owner) {
    usePreviewFont();
    const int choices = kInstrumentWidth + kColumnsWidth + kOptionWidth + 2 * kGap;
    // Room for the frame and the margin of the sheet, where its letters are the wider part.
    const int sheet = ::MulDiv(kPreviewColumns * static_cast<int>(cell_.cx), 96, systemDpi());
    width_ = 2 * kMargin + std::max(choices, sheet + 2 * kGap + 4);
    const int height = static_cast<int>(paper().bottom) + scaled(kGap + kButtonHeight + kMargin);
    if (!create(smallWindow(L"MelvorinFrmTab", L"Insert Tablature", scaled(width_), height, owner)))
        return false;
    createChoices();
    createPreview();
    createButtons();
    showPreview();
    centreOver(handle(), owner);
    ::SetFocus(item(C1));
    return true;
}

// The editor's own font, so that the block looks as it will in the song.
void FrmTab::usePreviewFont() {
    previewFace_ = editorFontFace(services_);
    const int height = -::MulDiv(kEditorFontPoints, systemDpi(), 72);
    previewFont_.reset(::CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                                     DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                     DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, wide(previewFace_)));
    const WindowDc screen(nullptr);
    const SelectedObject selected(screen.get(), previewFont_.get());
    ::GetTextExtentPoint32W(screen.get(), L"-", 1, &cell_);
}

HWND FrmTab::add(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                 const RECT& place) {
    // A frame does not paint what is inside it.
    const DWORD extended = style == BS_GROUPBOX ? WS_EX_TRANSPARENT : 0;
    return createControl(handle(), className, text, style, id, place, extended);
}

void FrmTab::createChoices() {
    constexpr DWORD list = WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST;
    int left = kMargin;
    const auto group = [&](const wchar_t* caption, int width, int id,
                           std::initializer_list<const wchar_t*> items) {
        add(L"BUTTON", caption, BS_GROUPBOX, -1, placeOf(left, kMargin, width, kGroupHeight));
        const HWND box =
            add(L"COMBOBOX", L"", list, id,
                placeOf(left + kBoxInset, kMargin + kGroupTop, width - 2 * kBoxInset, kListHeight));
        for (const wchar_t* const text : items)
            ::SendMessageW(box, CB_ADDSTRING, 0, lparamOf(text));
        left += width + kGap;
        return box;
    };
    const HWND instrument =
        // kept: instrument-frame
        group(L" Instrument ", kInstrumentWidth, C1, {L"Guitar", L"Bass", L"Small Guitar"});
    const HWND columns = group(L"Columns", kColumnsWidth, C2, {L"0", L"1", L"2", L"3", L"4"});
    ::SendMessageW(instrument, CB_SETCURSEL, 0, 0);
    ::SendMessageW(columns, CB_SETCURSEL, kMostDividers, 0);

    constexpr DWORD option = BS_AUTORADIOBUTTON;
    constexpr int top = kMargin + (kGroupHeight - 2 * kOptionHeight + kGap) / 2;
    add(L"BUTTON", L"Put the high E (the thin string) on the top", option | WS_GROUP | WS_TABSTOP,
        Ot1, placeOf(left, top, kOptionWidth, kOptionHeight));
    add(L"BUTTON", L"Put the low E (the thick string) on the top", option, Ot2,
        placeOf(left, top + kOptionHeight, kOptionWidth, kOptionHeight));
}

// The white sheet that the preview stands on.
RECT FrmTab::paper() const {
    RECT sheet = placeOf(kMargin, kMargin + kGroupHeight + kGap, width_ - 2 * kMargin, 0);
    sheet.bottom = sheet.top + kPreviewRows * cell_.cy + 2 * scaled(kGap);
    return sheet;
}

void FrmTab::createPreview() {
    const RECT sheet = paper();
    const LONG left = sheet.left + (widthOf(sheet) - kPreviewColumns * cell_.cx) / 2;
    const LONG top = sheet.top + scaled(kGap);
    const auto label = [&](int id, int column, int columns, int row, int rows, const Text& text) {
        const HWND control =
            add(L"STATIC", wide(text), SS_LEFTNOWORDWRAP | SS_NOPREFIX, id,
                {left + column * cell_.cx, top + row * cell_.cy,
                 left + (column + columns) * cell_.cx, top + (row + rows) * cell_.cy});
        ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(previewFont_.get()), FALSE);
    };
    for (int row = 0; row < kStrings; ++row)
        label(M1 + row, 0, 1, row, 1, {});
    for (int k = 0; k <= kMostDividers; ++k) {
        Text lines;
        for (int row = 0; row < kStrings; ++row)
            lines += (row > 0 ? u"\r\n" : u"") + previewPattern(k);
        label(L1 + k, 1, kPreviewColumns - 1, 0, kStrings, lines);
    }
    label(M7, 0, kPreviewColumns, kStrings, 1, {});
    label(M8, 0, kPreviewColumns, kStrings + 1, 1, {});
}

void FrmTab::createButtons() {
    const int top = ::MulDiv(static_cast<int>(paper().bottom), 96, systemDpi()) + kGap;
    const int exit = width_ - kMargin - kExitWidth;
    const int insert = exit - kGap - kInsertWidth;
    InserTab_.create(handle(), InserTab, placeOf(insert, top, kInsertWidth, kButtonHeight),
                     u"Insert Tablature", WS_GROUP | WS_TABSTOP | BS_DEFPUSHBUTTON);
    TabOut_.create(handle(), TabOut, placeOf(exit, top, kExitWidth, kButtonHeight), u"Exit");
    add(L"STATIC", L"", SS_CENTERIMAGE, Hint,
        placeOf(kMargin, top, insert - kGap - kMargin, kButtonHeight));
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT FrmTab::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_CTLCOLORSTATIC: {
            const int id = ::GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
            if (id < M1)
                return passOn(message, wParam, lParam);
            const HDC dc = reinterpret_cast<HDC>(wParam);
            ::SetTextColor(dc, ::GetSysColor(COLOR_WINDOWTEXT));
            ::SetBkColor(dc, ::GetSysColor(COLOR_WINDOW));
            return reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_WINDOW));
        }
        case WM_CLOSE:
            destroy();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void FrmTab::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

// Enter inserts wherever the focus is, but for an open list and the button that says Exit.
bool FrmTab::onKeyDown(WPARAM key) {
    if (key != VK_RETURN)
        return false;
    if (::GetFocus() == item(TabOut)) {
        destroy();
        return true;
    }
    for (const int list : {C1, C2}) {
        if (::SendMessageW(item(list), CB_GETDROPPEDSTATE, 0, 0))
            return false;
    }
    insertTablature();
    return true;
}

void FrmTab::onCommand(int control, int code) {
    switch (control) {
        case C1:
        case C2:
            if (code == CBN_SELCHANGE)
                showPreview();
            break;
        case Ot1:
        case Ot2:
            if (code == BN_CLICKED)
                showPreview();
            break;
        case InserTab:
            insertTablature();
            break;
        case TabOut:
            destroy();
            break;
        default:
            break;
    }
}

void FrmTab::onPaint() {
    const PaintScope paint(handle());
    RECT sheet = paper();
    ::DrawEdge(paint.dc(), &sheet, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    ::FillRect(paint.dc(), &sheet, ::GetSysColorBrush(COLOR_WINDOW));
}

// ---- Choices ----------------------------------------------------------------------------------

TabChoice FrmTab::choice() const {
    const auto index = [&](int list) {
        return static_cast<int>(::SendMessageW(item(list), CB_GETCURSEL, 0, 0));
    };
    const auto isSet = [&](int option) {
        return ::SendMessageW(item(option), BM_GETCHECK, 0, 0) == BST_CHECKED;
    };
    TabChoice chosen{index(C1), std::nullopt, index(C2)};
    if (isSet(Ot1))
        chosen.order = StringOrder::HighOnTop;
    else if (isSet(Ot2))
        chosen.order = StringOrder::LowOnTop;
    return chosen;
}

void FrmTab::showPreview() {
    const TabChoice chosen = choice();
    const auto form = tabForm(chosen.instrument, chosen.order.value_or(StringOrder::HighOnTop));
    if (!form)
        return;
    const int strings = static_cast<int>(form->letters.size());
    const RECT sheet = paper();
    const int rowHeight = static_cast<int>(cell_.cy);
    const int top = static_cast<int>(sheet.top) + scaled(kGap);
    const int left =
        static_cast<int>(sheet.left + (widthOf(sheet) - kPreviewColumns * cell_.cx) / 2);
    const auto setText = [&](int id, TextView text) {
        ::SetWindowTextW(item(id), wide(Text(text)));
    };
    for (int row = 0; row < kStrings; ++row)
        setText(M1 + row,
                row < strings ? form->letters[static_cast<std::size_t>(row)] : TextView());
    for (int k = 0; k <= kMostDividers; ++k) {
        // The control is as high as the instrument has strings.
        ::SetWindowPos(item(L1 + k), nullptr, 0, 0,
                       (kPreviewColumns - 1) * static_cast<int>(cell_.cx), strings * rowHeight,
                       SWP_NOMOVE | SWP_NOZORDER);
        ::ShowWindow(item(L1 + k), k == chosen.dividers ? SW_SHOW : SW_HIDE);
    }
    const auto moveTo = [&](int id, int row) {
        ::SetWindowPos(item(id), nullptr, left, top + row * rowHeight, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER);
    };
    // The spare letters make room for the title.
    for (int row = strings; row < kStrings; ++row)
        moveTo(M1 + row, row + 2);
    for (int row = 0; row < strings; ++row)
        moveTo(M1 + row, row);
    setText(M7, form->title);
    setText(M8, form->underline);
    moveTo(M7, strings);
    moveTo(M8, strings + 1);
    setText(Hint, chosen.order ? TextView() : kHint);
}

void FrmTab::insertTablature() {
    edit_([this] {
        const Text width = decimal(services_.screen.size().width);
        return writer_.insert(rtftext_, choice(), width, editorFontFace(services_));
    });
}

}  // namespace melvorin
