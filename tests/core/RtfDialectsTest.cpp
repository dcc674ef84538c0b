#include "RtfDialects.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rtf/RtfCheck.h"
#include "rtf/RtfReader.h"

namespace melvorin {
namespace {

std::vector<std::string> linesOf(TextView text) {
    std::vector<std::string> lines;
    for (const TextView line : splitLines(text))
        lines.push_back(toUtf8(line));
    return lines;
}

// What is read is what was written, line by line; a bullet may stand before it.
void expectLines(const dialects::Chart& chart, TextView read) {
    const std::vector<std::string> wanted = linesOf(dialects::textOf(chart));
    std::vector<std::string> found = linesOf(read);
    // A picture stands in a paragraph of its own, and some programs end the last one.
    while (found.size() > wanted.size() && found.back().empty())
        found.pop_back();
    ASSERT_EQ(found.size(), wanted.size()) << toUtf8(read);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_TRUE(found[i].ends_with(wanted[i])) << found[i] << "\n" << wanted[i];
        EXPECT_TRUE(found[i].size() == wanted[i].size() ||
                    chart.lines[i].kind == dialects::Line::Kind::Bullet)
            << found[i];
    }
}

TEST(RtfDialects, OpenWithEveryWord) {
    for (const dialects::Dialect& dialect : dialects::all()) {
        for (const dialects::Chart& chart : dialects::charts()) {
            const std::string rtf = dialect.write(chart);
            SCOPED_TRACE(std::string(dialect.name) + ", " + chart.name);
            const RtfVerdict verdict = checkRtf(rtf);
            ASSERT_EQ(toUtf8(verdict.sentence), "") << rtf;
            Text text = readRtf(rtf).text;
            std::replace(text.begin(), text.end(), u'\v', u'\r');
            expectLines(chart, text);
            const RtfContents loaded = readRtf(verdict.document);
            expectLines(chart, loaded.text);
            const bool hasPicture = rtf.find("\\pict") != std::string::npos;
            EXPECT_EQ(loaded.pictures, hasPicture ? 1U : 0U);
        }
    }
}

}  // namespace
}  // namespace melvorin
