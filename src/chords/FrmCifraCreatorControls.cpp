// The window of the chart creator: its controls and where they stand.
#include "chords/FrmCifraCreator.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi: the window inside, and the two boxes at their least, beside each other.
constexpr Size kUsual{1112, 733};
constexpr int kHalf = 360;
constexpr int kCellEnds = 14;  // what a column of the list has left and right of its text

}  // namespace

bool FrmCifraCreator::createWindow(HWND owner) {
    // kept: window-titles
    WindowSpec spec =
        smallWindow(L"MelvorinFrmCifraCreator", L" Create Chord Notation", 0, 0, owner);
    spec.style |= WS_MAXIMIZEBOX;
    spec.extendedStyle = 0;
    spec.iconResource = kProgramIcon;
    if (!createForm(spec))
        return false;
    buttons_.clear();
    // kept: converter-texto
    const Cell commands = rowOf({push(u"&Open File...", kOpenFile), push(u"&Paste", kPaste),
                                 push(u"Con&verter Texto", kCmd1), push(u"&Make Chart", kMakeChart),
                                 check(L"&B is B flat here", kFlatB).centred(),
                                 check(L"C&9 has a seventh here", kSeventhInNinth).centred()});
    song_ = space({}).least(kHalf, 185).grows(1, 1);
    chart_ = space({}).least(kHalf, 185).grows(1, 1);
    // Tab goes from the song down and then up to the chart.
    const Cell song = label(L"&Song as it was found", SS_ENDELLIPSIS, kSongLabel);
    if (!createSong()) {
        destroy();
        return false;
    }
    const Cell lines = createLines();
    const Cell chart = label(L"C&hart", 0, kChartLabel);
    if (!RTB2_.create(handle(), kRtb2, face_, kFontPoints)) {
        destroy();
        return false;
    }
    const Cell lists = createLists();
    addTips();
    const Cell summary = label(L"", SS_ENDELLIPSIS | SS_NOPREFIX, kSummary).grows(1, 0);
    const Cell inPlace = check(
        taken_->isSelection ? L"&In place of the selection" : L"&In place of the song", kInPlace);
    layOut(
        columnOf({commands,
                  gridOf(2, {columnOf({song, song_}).close().grows(1, 11),
                             columnOf({chart, chart_}).close().grows(1, 11), lines, lists}),
                  rowOf({summary, inPlace, push(u"&Create Chord Notation", IDOK, BS_DEFPUSHBUTTON),
                         push(u"Cancel", IDCANCEL)})}),
        owner, kUsual);
    return true;
}

Cell FrmCifraCreator::push(TextView caption, int id, DWORD style) {
    return button(buttons_.emplace_back(sounds_), id, caption, WS_TABSTOP | style);
}

bool FrmCifraCreator::createSong() {
    if (!Rb1_.create(handle(), kRb1, face_, kFontPoints))
        return false;
    // What is pasted is text, whatever else the clipboard has; and here typing can be undone.
    ::SendMessageW(Rb1_.handle(), EM_SETTEXTMODE, TM_PLAINTEXT | TM_MULTILEVELUNDO, 0);
    ::SendMessageW(Rb1_.handle(), EM_SETUNDOLIMIT, 100, 0);
    ::SetWindowSubclass(Rb1_.handle(), songBox, 1, reinterpret_cast<DWORD_PTR>(this));
    return true;
}

Cell FrmCifraCreator::createLines() {
    const Cell title =
        label(L"&Lines: C chords, L lyrics, S section, T tablature, D directive, A automatic",
              SS_ENDELLIPSIS);
    lines_ = control(WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS,
                     kLines, WS_EX_CLIENTEDGE)
                 .least(kHalf, 136)
                 .grows(1, 1);
    const HWND lines = windowOf(lines_);
    ListView_SetExtendedListViewStyle(lines, LVS_EX_FULLROWSELECT);
    for (const wchar_t* caption : {L"", L"Verdict", L"Line", L"Remark"}) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(caption);
        column.iSubItem = Header_GetItemCount(ListView_GetHeader(lines));
        ::SendMessageW(lines, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem),
                       lparamOf(&column));
    }
    return columnOf({title, lines_}).close().grows(1, 9);
}

Cell FrmCifraCreator::createLists() {
    const auto titled = [this](const wchar_t* title, int id) {
        const Cell caption = label(title);
        return columnOf({caption, list(id).least((kHalf - 2 * Spacing::kGap) / 3).grows(1, 1)})
            .close();
    };
    return rowOf({titled(L"&Researched items", kResearched), titled(L"&Found chords", kFound),
                  titled(L"Chords &not found", kNotFound)})
        .grows(1, 9);
}

void FrmCifraCreator::addTips() {
    addTip(item(kResearched),
           u"Everything in the song that looks like a chord, and how the chart writes it");
    addTip(item(kFound), u"The chords of the chart that the dictionary can show you");
    addTip(item(kNotFound),
           u"The chords of the chart that the dictionary does not know: are they spelled right?");
    addTip(item(kFlatB), u"As in German and Slavic songs, where H is what others call B");
    addTip(item(kSeventhInNinth),
           u"C9, C11 and C13 are chords with a seventh in this song; else a note is added to C");
}

void FrmCifraCreator::onPlaced() {
    Rb1_.place(rectOf(placeOf(song_)));
    RTB2_.place(rectOf(placeOf(chart_)));
    const HWND lines = windowOf(lines_);
    const auto fit = [lines](LineColumn column, int width) {
        ListView_SetColumnWidth(lines, column, width);
        return width;
    };
    const auto needed = [lines](const wchar_t* longest) {
        return ListView_GetStringWidth(lines, longest) + scaled(kCellEnds);
    };
    int rest = placeOf(lines_).width - ::GetSystemMetrics(SM_CXVSCROLL) - 4;
    rest -= fit(kNumberColumn, needed(L"9999"));
    rest -= fit(kVerdictColumn, needed(L"tablature *"));
    rest -= fit(kRemarkColumn, rest * 2 / 5);
    fit(kTextColumn, rest);
}

}  // namespace melvorin
