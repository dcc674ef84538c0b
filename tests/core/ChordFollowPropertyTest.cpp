// What must hold for every edit, on invented songs. MELVORIN_SEED gives another course,
// MELVORIN_EDITS a longer one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>

#include "FollowOracle.h"
#include "chords/CopyChords.h"
#include "chords/FollowReplace.h"

namespace melvorin {
namespace {

using namespace testing;

TEST(ChordFollowProperty, WordsKeepTheirChords) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 20));
    std::size_t reversed = 0;
    std::size_t forced = 0;
    for (std::size_t edits = 0; edits < most;) {
        const Text words = dice.words();
        const Text chords = dice.chordLine();
        const Text around = dice.oneIn(2) ? u"\rzz zz" : u"";
        FollowedSong song(chords + u'\r' + words + around, chords.size() + 1);
        // The caret has not come to this line when it was empty.
        song.follow.forget();
        WordsOracle oracle(words, tokensOf(chords));
        std::string course;
        for (std::size_t i = 1 + dice.below(30); i > 0 && edits < most; --i, ++edits) {
            const std::vector<Text> before = linesOfText(song.text());
            if (before[1].find_first_not_of(u' ') == Text::npos)
                break;
            auto edit = inventedEdit(dice, before[1], oracle);
            const auto reverse = oracle.reverseOfLast();
            const bool takesBack = reverse && dice.oneIn(4);
            if (takesBack)
                edit = *reverse;
            // Only where texts differ something was edited.
            while (edit.from < edit.to && !edit.with.empty() &&
                   before[1][edit.from] == edit.with[0]) {
                ++edit.from;
                edit.with.erase(0, 1);
            }
            if (edit.from == edit.to && edit.with.empty())
                continue;
            const Text former = song.text();
            course += toUtf8(former) + "\n" + std::to_string(edit.from) + " to " +
                      std::to_string(edit.to) + ": '" + toUtf8(edit.with) + "'\n";
            reversed += oracle.edit(edit, tokensOf(before[0])) ? 1U : 0U;
            const std::size_t start = before[0].size() + 1;
            song.put(start + edit.from, start + edit.to, edit.with, start + edit.to);
            const std::vector<Text> after = linesOfText(song.text());
            EXPECT_EQ(toUtf8(after[1]), toUtf8(oracle.words()));
            EXPECT_EQ(toUtf8(namesOf(after[0])), toUtf8(namesOf(chords)));
            forced += oracle.check(tokensOf(after[0]));
            ASSERT_FALSE(::testing::Test::HasFailure()) << "edit " << edits << "\n"
                                                        << course << toUtf8(song.text());
            // The reverse gives the pair back; and then the edit is made again.
            if (dice.oneIn(3)) {
                const std::size_t line = after[0].size() + 1 + edit.from;
                const Text now = song.text();
                const FollowedSong copy = song;
                song.put(line, line + edit.with.size(),
                         before[1].substr(edit.from, edit.to - edit.from), line + edit.with.size());
                ASSERT_TRUE(takesBack || song.text() == former) << toUtf8(former) << "\n"
                                                                << toUtf8(now) << "\n"
                                                                << toUtf8(song.text());
                song = copy;
            }
        }
    }
    EXPECT_GT(reversed, most / 20);
    EXPECT_GT(forced, most / 50);
}

TEST(ChordFollowProperty, EditsOfChordsKeepTheOthers) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 21));
    for (std::size_t edits = 0; edits < most; ++edits) {
        const Text chords = dice.chordLine();
        const Text words = dice.words();
        FollowedSong song(chords + u'\r' + words, 0);
        const std::size_t from = dice.below(chords.size() + 1);
        const bool deletes = dice.oneIn(2);
        const std::size_t to = deletes ? std::min(from + 1, chords.size()) : from;
        const Text with = deletes ? Text() : dice.oneIn(2) ? u" " : u"m";
        const Text plain = Text(chords).replace(from, to - from, with);
        song.put(from, to, with, to);
        const std::vector<Text> lines = linesOfText(song.text());
        EXPECT_EQ(toUtf8(namesOf(lines[0])), toUtf8(namesOf(plain)));
        EXPECT_EQ(lines[1], words);
        const std::vector<Token> before = tokensOf(chords);
        const std::vector<Token> after = tokensOf(lines[0]);
        for (std::size_t k = 0; k < before.size() && k < after.size(); ++k) {
            const Token& was = before[before.size() - 1 - k];
            const Token& is = after[after.size() - 1 - k];
            const bool isBehind = was.index > to && chords[was.index - 1] == u' ';
            if (!isBehind || was.text != is.text)
                break;
            const bool isForced =
                k + 1 < after.size() && is.column == after[after.size() - 2 - k].end + 1;
            EXPECT_TRUE(is.column == was.column || (isForced && is.column > was.column));
        }
        song.put(from, from + with.size(), chords.substr(from, to - from), from + with.size());
        EXPECT_EQ(toUtf8(song.text()), toUtf8(chords + u'\r' + words));
        // Typed and taken back again, key by key.
        song.moveTo(from);
        const std::string keys =
            std::string("m7m7").substr(dice.below(4)) + (dice.oneIn(2) ? " " : "");
        song.press(keys + std::string(keys.size(), '\b'));
        EXPECT_EQ(toUtf8(song.text()), toUtf8(chords + u'\r' + words)) << keys;
        ASSERT_FALSE(::testing::Test::HasFailure())
            << "edit " << edits << "\n"
            << toUtf8(chords) << "\n"
            << from << " to " << to << ": '" << toUtf8(with) << "'\n"
            << toUtf8(lines[0]);
    }
}

// Several pairs, some words alone, a label and empty lines.
Text inventedSong(Dice& dice) {
    Text song;
    for (std::size_t i = 2 + dice.below(5); i > 0; --i) {
        switch (dice.below(6)) {
            case 0:
                song += u"Intro:\r";
                break;
            case 1:
                song += u"\r";
                break;
            case 2:
                song.append(dice.words()).append(u"\r");
                break;
            default:
                song.append(dice.chordLine()).append(u"\r").append(dice.words()).append(u"\r");
                break;
        }
    }
    return song;
}

bool isChordToken(const Text& token) {
    return token.find_first_of(Text(kLetters) + kWide + kMark + u"Intro:") == Text::npos;
}

// All that is not a chord, in order, without blanks and line ends; and all chords.
Text lettersOfSong(const Text& text, bool chords) {
    Text letters;
    for (const Text& line : linesOfText(text)) {
        for (const Token& token : tokensOf(line)) {
            if (isChordToken(token.text) == chords)
                letters.append(token.text).append(chords ? u" " : u"");
        }
    }
    return letters;
}

Text wordLetters(const Text& text) {
    Text letters;
    for (const char16_t c : text) {
        if (kLetters.find(c) != TextView::npos || c == kWide || c == kMark)
            letters += c;
    }
    return letters;
}

void expectNothingGlued(const Text& text) {
    for (const Text& line : linesOfText(text)) {
        bool chords = false;
        bool others = false;
        for (const Token& token : tokensOf(line))
            (isChordToken(token.text) ? chords : others) = true;
        EXPECT_FALSE(chords && others) << toUtf8(line);
    }
}

TEST(ChordFollowProperty, SplitLinesAreJoinedAgain) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 22));
    for (std::size_t edits = 0; edits < most; ++edits) {
        const Text text = inventedSong(dice);
        FollowedSong song(text, dice.below(text.size() + 1));
        song.correctsAfterwards = dice.oneIn(2);
        const std::string former = song.drawn();
        song.press("\r");
        const Text split = song.text();
        EXPECT_EQ(lettersOfSong(split, false), lettersOfSong(text, false));
        EXPECT_EQ(lettersOfSong(split, true), lettersOfSong(text, true));
        expectNothingGlued(split);
        const std::size_t lineStart = split.substr(0, song.caret()).rfind(u'\r') + 1;
        const std::size_t caret = song.caret();
        const Text here = linesOfText(split.substr(lineStart))[0];
        song.press("\b");
        // In a chord line Backspace joins lines of words only where words are above.
        if (!isChordToken(namesOf(here).substr(0, namesOf(here).find(u' ')))) {
            EXPECT_EQ(toUtf8(song.text()), toUtf8(text));
        }
        ASSERT_FALSE(::testing::Test::HasFailure()) << "edit " << edits << "\n"
                                                    << former << "\n---\n"
                                                    << toUtf8(split) << "\n---" << caret << "\n"
                                                    << song.drawn();
    }
}

TEST(ChordFollowProperty, WhatIsNotSelectedStays) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 23));
    for (std::size_t edits = 0; edits < most; ++edits) {
        const Text text = inventedSong(dice);
        const std::size_t begin = dice.below(text.size() + 1);
        const std::size_t end = std::min(begin + dice.below(60), text.size());
        FollowedSong song(text, begin);
        song.select(begin, end);
        const std::string former = song.drawn();
        song.press("\b");
        Text plain = text;
        plain.erase(begin, end - begin);
        // A single blank between two chords goes.
        if (end <= begin + 1)
            continue;
        expectNothingGlued(song.text());
        EXPECT_FALSE(song.hasWrongSource);
        if (song.text() != text) {
            EXPECT_EQ(wordLetters(song.text()), wordLetters(plain));
        }
        // Each chord outside the selection, in its order.
        Text outside;
        std::size_t lineStart = 0;
        for (const Text& line : linesOfText(text)) {
            for (const Token& token : tokensOf(line)) {
                const std::size_t at = lineStart + token.index;
                const bool isOutside = at + token.text.size() <= begin || at >= end;
                if (isOutside && isChordToken(token.text))
                    outside.append(token.text).append(u" ");
            }
            lineStart += line.size() + 1;
        }
        std::size_t next = 0;
        const Text left = lettersOfSong(song.text(), true);
        for (const Token& token : tokensOf(outside)) {
            next = left.find(token.text + u" ", next);
            if (next == Text::npos)
                break;
            next += token.text.size() + 1;
        }
        EXPECT_NE(next, Text::npos) << toUtf8(outside);
        ASSERT_FALSE(::testing::Test::HasFailure()) << "edit " << edits << "\n"
                                                    << former << "\n---\n"
                                                    << song.drawn();
    }
}

// Anything that a control may hold: blanks of all kinds, halves of pairs, soft line breaks.
Text inventedText(Dice& dice, std::size_t most) {
    constexpr char16_t odd[] = {u'\t', 0xA0,   0x2003, 0x200B, 0x3000, 0xD83C, 0xDFB5, kWide,
                                kMark, 0xFEFF, u'|',   u'-',   u'[',   u']',   u'{',   u'}',
                                u'\v', u'\n',  u'"',   u'(',   u')',   u'/',   u':',   u'x'};
    Text text;
    for (std::size_t i = dice.below(most + 1); i > 0; --i) {
        if (dice.oneIn(3))
            text += u' ';
        else if (dice.oneIn(6))
            text += u'\r';
        else if (dice.oneIn(3))
            text += kChords[dice.below(std::size(kChords))];
        else
            text += dice.oneIn(2) ? odd[dice.below(std::size(odd))] : kLetters[dice.below(5)];
    }
    return text;
}

bool isSpacing(char16_t c) {
    return c <= u' ' || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) || c == 0x3000 || c == 0xFEFF;
}

Text withoutSpacing(const Text& text) {
    Text rest;
    std::copy_if(text.begin(), text.end(), std::back_inserter(rest),
                 [](char16_t c) { return !isSpacing(c); });
    return rest;
}

TEST(ChordFollowProperty, NothingButSpacingChangesInALine) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 24));
    for (std::size_t edits = 0; edits < most;) {
        const Text invented = inventedText(dice, 120);
        FollowedSong song(invented, dice.below(invented.size() + 1));
        for (std::size_t i = dice.below(12); i > 0; --i, ++edits) {
            const Text before = song.text();
            const std::size_t begin = std::min(
                dice.oneIn(3) ? dice.below(before.size() + 1) : song.caret(), before.size());
            std::size_t end = std::min(begin + dice.below(3), before.size());
            if (before.substr(begin, end - begin).find_first_of(u"\r\n\v") != Text::npos)
                end = begin;
            const Text with = dice.oneIn(3) ? Text() : dice.oneIn(2) ? Text(u" ") : Text(u"m");
            const Text plain = Text(before).replace(begin, end - begin, with);
            song.put(begin, end, with, dice.oneIn(2) ? begin : end);
            ASSERT_EQ(toUtf8(withoutSpacing(song.text())), toUtf8(withoutSpacing(plain)))
                << toUtf8(before) << "\n"
                << begin << " to " << end;
            ASSERT_FALSE(song.hasWrongSource);
        }
    }
}

// Whatever is cut, pasted, moved or copied in whatever text: the answer is one that can be carried
// out.
TEST(ChordFollowProperty, EveryAnswerCanBeCarriedOut) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000);
    Dice dice(countOf("MELVORIN_SEED", 25));
    for (std::size_t edits = 0; edits < most; ++edits) {
        const Text invented = dice.oneIn(2) ? inventedText(dice, 150) : inventedSong(dice);
        FollowedSong song(invented, dice.below(invented.size() + 1));
        ChordVisit visit;
        for (std::size_t i = dice.below(6); i > 0; --i) {
            const Excerpt text = song.whole();
            const std::size_t caret = song.caret();
            const std::size_t end = std::min(caret + dice.below(40), text.chars.size());
            std::optional<FollowAnswer> answer;
            switch (dice.below(8)) {
                case 0:
                    answer = visit.tab(text, caret, dice.oneIn(2));
                    break;
                case 1:
                    answer = visit.toChords(text, caret);
                    break;
                case 2:
                    answer = visit.toWords(text, caret);
                    break;
                case 3:
                    answer = visit.leave(text, caret);
                    break;
                case 4:
                    answer = song.follow.moveChord(text, caret,
                                                   static_cast<ChordFollow::Move>(dice.below(4)));
                    break;
                case 5: {
                    const CopiedChords copied = copyChords(text, caret, end);
                    const std::size_t place = dice.below(text.chars.size() + 1);
                    const auto pasted = pasteChords(text, place, text.chars.size(), copied);
                    if (!pasted)
                        break;
                    Text now = text.chars;
                    applyEdits(now, pasted->answer.edits);
                    ASSERT_LE(pasted->answer.caret, now.size());
                    for (const FollowEdit& part : pasted->answer.edits) {
                        const Text& source =
                            part.origin == Origin::Incoming ? copied.chords.chars : text.chars;
                        ASSERT_TRUE(part.origin == Origin::New ||
                                    source.substr(part.from, part.text.size()) == part.text);
                    }
                    break;
                }
                default:
                    visit.typed();
                    song.put(caret, end, inventedText(dice, 20), dice.oneIn(2) ? caret : end);
                    break;
            }
            if (answer) {
                song.take(*answer);
                ASSERT_EQ(withoutSpacing(song.text()), withoutSpacing(text.chars))
                    << toUtf8(text.chars);
            }
            ASSERT_LE(song.caret(), song.text().size());
            ASSERT_FALSE(song.hasWrongSource) << toUtf8(text.chars);
        }
    }
}

// Each match replaced at once is what each match replaced by hand would be, from pairs that nobody
// edits before.
TEST(ChordFollowProperty, ReplacedAtOnceAsByHand) {
    const std::size_t most = countOf("MELVORIN_EDITS", 4000) / 4;
    Dice dice(countOf("MELVORIN_SEED", 26));
    std::size_t compared = 0;
    for (std::size_t songs = 0; songs < most; ++songs) {
        const Text text = inventedSong(dice);
        const Text find = dice.letters(2);
        const Text with = dice.letters(4);
        if (find.find_first_not_of(u' ') == Text::npos)
            continue;
        // One match to a line: a second one would begin from what the first has left.
        std::vector<TextEdit> replacements;
        for (std::size_t at = text.find(find); at != Text::npos;) {
            std::size_t front = 0;
            while (front < find.size() && front < with.size() && find[front] == with[front])
                ++front;
            if (find.substr(front) != with.substr(front))
                replacements.push_back({at + front, find.size() - front, Text(with.substr(front))});
            const std::size_t lineEnd = text.find(u'\r', at);
            at = lineEnd == Text::npos ? lineEnd : text.find(find, lineEnd);
        }
        Text atOnce = text;
        applyEdits(atOnce, followReplacements({0, text, {}}, replacements));
        FollowedSong byHand(text, 0);
        for (auto edit = replacements.rbegin(); edit != replacements.rend(); ++edit) {
            byHand.moveTo(0);
            byHand.follow.forget();
            // A caret that has come to a line of words with something in it.
            byHand.put(edit->position, edit->position + edit->length, edit->text,
                       edit->position + edit->length);
            ++compared;
        }
        ASSERT_EQ(toUtf8(atOnce), toUtf8(byHand.text())) << toUtf8(text) << "\n"
                                                         << toUtf8(find) << " by " << toUtf8(with);
    }
    EXPECT_GT(compared, most / 4);
}

}  // namespace
}  // namespace melvorin
