#include "rtf/RtfFontPage.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace melvorin {
namespace {

constexpr char16_t kNone = 0xFFFF;

// The first bytes of two, as pairs of first and last.
struct LeadRange {
    unsigned page;
    int first;
    int last;
};
constexpr auto kLeads = std::to_array<LeadRange>({{932, 0x81, 0x9F},
                                                  {932, 0xE0, 0xFC},
                                                  {936, 0x81, 0xFE},
                                                  {949, 0x81, 0xFE},
                                                  {950, 0x81, 0xFE},
                                                  {1361, 0x84, 0xD3},
                                                  {1361, 0xD8, 0xDE},
                                                  {1361, 0xE0, 0xF9}});

char16_t lookedUp(const AnsiCodec& codec, const std::string& bytes) {
    const Text text = codec.decode(bytes);
    return text.size() == 1 && codec.encode(text) == bytes ? text[0] : kNone;
}

}  // namespace

RtfFontPage::RtfFontPage(unsigned number)
    : codec_(codePage(number)), isLead_(0x100, false), known_(0x100, 0) {
    for (const LeadRange& range : kLeads) {
        if (range.page == number)
            std::fill(isLead_.begin() + range.first, isLead_.begin() + range.last + 1, true);
        if (range.page == number)
            known_.resize(0x10000, 0);
    }
}

const RtfFontPage* RtfFontPage::of(unsigned number) {
    static std::map<unsigned, RtfFontPage> pages;
    const RtfFontPage& page = pages.try_emplace(number, number).first->second;
    return page.codec_ == nullptr ? nullptr : &page;
}

std::optional<char16_t> RtfFontPage::character(int byte) const {
    // Every code page of a font has ASCII below, whatever else some tables say of a backslash.
    if (byte < 0x80)
        return static_cast<char16_t>(byte);
    char16_t& known = known_[static_cast<std::size_t>(byte)];
    if (known == 0)
        known = isLead(byte) ? kNone : lookedUp(*codec_, std::string(1, static_cast<char>(byte)));
    return known == kNone ? std::nullopt : std::optional(known);
}

std::optional<char16_t> RtfFontPage::character(int lead, int trail) const {
    char16_t& known =
        known_[static_cast<std::size_t>(lead) * 0x100 + static_cast<std::size_t>(trail)];
    if (known == 0)
        known = lookedUp(*codec_, {static_cast<char>(lead), static_cast<char>(trail)});
    return known == kNone ? std::nullopt : std::optional(known);
}

}  // namespace melvorin
