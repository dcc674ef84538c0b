// Plays a sound file through the multimedia command interface, and knows which files are sounds.
#pragma once

#include <functional>

#include "base/Services.h"

namespace melvorin {

// True for the names that the player lists: "*.mid" and "*.wav", in any case.
bool isSoundFile(TextView name);
// The last four characters of a file name with ASCII letters in upper case: ".MID".
Text soundExtension(TextView name);
// Only MIDI files are played; wave files are listed and refused.
bool isPlayable(TextView extension);

// One device under a fixed name. Nobody looks at the results: a machine without a MIDI device
// stays silent and is no reason for a message.
class SoundPlayer {
  public:
    // `multimedia` outlives the object.
    explicit SoundPlayer(Multimedia& multimedia) : multimedia_(multimedia) {}

    // Closes what was open, opens the file, lets `betweenOpenAndPlay` run, and plays.
    void play(TextView path, const std::function<void()>& betweenOpenAndPlay);
    void stop();
    void close();

  private:
    // kept: unread-results
    void send(TextView command) { multimedia_.send(command); }

    Multimedia& multimedia_;
    Text Plays_;  // the command that opens the file
};

}  // namespace melvorin
