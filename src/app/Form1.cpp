#include "app/Form1.h"

#include <algorithm>
#include <exception>
#include <new>

#include "app/ProgramSettings.h"
#include "chords/FrmCifra.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

constexpr int kEditorId = 100;
constexpr UINT_PTR kIdleTimer = 1;
constexpr UINT kIdleMs = 200;
constexpr TextView kUnsupportedScreen =
    u"The Melvorin Editor doesn't work with this video settings  ";

constexpr Command kKeyItems[] = {Command::mnuUp, Command::mnuDwn, Command::mnuSus, Command::mnuBem};

}  // namespace

// The commands that exist; menu items without an entry here are greyed.
std::span<const Form1::Binding> Form1::bindings() {
    static constexpr Binding table[] = {
        {Command::mnuFileNew, &Form1::fileNew},       {Command::mnuFileOpen, &Form1::fileOpen},
        {Command::mnuFileSave3, &Form1::fileSave},    {Command::mnuFileSave, &Form1::fileSave},
        {Command::mnuFileSaveAs, &Form1::fileSaveAs}, {Command::mnuFileExit, &Form1::fileExit},
        {Command::mnuEditUndo, &Form1::editUndo},     {Command::mnuEditRedo, &Form1::editRedo},
        {Command::mnuDwn, &Form1::keyDown},           {Command::mnuUp, &Form1::keyUp},
        {Command::mnuSus, &Form1::useSharps},         {Command::mnuBem, &Form1::useFlats},
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
    : services_(services),
      endProgram_(std::move(endProgram)),
      documents_(services, rtftext_,
                 {[this](const ShellState& state) { showState(state); }, [](TextView) {}}) {}

// ---- Load -------------------------------------------------------------------------------------

bool Form1::load(TextView commandLine, int showCommand) {
    showCommand_ = showCommand;
    if (!createParts())
        return false;
    const auto step = [&](auto&& action) {
        try {
            action();
        } catch (const std::exception&) {
            // A failing step must not keep the program from starting.
        }
    };
    step([&] { measureScreen(); });
    step([&] {
        const EditorWork work(rtftext_);
        documents_.loadTemplate();
    });
    step([&] { documents_.begin(); });
    step([&] { documents_.openFromCommandLine(commandLine); });
    step([&] { creatorFace_ = editorFontFace(services_); });
    loaded_ = true;
    step([&] {
        splash_ = std::make_unique<frmSplash>(services_, [this] { bringForward(); });
        if (!splash_->show())
            bringForward();
    });
    return !ending_;
}

bool Form1::createParts() {
    menuBar_.build(menuEntries());
    WindowSpec spec;
    spec.className = L"MelvorinForm1";
    spec.caption = L"Chord Notation - Melvorin";
    spec.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    spec.menu = menuBar_.bar();
    spec.iconResource = kProgramIcon;
    if (!create(spec) || !toolbar_.create(handle(), toolButtons()) ||
        !rtftext_.create(handle(), kEditorId, editorFontFace(services_), kEditorFontPoints))
        return false;
    for (const MenuEntry& entry : menuEntries()) {
        const bool implemented = entry.isSubmenu || handlerOf(entry.item) != nullptr;
        menuBar_.enable(entry.item, implemented);
    }
    const std::span<const ToolButton> buttons = toolButtons();
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        if (buttons[index].kind != ToolButtonKind::Separator)
            toolbar_.enable(static_cast<int>(index) + 1, handlerOf(buttons[index].runs) != nullptr);
    }
    createAccelerators();
    showState(documents_.state());
    onSize();
    ::SetTimer(handle(), kIdleTimer, kIdleMs, nullptr);
    return true;
}

void Form1::createAccelerators() {
    struct Key {
        WORD key;
        Command command;
    };
    constexpr Key keys[] = {{'N', Command::mnuFileNew},
                            {'O', Command::mnuFileOpen},
                            {'S', Command::mnuFileSave},
                            {'Z', Command::mnuEditUndo},
                            {'Y', Command::mnuEditRedo}};
    ACCEL table[std::size(keys)];
    std::transform(std::begin(keys), std::end(keys), table, [](const Key& key) {
        return ACCEL{FVIRTKEY | FCONTROL, key.key, idOf(key.command)};
    });
    accelerators_.reset(::CreateAcceleratorTableW(table, static_cast<int>(std::size(table))));
}

void Form1::measureScreen() {
    J2_ = fromUtf8(std::to_string(services_.screen.workArea().height));
}

void Form1::bringForward() {
    ::ShowWindow(handle(), showCommand_);
    ::SetForegroundWindow(handle());
    ::SetFocus(rtftext_.handle());
    ::UpdateWindow(handle());
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT Form1::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // No exception may cross into Windows; what is left of the document stays in the editor.
    try {
        return route(message, wParam, lParam);
    } catch (const std::bad_alloc&) {
        reportFailure(services_.messages, u"There is not enough memory for this.");
    } catch (const std::exception& error) {
        reportFailure(services_.messages, u"An internal error: " + fromUtf8(error.what()));
    }
    return 0;
}

LRESULT Form1::route(UINT message, WPARAM wParam, LPARAM lParam) {
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
        case WM_TIMER:
            onIdleTimer();
            return 0;
        case WM_SYSCOLORCHANGE:
            toolbar_.reloadPictures();
            return 0;
        case WM_CLOSE:
            onClose();
            return 0;
        case WM_QUERYENDSESSION:
            return documents_.mayClose() ? TRUE : FALSE;
        case WM_ENDSESSION:
            if (wParam)
                documents_.endRun();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void Form1::onSize() {
    if (rtftext_.handle() == nullptr || ending_ || ::IsIconic(handle()))
        return;
    const ScreenSupport support =
        screenSupport(services_.screen.size(), services_.screen.workArea());
    if (support == ScreenSupport::Unsupported) {
        ending_ = true;
        services_.messages.show(kUnsupportedScreen, kMessageTitle, MessageIcon::None,
                                MessageButtons::Ok);
        endProgram();
        return;
    }
    RECT client{};
    ::GetClientRect(handle(), &client);
    const MainLayout layout = layoutMainWindow(client.right, client.bottom, toolbar_.resize(),
                                               systemDpi(), support, false);
    const Area& editor = layout.editor;
    rtftext_.place(
        {editor.left, editor.top, editor.left + editor.width, editor.top + editor.height});
}

void Form1::onCommand(WPARAM wParam, LPARAM lParam) {
    const bool fromEditor = lParam != 0 && reinterpret_cast<HWND>(lParam) == rtftext_.handle();
    if (fromEditor) {
        if (HIWORD(wParam) == EN_CHANGE && loaded_ && !rtftext_.atWork())
            documents_.changed();
        return;
    }
    if (const auto command = commandOfId(LOWORD(wParam)))
        run(*command);
}

LRESULT Form1::onNotify(LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.code == TTN_GETDISPINFOW) {
        auto& info = *reinterpret_cast<NMTTDISPINFOW*>(lParam);
        const TextView tip = toolbar_.tipOf(header.idFrom);
        info.lpszText = const_cast<wchar_t*>(wide(tip.data()));
    } else if (header.code == TBN_DROPDOWN && header.hwndFrom == toolbar_.handle()) {
        showSpellingMenu();
        return TBDDRET_DEFAULT;
    }
    return 0;
}

void Form1::onIdleTimer() {
    if (loaded_ && !jobRuns_)
        documents_.idle();
}

void Form1::onClose() {
    if (!jobRuns_ && documents_.mayClose())
        endProgram();
}

void Form1::endProgram() {
    ending_ = true;
    documents_.endRun();
    destroy();
    endProgram_();
}

// ---- Commands ---------------------------------------------------------------------------------

bool Form1::isEnabled(Command command) const {
    if (command == Command::mnuFileSave)
        return true;
    return menuBar_.isEnabled(command);
}

void Form1::run(Command command) {
    const Handler handler = handlerOf(command);
    if (handler != nullptr && !jobRuns_ && isEnabled(command))
        (this->*handler)();
}

void Form1::showState(const ShellState& state) {
    setCaption(state.title);
    menuBar_.enable(Command::mnuFileSaveAs, state.saveAs);
    menuBar_.enable(Command::mnuEditUndo, state.undo);
    menuBar_.enable(Command::mnuEditRedo, state.redo);
    toolbar_.enable(kUndoButton, state.undo);
    toolbar_.enable(kRedoButton, state.redo);
    toolbar_.enable(kKeyDownButton, state.keyButtons);
    toolbar_.enable(kKeyUpButton, state.keyButtons);
}

void Form1::startJob() {
    jobRuns_ = true;
    documents_.disableKeyButtons();
    for (const Command item : kKeyItems)
        menuBar_.enable(item, false);
}

void Form1::endJob() {
    for (const Command item : kKeyItems)
        menuBar_.enable(item, true);
    jobRuns_ = false;
    documents_.idle();
}

void Form1::changeKey(Direction direction) {
    const bool hasText = !rtftext_.isEmpty();
    startJob();
    FrmCifra cifra(services_);
    cifra.changeKey(handle(), rtftext_, direction, spelling_, T6_);
    endJob();
    if (hasText)
        documents_.changed();
}

void Form1::useSpelling(Spelling spelling) {
    spelling_ = spelling;
    spellingCaptions_ = captionsOf(spelling);
    menuBar_.setCaption(Command::mnuSus, spellingCaptions_.sharps);
    menuBar_.setCaption(Command::mnuBem, spellingCaptions_.flats);
}

void Form1::showSpellingMenu() {
    const UniqueMenu menu(::CreatePopupMenu());
    for (const Command item : {Command::mnuSus, Command::mnuBem})
        ::AppendMenuW(menu.get(), MF_STRING, idOf(item), wide(menuBar_.caption(item)));
    const RECT button = toolbar_.buttonOnScreen(kKeyDownButton);
    ::TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN, button.left, button.bottom, 0,
                     handle(), nullptr);
}

}  // namespace melvorin
