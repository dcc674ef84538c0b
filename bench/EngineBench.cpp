// How fast charts are moved to another key, cleaned of tabs and searched, from the bytes of a file
// to the bytes of a file.
// Prints "name value unit", one per line.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "Verse.h"
#include "app/DocumentFile.h"
#include "base/TabExpansion.h"
#include "base/Text.h"
#include "base/TextCodec.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"
#include "cli/Cli.h"
#include "find/ReplacePlan.h"
#include "find/TextSearch.h"
#include "rtf/RtfMap.h"

namespace {

using melvorin::Direction;
using melvorin::KeyChange;
using melvorin::Spelling;
using melvorin::verse;
using melvorin::windows1252;

std::string chartOfBytes(std::size_t size) {
    std::string chart;
    while (chart.size() < size) {
        for (const std::string_view line : verse) {
            chart.append(line).append("\r\n");
        }
    }
    return chart;
}

std::string chartOfLines(std::size_t count) {
    std::string chart;
    for (std::size_t i = 0; i < count; ++i) {
        chart.append(verse[i % std::size(verse)]).append("\r\n");
    }
    return chart;
}

// What one run gives is looked at, so that no run can be left out.
std::size_t bytesWritten = 0;

double seconds(const std::string& chart, std::string (*work)(const std::string&)) {
    const auto start = std::chrono::steady_clock::now();
    bytesWritten += work(chart).size();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string transposed(const std::string& chart) {
    static const KeyChange change(Direction::Up, Spelling::Sharps);
    return transposeBytes(chart, change, windows1252()).value.value();
}

// As the batch tool does it, which also looks for lines of chords that are left over.
std::string transposedSong(const std::string& chart) {
    static const KeyChange change(Direction::Up, Spelling::Sharps);
    return transposeSong(chart, change, true, windows1252()).value.value().bytes;
}

// The same reader and writer with nothing to do between them.
std::string copied(const std::string& chart) {
    return rewriteBytes(chart, windows1252(), [](melvorin::Text part) { return part; })
        .value.value();
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const char* name, double value, const char* unit) {
    std::printf("%s %.3g %s\n", name, value, unit);
}

// A chart of the same size in which one line of chords in four is one that a key
// change leaves over.
std::string withOthers(std::string chart) {
    constexpr std::string_view plain = "Em       C          D7";
    constexpr std::string_view other = "Em7      Cmaj7      D7";
    for (std::size_t at = 0; (at = chart.find(plain, at)) != std::string::npos; at += plain.size())
        chart.replace(at, plain.size(), other);
    return chart;
}

// The kinds of run take turns, so that a busy moment of the machine meets all of them.
void throughput() {
    const std::string chart = chartOfBytes(10'000'000);
    const std::string mixed = withOthers(chart);
    std::vector<double> moving;
    std::vector<double> looking;
    std::vector<double> movingOthers;
    std::vector<double> copying;
    for (int round = 0; round < 15; ++round) {
        moving.push_back(seconds(chart, transposed));
        looking.push_back(seconds(chart, transposedSong));
        movingOthers.push_back(seconds(mixed, transposedSong));
        copying.push_back(seconds(chart, copied));
    }
    const double megabytes = static_cast<double>(chart.size()) / 1e6;
    report("engine_transpose", megabytes / median(moving), "MB/s");
    report("engine_transpose_looking", megabytes / median(looking), "MB/s");
    report("engine_transpose_looking_to_transpose", median(looking) / median(moving), "ratio");
    report("engine_transpose_others", megabytes / median(movingOthers), "MB/s");
    report("engine_copy", megabytes / median(copying), "MB/s");
    report("engine_transpose_to_copy", median(moving) / median(copying), "ratio");
}

std::string asItIs(const std::string& chart) {
    return chart;
}

std::string withTabs(const std::string& chart) {
    std::string tabs = chart;
    std::replace(tabs.begin(), tabs.end(), ' ', '\t');
    return tabs;
}

std::string withTabsExpanded(const std::string& chart) {
    melvorin::TabExpander expander;
    return rewriteBytes(chart, windows1252(),
                        [&](const melvorin::Text& part) {
                            melvorin::Text expanded;
                            expander.append(part, expanded);
                            return expanded;
                        })
        .value.value();
}

std::string withLanternsReplaced(const std::string& chart) {
    melvorin::GapText target(melvorin::fromUtf8(chart));
    replaceAll(target, u"lantern", u"candle", {}, [] { return true; });
    return melvorin::toUtf8(target.text());
}

// Plain Rich Text of the chart, as the editor would write it.
std::string richText(const std::string& chart) {
    std::string rtf =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 Lucida Console;}}\\pard\\f0\\fs20 ";
    for (const char16_t c : melvorin::fromUtf8(chart)) {
        if (c == u'\n')
            rtf += "\\par\n";
        else if (c >= 0x80)
            rtf += "\\u" + std::to_string(static_cast<int>(c)) + "?";
        else if (c != u'\r')
            rtf += static_cast<char>(c);
    }
    return rtf + "}";
}

std::string opened(const std::string& rtf) {
    return melvorin::readDocument(rtf, u"mvt", windows1252()).value.value().rtf;
}

// What Replace All does with the text of the control.
std::string withRichLanternsReplaced(const std::string& rtf) {
    const auto map = melvorin::RtfMap::parse(rtf);
    melvorin::ReplacePlan plan(map.value().text());
    replaceAll(plan, u"lantern", u"candle", {}, [] { return true; });
    return map->rewrite(plan.parts(), {});
}

// A word that is nowhere.
std::string searched(const std::string& chart) {
    return melvorin::findText(melvorin::fromUtf8(chart), u"zebra", 0, {}) ? "" : "-";
}

std::string normalised(const std::string& chart) {
    return melvorin::toUtf8(melvorin::normaliseSuffixes(melvorin::fromUtf8(chart)));
}

std::string imported(const std::string& chart) {
    return melvorin::toUtf8(melvorin::importSong(melvorin::fromUtf8(chart)).chart());
}

// Ten times the lines should take ten times as long.
void linearity(const std::string& name, std::string (*work)(const std::string&),
               std::string (*prepared)(const std::string&)) {
    const std::string small = prepared(chartOfLines(100'000));
    const std::string large = prepared(chartOfLines(1'000'000));
    std::vector<double> smallTimes;
    std::vector<double> largeTimes;
    for (int round = 0; round < 5; ++round) {
        smallTimes.push_back(seconds(small, work));
        largeTimes.push_back(seconds(large, work));
    }
    report((name + "_100000_lines").c_str(), median(smallTimes) * 1e3, "ms");
    report((name + "_1000000_lines").c_str(), median(largeTimes) * 1e3, "ms");
    report((name + "_10_times_the_lines").c_str(), median(largeTimes) / median(smallTimes),
           "ratio");
}

}  // namespace

int main() {
    // Memory stays with the program between two runs; else a large text would also measure how
    // the system hands out new pages.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    throughput();
    linearity("engine", transposed, asItIs);
    linearity("engine_tabs", withTabsExpanded, withTabs);
    linearity("engine_find", searched, asItIs);
    linearity("engine_replace", withLanternsReplaced, asItIs);
    linearity("engine_normalise", normalised, asItIs);
    linearity("engine_import", imported, asItIs);
    linearity("engine_open_rich_text", opened, richText);
    linearity("engine_replace_rich_text", withRichLanternsReplaced, richText);
    return bytesWritten > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
