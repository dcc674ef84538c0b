// Stand-ins for the outside services: what the user would answer is scripted beforehand, what the
// program asked for is recorded. Anything unscripted fails the test.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <set>

#include "app/Form1.h"
#include "base/Paths.h"
#include "platform/SystemAnsiCodec.h"
#include "platform/Win32Files.h"
#include "platform/Win32Services.h"

namespace melvorin::testing {

inline std::string shown(TextView text) {
    return toUtf8(text);
}

struct ShownMessage {
    std::string text;
    std::string title;
    MessageIcon icon;
    MessageButtons buttons;
};

class ScriptedMessages : public MessageBoxes {
  public:
    // Runs while a box is open, as messages from outside do.
    std::function<void()> whileOpen;
    // Answers are used up in order; an OK box needs none.
    void answer(Answer answer) { answers_.push_back(answer); }

    Answer show(TextView text, TextView title, MessageIcon icon, MessageButtons buttons) override {
        boxes.push_back(
            {melvorin::testing::shown(text), melvorin::testing::shown(title), icon, buttons});
        if (whileOpen)
            whileOpen();
        if (buttons == MessageButtons::Ok)
            return Answer::Ok;
        if (answers_.empty() && otherwise)
            return *otherwise;
        if (answers_.empty()) {
            ADD_FAILURE() << "unexpected question: " << boxes.back().text;
            return Answer::Cancel;
        }
        const Answer given = answers_.front();
        answers_.pop_front();
        return given;
    }
    bool allAnswered() const { return answers_.empty(); }
    std::optional<Answer> otherwise;  // where no answer is left

    std::vector<ShownMessage> boxes;

  private:
    std::deque<Answer> answers_;
};

class ScriptedDialogs : public FileDialogs {
  public:
    // Runs while a dialog is open, as messages from outside do.
    std::function<void()> whileOpen;
    void choose(std::optional<FileChoice> choice) { choices_.push_back(std::move(choice)); }

    std::optional<FileChoice> open(const FileDialogRequest& request) override {
        return next(request);
    }
    std::optional<FileChoice> save(const FileDialogRequest& request) override {
        return next(request);
    }

    std::vector<FileDialogRequest> requests;
    std::optional<FileChoice> otherwise;  // where no choice is left

  private:
    std::optional<FileChoice> next(const FileDialogRequest& request) {
        requests.push_back(request);
        if (whileOpen)
            whileOpen();
        if (choices_.empty() && otherwise)
            return otherwise;
        if (choices_.empty()) {
            ADD_FAILURE() << "unexpected file dialog: " << shown(request.title);
            return std::nullopt;
        }
        auto choice = choices_.front();
        choices_.pop_front();
        return choice;
    }

    std::deque<std::optional<FileChoice>> choices_;
};

class ScriptedProfiles : public ProfileFiles {
  public:
    Text read(TextView section, TextView key, TextView fallback, TextView file,
              std::uint32_t capacity) override {
        const auto found = values.find({Text(file), Text(section), Text(key)});
        Text value = found == values.end() ? Text(fallback) : found->second;
        value.resize(std::min<std::size_t>(value.size(), capacity - 1));
        return value;
    }
    bool write(TextView section, TextView key, TextView value, TextView file) override {
        if (writable)
            values[{Text(file), Text(section), Text(key)}] = value;
        return writable;
    }

    bool writable = true;

    std::map<std::tuple<Text, Text, Text>, Text> values;
};

class RecordedSettings : public SettingsStore {
  public:
    void write(TextView application, TextView section, TextView key, TextView value) override {
        written.push_back(shown(application) + "/" + shown(section) + "/" + shown(key) + "=" +
                          shown(value));
    }
    std::vector<std::string> written;
};

class ScriptedSystem : public SystemSettings {
  public:
    bool setFontSmoothing(bool on) override {
        calls.push_back(on ? "smoothing on" : "smoothing off");
        return acceptsSmoothing;
    }
    bool fontSmoothing() override {
        calls.push_back("read smoothing");
        return false;
    }
    std::optional<Text> registryString(TextView key, TextView name) override {
        calls.push_back("read " + shown(key) + "\\" + shown(name));
        return clearType;
    }
    void setRegistryString(TextView key, TextView name, TextView value) override {
        calls.push_back("write " + shown(key) + "\\" + shown(name) + "=" + shown(value));
    }
    void initCommonControls() override { calls.push_back("init common controls"); }
    Text documentsFolder() override { return u"C:\\Users\\me\\Documents"; }

    bool acceptsSmoothing = true;
    std::optional<Text> clearType;
    std::vector<std::string> calls;
};

class ScriptedProgram : public ProgramFolder {
  public:
    Text folder() override { return programFolder; }
    Text programFileName() override { return fileName; }
    bool contains(TextView path) override { return present.contains(Text(path)); }
    bool writeWithAttributes(TextView path, std::string_view bytes,
                             std::uint32_t attributes) override {
        written[Text(path)] = {std::string(bytes), attributes};
        return true;
    }
    std::optional<std::string> resource(TextView type, int id) override {
        return hasResource ? Win32ProgramFolder().resource(type, id) : std::nullopt;
    }

    Text programFolder = u"C:\\Program";
    Text fileName = u"Melvorin.exe";
    std::set<Text> present;
    std::map<Text, std::pair<std::string, std::uint32_t>> written;
    bool hasResource = true;
};

class ScriptedClipboard : public Clipboard {
  public:
    bool hasRichText() override { return rich.has_value(); }
    bool hasText() override { return plain.has_value(); }
    Result<std::string> richText(std::uint64_t limit) override { return get(rich, limit); }
    Result<Text> text(std::uint64_t limit) override { return get(plain, limit); }

    std::optional<std::string> rich;
    std::optional<Text> plain;
    bool vanishes = false;  // between the query and the reading

  private:
    template <class Data>
    Result<Data> get(const std::optional<Data>& data, std::uint64_t limit) const {
        if (!data || vanishes)
            return Result<Data>::failure(u"It is no longer there.");
        if (data->size() * sizeof(typename Data::value_type) > limit)
            return Result<Data>::failure(u"It is too large.");
        return Result<Data>::success(*data);
    }
};

class RecordedShell : public ShellOpener {
  public:
    bool showHelp(TextView file, TextView page) override {
        if (hasViewer)
            helpShown.push_back(shown(file) + "::" + shown(page));
        return hasViewer;
    }
    Result<Done> open(TextView target) override {
        opened.push_back(shown(target));
        return works ? Result<Done>::success({})
                     : Result<Done>::failure(u"The file was not found.");
    }

    bool works = true;
    bool hasViewer = true;
    std::vector<std::string> opened;
    std::vector<std::string> helpShown;
};

class ScriptedScreen : public Screen {
  public:
    ScreenSize size() override { return screen; }
    ScreenSize workArea() override { return work; }

    // Of several monitors, the one with the window's corner; without any, the primary screen.
    Monitor monitorOf(const Area& window) override {
        for (const Monitor& monitor : monitors) {
            const Area& all = monitor.whole;
            if (window.left >= all.left && window.left < all.left + all.width &&
                window.top >= all.top && window.top < all.top + all.height)
                return monitor;
        }
        return {{0, 0, screen.width, screen.height}, {0, 0, work.width, work.height}};
    }
    void keepOn(bool on) override { isKeptOn = on; }

    ScreenSize screen{1280, 1024};
    ScreenSize work{1280, 994};
    std::vector<Monitor> monitors;
    bool isKeptOn = false;
};

class RecordedSounds : public Sounds {
  public:
    void play(TextView path) override { played.push_back(shown(path)); }
    std::vector<std::string> played;
};

class ScriptedColors : public ColorDialogs {
  public:
    std::optional<Rgb> choose(Rgb marked) override {
        asked.push_back(marked);
        return std::exchange(answer, std::nullopt);
    }
    std::optional<Rgb> answer;
    std::vector<Rgb> asked;
};

// Stands still until a test moves it.
class ScriptedClock : public Clock {
  public:
    std::int64_t nowMs() override { return ms; }
    std::int64_t ms = 0;
};

// Records the commands; as a machine without a device, it can refuse them all.
class RecordedMultimedia : public Multimedia {
  public:
    std::uint32_t send(TextView command) override {
        commands.push_back(shown(command));
        return result;
    }

    std::vector<std::string> commands;
    std::uint32_t result = 0;
};

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

// The whole program short of its entry: the real main window over scripted services.
class Program {
  public:
    Program() = default;
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
    std::string caption() const {
        Text buffer(512, u'\0');
        buffer.resize(
            static_cast<std::size_t>(::GetWindowTextW(form->handle(), wideBuffer(buffer), 512)));
        return shown(buffer);
    }

    FaultyFiles files;
    ScriptedMessages messages;
    ScriptedDialogs dialogs;
    ScriptedProfiles profiles;
    RecordedSettings settings;
    ScriptedSystem system;
    ScriptedProgram program;
    ScriptedScreen screen;
    ScriptedClipboard clipboard;
    RecordedShell shell;
    RecordedSounds sounds;
    ScriptedColors colors;
    RecordedMultimedia multimedia;
    ScriptedClock clock;
    Services services{files,  messages, dialogs, profiles,          settings,
                      system, program,  screen,  systemAnsiCodec(), clipboard,
                      shell,  sounds,   colors,  multimedia,        clock};
    std::unique_ptr<Form1> form;
    bool ended = false;
};

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
