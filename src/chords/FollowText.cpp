#include "chords/FollowText.h"

#include <algorithm>

#include "base/EditorLine.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

// Characters that stood side by side in one place.
struct Piece {
    std::size_t begin = 0;  // in the new text
    std::size_t end = 0;
    Trace trace;  // of the first
    bool stays = false;

    std::size_t size() const { return end - begin; }
};

std::vector<Piece> piecesOf(const FollowText& text) {
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Trace& trace = text.trace(i);
        const bool goesOn = !pieces.empty() && pieces.back().trace.origin == trace.origin &&
                            (trace.origin == Origin::New ||
                             pieces.back().trace.from + pieces.back().size() == trace.from);
        if (!goesOn)
            pieces.push_back({i, i, trace, false});
        pieces.back().end = i + 1;
    }
    return pieces;
}

// The usual case: everything that is left stays, however much it is.
bool stayInOrder(std::vector<Piece>& pieces) {
    std::size_t behind = 0;
    for (const Piece& piece : pieces) {
        if (piece.trace.origin != Origin::Document)
            continue;
        if (piece.trace.from < behind)
            return false;
        behind = piece.trace.from + piece.size();
    }
    for (Piece& piece : pieces)
        piece.stays = piece.trace.origin == Origin::Document;
    return true;
}

// Of the pieces of the document, those stay that are in its order and hold the most characters.
void chooseStaying(std::vector<Piece>& pieces) {
    std::vector<std::size_t> weight(pieces.size(), 0);
    std::vector<std::size_t> before(pieces.size(), Text::npos);
    std::size_t best = Text::npos;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (pieces[i].trace.origin != Origin::Document)
            continue;
        weight[i] = pieces[i].size();
        for (std::size_t j = 0; j < i; ++j) {
            const bool precedes = pieces[j].trace.origin == Origin::Document &&
                                  pieces[j].trace.from + pieces[j].size() <= pieces[i].trace.from;
            if (precedes && weight[j] + pieces[i].size() > weight[i]) {
                weight[i] = weight[j] + pieces[i].size();
                before[i] = j;
            }
        }
        if (best == Text::npos || weight[i] > weight[best])
            best = i;
    }
    for (; best != Text::npos; best = before[best])
        pieces[best].stays = true;
}

}  // namespace

void applyEdits(Text& text, const std::vector<FollowEdit>& edits, std::size_t start) {
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
        text.replace(edit->position - start, edit->length, edit->text);
}

std::size_t positionAfter(const std::vector<FollowEdit>& edits, std::size_t position) {
    std::size_t moved = position;
    for (const FollowEdit& edit : edits) {
        if (edit.position >= position)
            break;
        moved = moved + edit.text.size() - std::min(edit.length, position - edit.position);
    }
    return moved;
}

FollowText::FollowText(TextView chars, Origin origin, std::size_t from)
    : chars_(chars), traces_(chars.size()) {
    for (std::size_t i = 0; i < traces_.size(); ++i)
        traces_[i] = {origin, origin == Origin::New ? 0 : from + i, 0};
}

FollowText FollowText::part(std::size_t begin, std::size_t end) const {
    end = std::min(end, size());
    begin = std::min(begin, end);
    FollowText result;
    result.chars_ = chars_.substr(begin, end - begin);
    result.traces_.assign(traces_.begin() + static_cast<std::ptrdiff_t>(begin),
                          traces_.begin() + static_cast<std::ptrdiff_t>(end));
    return result;
}

void FollowText::append(const FollowText& other) {
    chars_ += other.chars_;
    traces_.insert(traces_.end(), other.traces_.begin(), other.traces_.end());
}

void FollowText::appendBlanks(std::size_t count) {
    chars_.append(count, u' ');
    traces_.resize(chars_.size());
}

bool FollowText::hasDiagrams() const {
    return std::any_of(traces_.begin(), traces_.end(),
                       [](const Trace& trace) { return trace.cells > 0; });
}

Text FollowText::writing() const {
    Text text = chars_;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (traces_[i].cells > 0)
            text[i] = u' ';
    }
    return text;
}

std::vector<std::size_t> FollowText::columns(std::size_t column) const {
    std::vector<std::size_t> result;
    result.reserve(size() + 1);
    for (std::size_t i = 0; i < size();) {
        if (traces_[i].cells > 0) {
            result.push_back(column);
            column += traces_[i++].cells;
            continue;
        }
        std::size_t end = i;
        while (end < size() && traces_[end].cells == 0)
            ++end;
        CellReader reader(chars().substr(i, end - i), column);
        CellCharacter character;
        while (reader.next(character)) {
            result.push_back(character.column);
            column = character.column + character.width;
            result.insert(result.end(), character.length - 1, column);
        }
        i = end;
    }
    result.push_back(column);
    return result;
}

bool FollowText::isBlank() const {
    return trimmed(chars_).empty() && !hasDiagrams();
}

FollowLines linesOf(const Excerpt& excerpt) {
    FollowLines lines;
    auto diagram = excerpt.diagrams.begin();
    std::size_t position = excerpt.start;
    TextView rest = excerpt.chars;
    do {
        const TextLine line = takeEditorLine(rest);
        lines.push_back({FollowText(line.chars, Origin::Document, position),
                         FollowText(line.end, Origin::Document, position + line.chars.size())});
        for (;
             diagram != excerpt.diagrams.end() && diagram->position < position + line.chars.size();
             ++diagram) {
            if (diagram->position >= position)
                lines.back().text.trace(diagram->position - position).cells = diagram->cells;
        }
        position += line.chars.size() + line.end.size();
    } while (!lines.back().end.empty());
    return lines;
}

FollowLines cutAtLineEnds(const FollowText& text) {
    FollowLines lines;
    std::size_t begin = 0;
    TextView rest = text.chars();
    do {
        const TextLine line = takeEditorLine(rest);
        const std::size_t end = begin + line.chars.size();
        lines.push_back({text.part(begin, end), text.part(end, end + line.end.size())});
        begin = end + line.end.size();
    } while (!lines.back().end.empty());
    return lines;
}

LinePlace placeOf(const FollowLines& lines, std::size_t start, std::size_t position) {
    std::size_t index = position - start;
    std::size_t line = 0;
    while (line + 1 < lines.size() && index >= lines[line].text.size() + lines[line].end.size()) {
        index -= lines[line].text.size() + lines[line].end.size();
        ++line;
    }
    return {line, std::min(index, lines[line].text.size())};
}

std::size_t positionOf(const FollowLines& lines, std::size_t start, LinePlace place) {
    for (std::size_t line = 0; line < place.line; ++line)
        start += lines[line].text.size() + lines[line].end.size();
    return start + place.index;
}

FollowText joined(const FollowLines& lines) {
    FollowText text;
    for (const FollowLine& line : lines) {
        text.append(line.text);
        text.append(line.end);
    }
    return text;
}

void replaceLines(FollowLines& all, std::size_t first, std::size_t last, const FollowLines& lines) {
    const auto at = all.begin() + static_cast<std::ptrdiff_t>(first);
    all.insert(all.erase(at, at + static_cast<std::ptrdiff_t>(last + 1 - first)), lines.begin(),
               lines.end());
}

std::vector<FollowEdit> editsTo(const FollowText& text, std::size_t begin, std::size_t end) {
    std::vector<Piece> pieces = piecesOf(text);
    if (!stayInOrder(pieces))
        chooseStaying(pieces);
    std::vector<FollowEdit> edits;
    std::size_t at = begin;   // what of the document is dealt with
    std::size_t waiting = 0;  // edits at `at` that do not know yet what goes there
    const auto closeGap = [&](std::size_t to) {
        if (waiting == 0 && to > at)
            edits.push_back({at, to - at, Text(), Origin::New, 0});
        for (std::size_t i = edits.size() - waiting; i < edits.size(); ++i) {
            const bool first = i + waiting == edits.size();
            edits[i].position = first ? at : to;
            edits[i].length = first ? to - at : 0;
        }
        waiting = 0;
        at = to;
    };
    for (const Piece& piece : pieces) {
        if (piece.stays) {
            closeGap(piece.trace.from);
            at += piece.size();
            continue;
        }
        edits.push_back({at, 0, Text(text.chars().substr(piece.begin, piece.size())),
                         piece.trace.origin, piece.trace.from});
        ++waiting;
    }
    closeGap(end);
    return edits;
}

}  // namespace melvorin
