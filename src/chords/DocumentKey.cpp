#include "chords/DocumentKey.h"
#include "base/DiagramFont.h"

#include <algorithm>
#include <stdexcept>

#include "base/EditorLine.h"
#include "chords/ChordLine.h"
#include "chords/KeySpelling.h"
#include "rtf/EditCommands.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

// A chord line of the document and what becomes of it. Pictures are diagrams and real pictures.
struct ChordLine {
    std::size_t start;  // position of its first character
    std::size_t length;
    std::vector<ColumnRange> pictures;
    MovedLine moved;
};

template <class IsPicture>
std::vector<ColumnRange> picturesOf(std::size_t start, std::size_t length, IsPicture isPicture) {
    std::vector<ColumnRange> ranges;
    for (std::size_t column = 0; column < length; ++column) {
        if (!isPicture(start + column))
            continue;
        if (!ranges.empty() && ranges.back().column + ranges.back().length == column)
            ++ranges.back().length;
        else
            ranges.push_back({column, 1});
    }
    return ranges;
}

// What a key change does with the lines of a document.
struct LineMoves {
    const KeyChange* change = nullptr;  // of lines of nothing but chords; null: they stay
    std::vector<OtherMove> others;      // by number
    // Where given, lines of nothing but chords go by it, unless they are others.
    const KeyRespelling* names = nullptr;
};

// What becomes of a line; nothing where it stays.
std::optional<MovedLine> movedLine(TextView line, const LineMoves& moves, const OtherMove* other,
                                   std::span<const ColumnRange> pictures) {
    const KeyChange* const change = other == nullptr ? moves.change
                                    : other->change  ? &*other->change
                                                     : nullptr;
    if (change == nullptr || line.empty())
        return std::nullopt;
    if (IsChordLine(line))
        return change->moveLine(line, pictures);
    if (other == nullptr)
        return std::nullopt;
    return moveLeftOver(line, other->line, *change, pictures);
}

std::optional<MovedLine> renamedLine(const KeyRespelling& names, std::size_t number) {
    MovedLine moved = names.moveLine(number);
    return moved.changed ? std::optional(std::move(moved)) : std::nullopt;
}

template <class IsPicture>
std::vector<ChordLine> moveLines(TextView text, const LineMoves& moves, IsPicture isPicture,
                                 const std::function<void()>& lineDone) {
    std::vector<ChordLine> lines;
    std::span<const OtherMove> others = moves.others;
    std::size_t number = 0;
    for (TextView rest = text;; ++number) {
        const std::size_t start = text.size() - rest.size();
        const TextLine line = takeEditorLine(rest);
        while (!others.empty() && others.front().line.number < number)
            others = others.subspan(1);
        const bool isOther = !others.empty() && others.front().line.number == number;
        if (isOther || IsChordLine(line.chars)) {
            // A tab in a row of a table ends a cell.
            const bool inTable = line.end.size() > 1;
            auto pictures = picturesOf(start, line.chars.size(), [&](std::size_t at) {
                return isPicture(at) || (inTable && text[at] == u'\t');
            });
            if (auto moved = isOther || moves.names == nullptr
                                 ? movedLine(line.chars, moves, isOther ? &others.front() : nullptr,
                                             pictures)
                                 : renamedLine(*moves.names, number))
                lines.push_back({start, line.chars.size(), std::move(pictures), std::move(*moved)});
        }
        lineDone();
        if (line.end.empty())
            return lines;
    }
}

Text textAfter(TextView before, const std::vector<ChordLine>& lines) {
    Text after;
    after.reserve(before.size() + lines.size() * 4);
    std::size_t copied = 0;
    for (const ChordLine& line : lines) {
        after.append(before.substr(copied, line.start - copied)).append(line.moved.line);
        copied = line.start + line.length;
    }
    return after.append(before.substr(copied));
}

// For every character of the new line, the column in the old line whose formatting it takes.
std::vector<std::uint32_t> formatSources(const ChordLine& line) {
    std::vector<std::uint32_t> sources;
    sources.reserve(line.moved.line.size());
    std::size_t old = 0;
    const auto copyUntil = [&](std::size_t column) {
        while (old < column)
            sources.push_back(static_cast<std::uint32_t>(old++));
    };
    for (const MovedRange& edit : line.moved.edits) {
        copyUntil(edit.before.column);
        // Inserted blanks go with the character before them, other text with what it replaces.
        const std::size_t first = edit.before.length == 0 && old > 0 ? old - 1 : edit.before.column;
        const std::size_t last = first + std::max<std::size_t>(edit.before.length, 1) - 1;
        for (std::size_t i = 0; i < edit.after.length; ++i)
            sources.push_back(static_cast<std::uint32_t>(std::min(first + i, last)));
        old = edit.before.column + edit.before.length;
    }
    copyUntil(line.length);
    return sources;
}

// Where the pictures of the line stand in the new line.
std::vector<ColumnRange> movedPictures(const ChordLine& line) {
    std::vector<ColumnRange> moved;
    for (const ColumnRange& picture : line.pictures) {
        std::ptrdiff_t shift = 0;
        for (const MovedRange& edit : line.moved.edits) {
            if (edit.before.column + edit.before.length > picture.column)
                break;
            shift += static_cast<std::ptrdiff_t>(edit.after.length) -
                     static_cast<std::ptrdiff_t>(edit.before.length);
        }
        moved.push_back(
            {static_cast<std::size_t>(static_cast<std::ptrdiff_t>(picture.column) + shift),
             picture.length});
    }
    return moved;
}

Selection rangeOf(std::size_t begin, std::size_t length) {
    return {static_cast<std::int32_t>(begin), static_cast<std::int32_t>(begin + length)};
}

// Colours a line that starts at `start`, around its pictures.
void colourLine(Editor& editor, std::size_t start, std::size_t length,
                const std::vector<ColumnRange>& pictures) {
    std::size_t column = 0;
    const auto colourUntil = [&](std::size_t end) {
        if (end > column) {
            editor.select(rangeOf(start + column, end - column));
            editor.setSelectionColour(kChordColour);
        }
    };
    for (const ColumnRange& picture : pictures) {
        colourUntil(picture.column);
        column = picture.column + picture.length;
    }
    colourUntil(length);
}

// The slow way: from the last change to the first, so that positions before it stay true.
void editLines(Editor& editor, const std::vector<ChordLine>& lines) {
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        const TextView text = line->moved.line;
        const auto& edits = line->moved.edits;
        for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
            editor.select(rangeOf(line->start + edit->before.column, edit->before.length));
            editor.replaceSelection(text.substr(edit->after.column, edit->after.length));
        }
        colourLine(editor, line->start, text.size(), movedPictures(*line));
    }
}

std::string rewritten(const RtfMap& map, const std::vector<ChordLine>& lines) {
    std::vector<LineRewrite> rewrites;
    rewrites.reserve(lines.size());
    for (const ChordLine& line : lines) {
        LineRewrite rewrite{line.start, line.length, line.moved.line, formatSources(line), {}};
        for (const ColumnRange& picture : movedPictures(line)) {
            rewrite.keepColour.resize(line.moved.line.size());
            std::fill_n(rewrite.keepColour.begin() + static_cast<std::ptrdiff_t>(picture.column),
                        picture.length, true);
        }
        rewrites.push_back(std::move(rewrite));
    }
    return map.rewrite(rewrites, kChordColour);
}

// Follows a position from the text before to the text after: same line, same column.
std::int32_t followed(std::int32_t position, const std::vector<ChordLine>& lines) {
    std::ptrdiff_t shift = 0;
    const auto at = static_cast<std::size_t>(position);
    for (const ChordLine& line : lines) {
        if (line.start > at)
            break;
        const std::size_t newLength = line.moved.line.size();
        if (at <= line.start + line.length)
            return static_cast<std::int32_t>(
                static_cast<std::ptrdiff_t>(line.start + std::min(at - line.start, newLength)) +
                shift);
        shift += static_cast<std::ptrdiff_t>(newLength) - static_cast<std::ptrdiff_t>(line.length);
    }
    return static_cast<std::int32_t>(position + shift);
}

// The document in its two forms, and what in it is no writing.
class Document {
  public:
    explicit Document(Editor& editor)
        : editor_(editor),
          text_(editor.text().chars),
          rtf_(editor.rtf()),
          map_(RtfMap::matching(rtf_, text_)),
          hasDiagrams_(rtf_.find("Melvorin ") != std::string::npos) {}

    LeftOver leftOver() const;
    void move(const LineMoves& moves, const std::function<void()>& lineDone);
    TextView text() const { return text_; }
    // Its lines, with what in them is no writing; `pictures` holds that.
    std::vector<SpelledLine> lines(std::vector<std::vector<ColumnRange>>& pictures) const;

  private:
    bool isPicture(std::size_t position) const {
        return (map_ && map_->isWholeAt(position)) || isDiagramAt(position);
    }
    bool isDiagramAt(std::size_t position) const {
        if (!hasDiagrams_)
            return false;
        return isDiagramFace(map_ ? map_->fontNameAt(position)
                                  : editor_.faceAt(static_cast<std::int32_t>(position)));
    }
    std::vector<std::size_t> diagramLines(const std::vector<ColumnRange>& pictures) const;
    void load(const std::vector<ChordLine>& lines);

    Editor& editor_;
    Text text_;
    std::string rtf_;
    std::optional<RtfMap> map_;
    bool hasDiagrams_;
};

LeftOver Document::leftOver() const {
    // Soft line breaks end lines of a chart too.
    Text song = text_;
    std::replace(song.begin(), song.end(), u'\v', u'\r');
    std::vector<ColumnRange> pictures;
    if (map_ || hasDiagrams_) {
        pictures = picturesOf(0, song.size(), [&](std::size_t position) {
            return TextView(u" \t\r\n").find(song[position]) == TextView::npos &&
                   isPicture(position);
        });
    }
    LeftOver found = findLeftOver(song, pictures);
    if (hasDiagrams_)
        found.diagramLines = diagramLines(pictures);
    return found;
}

std::vector<std::size_t> Document::diagramLines(const std::vector<ColumnRange>& pictures) const {
    std::vector<std::size_t> numbers;
    std::span<const ColumnRange> rest = pictures;
    std::size_t number = 0;
    std::size_t position = 0;
    for (TextView text = text_; !text.empty() && !rest.empty(); ++number) {
        const TextLine line = takeEditorLine(text);
        const std::size_t end = position + line.chars.size();
        for (; !rest.empty() && rest.front().column < end; rest = rest.subspan(1)) {
            const ColumnRange& picture = rest.front();
            bool isDiagram = false;
            for (std::size_t i = 0; i < picture.length && !isDiagram; ++i)
                isDiagram = isDiagramAt(picture.column + i);
            if (isDiagram && (numbers.empty() || numbers.back() != number))
                numbers.push_back(number);
        }
        position = end + line.end.size();
    }
    return numbers;
}

std::vector<SpelledLine> Document::lines(std::vector<std::vector<ColumnRange>>& pictures) const {
    std::vector<SpelledLine> song;
    const TextView text = text_;
    for (TextView rest = text;;) {
        const std::size_t start = text.size() - rest.size();
        const TextLine line = takeEditorLine(rest);
        song.push_back({line.chars, {}});
        pictures.push_back(picturesOf(start, IsChordLine(line.chars) ? line.chars.size() : 0,
                                      [this](std::size_t at) { return isPicture(at); }));
        if (line.end.empty())
            break;
    }
    for (std::size_t i = 0; i < song.size(); ++i)
        song[i].fixed = pictures[i];
    return song;
}

void Document::load(const std::vector<ChordLine>& lines) {
    const Text after = textAfter(text_, lines);
    if (map_ && loadRewritten(editor_, rtf_, text_, rewritten(*map_, lines), after))
        return;
    editLines(editor_, lines);
    if (editor_.text().chars != after)
        throw std::runtime_error("the editor makes another text of it");
}

void Document::move(const LineMoves& moves, const std::function<void()>& lineDone) {
    const Selection selection = editor_.selection();
    const ScrollPosition scroll = editor_.scrollPosition();
    const std::vector<ChordLine> lines = moveLines(
        text_, moves, [this](std::size_t at) { return isPicture(at); }, lineDone);
    if (lines.empty())
        return;
    try {
        load(lines);
    } catch (...) {
        editor_.loadRtf(rtf_);
        editor_.select(selection);
        editor_.scrollTo(scroll);
        throw;
    }
    editor_.select({followed(selection.begin, lines), followed(selection.end, lines)});
    editor_.scrollTo(scroll);
}

std::vector<OtherMove> chosenOthers(const Document& document, const ChooseOthers& others) {
    return others ? others(document.leftOver(), document.text()) : std::vector<OtherMove>();
}

}  // namespace

void changeDocumentKey(Editor& editor, const KeyChange& change,
                       const std::function<void()>& lineDone, const ChooseOthers& others) {
    Document document(editor);
    const EditorWork work(editor);
    document.move({&change, chosenOthers(document, others)}, lineDone);
}

void followKeyInDocument(Editor& editor, const FoundKey& found, int steps, Spelling side,
                         const std::function<void()>& lineDone, const ChooseOthers& others) {
    Document document(editor);
    const EditorWork work(editor);
    std::vector<std::vector<ColumnRange>> pictures;
    const std::vector<SpelledLine> song = document.lines(pictures);
    const KeyRespelling names(song, found, steps, side);
    document.move({nullptr, chosenOthers(document, others), &names}, lineDone);
}

void moveOthersInDocument(Editor& editor, const ChooseOthers& others,
                          const std::function<void()>& lineDone) {
    Document document(editor);
    const EditorWork work(editor);
    document.move({nullptr, chosenOthers(document, others)}, lineDone);
}

LeftOver leftOverInDocument(Editor& editor) {
    const EditorWork work(editor);
    return Document(editor).leftOver();
}

}  // namespace melvorin
