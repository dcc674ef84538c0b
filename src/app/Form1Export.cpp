// The main window's way to other programs: the song as ChordPro, as text, as a page.
#include <algorithm>

#include "app/Form1.h"
#include "base/Paths.h"
#include "chords/CellWidth.h"
#include "chords/ChordProExport.h"
#include "dictionary/BookDrawings.h"
#include "platform/Handles.h"

namespace melvorin {
namespace {

// The whole song, whatever is selected.
TakenSong takeWhole(Editor& editor) {
    const EditorWork work(editor);
    const Selection selection = editor.selection();
    const ScrollPosition scroll = editor.scrollPosition();
    editor.select({0, 0});
    TakenSong song = takeSong(editor);
    editor.select(selection);
    editor.scrollTo(scroll);
    return song;
}

// Without the diagrams, which are letters to other programs; `left` receives how many there were.
Text withoutDiagrams(TextView song, std::size_t& left) {
    Text plain(song);
    left = static_cast<std::size_t>(std::count_if(plain.begin(), plain.end(), isDiagramToken));
    std::replace_if(plain.begin(), plain.end(), isDiagramToken, u' ');
    return plain;
}

}  // namespace

// What there is for the file, its text and how many diagrams it does not show.
Text Form1::exported(const TakenSong& song, ExportChoice choice, TextView title,
                     std::size_t& left) {
    if (choice.format != SongFormat::Html) {
        Text plain = withoutDiagrams(song.text, left);
        if (!plain.ends_with(u'\r'))
            plain += u'\r';  // other programs may drop a last line without an end
        return toCrLf(choice.format == SongFormat::ChordPro ? exportChordPro(plain, choice.names)
                                                            : exportText(plain, choice.names))
            .chars;
    }
    BookDrawings book;
    book.open(sqliteDatabasePath(services_.program.folder()));
    return exportHtml(song.text, choice.names, title, [&](char16_t token) -> std::optional<Text> {
        const SongDiagram* diagram = song.diagrams.find(token);
        auto drawn = diagram == nullptr ? std::nullopt : book.svgOf(diagram->letter, diagram->face);
        left += drawn ? 0U : 1U;
        return drawn;
    });
}

// Where it goes; an ending that is missing is added.
std::optional<Text> Form1::askTarget(TextView title, const FileFilter& filter, TextView end) {
    FileDialogRequest request{Text(title), {filter}, 1, {}, {}};
    const Text& path = documents_.path();
    const Text name = path.empty() ? Text(u"Song") : songName(fileNamePart(path));
    request.fileName = name + u"." + Text(end);
    request.initialFolder =
        path.empty() ? services_.system.documentsFolder() : Text(folderPart(path));
    const auto choice = services_.dialogs.save(request);
    if (!choice)
        return std::nullopt;
    Text target = choice->path;
    if (extensionPart(target).empty())
        target.append(u".").append(end);
    if (asciiLowerCase(target) == asciiLowerCase(path)) {
        reportFailure(services_.messages,
                      quoted(target) + u" is the open song itself. Choose another name.");
        return std::nullopt;
    }
    if (services_.files.exists(target) &&
        services_.messages.show(quoted(target) + u" already exists.\r\nDo you want to replace it?",
                                kMessageTitle, MessageIcon::Question,
                                MessageButtons::YesNo) != Answer::Yes)
        return std::nullopt;
    return target;
}

void Form1::fileExport() {
    const TakenSong song = takeWhole(rtftext_);
    if (trimmed(song.text).empty()) {
        services_.messages.show(u"There is no song to export.", kMessageTitle,
                                MessageIcon::Information, MessageButtons::Ok);
        return;
    }
    std::size_t left = 0;
    const auto choice =
        frmExport(services_).ask(handle(), withoutDiagrams(song.text, left), exportChoice_);
    if (!choice)
        return;
    exportChoice_ = *choice;
    const FileFilter filters[] = {{u"ChordPro songs (*.cho)", u"*.cho"},
                                  {u"Text (*.txt)", u"*.txt"},
                                  {u"Web pages (*.html)", u"*.html"}};
    const auto target = askTarget(u"Export", filters[static_cast<std::size_t>(choice->format)],
                                  fileEnd(choice->format));
    if (!target)
        return;
    const CursorScope hourglass(IDC_WAIT);
    left = 0;
    const Text title = songName(fileNamePart(*target));
    const Text text = exported(song, *choice, title, left);
    const std::string bytes = toUtf8(text);
    if (const Result<Done> written = services_.files.replace(*target, bytes); !written)
        return reportFailure(services_.messages, u"The song cannot be exported to " +
                                                     quoted(*target) + u". " + written.cause);
    Text said = u"Exported to " + Text(fileNamePart(*target));
    if (left > 0)
        said += u", without " + decimal(static_cast<std::int64_t>(left)) +
                (left == 1 ? u" diagram" : u" diagrams");
    std::size_t none = 0;
    if (choice->format == SongFormat::PlainText &&
        !namesComeBack(withoutDiagrams(song.text, none), text, choice->names))
        said += u". Nothing in it tells other programs how its notes are called";
    status_.say({{said, {}}});
}

}  // namespace melvorin
