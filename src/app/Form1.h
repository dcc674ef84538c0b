// The main window: menu bar, toolbar, editor. It binds the controls to the rules in Documents and
// the chord engine and keeps no rule of its own.
#pragma once

#include <functional>
#include <memory>

#include "app/CommandMap.h"
#include "app/Documents.h"
#include "app/KeyWork.h"
#include "app/MenuBar.h"
#include "app/ModalGuard.h"
#include "app/RecentFiles.h"
#include "app/Toolbar.h"
#include "app/WindowLayout.h"
#include "app/frmExport.h"
#include "app/frmSplash.h"
#include "base/LetterCase.h"
#include "chords/KeySetting.h"
#include "chords/TakenSong.h"
#include "dictionary/DictionaryPanel.h"
#include "dictionary/Fingering.h"
#include "editing/ChordClipboard.h"
#include "editing/ChordFollower.h"
#include "find/frmFind.h"
#include "paper/PaperDesk.h"
#include "platform/Handles.h"
#include "platform/RichEdit.h"
#include "platform/Window.h"
#include "present/StageLayout.h"
#include "present/frmFScreen.h"
#include "rtf/EditCommands.h"
#include "sound/FrmSong.h"
#include "tablature/FrmTab.h"
#include "widgets/FrmTxt.h"
#include "widgets/frmFont.h"

namespace melvorin {

class Form1 : public Window {
  public:
    // `services` outlive the window. `endProgram` is called when the program is to end; the
    // window is gone by then.
    Form1(const Services& services, std::function<void()> endProgram);

    // The load sequence: creates the window, unseen, with the start-up document or the one that
    // the command line names, then the splash, whose end brings the window forward. A step that
    // fails does not keep the others from running. False only when there is no window at all.
    bool load(TextView commandLine, int showCommand);

    // Runs a command as its menu item does, unless it is disabled.
    void run(Command command);
    bool isEnabled(Command command) const;
    // True once the program has ended, by its close or by a screen that it does not support.
    bool hasEnded() const { return ending_; }
    // What the message loop does first with every message: shortcuts and keyboard navigation. True
    // when the message is dealt with.
    bool translate(MSG& message);

    // For tests and for windows that work on the document.
    RichEdit& rtftext() { return rtftext_; }
    // Deletes what the run keeps on disk, as its end does.
    void endRun() { documents_.endRun(RunEnd::Closed); }
    const Documents& documents() const { return documents_; }
    const Toolbar& toolbar() const { return toolbar_; }
    frmFont& fontWindow() { return font_; }
    const MenuBar& menuBar() const { return menuBar_; }
    DictionaryPanel& dictionaryPanel() { return dictionary_; }
    Spelling spelling() const { return spelling_; }
    int halfSteps() const { return T6_; }
    frmFind& findWindow() { return find_; }
    StatusLine& statusLine() { return status_; }
    KeyWork& keyWork() { return keyWork_; }
    ChordFollower& follower() { return follower_; }
    FrmTab& tabWindow() { return tab_; }
    FrmSong& songWindow() { return song_; }
    frmFScreen& fullScreen() { return fullScreen_; }
    Text keyTag() const { return melvorin::keyTag(T6_); }

  private:
    static constexpr UINT_PTR kPlaceTimer = 2;

    using Handler = void (Form1::*)();
    struct Binding {
        Command command;
        Handler handler;
    };
    static std::span<const Binding> bindings();
    static Handler handlerOf(Command command);

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onException(const std::exception& error) override;
    void onSize();
    void endOnScreen();
    void onCommand(WPARAM wParam, LPARAM lParam);
    LRESULT onNotify(LPARAM lParam);
    bool onEditorInput(UINT message, WPARAM wParam, LPARAM lParam);
    bool onEditorKey(WPARAM key);
    std::optional<RichEdit::TypingFormat> typingFormat(TextView face);
    bool onEditorCharacter(WPARAM character);
    bool selectAt(POINT point);
    void onDrop(HDROP drop);
    void onContextMenu(LPARAM lParam);
    void onMenuOpens(HMENU menu);
    void onHelp(const HELPINFO& info);
    void onIdleTimer();
    void readyStage();
    bool onWheel(WPARAM wParam);
    void onShown();
    void onClose();
    bool isBusy() const;
    bool mayBegin();
    bool mayEnd();
    LRESULT onQueryEndSession();
    void onEndSession(bool ends);

    bool createParts();
    void createAccelerators();
    void measureScreen();
    void remember(TextView path);
    void showRecent(const RecentMenu& menu);
    void followSelection();
    void bringForward();
    void showState(const ShellState& state);
    RichEdit::TypingFormat textFont() const;
    // While it lives no other command begins, and the program does not end.
    class Busy {
      public:
        explicit Busy(Form1& form) : form_(form) { form_.jobRuns_ = true; }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;
        ~Busy() { form_.jobRuns_ = false; }

      private:
        Form1& form_;
    };
    class Job;
    void endProgram(RunEnd how);

    void fileNew() { documents_.newDocument(); }
    void fileOpen() { documents_.open(); }
    void fileSave();
    void fileSaveAs() { documents_.saveAs(); }
    void fileExport();
    Text exported(const TakenSong& song, ExportChoice choice, TextView title, std::size_t& left);
    std::optional<Text> askTarget(TextView title, const FileFilter& filter, TextView end);
    PaperSource paperSource();
    void filePrint();
    void filePreview();
    void filePageSetup();
    void fileSavePdf();
    void fileExit() { onClose(); }
    void editUndo() { documents_.undo(); }
    void editRedo() { documents_.redo(); }
    // A change at the selection that a command makes: one undo step, and the chords follow.
    void changeText(const std::function<void()>& change, bool keepsLines = false);
    void editCut();
    void editCopy() { rtftext_.copy(); }
    void editPaste();
    void editDelete();
    void copyChords();
    void pasteChords();
    void selectAll();
    void typeTab();
    void toggleBold();
    void toggleItalic();
    void toggleUnderline();
    void toggleEffect(TextEffect effect);
    void upperCase() { changeCase(LetterCase::Upper); }
    void lowerCase() { changeCase(LetterCase::Lower); }
    void changeCase(LetterCase to);
    void alignLeft() { align(Alignment::Left); }
    void alignCenter() { align(Alignment::Center); }
    void alignRight() { align(Alignment::Right); }
    void align(Alignment alignment);
    void openFind();
    void findAgain();
    void toolbarFind();
    template <std::size_t Index>
    void openRecent() {
        documents_.openPath(Text(recent_.menu().entries[Index - 1].caption), true);
    }
    void cleanRecent();
    template <Command Which>
    void openShipped() {
        openShipped(Which);
    }
    void openShipped(Command command);
    void about();
    std::optional<std::size_t> chooseReading(TextView path,
                                             const std::vector<CodePageReading>& readings);
    void openFullScreen() { fullScreen_.open(handle()); }
    void openFont() { font_.open(handle()); }
    void keyDown() { changeKey(handle(), -1); }
    void keyUp() { changeKey(handle(), 1); }
    void toAnotherKey();
    void useSharps() { useSpelling(Spelling::Sharps); }
    void useFlats() { useSpelling(Spelling::Flats); }
    void toggleDictionary();
    // Find and Insert Tablature need the room.
    void closeDictionary() { dictionary_.hide(); }
    void insertDiagram(TextView glyph, TextView face);
    void changeFingering();
    void switchFollowing();
    void follow(bool on);
    bool changeKey(
        HWND owner, int steps, const std::function<void()>& also = [] {});
    bool changeKeyOnStage(HWND view, int steps);
    template <OtherLines Choice>
    void chooseOtherLines() {
        setOtherLines(Choice);
    }
    void setOtherLines(OtherLines choice);
    void showOtherLines(OtherLines choice);
    void zoomIn() { zoom(zoomed(rtftext_.zoom(), true)); }
    void zoomOut() { zoom(zoomed(rtftext_.zoom(), false)); }
    void zoomReset() { zoom(100); }
    void zoom(int percent);
    void switchStatusLine();
    void showStatusLine(bool shown);
    void toStatusLine();
    void tellPlace();
    void createNotation();
    void useSpelling(Spelling spelling, bool followsKey = false);
    void followTheKey();
    void chooseKey(POINT place);
    void respell();
    void showSpellingMenu();
    void insertTablature();
    void guitarTuner();
    void edit(const std::function<bool()>& change);

    ModalGuard modal_;
    Services services_;
    std::function<void()> endProgram_;
    RichEdit rtftext_;
    ChordFollower follower_;
    ChordClipboard chordClipboard_;
    Toolbar toolbar_;
    MenuBar menuBar_;
    Documents documents_;
    KeyWork keyWork_;
    StatusLine status_;
    RecentFiles recent_;
    frmFind find_;
    frmFont font_;
    FrmTab tab_;
    FrmSong song_;
    DictionaryPanel dictionary_;
    Fingering fingering_;
    frmFScreen fullScreen_;
    bool stageIsReady_ = false;
    int idleRounds_ = 0;
    std::unique_ptr<frmSplash> splash_;
    UniqueAccelerators accelerators_;
    Spelling spelling_ = Spelling::Sharps;  // Opt1 and Opt2
    bool followsKey_ = false;               // Opt3
    PaperDesk paper_;
    ExportChoice exportChoice_;  // what was chosen last in this run
    int T6_ = 0;                 // half steps that songs were moved by in this run
    ScreenSize J2_;              // the work area, in pixels
    int showCommand_ = SW_SHOWMAXIMIZED;
    ShellState shownState_;
    bool loaded_ = false;
    bool jobRuns_ = false;
    bool sessionMayEnd_ = false;
    bool longPathTold_ = false;
    bool screenFails_ = false;  // the program ends when the job that runs is done
    bool ending_ = false;
};

}  // namespace melvorin
