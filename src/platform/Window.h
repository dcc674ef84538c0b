// Bases of every window of the program. A derived class routes messages in `onMessage`, one named
// handler per case, and keeps no rule of its own.
#pragma once

#include <exception>
#include <functional>

#include "base/Services.h"
#include "platform/Win.h"

namespace melvorin {

// Pixels per inch that the whole program uses (it is system-DPI aware). 96 is 100 %.
int systemDpi();
// A length at 96 dpi in device pixels.
int scaled(int pixelsAt96);
// Twips (1/1440 inch) in device pixels, rounded to nearest.
int pixelsFromTwips(int twips);

RECT rectOf(const Area& area);
Area areaOf(const RECT& rectangle);

// What a new window looks like. Sizes are whole-window device pixels.
struct WindowSpec {
    const wchar_t* className = L"";
    const wchar_t* caption = L"";
    DWORD style = WS_OVERLAPPEDWINDOW;
    DWORD extendedStyle = 0;
    int x = CW_USEDEFAULT;
    int y = CW_USEDEFAULT;
    int width = CW_USEDEFAULT;
    int height = CW_USEDEFAULT;
    HWND parent = nullptr;
    HMENU menu = nullptr;
    HBRUSH background = nullptr;  // null: the button face
    int iconResource = 0;         // 0: no icon
};

// A small window as the program has them: caption, close button, a fixed size. `width` and `height`
// are those of its inside, in device pixels.
WindowSpec smallWindow(const wchar_t* className, const wchar_t* caption, int width, int height,
                       HWND owner);

// A panel in another window, without a place yet.
WindowSpec panelIn(HWND parent, const wchar_t* className, const wchar_t* caption);

class Window {
  public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    HWND handle() const { return handle_; }
    bool isOpen() const { return handle_ != nullptr; }
    void setCaption(TextView caption);
    // Destroys the window; the object stays and can be created again.
    void destroy();

  protected:
    // Creates the window, registering its class on first use. False when Windows refuses.
    bool create(const WindowSpec& spec);

    // One message; call `passOn` for what is not handled. Runs from WM_NCCREATE up to and with
    // WM_NCDESTROY; the object is unbound before it is destroyed.
    virtual LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // Called where a handler let an exception out; the message then counts as handled.
    virtual void onException(const std::exception& error) { (void)error; }
    LRESULT passOn(UINT message, WPARAM wParam, LPARAM lParam);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static bool registerClass(const WindowSpec& spec);

    HWND handle_ = nullptr;
};

// The font of menus and message boxes at the system's DPI; owned by the program, never deleted.
HFONT uiFont();
// One with letters of one width, as songs are shown in; the caller owns it. `face` is the wanted
// one.
HFONT songFont(TextView face, int points);
// Gives windows that are created from now on another font, which the caller owns and keeps alive
// until it has put the former one, which is returned, back.
HFONT exchangeUiFont(HFONT font);

// A visible control in the program's font, at `place` in device pixels of its parent, which owns
// it. Null when Windows refuses.
HWND createControl(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int id,
                   const RECT& place, DWORD extendedStyle = 0);

// What a procedure of SetWindowSubclass leaves to its control. The procedure goes with the control,
// which nobody else takes care of.
LRESULT subclassDefault(SUBCLASSPROC procedure, UINT_PTR id, HWND window, UINT message,
                        WPARAM wParam, LPARAM lParam);

// The whole text of a window or control.
Text windowText(HWND window);

// Moves a window without changing its size; the position is in screen pixels.
void moveTopLeft(HWND window, int left, int top);

// Centres `window` over `owner`, kept inside the work area of the owner's monitor.
void centreOver(HWND window, HWND owner);

// Reads messages until WM_QUIT, whose value it returns. `translate` sees each message first and
// returns true for those that it has dealt with.
int runMessageLoop(const std::function<bool(MSG&)>& translate);
// Hands out the messages that wait, of the kinds of PeekMessage's PM_QS flags in `which` (0: all).
// `takes` sees each first and returns false for those that are not to arrive. False when WM_QUIT
// came, which goes on to the outer loop.
bool dispatchWaiting(UINT which, const std::function<bool(const MSG&)>& takes);

}  // namespace melvorin
