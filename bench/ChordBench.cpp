// How many chord symbols of real songs the importer takes.
//
//     chord_bench SYMBOLS.tsv
//
// A row is: symbol, how often it stands in songs, anything. Each symbol is imported between two
// chords over words; what is not taken is told with its count, the most frequent first.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "base/TextCodec.h"
#include "chords/SongImport.h"

namespace {

using namespace melvorin;

// Empty where some part of the symbol is read as no chord; else the chart's spelling.
Text taken(TextView symbol) {
    const Text song = Text(u"C   ").append(symbol).append(u"   G\nla la la la la la\n");
    const SongImport imported = importSong(song);
    const bool isRow = imported.source[0].verdict == LineVerdict::Chords;
    const bool isRead = std::all_of(imported.chords.begin(), imported.chords.end(),
                                    [](const ImportedChord& chord) { return chord.isRead; });
    if (!isRow || !isRead || imported.chords.size() < 3 || imported.chords[1].sourceIndex > 5)
        return {};
    return imported.chords[1].chord;
}

}  // namespace

int main(int count, char** values) {
    if (count < 2) {
        std::fprintf(stderr, "chord_bench SYMBOLS.tsv\n");
        return 2;
    }
    std::ifstream file(values[1]);
    long long all = 0;
    long long read = 0;
    std::vector<std::pair<long long, std::string>> left;
    for (std::string line; std::getline(file, line);) {
        const std::size_t tab = line.find('\t');
        if (tab == std::string::npos)
            continue;
        const std::string symbol = line.substr(0, tab);
        const long long times = std::atoll(line.c_str() + tab + 1);
        const Text chord = taken(fromUtf8(symbol));
        all += times;
        read += chord.empty() ? 0 : times;
        if (chord.empty())
            left.emplace_back(times, symbol);
        else if (count > 2)
            std::printf("%s\t%s\n", symbol.c_str(), toUtf8(chord).c_str());
    }
    std::sort(left.rbegin(), left.rend());
    for (const auto& [times, symbol] : left)
        std::printf("%8lld  %s\n", times, symbol.c_str());
    std::printf("taken: %lld of %lld, %.3f %%\n", read, all,
                100.0 * static_cast<double>(read) / static_cast<double>(std::max(all, 1LL)));
}
