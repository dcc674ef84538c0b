#include "app/Form1.h"

#include <exception>
#include <utility>
#include <vector>

#include "base/ProgramSettings.h"
#include "dictionary/RichEditDiagrams.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

constexpr int kEditorId = 100;
constexpr UINT_PTR kIdleTimer = 1;
constexpr UINT kIdleMs = 200;
constexpr int kRoundsToStage = 10;  // of the idle timer, from the start
// The place of the cursor is told when the keys pause.
constexpr UINT kPlaceMs = 60;
// Posted once the window is there for the user to see.
constexpr UINT kShown = WM_APP + 1;
// kept: video-settings
constexpr TextView kUnsupportedScreen =
    u"The Melvorin Editor doesn't work with this video settings  ";

}  // namespace

// The commands that exist; menu items without an entry here are greyed.
std::span<const Form1::Binding> Form1::bindings() {
    static constexpr Binding table[] = {
        {Command::mnuFileNew, &Form1::fileNew},
        {Command::mnuFileOpen, &Form1::fileOpen},
        {Command::mnuFileSave3, &Form1::fileSave},
        {Command::mnuFileSave, &Form1::fileSave},
        {Command::mnuFileSaveAs, &Form1::fileSaveAs},
        {Command::mnuFileExport, &Form1::fileExport},
        {Command::mnuPrint, &Form1::filePrint},
        {Command::mnuPreview, &Form1::filePreview},
        {Command::mnuPageSetup, &Form1::filePageSetup},
        {Command::mnuSavePdf, &Form1::fileSavePdf},
        {Command::mnuFileExit, &Form1::fileExit},
        {Command::mnuEditUndo, &Form1::editUndo},
        {Command::mnuEditRedo, &Form1::editRedo},
        {Command::mnuCopyChords, &Form1::copyChords},
        {Command::mnuPasteChords, &Form1::pasteChords},
        {Command::mnuDwn, &Form1::keyDown},
        {Command::mnuUp, &Form1::keyUp},
        {Command::mnuToKey, &Form1::toAnotherKey},
        {Command::mnuOthersAsk, &Form1::chooseOtherLines<OtherLines::Ask>},
        {Command::mnuOthersMove, &Form1::chooseOtherLines<OtherLines::Move>},
        {Command::mnuOthersLeave, &Form1::chooseOtherLines<OtherLines::Leave>},
        {Command::mnuStatus, &Form1::switchStatusLine},
        {Command::zoomIn, &Form1::zoomIn},
        {Command::zoomOut, &Form1::zoomOut},
        {Command::zoomReset, &Form1::zoomReset},
        {Command::toStatus, &Form1::toStatusLine},
        {Command::mnuSus, &Form1::useSharps},
        {Command::mnuBem, &Form1::useFlats},
        {Command::mnuByKey, &Form1::followTheKey},
        {Command::mnuRespell, &Form1::respell},
        {Command::mnuFullScreen, &Form1::openFullScreen},
        {Command::mnuTab, &Form1::insertTablature},
        {Command::mnuDps, &Form1::guitarTuner},
        {Command::mnuEditCut, &Form1::editCut},
        {Command::mnuEditCopy, &Form1::editCopy},
        {Command::mnuEditPaste, &Form1::editPaste},
        {Command::mnuEditDelete, &Form1::editDelete},
        {Command::mnuSelectAll, &Form1::selectAll},
        {Command::mnuFind, &Form1::openFind},
        {Command::findAgain, &Form1::findAgain},
        {Command::toolbarFind, &Form1::toolbarFind},
        {Command::mnuFont, &Form1::openFont},
        {Command::mnuBold, &Form1::toggleBold},
        {Command::mnuItalic, &Form1::toggleItalic},
        {Command::mnuUnderline, &Form1::toggleUnderline},
        {Command::mnuUpper, &Form1::upperCase},
        {Command::mnuLowe, &Form1::lowerCase},
        {Command::alignLeft, &Form1::alignLeft},
        {Command::alignCenter, &Form1::alignCenter},
        {Command::alignRight, &Form1::alignRight},
        {Command::mnuReset, &Form1::cleanRecent},
        {Command::mnuRecentFile1, &Form1::openRecent<1>},
        {Command::mnuRecentFile2, &Form1::openRecent<2>},
        {Command::mnuRecentFile3, &Form1::openRecent<3>},
        {Command::mnuRecentFile4, &Form1::openRecent<4>},
        {Command::mnuRecentFile5, &Form1::openRecent<5>},
        {Command::mnuRecentFile6, &Form1::openRecent<6>},
        {Command::mnuRecentFile7, &Form1::openRecent<7>},
        {Command::mnuRecentFile8, &Form1::openRecent<8>},
        {Command::mnuEpl, &Form1::openShipped<Command::mnuEpl>},
        {Command::mnuEpl2, &Form1::openShipped<Command::mnuEpl2>},
        {Command::ExMovie1, &Form1::openShipped<Command::ExMovie1>},
        {Command::ExMovie2, &Form1::openShipped<Command::ExMovie2>},
        {Command::ExMovie3, &Form1::openShipped<Command::ExMovie3>},
        {Command::ExMovie4, &Form1::openShipped<Command::ExMovie4>},
        {Command::mnuHlpTcs, &Form1::openShipped<Command::mnuHlpTcs>},
        {Command::mnuFileAbout, &Form1::about},
        {Command::mnuEditCifra, &Form1::createNotation},
        {Command::mnuEditDic, &Form1::toggleDictionary},
        {Command::mnuChDigt, &Form1::changeFingering},
        {Command::mnuFollow, &Form1::switchFollowing},
    };
    return table;
}

Form1::Handler Form1::handlerOf(Command command) {
    for (const Binding& binding : bindings()) {
        if (binding.command == command)
            return binding.handler;
    }
    return nullptr;
}

Form1::Form1(const Services& services, std::function<void()> endProgram)
    : modal_(services.messages, services.dialogs, services.colors),
      services_{.files = services.files,
                .messages = modal_.messages(),
                .dialogs = modal_.dialogs(),
                .profiles = services.profiles,
                .settings = services.settings,
                .system = services.system,
                .program = services.program,
                .screen = services.screen,
                .ansi = services.ansi,
                .clipboard = services.clipboard,
                .shell = services.shell,
                .sounds = services.sounds,
                .colors = modal_.colors(),
                .printers = services.printers,  // always asked by a command that keeps others off
                .multimedia = services.multimedia,
                .midi = services.midi,
                .clock = services.clock},
      endProgram_(std::move(endProgram)),
      follower_(rtftext_, [this] { return textFont(); }),
      chordClipboard_(rtftext_, services_.clipboard, [this] { return textFont(); }),
      documents_(services_, rtftext_,
                 {[this](const ShellState& state) { showState(state); },
                  [this](TextView path) { remember(path); },
                  [this] {
                      find_.startOver();
                      keyWork_.songReplaced();
                  },
                  [this](TextView path, const std::vector<CodePageReading>& readings) {
                      return chooseReading(path, readings);
                  }}),
      keyWork_(rtftext_, documents_,
               {[this](std::vector<StatusNote> notes) { status_.say(std::move(notes)); },
                [this] { return mayBegin(); }, [this](TextView key) { status_.tellKey(key); },
                [this](OtherLines choice) { setOtherLines(choice); },
                [this](const std::exception& error) { onException(error); },
                [this] { run(Command::mnuEditUndo); }, [this] { run(Command::mnuEditCifra); }}),
      status_(services_,
              {[this] { ::SetFocus(rtftext_.handle()); }, [this] { run(Command::zoomReset); },
               [this](POINT place) { chooseKey(place); }}),
      recent_(services_.profiles, [this](const RecentMenu& menu) { showRecent(menu); }),
      find_(services_, rtftext_, follower_,
            {[this] { documents_.changed(); }, [this] { return isBusy(); }}),
      font_(services_, rtftext_, {[this] { documents_.changed(); }, [this] { return isBusy(); }}),
      tab_(services_, rtftext_, [this](const std::function<bool()>& change) { edit(change); }),
      song_(services_),
      dictionary_(services_, {[this](TextView glyph, TextView face) { insertDiagram(glyph, face); },
                              [this] { onSize(); }, [this] { ::SetFocus(rtftext_.handle()); }}),
      fullScreen_(services_, rtftext_,
                  {[this] { documents_.changed(); }, [this] { return documents_.undo(); },
                   [this] { return documents_.redo(); },
                   [this](const std::function<void()>& action) {
                       const Busy busy(*this);
                       action();
                   },
                   [this](HWND view, int steps) { return changeKeyOnStage(view, steps); }}),
      paper_(services_, {[this] {
                             return askTarget(u"Save as PDF", {u"PDF (*.pdf)", u"*.pdf"}, u"pdf");
                         },
                         [this](TextView said) {
                             status_.say({{Text(said), {}}});
                         }}) {}

// ---- Load -------------------------------------------------------------------------------------

bool Form1::load(TextView commandLine, int showCommand) {
    showCommand_ = showCommand;
    if (!createParts())
        return false;
    // A failing step must not keep the program from starting.
    bool failed = false;
    const auto step = [&](auto&& action) {
        try {
            failed = false;
            action();
        } catch (const std::exception&) {
            failed = true;
        }
    };
    step([&] { dictionary_.openDictionary(); });
    step([&] {
        const EditorWork work(rtftext_);
        documents_.loadTemplate();
    });
    loaded_ = true;
    step([&] { documents_.begin(); });
    step([&] { documents_.openFromCommandLine(commandLine); });
    step([&] { recent_.begin(); });
    step([&] {
        splash_ = std::make_unique<frmSplash>(services_, [this] { bringForward(); });
        failed = !splash_->show();
    });
    if (failed)
        bringForward();
    return true;
}

bool Form1::createParts() {
    menuBar_.build(commands());
    WindowSpec spec;
    spec.className = L"MelvorinForm1";
    spec.caption = L"Chord Notation - Melvorin";
    spec.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    spec.menu = menuBar_.bar();
    spec.iconResource = kProgramIcon;
    if (!create(spec) || !toolbar_.create(handle()) ||
        !rtftext_.create(handle(), kEditorId, editorFontFace(services_), kEditorFontPoints) ||
        !dictionary_.create(handle()) || !status_.create(handle()))
        return false;
    for (const CommandRow& row : commands()) {
        const bool works = handlerOf(row.id) != nullptr;
        menuBar_.enable(row.id, works || row.menu.kind == MenuKind::Submenu);
        toolbar_.enable(row.id, works);
    }
    rtftext_.setInputFilter([this](UINT message, WPARAM wParam, LPARAM lParam) {
        return onEditorInput(message, wParam, lParam);
    });
    rtftext_.setTypingRule([this](TextView face) { return typingFormat(face); });
    createAccelerators();
    follow(chordsFollow(services_));
    showOtherLines(otherLines(services_));
    if (followsKey(services_)) {
        followsKey_ = true;
        followTheKey();
    }
    rtftext_.setZoom(editorZoom(services_));
    status_.tellZoom(rtftext_.zoom());
    showStatusLine(showsStatusLine(services_));
    showState(documents_.state());
    measureScreen();
    onSize();
    if (ending_)
        return false;
    ::SetTimer(handle(), kIdleTimer, kIdleMs, nullptr);
    return true;
}

void Form1::createAccelerators() {
    std::vector<ACCEL> table;
    for (const CommandRow& row : commands()) {
        for (const auto& [stroke, reach] : row.keys) {
            if (stroke.key == 0 || reach != KeyReach::Window)
                continue;
            const int held = (stroke.control ? FCONTROL : 0) | (stroke.alt ? FALT : 0) |
                             (stroke.shift ? FSHIFT : 0);
            table.push_back({static_cast<BYTE>(FVIRTKEY | held), stroke.key, idOf(row.id)});
            // Most keyboards have the plus above another sign.
            if (stroke.key == keys::kPlus)
                table.push_back(
                    {static_cast<BYTE>(FVIRTKEY | held | FSHIFT), stroke.key, idOf(row.id)});
        }
    }
    accelerators_.reset(::CreateAcceleratorTableW(table.data(), static_cast<int>(table.size())));
}

bool Form1::translate(MSG& message) {
    if (fullScreen_.translate(message) || Form::translateAny(message))
        return true;
    // Other windows have shortcuts of their own.
    const bool isMine = message.hwnd == handle() || ::IsChild(handle(), message.hwnd);
    if (isMine && !dictionary_.editsText(message) &&
        ::TranslateAcceleratorW(handle(), accelerators_.get(), &message))
        return true;
    return dictionary_.translate(message) || status_.translate(message);
}

void Form1::measureScreen() {
    J2_ = services_.screen.workArea();
}

void Form1::bringForward() {
    ::ShowWindow(handle(), showCommand_);
    ::SetForegroundWindow(handle());
    ::SetFocus(rtftext_.handle());
    ::UpdateWindow(handle());
    ::PostMessageW(handle(), kShown, 0, 0);
}

void Form1::onShown() {
    if (mayBegin())
        documents_.recover();
}

// ---- Messages ---------------------------------------------------------------------------------

// What is left of the document stays in the editor.
void Form1::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

LRESULT Form1::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            onSize();
            return 0;
        case WM_SETFOCUS:
            ::SetFocus(rtftext_.handle());
            return 0;
        case WM_COMMAND:
            onCommand(wParam, lParam);
            return 0;
        case WM_NOTIFY:
            return onNotify(lParam);
        case WM_DROPFILES:
            onDrop(reinterpret_cast<HDROP>(wParam));
            return 0;
        case WM_CONTEXTMENU:
            onContextMenu(lParam);
            return 0;
        case WM_INITMENUPOPUP:
            onMenuOpens(reinterpret_cast<HMENU>(wParam));
            return 0;
        case WM_HELP:
            onHelp(*reinterpret_cast<const HELPINFO*>(lParam));
            return TRUE;
        case WM_TIMER:
            if (wParam == kIdleTimer)
                onIdleTimer();
            else if (wParam == kPlaceTimer)
                tellPlace();
            return 0;
        case WM_SETTINGCHANGE:
        case WM_DISPLAYCHANGE:
            measureScreen();
            return passOn(message, wParam, lParam);
        case WM_SYSCOLORCHANGE:
            ::SendMessageW(toolbar_.handle(), message, wParam, lParam);
            ::SendMessageW(rtftext_.handle(), message, wParam, lParam);
            rtftext_.setBackground(rtftext_.background());
            ::SendMessageW(dictionary_.handle(), message, wParam, lParam);
            toolbar_.reloadPictures();
            return 0;
        case WM_CLOSE:
            onClose();
            return 0;
        case WM_QUERYENDSESSION:
            return onQueryEndSession();
        case WM_ENDSESSION:
            onEndSession(wParam != 0);
            return 0;
        case kShown:
            onShown();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void Form1::onSize() {
    if (rtftext_.handle() == nullptr || ending_ || ::IsIconic(handle()))
        return;
    const ScreenSupport support = screenSupport(services_.screen.size(), J2_);
    screenFails_ = support == ScreenSupport::Unsupported;
    if (screenFails_)
        return endOnScreen();
    RECT client{};
    ::GetClientRect(handle(), &client);
    const MainLayout layout =
        layoutMainWindow(client.right, client.bottom, toolbar_.resize(), status_.height(),
                         systemDpi(), support, dictionary_.width());
    const Area& editor = layout.editor;
    rtftext_.place(
        {editor.left, editor.top, editor.left + editor.width, editor.top + editor.height});
    if (layout.panel.width > 0)
        dictionary_.place(layout.panel);
    if (status_.isShown())
        status_.place(layout.status);
}

// A screen may turn at any moment: what is at work is finished first, and what was typed on stage
// is in the song before it goes.
void Form1::endOnScreen() {
    if (isBusy())
        return;
    if (!fullScreen_.keepEdits())
        return;
    ending_ = true;
    services_.messages.show(kUnsupportedScreen, kMessageTitle, MessageIcon::None,
                            MessageButtons::Ok);
    endProgram(RunEnd::Screen);
}

void Form1::onCommand(WPARAM wParam, LPARAM lParam) {
    const bool fromEditor = lParam != 0 && reinterpret_cast<HWND>(lParam) == rtftext_.handle();
    if (fromEditor) {
        if (HIWORD(wParam) == EN_CHANGE && loaded_ && !rtftext_.atWork())
            documents_.changed();
        return;
    }
    const bool fromToolbar = lParam != 0 && reinterpret_cast<HWND>(lParam) == toolbar_.handle();
    auto command = commandOfId(LOWORD(wParam));
    if (command && fromToolbar)
        command = commandOfKey(rowOf(*command).button.key);
    if (command)
        run(*command);
    // A check button changes by itself, whether or not its command could run.
    if (fromToolbar && !ending_)
        followSelection();
}

LRESULT Form1::onNotify(LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.code == TTN_GETDISPINFOW) {
        auto& info = *reinterpret_cast<NMTTDISPINFOW*>(lParam);
        const auto command = commandOfId(static_cast<std::uint32_t>(header.idFrom));
        const Text tip = command ? tipOf(rowOf(*command)) : Text();
        ::lstrcpynW(info.szText, wide(tip), static_cast<int>(std::size(info.szText)));
    } else if (header.code == TBN_DROPDOWN && header.hwndFrom == toolbar_.handle()) {
        showSpellingMenu();
        return TBDDRET_DEFAULT;
    } else if (header.code == EN_SELCHANGE && !rtftext_.atWork()) {
        followSelection();
    }
    return 0;
}

void Form1::onIdleTimer() {
    if (screenFails_)
        return onSize();
    if (!loaded_ || isBusy())
        return;
    documents_.idle();
    keyWork_.idle();
    readyStage();
}

// The stage's panel has so many controls that its making would hold up whoever opens it. It is made
// while nobody does anything.
void Form1::readyStage() {
    if (stageIsReady_ || fullScreen_.isOpen() || ++idleRounds_ < kRoundsToStage)
        return;
    LASTINPUTINFO last{sizeof last, 0};
    constexpr DWORD quietMs = 1000;
    if (::GetLastInputInfo(&last) && ::GetTickCount() - last.dwTime < quietMs)
        return;
    stageIsReady_ = true;
    fullScreen_.makeReady(handle());
}

// A command waits for an answer, or a job runs: nothing else may begin, nor the program end.
bool Form1::isBusy() const {
    return jobRuns_ || modal_.isOpen() || find_.isBusy();
}

// The door of everything that changes the document or puts another in its place. The view works on
// the document that it was opened with, so it closes first.
bool Form1::mayBegin() {
    if (isBusy() || !fullScreen_.close())
        return false;
    follower_.commandBegins();
    return true;
}

bool Form1::mayEnd() {
    return mayBegin() && documents_.mayClose();
}

LRESULT Form1::onQueryEndSession() {
    sessionMayEnd_ = mayEnd();
    return sessionMayEnd_ ? TRUE : FALSE;
}

// Windows may end although nobody could answer; the next start then offers the song.
void Form1::onEndSession(bool ends) {
    if (ends)
        fullScreen_.keepEdits();
    if (ends)
        documents_.endRun(sessionMayEnd_ ? RunEnd::SessionAnswered : RunEnd::SessionCut);
    sessionMayEnd_ = false;
}

void Form1::onClose() {
    if (mayEnd())
        endProgram(RunEnd::Closed);
}

void Form1::endProgram(RunEnd how) {
    ending_ = true;
    documents_.endRun(how);
    destroy();
    endProgram_();
}

// ---- Commands ---------------------------------------------------------------------------------

bool Form1::isEnabled(Command command) const {
    return menuBar_.isEnabled(command);
}

void Form1::run(Command command) {
    const Handler handler = handlerOf(command);
    if (handler == nullptr || !isEnabled(command))
        return;
    // An open view comes forward.
    const bool opensView = command == Command::mnuFullScreen;
    if (opensView ? isBusy() : !mayBegin())
        return;
    if (opensView)
        follower_.commandBegins();
    (this->*handler)();
}

// Runs for every typed character, so it touches only what has changed.
void Form1::showState(const ShellState& state) {
    const bool isFirst = !loaded_;
    keyWork_.songChanged();
    if (isFirst || state.title != shownState_.title)
        setCaption(state.title);
    const auto changed = [&](EnabledWhen when) {
        return when != nullptr && (isFirst || state.*when != shownState_.*when);
    };
    for (const CommandRow& row : commands()) {
        if (changed(row.itemWhen))
            menuBar_.enable(row.id, state.*row.itemWhen);
        if (changed(row.buttonWhen))
            toolbar_.enable(row.id, state.*row.buttonWhen);
    }
    shownState_ = state;
}

// The buttons show the format at the caret.
void Form1::followSelection() {
    follower_.caretMoved();
    if (status_.isShown())
        ::SetTimer(handle(), kPlaceTimer, kPlaceMs, nullptr);
    const SelectionStyle style = rtftext_.selectionStyle();
    toolbar_.setChecked(Command::mnuBold, style.bold == true);
    toolbar_.setChecked(Command::mnuItalic, style.italic == true);
    toolbar_.setChecked(Command::mnuUnderline, style.underline == true);
    toolbar_.setChecked(Command::alignLeft, style.alignment == Alignment::Left);
    toolbar_.setChecked(Command::alignCenter, style.alignment == Alignment::Center);
    toolbar_.setChecked(Command::alignRight, style.alignment == Alignment::Right);
}

void Form1::toggleDictionary() {
    if (dictionary_.width() == PanelWidth::Closed)
        dictionary_.show();
    else
        closeDictionary();
}

void Form1::insertDiagram(TextView glyph, TextView face) {
    if (!mayBegin())
        return;
    RichEditDiagrams editor(rtftext_);
    DiagramStyle typing;
    follower_.around([&] { typing = melvorin::insertDiagram(editor, glyph, face); });
    documents_.changed();
    // What comes next is the song, and not in the font of diagrams.
    ::SetFocus(rtftext_.handle());
    editor.typeIn(typing);
    rtftext_.scrollCaretIntoView();
}

void Form1::switchFollowing() {
    const bool on = !follower_.isOn();
    follow(on);
    if (!storeChordsFollow(services_, on))
        reportFailure(services_.messages, kNotStored);
}

void Form1::follow(bool on) {
    follower_.setOn(on);
    fullScreen_.follow(on);
    menuBar_.check(Command::mnuFollow, on);
}

void Form1::changeFingering() {
    RichEditDiagrams editor(rtftext_);
    if (fingering_.change(editor, services_.messages)) {
        rtftext_.scrollCaretIntoView();
        documents_.changed();
    }
}

}  // namespace melvorin
