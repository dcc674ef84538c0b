// The open document: its path and title, New, Open, Save and Save As, whether it has unsaved
// changes, and the undo history. Everything the shell shows about it is one ShellState.
#pragma once

#include <functional>

#include "app/DocumentFile.h"
#include "app/RunJournal.h"
#include "app/ShellState.h"
#include "app/SnapshotHistory.h"
#include "app/SongMemory.h"
#include "base/Editor.h"
#include "base/Services.h"

namespace melvorin {

// Folders and extension last used in this run. Written at a cancelled close, never read back.
struct LastUsedPaths {
    Text saved;
    Text opened;
    Text openedExtension;
};

// How a run ends.
enum class RunEnd {
    Closed,           // by the close sequence, which has asked about unsaved changes
    SessionAnswered,  // with the user's session, after the same question
    SessionCut,       // with the user's session, and nobody could answer
    Screen,           // because the screen is one that the program does not support
};
// Unsaved changes stay on disk, and the next start offers them.
constexpr bool keepsChanges(RunEnd how) {
    return how == RunEnd::SessionCut || how == RunEnd::Screen;
}

class Documents {
  public:
    struct Callbacks {
        std::function<void(const ShellState&)> stateChanged;
        // A document was opened or saved under a new name.
        std::function<void(TextView path)> used;
        // Another document has taken the place of the one before.
        std::function<void()> replaced;
        // The user says in which way a text file is to be read; nothing to leave it alone.
        std::function<std::optional<std::size_t>(TextView path,
                                                 const std::vector<CodePageReading>& readings)>
            chooseReading;
    };

    // Everything given outlives the object.
    Documents(const Services& services, Editor& editor, Callbacks callbacks);

    // --- Start of the run ---
    // Loads the start-up document from the program's resource, through a temporary file.
    void loadTemplate();
    // The first snapshot: nothing can be undone, an empty document is clean.
    void begin();
    // Opens the document named on the command line, if one is.
    void openFromCommandLine(TextView commandLine);
    // Offers what earlier runs left that ended without closing, and brings back the document that
    // the user takes, its undo history included. Nothing where the user has begun to work already.
    void recover();

    // --- Commands. Each asks about unsaved changes where it would lose them. ---
    void newDocument();
    void open();
    // Opens a document by its path, as a click in the recent list does. `remember` adds it to
    // that list. False when it could not be opened; then nothing has changed.
    bool openPath(TextView path, bool remember);
    // Shows a document that ships with the program as an untitled one, so that saving cannot
    // change the shipped file; whoever calls has asked mayLeave. False when it could not be opened.
    bool openExample(TextView path);
    // True when the document is saved afterwards.
    bool save();
    bool saveAs();

    // The document may be left: it is clean, the user let it go, or it has just been saved.
    bool mayLeave();
    // As mayLeave, for closing the program: where the window stays open, the last-used paths go
    // to the settings store.
    bool mayClose();

    // --- Changes ---
    // The change notification: called once after every command that changed the document, and
    // by the editor's own change event. Where the document is what the current snapshot holds,
    // nothing has changed and nothing is recorded.
    void changed();
    // What is kept of the song beside its text. It goes with the document through edits, undo
    // and a recovery; whoever changes it tells so before `changed`.
    const SongMemory& songMemory() const { return songMemory_; }
    void changeSongMemory(const std::function<void(SongMemory&)>& change);
    // Keeps it with the state as it is, where nothing else has changed.
    void keepSongMemory();
    // False where nothing has changed.
    bool undo();
    bool redo();
    // Called while nothing else happens: the key buttons come back where there is text to change.
    void idle();
    // The key commands are switched off while a key change or another job on the song is under way.
    void beginKeyWork();
    void endKeyWork();
    // Deletes what the run keeps on disk, or leaves it for the next start: the one place that
    // decides about it.
    void endRun(RunEnd how);

    const ShellState& state() const { return state_; }
    const Text& path() const { return origin_.path; }
    const SnapshotHistory& history() const { return history_; }

  private:
    static constexpr TextView kUntitled = u"Chord Notation";

    struct SaveTarget {
        Text path;
        int filterIndex;
    };

    void publish();
    void markChanged();
    void record();
    void record(const std::string& rtf);
    bool isRecorded(const std::string& rtf) const;
    void markRecorded(const std::string& rtf);
    FileMark markOfText() const;
    void followSongMemory();
    void startHistory();
    void showTitle();
    void setOrigin(DocumentOrigin origin);
    bool load(TextView path);
    std::optional<DocumentOrigin> showFile(TextView path);
    void keepLegible();
    bool confirmLargeFile(TextView path, std::uint64_t size);
    bool showContent(const DocumentContent& content);
    Text withItsEnding(TextView path);
    Answer askAboutKind();
    Text changeOfKind();
    void tellLoss();
    void tellDamage();
    void tellNewEncoding();
    bool mayOverwrite();
    bool writeTo(TextView path);
    std::optional<SaveTarget> askSaveTarget();
    bool mayLeaveScreenText();
    void restore(const Snapshot& snapshot, std::int32_t changedAt);
    bool showSnapshot(const Snapshot& snapshot);
    void keepJournal();
    static Text nameOf(const RunState& run);
    bool wants(const Remains& remains);
    bool bringBack(RunState run);
    bool fail(TextView what, TextView path, TextView cause);

    Services services_;
    Editor& editor_;
    Callbacks callbacks_;
    SnapshotHistory history_;
    RunJournal journal_;
    ShellState state_;
    DocumentOrigin origin_;
    bool kindAgreed_ = false;  // the user lets Save make the file another kind of file
    Text extension_;
    LastUsedPaths lastUsed_;
    bool unrecorded_ = false;  // what the editor shows is in no snapshot
    FileMark recorded_;        // of the Rich Text that the editor gives for the current one
    SongMemory songMemory_;
    Text memoryText_;               // the text whose lines it counts, where something is owed
    FileMark recordedText_;         // and of its text: some controls do not write all they show
    bool recordingFailed_ = false;  // reported already, until a snapshot succeeds again
    bool historyFull_ = false;
};

}  // namespace melvorin
