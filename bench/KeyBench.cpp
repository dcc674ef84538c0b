// What the key change of a chart and a typed character take in the real main window.
#include "BenchProgram.h"
#include "EditorBenches.h"
#include "chords/DocumentKey.h"

namespace melvorin::bench {
namespace {

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
    void setSelectionFace(TextView face) override {
        const Watch watch(other);
        editor_.setSelectionFace(face);
    }
    void setSelectionSize(int halfPoints) override {
        const Watch watch(other);
        editor_.setSelectionSize(halfPoints);
    }
    SelectionStyle selectionStyle() const override {
        const Watch watch(other);
        return editor_.selectionStyle();
    }
    void setBold(bool on) override { editor_.setBold(on); }
    void setItalic(bool on) override { editor_.setItalic(on); }
    void setUnderline(bool on) override { editor_.setUnderline(on); }
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
    bool isInView(std::int32_t position) const override { return editor_.isInView(position); }
    void centre(std::int32_t position) override { editor_.centre(position); }
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

// A character in a line of words whose chords follow, beside the same where they do not, and the
// control alone; in a control of its own, as nothing is recorded here.
// A diagram at the end of the chord line in every verse.
void addDiagrams(RichEdit& editor, std::int32_t lines) {
    constexpr std::int32_t chords = 2;
    for (std::int32_t line = chords; line < lines;
         line += static_cast<std::int32_t>(std::size(verse))) {
        const std::int32_t end = editor.firstOfLine(line) + editor.lengthOfLine(line);
        editor.select({end, end});
        editor.replaceSelection(u" q");
        editor.select({end + 1, end + 2});
        editor.setSelectionFace(u"Melvorin 05");
    }
}

void following(std::int32_t lines, bool withDiagrams) {
    constexpr int kCharacters = 200;
    constexpr int kControlId = 9999;
    OpenChart chart(static_cast<std::size_t>(lines));
    RichEdit editor;
    RECT area{};
    ::GetClientRect(chart.form().handle(), &area);
    if (!editor.create(chart.form().handle(), kControlId, u"Courier New", 10) ||
        !editor.loadRtf(chart.editor().rtf()))
        giveUp("there is no second control");
    editor.place(area);
    editor.show(true);
    if (withDiagrams)
        addDiagrams(editor, lines);
    ChordFollower follower(editor, [] { return RichEdit::TypingFormat{u"Courier New", 10}; });
    const auto type = [&] { ::SendMessageW(editor.handle(), WM_CHAR, u'e', 1); };
    enum Way { Alone, Off, On };
    std::map<Way, Times> times;
    std::map<Way, Times> first;
    for (int i = 0; i < 3 * kCharacters; ++i) {
        // "When the lantern burns", with four chords above it.
        constexpr std::int32_t words = 3;
        constexpr std::int32_t column = 9;
        const auto verseLines = static_cast<std::int32_t>(std::size(verse));
        const std::int32_t at =
            editor.firstOfLine(i * 37 % (lines / verseLines) * verseLines + words) + column;
        const auto way = static_cast<Way>(i % 3);
        follower.setOn(way == On);
        editor.select({at, at});
        editor.scrollCaretIntoView();
        follower.caretMoved();
        // The first character in a line also looks at its fonts.
        if (way == Alone)
            editor.replaceSelection(u"e");
        else
            first[way].push_back(timeOf(type));
        ::UpdateWindow(editor.handle());
        chart.pump();
        const std::int32_t before = editor.length();
        times[way].push_back(timeOf([&] {
            if (way == Alone)
                editor.replaceSelection(u"e");
            else
                type();
            ::UpdateWindow(editor.handle());
        }));
        if (editor.length() != before + (way == On ? 2 : 1))
            giveUp("the chords have not followed, or where they should not");
    }
    const std::string name =
        "follow_" + std::to_string(lines) + "_lines" + (withDiagrams ? "_with_diagrams" : "");
    report(name + "_control_alone", median(times[Alone]), "ms");
    report(name + "_off", median(times[Off]), "ms");
    report(name + "_on", median(times[On]), "ms");
    report(name + "_first_off", median(first[Off]), "ms");
    report(name + "_first_on", median(first[On]), "ms");
    report(name + "_on_to_off", median(times[On]) / median(times[Off]), "ratio");
    report(name + "_on_to_control_alone", median(times[On]) / median(times[Alone]), "ratio");
}

}  // namespace

void keyBench() {
    const double window = timeOfKeyWindow();
    keyChangeOfChart(200, 15, window);
    typing(50);
    typing(2000);
    following(2000, false);
    following(5000, false);
    following(5000, true);
    keyChangeOfChart(2000, 9, window);
    keyChangeOfChart(5000, 7, window);
}

}  // namespace melvorin::bench
