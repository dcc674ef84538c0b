// The window "About Melvorin", over the main window.
#include "Controls.h"
#include "app/frmAbout.h"

namespace melvorin::testing {
namespace {

// Gives the command and runs `steps` while the window is open; then it must be gone by itself.
void aboutRun(Program& program, std::function<void(HWND)> steps) {
    const WhileOpen run(L"MelvorinfrmAbout", std::move(steps));
    program.command(Command::mnuFileAbout);
    EXPECT_EQ(run.seen(), 1) << "the window did not come";
}

TEST(About, TellsTheVersionAndOpensTheLicences) {
    Program program(kNoSong);
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
    expectOneBox(program, "Licences");
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    EXPECT_EQ(::GetFocus(), before);
    // Enter closes it as well.
    aboutRun(program, [](HWND) { ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_RETURN, 1); });
}

}  // namespace
}  // namespace melvorin::testing
