// The program over quiet services, and the rich-edit control alone, for the benches of the editor.
// A fresh control is much faster at a load than one that has to empty itself first (Wine), so
// ratios are to the fresh one.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Verse.h"
#include "app/Form1.h"
#include "platform/SystemAnsiCodec.h"
#include "platform/Win32Files.h"
#include "platform/Win32Services.h"

namespace melvorin::bench {

inline std::string chartOfLines(std::size_t count) {
    std::string chart;
    for (std::size_t i = 0; i < count; ++i)
        chart.append(verse[i % std::size(verse)]).append("\r\n");
    return chart;
}

// ---- Figures ----------------------------------------------------------------------------------

using Times = std::vector<double>;  // milliseconds

template <class Work>
double timeOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

inline double quantile(Times times, std::size_t percent) {
    std::sort(times.begin(), times.end());
    return times[std::min(times.size() - 1, times.size() * percent / 100)];
}

inline double median(const Times& times) {
    return quantile(times, 50);
}

inline void report(const std::string& name, double value, const char* unit) {
    std::printf(value < 1000 ? "%s %.3g %s\n" : "%s %.0f %s\n", name.c_str(), value, unit);
    std::fflush(stdout);
}

// What this thread has worked so far, whoever else has the machine.
inline double workOfThread() {
    FILETIME unused{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetThreadTimes(::GetCurrentThread(), &unused, &unused, &kernel, &user);
    const auto ms = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) / 1e4;
    };
    return ms(kernel) + ms(user);
}

[[noreturn]] inline void giveUp(const char* why) {
    std::fprintf(stderr, "editor_bench: %s\n", why);
    std::exit(EXIT_FAILURE);
}

// ---- The program over quiet services ----------------------------------------------------------

// Lets every changed document go; any other box would mean that something else was measured.
class NoQuestions : public MessageBoxes {
  public:
    Answer show(TextView text, TextView, MessageIcon, MessageButtons buttons) override {
        if (buttons != MessageButtons::YesNoCancel)
            giveUp(toUtf8(text).c_str());
        return Answer::No;
    }
};

// The file that the next Open chooses.
class ScriptedDialogs : public FileDialogs {
  public:
    std::optional<FileChoice> open(const FileDialogRequest&) override {
        return FileChoice{file, 1};
    }
    std::optional<FileChoice> save(const FileDialogRequest&) override { return std::nullopt; }

    Text file;
};

// Counts the boxes that say how many items were replaced.
class EndOfSearch : public MessageBoxes {
  public:
    Answer show(TextView text, TextView, MessageIcon, MessageButtons) override {
        last = toUtf8(text);
        return Answer::Ok;
    }

    std::string last;
};

class NoColors : public ColorDialogs {
  public:
    std::optional<Rgb> choose(Rgb) override { return std::nullopt; }
};

class DefaultProfiles : public ProfileFiles {
  public:
    Text read(TextView, TextView, TextView fallback, TextView, std::uint32_t) override {
        return Text(fallback);
    }
    bool write(TextView, TextView, TextView, TextView) override { return true; }
};

class NoSettings : public SettingsStore {
  public:
    void write(TextView, TextView, TextView, TextView) override {}
};

class UntouchedSystem : public SystemSettings {
  public:
    bool setFontSmoothing(bool) override { return true; }
    bool fontSmoothing() override { return false; }
    std::optional<Text> registryString(TextView, TextView) override { return std::nullopt; }
    void setRegistryString(TextView, TextView, TextView) override {}
    void initCommonControls() override {}
    Text documentsFolder() override { return {}; }
};

class UntouchedFolder : public Win32ProgramFolder {
  public:
    bool contains(TextView) override { return true; }
    bool writeWithAttributes(TextView, std::string_view, std::uint32_t) override { return true; }
};

// Plain text that the benchmark puts there.
class BenchClipboard : public Clipboard {
  public:
    bool hasRichText() override { return false; }
    bool hasText() override { return true; }
    Result<std::string> richText(std::uint64_t) override {
        return Result<std::string>::failure({});
    }
    Result<Text> text(std::uint64_t) override { return Result<Text>::success(content); }

    Text content;
};

class NoShell : public ShellOpener {
  public:
    bool showHelp(TextView, TextView) override { return false; }
    Result<Done> open(TextView) override { return Result<Done>::failure({}); }
};

// The main window with a chart of so many lines, opened from a file as the user opens it.
class OpenChart {
  public:
    explicit OpenChart(std::size_t lines) : OpenChart(chartOfLines(lines)) {}
    explicit OpenChart(const std::string& song) {
        const Text path = files_.createTemporary(u"mbn").value.value_or(u"");
        if (!files_.write(path, song))
            giveUp("the chart cannot be written");
        form_ = std::make_unique<Form1>(services_, [] {});
        const bool loaded = form_->load(path, SW_SHOWNORMAL);
        files_.remove(path);
        if (!loaded)
            giveUp("there is no main window");
        while (!::IsWindowVisible(form_->handle())) {
            pump();
            ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        }
        pump();
        if (editor().isEmpty())
            giveUp("the chart was not opened");
    }
    OpenChart(const OpenChart&) = delete;
    OpenChart& operator=(const OpenChart&) = delete;
    // Closed as the user closes it, so that the snapshots go.
    ~OpenChart() { ::SendMessageW(form_->handle(), WM_CLOSE, 0, 0); }

    void pump() {
        MSG message{};
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    Form1& form() { return *form_; }
    RichEdit& editor() { return form_->rtftext(); }
    Files& files() { return files_; }
    // By the command, until the song is drawn.
    void open(const Text& path) {
        dialogs_.file = path;
        form_->run(Command::mnuFileOpen);
        ::UpdateWindow(editor().handle());
    }
    void putOnClipboard(Text text) { clipboard_.content = std::move(text); }

  private:
    Win32Files files_;
    NoQuestions messages_;
    ScriptedDialogs dialogs_;
    DefaultProfiles profiles_;
    NoSettings settings_;
    UntouchedSystem system_;
    UntouchedFolder folder_;
    Win32Screen screen_;
    BenchClipboard clipboard_;
    NoShell shell_;
    Win32Sounds sounds_;
    NoColors colors_;
    Win32Multimedia multimedia_;
    Win32Clock clock_;
    Services services_{files_,  messages_, dialogs_, profiles_,         settings_,
                       system_, folder_,   screen_,  systemAnsiCodec(), clipboard_,
                       shell_,  sounds_,   colors_,  multimedia_,       clock_};
    std::unique_ptr<Form1> form_;
};

// ---- The control alone ------------------------------------------------------------------------

inline DWORD CALLBACK readRest(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
    auto& rest = *reinterpret_cast<std::string_view*>(cookie);
    const std::size_t count = std::min(static_cast<std::size_t>(size), rest.size());
    std::memcpy(buffer, rest.data(), count);
    rest.remove_prefix(count);
    *done = static_cast<LONG>(count);
    return 0;
}

inline DWORD CALLBACK countBytes(DWORD_PTR cookie, LPBYTE, LONG size, LONG* done) {
    *reinterpret_cast<std::size_t*>(cookie) += static_cast<std::size_t>(size);
    *done = size;
    return 0;
}

// The control alone, set up as the program's own and placed, without drawing and events.
class LoneControl {
  public:
    explicit LoneControl(OpenChart& chart) {
        constexpr int id = 1;
        if (!control_.create(chart.form().handle(), id, u"Lucida Console", 10))
            giveUp("no control for the load");
        control_.place({0, 0, 1000, 600});
        control_.beginWork();
    }
    LoneControl(const LoneControl&) = delete;
    LoneControl& operator=(const LoneControl&) = delete;
    ~LoneControl() { ::DestroyWindow(control_.handle()); }

    double timeOfLoad(std::string_view rtf) {
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&rtf), 0, readRest};
        return timeOf(
            [&] { ::SendMessageW(control_.handle(), EM_STREAMIN, SF_RTF, lparamOf(&stream)); });
    }

  private:
    RichEdit control_;
};

inline double timeOfFreshLoad(OpenChart& chart, std::string_view rtf) {
    const double time = LoneControl(chart).timeOfLoad(rtf);
    chart.pump();
    return time;
}

// The second load of a control: it has to empty itself first.
inline double timeOfLoadOver(OpenChart& chart, std::string_view rtf) {
    LoneControl control(chart);
    control.timeOfLoad(rtf);
    return control.timeOfLoad(rtf);
}

inline double timeOfStreamOut(OpenChart& chart) {
    std::size_t bytes = 0;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, countBytes};
    return timeOf(
        [&] { ::SendMessageW(chart.editor().handle(), EM_STREAMOUT, SF_RTF, lparamOf(&stream)); });
}

// ---- Moments of the program --------------------------------------------------------------------

// Until the view is drawn and its panel's lists are filled.
inline double timeOfOpening(OpenChart& chart) {
    frmFScreen& view = chart.form().fullScreen();
    return timeOf([&] {
        chart.form().run(Command::mnuFullScreen);
        while (view.isOpen() && !view.panel().isPrepared())
            chart.pump();
    });
}

// A character as the keyboard sends it, until it is drawn.
inline double timeOfCharacter(OpenChart& chart) {
    const HWND control = chart.editor().handle();
    return timeOf([&] {
        ::SendMessageW(control, WM_CHAR, u'e', 1);
        ::UpdateWindow(control);
    });
}

inline double timeOfUnrecordedCharacter(OpenChart& chart) {
    const HWND control = chart.editor().handle();
    const LRESULT events = ::SendMessageW(control, EM_SETEVENTMASK, 0, 0);
    const double time = timeOfCharacter(chart);
    ::SendMessageW(control, EM_SETEVENTMASK, 0, events);
    return time;
}

}  // namespace melvorin::bench
