#include "platform/Win32Files.h"

#include <algorithm>
#include <cstdio>

#include "base/Paths.h"
#include "platform/Handles.h"
#include "platform/SystemError.h"
// Needs windows.h before it.
#include <aclapi.h>

namespace melvorin {
namespace {

// Reads and writes count in DWORD; one call moves at most this many bytes.
constexpr std::size_t kPiece = 1u << 26;

// The causes a user can do something about, in plain words; the system's own for all others.
Text causeOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_DIRECTORY:
            return u"The file does not exist.";
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
            return u"The file name is not valid.";
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return u"Another program is using the file.";
        case ERROR_ACCESS_DENIED:
            return u"Access to the file is denied.";
        case ERROR_WRITE_PROTECT:
            return u"The disk is write-protected.";
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return u"The disk is full.";
        case ERROR_NOT_READY:
            return u"The drive is not ready.";
        default:
            break;
    }
    return systemErrorSentence(error);
}

// The path as Windows takes it in any length.
Text systemPath(TextView path) {
    // Room for the name of a temporary file in the same folder.
    constexpr std::size_t longest = MAX_PATH - 20;
    return path.size() < longest ? Text(path) : withoutLengthLimit(Win32Files().fullPath(path));
}

Failure lastFailure() {
    return {causeOf(::GetLastError())};
}

// From where the file stands to its end.
Result<std::string> readAll(HANDLE file) {
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file, &size))
        return lastFailure();
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t got = 0;
    while (got < bytes.size()) {
        const auto piece = static_cast<DWORD>(std::min(bytes.size() - got, kPiece));
        DWORD done = 0;
        if (!::ReadFile(file, bytes.data() + got, piece, &done, nullptr))
            return lastFailure();
        if (done == 0)
            break;
        got += done;
    }
    bytes.resize(got);
    return Result<std::string>::success(std::move(bytes));
}

bool writeAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), kPiece));
        DWORD done = 0;
        if (!::WriteFile(file, bytes.data(), piece, &done, nullptr))
            return false;
        if (done == 0) {
            // A full disk may report success with nothing written.
            ::SetLastError(ERROR_DISK_FULL);
            return false;
        }
        bytes.remove_prefix(done);
    }
    return true;
}

// Writes a new or overwritten file; the last error tells why not.
bool writeFile(const Text& path, std::string_view bytes) {
    const UniqueFile file(::CreateFileW(wide(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    return file && writeAll(file.get(), bytes);
}

// Whether the file goes when its handle is closed. False where the disk cannot do that.
bool setGoesWithHandle(HANDLE file, bool goes) {
    FILE_DISPOSITION_INFO disposition{goes};
    return ::SetFileInformationByHandle(file, FileDispositionInfo, &disposition,
                                        sizeof disposition) != 0;
}

// Fills a new file, which only then outlives its process, and brings it to the disk.
bool fillForGood(HANDLE file, std::string_view bytes) {
    const bool goes = setGoesWithHandle(file, true);
    return writeAll(file, bytes) && ::FlushFileBuffers(file) &&
           (!goes || setGoesWithHandle(file, false));
}

// What belongs to a document beside its content goes along, as far as this user may.
void copyTraits(const Text& from, const Text& to, DWORD attributes) {
    PACL permissions = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetNamedSecurityInfoW(wide(from), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                nullptr, &permissions, nullptr, &descriptor) == ERROR_SUCCESS) {
        SECURITY_DESCRIPTOR_CONTROL control = 0;
        DWORD revision = 0;
        ::GetSecurityDescriptorControl(descriptor, &control, &revision);
        const SECURITY_INFORMATION what =
            DACL_SECURITY_INFORMATION |
            ((control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                : UNPROTECTED_DACL_SECURITY_INFORMATION);
        Text path = to;
        ::SetNamedSecurityInfoW(wideBuffer(path), SE_FILE_OBJECT, what, nullptr, nullptr,
                                permissions, nullptr);
        ::LocalFree(descriptor);
    }
    WIN32_FILE_ATTRIBUTE_DATA old{};
    const UniqueFile file(
        ::CreateFileW(wide(to), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (file && ::GetFileAttributesExW(wide(from), GetFileExInfoStandard, &old))
        ::SetFileTime(file.get(), &old.ftCreationTime, nullptr, nullptr);
    constexpr DWORD kept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    if ((attributes & kept) != 0)
        ::SetFileAttributesW(wide(to), attributes & kept);
}

// Puts `from` in the place of `to` in one step: whatever happens meanwhile, `to` is the old file or
// the new one. (ReplaceFile takes two, between which there is no file. It is for what some other
// program holds open in a way that only it gets along with.)
bool putInPlace(const Text& from, const Text& to) {
    const DWORD attributes = ::GetFileAttributesW(wide(to));
    const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
    if (isThere) {
        if (attributes & FILE_ATTRIBUTE_READONLY) {
            ::SetLastError(ERROR_ACCESS_DENIED);
            return false;
        }
        // Asked first: a replacement that is refused may leave files of its own behind.
        constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        UniqueFile probe(::CreateFileW(wide(to), GENERIC_WRITE | DELETE, shareAll, nullptr,
                                       OPEN_EXISTING, 0, nullptr));
        if (!probe)
            return false;
        probe.close();
        copyTraits(to, from, attributes);
    }
    if (::MoveFileExW(wide(from), wide(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    const DWORD error = ::GetLastError();
    if (isThere && ::ReplaceFileW(wide(to), wide(from), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                  nullptr, nullptr))
        return true;
    ::SetLastError(error);
    return false;
}

// An empty file with a unique name in `folder`; empty on failure.
Text temporaryIn(const Text& folder, const Text& prefix) {
    // The call writes into a buffer of MAX_PATH, and not every Windows looks before it does.
    constexpr std::size_t longestFolder = MAX_PATH - 14;
    if (folder.size() > longestFolder) {
        ::SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return {};
    }
    Text name(MAX_PATH, u'\0');
    if (::GetTempFileNameW(wide(folder), wide(prefix), 0, wideBuffer(name)) == 0)
        return {};
    name.resize(name.find(u'\0'));
    return name;
}

// A file with a new name, open for nobody else; with an empty name on failure.
struct NewFile {
    Text name;
    UniqueFile file;
};

// `start` is the path up to the part of the name that differs.
NewFile createNew(const Text& start) {
    // Another name where one is taken: from the clock on, as many as a folder may ever hold.
    const DWORD seed = ::GetTickCount();
    for (DWORD i = 0; i < 0x10000; ++i) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%04lx.tmp", (seed + i) & 0xFFFFUL);
        Text name = start + fromUtf8(digits);
        UniqueFile file(::CreateFileW(wide(name), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file)
            return {std::move(name), std::move(file)};
        if (::GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    return {{}, UniqueFile(INVALID_HANDLE_VALUE)};
}

// An empty file with a new name in the folder of `path`, of any length.
NewFile createBeside(TextView path) {
    const TextView folder = folderPart(path);
    return createNew((folder.empty() ? Text() : Text(folder) + u"\\") + u"mlv");
}

// With a separator at its end; empty on failure.
Text temporaryFolder() {
    Text folder(MAX_PATH + 1, u'\0');
    const DWORD length = ::GetTempPathW(static_cast<DWORD>(folder.size()), wideBuffer(folder));
    folder.resize(length > folder.size() ? 0 : length);
    return folder;
}

class Win32HeldFile : public HeldFile {
  public:
    Win32HeldFile(Text path, UniqueFile file) : path_(std::move(path)), file_(std::move(file)) {}

    Text path() const override { return path_; }
    bool append(std::string_view bytes) override {
        return ::SetFilePointer(file_.get(), 0, nullptr, FILE_END) != INVALID_SET_FILE_POINTER &&
               writeAll(file_.get(), bytes);
    }
    Result<std::string> read() override {
        ::SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN);
        return readAll(file_.get());
    }
    std::int64_t lastWritten() const override {
        const FILETIME time = writeTime();
        return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    }
    Text lastWrittenInWords() const override {
        const FILETIME time = writeTime();
        SYSTEMTIME universal{};
        SYSTEMTIME local{};
        if (!::FileTimeToSystemTime(&time, &universal) ||
            !::SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local))
            return {};
        wchar_t date[100] = {};
        wchar_t clock[100] = {};
        ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_LONGDATE, &local, nullptr, date, 100);
        ::GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, clock, 100);
        return Text(textOf(date)) + u", " + Text(textOf(clock));
    }
    void remove() override {
        file_.close();
        ::DeleteFileW(wide(path_));
    }

  private:
    FILETIME writeTime() const {
        FILETIME time{};
        ::GetFileTime(file_.get(), nullptr, nullptr, &time);
        return time;
    }

    Text path_;
    UniqueFile file_;
};

}  // namespace

bool Win32Files::exists(TextView path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    return ::GetFileAttributesExW(wide(systemPath(path)), GetFileExInfoStandard, &data) != 0;
}

Result<std::uint64_t> Win32Files::size(TextView path) {
    if (const TextView why = whyNotAFile(path); !why.empty())
        return Failure{Text(why)};
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(wide(systemPath(path)), GetFileExInfoStandard, &data))
        return lastFailure();
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        return Failure{u"It is a folder."};
    return Result<std::uint64_t>::success((static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) |
                                          data.nFileSizeLow);
}

Result<std::string> Win32Files::read(TextView path) {
    if (const TextView why = whyNotAFile(path); !why.empty())
        return Failure{Text(why)};
    const UniqueFile file(::CreateFileW(wide(systemPath(path)), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    return file ? readAll(file.get()) : lastFailure();
}

Result<Done> Win32Files::write(TextView path, std::string_view bytes) {
    if (const TextView why = whyNotAFile(path); !why.empty())
        return Failure{Text(why)};
    if (!writeFile(systemPath(path), bytes))
        return lastFailure();
    return done();
}

Result<Done> Win32Files::replace(TextView path, std::string_view bytes) {
    if (const TextView why = whyNotAFile(path); !why.empty())
        return Failure{Text(why)};
    const Text target = systemPath(path);
    NewFile fresh = createBeside(target);
    if (fresh.name.empty())
        return lastFailure();
    if (fillForGood(fresh.file.get(), bytes)) {
        fresh.file.close();
        if (putInPlace(fresh.name, target))
            return done();
    }
    const DWORD error = ::GetLastError();
    fresh.file.close();
    ::DeleteFileW(wide(fresh.name));
    return Failure{causeOf(error)};
}

Result<Done> Win32Files::remove(TextView path) {
    if (::DeleteFileW(wide(systemPath(path))) || ::GetLastError() == ERROR_FILE_NOT_FOUND)
        return done();
    return lastFailure();
}

Result<Text> Win32Files::createTemporary(TextView prefix) {
    const Text folder = temporaryFolder();
    if (folder.empty())
        return lastFailure();
    Text name = temporaryIn(folder, Text(prefix));
    if (name.empty()) {
        const Text cause = causeOf(::GetLastError());
        return Failure{u"The temporary folder \"" + folder + u"\" cannot be written: " + cause};
    }
    return Result<Text>::success(std::move(name));
}

std::unique_ptr<HeldFile> Win32Files::createHeld(TextView prefix) {
    const Text folder = temporaryFolder();
    NewFile created = createNew(folder + Text(prefix));
    if (folder.empty() || created.name.empty())
        return nullptr;
    return std::make_unique<Win32HeldFile>(std::move(created.name), std::move(created.file));
}

std::vector<std::unique_ptr<HeldFile>> Win32Files::takeHeld(TextView prefix) {
    std::vector<std::unique_ptr<HeldFile>> taken;
    const Text folder = temporaryFolder();
    WIN32_FIND_DATAW found{};
    UniqueSearch search(folder + Text(prefix) + u"*.tmp", found);
    if (!search)
        return taken;
    do {
        Text path = folder + Text(textOf(found.cFileName));
        UniqueFile file(
            ::CreateFileW(wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        if (file)
            taken.push_back(std::make_unique<Win32HeldFile>(std::move(path), std::move(file)));
    } while (search.next());
    return taken;
}

Text Win32Files::fullPath(TextView path) {
    Text relative(path);
    const DWORD needed = ::GetFullPathNameW(wide(relative), 0, nullptr, nullptr);
    Text full(needed, u'\0');
    const DWORD length = ::GetFullPathNameW(wide(relative), needed, wideBuffer(full), nullptr);
    if (length == 0 || length >= needed)
        return relative;
    full.resize(length);
    return full;
}

FolderContent contentOf(TextView folder) {
    FolderContent content;
    WIN32_FIND_DATAW found{};
    UniqueSearch search(joinPath(folder, u"*"), found);
    if (!search)
        return content;
    do {
        const Text name(textOf(found.cFileName));
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) || name == u"." || name == u"..")
            continue;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        (isFolder ? content.folders : content.files).push_back(name);
    } while (search.next());
    return content;
}

}  // namespace melvorin
