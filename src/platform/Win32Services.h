// The outside services as Windows offers them.
#pragma once

#include "app/Services.h"
#include "platform/Win.h"

namespace melvorin {

class Win32MessageBoxes : public MessageBoxes {
  public:
    Answer show(TextView text, TextView title, MessageIcon icon, MessageButtons buttons) override;
};

class Win32FileDialogs : public FileDialogs {
  public:
    std::optional<FileChoice> open(const FileDialogRequest& request) override;
    std::optional<FileChoice> save(const FileDialogRequest& request) override;
};

class Win32ProfileFiles : public ProfileFiles {
  public:
    Text read(TextView section, TextView key, TextView fallback, TextView file,
              std::uint32_t capacity) override;
    void write(TextView section, TextView key, TextView value, TextView file) override;
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

class Win32Screen : public Screen {
  public:
    ScreenSize size() override;
    ScreenSize workArea() override;
};

}  // namespace melvorin
