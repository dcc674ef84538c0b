// The controls of a window, worked and read as a user does.
#pragma once

#include "Scripted.h"

namespace melvorin::testing {

inline std::string captionOf(HWND window) {
    return shown(windowText(window));
}

// The rows of a list box, and one of them; empty where there is none.
inline std::string rowOf(HWND list, LRESULT row) {
    const LRESULT length = ::SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
    if (length == LB_ERR)
        return {};
    Text text(static_cast<std::size_t>(length) + 1, u'\0');
    ::SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(row), lparamOf(wideBuffer(text)));
    return shown(text.c_str());
}
inline std::vector<std::string> rowsOf(HWND list) {
    std::vector<std::string> rows;
    for (LRESULT row = 0; row < ::SendMessageW(list, LB_GETCOUNT, 0, 0); ++row)
        rows.push_back(rowOf(list, row));
    return rows;
}
inline std::string chosenRowOf(HWND list) {
    return rowOf(list, ::SendMessageW(list, LB_GETCURSEL, 0, 0));
}

// A cell of a list in columns, of at most 255 characters.
inline std::string cellOf(HWND list, int row, int column) {
    Text buffer(256, u'\0');
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = wideBuffer(buffer);
    item.cchTextMax = 256;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), lparamOf(&item));
    return shown(buffer.c_str());
}

// What a control tells its window.
inline void notify(HWND control, int code) {
    ::SendMessageW(::GetParent(control), WM_COMMAND,
                   MAKEWPARAM(static_cast<WORD>(::GetDlgCtrlID(control)), static_cast<WORD>(code)),
                   lparamOf(control));
}
inline void clickOn(HWND button) {
    ::SendMessageW(button, BM_CLICK, 0, 0);
}
inline void chooseRow(HWND list, int row) {
    ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    notify(list, LBN_SELCHANGE);
}
inline void pressIn(HWND control, WPARAM key) {
    ::SetFocus(control);
    ::PostMessageW(control, WM_KEYDOWN, key, 1);
}

// Presses a key as the keyboard does, with the modifiers down.
inline void press(Program& program, HWND window, WPARAM key,
                  std::initializer_list<int> modifiers = {}) {
    BYTE keys[256]{};
    ::GetKeyboardState(keys);
    for (const int modifier : modifiers)
        keys[modifier] = 0x80;
    ::SetKeyboardState(keys);
    const bool isAlt = std::find(modifiers.begin(), modifiers.end(), VK_MENU) != modifiers.end();
    ::PostMessageW(window, isAlt ? WM_SYSKEYDOWN : WM_KEYDOWN, key, isAlt ? 0x20000001 : 1);
    program.pump();
    for (const int modifier : modifiers)
        keys[modifier] = 0;
    ::SetKeyboardState(keys);
}
inline void press(Program& program, WPARAM key, std::initializer_list<int> modifiers = {}) {
    press(program, program.editor().handle(), key, modifiers);
}

// While it lives, windows of this class that come into view are worked, each once. One at a time.
class WhileOpen {
  public:
    WhileOpen(const wchar_t* className, std::function<void(HWND)> steps)
        : className_(className), steps_(std::move(steps)) {
        current_ = this;
        timer_ = ::SetTimer(nullptr, 0, 10, look);
    }
    WhileOpen(const WhileOpen&) = delete;
    WhileOpen& operator=(const WhileOpen&) = delete;
    ~WhileOpen() {
        ::KillTimer(nullptr, timer_);
        current_ = nullptr;
    }
    int seen() const { return seen_; }

  private:
    static void CALLBACK look(HWND, UINT, UINT_PTR, DWORD) {
        if (current_ == nullptr)
            return;
        const HWND found = ::FindWindowW(current_->className_, nullptr);
        const HWND window = ::IsWindowVisible(found) ? found : nullptr;
        if (std::exchange(current_->last_, window) == window || window == nullptr)
            return;
        ++current_->seen_;
        current_->steps_(window);
    }

    static inline WhileOpen* current_ = nullptr;
    const wchar_t* className_;
    std::function<void(HWND)> steps_;
    UINT_PTR timer_ = 0;
    HWND last_ = nullptr;
    int seen_ = 0;
};

inline std::string className(HWND window) {
    wchar_t name[40] = L"";
    ::GetClassNameW(window, name, 40);
    return shown(Text(textOf(name)));
}

// As inModal, for a window that is gone before a timer could look: when it becomes active.
class WhenActive {
  public:
    WhenActive(const char* name, std::function<void(HWND)> steps)
        : name_(name), steps_(std::move(steps)) {
        current_ = this;
        hook_ = ::SetWindowsHookExW(WH_CBT, look, nullptr, ::GetCurrentThreadId());
    }
    WhenActive(const WhenActive&) = delete;
    WhenActive& operator=(const WhenActive&) = delete;
    ~WhenActive() {
        ::UnhookWindowsHookEx(hook_);
        current_ = nullptr;
    }
    int seen() const { return seen_; }

  private:
    static LRESULT CALLBACK look(int code, WPARAM wParam, LPARAM lParam) {
        const auto window = reinterpret_cast<HWND>(wParam);
        if (code == HCBT_ACTIVATE && className(window) == current_->name_) {
            ++current_->seen_;
            current_->steps_(window);
        }
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static inline WhenActive* current_ = nullptr;
    std::string name_;
    std::function<void(HWND)> steps_;
    HHOOK hook_ = nullptr;
    int seen_ = 0;
};

}  // namespace melvorin::testing
