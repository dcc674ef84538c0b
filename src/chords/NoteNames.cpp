#include "chords/NoteNames.h"

#include <algorithm>
#include <utility>

namespace melvorin {
namespace {

constexpr int kOctave = 12;

int withinOctave(int steps) {
    return (steps % kOctave + kOctave) % kOctave;
}

// Units of the ending behind a letter in `text`, and what it does to the letter: "is" for the notes
// with a sharp, "es" or "s" for those with a flat. 0 without one.
std::pair<std::size_t, int> germanEnding(TextView text, char16_t letter) {
    const TextView behind = text.substr(1);
    if (behind.starts_with(u"is") && TextView(u"CDFGA").find(letter) != TextView::npos)
        return {2, 1};
    if (behind.starts_with(u"es") && TextView(u"CDG").find(letter) != TextView::npos)
        return {2, -1};
    // "Asus4" is an A.
    if (behind.starts_with(u"s") && !behind.starts_with(u"sus") &&
        TextView(u"AE").find(letter) != TextView::npos)
        return {1, -1};
    return {0, 0};
}

}  // namespace

std::optional<NamedNote> readNoteName(TextView text, const ChordReading& reading, NotePlace place) {
    if (text.empty())
        return std::nullopt;
    NamedNote note;
    note.isSmall = text[0] >= u'a' && text[0] <= u'h';
    const bool maySmall =
        reading.smallMinors || (place == NotePlace::Bass && reading.naming == Naming::German);
    if (note.isSmall && !maySmall)
        return std::nullopt;
    const auto letter = static_cast<char16_t>(note.isSmall ? text[0] - u'a' + u'A' : text[0]);
    if (letter == u'H')
        return NamedNote{1, 11, Spelling::Sharps, note.isSmall, true};
    if (!isNoteLetter(letter))
        return std::nullopt;
    if (const auto [length, raised] = germanEnding(text, letter); length > 0) {
        note.isGerman = true;
        note.length = 1 + length;
        note.steps = withinOctave(halfSteps(TextView(&letter, 1)) + raised);
        note.spelling = raised > 0 ? Spelling::Sharps : Spelling::Flats;
        return note;
    }
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

}  // namespace melvorin
