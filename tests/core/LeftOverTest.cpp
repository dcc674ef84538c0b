// What a key change leaves over, how it is moved after all, and what is kept of it.
#include "chords/LeftOver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/DiagramKey.h"
#include "chords/KeyDebt.h"
#include "chords/KeyStatement.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

const KeyChange kUp(Direction::Up, Spelling::Sharps);

// ---- Songs as people write them ----------------------------------------------------------------

struct MarkedSong {
    std::string name;
    Text text;
    std::map<char, std::vector<std::size_t>> lines;  // by their mark
    std::map<std::size_t, Text> moved;
    bool isGerman = false;
    bool misreads = false;
};

std::vector<MarkedSong> markedSongs() {
    std::ifstream file(MELVORIN_SOURCE_DIR "/tests/core/left-over.txt", std::ios::binary);
    std::vector<MarkedSong> songs;
    std::size_t number = 0;
    for (std::string bytes; std::getline(file, bytes);) {
        if (bytes.empty() || bytes[0] == '#')
            continue;
        Text line = fromUtf8(bytes).substr(1);
        std::replace(line.begin(), line.end(), u'~', u'\t');
        std::replace(line.begin(), line.end(), u'_', u'\u00A0');
        if (bytes[0] == '=') {
            songs.push_back({bytes.substr(3), {}, {}, {}, false, false});
            number = 0;
        } else if (bytes[0] == 'H') {
            songs.back().isGerman = true;
        } else if (bytes[0] == 'B') {
            songs.back().misreads = true;
        } else if (bytes[0] == '>') {
            songs.back().moved[number - 1] = line;
        } else {
            songs.back().lines[bytes[0]].push_back(number++);
            songs.back().text.append(line).append(u"\r");
        }
    }
    return songs;
}

TEST(LeftOver, IsNamedInSongsOfManyNotations) {
    const std::vector<MarkedSong> songs = markedSongs();
    EXPECT_GE(songs.size(), 60U);
    for (MarkedSong song : songs) {
        SCOPED_TRACE(song.name);
        const std::vector<TextView> lines = splitLines(song.text);
        const LeftOver found = findLeftOver(song.text);
        std::vector<std::size_t> left;
        for (const LeftOverLine& line : found.lines) {
            left.push_back(line.number);
            if (song.moved.count(line.number) != 0) {
                EXPECT_EQ(toUtf8(trimmedRight(moveLeftOver(lines[line.number], line, kUp).line)),
                          toUtf8(song.moved[line.number]));
            }
        }
        EXPECT_EQ(left, song.lines['L']);
        EXPECT_EQ(found.changedWords, song.lines['x']);
        EXPECT_EQ(found.hasGermanNames, song.isGerman);
        EXPECT_EQ(found.misreadsNames, song.misreads);
        std::vector<std::size_t> keys;
        for (const KeyLine& key : found.keyLines)
            keys.push_back(key.number);
        EXPECT_EQ(keys, song.lines['k']);
        for (const std::size_t number : song.lines['m'])
            EXPECT_TRUE(IsChordLine(lines[number])) << toUtf8(lines[number]);
    }
}

// A picture is no letter, wherever it stands: here every "d", "z" and "#".
TEST(LeftOver, LeavesPicturesOut) {
    const struct {
        TextView line;
        std::size_t lines;  // left over
        TextView moved;
    } cases[] = {
        {u"Cmaj7   d  G", 1, u"C#maj7  d  G#"}, {u"Cmaj7d  G", 1, u"C#maj7d G#"},
        {u"C#  G2 d", 1, u"C## G#2 d"},  // a sharp that is a picture
        {u"zz  C  dd", 1, u"zz  C# dd"},        {u"la d la", 0, u""},
    };
    for (const auto& c : cases) {
        std::vector<ColumnRange> pictures;
        for (std::size_t i = 0; i < c.line.size(); ++i) {
            if (TextView(u"dz#").find(c.line[i]) != TextView::npos)
                pictures.push_back({i, 1});
        }
        const LeftOver found = findLeftOver(c.line, pictures);
        ASSERT_EQ(found.lines.size(), c.lines) << toUtf8(c.line);
        if (c.lines > 0) {
            const MovedLine moved = moveLeftOver(c.line, found.lines[0], kUp, pictures);
            EXPECT_EQ(toUtf8(trimmedRight(moved.line)), toUtf8(c.moved));
        }
    }
    EXPECT_EQ(moveLeftOver(u"C\tG\t", {0, {{0, 1}, {2, 1}, {9, 1}, {3, 7}}, false}, kUp,
                           std::vector<ColumnRange>{{1, 1}, {3, 1}})
                  .line,
              u"C#\tG#\t");
}

// ---- Invented lines ---------------------------------------------------------------------------

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t count) {
    return random() % count;
}

template <std::size_t count>
TextView oneOf(const TextView (&texts)[count], Random& random) {
    return texts[below(random, count)];
}

// Half steps above C, told by a list of its own.
int pitchOf(TextView note) {
    int pitch = std::map<char16_t, int>{{u'C', 0}, {u'D', 2}, {u'E', 4}, {u'F', 5},
                                        {u'G', 7}, {u'A', 9}, {u'B', 11}}[note[0]];
    for (const char16_t c : note.substr(1))
        pitch += c == u'#' ? 1 : -1;
    return (pitch + 12) % 12;
}

constexpr TextView kNames[] = {u"C",  u"C#", u"Db", u"D", u"Eb", u"E", u"F",
                               u"F#", u"G",  u"Ab", u"A", u"Bb", u"B"};

struct InventedLine {
    Text text;
    std::vector<int> pitches;
};

// Chords and what stands between them. At least `room` blanks follow each run.
InventedLine inventedLine(Random& random, std::size_t room) {
    static constexpr TextView kSuffixes[] = {u"maj7", u"m7b5", u"sus2", u"-7", u"2",
                                             u"",     u"m",    u"7alt", u"7",  u"add9"};
    static constexpr TextView kOthers[] = {u"|", u".", u"N.C.", u"x2", u"%", u"||:", u"-"};
    static constexpr TextView kLabels[] = {u"Intro: ", u"Refrain:", u"Припев: ", u"", u"", u"\t"};
    InventedLine line;
    line.text = oneOf(kLabels, random);
    for (std::size_t i = 2 + below(random, 4); i > 0; --i) {
        const bool inChain = below(random, 5) == 0;
        for (int link = inChain ? 2 : 1; link > 0; --link) {
            if (!line.text.empty() && TextView(u" \t\u00A0:").find(line.text.back()) == Text::npos)
                line.text += below(random, 2) == 0 ? u'|' : u',';
            const TextView root = oneOf(kNames, random);
            const TextView suffix = oneOf(kSuffixes, random);
            // A dash parts a chain, and chords that cannot be read make none.
            const bool odd = suffix == u"-7" || suffix == u"7alt";
            line.text.append(root).append(odd && inChain ? u"m7" : suffix);
            line.pitches.push_back(pitchOf(root));
            if (below(random, 4) == 0) {
                const TextView bass = oneOf(kNames, random);
                line.text.append(u"/").append(bass);
                line.pitches.push_back(pitchOf(bass));
            }
        }
        line.text.append(room + below(random, 3), below(random, 6) == 0 ? u'\u00A0' : u' ');
        if (below(random, 4) == 0)
            line.text.append(oneOf(kOthers, random)).append(room, u' ');
        line.text.append(below(random, 8) == 0 ? u"\t" : u"");
    }
    line.text.append(u"Gmaj7");  // so that no line is one of nothing but chords
    line.pitches.push_back(7);
    return line;
}

std::vector<int> pitchesIn(TextView line, const LeftOverLine& found) {
    std::vector<int> pitches;
    for (const ColumnRange& note : found.notes)
        pitches.push_back(pitchOf(line.substr(note.column, note.length)));
    return pitches;
}

// Where each run begins, and all that is neither note nor blank.
std::pair<std::vector<std::size_t>, Text> frameOf(TextView line, const LeftOverLine& found) {
    std::pair<std::vector<std::size_t>, Text> frame;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (isAnyBlank(line[i]))
            continue;
        if (i == 0 || isAnyBlank(line[i - 1]))
            frame.first.push_back(i);
        const bool inNote =
            std::any_of(found.notes.begin(), found.notes.end(), [&](const ColumnRange& note) {
                return i >= note.column && i < note.column + note.length;
            });
        if (!inNote)
            frame.second += line[i];
    }
    return frame;
}

// Whoever carries out the edits, from the last to the first, gets the line.
Text byEdits(Text line, const MovedLine& moved) {
    for (auto edit = moved.edits.rbegin(); edit != moved.edits.rend(); ++edit)
        line.replace(edit->before.column, edit->before.length,
                     moved.line.substr(edit->after.column, edit->after.length));
    return line;
}

TEST(LeftOverProperty, TwelveStepsUpAndDownGiveThePitchesAndColumns) {
    Random random(20261126);
    for (int round = 0; round < 120; ++round) {
        const std::size_t room = round % 2 == 0 ? 8 : 1;
        const InventedLine line = inventedLine(random, room);
        SCOPED_TRACE(toUtf8(line.text));
        Text text = line.text;
        std::vector<std::size_t> columns;
        for (int step = 0; step <= 24; ++step) {
            const LeftOver found = findLeftOver(text);
            ASSERT_EQ(found.lines.size(), 1U) << toUtf8(text);
            std::vector<int> expected = line.pitches;
            for (int& pitch : expected)
                pitch = (pitch + (step <= 12 ? step : 24 - step)) % 12;
            ASSERT_EQ(pitchesIn(text, found.lines[0]), expected) << toUtf8(text);
            const auto [begins, others] = frameOf(text, found.lines[0]);
            if (step == 1)
                columns = begins;
            if (step > 1 && room > 1) {
                ASSERT_EQ(begins, columns) << toUtf8(text);
            }
            const auto spelling = random() % 2 == 0 ? Spelling::Sharps : Spelling::Flats;
            const KeyChange change(step < 12 ? Direction::Up : Direction::Down, spelling);
            const MovedLine moved = moveLeftOver(text, found.lines[0], change);
            ASSERT_EQ(frameOf(moved.line, findLeftOver(moved.line).lines.at(0)).second, others);
            ASSERT_EQ(byEdits(text, moved), moved.line);
            text = moved.line;
        }
        if (line.text.find(u'\t') == Text::npos && room > 1) {
            EXPECT_EQ(frameOf(line.text, findLeftOver(line.text).lines[0]).first, columns);
        }
    }
}

// The brief look must not lose what the importer finds.
TEST(LeftOverProperty, TheBriefLookLosesNothing) {
    static constexpr TextView kParts[] = {
        u"A",      u"Am7",     u"Cmaj7",   u"(C",  u"G)",    u"[Em]",     u"Hm",
        u"H",      u"N.C.",    u"x2",      u"bis", u"la",    u"And",      u"Dad",
        u"|",      u"-",       u"C-G",     u"|F|", u" ",     u"  ",       u"\t",
        u"\u00A0", u"Intro:",  u"(x2)",    u"new", u"C7alt", u"Bb",       u"Bbo7",
        u"\uFF23", u"B\u266D", u"F\u00F8", u".",   u"D,",    u"n.c.",     u"oh",
        u"Gsus",   u"AmMaj",   u"E\u0394", u"{",   u"Dmin",  u"DO",       u"Re7",
        u"x 4",    u"| 3/4",   u"} 2",     u"a",   u"[Sol]", u"\u041F -", u"2 times"};
    Random random(7);
    int found = 0;
    for (int round = 0; round < 15000; ++round) {
        Text line;
        for (std::size_t i = 1 + below(random, 7); i > 0; --i)
            line.append(oneOf(kParts, random)).append(random() % 2 == 0 ? u" " : u"");
        if (IsChordLine(line) || importSong(line).chords.empty())
            continue;
        ++found;
        ASSERT_TRUE(mayBeLeftOver(line)) << toUtf8(line);
        for (const LeftOverLine& left : findLeftOver(line).lines) {
            const MovedLine moved = moveLeftOver(line, left, kUp);
            ASSERT_EQ(byEdits(line, moved), moved.line);
        }
    }
    EXPECT_GT(found, 2000);
}

// ---- What each line owes ----------------------------------------------------------------------

// A song that is edited and moved at random, and the notes that its lines would have in its first
// key.
class Playthrough {
  public:
    explicit Playthrough(unsigned seed) : random_(seed) {
        for (std::size_t i = 0; i < 6; ++i)
            addLine(i);
        history_.push_back({lines_, debt_, offset_});
    }

    void step() {
        const std::vector<Line> before = lines_;
        switch (below(random_, 8)) {
            case 0:
            case 1:
                changeKey(false);
                break;
            case 2:
                changeKey(true);
                break;
            case 3:
                moveThem();
                break;
            case 4:
                addLine(below(random_, lines_.size() + 1));
                debt_.edited(textOf(before), textOf(lines_));
                break;
            case 5:
                edit();
                debt_.edited(textOf(before), textOf(lines_));
                break;
            case 6:
                part();
                debt_.edited(textOf(before), textOf(lines_));
                break;
            default:
                history_.resize(1 + below(random_, history_.size()));
                lines_ = history_.back().lines;
                offset_ = history_.back().offset;
                debt_ = KeyDebt::parse(history_.back().debt.text());  // by way of the journal
                EXPECT_EQ(debt_, history_.back().debt);
                return;
        }
        history_.push_back({lines_, debt_, offset_});
    }

    // Every line in the key of the song.
    void expectOneKey() {
        moveThem();
        const Text text = textOf(lines_);
        ASSERT_TRUE(linesBehind(debt_, findLeftOver(text), text).empty());
        for (const Line& line : lines_) {
            std::vector<int> expected = line.pitches;
            for (int& pitch : expected)
                pitch = (pitch + offset_) % 12;
            ASSERT_EQ(pitchesOf(line.text), expected) << toUtf8(line.text);
        }
    }

  private:
    struct Line {
        Text text;
        std::vector<int> pitches;
    };
    struct State {
        std::vector<Line> lines;
        KeyDebt debt;
        int offset;
    };

    static Text textOf(const std::vector<Line>& lines) {
        Text text;
        for (const Line& line : lines)
            text.append(line.text).append(u"\r");
        return text;
    }
    // Lines of this song have upper-case letters in notes alone.
    static std::vector<int> pitchesOf(TextView line) {
        std::vector<int> pitches;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] >= u'A' && line[i] <= u'G')
                pitches.push_back(pitchOf(line.substr(
                    i,
                    i + 1 < line.size() && (line[i + 1] == u'#' || line[i + 1] == u'b') ? 2 : 1)));
        }
        return pitches;
    }
    void addLine(std::size_t place) {
        static constexpr TextView kWords[] = {u"la la la", u"", u"so it goes on"};
        static constexpr TextView kEnds[] = {u"", u"  x2", u" |", u" . .", u"maj7"};
        Line line;
        if (below(random_, 3) == 0) {
            line.text = oneOf(kWords, random_);
        } else {
            for (std::size_t i = 2 + below(random_, 3); i > 0; --i)
                line.text.append(oneOf(kNames, random_)).append(i > 1 ? u"    " : u"");
            line.text += oneOf(kEnds, random_);
            line.pitches = pitchesOf(line.text);
            for (int& pitch : line.pitches)
                pitch = (pitch + 12 - offset_) % 12;
        }
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), line);
    }
    // Another end of one line, and perhaps another one less.
    void edit() {
        Line& line = lines_[below(random_, lines_.size())];
        const std::size_t end = line.text.find_last_of(u"|x.");
        if (end != Text::npos && !line.pitches.empty())
            line.text.resize(line.text.find_last_not_of(u" |x.2") + 1);
        else if (!line.pitches.empty())
            line.text += u" |";
        if (below(random_, 3) == 0 && lines_.size() > 4)
            lines_.erase(lines_.begin());
    }
    // Enter within a line.
    void part() {
        const std::size_t number = below(random_, lines_.size());
        Line& line = lines_[number];
        if (line.pitches.size() < 4)
            return;
        const std::size_t gap = line.text.find(u' ');
        Line second{line.text.substr(line.text.find_first_not_of(u' ', gap)),
                    {line.pitches.begin() + 1, line.pitches.end()}};
        line = {line.text.substr(0, gap), {line.pitches.front()}};
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(number) + 1, second);
    }
    void carryOut(const std::vector<OtherMove>& others, const KeyChange* change) {
        for (std::size_t i = 0; i < lines_.size(); ++i) {
            const auto other =
                std::find_if(others.begin(), others.end(),
                             [&](const OtherMove& move) { return move.line.number == i; });
            Text& text = lines_[i].text;
            const KeyChange* const own = other == others.end() ? change
                                         : other->change       ? &*other->change
                                                               : nullptr;
            if (own == nullptr)
                continue;
            if (IsChordLine(text))
                text = own->moveLine(text).line;
            else if (other != others.end())
                text = moveLeftOver(text, other->line, *own).line;
        }
    }
    void changeKey(bool moveAll) {
        const Direction direction = random_() % 2 == 0 ? Direction::Up : Direction::Down;
        const Spelling spelling = random_() % 2 == 0 ? Spelling::Sharps : Spelling::Flats;
        const Text text = textOf(lines_);
        const LeftOver found = findLeftOver(text);
        const KeyChange change(direction, spelling);
        carryOut(debt_.othersOfKeyChange(found, direction, spelling, 1, moveAll), &change);
        if (moveAll)
            debt_.moved();
        else
            debt_.keyChanged(direction, spelling, 1, found.lines);
        offset_ = (offset_ + (direction == Direction::Up ? 1 : 11)) % 12;
    }
    void moveThem() {
        const Text text = textOf(lines_);
        carryOut(linesBehind(debt_, findLeftOver(text), text), nullptr);
        debt_.moved();
    }

    Random random_;
    std::vector<Line> lines_;
    KeyDebt debt_;
    int offset_ = 0;
    std::vector<State> history_;
};

TEST(KeyDebtProperty, MovingBringsAllLinesIntoOneKey) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        Playthrough song(seed);
        for (int i = 0; i < 25; ++i)
            song.step();
        song.expectOneKey();
        ASSERT_FALSE(::testing::Test::HasFailure()) << "seed " << seed;
    }
}

TEST(KeyDebt, FollowsTheLinesThatOwe) {
    const struct {
        TextView before, after;
        std::string debt, followed;
    } cases[] = {
        {u"a\rb\rc", u"a\rb\rc", "2:3", "2:3"},
        {u"a\rb\rc", u"new\ra\rb\rc", "2:3", "3:3"},
        {u"a\rb\rc", u"a\rb\rchanged", "2:3", "2:3"},
        {u"a\rb\rc", u"a\rb", "2:3", ""},
        {u"a\rb\rc", u"c\rc\rc", "2:3", "2:3"},
        {u"C | G | Am", u"C |\rG | Am", "0:1", "0:1 1:1"},   // parted
        {u"C |\r  G\rla", u"C |  G\rla", "0:1 1:2", "0:1"},  // joined
        {u"la\rla C |", u"lala C |", "1:3", "0:3"},
        {u"C\rD |\rC |\rE", u"D |\rC |\rE |", "0:1 2:2 3:3", "1:2 2:3"},
        {u"a\vb\r\nc", u"x\vx\r\nx\ra\vb\r\nc", "1:1 2:2", "4:1 5:2"},
        {u"one\rtwo\rsix", u"new\rone\rtwo!\rnew\rsix", "0:1 1:- 2:5", "1:1 2:- 4:5"},
        {u"one\rtwo", u"three\rfour\rfive", "1:4", ""},
    };
    for (const auto& c : cases) {
        KeyDebt debt = KeyDebt::parse("down flats " + c.debt);
        ASSERT_EQ(debt.text(), "down flats " + c.debt);
        debt.edited(c.before, c.after);
        EXPECT_EQ(debt.text(), "down flats" + (c.followed.empty() ? "" : " " + c.followed))
            << toUtf8(c.after);
    }
}

TEST(KeyDebt, CountsInTheDirectionOfTheLastChange) {
    KeyDebt debt;
    const LeftOverLine line{3, {}, false};
    debt.keyChanged(Direction::Up, Spelling::Flats, 2, {&line, 1});
    EXPECT_EQ(debt.stepsBehind(3), 2U);
    EXPECT_EQ(debt.changeOf(3)->moveLine(u"C").line, u"D");
    debt.keyChanged(Direction::Down, Spelling::Flats, 3, {&line, 1});
    EXPECT_EQ(debt.stepsBehind(3), 11U);
    EXPECT_EQ(debt.changeOf(3)->moveLine(u"A").line, u"Ab");
    EXPECT_FALSE(debt.changeOf(2));
    debt.leaveAlone(1);
    EXPECT_EQ(debt.text(), "down flats 1:- 3:11");
    debt.moved();
    EXPECT_EQ(debt.text(), "down flats 1:-");
    EXPECT_FALSE(debt.isZero());
    debt.keyChanged(Direction::Up, Spelling::Sharps, 12, {&line, 1});
    EXPECT_EQ(debt.text(), "up sharps 1:-");
    const auto others = debt.othersOfKeyChange({}, Direction::Up, Spelling::Sharps, 1, false);
    ASSERT_EQ(others.size(), 1U);
    EXPECT_EQ(others[0].line.number, 1U);
    EXPECT_FALSE(others[0].change);
}

TEST(KeyDebt, TakesNoRubbish) {
    for (const char* text :
         {"", "up", "up blue", "sharps up", "up sharps 1", "up sharps 1:", "up sharps :1",
          "up sharps 1:12", "up sharps 1:0", "up sharps 2:1 1:1", "up sharps 1:1 1:2",
          "up sharps 1:1x", "up sharps -1:1", "up sharps 1:--", "up sharps 999999999999:1",
          "up sharps 1:1  2:1", "up sharps 1:+1", "\xFF\xFE", "up sharps 4294967297:1"}) {
        EXPECT_TRUE(KeyDebt::parse(text).isZero()) << text;
    }
    EXPECT_EQ(KeyDebt::parse("down sharps 0:11 7:-2").text(), "down sharps 0:11 7:-2");
}

// ---- Diagrams, and the line that states the key -------------------------------------------------

TEST(DiagramKey, MovesByTheFace) {
    const struct {
        TextView face;
        int steps;
        Spelling spelling;
        TextView moved;
    } cases[] = {
        {u"Melvorin 01", 1, Spelling::Sharps, u"Melvorin 03"},   // A to A#
        {u"Melvorin 02", 1, Spelling::Flats, u"Melvorin 06"},    // A to Bb
        {u"Melvorin 01", -1, Spelling::Sharps, u"Melvorin 31"},  // A to G#
        {u"Melvorin 01", -1, Spelling::Flats, u"Melvorin 33"},   // A to Ab
        {u"Melvorin 34", 1, Spelling::Flats, u"Melvorin 02"},    // Ab to A
        {u"Melvorin 07", 1, Spelling::Sharps, u"Melvorin 09"},   // B to C
        {u"Melvorin 10", 14, Spelling::Sharps, u"Melvorin 16"},  // C to D
        {u"Melvorin 21", -2, Spelling::Flats, u"Melvorin 15"},   // E to D
        {u"Melvorin 27", 3, Spelling::Flats, u"Melvorin 01"},    // Gb to A
        {u"Melvorin 24", 1, Spelling::Flats, u"Melvorin 28"},    // F to Gb
        {u"Melvorin 19", 0, Spelling::Sharps, u"Melvorin 19"},   // Eb stays Eb
        {u"Melvorin 19", -12, Spelling::Sharps, u"Melvorin 19"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(movedDiagramFace(c.face, c.steps, c.spelling), Text(c.moved)) << toUtf8(c.face);
    for (const TextView face : {u"Melvorin 35", u"Melvorin 00", u"Melvorin", u"Courier New"})
        EXPECT_FALSE(movedDiagramFace(face, 1, Spelling::Sharps));
}

TEST(KeyStatement, KnowsWhereTheNoteStands) {
    const struct {
        TextView line, note;
    } cases[] = {
        {u"Key: G", u"G"},
        {u"key = Bbm", u"Bb"},
        {u"Tom:  F#m7", u"F#"},
        {u"TOM : E\u266D", u"E\u266D"},
        {u"Tonart: H-Dur", u"H"},
        {u"Tonart: cis-Moll", u"cis"},
        {u"Tonart: Es dur", u"Es"},
        {u"Tonart: a moll", u"a"},
        {u"Capo 2   Key: A major", u"A"},
        {u"{key: Dm}", u"D"},
        {u"in the key of C", u"C"},
        {u"Key: Amaj", u"A"},
        {u"Key: Go", u""},
        {u"Tom: Goodbye", u""},
        {u"Monkey: G", u""},
        {u"Key: a", u""},
        {u"Key of", u""},
        {u"Key:", u""},
        {u"Tom Dooley", u""},
        {u"Key: Dad", u""},
        {u"Keys: C", u""},
    };
    for (const auto& c : cases) {
        const auto note = statedKey(c.line);
        EXPECT_EQ(note ? c.line.substr(note->column, note->length) : TextView(), c.note)
            << toUtf8(c.line);
    }
}

}  // namespace
}  // namespace melvorin
