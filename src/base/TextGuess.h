// Texts that do not say in which code page they are: whether it may be another than the machine's,
// and what they are in each.
#pragma once

#include <string_view>
#include <vector>

#include "base/Text.h"
#include "base/TextCodec.h"

namespace melvorin {

// The code pages in which a text that is not Unicode was most likely written, the likeliest first:
// 932, 20932, 936, 949 or 950 where the bytes spell kana, Hangul or everyday ideographs, 1251 or
// 20866 where they spell whole Cyrillic words. Empty for everything else: letters with accents
// stand among others without.
std::vector<unsigned> likelyCodePages(std::string_view bytes);

// One way to read a text.
struct CodePageReading {
    unsigned codePage = 0;  // 0: the machine's
    TextView name;          // for the user
    Text preview;           // the first lines that tell it from other readings, with CR LF
};

// The ways in which a text that is not Unicode can be read without loss, the likeliest first. Empty
// where there is nothing to ask: the machine's code page can read it, and no other is likelier.
std::vector<CodePageReading> doubtfulReadings(std::string_view bytes, const AnsiCodec& machine);

}  // namespace melvorin
