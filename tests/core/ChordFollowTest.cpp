#include "chords/ChordFollow.h"

#include <gtest/gtest.h>

#include "FollowRows.h"

namespace melvorin {
namespace {

using testing::check;
using testing::Row;

TEST(ChordFollow, WordsTakeTheirChordsAlong) {
    const Row rows[] = {
        {"a word put in",
         "C     G      Am\n"
         "Over |hills and far",
         "wide ",
         "C          G      Am\n"
         "Over wide |hills and far"},
        {"a word put in at the start",
         "C    G\n"
         "|over hills",
         "Oh ",
         "   C    G\n"
         "Oh |over hills"},
        {"a word taken out",
         "C    F    G\n"
         "over wide |hills",
         "\b\b\b\b\b",
         "C    F G\n"
         "over |hills"},
        {"the same with Delete",
         "C    F    G\n"
         "over |wide hills",
         "\x7f\x7f\x7f\x7f\x7f",
         "C    F G\n"
         "over |hills"},
        {"a selected word replaced by a shorter one: its chord keeps its distance",
         "C      G      F\n"
         "the |endless|  road",
         "long",
         "C      G   F\n"
         "the long|  road"},
        {"at most to where the new text ends",
         "C       G    F\n"
         "the |endless| road",
         "a",
         "C    G F\n"
         "the a| road"},
        {"a letter corrected gives every chord its place back",
         "Am   G\n"
         "by t|iver side",
         "\br",
         "Am   G\n"
         "by r|iver side"},
        {"a word rewritten letter by letter",
         "C      F    G\n"
         "and grace| flows",
         "\b\b\b\b\bmercy",
         "C      F    G\n"
         "and mercy| flows"},
        {"chords that were pushed come back",
         "Cmaj7 G\n"
         "Hello| you",
         "\b\b\b\b",
         "Cmaj7 G\n"
         "H| you"},
        {"and do so when there is room",
         "Cmaj7 G\n"
         "Hello| you",
         "\b\b\b\bow are",
         "Cmaj7   G\n"
         "How are| you"},
        {"the end of the line: nothing moves, whatever stands behind",
         "C    G    Am\n"
         "over hills|",
         "ide\b\b\b\b\b",
         "C    G    Am\n"
         "over hil|"},
        {"only blanks behind: neither",
         "C    G    Am\n"
         "over|      ",
         "s",
         "C    G    Am\n"
         "overs|      "},
        {"words typed under chords that are there",
         "C    G    Am\n"
         "|",
         "over here<left><left>t\x7f",
         "C    G    Am\n"
         "over het|e"},
        {"not even when a command comes between",
         "C    G    Am\n"
         "|",
         "over here<command><left><left><left><left>t",
         "C    G    Am\n"
         "over t|here"},
        {"when the caret has been elsewhere they move",
         "C    G\n"
         "|\n"
         "far",
         "over hills<right><right><left><left><left><left><left><left><left>t",
         "C     G\n"
         "over t|hills\n"
         "far"},
        {"an edit elsewhere begins anew",
         "A  Cmaj7 G\n"
         "on Hello| you",
         "\b\b\b\b<left>! ",
         "A    Cmaj7 G\n"
         "on ! |H you"},
        {"Undo begins anew",
         "Cmaj7 G\n"
         "Hello| you",
         "\b\b\b\b<undo>ow are",
         "Cmaj7       G\n"
         "How are| you"},
        {"a command too",
         "Cmaj7 G\n"
         "Hello| you",
         "\b\b\b\b<command>ow are",
         "Cmaj7       G\n"
         "How are| you"},
        {"Delete behind typed text that ends in a blank begins anew",
         "C   F    G\n"
         "the |cold sea",
         "old \x7f\x7f\x7f\x7f",
         "C       F G\n"
         "the old | sea"},
        {"chords that stand over nothing any more",
         "C    F  G\n"
         "over wide| hills",
         "\b\b\b\b\b\b\b\b\b",
         "C F G\n"
         "| hills"},
        {"an empty stretch at the end of a chord line stays",
         "C    G  \n"
         "over |hills",
         "w",
         "C     G  \n"
         "over w|hills"},
        {"wide letters are two columns, combining marks none",
         "C       G\n"
         "\u6b4c|     la",
         "\u6b4ce\u0301",
         "C          G\n"
         "\u6b4c\u6b4ce\u0301|     la"},
        {"an upper line whose items start where those below do",
         "       D7\n"
         "C   F  G\n"
         "by |the way",
         "a",
         "        D7\n"
         "C    F  G\n"
         "by a|the way"},
        {"chords that are new to a key change too",
         "Cmaj7   A2\n"
         "over |wide",
         "w",
         "Cmaj7    A2\n"
         "over w|wide"},
        {"words that only look like chords have none to follow",
         "Bad Dad\n"
         "so |la",
         "oh ",
         "Bad Dad\n"
         "so oh |la"},
        {"a label is no words",
         "C    G\n"
         "Chorus |2:",
         "1",
         "C    G\n"
         "Chorus 1|2:"},
        {"nor is a tablature",
         "C    G\n"
         "E|-----5----------",
         "--",
         "C    G\n"
         "E--|-----5----------"},
    };
    for (const Row& row : rows)
        check(row);
}

TEST(ChordFollow, ChordLinesKeepTheirColumns) {
    const Row rows[] = {
        {"what is typed uses up the blanks behind it",
         "C|    G    Am\n"
         "over hills and",
         "maj7",
         "Cmaj7| G   Am\n"
         "over hills and"},
        {"and pushes no more than it must",
         "C|  G Am    F\n"
         "over hills and",
         "m7",
         "Cm7| G Am   F\n"
         "over hills and"},
        {"a pushed chord comes back",
         "C|  G Am    F\n"
         "over hills and",
         "m7/G\b\b\b\b",
         "C|  G Am    F\n"
         "over hills and"},
        {"deleted letters leave the others where they are",
         "Cmaj7| G   Am\n"
         "over hills and",
         "\b\b\b\b",
         "C|     G   Am\n"
         "over hills and"},
        {"a whole chord too, with its blanks",
         "C    |G    |Am\n"
         "over hills and",
         "\x7f",
         "C    |     Am\n"
         "over hills and"},
        {"a blank in front of a chord moves that one",
         "C    |G    Am\n"
         "over hills and",
         " ",
         "C     |G   Am\n"
         "over hills and"},
        {"Backspace there moves it left",
         "C    |G    Am\n"
         "over hills and",
         "\b\b",
         "C  |G      Am\n"
         "over hills and"},
        {"several blanks push",
         "C    |G Am\n"
         "over hills and",
         "  ",
         "C      |G Am\n"
         "over hills and"},
        {"and those behind come back",
         "C    |G Am\n"
         "over hills and",
         "  \b\b",
         "C    |G Am\n"
         "over hills and"},
        {"a blank far from the next chord uses up one",
         "C|    G\n"
         "over hills and",
         "  D",
         "C  D| G\n"
         "over hills and"},
        {"Delete over blanks pulls the next chord",
         "C |   G  Am\n"
         "over hills and",
         "\x7f",
         "C |  G   Am\n"
         "over hills and"},
        {"a chord typed between two",
         "C|         Am\n"
         "over hills and",
         "<right><right><right><right>G7/B",
         "C    G7/B| Am\n"
         "over hills and"},
        {"a chord parted by a blank",
         "AmG|7   F\n"
         "over hills",
         "<left> ",
         "Am |G7  F\n"
         "over hills"},
        {"a half written chord is none of the words",
         "Cx|    G\n"
         "over hills",
         "y",
         "Cxy|   G\n"
         "over hills"},
        {"the upper line goes along",
         "   D7\n"
         "C|  G\n"
         "over hills",
         "maj7/G",
         "        D7\n"
         "Cmaj7/G| G\n"
         "over hills"},
        {"no words below: columns all the same",
         "Am|   G\n"
         "",
         "7",
         "Am7|  G\n"
         ""},
    };
    for (const Row& row : rows)
        check(row);
}

}  // namespace
}  // namespace melvorin
