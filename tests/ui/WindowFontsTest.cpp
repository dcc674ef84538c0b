// Every window of the program with the system's font and with one that is a step wider, as other
// versions of Windows have it: nothing is cut off, nothing overlaps. Windows that measure their
// texts stand a much larger font too, and being dragged.
#include "Controls.h"
#include "chords/FrmCifraCreator.h"
#include "widgets/FrmTxt.h"

namespace melvorin::testing {
namespace {

// How much wider and taller letters are than usual, in twelfths.
struct Growth {
    const char* name;
    int across;
    int down;
};
constexpr Growth kUsual{"", 12, 12};
// More than there is between the message fonts of Windows XP and Windows 10.
constexpr Growth kWider{", wider", 14, 15};
constexpr Growth kLarge{", large", 18, 18};

// Another font for the windows that are opened meanwhile.
class OtherFont {
  public:
    explicit OtherFont(const Growth& growth) {
        LOGFONTW font{};
        ::GetObjectW(uiFont(), sizeof font, &font);
        const SIZE usual = extentIn(uiFont());
        SIZE extent = usual;
        font.lfWidth = averageWidth(uiFont());
        const auto isLow = [&] { return 12 * extent.cy < growth.down * usual.cy; };
        while (isLow() || 12 * extent.cx < growth.across * usual.cx) {
            if (isLow())
                --font.lfHeight;
            else
                ++font.lfWidth;
            font_.reset(::CreateFontIndirectW(&font));
            extent = extentIn(font_.get());
        }
        former_ = exchangeUiFont(font_ ? font_.get() : uiFont());
    }
    OtherFont(const OtherFont&) = delete;
    OtherFont& operator=(const OtherFont&) = delete;
    ~OtherFont() { exchangeUiFont(former_); }

  private:
    static LONG averageWidth(HFONT font) {
        const WindowDc screen(nullptr);
        const SelectedObject selected(screen.get(), font);
        TEXTMETRICW metrics{};
        ::GetTextMetricsW(screen.get(), &metrics);
        return metrics.tmAveCharWidth;
    }
    static SIZE extentIn(HFONT font) {
        constexpr std::wstring_view sample = L"The quick brown fox jumps over the lazy dog";
        const WindowDc screen(nullptr);
        const SelectedObject selected(screen.get(), font);
        SIZE extent{};
        ::GetTextExtentPoint32W(screen.get(), sample.data(), static_cast<int>(sample.size()),
                                &extent);
        return extent;
    }

    UniqueFont font_;
    HFONT former_ = nullptr;
};

struct Part {
    HWND window;
    RECT area;  // in the parent's client coordinates
    std::string kind;
    std::string caption;
    LONG_PTR style;

    bool isButton(LONG_PTR type) const { return kind == "Button" && (style & BS_TYPEMASK) == type; }
    bool isFrame() const { return isButton(BS_GROUPBOX); }
    bool isOption() const { return kind == "Button" && !isFrame(); }
    SIZE room() const { return {area.right - area.left, area.bottom - area.top}; }
};

std::vector<Part> partsOf(HWND parent) {
    std::vector<Part> parts;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        if (!(::GetWindowLongPtrW(child, GWL_STYLE) & WS_VISIBLE))
            continue;
        Part part{child,
                  {},
                  className(child),
                  shown(windowText(child)),
                  ::GetWindowLongPtrW(child, GWL_STYLE)};
        ::GetWindowRect(child, &part.area);
        ::MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&part.area), 2);
        parts.push_back(part);
    }
    return parts;
}

// What the text of a part takes in its font, in lines as wide as the part where it has several.
SIZE extentOf(const Part& part) {
    const auto font = reinterpret_cast<HFONT>(::SendMessageW(part.window, WM_GETFONT, 0, 0));
    const WindowDc dc(part.window);
    const SelectedObject selected(dc.get(), font != nullptr ? font : uiFont());
    RECT area{0, 0, part.room().cx, 0};
    const Text text = windowText(part.window);
    const bool wraps = part.kind == "Static" &&
                       !(part.style & (SS_CENTERIMAGE | SS_ELLIPSISMASK)) &&
                       (part.style & SS_TYPEMASK) <= SS_RIGHT;
    UINT format = DT_CALCRECT;
    if (wraps)
        format |= DT_WORDBREAK;
    else if (text.find(u'\n') == Text::npos)
        format |= DT_SINGLELINE;
    if (wraps && part.style & SS_EDITCONTROL)
        format |= DT_EDITCONTROL;
    if (part.style & SS_NOPREFIX && part.kind == "Static")
        format |= DT_NOPREFIX;
    ::DrawTextW(dc.get(), wide(text), -1, &area, format);
    return {area.right, area.bottom};
}

// What is needed to show the text of a part whole; none where it cannot be cut off, or is meant to.
SIZE needOf(const Part& part) {
    if (part.caption.empty() || part.kind == "Edit")
        return {};
    if (part.kind == "TarnelButton") {
        const auto* button = static_cast<const TarnelButton*>(
            reinterpret_cast<Window*>(::GetWindowLongPtrW(part.window, GWLP_USERDATA)));
        const Extent ideal = button->idealSize();
        return {ideal.width - scaled(14), ideal.height - scaled(6)};
    }
    if (part.isFrame())
        return {extentOf(part).cx + scaled(18), 0};
    if (part.isOption())
        return {extentOf(part).cx + scaled(18), extentOf(part).cy};
    const bool shortens = part.style & SS_ELLIPSISMASK;
    if (part.kind == "Static")
        return {shortens ? 0 : extentOf(part).cx, extentOf(part).cy};
    return {};
}

void expectSound(HWND window, const std::string& name) {
    SCOPED_TRACE(name);
    RECT client{};
    ::GetClientRect(window, &client);
    const std::vector<Part> parts = partsOf(window);
    EXPECT_FALSE(parts.empty());
    for (const Part& part : parts) {
        const std::string what = part.kind + " \"" + part.caption + "\"";
        EXPECT_TRUE(part.area.left >= 0 && part.area.top >= 0 && part.area.right <= client.right &&
                    part.area.bottom <= client.bottom)
            << what << " leaves the window";
        const SIZE need = needOf(part);
        EXPECT_LE(need.cx, part.room().cx) << what << " is too narrow";
        EXPECT_LE(need.cy, part.room().cy) << what << " is too low";
        for (const Part& other : parts) {
            RECT common{};
            if (part.window < other.window && part.isFrame() == other.isFrame()) {
                EXPECT_FALSE(::IntersectRect(&common, &part.area, &other.area))
                    << what << " and " << other.kind << " \"" << other.caption << "\"";
            }
        }
    }
}

// How far the parts of a window stay from its right and its lower edge.
SIZE restOf(HWND window) {
    RECT client{};
    ::GetClientRect(window, &client);
    SIZE rest{client.right, client.bottom};
    for (const Part& part : partsOf(window)) {
        rest.cx = std::min(rest.cx, client.right - part.area.right);
        rest.cy = std::min(rest.cy, client.bottom - part.area.bottom);
    }
    return rest;
}

SIZE sizeOf(HWND window) {
    RECT own{};
    ::GetWindowRect(window, &own);
    return {own.right - own.left, own.bottom - own.top};
}

// Drags the border by so much, and back beyond what the texts need.
void expectToFollow(HWND window, const std::string& name, SIZE by) {
    const SIZE usual = sizeOf(window);
    const SIZE rest = restOf(window);
    const auto drag = [&](LONG width, LONG height) {
        ::SetWindowPos(window, nullptr, 0, 0, static_cast<int>(width), static_cast<int>(height),
                       SWP_NOMOVE | SWP_NOZORDER);
    };
    ASSERT_TRUE(::GetWindowLongPtrW(window, GWL_STYLE) & WS_THICKFRAME) << name;
    drag(usual.cx + 160, usual.cy + 120);
    EXPECT_EQ(sizeOf(window).cx, usual.cx + by.cx) << name;
    EXPECT_EQ(sizeOf(window).cy, usual.cy + by.cy) << name;
    EXPECT_EQ(restOf(window).cx, rest.cx) << name;
    EXPECT_EQ(restOf(window).cy, rest.cy) << name;
    expectSound(window, name + ", dragged");
    drag(50, 50);
    EXPECT_EQ(sizeOf(window).cx, usual.cx) << name;
    EXPECT_EQ(sizeOf(window).cy, usual.cy) << name;
    expectSound(window, name + ", dragged back");
}

// A modal window that the command opens; it is closed when it has been looked at.
void inModal(Program& program, const wchar_t* name, Command command,
             const std::function<void(HWND)>& steps) {
    const WhileOpen run(name, [&](HWND window) {
        steps(window);
        ::PostMessageW(window, WM_CLOSE, 0, 0);
    });
    program.command(command);
    EXPECT_EQ(run.seen(), 1) << shown(textOf(name)) << " did not come";
}

// The windows of chord notation: its creator, which opens larger than it has to be, and the
// progress of a key change.
void lookAtNotation(Program& program, const std::string& font) {
    inModal(program, L"MelvorinFrmCifraCreator", Command::mnuEditCifra, [&](HWND window) {
        const SIZE opened = sizeOf(window);
        const auto expectBoxes = [&] {
            for (const int box : {FrmCifraCreator::kRb1, FrmCifraCreator::kRtb2}) {
                const SIZE size = sizeOf(::GetDlgItem(window, box));
                EXPECT_GT(3 * size.cx, sizeOf(window).cx) << box;
                EXPECT_GT(4 * size.cy, sizeOf(window).cy) << box;
            }
        };
        expectBoxes();
        expectSound(window, "creator" + font);
        const SIZE rest = restOf(window);
        ::SetWindowPos(window, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_LT(sizeOf(window).cx, opened.cx);
        EXPECT_LT(sizeOf(window).cy, opened.cy);
        EXPECT_EQ(restOf(window).cx, rest.cx);
        EXPECT_EQ(restOf(window).cy, rest.cy);
        expectBoxes();
        expectSound(window, "creator at its least" + font);
        expectToFollow(window, "creator" + font, {160, 120});
    });
    const WhenActive keyChange("MelvorinFrmCifra", [&](HWND window) {
        EXPECT_FALSE(::GetWindowLongPtrW(window, GWL_STYLE) & WS_SYSMENU);
        expectSound(window, "key change" + font);
    });
    program.command(Command::mnuDwn);
    EXPECT_EQ(keyChange.seen(), 1);
}

// The windows that measure their texts.
void lookAtMeasured(Program& program, ScratchFolder& folder, const std::string& font) {
    Form1& form = *program.form;
    const auto look = [&](Command command, const Window& window, const char* name, SIZE by) {
        program.command(command);
        program.pump();
        ASSERT_TRUE(window.isOpen() && ::IsWindowVisible(window.handle())) << name;
        expectSound(window.handle(), name + font);
        expectToFollow(window.handle(), name + font, by);
        ::ShowWindow(window.handle(), SW_HIDE);
    };
    look(Command::mnuFind, form.findWindow(), "find", {160, 0});
    look(Command::mnuTab, form.tabWindow(), "tablature", {160, 120});
    look(Command::mnuFont, form.fontWindow(), "font and colours", {160, 120});
    look(Command::mnuDps, form.songWindow(), "tuner", {160, 120});

    inModal(program, L"MelvorinfrmAbout", Command::mnuFileAbout, [&](HWND window) {
        EXPECT_FALSE(::GetWindowLongPtrW(window, GWL_STYLE) & WS_THICKFRAME);
        expectSound(window, "about" + font);
    });
    inModal(program, L"MelvorinFrmToKey", Command::mnuToKey, [&](HWND window) {
        expectSound(window, "to another key" + font);
        expectToFollow(window, "to another key" + font, {160, 120});
    });
    inModal(program, L"MelvorinfrmPageSetup", Command::mnuPageSetup,
            [&](HWND window) { expectSound(window, "page setup" + font); });
    inModal(program, L"MelvorinfrmPreview", Command::mnuPreview, [&](HWND window) {
        expectSound(window, "preview" + font);
        // It opens larger than it must be.
        ::SetWindowPos(window, nullptr, 0, 0, 50, 50, SWP_NOMOVE | SWP_NOZORDER);
        expectToFollow(window, "preview" + font, {160, 120});
    });
    inModal(program, L"MelvorinfrmExport", Command::mnuFileExport, [&](HWND window) {
        expectSound(window, "export" + font);
        expectToFollow(window, "export" + font, {160, 120});
    });
    // In Shift-JIS; the name is a word that no line has room for.
    const Text name = Text(120, u'w') + u".txt";
    program.dialogs.choose(FileChoice{folder.add(name, "\x8Ft\x82\xCC\x89\xCC\x82\xF0"), 3});
    inModal(program, L"MelvorinfrmCodePage", Command::mnuFileOpen, [&](HWND window) {
        expectSound(window, "code page" + font);
        expectToFollow(window, "code page" + font, {160, 120});
    });
    program.clipboard.plain.emplace(FrmTxt::kLongText + 1, u'\t');
    inModal(program, L"MelvorinFrmTxt", Command::mnuEditPaste,
            [&](HWND window) { expectSound(window, "progress" + font); });
}

void expectShown(Program& program, HWND window, const std::string& name) {
    program.pump();
    ASSERT_TRUE(window != nullptr && ::IsWindowVisible(window)) << name;
    expectSound(window, name);
}

// The panel of the full screen and its bars.
void lookAtStage(Program& program, const std::string& font) {
    program.command(Command::mnuFullScreen);
    frmFScreenB& panel = program.form->fullScreen().panel();
    program.waitUntil([&] { return panel.isPrepared(); });
    expectShown(program, panel.handle(), "panel of the full screen" + font);
    {
        const WhileOpen pedals(L"MelvorinfrmPedals", [&](HWND window) {
            expectSound(window, "pedals" + font);
            expectToFollow(window, "pedals" + font, {160, 120});
            ::PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        });
        clickOn(::GetDlgItem(panel.handle(), frmFScreenB::kPedals));
        EXPECT_EQ(pedals.seen(), 1);
    }
    clickOn(::GetDlgItem(panel.handle(), frmFScreenB::Command8));
    const HWND enlarge = ::FindWindowW(L"MelvorinForm3b", nullptr);
    expectShown(program, enlarge, "small bar" + font);
    clickOn(::GetWindow(enlarge, GW_CHILD));
    clickOn(::GetDlgItem(panel.handle(), frmFScreenB::Command4));
    expectShown(program, panel.bar().handle(), "bar of a run" + font);
}

// The dictionary's views in turn; it has the width that the main window leaves it.
void lookAtDictionary(Program& program, const std::string& font) {
    Form1& form = *program.form;
    const auto look = [&](HWND window, const char* name) {
        expectShown(program, window, name + font);
    };
    program.command(Command::mnuEditDic);
    DictionaryPanel& dictionary = form.dictionaryPanel();
    ::SetWindowTextW(dictionary.part(PanelPart::TS1), L"C#M7");
    dictionary.press(PanelPart::Command1);
    EXPECT_TRUE(::IsWindowVisible(dictionary.part(PanelPart::Other)));
    look(dictionary.handle(), "dictionary");
    dictionary.press(PanelPart::Gb9);
    look(dictionary.handle(), "dictionary, expanded");
    dictionary.press(PanelPart::GB15);
    look(dictionary.handle(), "dictionary, table");
    dictionary.press(PanelPart::GB8);
}

TEST(WindowFonts, NothingIsCutOffInAnyWindow) {
    for (const Growth& growth : {kUsual, kWider, kLarge}) {
        const OtherFont font(growth);
        ScratchFolder folder;
        Program program;
        program.program.programFolder = Win32ProgramFolder().folder();
        ASSERT_TRUE(program.start(folder.add(u"song.txt", "C  G\r\nA word\r\nof song\r\n")));
        lookAtMeasured(program, folder, growth.name);
        lookAtNotation(program, growth.name);
        lookAtDictionary(program, growth.name);
        lookAtStage(program, growth.name);
        EXPECT_TRUE(program.messages.boxes.empty());
    }
}

}  // namespace
}  // namespace melvorin::testing
