// Keys and commands as the help and the README tell them, against the tables that the program goes
// by.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "app/CommandMap.h"
#include "chords/CreatorKeys.h"
#include "editing/ChordMoveKeys.h"
#include "present/StageKeys.h"

namespace melvorin {
namespace {

using Names = std::set<std::string>;

std::string contentOf(const std::string& path) {
    std::ifstream file(MELVORIN_SOURCE_DIR "/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Names listed(const std::string& text, const std::string& separator) {
    Names names;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        names.insert(text.substr(begin, end - begin));
        begin = end + separator.size();
    }
    return names;
}

// The cells of the rows of every table on a page, headings left out.
std::vector<std::vector<std::string>> rowsOf(const std::string& page) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(page);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.starts_with("| ") || line.starts_with("| ---") ||
            line.starts_with("| Command |") || line.starts_with("| Key |"))
            continue;
        std::vector<std::string> cells;
        for (std::size_t begin = 2; begin < line.size();) {
            const std::size_t end = std::min(line.find('|', begin), line.size());
            std::string cell = line.substr(begin, end - begin);
            cell.erase(cell.find_last_not_of(' ') + 1);
            cells.push_back(cell);
            begin = end + 2;
        }
        rows.push_back(cells);
    }
    return rows;
}

// A command by the name that people know it by.
std::string plainName(const CommandRow& row) {
    std::string name = toUtf8(row.name.empty() ? row.menu.caption : row.name);
    name.erase(0, name.find_first_not_of("> "));
    return name;
}

Names keysOf(const CommandRow& row) {
    Names names;
    for (const CommandKey& key : row.keys)
        names.insert(toUtf8(nameOf(key.stroke)));
    names.erase("");
    return names;
}

template <typename Id, std::size_t Size>
Names keysOf(const KeyRow<Id> (&table)[Size]) {
    Names names;
    for (const KeyRow<Id>& row : table)
        names.insert(toUtf8(nameOf(row.stroke)));
    return names;
}

TEST(Keys, AreNamedAsPeopleReadThem) {
    const std::pair<KeyStroke, TextView> cases[] = {
        {ctrl(u'N'), u"Ctrl+N"},
        {ctrl(u'0'), u"Ctrl+0"},
        {plainKey(keys::kF1 + 11), u"F12"},
        {shift(keys::kInsert), u"Shift+Ins"},
        {alt(keys::kF4), u"Alt+F4"},
        {KeyStroke{keys::kPageDown, true, true, true}, u"Ctrl+Alt+Shift+Page Down"},
        {ctrl(keys::kPadPlus), u"Ctrl+Plus"},
        {KeyStroke{}, u""},
        {ctrl(0x07), u""},
    };
    for (const auto& [stroke, name] : cases)
        EXPECT_EQ(toUtf8(nameOf(stroke)), toUtf8(name));
}

TEST(Keys, RunWhatTheirTableSays) {
    EXPECT_EQ(commandInText(ctrl(u'V')), Command::mnuEditPaste);
    EXPECT_EQ(commandInText(shift(keys::kInsert)), Command::mnuEditPaste);
    EXPECT_EQ(commandInText(ctrl(keys::kInsert)), Command::mnuEditCopy);
    EXPECT_EQ(commandInText(shift(keys::kDelete)), Command::mnuEditCut);
    EXPECT_EQ(commandInText(ctrl(u'A')), Command::mnuSelectAll);
    EXPECT_EQ(commandInText(ctrl(u'F')), Command::mnuFind);
    for (const KeyStroke& other : {ctrl(u'N'), ctrl(u'C'), plainKey(u'V'), plainKey(0),
                                   KeyStroke{u'V', true, true}, plainKey(keys::kDelete)})
        EXPECT_EQ(commandInText(other), std::nullopt) << toUtf8(nameOf(other));

    EXPECT_TRUE(pastes(ctrl(u'V')) && pastes(shift(keys::kInsert)));
    EXPECT_TRUE(pastes({u'V', true, false, true}));
    EXPECT_FALSE(pastes(plainKey(u'V')) || pastes({u'V', true, true}) ||
                 pastes(ctrl(keys::kInsert)) || pastes({keys::kInsert, true, false, true}));

    EXPECT_EQ(runWithoutShift(kViewKeys, {keys::kPlus, true, false, true}), ViewKey::Larger);
    EXPECT_EQ(runWithoutShift(kViewKeys, plainKey(u'Z')), std::nullopt);
    EXPECT_EQ(runWithoutShift(kRunKeys, plainKey(keys::kF3)), RunKey::FiveLines);
    EXPECT_EQ(runWithoutShift(kPedalKeys, plainKey(keys::kLeft)), PedalKey::PageBack);
    EXPECT_EQ(runWithoutShift(kLineKeys, plainKey(u'T')), LineVerdict::Tablature);
    EXPECT_EQ(runWithoutShift(kLineKeys, ctrl(u'T')), std::nullopt);
}

// Each key does one thing in one place.
TEST(Keys, AreGivenOnce) {
    Names seen;
    for (const CommandRow& row : commands()) {
        for (const std::string& key : keysOf(row))
            EXPECT_TRUE(seen.insert(key).second) << key;
    }
}

TEST(Keys, TheHelpTellsThemAll) {
    std::map<std::string, const CommandRow*> byName;
    for (const CommandRow& row : commands()) {
        const bool isListed =
            row.menu.kind == MenuKind::Entry
                ? row.menu.parent != Command::mnuRecent || row.id == Command::mnuReset
                : !row.name.empty();
        if (isListed)
            byName[plainName(row)] = &row;
    }
    ASSERT_GT(byName.size(), 35U);

    std::map<std::string, Names> byPlace;
    for (const std::vector<std::string>& row : rowsOf(contentOf("data/help/commands.md"))) {
        ASSERT_GE(row.size(), 2U) << row[0];
        std::string cell = row[0];
        if (!byName.contains(cell)) {  // "Key: Go Down a Half Step, ...", "... (toolbar)"
            cell = cell.substr(0, cell.find(" (toolbar)"));
            const std::size_t colon = cell.find(": ");
            cell.erase(0, colon == std::string::npos ? 0 : colon + 2);
        }
        Names told = listed(row[1], ", ");
        const Names commandNames = byName.contains(cell) ? Names{cell} : listed(cell, ", ");
        if (!byName.contains(*commandNames.begin())) {
            byPlace[row[1]].merge(listed(row[0], ", "));
            continue;
        }
        Names known;
        for (const std::string& name : commandNames) {
            ASSERT_TRUE(byName.contains(name)) << name;
            known.merge(keysOf(*byName[name]));
            byName.erase(name);
        }
        if (row.size() > 2) {
            EXPECT_EQ(told, known) << cell;
        } else {
            EXPECT_EQ(known, Names{}) << cell;
        }
    }
    for (const auto& [name, row] : byName)
        ADD_FAILURE() << "the help does not tell of \"" << name << '"';

    Names inView = keysOf(kViewKeys);
    inView.merge(keysOf(kShiftedViewKeys));
    EXPECT_EQ(byPlace["full screen"], inView);
    Names onTheBar = keysOf(kRunKeys);
    onTheBar.merge(keysOf(kPedalKeys));
    EXPECT_EQ(byPlace["bar of a run"], onTheBar);
    EXPECT_EQ(byPlace["Create Chord Notation"], keysOf(kLineKeys));
    EXPECT_EQ(byPlace["chord"], keysOf(kChordMoveKeys));
    Names onVisits = byPlace["words and their chords"];
    onVisits.merge(Names(byPlace["chord line"]));
    EXPECT_EQ(onVisits, keysOf(kChordVisitKeys));
    Names accessKeys;
    for (const CommandRow& row : commands()) {
        const std::size_t mark = row.menu.caption.find(u'&');
        if (mark != TextView::npos)
            accessKeys.insert("Alt+" +
                              std::string(1, static_cast<char>(std::toupper(
                                                 static_cast<int>(row.menu.caption[mark + 1])))));
    }
    EXPECT_EQ(byPlace["main window"], accessKeys);
}

TEST(Keys, TheReadmeTellsThoseOfTheMainWindow) {
    const std::string readme = contentOf("README.md");
    const std::size_t begin = readme.find("\n## Keys\n");
    ASSERT_NE(begin, std::string::npos);
    const std::string section = readme.substr(begin, readme.find("\n## ", begin + 4) - begin);
    const auto isOfName = [](char c) { return c == '+' || (std::isalnum(c) != 0); };
    Names told;
    for (auto at = section.begin(); at != section.end();) {
        const auto word = std::find_if(at, section.end(), isOfName);
        at = std::find_if_not(word, section.end(), isOfName);
        const std::string name(word, at);
        if (name.starts_with("Ctrl+") || name.starts_with("Shift+") ||
            (name.size() > 1 && name[0] == 'F' && std::isdigit(name[1]) != 0))
            told.insert(name);
    }
    Names known;
    for (const CommandRow& row : commands()) {
        for (const std::string& key : keysOf(row)) {
            if (key != "Alt+F4" && key != "Del")  // as in every program
                known.insert(key);
        }
    }
    for (const std::string& key : keysOf(kChordVisitKeys)) {
        if (key.find('+') != std::string::npos)
            known.insert(key);
    }
    EXPECT_EQ(told, known);
}

}  // namespace
}  // namespace melvorin
