// How fast songs go to paper, from plain text to the bytes of a PDF, and how many of them "fit"
// brings on one page. Invented songs; FONT.ttf (one of one width) is what they are written with.
// Prints "name value unit", one per line: paper_bench [FONT.ttf]
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>

#include "paper/PaperDocument.h"
#include "paper/PdfWriter.h"

namespace {

using namespace melvorin;

std::mt19937 dice(1);

std::size_t below(std::size_t count) {
    return dice() % count;
}

// A song of so many lines, the widest of so many columns: verses of four to eight lines with
// chords.
Text inventedSong(std::size_t lines, std::size_t columns) {
    constexpr TextView kChords[] = {u"C", u"Am7", u"G", u"D/F#", u"Em", u"F7M"};
    Text song = u"A song of many lines\n\n";
    for (std::size_t line = 2; line < lines;) {
        song += u"[Verse]\n";
        ++line;
        for (std::size_t pairs = 4 + below(5); pairs > 0 && line + 1 < lines; --pairs, line += 2) {
            Text chords;
            Text words;
            const std::size_t width = columns - below(columns / 3);
            while (words.size() + 9 < width) {
                if (chords.size() <= words.size() && below(2) == 0)
                    chords.append(words.size() - chords.size(), u' ')
                        .append(kChords[below(6)])
                        .append(u" ");
                words.append(1 + below(7), static_cast<char16_t>(u'k' + below(12))).append(u" ");
            }
            song.append(chords.empty() ? u"C" : chords).append(u"\n").append(words).append(u"\n");
        }
        song += u"\n";
        ++line;
    }
    return song;
}

double millisecondsOf(const std::vector<Text>& songs, FontShelf& fonts, bool fit) {
    PageSetup setup;
    setup.fit = fit;
    const PaperLook look{.face = fonts.trueType(0).family(), .points = 11};
    const auto start = std::chrono::steady_clock::now();
    PaperBook book(setup, fonts);
    for (const Text& text : songs) {
        const PaperSong song = paperSong(text, look, u"song");
        book.add(layOutSong(song, setup, fonts), song);
    }
    const Result<std::string> bytes = writePdf(book.finish(look.face), fonts);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    return bytes ? took.count() : -1;
}

std::vector<Text> inventedSongs(std::size_t count, std::size_t lines) {
    std::vector<Text> songs;
    songs.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        songs.push_back(inventedSong(lines, 45));
    return songs;
}

double percentOnOnePage(FontShelf& fonts) {
    constexpr int songs = 1000;
    int fitting = 0;
    PageSetup setup;
    setup.fit = true;
    for (int i = 0; i < songs; ++i) {
        const PaperSong song = paperSong(inventedSong(61 + below(50), 30 + below(16)),
                                         {.face = fonts.trueType(0).family()}, u"song");
        const LaidSong laid = layOutSong(song, setup, fonts);
        fitting += laid.pages.size() == 1 && !laid.isWrapped ? 1 : 0;
    }
    return 100.0 * fitting / songs;
}

}  // namespace

int main(int count, char** arguments) {
    std::ifstream file(count > 1
                           ? arguments[1]
                           : "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf",
                       std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    FontShelf fonts;
    if (const Result<FontNumber> added = fonts.add(bytes.str()); !added) {
        std::fprintf(stderr, "paper_bench: %s\n", toUtf8(added.cause).c_str());
        return 1;
    }
    std::printf("paper.song.60-lines %.1f ms\n", millisecondsOf(inventedSongs(1, 60), fonts, true));
    for (const std::size_t songs : {100U, 1000U}) {
        for (const bool fit : {false, true}) {
            std::printf("paper.book.%zu%s %.0f ms\n", songs, fit ? ".fit" : "",
                        millisecondsOf(inventedSongs(songs, 60), fonts, fit));
        }
    }
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    std::printf("paper.book.memory %.0f MB\n", static_cast<double>(used.ru_maxrss) / 1024);
    std::printf("paper.fit.61-to-110-lines.one-page %.1f percent\n", percentOnOnePage(fonts));
    return 0;
}
