#include "chords/CopyChords.h"

#include <gtest/gtest.h>

#include "FollowedSong.h"
#include "chords/FollowReplace.h"

namespace melvorin {
namespace {

std::string drawn(Text text) {
    std::replace(text.begin(), text.end(), u'\r', u'\n');
    return toUtf8(text);
}

Text undrawn(std::string_view drawn) {
    Text text = fromUtf8(drawn);
    std::replace(text.begin(), text.end(), u'\n', u'\r');
    return text;
}

TEST(CopyChords, ChordsGoOverTheWordsOfAnotherVerse) {
    const struct {
        const char* what;
        const char* from;
        const char* to;
        const char* result;  // the words with their chords
    } rows[] = {
        {"over the start of the same word",
         "C    G     Am\n"
         "over hills and",
         "in a wide land",
         "C  G Am\n"
         "in a wide land"},
        {"over the same letter",
         "C  F    G\n"
         "la lament for",
         "oh endless me",
         "C  F    G\n"
         "oh endless me"},
        {"within a word",
         "    G\n"
         "lalalala la",
         "hallelujah ye",
         "    G\n"
         "hallelujah ye"},
        {"at most over the last letter",
         "     G\n"
         "lalalala la",
         "hal le",
         "  G\n"
         "hal le"},
        {"before the words",
         "C   G\n"
         "    over hills",
         "      by sea",
         "  C   G\n"
         "      by sea"},
        {"before them as far as there is room",
         "C   G\n"
         "    over hills",
         "  by sea",
         "C G\n"
         "  by sea"},
        {"between words",
         "C   F  G\n"
         "la     la",
         "hallelu   ye",
         "C        F G\n"
         "hallelu   ye"},
        {"behind all words",
         "C    G  Am\n"
         "la la",
         "over hills",
         "C         G  Am\n"
         "over hills"},
        {"words that are lacking",
         "C    G     Am\n"
         "over hills and",
         "hey",
         "C   G     Am\n"
         "hey"},
        {"only as far as one blank needs",
         "Cmaj7 G F\n"
         "lala  la la",
         "a b c d",
         "Cmaj7 G F\n"
         "a b c d"},
    };
    for (const auto& row : rows) {
        const Excerpt source{0, undrawn(row.from), {}};
        const CopiedChords copied = copyChords(source, 0, source.end());
        ASSERT_EQ(copied.rows.size(), 1U);
        const Excerpt target{7, undrawn(row.to), {}};
        const auto pasted = pasteChords(target, 7, 7, copied);
        ASSERT_TRUE(pasted) << row.what;
        Text text = target.chars;
        applyEdits(text, pasted->answer.edits, 7);
        EXPECT_EQ(drawn(text), row.result) << row.what;
    }
}

TEST(CopyChords, LineByLine) {
    const std::string verse =
        "Verse 1\n"
        "C    G\n"
        "over hills\n"
        "D7\n"
        "Am   F\n"
        "and far away\n"
        "\n";
    const struct {
        const char* what;
        const char* before;  // '|' where the selection is
        const char* after;
        std::size_t placed;
        std::size_t left;
    } rows[] = {
        {"from the line of the caret on",
         "|Verse 2\n"
         "on the sea\n"
         "\n"
         "and the land\n"
         "for ever",
         "Verse 2\n"
         "C  G\n"
         "on the sea\n"
         "\n"
         "D7\n"
         "Am   F\n"
         "and the land\n"
         "for ever",
         2, 0},
        {"in place of what stands there",
         "Em    B7 E\n"
         "on the sea\n"
         "|      E\n"
         "and the land|",
         "Em    B7 E\n"
         "on the sea\n"
         "C   G\n"
         "and the land|",
         1, 1},
        {"only the lines that are selected",
         "on |the sea\n"
         "|and the land",
         "C  G\n"
         "on the sea\n"
         "and the land",
         1, 1},
    };
    const Excerpt source{0, undrawn(verse), {}};
    const CopiedChords copied = copyChords(source, 0, source.end());
    ASSERT_EQ(copied.rows.size(), 2U);
    EXPECT_EQ(drawn(copied.chords.chars), "C    G\nD7\nAm   F");
    for (const auto& row : rows) {
        Text text = undrawn(row.before);
        const std::size_t begin = text.find(u'|');
        text.erase(begin, 1);
        std::size_t end = text.find(u'|');
        if (end == Text::npos)
            end = begin;
        else
            text.erase(end, 1);
        Text expected = undrawn(row.after);
        if (const std::size_t bar = expected.find(u'|'); bar != Text::npos)
            expected.erase(bar, 1);
        const auto pasted = pasteChords({0, text, {}}, begin, end, copied);
        ASSERT_TRUE(pasted) << row.what;
        applyEdits(text, pasted->answer.edits);
        EXPECT_EQ(drawn(text), drawn(expected)) << row.what;
        EXPECT_EQ(pasted->placed, row.placed) << row.what;
        EXPECT_EQ(pasted->left, row.left) << row.what;
        // The chords keep their formats, as they are carried from what was copied.
        for (const FollowEdit& edit : pasted->answer.edits) {
            if (edit.origin == Origin::Incoming) {
                EXPECT_EQ(copied.chords.chars.substr(edit.from, edit.text.size()), edit.text);
            } else {
                EXPECT_EQ(edit.text.find_first_not_of(u" \r"), Text::npos) << toUtf8(edit.text);
            }
        }
    }
}

TEST(CopyChords, WhatIsSelectedIsCopied) {
    const Excerpt text{0, u"C  G\rover\rla la\rF\r", {}};
    const auto copied = [&](std::size_t begin, std::size_t end) {
        return drawn(copyChords(text, begin, end).chords.chars);
    };
    EXPECT_EQ(copied(2, 2), "C  G");
    EXPECT_EQ(copied(0, 5), "C  G");
    EXPECT_EQ(copied(0, 17), "C  G\nF");
    EXPECT_EQ(copied(6, 14), "");
    EXPECT_TRUE(copyChords(text, 6, 14).empty());
    // Nothing to put them over.
    const CopiedChords one = copyChords(text, 0, 1);
    EXPECT_FALSE(pasteChords({0, u"Chorus:\rC  G\r", {}}, 0, 0, one));
}

TEST(FollowReplace, ChordLinesAreSetAfterwards) {
    const struct {
        const char* what;
        const char* before;
        const char* find;
        const char* with;
        const char* after;
    } rows[] = {
        {"a longer chord keeps the columns of the others",
         "C    G  C   Am\n"
         "over hills and",
         "C", "Am7/G",
         "Am7/G G Am7/G Am\n"
         "over hills and"},
        {"a shorter one too",
         "Cmaj7 G Cmaj7 F\n"
         "over hills and",
         "maj7", "",
         "C     G C     F\n"
         "over hills and"},
        {"words",
         "C    G    Am\n"
         "over love and love is\n"
         "\n"
         "love alone",
         "love", "hatred",
         "C    G      Am\n"
         "over hatred and hatred is\n"
         "\n"
         "hatred alone"},
        {"the end of a line moves nothing",
         "C    G  Am\n"
         "over love",
         "love", "me",
         "C    G  Am\n"
         "over me"},
        {"several in one line, the last at its end",
         "C  G  C  G   F\n"
         "la la la la",
         "la", "hey",
         "C   G   C   G   F\n"
         "hey hey hey hey"},
        {"words and chords at once",
         "C  G\n"
         "C  la",
         "C", "Em",
         "Em  G\n"
         "Em  la"},
        {"blanks in chord lines stay, in words they go",
         "C   G  F\n"
         "la  la la",
         "  ", " ",
         "C  G  F\n"
         "la la la"},
        {"the upper line",
         "     D7\n"
         "C    G\n"
         "over hills",
         "over", "under",
         "      D7\n"
         "C     G\n"
         "under hills"},
        {"tablature, labels and what is no pair",
         "Chorus\n"
         "E|--0--0---|\n"
         "so E la",
         "E", "Em7",
         "Chorus\n"
         "Em7|--0--0---|\n"
         "so Em7 la"},
        {"blanks between chords leave one",
         "C  G  Am\n"
         "over hills and",
         "  G  ", "",
         "C     Am\n"
         "over hills and"},
        {"a chord and its blanks",
         "C  G\n"
         "over hills",
         "  G", "G",
         "C G\n"
         "over hills"},
        {"matches that touch are each of them an edit",
         "C G\n"
         "lala la",
         "la", "hallelu",
         "C      G\n"
         "halleluhallelu hallelu"},
        {"a remark keeps the room that tells it from words",
         "C  G  Am  F  riff\n"
         "over hills and far",
         "C", "Cmaj7",
         "Cmaj7 G Am F  riff\n"
         "over hills and far"},
        {"a chord replaced by two",
         "C    G    Am\n"
         "over hills and",
         "G", "G F",
         "C    G F  Am\n"
         "over hills and"},
    };
    for (const auto& row : rows) {
        const Text before = undrawn(row.before);
        const Text find = fromUtf8(row.find);
        std::vector<TextEdit> replacements;
        Text plain = before;
        for (std::size_t at = before.find(find); at != Text::npos;
             at = before.find(find, at + find.size()))
            replacements.push_back({at, find.size(), fromUtf8(row.with)});
        Text text = before;
        applyEdits(text, followReplacements({0, before, {}}, replacements));
        EXPECT_EQ(drawn(text), row.after) << row.what;
    }
}

TEST(FollowReplace, LineEndsAreReplacedAsTheyAre) {
    const Text before = u"C  G\rla la\rF\rla";
    Text text = before;
    applyEdits(text, followReplacements({0, before, {}}, {{5, 2, u"hey"}, {10, 1, u" "}}));
    EXPECT_EQ(drawn(text), "C  G\nhey la F\nla");
}

// In Rich Text everything else keeps its format, so nothing but blanks may be written anew.
TEST(FollowText, EditsAreAsSmallAsCanBe) {
    testing::FollowedSong song("C     G      Am\nOver |hills and far");
    const Excerpt before = song.whole();
    Excerpt after = before;
    after.chars.insert(21, u"x");
    const FollowAnswer typed = song.follow.edited(before, 21, after, 22);
    ASSERT_EQ(typed.edits.size(), 1U);
    EXPECT_EQ(typed.edits[0], (FollowEdit{6, 0, u" ", Origin::New, 0}));
    EXPECT_EQ(typed.caret, 23U);

    // The letters of the left half and of both halves of the words stay where they are.
    ChordFollow follow;
    const auto split = follow.instead(before, {21, 0, u"\r"}, 21);
    ASSERT_TRUE(split);
    std::size_t written = 0;
    for (const FollowEdit& edit : split->edits) {
        written += edit.text.size();
        if (edit.origin == Origin::Document) {
            EXPECT_EQ(before.chars.substr(edit.from, edit.text.size()), edit.text);
        }
    }
    EXPECT_LE(written, 12U);
}

TEST(FollowText, PositionsGoWithTheEdits) {
    // "abcdef" to "axxbf": what stood in a stretch that is gone comes to its end.
    const std::vector<FollowEdit> edits = {{1, 0, u"xx", Origin::New, 0},
                                           {2, 3, u"", Origin::New, 0}};
    const std::size_t after[] = {0, 1, 4, 4, 4, 4, 5};
    for (std::size_t i = 0; i < std::size(after); ++i)
        EXPECT_EQ(positionAfter(edits, i), after[i]) << i;
}

// A diagram is as wide as the caller says, stands for no letter and keeps its own.
TEST(FollowText, DiagramsTakeTheirCells) {
    // The letter "k" is a diagram of three cells, over "hills".
    const Excerpt before{0, u"C    k  G\rover hills and", {{5, 3}}};
    Excerpt after{0, u"C    k  G\roh over hills and", {{5, 3}}};
    ChordFollow follow;
    FollowAnswer answer = follow.edited(before, 10, after, 13);
    Text text = after.chars;
    applyEdits(text, answer.edits);
    EXPECT_EQ(drawn(text), "   C    k  G\noh over hills and");

    // What is typed uses up its blanks by the diagram's width: k is in columns 5 to 7, G in 10.
    Excerpt typed = before;
    typed.chars.insert(6, u"m");
    follow.forget();
    answer = follow.edited(before, 6, typed, 7);
    text = typed.chars;
    applyEdits(text, answer.edits);
    EXPECT_EQ(drawn(text), "C    km G\nover hills and");

    // A line of nothing else is a chord line.
    const Excerpt alone{0, u"k  k\rover hills", {{0, 2}, {3, 2}}};
    after = {0, u"k  k\rover ahills", {{0, 2}, {3, 2}}};
    follow.forget();
    answer = follow.edited(alone, 10, after, 11);
    EXPECT_TRUE(answer.edits.empty());
    after = {0, u"k  k\raover hills", {{0, 2}, {3, 2}}};
    follow.forget();
    answer = follow.edited(alone, 5, after, 6);
    text = after.chars;
    applyEdits(text, answer.edits);
    EXPECT_EQ(drawn(text), " k  k\naover hills");
}

}  // namespace
}  // namespace melvorin
