// The same words in code pages that songs come in, looked up in the code charts of each. The system
// and iconv must read and write them alike.
#pragma once

#include <gtest/gtest.h>

#include "base/CodePages.h"

namespace melvorin {

inline void checkCodePages() {
    const struct {
        unsigned number;
        std::string bytes;
        TextView text;
    } samples[] = {
        {932, "\x83\x52\x81\x5B\x83\x68 C", u"コード C"},
        {936, "\xBA\xCD\xCF\xD2 Am", u"和弦 Am"},
        {949, "\xC4\xDA\xB5\xE5", u"코드"},
        {950, "\xA9\x4D\xA9\xB6", u"和弦"},
        {1250, "\xE8\x69\xB9t\xEC", u"čiątě"},
        {1251, "\xEF\xE5\xF1\xED\xFF", u"песня"},
        {1252, "can\xE7\xE3o \x80", u"canção €"},
        {1253, "\xF4\xF1\xE1\xE3\xEF\xFD\xE4\xE9", u"τραγούδι"},
        {1254,
         "\xFE"
         "ark\xFD",
         u"şarkı"},
        {1255, "\xF9\xE9\xF8", u"שיר"},
        {10000, "\x8E\xA5", u"é•"},
        {10007, "\xEF\xE5\xF1\xED\xDF", u"песня"},
        {20932, "\xB2\xCE\xA1\xA2\x8E\xB1", u"歌、ｱ"},
        {21866, "\xA6\xC4\xC1", u"іда"},
        {28592, "\xB1\xE8", u"ąč"},
        {20866, "\xD0\xC5\xD3\xCE\xD1", u"песня"},
    };
    for (const auto& sample : samples) {
        const AnsiCodec* const codec = codePage(sample.number);
        ASSERT_NE(codec, nullptr) << sample.number;
        EXPECT_EQ(toUtf8(codec->decode(sample.bytes)), toUtf8(sample.text)) << sample.number;
        EXPECT_EQ(codec->encode(sample.text), sample.bytes) << sample.number;
    }
    EXPECT_EQ(codePage(1251)->encode(u"日"), std::nullopt);
    EXPECT_EQ(codePage(932)->encode(u"é"), std::nullopt);
    // Half a character is no text of the code page.
    EXPECT_NE(codePage(932)->encode(codePage(932)->decode("C \x83")), "C \x83");
    EXPECT_EQ(codePage(4), nullptr);
}

}  // namespace melvorin
