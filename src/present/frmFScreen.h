// The full-screen view: the song over the whole screen that the main window is on, with the control
// panel. What is typed here is typed into the document.
#pragma once

#include <functional>
#include <optional>

#include "editing/ChordFollower.h"
#include "platform/RichEdit.h"
#include "present/StageKeys.h"
#include "present/frmFScreenB.h"
#include "rtf/DarkColours.h"

namespace melvorin {

class frmFScreen : public Window, private StageView {
  public:
    struct Callbacks {
        // The document's change notification.
        std::function<void()> changed;
        // A step of the document's undo; false where nothing has changed.
        std::function<bool()> undo;
        std::function<bool()> redo;
        // Runs an action during which no command begins and the program does not end.
        std::function<void(const std::function<void()>& action)> undisturbed;
        // Moves the document by so many half steps, with a window over the view meanwhile; false
        // where nothing has changed.
        std::function<bool(HWND view, int steps)> changeKey;
    };

    // What is given outlives the window.
    frmFScreen(const Services& services, RichEdit& rtftext, Callbacks callbacks);

    // Makes what can be made before the view is opened; nothing of it is seen.
    void makeReady(HWND owner) { panel_.makeReady(owner); }
    // Opens the view, with its panel, over the screen that `owner` is on, or brings it forward.
    // Meanwhile the owner takes no input and its other windows are out of sight. False when
    // Windows refuses.
    bool open(HWND owner);
    // Back to the editor, from whatever state. False, and the view stays, while it waits for
    // something, or where what was typed cannot go to the document and the user keeps it.
    bool close();
    // What was typed is put into the document now, where there is something. False where that
    // fails.
    bool keepEdits() { return !isOpen() || writeBack(); }
    // Keys and wheel of the view and its panel; true when the message is dealt with.
    bool translate(MSG& message);

    // The chords follow the words in what is edited here, or do not.
    void follow(bool on);

    RichEdit& FSRTB() { return FSRTB_; }
    RichEdit& FSRTB2() { return FSRTB2_; }
    frmFScreenB& panel() { return panel_; }

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onException(const std::exception& error) override;
    void onCommand(WPARAM wParam, LPARAM lParam);
    LRESULT onErase(HDC dc) const;
    void onDestroy();
    bool onTextInput(UINT message, WPARAM wParam);
    bool onTextKey(WPARAM key);
    bool isFixed() const { return songLines_ > 0 || panel_.run().isRunning(); }
    void copyInOwnColours(bool cuts);
    RichEdit::TypingFormat textFont() const;
    ChordFollower& shownFollower() { return reduced_ ? follower2_ : follower_; }
    void waitFor(const std::function<void()>& action);
    void changeKey(int steps);
    std::optional<Text> expandPasted(Text text, std::size_t startColumn);
    bool onViewKey(const MSG& message);
    void run(ViewKey command);

    bool createWindow(HWND owner);
    void giveUp();
    bool load();
    bool takeOver(RichEdit& to, const RichEdit& from);
    void takeBackground();
    void cover(const Area& screen);
    void onDisplayChange();
    void placeTexts();
    RichEdit& shownText() { return reduced_ ? FSRTB2_ : FSRTB_; }
    bool isOurs(HWND window) const;

    void textChanged();
    // False when the document does not have what the view has.
    bool writeBack();
    // Shows where the song has changed, or else the page that was shown.
    enum class Shown { Change, Page };
    void restore(const std::function<bool()>& step, Shown shown = Shown::Change);
    void paste();
    void setZoom(int percent);
    void fitWidth();
    int widestOf(const std::vector<std::int32_t>& lines) const;
    void turnPage(bool forward);
    void turnTo(std::int32_t line);
    void toNextMonitor();
    void switchDark();
    bool reload(RichEdit& text);
    bool appendLines(const RunPart& part, bool goesOn);
    bool show(RichEdit& text, std::string_view rtf);
    std::string songOf(const RichEdit& text) const;

    HWND window() const override { return handle(); }
    int lineCount() const override { return static_cast<int>(FSRTB_.lineCount()); }
    int songLines() const override { return songLines_ > 0 ? songLines_ : lineCount(); }
    bool unroll(const std::vector<RunPart>& parts) override;
    bool rollUp() override;
    void caretToEnd() override;
    void bringToTop(int line) override;
    int topLine() const override;
    int caretLine() const override;
    SectionLabels sections() const override;
    bool reduce() override;
    bool enlarge() override;
    void finishEdits() override;
    bool takesKey(WPARAM key) override;
    void turnBy(int lines) override;
    void ask(const std::function<void(HWND view)>& question) override;
    void leave() override { close(); }

    Services services_;
    RichEdit& rtftext_;
    Callbacks callbacks_;
    RichEdit FSRTB_;
    RichEdit FSRTB2_;
    ChordFollower follower_;
    ChordFollower follower2_;
    frmFScreenB panel_;
    UniqueBrush background_;
    HWND owner_ = nullptr;
    // Of the song while it is written out in the order of a run; 0: it is not.
    int songLines_ = 0;
    std::vector<RunPart> parts_;
    bool fitsWidth_ = false;  // for the next songs of this run of the program too
    bool isDark_ = false;     // likewise
    Area covered_;            // the screen that the view was put over last
    DarkColours dark_;
    bool reduced_ = false;        // FSRTB2 is the text that is shown
    bool reducedEdited_ = false;  // and FSRTB does not have what it has
    bool waits_ = false;          // a window of its own is at work
    bool writeFailed_ = false;    // reported already, until it succeeds
    bool unwritten_ = false;      // the document does not have what the view has
    std::int64_t writeMs_ = 0;    // what the last write-back took
};

}  // namespace melvorin
