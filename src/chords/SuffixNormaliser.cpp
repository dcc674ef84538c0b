#include "chords/SuffixNormaliser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "chords/SuffixRows.h"
#include "chords/Transpose.h"

namespace melvorin {
namespace {

// What a text is made of, as far as pairs of neighbouring characters tell: one bit for each pair,
// some pairs sharing one. A row whose pairs are not all in the text finds nothing there.
using Pairs = std::uint64_t;

constexpr Pairs pairBit(char16_t first, char16_t second) {
    return Pairs{1} << ((first * 37U + second * 11U) % 64U);
}

Pairs pairsOf(TextView text) {
    Pairs pairs = 0;
    for (std::size_t i = 1; i < text.size(); ++i)
        pairs |= pairBit(text[i - 1], text[i]);
    return pairs;
}

struct Row {
    TextView find;
    TextView replacement;
    Pairs pairs;
    bool exchanges;  // "7/4" by "4/7"
};

bool exchangesSides(TextView find, TextView replacement) {
    const std::size_t slash = find.find(u'/');
    if (slash == TextView::npos)
        return false;
    const TextView left = find.substr(0, slash);
    const TextView right = find.substr(slash + 1);
    return left != right && replacement == Text(right).append(u"/").append(left);
}

// `ReplaceAll` for a row that exchanges two degrees. It would sort a chain of them step by step,
// in a time that grows with the square of the chain; here each chain is counted and written sorted.
// The two degrees have no character in common, so a chain is read in one way only.
Text exchangeAll(TextView text, TextView find) {
    const std::size_t slash = find.find(u'/');
    const TextView last = find.substr(0, slash);
    const TextView first = find.substr(slash + 1);
    Text result;
    result.reserve(text.size());
    const auto degreeAt = [&](std::size_t at) {
        const TextView rest = text.substr(at);
        return rest.starts_with(first) ? first : rest.starts_with(last) ? last : TextView();
    };
    for (std::size_t at = 0; at < text.size();) {
        TextView degree = degreeAt(at);
        if (degree.empty()) {
            result += text[at++];
            continue;
        }
        std::size_t firsts = 0;
        std::size_t count = 0;
        while (!degree.empty()) {
            ++count;
            firsts += degree == first ? 1U : 0U;
            at += degree.size();
            const bool goesOn = at < text.size() && text[at] == u'/';
            degree = goesOn ? degreeAt(at + 1) : TextView();
            at += degree.empty() ? 0U : 1U;
        }
        for (std::size_t i = 0; i < count; ++i)
            result.append(i == 0 ? u"" : u"/").append(i < firsts ? first : last);
    }
    return result;
}

class Normaliser {
  public:
    Normaliser();
    Text normalise(TextView text) const;

  private:
    bool mayMatch(TextView piece) const;
    std::size_t pieceLength(TextView text) const;
    void appendRewritten(TextView piece, Text& out) const;

    std::vector<Row> rows_;
    // The characters that rows look for, as far as they are Latin-1 (all of them are).
    std::array<bool, 256> known_{};
};

Normaliser::Normaliser() {
    for (const SuffixRow& row : suffixRows()) {
        for (const char16_t c : row.find)
            known_.at(c) = true;
        if (row.replacement.find(row.find) == Text::npos)
            rows_.push_back({row.find, row.replacement, pairsOf(row.find),
                             exchangesSides(row.find, row.replacement)});
    }
}

// No row finds anything where there is none of these.
bool Normaliser::mayMatch(TextView piece) const {
    for (std::size_t i = 0; i < piece.size(); ++i) {
        switch (piece[i]) {
            case u'-':
            case u'+':
            case u'/':
            case u'(':
            case u')':
            case u'9':
            case u'M':
                return true;
            case u'b':
                if (i > 0 && (piece[i - 1] == u'C' || piece[i - 1] == u'F'))
                    return true;
                break;
            default:
                break;
        }
    }
    return false;
}

// The length of the first piece of a text that begins with a known character. What a row finds, and
// what its replacement may complete, lies within one piece: only parentheses are looked for across
// a blank, and nothing across a line end or an unknown character.
std::size_t Normaliser::pieceLength(TextView text) const {
    const auto isParenthesis = [](char16_t c) { return c == u'(' || c == u')'; };
    std::size_t length = 0;
    while (length < text.size() && text[length] < known_.size() && known_[text[length]]) {
        const char16_t c = text[length++];
        if (c == u'\r' || c == u'\n')
            break;
        if (c != u' ')
            continue;
        const std::size_t word = length - 1;
        while (length < text.size() && text[length] == u' ')
            ++length;
        const bool joins = (word > 0 && isParenthesis(text[word - 1])) ||
                           (length < text.size() && isParenthesis(text[length]));
        if (!joins && (length == text.size() || (text[length] != u'\r' && text[length] != u'\n')))
            break;
    }
    return length;
}

void Normaliser::appendRewritten(TextView piece, Text& out) const {
    if (!mayMatch(piece)) {
        out += piece;
        return;
    }
    Text rewritten(piece);
    Pairs pairs = pairsOf(piece);
    for (const Row& row : rows_) {
        if ((row.pairs & ~pairs) != 0 || rewritten.find(row.find) == Text::npos)
            continue;
        rewritten = row.exchanges ? exchangeAll(rewritten, row.find)
                                  : ReplaceAll(rewritten, row.find, row.replacement);
        pairs = pairsOf(rewritten);
    }
    out += rewritten;
}

Text Normaliser::normalise(TextView text) const {
    const Text marked = Text(text).append(kSuffixEndMarker);
    Text result;
    result.reserve(marked.size());
    for (TextView rest = marked; !rest.empty();) {
        const std::size_t length = pieceLength(rest);
        if (length == 0)
            result += rest[0];
        else
            appendRewritten(rest.substr(0, length), result);
        rest.remove_prefix(std::max<std::size_t>(length, 1));
    }
    // A row that took the marker's blank leaves the rest of it, which is still the last character.
    if (!result.ends_with(kSuffixEndMarker))
        result.pop_back();
    return ReplaceAll(result, kSuffixEndMarker, u"");
}

}  // namespace

Text normaliseSuffixes(TextView text) {
    static const Normaliser normaliser;
    return normaliser.normalise(text);
}

}  // namespace melvorin
