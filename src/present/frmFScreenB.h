// The control panel of the full-screen view: the pace, the jumps and the passes of a run, and the
// buttons that begin it. It drives the run's clock; while the run goes, a floating bar stands in
// its place.
#pragma once

#include <array>
#include <functional>

#include "base/Services.h"
#include "platform/Form.h"
#include "present/Form3.h"
#include "present/Form3b.h"
#include "present/RunPlan.h"
#include "present/SongSections.h"
#include "present/StageLayout.h"
#include "present/StagePedals.h"
#include "present/StageRun.h"
#include "present/frmPedals.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

// The view as the panel works on it. Lines count from 1.
class StageView {
  public:
    virtual ~StageView() = default;
    virtual HWND window() const = 0;
    // Of what is shown, and of the song itself.
    virtual int lineCount() const = 0;
    virtual int songLines() const = 0;
    // Shows these lines one after the other, to be read only; and the song again. False, and the
    // user knows, where that fails.
    virtual bool unroll(const std::vector<RunPart>& parts) = 0;
    virtual bool rollUp() = 0;
    // The caret to the end of the text, which stays where it is on the screen.
    virtual void caretToEnd() = 0;
    virtual void bringToTop(int line) = 0;
    // The line at the top of what is seen, and the caret's.
    virtual int topLine() const = 0;
    virtual int caretLine() const = 0;
    virtual SectionLabels sections() const = 0;
    // The text alone, in the second control; and back. False where that fails: the view then stays
    // as it is.
    virtual bool reduce() = 0;
    virtual bool enlarge() = 0;
    // What was typed goes to the document now: later it would hold up the clock.
    virtual void finishEdits() = 0;
    // A key that moves the view.
    virtual bool takesKey(WPARAM key) = 0;
    // So many lines on, or back, the song only.
    virtual void turnBy(int lines) = 0;
    // Something is asked over the view meanwhile.
    virtual void ask(const std::function<void(HWND view)>& question) = 0;
    virtual void leave() = 0;
};

class frmFScreenB : public Form, private StageSurface {
  public:
    // The ids of the controls, by their names; the arrays have theirs from here up.
    enum ControlId {
        Seconds = 101,
        Seconds2,
        Seconds3,
        Check1,
        Text1,
        LB2,
        LB3,
        Command4,
        Command6,
        Command8,
        Command7 = IDCANCEL,
        kByDuration = 120,
        kDuration,
        kCountIn,
        kRowFromHere,
        kRowToHere,
        kPlan,
        kStartHere,
        kUnrolled,
        kPedals,
        CB = 200,  // 1 to 10: from and to of row 1, of row 2 and so on; 11 to 15: the times
        CK = 300,  // 1 to 5
        LK = 400,  // 1 to 5
    };

    // What is given outlives the window.
    frmFScreenB(const Services& services, StageView& view);

    // Makes the window, out of sight, so that opening it takes less.
    void makeReady(HWND owner);
    // Shows the panel for the view that is open; its lists fill once it is there. False when
    // Windows refuses.
    bool open();
    // The view goes; the panel stays out of sight, owned by `owner`, for the next one.
    void rest(HWND owner);
    // The bars are part of it.
    bool translate(MSG& message);
    // The panel comes back and the clock stops.
    void showPanel();
    bool isShown() const { return isOpen() && ::IsWindowVisible(handle()); }
    // The lists are filled.
    bool isPrepared() const { return prepared_; }
    // To the caret's line, from 1.
    void showCursorLine(int line);
    // The panel and its bars take input, or do not.
    void enableAll(bool enabled);
    // The display has changed.
    void arrange();
    // A key that moves the view, and a run along with it; false for any other.
    bool turnsRun(WPARAM key);
    // A key that the user has had learned, until it is let go; false for any other, and where it
    // means nothing now.
    bool takesPedal(const MSG& message);
    // The run pauses, where it goes.
    void pause();
    // Something has kept the clock from being looked at.
    void heldUp() { run_.heldUp(); }
    // What is in the view has changed: the plan is that of the song as it is now.
    void songChanged();
    // A system command would darken the screen while a run goes.
    bool refuses(WPARAM systemCommand) const;

    frmPedals& pedalWindow() { return pedalWindow_; }
    const StageRun& run() const { return run_; }
    Form3& bar() { return bar_; }
    Form3b& smallBar() { return smallBar_; }

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onKeyDown(WPARAM key) override;
    void onCommand(int control, int code) override;
    void onClose() override;
    void onTimer(UINT_PTR timer);

    // The control of a row or of a number in an array of controls, from 1.
    static int idAt(int base, std::size_t number);
    static void addNumbers(HWND list, int first, int last);
    bool createWindow(HWND owner);
    void createControls(HWND owner);
    void begin();
    void stop();
    Cell numberList(int id, int count);
    Cell countInList();
    Cell buttons();
    int chosen(int list) const;
    Monitor monitor() const;
    void moveToCorner();

    void prepare();
    void fillLineLists();
    void start() { startAt(std::nullopt); }
    void startHere();
    void startAt(std::optional<int> line);
    void takeCaret(bool asTarget);
    std::size_t rowAtHand() const;
    std::optional<std::int64_t> duration() const;
    void tellPlan();
    bool isUnrolled() const;
    void unroll();
    // What the rows say, whether or not they are written out.
    RunSettings rowSettings() const;
    void tellSections();
    int songLineOf(int shown) const;
    int shownLineOf(int songLine) const;
    void update();
    void reduce();
    void pauseOrResume();
    void learnPedals();
    bool mayAct() const;
    void act(PedalAct act);
    void goOn(int lines);
    void goBack();
    void restart();
    void tellNote();
    RunSettings settings() const;
    void runClock(bool on);
    void restPointer();
    void hidePointer(bool hidden);

    void showLine(int line) override;
    void showCaption(TextView caption) override;
    void showNote(const RunNote& note) override;
    void runEnded() override;

    StageView& view_;
    StageRun run_;
    Form3 bar_;
    Form3b smallBar_;
    StagePedals pedals_;
    frmPedals pedalWindow_;
    int lastLines_ = 1;     // that a pedal went on, and another goes back
    WPARAM heldPedal_ = 0;  // the key that acted last, as long as it may be down
    int leftTop_ = 0;       // the line on top when a run was left
    ButtonSounds sounds_;
    TarnelButton Command4_;
    TarnelButton Command6_;
    TarnelButton Command7_;
    TarnelButton Command8_;
    TarnelButton startHere_;
    TarnelButton rowFromHere_;
    TarnelButton rowToHere_;
    TarnelButton learn_;
    SectionLabels sections_;
    std::vector<RunPart> unrolled_;  // that are written out
    std::size_t lastRow_ = 0;        // the jump row that had the focus last, from 1; 0: none
    PointerRest rest_;
    bool pointerHidden_ = false;
    bool prepared_ = false;
    int listed_ = 0;  // line numbers in the lists
};

}  // namespace melvorin
