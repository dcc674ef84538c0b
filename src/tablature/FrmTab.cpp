#include "tablature/FrmTab.h"

#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

constexpr int kInset = 8;  // from the edge of the sheet to its text, at 96 dpi
constexpr int kStrings = 6;
constexpr int kPreviewColumns = 57;
constexpr int kPreviewRows = kStrings + 2;
constexpr TextView kHint = u"Choose which string is on the top.";

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
    if (!createForm(L"MelvorinFrmTab", L"Insert Tablature", owner))
        return false;
    const Cell choices = createChoices();
    createPreview();
    const int inset = 2 * scaled(kInset) + 4;
    paper_ = space({kPreviewColumns * static_cast<int>(cell_.cx) + inset,
                    kPreviewRows * static_cast<int>(cell_.cy) + inset})
                 .grows(1, 1);
    const Cell hint = label(wide(Text(kHint)), 0, Hint).grows(1, 0);
    layOut(columnOf({choices, paper_,
                     rowOf({hint,
                            button(InserTab_, InserTab, u"Insert Tablature",
                                   WS_GROUP | WS_TABSTOP | BS_DEFPUSHBUTTON),
                            button(TabOut_, TabOut, u"Exit")})}),
           owner);
    ::SetFocus(item(C1));
    return true;
}

// The editor's own font, so that the block looks as it will in the song.
void FrmTab::usePreviewFont() {
    previewFace_ = editorFontFace(services_);
    previewFont_.reset(songFont(previewFace_, kEditorFontPoints));
    const WindowDc screen(nullptr);
    const SelectedObject selected(screen.get(), previewFont_.get());
    ::GetTextExtentPoint32W(screen.get(), L"-", 1, &cell_);
}

Cell FrmTab::createChoices() {
    const auto list = [this](int id, int width, int chosen,
                             std::initializer_list<const wchar_t*> items) {
        Cell box = dropDown(id, CBS_DROPDOWNLIST).least(width);
        for (const wchar_t* const text : items)
            ::SendMessageW(windowOf(box), CB_ADDSTRING, 0, lparamOf(text));
        ::SendMessageW(windowOf(box), CB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
        return box;
    };
    const Cell instrument =
        // kept: instrument-frame
        group(L" Instrument ", list(C1, 130, 0, {L"Guitar", L"Bass", L"Small Guitar"}));
    const Cell columns =
        group(L"Columns", list(C2, 70, kMostDividers, {L"0", L"1", L"2", L"3", L"4"}));
    const Cell order =
        columnOf({option(L"Put the high E (the thin string) on the top", Ot1, true),
                  option(L"Put the low E (the thick string) on the top", Ot2, false)});
    return rowOf({instrument, columns, order.close().centred()});
}

void FrmTab::createPreview() {
    const auto add = [&](int id, const Text& text) {
        const HWND made =
            createControl(handle(), L"STATIC", wide(text), SS_LEFTNOWORDWRAP | SS_NOPREFIX, id, {});
        ::SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(previewFont_.get()), FALSE);
    };
    for (int id = M1; id <= M8; ++id)
        add(id, {});
    for (int k = 0; k <= kMostDividers; ++k) {
        Text lines;
        for (int row = 0; row < kStrings; ++row)
            lines += (row > 0 ? u"\r\n" : u"") + previewPattern(k);
        add(L1 + k, lines);
    }
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT FrmTab::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_CTLCOLORSTATIC:
            if (::GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) >= M1)
                return onPaper(wParam);
            return passOn(message, wParam, lParam);
        default:
            return Form::onMessage(message, wParam, lParam);
    }
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
        default:
            Form::onCommand(control, code);
            break;
    }
}

void FrmTab::onPaint() {
    const PaintScope paint(handle());
    RECT sheet = rectOf(placeOf(paper_));
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
    const Area sheet = placeOf(paper_);
    const int width = static_cast<int>(cell_.cx);
    const int height = static_cast<int>(cell_.cy);
    const int left = sheet.left + (sheet.width - kPreviewColumns * width) / 2;
    const int top = sheet.top + (sheet.height - kPreviewRows * height) / 2;
    const auto put = [&](int id, int column, int row, int columns, int rows) {
        ::SetWindowPos(item(id), nullptr, left + column * width, top + row * height,
                       columns * width, rows * height, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const auto setText = [&](int id, TextView text) {
        ::SetWindowTextW(item(id), wide(Text(text)));
    };
    for (int row = 0; row < kStrings; ++row) {
        const bool isString = row < strings;
        setText(M1 + row, isString ? form->letters[static_cast<std::size_t>(row)] : TextView());
        // The spare letters make room for the title.
        put(M1 + row, 0, isString ? row : row + 2, 1, 1);
    }
    for (int k = 0; k <= kMostDividers; ++k) {
        // The control is as high as the instrument has strings.
        put(L1 + k, 1, 0, kPreviewColumns - 1, strings);
        ::ShowWindow(item(L1 + k), k == chosen.dividers ? SW_SHOW : SW_HIDE);
    }
    put(M7, 0, strings, kPreviewColumns, 1);
    put(M8, 0, strings + 1, kPreviewColumns, 1);
    setText(M7, form->title);
    setText(M8, form->underline);
    setText(Hint, chosen.order ? TextView() : kHint);
}

void FrmTab::insertTablature() {
    edit_([this] {
        const Text width = decimal(services_.screen.size().width);
        return writer_.insert(rtftext_, choice(), width, editorFontFace(services_));
    });
}

}  // namespace melvorin
