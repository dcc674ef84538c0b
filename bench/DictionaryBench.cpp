// What the chord dictionary, its fonts and Ctrl+D take.
#include "BenchProgram.h"
#include "EditorBenches.h"
#include "base/DiagramFont.h"
#include "chords/SuffixNormaliser.h"
#include "dictionary/ChordDictionary.h"
#include "dictionary/RichEditDiagrams.h"
#include "platform/DiagramFonts.h"

namespace melvorin::bench {
namespace {

// ---- Chord dictionary -------------------------------------------------------------------------

// Opens the chord book of this build and looks a chord up in the middle of it, as the first search
// of a run does; then once more.
void dictionary() {
    testing::ScriptedMessages messages;
    Win32Files files;
    const Text folder = Win32ProgramFolder().folder();
    Times open;
    Times first;
    Times next;
    for (int round = 0; round < 15; ++round) {
        ChordDictionary book(messages, {}, normaliseSuffixes);
        open.push_back(timeOf([&] { book.open(folder, files); }));
        first.push_back(timeOf([&] { book.find(u"E7", SearchField::Symbol); }));
        next.push_back(timeOf([&] { book.find(u"ab minor", SearchField::Name); }));
        if (book.shown().LB != u"Ab Minor")
            giveUp("the chord book has no Ab Minor");
    }
    if (!messages.boxes.empty())
        giveUp(messages.boxes[0].text.c_str());
    report("dictionary_open", median(open), "ms");
    report("dictionary_first_search", median(first), "ms");
    report("dictionary_next_search", median(next), "ms");
}

void diagramFonts() {
    Times load;
    for (int round = 0; round < 9; ++round) {
        DiagramFonts fonts;
        std::size_t count = 0;
        load.push_back(timeOf([&] { count = fonts.load(Win32ProgramFolder().folder()); }));
        if (count != kDiagramFontCount)
            giveUp("the diagram fonts are not beside this program");
    }
    report("diagram_fonts_first_load", load.front(), "ms");
    report("diagram_fonts_load", median(load), "ms");
}

// Ctrl+D on diagrams all over a song.
void fingering(std::int32_t lines, std::int32_t diagrams) {
    OpenChart chart(static_cast<std::size_t>(lines));
    RichEdit& editor = chart.editor();
    std::vector<std::int32_t> positions;
    {
        const EditorWork work(editor);
        RichEditDiagrams document(editor);
        for (std::int32_t i = 0; i < diagrams; ++i) {
            positions.push_back(editor.firstOfLine(i * lines / diagrams));
            editor.select({positions.back(), positions.back()});
            insertDiagram(document, u"a", u"Melvorin 09");
        }
    }
    Times times;
    for (std::size_t i = 0; i < 60; ++i) {
        const std::int32_t position = positions[i * 37 % positions.size()];
        editor.select({position, position + 1});
        editor.scrollCaretIntoView();
        ::UpdateWindow(editor.handle());
        chart.pump();
        times.push_back(timeOf([&] {
            chart.form().run(Command::mnuChDigt);
            ::UpdateWindow(editor.handle());
        }));
        if (editor.textBetween({position, position + 1}) == u"a")
            giveUp("a fingering was not changed");
    }
    const std::string name =
        "fingering_" + std::to_string(lines) + "_lines_" + std::to_string(diagrams) + "_diagrams";
    report(name + "_median", median(times), "ms");
    report(name + "_99th", quantile(times, 99), "ms");
}

}  // namespace

void dictionaryBench() {
    dictionary();
    diagramFonts();
    fingering(2000, 500);
}

}  // namespace melvorin::bench
