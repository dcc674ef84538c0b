// What the program asks of the file system. The Windows program and the native batch tool each
// implement it; tests script it to make a disk full or a file locked.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/Text.h"

namespace melvorin {

// A value, or in its absence the cause as a sentence a user understands ("The disk is full.").
template <class T>
struct Result {
    std::optional<T> value;
    Text cause;

    explicit operator bool() const { return value.has_value(); }
    static Result failure(Text why) { return {std::nullopt, std::move(why)}; }
    static Result success(T what) { return {std::move(what), {}}; }
};

// The empty value of operations that only succeed or fail.
struct Done {};

class Files {
  public:
    virtual ~Files() = default;

    // True when the file's date and time can be read; any error counts as a missing file.
    virtual bool exists(TextView path) = 0;
    // Size in bytes; fails for a missing file and for a folder.
    virtual Result<std::uint64_t> size(TextView path) = 0;
    // The whole file as it stands on disk.
    virtual Result<std::string> read(TextView path) = 0;
    // Creates or overwrites the file in place: for files nobody else has yet (snapshots).
    virtual Result<Done> write(TextView path, std::string_view bytes) = 0;
    // Saves a document: writes a temporary file in the same folder, flushes it to disk, and puts
    // it in the place of `path` in one step. On failure `path` is what it was before and the
    // temporary file is gone.
    virtual Result<Done> replace(TextView path, std::string_view bytes) = 0;
    // Deletes a file; a missing file is no failure.
    virtual Result<Done> remove(TextView path) = 0;
    // Creates an empty file with a unique name that starts with `prefix` (at most three
    // characters) in the temporary folder and returns its full path.
    virtual Result<Text> createTemporary(TextView prefix) = 0;
    // The path with its folder, where it was relative to the current one.
    virtual Text fullPath(TextView path) { return Text(path); }
};

}  // namespace melvorin
