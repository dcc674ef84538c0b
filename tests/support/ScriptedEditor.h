// An editor without a control: text, a selection, and a list of what was formatted. Its Rich Text
// says nothing about its text; it knows what it has written itself, and `reading` tells what it
// makes of other documents.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Editor.h"

namespace melvorin {

class ScriptedEditor : public Editor {
  public:
    explicit ScriptedEditor(TextView text = {}) : chars(text) {}

    bool isEmpty() const override { return chars.empty(); }
    EditorText text() const override { return {chars}; }
    std::string rtf() const override {
        written_.push_back(chars);
        return "{\\rtf1\\opaque" + std::to_string(written_.size()) + "}";
    }
    bool loadRtf(std::string_view rtf) override {
        const std::optional<Text> read = textOf(rtf);
        if (!read)
            return false;
        chars = *read;
        selected = {};
        return true;
    }
    bool loadPlain(const EditorText& text, TextView face, int points) override {
        chars = text.chars;
        selected = {};
        done += u"plain " + font(face, points);
        return true;
    }
    void setSelectionFont(TextView face, int points) override {
        done += shown(selected) + u" in " + font(face, points);
    }
    void setSelectionFace(TextView) override {}
    void setSelectionSize(int) override {}
    void setBold(bool on) override { style.bold = on; }
    void setItalic(bool on) override { style.italic = on; }
    void setUnderline(bool on) override { style.underline = on; }
    SelectionStyle selectionStyle() const override { return style; }
    void setSelectionColour(Rgb colour) override {
        done += shown(selected) + (colour == Rgb{} ? u" black|" : u"|");
    }
    void replaceSelection(TextView text) override {
        if (shown(selected) == protectedText)
            return;
        // Like a control, it takes a position behind its text for the end.
        const auto begin = static_cast<std::size_t>(selected.begin);
        chars.replace(begin, static_cast<std::size_t>(selected.end - selected.begin), text);
        selected.begin += static_cast<std::int32_t>(text.size());
        selected.end = selected.begin;
    }
    bool replaceSelectionRtf(std::string_view rtf) override {
        const std::optional<Text> read = textOf(rtf);
        if (read)
            replaceSelection(*read);
        return read.has_value();
    }
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
    Text done;                            // what was formatted, each piece with a "|" behind it
    Text protectedText = u"not in here";  // refuses to be replaced
    // The text that is read from Rich Text; nothing where that is refused.
    std::function<std::optional<Text>(std::string_view rtf)> reading = [](std::string_view) {
        return std::optional<Text>();
    };
    SelectionStyle style;  // of any selection
    Selection selected;
    ScrollPosition scroll;
    int work = 0;

  private:
    static Text font(TextView face, int points) {
        return Text(face) + u" " + fromUtf8(std::to_string(points)) + u"|";
    }
    std::optional<Text> textOf(std::string_view rtf) const {
        for (std::size_t i = 0; i < written_.size(); ++i)
            if (rtf == "{\\rtf1\\opaque" + std::to_string(i + 1) + "}")
                return written_[i];
        return reading(rtf);
    }

    mutable std::vector<Text> written_;
};

}  // namespace melvorin
