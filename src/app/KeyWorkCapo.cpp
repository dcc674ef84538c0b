// What the commands on the key ask of the song, and what they write into it beside its chords.
#include <algorithm>

#include "app/KeyWork.h"
#include "base/DiagramFont.h"
#include "base/EditorLine.h"
#include "base/ProgramSettings.h"
#include "chords/DocumentDiagrams.h"
#include "chords/KeySpelling.h"

namespace melvorin {
namespace {

// A chord is called by what follows soon.
constexpr std::size_t kLinesForReason = 12;
constexpr std::int32_t kMostForReason = 2000;

}  // namespace

Text KeyWork::writing() const {
    Text song = rtftext_.text().chars;
    if (!rtftext_.mayHaveFace(isDiagramFace))
        return song;
    for (const DiagramRun& run : diagramsOfDocument(rtftext_))
        std::fill(song.begin() + run.place.begin, song.begin() + run.place.end, u' ');
    return song;
}

// The line of the capo is about to name the new key. What else is in it comes along: half of a line
// could not be behind.
void KeyWork::settleCapoLine() {
    const auto capo = findCapo(writing());
    if (!capo || !capo->isPlain || documents_.songMemory().lines.stepsBehind(capo->line) == 0)
        return;
    bool isSettled = false;
    const auto choose = [&](const LeftOver& found, TextView song) {
        std::vector<OtherMove> moves = behind(found, song);
        std::erase_if(moves, [&](const OtherMove& m) { return m.line.number != capo->line; });
        const bool onlySounds =
            capo->sounding.length > 0 && moves.size() == 1 && moves.front().line.notes.size() == 1;
        isSettled = !found.hasH || onlySounds;
        return found.hasH ? std::vector<OtherMove>() : moves;
    };
    moveOthersInDocument(rtftext_, choose, [] {});
    if (isSettled)
        documents_.changeSongMemory([&](SongMemory& debt) { debt.lines.moved(capo->line); });
}

// Selection and page stay where they are in the text.
void KeyWork::writeCapo(int fret, TextView sounds, TextView face) {
    settleCapoLine();
    const std::vector<SongEdit> edits = capoEdits(writing(), fret, sounds, u"\r");
    Selection selection = rtftext_.selection();
    const ScrollPosition page = rtftext_.scrollPosition();
    const EditorWork work(rtftext_);
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
        const auto begin = static_cast<std::int32_t>(edit->position);
        const auto end = begin + static_cast<std::int32_t>(edit->length);
        const auto length = static_cast<std::int32_t>(edit->text.size());
        rtftext_.select({begin, end});
        rtftext_.replaceSelection(edit->text);
        if (edit->text.find(u'\r') != Text::npos) {
            // A line of its own does not look like the title.
            const bool isBehind = edit->text.front() == u'\r';
            rtftext_.select({begin + (isBehind ? 1 : 0), begin + length - (isBehind ? 0 : 1)});
            rtftext_.setSelectionFont(face, kEditorFontPoints);
            rtftext_.setBold(false);
            rtftext_.setItalic(false);
            rtftext_.setUnderline(false);
            rtftext_.setSelectionColour({0, 0, 0});
        }
        for (std::int32_t* const position : {&selection.begin, &selection.end}) {
            if (*position >= end)
                *position += length - (end - begin);
            else
                *position = std::min(*position, begin + length);
        }
    }
    rtftext_.select(selection);
    rtftext_.scrollTo(page);
}

Text KeyWork::reasonAt(std::int32_t position) const {
    if (!shownKey_.key)
        return {};
    const std::int32_t first = rtftext_.lineOf(position);
    const std::int32_t start = rtftext_.firstOfLine(first);
    Text text = rtftext_.textBetween({start, std::min(start + kMostForReason, rtftext_.length())});
    const auto reasonIn = [&] {
        std::vector<SpelledLine> lines;
        for (TextView rest = text; !rest.empty() && lines.size() < kLinesForReason;)
            lines.push_back({takeEditorLine(rest).chars, {}});
        return reasonOfName(lines, static_cast<std::size_t>(position - start), shownKey_,
                            documents_.songMemory().side);
    };
    Text reason = reasonIn();
    if (reason.empty() || !hasDiagrams_)
        return reason;
    // To look for faces would turn the end around at which a selection grows.
    const Selection selection = rtftext_.selection();
    if (selection.begin != selection.end)
        return {};
    const Text song = writing();
    text = song.substr(std::min(static_cast<std::size_t>(start), song.size()), text.size());
    return reasonIn();
}

}  // namespace melvorin
