// The window that learns which key or MIDI pedal does what on stage.
#pragma once

#include "platform/Form.h"
#include "present/Pedals.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmPedals : public Form, private MidiListener {
  public:
    enum ControlId { kActs = 101, kLearn, kForget, kState, kInputs, kClose = IDCANCEL };

    explicit frmPedals(const Services& services)
        : Form(services), sounds_(services), learn_(sounds_), forget_(sounds_), close_(sounds_) {}

    // Learns over `owner`, and keeps each thing that it learns at once. It has the MIDI inputs to
    // itself meanwhile. Returns what is then learned.
    Pedals learn(HWND owner, const Pedals& now);
    bool isLearning() const { return learning_; }

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool onKeyDown(WPARAM key) override;
    void heard(TextView device, const MidiMessage& message) override;
    void inputsChanged() override;

    PedalAct chosen() const;
    void beginLearning();
    void endLearning();
    void take(const PedalSignal& signal);
    void forget();
    void store();
    void showActs();
    void tell(TextView sentence);
    void openInputs();
    Text inputsInWords() const;

    ButtonSounds sounds_;
    TarnelButton learn_;
    TarnelButton forget_;
    TarnelButton close_;
    Pedals pedals_;
    MidiPresses presses_;
    std::vector<Text> inputs_;   // that are there
    std::vector<Text> refused_;  // and those of them that another program has
    bool learning_ = false;
    bool unstored_ = false;  // it was told once
};

}  // namespace melvorin
