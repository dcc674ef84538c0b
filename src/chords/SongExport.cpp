#include "chords/SongExport.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chords/BracketedLine.h"
#include "chords/CellWidth.h"
#include "chords/ChordProExport.h"
#include "chords/Directives.h"
#include "chords/SongDiagrams.h"
#include "chords/SongImport.h"
#include "chords/SongParts.h"

namespace melvorin {
namespace {

using Kind = ChartBlock::Kind;

// ---- Lines with their chords by other names ----------------------------------------------------

class Renamer {
  public:
    Renamer(const SongImport& song, const SongChordNames& names) : song_(song), names_(names) {}

    // The block stands at line `number` of the song.
    void rename(ChartBlock& block, std::size_t number) const;

  private:
    Text row(TextView line) const;
    Text label(TextView line) const;
    void renamePair(ChartBlock& block) const;
    std::optional<BracketedLine> placed(TextView chords, TextView words) const {
        return placeBrackets(pairInBrackets(chords, words, names_.reading()),
                             [this](TextView chord) { return names_(chord); });
    }

    const SongImport& song_;
    const SongChordNames& names_;
};

bool hasBracket(TextView line) {
    return line.find_first_of(u"[]") != TextView::npos;
}

// A line of chords alone: what needs more room moves what is behind it.
Text Renamer::row(TextView line) const {
    const auto placed = this->placed(line, u"");
    return placed ? writeRow(placed->chords) : Text(line);
}

// "Intro: Am  G"
Text Renamer::label(TextView line) const {
    const std::size_t length = sectionLabelLength(line, names_.reading());
    const TextView behind = line.substr(length);
    const bool isRow = length > 0 && isRowOfChords(readRow(behind, 0, 0, names_.reading()));
    return Text(line.substr(0, length)).append(isRow ? row(behind) : Text(behind));
}

// Brackets of the words are letters meanwhile.
void Renamer::renamePair(ChartBlock& block) const {
    constexpr TextView brackets = u"[]";
    constexpr TextView standIns = u"\uFDD0\uFDD1";
    const auto exchange = [](Text& text, TextView from, TextView to) {
        for (char16_t& c : text) {
            if (const std::size_t at = from.find(c); at != TextView::npos)
                c = to[at];
        }
    };
    Text words = block.words;
    exchange(words, brackets, standIns);
    auto placed = this->placed(block.chords, words);
    if (!placed)
        return;
    exchange(placed->lyrics, standIns, brackets);
    block.chords = writeRow(placed->chords);
    block.words = std::move(placed->lyrics);
}

void Renamer::rename(ChartBlock& block, std::size_t number) const {
    if (names_.names() == ChordNames::House)
        return;
    const bool isText = block.kind == Kind::Words || block.kind == Kind::Label;
    const TextView line = isText ? block.words : block.chords;
    if (hasBracket(line)) {
        if (auto named = withNamedBrackets(song_, number, names_))
            (isText ? block.words : block.chords) = std::move(*named);
        return;
    }
    if (block.kind == Kind::Pair)
        renamePair(block);
    else if (block.kind == Kind::Chords)
        block.chords = row(block.chords);
    else if (block.kind == Kind::Label)
        block.words = label(block.words);
}

Kind kindOf(const SongImport& song, std::size_t number, std::optional<std::size_t> title) {
    const SourceLine& line = song.source[number];
    if (trimmed(line.text).empty())
        return Kind::Blank;
    if (title == number)
        return Kind::Title;
    switch (line.verdict) {
        case LineVerdict::Chords:
            return Kind::Chords;
        case LineVerdict::Section:
            return Kind::Label;
        case LineVerdict::Tablature:
            return Kind::Tablature;
        case LineVerdict::Directive:
            return Kind::Directive;
        default:
            return Kind::Words;
    }
}

// ---- The page ----------------------------------------------------------------------------------

constexpr TextView kStyle =
    u"body{font-family:\"DejaVu Sans Mono\",Consolas,\"Courier New\",monospace;line-height:1.25;"
    u"max-width:52em;margin:1em auto;padding:0 1em;color:#000;background:#fff}\n"
    u"h1{font-size:1.4em}\nh2{font-size:1em;margin:0 0 .3em}\n"
    u"section{margin:0 0 1.2em;break-inside:avoid}\n"
    u"p{margin:0;padding-left:2ch;text-indent:-2ch;min-height:1.25em}\n"
    u"p span{display:inline-block;white-space:pre;text-indent:0;vertical-align:bottom}\n"
    u"b{color:#b00000}\npre{margin:0;font:inherit;overflow-x:auto}\n"
    u"svg{height:5em;vertical-align:bottom}\n"
    u"@media screen and (prefers-color-scheme:dark){"
    u"body{color:#e8e8e8;background:#181818}b{color:#ff8a80}svg{background:#fff}}\n"
    u"@media print{body{max-width:none;margin:0;padding:0;color:#000;background:#fff}"
    u"b{color:#000}pre{overflow:visible;white-space:pre-wrap}}\n";

class Page {
  public:
    explicit Page(const DrawDiagram& draw) : draw_(draw) {}

    void add(const ChartBlock& block);
    Text finished(TextView title);

  private:
    void open(bool inTablature);
    void close();
    void addPair(const ChartBlock& block);
    void addDirective(TextView line);
    void addPlain(TextView text);

    const DrawDiagram& draw_;
    Text body_;
    bool isOpen_ = false;
    bool inTablature_ = false;
};

void Page::addPlain(TextView text) {
    for (const char16_t c : text) {
        if (c == u'&')
            body_ += u"&amp;";
        else if (c == u'<')
            body_ += u"&lt;";
        else if (isDiagramToken(c) && draw_)
            body_ += draw_(c).value_or(Text());
        else if (c >= u' ' || c == u'\t')
            body_ += c;
    }
}

void Page::close() {
    if (inTablature_)
        body_ += u"</pre>\n";
    if (isOpen_)
        body_ += u"</section>\n";
    isOpen_ = inTablature_ = false;
}

void Page::open(bool inTablature) {
    if (!isOpen_)
        body_ += u"<section>\n";
    isOpen_ = true;
    if (inTablature != inTablature_)
        body_ += inTablature ? u"<pre>" : u"</pre>\n";
    inTablature_ = inTablature;
}

// The line in pieces that begin in these columns; the last of them only ends the one before.
std::vector<Text> piecesOf(TextView line, const std::vector<std::size_t>& columns) {
    std::vector<Text> pieces(columns.size() - 1);
    CellReader reader(line);
    CellCharacter character;
    std::size_t piece = 0;
    while (reader.next(character)) {
        while (piece + 1 < pieces.size() && character.column >= columns[piece + 1])
            ++piece;
        pieces[piece] += line.substr(character.index, character.length);
    }
    return pieces;
}

// Where each cell of a line begins something: 'x' a character, ' ' a blank.
Text cellMap(TextView line) {
    Text map;
    CellReader reader(line);
    CellCharacter character;
    while (reader.next(character))
        map.resize(std::max(map.size(), character.column + character.width),
                   isAnyBlank(character.code) ? u' ' : u'x');
    return map;
}

// The columns where a line may wrap: where a word begins and no chord is cut.
std::vector<std::size_t> pieceColumns(TextView chords, TextView words) {
    const Text above = cellMap(chords);
    const Text below = cellMap(words);
    const auto blankAt = [](const Text& map, std::size_t column) {
        return column >= map.size() || map[column] == u' ';
    };
    std::vector<std::size_t> columns{0};
    const std::size_t width = std::max(above.size(), below.size());
    for (std::size_t column = 1; column < width; ++column) {
        const bool wordsPart = blankAt(below, column - 1);
        const bool chordsPart = blankAt(above, column - 1);
        const bool begins = !blankAt(below, column) || !blankAt(above, column);
        if (wordsPart && chordsPart && begins)
            columns.push_back(column);
    }
    columns.push_back(std::max(width, columns.back() + 1));
    return columns;
}

void Page::addPair(const ChartBlock& block) {
    const std::vector<std::size_t> columns = pieceColumns(block.chords, block.words);
    const std::vector<Text> chords = piecesOf(block.chords, columns);
    const std::vector<Text> words = piecesOf(block.words, columns);
    body_ += u"<p>";
    for (std::size_t i = 0; i < chords.size(); ++i) {
        const Text& above = chords[i];
        const Text& below = words[i];
        body_ += u"<span>";
        if (block.kind != Kind::Words) {
            body_ += u"<b>";
            addPlain(above);
            body_ += u"</b>";
        }
        // A last line of nothing would be no line, and the chords would stand at its height.
        if (block.kind == Kind::Pair)
            body_ += below.empty() ? u"\n " : u"\n";
        addPlain(below);
        body_ += u"</span>";
        // A line may wrap here; the blanks are in the piece before it.
        body_ += u"<wbr>";
    }
    body_ += u"</p>\n";
}

void Page::addDirective(TextView line) {
    const auto words = wordsOfDirective(line);
    if (!words)
        return;
    ChartBlock block;
    block.kind = Kind::Words;
    block.words = *words;
    add(block);
}

void Page::add(const ChartBlock& block) {
    switch (block.kind) {
        case Kind::Blank:
            return close();
        case Kind::Directive:
            return addDirective(block.words);
        case Kind::Title:
            close();
            body_ += u"<h1>";
            addPlain(trimmed(block.words));
            body_ += u"</h1>\n";
            return;
        case Kind::Label:
            close();
            open(false);
            body_ += u"<h2>";
            addPlain(trimmed(block.words));
            body_ += u"</h2>\n";
            return;
        case Kind::Tablature:
            open(true);
            addPlain(block.words);
            body_ += u"\n";
            return;
        default:
            open(false);
            return addPair(block);
    }
}

// A title has no pictures.
Text withoutDiagrams(TextView title) {
    Text plain;
    std::copy_if(title.begin(), title.end(), std::back_inserter(plain),
                 [](char16_t c) { return !isDiagramToken(c); });
    return Text(trimmed(plain));
}

Text Page::finished(TextView title) {
    close();
    const Text body = std::exchange(body_, {});
    body_ =
        u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"
        u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
    addPlain(withoutDiagrams(title));
    return body_.append(u"</title>\n<style>\n")
        .append(kStyle)
        .append(u"</style>\n</head>\n<body>\n")
        .append(body)
        .append(u"</body>\n</html>\n");
}

std::vector<ChartBlock> blocksOf(const SongImport& song, const SongChordNames& names) {
    const Renamer renamer(song, names);
    const std::optional<std::size_t> title = titleLine(song);
    std::vector<ChartBlock> blocks;
    blocks.reserve(song.source.size());
    for (std::size_t number = 0; number < song.source.size(); ++number) {
        const SourceLine& line = song.source[number];
        const std::size_t first = number;
        ChartBlock block;
        block.kind = kindOf(song, number, title);
        block.end = line.end;
        if (block.kind == Kind::Chords) {
            block.chords = line.text;
            if (areWordsBelow(song, number + 1)) {
                block.kind = Kind::Pair;
                block.chordsEnd = line.end;
                block.words = song.source[++number].text;
                block.end = song.source[number].end;
            }
        } else {
            block.words = line.text;
        }
        renamer.rename(block, first);
        blocks.push_back(std::move(block));
    }
    return blocks;
}

Text textOf(const std::vector<ChartBlock>& blocks) {
    Text text;
    for (const ChartBlock& block : blocks)
        text.append(block.chords).append(block.chordsEnd).append(block.words).append(block.end);
    return text;
}

}  // namespace

std::vector<ChartBlock> chartBlocks(TextView chart, ChordNames names) {
    const SongImport song = importSong(chart);
    return blocksOf(song, SongChordNames(chart, song, names));
}

Text exportText(TextView chart, ChordNames names) {
    return textOf(chartBlocks(chart, names));
}

Text exportText(TextView part, const SongChordNames& names) {
    return textOf(blocksOf(importSong(part), names));
}

Text exportHtml(TextView chart, ChordNames names, TextView title, const DrawDiagram& draw) {
    Page page(draw);
    Text ownTitle(title);
    for (const ChartBlock& block : chartBlocks(chart, names)) {
        if (block.kind == Kind::Title)
            ownTitle = trimmed(block.words);
        page.add(block);
    }
    return page.finished(ownTitle);
}

TextView fileEnd(SongFormat format) {
    return format == SongFormat::ChordPro    ? u"cho"
           : format == SongFormat::PlainText ? u"txt"
                                             : u"html";
}

}  // namespace melvorin
