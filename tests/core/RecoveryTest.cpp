// What a run leaves on disk, and what the next one makes of it.
#include <gtest/gtest.h>

#include <random>

#include "MemoryFiles.h"
#include "app/RunJournal.h"
#include "base/LetterCase.h"

namespace melvorin {
namespace {

std::string hex(std::string_view name) {
    std::string digits;
    for (const char c : name) {
        char unit[8];
        std::snprintf(unit, sizeof unit, "%04x", static_cast<unsigned>(c));
        digits += unit;
    }
    return digits;
}

void expectEqual(const RunState& a, const RunState& b) {
    EXPECT_EQ(a.origin.path, b.origin.path);
    EXPECT_EQ(a.origin.mark, b.origin.mark);
    EXPECT_EQ(a.origin.format, b.origin.format);
    EXPECT_EQ(a.origin.loss, b.origin.loss);
    EXPECT_EQ(a.current, b.current);
    EXPECT_EQ(a.floor, b.floor);
    EXPECT_EQ(a.dirty, b.dirty);
    ASSERT_EQ(a.snapshots.size(), b.snapshots.size());
    for (std::size_t i = 1; i < a.snapshots.size(); ++i) {
        EXPECT_EQ(a.snapshots[i].path, b.snapshots[i].path) << i;
        EXPECT_EQ(a.snapshots[i].caret, b.snapshots[i].caret) << i;
        EXPECT_EQ(a.snapshots[i].background, b.snapshots[i].background) << i;
        EXPECT_EQ(a.snapshots[i].mark, b.snapshots[i].mark) << i;
        EXPECT_EQ(a.snapshots[i].songMemory, b.snapshots[i].songMemory) << i;
    }
}

// A run of random commands, told as Documents tells it.
class RandomRun {
  public:
    explicit RandomRun(unsigned seed) : random_(seed) {
        journal.begin();
        history.record("{\\rtf1 0}", 0);
        history.setFloor();
        keep();
    }
    void step() {
        disk.isFull = false;
        switch (random_() % 8) {
            case 0:
                if (history.canUndo())
                    history.stepBack();
                break;
            case 1:
                if (history.canRedo())
                    history.stepForward();
                break;
            case 2:
                origin.format = {static_cast<TextEncoding>(random_() % 5),
                                 random_() % 2 ? 932U : 0U, static_cast<LineEnd>(random_() % 3),
                                 static_cast<FinalLineEnd>(random_() % 3)};
                origin.loss = random_() % 2 ? u"1 table" : u"";
                origin.path = random_() % 3 == 0 ? Text() : Text(u"C:\\S\u00F6nge\\\xD800 1.mvt");
                origin.mark = origin.path.empty() ? std::nullopt : std::optional(markOf("a file"));
                dirty = false;
                history.setFloor();
                break;
            case 3:
                history.rewriteCurrent("{\\rtf1 again}", 7, std::nullopt, debt());
                break;
            default:
                disk.isFull = random_() % 10 == 0;
                history.record("{\\rtf1 " + std::to_string(random_()) + "}",
                               static_cast<std::int32_t>(random_() % 1000),
                               random_() % 2 ? std::optional(Rgb{1, 2, 250}) : std::nullopt,
                               debt());
                disk.isFull = false;
                dirty = true;
        }
        keep();
    }
    std::string debt() {
        return random_() % 2 ? std::string() : "up sharps " + std::to_string(random_() % 9) + ":1|";
    }
    void keep() { journal.keep(origin, history, dirty); }
    RunState state() const {
        RunState run{origin, {}, history.current(), history.floor(), dirty};
        run.snapshots.emplace_back();
        for (int i = 1; i <= history.count(); ++i)
            run.snapshots.push_back(history.snapshot(i));
        return run;
    }
    const std::string& written() const { return disk.content.at(u"C:\\Temp\\bbj1.tmp"); }

    testing::MemoryFiles disk;
    SnapshotHistory history{disk};
    RunJournal journal{disk};
    DocumentOrigin origin;
    bool dirty = false;

  private:
    std::mt19937 random_;
};

TEST(RunJournal, TellsTheStateOfTheRunAtEveryMoment) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        RandomRun run(seed);
        for (int i = 0; i < 200; ++i) {
            run.step();
            const auto told = replayJournal(run.written(), u"C:\\Temp");
            ASSERT_TRUE(told);
            expectEqual(*told, run.state());
            ASSERT_FALSE(HasFailure()) << seed << "/" << i;
        }
        // A history taken over is told as a whole.
        RunState whole = run.state();
        testing::MemoryFiles other;
        SnapshotHistory history(other);
        RunJournal journal(other);
        journal.begin();
        history.adopt(whole.snapshots, whole.current, whole.floor);
        journal.keepAll(history);
        journal.keep(run.origin, history, run.dirty);
        expectEqual(replayJournal(other.content.at(u"C:\\Temp\\bbj1.tmp"), u"C:\\Temp").value(),
                    whole);
    }
}

TEST(RunJournal, WhateverIsCutOrSpoiledStaysInItsBounds) {
    RandomRun run(3);
    for (int i = 0; i < 60; ++i)
        run.step();
    const std::string whole = run.written();
    std::mt19937 random(9);
    const auto expectSane = [](const std::string& bytes) {
        const auto told = replayJournal(bytes, u"C:\\Temp");
        if (!told)
            return;
        ASSERT_LE(told->current, static_cast<std::int64_t>(told->snapshots.size()) - 1);
        ASSERT_TRUE(told->floor >= 1 && (told->current == 0 || told->floor <= told->current));
        for (const Snapshot& snapshot : told->snapshots)
            ASSERT_TRUE(snapshot.path.empty() ||
                        asciiLowerCase(snapshot.path).starts_with(u"c:\\temp\\bb"));
    };
    for (std::size_t length = 0; length <= whole.size(); ++length)
        expectSane(whole.substr(0, length));
    for (int round = 0; round < 5'000; ++round) {
        std::string spoiled = whole;
        for (std::size_t i = 1 + random() % 4; i > 0; --i)
            spoiled[random() % spoiled.size()] = static_cast<char>(random());
        expectSane(spoiled);
    }
}

TEST(RunJournal, ALineCountsOrDoesNot) {
    const std::string good =
        "melvorin journal 1\nsnapshot 1 " + hex("bb1A.tmp") + " 4 - 5 6\nstate 1 1 1 1\n";
    const auto before = replayJournal(good, u"C:\\Temp");
    ASSERT_TRUE(before);
    EXPECT_EQ(before->snapshots[1].path, u"C:\\Temp\\bb1A.tmp");
    const std::string lines[] = {
        "state 1 1 1 1",
        "state 2 1 1 1\n",
        "state 1 1 2 1\n",
        "state 1 40000 1 1\n",
        "state 1 1 1 2\n",
        "state 1 1 1 1 1\n",
        "state -1 1 1 1\n",
        "state one 1 1 1\n",
        "state 1  1 1 1\n",
        "snapshot 1 - 0 - 5\n",
        "snapshot 0 - 0 - 5 6\n",
        "snapshot 40000 - 0 - 5 6\n",
        "snapshot 1 00g0 0 - 5 6\n",
        "snapshot 1 00 0 - 5 6\n",
        "snapshot 1 - 0 16777216 5 6\n",
        "snapshot 1 - -3 - 5 6\n",
        "document 1 2\n",
        "document 1 2 zzzz\n",
        "song 2 up sharps 4:1|\n",
        "song 0 x\n",
        "other 1\n",
        "\n",
        std::string("\0\0\0\0\n", 5),
    };
    for (const std::string& line : lines) {
        SCOPED_TRACE(line);
        expectEqual(replayJournal(good + line, u"C:\\Temp").value(), *before);
    }
    // Only what the system names like a snapshot is one.
    for (const char* const name : {"..\\bb1.tmp", "bb.tmp", "bbj1.tmp", "bb1.txt", "cc1.tmp",
                                   "C:\\bb1.tmp", "bb1.tmp\\x", "bb1/a.tmp", "bb1.tmp:a.tmp"}) {
        const auto told =
            replayJournal(good + "snapshot 1 " + hex(name) + " 0 - 5 6\n", u"C:\\Temp");
        EXPECT_EQ(told->snapshots[1].path, u"") << name;
    }
    for (const char* const bytes : {"", "melvorin journal 2\n", "melvorin journal 1", "MZ"})
        EXPECT_FALSE(replayJournal(bytes, u"C:\\Temp")) << bytes;
}

// A run with so many states after the first, that ends without closing.
void leaveRun(testing::MemoryFiles& disk, TextView path, int changes, int undone) {
    SnapshotHistory history(disk);
    RunJournal journal(disk);
    journal.begin();
    for (int i = 0; i <= changes; ++i) {
        history.record("{\\rtf1 " + toUtf8(path) + std::to_string(i) + "}", i);
        journal.keep({Text(path), markOf("x"), {}, {}}, history, i > 0);
    }
    for (int i = 0; i < undone; ++i)
        history.stepBack();
    journal.keep({Text(path), markOf("x"), {}, {}}, history, changes > 0);
}

TEST(Remains, AreThoseOfRunsThatHadUnsavedChanges) {
    testing::MemoryFiles disk;
    leaveRun(disk, u"first", 3, 1);
    leaveRun(disk, u"untouched", 0, 0);
    leaveRun(disk, u"second", 2, 0);
    disk.content[u"C:\\Temp\\bbjffff.tmp"] = "no journal";
    disk.content[u"C:\\Temp\\bb99.tmp"] = "somebody else's";
    SnapshotHistory livingHistory(disk);
    RunJournal livingJournal(disk);
    livingJournal.begin();
    livingHistory.record("{\\rtf1 alive}", 0);
    livingJournal.keep({}, livingHistory, true);

    std::vector<Remains> remains = remainsOf(disk);
    ASSERT_EQ(remains.size(), 2U);
    EXPECT_EQ(remains[0].state.origin.path, u"second");
    EXPECT_EQ(remains[1].state.origin.path, u"first");
    EXPECT_EQ(remains[1].state.current, 3);
    EXPECT_EQ(remains[1].state.snapshots.size(), 5U);
    EXPECT_TRUE(remains[1].isLast);
    // Held: a second program finds nothing.
    EXPECT_TRUE(remainsOf(disk).empty());
    for (Remains& run : remains)
        discard(disk, std::move(run));
    remains.clear();
    livingJournal.end();
    livingHistory.deleteAll();
    EXPECT_EQ(disk.content.size(), 1U);
    EXPECT_TRUE(disk.content.contains(u"C:\\Temp\\bb99.tmp"));
}

TEST(Remains, LeadBackToTheLastStateThatIsWhole) {
    struct Case {
        int undone;
        std::vector<int> spoiled;  // snapshots
        int current;               // 0: none can be read
        int count;
        bool isLast;
    };
    // A first state and four changes.
    const Case cases[] = {
        {0, {}, 5, 5, true},           {0, {5}, 4, 5, false},
        {0, {5, 4}, 3, 5, false},      {2, {5}, 3, 4, true},
        {2, {4, 5}, 3, 3, true},       {2, {4}, 3, 5, true},
        {0, {1, 2, 3, 4}, 5, 5, true}, {0, {1, 2, 3, 4, 5}, 0, 0, false},
    };
    for (const Case& c : cases) {
        for (const bool isGone : {false, true}) {
            testing::MemoryFiles disk;
            leaveRun(disk, u"a", 4, c.undone);
            for (const int index : c.spoiled) {
                // The journal has the first name.
                char name[16];
                std::snprintf(name, sizeof name, "bb%x.tmp", static_cast<unsigned>(index) + 1);
                const Text path = u"C:\\Temp\\" + fromUtf8(name);
                ASSERT_TRUE(disk.content.contains(path));
                if (isGone)
                    disk.content.erase(path);
                else
                    disk.content[path].back() = '\0';
            }
            std::vector<Remains> remains = remainsOf(disk);
            ASSERT_EQ(remains.size(), 1U);
            if (c.current == 0) {
                EXPECT_EQ(remains[0].state.current, 0);
                discard(disk, std::move(remains[0]));
                EXPECT_EQ(disk.content.size(), isGone ? 0U : c.spoiled.size())
                    << "what is another's stays";
                continue;
            }
            EXPECT_EQ(remains[0].state.current, c.current);
            EXPECT_EQ(remains[0].state.snapshots.size(), static_cast<std::size_t>(c.count) + 1);
            EXPECT_EQ(remains[0].isLast, c.isLast);
        }
    }
}

TEST(FileMark, DiffersWithEveryByte) {
    std::string bytes = "{\\rtf1 some text that is longer than a word}";
    const FileMark mark = markOf(bytes);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string other = bytes;
        other[i] ^= 1;
        EXPECT_NE(markOf(other), mark) << i;
        other = bytes;
        if (i + 1 < other.size() && other[i] != other[i + 1]) {
            std::swap(other[i], other[i + 1]);
            EXPECT_NE(markOf(other), mark) << i;
        }
    }
    EXPECT_EQ(markOf(bytes), mark);
    EXPECT_NE(markOf(""), markOf(std::string_view("\0", 1)));
}

}  // namespace
}  // namespace melvorin
