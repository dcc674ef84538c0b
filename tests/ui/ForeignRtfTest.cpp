// Rich Text as other programs write it, in the real control.
#include <algorithm>
#include <cstdio>

#include "../core/RtfDialects.h"
#include "Scripted.h"
#include "app/DocumentLoss.h"
#include "app/RtfCheck.h"

namespace melvorin::testing {
namespace {

std::vector<std::string> linesOf(TextView text) {
    std::vector<std::string> lines;
    for (const TextView line : splitLines(text))
        lines.push_back(shown(line));
    return lines;
}

// Blanks that differ, and the words without what stands between them.
std::string words(TextView text) {
    std::string out;
    for (const char16_t c : text) {
        if (c > u' ' && c != u'\u00A0')
            out += shown(TextView(&c, 1));
    }
    return out;
}

bool hasTable(const dialects::Chart& chart) {
    return std::any_of(chart.lines.begin(), chart.lines.end(), [](const dialects::Line& line) {
        return line.kind == dialects::Line::Kind::Row;
    });
}

TEST(ForeignRtf, ShowsEveryWordOfEveryProgram) {
    Program program;
    ASSERT_TRUE(program.start());
    RichEdit& editor = program.editor();
    for (const dialects::Dialect& dialect : dialects::all()) {
        for (const dialects::Chart& chart : dialects::charts()) {
            SCOPED_TRACE(std::string(dialect.name) + ", " + chart.name);
            const std::string file = dialect.write(chart);
            const RtfVerdict verdict = checkRtf(file);
            ASSERT_EQ(shown(verdict.sentence), "");
            ASSERT_TRUE(editor.loadRtf(verdict.document));
            const Text text = editor.text().chars;
            const std::vector<std::string> wanted = linesOf(dialects::textOf(chart));
            const std::vector<std::string> found = linesOf(text);
            for (std::size_t i = 0; i < wanted.size() && !hasTable(chart); ++i) {
                ASSERT_LT(i, found.size());
                EXPECT_TRUE(words(fromUtf8(found[i])).ends_with(words(fromUtf8(wanted[i]))))
                    << found[i] << "\n"
                    << wanted[i];
            }
            const std::string loss = shown(lossInWords(readRtf(file), text, editor.rtf()));
            EXPECT_EQ(loss.find("word"), std::string::npos) << loss;
            EXPECT_EQ(loss.find("list"), std::string::npos) << loss;
        }
    }
}

}  // namespace
}  // namespace melvorin::testing
