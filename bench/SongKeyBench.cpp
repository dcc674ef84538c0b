// How well keys are found and notes are called by them, on songs whose keys are known.
//
//     key_bench [SONGS.tsv]
//
// A row is: group, id, key, chords in order (see tools/fit-key.py, which also parts songs that the
// numbers were fitted on from others). Without songs only the time for a long one is told.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "Verse.h"
#include "chords/ChordLine.h"
#include "chords/ChordSpelling.h"
#include "chords/KeyReading.h"
#include "chords/KeySpelling.h"

namespace {

using namespace melvorin;

struct Row {
    bool isSignature = false;
    Key key;
    Text keyNote;
    std::vector<Text> chords;  // and bars
};

std::vector<Row> readRows(const char* path) {
    std::vector<Row> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        std::array<std::string, 4> fields;
        std::istringstream parts(line);
        for (std::string& field : fields)
            std::getline(parts, field, '\t');
        Row row{fields[0] == "jazz", readKey(fromUtf8(fields[2])).value(), fromUtf8(fields[2]), {}};
        if (row.key.minor)
            row.keyNote.pop_back();
        std::istringstream chords(fields[3]);
        for (std::string chord; chords >> chord;)
            row.chords.push_back(fromUtf8(chord));
        rows.push_back(std::move(row));
    }
    return rows;
}

int signatureOf(Key key) {
    return (key.tonic + (key.minor ? 3 : 0)) % 12;
}

bool isRight(const Row& row, Key key) {
    return row.isSignature ? signatureOf(row.key) == signatureOf(key) : row.key == key;
}

void report(const char* name, double value, const char* unit) {
    std::printf("%-44s %6.2f %s\n", name, value, unit);
}

double percent(std::size_t part, std::size_t whole) {
    return 100.0 * static_cast<double>(part) / static_cast<double>(std::max<std::size_t>(whole, 1));
}

// Four bars, or eight chords, to a line.
Text asTyped(const Row& row) {
    Text song;
    std::size_t count = 0;
    const bool bars = std::find(row.chords.begin(), row.chords.end(), u"|") != row.chords.end();
    for (const Text& chord : row.chords) {
        song.append(chord).append(u" ");
        count += !bars || chord == u"|" ? 1U : 0U;
        if (count == (bars ? 4U : 8U)) {
            song += u'\n';
            count = 0;
        }
    }
    return song;
}

void findKeys(const std::vector<Row>& rows) {
    std::size_t answered = 0;
    std::size_t right = 0;
    std::size_t best = 0;
    std::size_t contradicted = 0;
    for (const Row& row : rows) {
        const SongChords read = readSongChords(asTyped(row));
        const FoundKey found = findKey(read.chords);
        contradicted += findKey(read.chords, row.key).isStated ? 0U : 1U;
        best += found.first && isRight(row, *found.first) ? 1U : 0U;
        answered += found.key ? 1U : 0U;
        right += found.key && isRight(row, *found.key) ? 1U : 0U;
    }
    report("songs", static_cast<double>(rows.size()), "");
    report("keys answered", percent(answered, rows.size()), "%");
    report("of these right", percent(right, answered), "%");
    report("first candidates right", percent(best, rows.size()), "%");
    report("stated keys that are not believed", percent(contradicted, rows.size()), "%");
}

// ---- Spelling ---------------------------------------------------------------------------------

// From C along the line of fifths.
int fifthsOfName(TextView note) {
    constexpr std::array<int, 7> letters{3, 5, 0, 2, 4, -1, 1};
    int fifths = letters[letterIndex(note[0])];
    for (const char16_t accidental : note.substr(1))
        fifths += 7 * melvorin::halfSteps(accidental);
    return fifths;
}

// Without double accidentals and names of naturals.
Text plainName(int fifths) {
    const int steps = (fifths * 7 % 12 + 12) % 12;
    return Text(noteName(steps, fifths > 5 ? Spelling::Sharps : Spelling::Flats));
}

TextView rootOf(TextView chord) {
    std::size_t length = 1;
    while (length < chord.size() && isAccidental(chord[length]))
        ++length;
    return chord.substr(0, length);
}

Text pitchName(TextView note, int steps, Spelling spelling) {
    return Text(noteName(melvorin::halfSteps(note) + steps, spelling));
}

struct Score {
    std::size_t notes = 0;
    std::size_t wrong = 0;
    std::size_t songs = 0;
    std::size_t whole = 0;

    void add(std::size_t of, std::size_t wrongOnes) {
        notes += of;
        wrong += wrongOnes;
        ++songs;
        whole += wrongOnes == 0 ? 1U : 0U;
    }
    void tell(const char* name) const {
        std::printf("%-44s %6.2f %% of roots wrong, %6.2f %% of songs and keys wholly right\n",
                    name, percent(wrong, notes), percent(whole, songs));
    }
};

// The chords in the house's spelling, as a chart has them, with roots as written or all in sharps.
std::vector<Text> chartChords(const Row& row, bool sharps) {
    std::vector<Text> chords;
    for (const Text& written : row.chords) {
        if (!isNoteLetter(written[0]))
            continue;
        const Text root(rootOf(written));
        Text chord = houseSpelling(written).value_or(root + u"7");
        chord.replace(0, rootOf(chord).size(), root);
        if (sharps) {
            chord.replace(0, root.size(), pitchName(root, 0, Spelling::Sharps));
            if (const std::size_t slash = chord.rfind(u'/');
                slash != Text::npos && slash + 1 < chord.size() && isNoteLetter(chord[slash + 1]))
                chord.replace(slash + 1, Text::npos,
                              pitchName(TextView(chord).substr(slash + 1), 0, Spelling::Sharps));
        }
        chords.push_back(chord);
    }
    return chords;
}

std::size_t wrongRoots(const std::vector<Text>& expected, const std::vector<Text>& roots) {
    std::size_t wrong = expected.size() - std::min(expected.size(), roots.size());
    for (std::size_t i = 0; i < std::min(expected.size(), roots.size()); ++i)
        wrong += expected[i] == roots[i] ? 0U : 1U;
    return wrong;
}

// The roots of a chart's lines, but for the first, which states the key.
std::vector<Text> rootsOf(TextView chart) {
    std::vector<Text> roots;
    takeLine(chart);
    while (!chart.empty()) {
        std::vector<ChordToken> tokens;
        ScanTokens(takeLine(chart).chars, tokens);
        for (auto token = tokens.rbegin(); token != tokens.rend(); ++token)
            roots.emplace_back(rootOf(token->text));
    }
    return roots;
}

Text chartOf(const Row& row, bool sharps) {
    Text chart = u"Key: " + row.keyNote + (row.key.minor ? u"m\n" : u"\n");
    std::size_t count = 0;
    for (const Text& chord : chartChords(row, sharps))
        chart.append(chord).append(++count % 4 == 0 ? u"\n" : u"  ");
    return chart;
}

struct Scores {
    Score sharps, flats, better, rewritten, asWritten, respelled;
};

void spell(const Row& row, int steps, Scores& scores) {
    const Spelling side =
        row.keyNote.ends_with(u'b') || row.keyNote == u"F" ? Spelling::Flats : Spelling::Sharps;
    const Key goal = movedKey(row.key, steps);
    const int way = fifthsOf(goal, side) - fifthsOfName(row.keyNote);
    std::vector<Text> expected;
    std::array<std::vector<Text>, 2> plain;
    for (const Text& written : row.chords) {
        if (!isNoteLetter(written[0]))
            continue;
        const TextView root = rootOf(written);
        expected.push_back(plainName(fifthsOfName(root) + way));
        plain[0].push_back(pitchName(root, steps, Spelling::Sharps));
        plain[1].push_back(pitchName(root, steps, Spelling::Flats));
    }
    const std::size_t inSharps = wrongRoots(expected, plain[0]);
    const std::size_t inFlats = wrongRoots(expected, plain[1]);
    scores.sharps.add(expected.size(), inSharps);
    scores.flats.add(expected.size(), inFlats);
    scores.better.add(expected.size(), std::min(inSharps, inFlats));
    for (const bool rewritten : {true, false}) {
        const Text chart = chartOf(row, rewritten);
        const Text moved = followKey(chart, findKey(chart), steps, side, true);
        const std::size_t wrong = wrongRoots(expected, rootsOf(moved));
        (rewritten ? scores.rewritten : scores.asWritten).add(expected.size(), wrong);
        if (rewritten)
            continue;
        const Text again = followKey(moved, findKey(moved), 0, side);
        scores.respelled.add(expected.size(), wrongRoots(expected, rootsOf(again)));
    }
}

void spellAll(const std::vector<Row>& rows) {
    Scores scores;
    for (const Row& row : rows) {
        for (int steps = 0; steps < 12; ++steps)
            spell(row, steps, scores);
    }
    scores.sharps.tell("always sharps");
    scores.flats.tell("always flats");
    scores.better.tell("the better of the two");
    scores.rewritten.tell("by the key, rewritten in sharps before");
    scores.asWritten.tell("by the key, as written");
    scores.respelled.tell("the same, respelled then");
}

template <class Work>
double milliseconds(Work work) {
    std::vector<double> times;
    for (int round = 0; round < 9; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void tellTimes() {
    Text song;
    for (std::size_t i = 0; i < 10'000; ++i)
        song.append(fromUtf8(std::string(verse[i % std::size(verse)]))).append(u"\r\n");
    Text web;
    for (std::size_t i = 0; i < 5'000; ++i)
        web.append(u"| Cmaj7  A-7 | Dm9 G13 |\r\nNow the old bell rings over the green hill\r\n");
    std::size_t sum = 0;
    for (const auto& [name, text] : {std::pair("10,000 lines of a chart", &song),
                                     std::pair("10,000 lines from the web", &web)}) {
        std::printf("%s\n", name);
        report("  find the key", milliseconds([&] { sum += findKey(*text).percent != 0; }), "ms");
        const FoundKey found = findKey(*text);
        report("  spell by the key",
               milliseconds([&] { sum += followKey(*text, found, 1, Spelling::Sharps).size(); }),
               "ms");
    }
    std::printf("%s", sum == 0 ? "nothing was done\n" : "");
}

}  // namespace

int main(int count, char** values) {
    tellTimes();
    if (count > 1) {
        const std::vector<Row> rows = readRows(values[1]);
        findKeys(rows);
        spellAll(rows);
    }
    return 0;
}
