// Chords that follow the words in the rich-text control: what the user does there goes to the
// functions of ChordFollow.h, and what they answer into the document, as part of the same change.
// Typing in a line of a tablature takes the place of what stands there.
#pragma once

#include <functional>
#include <optional>

#include "base/Keys.h"
#include "chords/ChordFollow.h"
#include "chords/ChordKeys.h"
#include "chords/FollowReplace.h"
#include "editing/FollowDocument.h"
#include "tablature/TabOvertype.h"

namespace melvorin {

class ChordFollower : public EditObserver, public ReplaceFollower {
  public:
    // `textFont` is what blanks beside a diagram are written in. The editor outlives the object and
    // hears from now on.
    ChordFollower(RichEdit& editor, std::function<RichEdit::TypingFormat()> textFont);

    // Off, nothing follows, and no key means anything here.
    void setOn(bool on);
    bool isOn() const { return on_; }

    // A key goes down in the editor; true when it is dealt with.
    bool onKeyDown(const KeyStroke& stroke);
    // A character was typed; true when it is dealt with.
    bool onCharacter(char16_t character);
    // Selects the chord at a place of the control, in pixels; false where there is none.
    bool selectChordAt(POINT point);
    // The selection is another one.
    void caretMoved();
    // A command is to run: what a visit to the chords has put in goes.
    void commandBegins();
    // Runs a change of the document at the selection, and lets the chords follow. Whoever calls
    // tells of the change. `keepsLines`: each line stays itself, as when letters change their case.
    void around(const std::function<void()>& change, bool keepsLines);

    void begin() override { commandBegins(); }
    void around(const std::function<void()>& change) override { around(change, false); }
    std::optional<std::vector<FollowEdit>> follow(
        MappedDocument& document, const std::vector<TextEdit>& replacements) override;
    void make(const std::vector<FollowEdit>& edits) override;

    void editBegins(Selection selected, std::int32_t length) override;
    bool editEnds(Selection selected, std::int32_t length) override;

  private:
    struct Before {
        Excerpt text;
        Selection selected;
        std::int32_t length = 0;
    };
    static std::optional<TextEdit> replacedLines(const Before& before, const Excerpt& after);
    // The follower itself changes text or selection while one lives.
    class Own;

    bool moveChord(ChordFollow::Move move);
    bool goTo(const ChordVisit& next, const std::optional<FollowAnswer>& answer,
              const Excerpt& from);
    bool change(const TabChange& edit, std::size_t lineStart);
    bool eraseInTab(TabErase key);
    struct TabPlace {
        Text line;
        std::size_t start = 0;  // position of the line
        std::size_t begin = 0;  // the selection in it
        std::size_t end = 0;
    };
    std::optional<TabPlace> tabPlace() const;
    bool leaveVisit(Selection caret);
    void endVisit(Selection caret);
    void noticeLoad();
    void forget();

    RichEdit& editor_;
    FollowDocument document_;
    ChordFollow follow_;
    ChordVisit visit_;
    std::optional<Before> before_;
    HWND known_ = nullptr;         // the control whose document this knows
    std::int32_t caretLine_ = -1;  // where the caret was last
    bool on_ = false;
    bool own_ = false;
    bool keepsLines_ = false;
    bool swallows_ = false;  // the character of a key that was dealt with
};

}  // namespace melvorin
