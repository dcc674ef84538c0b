// The editing wrapper on the real control.
#include <ostream>

#include "Scripted.h"

namespace melvorin {

// For messages about selections that differ.
static void PrintTo(const Selection& selection, std::ostream* out) {
    *out << selection.begin << ".." << selection.end;
}

}  // namespace melvorin

namespace melvorin::testing {
namespace {

// A window with an editor in it, counting the change events that reach the window.
class Host : public Window {
  public:
    Host() {
        WindowSpec spec;
        spec.className = L"MelvorinEditorHost";
        spec.width = 700;
        spec.height = 500;
        EXPECT_TRUE(create(spec));
        EXPECT_TRUE(edit.create(handle(), 1, u"Lucida Console", 10));
        RECT client{};
        ::GetClientRect(handle(), &client);
        edit.place(client);
        ::ShowWindow(handle(), SW_SHOWNORMAL);
    }

    void plain(TextView text) { edit.loadPlain({Text(text)}, u"Lucida Console", 10); }
    void type(TextView text) {
        for (const char16_t c : text)
            ::SendMessageW(edit.handle(), WM_CHAR, c, 1);
    }
    std::string text() const { return shown(edit.text().chars); }
    SelectionStyle styleOf(std::int32_t begin, std::int32_t end) {
        edit.select({begin, end});
        return edit.selectionStyle();
    }
    // Style of the first place where `word` stands.
    SelectionStyle styleOf(TextView word) {
        const auto at = edit.find(word, 0, {.matchCase = true});
        EXPECT_TRUE(at.has_value()) << shown(word);
        return at ? styleOf(at->begin, at->end) : SelectionStyle{};
    }

    RichEdit edit;
    int changes = 0;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE && LOWORD(wParam) == 1)
            ++changes;
        return passOn(message, wParam, lParam);
    }
};

constexpr Rgb kRed{192, 0, 0};
constexpr Rgb kBlack{0, 0, 0};

constexpr char kStyledSong[] =
    R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
    R"({\f1\fmodern\fcharset0 Lucida Console;}}{\colortbl ;\red0\green0\blue0;\red192\green0\blue0;})"
    R"(\pard\f0\fs20\cf1 plain {\b bold} {\i slanted} {\ul lined} {\f1 other} {\fs48 large} )"
    R"({\cf2 red}\par\pard\qc centre\par\pard\qr right\par})";

// The seven attributes as one line, "?" where they are mixed.
std::string described(const SelectionStyle& style) {
    const auto flag = [](const std::optional<bool>& value, const char* name) {
        return value ? (*value ? std::string(name) : std::string("-")) : std::string("?");
    };
    std::string line = style.face ? shown(*style.face) : "?";
    line += style.halfPoints ? " " + std::to_string(*style.halfPoints) : " ?";
    line += " " + flag(style.bold, "bold") + " " + flag(style.italic, "italic") + " " +
            flag(style.underline, "underline");
    line += !style.colour             ? " ?"
            : *style.colour == kRed   ? " red"
            : *style.colour == kBlack ? " black"
                                      : " other";
    if (!style.alignment)
        return line + " ?";
    const char* const names[] = {" left", " right", " center"};
    return line + names[static_cast<int>(*style.alignment)];
}

TEST(EditorStyle, SelectionTellsWhatIsTheSameAndWhatIsMixed) {
    Host host;
    ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
    // Whether a line end at the very end is one of the text, controls see differently.
    ASSERT_TRUE(host.text().starts_with("plain bold slanted lined other large red\rcentre\rright"));
    struct Case {
        TextView from;
        TextView to;
        const char* style;
    };
    const Case cases[] = {
        {u"plain", u"plain", "Courier New 20 - - - black left"},
        {u"bold", u"bold", "Courier New 20 bold - - black left"},
        {u"other", u"other", "Lucida Console 20 - - - black left"},
        {u"large", u"large", "Courier New 48 - - - black left"},
        {u"red", u"red", "Courier New 20 - - - red left"},
        {u"plain", u"bold", "Courier New 20 ? - - black left"},
        {u"bold", u"slanted", "Courier New 20 ? ? - black left"},
        {u"lined", u"other", "? 20 - - ? black left"},
        {u"large", u"red", "Courier New ? - - - ? left"},
        {u"plain", u"red", "? ? ? ? ? ? left"},
        {u"centre", u"centre", "Courier New 20 - - - black center"},
        {u"right", u"right", "Courier New 20 - - - black right"},
        {u"red", u"right", "Courier New 20 - - - ? ?"},
    };
    for (const Case& c : cases) {
        const auto from = host.edit.find(c.from, 0, {});
        const auto to = host.edit.find(c.to, 0, {});
        ASSERT_TRUE(from && to);
        EXPECT_EQ(described(host.styleOf(from->begin, to->end)), c.style)
            << shown(c.from) << " to " << shown(c.to);
    }
}

// Each setter changes its attribute across a mixed selection, and no other.
TEST(EditorStyle, SettersChangeOneAttribute) {
    struct Case {
        void (*set)(RichEdit&);
        const char* plain;
        const char* bold;
        const char* large;
    };
    const Case cases[] = {
        {[](RichEdit& e) { e.setBold(true); }, "Courier New 20 bold - - black left",
         "Courier New 20 bold - - black left", "Courier New 48 bold - - black left"},
        {[](RichEdit& e) { e.setBold(false); }, "Courier New 20 - - - black left",
         "Courier New 20 - - - black left", "Courier New 48 - - - black left"},
        {[](RichEdit& e) { e.setItalic(true); }, "Courier New 20 - italic - black left",
         "Courier New 20 bold italic - black left", "Courier New 48 - italic - black left"},
        {[](RichEdit& e) { e.setUnderline(true); }, "Courier New 20 - - underline black left",
         "Courier New 20 bold - underline black left", "Courier New 48 - - underline black left"},
        {[](RichEdit& e) { e.setSelectionFace(u"Melvorin 01"); }, "Melvorin 01 20 - - - black left",
         "Melvorin 01 20 bold - - black left", "Melvorin 01 48 - - - black left"},
        {[](RichEdit& e) { e.setSelectionSize(31); }, "Courier New 31 - - - black left",
         "Courier New 31 bold - - black left", "Courier New 31 - - - black left"},
        {[](RichEdit& e) { e.setSelectionFont(u"Lucida Console", 12); },
         "Lucida Console 24 - - - black left", "Lucida Console 24 bold - - black left",
         "Lucida Console 24 - - - black left"},
        {[](RichEdit& e) { e.setSelectionColour(kRed); }, "Courier New 20 - - - red left",
         "Courier New 20 bold - - red left", "Courier New 48 - - - red left"},
        {[](RichEdit& e) { e.setAlignment(Alignment::Center); },
         "Courier New 20 - - - black center", "Courier New 20 bold - - black center",
         "Courier New 48 - - - black center"},
        {[](RichEdit& e) { e.setAlignment(Alignment::Right); }, "Courier New 20 - - - black right",
         "Courier New 20 bold - - black right", "Courier New 48 - - - black right"},
    };
    for (const Case& c : cases) {
        Host host;
        ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
        const std::int32_t end = host.edit.find(u"large", 0, {})->end;
        const std::string behind = described(host.styleOf(u"right"));
        host.edit.select({0, end});
        c.set(host.edit);
        EXPECT_EQ(host.edit.selection(), (Selection{0, end}));
        // What was written and read again counts, not what the control remembers.
        ASSERT_TRUE(host.edit.loadRtf(host.edit.rtf()));
        EXPECT_EQ(described(host.styleOf(u"plain")), c.plain);
        EXPECT_EQ(described(host.styleOf(u"bold")), c.bold);
        EXPECT_EQ(described(host.styleOf(u"large")), c.large);
        EXPECT_EQ(described(host.styleOf(u"right")), behind);
    }
}

TEST(EditorStyle, ReplacedTextTakesTheFormatOfItsFirstCharacter) {
    struct Case {
        TextView from;
        TextView to;
        const char* style;
    };
    const Case cases[] = {
        {u"bold", u"bold", "Courier New 20 bold - - black left"},
        {u"bold", u"slanted", "Courier New 20 bold - - black left"},
        {u"other", u"red", "Lucida Console 20 - - - black left"},
        {u"plain", u"red", "Courier New 20 - - - black left"},
        {u"red", u"red", "Courier New 20 - - - red left"},
    };
    for (const Case& c : cases) {
        Host host;
        ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
        const Selection range{host.edit.find(c.from, 0, {})->begin,
                              host.edit.find(c.to, 0, {})->end};
        const Text before = host.edit.text().chars;
        host.edit.select(range);
        host.edit.replaceSelection(u"{\\b NEW");
        Text expected = before;
        expected.replace(static_cast<std::size_t>(range.begin),
                         static_cast<std::size_t>(range.end - range.begin), u"{\\b NEW");
        EXPECT_EQ(host.text(), shown(expected));
        EXPECT_EQ(described(host.styleOf(u"{\\b NEW")), c.style) << shown(c.from);
    }
}

TEST(EditorStyle, AskingForAFaceLeavesTheSelection) {
    Host host;
    ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
    host.edit.select({3, 9});
    EXPECT_EQ(host.edit.faceAt(0), u"Courier New");
    EXPECT_EQ(host.edit.faceAt(host.edit.find(u"other", 0, {})->begin), u"Lucida Console");
    EXPECT_EQ(host.edit.selection(), (Selection{3, 9}));
}

// The colour behind the text is the screen's, not the document's.
TEST(EditorStyle, BackgroundIsNoPartOfTheDocument) {
    Host host;
    ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
    const std::string before = host.edit.rtf();
    host.edit.setBackground(Rgb{10, 200, 30});
    EXPECT_EQ(host.edit.rtf(), before);
    EXPECT_EQ(::SendMessageW(host.edit.handle(), EM_SETBKGNDCOLOR, 0, RGB(1, 2, 3)),
              LRESULT{RGB(10, 200, 30)});
}

// Black letters want light paper, also where the system's windows are dark.
TEST(EditorStyle, PaperIsNeverTooDarkForBlack) {
    constexpr INT element = COLOR_WINDOW;
    const COLORREF former = ::GetSysColor(element);
    for (const COLORREF window : {RGB(0, 0, 0), RGB(255, 250, 240)}) {
        ASSERT_TRUE(::SetSysColors(1, &element, &window));
        Host host;
        const LRESULT seen =
            window == 0 ? LRESULT{RGB(255, 255, 255)} : static_cast<LRESULT>(window);
        EXPECT_EQ(::SendMessageW(host.edit.handle(), EM_SETBKGNDCOLOR, 0, 0), seen);
        host.edit.setBackground(Rgb{0, 0, 0});
        host.edit.setBackground(std::nullopt);
        EXPECT_EQ(::SendMessageW(host.edit.handle(), EM_SETBKGNDCOLOR, 0, 0), seen);
    }
    ::SetSysColors(1, &element, &former);
}

TEST(EditorFind, FollowsCaseWordsAndPosition) {
    struct Case {
        TextView what;
        std::int32_t from;
        FindOptions options;
        std::optional<Selection> found;
    };
    //              0         1          2         3
    //              0123456789012345 678901234567 89012
    Host host;
    host.plain(u"Cm C# am Am cam\rC Caf\u00E9 CAF\u00C9\r\u03A9 C");
    const Case cases[] = {
        {u"am", 0, {}, Selection{6, 8}},
        {u"am", 7, {}, Selection{9, 11}},
        {u"am", 6, {}, Selection{6, 8}},
        {u"Am", 0, {.matchCase = true}, Selection{9, 11}},
        {u"am", 9, {.matchCase = true}, Selection{13, 15}},
        {u"am", 10, {.wholeWord = true}, std::nullopt},
        {u"C", 0, {.matchCase = true, .wholeWord = true}, Selection{3, 4}},
        {u"C", 4, {.matchCase = true, .wholeWord = true}, Selection{16, 17}},
        {u"CAF\u00C9", 0, {.matchCase = true}, Selection{23, 27}},
        {u"\u03A9 C", 0, {}, Selection{28, 31}},
        {u"C", 31, {}, std::nullopt},
        {u"Dm", 0, {}, std::nullopt},
    };
    host.edit.select({2, 5});
    for (const Case& c : cases)
        EXPECT_EQ(host.edit.find(c.what, c.from, c.options), c.found)
            << shown(c.what) << " from " << c.from;
    EXPECT_EQ(host.edit.selection(), (Selection{2, 5}));
}

TEST(EditorRtf, PiecesGoInInTheirOwnFormats) {
    Host host;
    ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
    const std::string piece =
        "{\\rtf1\\deff0{\\fonttbl{\\f0 Courier New;}}\\f0{\\b bold} {\\i slanted}}";
    const auto replaced = host.edit.find(u"right", 0, {});
    ASSERT_TRUE(replaced.has_value());
    host.edit.select(*replaced);
    EXPECT_TRUE(host.edit.replaceSelectionRtf(piece));
    EXPECT_TRUE(
        host.text().starts_with("plain bold slanted lined other large red\rcentre\rbold slanted"))
        << host.text();
    const std::int32_t at = replaced->begin;
    EXPECT_EQ(host.styleOf(at, at + 4).bold, true);
    EXPECT_EQ(host.styleOf(at, at + 4).italic, false);
    EXPECT_EQ(host.styleOf(at + 5, at + 12).italic, true);
    EXPECT_EQ(host.styleOf(at + 5, at + 12).bold, false);
    EXPECT_EQ(described(host.styleOf(u"plain")), "Courier New 20 - - - black left");
}

// Characters that a control would write as "?" or as a look-alike.
TEST(EditorRtf, KeepsEveryCharacter) {
    const TextView words[] = {u"caf\u00E9 \u20AC \u201Cso\u201D \u2014",
                              u"\u03A9\u03B4\u03AE",
                              u"\u0421\u043D\u0435\u0433",
                              u"\u0159eka \u0141\u00F3d\u017A",
                              u"\u4E2D\u6587",
                              u"F\u266F B\u266D",
                              u"\U0001F3B8 solo",
                              u"{a\\b} ~ \u00A0 \u00AD"};
    for (const TextView word : words) {
        SCOPED_TRACE(shown(word));
        Host host;
        const Text line = u"C  " + Text(word) + u" G\rend";
        host.plain(line);
        const auto length = static_cast<std::int32_t>(word.size());
        host.edit.select({3, 3 + length});
        host.edit.setBold(true);

        const std::string whole = host.edit.rtf();
        EXPECT_TRUE(isAscii(whole));
        host.plain(word);
        std::string piece = host.edit.rtf();
        piece.erase(piece.rfind("\\par"), 4);  // of words within a line
        ASSERT_TRUE(host.edit.loadRtf(whole));
        EXPECT_EQ(host.text(), shown(line));
        EXPECT_EQ(host.styleOf(3, 3 + length).bold, true);
        EXPECT_EQ(host.styleOf(0, 2).bold, false);
        // Again and again: nothing may wear off.
        EXPECT_EQ(host.edit.rtf(), whole);

        host.edit.select({0, 2});
        EXPECT_TRUE(host.edit.replaceSelectionRtf(piece));
        EXPECT_EQ(host.text(), shown(Text(word) + line.substr(2)));
    }
}

// Cyrillic fonts have none of the accents, and a control writes the bare letters for them.
TEST(EditorRtf, ASelectionKeepsEveryCharacterToo) {
    Host host;
    const std::string head = R"({\rtf1{\fonttbl{\f0\fcharset204 Courier New;}}\f0 )";
    const char* const songs[] = {
        R"(a\u1087? caf\u233? \u241?\par two \u233?t\u233?\par end})",
        // Cells of a table are characters too, which not every way of asking for a text gives.
        R"(a\par\trowd\cellx900\cellx1800\intbl \u233?\cell b\u241?\cell\row\pard caf\u233?\par end})",
    };
    for (const std::string song : songs) {
        ASSERT_TRUE(host.edit.loadRtf(head + song)) << song;
        const Text all = host.edit.text().chars;
        const auto length = static_cast<std::int32_t>(all.size());
        for (const Selection range : {Selection{1, length - 1}, Selection{0, length}}) {
            host.edit.select(range);
            const std::string written = host.edit.selectionRtf();
            std::string wanted;
            for (const char16_t c : all) {
                if (c == u'\u00E9' || c == u'\u00F1')
                    wanted += "\\u" + std::to_string(static_cast<int>(c));
            }
            std::string found;
            for (std::size_t at = 0; (at = written.find("\\u2", at)) != std::string::npos; ++at)
                found += written.substr(at, 5);
            EXPECT_EQ(found, wanted) << written;
            EXPECT_EQ(host.edit.selection(), range);
        }
    }
}

TEST(EditorRtf, RefusesWhatIsNone) {
    for (const std::string_view bad : {"", "C  G\r\nla la", "rtf1 {x}"}) {
        Host host;
        host.plain(u"before");
        EXPECT_FALSE(host.edit.loadRtf(bad)) << bad;
    }
    Host host;
    host.plain(u"before");
    EXPECT_TRUE(host.edit.loadRtf("{\\rtf1\\ansi }"));
    EXPECT_TRUE(host.edit.isEmpty());
}

// Positions, lines and lengths of a text with short, empty and very long lines.
TEST(EditorText, PositionsCountALineEndOnce) {
    Host host;
    const Text text = u"C   G\r\r" + Text(5000, u'x') + u"\rAm \u03A9\U0001F3B8\r";
    host.plain(text);
    EXPECT_EQ(host.edit.text().chars, text);
    struct Case {
        std::int32_t line;
        std::int32_t first;
        std::int32_t length;
    };
    const Case cases[] = {{0, 0, 5}, {1, 6, 0}, {2, 7, 5000}, {3, 5008, 6}, {4, 5015, 0}};
    // Nothing wraps, however long.
    ASSERT_EQ(host.edit.lineCount(), 5);
    for (const auto& [line, first, length] : cases) {
        EXPECT_EQ(host.edit.firstOfLine(line), first) << line;
        EXPECT_EQ(host.edit.lengthOfLine(line), length) << line;
        EXPECT_EQ(host.edit.lineOf(first), line);
        EXPECT_EQ(host.edit.lineOf(first + length), line);
        EXPECT_EQ(host.edit.textBetween({first, first + length}),
                  text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(length)));
    }
    EXPECT_EQ(host.edit.lengthOfLine(5), 0);
    EXPECT_EQ(host.edit.textBetween({4, 8}), u"G\r\rx");
    EXPECT_EQ(host.edit.textBetween({3, 3}), u"");
    // A range that reaches past the end ends with the text.
    EXPECT_EQ(host.edit.textBetween({5014, 5999}), u"\r");
}

TEST(EditorText, PlainTextIsTakenAsItStands) {
    const TextView texts[] = {u"",
                              u"\r",
                              u"{\\rtf1\\ansi {\\b bold}\\par}",
                              u"{\\rtf1",
                              u"{\\urtf8 x}",
                              u"  C   G  \r\r  la\\par la}",
                              u"\uFEFFbegins with a mark",
                              u"caf\u00E9 \u03A9 \u4E2D\u6587 \U0001F3B8"};
    for (const TextView text : texts) {
        Host host;
        ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
        host.plain(text);
        EXPECT_EQ(host.text(), shown(text));
        EXPECT_EQ(host.edit.isEmpty(), text.empty());
        EXPECT_EQ(host.edit.selection(), (Selection{0, 0}));
        host.type(u"C");
        EXPECT_EQ(described(host.styleOf(0, 1)), "Lucida Console 20 - - - black left");
    }
}

// Nothing of the document before may show in the next one.
TEST(EditorText, PlainTextTakesNoFormatFromBefore) {
    Host host;
    ASSERT_TRUE(host.edit.loadRtf(kStyledSong));
    host.edit.select({0, 1000});
    host.edit.setAlignment(Alignment::Right);
    host.edit.setBold(true);
    host.plain(u"C  G\rla la");
    EXPECT_EQ(described(host.styleOf(0, 10)), "Lucida Console 20 - - - black left");
}

TEST(EditorText, TenMegabytesOfPlainText) {
    constexpr TextView verse = u"C#m7       F#/A#    \u03A9\rAmazing grace how sweet the sound\r";
    Text text;
    while (text.size() < 5u << 20)
        text += verse;
    Host host;
    host.plain(text);
    EXPECT_TRUE(host.edit.text().chars == text);
    EXPECT_EQ(host.edit.firstOfLine(host.edit.lineCount() - 1),
              static_cast<std::int32_t>(text.size()));
}

TEST(EditorEvents, OneForEachChangeAndNoneDuringWork) {
    Host host;
    host.plain(u"C  G");
    host.changes = 0;
    host.type(u"a");
    EXPECT_EQ(host.changes, 1);
    host.edit.select({0, 1});
    EXPECT_EQ(host.changes, 1);
    host.edit.replaceSelection(u"b");
    EXPECT_EQ(host.changes, 2);

    host.changes = 0;
    {
        const EditorWork outer(host.edit);
        EXPECT_TRUE(host.edit.atWork());
        host.edit.replaceSelection(u"x");
        {
            const EditorWork inner(host.edit);
            host.edit.setBold(true);
            host.edit.loadRtf(kStyledSong);
        }
        // The inner end is not yet the end.
        host.edit.replaceSelection(u"y");
        host.plain(u"Am");
        host.plain(u"");
        host.type(u"z");
        EXPECT_TRUE(host.edit.atWork());
    }
    EXPECT_FALSE(host.edit.atWork());
    EXPECT_EQ(host.changes, 0);
    host.type(u"a");
    EXPECT_EQ(host.changes, 1);
    // Loading is a command by itself.
    host.changes = 0;
    host.plain(u"C");
    EXPECT_TRUE(host.edit.loadRtf(kStyledSong));
    EXPECT_EQ(host.changes, 0);
}

TEST(EditorEvents, UndoMessagesChangeNothing) {
    for (const UINT message : {UINT{EM_UNDO}, UINT{WM_UNDO}, UINT{EM_REDO}}) {
        Host host;
        host.plain(u"C  G");
        host.type(u"Am ");
        host.edit.select({0, 2});
        host.edit.setBold(true);
        host.edit.replaceSelectionRtf("{\\rtf1\\ansi Dm}");
        const std::string before = host.edit.rtf();
        host.changes = 0;
        EXPECT_EQ(::SendMessageW(host.edit.handle(), EM_CANUNDO, 0, 0), 0);
        ::SendMessageW(host.edit.handle(), message, 0, 0);
        EXPECT_EQ(host.edit.rtf(), before);
        EXPECT_EQ(host.changes, 0);
    }
}

TEST(EditorView, GoesBackToWhereItWas) {
    Host host;
    Text text;
    for (int line = 0; line < 300; ++line)
        text += u"C   G   Am  F\r";
    host.plain(text);
    host.edit.scrollCaretIntoView();
    EXPECT_EQ(host.edit.firstVisibleLine(), 0);
    host.edit.select({2000, 2000});
    host.edit.scrollCaretIntoView();
    const std::int32_t first = host.edit.firstVisibleLine();
    EXPECT_GT(first, 0);
    EXPECT_LE(first, host.edit.lineOf(2000));
    const ScrollPosition view = host.edit.scrollPosition();
    host.edit.scrollTo({0, 0});
    EXPECT_EQ(host.edit.firstVisibleLine(), 0);
    host.edit.scrollTo(view);
    EXPECT_EQ(host.edit.firstVisibleLine(), first);
    EXPECT_EQ(host.edit.scrollPosition(), view);
}

// A look at formats draws nothing, and what was to be drawn before is still to be drawn.
TEST(Quiet, KeepsWhatIsToBeDrawn) {
    Host host;
    host.plain(u"one\rtwo\rthree");
    const HWND control = host.edit.handle();
    ::UpdateWindow(control);
    RECT place{};
    {
        const RichEdit::Quiet quiet(host.edit);
        const RichEdit::Quiet inner(host.edit);
        host.edit.styleOf({0, 3});
    }
    EXPECT_FALSE(::GetUpdateRect(control, &place, FALSE));
    ::InvalidateRect(control, nullptr, TRUE);
    {
        const RichEdit::Quiet quiet(host.edit);
        host.edit.faceRuns({0, 13}, 10);
    }
    EXPECT_TRUE(::GetUpdateRect(control, &place, FALSE));
    EXPECT_GT(place.bottom, 100);
    ::UpdateWindow(control);
    const int events = host.changes;
    {
        RichEdit::Quiet quiet(host.edit);
        host.edit.select({0, 3});
        host.edit.replaceSelection(u"1");
        quiet.changed();
    }
    EXPECT_TRUE(::GetUpdateRect(control, &place, FALSE));
    EXPECT_EQ(host.changes, events);
}

}  // namespace
}  // namespace melvorin::testing
