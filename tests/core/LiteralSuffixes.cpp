#include "LiteralSuffixes.h"

#include <cstddef>
#include <vector>

#include "LiteralRules.h"

namespace melvorin::literal {
namespace {

using List = std::vector<Text>;

// The items of a list, one after the other with a bar between them.
List items(TextView list) {
    List result(1);
    for (const char16_t c : list) {
        if (c == u'|')
            result.emplace_back();
        else
            result.back() += c;
    }
    return result;
}

const List L14 = items(
    u"b-|A-|B-|C-|D-|E-|F-|G-|C-|9/6|9-|-4|-6|-7|-9|-7/4|7M|7/4|-6/7|7/6|m6/7|-7/9|-9/7|9+|11+|"
    u"-/7|5+|5+/4|4/5+|4/5#|-7/9|9+ ");
const List L15 = items(
    u"bm|Am|Bm|Cm|Dm|Em|Fm|Gm|Cm|6/9|9b|m4|m6|m7|m9|m4/7|7+|4/7|m6/7|6/7|m6/7|m7/9|m7/9|9#|9#|"
    u"m/7|5#|5#/4|5#/4|5#/4|m7/9|9#");
const List L12 =
    items(u"A|A#|Bb|B|C|C#|Db|D|D#|Eb|E|F|F#|Gb|G|G#|Ab|#|m|b|+|-|1|4|5|6|7|/9|9)|\u00B0");
const List L13 = items(u"C#|D|D|D#|E|F|F|F#|G|G|G#|A|A#|Bb|B|C|C");
const List L9 = items(u"A|A|A#|Bb|B|B|C|C#|C#|Db|Db|D|D#|Eb|E|E|F|F#|F#|Gb|Gb|G|G#|Ab");
const List L10 = items(u"F#|Gb|G|G|G#|Ab|A|A#|Bb|A#|Bb|B|C|C|C#|Db|D|D#|Eb|D#|Eb|E|F|F");
const List L3 = items(u"A|B|D|E|G|Am|Bm|Dm|Em|Gm");
const List L4 = items(u"Bb|Db|Eb|Gb|Ab");
const List L5 = items(u"A#|C#|D#|F#|G#");
const List L6 = items(u"C|F|Cm|Fm");
const List L7 = items(
    u"A/A#|Am/A#|C/C#|Cm/C#|D/D#|Dm/D#|F/F#|Fm/F#|G/G#|Gm/G#|C9/A#|Cm9/A#|F9/D#|Fm9/D#|A6/A#|"
    u"Am6/A#|C6/C#|Cm6/C#|D6/D#|Dm6/D#|F6/F#|Fm6/F#|G6/G#|Gm6/G#|A6/Ab|B6/Bb|D6/Db|E6/Eb|G6/Gb|"
    u"G7/D#|Gm7/D#|G/A#|Gm/A#|G/C#|Gm/C#|G/D#");
const List L8 = items(
    u"A/Bb|Am/Bb|C/Db|Cm/Db|D/Eb|Dm/Eb|F/Gb|Fm/Gb|G/Ab|Gm/Ab|C9/Bb|Cm9/Bb|F9/Eb|Cm9/Eb|A6/Bb|"
    u"Am6/Bb|C6/Db|Cm6/Db|D6/Eb|Dm6/Eb|F6/Gb|Fm6/Gb|G6/Ab|Gm6/Ab|A6/G#|B6/A#|D6/C#|E6/D#|G6/F#|"
    u"G7/Eb|Gm7/Eb|G/Bb|Gm/Bb|G/Db|Gm/Db|G/Eb");
const List ends = {u" ", u"\r", u"\n"};
constexpr std::size_t notes = 17;

}  // namespace

void forEachSuffixRow(const std::function<void(const Text&, const Text&, bool)>& row) {
    row(u"#- ", u"#m ", false);
    row(u"Cb", u"B", false);
    row(u"Fb", u"E", false);
    for (std::size_t i = 0; i < L14.size(); ++i)
        row(L14[i], L15[i], false);
    for (std::size_t i = 0; i < notes; ++i) {
        for (const Text& end : ends)
            row(L12[i] + u"9 )" + end, L12[i] + u"9) " + end, true);
        for (const Text& end : ends)
            row(L12[i] + u"m9 )" + end, L12[i] + u"m9) " + end, true);
    }
    for (std::size_t i = 0; i < L12.size(); ++i) {
        const Text& item = L12[i];
        const bool plain = i < notes || item == u"m" || item == u"\u00B0";
        const Text ninth = plain ? u"9" : item == u"/9" || item == u"9)" ? u"" : u"/9";
        for (const Text added : {u"(add9)", u"(ad9)", u"Ad9", u"add9", u"Add9"}) {
            const Text blanks(added.size() - ninth.size(), u' ');
            for (const Text& end : ends)
                row(item + added + end, item + ninth + blanks + end, true);
        }
    }
    for (std::size_t i = 0; i < notes; ++i)
        row(L12[i] + u"/3", L12[i] + u"/" + L13[i], false);
    for (std::size_t i = 0; i < L12.size(); ++i) {
        const Text& item = L12[i];
        row(item + u" ( ", item + u"  (", true);
        for (const Text& end : ends)
            row(item + u" )" + end, item + u") " + end, true);
        if (i < notes && item.size() == 2)
            continue;
        row(u" ( " + item, u"  (" + item, true);
        row(u" ) " + item, u")  " + item, true);
    }
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < L9.size(); ++i)
            row(L9[i] + u"m/" + L10[i] + Text(4 - L9[i].size(), u' '), L10[i] + u"m5b/7 ", true);
    }
    for (const Text& root : L3) {
        for (const Text suffix : {u"7+/", u"7/", u"/"})
            for (std::size_t i = 0; i < L4.size(); ++i)
                row(root + suffix + L4[i], root + suffix + L5[i], true);
    }
    for (const Text& root : L6) {
        for (const Text suffix : {u"7+/", u"7/", u"/"})
            for (std::size_t i = 0; i < L5.size(); ++i)
                row(root + suffix + L5[i], root + suffix + L4[i], true);
    }
    for (std::size_t i = 0; i < L7.size(); ++i)
        row(L7[i], L8[i], false);
}

Text normaliseSuffixes(Text text) {
    text += u" \u00A7";
    forEachSuffixRow([&text](const Text& find, const Text& replacement, bool) {
        if (replacement.find(find) == Text::npos)
            replaceAll(text, find, replacement);
    });
    const bool isHalf = text[text.size() - 2] != u' ';
    if (isHalf)
        text.erase(text.size() - 1);
    replaceAll(text, u" \u00A7", u"");
    return text;
}

}  // namespace melvorin::literal
