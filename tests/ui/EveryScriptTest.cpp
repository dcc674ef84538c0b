// Charts in many scripts and from many programs in the real editor: its Rich Text can be read back,
// loses no character, and changes key in one piece.
#include "../core/RtfCharts.h"
#include "Scripted.h"
#include "base/EditorLine.h"
#include "chords/ChordLine.h"
#include "chords/DocumentKey.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"

namespace melvorin::testing {
namespace {

bool load(RichEdit& editor, const std::string& rtf) {
    const RtfVerdict verdict = checkRtf(rtf);
    return verdict.kind == RtfVerdict::Kind::Ok && editor.loadRtf(verdict.document);
}

bool isMapped(const RichEdit& editor) {
    const Text text = editor.text().chars;
    std::optional<RtfMap> map = RtfMap::parse(editor.rtf());
    if (map)
        map->takeBlanks(text);
    return map && map->text() == text;
}

// Every chord line by itself, everything else as it was.
Text movedByHand(TextView text, const KeyChange& change) {
    Text moved;
    for (TextView rest = text;;) {
        const TextLine line = takeEditorLine(rest);
        if (IsChordLine(line.chars))
            change.appendMoved(line.chars, moved);
        else
            moved += line.chars;
        moved += line.end;
        if (line.end.empty())
            return moved;
    }
}

TEST(EveryScript, ChangesKeyMostlyInOnePiece) {
    Program program(kNoSong);
    RichEdit& editor = program.editor();
    const KeyChange up(Direction::Up, Spelling::Sharps);
    std::size_t fallen = 0;
    std::size_t count = 0;
    for (const charts::Chart& chart : charts::all()) {
        SCOPED_TRACE(chart.name);
        ASSERT_TRUE(load(editor, chart.rtf));
        ++count;
        fallen += isMapped(editor) ? 0U : 1U;
        const Text before = editor.text().chars;
        const Text expected = movedByHand(before, up);
        ASSERT_NE(expected, before);
        changeDocumentKey(editor, up, [] {});
        EXPECT_EQ(shown(editor.text().chars), shown(expected));
    }
    std::cout << fallen << " of " << count << " charts are edited line by line\n";
    EXPECT_GE(count, 60u);
    EXPECT_LE(fallen * 20, count);
}

// A control knows only the code page of each font, and takes what looks alike for the rest.
TEST(EveryScript, LosesNoCharacterOnWriting) {
    Program program(kNoSong);
    RichEdit& editor = program.editor();
    const Text odd =
        u"\u00E9 \u00A5 \u2011 \u03A9 \u2122 \u044F \u0159 \u65E5 \uAC00 \u05E9 \u0301";
    for (const charts::Script& script : charts::scripts()) {
        // Also where nothing but the font is out of the ordinary.
        for (const auto& [charset, words] : {std::pair(script.charset, odd + Text(script.words)),
                                             std::pair(script.charset, Text(u"caf\u00E9")),
                                             std::pair(2, odd), std::pair(2, Text(u"Am"))}) {
            std::string rtf =
                "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fcharset0 Courier New;}"
                "{\\f1\\fcharset" +
                std::to_string(charset) + " Courier New;}}\\f1 ";
            for (const char16_t c : words)
                rtf += "\\u" + std::to_string(c > 0x7FFF ? c - 0x10000 : c) + "?";
            ASSERT_TRUE(load(editor, rtf + "\\f0 end}"));
            const Text text = editor.text().chars;
            ASSERT_EQ(shown(text), shown(words + u"end"));
            const std::string written = editor.rtf();
            ASSERT_TRUE(editor.loadRtf(written));
            EXPECT_EQ(shown(editor.text().chars), shown(text)) << script.name << charset;
        }
    }
}

}  // namespace
}  // namespace melvorin::testing
