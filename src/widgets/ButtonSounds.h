// The two short sounds of the picture buttons: Msnds\Click.WAV and Msnds\over.WAV beside the
// program.
#pragma once

#include <optional>

#include "base/Services.h"
#include "widgets/ButtonLogic.h"

namespace melvorin {

// One for the buttons of a window.
class ButtonSounds {
  public:
    // What `services` refers to outlives the object.
    explicit ButtonSounds(const Services& services) : services_(services) {}

    // Silent where the user wants it so: the system's sound scheme is "No Sounds", or the
    // program's INI file has Buttons=0 in its section [Sounds]. Both are asked once, when the
    // first sound is due.
    void play(ButtonSound sound);

  private:
    bool wanted();

    Services services_;
    std::optional<bool> wanted_;
};

// The sound's file: appended to the folder as it is, and the "." stands for the folder itself.
Text soundPath(ProgramFolder& program, ButtonSound sound);

}  // namespace melvorin
