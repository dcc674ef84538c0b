// The window "Insert Tablature". It stays open beside the main window, so that several blocks can
// be put into the song.
#pragma once

#include <functional>

#include "base/Services.h"
#include "platform/Handles.h"
#include "platform/RichEdit.h"
#include "platform/Window.h"
#include "tablature/InsertTab.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class FrmTab : public ModelessDialog {
  public:
    // Runs a change of the document, which tells whether it changed anything, as one undo step.
    using Edit = std::function<void(const std::function<bool()>& change)>;

    enum ControlId {
        C1 = 101,  // instrument
        C2,        // inner dividers
        Ot1,       // high string on top
        Ot2,       // low string on top
        InserTab,
        Hint,
        M1 = 201,  // M1 to M6: letters; M7, M8: title and underline
        M7 = M1 + 6,
        M8,
        L1 = 301,  // L1 to L5: the strings with 0 to 4 dividers
        TabOut = IDCANCEL,
    };

    // `services` and `rtftext` outlive the window.
    FrmTab(const Services& services, RichEdit& rtftext, Edit edit)
        : services_(services),
          rtftext_(rtftext),
          edit_(std::move(edit)),
          sounds_(services),
          InserTab_(sounds_),
          TabOut_(sounds_) {}

    // Shows the window over `owner` with its choices at their beginning, or brings it forward as
    // it is, the preview in the editor's font of the moment. False when Windows refuses.
    bool open(HWND owner);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onException(const std::exception& error) override;
    bool onKeyDown(WPARAM key) override;
    void onCommand(int control, int code);
    void onPaint();

    bool createWindow(HWND owner);
    void usePreviewFont();
    HWND add(const wchar_t* className, const wchar_t* text, DWORD style, int id, const RECT& place);
    void createChoices();
    void createPreview();
    void createButtons();
    RECT paper() const;
    HWND item(int id) const { return ::GetDlgItem(handle(), id); }
    TabChoice choice() const;
    void showPreview();
    void insertTablature();

    const Services services_;
    RichEdit& rtftext_;
    Edit edit_;
    TabWriter writer_;
    ButtonSounds sounds_;
    TarnelButton InserTab_;
    TarnelButton TabOut_;
    Text previewFace_;
    UniqueFont previewFont_;
    SIZE cell_{};    // of a character of the preview, in device pixels
    int width_ = 0;  // of the client area at 96 dpi
};

}  // namespace melvorin
