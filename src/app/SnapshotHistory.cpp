#include "app/SnapshotHistory.h"

#include <limits>
#include <utility>

namespace melvorin {
namespace {

constexpr TextView kPrefix = u"bb";
// kept: history-limit
constexpr std::int16_t kMostSnapshots = std::numeric_limits<std::int16_t>::max();

}  // namespace

void SnapshotHistory::dropRedo() {
    for (int index = current_ + 1; index <= count_; ++index) {
        const Snapshot& undone = snapshot(index);
        if (!undone.path.empty() && files_.exists(undone.path))
            files_.remove(undone.path);
    }
    snapshots_.resize(static_cast<std::size_t>(current_) + 1);
    count_ = current_;
}

SnapshotHistory::Outcome SnapshotHistory::record(std::string_view rtf, std::int32_t caret,
                                                 std::optional<Rgb> background,
                                                 std::string songMemory) {
    if (current_ != count_)
        dropRedo();
    if (count_ == kMostSnapshots)
        return Outcome::Full;
    ++count_;
    current_ = count_;
    snapshots_.push_back({{}, caret, background, {}, std::move(songMemory)});

    return writeCurrent(rtf) ? Outcome::Recorded : Outcome::NotWritten;
}

// Writes the file of the current snapshot, a new one, so that a failure spoils none that is there.
bool SnapshotHistory::writeCurrent(std::string_view rtf) {
    const Result<Text> name = files_.createTemporary(kPrefix);
    if (!name) {
        lastFailure_ = name.cause;
        return false;
    }
    const Result<Done> written = files_.write(*name.value, rtf);
    if (!written) {
        files_.remove(*name.value);
        lastFailure_ = written.cause;
        return false;
    }
    Snapshot& snapshot = snapshots_[static_cast<std::size_t>(current_)];
    if (!snapshot.path.empty())
        files_.remove(snapshot.path);
    snapshot.path = *name.value;
    snapshot.mark = markOf(rtf);
    return true;
}

bool SnapshotHistory::rewriteCurrent(std::string_view rtf, std::int32_t caret,
                                     std::optional<Rgb> background, std::string songMemory) {
    if (!writeCurrent(rtf))
        return false;
    Snapshot& snapshot = snapshots_[static_cast<std::size_t>(current_)];
    snapshot.caret = caret;
    snapshot.background = background;
    snapshot.songMemory = std::move(songMemory);
    return true;
}

void SnapshotHistory::adopt(std::vector<Snapshot> snapshots, std::int16_t current,
                            std::int16_t floor) {
    deleteAll();
    snapshots_ = std::move(snapshots);
    count_ = static_cast<std::int16_t>(snapshots_.size() - 1);
    current_ = current;
    floor_ = floor;
}

void SnapshotHistory::deleteAll() {
    for (Snapshot& snapshot : snapshots_) {
        if (!snapshot.path.empty())
            files_.remove(snapshot.path);
        snapshot.path.clear();
    }
}

}  // namespace melvorin
