#include "chords/FrmCifraCreator.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/FileSize.h"
#include "base/ProgramSettings.h"
#include "base/TabExpansion.h"
#include "chords/ChartRtf.h"
#include "chords/ChordLine.h"
#include "chords/CreatorKeys.h"
#include "chords/SuffixNormaliser.h"
#include "platform/Handles.h"
#include "platform/HeldKeys.h"
#include "rtf/FileKind.h"

namespace melvorin {
namespace {

// The chart box shows so many characters of a long chart; the document gets all.
constexpr std::size_t kLongestPreview = 500'000;
// And the song box so many of a long song; what follows is used unseen.
constexpr std::size_t kLongestInput = 1'000'000;
constexpr UINT_PTR kChangeTimer = 1;
constexpr UINT kChangeMs = 250;  // typing goes on until so long nothing was typed

COLORREF colourOf(const SourceLine& line) {
    if ((line.remarks & LeftOut) != 0)
        return RGB(128, 128, 128);
    switch (line.verdict) {
        case LineVerdict::Chords:
            return RGB(192, 0, 0);
        case LineVerdict::Section:
            return RGB(0, 64, 160);
        case LineVerdict::Tablature:
            return RGB(0, 110, 60);
        case LineVerdict::Directive:
            return RGB(110, 70, 140);
        case LineVerdict::Lyrics:
            break;
    }
    return ::GetSysColor(COLOR_WINDOWTEXT);
}

// Tab and Escape are the dialog's also in the boxes, and Enter is theirs. The control is not asked:
// its own answer would switch it into a mode where Enter presses the default button.
LRESULT dialogCode(HWND window, WPARAM wParam) {
    const LRESULT own = DLGC_WANTARROWS | DLGC_WANTCHARS;
    const bool readOnly = (::GetWindowLongPtrW(window, GWL_STYLE) & ES_READONLY) != 0;
    return wParam == VK_RETURN && !readOnly ? own | DLGC_WANTMESSAGE : own;
}

LRESULT CALLBACK answerDialog(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                              DWORD_PTR) {
    return message == WM_GETDLGCODE
               ? dialogCode(window, wParam)
               : subclassDefault(answerDialog, id, window, message, wParam, lParam);
}

// A text as chart lines, coloured by what the key change takes for chords.
std::vector<ImportedLine> linesOf(TextView text, const SongDiagrams& diagrams) {
    std::vector<ImportedLine> lines;
    for (const TextView line : splitLines(text))
        lines.push_back({Text(line), diagrams.changesWithKey(line), lines.size()});
    return lines;
}

Selection rangeAt(std::size_t begin, std::size_t length) {
    return {static_cast<std::int32_t>(begin), static_cast<std::int32_t>(begin + length)};
}

void showAt(RichEdit& box, Selection range) {
    box.select(range);
    box.scrollCaretIntoView();
}

}  // namespace

std::optional<CreatedChart> FrmCifraCreator::run(HWND owner, const TakenSong& song) {
    taken_ = &song;
    draft_.setDiagrams(song.diagrams);
    face_ = editorFontFace(services_);
    converted_ = accepted_ = inPlace_ = false;
    if (!createWindow(owner))
        return std::nullopt;
    showSong();
    runModal(owner);
    if (!accepted_)
        return std::nullopt;
    return std::move(result_);
}

// ---- Messages --------------------------------------------------------------------------------

void FrmCifraCreator::onException(const std::exception& error) {
    reportFailure(services_.messages, u"This song cannot be worked on (" + fromUtf8(error.what()) +
                                          u"). The document is as it was.");
}

LRESULT FrmCifraCreator::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NOTIFY:
            return onNotify(lParam);
        case WM_TIMER:
            if (wParam == kChangeTimer)
                refresh();
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void FrmCifraCreator::onCommand(int id, int code) {
    switch (id) {
        case kRb1:
            if (code == EN_CHANGE && !settingInput_)
                inputChanged();
            break;
        case kOpenFile:
            openFile();
            break;
        case kPaste:
            paste();
            break;
        case kCmd1:
        case kMakeChart:
            converted_ = id == kCmd1;
            refresh();
            break;
        case kResearched:
        case kFound:
        case kNotFound:
            if (code == LBN_SELCHANGE || code == LBN_DBLCLK)
                onListPick(id);
            break;
        case kInPlace:
            inPlace_ = ::IsDlgButtonChecked(handle(), kInPlace) == BST_CHECKED;
            break;
        case kFlatB:
        case kSeventhInNinth:
            chooseReading(id);
            break;
        case IDOK:
            // What was typed a moment ago belongs to the chart.
            refresh();
            accepted_ = hasResult();
            if (accepted_)
                endModal();
            break;
        default:
            Form::onCommand(id, code);
            break;
    }
}

LRESULT FrmCifraCreator::onNotify(LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.idFrom != kLines)
        return 0;
    switch (header.code) {
        case LVN_GETDISPINFOW:
            onLineText(lParam);
            return 0;
        case LVN_KEYDOWN:
            onLineKey(reinterpret_cast<const NMLVKEYDOWN*>(lParam)->wVKey);
            return 0;
        case LVN_ITEMCHANGED:
            if ((reinterpret_cast<const NMLISTVIEW*>(lParam)->uNewState & LVIS_FOCUSED) != 0)
                onLinePick();
            return 0;
        case LVN_ODFINDITEMW:
            return -1;  // letters give verdicts
        case NM_CUSTOMDRAW:
            return onLineDraw(lParam);
        default:
            return 0;
    }
}

void FrmCifraCreator::onLineText(LPARAM lParam) const {
    LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
    const auto row = static_cast<std::size_t>(item.iItem);
    if ((item.mask & LVIF_TEXT) == 0 || row >= draft_.song().source.size())
        return;
    const SourceLine& line = draft_.song().source[row];
    Text text;
    switch (item.iSubItem) {
        case kNumberColumn:
            text = decimal(static_cast<std::int64_t>(row + 1));
            break;
        case kVerdictColumn:
            text = Text(nameOf(line.verdict)).append(line.chosen ? u" *" : u"");
            break;
        case kTextColumn:
            text = line.text.substr(0, 200);
            break;
        default:
            text = remarkText(line.remarks);
            break;
    }
    const std::size_t length =
        std::min(text.size(), static_cast<std::size_t>(std::max(item.cchTextMax, 1)) - 1);
    std::copy_n(text.begin(), length, item.pszText);
    item.pszText[length] = 0;
}

LRESULT FrmCifraCreator::onLineDraw(LPARAM lParam) const {
    auto& draw = *reinterpret_cast<NMLVCUSTOMDRAW*>(lParam);
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    const auto row = static_cast<std::size_t>(draw.nmcd.dwItemSpec);
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && row < draft_.song().source.size())
        draw.clrText = colourOf(draft_.song().source[row]);
    return CDRF_DODEFAULT;
}

void FrmCifraCreator::onLineKey(WORD key) {
    const auto verdict = runWithoutShift(kLineKeys, strokeOf(key));
    if (!verdict)
        return;
    refreshIfTyped();
    std::vector<std::size_t> lines;
    for (int row = -1; (row = ListView_GetNextItem(item(kLines), row, LVNI_SELECTED)) >= 0;)
        lines.push_back(static_cast<std::size_t>(row));
    draft_.choose(lines, *verdict);
    converted_ = false;
    showChart();
    showLists();
    onLinePick();
}

// ---- Places ----------------------------------------------------------------------------------

const std::vector<ListedChord>& FrmCifraCreator::listOf(int id) const {
    return id == kResearched ? draft_.researched()
           : id == kFound    ? draft_.found()
                             : draft_.notFound();
}

// Picking the same entry again goes to its next place.
void FrmCifraCreator::onListPick(int id) {
    if (refreshIfTyped())
        return;
    const LRESULT picked = ::SendMessageW(item(id), LB_GETCURSEL, 0, 0);
    const std::vector<ListedChord>& list = listOf(id);
    if (picked < 0 || static_cast<std::size_t>(picked) >= list.size())
        return;
    const auto entry = static_cast<std::size_t>(picked);
    const std::vector<std::size_t>& uses = list[entry].uses;
    const bool again = id == lastList_ && entry == lastEntry_;
    lastUse_ = again ? (lastUse_ + 1) % uses.size() : 0;
    lastList_ = id;
    lastEntry_ = entry;
    goTo(draft_.song().chords[uses[lastUse_]]);
}

void FrmCifraCreator::goTo(const ImportedChord& chord) {
    showAt(Rb1_, rangeAt(draft_.sourcePosition(chord.sourceLine, chord.sourceIndex),
                         chord.written.size()));
    if (!converted_)
        showAt(RTB2_, rangeAt(draft_.chartPosition(chord.chartLine, chord.chartIndex),
                              chord.chord.size()));
    const HWND lines = item(kLines);
    const int row = static_cast<int>(chord.sourceLine);
    settingInput_ = true;  // the row follows the chord, not the other way
    ListView_SetItemState(lines, -1, 0, LVIS_SELECTED);
    ListView_SetItemState(lines, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(lines, row, FALSE);
    settingInput_ = false;
}

void FrmCifraCreator::onLinePick() {
    const int row = ListView_GetNextItem(item(kLines), -1, LVNI_FOCUSED);
    if (row >= 0 && !settingInput_)
        showPlaces(static_cast<std::size_t>(row));
}

void FrmCifraCreator::showPlaces(std::size_t sourceLine) {
    if (sourceLine >= draft_.song().source.size())
        return;
    const SourceLine& line = draft_.song().source[sourceLine];
    // The list may be too narrow for a remark.
    const Text remark = remarkText(line.remarks);
    const Text told = remark.empty()
                          ? draft_.summary()
                          : u"Line " + decimal(static_cast<std::int64_t>(sourceLine + 1)) + u", " +
                                Text(nameOf(line.verdict)) + u": " + remark + u".";
    ::SetWindowTextW(item(kSummary), wide(told));
    showAt(Rb1_, rangeAt(draft_.sourcePosition(sourceLine), line.text.size()));
    if (converted_)
        return;
    const std::size_t begin = draft_.chartPosition(line.firstChartLine);
    const std::size_t end = draft_.chartPosition(line.firstChartLine + line.chartLines);
    // Without the line end of its last line.
    const bool isLast = line.firstChartLine + line.chartLines == draft_.song().lines.size();
    showAt(RTB2_, rangeAt(begin, line.chartLines > 0 ? end - begin - (isLast ? 0 : 1) : 0));
}

// ---- The song and the chart ------------------------------------------------------------------

void FrmCifraCreator::openFile() {
    FileDialogRequest request;
    request.title = u"Open a Song";
    request.filters = {
        {u"Songs (*.txt;*.cho;*.pro;*.crd)", u"*.txt;*.cho;*.crd;*.chopro;*.chordpro;*.pro"},
        {u"All Files (*.*)", u"*.*"}};
    const auto choice = services_.dialogs.open(request);
    if (!choice)
        return;
    const CursorScope hourglass(IDC_WAIT);
    const auto refuse = [&](TextView cause) {
        reportFailure(services_.messages,
                      Text(u"Cannot open ").append(choice->path).append(u": ").append(cause));
    };
    const auto size = services_.files.size(choice->path);
    if (size && *size.value > kLargestFile)
        return refuse(u"The file is too large.");
    const auto bytes = services_.files.read(choice->path);
    if (!bytes)
        return refuse(bytes.cause);
    const DecodedText decoded = decodeText(*bytes.value, services_.ansi);
    if (looksBinary(*bytes.value) || decoded.lossy)
        return refuse(u"The file holds no text.");
    setInPlace(false);
    setInput(decoded.text);
}

std::optional<Text> FrmCifraCreator::clipboardText() {
    const auto tell = [&](TextView text) {
        services_.messages.show(text, kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
        return std::nullopt;
    };
    if (!services_.clipboard.hasText())
        return tell(u"The clipboard holds no text that could be pasted.");
    Result<Text> text = services_.clipboard.text(kLargestFile);
    if (!text)
        return tell(u"The text on the clipboard cannot be pasted.\r\n\r\n" + text.cause);
    return std::move(*text.value);
}

// Pasting by the button means the whole song.
void FrmCifraCreator::paste() {
    const auto text = clipboardText();
    if (!text)
        return;
    setInPlace(false);
    setInput(*text);
}

// Pasting by the keyboard goes to the caret, and takes only the text of what was copied.
void FrmCifraCreator::pasteAtCaret() {
    const auto text = clipboardText();
    if (!text)
        return;
    const Selection selection = Rb1_.selection();
    const bool isWhole = selection.begin == 0 && selection.end >= Rb1_.length() && unseen_.empty();
    if (isWhole) {
        setInPlace(false);
        draft_.setOptions({});
    }
    if (text->size() <= kLongestInput / 4) {
        ::SendMessageW(Rb1_.handle(), EM_REPLACESEL, TRUE, lparamOf(wide(*text)));
        return;
    }
    Text whole = sourceText();
    whole.replace(static_cast<std::size_t>(selection.begin),
                  static_cast<std::size_t>(selection.end - selection.begin),
                  toEditorText(*text).chars);
    setInput(whole);
}

LRESULT CALLBACK FrmCifraCreator::songBox(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR self) {
    const bool isPaste = message == WM_PASTE || (message == WM_KEYDOWN && pastes(strokeOf(wParam)));
    if (message == WM_GETDLGCODE)
        return dialogCode(window, wParam);
    if (!isPaste)
        return subclassDefault(songBox, id, window, message, wParam, lParam);
    auto* creator = reinterpret_cast<FrmCifraCreator*>(self);
    try {
        creator->pasteAtCaret();
    } catch (const std::exception& error) {
        creator->onException(error);
    }
    return 0;
}

// The song, also what the box does not show of it. A soft line break is a line end here.
Text FrmCifraCreator::sourceText() const {
    Text text = Rb1_.text().chars;
    std::replace(text.begin(), text.end(), u'\v', u'\r');
    return text.append(unseen_);
}

void FrmCifraCreator::setInput(TextView text) {
    const Text chars = toEditorText(text).chars;
    std::size_t shown = chars.size();
    if (shown > kLongestInput) {
        const std::size_t lineEnd = chars.rfind(u'\r', kLongestInput);
        shown = lineEnd == Text::npos ? kLongestInput : lineEnd + 1;
    }
    settingInput_ = true;
    {
        const EditorWork work(Rb1_);
        Rb1_.select({0, -1});
        Rb1_.replaceSelection(TextView(chars).substr(0, shown));
        Rb1_.select({0, 0});
        Rb1_.scrollTo({0, 0});
    }
    settingInput_ = false;
    unseen_ = chars.substr(shown);
    draft_.setOptions({});  // another song has its own
    ::SetWindowTextW(item(kSongLabel), unseen_.empty()
                                           ? L"&Song as it was found"
                                           : L"&Song as it was found (its end is not shown)");
    converted_ = false;
    refresh();
    ::SetFocus(Rb1_.handle());
}

// The document's own text, selected, so that a paste takes its place.
void FrmCifraCreator::showSong() {
    const bool hasSong = !taken_->text.empty();
    ::EnableWindow(item(kInPlace), hasSong);
    setInPlace(hasSong);
    setInput(taken_->text);
    Rb1_.select({0, -1});
}

void FrmCifraCreator::setInPlace(bool on) {
    inPlace_ = on;
    ::CheckDlgButton(handle(), kInPlace, on ? BST_CHECKED : BST_UNCHECKED);
}

void FrmCifraCreator::inputChanged() {
    typed_ = true;
    ::SetTimer(handle(), kChangeTimer, kChangeMs, nullptr);
}

// The lists are of the text before what was typed a moment ago; true when they were made anew.
bool FrmCifraCreator::refreshIfTyped() {
    if (!typed_)
        return false;
    refresh();
    return true;
}

void FrmCifraCreator::refresh() {
    ::KillTimer(handle(), kChangeTimer);
    typed_ = false;
    if (Rb1_.isEmpty() && !unseen_.empty())
        return setInput({});  // who clears the box means the whole song
    draft_.setSource(sourceText());
    showChart();
    showLists();
}

// What the user says of the song holds for all of it, and until another one comes.
void FrmCifraCreator::chooseReading(int id) {
    const bool on = ::IsDlgButtonChecked(handle(), id) == BST_CHECKED;
    ImportOptions options = draft_.options();
    if (id == kFlatB)
        options.plainB = on ? PlainB::IsFlat : PlainB::IsNatural;
    else
        options.plainNinth = on ? PlainNinth::HasSeventh : PlainNinth::IsAdded;
    draft_.setOptions(options);
    converted_ = false;
    refresh();
}

void FrmCifraCreator::showReading() {
    const SongNotation& notation = draft_.song().notation;
    const auto show = [this](int id, bool isOpen, bool on) {
        ::CheckDlgButton(handle(), id, isOpen && on ? BST_CHECKED : BST_UNCHECKED);
        ::EnableWindow(item(id), isOpen);
    };
    show(kFlatB, draft_.hasPlainB(), notation.reading.naming == Naming::German);
    show(kSeventhInNinth, notation.hasPlainNinths, notation.reading.ninthsHaveSevenths);
}

void FrmCifraCreator::showChart() {
    Text source = sourceText();
    const SongDiagrams& diagrams = taken_->diagrams;
    result_ = {converted_ ? linesOf(normaliseSuffixes(expandTabs(source)), diagrams)
                          : draft_.colouredLines(),
               face_, kFontPoints, diagrams, std::move(source)};
    const EditorWork work(RTB2_);
    const ScrollPosition scroll = RTB2_.scrollPosition();
    const bool isShort = result_.lines.size() <= kMostRichLines;
    if (!isShort || !RTB2_.loadRtf(chartRtf(result_.lines, face_, kFontPoints, diagrams))) {
        EditorText text = chartText(result_.lines, diagrams);
        text.chars.resize(std::min(text.chars.size(), kLongestPreview));
        RTB2_.loadPlain(text, face_, kFontPoints);
    }
    ::SendMessageW(RTB2_.handle(), EM_SETREADONLY, TRUE, 0);
    ::SetWindowSubclass(RTB2_.handle(), answerDialog, 1, 0);
    RTB2_.scrollTo(scroll);
}

bool FrmCifraCreator::hasResult() const {
    return std::any_of(result_.lines.begin(), result_.lines.end(),
                       [](const ImportedLine& line) { return !line.text.empty(); });
}

void FrmCifraCreator::showLists() {
    for (const int id : {kResearched, kFound, kNotFound}) {
        const HWND list = item(id);
        ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
        ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
        for (const ListedChord& entry : listOf(id))
            ::SendMessageW(list, LB_ADDSTRING, 0, lparamOf(wide(entry.label)));
        ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
        ::InvalidateRect(list, nullptr, TRUE);
    }
    lastList_ = 0;
    showReading();
    const HWND lines = item(kLines);
    ListView_SetItemCountEx(lines, static_cast<int>(draft_.song().source.size()), LVSICF_NOSCROLL);
    ::InvalidateRect(lines, nullptr, TRUE);
    Text summary = converted_
                       ? Text(u"The text with its chord suffixes in one spelling, line by line.")
                       : draft_.summary();
    if (result_.lines.size() > kMostColouredLines)
        summary += u" Too long to be coloured.";
    ::SetWindowTextW(item(kSummary), wide(summary));
    ::SetWindowTextW(item(kChartLabel), converted_ ? L"C&hart: converted text" : L"C&hart");
    ::EnableWindow(item(IDOK), hasResult());
}

}  // namespace melvorin
