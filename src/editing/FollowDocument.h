// The document of the rich-text control as the functions of chords that follow want it: lines with
// the cells of their diagrams, and edits whose text brings its formats along.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "chords/ChordFollow.h"
#include "platform/RichEdit.h"
#include "rtf/MappedDocument.h"

namespace melvorin {

inline std::size_t sizeOf(std::int32_t number) {
    return number < 0 ? 0 : static_cast<std::size_t>(number);
}

inline std::int32_t positionOf(std::size_t number) {
    return static_cast<std::int32_t>(number);
}

class FollowDocument {
  public:
    // `textFont` is what blanks beside a diagram are written in. The editor outlives the object.
    FollowDocument(RichEdit& editor, std::function<RichEdit::TypingFormat()> textFont)
        : editor_(editor), textFont_(std::move(textFont)) {}

    // The lines that a range touches, kLinesAbove above them and kLinesBelow below. Nothing where
    // columns mean nothing: in a table.
    std::optional<Excerpt> linesAround(Selection range);
    // The lines from a place on, down to the end of the document or to what is no song.
    std::optional<Excerpt> linesFrom(std::int32_t position);
    // Neither a table nor a formula.
    static bool isPlain(TextView text);
    // Nothing where there are too many to look at.
    std::optional<std::vector<DiagramCells>> diagramsIn(const Excerpt& text);
    // The same behind a key, which turned `before`, whose diagrams were asked for, into `after`.
    std::optional<std::vector<DiagramCells>> diagramsAfterKey(const Excerpt& before,
                                                              const Excerpt& after,
                                                              std::size_t caret);
    // The diagrams in the lines that edits touch, and two lines above and below them; nothing where
    // that is not known.
    std::optional<std::vector<DiagramCells>> diagramsNear(MappedDocument& document,
                                                          const std::vector<TextEdit>& edits);
    // The cells of diagrams at these positions, measured by the letter at `letter`, which is no
    // diagram; -1 where there is none.
    std::vector<DiagramCells> cellsOf(const std::vector<std::size_t>& diagrams,
                                      std::int32_t letter);

    // Whether the lines that the edits touch go from left to right, at the left, in monospaced
    // letters. `text` is around them.
    bool mayFollow(const std::vector<FollowEdit>& edits, const Excerpt& text);
    // The same for lines of the document, beginning and ending with them.
    bool mayFollow(TextView lines, Selection range);

    // Whether that is so for the whole document, without a closer look than one.
    bool mayAllFollow(TextView text);

    // Makes the edits and puts the caret; no event may come meanwhile. What is Incoming takes its
    // formats from `incoming`, the text that its indices count in.
    void make(const FollowAnswer& answer, const std::vector<RichEdit::Piece>& incoming = {});
    // The same, drawn at the end, with no event of it.
    void makeUnseen(const FollowAnswer& answer, const std::vector<RichEdit::Piece>& incoming = {});

    // Only some blanks come or go in a line: the control draws that as it draws what is typed.
    static bool isSmall(const FollowAnswer& answer);

    // Another document has come, or the caret to another place: the formats may be others.
    void forgetDiagrams() {
        hasDiagrams_.reset();
        known_.reset();
    }
    void forgetPlace() {
        trusted_.reset();
        known_.reset();
    }

  private:
    std::optional<std::vector<DiagramCells>> lookForDiagrams(const Excerpt& text);
    std::optional<Excerpt> withDiagrams(Excerpt text);
    std::int32_t startAbove(std::int32_t position) const;
    bool hasDiagrams();
    void insert(const FollowEdit& edit, const std::vector<RichEdit::Piece>& pieces);

    RichEdit& editor_;
    std::function<RichEdit::TypingFormat()> textFont_;
    std::optional<bool> hasDiagrams_;  // nothing: to be looked up
    // The lines that were looked at last, with their diagrams, as they are now.
    std::optional<Excerpt> known_;
    // Where lines begin that are known to be such as chords follow in, while the caret is there.
    std::optional<std::size_t> trusted_;
};

}  // namespace melvorin
