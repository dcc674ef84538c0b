#include "dictionary/DictionaryPanel.h"
#include "base/DiagramFont.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/Paths.h"
#include "chords/SuffixNormaliser.h"
#include "dictionary/AdoSource.h"
#include "platform/ControlSize.h"

namespace melvorin {
namespace {

using enum PanelPart;

constexpr std::size_t kParts = static_cast<std::size_t>(PanelPart::count);
constexpr int kFirstId = 100;
constexpr int kLargestFont = 280;
constexpr int kFontRoom = 14;  // around a diagram, pixels at 96 dpi

constexpr std::size_t numberOf(PanelPart part) {
    return static_cast<std::size_t>(part);
}

// Enter finds, and Esc leaves: the two have the ids that dialogs have for them.
constexpr int idOf(PanelPart part) {
    return part == Command1 ? IDOK : kFirstId + static_cast<int>(part);
}

PanelPart partOfId(int id) {
    return id == IDOK ? Command1 : static_cast<PanelPart>(id - kFirstId);
}

constexpr PanelPart kDiagrams[] = {GB1, GB2, GB3, GB4, GB5, GB6};

struct ButtonText {
    PanelPart part;
    TextView caption;
    TextView tip;
};
constexpr TextView kInsertTip = u"Put this diagram into the document";
constexpr TextView kSearchTip = u"Show the window of search again";
constexpr TextView kGridTip = u"Show the table of all chords";
constexpr ButtonText kButtons[] = {
    {Command1, u"Find Chord", u"Look the chord up (Enter)"},
    {Other, u"", u"Look this chord up instead"},
    {GB1, u"", kInsertTip},
    {GB2, u"", kInsertTip},
    {GB3, u"", kInsertTip},
    {GB4, u"", kInsertTip},
    {GB5, u"", kInsertTip},
    {GB6, u"", u"Arm without Chord: put the empty neck into the document"},
    {First, u"|<", u"First chord"},
    {Previous, u"<", u"Previous chord"},
    {Next, u">", u"Next chord"},
    {Last, u">|", u"Last chord"},
    {Gb9, u"Expand Window", u"Show the diagrams larger"},
    {GB10, u"Show DataGrid", kGridTip},
    {GB15, u"Show DataGrid", kGridTip},
    {GB7, u"Show the Window of Search", kSearchTip},
    {GB8, u"Close Dictionary", u"Close the dictionary"},
    {GB13, u"Close Dictionary", u"Close the dictionary"},
    {GB14, u"Close Dictionary", u"Close the dictionary"},
};

struct GridColumn {
    const wchar_t* title;
    int width;  // pixels at 96 dpi
};
// In the order of the record source.
constexpr GridColumn kColumns[] = {{L"Symbol", 84}, {L"Name", 168}, {L"Font", 40}, {L"1", 28},
                                   {L"2", 28},      {L"3", 28},     {L"4", 28},    {L"5", 28}};

HFONT createFont(const wchar_t* face, int height, int weight) {
    return ::CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                         OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                         DEFAULT_PITCH, face);
}

void setFont(HWND window, HFONT font) {
    ::SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

std::unique_ptr<RowSource> makeAdoSource() {
    return std::make_unique<AdoSource>();
}

}  // namespace

DictionaryPanel::DictionaryPanel(const Services& services, Actions actions)
    : Form(services),
      actions_(std::move(actions)),
      dictionary_(services_.messages, makeAdoSource, normaliseSuffixes),
      sounds_(services_),
      parts_(kParts) {}

// ---- Creation ---------------------------------------------------------------------------------

bool DictionaryPanel::create(HWND parent) {
    if (!createForm(panelIn(parent, L"MelvorinDictionary", L"Dictionary")))
        return false;
    createLabels();
    createButtons();
    createGrid();
    for (const ButtonText& text : kButtons)
        addTip(part(text.part), text.tip);
    // Tab goes by the order in which they are on the screen.
    HWND former = HWND_TOP;
    for (const HWND part : parts_) {
        ::SetWindowPos(part, former, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        former = part;
    }
    choose(SearchField::Symbol);
    return true;
}

HWND DictionaryPanel::createControl(PanelPart part, const wchar_t* className, const wchar_t* text,
                                    DWORD style, DWORD extendedStyle) {
    const HWND control = melvorin::createControl(handle(), className, text, WS_CLIPSIBLINGS | style,
                                                 idOf(part), {}, extendedStyle);
    parts_[numberOf(part)] = control;
    return control;
}

void DictionaryPanel::createLabels() {
    labelFont_.reset(createFont(L"Verdana", -scaled(12), FW_NORMAL));
    nameFont_.reset(createFont(L"Verdana", -scaled(14), FW_BOLD));
    setFont(createControl(Label1, L"STATIC", L"Find the Chord:", SS_LEFT), labelFont_.get());
    createControl(TS1, L"EDIT", L"", WS_TABSTOP | WS_GROUP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE);
    createControl(Option1, L"BUTTON", L"By Symbol", WS_TABSTOP | WS_GROUP | BS_AUTORADIOBUTTON);
    createControl(Option2, L"BUTTON", L"By Name", BS_AUTORADIOBUTTON);
    createControl(Notice, L"STATIC", L"", SS_LEFT | SS_NOPREFIX);
    setFont(createControl(LB, L"STATIC", L"",
                          SS_CENTER | SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE),
            nameFont_.get());
    createControl(Neck, L"STATIC", L"Arm without Chord", SS_CENTER | SS_ENDELLIPSIS);
    createControl(Record, L"STATIC", L"", SS_CENTER | SS_CENTERIMAGE);
}

void DictionaryPanel::createButtons() {
    for (const ButtonText& text : kButtons) {
        auto button = std::make_unique<TarnelButton>(sounds_);
        const DWORD style = WS_TABSTOP | WS_GROUP | (text.part == Command1 ? BS_DEFPUSHBUTTON : 0U);
        button->create(handle(), idOf(text.part), {}, text.caption, style);
        parts_[numberOf(text.part)] = button->handle();
        buttons_.push_back(std::move(button));
    }
}

TarnelButton& DictionaryPanel::button(PanelPart part) {
    const auto found = std::find_if(std::begin(kButtons), std::end(kButtons),
                                    [part](const ButtonText& text) { return text.part == part; });
    return *buttons_[static_cast<std::size_t>(found - std::begin(kButtons))];
}

void DictionaryPanel::createGrid() {
    const HWND grid = createControl(
        dtaDel, WC_LISTVIEWW, L"Chords",
        WS_TABSTOP | WS_GROUP | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
        WS_EX_CLIENTEDGE);
    ListView_SetExtendedListViewStyle(grid, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    int index = 0;
    for (const GridColumn& column : kColumns) {
        LVCOLUMNW wanted{};
        wanted.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        wanted.pszText = const_cast<wchar_t*>(column.title);
        wanted.cx = scaled(column.width);
        wanted.iSubItem = index;
        ::SendMessageW(grid, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index), lparamOf(&wanted));
        ++index;
    }
}

// ---- The dictionary ---------------------------------------------------------------------------

void DictionaryPanel::openDictionary() {
    const Text folder = services_.program.folder();
    if (fontCount_ == 0)
        fontCount_ = fonts_.load(folder);
    if (!dictionary_.records().isOpen()) {
        const Result<Done> opened = dictionary_.open(folder, services_.files);
        trouble_ = opened ? Text() : opened.cause;
    }
    for (const PanelPart part : {TS1, Option1, Option2, Command1})
        ::EnableWindow(this->part(part), trouble_.empty());
    setText(Notice, noticeText());
    showRecords();
}

PanelNotice DictionaryPanel::notice() const {
    if (!trouble_.empty())
        return PanelNotice::Page;
    return fontCount_ < kDiagramFontCount ? PanelNotice::Strip : PanelNotice::None;
}

Text DictionaryPanel::noticeText() const {
    if (!trouble_.empty())
        return u"The chord dictionary cannot be opened.\r\n\r\n" + trouble_ +
               u"\r\n\r\nEverything else works without it.";
    const Text found =
        fontCount_ == 0 ? Text(u"None") : u"Only " + decimal(static_cast<std::int64_t>(fontCount_));
    return found + u" of the " + decimal(static_cast<std::int64_t>(kDiagramFontCount)) +
           u" diagram fonts could be read from " + joinPath(services_.program.folder(), u"Fonts") +
           u". Without its font a diagram is shown as a letter.";
}

// The table may have other rows than before.
void DictionaryPanel::showRecords() {
    ListView_SetItemCountEx(part(dtaDel), static_cast<int>(dictionary_.records().count()),
                            LVSICF_NOSCROLL);
    ::InvalidateRect(part(dtaDel), nullptr, FALSE);
    showCurrent();
}

// The labels, the diagrams, the data control and the grid, all of the current record.
void DictionaryPanel::showCurrent() {
    setText(LB, dictionary_.shown().LB);
    showOther();
    const auto position = dictionary_.records().position();
    const std::size_t count = dictionary_.records().count();
    setText(Record, position ? decimal(static_cast<std::int64_t>(*position + 1)) + u" of " +
                                   decimal(static_cast<std::int64_t>(count))
                             : u"- of " + decimal(static_cast<std::int64_t>(count)));
    showGridRow();
    showEntryButtons();
}

// The room is there only while there is something in it.
void DictionaryPanel::showOther() {
    const auto& other = dictionary_.otherReading();
    setText(Other, other ? other->caption : Text());
    const bool wanted = other && view_ != PanelView::Grid;
    if (wanted == (layout_[Other].width > 0) || !shown_)
        return;
    if (::GetFocus() == part(Other))
        ::SetFocus(part(TS1));
    layOutParts();
}

void DictionaryPanel::showEntryButtons() {
    const ShownEntry& entry = dictionary_.shown();
    fitDiagramFont();
    for (std::size_t i = 0; i < kDiagramButtons; ++i) {
        const HWND window = part(kDiagrams[i]);
        ::SetWindowTextW(window, wide(entry.captions[i]));
        setFont(window, diagramFont_.get());
        // The character means nothing to someone who only hears it.
        button(kDiagrams[i])
            .setName(kDiagrams[i] == GB6
                         ? u"Arm without Chord"
                         : entry.LB + u", diagram " + decimal(static_cast<std::int64_t>(i + 1)));
        const bool visible = entry.visible[i] && layout_[kDiagrams[i]].width > 0;
        ::ShowWindow(window, visible ? SW_SHOWNA : SW_HIDE);
    }
    ::ShowWindow(part(Neck), entry.visible[5] && layout_[Neck].width > 0 ? SW_SHOWNA : SW_HIDE);
}

// As large as the widest diagram of the entry allows.
void DictionaryPanel::fitDiagramFont() {
    const Area& cell = layout_[GB1];
    const ShownEntry& entry = dictionary_.shown();
    const int room = scaled(kFontRoom);
    int height = std::clamp(cell.height - room, 1, scaled(kLargestFont));
    const wchar_t* const face = entry.face.empty() ? L"Wingdings" : wide(entry.face);
    diagramFont_.reset(createFont(face, height, FW_NORMAL));
    const WindowDc dc(handle());
    const SelectedObject selected(dc.get(), diagramFont_.get());
    int widest = 1;
    for (const Text& caption : entry.captions) {
        SIZE size{};
        ::GetTextExtentPoint32W(dc.get(), wide(caption), static_cast<int>(caption.size()), &size);
        widest = std::max(widest, static_cast<int>(size.cx));
    }
    const int available = std::max(1, cell.width - room);
    if (widest <= available)
        return;
    height = std::max(1, height * available / widest);
    ::SelectObject(dc.get(), ::GetStockObject(SYSTEM_FONT));
    diagramFont_.reset(createFont(face, height, FW_NORMAL));
}

void DictionaryPanel::showGridRow() {
    followsGrid_ = false;
    const HWND grid = part(dtaDel);
    ListView_SetItemState(grid, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    if (const auto position = dictionary_.records().position()) {
        const int row = static_cast<int>(*position);
        ListView_SetItemState(grid, row, LVIS_SELECTED | LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(grid, row, FALSE);
    }
    followsGrid_ = true;
}

void DictionaryPanel::findChord() {
    const bool byName = ::SendMessageW(part(Option2), BM_GETCHECK, 0, 0) == BST_CHECKED;
    setText(TS1, dictionary_.find(windowText(part(TS1)),
                                  byName ? SearchField::Name : SearchField::Symbol));
    ::SendMessageW(part(TS1), EM_SETSEL, 0, -1);
    showRecords();
}

// The keyboard goes back to the search box: the line is gone.
void DictionaryPanel::findOther() {
    const auto other = dictionary_.otherReading();
    if (!other)
        return;
    ::SetFocus(part(TS1));
    choose(SearchField::Symbol);
    setText(TS1, other->symbol);
    findChord();
}

void DictionaryPanel::insertDiagram(std::size_t index) {
    const ShownEntry& entry = dictionary_.shown();
    if (!entry.captions[index].empty())
        actions_.insert(entry.captions[index], entry.face);
}

void DictionaryPanel::move(void (ChordDictionary::*where)()) {
    (dictionary_.*where)();
    showCurrent();
}

// ---- Views ------------------------------------------------------------------------------------

void DictionaryPanel::show() {
    if (!trouble_.empty() || fontCount_ == 0)
        openDictionary();
    shown_ = true;
    ::ShowWindow(handle(), SW_SHOWNA);
    switchTo(PanelView::Search);
}

void DictionaryPanel::hide() {
    if (!shown_)
        return;
    shown_ = false;
    const HWND focus = ::GetFocus();
    const bool hadFocus = focus == handle() || ::IsChild(handle(), focus);
    ::ShowWindow(handle(), SW_HIDE);
    actions_.layOut();
    if (hadFocus)
        actions_.leave();
}

// The keyboard goes to what the view is for: the button that was clicked is gone.
void DictionaryPanel::switchTo(PanelView view) {
    view_ = view;
    actions_.layOut();
    PanelPart target = view == PanelView::Grid ? dtaDel : TS1;
    if (!trouble_.empty())
        target = view == PanelView::Search ? GB14 : GB7;
    if (target == TS1)
        ::SendMessageW(part(TS1), EM_SETSEL, 0, -1);
    ::SetFocus(part(target));
}

void DictionaryPanel::place(const Area& area) {
    ::SetWindowPos(handle(), nullptr, area.left, area.top, area.width, area.height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
    layOutParts();
}

void DictionaryPanel::layOutParts() {
    RECT client{};
    ::GetClientRect(handle(), &client);
    const bool other = dictionary_.otherReading().has_value();
    layout_ = layoutPanel(
        view_, notice(), other, static_cast<int>(client.right), static_cast<int>(client.bottom),
        systemDpi(), {static_cast<int>(neededSize(part(Neck), 0).height), [this](PanelPart it) {
                          return static_cast<int>(neededSize(part(it), 0).width);
                      }});
    for (std::size_t i = 0; i < kParts; ++i) {
        const Area& area = layout_.areas[i];
        ::SetWindowPos(parts_[i], nullptr, area.left, area.top, area.width, area.height,
                       SWP_NOZORDER | SWP_NOACTIVATE);
        ::ShowWindow(parts_[i], area.width > 0 ? SW_SHOWNA : SW_HIDE);
    }
    showEntryButtons();
    showGridRow();
    // A label does not draw itself anew where only its size has changed.
    ::RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void DictionaryPanel::setText(PanelPart part, TextView text) {
    ::SetWindowTextW(this->part(part), wide(Text(text)));
}

void DictionaryPanel::choose(SearchField field) {
    const bool byName = field == SearchField::Name;
    ::CheckRadioButton(handle(), idOf(Option1), idOf(Option2), idOf(byName ? Option2 : Option1));
}

void DictionaryPanel::press(PanelPart part) {
    ::SendMessageW(this->part(part), BM_CLICK, 0, 0);
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT DictionaryPanel::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NOTIFY:
            return onNotify(lParam);
        case WM_SYSCOLORCHANGE:
            for (const HWND part : parts_)
                ::SendMessageW(part, message, wParam, lParam);
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void DictionaryPanel::onCommand(int id, int event) {
    if (event != BN_CLICKED)
        return;
    if (id == IDCANCEL)
        return actions_.leave();
    // Enter in the grid is no search: its box is not there.
    if (id == IDOK && layout_[TS1].width == 0)
        return;
    switch (partOfId(id)) {
        case Command1:
            return findChord();
        case Other:
            return findOther();
        case GB1:
        case GB2:
        case GB3:
        case GB4:
        case GB5:
        case GB6:
            return insertDiagram(numberOf(partOfId(id)) - numberOf(GB1));
        case First:
            return move(&ChordDictionary::moveFirst);
        case Previous:
            return move(&ChordDictionary::movePrevious);
        case Next:
            return move(&ChordDictionary::moveNext);
        case Last:
            return move(&ChordDictionary::moveLast);
        case Gb9:
            return switchTo(PanelView::Diagrams);
        case GB10:
        case GB15:
            return switchTo(PanelView::Grid);
        case GB7:
            return switchTo(PanelView::Search);
        case GB8:
        case GB13:
        case GB14:
            return hide();
        default:
            return;
    }
}

LRESULT DictionaryPanel::onNotify(LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.hwndFrom != part(dtaDel))
        return 0;
    switch (header.code) {
        case LVN_GETDISPINFOW:
            onGridText(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
            return 0;
        case LVN_ITEMCHANGED:
            onGridChange(*reinterpret_cast<const NMLISTVIEW*>(lParam));
            return 0;
        case LVN_ODFINDITEMW:
            return onGridFind(*reinterpret_cast<const NMLVFINDITEMW*>(lParam));
        default:
            return 0;
    }
}

void DictionaryPanel::onGridText(NMLVDISPINFOW& info) const {
    const Recordset& records = dictionary_.records();
    const auto row = static_cast<std::size_t>(info.item.iItem);
    const auto column = static_cast<std::size_t>(info.item.iSubItem);
    if (!(info.item.mask & LVIF_TEXT) || info.item.iItem < 0 || row >= records.count() ||
        column >= records.fields().size())
        return;
    const std::optional<Text>& cell = records.cell(row, column);
    info.item.pszText = const_cast<wchar_t*>(cell ? wide(*cell) : L"");
}

void DictionaryPanel::onGridChange(const NMLISTVIEW& change) {
    const bool selected = (change.uChanged & LVIF_STATE) && (change.uNewState & LVIS_SELECTED) &&
                          !(change.uOldState & LVIS_SELECTED);
    if (!followsGrid_ || !selected || change.iItem < 0)
        return;
    dictionary_.moveTo(static_cast<std::size_t>(change.iItem));
    showCurrent();
}

// Typing in the grid goes to the next symbol that begins so.
LRESULT DictionaryPanel::onGridFind(const NMLVFINDITEMW& find) const {
    constexpr LRESULT notFound = -1;
    if (!(find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || find.lvfi.psz == nullptr)
        return notFound;
    const auto row = dictionary_.records().rowBeginningWith(
        textOf(find.lvfi.psz), 0, static_cast<std::size_t>(std::max(0, find.iStart)));
    return row ? static_cast<LRESULT>(*row) : notFound;
}

// Not every text box of one line knows Ctrl+A.
bool DictionaryPanel::onKeyDown(WPARAM key) {
    if (key != 'A' || ::GetFocus() != part(TS1) || ::GetKeyState(VK_CONTROL) >= 0)
        return false;
    ::SendMessageW(part(TS1), EM_SETSEL, 0, -1);
    return true;
}

bool DictionaryPanel::editsText(const MSG& message) const {
    if (message.hwnd != part(TS1) || message.message != WM_KEYDOWN ||
        ::GetKeyState(VK_CONTROL) >= 0)
        return false;
    return TextView(u"ACVXYZ").find(static_cast<char16_t>(message.wParam)) != TextView::npos;
}

}  // namespace melvorin
