#include "present/StagePedals.h"

#include <algorithm>
#include <utility>

namespace melvorin {

StagePedals::StagePedals(const Services& services, Callbacks callbacks)
    : services_(services), callbacks_(std::move(callbacks)) {}

void StagePedals::listen() {
    if (!std::exchange(isRead_, true))
        pedals_ = pedalSettings(services_);
    presses_ = {};
    openInputs();
}

void StagePedals::stop() {
    missing_.clear();
    services_.midi.stop();
}

void StagePedals::openInputs() {
    missing_.clear();
    const std::vector<Text> devices = devicesOf(pedals_);
    if (devices.empty())
        return services_.midi.stop();
    const std::vector<Text> there = services_.midi.names();
    std::vector<Text> wanted;
    for (const Text& device : devices) {
        const std::size_t before = wanted.size();
        for (const Text& name : there) {
            const bool isNew = std::find(wanted.begin(), wanted.end(), name) == wanted.end();
            if (isNew && deviceName(name) == device)
                wanted.push_back(name);
        }
        if (wanted.size() == before)
            missing_ = device;
    }
    const std::vector<Text> refused = services_.midi.listen(wanted, *this);
    if (!refused.empty())
        missing_ = deviceName(refused.front());
}

void StagePedals::heard(TextView device, const MidiMessage& message) {
    const auto signal = presses_.press(device, message);
    if (!signal)
        return;
    if (const auto act = melvorin::actOf(pedals_, *signal, callbacks_.runGoes()))
        callbacks_.act(*act);
}

void StagePedals::inputsChanged() {
    const Text before = missing_;
    openInputs();
    if (missing_ != before)
        callbacks_.changed();
}

}  // namespace melvorin
