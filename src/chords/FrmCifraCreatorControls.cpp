// The window of the chart creator: its controls and where they stand.
#include <algorithm>
#include <utility>

#include "chords/FrmCifraCreator.h"
#include "platform/Handles.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kWidth = 1120;
constexpr int kHeight = 760;
constexpr int kMargin = 10;
constexpr int kGap = 6;
constexpr int kLabelHeight = 17;
constexpr int kButtonHeight = 27;

}  // namespace

// ---- The window ------------------------------------------------------------------------------

bool FrmCifraCreator::createWindow(HWND owner) {
    const ScreenSize work = services_.screen.workArea();
    WindowSpec spec;
    spec.className = L"MelvorinFrmCifraCreator";
    // kept: window-titles
    spec.caption = L" Create Chord Notation";
    spec.style =
        WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    spec.width = std::min(scaled(kWidth), work.width);
    spec.height = std::min(scaled(kHeight), work.height);
    spec.parent = owner;
    spec.iconResource = kProgramIcon;
    if (!create(spec))
        return false;
    createControls();
    if (!Rb1_.create(handle(), kRb1, face_, kFontPoints) ||
        !RTB2_.create(handle(), kRtb2, face_, kFontPoints)) {
        destroy();
        return false;
    }
    // What is pasted is text, whatever else the clipboard has; and here typing can be undone.
    ::SendMessageW(Rb1_.handle(), EM_SETTEXTMODE, TM_PLAINTEXT | TM_MULTILEVELUNDO, 0);
    ::SendMessageW(Rb1_.handle(), EM_SETUNDOLIMIT, 100, 0);
    ::SetWindowSubclass(Rb1_.handle(), songBox, 1, reinterpret_cast<DWORD_PTR>(this));
    // Tab goes from the buttons to the song and on in the order of the layout.
    ::SetWindowPos(Rb1_.handle(), labels_[0], 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    onLayout();
    centreOver(handle(), owner);
    return true;
}

HWND FrmCifraCreator::addControl(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                                 DWORD extendedStyle) {
    return createControl(handle(), className, text, style, id, {}, extendedStyle);
}

void FrmCifraCreator::createControls() {
    labels_.clear();
    buttons_.clear();
    const auto button = [&](TextView text, int id, DWORD style = 0) {
        buttons_.emplace_back(sounds_).create(handle(), id, {}, text, WS_TABSTOP | style);
    };
    const auto label = [&](const wchar_t* text) {
        labels_.push_back(addControl(L"STATIC", text, SS_ENDELLIPSIS, -1));
    };
    const auto list = [&](int id) {
        addControl(L"LISTBOX", L"", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, id,
                   WS_EX_CLIENTEDGE);
    };
    button(u"&Open File...", kOpenFile);
    button(u"&Paste", kPaste);
    // kept: converter-texto
    button(u"Con&verter Texto", kCmd1);
    button(u"&Make Chart", kMakeChart);
    label(L"&Song as it was found");
    label(L"&Lines: C chords, L lyrics, S section, T tablature, D directive, A automatic");
    const HWND lines =
        addControl(WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS,
                   kLines, WS_EX_CLIENTEDGE);
    ListView_SetExtendedListViewStyle(lines, LVS_EX_FULLROWSELECT);
    for (const wchar_t* title : {L"", L"Verdict", L"Line", L"Remark"}) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(title);
        column.iSubItem = Header_GetItemCount(ListView_GetHeader(lines));
        ::SendMessageW(lines, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem),
                       lparamOf(&column));
    }
    label(L"C&hart");
    label(L"&Researched items");
    list(kResearched);
    label(L"&Found chords");
    list(kFound);
    label(L"Chords &not found");
    list(kNotFound);
    addControl(L"STATIC", L"", SS_ENDELLIPSIS | SS_NOPREFIX, kSummary);
    button(u"&Create Chord Notation", IDOK, BS_DEFPUSHBUTTON);
    button(u"Cancel", IDCANCEL);
}

void FrmCifraCreator::onLayout() {
    if (Rb1_.handle() == nullptr || RTB2_.handle() == nullptr)
        return;
    RECT client{};
    ::GetClientRect(handle(), &client);
    const int margin = scaled(kMargin);
    const int gap = scaled(kGap);
    const int label = scaled(kLabelHeight);
    const int button = scaled(kButtonHeight);
    const int width = static_cast<int>(client.right);
    const auto move = [](HWND control, int x, int y, int w, int h) {
        ::SetWindowPos(control, nullptr, x, y, std::max(w, 0), std::max(h, 0),
                       SWP_NOZORDER | SWP_NOACTIVATE);
    };
    int x = margin;
    for (const auto& [id, buttonWidth] : {std::pair(kOpenFile, 100), std::pair(kPaste, 80),
                                          std::pair(kCmd1, 130), std::pair(kMakeChart, 100)}) {
        move(control(id), x, margin, scaled(buttonWidth), button);
        x += scaled(buttonWidth) + gap;
    }
    const int top = margin + button + gap;
    const int bottom = static_cast<int>(client.bottom) - margin - button - gap;
    const int half = (width - 2 * margin - 2 * gap) / 2;
    const int right = margin + half + 2 * gap;
    const int split = top + (bottom - top) * 11 / 20;  // where the boxes end and the lists begin
    const int boxTop = top + label;
    const int listTop = split + gap + label;
    move(labels_[0], margin, top, half, label);
    Rb1_.place({margin, boxTop, margin + half, split});
    move(labels_[2], right, top, half, label);
    RTB2_.place({right, boxTop, right + half, split});
    move(labels_[1], margin, split + gap, half, label);
    const HWND lines = control(kLines);
    move(lines, margin, listTop, half, bottom - listTop);
    const int inner = half - ::GetSystemMetrics(SM_CXVSCROLL) - 4;
    const int fixed = scaled(38) + scaled(78);
    const int remark = (inner - fixed) * 2 / 5;
    for (const auto& [column, columnWidth] :
         {std::pair(kNumberColumn, scaled(38)), std::pair(kVerdictColumn, scaled(78)),
          std::pair(kTextColumn, inner - fixed - remark), std::pair(kRemarkColumn, remark)})
        ListView_SetColumnWidth(lines, column, columnWidth);
    const int third = (half - 2 * gap) / 3;
    x = right;
    for (const auto& [index, id] :
         {std::pair(3U, kResearched), std::pair(4U, kFound), std::pair(5U, kNotFound)}) {
        const int listWidth = id == kNotFound ? right + half - x : third;
        move(labels_[index], x, split + gap, listWidth, label);
        move(control(id), x, listTop, listWidth, bottom - listTop);
        x += third + gap;
    }
    const int okWidth = scaled(160);
    const int cancelWidth = scaled(90);
    const int footer = bottom + gap;
    move(control(IDCANCEL), width - margin - cancelWidth, footer, cancelWidth, button);
    move(control(IDOK), width - margin - cancelWidth - gap - okWidth, footer, okWidth, button);
    move(control(kSummary), margin, footer + (button - label) / 2,
         width - 2 * margin - cancelWidth - okWidth - 2 * gap, label);
}

}  // namespace melvorin
