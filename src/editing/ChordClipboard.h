// The chords of one verse on their way to another, by way of the clipboard: Copy Chords and Paste
// Chords.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "base/Services.h"
#include "chords/CopyChords.h"
#include "editing/FollowDocument.h"

namespace melvorin {

class ChordClipboard {
  public:
    // `textFont` as for FollowDocument. Editor and clipboard outlive the object.
    ChordClipboard(RichEdit& editor, Clipboard& clipboard,
                   std::function<RichEdit::TypingFormat()> textFont)
        : editor_(editor), clipboard_(clipboard), document_(editor, std::move(textFont)) {}

    // Whether the selection has chords to take, and lines of words to put those over that are on
    // the clipboard.
    bool mayCopy();
    bool mayPaste();

    // Takes the chord lines of the selection: they are on the clipboard as text, and with what they
    // stood over in here, as long as nothing else is put there. Fails with a sentence.
    Result<Done> copy();

    // Puts them over the words at the selection; other chord lines that are on the clipboard, by
    // the words below them there, or by their columns where they have none. How many found no line
    // of words, or a sentence where the document is as it was. No event may come meanwhile.
    Result<std::size_t> paste();

  private:
    struct Taken {
        CopiedChords chords;
        std::vector<RichEdit::Piece> formats;  // of chords.chords; none where it has none
    };

    CopiedChords selected();
    Taken onClipboard();
    std::optional<Excerpt> wordsAtSelection();

    RichEdit& editor_;
    Clipboard& clipboard_;
    FollowDocument document_;
    Taken own_;
};

}  // namespace melvorin
