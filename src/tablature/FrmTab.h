// The window "Insert Tablature". It stays open beside the main window, so that several blocks can
// be put into the song.
#pragma once

#include <functional>

#include "base/Services.h"
#include "platform/Form.h"
#include "platform/Handles.h"
#include "platform/RichEdit.h"
#include "tablature/InsertTab.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class FrmTab : public Form {
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
        : Form(services),
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
    bool onKeyDown(WPARAM key) override;
    void onCommand(int control, int code) override;
    void onPlaced() override { showPreview(); }
    void onPaint();

    bool createWindow(HWND owner);
    void usePreviewFont();
    Cell createChoices();
    void createPreview();
    TabChoice choice() const;
    void showPreview();
    void insertTablature();

    RichEdit& rtftext_;
    Edit edit_;
    TabWriter writer_;
    ButtonSounds sounds_;
    TarnelButton InserTab_;
    TarnelButton TabOut_;
    Text previewFace_;
    UniqueFont previewFont_;
    SIZE cell_{};  // of a character of the preview, in device pixels
    Cell paper_;   // the white sheet under the preview
};

}  // namespace melvorin
