// Stand-ins for the tests of the chord dictionary.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dictionary/DiagramEditor.h"
#include "dictionary/Recordset.h"

namespace melvorin::testing {

// A database that holds one table, or cannot be opened where there is none.
class ScriptedRows : public RowSource {
  public:
    explicit ScriptedRows(std::optional<Table> table) : table_(std::move(table)) {}
    Result<Done> open(TextView) override {
        return table_ ? Result<Done>::success({}) : Result<Done>::failure(u"No provider.");
    }
    Result<Table> read(TextView) override {
        return table_ ? Result<Table>::success(*table_) : Result<Table>::failure(u"");
    }

  private:
    std::optional<Table> table_;
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

}  // namespace melvorin::testing
