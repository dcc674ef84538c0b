#include "editing/ChordFollower.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "chords/LineVerdict.h"
#include "editing/ChordMoveKeys.h"

namespace melvorin {
class ChordFollower::Own {
  public:
    explicit Own(ChordFollower& follower)
        : follower_(follower), former_(std::exchange(follower.own_, true)) {}
    Own(const Own&) = delete;
    Own& operator=(const Own&) = delete;
    ~Own() { follower_.own_ = former_; }

  private:
    ChordFollower& follower_;
    bool former_;
};

ChordFollower::ChordFollower(RichEdit& editor, std::function<RichEdit::TypingFormat()> textFont)
    : editor_(editor), document_(editor, std::move(textFont)) {
    editor_.setEditObserver(*this);
}

void ChordFollower::setOn(bool on) {
    if (on_)
        commandBegins();
    on_ = on;
    forget();
}

// ---- Keys -------------------------------------------------------------------------------------

bool ChordFollower::onKeyDown(const KeyStroke& stroke) {
    swallows_ = false;
    if (!on_)
        return false;
    noticeLoad();
    if (const auto move = runBy(kChordMoveKeys, stroke))
        return moveChord(*move);
    if (stroke == plainKey(keys::kDelete))
        return eraseInTab(TabErase::Delete);
    if (stroke == plainKey(keys::kBackspace))
        return swallows_ = eraseInTab(TabErase::Backspace);
    const auto key = runBy(kChordVisitKeys, stroke);
    const Selection selected = editor_.selection();
    if (!key || selected.begin != selected.end)
        return false;
    const auto text = document_.linesAround(selected);
    if (!text)
        return false;
    const std::size_t caret = sizeOf(selected.end);
    ChordVisit next = visit_;
    std::optional<FollowAnswer> answer;
    if (*key == ChordVisitKey::ToChords)
        answer = next.toChords(*text, caret);
    else if (*key == ChordVisitKey::Enter || *key == ChordVisitKey::Down)
        answer = next.toWords(*text, caret);
    else
        answer = next.tab(*text, caret, *key == ChordVisitKey::FormerStop);
    const bool goes = goTo(next, answer, *text);
    swallows_ = goes && *key != ChordVisitKey::Down;
    return goes;
}

// The caret goes, and the blanks that it takes come and go unheard.
bool ChordFollower::goTo(const ChordVisit& next, const std::optional<FollowAnswer>& answer,
                         const Excerpt& from) {
    if (!answer || !document_.mayFollow(answer->edits, from))
        return false;
    const Own own(*this);
    if (!answer->edits.empty())
        document_.makeUnseen(*answer);
    visit_ = next;
    const auto caret = positionOf(answer->caret);
    editor_.select({caret, caret});
    editor_.scrollCaretIntoView();
    caretLine_ = editor_.lineOf(caret);
    if (const auto text = document_.linesAround({caret, caret}))
        follow_.caretAt(*text, answer->caret);
    return true;
}

bool ChordFollower::moveChord(ChordFollow::Move move) {
    const Selection selected = editor_.selection();
    const auto text = document_.linesAround(selected);
    const auto answer = text ? follow_.moveChord(*text, sizeOf(selected.end), move) : std::nullopt;
    // The key does nothing else in a song, wherever the caret is.
    if (!answer || !document_.mayFollow(answer->edits, *text))
        return true;
    visit_.typed();
    const Own own(*this);
    editor_.change([&] { document_.make(*answer); });
    return true;
}

bool ChordFollower::onCharacter(char16_t character) {
    if (std::exchange(swallows_, false) && character < u' ')
        return true;
    if (!on_ || character < u' ' || character == 0x7F)
        return false;
    const auto place = tabPlace();
    const auto edit = place
                          ? typedOverTab(place->line, place->begin, place->end, Text(1, character))
                          : std::nullopt;
    return edit && change(*edit, place->start);
}

bool ChordFollower::eraseInTab(TabErase key) {
    const auto place = tabPlace();
    const auto edit =
        place ? erasedInTab(place->line, place->begin, place->end, key) : std::nullopt;
    return edit && change(*edit, place->start);
}

std::optional<ChordFollower::TabPlace> ChordFollower::tabPlace() const {
    const Selection selected = editor_.selection();
    const std::int32_t line = editor_.lineOf(selected.end);
    const std::int32_t start = editor_.firstOfLine(line);
    if (selected.begin < start)
        return std::nullopt;
    Text text = editor_.textBetween({start, start + editor_.lengthOfLine(line)});
    if (!isTablature(text))
        return std::nullopt;
    return TabPlace{std::move(text), sizeOf(start), sizeOf(selected.begin - start),
                    sizeOf(selected.end - start)};
}

bool ChordFollower::change(const TabChange& edit, std::size_t lineStart) {
    const Own own(*this);
    const auto begin = positionOf(lineStart + edit.index);
    const auto caret = positionOf(lineStart + edit.caret);
    if (!edit.text.empty())
        editor_.change([&] {
            editor_.select({begin, begin + positionOf(edit.text.size())});
            editor_.replaceSelection(edit.text);
            editor_.select({caret, caret});
        });
    else
        editor_.select({caret, caret});
    return true;
}

bool ChordFollower::selectChordAt(POINT point) {
    if (!on_)
        return false;
    const std::int32_t position = editor_.positionAt(point);
    const auto text = document_.linesAround({position, position});
    const auto chord = text ? chordAround(*text, sizeOf(position)) : std::nullopt;
    if (!chord)
        return false;
    editor_.select({positionOf(chord->first), positionOf(chord->second)});
    return true;
}

// ---- The caret --------------------------------------------------------------------------------

void ChordFollower::caretMoved() {
    if (!on_ || own_ || before_ || editor_.atWork())
        return;
    noticeLoad();
    const Selection selected = editor_.selection();
    const Selection now = leaveVisit(selected) ? editor_.selection() : selected;
    const std::int32_t line = editor_.lineOf(now.end);
    // What is selected may be given another font.
    if (now.begin != now.end)
        document_.forgetDiagrams();
    if (now.begin != now.end || line != caretLine_)
        document_.forgetPlace();
    if (std::exchange(caretLine_, line) == line)
        return;
    // Only of an empty line does it matter what is around it.
    const std::int32_t start = editor_.firstOfLine(line);
    Text words = editor_.textBetween({start, start + editor_.lengthOfLine(line)});
    if (words.find_first_not_of(u' ') != Text::npos)
        follow_.caretAt({sizeOf(start), std::move(words), {}}, sizeOf(now.end));
    else if (const auto text = document_.linesAround({now.end, now.end}))
        follow_.caretAt(*text, sizeOf(now.end));
}

// What was put in for the caret goes when that is elsewhere.
bool ChordFollower::leaveVisit(Selection caret) {
    const auto padding = visit_.padding();
    if (!padding) {
        if (visit_.isAway() && editor_.lineOf(caret.end) != caretLine_)
            visit_.forget();
        return false;
    }
    const bool isThere = caret.begin == caret.end && caret.end >= positionOf(padding->first) &&
                         caret.end <= positionOf(padding->first + padding->second);
    if (!isThere)
        endVisit(caret);
    return !isThere;
}

void ChordFollower::endVisit(Selection caret) {
    const auto padding = visit_.padding();
    const auto text = padding
                          ? document_.linesAround(
                                {std::min(positionOf(padding->first), caret.begin),
                                 std::max(positionOf(padding->first + padding->second), caret.end)})
                          : std::nullopt;
    const auto answer = text ? visit_.leave(*text, sizeOf(caret.end)) : std::nullopt;
    visit_.forget();
    if (!answer || answer->edits.empty())
        return;
    const Own own(*this);
    const std::size_t anchor = positionAfter(answer->edits, sizeOf(caret.begin));
    document_.makeUnseen(*answer);
    if (caret.begin != caret.end)
        editor_.select({positionOf(anchor), positionOf(answer->caret)});
}

void ChordFollower::commandBegins() {
    if (!on_)
        return;
    noticeLoad();
    if (!editor_.atWork())
        endVisit(editor_.selection());
    follow_.beginAnew();
    document_.forgetPlace();
}

// ---- Changes ----------------------------------------------------------------------------------

void ChordFollower::around(const std::function<void()>& change, bool keepsLines) {
    // Chords that cannot follow keep nobody from the change, nor from telling of it.
    const auto unlessItFails = [this](const std::function<void()>& part) {
        try {
            part();
        } catch (const std::exception&) {
            forget();
        }
    };
    unlessItFails([this] { editBegins(editor_.selection(), editor_.length()); });
    try {
        change();
    } catch (...) {
        forget();
        throw;
    }
    document_.forgetDiagrams();
    document_.forgetPlace();
    keepsLines_ = keepsLines;
    unlessItFails([this] {
        RichEdit::Quiet quiet(editor_);
        quiet.changed();
        editEnds(editor_.selection(), editor_.length());
    });
    keepsLines_ = false;
}

void ChordFollower::editBegins(Selection selected, std::int32_t length) {
    before_.reset();
    if (!on_ || own_)
        return;
    noticeLoad();
    if (auto text = document_.linesAround(selected))
        before_ = Before{std::move(*text), selected, length};
}

bool ChordFollower::editEnds(Selection selected, std::int32_t length) {
    if (!before_)
        return true;
    const Before before = *std::exchange(before_, std::nullopt);
    const std::int32_t grown = length - before.length;
    Excerpt after{before.text.start, {}, {}};
    const std::int32_t end = positionOf(before.text.end()) + grown;
    after.chars = editor_.textBetween({positionOf(after.start), end});
    if (positionOf(after.end()) != end || !FollowDocument::isPlain(after.chars)) {
        forget();
        return true;
    }
    const std::size_t caret = sizeOf(selected.end);
    after.diagrams = document_.diagramsAfterKey(before.text, after, caret);
    if (visit_.padding())
        visit_.typed();
    const std::size_t caretBefore = sizeOf(before.selected.end);
    const auto lines = keepsLines_ ? std::nullopt : replacedLines(before, after);
    const FollowAnswer answer =
        lines ? follow_.replaced(before.text, *lines, caretBefore, after, caret)
              : follow_.edited(before.text, caretBefore, after, caret);
    if (answer.edits.empty())
        return !answer.refused;
    if (!document_.mayFollow(answer.edits, after)) {
        forget();
        return true;
    }
    const Own own(*this);
    if (FollowDocument::isSmall(answer))
        document_.make(answer);
    else
        document_.makeUnseen(answer);
    if (selected.begin != selected.end)
        editor_.select({positionOf(positionAfter(answer.edits, sizeOf(selected.begin))),
                        positionOf(answer.caret)});
    return !answer.refused;
}

// What has come for a selection, where either has several lines.
std::optional<TextEdit> ChordFollower::replacedLines(const Before& before, const Excerpt& after) {
    const TextView old = before.text.chars;
    const TextView now = after.chars;
    const std::size_t front = sizeOf(before.selected.begin) - before.text.start;
    const std::size_t behind = before.text.end() - sizeOf(before.selected.end);
    if (before.selected.begin == before.selected.end || front + behind > now.size() ||
        old.substr(0, front) != now.substr(0, front) ||
        old.substr(old.size() - behind) != now.substr(now.size() - behind))
        return std::nullopt;
    const TextView gone = old.substr(front, old.size() - behind - front);
    const TextView come = now.substr(front, now.size() - behind - front);
    if (gone.find(u'\r') == Text::npos && come.find(u'\r') == Text::npos)
        return std::nullopt;
    return TextEdit{before.text.start + front, gone.size(), Text(come)};
}

std::optional<std::vector<FollowEdit>> ChordFollower::follow(
    MappedDocument& document, const std::vector<TextEdit>& replacements) {
    if (!on_ || !FollowDocument::isPlain(document.text()))
        return std::nullopt;
    const auto diagrams = document_.diagramsNear(document, replacements);
    if (!diagrams)
        return std::nullopt;
    const bool allMayFollow = document_.mayAllFollow(document.text());
    const Excerpt all{0, document.text(), *diagrams};
    return followReplacements(all, replacements, [&](std::size_t begin, std::size_t end) {
        return allMayFollow || document_.mayFollow(TextView(all.chars).substr(begin, end - begin),
                                                   {positionOf(begin), positionOf(end)});
    });
}

void ChordFollower::make(const std::vector<FollowEdit>& edits) {
    const Own own(*this);
    document_.makeUnseen({edits, 0, false});
    forget();
}

// Another document has come into a control of its own.
void ChordFollower::noticeLoad() {
    if (known_ != editor_.handle())
        forget();
}

void ChordFollower::forget() {
    known_ = editor_.handle();
    follow_.forget();
    visit_.forget();
    before_.reset();
    document_.forgetDiagrams();
    document_.forgetPlace();
    caretLine_ = -1;
}

}  // namespace melvorin
