// Searching and replacing: the loop over a text and the rules of the find window.
#pragma once

#include <functional>
#include <optional>

#include "base/Editor.h"
#include "base/Services.h"
#include "chords/FollowReplace.h"

namespace melvorin {

// A text in which matches are found and replaced: the editor, or a text in memory.
class FindTarget {
  public:
    virtual ~FindTarget() = default;
    // First match at or after `from`; nothing when there is none.
    virtual std::optional<Selection> find(TextView what, std::int32_t from,
                                          FindOptions options) = 0;
    virtual void replace(Selection match, TextView with) = 0;
};

// The editor, match by match.
class EditorTarget : public FindTarget {
  public:
    explicit EditorTarget(Editor& editor) : editor_(editor) {}
    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override {
        return editor_.find(what, from, options);
    }
    void replace(Selection match, TextView with) override {
        editor_.select(match);
        editor_.replaceSelection(with);
    }

  private:
    Editor& editor_;
};

struct Replaced {
    int count = 0;
    std::int32_t nextStart = 0;  // where a further search would begin
};

// Replaces matches from the start of the text to its end. The next search begins one search text
// behind the last match's start, also where the replacement is longer; where the replacement
// contains the search text, it begins behind the replacement, so that the loop ends. `mayGoOn` is
// asked before every search; the loop ends where it says no.
Replaced replaceAll(FindTarget& target, TextView what, TextView with, FindOptions options,
                    const std::function<bool()>& mayGoOn);

// What the find window does. The window keeps the texts and the history lists; this keeps the
// place of the search. Lives as long as the window.
class FindReplace {
  public:
    struct Request {
        Text what;
        Text with;
        FindOptions options;
        bool chordsOnly = false;  // whole chords of chord lines
    };

    // Everything given outlives the object. `changed` is the document's change notification;
    // `focusEditor` moves the focus there.
    FindReplace(Editor& editor, MessageBoxes& messages, ReplaceFollower& chords,
                std::function<void()> changed, std::function<void()> focusEditor)
        : editor_(editor),
          messages_(messages),
          chords_(chords),
          changed_(std::move(changed)),
          focusEditor_(std::move(focusEditor)) {}

    // Selects the next match in the editor, never wrapping; without one it says so, and the next
    // call begins at the top. True when there was a match.
    bool findNext(const Request& request);
    // Replaces what is selected, whatever it is, or else the next match.
    void replaceOne(const Request& request);
    // `pump` lets waiting messages run, every few matches.
    void replaceEach(const Request& request, const std::function<void()>& pump);
    // Ends a running replaceEach at its next match.
    void stop() { stop_ = true; }
    bool isBusy() const { return busy_; }
    // The window is opened anew: the next search begins at the top.
    void reset() { nextStart_ = 0; }

  private:
    std::optional<Selection> nextMatch(const Request& request);
    std::optional<Replaced> replaceTogether(const Request& request,
                                            const std::function<bool()>& mayGoOn);
    Replaced replaceOneByOne(const Request& request, const std::function<bool()>& mayGoOn);

    Editor& editor_;
    MessageBoxes& messages_;
    ReplaceFollower& chords_;
    std::function<void()> changed_;
    std::function<void()> focusEditor_;
    std::int32_t nextStart_ = 0;
    bool busy_ = false;
    bool stop_ = false;
};

// Whether a search text is one: it holds something besides blanks.
bool isSearchText(TextView what);

// "  ... document       ", a line break and how many items were replaced.
Text replacedMessage(int count);

}  // namespace melvorin
