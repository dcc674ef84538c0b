// The window that takes a song to another key at once, and writes it for a capo: from which key to
// which, what each fret makes of its chords, and the first lines as they will be.
#pragma once

#include <optional>
#include <vector>

#include "base/Services.h"
#include "chords/CapoChoice.h"
#include "chords/KeyGoal.h"
#include "platform/Form.h"
#include "platform/Handles.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

// The song that the window is about.
struct ToKeyOffer {
    Text song;  // with blanks for what is no writing
    KeyWay way;
    const ChordGrips* grips = nullptr;  // null: there is no chord book
};

// What the user wants. The song is to move by `steps` (-11 to 11; 0: it stays), and where `capo` is
// given to tell of a capo at that fret; at 0 of none.
struct ToKeyChoice {
    int steps = 0;
    std::optional<int> capo;
    // The name of the key that it sounds in then; empty where the key is not sure.
    Text sounds;
};

class FrmToKey : public Form {
  public:
    enum ControlId {
        kOk = IDOK,
        kCancel = IDCANCEL,
        kFrom = 101,
        kTo,
        kFrets,
        kWrite,
        kTakeOff,
        kPreviewLabel,
        kPreview,
    };

    // `services` outlive the window.
    explicit FrmToKey(const Services& services)
        : Form(services),
          sounds_(services),
          ok_(sounds_),
          cancel_(sounds_),
          write_(sounds_),
          takeOff_(sounds_) {}

    // Asks over `owner`; nothing where the user cancels, or Windows refuses the window.
    std::optional<ToKeyChoice> ask(HWND owner, const ToKeyOffer& offer);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool onKeyDown(WPARAM key) override;
    void onPlaced() override;
    LRESULT onNotify(LPARAM lParam);

    bool createWindow(HWND owner);
    Cell createKeys();
    Cell createFrets();
    Cell createPreview();
    void fillFrets();
    void showKey();
    void showFret();
    void showPreview(TextView title, int steps, std::optional<int> capo);
    void take(int steps, std::optional<int> capo);
    int stepsTo() const;
    const CapoChoice* chosenFret() const;
    Text soundsAt(int capo, int steps) const;

    const ToKeyOffer* offer_ = nullptr;  // while the window is open
    LeftOver left_;
    std::vector<CapoChoice> choices_;
    int capo_ = 0;  // of the song as it is
    std::optional<ToKeyChoice> taken_;
    ButtonSounds sounds_;
    TarnelButton ok_;
    TarnelButton cancel_;
    TarnelButton write_;
    TarnelButton takeOff_;
    UniqueFont previewFont_;
};

}  // namespace melvorin
