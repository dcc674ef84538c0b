// The undo history of the open document, and what an earlier run left of one.
#include "app/Documents.h"
#include "base/Paths.h"
#include "rtf/EditCommands.h"

namespace melvorin {

// ---- Changes ----------------------------------------------------------------------------------

void Documents::record() {
    // Until it is: the editor may fail to give its text.
    unrecorded_ = true;
    record(editor_.rtf());
}

void Documents::record(const std::string& rtf) {
    unrecorded_ = true;
    markRecorded(rtf);
    followSongMemory();
    switch (
        history_.record(rtf, editor_.selection().begin, editor_.background(), songMemory_.text())) {
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

void Documents::followSongMemory() {
    if (songMemory_.owesNothing())
        return;
    Text now = editor_.text().chars;
    songMemory_.edited(memoryText_, now);
    memoryText_ = std::move(now);
}

void Documents::changeSongMemory(const std::function<void(SongMemory&)>& change) {
    followSongMemory();
    change(songMemory_);
    memoryText_ = editor_.text().chars;
}

void Documents::keepSongMemory() {
    history_.keepBeside(songMemory_.text());
    keepJournal();
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

FileMark Documents::markOfText() const {
    const Text text = editor_.text().chars;
    return markOf({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
}

void Documents::markRecorded(const std::string& rtf) {
    recorded_ = markOf(rtf);
    recordedText_ = markOfText();
}

bool Documents::isRecorded(const std::string& rtf) const {
    return !unrecorded_ && !history_.currentSnapshot().path.empty() && recorded_ == markOf(rtf) &&
           recordedText_ == markOfText() &&
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
        markRecorded(editor_.rtf());
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
    songMemory_ = SongMemory::parse(snapshot.songMemory);
    memoryText_ = editor_.text().chars;
    return true;
}

// Text that no snapshot holds would be gone after a step, so it is written now or asked about.
bool Documents::mayLeaveScreenText() {
    if (!unrecorded_)
        return true;
    followSongMemory();
    if (history_.rewriteCurrent(editor_.rtf(), editor_.selection().begin, editor_.background(),
                                songMemory_.text()) ||
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

void Documents::beginKeyWork() {
    state_.keyButtons = false;
    state_.keyCommands = false;
    publish();
}

void Documents::endKeyWork() {
    state_.keyButtons = !editor_.isEmpty();
    state_.keyCommands = true;
    publish();
}

void Documents::endRun(RunEnd how) {
    if (state_.dirty && keepsChanges(how)) {
        // The last of them may be in no snapshot yet.
        if (unrecorded_ && history_.rewriteCurrent(editor_.rtf(), editor_.selection().begin,
                                                   editor_.background(), songMemory_.text()))
            keepJournal();
        return;
    }
    journal_.close();
    history_.deleteAll();
    journal_.end();
}

// ---- After a run that ended without closing ---------------------------------------------------

Text Documents::nameOf(const RunState& run) {
    return quoted(run.origin.path.empty() ? kUntitled : fileNamePart(run.origin.path));
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
    if (!origin_.path.empty())
        question += u"\r\n\r\nWith Yes it takes the place of " +
                    quoted(fileNamePart(origin_.path)) + u", which is not changed.";
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
    setOrigin(std::move(run.origin));
    lastUsed_.opened = folderPart(origin_.path);
    lastUsed_.openedExtension = extension_;
    showTitle();
    history_.adopt(std::move(run.snapshots), run.current, run.floor);
    journal_.keepAll(history_);
    unrecorded_ = false;
    markRecorded(editor_.rtf());
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
