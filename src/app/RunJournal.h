// The journal of a run: which document is open, which snapshots hold its history and where in it
// the editor stands. It lies beside the snapshots and outlives a run that ends without closing, so
// that the next start can bring the document back.
//
// A text file that only grows. Its lines, each ended by LF, after the first one:
//   document SIZE HASH PATH         the open document; 0 0 without a file, the path empty
//   format ENCODING CODEPAGE LINEEND FINAL   how it is written as plain text, each a number as
//                                   TextFormat has them; without it, as a new file
//   loss TEXT                       what of the document's file the editor does not have
//   snapshot INDEX FILE CARET BACKGROUND SIZE HASH
//   song INDEX TEXT                 what is kept of the song beside that snapshot
// A later line replaces an earlier one of its kind (and index). A line that is incomplete or makes
// no sense counts as not written.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/DocumentOrigin.h"
#include "app/SnapshotHistory.h"

namespace melvorin {

// What a journal tells of its run.
struct RunState {
    DocumentOrigin origin;
    std::vector<Snapshot> snapshots{1};  // as SnapshotHistory has them
    std::int16_t current = 0;
    std::int16_t floor = 1;
    bool dirty = false;
};

// Nothing where the bytes are no journal. The snapshots' paths all lie in `folder`, whatever the
// journal says.
std::optional<RunState> replayJournal(std::string_view bytes, TextView folder);

class RunJournal {
  public:
    // `files` outlives the journal.
    explicit RunJournal(Files& files) : files_(files) {}

    // Begins the file. Where it cannot be had the run goes on without one.
    void begin();
    // Writes what has changed since the last call. Of the snapshots it looks at the current one.
    void keep(const DocumentOrigin& origin, const SnapshotHistory& history, bool dirty);
    // Writes all snapshots of a history that came from elsewhere.
    void keepAll(const SnapshotHistory& history);
    // The run ends in order; until `end`, which deletes the file, nothing of it is to be restored.
    void close();
    void end();

  private:
    static constexpr const char* kNoLoss = "loss -\n";

    void append(const std::string& lines);

    Files& files_;
    std::unique_ptr<HeldFile> file_;  // null before begin and where writing has failed
    // The last line of each kind.
    std::string document_;
    std::string format_;
    std::string loss_ = kNoLoss;
    std::string snapshot_;
    std::string song_;
    std::string state_;
};

// A run that ended without closing. While it is held, no other run can take it.
struct Remains {
    std::unique_ptr<HeldFile> journal;
    RunState state;      // `current` is the last state that can be read, 0 where none can
    bool isLast = true;  // it is the one that the editor showed at the end
};

// The runs whose document had unsaved changes, the one last changed first. What other runs left is
// removed; runs that are still going on are left alone.
std::vector<Remains> remainsOf(Files& files);
// Deletes the snapshots that still hold what the run wrote, and the journal.
void discard(Files& files, Remains remains);

}  // namespace melvorin
