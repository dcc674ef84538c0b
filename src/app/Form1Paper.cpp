// The main window's way to paper: print, preview, page setup, PDF.
#include <memory>

#include "app/Form1.h"
#include "base/DiagramFont.h"
#include "base/Paths.h"
#include "base/ProgramSettings.h"
#include "dictionary/BookDiagrams.h"
#include "rtf/RtfCheck.h"

namespace melvorin {

// The song as it stands in the editor, whatever is selected.
PaperSource Form1::paperSource() {
    const CursorScope hourglass(IDC_WAIT);
    const Text& path = documents_.path();
    PaperSource source;
    source.name = path.empty() ? Text(u"Song") : songName(fileNamePart(path));
    const PaperLook look{.face = editorFontFace(services_),
                         .points = static_cast<double>(kEditorFontPoints)};
    const std::string rtf = rtftext_.rtf();
    const RtfVerdict verdict = checkRtf(rtf);
    source.song = verdict.kind == RtfVerdict::Kind::Ok
                      ? paperSongOfRtf(verdict.document, look, source.name)
                      : paperSong(rtftext_.text().chars, look, source.name);
    // The book is opened when the first diagram is asked for.
    source.findDiagram = [this, book = std::shared_ptr<BookDiagrams>()](
                             TextView chord) mutable -> std::optional<DiagramOfChord> {
        if (!book) {
            book = std::make_shared<BookDiagrams>();
            book->open(sqliteDatabasePath(services_.program.folder()));
        }
        const auto found = book->find(chord);
        if (!found)
            return std::nullopt;
        return DiagramOfChord{Text(kDiagramFaceStart) + found->font, found->character};
    };
    return source;
}

void Form1::filePrint() {
    const Busy busy(*this);
    paper_.print(handle(), paperSource());
}

void Form1::filePreview() {
    const Busy busy(*this);
    paper_.preview(handle(), paperSource());
}

void Form1::filePageSetup() {
    const Busy busy(*this);
    paper_.setUp(handle());
}

void Form1::fileSavePdf() {
    const Busy busy(*this);
    paper_.savePdf(paperSource());
}

}  // namespace melvorin
