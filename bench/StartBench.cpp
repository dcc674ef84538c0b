// How long Melvorin and the system's own WordPad take from the start of the process to a window
// the user can write in, taking turns. Melvorin shows its splash for 300 ms on purpose, so the
// splash's first sight is told as well. Prints "name value unit", one per line.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "base/Paths.h"
#include "platform/Handles.h"

namespace {

using namespace melvorin;
using Clock = std::chrono::steady_clock;

constexpr double kLimitMs = 60'000;

struct Editor {
    Text path;
    const wchar_t* mainWindow;
    const wchar_t* splash;  // null: there is none
};

struct Start {
    double splash = 0;   // until the splash is in view
    double ready = 0;    // until the main window is in view
    double answers = 0;  // until it also handles messages
};

[[noreturn]] void giveUp(const char* why) {
    std::fprintf(stderr, "start_bench: %s (error %lu)\n", why, ::GetLastError());
    std::exit(EXIT_FAILURE);
}

// The process's visible window of a class; null while there is none.
HWND visibleWindow(DWORD process, const wchar_t* className) {
    HWND window = nullptr;
    while ((window = ::FindWindowExW(nullptr, window, className, nullptr)) != nullptr) {
        DWORD owner = 0;
        ::GetWindowThreadProcessId(window, &owner);
        if (owner == process && ::IsWindowVisible(window))
            return window;
    }
    return nullptr;
}

class Run {
  public:
    explicit Run(const Editor& editor) : editor_(editor) {
        Text commandLine = u"\"" + editor.path + u"\"";
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        start_ = Clock::now();
        if (!::CreateProcessW(wide(editor.path), wideBuffer(commandLine), nullptr, nullptr, FALSE,
                              0, nullptr, nullptr, &startup, &process_))
            giveUp("the program does not start");
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run() {
        ::CloseHandle(process_.hThread);
        ::CloseHandle(process_.hProcess);
    }

    Start measure() {
        Start start;
        HWND window = nullptr;
        while (window == nullptr) {
            if (editor_.splash != nullptr && start.splash == 0 &&
                visibleWindow(process_.dwProcessId, editor_.splash) != nullptr)
                start.splash = elapsed();
            window = visibleWindow(process_.dwProcessId, editor_.mainWindow);
            if (window == nullptr)
                wait();
        }
        start.ready = elapsed();
        DWORD_PTR result = 0;
        if (!::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, static_cast<UINT>(kLimitMs),
                                   &result))
            giveUp("the window does not answer");
        start.answers = elapsed();
        end(window);
        return start;
    }

  private:
    double elapsed() const {
        return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
    }
    void wait() const {
        if (elapsed() > kLimitMs || ::WaitForSingleObject(process_.hProcess, 0) == WAIT_OBJECT_0)
            giveUp("the window does not come");
        ::Sleep(1);
    }
    void end(HWND window) const {
        ::PostMessageW(window, WM_CLOSE, 0, 0);
        if (::WaitForSingleObject(process_.hProcess, static_cast<DWORD>(kLimitMs)) != WAIT_OBJECT_0)
            giveUp("the program does not end");
    }

    const Editor& editor_;
    PROCESS_INFORMATION process_{};
    Clock::time_point start_;
};

double median(const std::vector<Start>& starts, double Start::*time) {
    std::vector<double> times;
    for (const Start& start : starts)
        times.push_back(start.*time);
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const char* name, double value, const char* unit) {
    std::printf("%s %.3g %s\n", name, value, unit);
}

Text ownFolder() {
    Text path(MAX_PATH, u'\0');
    path.resize(::GetModuleFileNameW(nullptr, wideBuffer(path), MAX_PATH));
    return Text(folderPart(path));
}

Text wordPadPath() {
    Text folder(MAX_PATH, u'\0');
    folder.resize(::GetEnvironmentVariableW(L"ProgramFiles", wideBuffer(folder), MAX_PATH));
    return joinPath(folder, u"Windows NT\\Accessories\\wordpad.exe");
}

}  // namespace

int main() {
    const Editor melvorin{joinPath(ownFolder(), u"Melvorin.exe"), L"MelvorinForm1",
                          L"MelvorinSplash"};
    const Editor wordPad{wordPadPath(), L"WORDPADTOP", nullptr};
    constexpr int kRounds = 7;
    std::vector<Start> ours;
    std::vector<Start> theirs;
    for (int round = 0; round <= kRounds; ++round) {
        const Start our = Run(melvorin).measure();
        const Start their = Run(wordPad).measure();
        // The first start fills the caches of the system.
        if (round == 0)
            continue;
        ours.push_back(our);
        theirs.push_back(their);
    }
    report("start_melvorin_splash", median(ours, &Start::splash), "ms");
    report("start_melvorin_ready", median(ours, &Start::ready), "ms");
    report("start_melvorin_answers", median(ours, &Start::answers), "ms");
    report("start_wordpad_ready", median(theirs, &Start::ready), "ms");
    report("start_wordpad_answers", median(theirs, &Start::answers), "ms");
    report("start_melvorin_to_wordpad", median(ours, &Start::ready) / median(theirs, &Start::ready),
           "ratio");
    return EXIT_SUCCESS;
}
