#include "LiteralRules.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace melvorin::literal {

namespace {

struct Rule {
    TextView find;
    TextView replacement;
};

constexpr Rule encode[] = {
    {u"X", u"Z"},
    {u"A#", u"\u00AC\u00AC"},
    {u"Ab", u"\u00A9\u00A9"},
    {u"A", u"@"},
    {u"Bb", u"\u00FE\u00FE"},
    {u"B", u"\u00A7"},
    {u"C#", u"\u00B6\u00B6"},
    {u"C", u"%"},
    {u"D#", u"\u00B5\u00B5"},
    {u"Db", u"\u00D1\u00D1"},
    {u"D", u"\u00E6"},
    {u"Eb", u"\u00FF"},
    {u"E", u"\u00A2"},
    {u"F#", u"\u00D8"},
    {u"F", u"\u00A3"},
    {u"G#", u"\u00DD"},
    {u"Gb", u"\u00A4\u00A4"},
    {u"G", u"\u00DF"},
};

constexpr Rule downFirst[] = {{u"\u00AC\u00AC", u"A"}, {u"\u00A9\u00A9", u"G"}};
constexpr Rule downSharps[] = {
    {u"\u00A7", u"A#"}, {u"@", u"G#"},      {u"%", u"B"},       {u"\u00E6", u"C#"},
    {u"\u00A3", u"E"},  {u"\u00A2", u"D#"}, {u"\u00DF", u"F#"},
};
constexpr Rule downFlats[] = {
    {u"@", u"Ab"}, {u"%", u"B"}, {u"\u00E6", u"Db"}, {u"\u00A3", u"E"}, {u"\u00DF", u"Gb"},
};
constexpr Rule downLast[] = {
    {u"\u00FE\u00FE", u"A"}, {u"\u00A7", u"Bb"},      {u"\u00B6\u00B6", u"C"},
    {u"\u00B5\u00B5", u"D"}, {u"\u00D1\u00D1", u"C"}, {u"\u00FF", u"D"},
    {u"\u00A2", u"Eb"},      {u"\u00D8", u"F"},       {u"\u00DD", u"G"},
    {u"\u00A4\u00A4", u"F"},
};

constexpr Rule upFirst[] = {{u"\u00AC\u00AC", u"B"}, {u"\u00A9\u00A9", u"A"}};
constexpr Rule upSharps[] = {
    {u"@", u"A#"},      {u"%", u"C#"},      {u"%", u"C#"},
    {u"\u00E6", u"D#"}, {u"\u00A3", u"F#"}, {u"\u00DF", u"G#"},
};
constexpr Rule upFlats[] = {
    {u"@", u"Bb"},      {u"%", u"Db"},      {u"%", u"Db"},
    {u"\u00E6", u"Eb"}, {u"\u00A3", u"Gb"}, {u"\u00DF", u"Ab"},
};
constexpr Rule upLast[] = {
    {u"\u00FE\u00FE", u"B"}, {u"\u00A7", u"C"},       {u"\u00B6\u00B6", u"D"},
    {u"\u00B5\u00B5", u"E"}, {u"\u00D1\u00D1", u"D"}, {u"\u00FF", u"E"},
    {u"\u00A2", u"F"},       {u"\u00D8", u"G"},       {u"\u00DD", u"A"},
    {u"\u00A4\u00A4", u"G"},
};

template <std::size_t count>
void apply(Text& line, const Rule (&rules)[count]) {
    for (const Rule& rule : rules) {
        replaceAll(line, rule.find, rule.replacement);
    }
}

// The sets of the scan, and the two letters that are in neither.
bool isTokenCharacter(char16_t c) {
    return TextView(u"-ad)(bmABCDEFG1234567890+#\u00B0\u00BASus/iM").find(c) != TextView::npos;
}

struct Token {
    std::size_t column;
    Text text;
};

std::vector<Token> scan(const Text& line) {
    std::vector<Token> tokens;
    std::size_t caret = line.size();
    while (true) {
        std::size_t start = caret;
        while (start > 0 && isTokenCharacter(line[start - 1])) {
            --start;
        }
        if (start < caret) {
            tokens.push_back({start, line.substr(start, caret - start)});
        }
        caret = start;
        while (caret > 0 && TextView(u" &").find(line[caret - 1]) != TextView::npos) {
            --caret;
        }
        if (caret == 0) {
            std::reverse(tokens.begin(), tokens.end());
            return tokens;
        }
    }
}

}  // namespace

bool replaceAll(Text& text, TextView find, TextView replacement, int limit) {
    for (int round = 0; round < limit; ++round) {
        const std::size_t at = text.find(find);
        if (at == Text::npos) {
            return true;
        }
        text.replace(at, find.size(), replacement);
    }
    return false;
}

Text transposeLine(Text line, Direction direction, Spelling spelling) {
    apply(line, encode);
    if (direction == Direction::Down) {
        apply(line, downFirst);
        if (spelling == Spelling::Sharps) {
            apply(line, downSharps);
        } else {
            apply(line, downFlats);
        }
        apply(line, downLast);
    } else {
        apply(line, upFirst);
        if (spelling == Spelling::Sharps) {
            apply(line, upSharps);
        } else {
            apply(line, upFlats);
        }
        apply(line, upLast);
    }
    return line;
}

Text realignLine(const Text& before, const Text& transposed) {
    const std::vector<Token> columns = scan(before);
    const std::vector<Token> chords = scan(transposed);
    Text work(2 * before.size() + 291, u'~');
    std::size_t end = 0;
    for (std::size_t i = 0; i < chords.size(); ++i) {
        std::size_t column = columns.at(i).column;
        while (i > 0 && column < end + 1) {
            ++column;
        }
        work.replace(column, chords[i].text.size(), chords[i].text);
        end = column + chords[i].text.size();
    }
    std::replace(work.begin(), work.end(), u'~', u' ');
    return work.substr(0, std::max(before.size(), end));
}

Text randomChordLine(std::mt19937& random, bool musical) {
    static constexpr TextView any = u" ABCDEFGmb#1345679\u00B0iSus/+M\u00BAad()";
    static constexpr TextView roots = u"ABCDEFG";
    static constexpr TextView marks = u"##bb m7/+";
    const auto pick = [&random](TextView from) { return from[random() % from.size()]; };
    Text line;
    const std::size_t length = random() % 40;
    while (line.size() < length) {
        if (!musical || random() % 16 == 0) {
            line += pick(any);
            continue;
        }
        line += pick(roots);
        while (random() % 2 == 0) {
            line += pick(marks);
        }
        line.append(random() % 4, u' ');
    }
    return line;
}

}  // namespace melvorin::literal
