// What the editor's costly moments take in the real main window: the key change of a chart, a typed
// character, and the opening and the steps of the full-screen view. They stand beside what the
// rich-edit control alone takes for its part. A fresh control is much faster at a load than one
// that has to empty itself first (Wine), so ratios are to the fresh one. Prints "name value unit",
// one per line.
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
#include "chords/DocumentKey.h"
#include "chords/SuffixNormaliser.h"
#include "dictionary/ChordDictionary.h"
#include "platform/DiagramFonts.h"
#include "platform/RichEditDiagrams.h"
#include "platform/SystemAnsiCodec.h"
#include "platform/Win32Files.h"
#include "platform/Win32Services.h"

namespace {

using namespace melvorin;

std::string chartOfLines(std::size_t count) {
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

double quantile(Times times, std::size_t percent) {
    std::sort(times.begin(), times.end());
    return times[std::min(times.size() - 1, times.size() * percent / 100)];
}

double median(const Times& times) {
    return quantile(times, 50);
}

void report(const std::string& name, double value, const char* unit) {
    std::printf(value < 1000 ? "%s %.3g %s\n" : "%s %.0f %s\n", name.c_str(), value, unit);
    std::fflush(stdout);
}

[[noreturn]] void giveUp(const char* why) {
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

class NoDialogs : public FileDialogs {
  public:
    std::optional<FileChoice> open(const FileDialogRequest&) override { return std::nullopt; }
    std::optional<FileChoice> save(const FileDialogRequest&) override { return std::nullopt; }
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
    void putOnClipboard(Text text) { clipboard_.content = std::move(text); }

  private:
    Win32Files files_;
    NoQuestions messages_;
    NoDialogs dialogs_;
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

DWORD CALLBACK readRest(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
    auto& rest = *reinterpret_cast<std::string_view*>(cookie);
    const std::size_t count = std::min(static_cast<std::size_t>(size), rest.size());
    std::memcpy(buffer, rest.data(), count);
    rest.remove_prefix(count);
    *done = static_cast<LONG>(count);
    return 0;
}

DWORD CALLBACK countBytes(DWORD_PTR cookie, LPBYTE, LONG size, LONG* done) {
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

double timeOfFreshLoad(OpenChart& chart, std::string_view rtf) {
    const double time = LoneControl(chart).timeOfLoad(rtf);
    chart.pump();
    return time;
}

// The second load of a control: it has to empty itself first.
double timeOfLoadOver(OpenChart& chart, std::string_view rtf) {
    LoneControl control(chart);
    control.timeOfLoad(rtf);
    return control.timeOfLoad(rtf);
}

double timeOfStreamOut(OpenChart& chart) {
    std::size_t bytes = 0;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, countBytes};
    return timeOf(
        [&] { ::SendMessageW(chart.editor().handle(), EM_STREAMOUT, SF_RTF, lparamOf(&stream)); });
}

// ---- Key change -------------------------------------------------------------------------------

// Adds the time of its scope to a sum.
class Watch {
  public:
    explicit Watch(double& sum) : sum_(sum) {}
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() {
        sum_ += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
                    .count();
    }

  private:
    double& sum_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The program's own editor, with a watch on what the rules ask of it.
class TimedEditor : public Editor {
  public:
    explicit TimedEditor(RichEdit& editor) : editor_(editor) {}

    double load = 0;
    mutable double textOut = 0;
    mutable double rtfOut = 0;
    mutable double other = 0;
    int loads = 0;

    bool isEmpty() const override { return editor_.isEmpty(); }
    EditorText text() const override {
        const Watch watch(textOut);
        return editor_.text();
    }
    std::string rtf() const override {
        const Watch watch(rtfOut);
        return editor_.rtf();
    }
    bool loadRtf(std::string_view rtf) override {
        ++loads;
        const Watch watch(load);
        return editor_.loadRtf(rtf);
    }
    bool loadPlain(const EditorText& text, TextView face, int points) override {
        const Watch watch(load);
        return editor_.loadPlain(text, face, points);
    }
    void setSelectionFont(TextView face, int points) override {
        const Watch watch(other);
        editor_.setSelectionFont(face, points);
    }
    void setSelectionColour(Rgb colour) override {
        const Watch watch(other);
        editor_.setSelectionColour(colour);
    }
    void replaceSelection(TextView text) override {
        const Watch watch(other);
        editor_.replaceSelection(text);
    }
    bool replaceSelectionRtf(std::string_view rtf) override {
        const Watch watch(other);
        return editor_.replaceSelectionRtf(rtf);
    }
    void sendUndo() override { editor_.sendUndo(); }
    std::optional<Rgb> background() const override { return editor_.background(); }
    void setBackground(std::optional<Rgb> colour) override { editor_.setBackground(colour); }
    std::optional<Selection> find(TextView what, std::int32_t from,
                                  FindOptions options) const override {
        const Watch watch(other);
        return editor_.find(what, from, options);
    }
    Text faceAt(std::int32_t position) override {
        const Watch watch(other);
        return editor_.faceAt(position);
    }
    Selection selection() const override {
        const Watch watch(other);
        return editor_.selection();
    }
    void select(Selection selection) override {
        const Watch watch(other);
        editor_.select(selection);
    }
    ScrollPosition scrollPosition() const override {
        const Watch watch(other);
        return editor_.scrollPosition();
    }
    void scrollTo(ScrollPosition position) override {
        const Watch watch(other);
        editor_.scrollTo(position);
    }
    void scrollCaretIntoView() override {
        const Watch watch(other);
        editor_.scrollCaretIntoView();
    }
    void beginWork() override {
        const Watch watch(other);
        editor_.beginWork();
    }
    void endWork() override {
        const Watch watch(other);
        editor_.endWork();
    }

  private:
    RichEdit& editor_;
};

// What was measured on one document, round by round.
struct KeyTimes {
    Times load;      // of the document by a fresh control alone
    Times loadOver;  // by one that holds the document already
    Times command;   // the menu command, until the editor shows the result
    Times change;    // the change of the document in it
    Times changeLoad;
    Times changeText;
    Times changeRtf;
    Times changeOther;
    Times changeCore;
};

void measureCommand(OpenChart& chart, KeyTimes& times) {
    times.command.push_back(timeOf([&] {
        chart.form().run(Command::mnuUp);
        ::UpdateWindow(chart.editor().handle());
    }));
    chart.pump();
}

void measureChange(OpenChart& chart, KeyTimes& times) {
    TimedEditor editor(chart.editor());
    const double whole = timeOf(
        [&] { changeDocumentKey(editor, KeyChange(Direction::Up, Spelling::Sharps), [] {}); });
    if (editor.loads != 1)
        giveUp("the document was not changed by one load");
    times.change.push_back(whole);
    times.changeLoad.push_back(editor.load);
    times.changeText.push_back(editor.textOut);
    times.changeRtf.push_back(editor.rtfOut);
    times.changeOther.push_back(editor.other);
    times.changeCore.push_back(whole - editor.load - editor.textOut - editor.rtfOut - editor.other);
    chart.pump();
}

// The document as it was before its change, as the program loads it.
void restore(OpenChart& chart, const std::string& rtf) {
    if (!chart.editor().loadRtf(rtf))
        giveUp("the document cannot be loaded");
    ::UpdateWindow(chart.editor().handle());
    chart.pump();
}

void measureRound(OpenChart& chart, const std::string& rtf, KeyTimes& times) {
    times.load.push_back(timeOfFreshLoad(chart, rtf));
    restore(chart, rtf);
    measureCommand(chart, times);
    times.load.push_back(timeOfFreshLoad(chart, rtf));
    restore(chart, rtf);
    measureChange(chart, times);
}

void reportKeyChange(const std::string& name, std::size_t lines, const KeyTimes& times,
                     double window) {
    const double load = median(times.load);
    const double change = median(times.change);
    const double command = median(times.command);
    report(name + "_load", load, "ms");
    report(name + "_load_over_itself", median(times.loadOver), "ms");
    report(name + "_change", change, "ms");
    report(name + "_command", command, "ms");
    report(name + "_change_to_load", change / load, "ratio");
    report(name + "_change_to_load_over_itself", change / median(times.loadOver), "ratio");
    report(name + "_command_to_load", command / load, "ratio");

    const auto share = [&](const char* part, const Times& part_times) {
        report(name + "_change_share_" + part, 100 * median(part_times) / change, "percent");
    };
    share("control_load", times.changeLoad);
    share("text_out", times.changeText);
    share("rtf_out", times.changeRtf);
    share("core", times.changeCore);
    share("selection_and_freeze", times.changeOther);
    report(name + "_command_share_change", 100 * change / command, "percent");
    report(name + "_command_share_window", 100 * window / command, "percent");

    // Constant where time grows with the lines, and growing where it grows faster.
    const auto perLine = [&](const char* part, double time) {
        report(name + "_" + part + "_per_line", 1e3 * time / static_cast<double>(lines), "us");
    };
    perLine("load", load);
    perLine("command", command);
    perLine("change_without_load", change - median(times.changeLoad));
}

// What a snapshot is made of; the time of a whole one.
double measureSnapshot(OpenChart& chart, const std::string& name, std::size_t rounds) {
    Times streamOut;
    Times text;
    Times rtf;
    Times file;
    for (std::size_t round = 0; round < rounds; ++round) {
        streamOut.push_back(timeOfStreamOut(chart));
        text.push_back(timeOf([&] { chart.editor().text(); }));
        std::string bytes;
        rtf.push_back(timeOf([&] { bytes = chart.editor().rtf(); }));
        Text path;
        file.push_back(timeOf([&] {
            path = chart.files().createTemporary(u"mbn").value.value_or(u"");
            chart.files().write(path, bytes);
        }));
        chart.files().remove(path);
    }
    report(name + "_snapshot_control_stream_out", median(streamOut), "ms");
    report(name + "_snapshot_text_out", median(text), "ms");
    report(name + "_snapshot_rtf_out", median(rtf), "ms");
    report(name + "_snapshot_file", median(file), "ms");
    return median(rtf) + median(file);
}

// The documents take turns with each other and with the control alone, so that a busy moment of
// the machine meets all.
void keyChangeOfChart(std::size_t lines, int rounds, double window) {
    OpenChart chart(lines);
    const std::string uncoloured = chart.editor().rtf();
    chart.form().run(Command::mnuUp);
    const std::string coloured = chart.editor().rtf();

    KeyTimes first;
    KeyTimes later;
    for (int round = 0; round < rounds; ++round) {
        measureRound(chart, uncoloured, first);
        measureRound(chart, coloured, later);
    }
    // Apart from the rest, because emptying a control slows down what follows.
    for (int round = 0; round < 3; ++round) {
        first.loadOver.push_back(timeOfLoadOver(chart, uncoloured));
        later.loadOver.push_back(timeOfLoadOver(chart, coloured));
    }
    const std::string name = "key_" + std::to_string(lines) + "_lines";
    reportKeyChange(name + "_uncoloured", lines, first, window);
    reportKeyChange(name + "_coloured", lines, later, window);
    // The first change gives a document with more formatting than it found, and the control has to
    // load that one.
    report(name + "_coloured_load_to_uncoloured_load", median(later.load) / median(first.load),
           "ratio");
    report(name + "_uncoloured_change_to_coloured_load", median(first.change) / median(later.load),
           "ratio");
    measureSnapshot(chart, name, 9);
}

// What the window with its bar and the drawing behind it cost, which is the same for every song:
// in one of fifty lines the bar makes all its moves, and there is little else to do.
double timeOfKeyWindow() {
    OpenChart chart(50);
    const std::string rtf = chart.editor().rtf();
    KeyTimes times;
    for (int round = 0; round < 15; ++round)
        measureRound(chart, rtf, times);
    report("key_50_lines_load", median(times.load), "ms");
    report("key_50_lines_change", median(times.change), "ms");
    report("key_50_lines_command", median(times.command), "ms");
    const double snapshot = measureSnapshot(chart, "key_50_lines", 9);
    const double window = median(times.command) - median(times.change) - snapshot;
    report("key_window", window, "ms");
    return window;
}

// ---- Typing -----------------------------------------------------------------------------------

// A character as the keyboard sends it, until it is drawn.
double timeOfCharacter(OpenChart& chart) {
    const HWND control = chart.editor().handle();
    return timeOf([&] {
        ::SendMessageW(control, WM_CHAR, u'e', 1);
        ::UpdateWindow(control);
    });
}

double timeOfUnrecordedCharacter(OpenChart& chart) {
    const HWND control = chart.editor().handle();
    const LRESULT events = ::SendMessageW(control, EM_SETEVENTMASK, 0, 0);
    const double time = timeOfCharacter(chart);
    ::SendMessageW(control, EM_SETEVENTMASK, 0, events);
    return time;
}

// Characters go all over the song, with and without a snapshot in turn.
void typing(std::int32_t lines) {
    constexpr int kCharacters = 300;
    OpenChart chart(static_cast<std::size_t>(lines));
    RichEdit& editor = chart.editor();
    const auto goTo = [&](std::int32_t line) {
        const std::int32_t end = editor.firstOfLine(line) + editor.lengthOfLine(line);
        editor.select({end, end});
        editor.scrollCaretIntoView();
        ::UpdateWindow(editor.handle());
        chart.pump();
    };
    Times recorded;
    Times unrecorded;
    for (int i = 0; i < kCharacters; ++i) {
        goTo(i * 37 % lines);
        const std::int16_t before = chart.form().documents().history().count();
        recorded.push_back(timeOfCharacter(chart));
        goTo((i * 37 + 1) % lines);
        unrecorded.push_back(timeOfUnrecordedCharacter(chart));
        if (chart.form().documents().history().count() != before + 1)
            giveUp("a typed character was not one snapshot");
    }
    const std::string name = "type_" + std::to_string(lines) + "_lines";
    report(name + "_with_snapshot_median", median(recorded), "ms");
    report(name + "_with_snapshot_99th", quantile(recorded, 99), "ms");
    report(name + "_without_snapshot_median", median(unrecorded), "ms");
    report(name + "_without_snapshot_99th", quantile(unrecorded, 99), "ms");
}

// ---- Replace All and Paste --------------------------------------------------------------------

// Counts the boxes that say how many items were replaced.
class EndOfSearch : public MessageBoxes {
  public:
    Answer show(TextView text, TextView, MessageIcon, MessageButtons) override {
        last = toUtf8(text);
        return Answer::Ok;
    }

    std::string last;
};

// 2,000 lines in which "qqq" stands so many times.
std::string songWithMatches(std::size_t matches) {
    constexpr std::size_t lines = 2000;
    std::string song;
    for (std::size_t line = 0; line < lines; ++line) {
        song += verse[line % std::size(verse)];
        const std::size_t here = matches * (line + 1) / lines - matches * line / lines;
        for (std::size_t i = 0; i < here; ++i)
            song += " qqq";
        song += "\r\n";
    }
    return song;
}

void replacing(std::size_t matches) {
    Times replace;
    Times load;
    for (int round = 0; round < 5; ++round) {
        OpenChart chart(songWithMatches(matches));
        EndOfSearch messages;
        const std::string rtf = chart.editor().rtf();
        load.push_back(timeOfFreshLoad(chart, rtf));
        FindReplace finder(
            chart.editor(), messages, [] {}, [] {});
        replace.push_back(timeOf([&] {
            finder.replaceEach({u"qqq", u"Gm7", {}}, [&] { chart.pump(); });
        }));
        if (messages.last.find("and " + std::to_string(matches) + " items") == std::string::npos)
            giveUp(messages.last.c_str());
    }
    const std::string name = "replace_" + std::to_string(matches) + "_matches";
    report(name, median(replace), "ms");
    report(name + "_to_load", median(replace) / median(load), "ratio");
    report(name + "_per_match", 1e3 * median(replace) / static_cast<double>(matches), "us");
}

void pasting(std::size_t lines) {
    std::string song = chartOfLines(lines);
    std::size_t at = 0;
    while ((at = song.find("   ", at)) != std::string::npos)
        song.replace(at, 3, "\t");
    Times paste;
    Times load;
    for (int round = 0; round < 7; ++round) {
        OpenChart chart("x\r\n");
        chart.editor().select({0, 1});
        chart.putOnClipboard(fromUtf8(song));
        paste.push_back(timeOf([&] {
            chart.form().run(Command::mnuEditPaste);
            ::UpdateWindow(chart.editor().handle());
        }));
        load.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
        if (chart.editor().lineCount() < static_cast<std::int32_t>(lines))
            giveUp("the text was not pasted");
    }
    const std::string name = "paste_" + std::to_string(lines) + "_lines";
    report(name, median(paste), "ms");
    report(name + "_to_load", median(paste) / median(load), "ratio");
}

// ---- Chord dictionary -------------------------------------------------------------------------

// Opens the chord book of this build and looks a chord up in the middle of it, as the first search
// of a run does; then once more.
void dictionary() {
    NoQuestions messages;
    Win32Files files;
    const Text folder = Win32ProgramFolder().folder();
    Times open;
    Times first;
    Times next;
    for (int round = 0; round < 15; ++round) {
        ChordDictionary book(messages, {}, normaliseSuffixes);
        open.push_back(timeOf([&] { book.open(folder, files); }));
        first.push_back(timeOf([&] { book.find(u"E7", SearchField::Symbol); }));
        next.push_back(timeOf([&] { book.find(u"ab minor", SearchField::Name); }));
        if (book.shown().LB != u"Ab Minor")
            giveUp("the chord book has no Ab Minor");
    }
    report("dictionary_open", median(open), "ms");
    report("dictionary_first_search", median(first), "ms");
    report("dictionary_next_search", median(next), "ms");
}

void diagramFonts() {
    Times load;
    for (int round = 0; round < 9; ++round) {
        DiagramFonts fonts;
        std::size_t count = 0;
        load.push_back(timeOf([&] { count = fonts.load(Win32ProgramFolder().folder()); }));
        if (count != kDiagramFontCount)
            giveUp("the diagram fonts are not beside this program");
    }
    report("diagram_fonts_first_load", load.front(), "ms");
    report("diagram_fonts_load", median(load), "ms");
}

// Ctrl+D on diagrams all over a song.
void fingering(std::int32_t lines, std::int32_t diagrams) {
    OpenChart chart(static_cast<std::size_t>(lines));
    RichEdit& editor = chart.editor();
    std::vector<std::int32_t> positions;
    {
        const EditorWork work(editor);
        RichEditDiagrams document(editor);
        for (std::int32_t i = 0; i < diagrams; ++i) {
            positions.push_back(editor.firstOfLine(i * lines / diagrams));
            editor.select({positions.back(), positions.back()});
            insertDiagram(document, u"a", u"Melvorin 09");
        }
    }
    Times times;
    for (std::size_t i = 0; i < 60; ++i) {
        const std::int32_t position = positions[i * 37 % positions.size()];
        editor.select({position, position + 1});
        editor.scrollCaretIntoView();
        ::UpdateWindow(editor.handle());
        chart.pump();
        times.push_back(timeOf([&] {
            chart.form().run(Command::mnuChDigt);
            ::UpdateWindow(editor.handle());
        }));
        if (editor.textBetween({position, position + 1}) == u"a")
            giveUp("a fingering was not changed");
    }
    const std::string name =
        "fingering_" + std::to_string(lines) + "_lines_" + std::to_string(diagrams) + "_diagrams";
    report(name + "_median", median(times), "ms");
    report(name + "_99th", quantile(times, 99), "ms");
}

// ---- Full screen ------------------------------------------------------------------------------

// What this thread has worked so far, whoever else has the machine.
double workOfThread() {
    FILETIME unused{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetThreadTimes(::GetCurrentThread(), &unused, &unused, &kernel, &user);
    const auto ms = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) / 1e4;
    };
    return ms(kernel) + ms(user);
}

// Until the view is drawn and its panel's lists are filled.
double timeOfOpening(OpenChart& chart) {
    frmFScreen& view = chart.form().fullScreen();
    return timeOf([&] {
        chart.form().run(Command::mnuFullScreen);
        while (view.isOpen() && !view.panel().isPrepared())
            chart.pump();
    });
}

// Steps all over the song, each until it is drawn; and the same with the reading and writing back
// of the whole text, which the program leaves out.
void fullScreen(std::int32_t lines) {
    OpenChart chart(static_cast<std::size_t>(lines));
    frmFScreen& view = chart.form().fullScreen();
    Times load;
    Times opening;
    for (int round = 0; round < 5; ++round) {
        load.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
        opening.push_back(timeOfOpening(chart));
        if (!view.isOpen())
            giveUp("the full-screen view did not open");
        view.close();
        chart.pump();
    }
    timeOfOpening(chart);
    RichEdit& text = view.FSRTB();
    constexpr std::int32_t kSteps = 300;
    Times step;
    const double workBefore = workOfThread();
    for (std::int32_t i = 0; i < kSteps; ++i)
        step.push_back(timeOf([&] { text.bringToTop((i * 37 + i % 2) % lines); }));
    const double work = (workOfThread() - workBefore) / kSteps;
    Times rewritingStep;
    for (std::int32_t i = 0; i < 5; ++i)
        rewritingStep.push_back(timeOf([&] {
            text.loadRtf(text.rtf());
            text.bringToTop(i * 37 % lines);
        }));
    view.close();
    const std::string name = "full_screen_" + std::to_string(lines) + "_lines";
    report(name + "_load", median(load), "ms");
    report(name + "_opening", median(opening), "ms");
    report(name + "_opening_to_load", median(opening) / median(load), "ratio");
    report(name + "_step_median", median(step), "ms");
    report(name + "_step_99th", quantile(step, 99), "ms");
    report(name + "_step_work_mean", work, "ms");
    report(name + "_step_to_load", median(step) / median(load), "ratio");
    report(name + "_step_with_write_back_median", median(rewritingStep), "ms");
}

}  // namespace

// With an argument only the full-screen view.
// With an argument only the part of that name is measured.
int main(int count, char** arguments) {
    const auto wanted = [&](std::string_view part) { return count < 2 || arguments[1] == part; };
    if (wanted("full")) {
        for (const std::int32_t lines : {200, 2000, 5000})
            fullScreen(lines);
    }
    if (wanted("dictionary")) {
        dictionary();
        diagramFonts();
        fingering(2000, 500);
    }
    if (wanted("keys")) {
        const double window = timeOfKeyWindow();
        keyChangeOfChart(200, 15, window);
        typing(50);
        typing(2000);
        keyChangeOfChart(2000, 9, window);
        keyChangeOfChart(5000, 7, window);
    }
    if (wanted("edit")) {
        for (const std::size_t matches : {200U, 1000U, 5000U})
            replacing(matches);
        for (const std::size_t lines : {200U, 2000U, 5000U})
            pasting(lines);
    }
    return EXIT_SUCCESS;
}
