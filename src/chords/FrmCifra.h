// The chord-notation window. Here: its key change, shown modally with a progress bar while the
// song is moved by a half step, and the way into its creator of charts.
#pragma once

#include <cstdint>

#include "base/Services.h"
#include "chords/ChordLookup.h"
#include "chords/DocumentKey.h"
#include "platform/Form.h"
#include "platform/RichEdit.h"

namespace melvorin {

class FrmCifra : public Form {
  public:
    using Form::Form;

    // Has the song moved by `steps` half steps, down below 0, and returns when the window is gone
    // again. The editor sends no change event meanwhile. False when it could not be done; the song
    // is then as it was, and the user has been told. `halfSteps` is the run's counter, to which the
    // steps are added.
    // `move` does it, and tells of every line that is done; what it throws leaves the song as it
    // was.
    using MoveSong = std::function<void(const std::function<void()>& lineDone)>;
    bool changeKey(HWND owner, int steps, int& halfSteps, MoveSong move);

    // Shows the creator of charts over the selected lines or the whole song and puts its result
    // into `rtftext`, in their place or where the selection is, as one step. The editor sends no
    // change event meanwhile. False when nothing has changed: the user cancelled, or has been told
    // why it could not be done.
    bool createNotation(HWND owner, RichEdit& rtftext, const ChordLookup* lookup = nullptr);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The song is between two keys: the window goes when the work is done.
    void onClose() override {}
    void onStartTimer();
    void animateBar();
    void setProgress(int percent);
    bool createWindow(HWND owner);

    HWND bar_ = nullptr;
    int steps_ = 1;
    int* halfSteps_ = nullptr;
    MoveSong move_;
    bool changed_ = false;
    int progress_ = 0;
    std::int64_t nextFrame_ = 0;  // of the bar, in ms; what moves before is not drawn
};

}  // namespace melvorin
