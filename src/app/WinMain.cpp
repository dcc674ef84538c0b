// The program's entry: puts the real services together and runs the main window.
#include "app/Form1.h"
#include "platform/SystemAnsiCodec.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Files.h"
#include "platform/Win32Midi.h"
#include "platform/Win32Printers.h"
#include "platform/Win32Services.h"

namespace {

// Set at run time: a manifest inside the program would silence the one written beside it.
void followSystemDpi() {
    const auto set = melvorin::systemFunction<BOOL(WINAPI*)()>(L"user32.dll", "SetProcessDPIAware");
    if (set != nullptr)
        set();
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR commandLine, int showCommand) {
    using namespace melvorin;
    searchOnlySystemFolder();
    followSystemDpi();
    Win32Files files;
    BoxOwner owner;
    Win32MessageBoxes messages(owner);
    Win32FileDialogs dialogs(owner);
    Win32ProfileFiles profiles;
    RegistrySettingsStore settings;
    Win32SystemSettings system;
    Win32ProgramFolder program;
    Win32Screen screen;
    Win32Clipboard clipboard;
    Win32ShellOpener shell;
    Win32Sounds sounds;
    Win32Multimedia multimedia;
    Win32Midi midi;
    Win32ColorDialogs colors(owner);
    Win32Printers printers(owner);
    Win32Clock clock;
    const Services services{.files = files,
                            .messages = messages,
                            .dialogs = dialogs,
                            .profiles = profiles,
                            .settings = settings,
                            .system = system,
                            .program = program,
                            .screen = screen,
                            .ansi = systemAnsiCodec(),
                            .clipboard = clipboard,
                            .shell = shell,
                            .sounds = sounds,
                            .colors = colors,
                            .printers = printers,
                            .multimedia = multimedia,
                            .midi = midi,
                            .clock = clock};

    Form1 form(services, [] { ::PostQuitMessage(0); });
    // A chart wants the whole screen, unless a shortcut says otherwise.
    const int show = showCommand == SW_SHOWNORMAL || showCommand == SW_SHOWDEFAULT
                         ? SW_SHOWMAXIMIZED
                         : showCommand;
    if (!form.load(textOf(commandLine), show))
        return form.hasEnded() ? 0 : 1;
    owner.window = form.handle();
    return runMessageLoop([&](MSG& message) { return form.translate(message); });
}
