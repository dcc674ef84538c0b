// Stand-ins for the tests of the chord dictionary.
#pragma once

#include <string>
#include <vector>

#include "base/Services.h"
#include "dictionary/DiagramEditor.h"

namespace melvorin::testing_support {

struct Box {
    std::string text;
    std::string title;
    MessageIcon icon;
};

class RecordedMessages : public MessageBoxes {
  public:
    Answer show(TextView text, TextView title, MessageIcon icon, MessageButtons) override {
        boxes.push_back({toUtf8(text), toUtf8(title), icon});
        return Answer::Ok;
    }

    std::vector<Box> boxes;
};

// One line of characters, each with its style.
class LineOfDiagrams : public DiagramEditor {
  public:
    LineOfDiagrams(TextView text, const DiagramStyle& style)
        : text_(text), styles_(text.size(), style), typing_(style) {}

    Selection selection() const override { return selection_; }
    void select(Selection selection) override { selection_ = selection; }
    Text selectedText() const override { return text_.substr(begin(), length()); }
    DiagramStyle style() const override { return length() > 0 ? styles_[begin()] : typing_; }
    void put(TextView glyph, const DiagramStyle& style) override {
        text_.replace(begin(), length(), glyph);
        const auto first = styles_.begin() + selection_.begin;
        const auto place = styles_.erase(first, first + (selection_.end - selection_.begin));
        styles_.insert(place, glyph.size(), style);
        selection_.begin += static_cast<std::int32_t>(glyph.size());
        selection_.end = selection_.begin;
        typing_ = style;
    }

    const Text& text() const { return text_; }
    const DiagramStyle& at(std::size_t position) const { return styles_[position]; }

  private:
    std::size_t begin() const { return static_cast<std::size_t>(selection_.begin); }
    std::size_t length() const {
        return static_cast<std::size_t>(selection_.end - selection_.begin);
    }

    Text text_;
    std::vector<DiagramStyle> styles_;
    Selection selection_;
    DiagramStyle typing_;
};

}  // namespace melvorin::testing_support
