#include "chords/FrmToKey.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

constexpr int kTonics = 12;
constexpr std::size_t kPreviewLines = 14;
// Pixels at 96 dpi.
constexpr int kFretsWidth = 330;
constexpr int kFretsHeight = 232;
constexpr int kPreviewWidth = 420;
constexpr int kPreviewHeight = 330;

Text stepsInWords(int steps) {
    if (steps == 0)
        return u"as it is";
    const int count = std::abs(steps);
    return Text(steps > 0 ? u"up " : u"down ") + decimal(count) +
           (count == 1 ? u" half step" : u" half steps");
}

// An edit control wants CR LF.
Text inEditLines(TextView song) {
    Text lines;
    lines.reserve(song.size() + song.size() / 16);
    for (const char16_t c : song)
        lines += c == u'\r' || c == u'\n' || c == u'\v' ? Text(u"\r\n") : Text(1, c);
    return lines;
}

}  // namespace

std::optional<ToKeyChoice> FrmToKey::ask(HWND owner, const ToKeyOffer& offer) {
    offer_ = &offer;
    taken_.reset();
    left_ = offer.way.movesOthers ? findLeftOver(offer.song) : LeftOver();
    const auto capo = findCapo(offer.song);
    capo_ = capo ? capo->fret : 0;
    choices_.clear();
    if (const auto& key = offer.way.found.first)
        choices_ = capoChoices(chordsOfSong(offer.song), *key, capo_, offer.grips);
    if (!createWindow(owner))
        return std::nullopt;
    showKey();
    ::SetFocus(item(kTo));
    runModal(owner);
    offer_ = nullptr;
    return taken_;
}

// ---- What it consists of ----------------------------------------------------------------------

bool FrmToKey::createWindow(HWND owner) {
    if (!createForm(L"MelvorinFrmToKey", L"To Another Key", owner))
        return false;
    const Cell keys = createKeys();
    const Cell frets = createFrets();
    const Cell preview = createPreview();
    layOut(columnOf({rowOf({columnOf({keys, frets}).grows(0, 1), preview}),
                     atRight({button(ok_, kOk, u"Change the &Key", WS_TABSTOP | BS_DEFPUSHBUTTON),
                              button(cancel_, kCancel, u"Cancel")})})
               .apart(),
           owner);
    const bool hasKey = !choices_.empty();
    for (const int id : {kTo, kFrets})
        ::EnableWindow(item(id), hasKey);
    takeOff_.setEnabled(hasKey && capo_ > 0);
    return true;
}

Cell FrmToKey::createKeys() {
    const KeyWay& way = offer_->way;
    const Text from =
        choices_.empty()
            ? Text(u"there are no chords")
            : keyAndCapo(way.found, way.side, capo_ > 0 ? std::optional(capo_) : std::nullopt);
    const Cell fromWord = label(L"From:");
    const Cell fromKey = label(wide(from), SS_NOPREFIX, kFrom);
    const Cell toWord = label(L"&To:");
    const Cell to = dropDown(kTo, CBS_DROPDOWNLIST | WS_VSCROLL);
    for (int tonic = 0; tonic < kTonics && !choices_.empty(); ++tonic) {
        const Key key{tonic, way.found.first->minor};
        const Text entry = keyName(key, way.side) + u", " +
                           stepsInWords(nearestSteps(way.found.first->tonic, tonic));
        ::SendMessageW(windowOf(to), CB_ADDSTRING, 0, lparamOf(wide(entry)));
    }
    if (!choices_.empty())
        ::SendMessageW(windowOf(to), CB_SETCURSEL, static_cast<WPARAM>(way.found.first->tonic), 0);
    ::SendMessageW(windowOf(to), CB_SETMINVISIBLE, kTonics, 0);
    return group(L"Key", gridOf(2, {fromWord, fromKey, toWord, to.grows(1, 0)}));
}

Cell FrmToKey::createFrets() {
    const Cell words =
        label(offer_->grips == nullptr ? L"The &frets. There is no chord book to count grips by."
                                       : L"The &frets, the easiest first, and their grips:");
    const Cell frets =
        control(WC_LISTVIEWW, L"", WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
                kFrets, WS_EX_CLIENTEDGE)
            .least(kFretsWidth, kFretsHeight)
            .grows(0, 1);
    fillFrets();
    const Cell write = button(write_, kWrite, u"&Write for Capo 9");
    const Cell off = button(takeOff_, kTakeOff, u"Take the Capo &Off");
    return group(L"Capo", columnOf({columnOf({words, frets}).close(), rowOf({write, off})}));
}

void FrmToKey::fillFrets() {
    const HWND list = item(kFrets);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT);
    for (const wchar_t* caption : {L"Capo", L"Shapes in", L"Open", L"Barre", L"Other"}) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = const_cast<wchar_t*>(caption);
        column.iSubItem = Header_GetItemCount(ListView_GetHeader(list));
        ::SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem),
                       lparamOf(&column));
    }
    const auto number = [](std::size_t n) { return decimal(static_cast<std::int64_t>(n)); };
    for (int row = 0; row < static_cast<int>(choices_.size()); ++row) {
        const CapoChoice& choice = choices_[static_cast<std::size_t>(row)];
        const bool isCounted = offer_->grips != nullptr;
        const std::array<Text, 5> cells{
            (choice.fret == 0 ? Text(u"none") : decimal(choice.fret)) +
                (choice.fret == capo_ ? u" (now)" : u""),
            keyName(choice.shapes, offer_->way.side), isCounted ? number(choice.open) : Text(),
            isCounted ? number(choice.barres) : Text(),
            isCounted ? number(choice.closed + choice.unknown) : Text()};
        for (int column = 0; column < static_cast<int>(cells.size()); ++column) {
            Text text = cells[static_cast<std::size_t>(column)];
            LVITEMW cell{};
            cell.mask = LVIF_TEXT;
            cell.iItem = row;
            cell.iSubItem = column;
            cell.pszText = wideBuffer(text);
            ::SendMessageW(list, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, lparamOf(&cell));
        }
    }
}

Cell FrmToKey::createPreview() {
    const Cell title = label(L"&Preview: down 5 half steps, and so on", 0, kPreviewLabel);
    const Cell preview =
        songPreview(kPreview, editorFontFace(services_), kEditorFontPoints, previewFont_);
    return columnOf({title, preview.least(kPreviewWidth, kPreviewHeight).grows(1, 1)})
        .close()
        .grows(1, 1);
}

void FrmToKey::onPlaced() {
    const HWND list = item(kFrets);
    RECT client{};
    ::GetClientRect(list, &client);
    const int columns = Header_GetItemCount(ListView_GetHeader(list));
    for (int column = 0; column < columns; ++column)
        ListView_SetColumnWidth(list, column, client.right / columns);
}

// ---- What happens -----------------------------------------------------------------------------

LRESULT FrmToKey::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NOTIFY:
            return onNotify(lParam);
        case WM_CTLCOLORSTATIC:
            // The song stands on paper, as it will in the editor.
            if (reinterpret_cast<HWND>(lParam) == item(kPreview))
                return onPaper(wParam);
            return passOn(message, wParam, lParam);
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

LRESULT FrmToKey::onNotify(LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.idFrom == kFrets && header.code == LVN_ITEMCHANGED &&
        (reinterpret_cast<const NMLISTVIEW*>(lParam)->uNewState & LVIS_SELECTED) != 0)
        showFret();
    else if (header.idFrom == kFrets && header.code == NM_DBLCLK &&
             ::IsWindowEnabled(item(kWrite)) != FALSE)
        onCommand(kWrite, BN_CLICKED);
    return 0;
}

void FrmToKey::onCommand(int id, int event) {
    const CapoChoice* const fret = chosenFret();
    if (id == kTo && event == CBN_SELCHANGE)
        showKey();
    else if (id == kOk && ::IsWindowEnabled(item(kOk)) != FALSE)
        take(stepsTo(), std::nullopt);
    else if (id == kWrite && fret != nullptr)
        take(capo_ - fret->fret, fret->fret);
    else if (id == kTakeOff)
        take(capo_, 0);
    else if (id != kOk)
        Form::onCommand(id, event);
}

// Enter in the list takes its fret, as a double click does.
bool FrmToKey::onKeyDown(WPARAM key) {
    if (key != VK_RETURN || ::GetFocus() != item(kFrets) || !::IsWindowEnabled(item(kWrite)))
        return false;
    onCommand(kWrite, BN_CLICKED);
    return true;
}

int FrmToKey::stepsTo() const {
    const LRESULT tonic = ::SendMessageW(item(kTo), CB_GETCURSEL, 0, 0);
    return tonic == CB_ERR ? 0
                           : nearestSteps(offer_->way.found.first->tonic, static_cast<int>(tonic));
}

const CapoChoice* FrmToKey::chosenFret() const {
    const int row = ListView_GetNextItem(item(kFrets), -1, LVNI_SELECTED);
    return row < 0 ? nullptr : &choices_[static_cast<std::size_t>(row)];
}

void FrmToKey::showKey() {
    const int steps = stepsTo();
    ok_.setEnabled(steps != 0);
    write_.setEnabled(false);
    ListView_SetItemState(item(kFrets), -1, 0, LVIS_SELECTED);
    const Text title =
        steps == 0 ? Text(u"&Preview: as it is") : u"&Preview: " + stepsInWords(steps);
    showPreview(title, steps, std::nullopt);
}

void FrmToKey::showFret() {
    const CapoChoice* const fret = chosenFret();
    if (fret == nullptr)
        return;
    const Text number = decimal(fret->fret);
    write_.setCaption(fret->fret == 0 ? Text(u"&Write without Capo")
                                      : u"&Write for Capo " + number);
    write_.setEnabled(fret->fret != capo_);
    showPreview(
        fret->fret == 0 ? Text(u"&Preview: without a capo") : u"&Preview: for capo " + number,
        capo_ - fret->fret, fret->fret);
}

// Nothing where it is not sure what it sounds in.
Text FrmToKey::soundsAt(int capo, int steps) const {
    const KeyWay& way = offer_->way;
    return way.found.key ? soundingName(movedKey(*way.found.key, steps), capo, way.side) : Text();
}

void FrmToKey::showPreview(TextView title, int steps, std::optional<int> capo) {
    ::SetWindowTextW(item(kPreviewLabel), wide(Text(title)));
    Text song = movedSong(offer_->song, offer_->way, steps, left_);
    if (capo)
        song = withEdits(song, capoEdits(song, *capo, soundsAt(*capo, steps), u"\r"));
    ::SetWindowTextW(item(kPreview), wide(inEditLines(firstLines(song, kPreviewLines))));
}

void FrmToKey::take(int steps, std::optional<int> capo) {
    taken_ = ToKeyChoice{steps, capo, soundsAt(capo.value_or(0), steps)};
    endModal();
}

}  // namespace melvorin
