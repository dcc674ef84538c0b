// Chord diagrams in the editing control.
#pragma once

#include "dictionary/DiagramEditor.h"
#include "platform/RichEdit.h"

namespace melvorin {

class RichEditDiagrams : public DiagramEditor {
  public:
    // `editor` outlives the object.
    explicit RichEditDiagrams(RichEdit& editor) : editor_(editor) {}

    Selection selection() const override { return editor_.selection(); }
    void select(Selection selection) override { editor_.select(selection); }
    Text selectedText() const override { return editor_.textBetween(editor_.selection()); }
    DiagramStyle style() const override;
    void put(TextView glyph, const DiagramStyle& style) override;
    // Selects the diagram at a place of the control, in pixels: two side by side are two words.
    // False where there is none.
    bool selectAt(POINT point);
    // The style of what is typed next at the caret, until that moves.
    void typeIn(const DiagramStyle& style);

  private:
    RichEdit& editor_;
};

}  // namespace melvorin
