// The undo history: one complete Rich Text copy of the document per step, each in a temporary
// file, with what Rich Text does not hold beside it: the caret and the background.
//
// Invariant: floor <= current <= count once the first snapshot exists. The floor is the first
// snapshot of the open document: undo never reaches the document that was open before.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/FileMark.h"
#include "base/Editor.h"
#include "base/Files.h"
#include "base/Text.h"

namespace melvorin {

// One recorded state. The path is empty where the state could not be written.
struct Snapshot {
    Text path;
    std::int32_t caret = 0;  // position in the editor
    // Behind the document, where it is not the system's: the Rich Text does not hold it.
    std::optional<Rgb> background;
    FileMark mark;           // what the file holds
    std::string songMemory;  // SongMemory::text
};

class SnapshotHistory {
  public:
    // `files` outlives the history.
    explicit SnapshotHistory(Files& files) : files_(files) {}

    enum class Outcome {
        Recorded,
        NotWritten,  // counted as a step, but without a file to go back to
        Full,        // the counters are at their end; nothing was counted
    };

    // Appends a state and makes it the current one; states that were undone are deleted first.
    Outcome record(std::string_view rtf, std::int32_t caret,
                   std::optional<Rgb> background = std::nullopt, std::string songMemory = {});
    // Writes the current state again, for a text that was not recorded; false when it cannot be.
    bool rewriteCurrent(std::string_view rtf, std::int32_t caret,
                        std::optional<Rgb> background = std::nullopt, std::string songMemory = {});
    // What is kept of the song beside the current state.
    void keepBeside(std::string songMemory) {
        snapshots_[static_cast<std::size_t>(current_)].songMemory = std::move(songMemory);
    }
    // The cause of the last NotWritten, as a sentence.
    const Text& lastFailure() const { return lastFailure_; }
    // Goes on with the history of an earlier run, whose files belong to this object from now on;
    // the states it had are deleted. The arguments obey the invariant.
    void adopt(std::vector<Snapshot> snapshots, std::int16_t current, std::int16_t floor);
    // Makes the current snapshot the floor of undo (a document has just been opened).
    void setFloor() { floor_ = current_; }

    bool canUndo() const { return current_ > floor_; }
    bool canRedo() const { return current_ < count_; }
    // The state one step back or forward; only while canUndo or canRedo holds.
    const Snapshot& previous() const { return snapshot(current_ - 1); }
    const Snapshot& next() const { return snapshot(current_ + 1); }
    const Snapshot& currentSnapshot() const { return snapshot(current_); }
    // One from 1 to `count`.
    const Snapshot& snapshot(int index) const {
        return snapshots_[static_cast<std::size_t>(index)];
    }
    void stepBack() { --current_; }
    void stepForward() { ++current_; }

    std::int16_t count() const { return count_; }
    std::int16_t current() const { return current_; }
    std::int16_t floor() const { return floor_; }

    // Deletes every snapshot file of the run (its normal end).
    void deleteAll();

  private:
    void dropRedo();
    bool writeCurrent(std::string_view rtf);

    Files& files_;
    // Index 0 is unused, so that an index is the number of a snapshot.
    std::vector<Snapshot> snapshots_ = std::vector<Snapshot>(1);
    std::int16_t count_ = 0;
    std::int16_t current_ = 0;
    std::int16_t floor_ = 1;
    Text lastFailure_;
};

}  // namespace melvorin
