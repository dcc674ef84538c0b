// Files on Windows.
#pragma once

#include <vector>

#include "base/Files.h"

namespace melvorin {

class Win32Files : public Files {
  public:
    bool exists(TextView path) override;
    Result<std::uint64_t> size(TextView path) override;
    Result<std::string> read(TextView path) override;
    Result<Done> write(TextView path, std::string_view bytes) override;
    Result<Done> replace(TextView path, std::string_view bytes) override;
    Result<Done> remove(TextView path) override;
    Result<Text> createTemporary(TextView prefix) override;
    std::unique_ptr<HeldFile> createHeld(TextView prefix) override;
    std::vector<std::unique_ptr<HeldFile>> takeHeld(TextView prefix) override;
    Text fullPath(TextView path) override;
};

// Names of what is in a folder, in no order; hidden things are left out. Empty where the folder
// cannot be read.
struct FolderContent {
    std::vector<Text> files;
    std::vector<Text> folders;
};
FolderContent contentOf(TextView folder);

}  // namespace melvorin
