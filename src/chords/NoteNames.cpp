#include "chords/NoteNames.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace melvorin {
namespace {

constexpr int kOctave = 12;

int withinOctave(int steps) {
    return (steps % kOctave + kOctave) % kOctave;
}

// Units of the ending behind a letter in `text`, and what it does to the letter: "is" for a sharp,
// "es" or, behind A and E, "s" for a flat, and each of them twice ("Fisis", "Eses", "Asas"). A B
// has none, as it is a flat one. 0 without one.
std::pair<std::size_t, int> germanEnding(TextView text, char16_t letter) {
    const TextView behind = text.substr(1);
    const bool isShort = letter == u'A' || letter == u'E';
    if (letter == u'B')
        return {0, 0};
    if (behind.starts_with(u"isis"))
        return {4, 2};
    if (behind.starts_with(u"is"))
        return {2, 1};
    if (behind.starts_with(u"eses") && !isShort)
        return {4, -2};
    if (behind.starts_with(u"es") && !isShort)
        return {2, -1};
    // "Asus4" is an A.
    if (!behind.starts_with(u"s") || behind.starts_with(u"sus") || !isShort)
        return {0, 0};
    const bool isTwice = behind.starts_with(letter == u'A' ? TextView(u"sas") : u"ses") ||
                         (letter == u'A' && behind.starts_with(u"ses"));
    return isTwice ? std::pair<std::size_t, int>{3, -2} : std::pair<std::size_t, int>{1, -1};
}

struct Syllable {
    char16_t letter;
    TextView name;
    TextView portuguese;  // with its accent
};
constexpr Syllable kSyllables[] = {{u'C', u"Do", u"D\u00F3"}, {u'D', u"Re", u"R\u00E9"},
                                   {u'E', u"Mi", u"Mi"},      {u'F', u"Fa", u"F\u00E1"},
                                   {u'G', u"Sol", u"Sol"},    {u'A', u"La", u"L\u00E1"},
                                   {u'B', u"Si", u"Si"}};

char16_t capital(char16_t c) {
    const bool small = (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE);
    return small ? static_cast<char16_t>(c - 0x20) : c;
}

// The syllable that the text begins with, in capitals or with small letters behind the first.
const Syllable* syllableOf(TextView text) {
    const auto begins = [&](TextView name) {
        if (text.size() < name.size() || text[0] != name[0])
            return false;
        const auto isSame = [&](bool capitals) {
            return std::equal(
                name.begin() + 1, name.end(), text.begin() + 1,
                [&](char16_t a, char16_t b) { return b == (capitals ? capital(a) : a); });
        };
        return isSame(false) || isSame(true);
    };
    const auto* const found =
        std::find_if(std::begin(kSyllables), std::end(kSyllables), [&](const Syllable& syllable) {
            return begins(syllable.name) || begins(syllable.portuguese);
        });
    return found == std::end(kSyllables) ? nullptr : found;
}

NamedNote noteOfSyllable(TextView text, const Syllable& syllable) {
    NamedNote note;
    Text letters(1, syllable.letter);
    letters += text.substr(syllable.name.size(), 3);
    const std::size_t length = noteLength(letters);
    const TextView name = TextView(letters).substr(0, length);
    note.length = syllable.name.size() + length - 1;
    note.steps = withinOctave(halfSteps(name));
    note.spelling = name.back() == u'b' ? Spelling::Flats : Spelling::Sharps;
    note.isSyllable = true;
    return note;
}

}  // namespace

std::optional<NamedNote> readNoteName(TextView text, const ChordReading& reading, NotePlace place) {
    if (text.empty())
        return std::nullopt;
    if (reading.naming == Naming::Solfege) {
        if (const Syllable* const syllable = syllableOf(text))
            return noteOfSyllable(text, *syllable);
    }
    NamedNote note;
    note.isSmall = text[0] >= u'a' && text[0] <= u'h';
    // Behind a chord and a slash a small letter can be nothing else: "Am/g".
    const bool maySmall =
        reading.smallMinors || (place == NotePlace::Bass && reading.naming != Naming::Solfege);
    if (note.isSmall && !maySmall)
        return std::nullopt;
    const auto letter = static_cast<char16_t>(note.isSmall ? text[0] - u'a' + u'A' : text[0]);
    if (!isNoteLetter(letter) && letter != u'H')
        return std::nullopt;
    if (const auto [length, raised] = germanEnding(text, letter); length > 0) {
        note.isGerman = true;
        note.length = 1 + length;
        const int natural = letter == u'H' ? 11 : halfSteps(TextView(&letter, 1));
        note.steps = withinOctave(natural + raised);
        note.spelling = raised > 0 ? Spelling::Sharps : Spelling::Flats;
        return note;
    }
    if (letter == u'H')
        return NamedNote{1, 11, Spelling::Sharps, note.isSmall, true, false};
    constexpr std::size_t longest = 4;
    Text capital(text.substr(0, longest));
    capital[0] = letter;
    note.length = noteLength(capital);
    const TextView name = TextView(capital).substr(0, note.length);
    const bool isLowered =
        name.back() == u'b' || (name == u"B" && reading.naming == Naming::German);
    note.steps = withinOctave(halfSteps(name == u"B" && isLowered ? TextView(u"Bb") : name));
    note.spelling = isLowered ? Spelling::Flats : Spelling::Sharps;
    return note;
}

Text germanName(TextView name, GermanSigns signs) {
    if (name == u"B")
        return u"H";
    if (name == u"Bb")
        return u"B";
    if (signs != GermanSigns::Endings || name.size() != 2)
        return Text(name);
    const bool isShort = name[0] == u'A' || name[0] == u'E';
    return Text(name.substr(0, 1)).append(name[1] == u'#' ? u"is" : isShort ? u"s" : u"es");
}

std::size_t solfegeLength(TextView text) {
    const Syllable* const syllable = syllableOf(text);
    return syllable == nullptr ? 0 : syllable->name.size();
}

Text solfegeName(TextView name, Solfege accents, bool capitals) {
    const auto* const syllable =
        std::find_if(std::begin(kSyllables), std::end(kSyllables),
                     [&](const Syllable& s) { return s.letter == name[0]; });
    const bool hasAccent =
        accents == Solfege::Portuguese || (accents == Solfege::French && name[0] == u'D');
    Text written(hasAccent ? syllable->portuguese : syllable->name);
    if (capitals)
        std::transform(written.begin(), written.end(), written.begin(), capital);
    return written.append(name.substr(1));
}

}  // namespace melvorin
