// What key changes of the open song leave over: it is told in the status line, and done when asked.
#pragma once

#include <functional>
#include <vector>

#include "app/Documents.h"
#include "app/StatusLine.h"
#include "base/ProgramSettings.h"
#include "chords/DocumentKey.h"
#include "chords/KeyGoal.h"
#include "platform/RichEdit.h"

namespace melvorin {

class KeyWork {
  public:
    struct Shell {
        std::function<void(std::vector<StatusNote>)> say;
        // A command may begin; what is still open for the caret has gone.
        std::function<bool()> mayBegin;
        std::function<void(TextView key)> sayKey;
        std::function<void(OtherLines)> othersChosen;
        std::function<void(const std::exception&)> fails;
        // The commands of the menu.
        std::function<void()> undo;
        std::function<void()> tidy;
    };

    // What is given outlives the object.
    KeyWork(RichEdit& rtftext, Documents& documents, Shell shell)
        : rtftext_(rtftext), documents_(documents), shell_(std::move(shell)) {}

    void setOthers(OtherLines choice) { others_ = choice; }
    OtherLines others() const { return others_; }

    // Moves the song by so many half steps, down below 0, with accidentals of one kind or such as
    // follow its key; notes what it leaves over and what it changes without being asked to.
    void move(int steps, Spelling spelling, bool followsKey, const std::function<void()>& lineDone);
    // It has been made, and is still to be recorded: moves what else belongs to its step, and keeps
    // how far the rest is behind.
    void keyChanged(int steps);
    // How a key change would go about it.
    KeyWay way(Spelling spelling, bool followsKey) const;
    // The song with blanks for its diagrams.
    Text writing() const;
    // As a part of a step that is still to be recorded: the song tells of a capo at this fret, or
    // of none for 0, and of what it sounds in where that is known. A new line has this face.
    void writeCapo(int fret, TextView sounds, TextView face);
    // Why the chord at a position is called as it is (KeySpelling.h); empty where nothing tells.
    Text reasonAt(std::int32_t position) const;
    // Calls the notes of the song by its key, as a step of its own.
    void respell();
    // The key of the song: the one that the user has told, or what is found.
    FoundKey key() const { return keyOf(writing()); }
    // Nothing: what is found counts.
    void tellKey(std::optional<Key> key);

    // "Move Them Too": all lines and diagrams that are behind, as a step of its own.
    void moveOthers();

    // Says what there is to say about the song as it is.
    void tell();
    // The song has changed, and what was said may be untrue: `idle` sees to it.
    void songChanged() { isStale_ = true; }
    // Another song is open.
    void songReplaced();
    void idle();

  private:
    // A line that a key change took for chords.
    struct NamedLine {
        std::size_t number = 0;
        Text now;
        std::vector<RichEdit::Piece> before;
    };

    ChooseOthers chooseOthers(int steps, Spelling spelling);
    bool movesAll() const { return others_ == OtherLines::Move && !found_.hasH; }
    void moveDiagrams(Spelling spelling);
    // Of the song as writing() has it.
    FoundKey keyOf(Text song) const;
    void settleCapoLine();
    std::vector<OtherMove> behind(const LeftOver& found, TextView song) const;
    StatusNote noteOnLines(const LeftOver& found, std::vector<Selection> places);
    StatusNote::Action show(std::vector<Selection> places);
    void addNotesOnLines(std::vector<StatusNote>& notes, TextView song);
    void addNoteOnWords(std::vector<StatusNote>& notes, TextView song);
    void dropUntrue(std::vector<NamedLine>& lines, TextView song) const;
    std::vector<Selection> diagramsBehind() const;
    void putBack();
    void run(const std::function<void()>& command);
    StatusNote noteOnMisread();
    void undoMisread();

    RichEdit& rtftext_;
    Documents& documents_;
    Shell shell_;
    OtherLines others_ = OtherLines::Ask;
    Spelling spelling_ = Spelling::Sharps;
    LeftOver found_;                // by the key change that is under way
    std::vector<NamedLine> words_;  // changed by the last one
    FoundKey shownKey_;             // as the status line has it
    bool hasDiagrams_ = false;      // the song that it was found in
    // The last key change read names in another way than the song does, and whether it was undone.
    enum class Misread { No, Names, FlatB, Undone };
    Misread misread_ = Misread::No;
    Text unsure_;  // the keys that it may be, where accidentals were to follow it
    // The song for which these two hold; nothing while a command is still to be told of.
    std::optional<Text> toldOf_;
    bool isStale_ = false;
};

}  // namespace melvorin
