// Searching for chords and for nothing else.
#pragma once

#include <functional>
#include <optional>

#include "find/FindReplace.h"
#include "rtf/MappedDocument.h"

namespace melvorin {

// Whether a stretch of a document is a whole chord of a chord line (see isWholeChord); diagrams are
// no writing. The document outlives the object.
class WholeChords {
  public:
    explicit WholeChords(MappedDocument& document) : document_(document) {}
    bool operator()(std::size_t begin, std::size_t length) const;

  private:
    MappedDocument& document_;
};

// The matches of another target that are wanted. Both outlive the object.
class WantedMatches : public FindTarget {
  public:
    using IsWanted = std::function<bool(Selection match)>;
    WantedMatches(FindTarget& target, IsWanted isWanted)
        : target_(target), isWanted_(std::move(isWanted)) {}

    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override;
    void replace(Selection match, TextView with) override { target_.replace(match, with); }

  private:
    FindTarget& target_;
    IsWanted isWanted_;
};

}  // namespace melvorin
