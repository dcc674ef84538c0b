// The base of every window with controls, modal or beside its owner. It creates them, gives them
// their places and keeps these when the user drags the border; Tab, Enter and Esc work; what a
// handler throws is told to the user. A window says which controls it has, in which rows and
// columns, and what happens when they are used:
//
//     class frmNote : public Form {
//         ...
//         TarnelButton ok_{sounds_};
//     };
//
//     bool frmNote::ask(HWND owner) {
//         if (!createForm(L"MelvorinfrmNote", L"Note", owner))
//             return false;
//         layOut(columnOf({columnOf({label(L"&Words:"),
//                                    edit(kWords).least(200).grows(1, 0)}).close(),
//                          atRight({button(ok_, IDOK, u"OK")})}).apart(),
//                owner);
//         runModal(owner);
//         return true;
//     }
//
// Controls are made in the order in which they are written, which is the one that Tab walks and in
// which a label names the control behind it.
#pragma once

#include <vector>

#include "base/Services.h"
#include "platform/Handles.h"
#include "platform/Layout.h"
#include "platform/Window.h"

namespace melvorin {

class Form : public Window {
  public:
    // What `services` refers to outlives the window.
    explicit Form(const Services& services) : services_(services) {}

    // Gives a message of the loop to the window; true when it is dealt with.
    bool translate(MSG& message);
    // The same for whichever form the message is for.
    static bool translateAny(MSG& message);
    void hide() {
        if (isOpen())
            ::ShowWindow(handle(), SW_HIDE);
    }

  protected:
    // ---- What happens

    // Commands go to `onCommand`, WM_CLOSE to `onClose`; a window that wants others handles them
    // and leaves the rest to this, or to passOn.
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // IDCANCEL, by a button or Esc, closes.
    virtual void onCommand(int id, int event);
    // Ends the modal run, or destroys the window.
    virtual void onClose();
    // A key goes down anywhere in the window, before its controls know. True: they never will.
    virtual bool onKeyDown(WPARAM key);
    // The key of `onKeyDown` is held: it was down before.
    bool keyRepeats() const { return keyRepeats_; }
    // The controls have their places, now or anew; what the window places itself follows.
    virtual void onPlaced() {}
    void onException(const std::exception& error) override;
    LRESULT passOn(UINT message, WPARAM wParam, LPARAM lParam);

    // Shows the window (already created) modally, the owner disabled, and returns when `endModal`
    // was called or the window is gone; the window is then destroyed. WM_QUIT that arrives
    // meanwhile goes on to the outer loop.
    void runModal(HWND owner);
    // Called by a handler: the modal run ends when that handler returns.
    void endModal() { isModal_ = false; }
    // Shows the window (already created) over its owner, or brings it forward. The control that had
    // the focus when the user left has it again.
    void bringForward();

    // ---- What it consists of

    // Creates the window: caption, close button, no size yet. False when Windows refuses.
    bool createForm(const wchar_t* className, const wchar_t* caption, HWND owner);
    // The same for a window of another kind: with an icon, or a panel in another window.
    bool createForm(const WindowSpec& spec);
    // Measures the controls, places them and centres the window over its owner. It is as large as
    // they need, or as `usual` (at 96 dpi) where that is more and the screen has room for it; where
    // something grows, the border can be dragged. What a control shows at this moment is what it
    // has room for. A panel in another window keeps its place and size, and may be laid out again
    // by another tree.
    void layOut(const Cell& root, HWND owner, Size usual = {});

    // A control, to be placed by `layOut`; `style` beyond WS_CHILD and WS_VISIBLE.
    Cell control(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                 DWORD extendedStyle = 0);
    Cell label(const wchar_t* text, DWORD style = 0, int id = -1);
    Cell check(const wchar_t* text, int id);
    // `isFirst`: of the options of which one is chosen.
    Cell option(const wchar_t* text, int id, bool isFirst);
    // A box to type in, and a list; both grow nowhere by themselves.
    Cell edit(int id, DWORD style = ES_AUTOHSCROLL);
    // A read-only box that shows lines of a song in `face` of `points`; `font` is filled with it
    // and outlives the control.
    Cell songPreview(int id, TextView face, int points, UniqueFont& font);
    Cell list(int id);
    // A drop-down box; the entries are filled in before `layOut`.
    Cell dropDown(int id, DWORD style);
    // A frame around `content`, with a caption.
    Cell group(const wchar_t* caption, const Cell& content);
    // A push button of the program, at its usual size unless its caption needs more.
    template <class Button>
    Cell button(Button& made, int id, TextView caption, DWORD style = WS_TABSTOP) {
        made.create(handle(), id, {}, caption, style);
        return added(made.handle()).least(Spacing::kButtonWidth, Spacing::kButtonHeight);
    }
    // A control that is there already.
    Cell added(HWND made);
    // A place that the window fills itself in `onPlaced`, at least that large (in device pixels):
    // for what it paints, or an editor, whose handle changes.
    Cell space(Size needed);
    HWND windowOf(const Cell& cell) const { return parts_[indexOf(cell)].window; }
    Area placeOf(const Cell& cell) const { return parts_[indexOf(cell)].place; }
    HWND item(int id) const { return ::GetDlgItem(handle(), id); }
    // A sentence that comes up while the pointer rests on a control, in place of the one before;
    // none for an empty one.
    void addTip(HWND over, TextView text);

    const Services services_;

  private:
    struct Part {
        HWND window = nullptr;  // null: a place of the window's own
        Size needed;            // of such a one
        Area place;
    };

    static std::size_t indexOf(const Cell& cell) { return static_cast<std::size_t>(cell.part); }
    void putBefore(HWND frame, const Cell& content);
    void moveFocus(WPARAM which, bool isControl);
    void placeParts();
    void giveSize(HWND owner, Size usual);
    Size frameSize() const;
    void limitSize(MINMAXINFO& limits) const;

    std::vector<Part> parts_;
    Layout layout_;
    bool hasPlaces_ = false;  // the controls have theirs, since they were measured last
    HWND focus_ = nullptr;    // while another window is active
    HWND tips_ = nullptr;
    bool isModal_ = false;
    bool keyRepeats_ = false;
};

// The colours of a text that stands on paper: the answer to WM_CTLCOLORSTATIC.
LRESULT onPaper(WPARAM dc);

}  // namespace melvorin
