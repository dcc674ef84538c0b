#include "editing/ChordFollower.h"

#include <algorithm>
#include <exception>
#include <map>
#include <utility>

#include "base/DiagramFont.h"
#include "chords/LineVerdict.h"
#include "editing/ChordMoveKeys.h"
#include "platform/Handles.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

// A document with more stretches of other faces than this is looked at line by line.
constexpr std::size_t kMostFaceRuns = 40;
constexpr std::size_t kMostFaceRunsOfLines = 2000;

std::size_t sizeOf(std::int32_t number) {
    return static_cast<std::size_t>(std::max(number, 0));
}

std::int32_t positionOf(std::size_t number) {
    return static_cast<std::int32_t>(number);
}

// Hebrew, Arabic and their neighbours: columns count from the other side there.
bool isRightToLeft(char16_t c) {
    return (c >= 0x590 && c < 0x900) || (c >= 0xFB1D && c < 0xFE00) || (c >= 0xFE70 && c < 0xFEFF);
}

// What holds a table or a formula together: a cell has no chords over its words.
bool isStructure(char16_t c) {
    return c == u'\n' || c == 7 || (c >= 0xFFF9 && c <= 0xFFFB);
}

bool isMonospaced(const Text& face) {
    static std::map<Text, bool> known;
    const auto found = known.find(face);
    if (found != known.end())
        return found->second;
    LOGFONTW wanted{};
    wanted.lfHeight = 16;
    wanted.lfCharSet = DEFAULT_CHARSET;
    std::copy_n(face.begin(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1),
                wanted.lfFaceName);
    const UniqueFont font(::CreateFontIndirectW(&wanted));
    const WindowDc screen(nullptr);
    const SelectedObject selected(screen.get(), font.get());
    TEXTMETRICW metrics{};
    // The flag says the opposite of its name.
    const bool isFixed =
        ::GetTextMetricsW(screen.get(), &metrics) && !(metrics.tmPitchAndFamily & TMPF_FIXED_PITCH);
    return known[face] = isFixed;
}

// Blanks that come or go in a line: the control draws that as it draws what is typed.
bool isSmall(const FollowAnswer& answer) {
    constexpr std::size_t most = 4;
    return answer.edits.size() <= most &&
           std::all_of(answer.edits.begin(), answer.edits.end(), [](const FollowEdit& edit) {
               return edit.origin == Origin::New && edit.text.find(u'\r') == Text::npos;
           });
}

}  // namespace

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
    : editor_(editor), textFont_(std::move(textFont)) {
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
    const auto text = linesAround(selected);
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
    if (!answer || !mayFollow(answer->edits, from))
        return false;
    const Own own(*this);
    if (!answer->edits.empty())
        makeUnseen(*answer);
    visit_ = next;
    const auto caret = positionOf(answer->caret);
    editor_.select({caret, caret});
    editor_.scrollCaretIntoView();
    caretLine_ = editor_.lineOf(caret);
    if (const auto text = linesAround({caret, caret}))
        follow_.caretAt(*text, answer->caret);
    return true;
}

bool ChordFollower::moveChord(ChordFollow::Move move) {
    const Selection selected = editor_.selection();
    const auto text = linesAround(selected);
    const auto answer = text ? follow_.moveChord(*text, sizeOf(selected.end), move) : std::nullopt;
    // The key does nothing else in a song, wherever the caret is.
    if (!answer || !mayFollow(answer->edits, *text))
        return true;
    visit_.typed();
    const Own own(*this);
    editor_.change([&] { make(*answer); });
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
    const auto text = linesAround({position, position});
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
        hasDiagrams_.reset();
    if (now.begin != now.end || line != caretLine_)
        trusted_.reset();
    if (std::exchange(caretLine_, line) == line)
        return;
    // Only of an empty line does it matter what is around it.
    const std::int32_t start = editor_.firstOfLine(line);
    Text words = editor_.textBetween({start, start + editor_.lengthOfLine(line)});
    if (words.find_first_not_of(u' ') != Text::npos)
        follow_.caretAt({sizeOf(start), std::move(words), {}}, sizeOf(now.end));
    else if (const auto text = linesAround({now.end, now.end}))
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
    const auto text =
        padding ? linesAround({std::min(positionOf(padding->first), caret.begin),
                               std::max(positionOf(padding->first + padding->second), caret.end)})
                : std::nullopt;
    const auto answer = text ? visit_.leave(*text, sizeOf(caret.end)) : std::nullopt;
    visit_.forget();
    if (!answer || answer->edits.empty())
        return;
    const Own own(*this);
    const std::size_t anchor = positionAfter(answer->edits, sizeOf(caret.begin));
    makeUnseen(*answer);
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
    trusted_.reset();
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
    hasDiagrams_.reset();
    trusted_.reset();
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
    if (auto text = linesAround(selected))
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
    if (positionOf(after.end()) != end || !isPlain(after.chars)) {
        forget();
        return true;
    }
    after.diagrams = diagramsIn(after);
    if (visit_.padding())
        visit_.typed();
    const std::size_t caret = sizeOf(selected.end);
    const std::size_t caretBefore = sizeOf(before.selected.end);
    const auto lines = keepsLines_ ? std::nullopt : replacedLines(before, after);
    const FollowAnswer answer =
        lines ? follow_.replaced(before.text, *lines, caretBefore, after, caret)
              : follow_.edited(before.text, caretBefore, after, caret);
    if (answer.edits.empty())
        return !answer.refused;
    if (!mayFollow(answer.edits, after)) {
        forget();
        return true;
    }
    const Own own(*this);
    if (isSmall(answer))
        make(answer);
    else
        makeUnseen(answer);
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
    hasDiagrams_.reset();
    trusted_.reset();
    caretLine_ = -1;
}

// ---- The document -----------------------------------------------------------------------------

bool ChordFollower::isPlain(TextView text) const {
    return std::none_of(text.begin(), text.end(), isStructure);
}

// Nothing where their columns mean nothing.
std::optional<Excerpt> ChordFollower::linesAround(Selection range) {
    // An edit may take the line end before or behind it.
    constexpr auto above = static_cast<std::int32_t>(kLinesAbove) + 1;
    constexpr auto below = static_cast<std::int32_t>(kLinesBelow) + 2;
    const std::int32_t top = editor_.lineOf(range.begin);
    const std::int32_t last = range.end == range.begin ? top : editor_.lineOf(range.end);
    const std::int32_t first = std::max(0, top - above);
    const std::int32_t start = editor_.firstOfLine(first);
    const std::int32_t next = editor_.firstOfLine(last + below);
    const std::int32_t end = next > start ? next - 1 : editor_.length();
    Excerpt text{sizeOf(start), editor_.textBetween({start, end}), {}};
    if (positionOf(text.chars.size()) != end - start || !isPlain(text.chars))
        return std::nullopt;
    text.diagrams = diagramsIn(text);
    return text;
}

bool ChordFollower::hasDiagrams() {
    if (!hasDiagrams_) {
        const RichEdit::Quiet quiet(editor_);
        const auto runs = editor_.faceRuns({0, editor_.length()}, kMostFaceRuns, isDiagramFace);
        hasDiagrams_ = !runs || (!runs->empty() && isDiagramFace(runs->back().face));
    }
    return *hasDiagrams_;
}

std::vector<DiagramCells> ChordFollower::diagramsIn(const Excerpt& text) {
    if (text.chars.empty() || !hasDiagrams())
        return {};
    const RichEdit::Quiet quiet(editor_);
    const auto runs =
        editor_.faceRuns({positionOf(text.start), positionOf(text.end())}, kMostFaceRunsOfLines);
    if (!runs)
        return {};
    const auto widthAt = [&](std::int32_t position) {
        return editor_.pointOf(position + 1).x - editor_.pointOf(position).x;
    };
    long cell = 0;
    std::vector<DiagramCells> diagrams;
    for (const RichEdit::FaceRun& run : *runs) {
        if (isDiagramFace(run.face)) {
            for (std::int32_t at = run.range.begin; at < run.range.end; ++at)
                diagrams.push_back({sizeOf(at), 1});
            continue;
        }
        for (std::int32_t at = run.range.begin; at < run.range.end && cell == 0; ++at) {
            const char16_t c = text.chars[sizeOf(at) - text.start];
            if (c >= u' ' && c < 0x7F)
                cell = std::max(widthAt(at), 0L);
        }
    }
    for (DiagramCells& diagram : diagrams) {
        if (cell > 0)
            diagram.cells = sizeOf(static_cast<std::int32_t>(
                std::max(1L, (widthAt(positionOf(diagram.position)) + cell / 2) / cell)));
    }
    return diagrams;
}

// Columns mean something in lines from left to right, at the left, in monospaced letters.
bool ChordFollower::mayFollow(const std::vector<FollowEdit>& edits, const Excerpt& text) {
    if (edits.empty())
        return true;
    const std::size_t first = edits.front().position - text.start;
    const std::size_t last = edits.back().position + edits.back().length - text.start;
    const std::size_t before = first == 0 ? Text::npos : text.chars.rfind(u'\r', first - 1);
    const std::size_t begin = before == Text::npos ? 0 : before + 1;
    const std::size_t end = std::min(text.chars.find(u'\r', last), text.chars.size());
    if (trusted_ == text.start + begin)
        return true;
    trusted_.reset();
    const TextView lines = TextView(text.chars).substr(begin, end - begin);
    if (std::any_of(lines.begin(), lines.end(), isRightToLeft))
        return false;
    const RichEdit::Quiet quiet(editor_);
    const Selection range{positionOf(text.start + begin), positionOf(text.start + end)};
    const SelectionStyle style = editor_.styleOf(range);
    if (style.alignment != Alignment::Left)
        return false;
    const auto suits = [](const Text& face) { return isDiagramFace(face) || isMonospaced(face); };
    const auto runs = style.face ? std::vector<RichEdit::FaceRun>{{range, *style.face}}
                                 : editor_.faceRuns(range, kMostFaceRunsOfLines);
    if (!runs || !std::all_of(runs->begin(), runs->end(),
                              [&](const RichEdit::FaceRun& run) { return suits(run.face); }))
        return false;
    trusted_ = text.start + begin;
    return true;
}

void ChordFollower::makeUnseen(const FollowAnswer& answer) {
    RichEdit::Quiet quiet(editor_);
    quiet.changed();
    make(answer);
}

// No event may come meanwhile.
void ChordFollower::make(const FollowAnswer& answer) {
    std::vector<std::vector<RichEdit::Piece>> carried;
    for (const FollowEdit& edit : answer.edits)
        carried.push_back(edit.origin == Origin::Document
                              ? editor_.piecesOf({positionOf(edit.from),
                                                  positionOf(edit.from + edit.text.size())})
                              : std::vector<RichEdit::Piece>());
    const POINT page = editor_.page();
    for (std::size_t i = answer.edits.size(); i > 0; --i)
        insert(answer.edits[i - 1], carried[i - 1]);
    const auto caret = positionOf(answer.caret);
    editor_.select({caret, caret});
    const POINT now = editor_.page();
    if (now.x == page.x && now.y == page.y && isSmall(answer))
        return;
    editor_.scrollTo({static_cast<std::int32_t>(page.x), static_cast<std::int32_t>(page.y)});
    if (!editor_.isInView(caret))
        editor_.scrollCaretIntoView();
}

void ChordFollower::insert(const FollowEdit& edit, const std::vector<RichEdit::Piece>& pieces) {
    const auto begin = positionOf(edit.position);
    editor_.select({begin, begin + positionOf(edit.length)});
    if (!pieces.empty())
        return editor_.put(pieces);
    editor_.replaceSelection(edit.text);
    if (edit.text.empty() || !hasDiagrams())
        return;
    // A blank in the font of a diagram would be another one.
    const std::int32_t end = editor_.selection().end;
    editor_.select({begin, end});
    if (isDiagramFace(editor_.selectionStyle().face.value_or(Text()))) {
        const RichEdit::TypingFormat font = textFont_();
        editor_.setSelectionFont(font.face, font.points);
    }
    editor_.select({end, end});
}

}  // namespace melvorin
