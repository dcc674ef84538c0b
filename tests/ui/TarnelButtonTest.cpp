// The picture button under a real pointer and real keys.
#include "Scripted.h"
#include "widgets/TarnelButton.h"

namespace melvorin::testing {
namespace {

constexpr int kFirst = 11;
constexpr int kSecond = 12;

// A dialog with two buttons and a place that is neither.
class Host : public Window {
  public:
    bool open() {
        WindowSpec spec;
        spec.className = L"MelvorinTestHost";
        spec.style = WS_POPUP | WS_VISIBLE;
        spec.x = 100;
        spec.y = 100;
        spec.width = 300;
        spec.height = 120;
        return create(spec);
    }
    std::vector<int> commands;

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED)
            commands.push_back(LOWORD(wParam));
        return passOn(message, wParam, lParam);
    }
};

class ButtonStage : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(host.open());
        ASSERT_TRUE(first.create(host.handle(), kFirst, {20, 20, 120, 50}, u"&First"));
        ASSERT_TRUE(second.create(host.handle(), kSecond, {160, 20, 260, 50}, u"&Second"));
        first.onEvent([this](const ButtonEvent& event) { note(event); });
        pointTo(140, 90);
        ::SetForegroundWindow(host.handle());
        ::SetFocus(second.handle());
        waitUntil([this] {
            return ::GetForegroundWindow() == host.handle() && !first.isHovering() &&
                   !second.isHovering();
        });
        // The window may have come up under the pointer.
        log.clear();
        services.sounds.played.clear();
    }

    void note(const ButtonEvent& event) {
        constexpr const char* names[] = {"Click", "KeyDown", "KeyUp", "KeyPress", "Down",
                                         "Move",  "Up",      "In",    "Out"};
        if (event.kind == ButtonEventKind::MouseMove)
            return;
        log += std::string(names[static_cast<int>(event.kind)]) + " ";
        last = event;
    }
    void pump() {
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (::IsDialogMessageW(host.handle(), &message))
                continue;
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    template <class Condition>
    void waitUntil(Condition condition) {
        const ULONGLONG limit = ::GetTickCount64() + 60'000;
        while (!condition()) {
            if (::GetTickCount64() > limit) {
                ADD_FAILURE() << "waited too long; so far: " << log;
                return;
            }
            pump();
            ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        }
    }
    bool logEndsWith(const std::string& words) const { return log.ends_with(words); }
    // The pointer stays where it was put only when the display has told of all its moves before.
    void pointTo(int x, int y) {
        POINT point{x, y};
        ::ClientToScreen(host.handle(), &point);
        int seenThere = 0;
        waitUntil([&] {
            POINT now{};
            ::GetCursorPos(&now);
            const bool isThere = now.x == point.x && now.y == point.y;
            if (!isThere)
                ::SetCursorPos(static_cast<int>(point.x), static_cast<int>(point.y));
            seenThere = isThere ? seenThere + 1 : 0;
            return seenThere >= 5;
        });
    }
    void mouse(DWORD flag) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flag;
        ::SendInput(1, &input, sizeof input);
        pump();
    }
    void key(WORD code, bool down) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
        ::SendInput(1, &input, sizeof input);
        pump();
    }
    void hover() {
        pointTo(70, 35);
        // Where the window came up under the pointer nothing tells it of a move.
        waitUntil([this] {
            if (!first.isHovering())
                mouse(MOUSEEVENTF_MOVE);
            return first.isHovering();
        });
    }

    Program services;
    ButtonSounds sounds{services.services};
    Host host;
    TarnelButton first{sounds};
    TarnelButton second{sounds};
    std::string log;
    ButtonEvent last{};
    const std::string over = "C:\\Program.\\Msnds\\over.WAV";
    const std::string click = "C:\\Program.\\Msnds\\Click.WAV";
};

TEST_F(ButtonStage, HoverAndLeave) {
    hover();
    waitUntil([this] { return !services.sounds.played.empty(); });
    EXPECT_EQ(log, "In ");
    pointTo(140, 90);
    waitUntil([this] { return logEndsWith("Out "); });
    EXPECT_FALSE(first.isHovering());
    // The timer runs only meanwhile; there is none to end.
    EXPECT_FALSE(::KillTimer(first.handle(), 1));
    // The other one hovers by itself, also straight from its neighbour.
    hover();
    pointTo(200, 35);
    waitUntil([this] { return second.isHovering() && !first.isHovering(); });
    EXPECT_EQ(services.sounds.played, (std::vector<std::string>{over, over, over}));
}

TEST_F(ButtonStage, MouseClicks) {
    hover();
    mouse(MOUSEEVENTF_LEFTDOWN);
    waitUntil([this] { return logEndsWith("Down "); });
    EXPECT_TRUE(first.isPressed());
    EXPECT_EQ(::GetFocus(), first.handle());
    EXPECT_TRUE(host.commands.empty());
    mouse(MOUSEEVENTF_LEFTUP);
    waitUntil([this] { return logEndsWith("Up "); });
    EXPECT_EQ(log, "In Down Click Up ");
    EXPECT_EQ(last.button, MouseButton::Left);
    EXPECT_EQ(last.x, 50);
    EXPECT_EQ(last.y, 15);
    EXPECT_EQ(host.commands, std::vector<int>{kFirst});
    EXPECT_EQ(services.sounds.played, (std::vector<std::string>{over, click}));
}

TEST_F(ButtonStage, ReleasedOutsideOrByTheRightButtonItDoesNotClick) {
    hover();
    mouse(MOUSEEVENTF_LEFTDOWN);
    waitUntil([this] { return first.isPressed(); });
    pointTo(140, 90);
    waitUntil([this] { return logEndsWith("Out "); });
    EXPECT_FALSE(first.isPressed());
    mouse(MOUSEEVENTF_LEFTUP);
    waitUntil([this] { return logEndsWith("Up "); });
    hover();
    mouse(MOUSEEVENTF_RIGHTDOWN);
    mouse(MOUSEEVENTF_RIGHTUP);
    waitUntil([this] { return logEndsWith("Down Up "); });
    // A press that began elsewhere is nothing to it.
    pointTo(140, 90);
    mouse(MOUSEEVENTF_LEFTDOWN);
    pointTo(70, 35);
    mouse(MOUSEEVENTF_LEFTUP);
    EXPECT_EQ(log.find("Click"), std::string::npos) << log;
    EXPECT_TRUE(host.commands.empty());
}

TEST_F(ButtonStage, KeysClickWhereverThePointerIs) {
    ::SetFocus(first.handle());
    key(VK_SPACE, true);
    waitUntil([this] { return first.isPressed(); });
    key(VK_SPACE, false);
    waitUntil([this] { return logEndsWith("KeyUp "); });
    EXPECT_EQ(log.substr(log.find("Click")), "Click Up KeyUp ");
    EXPECT_FALSE(first.isPressed() || first.isHovering());
    EXPECT_EQ(host.commands, std::vector<int>{kFirst});

    key(VK_RETURN, true);
    key(VK_RETURN, false);
    waitUntil([this] { return host.commands.size() == 2; });
    EXPECT_EQ(host.commands.back(), kFirst);
    EXPECT_EQ(services.sounds.played, (std::vector<std::string>{click, click}));
    // A key held down clicks once.
    ::SendMessageW(first.handle(), WM_KEYDOWN, VK_RETURN, 1 << 30 | 1);
    EXPECT_EQ(host.commands.size(), 2U);
    // The window's own rule comes first where it has one.
    first.setEnterClicks(false);
    key(VK_RETURN, true);
    key(VK_RETURN, false);
    waitUntil([this] { return host.commands.size() == 3; });
    EXPECT_EQ(host.commands.back(), IDOK);

    key(VK_TAB, true);
    key(VK_TAB, false);
    waitUntil([this] { return ::GetFocus() == second.handle(); });
    // A press is forgotten when the focus goes.
    key(VK_SPACE, true);
    waitUntil([this] { return second.isPressed(); });
    ::SetFocus(first.handle());
    EXPECT_FALSE(second.isPressed());
    key(VK_SPACE, false);
    // A mnemonic clicks.
    host.commands.clear();
    ::PostMessageW(first.handle(), WM_SYSCHAR, 's', 1 << 29);
    waitUntil([this] { return !host.commands.empty(); });
    EXPECT_EQ(host.commands, std::vector<int>{kSecond});
}

TEST_F(ButtonStage, SilencedByTheSoundSchemeOrTheIniFile) {
    struct Case {
        std::optional<Text> scheme;
        TextView option;
        std::size_t played;
    };
    for (const auto& [scheme, option, played] : {Case{std::nullopt, u"1", 1},
                                                 {u".Default", u"", 1},
                                                 {u".None", u"1", 0},
                                                 {std::nullopt, u"0", 0}}) {
        Program program;
        program.system.clearType = scheme;
        program.profiles.write(u"Sounds", u"Buttons", option, u"C:\\Program\\Melvorin.ini");
        ButtonSounds buttonSounds(program.services);
        EXPECT_TRUE(program.system.calls.empty());
        buttonSounds.play(ButtonSound::Click);
        EXPECT_EQ(program.sounds.played.size(), played);
        buttonSounds.play(ButtonSound::Over);
        EXPECT_EQ(program.system.calls, std::vector<std::string>{"read AppEvents\\Schemes\\"});
    }
}

// The path has a "." behind the folder's name, which means the folder all the same.
TEST_F(ButtonStage, TheSoundsAreFoundBesideTheProgram) {
    struct Installed : ScriptedProgram {
        Text folder() override { return path; }
        Text path;
    };
    const ScratchFolder folder;
    Installed program;
    program.path = folder.path();
    const Text msnds = folder.file(u"Msnds");
    ASSERT_TRUE(::CreateDirectoryW(wide(msnds), nullptr));
    for (const ButtonSound sound : {ButtonSound::Click, ButtonSound::Over}) {
        const Text name = sound == ButtonSound::Click ? u"Click.WAV" : u"over.WAV";
        EXPECT_FALSE(Win32Files().exists(soundPath(program, sound)));
        ASSERT_TRUE(Win32Files().write(joinPath(msnds, name), "RIFF"));
        EXPECT_TRUE(Win32Files().exists(soundPath(program, sound)));
        ::DeleteFileW(wide(joinPath(msnds, name)));
    }
    ::RemoveDirectoryW(wide(msnds));
}

// ---- Looks ------------------------------------------------------------------------------------

// The button as it draws itself, 100 by 30 pixels.
class Drawing {
  public:
    explicit Drawing(const TarnelButton& button) {
        ::SendMessageW(button.handle(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc_.get()), 0);
    }
    COLORREF at(int x, int y) const { return ::GetPixel(dc_.get(), x, y); }

  private:
    WindowDc screen_{nullptr};
    UniqueMemoryDc dc_{::CreateCompatibleDC(screen_.get())};
    UniqueBitmap canvas_{::CreateCompatibleBitmap(screen_.get(), 100, 30)};
    SelectedObject selected_{dc_.get(), canvas_.get()};
};

COLORREF pixelOf(const TarnelButton& button, int x, int y) {
    return Drawing(button).at(x, y);
}

// How many pixels are neither face nor bevel: the ink of caption and picture.
int inkOf(const TarnelButton& button, COLORREF face) {
    const Drawing drawing(button);
    int ink = 0;
    for (int y = 4; y < 26; ++y) {
        for (int x = 4; x < 96; ++x)
            ink += drawing.at(x, y) != face ? 1 : 0;
    }
    return ink;
}

TEST_F(ButtonStage, DrawsWhatItsPropertiesSay) {
    const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
    EXPECT_GT(inkOf(first, face), 10);
    ::SetWindowTextW(first.handle(), L"");
    EXPECT_EQ(inkOf(first, face), 0);
    // A name is for screen readers only.
    first.setName(u"Nothing to see");
    wchar_t text[40] = L"";
    ::GetWindowTextW(first.handle(), text, 40);
    EXPECT_STREQ(text, L"Nothing to see");
    EXPECT_EQ(inkOf(first, face), 0);

    ButtonProperties look;
    look.BackColor = RGB(10, 200, 30);
    first.setProperties(look);
    EXPECT_EQ(pixelOf(first, 50, 15), COLORREF{RGB(10, 200, 30)});
    // Styles below 2 are pushed in while pressed.
    first.setEnterClicks(false);  // or the frame of the default button is where the bevel begins
    const COLORREF light = ::GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF shadow = ::GetSysColor(COLOR_BTNSHADOW);
    for (const int style : {0, 1, 2, 3}) {
        look.ButtonStyle = style;
        first.setProperties(look);
        EXPECT_EQ(pixelOf(first, 1, 15), style == 1 ? COLORREF{RGB(10, 200, 30)} : light);
        ::SendMessageW(first.handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_EQ(pixelOf(first, 1, 15), style < 2 ? shadow : light);
        EXPECT_EQ(pixelOf(first, 98, 15), style < 2 ? light : shadow);
        ::SendMessageW(first.handle(), WM_LBUTTONUP, 0, MAKELPARAM(-5, 5));
    }
    look.BEVEL = 0;
    first.setProperties(look);
    EXPECT_EQ(pixelOf(first, 1, 15), COLORREF{RGB(10, 200, 30)});
}

TEST_F(ButtonStage, ShowsItsPictures) {
    constexpr std::uint32_t red = 0xFF0000;
    constexpr std::uint32_t blue = 0x0000FF;
    const auto square = [](std::uint32_t colour) {
        return Pixels{10, 10, std::vector<std::uint32_t>(100, colour), false};
    };
    ::SetWindowTextW(first.handle(), L"");
    first.setPicture(square(red), square(blue));
    EXPECT_EQ(pixelOf(first, 50, 15), COLORREF{RGB(255, 0, 0)});
    hover();
    EXPECT_EQ(pixelOf(first, 50, 15), COLORREF{RGB(0, 0, 255)});
    pointTo(140, 90);
    waitUntil([this] { return !first.isHovering(); });
    EXPECT_EQ(pixelOf(first, 50, 15), COLORREF{RGB(255, 0, 0)});
    ::EnableWindow(first.handle(), FALSE);
    EXPECT_NE(pixelOf(first, 50, 15), COLORREF{RGB(255, 0, 0)});
    // From the program's resources, as a stored property names it.
    TextPropertyBag bag(u"Picture=#224\r\nPictureWidth=20\r\nPictureHeight=20");
    EXPECT_GT(loadPicture(u"#224").width, 24);
    first.readProperties(bag);
    EXPECT_GT(inkOf(first, ::GetSysColor(COLOR_BTNFACE)), 20);
    EXPECT_EQ(loadPicture(u"#9").width, 0);
    EXPECT_EQ(loadPicture(u"C:\\none.bmp").width, 0);
}

// A handler may close the window that its button stands on.
TEST_F(ButtonStage, SurvivesTheEndOfItsWindow) {
    for (const auto kind : {ButtonEventKind::MouseIn, ButtonEventKind::MouseDown,
                            ButtonEventKind::Click, ButtonEventKind::KeyUp}) {
        if (!host.isOpen()) {
            ASSERT_TRUE(host.open());
            ASSERT_TRUE(first.create(host.handle(), kFirst, {20, 20, 120, 50}, u"&First"));
        }
        first.onEvent([&](const ButtonEvent& event) {
            if (event.kind == kind)
                host.destroy();
        });
        const HWND window = first.handle();
        ::SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        ::SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        ::SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        ::SendMessageW(window, WM_KEYUP, VK_SPACE, 0);
        EXPECT_FALSE(host.isOpen() || first.isOpen());
        EXPECT_FALSE(first.isHovering() || first.isPressed()) << "it may be created again";
    }
}

}  // namespace
}  // namespace melvorin::testing
