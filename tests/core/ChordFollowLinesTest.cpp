#include "chords/ChordFollow.h"

#include <gtest/gtest.h>

#include "FollowRows.h"

namespace melvorin {
namespace {

using testing::check;
using testing::FollowedSong;
using testing::Row;

TEST(ChordFollow, EnterSplitsBothLines) {
    const Row rows[] = {
        {"in the middle of words",
         "C    G      Am\n"
         "over |hills and far",
         "\r",
         "C\n"
         "over \n"
         "G      Am\n"
         "|hills and far"},
        {"a half without chords gets no chord line",
         "C\n"
         "over |hills",
         "\r",
         "C\n"
         "over \n"
         "|hills"},
        {"neither does the left one",
         "     G\n"
         "over |hills",
         "\r",
         "over \n"
         "G\n"
         "|hills"},
        {"at the start the empty line comes above the chords",
         "C    G\n"
         "|over hills",
         "\r",
         "\n"
         "C    G\n"
         "|over hills"},
        {"behind the last letter it is ordinary",
         "C    G    Am\n"
         "over hills|\n"
         "and far",
         "\r",
         "C    G    Am\n"
         "over hills\n"
         "|\n"
         "and far"},
        {"on an empty line too",
         "C    G\n"
         "|\n"
         "far",
         "\r",
         "C    G\n"
         "\n"
         "|\n"
         "far"},
        {"a chord that reaches over the cut stays with its start",
         "C   Gmaj7 Am\n"
         "over |hills and far",
         "\r",
         "C   Gmaj7\n"
         "over \n"
         "     Am\n"
         "|hills and far"},
        {"both chord lines split",
         "D7   (E7)\n"
         "C    G\n"
         "over |hills",
         "\r",
         "D7\n"
         "C\n"
         "over \n"
         "(E7)\n"
         "G\n"
         "|hills"},
        {"a selection goes first",
         "C    G    Am\n"
         "over |old |hills",
         "\r",
         "C\n"
         "over \n"
         "G Am\n"
         "|hills"},
        {"in the chord line over words",
         "C    |G      Am\n"
         "over hills and far",
         "\r",
         "C\n"
         "over \n"
         "|G      Am\n"
         "hills and far"},
        {"never inside a chord",
         "C    Gma|j7   Am\n"
         "over hills and far",
         "\r",
         "C\n"
         "over \n"
         "|Gmaj7   Am\n"
         "hills and far"},
        {"at the end of a chord line it is ordinary",
         "C    G|\n"
         "over hills",
         "\r",
         "C    G\n"
         "|\n"
         "over hills"},
        {"at its start too",
         "|C    G\n"
         "over hills",
         "\r",
         "\n"
         "|C    G\n"
         "over hills"},
        {"chords over an empty line",
         "C  |G\n"
         "\n"
         "over",
         "\r",
         "C  \n"
         "|G\n"
         "\n"
         "over"},
        {"words without chords", "over |hills", "\r",
         "over \n"
         "|hills"},
    };
    for (const Row& row : rows)
        check(row);
}

TEST(ChordFollow, PastedLinesPartThePair) {
    const struct {
        const char* what;
        const char* before;
        const char16_t* pasted;
        const char* after;
    } rows[] = {
        {"words in the middle",
         "C    G\n"
         "over |hills",
         u"land\rand my ",
         "C\n"
         "over land\n"
         "       G\n"
         "and my |hills"},
        {"at the end: the chords stay with the first line",
         "C    G    Am\n"
         "over hills|",
         u" and\rfar",
         "C    G    Am\n"
         "over hills and\n"
         "far|"},
        {"what brings chord lines stays as it is",
         "C    G\n"
         "over |hills",
         u"D   A\rland and sea",
         "C\n"
         "over \n"
         "D   A\n"
         "land and sea|\n"
         "G\n"
         "hills"},
        {"whole lines at the start",
         "C    G\n"
         "|over hills",
         u"D   A\rland and sea\r",
         "D   A\n"
         "land and sea\n"
         "C    G\n"
         "|over hills"},
        {"and behind the end",
         "C    G\n"
         "over hills|\n"
         "far",
         u"D   A\rland and sea",
         "C    G\n"
         "over hills\n"
         "D   A\n"
         "land and sea|\n"
         "far"},
        {"on an empty line",
         "far\n"
         "|",
         u"D   A\rland and sea",
         "far\n"
         "D   A\n"
         "land and sea|"},
        {"one line behaves like typed text",
         "C    G\n"
         "over |hills",
         u"wide ",
         "C         G\n"
         "over wide |hills"},
        {"more blanks in a chord line than there is room for",
         "C|  G  F\n"
         "over hills",
         u"    ",
         "C    |G F\n"
         "over hills"},
        {"a chord in a chord line",
         "C|     G\n"
         "over hills",
         u" Am7 F",
         "C Am7 F| G\n"
         "over hills"},
    };
    for (const auto& row : rows) {
        for (const bool correctsAfterwards : {false, true}) {
            FollowedSong song(row.before);
            song.correctsAfterwards = correctsAfterwards;
            song.paste(row.pasted);
            EXPECT_EQ(song.drawn(), row.after) << row.what;
            EXPECT_FALSE(song.hasWrongSource) << row.what;
        }
    }
}

TEST(ChordFollow, LinesAreJoinedPairToPair) {
    const Row rows[] = {
        {"Backspace at the start of words",
         "C    G\n"
         "over hills \n"
         "Am   F\n"
         "|and far",
         "\b",
         "C    G     Am   F\n"
         "over hills |and far"},
        {"Delete at the end",
         "C    G\n"
         "over hills |\n"
         "Am   F\n"
         "and far",
         "\x7f",
         "C    G     Am   F\n"
         "over hills |and far"},
        {"Backspace at the start of the chord line",
         "C    G\n"
         "over hills \n"
         "|Am   F\n"
         "and far",
         "\b",
         "C    G     Am   F\n"
         "over hills |and far"},
        {"words without chords get a chord line",
         "over hills \n"
         "Am   F\n"
         "|and far",
         "\b",
         "           Am   F\n"
         "over hills |and far"},
        {"words without chords on the right",
         "C    G\n"
         "over hills |\n"
         "and far",
         "\x7f",
         "C    G\n"
         "over hills |and far"},
        {"chords that stick out push",
         "C           G\n"
         "over |\n"
         "Am   F\n"
         "and far",
         "\x7f",
         "C           G Am F\n"
         "over |and far"},
        {"upper lines too",
         "D7\n"
         "C\n"
         "over |\n"
         "  (E7)\n"
         "  F\n"
         "and far",
         "\x7f",
         "D7     (E7)\n"
         "C      F\n"
         "over |and far"},
        {"an empty line above goes",
         "far\n"
         "\n"
         "Am   F\n"
         "|and far",
         "\b",
         "far\n"
         "Am   F\n"
         "|and far"},
        {"an empty line with Delete",
         "far\n"
         "|\n"
         "Am   F\n"
         "and far",
         "\x7f",
         "far\n"
         "|Am   F\n"
         "and far"},
        {"an empty line below",
         "Am   F\n"
         "and far|\n"
         "\n"
         "away",
         "\x7f",
         "Am   F\n"
         "and far|\n"
         "away"},
        {"the empty line under chords",
         "Am   F\n"
         "|\n"
         "away",
         "\b",
         "Am   F|\n"
         "away"},
        {"a chord line is not glued to its words",
         "Am   F|\n"
         "and far",
         "\x7f",
         "Am   F\n"
         "|and far"},
        {"nothing above to join: the caret moves",
         "Am   F\n"
         "|and far",
         "\b",
         "Am   F|\n"
         "and far"},
        {"a label above is not joined either",
         "Chorus:\n"
         "Am   F\n"
         "|and far",
         "\b",
         "Chorus:\n"
         "Am   F|\n"
         "and far"},
        {"nor a chord line to a label",
         "Chorus:|\n"
         "Am   F\n"
         "and far",
         "\x7f",
         "Chorus:\n"
         "|Am   F\n"
         "and far"},
        {"two chord lines over words",
         "C   G|\n"
         "Am   F\n"
         "and far",
         "\x7f",
         "C   G\n"
         "|Am   F\n"
         "and far"},
        {"two chord lines over nothing",
         "C   G|\n"
         "Am   F\n",
         "\x7f", "C   G| Am   F\n"},
        {"split and joined again",
         "C    G      Am\n"
         "over |hills and far",
         "\r\b",
         "C    G      Am\n"
         "over |hills and far"},
    };
    for (const Row& row : rows)
        check(row);
}

// What the control has done to several lines at once without parting or joining any.
TEST(ChordFollow, LinesAreEditedEachByItself) {
    const struct {
        const char* what;
        const char16_t* before;
        const char16_t* after;  // by the control
        const char16_t* result;
        std::size_t caret;  // as the control has it
        std::size_t caretAfter;
    } rows[] = {
        {"letter case", u"C    Am\rOVER THE\rG\rHILLS", u"C    Am\rover the\rG\rhills",
         u"C    Am\rover the\rG\rhills", 24, 24},
        {"a word dragged to another line", u"C    Am   F\rover the hills\rG   D\rand far",
         u"C    Am   F\rover hills\rG   D\rand the far",
         u"C    Am F\rover hills\rG       D\rand the far", 37, 39},
    };
    for (const auto& row : rows) {
        const Excerpt before{3, row.before, {}};
        const Excerpt after{3, row.after, {}};
        ChordFollow follow;
        const FollowAnswer answer = follow.edited(before, 3 + row.caret, after, 3 + row.caret);
        Text text = after.chars;
        applyEdits(text, answer.edits, 3);
        EXPECT_EQ(toUtf8(text), toUtf8(row.result)) << row.what;
        EXPECT_EQ(answer.caret, 3 + row.caretAfter) << row.what;
        // No letter is written anew.
        for (const FollowEdit& edit : answer.edits)
            EXPECT_EQ(edit.text.find_first_not_of(u' '), Text::npos) << toUtf8(edit.text);
    }
}

TEST(ChordFollow, DeletingOverLineEnds) {
    const Row rows[] = {
        {"from words to words: chords over letters that stay do too",
         "C    G\n"
         "over |hills\n"
         "Am      F\n"
         "and |far away",
         "\x7f",
         "C    G   F\n"
         "over |far away"},
        {"a whole pair",
         "|C    G\n"
         "over hills\n"
         "|Am      F\n"
         "and far away",
         "\b",
         "|Am      F\n"
         "and far away"},
        {"a chord line alone goes",
         "|Am      F\n"
         "|and far away",
         "\x7f", "|and far away"},
        {"its end with the line end: the words stay where they are",
         "Am   |   F\n"
         "|and far away",
         "\x7f",
         "Am   |\n"
         "and far away"},
        {"from the start of a chord line into the words",
         "|Am      F\n"
         "and |far away",
         "\x7f",
         "|    F\n"
         "far away"},
        {"from within a chord line into the words",
         "Am  |G   F\n"
         "and |far away",
         "\x7f",
         "Am G| F\n"
         "far away"},
        {"from words into a chord line",
         "over |hills\n"
         "Am      |F\n"
         "and far away",
         "\x7f",
         "over |\n"
         "        F\n"
         "and far away"},
        {"from chords to chords",
         "C  |  G\n"
         "over hills\n"
         "Am   |   F\n"
         "and far away",
         "\x7f",
         "C  |     F\n"
         "and far away"},
        {"from chords to words of another pair",
         "C  |  G\n"
         "over hills\n"
         "Am      F\n"
         "and |far away",
         "\x7f",
         "C  | F\n"
         "far away"},
        {"from a label to words",
         "Chorus|:\n"
         "Am      F\n"
         "and |far away",
         "\x7f",
         "Chorus|\n"
         "    F\n"
         "far away"},
        {"typed over",
         "C    G\n"
         "over |hills\n"
         "Am      F\n"
         "and |far away",
         "x",
         "C    G    F\n"
         "over x|far away"},
        {"words alone",
         "over |hills\n"
         "and |far away",
         "\x7f", "over |far away"},
    };
    for (const Row& row : rows) {
        // What is deleted is gone for good once the control has done it.
        FollowedSong song(row.before);
        song.press(row.keys);
        EXPECT_EQ(song.drawn(), row.after) << row.what;
        EXPECT_FALSE(song.hasWrongSource) << row.what;
    }
}

// Lines that begin and end like those that they replace: nothing of the former song is in them.
TEST(ChordFollow, ASongPastedOverAnotherIsAsItWas) {
    const std::string_view songs[] = {
        "Dm      Gm\nla la la la\nC          Am\nlo lo lo lo lo",
        "Dm   A7   D\nla la la la\nDm       A7      Dm\nle lo lo lo",
        "Am\nla",
        "no chords\nat all",
    };
    for (const std::string_view former : songs) {
        for (const std::string_view next : songs) {
            for (const bool afterwards : {false, true}) {
                FollowedSong song(std::string("|") + std::string(former) + "|");
                song.correctsAfterwards = afterwards;
                Text text = fromUtf8(next);
                std::replace(text.begin(), text.end(), u'\n', u'\r');
                song.paste(text);
                EXPECT_EQ(song.drawn(), std::string(next) + "|") << former;
            }
        }
    }
}

}  // namespace
}  // namespace melvorin
