// The line at the foot of the main window: what the last command has to say, with buttons for what
// can be done about it, where the caret is, and how large the text is shown.
//
// It takes the keyboard only where somebody asks for it (F6): a click on a button leaves it where
// it was. Screen readers hear of a new message.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "platform/Form.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

// Something to say, and what can be done about it.
struct StatusNote {
    struct Action {
        Text caption;
        std::function<void()> run;
        bool isEnabled = true;
    };

    Text text;
    std::vector<Action> actions;  // at most StatusLine::kActions
};

class StatusLine : public Form {
  public:
    static constexpr std::size_t kActions = 3;

    struct Actions {
        std::function<void()> leave;      // the keyboard goes back to the document
        std::function<void()> resetZoom;  // the button with the zoom
        // The button with the key, at the top left corner of this place on the screen.
        std::function<void(POINT place)> chooseKey;
    };

    StatusLine(const Services& services, Actions actions);

    // Hidden at first. False when Windows refuses.
    bool create(HWND parent);
    // What it takes of the main window, in device pixels.
    int height() const;
    void place(const Area& area);
    void show(bool visible);
    bool isShown() const { return shown_; }

    // In place of what it said. Of several notes one is shown, and a button leads to the next.
    void say(std::vector<StatusNote> notes);
    void tellPlace(TextView place);
    void tellZoom(int percent);
    // "Key: G"; empty where there is none to tell.
    void tellKey(TextView key);
    // Why the chord at the caret is called as it is: the tip over the place and the key. Empty
    // where there is nothing to say.
    void tellReason(TextView reason);
    // The keyboard comes to the first button.
    void enter();

    // What is to be read and pressed, for tests.
    Text message() const { return windowText(message_); }
    Text placeText() const { return windowText(place_); }
    Text keyText() const { return windowText(key_.handle()); }
    const Text& reason() const { return reason_; }
    const std::vector<StatusNote>& notes() const { return notes_; }

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool onKeyDown(WPARAM key) override;
    void showNote();
    void arrange();
    int placeFromRight(HWND control, int right, int least);

    Actions actions_;
    ButtonSounds sounds_;
    std::array<TarnelButton, kActions> buttons_;
    TarnelButton next_;
    TarnelButton key_;
    TarnelButton zoom_;
    HWND message_ = nullptr;
    HWND place_ = nullptr;
    std::vector<StatusNote> notes_;
    std::size_t current_ = 0;
    Text reason_;
    bool shown_ = false;
};

}  // namespace melvorin
