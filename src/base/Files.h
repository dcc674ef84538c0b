// What the program asks of the file system. The Windows program and the native batch tool each
// implement it; tests script it to make a disk full or a file locked.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Text.h"

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
inline Result<Done> done() {
    return {Done{}, {}};
}

// No value of any type, with its cause.
struct Failure {
    Text cause;

    template <class T>
    operator Result<T>() const {
        return {std::nullopt, cause};
    }
};

// A file in the temporary folder that belongs to one run: nobody else can open it while this object
// lives. When a run ends, in whatever way, the system lets go of its files.
class HeldFile {
  public:
    virtual ~HeldFile() = default;
    virtual Text path() const = 0;
    // Writes at the file's end; false on failure.
    virtual bool append(std::string_view bytes) = 0;
    virtual Result<std::string> read() = 0;
    // The moment of its last change, in units that only compare, and as the user writes it.
    virtual std::int64_t lastWritten() const = 0;
    virtual Text lastWrittenInWords() const = 0;
    // Lets go of the file and deletes it.
    virtual void remove() = 0;
};

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
    // Creates an empty held file whose name is `prefix`, hexadecimal digits and ".tmp"; null where
    // that cannot be done. A file system without them has none.
    virtual std::unique_ptr<HeldFile> createHeld(TextView) { return nullptr; }
    // Takes all such files that nobody holds; they can be read, but not appended to.
    virtual std::vector<std::unique_ptr<HeldFile>> takeHeld(TextView) { return {}; }
    // The path with its folder, where it was relative to the current one.
    virtual Text fullPath(TextView path) { return Text(path); }
};

}  // namespace melvorin
