// What the program asks of the machine besides files and the editing control. The Windows build
// implements each interface once (src/platform); tests script them.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "base/Editor.h"
#include "base/Files.h"
#include "base/Text.h"
#include "base/TextCodec.h"

namespace melvorin {

enum class MessageIcon { None, Critical, Information, Question };
enum class MessageButtons { Ok, YesNo, YesNoCancel };
enum class Answer { Ok, Yes, No, Cancel };

class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;
    // Shows a modal box over the program's active window and waits for the answer.
    virtual Answer show(TextView text, TextView title, MessageIcon icon,
                        MessageButtons buttons) = 0;
};

struct FileFilter {
    Text name;     // "Text Documents (*.txt)"
    Text pattern;  // "*.txt"
};

struct FileDialogRequest {
    Text title;
    std::vector<FileFilter> filters;
    int filterIndex = 1;  // 1-based; past the last filter none is marked
    Text initialFolder;
    Text fileName;
};

struct FileChoice {
    Text path;
    int filterIndex = 0;  // 1-based, as the user left it
};

class FileDialogs {
  public:
    virtual ~FileDialogs() = default;
    // Nothing when the user cancels.
    virtual std::optional<FileChoice> open(const FileDialogRequest& request) = 0;
    // As `open`. Whether a file that exists may be overwritten is not asked.
    virtual std::optional<FileChoice> save(const FileDialogRequest& request) = 0;
};

// Profile (INI) files. A bare file name is looked for in the Windows folder.
class ProfileFiles {
  public:
    virtual ~ProfileFiles() = default;
    // At most `capacity` - 1 characters of the value.
    virtual Text read(TextView section, TextView key, TextView fallback, TextView file,
                      std::uint32_t capacity) = 0;
    // False when the file cannot be written.
    virtual bool write(TextView section, TextView key, TextView value, TextView file) = 0;
};

// The per-user settings store.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    virtual void write(TextView application, TextView section, TextView key, TextView value) = 0;
};

// Settings of the user's system outside the program.
class SystemSettings {
  public:
    virtual ~SystemSettings() = default;
    // Updates the user's profile and tells all windows; false when the system refuses.
    virtual bool setFontSmoothing(bool on) = 0;
    virtual bool fontSmoothing() = 0;
    // String values below the current user's hive; nothing when absent or of another type.
    virtual std::optional<Text> registryString(TextView key, TextView name) = 0;
    virtual void setRegistryString(TextView key, TextView name, TextView value) = 0;
    virtual void initCommonControls() = 0;
    // The user's folder for documents; empty where there is none.
    virtual Text documentsFolder() = 0;
};

// The files of the program folder that need more than reading and writing.
class ProgramFolder {
  public:
    virtual ~ProgramFolder() = default;
    virtual Text folder() = 0;           // without a trailing separator, unless it is a root
    virtual Text programFileName() = 0;  // "Melvorin.exe"
    // A directory look-up that also finds hidden, system and read-only files.
    virtual bool contains(TextView path) = 0;
    // Writes the file and sets its attributes (FILE_ATTRIBUTE_ bits); false on failure.
    virtual bool writeWithAttributes(TextView path, std::string_view bytes,
                                     std::uint32_t attributes) = 0;
    // A raw resource of the program; nothing when it is missing.
    virtual std::optional<std::string> resource(TextView type, int id) = 0;
};

// What the system clipboard holds.
class Clipboard {
  public:
    virtual ~Clipboard() = default;
    virtual bool hasRichText() = 0;
    virtual bool hasText() = 0;
    // Bytes and characters as they stand there, up to the first NUL; text has whatever line ends
    // its source wrote. Fails with a sentence, also for more than `limit` bytes.
    virtual Result<std::string> richText(std::uint64_t limit) = 0;
    virtual Result<Text> text(std::uint64_t limit) = 0;
    // The text, in place of all that is there. Fails with a sentence.
    virtual Result<Done> put(const CrLfText& text) = 0;
    // The same with its Rich Text beside.
    virtual Result<Done> put(const CrLfText& text, const std::string& rtf) = 0;
};

// The programs that the system shows a file or page with.
class ShellOpener {
  public:
    virtual ~ShellOpener() = default;
    // Shows a page of a compiled help file in the system's help viewer, in a window of its own.
    // False where there is no viewer or it cannot show the file.
    virtual bool showHelp(TextView file, TextView page) = 0;
    // Fails with a sentence.
    virtual Result<Done> open(TextView target) = 0;
};

struct ScreenSize {
    int width = 0;  // device pixels
    int height = 0;
};

// A rectangle in device pixels; on the screen its corner may be negative.
struct Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const Area&, const Area&) = default;
};

struct Monitor {
    Area whole;
    Area work;  // what task bars leave free
};

class Screen {
  public:
    virtual ~Screen() = default;
    // The whole primary screen, and the part that task bars leave free.
    virtual ScreenSize size() = 0;
    virtual ScreenSize workArea() = 0;
    // The monitor that most of a window's area is on, or the nearest one.
    virtual Monitor monitorOf(const Area& window) = 0;
    // The one after it, in the order in which the system counts them; the only one is its own.
    virtual Monitor monitorAfter(const Area& window) = 0;
    // On: the screen neither goes dark nor to its saver, until it is switched off again.
    virtual void keepOn(bool on) = 0;
};

class ColorDialogs {
  public:
    virtual ~ColorDialogs() = default;
    // Any colour, `marked` being the one shown first. Nothing when the user cancels.
    virtual std::optional<Rgb> choose(Rgb marked) = 0;
};

enum class PaperName { A4, A5, Letter, Legal };

struct PrintRequest {
    Text document;       // what the printer's list calls it
    unsigned pages = 1;  // that there are to choose from
    PaperName paper = PaperName::A4;
    bool landscape = false;
};

// What the user wants of a printer.
struct PrintChoice {
    Text printer;
    std::string settings;  // its driver's, copies and paper among them (a DEVMODEW); may be empty
    unsigned from = 1;     // pages, 1-based
    unsigned to = 1;
    unsigned copies = 1;  // beyond what the driver does by itself
    bool collates = true;
    Text output;  // a file in place of the printer; empty: the printer
};

class Printers {
  public:
    virtual ~Printers() = default;
    // The user's country has Letter in its printers, not A4.
    virtual bool usesLetter() = 0;
    // The system's dialog over the program's active window. Nothing when the user cancels. Fails
    // with a sentence, also where there is no printer.
    virtual Result<std::optional<PrintChoice>> choose(const PrintRequest& request) = 0;
};

// Short sounds of the interface.
class Sounds {
  public:
    virtual ~Sounds() = default;
    // Begins to play a WAV file and returns at once. Nothing happens where it cannot be played.
    virtual void play(TextView path) = 0;
};

// The multimedia command interface.
class Multimedia {
  public:
    virtual ~Multimedia() = default;
    // Carries out a command string and returns its result code; 0 is success.
    virtual std::uint32_t send(TextView command) = 0;
};

// As it comes from the cable; `second` is 0 where the status has one number or none.
struct MidiMessage {
    std::uint8_t status = 0;
    std::uint8_t first = 0;
    std::uint8_t second = 0;
};

class MidiListener {
  public:
    virtual ~MidiListener() = default;
    virtual void heard(TextView device, const MidiMessage& message) = 0;
    // Inputs have come or gone; the others go on.
    virtual void inputsChanged() = 0;
};

// The MIDI devices that send something.
class MidiInputs {
  public:
    virtual ~MidiInputs() = default;
    // Of those that are there. Two may have one name.
    virtual std::vector<Text> names() = 0;
    // Listens to all inputs of these names, in place of what was listened to, and tells the
    // listener, from the message loop, until `stop` or another listener. Returns the names of those
    // that cannot be opened, because another program has them.
    virtual std::vector<Text> listen(const std::vector<Text>& names, MidiListener& listener) = 0;
    virtual void stop() = 0;
};

class Clock {
  public:
    virtual ~Clock() = default;
    // Milliseconds from a fixed moment; it never goes back.
    virtual std::int64_t nowMs() = 0;
};

// All of them; the objects outlive every window.
struct Services {
    Files& files;
    MessageBoxes& messages;
    FileDialogs& dialogs;
    ProfileFiles& profiles;
    SettingsStore& settings;
    SystemSettings& system;
    ProgramFolder& program;
    Screen& screen;
    const AnsiCodec& ansi;
    Clipboard& clipboard;
    ShellOpener& shell;
    Sounds& sounds;
    ColorDialogs& colors;
    Printers& printers;
    Multimedia& multimedia;
    MidiInputs& midi;
    Clock& clock;
};

// The word in every message box's title; the leading blank belongs to it.
// kept: title-blank
inline constexpr TextView kMessageTitle = u" Melvorin";

// An error the user has to know of: critical icon, OK only.
inline void reportFailure(MessageBoxes& messages, TextView text) {
    messages.show(text, kMessageTitle, MessageIcon::Critical, MessageButtons::Ok);
}

// The end of a command that could not be carried out, for a reason that nobody foresaw.
inline void reportException(MessageBoxes& messages, const std::exception& error) {
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    reportFailure(messages, isMemory ? Text(u"There is not enough memory for this.")
                                     : u"An internal error: " + fromUtf8(error.what()));
}

}  // namespace melvorin
