// A control that shows a document in dark colours, for commands that know only the document's own.
#pragma once

#include "base/Editor.h"
#include "rtf/DarkColours.h"

namespace melvorin {

// While a command works, the control has the document in its own colours, so that whatever comes in
// is what would have come in there; nothing is drawn meanwhile. At the end it is dark again.
class DarkEditor : public Editor {
  public:
    // Both outlive the object. The editor shows what `colours` has darkened.
    DarkEditor(Editor& editor, DarkColours& colours) : editor_(editor), colours_(colours) {}

    bool isEmpty() const override { return editor_.isEmpty(); }
    EditorText text() const override { return editor_.text(); }
    std::string rtf() const override;
    bool loadRtf(std::string_view rtf) override;
    bool loadPlain(const EditorText& text, TextView face, int points) override;
    void setSelectionFont(TextView face, int points) override {
        editor_.setSelectionFont(face, points);
    }
    void setSelectionFace(TextView face) override { editor_.setSelectionFace(face); }
    void setSelectionSize(int halfPoints) override { editor_.setSelectionSize(halfPoints); }
    void setSelectionColour(Rgb colour) override;
    void setBold(bool on) override { editor_.setBold(on); }
    void setItalic(bool on) override { editor_.setItalic(on); }
    void setUnderline(bool on) override { editor_.setUnderline(on); }
    SelectionStyle selectionStyle() const override;
    void replaceSelection(TextView text) override { editor_.replaceSelection(text); }
    bool replaceSelectionRtf(std::string_view rtf) override;
    void sendUndo() override { editor_.sendUndo(); }
    Text faceAt(std::int32_t position) override { return editor_.faceAt(position); }
    std::optional<Selection> find(TextView what, std::int32_t from,
                                  FindOptions options) const override {
        return editor_.find(what, from, options);
    }
    std::optional<Rgb> background() const override { return editor_.background(); }
    void setBackground(std::optional<Rgb> colour) override { editor_.setBackground(colour); }
    Selection selection() const override { return editor_.selection(); }
    void select(Selection selection) override { editor_.select(selection); }
    ScrollPosition scrollPosition() const override { return editor_.scrollPosition(); }
    void scrollTo(ScrollPosition position) override { editor_.scrollTo(position); }
    void scrollCaretIntoView() override { editor_.scrollCaretIntoView(); }
    bool isInView(std::int32_t position) const override { return editor_.isInView(position); }
    void centre(std::int32_t position) override { editor_.centre(position); }
    void beginWork() override;
    void endWork() override;

  private:
    bool reload(std::string_view rtf);

    Editor& editor_;
    DarkColours& colours_;
    int work_ = 0;
    bool hasOwn_ = false;  // the control has the document in its own colours
};

}  // namespace melvorin
