// The document as the chord dictionary sees it: the selection, and diagrams put in its place. A
// chord diagram is one character in a diagram font.
#pragma once

#include "base/Editor.h"

namespace melvorin {

struct DiagramStyle {
    Text face;
    int halfPoints = 0;
    Rgb colour;

    friend bool operator==(const DiagramStyle&, const DiagramStyle&) = default;
};

// Positions are the editor's.
class DiagramEditor {
  public:
    virtual ~DiagramEditor() = default;
    virtual Selection selection() const = 0;
    virtual void select(Selection selection) = 0;
    virtual Text selectedText() const = 0;
    // Style of a selected character; where nothing is selected, of what is typed next.
    virtual DiagramStyle style() const = 0;
    // Replaces the selection by a glyph in this style and puts the caret behind it, unnoticed by
    // the change event.
    virtual void put(TextView glyph, const DiagramStyle& style) = 0;
};

}  // namespace melvorin
