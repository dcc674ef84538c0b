#include "chords/TakenSong.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "base/DiagramFont.h"
#include "base/EditorLine.h"
#include "chords/ChartRtf.h"
#include "chords/DocumentKey.h"
#include "chords/LineAlignment.h"
#include "chords/LineSources.h"
#include "rtf/EditCommands.h"
#include "rtf/MappedDocument.h"

namespace melvorin {
namespace {

constexpr TextView kLineEnds = u"\r\n\v";

bool isLineEnd(char16_t c) {
    return kLineEnds.find(c) != TextView::npos;
}

Selection rangeOf(std::size_t begin, std::size_t length) {
    return {static_cast<std::int32_t>(begin), static_cast<std::int32_t>(begin + length)};
}

bool isPictureAt(MappedDocument& document, std::size_t position) {
    const RtfMap* const map = document.map();
    return map != nullptr ? map->isWholeAt(position) : document.text()[position] == u'\uFFFC';
}

// ---- Out of the document -----------------------------------------------------------------------

// Whole lines, without the end of the last one.
Selection linesOf(TextView text, Selection selection) {
    auto begin = static_cast<std::size_t>(selection.begin);
    auto end = std::min(static_cast<std::size_t>(selection.end), text.size());
    while (begin > 0 && !isLineEnd(text[begin - 1]))
        --begin;
    if (end > begin && isLineEnd(text[end - 1])) {
        end -= text.substr(0, end).ends_with(u"\r\n") ? 2U : 1U;
    } else {
        end = std::min(text.find_first_of(kLineEnds, end), text.size());
    }
    return rangeOf(begin, std::max(begin, end) - begin);
}

bool hasWriting(TextView text) {
    return text.find_first_not_of(u" \t\r\n\v") != TextView::npos;
}

TextView textIn(TextView text, Selection place) {
    return text.substr(static_cast<std::size_t>(place.begin),
                       static_cast<std::size_t>(place.end - place.begin));
}

// The way a diagram looks, at its first place.
SongDiagram diagramAt(Editor& editor, char16_t letter, TextView face, std::size_t position) {
    editor.select(rangeOf(position, 1));
    const SelectionStyle style = editor.selectionStyle();
    return {letter, Text(face), style.halfPoints, style.colour};
}

class Taker {
  public:
    explicit Taker(Editor& editor) : editor_(editor), document_(editor) {}
    TakenSong take();

  private:
    char16_t characterAt(std::size_t position);

    Editor& editor_;
    MappedDocument document_;
    TakenSong song_;
};

// Where there are more kinds of diagrams than tokens, the rest are blanks here, which stay in their
// lines.
char16_t Taker::characterAt(std::size_t position) {
    const char16_t letter = document_.text()[position];
    if (letter == u'\t' || isLineEnd(letter))
        return letter;
    Text face;
    if (!isPictureAt(document_, position)) {
        if (letter == u' ' || !document_.isDiagramAt(position))
            return letter;
        const RtfMap* const map = document_.map();
        face = map != nullptr ? Text(map->fontNameAt(position))
                              : editor_.faceAt(static_cast<std::int32_t>(position));
    }
    std::optional<char16_t> token = song_.diagrams.tokenOf(letter, face);
    if (!token)
        token = song_.diagrams.add(diagramAt(editor_, letter, face, position), document_.text());
    return token.value_or(u' ');
}

TakenSong Taker::take() {
    const Text& text = document_.text();
    const Selection selection = editor_.selection();
    song_.place = linesOf(text, selection);
    song_.isSelection = selection.end > selection.begin && hasWriting(textIn(text, song_.place));
    if (!song_.isSelection)
        song_.place = rangeOf(0, text.size());
    if (!hasWriting(textIn(text, song_.place)))
        return std::move(song_);
    const ScrollPosition scroll = editor_.scrollPosition();
    for (TextView rest = textIn(text, song_.place); !rest.empty();) {
        const std::size_t start = static_cast<std::size_t>(song_.place.end) - rest.size();
        const TextLine line = takeEditorLine(rest);
        for (std::size_t i = 0; i < line.chars.size(); ++i)
            song_.text += characterAt(start + i);
        if (!line.end.empty())
            song_.text += u'\r';
    }
    if (!song_.diagrams.isEmpty()) {
        editor_.select(selection);
        editor_.scrollTo(scroll);
    }
    return std::move(song_);
}

// ---- Back into it ------------------------------------------------------------------------------

// A line of the document.
struct OldLine {
    std::size_t start;
    TextView chars;                // of the taken text
    std::size_t end;               // how long its line end is
    bool isFixed;                  // of a table
    std::vector<std::size_t> now;  // the lines of the chart that stand in its place, in order
};

// A stretch of the document that changes.
struct Part {
    std::size_t start = 0;
    std::size_t length = 0;
    Text text;  // with tokens
    // Of each new character: the old one that it is, from `start`; or none.
    std::vector<std::size_t> stays;
    std::vector<bool> isRed;

    std::size_t end() const { return start + length; }
    void add(TextView chars, bool red) {
        text += chars;
        stays.resize(text.size(), kNoColumn);
        isRed.resize(text.size(), red);
    }
};

class Putter {
  public:
    Putter(Editor& editor, const TakenSong& song, const CreatedChart& chart)
        : editor_(editor), document_(editor), song_(song), chart_(chart) {}
    bool put();

  private:
    void readOldLines();
    void assignLines();
    void makeParts();
    void addPart(Part part);
    Part partOf(const OldLine& line) const;
    void settleStrangers();
    Text lettersOf(const Part& part) const;
    Text after() const;
    bool isWritingAt(std::size_t position);
    std::optional<std::size_t> formatFor(const Part& part, std::size_t index, std::size_t former);
    std::optional<std::vector<LineRewrite>> rewrites();
    bool load(TextView after);
    void edit();
    void editPart(const Part& part);
    void dressStrangers();
    std::int32_t followed(std::int32_t position) const;
    TextView lineOf(std::size_t number) const { return chart_.lines[number].text; }

    Editor& editor_;
    MappedDocument document_;
    const TakenSong& song_;
    const CreatedChart& chart_;
    std::vector<OldLine> old_;
    std::vector<Part> parts_;
    struct Stranger {
        std::size_t position;  // in the new document
        const SongDiagram* diagram;
    };
    std::vector<Stranger> strangers_;  // diagrams that come from elsewhere
};

void Putter::readOldLines() {
    TextView taken = song_.text;
    for (TextView rest = textIn(document_.text(), song_.place); !rest.empty();) {
        const std::size_t start = static_cast<std::size_t>(song_.place.end) - rest.size();
        const TextLine line = takeEditorLine(rest);
        old_.push_back(
            {start, taken.substr(0, line.chars.size()), line.end.size(), line.end.size() > 1, {}});
        taken.remove_prefix(std::min(taken.size(), line.chars.size() + 1));
    }
}

// Gives every line of the chart to an old line: the one that it came from, or else the one in front
// of it, or the next that may change. Lines that have changed their order are new, and so are those
// that were a table's and have been edited.
void Putter::assignLines() {
    const std::vector<std::size_t> sources = lineSources(song_.text, chart_.source);
    const std::vector<TextView> corrected = splitLines(chart_.source);
    std::vector<std::size_t> waiting;
    const auto settle = [&](std::size_t begin, std::size_t end) {
        while (end > begin && old_[end - 1].isFixed)
            --end;
        if (end == begin)
            return;
        std::vector<std::size_t>& now = old_[end - 1].now;
        now.insert(now.end(), waiting.begin(), waiting.end());
        waiting.clear();
    };
    std::size_t next = 0;  // behind the last line that has one of its own
    for (std::size_t number = 0; number < chart_.lines.size(); ++number) {
        const std::size_t line = chart_.lines[number].source;
        const std::size_t from = line < sources.size() ? sources[line] : kNoLine;
        // What is behind the last line end is no line of the song.
        if (from == old_.size() && lineOf(number).empty())
            continue;
        const bool isOwn = from < old_.size() && from + 1 >= next &&
                           !(old_[from].isFixed && corrected[line] != old_[from].chars);
        if (!isOwn) {
            waiting.push_back(number);
            if (next > 0)
                settle(next - 1, next);
            continue;
        }
        if (from >= next)
            settle(next, from + 1);
        old_[from].now.push_back(number);
        next = from + 1;
    }
    settle(0, old_.size());
}

Part Putter::partOf(const OldLine& line) const {
    Part part{line.start, line.chars.size(), {}, {}, {}};
    // The one of the new lines that has most of the old one keeps its formats.
    LineAlignment best;
    std::size_t bestLine = kNoLine;
    for (const std::size_t number : line.now) {
        LineAlignment alignment = alignLine(line.chars, lineOf(number));
        if (bestLine == kNoLine || alignment.weight > best.weight) {
            best = std::move(alignment);
            bestLine = number;
        }
    }
    for (const std::size_t number : line.now) {
        if (number != line.now.front())
            part.add(u"\r", false);
        const TextView text = lineOf(number);
        const std::size_t begin = part.text.size();
        const bool same = text == line.chars;
        part.add(text, !same && chart_.lines[number].isChords);
        if (number == bestLine)
            std::copy(best.columns.begin(), best.columns.end(),
                      part.stays.begin() + static_cast<std::ptrdiff_t>(begin));
    }
    return part;
}

// Parts that touch are one.
void Putter::addPart(Part part) {
    if (parts_.empty() || parts_.back().end() < part.start) {
        parts_.push_back(std::move(part));
        return;
    }
    Part& last = parts_.back();
    const std::size_t shift = part.start - last.start;
    for (std::size_t& column : part.stays)
        column += column == kNoColumn ? 0 : shift;
    last.length = part.end() - last.start;
    last.text += part.text;
    last.stays.insert(last.stays.end(), part.stays.begin(), part.stays.end());
    last.isRed.insert(last.isRed.end(), part.isRed.begin(), part.isRed.end());
}

void Putter::makeParts() {
    const auto isKept = [](const OldLine& line) { return line.isFixed || !line.now.empty(); };
    const auto behindKept = std::find_if(old_.rbegin(), old_.rend(), isKept).base();
    for (auto line = old_.begin(); line != behindKept; ++line) {
        if (line->isFixed)
            continue;
        if (!isKept(*line))
            addPart({line->start, line->chars.size() + line->end, {}, {}, {}});
        else if (line->now.size() != 1 || lineOf(line->now.front()) != line->chars)
            addPart(partOf(*line));
    }
    if (behindKept == old_.end())
        return;
    // The end of the last line that stays is the end of the song.
    const OldLine& last = *std::prev(behindKept);
    const std::size_t begin = last.start + last.chars.size() + (last.isFixed ? last.end : 0);
    const OldLine& final = old_.back();
    addPart({begin, final.start + final.chars.size() - begin, {}, {}, {}});
}

// Finds the diagrams that do not stand where they stood. A picture cannot go elsewhere.
void Putter::settleStrangers() {
    std::size_t before = 0;
    std::size_t former = 0;
    for (Part& part : parts_) {
        before += part.start - former;
        for (std::size_t i = 0; i < part.text.size(); ++i) {
            const SongDiagram* const diagram = song_.diagrams.find(part.text[i]);
            if (diagram == nullptr || part.stays[i] != kNoColumn)
                continue;
            if (diagram->face.empty())
                part.text[i] = u' ';
            else
                strangers_.push_back({before + i, diagram});
        }
        before += part.text.size();
        former = part.end();
    }
}

// The text of the document; what stays is what it was, whatever stood for it.
Text Putter::lettersOf(const Part& part) const {
    Text letters = song_.diagrams.letters(part.text);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if (part.stays[i] != kNoColumn)
            letters[i] = document_.text()[part.start + part.stays[i]];
    }
    return letters;
}

Text Putter::after() const {
    const TextView text = document_.text();
    Text after;
    std::size_t copied = 0;
    for (const Part& part : parts_) {
        after.append(text.substr(copied, part.start - copied)).append(lettersOf(part));
        copied = part.end();
    }
    return after.append(text.substr(copied));
}

// A character whose format new text may take; the end of the document has one too.
bool Putter::isWritingAt(std::size_t position) {
    const RtfMap& map = *document_.map();
    return !map.isWholeAt(position) && !isDiagramFace(map.fontNameAt(position));
}

// The old character of a part whose format its new one takes, not before `former`: what it
// replaces, or what is in front of it, or behind it.
std::optional<std::size_t> Putter::formatFor(const Part& part, std::size_t index,
                                             std::size_t former) {
    const auto next = std::find_if(part.stays.begin() + static_cast<std::ptrdiff_t>(index),
                                   part.stays.end(), [](std::size_t c) { return c != kNoColumn; });
    const std::size_t until = next == part.stays.end() ? part.length : *next;
    const auto isWriting = [&](std::size_t column) { return isWritingAt(part.start + column); };
    const bool isNewToo = index == 0 || part.stays[index - 1] == kNoColumn;
    for (std::size_t column = former + (isNewToo ? 0 : 1); column < until; ++column) {
        if (isWriting(column))
            return column;
    }
    for (const std::size_t column : {former, until}) {
        if (isWriting(column))
            return column;
    }
    return std::nullopt;
}

// Nothing where some new character has no format to take.
std::optional<std::vector<LineRewrite>> Putter::rewrites() {
    std::vector<LineRewrite> rewrites;
    for (const Part& part : parts_) {
        LineRewrite rewrite{part.start, part.length, lettersOf(part), {}, {}};
        std::size_t former = 0;
        for (std::size_t i = 0; i < part.text.size(); ++i) {
            if (part.stays[i] == kNoColumn) {
                const auto format = formatFor(part, i, former);
                if (!format)
                    return std::nullopt;
                former = *format;
            } else {
                former = part.stays[i];
            }
            rewrite.source.push_back(static_cast<std::uint32_t>(former));
            rewrite.keepColour.push_back(!part.isRed[i] ||
                                         song_.diagrams.find(part.text[i]) != nullptr);
        }
        rewrites.push_back(std::move(rewrite));
    }
    return rewrites;
}

bool Putter::load(TextView after) {
    const RtfMap* const map = document_.map();
    const auto changes = map == nullptr ? std::nullopt : rewrites();
    return changes && loadRewritten(editor_, document_.rtf(), document_.text(),
                                    map->rewrite(*changes, kChordColour), after);
}

// From the last change to the first, so that positions before it stay true. What stays is not
// touched.
void Putter::editPart(const Part& part) {
    const Text text = lettersOf(part);
    std::size_t oldEnd = part.length;
    for (std::size_t end = text.size();;) {
        std::size_t begin = end;
        while (begin > 0 && part.stays[begin - 1] == kNoColumn)
            --begin;
        const std::size_t oldBegin = begin == 0 ? 0 : part.stays[begin - 1] + 1;
        if (end > begin || oldEnd > oldBegin) {
            editor_.select(rangeOf(part.start + oldBegin, oldEnd - oldBegin));
            editor_.replaceSelection(TextView(text).substr(begin, end - begin));
            const std::size_t at = part.start + oldBegin;
            if (end > begin && isDiagramFace(editor_.faceAt(static_cast<std::int32_t>(at)))) {
                editor_.select(rangeOf(at, end - begin));
                editor_.setSelectionFont(chart_.face, chart_.points);
            }
        }
        if (begin == 0)
            break;
        oldEnd = part.stays[begin - 1];
        end = begin - 1;
    }
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && part.isRed[end] &&
               song_.diagrams.find(part.text[end]) == nullptr)
            ++end;
        if (end > begin) {
            editor_.select(rangeOf(part.start + begin, end - begin));
            editor_.setSelectionColour(kChordColour);
        }
        begin = std::max(end, begin + 1);
    }
}

void Putter::edit() {
    for (auto part = parts_.rbegin(); part != parts_.rend(); ++part)
        editPart(*part);
}

void Putter::dressStrangers() {
    for (const Stranger& stranger : strangers_)
        setDiagram(editor_, stranger.position, *stranger.diagram);
}

std::int32_t Putter::followed(std::int32_t position) const {
    const auto at = static_cast<std::size_t>(position);
    std::ptrdiff_t shift = 0;
    for (const Part& part : parts_) {
        if (part.start > at)
            break;
        if (at < part.end())
            return static_cast<std::int32_t>(
                static_cast<std::ptrdiff_t>(part.start +
                                            std::min(at - part.start, part.text.size())) +
                shift);
        shift += static_cast<std::ptrdiff_t>(part.text.size()) -
                 static_cast<std::ptrdiff_t>(part.length);
    }
    return static_cast<std::int32_t>(position + shift);
}

bool Putter::put() {
    readOldLines();
    if (old_.empty() || chart_.lines.empty())
        return false;
    assignLines();
    makeParts();
    if (parts_.empty())
        return false;
    settleStrangers();
    const Selection selection = editor_.selection();
    const ScrollPosition scroll = editor_.scrollPosition();
    const Text expected = after();
    if (!load(expected)) {
        edit();
        if (editor_.text().chars != expected)
            throw std::runtime_error("the editor makes another text of it");
    }
    dressStrangers();
    editor_.select({followed(selection.begin), followed(selection.end)});
    editor_.scrollTo(scroll);
    return true;
}

}  // namespace

TakenSong takeSong(Editor& editor) {
    const EditorWork work(editor);
    return Taker(editor).take();
}

bool putInPlace(Editor& editor, const TakenSong& song, const CreatedChart& chart) {
    const EditorWork work(editor);
    return Putter(editor, song, chart).put();
}

}  // namespace melvorin
