#include "chords/ChordSpelling.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/ChordSuffix.h"
#include "chords/Note.h"
#include "chords/SuffixNormaliser.h"

namespace melvorin {
namespace {

// Longer text is no chord; so a line without blanks costs no more than any other.
constexpr std::size_t kLongest = 24;

// The sign that is written small and raised, or small and below the line; 0 for another.
char16_t loweredSign(char16_t c) {
    static constexpr std::pair<char16_t, char16_t> signs[] = {
        {0xB9, u'1'},   {0xB2, u'2'},   {0xB3, u'3'},   {0x2071, u'i'}, {0x207A, u'+'},
        {0x207B, u'-'}, {0x207D, u'('}, {0x207E, u')'}, {0x207F, u'n'}, {0x1D39, u'M'},
        {0x1D43, u'a'}, {0x1D47, u'b'}, {0x1D48, u'd'}, {0x1D4D, u'g'}, {0x1D50, u'm'},
        {0x1D52, u'o'}, {0x1D58, u'u'}, {0x2B2, u'j'},  {0x2E2, u's'},
    };
    if (c < 0xB2)
        return 0;
    if (c == 0x2070 || (c >= 0x2074 && c <= 0x2079))
        return static_cast<char16_t>(c - 0x2070 + u'0');
    if (c >= 0x2080 && c <= 0x2089)
        return static_cast<char16_t>(c - 0x2080 + u'0');
    const auto* const found = std::find_if(std::begin(signs), std::end(signs),
                                           [&](const auto& sign) { return sign.first == c; });
    return found == std::end(signs) ? u'\0' : found->second;
}

// The usual sign for each of its look-alikes.
char16_t usualSign(char16_t c) {
    switch (c) {
        case 0x266F:  // sharp
        case 0xFF03:
            return u'#';
        case 0x266D:  // flat
            return u'b';
        case 0xBA:   // masculine ordinal
        case 0x2DA:  // ring above
            return 0xB0;
        case 0x2212:  // minus
        case 0x2010:
        case 0x2011:
        case 0x2013:
            return u'-';
        case 0x25B3:  // triangles
        case 0x2206:
            return 0x394;
        case 0xD8:
        case 0x2205:
        case 0x2300:
            return 0xF8;
        case u'\\':
            return u'/';
        default:
            break;
    }
    if (const char16_t raised = loweredSign(c); raised != 0)
        return raised;
    return c >= 0xFF01 && c <= 0xFF5E ? static_cast<char16_t>(c - 0xFEE0) : c;
}

// ---- The house's spelling --------------------------------------------------------------------

class SuffixWriter {
  public:
    explicit SuffixWriter(TextView root) : chord_(root) {}

    Text write(ChordSuffix suffix);

  private:
    void put(TextView number, char16_t accidental);

    Text chord_;
    bool first_ = true;
};

void SuffixWriter::put(TextView number, char16_t accidental) {
    if (accidental == 0)
        return;
    if (accidental == kBothAccidentals) {
        put(number, u'b');
        put(number, u'#');
        return;
    }
    chord_.append(first_ ? u"" : u"/").append(number);
    if (accidental != u' ')
        chord_ += accidental;
    first_ = false;
}

Text SuffixWriter::write(ChordSuffix suffix) {
    if (suffix.majorSeventh)
        suffix.at(Degree::Seventh) = u' ';
    const bool half =
        suffix.halfDiminished || (suffix.minor && suffix.at(Degree::Fifth) == u'b' &&
                                  suffix.at(Degree::Seventh) != 0 && !suffix.majorSeventh);
    if (half) {
        chord_ += u'm';
        put(u"5", u'b');
        put(u"7", u' ');
        suffix.at(Degree::Fifth) = suffix.at(Degree::Seventh) = 0;
    } else if (suffix.diminished) {
        chord_ += u'\u00B0';
        if (!suffix.majorSeventh)
            suffix.at(Degree::Seventh) = 0;
    } else if (suffix.minor) {
        chord_ += u'm';
    }
    const char16_t fifth = suffix.at(Degree::Fifth);
    const bool plainFifth = fifth == u' ';
    // A plain fifth tells that there is no third. It comes first, as does the altered fifth of a
    // suspended chord; that of a seventh comes behind it.
    const bool suspended = suffix.at(Degree::Fourth) != 0 && suffix.at(Degree::Seventh) == 0;
    if (plainFifth || suspended)
        put(u"5", std::exchange(suffix.at(Degree::Fifth), u'\0'));
    put(u"4", suffix.at(Degree::Fourth));
    put(u"6", suffix.at(Degree::Sixth));
    put(suffix.majorSeventh ? u"7+" : u"7", suffix.at(Degree::Seventh));
    put(u"5", suffix.at(Degree::Fifth));
    put(u"9", suffix.at(Degree::Ninth));
    put(u"11", suffix.at(Degree::Eleventh));
    put(u"13", suffix.at(Degree::Thirteenth));
    if (suffix.bass)
        chord_.append(u"/").append(noteName(suffix.bass->steps, suffix.bass->spelling));
    return chord_;
}

Text usualSigns(TextView chord) {
    Text usual;
    for (const char16_t c : chord) {
        if (c != 0x266E)  // a natural says nothing here
            usual += usualSign(c);
    }
    return usual;
}

}  // namespace

std::optional<Text> houseSpelling(TextView chord, const ChordReading& reading) {
    if (chord.empty() || chord.size() > kLongest)
        return std::nullopt;
    const Text usual = usualSigns(chord);
    const auto root = readNoteName(usual, reading);
    if (!root)
        return std::nullopt;
    auto suffix = readChordSuffix(TextView(usual).substr(root->length), *root, reading);
    if (!suffix)
        return std::nullopt;
    // Only the 17 names are moved by a key change.
    const TextView name = noteName(root->steps, root->spelling);
    Text spelled = SuffixWriter(name).write(*suffix);
    if (!suffix->bass)
        return spelled;
    // What is written here is in house style; only the accidental of a bass depends on the rows.
    // One of them takes a chord for another ("Fm9/D#"); the other accidental keeps it from that.
    Text respelled = normaliseSuffixes(spelled);
    if (respelled.starts_with(name))
        return respelled;
    const bool isFlat = suffix->bass->spelling == Spelling::Flats;
    suffix->bass->spelling = isFlat ? Spelling::Sharps : Spelling::Flats;
    return SuffixWriter(name).write(*suffix);
}

bool resemblesChord(TextView text, const ChordReading& reading) {
    if (text.size() < 2 || text.size() > kLongest)
        return false;
    Text usual = usualSigns(text);
    if (const std::size_t syllable = solfegeLength(usual);
        reading.naming == Naming::Solfege && syllable > 0)
        usual.replace(0, syllable, u"C");
    if (!isNoteLetter(usual[0]) && usual[0] != u'H')
        return false;
    const bool marked = std::any_of(usual.begin() + 1, usual.end(),
                                    [](char16_t c) { return isDigit(c) || c == u'#'; });
    const bool plain = std::all_of(usual.begin() + 1, usual.end(), [](char16_t c) {
        return isDigit(c) || (c >= u'a' && c <= u'z') || isNoteLetter(c) || c == u'M' ||
               TextView(u"#+-/()\u00B0").find(c) != TextView::npos;
    });
    return marked && plain;
}

std::vector<ColumnRange> notesOfChord(TextView chord, const ChordReading& reading) {
    const Text usual = usualNote(chord);
    std::vector<ColumnRange> notes;
    const auto addNote = [&](std::size_t index, NotePlace place) {
        const TextView rest = TextView(usual).substr(std::min(index, usual.size()));
        const auto note = readNoteName(rest, reading, place);
        const TextView behind = rest.substr(note ? note->length : 0);
        if (note && (place == NotePlace::Root || behind.empty() || behind == u")"))
            notes.push_back({index, note->length});
    };
    addNote(usual.starts_with(u'(') ? 1 : 0, NotePlace::Root);
    if (notes.empty())
        return notes;
    // "C(add G#)"
    if (const std::size_t added = usual.find(u"add"); added != Text::npos)
        addNote(std::min(usual.find_first_not_of(u' ', added + 3), usual.size()), NotePlace::Bass);
    if (const std::size_t slash = usual.rfind(u'/'); slash != Text::npos)
        addNote(slash + 1, NotePlace::Bass);
    return notes;
}

Text usualNote(TextView note) {
    Text usual(note);
    std::transform(usual.begin(), usual.end(), usual.begin(), usualSign);
    return usual;
}

}  // namespace melvorin
