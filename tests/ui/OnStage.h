// The full-screen view, opened over the real main window.
#pragma once

#include "Controls.h"

namespace melvorin::testing {

class OnStage : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(program.start()); }

    static Text songOf(int lines, std::size_t width = 20) {
        Text song;
        for (int line = 1; line <= lines; ++line) {
            song += fromUtf8("Line " + std::to_string(line) + " ");
            song.append(width, u'a');
            song += line < lines ? u"\r" : u"";
        }
        return song;
    }
    void open(const Text& song) {
        ASSERT_TRUE(program.editor().loadPlain({song}, u"Lucida Console", 10));
        open();
    }
    void open() {
        program.command(Command::mnuFullScreen);
        ASSERT_TRUE(view().isOpen());
        program.waitUntil([this] { return panel().isPrepared(); });
    }

    frmFScreen& view() { return program.form->fullScreen(); }
    frmFScreenB& panel() { return view().panel(); }
    RichEdit& text() { return view().FSRTB(); }
    HWND item(int id) { return ::GetDlgItem(panel().handle(), id); }
    HWND onBar(int id) { return ::GetDlgItem(panel().bar().handle(), id); }
    void choose(int list, int number) {
        ::SendMessageW(item(list), CB_SETCURSEL, static_cast<WPARAM>(number - 1), 0);
    }
    void setJump(int row, int from, int to, int times) {
        ::CheckDlgButton(panel().handle(), frmFScreenB::CK + row, BST_CHECKED);
        choose(frmFScreenB::CB + 2 * row - 1, from);
        choose(frmFScreenB::CB + 2 * row, to);
        choose(frmFScreenB::CB + 10 + row, times);
    }
    void click(HWND button) {
        ::SendMessageW(button, BM_CLICK, 0, 0);
        program.pump();
    }
    void press(WPARAM key) {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
        program.pump();
    }
    // A key that is pressed while Ctrl is down.
    void pressWithCtrl(WPARAM key) {
        BYTE former[256];
        BYTE held[256];
        ::GetKeyboardState(former);
        std::copy(std::begin(former), std::end(former), held);
        held[VK_CONTROL] = 0x80;
        MSG message{};
        message.hwnd = ::GetFocus();
        message.message = WM_KEYDOWN;
        message.wParam = key;
        message.lParam = 1;
        ::SetKeyboardState(held);
        if (!program.form->translate(message))
            ::DispatchMessageW(&message);
        ::SetKeyboardState(former);
        program.pump();
    }
    std::string caption() { return captionOf(panel().bar().handle()); }
    int topLine() { return static_cast<int>(text().firstVisibleLine()) + 1; }
    bool isShown(HWND window) { return ::IsWindowVisible(window) != FALSE; }
    // Lets a second pass, and the timer see it.
    void nextSecond() {
        const std::string before = caption();
        program.clock.ms += 1000;
        program.waitUntil([&] { return caption() != before; });
    }
    Area placeOf(HWND window) {
        RECT place{};
        ::GetWindowRect(window, &place);
        return areaOf(place);
    }

    Program program;
};

}  // namespace melvorin::testing
