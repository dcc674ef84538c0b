// The program's own push button: a face in the system's colours with a bevel, a picture, another
// one while the pointer is over it, and a caption. It stands on every window in place of the
// system's button and fits into dialogs as that does: Tab, mnemonics, Enter and Space work, its
// click is a WM_COMMAND with BN_CLICKED.
//
// A host that is shown modally gives its default button the id IDOK and BS_DEFPUSHBUTTON, and the
// one for Esc IDCANCEL; IsDialogMessage then sends these ids.
#pragma once

#include <functional>
#include <optional>

#include "platform/Handles.h"
#include "platform/Window.h"
#include "widgets/ButtonLogic.h"
#include "widgets/ButtonPicture.h"
#include "widgets/ButtonSounds.h"

namespace melvorin {

class TarnelButton : public Window, private ButtonSurface {
  public:
    // `sounds` outlives the button.
    explicit TarnelButton(ButtonSounds& sounds) : sounds_(sounds), logic_(*this) {}

    // Creates the button at `place` (device pixels in `parent`). `style` may hold WS_TABSTOP,
    // WS_GROUP and BS_DEFPUSHBUTTON. The caption's font is uiFont until WM_SETFONT or the
    // property says otherwise.
    bool create(HWND parent, int id, const RECT& place, TextView caption, DWORD style = WS_TABSTOP);
    void place(const RECT& place);
    void setEnabled(bool enabled) { ::EnableWindow(handle(), enabled ? TRUE : FALSE); }

    // Called for every event; Click comes before the parent's WM_COMMAND. A handler may destroy the
    // button's window, but not this object.
    void onEvent(std::function<void(const ButtonEvent&)> handler) { handler_ = std::move(handler); }

    const ButtonProperties& properties() const { return properties_; }
    void setProperties(const ButtonProperties& properties);
    void readProperties(PropertyBag& bag) { setProperties(readButtonProperties(bag)); }
    void writeProperties(PropertyBag& bag) const { writeButtonProperties(properties_, bag); }

    // Shows a picture (see ButtonProperties for where from) in its own size, which is meant for
    // the screen's resolution. The hover picture may be empty.
    void setPicture(TextView source, TextView hoverSource = {});
    // The same for a picture that the program has made.
    void setPicture(Pixels picture, Pixels hoverPicture = {});

    // The window text of a button without a caption, for screen readers; it is not drawn.
    void setName(TextView name);
    // Off: Enter does not click, but is the window's, by its own rule.
    void setEnterClicks(bool on) { enterClicks_ = on; }
    // On: the arrow keys come as KeyDown events instead of moving the focus.
    void setTakesArrows(bool on) { takesArrows_ = on; }

    bool isPressed() const { return logic_.isPressed(); }
    bool isHovering() const { return logic_.isHovering(); }
    // Pixels that the picture and the caption need, with the usual room around them; a bare face,
    // as that of a colour, may be as narrow as it is made.
    Extent idealSize() const;

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    std::optional<LRESULT> onMouse(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onKey(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onDialogMessage(UINT message, WPARAM wParam, LPARAM lParam);
    std::optional<LRESULT> onState(UINT message, WPARAM wParam, LPARAM lParam);
    void onMouseDown(MouseButton button, LPARAM lParam);
    void onMouseUp(MouseButton button, LPARAM lParam);
    void onOverTimer();
    LRESULT onSetText(WPARAM wParam, LPARAM lParam);
    bool meansEnter() const;
    LRESULT dialogCode(LPARAM lParam) const;
    bool showPointer() const;
    PointerState pointerState(MouseButton button, LPARAM lParam) const;

    void onPaint();
    void draw(HDC dc) const;
    void drawFace(HDC dc, const RECT& client) const;
    void drawPicture(HDC dc, const Area& area, int shift) const;
    void drawCaption(HDC dc, const Area& area, int shift) const;
    void drawFocus(HDC dc, const RECT& client) const;
    HFONT font() const;
    Extent captionExtent(HDC dc) const;
    Extent pictureExtent(Extent room) const;
    const Pixels& shownPicture() const;

    void redraw() override;
    void runOverTimer(bool on) override;
    void processPending() override;
    void play(ButtonSound sound) override;
    void raise(const ButtonEvent& event) override;

    ButtonSounds& sounds_;
    ButtonLogic logic_;
    ButtonProperties properties_;
    std::function<void(const ButtonEvent&)> handler_;
    Pixels picture_;
    Pixels hoverPicture_;
    HFONT windowFont_ = nullptr;  // the host's
    UniqueFont ownFont_;
    UniqueIcon mouseIcon_;
    MouseButton held_ = MouseButton::None;
    bool isDefault_ = false;
    bool isInert_ = false;  // while properties change: one redraw for all
    bool enterClicks_ = true;
    bool takesArrows_ = false;
};

// The picture and the pointer behind a source as ButtonProperties has them; empty where there is
// none.
Pixels loadPicture(TextView source);
UniqueIcon loadPointer(TextView source);

}  // namespace melvorin
