// Stand-ins for the outside services, for tests, benches and fuzzers alike: what the user would
// answer is scripted beforehand, what the program asked for is recorded.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/Services.h"

namespace melvorin::testing {

// What nobody scripted was asked for. A test fails, a measurement ends: each program of tests says
// what this does.
void unexpected(const std::string& what);

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
        boxes.push_back({testing::shown(text), testing::shown(title), icon, buttons});
        if (whileOpen)
            whileOpen();
        if (buttons == MessageButtons::Ok)
            return Answer::Ok;
        if (answers_.empty() && otherwise)
            return *otherwise;
        if (answers_.empty()) {
            unexpected("question: " + boxes.back().text);
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
            unexpected("file dialog: " + shown(request.title));
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
        return hasResource && resources ? resources(type, id) : std::nullopt;
    }

    Text programFolder = u"C:\\Program";
    Text fileName = u"Melvorin.exe";
    std::set<Text> present;
    std::map<Text, std::pair<std::string, std::uint32_t>> written;
    bool hasResource = true;
    std::function<std::optional<std::string>(TextView type, int id)> resources;
};

class ScriptedClipboard : public Clipboard {
  public:
    bool hasRichText() override { return rich.has_value(); }
    bool hasText() override { return plain.has_value(); }
    Result<std::string> richText(std::uint64_t limit) override { return get(rich, limit); }
    Result<Text> text(std::uint64_t limit) override { return get(plain, limit); }
    Result<Done> put(const CrLfText& text) override {
        if (isTaken)
            return Failure{u"Another program is using the clipboard."};
        rich.reset();
        plain = text.chars;
        return done();
    }
    Result<Done> put(const CrLfText& text, const std::string& rtf) override {
        auto result = put(text);
        if (result)
            rich = rtf;
        return result;
    }

    std::optional<std::string> rich;
    std::optional<Text> plain;
    bool vanishes = false;  // between the query and the reading
    bool isTaken = false;   // by another program, so that nothing can be put there

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
    Monitor monitorAfter(const Area& window) override {
        const Monitor now = monitorOf(window);
        for (std::size_t i = 0; i < monitors.size(); ++i) {
            if (monitors[i].whole == now.whole)
                return monitors[(i + 1) % monitors.size()];
        }
        return now;
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

class ScriptedPrinters : public Printers {
  public:
    bool usesLetter() override { return letter; }
    Result<std::optional<PrintChoice>> choose(const PrintRequest& request) override {
        requests.push_back(request);
        return answer;
    }
    bool letter = false;
    Result<std::optional<PrintChoice>> answer =
        Result<std::optional<PrintChoice>>::failure(u"There is no printer.");
    std::vector<PrintRequest> requests;
};

// Stands still until a test moves it.
class ScriptedClock : public Clock {
  public:
    std::int64_t nowMs() override { return std::exchange(ms, ms + step); }
    std::int64_t ms = 0;
    std::int64_t step = 0;  // from one look at the clock to the next
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

// Devices that a test plugs in, plays and pulls out.
class ScriptedMidi : public MidiInputs {
  public:
    std::vector<Text> names() override { return inputs; }
    std::vector<Text> listen(const std::vector<Text>& names, MidiListener& listener) override {
        listensTo = names;
        listener_ = &listener;
        std::vector<Text> refused;
        for (const Text& name : names) {
            if (taken.contains(name))
                refused.push_back(name);
        }
        return refused;
    }
    void stop() override {
        listensTo.clear();
        listener_ = nullptr;
    }

    // Nobody hears a device that is not listened to.
    void send(TextView device, const MidiMessage& message) {
        const bool isHeard =
            listener_ != nullptr && !taken.contains(Text(device)) &&
            std::find(listensTo.begin(), listensTo.end(), device) != listensTo.end();
        if (isHeard)
            listener_->heard(device, message);
    }
    void plug(std::vector<Text> now) {
        inputs = std::move(now);
        if (listener_ != nullptr)
            listener_->inputsChanged();
    }

    std::vector<Text> inputs;
    std::set<Text> taken;  // by other programs
    std::vector<Text> listensTo;

  private:
    MidiListener* listener_ = nullptr;
};

// One of each, with quiet defaults: settings and folders are empty, the screen is an ordinary one.
struct StandIns {
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
    ScriptedPrinters printers;
    RecordedMultimedia multimedia;
    ScriptedMidi midi;
    ScriptedClock clock;
};

// Services made of stand-ins, but for those that are named. All of them outlive the services.
class ServicesBuilder {
  public:
    ServicesBuilder(StandIns& all, Files& files, const AnsiCodec& ansi)
        : all_(all), files_(files), ansi_(ansi) {}

    ServicesBuilder& system(SystemSettings& own) { return set(system_, own); }
    ServicesBuilder& program(ProgramFolder& own) { return set(program_, own); }
    ServicesBuilder& screen(Screen& own) { return set(screen_, own); }
    ServicesBuilder& sounds(Sounds& own) { return set(sounds_, own); }
    ServicesBuilder& multimedia(Multimedia& own) { return set(multimedia_, own); }
    ServicesBuilder& clock(Clock& own) { return set(clock_, own); }

    Services build() const {
        return {.files = files_,
                .messages = all_.messages,
                .dialogs = all_.dialogs,
                .profiles = all_.profiles,
                .settings = all_.settings,
                .system = *system_,
                .program = *program_,
                .screen = *screen_,
                .ansi = ansi_,
                .clipboard = all_.clipboard,
                .shell = all_.shell,
                .sounds = *sounds_,
                .colors = all_.colors,
                .printers = all_.printers,
                .multimedia = *multimedia_,
                .midi = all_.midi,
                .clock = *clock_};
    }

  private:
    template <class Service>
    ServicesBuilder& set(Service*& place, Service& own) {
        place = &own;
        return *this;
    }

    StandIns& all_;
    Files& files_;
    const AnsiCodec& ansi_;
    SystemSettings* system_ = &all_.system;
    ProgramFolder* program_ = &all_.program;
    Screen* screen_ = &all_.screen;
    Sounds* sounds_ = &all_.sounds;
    Multimedia* multimedia_ = &all_.multimedia;
    Clock* clock_ = &all_.clock;
};

}  // namespace melvorin::testing
