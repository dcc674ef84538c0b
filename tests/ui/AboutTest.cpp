// The window "About Melvorin", over the main window.
#include "Scripted.h"
#include "app/frmAbout.h"

namespace melvorin::testing {
namespace {

// What is done while the window is open.
std::function<void(HWND)> pendingSteps;

void CALLBACK look(HWND, UINT, UINT_PTR, DWORD) {
    const HWND window = ::FindWindowW(L"MelvorinfrmAbout", nullptr);
    if (pendingSteps && window != nullptr && ::IsWindowVisible(window))
        std::exchange(pendingSteps, nullptr)(window);
}

// Gives the command and runs `steps` while the window is open; then it must be gone by itself.
void aboutRun(Program& program, std::function<void(HWND)> steps) {
    pendingSteps = std::move(steps);
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 10, look);
    program.command(Command::mnuFileAbout);
    ::KillTimer(nullptr, timer);
    EXPECT_FALSE(pendingSteps) << "the window did not come";
}

TEST(About, TellsTheVersionAndOpensTheLicences) {
    Program program;
    ASSERT_TRUE(program.start());
    const HWND before = ::GetFocus();
    aboutRun(program, [&](HWND window) {
        EXPECT_FALSE(::IsWindowEnabled(program.form->handle()));
        const HWND text = ::GetDlgItem(window, frmAbout::kText);
        const std::string title = shown(windowText(::GetWindow(text, GW_HWNDPREV)));
        EXPECT_TRUE(title.starts_with("Melvorin ") && title.find('.') != std::string::npos)
            << title;
        EXPECT_NE(shown(windowText(text)).find("SQLite 3."), std::string::npos);
        // All of it can be seen: the last line ends above the foot of the box.
        RECT box{};
        ::GetClientRect(text, &box);
        const auto last = ::SendMessageW(text, EM_POSFROMCHAR,
                                         static_cast<WPARAM>(::GetWindowTextLengthW(text) - 1), 0);
        EXPECT_GT(HIWORD(last), 0);
        EXPECT_LT(HIWORD(last) + scaled(13), box.bottom);

        EXPECT_EQ(::GetFocus(), ::GetDlgItem(window, frmAbout::kOk));
        ::SendMessageW(::GetDlgItem(window, frmAbout::kLicences), BM_CLICK, 0, 0);
        program.shell.works = false;
        ::SendMessageW(::GetDlgItem(window, frmAbout::kLicences), BM_CLICK, 0, 0);
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_ESCAPE, 1);
    });
    EXPECT_EQ(program.shell.opened, std::vector<std::string>(2, "C:\\Program\\Licences"));
    ASSERT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_NE(program.messages.boxes[0].text.find("Licences"), std::string::npos);
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    EXPECT_EQ(::GetFocus(), before);
    // Enter closes it as well.
    aboutRun(program, [](HWND) { ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_RETURN, 1); });
}

}  // namespace
}  // namespace melvorin::testing
