// The find window, worked as a user does.
#pragma once

#include "Scripted.h"

namespace melvorin::testing {

// Opened at once.
class FindWindow {
  public:
    explicit FindWindow(Program& program) : program_(program) {
        program_.command(Command::mnuFind);
    }
    HWND child(const wchar_t* caption) const {
        return ::FindWindowExW(window(), nullptr, nullptr, caption);
    }
    HWND window() const { return program_.form->findWindow().handle(); }
    HWND box(int index) const {
        HWND found = nullptr;
        for (int i = 0; i <= index; ++i)
            found = ::FindWindowExW(window(), found, L"COMBOBOX", nullptr);
        return found;
    }
    void enter(int index, const Text& text) const {
        ::SetWindowTextW(box(index), wide(text));
        ::SendMessageW(window(), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(box(index)), CBN_EDITCHANGE),
                       reinterpret_cast<LPARAM>(box(index)));
    }
    void click(const wchar_t* caption) const {
        ::SendMessageW(child(caption), BM_CLICK, 0, 0);
        program_.pump();
    }
    std::string selected() const {
        return shown(program_.editor().textBetween(program_.editor().selection()));
    }
    LRESULT items(int index) const { return ::SendMessageW(box(index), CB_GETCOUNT, 0, 0); }

  private:
    Program& program_;
};

}  // namespace melvorin::testing
