#include "paper/PaperSong.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/DiagramFont.h"
#include "base/EditorLine.h"
#include "base/LetterCase.h"
#include "base/TabExpansion.h"
#include "chords/CellWidth.h"
#include "chords/Directives.h"
#include "chords/DocumentKey.h"
#include "chords/KeyReading.h"
#include "chords/KeySpelling.h"
#include "chords/LineVerdict.h"
#include "chords/SongDiagrams.h"
#include "chords/SongImport.h"
#include "chords/SongKey.h"
#include "rtf/RtfLooks.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfReader.h"

namespace melvorin {
namespace {

constexpr std::size_t kMostLooks = 0xFFFF;
// Of a title. What is longer is a text without line ends, and would fill the page as its head.
constexpr std::size_t kMostTitle = 200;

PaperLineKind kindOf(const PaperSong& song, const PaperLine& line, LineVerdict verdict) {
    const TextView writing = trimmed(line.text);
    if (writing.empty())
        return PaperLineKind::Blank;
    const bool onlyDiagrams = std::all_of(line.text.begin(), line.text.end(), [&](const auto& c) {
        const auto i = static_cast<std::size_t>(&c - line.text.data());
        return isAnyBlank(c) || song.looks[line.looks[i]].isDiagram;
    });
    if (onlyDiagrams)
        return PaperLineKind::Chords;
    switch (verdict) {
        case LineVerdict::Chords:
            return PaperLineKind::Chords;
        case LineVerdict::Section:
            return PaperLineKind::Label;
        case LineVerdict::Tablature:
            return PaperLineKind::Tablature;
        case LineVerdict::Lyrics:
        case LineVerdict::Directive:
            break;
    }
    return PaperLineKind::Words;
}

// The text of a song as the rules read it: a diagram is no letter.
Text readable(const PaperSong& song) {
    Text text;
    for (const PaperLine& line : song.lines) {
        for (std::size_t i = 0; i < line.text.size(); ++i)
            text += song.looks[line.looks[i]].isDiagram ? kFirstDiagramToken : line.text[i];
        text += u'\n';
    }
    if (!text.empty())
        text.pop_back();
    return text;
}

// "Capo 3", "Capo: 3rd fret". What is behind the word, up to the end of the line or a wide gap.
Text capoOf(TextView line) {
    constexpr TextView word = u"capo";
    const TextView text = trimmed(line);
    if (unicodeLowerCase(text.substr(0, word.size())) != word)
        return {};
    TextView value = text.substr(word.size());
    while (!value.empty() && (isAnyBlank(value[0]) || value[0] == u':'))
        value.remove_prefix(1);
    const std::size_t gap = value.find(u"  ");
    value = value.substr(0, gap);
    constexpr std::size_t most = 24;
    return value.empty() || value.size() > most || !isDigit(value[0]) ? Text() : Text(value);
}

// The first line names the song where no words follow it, or only a few without chords, in a song
// with chords: who wrote it, how it goes.
bool isTitle(const PaperSong& song) {
    if (song.lines.empty() || song.lines[0].kind != PaperLineKind::Words)
        return false;
    const PaperLine& first = song.lines[0];
    const bool hasDiagram = std::any_of(first.looks.begin(), first.looks.end(),
                                        [&](auto look) { return song.looks[look].isDiagram; });
    if (hasDiagram || first.text.size() > kMostTitle || readStatedKey(first.text) ||
        !capoOf(first.text).empty())
        return false;
    constexpr std::ptrdiff_t mostHeadings = 4;
    const auto end = std::find_if(song.lines.begin(), song.lines.end(), [](const PaperLine& line) {
        return line.kind != PaperLineKind::Words;
    });
    const std::ptrdiff_t headings = end - song.lines.begin();
    const bool isChords = end != song.lines.end() && end->kind == PaperLineKind::Chords;
    return !isChords && (headings == 1 || (headings <= mostHeadings && !song.chords.empty()));
}

// Paper has of a directive what there is to read, and no line for others.
void leaveDirectivesOut(PaperSong& song, const SongImport& read) {
    std::vector<PaperLine> lines;
    lines.reserve(song.lines.size());
    for (std::size_t i = 0; i < song.lines.size(); ++i) {
        PaperLine& line = song.lines[i];
        const bool isDirective =
            i < read.source.size() && read.source[i].verdict == LineVerdict::Directive;
        const auto words = isDirective ? wordsOfDirective(line.text) : std::nullopt;
        if (isDirective && !words)
            continue;
        if (words) {
            line.text = *words;
            line.looks.resize(line.text.size(), line.endLook);
        }
        lines.push_back(std::move(line));
    }
    song.lines = std::move(lines);
}

// A title in its full length, or as much as a head has room for.
Text headTitle(TextView title) {
    if (title.size() <= kMostTitle)
        return Text(title);
    Text head(title.substr(0, kMostTitle));
    const bool endsInHalf = (head.back() & 0xFC00U) == 0xD800U;
    if (endsInHalf)
        head.pop_back();
    return head + u"\u2026";
}

// Everything that follows from the lines: their kinds, title, key and chords.
void readSong(PaperSong& song, TextView name) {
    const Text text = readable(song);
    const SongImport read = importSong(text);
    std::set<Text> seen;
    for (const ImportedChord& chord : read.chords) {
        if (chord.isRead && seen.insert(chord.chord).second)
            song.chords.push_back(chord.chord);
    }
    for (std::size_t i = 0; i < song.lines.size(); ++i) {
        PaperLine& line = song.lines[i];
        const LineVerdict verdict =
            i < read.source.size() ? read.source[i].verdict : LineVerdict::Lyrics;
        line.kind = kindOf(song, line, verdict);
        if (song.capo.empty())
            song.capo = capoOf(line.text);
    }
    leaveDirectivesOut(song, read);
    song.titleIsFirstLine = isTitle(song);
    song.title = song.titleIsFirstLine ? Text(trimmed(song.lines[0].text)) : headTitle(name);
    const FoundKey key = findKey(text);
    if (key.key)
        song.key = keyName(*key.key, sideOf(text));
}

void trimEnd(PaperLine& line) {
    line.text.resize(trimmedRight(line.text).size());
    line.looks.resize(line.text.size());
}

// The title that the directives of a ChordPro song give it, which may be empty; nothing where the
// text is no such song.
std::optional<Text> chordProTitle(TextView text) {
    std::optional<Text> title;
    for (const TextView line : splitLines(text)) {
        const std::optional<Directive> directive = readDirective(line);
        if (!directive || !isKnownDirective(*directive))
            continue;
        if (!title)
            title.emplace();
        if (directive->name == u"title" && title->empty())
            title = Text(trimmed(directive->value));
    }
    return title;
}

// The looks of a document, each once.
class Looks {
  public:
    explicit Looks(PaperSong& song) : song_(song) {}

    std::uint16_t numberOf(const PaperLook& look) {
        if (!song_.looks.empty() && song_.looks[last_] == look)
            return last_;
        const auto begin = song_.looks.begin();
        auto found = std::find(begin, song_.looks.end(), look);
        if (found == song_.looks.end()) {
            if (song_.looks.size() == kMostLooks)
                return last_;
            song_.looks.push_back(look);
            found = std::prev(song_.looks.end());
        }
        last_ = static_cast<std::uint16_t>(found - song_.looks.begin());
        return last_;
    }

  private:
    PaperSong& song_;
    std::uint16_t last_ = 0;
};

PaperSong songOfMap(const RtfMap& map, std::string_view rtf) {
    PaperSong song;
    Looks looks(song);
    const std::vector<RtfLookChange> changes = looksOf(rtf);
    auto change = changes.begin();
    // Formats at a place; the end of the text has those of its end.
    const auto lookAt = [&](std::size_t i) {
        while (std::next(change) != changes.end() && std::next(change)->begin <= map.sourceAt(i))
            ++change;
        const RtfLook& look = change->look;
        const Text face(map.fontNameAt(i));
        return looks.numberOf({face, look.halfPoints / 2.0, look.bold, look.italic, look.underline,
                               map.colourAt(i), isDiagramFace(face)});
    };
    std::size_t at = 0;
    for (TextView rest = map.text();;) {
        const TextLine found = takeEditorLine(rest);
        PaperLine line{.text = Text(found.chars)};
        line.looks.reserve(found.chars.size());
        for (std::size_t i = 0; i < found.chars.size(); ++i)
            line.looks.push_back(lookAt(at++));
        line.endLook = lookAt(at);
        line.alignment = change->look.alignment;
        at += found.end.size();
        trimEnd(line);
        song.lines.push_back(std::move(line));
        if (found.end.empty())
            return song;
    }
}

PaperSong songOfText(TextView text, const PaperLook& look) {
    PaperSong song;
    song.looks.push_back(look);
    const Text expanded = expandTabs(text);
    for (TextView rest = expanded; !rest.empty();) {
        PaperLine line{.text = Text(takeEditorLine(rest).chars)};
        line.looks.assign(line.text.size(), 0);
        trimEnd(line);
        song.lines.push_back(std::move(line));
    }
    return song;
}

}  // namespace

PaperSong paperSong(TextView text, const PaperLook& look, TextView name) {
    const std::optional<Text> title = chordProTitle(text);
    PaperSong song = songOfText(title ? importSong(text).chart() : Text(text), look);
    song.chordColour = kChordColour;
    readSong(song, name);
    if (title && !title->empty()) {
        song.title = headTitle(*title);
        song.titleIsFirstLine = !song.lines.empty() && song.lines[0].text == song.title;
    }
    return song;
}

PaperSong paperSongOfRtf(std::string_view rtf, const PaperLook& look, TextView name) {
    const std::optional<RtfMap> map = RtfMap::parse(rtf);
    PaperSong song = map ? songOfMap(*map, rtf) : songOfText(readRtf(rtf).text, look);
    readSong(song, name);
    return song;
}

}  // namespace melvorin
