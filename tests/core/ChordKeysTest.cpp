#include "chords/ChordKeys.h"

#include <gtest/gtest.h>

#include "FollowedSong.h"

namespace melvorin {
namespace {

using testing::FollowedSong;

// Keys: 't' Tab, 'T' Shift+Tab, 'c' Ctrl+Enter in words, 'd' Down or Enter in the chord line, 'l'
// the caret leaves, '.' a character is typed, '<' and '>' Alt with an arrow, '(' and ')' with Shift
// besides.
void press(FollowedSong& song, ChordVisit& visit, char key) {
    const Excerpt text = song.around(song.caret(), song.caret());
    const std::size_t caret = song.caret();
    using Move = ChordFollow::Move;
    std::optional<FollowAnswer> answer;
    if (key == 't' || key == 'T')
        answer = visit.tab(text, caret, key == 'T');
    else if (key == 'c')
        answer = visit.toChords(text, caret);
    else if (key == 'd')
        answer = visit.toWords(text, caret);
    else if (key == 'l')
        answer = visit.leave(text, caret);
    else if (key == '<' || key == '>')
        answer = song.follow.moveChord(text, caret, key == '<' ? Move::CellLeft : Move::CellRight);
    else if (key == '(' || key == ')')
        answer = song.follow.moveChord(text, caret,
                                       key == '(' ? Move::SyllableLeft : Move::SyllableRight);
    else {
        visit.typed();
        song.press(std::string(1, key));
    }
    if (answer)
        song.take(*answer);
}

TEST(ChordKeys, TheCaretGoesFromSyllableToSyllable) {
    const struct {
        const char* what;
        const char* before;
        const char* keys;
        const char* after;
    } rows[] = {
        {"Tab to the next word",
         "|C\n"
         "over hal-le-lu",
         "t",
         "C    |\n"
         "over hal-le-lu"},
        {"to the letter behind a hyphen",
         "C    |G\n"
         "over hal-le-lu",
         "t",
         "C    G   |\n"
         "over hal-le-lu"},
        {"three of them",
         "|C\n"
         "over hal-le-lu",
         "ttt",
         "C           |\n"
         "over hal-le-lu"},
        {"behind the last one to every eighth column",
         "C|\n"
         "over hal-le-lu",
         "ttttt",
         "C                       |\n"
         "over hal-le-lu"},
        {"and back; the blanks are gone again",
         "C|\n"
         "over hal-le-lu",
         "tttttTTTTl",
         "C|\n"
         "over hal-le-lu"},
        {"Shift+Tab ends at the start",
         "C   |\n"
         "  over hal",
         "TTT",
         "|C   \n"
         "  over hal"},
        {"not into a chord",
         "|Cmaj7/G  F\n"
         "o my hal-le-lu",
         "t",
         "Cmaj7/G  |F\n"
         "o my hal-le-lu"},
        {"without words every eighth column",
         "C|  F\n"
         "",
         "ttT",
         "C  F    |\n"
         ""},
        {"in words Tab is what it was",
         "C\n"
         "ov|er",
         "t",
         "C\n"
         "ov|er"},
        {"from words up to the chords",
         "C    G\n"
         "over h|ills",
         "c",
         "C    G|\n"
         "over hills"},
        {"the chord line lacks blanks",
         "C\n"
         "over h|ills",
         "cF",
         "C     F|\n"
         "over hills"},
        {"and back to where it came from",
         "C\n"
         "over h|ills",
         "cFd",
         "C     F\n"
         "over h|ills"},
        {"unused blanks vanish",
         "C\n"
         "over h|ills",
         "cd",
         "C\n"
         "over h|ills"},
        {"there is no chord line",
         "far\n"
         "over h|ills",
         "cF",
         "far\n"
         "      F|\n"
         "over hills"},
        {"an unused one vanishes",
         "far\n"
         "over h|ills",
         "cd",
         "far\n"
         "over h|ills"},
        {"when the caret leaves too", "over h|ills", "cl", "|over hills"},
        {"Tab takes the way back along", "over h|ills and far", "ctFd",
         "           F\n"
         "over hills |and far"},
        {"no way into words from a label", "Chorus:|", "c", "Chorus:|"},
        {"nor back from where nobody came",
         "C|\n"
         "over",
         "d",
         "C|\n"
         "over"},
        {"a chord goes right, those behind where they must",
         "C  G|7 Am  F\n"
         "over hills and",
         ">>",
         "C    G|7 Am F\n"
         "over hills and"},
        {"and they come back",
         "C  G|7 Am  F\n"
         "over hills and",
         ">><<",
         "C  G|7 Am  F\n"
         "over hills and"},
        {"left as far as there is room",
         "C   |G   Am\n"
         "over hills and",
         "<<<<",
         "C |G     Am\n"
         "over hills and"},
        {"not out of the line",
         "|C   G\n"
         "over hills and",
         "<",
         "|C   G\n"
         "over hills and"},
        {"by one syllable",
         "C|   G     Am\n"
         "over hills and",
         ")",
         "     C| G  Am\n"
         "over hills and"},
        {"and back",
         "C    G     Am|\n"
         "over hills and",
         "(",
         "C    G Am|\n"
         "over hills and"},
        {"the upper line goes along",
         "     D7\n"
         "C    G|\n"
         "over hills and",
         ")",
         "           D7\n"
         "C          G|\n"
         "over hills and"},
        {"words stay where they are",
         "C    G\n"
         "over h|ills",
         "><)(",
         "C    G\n"
         "over h|ills"},
    };
    for (const auto& row : rows) {
        FollowedSong song(row.before);
        ChordVisit visit;
        for (const char* key = row.keys; *key != '\0'; ++key)
            press(song, visit, *key);
        EXPECT_EQ(song.drawn(), row.after) << row.what;
        EXPECT_FALSE(song.hasWrongSource) << row.what;
    }
}

TEST(ChordKeys, WhatWasPutInIsKnown) {
    FollowedSong song("far\nover h|ills");
    ChordVisit visit;
    EXPECT_FALSE(visit.padding());
    press(song, visit, 'c');
    ASSERT_TRUE(visit.padding());
    EXPECT_EQ(visit.padding()->first, 4U);
    EXPECT_EQ(visit.padding()->second, 7U);
    press(song, visit, 'F');
    EXPECT_FALSE(visit.padding());
    // Another text: nothing of it is taken away.
    press(song, visit, 'd');
    song.moveTo(song.caret() + 2);
    press(song, visit, 'c');
    visit.forget();
    EXPECT_FALSE(visit.leave(song.whole(), 0));
}

TEST(ChordKeys, ADoubleClickTakesTheChordAlone) {
    const Excerpt text{10, u"C  Am7 G\rover hills", {}};
    const auto taken = chordAround(text, 14);
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->first, 13U);
    EXPECT_EQ(taken->second, 16U);
    EXPECT_FALSE(chordAround(text, 12));
    EXPECT_FALSE(chordAround(text, 21));
}

TEST(ChordKeys, WholeChordsAreFound) {
    const struct {
        const char16_t* line;
        const char16_t* chord;
        const char* where;  // the indices where it is a whole chord
    } rows[] = {
        {u"C Cm C#m C/E C", u"C", "0 13 "},
        {u"C Cm C#m C/E C", u"C#m", "5 "},
        {u"C  A man", u"C", ""},
        {u"A long road", u"A", ""},
        {u"A", u"A", "0 "},
        {u"(Am7  G)  C7(9)", u"Am7", "1 "},
        {u"(Am7  G)  C7(9)", u"G", "6 "},
        {u"(Am7  G)  C7(9)", u"C7", ""},
        {u"(Am7  G)  C7(9)", u"C7(9)", "10 "},
        {u"(Am) G", u"Am", "1 "},
        {u"(Am) G", u"(Am)", "0 "},
        {u"|: G | C :|", u"C", "7 "},
        {u"Am-G-C", u"G", "3 "},
        {u"E|-----|-----|", u"E", ""},
    };
    for (const auto& row : rows) {
        const TextView line = row.line;
        const TextView chord = row.chord;
        std::string where;
        for (std::size_t at = line.find(chord); at != TextView::npos; at = line.find(chord, at + 1))
            where += isWholeChord(line, at, chord.size()) ? std::to_string(at) + " " : "";
        EXPECT_EQ(where, row.where) << toUtf8(line) << ": " << toUtf8(chord);
    }
    const std::size_t pictures[] = {0};
    EXPECT_TRUE(isWholeChord(u"A  C", 0, 1));
    EXPECT_FALSE(isWholeChord(u"A  C", 0, 1, pictures));
    EXPECT_FALSE(isWholeChord(u"C", 0, 2));
    EXPECT_FALSE(isWholeChord(u"C", 2, 1));
}

}  // namespace
}  // namespace melvorin
