// The file system of a POSIX machine, for the batch tool.
#pragma once

#include <string>
#include <string_view>

#include "base/Files.h"

namespace melvorin {

// File names are bytes there, mostly but not always UTF-8. A byte that is not part of well-formed
// UTF-8 becomes the lone surrogate U+DC00 plus its value, which no name contains otherwise, so that
// every file of the disk can be named and found again.
Text textFromNativePath(std::string_view path);
std::string nativePathFromText(TextView path);

// The cause of a failed call, as a sentence.
Text sentenceForErrno(int error);

class NativeFiles final : public Files {
  public:
    bool exists(TextView path) override;
    Result<std::uint64_t> size(TextView path) override;
    // Also reads what has no size, such as a pipe.
    Result<std::string> read(TextView path) override;
    Result<Done> write(TextView path, std::string_view bytes) override;
    // Follows symbolic links and replaces what they lead to, keeping its permissions and, where
    // this user may, its owner. Refuses a file that is write-protected, although its folder would
    // allow the exchange. Devices and pipes are written to, not replaced.
    Result<Done> replace(TextView path, std::string_view bytes) override;
    Result<Done> remove(TextView path) override;
    Result<Text> createTemporary(TextView prefix) override;
};

}  // namespace melvorin
