// Songs invented for chords that follow, and where their chords must stand after an edit, found by
// other means than the program's.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "FollowedSong.h"

namespace melvorin::testing {

// Letters that make neither chords nor labels.
inline constexpr TextView kLetters = u"kwxyz";
inline constexpr char16_t kWide = 0x6B4C;
inline constexpr char16_t kMark = 0x301;
inline constexpr TextView kChords[] = {u"C",     u"Am",   u"G7", u"F#m7(9)", u"Bb",
                                       u"Cmaj7", u"D/F#", u"A2", u"N.C.",    u"|"};

inline std::size_t countOf(const char* name, std::size_t usual) {
    const char* value = std::getenv(name);
    return value == nullptr ? usual : std::strtoull(value, nullptr, 10);
}

// Kept apart from the widths of the program.
inline std::size_t widthOf(char16_t c) {
    return c == kMark ? 0 : c == kWide ? 2 : 1;
}

class Dice {
  public:
    explicit Dice(std::size_t seed) : engine_(static_cast<std::uint32_t>(seed)) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    Text letters(std::size_t most) {
        Text text;
        for (std::size_t i = below(most + 1); i > 0; --i)
            text += oneIn(5)    ? u' '
                    : oneIn(25) ? kWide
                    : oneIn(25) ? kMark
                                : kLetters[below(kLetters.size())];
        return text;
    }
    Text words() {
        Text text = letters(12);
        for (std::size_t i = below(6); i > 0; --i)
            text.append(1, kLetters[below(5)]).append(letters(6)).append(1 + below(2), u' ');
        return text;
    }
    Text chordLine() {
        Text text(below(4), u' ');
        text += kChords[below(std::size(kChords) - 1)];
        for (std::size_t i = below(6); i > 0; --i)
            text.append(1 + below(9), u' ').append(kChords[below(std::size(kChords))]);
        return text.append(below(3), u' ');
    }

  private:
    std::mt19937 engine_;
};

struct Token {
    Text text;
    std::size_t column = 0;
    std::size_t end = 0;
    std::size_t index = 0;
};

inline std::vector<Token> tokensOf(TextView line) {
    std::vector<Token> tokens;
    std::size_t column = 0;
    bool inside = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != u' ' && !inside)
            tokens.push_back({Text(), column, column, i});
        inside = line[i] != u' ';
        column += widthOf(line[i]);
        if (inside) {
            tokens.back().text += line[i];
            tokens.back().end = column;
        }
    }
    return tokens;
}

inline Text namesOf(TextView line) {
    Text names;
    for (const Token& token : tokensOf(line))
        names.append(token.text).append(u" ");
    return names;
}

inline std::vector<Text> linesOfText(const Text& text) {
    std::vector<Text> lines(1);
    for (const char16_t c : text) {
        if (c == u'\r')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    return lines;
}

// The rules for edits in words, by letters that have names instead of by columns.
class WordsOracle {
  public:
    WordsOracle(const Text& words, const std::vector<Token>& chords) {
        for (const char16_t c : words)
            letters_.push_back({c, next_++});
        anchor(chords);
    }

    struct Edit {
        std::size_t from = 0;
        std::size_t to = 0;
        Text with;
    };

    // True when the edit is the reverse of the last one.
    bool edit(const Edit& edit, const std::vector<Token>& chordsBefore);
    // How many chords were forced away from their letters.
    std::size_t check(const std::vector<Token>& chords) const;
    Text words() const {
        Text text;
        for (const Letter& letter : letters_)
            text += letter.c;
        return text;
    }
    std::size_t begin() const { return begin_; }
    std::size_t end() const { return end_; }
    std::optional<Edit> reverseOfLast() const {
        if (steps_.empty())
            return std::nullopt;
        return Edit{steps_.back().from, steps_.back().from + steps_.back().inserted,
                    steps_.back().removed};
    }

  private:
    struct Letter {
        char16_t c = 0;
        int name = 0;
    };
    struct Step {
        std::size_t from = 0;
        std::size_t inserted = 0;
        Text removed;
        std::vector<Letter> letters;
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    struct Anchor {
        int name = -1;  // of the letter that the chord stands over
        std::size_t into = 0;
    };

    void anchor(const std::vector<Token>& chords);
    bool isBlankFrom(std::size_t index) const {
        return std::all_of(letters_.begin() + static_cast<std::ptrdiff_t>(index), letters_.end(),
                           [](const Letter& letter) { return letter.c == u' '; });
    }

    std::vector<Letter> letters_;
    std::vector<Anchor> anchors_;
    std::vector<Step> steps_;
    std::size_t begin_ = Text::npos;  // of the stretch that is there now
    std::size_t end_ = 0;
    int next_ = 0;
};

inline void WordsOracle::anchor(const std::vector<Token>& chords) {
    anchors_.clear();
    for (const Token& chord : chords) {
        Anchor anchor;
        std::size_t column = 0;
        for (const Letter& letter : letters_) {
            if (column <= chord.column && chord.column < column + widthOf(letter.c))
                anchor = {letter.name, chord.column - column};
            column += widthOf(letter.c);
        }
        anchors_.push_back(anchor);
    }
}

inline bool WordsOracle::edit(const Edit& edit, const std::vector<Token>& chordsBefore) {
    const auto reverse = reverseOfLast();
    if (reverse && reverse->from == edit.from && reverse->to == edit.to &&
        reverse->with == edit.with) {
        letters_ = steps_.back().letters;
        begin_ = steps_.back().begin;
        end_ = steps_.back().end;
        steps_.pop_back();
        if (steps_.empty())
            begin_ = Text::npos;
        return true;
    }
    const bool touches = begin_ != Text::npos && edit.from <= end_ && edit.to >= begin_;
    const bool deletesBehindBlank =
        edit.with.empty() && edit.from == end_ && end_ > begin_ && letters_[end_ - 1].c == u' ';
    if (!touches || deletesBehindBlank) {
        anchor(chordsBefore);
        steps_.clear();
        begin_ = edit.from;
        end_ = edit.to;
    }
    steps_.push_back({edit.from, edit.with.size(), words().substr(edit.from, edit.to - edit.from),
                      letters_, begin_, end_});
    const auto at = letters_.begin() + static_cast<std::ptrdiff_t>(edit.from);
    auto place = letters_.erase(at, at + static_cast<std::ptrdiff_t>(edit.to - edit.from));
    for (const char16_t c : edit.with)
        place = letters_.insert(place, {c, next_++}) + 1;
    begin_ = std::min(begin_, edit.from);
    end_ = std::max(end_, edit.to) - (edit.to - edit.from) + edit.with.size();
    return false;
}

inline std::size_t WordsOracle::check(const std::vector<Token>& chords) const {
    EXPECT_EQ(chords.size(), anchors_.size());
    if (chords.size() != anchors_.size())
        return 0;
    std::size_t forced = 0;
    const bool nothingBehind = begin_ == Text::npos || isBlankFrom(end_);
    std::size_t column = 0;
    for (std::size_t i = 0; i < letters_.size(); ++i) {
        for (std::size_t k = 0; k < chords.size(); ++k) {
            // Where only blanks stand behind the edit nothing moves, so it is not over them.
            if (anchors_[k].name != letters_[i].name || (nothingBehind && i >= end_))
                continue;
            const std::size_t home = column + anchors_[k].into;
            const bool isForced = k > 0 && chords[k].column == chords[k - 1].end + 1;
            EXPECT_GE(chords[k].column, home) << toUtf8(chords[k].text);
            EXPECT_TRUE(chords[k].column == home || isForced) << toUtf8(chords[k].text);
            forced += chords[k].column == home ? 0U : 1U;
        }
        column += widthOf(letters_[i].c);
    }
    return forced;
}

inline WordsOracle::Edit inventedEdit(Dice& dice, const Text& words, const WordsOracle& oracle) {
    const bool nearby = oracle.begin() != Text::npos && !dice.oneIn(4);
    std::size_t from = nearby ? oracle.begin() + dice.below(oracle.end() - oracle.begin() + 1)
                              : dice.below(words.size() + 1);
    if (nearby && dice.oneIn(2))
        from = oracle.end();
    switch (dice.below(6)) {
        case 0:
        case 1:
            return {from - (from > 0 ? 1U : 0U), from, Text()};
        case 2:
            return {from, std::min(from + 1, words.size()), Text()};
        case 3:
            return {from, std::min(from + dice.below(6), words.size()), dice.letters(6)};
        default: {
            Text typed = dice.letters(1);
            return {from, from, typed.empty() ? Text(u"z") : typed};
        }
    }
}

}  // namespace melvorin::testing
