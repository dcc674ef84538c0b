// Replacements all over a song, as Replace All makes them, with the chord lines set afterwards:
// what follows the words does so as if each match had been replaced by hand.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "chords/ChordFollow.h"
#include "rtf/MappedDocument.h"

namespace melvorin {

// `replacements` in the order of the text, without overlap, in positions of `before`, the whole
// text. The result holds them and what the chord lines need besides, as edits of `before`; it is
// the new text for applyEdits. A replacement that takes or brings a line end is made as it is. In a
// chord line every chord keeps its column as far as there is room, so blanks there stay what they
// are, whatever is replaced in them. `mayFollow` is asked for each pair that something is replaced
// in, with the positions where its lines begin and end: where columns mean nothing there, what is
// replaced is all that changes.
using MayFollow = std::function<bool(std::size_t begin, std::size_t end)>;
std::vector<FollowEdit> followReplacements(const Excerpt& before,
                                           const std::vector<TextEdit>& replacements,
                                           const MayFollow& mayFollow = {});

// Hears of replacements in a document and lets its chords follow. This one lets none.
class ReplaceFollower {
  public:
    virtual ~ReplaceFollower() = default;
    // A command that changes the document begins.
    virtual void begin() {}
    // Runs a change at the selection, and what follows it.
    virtual void around(const std::function<void()>& change) { change(); }
    // `replacements` in the order of the text, without overlap, with what comes of them besides,
    // all in positions of the document; nothing where nothing follows.
    virtual std::optional<std::vector<FollowEdit>> follow(
        MappedDocument& /*document*/, const std::vector<TextEdit>& /*replacements*/) {
        return std::nullopt;
    }
    // Makes in the document what `follow` gave, edit by edit.
    virtual void make(const std::vector<FollowEdit>& /*edits*/) {}
};

}  // namespace melvorin
