#include "base/TextGuess.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "base/CodePages.h"
#include "base/TabExpansion.h"

namespace melvorin {
namespace {

using Byte = unsigned char;

Byte byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<Byte>(bytes[at]);
}

bool isIn(unsigned value, unsigned low, unsigned high) {
    return value >= low && value <= high;
}

bool isAsciiLetter(Byte byte) {
    return isIn(byte | 0x20U, 'a', 'z');
}

// ---- Characters of two bytes ------------------------------------------------------------------

enum class Kind {
    Broken,    // no character of the code page
    Symbol,    // punctuation, full-width digits and letters: tells nothing
    Kana,      // tells the language as well
    Everyday,  // Hangul, ideographs of the first level
    Rare,
};

constexpr unsigned kShiftJis = 932;
constexpr unsigned kEucJp = 20932;
constexpr unsigned kGb = 936;
constexpr unsigned kKorean = 949;
constexpr unsigned kBig5 = 950;

Kind shiftJisKind(unsigned pair) {
    const unsigned lead = pair >> 8;
    const unsigned trail = pair & 0xFF;
    if (!isIn(lead, 0x81, 0x9F) && !isIn(lead, 0xE0, 0xFC))
        return Kind::Broken;
    if (!isIn(trail, 0x40, 0xFC) || trail == 0x7F)
        return Kind::Broken;
    if (isIn(pair, 0x829F, 0x82F1) || isIn(pair, 0x8340, 0x8396) || pair == 0x815B)
        return Kind::Kana;
    if (isIn(pair, 0x889F, 0x9872))
        return Kind::Everyday;
    return lead == 0x81 || isIn(pair, 0x824F, 0x829A) ? Kind::Symbol : Kind::Rare;
}

// The three national sets stand in the same place: two bytes from A1 to FE.
bool isNational(unsigned pair) {
    return isIn(pair >> 8, 0xA1, 0xFE) && isIn(pair & 0xFF, 0xA1, 0xFE);
}

Kind eucJpKind(unsigned pair) {
    if (!isNational(pair))
        return Kind::Broken;
    const unsigned lead = pair >> 8;
    if (lead == 0xA4 || lead == 0xA5 || pair == 0xA1BC)
        return Kind::Kana;
    if (isIn(pair, 0xB0A1, 0xCFD3))
        return Kind::Everyday;
    return lead == 0xA1 || lead == 0xA3 ? Kind::Symbol : Kind::Rare;
}

Kind gbKind(unsigned pair) {
    const unsigned trail = pair & 0xFF;
    if (!isIn(pair >> 8, 0x81, 0xFE) || !isIn(trail, 0x40, 0xFE) || trail == 0x7F)
        return Kind::Broken;
    if (!isNational(pair))
        return Kind::Rare;
    if (isIn(pair, 0xA4A1, 0xA4F3) || isIn(pair, 0xA5A1, 0xA5F6))
        return Kind::Kana;
    if (isIn(pair, 0xB0A1, 0xD7F9))
        return Kind::Everyday;
    return (pair >> 8) == 0xA1 || (pair >> 8) == 0xA3 ? Kind::Symbol : Kind::Rare;
}

// Only the everyday syllables: the others have letters as second bytes, as words with accents do.
Kind koreanKind(unsigned pair) {
    const unsigned trail = pair & 0xFF;
    const bool isTrail =
        isIn(trail, 0x41, 0x5A) || isIn(trail, 0x61, 0x7A) || isIn(trail, 0x81, 0xFE);
    if (!isIn(pair >> 8, 0x81, 0xFE) || !isTrail)
        return Kind::Broken;
    if (!isNational(pair))
        return Kind::Rare;
    if (isIn(pair, 0xB0A1, 0xC8FE))
        return Kind::Everyday;
    return (pair >> 8) == 0xA1 || (pair >> 8) == 0xA3 ? Kind::Symbol : Kind::Rare;
}

Kind big5Kind(unsigned pair) {
    const unsigned trail = pair & 0xFF;
    if (!isIn(pair >> 8, 0x81, 0xFE) || (!isIn(trail, 0x40, 0x7E) && !isIn(trail, 0xA1, 0xFE)))
        return Kind::Broken;
    if (isIn(pair, 0xA440, 0xC67E))
        return Kind::Everyday;
    return isIn(pair, 0xA140, 0xA3BF) ? Kind::Symbol : Kind::Rare;
}

struct PairPage {
    unsigned number;
    Kind (*kindOf)(unsigned pair);
};
constexpr auto kPairPages = std::to_array<PairPage>({{kShiftJis, shiftJisKind},
                                                     {kEucJp, eucJpKind},
                                                     {kKorean, koreanKind},
                                                     {kGb, gbKind},
                                                     {kBig5, big5Kind}});

struct PairCount {
    std::size_t pairs = 0;
    std::size_t kana = 0;  // half-width ones too
    std::size_t halfWidth = 0;
    std::size_t everyday = 0;
    std::size_t rare = 0;
    std::size_t amidLetters = 0;  // beside a letter of ASCII
    std::size_t lowTrails = 0;    // the second byte is ASCII
    std::size_t capitalTrails = 0;
    std::size_t smallTrails = 0;
    std::size_t letterLike = 0;  // both bytes are letters where a code page has 256 characters
};

// Nothing where the bytes are no text of the code page.
std::optional<PairCount> countPairs(std::string_view bytes, const PairPage& page) {
    PairCount count;
    bool behindLetter = false;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const Byte first = byteAt(bytes, at);
        if (first < 0x80) {
            behindLetter = isAsciiLetter(first);
            continue;
        }
        if (page.number == kShiftJis && isIn(first, 0xA1, 0xDF)) {
            ++count.halfWidth;
            ++count.kana;
        } else {
            if (++at == bytes.size())
                return std::nullopt;
            const Byte second = byteAt(bytes, at);
            const Kind kind = page.kindOf(first * 256U + second);
            if (kind == Kind::Broken)
                return std::nullopt;
            ++count.pairs;
            count.lowTrails += second < 0x80 ? 1U : 0U;
            count.capitalTrails += isIn(second, 'A', 'Z') ? 1U : 0U;
            count.smallTrails += isIn(second, 'a', 'z') ? 1U : 0U;
            count.letterLike += first >= 0xB8 && second >= 0xB8 ? 1U : 0U;
            count.kana += kind == Kind::Kana ? 1U : 0U;
            count.everyday += kind == Kind::Everyday ? 1U : 0U;
            count.rare += kind == Kind::Rare ? 1U : 0U;
        }
        const bool beforeLetter = at + 1 < bytes.size() && isAsciiLetter(byteAt(bytes, at + 1));
        count.amidLetters += behindLetter || beforeLetter ? 1U : 0U;
        behindLetter = false;
    }
    return count;
}

bool isLikely(const PairPage& page, const PairCount& count) {
    const std::size_t known = count.kana + count.everyday;
    if (count.pairs < 4 || known - count.halfWidth < 4 || known < 9 * count.rare)
        return false;
    // A letter with an accent stands among other letters, an ideograph hardly ever does.
    if (4 * count.amidLetters > count.pairs + count.halfWidth)
        return false;
    // Nor does it end with an ASCII letter nearly always, as one with the next letter does.
    if (4 * count.lowTrails > 3 * count.pairs)
        return false;
    // Greek or Cyrillic capitals, all of whose words happen to have an even number of letters.
    if (10 * count.letterLike > 9 * count.pairs)
        return false;
    switch (page.number) {
        case kEucJp:
            return 10 * count.kana >= known;
        case kGb:
            return 10 * count.kana < known;
        case kBig5:
            // Two in five of its characters end with a byte that the others hardly have. These are
            // no letters of words: then capitals and small ones would keep to themselves.
            return 8 * count.lowTrails >= count.pairs &&
                   8 * std::max(count.capitalTrails, count.smallTrails) <= 7 * count.lowTrails;
        default:
            return true;
    }
}

// Hangul and the first half of the Chinese set stand in the same place. These are the commonest
// of each.
std::size_t countCommon(std::string_view bytes, std::span<const unsigned> common) {
    std::size_t count = 0;
    for (std::size_t at = 0; at + 1 < bytes.size(); ++at) {
        if (byteAt(bytes, at) < 0x80)
            continue;
        const unsigned pair = byteAt(bytes, at) * 256U + byteAt(bytes, at + 1);
        count += std::find(common.begin(), common.end(), pair) != common.end() ? 1U : 0U;
        ++at;
    }
    return count;
}

// 이 가 는 을 에 다 나 의 고 지 하 한 도 사 로 리 아 어 너 내 그 대 은 를 라 서
constexpr unsigned kHangul[] = {0xC0CC, 0xB0A1, 0xB4C2, 0xC0BB, 0xBFA1, 0xB4D9, 0xB3AA,
                                0xC0C7, 0xB0ED, 0xC1F6, 0xC7CF, 0xC7D1, 0xB5B5, 0xBBE7,
                                0xB7CE, 0xB8AE, 0xBEC6, 0xBEEE, 0xB3CA, 0xB3BB, 0xB1D7,
                                0xB4EB, 0xC0BA, 0xB8A6, 0xB6F3, 0xBCAD};
// 的 不 人 你 了 来 个 国 好 爱 和 地 到 那 没 里 明 风 花 会 开 美 梦 一 我 是 在 有 天 心
constexpr unsigned kChinese[] = {0xB5C4, 0xB2BB, 0xC8CB, 0xC4E3, 0xC1CB, 0xC0B4, 0xB8F6, 0xB9FA,
                                 0xBAC3, 0xB0AE, 0xBACD, 0xB5D8, 0xB5BD, 0xC4C7, 0xC3BB, 0xC0EF,
                                 0xC3F7, 0xB7E7, 0xBBA8, 0xBBE1, 0xBFAA, 0xC3C0, 0xC3CE, 0xD2BB,
                                 0xCED2, 0xCAC7, 0xD4DA, 0xD3D0, 0xCCEC, 0xD0C4};

std::vector<unsigned> likelyPairPages(std::string_view bytes) {
    std::vector<unsigned> likely;
    for (const PairPage& page : kPairPages) {
        const std::optional<PairCount> count = countPairs(bytes, page);
        if (count && isLikely(page, *count))
            likely.push_back(page.number);
    }
    const auto korean = std::find(likely.begin(), likely.end(), kKorean);
    const auto chinese = std::find(likely.begin(), likely.end(), kGb);
    if (korean != likely.end() && chinese != likely.end() &&
        countCommon(bytes, kChinese) > countCommon(bytes, kHangul))
        std::iter_swap(korean, chinese);
    return likely;
}

// ---- Cyrillic ---------------------------------------------------------------------------------

constexpr unsigned kCyrillic = 1251;
constexpr unsigned kKoi8 = 20866;

// How common each letter is in Russian, from а to я: ten times the binary logarithm of its share in
// a thousand. Rare letters tell more than common ones.
constexpr int kCommonness[] = {63, 40, 55, 41, 49, 64, 32, 40, 62, 36, 51,  54, 50, 61, 68, 48,
                               56, 58, 60, 47, 16, 33, 23, 38, 28, 20, -13, 42, 41, 16, 26, 43};
// Of ё and the letters of the neighbours, which stand elsewhere.
constexpr int kOtherCommonness = 47;

struct CyrillicPage {
    unsigned number;
    std::string_view others;   // letters below C0; from there on all are
    std::string_view telling;  // letters where Hebrew (1255) or Greek capitals (1253) have none
    unsigned small;            // where the 32 small letters begin; the capitals are the other 32
    Byte order[32];            // which letters these are, а being 0
};
constexpr CyrillicPage kCyrillicPages[] = {
    {kCyrillic,
     "\xA5\xA8\xAA\xAF\xB2\xB3\xB4\xB8\xBA\xBF",
     "\xFB\xFC\xFD\xFE\xFF\xDB\xDC\xDD\xDE\xDF",  // ы ь э ю я
     0xE0,
     {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
      16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31}},
    {kKoi8,
     "\xA3\xA4\xA6\xA7\xAD\xB3\xB4\xB6\xB7\xBD",
     "\xC0\xD2",  // ю р
     0xC0,
     {30, 0,  1,  22, 4,  5,  20, 3, 21, 8,  9, 10, 11, 12, 13, 14,
      15, 31, 16, 17, 18, 19, 6,  2, 28, 27, 7, 24, 29, 25, 23, 26}}};

// Nothing for what is no letter.
std::optional<int> commonnessOf(Byte byte, const CyrillicPage& page) {
    if (byte >= 0xC0)
        return kCommonness[page.order[byte & 0x1F]];
    const bool isOther =
        byte >= 0x80 && page.others.find(static_cast<char>(byte)) != std::string_view::npos;
    return isOther ? std::optional(kOtherCommonness) : std::nullopt;
}

// A word of letters outside ASCII, or a sum of such words.
struct Letters {
    std::size_t count = 0;
    std::int64_t commonness = 0;  // the sum of theirs
    std::size_t capitals = 0;
    std::size_t telling = 0;
    std::size_t capitalsInside = 0;  // behind a small letter
};

struct LetterCount {
    std::size_t high = 0;     // bytes outside ASCII
    std::size_t letters = 0;  // of these
    std::size_t words = 0;    // of three letters or more, none of them ASCII
    std::size_t mixed = 0;    // words with letters of both kinds
    Letters inWords;
    std::uint32_t seen = 0;  // which of the 32 from C0 on
};

void endWord(LetterCount& count, const Letters& word, bool hasAscii) {
    count.letters += word.count;
    if (hasAscii) {
        count.mixed += word.count > 0 ? 1U : 0U;
    } else if (word.count >= 3) {
        ++count.words;
        count.inWords.count += word.count;
        count.inWords.commonness += word.commonness;
        count.inWords.telling += word.telling;
        count.inWords.capitals += word.capitals;
        count.inWords.capitalsInside += word.capitalsInside;
    }
}

LetterCount countLetters(std::string_view bytes, const CyrillicPage& page) {
    const auto isSmall = [&page](Byte byte) { return isIn(byte, page.small, page.small + 31); };
    LetterCount count;
    Letters word;
    bool hasAscii = false;
    Byte before = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<Byte>(c);
        count.high += byte >= 0x80 ? 1U : 0U;
        if (const auto commonness = commonnessOf(byte, page)) {
            const bool isCapital = byte >= 0xC0 && !isSmall(byte);
            count.seen |= byte >= 0xC0 ? std::uint32_t{1} << (byte & 0x1FU) : 0U;
            ++word.count;
            word.commonness += *commonness;
            word.telling += page.telling.find(c) != std::string_view::npos ? 1U : 0U;
            word.capitals += isCapital ? 1U : 0U;
            word.capitalsInside += isCapital && isSmall(before) ? 1U : 0U;
        } else if (isAsciiLetter(byte)) {
            hasAscii = true;
        } else {
            endWord(count, word, hasAscii);
            word = {};
            hasAscii = false;
        }
        before = byte;
    }
    endWord(count, word, hasAscii);
    return count;
}

// A word with accents has ASCII letters too, and in other alphabets other letters are common: the
// average is 54 in Cyrillic texts, and 49 at most where they are read in the wrong page. Greek has
// its letters where KOI8 has those that sound alike, but small ones for capitals.
bool isLikely(const LetterCount& count, const CyrillicPage& page) {
    const Letters& words = count.inWords;
    if (page.number == kKoi8 && 2 * words.capitals > words.count)
        return false;
    // The average of a few letters tells nothing.
    constexpr int leastSeen = 10;
    return count.words >= 4 && std::popcount(count.seen) >= leastSeen &&
           10 * count.mixed <= count.words && 10 * count.letters >= 9 * count.high &&
           words.commonness >= 50 * static_cast<std::int64_t>(words.count) &&
           20 * words.capitalsInside <= words.count && 100 * words.telling >= words.count;
}

std::vector<unsigned> likelyCyrillicPages(std::string_view bytes) {
    std::vector<std::pair<std::int64_t, unsigned>> found;
    for (const CyrillicPage& page : kCyrillicPages) {
        const LetterCount count = countLetters(bytes, page);
        if (isLikely(count, page))
            found.emplace_back(count.inWords.commonness, page.number);
    }
    std::sort(found.rbegin(), found.rend());
    std::vector<unsigned> likely(found.size());
    std::transform(found.begin(), found.end(), likely.begin(),
                   [](const auto& page) { return page.second; });
    return likely;
}

// ---- The readings -----------------------------------------------------------------------------

struct Named {
    unsigned codePage;
    TextView name;
};
constexpr auto kPages = std::to_array<Named>({{1252, u"Western European"},
                                              {1250, u"Central European"},
                                              {kCyrillic, u"Cyrillic (Windows)"},
                                              {kKoi8, u"Cyrillic (KOI8-R)"},
                                              {1253, u"Greek"},
                                              {1254, u"Turkish"},
                                              {1255, u"Hebrew"},
                                              {kShiftJis, u"Japanese (Shift-JIS)"},
                                              {kEucJp, u"Japanese (EUC)"},
                                              {kKorean, u"Korean"},
                                              {kGb, u"Chinese, simplified"},
                                              {kBig5, u"Chinese, traditional"}});

// The lines from one before the first that has more than ASCII, which look the same in every
// reading.
std::string_view tellingLines(std::string_view bytes) {
    constexpr std::size_t lines = 16;
    constexpr std::size_t longest = 4096;
    const auto telling =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
    std::size_t begin = bytes.rfind('\n', static_cast<std::size_t>(telling - bytes.begin()));
    if (begin != std::string_view::npos && begin > 0)
        begin = bytes.rfind('\n', begin - 1);
    bytes.remove_prefix(begin == std::string_view::npos ? 0 : begin + 1);
    std::size_t end = 0;
    for (std::size_t line = 0; line < lines && end != std::string_view::npos; ++line)
        end = bytes.find('\n', end + (line > 0 ? 1 : 0));
    return bytes.substr(0, std::min(end, longest));
}

// Without a loss. There may be no such code page.
bool canRead(const AnsiCodec* codec, std::string_view bytes) {
    return codec != nullptr && codec->encode(codec->decode(bytes)) == bytes;
}

CodePageReading readingOf(std::string_view bytes, const AnsiCodec& codec, const Named& page) {
    const Text lines = codec.decode(tellingLines(bytes));
    return {page.codePage, page.name, toCrLf(expandTabs(lines)).chars};
}

}  // namespace

std::vector<unsigned> likelyCodePages(std::string_view bytes) {
    if (isAscii(bytes))
        return {};
    std::vector<unsigned> likely = likelyPairPages(bytes);
    return likely.empty() ? likelyCyrillicPages(bytes) : likely;
}

std::vector<CodePageReading> doubtfulReadings(std::string_view bytes, const AnsiCodec& machine) {
    std::vector<unsigned> likely = likelyCodePages(bytes);
    std::erase_if(likely, [bytes](unsigned number) { return !canRead(codePage(number), bytes); });
    const Text usual = machine.decode(bytes);
    const bool isReadable = canRead(&machine, bytes);
    if (isReadable && (likely.empty() || codePage(likely[0])->decode(bytes) == usual))
        return {};

    std::vector<Named> pages(kPages.begin(), kPages.end());
    std::stable_sort(pages.begin(), pages.end(), [&likely](const Named& a, const Named& b) {
        return std::find(likely.begin(), likely.end(), a.codePage) <
               std::find(likely.begin(), likely.end(), b.codePage);
    });
    std::vector<CodePageReading> readings;
    bool hasUsual = !isReadable;
    for (const Named& page : pages) {
        const AnsiCodec* const codec = codePage(page.codePage);
        if (!canRead(codec, bytes))
            continue;
        hasUsual = hasUsual || codec->decode(bytes) == usual;
        readings.push_back(readingOf(bytes, *codec, page));
    }
    if (!hasUsual)
        readings.push_back(readingOf(bytes, machine, {0, u"As this computer has it"}));
    return readings;
}

}  // namespace melvorin
