// The outside services as Windows offers them.
#pragma once

#include "base/Services.h"
#include "platform/Win.h"

namespace melvorin {

// The window that boxes and dialogs belong to while none of the program's is active.
struct BoxOwner {
    HWND window = nullptr;

    // The program's active window, or else that one.
    HWND current() const {
        const HWND active = ::GetActiveWindow();
        return active != nullptr ? active : window;
    }
};

class Win32MessageBoxes : public MessageBoxes {
  public:
    // `owner` outlives the object.
    explicit Win32MessageBoxes(const BoxOwner& owner) : owner_(owner) {}
    Answer show(TextView text, TextView title, MessageIcon icon, MessageButtons buttons) override;

  private:
    const BoxOwner& owner_;
};

class Win32FileDialogs : public FileDialogs {
  public:
    // `owner` outlives the object.
    explicit Win32FileDialogs(const BoxOwner& owner) : owner_(owner) {}
    std::optional<FileChoice> open(const FileDialogRequest& request) override;
    std::optional<FileChoice> save(const FileDialogRequest& request) override;

  private:
    const BoxOwner& owner_;
};

class Win32ProfileFiles : public ProfileFiles {
  public:
    Text read(TextView section, TextView key, TextView fallback, TextView file,
              std::uint32_t capacity) override;
    bool write(TextView section, TextView key, TextView value, TextView file) override;
};

// HKEY_CURRENT_USER\Software\<application>\<section>.
class RegistrySettingsStore : public SettingsStore {
  public:
    void write(TextView application, TextView section, TextView key, TextView value) override;
};

class Win32SystemSettings : public SystemSettings {
  public:
    bool setFontSmoothing(bool on) override;
    bool fontSmoothing() override;
    std::optional<Text> registryString(TextView key, TextView name) override;
    void setRegistryString(TextView key, TextView name, TextView value) override;
    void initCommonControls() override;
    Text documentsFolder() override;
};

class Win32ProgramFolder : public ProgramFolder {
  public:
    Text folder() override;
    Text programFileName() override;
    bool contains(TextView path) override;
    bool writeWithAttributes(TextView path, std::string_view bytes,
                             std::uint32_t attributes) override;
    std::optional<std::string> resource(TextView type, int id) override;
};

class Win32Clipboard : public Clipboard {
  public:
    bool hasRichText() override;
    bool hasText() override;
    Result<std::string> richText(std::uint64_t limit) override;
    Result<Text> text(std::uint64_t limit) override;
    Result<Done> put(const CrLfText& text) override;
    Result<Done> put(const CrLfText& text, const std::string& rtf) override;
};

class Win32ShellOpener : public ShellOpener {
  public:
    Win32ShellOpener() = default;
    Win32ShellOpener(const Win32ShellOpener&) = delete;
    Win32ShellOpener& operator=(const Win32ShellOpener&) = delete;
    // The viewer's windows live in this process; they close before it ends.
    ~Win32ShellOpener() override;
    bool showHelp(TextView file, TextView page) override;
    Result<Done> open(TextView target) override;

  private:
    using HtmlHelp = HWND(WINAPI*)(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);
    HtmlHelp htmlHelp_ = nullptr;  // null until the viewer was asked for, and where there is none
};

class Win32Screen : public Screen {
  public:
    ScreenSize size() override;
    ScreenSize workArea() override;
    Monitor monitorOf(const Area& window) override;
    Monitor monitorAfter(const Area& window) override;
    void keepOn(bool on) override;
};

class Win32Clock : public Clock {
  public:
    std::int64_t nowMs() override;
};

class Win32Multimedia : public Multimedia {
  public:
    std::uint32_t send(TextView command) override;
};

class Win32ColorDialogs : public ColorDialogs {
  public:
    // `owner` outlives the object.
    explicit Win32ColorDialogs(const BoxOwner& owner) : owner_(owner) {}
    std::optional<Rgb> choose(Rgb marked) override;

  private:
    const BoxOwner& owner_;
};

class Win32Sounds : public Sounds {
  public:
    void play(TextView path) override;
};

}  // namespace melvorin
