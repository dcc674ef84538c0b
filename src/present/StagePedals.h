// The pedals and keys that the user has had learned, listened to while the stage is open.
#pragma once

#include <functional>

#include "present/Pedals.h"

namespace melvorin {

class StagePedals : private MidiListener {
  public:
    struct Callbacks {
        std::function<bool()> runGoes;
        std::function<void(PedalAct)> act;
        // A device that was learned is no longer there, or is there again.
        std::function<void()> changed;
    };

    // What is given outlives the object.
    StagePedals(const Services& services, Callbacks callbacks);

    // Reads the INI file, the first time, and opens the inputs of what is learned; where no MIDI is
    // learned, nothing is asked of the system.
    void listen();
    void stop();
    // Tells its name if one is not there, or belongs to another program; or else empty.
    Text missing() const { return missing_; }
    // What a key does there.
    std::optional<PedalAct> actOf(const KeyStroke& stroke, const KeyPlace& place) const {
        return melvorin::actOf(pedals_, stroke, place);
    }

    const Pedals& pedals() const { return pedals_; }
    void take(const Pedals& pedals) { pedals_ = pedals; }

  private:
    void heard(TextView device, const MidiMessage& message) override;
    void inputsChanged() override;
    void openInputs();

    const Services services_;
    Callbacks callbacks_;
    Pedals pedals_;
    MidiPresses presses_;
    Text missing_;
    bool isRead_ = false;
};

}  // namespace melvorin
