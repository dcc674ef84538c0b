#include "chords/KeySpelling.h"

#include <algorithm>
#include <array>

#include "chords/ChordLine.h"
#include "chords/KeyReading.h"

namespace melvorin {
namespace {

constexpr int kSharpest = 5;  // behind B on the line of fifths
constexpr int kFlattest = -1;

int octave(int steps) {
    return (steps % 12 + 12) % 12;
}

int halfStepsOf(int fifths) {
    return octave(fifths * 7);
}

// Steps up from the tonic of the major key with the same signature.
int aboveSignature(Key key, int note) {
    return octave(note - key.tonic - (key.minor ? 3 : 0));
}

// The line of fifths by half steps above the tonic, with the five between the notes of the scale
// raised or lowered.
int placeOf(int steps, bool raised) {
    constexpr std::array<int, 12> lowered{0, -5, 2, -3, 4, -1, -6, 1, -4, 3, -2, 5};
    const int place = lowered[static_cast<std::size_t>(steps)];
    const bool isChromatic = place < kFlattest;
    return isChromatic && raised ? place + 12 : place;
}

bool isChromatic(int steps) {
    return placeOf(steps, false) < kFlattest;
}

// What a chord between the notes of the scale is by itself and by how far up its successor is.
bool isRaised(int steps, ChordQuality quality, std::optional<int> way) {
    const bool falls = way == 11;
    switch (quality) {
        case ChordQuality::Diminished:
            // Those on #I, #IV and #V lead up; the one on bIII leads down, or back home.
            if (steps == 3)
                return way == 1 || way == 9;
            return steps == 1 || steps == 6 || (steps == 8 && !falls);
        case ChordQuality::HalfDiminished:
            return steps == 1 || steps == 6 || (steps != 10 && (way == 5 || way == 1));
        case ChordQuality::Minor:
            return steps == 1 || steps == 6;
        case ChordQuality::Dominant:
        case ChordQuality::Other:
            return steps == 6 && !falls && way != 7;
        case ChordQuality::Major:
        case ChordQuality::MajorSeventh:
            return false;
    }
    return false;
}

// The names of the line of fifths, from Gb to A#; what lies beyond has a plain name.
TextView nameAt(int fifths) {
    return noteName(halfStepsOf(fifths), fifths > kSharpest ? Spelling::Sharps : Spelling::Flats);
}

int signatureFifths(Key key, Spelling side) {
    return fifthsOf(key, side) - (key.minor ? 3 : 0);
}

}  // namespace

int rootFifths(Key key, int root, ChordQuality quality, const std::optional<NextChord>& next) {
    const int steps = aboveSignature(key, root);
    if (!isChromatic(steps))
        return placeOf(steps, false);
    std::optional<int> way;
    if (next)
        way = octave(next->root - root);
    const bool goesWithGoal =
        way == 5 && isChromatic(aboveSignature(key, next->root)) && steps != 10 &&
        (quality == ChordQuality::Dominant || quality == ChordQuality::Minor ||
         quality == ChordQuality::HalfDiminished);
    return placeOf(steps, goesWithGoal ? next->fifths > kSharpest : isRaised(steps, quality, way));
}

int bassFifths(Key key, int bass, int root, int fifthsOfRoot, ChordQuality quality) {
    const int steps = aboveSignature(key, bass);
    if (!isChromatic(steps))
        return placeOf(steps, false);
    // By half steps above the root: a second, thirds, a fourth, fifths, sixths and sevenths.
    constexpr std::array<int, 12> intervals{0, -5, 2, -3, 4, -1, 6, 1, -4, 3, -2, 5};
    const int above = octave(bass - root);
    const bool lowFifth = above == 6 && (quality == ChordQuality::HalfDiminished ||
                                         quality == ChordQuality::Diminished);
    const int place = fifthsOfRoot + (lowFifth ? -6 : intervals[static_cast<std::size_t>(above)]);
    return placeOf(steps, place > kSharpest);
}

TextView noteNameIn(Key key, Spelling side, int fifths) {
    return nameAt(signatureFifths(key, side) + fifths);
}

Text degreeName(Key key, int fifths) {
    constexpr std::array<TextView, 7> byFifths{u"IV", u"I", u"V", u"II", u"VI", u"III", u"VII"};
    constexpr std::array<TextView, 7> ofMinor{u"VI", u"III", u"VII", u"IV", u"I", u"V", u"II"};
    const int place = fifths - kFlattest;
    const auto letter = static_cast<std::size_t>((place % 7 + 7) % 7);
    const TextView accidental = place < 0 ? u"b" : place >= 7 ? u"#" : u"";
    return Text(accidental).append((key.minor ? ofMinor : byFifths)[letter]);
}

// ---- The notes of a song ----------------------------------------------------------------------

struct KeyRespelling::Note {
    std::size_t line = 0;
    TextView written;
    int pitch = 0;
    bool isBass = false;
    ChordQuality quality = ChordQuality::Major;
    int fifths = 0;  // as the key has it, from the signature's major tonic
};

namespace {

// Adds the notes of a line.
template <class Note>
void readNotes(std::size_t number, TextView chars, std::span<const ColumnRange> ranges,
               std::vector<Note>& notes) {
    for (const ColumnRange& range : ranges) {
        const std::size_t end = range.column + range.length;
        // A suffix goes as far as the chord, or the next note in it.
        std::size_t behind = end;
        while (behind < chars.size() && !isTokenSeparator(chars[behind]) &&
               !isNoteLetter(chars[behind]))
            ++behind;
        const TextView written = chars.substr(range.column, range.length);
        const bool isBass = range.column > 0 && chars[range.column - 1] == u'/' && !notes.empty() &&
                            notes.back().line == number;
        notes.push_back({number, written, octave(halfSteps(written)), isBass,
                         qualityOf(chars.substr(end, behind - end)), 0});
    }
}

// From the last chord to the first, as a chord may go with its goal.
template <class Notes>
void findFifths(Notes& notes, Key key) {
    std::optional<NextChord> next;   // behind the run of the same root
    std::optional<NextChord> after;  // of the run itself
    for (std::size_t i = notes.size(); i-- > 0;) {
        auto& note = notes[i];
        if (note.isBass)
            continue;
        if (after && after->root != note.pitch)
            next = after;
        note.fifths = rootFifths(key, note.pitch, note.quality, next);
        after = NextChord{note.pitch, note.fifths};
    }
    for (std::size_t i = 0, root = 0; i < notes.size(); ++i) {
        if (!notes[i].isBass)
            root = i;
        else
            notes[i].fifths = bassFifths(key, notes[i].pitch, notes[root].pitch, notes[root].fifths,
                                         notes[root].quality);
    }
}

// The place that a written name stands for, where it tells one: a natural may stand for another
// name that is not used.
template <class Note>
std::optional<int> writtenFifths(const Note& note, Key key, Spelling side) {
    if (note.written.size() != 2 || !isNoteName(note.written[0], note.written[1]))
        return std::nullopt;
    const bool sharp = note.written[1] == u'#';
    const int fifths = note.pitch * 7 % 12;
    const int place = sharp ? fifths : fifths - 12;
    return place - signatureFifths(key, side);
}

// A song with sharps and flats both, or with few names that are not as the key has them, and the
// scale right.
template <class Notes>
bool isWrittenWithCare(const Notes& notes, Key key, Spelling side) {
    std::size_t sharps = 0;
    std::size_t flats = 0;
    std::size_t chromatic = 0;
    std::size_t differing = 0;
    for (const auto& note : notes) {
        const auto written = writtenFifths(note, key, side);
        if (!written)
            continue;
        ++(note.written[1] == u'#' ? sharps : flats);
        const bool isOfScale = !isChromatic(aboveSignature(key, note.pitch));
        if (isOfScale && *written != note.fifths)
            return false;
        chromatic += isOfScale ? 0U : 1U;
        differing += *written == note.fifths ? 0U : 1U;
    }
    return (sharps > 0 && flats > 0) || 4 * differing <= chromatic;
}

template <class Notes>
void takeOverWritten(Notes& notes, Key key, Spelling side) {
    for (auto& note : notes) {
        const auto written = writtenFifths(note, key, side);
        const int steps = aboveSignature(key, note.pitch);
        if (written && isChromatic(steps) &&
            (*written == placeOf(steps, true) || *written == placeOf(steps, false)))
            note.fifths = *written;
    }
}

}  // namespace

KeyRespelling::KeyRespelling(std::span<const SpelledLine> song, const FoundKey& found, int steps,
                             Spelling side)
    : song_(song.begin(), song.end()), lines_(song.size()) {
    std::vector<Note> notes;
    for (std::size_t number = 0; number < song_.size(); ++number) {
        const auto& [chars, fixed] = song_[number];
        if (!IsChordLine(chars))
            continue;
        lines_[number].notes = noteColumns(chars, fixed);
        readNotes(number, chars, lines_[number].notes, notes);
    }
    nameNotes(notes, found, steps, side);
}

void KeyRespelling::nameNotes(std::vector<Note>& notes, const FoundKey& found, int steps,
                              Spelling side) {
    const Key key = found.first.value_or(Key());
    findFifths(notes, key);
    if (steps != 0 && found.key && isWrittenWithCare(notes, key, side))
        takeOverWritten(notes, key, side);
    const Key goal = movedKey(key, steps);
    std::size_t sharps = 0;
    std::size_t flats = 0;
    for (const Note& note : notes) {
        const TextView name = noteNameIn(goal, side, note.fifths);
        lines_[note.line].names.push_back(name);
        if (name.size() == 2)
            ++(name[1] == u'#' ? sharps : flats);
    }
    if (found.key)
        return;
    const Spelling kind = sharps >= flats ? Spelling::Sharps : Spelling::Flats;
    for (LineNames& line : lines_)
        line.names.clear();
    for (const Note& note : notes)
        lines_[note.line].names.push_back(noteName(note.pitch + steps, kind));
}

MovedLine KeyRespelling::moveLine(std::size_t number) const {
    const auto& [chars, fixed] = song_[number];
    if (lines_[number].names.empty())
        return {Text(chars), false, {}, {}};
    return renameNotes(chars, lines_[number].names, fixed);
}

Text reasonOfName(std::span<const SpelledLine> lines, std::size_t column, const FoundKey& found,
                  Spelling side) {
    if (!found.key || lines.empty() || !IsChordLine(lines[0].chars))
        return {};
    std::vector<KeyRespelling::Note> notes;
    std::optional<std::size_t> asked;
    for (std::size_t number = 0; number < lines.size(); ++number) {
        const auto& [chars, fixed] = lines[number];
        if (!IsChordLine(chars))
            continue;
        const std::vector<ColumnRange> ranges = noteColumns(chars, fixed);
        for (std::size_t i = 0; number == 0 && i < ranges.size() && ranges[i].column <= column; ++i)
            asked = i;
        readNotes(number, chars, ranges, notes);
    }
    if (!asked)
        return {};
    const TextView line = lines[0].chars;
    const std::size_t begin = static_cast<std::size_t>(notes[*asked].written.data() - line.data());
    const std::size_t end = std::min(column, line.size());
    const TextView between = line.substr(begin, end - begin);
    if (std::any_of(between.begin(), between.end(), isTokenSeparator))
        return {};
    findFifths(notes, *found.key);
    const auto& note = notes[*asked];
    const TextView name = noteNameIn(*found.key, side, note.fifths);
    Text reason(note.written);
    reason.append(u": ").append(degreeName(*found.key, note.fifths)).append(u" of ");
    reason.append(keyName(*found.key, side));
    return name == note.written ? reason : reason.append(u", which is ").append(name);
}

Spelling sideOf(TextView song) {
    std::size_t sharps = 0;
    std::size_t flats = 0;
    const auto count = [&](TextView note) {
        if (note.size() == 2 && isNoteName(note[0], note[1]))
            ++(note[1] == u'#' ? sharps : flats);
    };
    while (!song.empty()) {
        const TextView line = takeLine(song).chars;
        if (IsChordLine(line)) {
            for (const ColumnRange& note : noteColumns(line))
                count(line.substr(note.column, note.length));
        } else if (const auto stated = readStatedKey(line)) {
            count(line.substr(stated->column, stated->length));
        }
    }
    return flats > sharps ? Spelling::Flats : Spelling::Sharps;
}

Text followKey(TextView chart, const FoundKey& found, int steps, Spelling side, bool movesStated) {
    std::vector<SpelledLine> song;
    std::vector<TextView> ends;
    for (TextView rest = chart; !rest.empty();) {
        const TextLine line = takeLine(rest);
        song.push_back({line.chars, {}});
        ends.push_back(line.end);
    }
    const KeyRespelling respelling(song, found, steps, side);
    bool statedAhead = movesStated;
    Text result;
    result.reserve(chart.size() + chart.size() / 16);
    for (std::size_t i = 0; i < song.size(); ++i) {
        const TextView line = song[i].chars;
        const auto stated = statedAhead ? readStatedKey(line) : std::nullopt;
        if (stated && !stated->isGerman) {
            const Key moved = movedKey(stated->key, steps);
            const TextView name = noteNameIn(moved, side, moved.minor ? 3 : 0);
            result.append(line.substr(0, stated->column))
                .append(name)
                .append(line.substr(stated->column + stated->length));
            statedAhead = false;
        } else if (respelling.line(i).names.empty()) {
            result.append(line);
        } else {
            result.append(respelling.moveLine(i).line);
        }
        result.append(ends[i]);
    }
    return result;
}

}  // namespace melvorin
