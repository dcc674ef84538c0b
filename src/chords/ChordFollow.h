// Chords that follow the words: what an edit of a line of words does to the chords above it, and an
// edit of a chord line to the chords behind.
//
// The window gives the lines around an edit: kLinesAbove lines above the first one that the edit
// touches and kLinesBelow below the last one, fewer where the document ends. It gets back what is
// to be edited besides, or instead. Edit, answer and caret belong to one change of the document.
//
// What stands between two blanks of a chord line ("Am-G", "|:") is one chord here and moves whole.
// In a chord line:
// - A blank typed or deleted right in front of a chord moves that chord. Elsewhere a blank is typed
//   like a letter: it uses up one behind it, so that one can go to a place between two chords and
//   write there; Backspace over it gives it back. Delete over blanks pulls the next chord, as
//   nothing would happen otherwise.
// - Only who deletes a single blank between two chords makes one of them; whatever takes more away
//   leaves one.
// - It may be half written where somebody types in it, but something else in it has to be a chord.
//   With no words below it keeps its columns all the same.
// The reverse of the last edit gives back what that found, also where the reckoning of columns
// alone would not: a letter deleted behind a typed one and typed again.
//
// Lines whose columns mean nothing (proportional, centred, right to left) are not for these
// functions: the caller does not call. Nothing here fails, whatever the text is.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "chords/ChordStack.h"
#include "chords/PairLines.h"

namespace melvorin {

inline constexpr std::size_t kLinesAbove = 6;
inline constexpr std::size_t kLinesBelow = 4;

struct FollowAnswer {
    std::vector<FollowEdit> edits;
    std::size_t caret = 0;  // position afterwards, nothing selected
    // Nothing could be joined: the caret moves, and the document has not changed.
    bool refused = false;
};

// The one stretch in which two texts differ, both beginning at the same position. Where it could
// lie in several places, the caret behind the edit, or at it, says in which. Positions of `before`.
TextEdit differenceOf(const Excerpt& before, const Excerpt& after, std::size_t caretAfter);

// Keeps in mind what the last edits were, as edits that touch each other are one replacement of
// what stood there before the first of them: a letter deleted and typed again gives every chord its
// place back. A value; a copy is the state of that moment.
class ChordFollow {
  public:
    // The control has turned `before` into `after`, which are the same lines as far as the edit
    // left their ends alone: `after.end()` is as far from the end of the document. The answer's
    // edits are to be made in what is there now; there may be none. An answer that brings a text
    // from another place has Origin::Document, positions of `after`.
    // An input method's composition is one edit, at its end. Where as many line ends have come as
    // have gone (letter case, a text dragged to another line), each line is edited by itself.
    FollowAnswer edited(const Excerpt& before, std::size_t caretBefore, const Excerpt& after,
                        std::size_t caretAfter);
    // The same where something else has come for a selection over several lines: that is not what
    // the texts differ in, as lines may begin and end alike.
    FollowAnswer replaced(const Excerpt& before, const TextEdit& edit, std::size_t caretBefore,
                          const Excerpt& after, std::size_t caretAfter);

    // The same before the control has done anything: for Enter (`text` is "\r"), Backspace at a
    // line's start and Delete at its end, what deletes a selection over several lines, and pasting
    // over one. Backspace is known by the caret behind what goes. Nothing where the control does
    // just as well; then it shall, and `edited` hear of it.
    std::optional<FollowAnswer> instead(const Excerpt& before, const TextEdit& edit,
                                        std::size_t caretBefore);

    // Moves the chord at the caret by a cell, or to the next place of a syllable; chords behind are
    // pushed as far as need be. Nothing where there is no chord or no room on its left.
    enum class Move { CellLeft, CellRight, SyllableLeft, SyllableRight };
    std::optional<FollowAnswer> moveChord(const Excerpt& text, std::size_t caret, Move move);

    // The caret has come to this place, by a key, the mouse or an edit. Only in which line matters:
    // under chords that are already there, an empty line is filled without moving any.
    void caretAt(const Excerpt& text, std::size_t caret);

    // What comes is not part of what was before: a command was given, or the like.
    void beginAnew() {
        reckoning_ = {};
        steps_.clear();
    }
    // Another text: Undo, a load.
    void forget() { *this = {}; }

  private:
    enum class Subject { None, Words, Chords };

    // What the edits that touch each other have come to.
    struct Reckoning {
        Subject subject = Subject::None;
        std::size_t lineStart = 0;  // position of the edited line, as it is now
        std::size_t line = 0;       // its number in the lines of the last edit
        Text now;                   // the line as it is now, and those above it
        Text chordsNow;
        Text upperNow;
        bool hasUpper = false;
        // The stretch that is there now.
        std::size_t begin = 0;
        std::size_t end = 0;
        // Of words: where the stretch ended before the first edit.
        std::size_t formerEnd = 0;
        // Of chords: where each wants to stand, and for each one of the upper line, the how manieth
        // from the right its chord below is, from 1.
        std::vector<std::size_t> homes;
        std::vector<std::size_t> upperFromRight;
    };

    // The words of a reckoning and the chords above them, before the first edit.
    struct FormerPair {
        FollowLines lines;
        LinePair pair;
    };

    // An edit of the reckoning, so that its reverse is known, and what it found.
    struct Step {
        std::size_t from = 0;
        Text removed;
        std::size_t inserted = 0;
        Reckoning before;
    };

    struct Edit {
        LinePlace from;
        LinePlace to;
        FollowText incoming;
        bool backward = false;
    };

    FollowAnswer answerTo(const Excerpt& before, const TextEdit& edit, std::size_t caretBefore,
                          const Excerpt& after, std::size_t caretAfter, bool mayKeepLines);
    EditedLines follow(const FollowLines& lines, std::size_t start, const Edit& edit);
    EditedLines followLineByLine(const FollowLines& lines, std::size_t start, const Edit& edit);
    EditedLines followInLine(const FollowLines& lines, std::size_t start, const Edit& edit);
    EditedLines followWords(const FollowLines& lines, const LinePair& pair, const Edit& edit);
    EditedLines followChords(const FollowLines& lines, const Edit& edit, bool continues);
    void arrive(const FollowLines& lines, std::size_t start, std::size_t line);
    bool continues(Subject subject, const FollowLines& lines, std::size_t start,
                   const Edit& edit) const;
    bool isAt(const FollowLines& lines, std::size_t start, std::size_t line) const;
    std::optional<EditedLines> takenBack(const FollowLines& lines, std::size_t start,
                                         const Edit& edit);
    void startWords(const FollowLines& lines, const LinePair& pair, const Edit& edit);
    void startChords(const FollowLines& lines, std::size_t line);
    void addStep(const FollowLines& lines, const Edit& edit);
    void writeChordLine(FollowLines& lines, std::size_t line,
                        const std::vector<StackedChord>& chords, const FollowText& tail);
    void remember(const FollowLines& lines, std::size_t start);

    Reckoning reckoning_;
    FormerPair former_;
    std::vector<Step> steps_;               // the last ones of the reckoning
    std::optional<std::size_t> caretLine_;  // start of the line where the caret is
    bool cameToEmpty_ = false;              // which was empty, under chords
};

}  // namespace melvorin
