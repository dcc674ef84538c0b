// The stage in the dark: what is shown can be read, and what goes elsewhere, to the song or to the
// clipboard, is in the song's own colours.
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "OnStage.h"
#include "base/Contrast.h"
#include "base/DiagramFont.h"
#include "rtf/RtfMap.h"

namespace melvorin::testing {
namespace {

constexpr double kReadable = 4.5;

struct Letter {
    char16_t character = 0;
    std::optional<Rgb> colour;  // nothing for the automatic one
    std::optional<Rgb> mark;    // behind it
    std::string face;
    int halfPoints = 0;

    friend bool operator==(const Letter&, const Letter&) = default;
};

std::string inWords(const std::optional<Rgb>& colour) {
    return !colour ? std::string("-")
                   : std::to_string(colour->red) + "," + std::to_string(colour->green) + "," +
                         std::to_string(colour->blue);
}

void PrintTo(const Letter& letter, std::ostream* out) {
    *out << shown(Text(1, letter.character)) << "(" << inWords(letter.colour) << " on "
         << inWords(letter.mark) << " in " << letter.face << " " << letter.halfPoints << ")";
}

Rgb rgbOf(COLORREF colour) {
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

// As the control itself has them.
std::vector<Letter> lettersOf(RichEdit& text) {
    const EditorWork work(text);
    const Selection selection = text.selection();
    const ScrollPosition page = text.scrollPosition();
    const Text chars = text.text().chars;
    std::vector<Letter> letters;
    for (std::size_t i = 0; i < chars.size(); ++i) {
        if (chars[i] == u'\r')
            continue;
        const auto at = static_cast<std::int32_t>(i);
        text.select({at, at + 1});
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        ::SendMessageW(text.handle(), EM_GETCHARFORMAT, SCF_SELECTION, lparamOf(&format));
        Letter letter{chars[i],
                      {},
                      {},
                      toUtf8(textOf(format.szFaceName)),
                      static_cast<int>(format.yHeight / 10)};
        if (!(format.dwEffects & CFE_AUTOCOLOR))
            letter.colour = rgbOf(format.crTextColor);
        if (!(format.dwEffects & CFE_AUTOBACKCOLOR))
            letter.mark = rgbOf(format.crBackColor);
        letters.push_back(letter);
    }
    text.select(selection);
    text.scrollTo(page);
    return letters;
}

constexpr char kSong[] =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}"
    "{\\colortbl ;\\red200\\green0\\blue0;\\red0\\green0\\blue160;}\\pard\\f0\\fs20 "
    "\\cf1 C   G\\cf0\\par la \\cf2 blue\\cf0  lo\\par end\\par}";
constexpr char kMarkedSong[] =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}"
    "{\\colortbl ;\\red200\\green0\\blue0;\\red255\\green255\\blue0;\\red0\\green0\\blue160;"
    "\\red255\\green255\\blue255;}\\pard\\f0\\fs20 "
    "a\\highlight2 b\\cf1 c\\cf3 d\\cf4 e\\highlight3 f\\cf2 g\\highlight0 h\\cf0 i\\highlight1 j"
    "\\highlight0\\par end}";
const std::string kPastedHead =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Courier New;}}{\\colortbl ;\\red0\\green0\\blue0;"
    "\\red255\\green255\\blue255;\\red235\\green235\\blue235;\\red0\\green0\\blue90;"
    "\\red255\\green255\\blue0;}";

class OnDarkStage : public OnStage {
  protected:
    void openSong(const char* song, bool isDark, bool isReduced) {
        ASSERT_TRUE(program.editor().loadRtf(song));
        const_cast<Documents&>(program.form->documents()).changed();
        open();
        if (isReduced)
            click(item(frmFScreenB::Command8));
        isReduced_ = isReduced;
        ::SetFocus(seen().handle());
        if (isDark != (seen().background() == DarkColours::kBackground))
            pressShifted(u'D', VK_CONTROL);
    }
    RichEdit& seen() { return isReduced_ ? view().FSRTB2() : view().FSRTB(); }
    void pressShifted(WPARAM key, int with) {
        testing::press(program, ::GetFocus(), key, {with, VK_SHIFT});
    }
    void expectReadable() {
        for (const Letter& letter : lettersOf(seen())) {
            EXPECT_TRUE(letter.colour) << ::testing::PrintToString(letter);
            EXPECT_GE(contrast(letter.colour.value_or(Rgb{}),
                               letter.mark.value_or(DarkColours::kBackground)),
                      kReadable)
                << ::testing::PrintToString(letter);
        }
    }
    Rgb colourOnClipboard(std::size_t at) {
        const auto map = RtfMap::parse(program.clipboard.rich.value_or(""));
        EXPECT_TRUE(map && at < map->text().size());
        return map && at < map->text().size() ? map->colourAt(at).value_or(Rgb{1, 2, 3}) : Rgb{};
    }

    bool isReduced_ = false;
};

struct PasteCase {
    const char* what;
    const char* song;
    Selection over;
    std::string rich;  // none: plain text
    bool isReduced = false;
};

// Plain text is black, and Rich Text brings whatever it has.
TEST_F(OnDarkStage, WhatIsPastedIsSeenAndIsWhatTheLightStageTakes) {
    const PasteCase cases[] = {
        {"plain", kSong, {6, 6}, ""},
        {"plain over chords", kSong, {0, 5}, ""},
        {"plain over all", kSong, {0, 20}, ""},
        {"plain into marked words", kMarkedSong, {2, 2}, ""},
        {"without colours", kSong, {6, 6}, "{\\rtf1\\ansi{\\fonttbl{\\f0 Courier New;}}\\f0 new}"},
        {"plain by its words", kSong, {6, 6}, kPastedHead + "\\cf1 n\\plain\\f0 e\\cf0 w}"},
        {"in colours", kSong, {6, 6}, kPastedHead + "\\f0\\cf1 n\\cf2 e\\cf4 w}"},
        // What stands for the song's own colours in the dark is a colour like any other.
        {"in light colours", kSong, {6, 6}, kPastedHead + "\\f0\\cf3 n\\cf2 e\\cf3 w}"},
        {"marked", kSong, {1, 3}, kPastedHead + "\\f0 n\\highlight5 e\\cf2 w\\highlight0}"},
        {"plain, reduced", kSong, {6, 6}, "", true},
        {"in colours, reduced", kSong, {6, 6}, kPastedHead + "\\f0\\cf1 n\\cf2 e\\cf4 w}", true},
        {"marked, reduced",
         kMarkedSong,
         {1, 3},
         kPastedHead + "\\f0 n\\highlight5 e\\cf2 w}",
         true},
    };
    for (const PasteCase& paste : cases) {
        SCOPED_TRACE(paste.what);
        std::vector<Letter> taken[2];
        Selection caret[2];
        for (const bool isDark : {false, true}) {
            openSong(paste.song, isDark, paste.isReduced);
            const auto before = lettersOf(program.editor());
            program.clipboard.plain = u"new";
            program.clipboard.rich.reset();
            if (!paste.rich.empty())
                program.clipboard.rich = paste.rich;
            seen().select(paste.over);
            pressWithCtrl(u'V');
            if (isDark)
                expectReadable();
            taken[isDark] = lettersOf(program.editor());
            caret[isDark] = seen().selection();
            EXPECT_NE(program.text().find("new"), std::string::npos);
            pressWithCtrl(u'Z');
            EXPECT_EQ(lettersOf(program.editor()), before) << "one step of undo";
            if (isDark)
                expectReadable();
            EXPECT_TRUE(view().close());
        }
        EXPECT_EQ(taken[1], taken[0]);
        EXPECT_EQ(caret[1], caret[0]);
    }
    EXPECT_TRUE(program.messages.boxes.empty());
}

// Where a page is looked at, a paste leaves it.
TEST_F(OnDarkStage, APasteKeepsThePage) {
    program.screen.screen = {600, 300};
    open(songOf(100));
    ::SetFocus(text().handle());
    pressShifted(u'D', VK_CONTROL);
    text().bringToTop(50);
    const std::int32_t place = text().firstOfLine(52);
    text().select({place, place});
    const int top = topLine();
    program.clipboard.plain = u"new";
    pressWithCtrl(u'V');
    EXPECT_EQ(topLine(), top);
    EXPECT_EQ(text().selection(), (Selection{place + 3, place + 3}));
}

TEST_F(OnDarkStage, WhatIsCopiedHasItsOwnColours) {
    struct Case {
        WPARAM key;
        int held;
        bool withShift;
        bool cuts;
    };
    constexpr Case cases[] = {
        {u'C', VK_CONTROL, false, false},      {u'C', VK_CONTROL, true, false},
        {VK_INSERT, VK_CONTROL, false, false}, {u'X', VK_CONTROL, false, true},
        {VK_DELETE, VK_SHIFT, false, true},
    };
    for (const bool isReduced : {false, true}) {
        for (const Case& it : cases) {
            SCOPED_TRACE(std::to_string(it.key) + (isReduced ? " reduced" : ""));
            openSong(kSong, true, isReduced);
            view().follow(false);
            const auto before = lettersOf(program.editor());
            seen().select({4, 13});
            if (it.withShift)
                pressShifted(it.key, it.held);
            else
                testing::press(program, ::GetFocus(), it.key, {it.held});
            EXPECT_EQ(shown(program.clipboard.plain.value_or(u"")), "G\r\nla blue");
            EXPECT_EQ(colourOnClipboard(0), (Rgb{200, 0, 0}));
            EXPECT_EQ(colourOnClipboard(2), (Rgb{1, 2, 3})) << "none";
            EXPECT_EQ(colourOnClipboard(6), (Rgb{0, 0, 160}));
            if (it.cuts) {
                EXPECT_EQ(shown(program.editor().text().chars), "C    lo\rend");
                pressWithCtrl(u'Z');
            }
            EXPECT_EQ(lettersOf(program.editor()), before);
            // And back in again.
            seen().select({4, 13});
            pressWithCtrl(u'V');
            EXPECT_EQ(lettersOf(program.editor()), before);
            expectReadable();
            EXPECT_TRUE(view().close());
        }
    }
}

TEST_F(OnDarkStage, WhatCannotBeCopiedStays) {
    openSong(kSong, true, false);
    const std::string before = program.text();
    program.clipboard.plain = u"former";
    text().select({3, 3});
    pressWithCtrl(u'C');
    pressWithCtrl(u'X');
    EXPECT_EQ(program.clipboard.plain, u"former") << "nothing is selected";
    EXPECT_TRUE(program.messages.boxes.empty());
    text().select({0, 5});
    program.clipboard.isTaken = true;
    pressWithCtrl(u'X');
    EXPECT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_EQ(program.text(), before);
    // A song that runs is copied from, and not cut.
    program.clipboard.isTaken = false;
    click(item(frmFScreenB::Command4));
    ASSERT_TRUE(panel().run().isRunning());
    ::SetFocus(text().handle());
    text().select({0, 5});
    pressWithCtrl(u'X');
    EXPECT_EQ(program.clipboard.plain, u"former");
    pressWithCtrl(u'C');
    EXPECT_EQ(program.clipboard.plain, u"C   G");
    EXPECT_EQ(colourOnClipboard(0), (Rgb{200, 0, 0}));
    EXPECT_EQ(program.text(), before);
}

TEST_F(OnDarkStage, MarkedWordsAreReadToo) {
    openSong(kMarkedSong, true, false);
    const auto before = lettersOf(program.editor());
    constexpr Rgb yellow{255, 255, 0};
    ASSERT_EQ(before[1].mark, yellow) << "the control has them";
    expectReadable();
    const auto dark = lettersOf(text());
    EXPECT_TRUE(dark[1].mark && dark[5].mark && dark[9].mark) << "still marked";
    EXPECT_NE(dark[1].mark, dark[5].mark);
    text().select({2, 2});
    ::SendMessageW(text().handle(), WM_CHAR, u'x', 1);
    program.pump();
    expectReadable();
    auto after = lettersOf(program.editor());
    ASSERT_EQ(after.size(), before.size() + 1);
    EXPECT_EQ(after[2].mark, yellow);
    after.erase(after.begin() + 2);
    EXPECT_EQ(after, before);
}

// Beside a chord diagram, into an empty song, and where all of one is gone.
TEST_F(OnDarkStage, WhatIsTypedIsSeen) {
    constexpr char empty[] = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Courier New;}}\\f0\\fs20\\par}";
    const std::string diagram = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 " + toUtf8(kDiagramFaceStart) +
                                "6;}}{\\colortbl ;\\red0\\green0\\blue160;}\\f0\\fs40\\cf1 ab}";
    for (const char* const song : {empty, diagram.c_str(), kSong}) {
        SCOPED_TRACE(song);
        openSong(song, true, false);
        if (song == kSong) {
            text().select({0, text().length()});
            ::SendMessageW(text().handle(), WM_KEYDOWN, VK_DELETE, 1);
        } else {
            const std::int32_t end = song == empty ? 0 : 2;
            text().select({end, end});
        }
        ::SendMessageW(text().handle(), WM_CHAR, u'x', 1);
        program.pump();
        EXPECT_NE(program.text().find('x'), std::string::npos);
        expectReadable();
        EXPECT_TRUE(view().close());
    }
}

// The font has no such letters in its script, and a control writes others for them.
TEST_F(OnDarkStage, WrittenOutItHasEveryLetter) {
    ASSERT_TRUE(program.editor().loadRtf(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset204 Courier New;}}\\pard\\f0\\fs20 "
        "\\u1087?\\u1088? caf\\u233? \\u241?\\par two \\u233?t\\u233?\\par end}"));
    open();
    click(item(frmFScreenB::kUnrolled));
    EXPECT_EQ(text().text().chars, u"\u043f\u0440 caf\u00e9 \u00f1\rtwo \u00e9t\u00e9\rend");
}

struct InventedEdit {
    enum class Kind { Type, Delete, Cut, PastePlain, PasteRich, PasteCopied } kind{};
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
    std::string rich;
    Text plain;  // the same
};

std::vector<InventedEdit> inventedEdits(std::mt19937& engine, int count) {
    std::vector<InventedEdit> edits;
    while (static_cast<int>(edits.size()) < count) {
        const auto number = [&](int most) {
            return std::to_string(engine() % static_cast<std::uint32_t>(most));
        };
        InventedEdit edit{static_cast<InventedEdit::Kind>(engine() % 6),
                          static_cast<std::uint32_t>(engine()),
                          engine() % 5,
                          kPastedHead + "\\f0",
                          {}};
        for (const char16_t c : {u'p', u'q', u'r', u's'}) {
            const bool isMarked = engine() % 3 == 0;
            const bool isEnd = engine() % 8 == 0;
            edit.rich += "\\cf" + number(6) + (isMarked ? "\\highlight" + number(6) : "") + " " +
                         static_cast<char>(c) + (isEnd ? "\\par" : "");
            edit.plain += c;
            edit.plain += isEnd ? u"\r" : u"";
        }
        edit.rich += "}";
        edits.push_back(std::move(edit));
    }
    return edits;
}

TEST_F(OnDarkStage, InventedEditsAreWhatTheyAreInTheLight) {
    using Kind = InventedEdit::Kind;
    std::mt19937 engine(27);
    const auto edits = inventedEdits(engine, 60);
    std::vector<std::vector<Letter>> light;
    for (const bool isDark : {false, true}) {
        openSong(kMarkedSong, isDark, false);
        program.clipboard = {};
        program.clipboard.plain = u"x";
        for (std::size_t i = 0; i < edits.size(); ++i) {
            const InventedEdit& edit = edits[i];
            const auto length = static_cast<std::uint32_t>(text().length());
            const auto begin = static_cast<std::int32_t>(edit.begin % (length + 1));
            const auto end =
                std::min(begin + static_cast<std::int32_t>(edit.length), text().length());
            text().select({begin, end});
            if (edit.kind == Kind::Type) {
                ::SendMessageW(text().handle(), WM_CHAR, u'm', 1);
            } else if (edit.kind == Kind::Delete) {
                ::SendMessageW(text().handle(), WM_KEYDOWN, VK_DELETE, 1);
            } else if (edit.kind == Kind::Cut) {
                if (isDark) {
                    pressWithCtrl(u'X');
                } else if (end > begin) {
                    // What the control would put there, which these tests do not share.
                    program.clipboard.put(toCrLf(text().textBetween({begin, end})),
                                          text().selectionRtf());
                    text().change([this] { text().clear(); });
                }
            } else {
                if (edit.kind == Kind::PastePlain)
                    program.clipboard.rich.reset();
                if (edit.kind == Kind::PasteRich)
                    program.clipboard.put(toCrLf(edit.plain), edit.rich);
                pressWithCtrl(u'V');
            }
            program.pump();
            auto now = lettersOf(program.editor());
            // In a document that begins with the automatic colour a control reads it as black.
            for (Letter& letter : now)
                letter.colour = letter.colour.value_or(Rgb{});
            if (!isDark) {
                light.push_back(now);
                continue;
            }
            ASSERT_EQ(now, light[i]) << i << " " << static_cast<int>(edit.kind) << edit.rich;
            expectReadable();
            ASSERT_FALSE(HasFailure()) << i;
        }
        EXPECT_TRUE(view().close());
    }
}

}  // namespace
}  // namespace melvorin::testing
