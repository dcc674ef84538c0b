// An editor without a control.
#pragma once

#include "base/Editor.h"

namespace melvorin::testing {

// An editor whose Rich Text says nothing about its text, so that lines are edited one by one.
class OpaqueEditor : public Editor {
  public:
    explicit OpaqueEditor(TextView text) : chars(text), first_(text) {}

    bool isEmpty() const override { return chars.empty(); }
    EditorText text() const override { return {chars}; }
    std::string rtf() const override { return "{\\rtf1\\opaque}"; }
    bool loadRtf(std::string_view rtf) override {
        selected = {};
        chars = rtf == this->rtf() ? first_ : Text();
        return true;
    }
    bool loadPlain(const EditorText&, TextView, int) override { return false; }
    void setSelectionFont(TextView, int) override {}
    void setSelectionFace(TextView) override {}
    void setSelectionSize(int) override {}
    std::optional<Text> selectionFace() const override { return std::nullopt; }
    void setSelectionColour(Rgb) override { coloured += shown(selected) + u"|"; }
    void replaceSelection(TextView text) override {
        if (shown(selected) == protectedText)
            return;
        chars.replace(static_cast<std::size_t>(selected.begin),
                      static_cast<std::size_t>(selected.end - selected.begin), text);
    }
    bool replaceSelectionRtf(std::string_view) override { return false; }
    void sendUndo() override {}
    Text faceAt(std::int32_t) override { return u"Courier New"; }
    std::optional<Selection> find(TextView, std::int32_t, FindOptions) const override {
        return std::nullopt;
    }
    std::optional<Rgb> background() const override { return std::nullopt; }
    void setBackground(std::optional<Rgb>) override {}
    Selection selection() const override { return selected; }
    void select(Selection selection) override { selected = selection; }
    ScrollPosition scrollPosition() const override { return scroll; }
    void scrollTo(ScrollPosition position) override { scroll = position; }
    void scrollCaretIntoView() override {}
    bool isInView(std::int32_t) const override { return true; }
    void centre(std::int32_t) override {}
    void beginWork() override { ++work; }
    void endWork() override { --work; }

    Text shown(Selection range) const {
        return chars.substr(static_cast<std::size_t>(range.begin),
                            static_cast<std::size_t>(range.end - range.begin));
    }

    Text chars;
    Text coloured;                        // the pieces, last line first
    Text protectedText = u"not in here";  // refuses to be replaced
    Selection selected;
    ScrollPosition scroll;
    int work = 0;

  private:
    Text first_;
};

}  // namespace melvorin::testing
