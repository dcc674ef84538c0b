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

#include "StandIns.h"
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

class UntouchedFolder : public Win32ProgramFolder {
  public:
    bool contains(TextView) override { return true; }
    bool writeWithAttributes(TextView, std::string_view, std::uint32_t) override { return true; }
};

// The main window with a chart of so many lines, opened from a file as the user opens it.
class OpenChart {
  public:
    explicit OpenChart(std::size_t lines) : OpenChart(chartOfLines(lines)) {}
    explicit OpenChart(const std::string& song) {
        const Text path = files_.createTemporary(u"mbn").value.value_or(u"");
        if (!files_.write(path, song))
            giveUp("the chart cannot be written");
        standIns_.messages.otherwise = Answer::No;  // every changed document goes
        standIns_.messages.whileOpen = [this] { expectQuestion(); };
        standIns_.clipboard.plain = Text();
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
    testing::StandIns& standIns() { return standIns_; }
    ProgramFolder& folder() { return folder_; }
    // By the command, until the song is drawn.
    void open(const Text& path) {
        standIns_.dialogs.choose(FileChoice{path, 1});
        form_->run(Command::mnuFileOpen);
        ::UpdateWindow(editor().handle());
    }
    void putOnClipboard(Text text) { standIns_.clipboard.plain = std::move(text); }

  private:
    // Any other box would mean that something else was measured.
    void expectQuestion() const {
        const testing::ShownMessage& box = standIns_.messages.boxes.back();
        if (box.buttons != MessageButtons::YesNoCancel)
            giveUp(box.text.c_str());
    }

    Win32Files files_;
    UntouchedFolder folder_;
    Win32Screen screen_;
    Win32Sounds sounds_;
    Win32Multimedia multimedia_;
    Win32Clock clock_;
    testing::StandIns standIns_;
    Services services_ = testing::ServicesBuilder(standIns_, files_, systemAnsiCodec())
                             .program(folder_)
                             .screen(screen_)
                             .sounds(sounds_)
                             .multimedia(multimedia_)
                             .clock(clock_)
                             .build();
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

// The control alone: nobody hears of it.
inline double timeOfUnrecordedCharacter(OpenChart& chart) {
    const HWND control = chart.editor().handle();
    const LRESULT events = ::SendMessageW(control, EM_SETEVENTMASK, 0, 0);
    const double time = timeOf([&] {
        chart.editor().replaceSelection(u"e");
        ::UpdateWindow(control);
    });
    ::SendMessageW(control, EM_SETEVENTMASK, 0, events);
    return time;
}

}  // namespace melvorin::bench
