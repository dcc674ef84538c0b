#include "editing/FollowDocument.h"

#include <algorithm>
#include <map>

#include "base/DiagramFont.h"
#include "platform/Handles.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

// A document with more stretches of other faces than this is looked at line by line.
constexpr std::size_t kMostFaceRunsOfLines = 2000;

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

// A letter that is as wide as a cell.
bool isLetter(char16_t c) {
    return c >= u' ' && c < 0x7F;
}

// Position of a letter that is no diagram, behind a place or else in front of it; -1 where there is
// none close by.
std::int32_t letterNear(MappedDocument& document, std::size_t place) {
    constexpr std::size_t most = 200;
    const TextView text = document.text();
    const auto isHere = [&](std::size_t at) {
        return isLetter(text[at]) && !document.isDiagramAt(at);
    };
    for (std::size_t at = place; at < std::min(text.size(), place + most); ++at) {
        if (isHere(at))
            return positionOf(at);
    }
    for (std::size_t at = place; at > place - std::min(place, most); --at) {
        if (isHere(at - 1))
            return positionOf(at - 1);
    }
    return -1;
}

// What of them is left when the edits are made, and where it is then.
void moveDiagrams(std::vector<DiagramCells>& diagrams, const std::vector<FollowEdit>& edits) {
    std::vector<DiagramCells> left;
    for (DiagramCells diagram : diagrams) {
        std::size_t position = diagram.position;
        bool stays = true;
        for (const FollowEdit& edit : edits) {
            const std::size_t end = edit.position + edit.length;
            stays = stays && (diagram.position < edit.position || diagram.position >= end);
            if (end <= diagram.position)
                position += edit.text.size() - edit.length;
        }
        diagram.position = position;
        if (stays)
            left.push_back(diagram);
    }
    diagrams = std::move(left);
}

// The formats of a part of a text, by the pieces of all of it; nothing where they do not reach.
std::vector<RichEdit::Piece> partOf(const std::vector<RichEdit::Piece>& pieces, std::size_t begin,
                                    std::size_t length) {
    std::vector<RichEdit::Piece> part;
    std::size_t at = 0;
    for (const RichEdit::Piece& piece : pieces) {
        const std::size_t from = std::max(begin, at);
        const std::size_t to = std::min(begin + length, at + piece.text.size());
        if (from < to) {
            part.push_back(piece);
            part.back().text = piece.text.substr(from - at, to - from);
        }
        at += piece.text.size();
    }
    return at < begin + length ? std::vector<RichEdit::Piece>() : part;
}

}  // namespace

bool FollowDocument::isPlain(TextView text) {
    return std::none_of(text.begin(), text.end(), isStructure);
}

// Where the lines above a place begin that an edit there may need.
std::int32_t FollowDocument::startAbove(std::int32_t position) const {
    // An edit may take the line end before it.
    constexpr auto above = static_cast<std::int32_t>(kLinesAbove) + 1;
    return editor_.firstOfLine(std::max(0, editor_.lineOf(position) - above));
}

std::optional<Excerpt> FollowDocument::withDiagrams(Excerpt text) {
    auto diagrams = diagramsIn(text);
    if (!diagrams)
        return std::nullopt;
    text.diagrams = std::move(*diagrams);
    return text;
}

std::optional<Excerpt> FollowDocument::linesAround(Selection range) {
    // An edit may take the line end behind it.
    constexpr auto below = static_cast<std::int32_t>(kLinesBelow) + 2;
    const std::int32_t start = startAbove(range.begin);
    const std::int32_t next = editor_.firstOfLine(editor_.lineOf(range.end) + below);
    const std::int32_t end = next > start ? next - 1 : editor_.length();
    Excerpt text{sizeOf(start), editor_.textBetween({start, end}), {}};
    if (positionOf(text.chars.size()) != end - start || !isPlain(text.chars))
        return std::nullopt;
    return withDiagrams(std::move(text));
}

std::optional<Excerpt> FollowDocument::linesFrom(std::int32_t position) {
    const std::int32_t start = startAbove(position);
    Excerpt text{sizeOf(start), editor_.textBetween({start, editor_.length()}), {}};
    const auto structure = std::find_if(text.chars.begin(), text.chars.end(), isStructure);
    if (structure != text.chars.end()) {
        const auto line =
            text.chars.rfind(u'\r', static_cast<std::size_t>(structure - text.chars.begin()));
        text.chars.resize(line == Text::npos ? 0 : line);
    }
    if (positionOf(text.end()) < position)
        return std::nullopt;
    return withDiagrams(std::move(text));
}

bool FollowDocument::hasDiagrams() {
    if (!hasDiagrams_)
        hasDiagrams_ = editor_.mayHaveFace(isDiagramFace);
    return *hasDiagrams_;
}

std::optional<std::vector<DiagramCells>> FollowDocument::diagramsIn(const Excerpt& text) {
    if (text.chars.empty() || !hasDiagrams())
        return std::vector<DiagramCells>();
    if (!known_ || known_->start != text.start || known_->chars != text.chars) {
        known_.reset();
        auto diagrams = lookForDiagrams(text);
        if (!diagrams)
            return std::nullopt;
        known_ = text;
        known_->diagrams = std::move(*diagrams);
    }
    return known_->diagrams;
}

std::optional<std::vector<DiagramCells>> FollowDocument::diagramsAfterKey(const Excerpt& before,
                                                                          const Excerpt& after,
                                                                          std::size_t caret) {
    // A character may have two halves. What it is tells the format at the caret behind it.
    constexpr std::size_t mostTyped = 2;
    const TextEdit edit = differenceOf(before, after, caret);
    const auto isWriting = [&] {
        return edit.text.size() <= mostTyped && caret == edit.position + edit.text.size() &&
               !isDiagramFace(editor_.selectionStyle().face.value_or(Text()));
    };
    if (!known_ || known_->chars != before.chars || (!edit.text.empty() && !isWriting()))
        return diagramsIn(after);
    known_->chars = after.chars;
    moveDiagrams(known_->diagrams, {{edit.position, edit.length, edit.text, Origin::New, 0}});
    return known_->diagrams;
}

std::optional<std::vector<DiagramCells>> FollowDocument::lookForDiagrams(const Excerpt& text) {
    const RichEdit::Quiet quiet(editor_);
    const auto runs =
        editor_.faceRuns({positionOf(text.start), positionOf(text.end())}, kMostFaceRunsOfLines);
    if (!runs)
        return std::nullopt;
    std::int32_t letter = -1;
    std::vector<std::size_t> diagrams;
    for (const RichEdit::FaceRun& run : *runs) {
        for (std::int32_t at = run.range.begin; at < run.range.end; ++at) {
            if (isDiagramFace(run.face))
                diagrams.push_back(sizeOf(at));
            else if (letter < 0 && isLetter(text.chars[sizeOf(at) - text.start]))
                letter = at;
        }
    }
    return cellsOf(diagrams, letter);
}

std::optional<std::vector<DiagramCells>> FollowDocument::diagramsNear(
    MappedDocument& document, const std::vector<TextEdit>& edits) {
    std::vector<DiagramCells> all;
    if (!document.mayHaveDiagrams())
        return all;
    if (document.map() == nullptr)
        return std::nullopt;
    constexpr int linesAway = 2;
    const TextView text = document.text();
    std::size_t done = 0;
    for (const TextEdit& edit : edits) {
        std::size_t begin = edit.position;
        for (int line = 0; begin > done && (text[begin - 1] != u'\r' || line++ < linesAway);)
            --begin;
        std::size_t end = edit.position;
        for (int line = 0; end < text.size() && (text[end] != u'\r' || line++ < linesAway);)
            ++end;
        for (done = std::max(begin, done); done < end; ++done) {
            if (!document.isDiagramAt(done))
                continue;
            const auto cells = cellsOf({done}, letterNear(document, done));
            all.insert(all.end(), cells.begin(), cells.end());
        }
    }
    return all;
}

// As wide as so many letters like the one at `letter`; one cell where there is none.
std::vector<DiagramCells> FollowDocument::cellsOf(const std::vector<std::size_t>& diagrams,
                                                  std::int32_t letter) {
    const auto widthAt = [&](std::int32_t position) {
        return editor_.pointOf(position + 1).x - editor_.pointOf(position).x;
    };
    const long cell = letter < 0 ? 0 : std::max(widthAt(letter), 0L);
    std::vector<DiagramCells> all;
    all.reserve(diagrams.size());
    for (const std::size_t position : diagrams) {
        const long cells =
            cell > 0 ? std::max(1L, (widthAt(positionOf(position)) + cell / 2) / cell) : 1;
        all.push_back({position, sizeOf(static_cast<std::int32_t>(cells))});
    }
    return all;
}

bool FollowDocument::mayAllFollow(TextView text) {
    if (std::any_of(text.begin(), text.end(), isRightToLeft))
        return false;
    const RichEdit::Quiet quiet(editor_);
    const SelectionStyle style = editor_.styleOf({0, positionOf(text.size())});
    return style.alignment == Alignment::Left && style.face && isMonospaced(*style.face);
}

bool FollowDocument::mayFollow(const std::vector<FollowEdit>& edits, const Excerpt& text) {
    // Each edit with the line below it, where the words are.
    std::size_t done = 0;
    for (const FollowEdit& edit : edits) {
        const std::size_t first = edit.position - text.start;
        const std::size_t before = first == 0 ? Text::npos : text.chars.rfind(u'\r', first - 1);
        const std::size_t begin = std::max(before == Text::npos ? 0 : before + 1, done);
        const std::size_t last =
            std::min(text.chars.find(u'\r', first + edit.length), text.chars.size());
        const std::size_t end = std::min(text.chars.find(u'\r', last + 1), text.chars.size());
        if (end <= begin)
            continue;
        done = end;
        if (trusted_ == text.start + begin)
            continue;
        trusted_.reset();
        if (!mayFollow(TextView(text.chars).substr(begin, end - begin),
                       {positionOf(text.start + begin), positionOf(text.start + end)}))
            return false;
        trusted_ = text.start + begin;
    }
    return true;
}

bool FollowDocument::mayFollow(TextView lines, Selection range) {
    if (std::any_of(lines.begin(), lines.end(), isRightToLeft))
        return false;
    const RichEdit::Quiet quiet(editor_);
    const SelectionStyle style = editor_.styleOf(range);
    if (style.alignment != Alignment::Left)
        return false;
    const auto runs = style.face ? std::vector<RichEdit::FaceRun>{{range, *style.face}}
                                 : editor_.faceRuns(range, kMostFaceRunsOfLines);
    return runs && std::all_of(runs->begin(), runs->end(), [](const RichEdit::FaceRun& run) {
               return isDiagramFace(run.face) || isMonospaced(run.face);
           });
}

bool FollowDocument::isSmall(const FollowAnswer& answer) {
    constexpr std::size_t most = 4;
    return answer.edits.size() <= most &&
           std::all_of(answer.edits.begin(), answer.edits.end(), [](const FollowEdit& edit) {
               return edit.origin == Origin::New && edit.text.find(u'\r') == Text::npos;
           });
}

void FollowDocument::makeUnseen(const FollowAnswer& answer,
                                const std::vector<RichEdit::Piece>& incoming) {
    RichEdit::Quiet quiet(editor_);
    quiet.changed();
    make(answer, incoming);
}

void FollowDocument::make(const FollowAnswer& answer,
                          const std::vector<RichEdit::Piece>& incoming) {
    std::vector<std::vector<RichEdit::Piece>> carried;
    for (const FollowEdit& edit : answer.edits) {
        if (edit.origin == Origin::Document)
            carried.push_back(editor_.piecesOf(
                {positionOf(edit.from), positionOf(edit.from + edit.text.size())}));
        else if (edit.origin == Origin::Incoming)
            carried.push_back(partOf(incoming, edit.from, edit.text.size()));
        else
            carried.emplace_back();
    }
    if (known_ && isSmall(answer)) {
        applyEdits(known_->chars, answer.edits, known_->start);
        moveDiagrams(known_->diagrams, answer.edits);
    } else {
        known_.reset();
    }
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

void FollowDocument::insert(const FollowEdit& edit, const std::vector<RichEdit::Piece>& pieces) {
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
