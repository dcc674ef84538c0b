// The notes by their names: seven letters, the five names with a sharp and the five with a flat.
#pragma once

#include <array>
#include <cstddef>

#include "base/Text.h"

namespace melvorin {

// How a note between two naturals is written. In a key change only one that starts natural becomes
// such a note; one with an accidental always lands on a natural.
enum class Spelling { Sharps, Flats };

constexpr bool isNoteLetter(char16_t c) {
    return c >= u'A' && c <= u'G';
}

constexpr bool isAccidental(char16_t c) {
    return c == u'#' || c == u'b';
}

// From 0 for A to 6 for G.
constexpr std::size_t letterIndex(char16_t letter) {
    return static_cast<std::size_t>(letter - u'A');
}

// kept: odd-notes
// E#, B#, Cb and Fb are no names: in songs their letter is a natural, and the accidental stands
// behind it.
constexpr bool isNoteName(char16_t letter, char16_t accidental) {
    const TextView withoutName = accidental == u'#' ? u"BE" : u"CF";
    return isNoteLetter(letter) && isAccidental(accidental) &&
           withoutName.find(letter) == TextView::npos;
}

// How many characters at the start of the text are a note: a letter with up to two accidentals of a
// kind; 0 without one. "Cb5" is a C with a flat fifth and "Dbb5" a Db with one: the last flat is
// the number's. "Bb5" is a Bb with its fifth: only C and F have no flat neighbour of their own
// name.
constexpr std::size_t noteLength(TextView text) {
    if (text.empty() || !isNoteLetter(text[0]))
        return 0;
    std::size_t length = 1;
    while (length < 3 && length < text.size() && isAccidental(text[length]) &&
           text[length] == text[1]) {
        const bool mayBeNumbers = length > 1 || !isNoteName(text[0], u'b');
        if (mayBeNumbers && text.substr(length).starts_with(u"b5"))
            break;
        ++length;
    }
    return length;
}

// Half steps that an accidental raises its note by.
constexpr int halfSteps(char16_t accidental) {
    return accidental == u'#' ? 1 : -1;
}

// Half steps from C up to a letter, with its accidentals if it has some.
constexpr int halfSteps(TextView note) {
    constexpr std::array<int, 7> naturals{9, 11, 0, 2, 4, 5, 7};
    int steps = naturals[letterIndex(note[0])];
    for (const char16_t accidental : note.substr(1))
        steps += halfSteps(accidental);
    return steps;
}

// The name of the note so many half steps above C, or below it, in any octave.
constexpr TextView noteName(int steps, Spelling spelling) {
    constexpr std::array<TextView, 12> sharps{u"C",  u"C#", u"D",  u"D#", u"E",  u"F",
                                              u"F#", u"G",  u"G#", u"A",  u"A#", u"B"};
    constexpr std::array<TextView, 12> flats{u"C",  u"Db", u"D",  u"Eb", u"E",  u"F",
                                             u"Gb", u"G",  u"Ab", u"A",  u"Bb", u"B"};
    const auto index = static_cast<std::size_t>((steps % 12 + 12) % 12);
    return spelling == Spelling::Sharps ? sharps[index] : flats[index];
}

}  // namespace melvorin
