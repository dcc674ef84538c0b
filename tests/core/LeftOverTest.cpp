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
    bool hasH = false;
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
            songs.push_back({bytes.substr(3), {}, {}, {}, false});
            number = 0;
        } else if (bytes[0] == 'H') {
            songs.back().hasH = true;
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
                EXPECT_EQ(toUtf8(moveLeftOver(lines[line.number], line, kUp).line),
                          toUtf8(song.moved[line.number]));
            }
        }
        EXPECT_EQ(left, song.lines['L']);
        EXPECT_EQ(found.changedWords, song.lines['x']);
        EXPECT_EQ(found.hasH, song.hasH);
        std::vector<std::size_t> keys;
        for (const KeyLine& key : found.keyLines)
            keys.push_back(key.number);
        EXPECT_EQ(keys, song.lines['k']);
        for (const std::size_t number : song.lines['m'])
            EXPECT_TRUE(IsChordLine(lines[number])) << toUtf8(lines[number]);
    }
}

}  // namespace
}  // namespace melvorin
