#include "app/Documents.h"

#include "app/Contrast.h"
#include "app/DocumentLoss.h"
#include "app/EditCommands.h"
#include "app/Paths.h"
#include "app/ProgramSettings.h"
#include "app/RtfCheck.h"

namespace melvorin {
namespace {

constexpr TextView kTitleEnd = u" - Melvorin";
constexpr TextView kUntitled = u"Chord Notation";
constexpr TextView kVerifyPath =
    u"    Please verify that the correct path and file name are given.";
constexpr TextView kApplication = u"Melvorin";
constexpr int kTextFilter = 3;
// Of text that has no colour of its own, and what it needs to be read on a page.
constexpr Rgb kInk{0, 0, 0};
constexpr double kLeastContrast = 3;

int openFilterIndex(TextView extension) {
    const Text lower = lowerCase(extension);
    if (lower == u"mvt")
        return 1;
    if (lower == u"rtf")
        return 2;
    return lower == u"txt" ? kTextFilter : 4;
}

std::vector<FileFilter> saveFilters() {
    return {{u"Melvorin Notations (*.mvt)", u"*.mvt"}, {u"Rich Text Files (*.rtf)", u"*.rtf"}};
}

std::vector<FileFilter> openFilters() {
    std::vector<FileFilter> filters = saveFilters();
    filters.push_back({u"Text Documents (*.txt)", u"*.txt"});
    return filters;
}

// Some controls write broken Rich Text where a symbol font has not got a character.
bool isReadable(std::string_view rtf) {
    return checkRtf(rtf).kind == RtfVerdict::Kind::Ok;
}

// A "doc" ends as plain text too, and is written once, so that a failure leaves the old file.
bool isSavedAsPlain(TextView path) {
    const Text extension = lowerCase(extensionPart(path));
    return extension == u"txt" || extension == u"doc";
}

// A path without its ending. What only looks like one belongs to the name: "St. Anne No. 1".
Text songName(TextView path) {
    const TextView ending = extensionPart(path);
    const bool isOfName =
        !ending.empty() &&
        (ending.starts_with(u' ') || ending.find_first_not_of(u"0123456789") == TextView::npos);
    return Text(isOfName ? path : withoutExtension(path));
}

Text quoted(TextView path) {
    return u"\"" + Text(path) + u"\"";
}

}  // namespace

Documents::Documents(const Services& services, Editor& editor, Callbacks callbacks)
    : services_(services),
      editor_(editor),
      callbacks_(std::move(callbacks)),
      history_(services.files),
      journal_(services.files) {}

void Documents::publish() {
    keepJournal();
    callbacks_.stateChanged(state_);
}

void Documents::keepJournal() {
    journal_.keep(path_, mark_, format_, history_, state_.dirty);
}

bool Documents::fail(TextView what, TextView path, TextView cause) {
    reportFailure(services_.messages,
                  Text(what) + u" " + quoted(path) + u".\r\n\r\n" + Text(cause));
    return false;
}

// ---- Start ------------------------------------------------------------------------------------

void Documents::loadTemplate() {
    const Result<Text> temporary = services_.files.createTemporary(u"~rs");
    if (!temporary) {
        reportFailure(services_.messages, u"Unable to get temp file name!");
        return;
    }
    const std::optional<std::string> content = services_.program.resource(u"Custom", 101);
    if (!content || !services_.files.write(*temporary.value, *content)) {
        services_.files.remove(*temporary.value);
        reportFailure(services_.messages, u"Unable to save resource item to disk!");
        return;
    }
    const Result<std::string> bytes = services_.files.read(*temporary.value);
    if (bytes)
        editor_.loadRtf(*bytes.value);
    services_.files.remove(*temporary.value);
    // The face is the user's choice, which a file made beforehand cannot know.
    editor_.setSelectionFont(editorFontFace(services_), kEditorFontPoints);
}

void Documents::begin() {
    journal_.begin();
    record();
    startHistory();
    publish();
}

void Documents::openFromCommandLine(TextView commandLine) {
    const Text path = pathFromCommandLine(commandLine);
    if (!path.empty())
        openPath(services_.files.fullPath(path), false);
}

// ---- Commands ---------------------------------------------------------------------------------

bool Documents::mayLeave() {
    if (!state_.dirty)
        return true;
    const Text name = path_.empty() ? Text(kUntitled) : Text(fileNamePart(path_));
    switch (services_.messages.show(u"Save changes to " + name + u"?", kMessageTitle,
                                    MessageIcon::Question, MessageButtons::YesNoCancel)) {
        case Answer::Yes:
            return save();
        case Answer::No:
            return true;
        default:
            return false;
    }
}

bool Documents::mayClose() {
    if (mayLeave())
        return true;
    SettingsStore& store = services_.settings;
    store.write(kApplication, u"Paths", u"Lastsaved", lastUsed_.saved);
    store.write(kApplication, u"Paths", u"LastOpened", lastUsed_.opened);
    store.write(kApplication, u"Paths", u"LastOpenedEXT", lastUsed_.openedExtension);
    return false;
}

void Documents::newDocument() {
    if (!mayLeave())
        return;
    editor_.loadPlain({}, editorFontFace(services_), kEditorFontPoints);
    setPath({}, {});
    kindAgreed_ = false;
    loss_.clear();
    format_ = {};
    showTitle();
    keepLegible();
    record();
    startHistory();
    publish();
    callbacks_.replaced();
}

void Documents::open() {
    if (!mayLeave())
        return;
    if (lastUsed_.openedExtension.empty())
        lastUsed_.openedExtension = u"mvt";
    if (lastUsed_.opened.empty())
        lastUsed_.opened = u":\\";
    const auto choice = services_.dialogs.open({u" Open",
                                                openFilters(),
                                                openFilterIndex(lastUsed_.openedExtension),
                                                lastUsed_.opened,
                                                {}});
    if (choice && load(withItsEnding(choice->path)))
        callbacks_.used(path_);
}

// A name that was typed without its ending is tried as it stands and then with those of songs.
Text Documents::withItsEnding(TextView path) {
    for (const TextView ending : {u"", u".mlv", u".mvt", u".rtf", u".txt"}) {
        const Text full = Text(path) + Text(ending);
        if (services_.files.exists(full))
            return full;
    }
    return Text(path);
}

bool Documents::openPath(TextView path, bool remember) {
    if (!mayLeave() || !load(path))
        return false;
    if (remember)
        callbacks_.used(path_);
    return true;
}

bool Documents::confirmLargeFile(TextView path, std::uint64_t size) {
    const Text question = quoted(path) + u" is a large document (" + sizeInWords(size) +
                          u"). Opening it may take a while, and so may every change.\r\n\r\n"
                          u"Open it?";
    return services_.messages.show(question, kMessageTitle, MessageIcon::Question,
                                   MessageButtons::YesNo) == Answer::Yes;
}

bool Documents::showContent(const DocumentContent& content) {
    if (content.isRichText)
        return editor_.loadRtf(content.rtf);
    return editor_.loadPlain(content.text, editorFontFace(services_), kEditorFontPoints);
}

bool Documents::load(TextView path) {
    const std::optional<FileMark> mark = showFile(path);
    if (!mark)
        return false;
    setPath(path, mark);
    kindAgreed_ = false;
    lastUsed_.opened = folderPart(path);
    lastUsed_.openedExtension = extension_;
    showTitle();
    record();
    startHistory();
    publish();
    callbacks_.replaced();
    tellDamage();
    return true;
}

// A colour behind the text is the user's view, and stays; but not where the words of another song
// cannot be read on it.
void Documents::keepLegible() {
    const std::optional<Rgb> background = editor_.background();
    if (background && contrast(*background, kInk) < kLeastContrast)
        editor_.setBackground(std::nullopt);
}

bool Documents::openExample(TextView path) {
    if (!showFile(path))
        return false;
    setPath({}, {});
    kindAgreed_ = false;
    showTitle();
    record();
    markChanged();
    history_.setFloor();
    state_.undo = false;
    publish();
    callbacks_.replaced();
    return true;
}

// Puts a file's content into the editor; on failure the editor is as it was.
std::optional<FileMark> Documents::showFile(TextView path) {
    const auto refuse = [&](TextView cause) {
        fail(u"Melvorin cannot open", path, Text(cause) + u"\r\n\r\n" + Text(kVerifyPath));
        return std::nullopt;
    };
    const Result<std::uint64_t> size = services_.files.size(path);
    if (!size)
        return refuse(size.cause);
    if (*size.value > kLargestFile)
        return refuse(u"The file is too large (" + sizeInWords(*size.value) + u").");
    const Result<std::string> bytes = services_.files.read(path);
    if (!bytes)
        return refuse(bytes.cause);
    const auto content = readDocument(*bytes.value, extensionPart(path), services_.ansi,
                                      [&](const std::vector<CodePageReading>& readings) {
                                          return callbacks_.chooseReading(path, readings);
                                      });
    if (!content && content.cause.empty())
        return std::nullopt;
    if (!content)
        return refuse(content.cause);
    if (*size.value > kLargeFile && !confirmLargeFile(path, *size.value))
        return std::nullopt;

    // What the control takes but cannot write could never be saved.
    const bool isDoubtful = content.value->rtf.find("\\fcharset2") != std::string::npos;
    const std::string before = isDoubtful ? editor_.rtf() : std::string();
    if (!showContent(*content.value))
        return refuse(u"The editor does not take what the file holds.");
    if (isDoubtful && !isReadable(editor_.rtf())) {
        editor_.loadRtf(before);
        return refuse(u"It has characters in a symbol font that the editor could not save again.");
    }
    loss_ = content.value->isRichText
                ? lossInWords(readRtf(*bytes.value), editor_.text().chars, editor_.rtf())
                : Text();
    if (!loss_.empty())
        services_.messages.show(
            quoted(fileNamePart(path)) + u" holds more than Melvorin can show: " + loss_ +
                u".\r\n\r\nThe file has all of it until you save over it; Save asks first.",
            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
    keepLegible();
    editor_.scrollCaretIntoView();
    format_ = content.value->format;
    return markOf(*bytes.value);
}

// Of a text file in UTF-16; nothing else can hold such halves.
void Documents::tellDamage() {
    if (format_.encoding != TextEncoding::Utf16LeWithBom &&
        format_.encoding != TextEncoding::Utf16BeWithBom)
        return;
    const std::size_t damaged = loneSurrogates(editor_.text().chars);
    if (damaged > 0)
        services_.messages.show(
            quoted(path_) + u" has " + decimal(static_cast<std::int64_t>(damaged)) +
                (damaged == 1
                     ? u" damaged character, of which only one half is there. It is "
                     : u" damaged characters, of which only one half is there. They are ") +
                u"shown as they are, and Save keeps them so.",
            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

void Documents::tellNewEncoding() {
    const bool isUtf8 = format_.encoding == TextEncoding::Utf8WithBom;
    services_.messages.show(
        quoted(path_) +
            (isUtf8
                 ? u" is saved as UTF-8 now. In its former encoding some of its characters would "
                   u"have been lost; nothing is."
                 : u" is saved as UTF-16 now. Some of its characters are damaged, and no other "
                   u"encoding would keep them as they are."),
        kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

bool Documents::save() {
    if (path_.empty())
        return saveAs();
    switch (askAboutKind()) {
        case Answer::Yes:
            return mayOverwrite() && writeTo(path_);
        case Answer::No:
            return saveAs();
        default:
            return false;
    }
}

// A file that would become another kind of file, or lose something, is asked about once.
Answer Documents::askAboutKind() {
    if (kindAgreed_)
        return Answer::Yes;
    const Text change = changeOfKind();
    if (change.empty())
        return Answer::Yes;
    const Answer answer = services_.messages.show(
        change + u"\r\n\r\nSave it so? With No you choose another name or kind for the song.",
        kMessageTitle, MessageIcon::Question, MessageButtons::YesNoCancel);
    kindAgreed_ = answer == Answer::Yes;
    return answer;
}

// What a Save would make of the file that is on disk, as a sentence; empty where it stays what it
// is. The file itself is asked, as another program or an earlier run may have written it.
Text Documents::changeOfKind() {
    const Result<std::string> bytes = services_.files.read(path_);
    if (!bytes || bytes.value->empty())
        return {};
    const bool isRich = looksLikeRtf(*bytes.value);
    const Text name = quoted(fileNamePart(path_));
    if (!loss_.empty())
        return name + u" holds more than Melvorin can keep: " + loss_ +
               u". Saved from here the file loses that.";
    if (isSavedAsPlain(path_))
        return isRich ? name +
                            u" holds formatted text. With this ending it is saved as plain text: "
                            u"fonts, colours and chord diagrams are lost."
                      : Text();
    return isRich ? Text()
                  : name +
                        u" is plain text. Saved from here it becomes Rich Text, which other "
                        u"programs may not read as a song.";
}

// What another program wrote into the document's file is not overwritten unasked. A file that has
// gone is written anew.
bool Documents::mayOverwrite() {
    if (!mark_ || compare(services_.files, path_, *mark_) != Compared::Other)
        return true;
    return services_.messages.show(
               quoted(path_) +
                   u" was changed by another program since it was opened here.\r\n\r\n"
                   u"Replace it with the song as it is in the editor? (Save As can keep both.)",
               kMessageTitle, MessageIcon::Question, MessageButtons::YesNo) == Answer::Yes;
}

bool Documents::writeTo(TextView path) {
    const bool isPlain = isSavedAsPlain(path);
    const PlainFile plain = isPlain ? plainDocument(editor_.text(), format_, services_.ansi)
                                    : PlainFile{editor_.rtf(), format_};
    const std::string& bytes = plain.bytes;
    const auto refuse = [&](TextView cause) {
        return fail(u"Melvorin cannot save", path,
                    Text(cause) + u"\r\n\r\nThe song is still open, and the file is as it was.");
    };
    // A file that could not be opened again is worse than none.
    if (!isPlain && !isReadable(bytes))
        return refuse(u"It has characters in a symbol font that the editor cannot write.");
    const Result<Done> written = services_.files.replace(path, bytes);
    if (!written)
        return refuse(written.cause);
    if (path != path_)
        kindAgreed_ = false;
    loss_.clear();
    setPath(path, markOf(bytes));
    lastUsed_.saved = folderPart(path);
    state_.dirty = false;
    const bool isNewEncoding = plain.format != format_;
    format_ = plain.format;
    publish();
    if (isNewEncoding)
        tellNewEncoding();
    return true;
}

std::optional<Documents::SaveTarget> Documents::askSaveTarget() {
    FileDialogRequest request{u" Save As", saveFilters(), 1, {}, {}};
    request.filterIndex = lowerCase(extension_) == u"rtf" ? 2 : 1;
    request.fileName = path_.empty() ? Text(kUntitled) : Text(fileNamePart(path_));
    request.initialFolder = path_.empty() ? services_.system.documentsFolder() : folderPart(path_);
    const auto choice = services_.dialogs.save(request);
    if (!choice)
        return std::nullopt;
    Text path = choice->path;
    if (choice->filterIndex == 1)
        path = songName(path) + u".mlv";
    else if (choice->filterIndex == 2)
        path = songName(path) + u".rtf";
    // The dialog asked about the name as it was typed; the changed one may be another file.
    if (lowerCase(path) != lowerCase(choice->path) && services_.files.exists(path) &&
        services_.messages.show(quoted(path) + u" already exists.\r\nDo you want to replace it?",
                                kMessageTitle, MessageIcon::Question,
                                MessageButtons::YesNo) != Answer::Yes)
        return std::nullopt;
    return SaveTarget{path, choice->filterIndex};
}

bool Documents::saveAs() {
    const auto target = askSaveTarget();
    if (!target || !writeTo(target->path))
        return false;
    showTitle();
    publish();
    callbacks_.used(path_);
    return true;
}

void Documents::setPath(TextView path, const std::optional<FileMark>& mark) {
    path_ = path;
    mark_ = mark;
    extension_ = extensionPart(path_);
}

void Documents::showTitle() {
    state_.title = (path_.empty() ? Text(kUntitled) : Text(fileNamePart(path_))) + Text(kTitleEnd);
}

// ---- Changes ----------------------------------------------------------------------------------

void Documents::record() {
    // Until it is: the editor may fail to give its text.
    unrecorded_ = true;
    record(editor_.rtf());
}

void Documents::record(const std::string& rtf) {
    unrecorded_ = true;
    recorded_ = markOf(rtf);
    switch (history_.record(rtf, editor_.selection().begin, editor_.background())) {
        case SnapshotHistory::Outcome::Recorded:
            recordingFailed_ = false;
            unrecorded_ = false;
            break;
        case SnapshotHistory::Outcome::NotWritten:
            // Once is enough: the next key would bring the same message.
            if (!recordingFailed_)
                reportFailure(services_.messages,
                              u"Melvorin cannot keep a copy of this change for Undo.\r\n\r\n" +
                                  history_.lastFailure() +
                                  u"\r\n\r\nThe text in the editor is safe; please save it.");
            recordingFailed_ = true;
            break;
        case SnapshotHistory::Outcome::Full:
            if (!historyFull_)
                reportFailure(services_.messages,
                              u"So many changes were made that no more can be kept for Undo."
                              u"\r\n\r\nThe text in the editor is safe; please save it and "
                              u"start Melvorin again.");
            historyFull_ = true;
            break;
    }
    state_.redo = history_.canRedo();
}

// The document as it stands is where undo ends, and it is clean.
void Documents::startHistory() {
    history_.setFloor();
    state_.undo = false;
    state_.redo = false;
    state_.dirty = false;
    state_.saveAs = !editor_.isEmpty();
    state_.keyButtons = false;
}

bool Documents::isRecorded(const std::string& rtf) const {
    return !unrecorded_ && !history_.currentSnapshot().path.empty() && recorded_ == markOf(rtf) &&
           history_.currentSnapshot().background == editor_.background();
}

void Documents::changed() {
    // A control that cannot give its text may hold anything.
    std::string rtf;
    try {
        rtf = editor_.rtf();
    } catch (...) {
        unrecorded_ = true;
        markChanged();
        publish();
        throw;
    }
    if (isRecorded(rtf))
        return;
    // Dirty first: while a message about the snapshot is open, the session may end.
    markChanged();
    try {
        record(rtf);
    } catch (...) {
        publish();
        throw;
    }
    state_.undo = history_.canUndo();
    publish();
}

void Documents::markChanged() {
    state_.dirty = true;
    state_.saveAs = !editor_.isEmpty();
    state_.keyButtons = false;
}

// `changedAt` is where the step between the two states was made.
void Documents::restore(const Snapshot& snapshot, std::int32_t changedAt) {
    const EditorWork work(editor_);
    const ScrollPosition page = editor_.scrollPosition();
    const Text before = editor_.text().chars;
    if (showSnapshot(snapshot)) {
        showDifference(editor_, page, before, changedAt);
        recorded_ = markOf(editor_.rtf());
    } else {
        // What the editor shows is another state.
        recorded_ = {};
        reportFailure(services_.messages,
                      u"This step could not be kept, so it cannot be shown; the text stays as it "
                      u"is. Undo and Redo go on from here.");
    }
}

// On failure the editor is as it was. The file has been open to other programs, maybe since an
// earlier run, so it is checked as any other document is.
bool Documents::showSnapshot(const Snapshot& snapshot) {
    if (snapshot.path.empty())
        return false;
    const Result<std::string> bytes = services_.files.read(snapshot.path);
    if (!bytes)
        return false;
    const auto content = readDocument(*bytes.value, u"rtf", services_.ansi);
    if (!content || !content.value->isRichText || !editor_.loadRtf(content.value->rtf))
        return false;
    editor_.setBackground(snapshot.background);
    editor_.select({snapshot.caret, snapshot.caret});
    return true;
}

// Text that no snapshot holds would be gone after a step, so it is written now or asked about.
bool Documents::mayLeaveScreenText() {
    if (!unrecorded_)
        return true;
    if (history_.rewriteCurrent(editor_.rtf(), editor_.selection().begin, editor_.background()) ||
        services_.messages.show(u"There is no copy of the text as it is now, so it could not be "
                                u"brought back.\r\n\r\nLeave it all the same?",
                                kMessageTitle, MessageIcon::Question,
                                MessageButtons::YesNo) == Answer::Yes) {
        unrecorded_ = false;
        keepJournal();
        return true;
    }
    return false;
}

bool Documents::undo() {
    if (!state_.undo || !mayLeaveScreenText())
        return false;
    restore(history_.previous(), history_.currentSnapshot().caret);
    history_.stepBack();
    state_.undo = history_.canUndo();
    state_.redo = true;
    state_.dirty = true;
    state_.keyButtons = false;
    publish();
    return true;
}

bool Documents::redo() {
    if (!state_.redo || !mayLeaveScreenText())
        return false;
    restore(history_.next(), history_.next().caret);
    history_.stepForward();
    state_.undo = true;
    state_.redo = history_.canRedo();
    state_.dirty = true;
    publish();
    return true;
}

void Documents::idle() {
    const bool wanted = !editor_.isEmpty();
    if (state_.keyButtons == wanted)
        return;
    state_.keyButtons = wanted;
    publish();
}

void Documents::disableKeyButtons() {
    state_.keyButtons = false;
    publish();
}

void Documents::endRun(RunEnd how) {
    if (state_.dirty && keepsChanges(how)) {
        // The last of them may be in no snapshot yet.
        if (unrecorded_ &&
            history_.rewriteCurrent(editor_.rtf(), editor_.selection().begin, editor_.background()))
            keepJournal();
        return;
    }
    journal_.close();
    history_.deleteAll();
    journal_.end();
}

// ---- After a run that ended without closing ---------------------------------------------------

Text Documents::nameOf(const RunState& run) {
    return quoted(run.path.empty() ? kUntitled : fileNamePart(run.path));
}

void Documents::recover() {
    if (state_.dirty)
        return;
    for (Remains& remains : remainsOf(services_.files)) {
        if (remains.state.current == 0) {
            services_.messages.show(u"Melvorin was not closed, and " + nameOf(remains.state) +
                                        u" had changes that were not saved. Their copies in the "
                                        u"temporary folder are gone or damaged, so they cannot "
                                        u"be brought back.",
                                    kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
            discard(services_.files, std::move(remains));
            continue;
        }
        if (!wants(remains)) {
            discard(services_.files, std::move(remains));
            continue;
        }
        if (!bringBack(std::move(remains.state))) {
            reportFailure(services_.messages, u"The song could not be brought back.");
            continue;
        }
        // From here on the snapshots are this run's.
        remains.journal->remove();
        if (!remains.isLast)
            services_.messages.show(
                u"The last change could not be read, so the song is as it was "
                u"before. Redo may have more.",
                kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
        return;
    }
}

bool Documents::wants(const Remains& remains) {
    Text question = u"Melvorin was not closed, and " + nameOf(remains.state) +
                    u" had changes that were not saved. The last one: " +
                    remains.journal->lastWrittenInWords() +
                    u".\r\n\r\nBring it back? With No the changes are gone for good.";
    if (!path_.empty())
        question += u"\r\n\r\nWith Yes it takes the place of " + quoted(fileNamePart(path_)) +
                    u", which is not changed.";
    return services_.messages.show(question, kMessageTitle, MessageIcon::Question,
                                   MessageButtons::YesNo) == Answer::Yes;
}

bool Documents::bringBack(RunState run) {
    {
        const EditorWork work(editor_);
        if (!showSnapshot(run.snapshots[static_cast<std::size_t>(run.current)]))
            return false;
        editor_.scrollCaretIntoView();
    }
    setPath(run.path, run.mark);
    format_ = run.format;
    lastUsed_.opened = folderPart(path_);
    lastUsed_.openedExtension = extension_;
    showTitle();
    history_.adopt(std::move(run.snapshots), run.current, run.floor);
    journal_.keepAll(history_);
    unrecorded_ = false;
    recorded_ = markOf(editor_.rtf());
    state_.dirty = true;
    state_.saveAs = !editor_.isEmpty();
    state_.undo = history_.canUndo();
    state_.redo = history_.canRedo();
    state_.keyButtons = false;
    publish();
    callbacks_.replaced();
    return true;
}

}  // namespace melvorin
