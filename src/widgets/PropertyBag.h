// Where a control keeps its settings between runs: named values, all as text. A number is decimal,
// a flag 0 or 1, a colour "&H" and eight hexadecimal digits.
#pragma once

#include <cstdint>
#include <map>

#include "base/Text.h"

namespace melvorin {

// A colour as windows keep it: with the top bit set, the low 24 bits index the system's colour
// table; any other value is red, green and blue from the lowest byte up.
using SystemOrRgb = std::uint32_t;

class PropertyBag {
  public:
    virtual ~PropertyBag() = default;
    // `fallback` where nothing of that name is stored.
    virtual Text read(TextView name, TextView fallback) = 0;
    // A value that equals `fallback`, which every reader will name, need not be stored.
    virtual void write(TextView name, TextView value, TextView fallback) = 0;

    // The same for the other kinds of value. What is stored but is none of its kind counts as
    // missing.
    std::int32_t readNumber(TextView name, std::int32_t fallback);
    void writeNumber(TextView name, std::int32_t value, std::int32_t fallback);
    bool readFlag(TextView name, bool fallback) { return readNumber(name, fallback ? 1 : 0) != 0; }
    SystemOrRgb readColour(TextView name, SystemOrRgb fallback);
    void writeColour(TextView name, SystemOrRgb value, SystemOrRgb fallback);
};

// A bag that is one text: a line "Name=value" for each value, by name; in a value, "\\" stands for
// a backslash, "\r" and "\n" for the ends of lines.
class TextPropertyBag : public PropertyBag {
  public:
    TextPropertyBag() = default;
    // Lines of another form are passed over; of two with one name the later counts.
    explicit TextPropertyBag(TextView text);
    Text text() const;

    Text read(TextView name, TextView fallback) override;
    void write(TextView name, TextView value, TextView fallback) override;

  private:
    std::map<Text, Text, std::less<>> values_;
};

}  // namespace melvorin
