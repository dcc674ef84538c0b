// Find and replace, letter case and the list of recent files: rules that need no window.
#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>
#include <map>
#include <random>

#include "RtfColours.h"
#include "StandIns.h"
#include "app/RecentFiles.h"
#include "base/LetterCase.h"
#include "base/TabExpansion.h"
#include "find/ReplacePlan.h"
#include "find/TextSearch.h"

namespace melvorin {
namespace {

// The rule as it is told: a plain string, searched again from the next start.
std::pair<Text, int> replacedLiterally(Text text, TextView what, TextView with) {
    std::size_t nextStart = 0;
    int count = 0;
    for (std::size_t at; (at = text.find(what, nextStart)) != Text::npos; ++count) {
        text.replace(at, what.size(), with);
        nextStart = at + (with.find(what) == TextView::npos ? what.size() : with.size());
    }
    return {text, count};
}

TEST(ReplaceLoop, FollowsTheNextStartRule) {
    std::mt19937 random(5);
    const auto word = [&](std::size_t least, std::size_t most) {
        Text text(std::uniform_int_distribution<std::size_t>(least, most)(random), u'a');
        for (char16_t& c : text)
            c = u"ab\r"[random() % 8 == 0 ? 2 : random() % 2];
        return text;
    };
    for (int round = 0; round < 5'000; ++round) {
        const Text text = word(0, 40);
        const Text what = word(1, 3);
        const Text with = word(0, 4);
        GapText target(text);
        const int count = replaceAll(target, what, with, {true, false}, [] { return true; }).count;
        EXPECT_EQ(std::pair(target.text(), count), replacedLiterally(text, what, with))
            << toUtf8(text) << "/" << toUtf8(what) << "/" << toUtf8(with);
    }
}

TEST(ReplaceLoop, OptionsAndStopping) {
    struct Case {
        TextView text, what, with;
        FindOptions options;
        TextView result;
    };
    const Case cases[] = {
        {u"C Cm C# (C) 3C", u"C", u"D", {true, true}, u"D Cm D# (D) 3C"},
        {u"am AM aM", u"AM", u"x", {false, false}, u"x x x"},
        {u"am AM aM", u"AM", u"x", {true, false}, u"am x aM"},
        {u"ÉTÉ été", u"été", u"eau", {false, true}, u"eau eau"},
        {u"aaa", u"a", u"b", {}, u"bbb"},
        {u"aaa", u"A", u"aa", {}, u"aaaaaa"},
        {u"aé a", u"a", u"b", {false, true}, u"aé b"},
        {u"short", u"longer than the text", u"", {}, u"short"},
    };
    for (const Case& c : cases) {
        GapText target(c.text);
        replaceAll(target, c.what, c.with, c.options, [] { return true; });
        EXPECT_EQ(toUtf8(target.text()), toUtf8(c.result));
    }
    GapText target(u"aaaa");
    int asked = 0;
    const Replaced done = replaceAll(target, u"a", u"b", {}, [&] { return ++asked < 3; });
    EXPECT_EQ(done.count, 2);
    EXPECT_EQ(done.nextStart, 2);
    EXPECT_EQ(toUtf8(target.text()), "bbaa");
    EXPECT_FALSE(isSearchText(u"   "));
    EXPECT_TRUE(isSearchText(u"  a"));
}

// Every character of a generated song has a colour of three; a replacement has that of the first
// character it replaces.
struct ColouredText : FindTarget {
    Text text;
    std::vector<int> colours;

    explicit ColouredText(TextView plain) : text(plain) {
        for (std::size_t i = 0; i < text.size(); ++i)
            colours.push_back(static_cast<int>((i * 7 + i / 5) % 3));
    }
    std::string rtf() const {
        std::string source =
            "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}"
            "{\\colortbl ;\\red10\\green0\\blue0;\\red20\\green0\\blue0;}\\pard\\f0 ";
        for (std::size_t i = 0; i < text.size(); ++i) {
            source += "\\cf" + std::to_string(colours[i]);
            source += text[i] == u'\r' ? std::string("\\par ") : " " + toUtf8(text.substr(i, 1));
        }
        return source + "}";
    }
    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override {
        const auto start = findText(text, what, static_cast<std::size_t>(from), options);
        if (!start)
            return std::nullopt;
        const auto begin = static_cast<std::int32_t>(*start);
        return Selection{begin, begin + static_cast<std::int32_t>(what.size())};
    }
    void replace(Selection match, TextView with) override {
        const auto begin = static_cast<std::size_t>(match.begin);
        const auto size = static_cast<std::size_t>(match.end - match.begin);
        const int colour = colours[begin];
        text.replace(begin, size, with);
        const auto at = colours.begin() + match.begin;
        colours.insert(colours.erase(at, at + (match.end - match.begin)), with.size(), colour);
    }
};

TEST(ReplacePlan, ChangesTheRichTextAsTheLoopDoes) {
    std::mt19937 random(7);
    const auto word = [&](std::size_t least, std::size_t most, TextView letters) {
        Text text(std::uniform_int_distribution<std::size_t>(least, most)(random), u'a');
        for (char16_t& c : text)
            c = letters[random() % letters.size()];
        return text;
    };
    int replaced = 0;
    for (int round = 0; round < 5'000; ++round) {
        const Text text = word(1, 40, u"aaabbb\r") + u"!";
        const Text what = word(1, 3, u"ab");
        const Text with = word(0, 4, u"abc");
        const FindOptions options{random() % 2 == 0, random() % 4 == 0};
        SCOPED_TRACE(toUtf8(text) + "/" + toUtf8(what) + "/" + toUtf8(with));
        int asked = 0;
        const int limit = random() % 4 == 0 ? 3 : 1000;
        const auto mayGoOn = [&] { return asked++ < limit; };

        ColouredText loop(text);
        const std::string before = loop.rtf();
        const Replaced done = replaceAll(loop, what, with, options, mayGoOn);
        asked = 0;
        ReplacePlan plan(text);
        const Replaced planned = replaceAll(plan, what, with, options, mayGoOn);
        ASSERT_EQ(planned.count, done.count);
        EXPECT_EQ(planned.nextStart, done.nextStart);
        ASSERT_EQ(plan.text(), loop.text);
        const auto map = RtfMap::parse(before);
        ASSERT_TRUE(map && map->text() == text);
        const std::string rewritten = map->rewrite(plan.parts(), {});
        const auto after = RtfMap::parse(rewritten);
        ASSERT_TRUE(after);
        ASSERT_EQ(after->text(), loop.text);
        const auto colours = coloursOf(rewritten);
        ASSERT_EQ(colours.size(), loop.text.size());
        for (std::size_t i = 0; i < loop.text.size(); ++i) {
            const std::optional<Rgb> colour = colours[i];
            ASSERT_EQ(colour ? colour->red / 10 : 0, loop.colours[i]) << i;
        }
        replaced += done.count;
    }
    EXPECT_GT(replaced, 10'000);
}

// Edits made one by one from the last to the first, what comes in taking the format of the letter
// in front of it or, at the start of a line, behind it.
TEST(ReplacePlan, PartsChangeTheRichTextAsTheEditsDo) {
    std::mt19937 random(11);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    int made = 0;
    for (int round = 0; round < 5'000; ++round) {
        Text text;
        for (std::size_t i = below(30) + 2; i > 0; --i)
            text += u"ab \r"[below(9) == 0 ? 3 : below(3)];
        text += u"!";
        std::vector<FollowEdit> edits;
        for (std::size_t at = below(4); at + 1 < text.size(); at += below(5)) {
            std::size_t length = below(3);
            while (at + length >= text.size() || text.substr(at, length).find(u'\r') != Text::npos)
                --length;
            edits.push_back({at, length, Text(below(3) + (length == 0 ? 1 : 0), u'x')});
            at += length + (length == 0 ? 1 : 0);
        }
        ColouredText loop(text);
        const auto map = RtfMap::parse(loop.rtf());
        ASSERT_TRUE(map);
        const auto parts = partsOf(text, edits, [](std::size_t) { return false; });
        // An empty line has no letter whose format could be taken.
        if (!parts)
            continue;
        ++made;
        for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
            const std::size_t at = edit->position;
            const bool isInLine = at > 0 && loop.text[at - 1] != u'\r';
            const int colour = loop.colours[edit->length == 0 && isInLine ? at - 1 : at];
            loop.text.replace(at, edit->length, edit->text);
            const auto place = loop.colours.begin() + static_cast<std::ptrdiff_t>(at);
            loop.colours.insert(
                loop.colours.erase(place, place + static_cast<std::ptrdiff_t>(edit->length)),
                edit->text.size(), colour);
        }
        const std::string rewritten = map->rewrite(*parts, {});
        const auto after = RtfMap::parse(rewritten);
        ASSERT_TRUE(after);
        ASSERT_EQ(toUtf8(after->text()), toUtf8(loop.text));
        const auto colours = coloursOf(rewritten);
        for (std::size_t i = 0; i < loop.text.size(); ++i) {
            const std::optional<Rgb> colour = colours[i];
            ASSERT_EQ(colour ? colour->red / 10 : 0, loop.colours[i]) << i << toUtf8(text);
        }
    }
    EXPECT_GT(made, 2'000);
    EXPECT_FALSE(partsOf(u"ab", {{1, 0, u" "}}, [](std::size_t) { return true; })) << "pictures";
    EXPECT_FALSE(
        partsOf(u"ab", {{1, 0, u"a", Origin::Document, 0}}, [](std::size_t) { return false; }));
}

// Against the C library's own tables, for every character that is covered.
TEST(LetterCase, AgreesWithTheUnicodeData) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    int letters = 0;
    for (char16_t c = 0; c < 0xFFFF; ++c) {
        const char16_t upper = unicodeUpperCase(c);
        const char16_t lower = unicodeLowerCase(c);
        if (upper != c) {
            EXPECT_EQ(upper, std::towupper(c)) << std::hex << int{c};
        }
        if (lower != c) {
            EXPECT_EQ(lower, std::towlower(c)) << std::hex << int{c};
        }
        letters += (upper != c) + (lower != c);
    }
    EXPECT_GT(letters, 1'000);
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(toUtf8(unicodeUpperCase(u"söße ÿ ñandú ř σς я ı 12")), "SÖßE Ÿ ÑANDÚ Ř ΣΣ Я ı 12");
    EXPECT_EQ(toUtf8(unicodeLowerCase(u"ÀÈ ŸŘ ΣЯ ẞ İ")), "àè ÿř σя ẞ İ");
    EXPECT_EQ(toUtf8(asciiLowerCase(u"ÉTÉ @[ AZ.RTF Я")), "ÉtÉ @[ az.rtf Я");
}

TEST(TabExpander, PartsGiveWhatTheWholeGives) {
    const Text text = u"ab\tc\r\n\tx\ty\rabcdefgh\t\n\t\t\vz\t.";
    for (std::size_t size = 1; size < text.size(); ++size) {
        Text expanded;
        TabExpander expander(3);
        for (std::size_t at = 0; at < text.size(); at += size)
            expander.append(TextView(text).substr(at, size), expanded);
        EXPECT_EQ(expanded, expandTabs(text, 3));
    }
}

// ---- Recent files -----------------------------------------------------------------------------

// Where the list is kept.
Text& stored(testing::ScriptedProfiles& profiles, const std::string& key) {
    return profiles.values[{u"Melvorin.INI", u"Recent Files", fromUtf8(key)}];
}

// "(Empty)" or not, the visible paths by slot, and "+" where the list can be cleaned.
std::string shownMenu(const RecentMenu& menu) {
    std::string line = menu.empty ? "(Empty)" : "";
    for (std::size_t slot = 0; slot < menu.entries.size(); ++slot) {
        if (menu.entries[slot].visible)
            line += " " + std::to_string(slot + 1) + toUtf8(menu.entries[slot].caption);
    }
    return line + (menu.clean ? " +" : "");
}

TEST(RecentFiles, AddsAtTheTopAndKeepsEight) {
    testing::ScriptedProfiles profiles;
    std::vector<std::string> published;
    RecentFiles recent(profiles,
                       [&](const RecentMenu& menu) { published.push_back(shownMenu(menu)); });
    recent.begin();
    for (const TextView path : {u"a", u"b", u"A", u"b", u"c", u"d", u"e", u"f", u"g", u"h"})
        recent.add(path);
    const std::vector<std::string> expected = {"(Empty)",
                                               " 1a +",
                                               " 1b 2a +",
                                               " 1A 2b 3a +",
                                               " 1A 2b 3a +",  // listed: only read anew
                                               " 1c 2A 3b 4a +",
                                               " 1d 2c 3A 4b 5a +",
                                               " 1e 2d 3c 4A 5b 6a +",
                                               " 1f 2e 3d 4c 5A 6b 7a +",
                                               " 1g 2f 3e 4d 5c 6A 7b 8a +",
                                               " 1h 2g 3f 4e 5d 6c 7A 8b +"};
    EXPECT_EQ(published, expected);
    EXPECT_TRUE(recent.isListed(u"A"));
    EXPECT_FALSE(recent.isListed(u"a"));

    profiles.writable = false;
    EXPECT_FALSE(recent.clean());
    EXPECT_EQ(shownMenu(recent.menu()), expected.back());
    profiles.writable = true;
    EXPECT_TRUE(recent.clean());
    EXPECT_EQ(shownMenu(recent.menu()), "(Empty)");
    for (int slot = 1; slot <= 8; ++slot)
        EXPECT_EQ(stored(profiles, "RecentFile" + std::to_string(slot)), u"Not Used");
}

// Lists that something else has written.
TEST(RecentFiles, ReadsWhateverTheFileHolds) {
    struct Case {
        std::map<std::string, std::string> values;
        std::string atStart, afterX;
    };
    const std::string longPath(300, 'p');
    const Case cases[] = {
        {{{"RecentFile1", "A"}, {"RecentFile3", "B"}}, " 1A 3B +", " 1X 2A 3B 4B +"},
        {{{"RecentFile2", "B"}}, "(Empty) 2B", " 1X 2B 3B +"},
        {{{"RecentFile1", "Not Used but odd"}, {"RecentFile2", ""}}, "(Empty)", " 1X +"},
        {{{"RecentFile1", longPath}},
         " 1" + std::string(254, 'p') + " +",
         " 1X 2" + std::string(254, 'p') + " +"},
    };
    for (const Case& c : cases) {
        testing::ScriptedProfiles profiles;
        for (const auto& [key, value] : c.values)
            stored(profiles, key) = fromUtf8(value);
        RecentFiles recent(profiles, [](const RecentMenu&) {});
        recent.begin();
        EXPECT_EQ(shownMenu(recent.menu()), c.atStart);
        recent.add(u"X");
        EXPECT_EQ(shownMenu(recent.menu()), c.afterX);
    }
}

}  // namespace
}  // namespace melvorin
