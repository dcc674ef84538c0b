#include "cli/NativeFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

namespace melvorin {

namespace {

constexpr char16_t escapeBase = 0xDC00;

bool isEscapedByte(char16_t c) {
    return c >= escapeBase + 0x80 && c <= escapeBase + 0xFF;
}

// An open file, closed at the latest with this object.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    // Some file systems report only here that the disk is full.
    bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

  private:
    int number_;
};

Failure failureFromErrno() {
    return {sentenceForErrno(errno)};
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    return true;
}

Result<Done> writeInPlace(const std::string& path, int flags, std::string_view bytes) {
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, 0666));
    if (!file || !writeAll(file.get(), bytes) || !file.close()) {
        return failureFromErrno();
    }
    return done();
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Where a chain of symbolic links ends, also if there is nothing there yet. On a loop it gives the
// path back, and opening that fails with the right cause.
std::string followLinks(std::string path) {
    constexpr int mostLinks = 40;
    std::string start = path;
    for (int i = 0; i < mostLinks; ++i) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return path;
        }
        const std::string_view link(target.data(), static_cast<std::size_t>(length));
        path = link.starts_with('/') ? std::string(link) : (folderOf(path) + "/").append(link);
    }
    return start;
}

// A file of its own name beside `target`. Its name is short, because that of `target` may already
// be as long as a name can be.
struct SideFile {
    std::string path;
    int descriptor = -1;
};

SideFile createBeside(const std::string& target) {
    constexpr int mostTries = 1000;
    SideFile side;
    for (int i = 0; i < mostTries; ++i) {
        side.path = folderOf(target) + "/.melvorin-" + std::to_string(::getpid()) + "-" +
                    std::to_string(i) + ".tmp";
        side.descriptor = ::open(side.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (side.descriptor >= 0 || errno != EEXIST) {
            break;
        }
    }
    return side;
}

// Gives the new file the rights of the old one. Only its owner or the administrator can pass it on
// to somebody else; a file that stays ours must not run with the rights of its former owner.
bool copyRights(int descriptor, const struct stat& old) {
    struct stat now {};
    if (::fstat(descriptor, &now) != 0) {
        return false;
    }
    const bool sameOwner = now.st_uid == old.st_uid && now.st_gid == old.st_gid;
    const bool owned = sameOwner || ::fchown(descriptor, old.st_uid, old.st_gid) == 0;
    return ::fchmod(descriptor, old.st_mode & (owned ? 07777U : 0777U)) == 0;
}

// Without this a power failure may bring the old file back; it cannot lose both, so a file system
// that does not know how is no failure.
void syncFolder(const std::string& target) {
    const Descriptor folder(::open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) {
        ::fsync(folder.get());
    }
}

// `old` is the state of `target`, if it exists.
Result<Done> exchange(const std::string& target, const struct stat* old, std::string_view bytes) {
    const SideFile side = createBeside(target);
    Descriptor file(side.descriptor);
    if (!file) {
        return failureFromErrno();
    }
    const bool written = (old == nullptr || copyRights(file.get(), *old)) &&
                         writeAll(file.get(), bytes) && ::fsync(file.get()) == 0 && file.close() &&
                         ::rename(side.path.c_str(), target.c_str()) == 0;
    if (!written) {
        Failure failure = failureFromErrno();
        ::unlink(side.path.c_str());
        return failure;
    }
    syncFolder(target);
    return done();
}

}  // namespace

Text textFromNativePath(std::string_view path) {
    if (isValidUtf8(path)) {
        return fromUtf8(path);
    }
    // Longest well-formed pieces first; names are short enough for trying.
    Text text;
    while (!path.empty()) {
        std::size_t length = std::min<std::size_t>(path.size(), 4);
        while (length > 0 && !isValidUtf8(path.substr(0, length))) {
            --length;
        }
        if (length > 0) {
            text += fromUtf8(path.substr(0, length));
        } else {
            text += static_cast<char16_t>(escapeBase + static_cast<unsigned char>(path[0]));
            length = 1;
        }
        path.remove_prefix(length);
    }
    return text;
}

std::string nativePathFromText(TextView path) {
    std::string bytes;
    std::size_t start = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const bool secondHalf = i > 0 && path[i - 1] >= 0xD800 && path[i - 1] <= 0xDBFF;
        if (isEscapedByte(path[i]) && !secondHalf) {
            bytes += toUtf8(path.substr(start, i - start));
            bytes += static_cast<char>(path[i] - escapeBase);
            start = i + 1;
        }
    }
    return bytes + toUtf8(path.substr(start));
}

Text sentenceForErrno(int error) {
    switch (error) {
        case ENOENT:
            return u"The file or its folder does not exist.";
        case EACCES:
        case EPERM:
            return u"Access is denied.";
        case ENOSPC:
        case EDQUOT:
            return u"The disk is full.";
        case EFBIG:
            return u"The file would become too large.";
        case EROFS:
            return u"The disk is read-only.";
        case EISDIR:
            return u"It is a folder.";
        case ENOTDIR:
            return u"Part of its path is not a folder.";
        case ENAMETOOLONG:
            return u"Its name is too long.";
        default:
            return fromUtf8(std::strerror(error)) + u".";
    }
}

bool NativeFiles::exists(TextView path) {
    struct stat state {};
    return ::stat(nativePathFromText(path).c_str(), &state) == 0;
}

Result<std::uint64_t> NativeFiles::size(TextView path) {
    struct stat state {};
    if (::stat(nativePathFromText(path).c_str(), &state) != 0) {
        return failureFromErrno();
    }
    if (S_ISDIR(state.st_mode)) {
        return Failure{sentenceForErrno(EISDIR)};
    }
    return Result<std::uint64_t>::success(static_cast<std::uint64_t>(state.st_size));
}

Result<std::string> NativeFiles::read(TextView path) {
    const Descriptor file(::open(nativePathFromText(path).c_str(), O_RDONLY | O_CLOEXEC));
    struct stat state {};
    if (!file || ::fstat(file.get(), &state) != 0) {
        return failureFromErrno();
    }
    // The size is a hint: a pipe has none, and a file may grow while it is read. One byte more
    // than the file has lets the first round find its end.
    constexpr std::size_t least = 1 << 16;
    std::string bytes(std::max(least, static_cast<std::size_t>(state.st_size) + 1), '\0');
    std::size_t length = 0;
    while (true) {
        const ssize_t got = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (got == 0) {
            bytes.resize(length);
            return Result<std::string>::success(std::move(bytes));
        }
        if (got < 0 && errno != EINTR) {
            return failureFromErrno();
        }
        length += got > 0 ? static_cast<std::size_t>(got) : 0;
        if (length == bytes.size()) {
            bytes.resize(2 * bytes.size());
        }
    }
}

Result<Done> NativeFiles::write(TextView path, std::string_view bytes) {
    return writeInPlace(nativePathFromText(path), O_CREAT | O_TRUNC, bytes);
}

Result<Done> NativeFiles::replace(TextView path, std::string_view bytes) {
    const std::string name = nativePathFromText(path);
    struct stat old {};
    if (::stat(name.c_str(), &old) != 0) {
        return errno == ENOENT ? exchange(followLinks(name), nullptr, bytes) : failureFromErrno();
    }
    if (S_ISDIR(old.st_mode)) {
        return Failure{sentenceForErrno(EISDIR)};
    }
    if (!S_ISREG(old.st_mode)) {
        return writeInPlace(name, 0, bytes);
    }
    if (::faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0) {
        return failureFromErrno();
    }
    return exchange(followLinks(name), &old, bytes);
}

Result<Done> NativeFiles::remove(TextView path) {
    if (::unlink(nativePathFromText(path).c_str()) != 0 && errno != ENOENT) {
        return failureFromErrno();
    }
    return done();
}

Result<Text> NativeFiles::createTemporary(TextView prefix) {
    const char* const configured = std::getenv("TMPDIR");
    std::string path = configured != nullptr && *configured != '\0' ? configured : "/tmp";
    path.append("/").append(nativePathFromText(prefix)).append("XXXXXX");
    const Descriptor file(::mkstemp(path.data()));
    if (!file) {
        return failureFromErrno();
    }
    return Result<Text>::success(textFromNativePath(path));
}

}  // namespace melvorin
