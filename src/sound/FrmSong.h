// The window "Melvorin Guitar Tuner": plays the reference sounds of the strings, or songs. It
// stays open beside the main window.
#pragma once

#include <vector>

#include "base/Services.h"
#include "platform/Form.h"
#include "sound/FolderRows.h"
#include "sound/SoundPlayer.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

// Where the window begins: the tuner's folder or that of the songs.
enum class SoundFolder { Strings = 0, Song = 1 };

class FrmSong : public Form {
  public:
    enum ControlId {
        Dir = 101,
        Files,
        Path,
        Play,
        Stopcmd,
        Command1 = IDCANCEL,
    };

    // `services` outlives the window.
    explicit FrmSong(const Services& services)
        : Form(services),
          player_(services.multimedia),
          sounds_(services),
          Play_(sounds_),
          Stopcmd_(sounds_),
          Command1_(sounds_) {}

    // Shows the window over `owner` with a folder of the program, or brings it forward as it is.
    // False when Windows refuses.
    bool open(HWND owner, SoundFolder folder);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onKeyDown(WPARAM key) override;
    void onCommand(int control, int code) override;

    bool createWindow(HWND owner);
    // The chosen row of a list, or nothing.
    std::optional<std::size_t> chosen(int list) const;
    void showFolder(const Text& folder);
    void openChosenFolder();
    void chooseFile();
    // Where none is chosen.
    void chooseFirstFile();
    void showPath(const Text& path);
    void play();
    void stop();

    SoundPlayer player_;
    ButtonSounds sounds_;
    TarnelButton Play_;
    TarnelButton Stopcmd_;
    TarnelButton Command1_;
    FolderRows folders_;
    std::vector<Text> names_;  // of the listed files
    Text folder_;              // whose files are listed
    Text Path_;                // of the chosen file
    Text Path2_;               // the same as the file list has it
    Text extension_;           // of the chosen file: ".MID"
};

}  // namespace melvorin
