// The real windows and the real control over stand-ins for everything else.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "StandIns.h"
#include "app/Form1.h"
#include "base/Paths.h"
#include "platform/SystemAnsiCodec.h"
#include "platform/Win32Files.h"
#include "platform/Win32Services.h"

namespace melvorin::testing {

// The real files, with faults on request.
class FaultyFiles : public Win32Files {
  public:
    Result<std::string> read(TextView path) override {
        ::Sleep(delayMs);
        return Win32Files::read(path);
    }
    Result<Done> write(TextView path, std::string_view bytes) override {
        ::Sleep(delayMs);
        return diskFull ? Result<Done>::failure(u"The disk is full.")
                        : Win32Files::write(path, bytes);
    }
    Result<Done> replace(TextView path, std::string_view bytes) override {
        ::Sleep(delayMs);
        return diskFull ? Result<Done>::failure(u"The disk is full.")
                        : Win32Files::replace(path, bytes);
    }
    Result<Text> createTemporary(TextView prefix) override {
        if (!temporaryNames)
            return Result<Text>::failure(u"The temporary folder cannot be written.");
        return Win32Files::createTemporary(prefix);
    }
    std::unique_ptr<HeldFile> createHeld(TextView prefix) override {
        return temporaryNames ? Win32Files::createHeld(prefix) : nullptr;
    }
    // What a test left that failed is not another one's.
    std::vector<std::unique_ptr<HeldFile>> takeHeld(TextView prefix) override {
        return offersRemains ? Win32Files::takeHeld(prefix)
                             : std::vector<std::unique_ptr<HeldFile>>();
    }

    bool offersRemains = false;
    DWORD delayMs = 0;  // of every reading and writing, as over a bad network
    bool diskFull = false;
    bool temporaryNames = true;
};

// A folder of the test's own that is gone afterwards.
class ScratchFolder {
  public:
    ScratchFolder() {
        Text folder(MAX_PATH, u'\0');
        folder.resize(::GetTempPathW(MAX_PATH, wideBuffer(folder)));
        Text name(MAX_PATH, u'\0');
        ::GetTempFileNameW(wide(folder), L"mts", 0, wideBuffer(name));
        path_ = name.c_str();
        ::DeleteFileW(wide(path_));
        ::CreateDirectoryW(wide(path_), nullptr);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        for (const Text& name : names()) {
            ::SetFileAttributesW(wide(joinPath(path_, name)), FILE_ATTRIBUTE_NORMAL);
            ::DeleteFileW(wide(joinPath(path_, name)));
        }
        ::RemoveDirectoryW(wide(path_));
    }

    Text file(TextView name) const { return joinPath(path_, name); }
    Text add(TextView name, std::string_view bytes) const {
        EXPECT_TRUE(Win32Files().write(file(name), bytes));
        return file(name);
    }
    std::string content(TextView name) const {
        return Win32Files().read(file(name)).value.value_or("(no such file)");
    }
    std::vector<Text> names() const {
        std::vector<Text> found;
        WIN32_FIND_DATAW data{};
        const HANDLE search = ::FindFirstFileW(wide(joinPath(path_, u"*")), &data);
        if (search == INVALID_HANDLE_VALUE)
            return found;
        do {
            if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                found.emplace_back(textOf(data.cFileName));
        } while (::FindNextFileW(search, &data));
        ::FindClose(search);
        return found;
    }
    const Text& path() const { return path_; }

  private:
    Text path_;
};

inline constexpr TextView kNoSong;

// The whole program short of its entry: the real main window over scripted services.
class Program : public StandIns {
  public:
    Program() {
        program.resources = [](TextView type, int id) {
            return Win32ProgramFolder().resource(type, id);
        };
    }
    // Started with this command line.
    explicit Program(TextView commandLine) : Program() {
        if (!start(commandLine))
            throw std::runtime_error("the program does not start");
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    // Loads the main window and brings it forward, as a start with this command line does.
    bool start(TextView commandLine = u"") {
        form = std::make_unique<Form1>(services, [this] { ended = true; });
        if (!form->load(commandLine, SW_SHOWNORMAL))
            return false;
        waitUntil([this] { return ::IsWindowVisible(form->handle()) != FALSE; });
        return true;
    }
    ~Program() {
        if (form && form->isOpen() && !ended) {
            // The test is over; its document is nobody's, and neither are its snapshots.
            form->endRun();
            form->destroy();
        }
    }

    // Handles messages until the condition holds; the limit only ends a test that has failed.
    template <class Condition>
    void waitUntil(Condition condition) {
        const ULONGLONG limit = ::GetTickCount64() + 60'000;
        while (!condition()) {
            if (::GetTickCount64() > limit) {
                ADD_FAILURE() << "waited too long";
                return;
            }
            pump();
            ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        }
    }
    void pump() {
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (form && form->translate(message))
                continue;
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    // Types characters into the editor as the keyboard does.
    void type(TextView text) {
        for (const char16_t c : text)
            ::SendMessageW(editor().handle(), WM_CHAR, c, 1);
        pump();
    }
    void command(Command command) { form->run(command); }
    // The idle timer gives the key buttons back.
    void waitForKeyButtons() {
        waitUntil([this] { return form->documents().state().keyButtons; });
    }
    // The run is gone without its end; what it has on disk stays.
    void crash() {
        form->destroy();
        form.reset();
    }
    void close() { ::SendMessageW(form->handle(), WM_CLOSE, 0, 0); }

    RichEdit& editor() { return form->rtftext(); }
    const ShellState& state() const { return form->documents().state(); }
    const SnapshotHistory& history() const { return form->documents().history(); }
    std::string text() { return shown(editor().text().chars); }
    std::string caption() const { return shown(windowText(form->handle())); }

    FaultyFiles files;
    Services services = ServicesBuilder(*this, files, systemAnsiCodec()).build();
    std::unique_ptr<Form1> form;
    bool ended = false;
};

// The program has shown one box, which says this among other things.
inline void expectOneBox(const Program& program, std::string_view part) {
    ASSERT_EQ(program.messages.boxes.size(), 1U);
    const std::string& text = program.messages.boxes[0].text;
    EXPECT_NE(text.find(part), std::string::npos) << text;
}

// While it lives, rich-edit controls that are created take no text.
class RefusingControls {
  public:
    RefusingControls()
        : hook_(::SetWindowsHookExW(WH_CBT, onCreate, nullptr, ::GetCurrentThreadId())) {}
    RefusingControls(const RefusingControls&) = delete;
    RefusingControls& operator=(const RefusingControls&) = delete;
    ~RefusingControls() { ::UnhookWindowsHookEx(hook_); }

  private:
    static LRESULT CALLBACK onCreate(int code, WPARAM wParam, LPARAM lParam) {
        const auto window = reinterpret_cast<HWND>(wParam);
        wchar_t name[32] = L"";
        if (code == HCBT_CREATEWND)
            ::GetClassNameW(window, name, 32);
        if (::lstrcmpiW(name, MSFTEDIT_CLASS) == 0)
            ::SetWindowSubclass(window, refuse, 77, 0);
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }
    static LRESULT CALLBACK refuse(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT_PTR id, DWORD_PTR) {
        if (message != EM_STREAMIN)
            return subclassDefault(refuse, id, window, message, wParam, lParam);
        reinterpret_cast<EDITSTREAM*>(lParam)->dwError = 1;
        return 0;
    }

    HHOOK hook_;
};

// As the system does where F1 goes down.
inline void askForHelp(HWND window, int contextType = HELPINFO_WINDOW) {
    HELPINFO info{};
    info.cbSize = sizeof info;
    info.iContextType = contextType;
    info.hItemHandle = window;
    ::SendMessageW(window, WM_HELP, 0, lparamOf(&info));
}

}  // namespace melvorin::testing
