// What Replace All and a paste take in the real main window.
#include "BenchProgram.h"
#include "EditorBenches.h"

namespace melvorin::bench {
namespace {

// ---- Replace All and Paste --------------------------------------------------------------------

// 2,000 lines in which "Asus" stands so many times, in chord lines and over them.
std::string songWithMatches(std::size_t matches) {
    constexpr std::size_t lines = 2000;
    std::string song;
    for (std::size_t line = 0; line < lines; ++line) {
        song += verse[line % std::size(verse)];
        const std::size_t here = matches * (line + 1) / lines - matches * line / lines;
        for (std::size_t i = 0; i < here; ++i)
            song += " Asus";
        song += "\r\n";
    }
    return song;
}

// With chords that follow and without.
void replacing(std::size_t matches, bool follows) {
    Times replace;
    Times load;
    Times loadOfResult;
    for (int round = 0; round < 5; ++round) {
        OpenChart chart(songWithMatches(matches));
        testing::ScriptedMessages messages;
        const std::string rtf = chart.editor().rtf();
        load.push_back(timeOfFreshLoad(chart, rtf));
        chart.form().follower().setOn(follows);
        FindReplace finder(
            chart.editor(), messages, chart.form().follower(), [] {}, [] {});
        replace.push_back(timeOf([&] {
            finder.replaceEach({u"Asus", u"Am7/G", {}}, [&] { chart.pump(); });
        }));
        if (messages.boxes.back().text.find("and " + std::to_string(matches) + " items") ==
            std::string::npos)
            giveUp(messages.boxes.back().text.c_str());
        loadOfResult.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
    }
    const std::string name =
        "replace_" + std::to_string(matches) + "_matches" + (follows ? "" : "_nothing_follows");
    report(name, median(replace), "ms");
    report(name + "_to_load", median(replace) / median(load), "ratio");
    report(name + "_to_load_of_result", median(replace) / median(loadOfResult), "ratio");
    report(name + "_per_match", 1e3 * median(replace) / static_cast<double>(matches), "us");
}

void pasting(std::size_t lines) {
    std::string song = chartOfLines(lines);
    std::size_t at = 0;
    while ((at = song.find("   ", at)) != std::string::npos)
        song.replace(at, 3, "\t");
    Times paste;
    Times load;
    for (int round = 0; round < 7; ++round) {
        OpenChart chart("x\r\n");
        chart.editor().select({0, 1});
        chart.putOnClipboard(fromUtf8(song));
        paste.push_back(timeOf([&] {
            chart.form().run(Command::mnuEditPaste);
            ::UpdateWindow(chart.editor().handle());
        }));
        load.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
        if (chart.editor().lineCount() < static_cast<std::int32_t>(lines))
            giveUp("the text was not pasted");
    }
    const std::string name = "paste_" + std::to_string(lines) + "_lines";
    report(name, median(paste), "ms");
    report(name + "_to_load", median(paste) / median(load), "ratio");
}

}  // namespace

void editBench() {
    for (const std::size_t matches : {200U, 1000U, 5000U}) {
        replacing(matches, true);
        replacing(matches, false);
    }
    for (const std::size_t lines : {200U, 2000U, 5000U})
        pasting(lines);
}

}  // namespace melvorin::bench
