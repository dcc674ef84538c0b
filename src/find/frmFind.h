// The window "Find and Replace". It stays open beside the main window, so that the song can be
// edited between two matches.
#pragma once

#include <functional>
#include <vector>

#include "find/FindReplace.h"
#include "platform/Form.h"
#include "platform/RichEdit.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmFind : public Form {
  public:
    struct Callbacks {
        // The document's change notification.
        std::function<void()> changed;
        // Another command is under way: nothing may be changed now.
        std::function<bool()> isBusy;
    };

    // Everything given outlives the window.
    frmFind(const Services& services, RichEdit& rtftext, ReplaceFollower& chords,
            Callbacks callbacks);

    // Opens the window over `owner`, or brings it forward, with `what` as the text to search
    // unless that is empty. False when Windows refuses.
    bool open(HWND owner, TextView what);
    // "Find Next"; where the window is not open yet, or has no text to search for, false.
    bool findNext();
    // The next search begins at the top: another song is open.
    void startOver() { finder_.reset(); }
    // Replace All runs: only this window's "Exit" and Esc take input.
    bool isBusy() const { return finder_.isBusy(); }

  private:
    // A drop-down box and the texts in its list, in the order of their use.
    struct HistoryBox {
        HWND window = nullptr;
        std::vector<Text> items;

        Text text() const;
        void remember(TextView text);
    };

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int control, int code) override;
    void onClose() override;
    void createControls(HWND owner);
    void onAction(int control);
    void onItemChosen();
    void enableActions(TextView what);
    FindReplace::Request request() const;
    void onFindNext();
    void onReplace();
    void onReplaceAll();
    void pump();
    void keepClearOf(std::int32_t position);

    RichEdit& rtftext_;
    std::function<bool()> isBusy_;
    FindReplace finder_;
    HistoryBox Findme_;
    HistoryBox Replaceme_;
    HWND ChWord_ = nullptr;
    HWND ChCase_ = nullptr;
    HWND chordsOnly_ = nullptr;
    ButtonSounds sounds_;
    TarnelButton cmdFindNext_;
    TarnelButton cmdReplace_;
    TarnelButton cmdReplaceAll_;
    TarnelButton cmdCancel_;
};

}  // namespace melvorin
