// The question in what form a song goes to other programs: a format, the names of its chords, and
// beside them its first lines as they will be.
#pragma once

#include <optional>

#include "base/Services.h"
#include "chords/SongExport.h"
#include "platform/Form.h"
#include "platform/Handles.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

struct ExportChoice {
    SongFormat format = SongFormat::ChordPro;
    ChordNames names = ChordNames::House;

    friend bool operator==(const ExportChoice&, const ExportChoice&) = default;
};

class frmExport : public Form {
  public:
    enum ControlId {
        kExport = IDOK,
        kCancel = IDCANCEL,
        kFormats = 101,
        kNames,
        kPreview,  // read-only
    };

    // `services` outlive the window.
    explicit frmExport(const Services& services)
        : Form(services), sounds_(services), export_(sounds_), cancel_(sounds_) {}

    // Asks over `owner`, with `choice` marked at first. Nothing where the user cancels, or where
    // Windows refuses the window.
    std::optional<ExportChoice> ask(HWND owner, TextView chart, ExportChoice choice);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool createWindow(HWND owner);
    Cell createPreview();
    void showPreview();
    ExportChoice marked() const;

    ButtonSounds sounds_;
    TarnelButton export_;
    TarnelButton cancel_;
    UniqueFont previewFont_;
    // While the window is open: the chart, and its first lines.
    TextView whole_;
    TextView chart_;
    std::optional<ExportChoice> taken_;
};

}  // namespace melvorin
