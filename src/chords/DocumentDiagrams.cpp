#include "chords/DocumentDiagrams.h"

#include "base/DiagramFont.h"
#include "base/EditorLine.h"
#include "chords/DiagramKey.h"
#include "rtf/MappedDocument.h"

namespace melvorin {

std::vector<DiagramRun> diagramsOfDocument(Editor& editor) {
    std::vector<DiagramRun> runs;
    MappedDocument document(editor);
    if (!document.mayHaveDiagrams())
        return runs;
    std::size_t number = 0;
    std::size_t position = 0;
    for (TextView rest = document.text(); !rest.empty(); ++number) {
        const TextLine line = takeEditorLine(rest);
        for (const std::size_t end = position + line.chars.size(); position < end; ++position) {
            const Text face = document.faceAt(position);
            if (!isDiagramFace(face))
                continue;
            const auto at = static_cast<std::int32_t>(position);
            if (runs.empty() || runs.back().place.end != at || runs.back().face != face)
                runs.push_back({number, {at, at}, face});
            ++runs.back().place.end;
        }
        position += line.end.size();
    }
    return runs;
}

void moveDiagramsInDocument(Editor& editor, Spelling spelling, const DiagramSteps& steps) {
    const EditorWork work(editor);
    const Selection selection = editor.selection();
    const ScrollPosition scroll = editor.scrollPosition();
    for (const DiagramRun& run : diagramsOfDocument(editor)) {
        const unsigned up = steps(run.line);
        const auto face =
            up == 0 ? std::nullopt : movedDiagramFace(run.face, static_cast<int>(up), spelling);
        if (!face)
            continue;
        editor.select(run.place);
        editor.setSelectionFace(*face);
    }
    editor.select(selection);
    editor.scrollTo(scroll);
}

}  // namespace melvorin
