#include "app/Documents.h"
#include "chords/KeySpelling.h"

#include "base/Contrast.h"
#include "base/LetterCase.h"
#include "base/Paths.h"
#include "base/ProgramSettings.h"
#include "rtf/DocumentLoss.h"
#include "rtf/EditCommands.h"
#include "rtf/RtfCheck.h"

namespace melvorin {
namespace {

constexpr TextView kTitleEnd = u" - Melvorin";
// kept: verify-path
constexpr TextView kVerifyPath =
    u"    Please verify that the correct path and file name are given.";
constexpr TextView kApplication = u"Melvorin";
constexpr int kTextFilter = 3;
// Of text that has no colour of its own, and what it needs to be read on a page.
constexpr Rgb kInk{0, 0, 0};
constexpr double kLeastContrast = 3;

int openFilterIndex(TextView extension) {
    const Text lower = asciiLowerCase(extension);
    if (lower == u"mvt")
        return 1;
    if (lower == u"rtf")
        return 2;
    // kept: fourth-filter
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
    const Text extension = asciiLowerCase(extensionPart(path));
    // kept: doc-is-text
    return extension == u"txt" || extension == u"doc";
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
    journal_.keep(origin_, history_, state_.dirty);
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
    const Text name = origin_.path.empty() ? Text(kUntitled) : Text(fileNamePart(origin_.path));
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
    // kept: write-only-paths
    store.write(kApplication, u"Paths", u"Lastsaved", lastUsed_.saved);
    store.write(kApplication, u"Paths", u"LastOpened", lastUsed_.opened);
    store.write(kApplication, u"Paths", u"LastOpenedEXT", lastUsed_.openedExtension);
    return false;
}

void Documents::newDocument() {
    if (!mayLeave())
        return;
    editor_.loadPlain({}, editorFontFace(services_), kEditorFontPoints);
    setOrigin({});
    songMemory_ = {};
    songMemory_.side = sideOf(editor_.text().chars);
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
        // kept: first-folder
        lastUsed_.opened = u":\\";
    // kept: dialog-titles
    const auto choice = services_.dialogs.open({u" Open",
                                                openFilters(),
                                                openFilterIndex(lastUsed_.openedExtension),
                                                lastUsed_.opened,
                                                {}});
    if (choice && load(withItsEnding(choice->path)))
        callbacks_.used(origin_.path);
}

// A name that was typed without its ending is tried as it stands and then with those of songs.
Text Documents::withItsEnding(TextView path) {
    for (const TextView ending : {u"", u".mlv", u".mvt", u".rtf", u".txt"}) {
        Text full = Text(path) + Text(ending);
        if (services_.files.exists(full))
            return full;
    }
    return Text(path);
}

bool Documents::openPath(TextView path, bool remember) {
    if (!mayLeave() || !load(path))
        return false;
    if (remember)
        callbacks_.used(origin_.path);
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
    std::optional<DocumentOrigin> origin = showFile(path);
    if (!origin)
        return false;
    setOrigin(*std::move(origin));
    songMemory_ = {};
    songMemory_.side = sideOf(editor_.text().chars);
    lastUsed_.opened = folderPart(path);
    lastUsed_.openedExtension = extension_;
    showTitle();
    record();
    startHistory();
    publish();
    callbacks_.replaced();
    tellLoss();
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
    setOrigin({});
    songMemory_ = {};
    songMemory_.side = sideOf(editor_.text().chars);
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
std::optional<DocumentOrigin> Documents::showFile(TextView path) {
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
    DocumentOrigin origin{Text(path), markOf(*bytes.value), content.value->format, {}};
    if (content.value->isRichText)
        origin.loss = lossInWords(readRtf(*bytes.value), editor_.text().chars, editor_.rtf());
    keepLegible();
    editor_.scrollCaretIntoView();
    return origin;
}

void Documents::tellLoss() {
    if (!origin_.loss.empty())
        services_.messages.show(
            quoted(fileNamePart(origin_.path)) + u" holds more than Melvorin can show: " +
                origin_.loss +
                u".\r\n\r\nThe file has all of it until you save over it; Save asks first.",
            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

void Documents::tellDamage() {
    if (origin_.format.encoding != TextEncoding::Utf16LeWithBom &&
        origin_.format.encoding != TextEncoding::Utf16BeWithBom)
        return;
    const std::size_t damaged = loneSurrogates(editor_.text().chars);
    if (damaged > 0)
        services_.messages.show(
            quoted(origin_.path) + u" has " + decimal(static_cast<std::int64_t>(damaged)) +
                (damaged == 1
                     ? u" damaged character, of which only one half is there. It is "
                     : u" damaged characters, of which only one half is there. They are ") +
                u"shown as they are, and Save keeps them so.",
            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

void Documents::tellNewEncoding() {
    const bool isUtf8 = origin_.format.encoding == TextEncoding::Utf8WithBom;
    services_.messages.show(
        quoted(origin_.path) +
            (isUtf8
                 ? u" is saved as UTF-8 now. In its former encoding some of its characters would "
                   u"have been lost; nothing is."
                 : u" is saved as UTF-16 now. Some of its characters are damaged, and no other "
                   u"encoding would keep them as they are."),
        kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

bool Documents::save() {
    if (origin_.path.empty())
        return saveAs();
    switch (askAboutKind()) {
        case Answer::Yes:
            return mayOverwrite() && writeTo(origin_.path);
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
    const Result<std::string> bytes = services_.files.read(origin_.path);
    if (!bytes || bytes.value->empty())
        return {};
    // A text may quote Rich Text.
    const auto content = readDocument(*bytes.value, extension_, services_.ansi);
    const bool isRich = content && content.value->isRichText;
    const Text name = quoted(fileNamePart(origin_.path));
    if (!origin_.loss.empty())
        return name + u" holds more than Melvorin can keep: " + origin_.loss +
               u". Saved from here the file loses that.";
    if (!isSavedAsPlain(origin_.path))
        return isRich ? Text()
                      : name +
                            u" is plain text. Saved from here it becomes Rich Text, which other "
                            u"programs may not read as a song.";
    if (isRich)
        return name +
               u" holds formatted text. With this ending it is saved as plain text: fonts, "
               u"colours and chord diagrams are lost.";
    return hasDiagrams(editor_) ? u"The song has chord diagrams. In " + name +
                                      u", which is plain text, they would be letters."
                                : Text();
}

// What another program wrote into the document's file is not overwritten unasked. A file that has
// gone is written anew.
bool Documents::mayOverwrite() {
    if (!origin_.mark || compare(services_.files, origin_.path, *origin_.mark) != Compared::Other)
        return true;
    return services_.messages.show(
               quoted(origin_.path) +
                   u" was changed by another program since it was opened here.\r\n\r\n"
                   u"Replace it with the song as it is in the editor? (Save As can keep both.)",
               kMessageTitle, MessageIcon::Question, MessageButtons::YesNo) == Answer::Yes;
}

bool Documents::writeTo(TextView path) {
    const bool isPlain = isSavedAsPlain(path);
    const PlainFile plain = isPlain ? plainDocument(editor_.text(), origin_.format, services_.ansi)
                                    : PlainFile{editor_.rtf(), origin_.format};
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
    const bool isNewEncoding = plain.format != origin_.format;
    const bool agreed = kindAgreed_ && path == origin_.path;
    setOrigin({Text(path), markOf(bytes), plain.format, {}});
    kindAgreed_ = agreed;
    lastUsed_.saved = folderPart(path);
    state_.dirty = false;
    publish();
    if (isNewEncoding)
        tellNewEncoding();
    return true;
}

std::optional<Documents::SaveTarget> Documents::askSaveTarget() {
    // kept: dialog-titles
    FileDialogRequest request{u" Save As", saveFilters(), 1, {}, {}};
    request.filterIndex = asciiLowerCase(extension_) == u"rtf" ? 2 : 1;
    request.fileName = origin_.path.empty() ? Text(kUntitled) : Text(fileNamePart(origin_.path));
    request.initialFolder =
        origin_.path.empty() ? services_.system.documentsFolder() : folderPart(origin_.path);
    const auto choice = services_.dialogs.save(request);
    if (!choice)
        return std::nullopt;
    Text path = choice->path;
    if (choice->filterIndex == 1)
        // kept: mlv-ending
        path = songName(path) + u".mlv";
    else if (choice->filterIndex == 2)
        path = songName(path) + u".rtf";
    if (services_.files.exists(path) &&
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
    callbacks_.used(origin_.path);
    return true;
}

void Documents::setOrigin(DocumentOrigin origin) {
    origin_ = std::move(origin);
    kindAgreed_ = false;
    extension_ = extensionPart(origin_.path);
}

void Documents::showTitle() {
    state_.title = (origin_.path.empty() ? Text(kUntitled) : Text(fileNamePart(origin_.path))) +
                   Text(kTitleEnd);
}

}  // namespace melvorin
