// The code page of a font in Rich Text: what its bytes mean.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/CodePages.h"

namespace melvorin {

// One code page, byte by byte. Only what means one UTF-16 unit, and is written with the same bytes
// again, counts: everything else is not exact.
class RtfFontPage {
  public:
    // Null where the machine has no such code page. The object lives for the whole run. Call it
    // from one thread.
    static const RtfFontPage* of(unsigned number);

    // True for a byte that is half a character, the other half being the next byte.
    bool isLead(int byte) const { return isLead_[static_cast<std::size_t>(byte & 0xFF)]; }
    // The character of one byte that is no lead byte, 0x20 or above.
    std::optional<char16_t> character(int byte) const;
    // The character of a lead byte and the one behind it.
    std::optional<char16_t> character(int lead, int trail) const;

    explicit RtfFontPage(unsigned number);

  private:
    const AnsiCodec* codec_;
    std::vector<bool> isLead_;
    // By byte, or by both bytes; 0: not looked up yet, 0xFFFF: none.
    mutable std::vector<char16_t> known_;
};

}  // namespace melvorin
