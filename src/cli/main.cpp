// The batch tool's contact with the operating system: arguments, standard streams, files.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "cli/Cli.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include "platform/SystemAnsiCodec.h"
#include "platform/SystemLibrary.h"
#include "platform/Win.h"
#include "platform/Win32Files.h"
#include "platform/Win32Services.h"
#else
#include <csignal>
#include <filesystem>
#include <system_error>

#include "cli/NativeFiles.h"
#endif

#ifdef _WIN32
// Makes the start-up code expand "*.txt", as the shell does elsewhere.
extern "C" {
extern int _dowildcard;
int _dowildcard = -1;
}
#endif

namespace {

using melvorin::Done;
using melvorin::Result;
using melvorin::Text;
using melvorin::TextView;

Text causeFromErrno(int error) {
#ifdef _WIN32
    return error == ENOSPC ? Text(u"The disk is full.") : Text(u"The stream is broken.");
#else
    return melvorin::sentenceForErrno(error);
#endif
}

class StandardPorts final : public melvorin::CliPorts {
  public:
    Result<std::string> readInput() override {
        std::string bytes;
        std::vector<char> block(1 << 16);
        std::size_t got = 0;
        while ((got = std::fread(block.data(), 1, block.size(), stdin)) > 0) {
            bytes.append(block.data(), got);
        }
        return std::ferror(stdin) != 0 ? Result<std::string>::failure(causeFromErrno(errno))
                                       : Result<std::string>::success(std::move(bytes));
    }

    Result<Done> writeOutput(std::string_view bytes) override {
        const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
        return written && std::fflush(stdout) == 0 ? Result<Done>::success({})
                                                   : Result<Done>::failure(causeFromErrno(errno));
    }

    void writeError(TextView message) override {
#ifdef _WIN32
        // A console shows characters, whatever code page it is set to.
        const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
        DWORD mode = 0;
        if (GetConsoleMode(error, &mode) != 0) {
            const std::wstring wide(message.begin(), message.end());
            DWORD written = 0;
            WriteConsoleW(error, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
            return;
        }
#endif
        const std::string bytes = melvorin::toUtf8(message);
        std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    }

    Text programFolder() override {
#ifdef _WIN32
        return melvorin::Win32ProgramFolder().folder();
#else
        std::error_code error;
        const auto tool = std::filesystem::read_symlink("/proc/self/exe", error);
        return melvorin::textFromNativePath(tool.parent_path().string());
#endif
    }

    std::vector<Text> fontFolders() override {
#ifdef _WIN32
        std::wstring folder(MAX_PATH, L'\0');
        folder.resize(GetWindowsDirectoryW(folder.data(), MAX_PATH));
        return {Text(folder.begin(), folder.end()) + u"\\Fonts"};
#else
        return {u"/usr/share/fonts/truetype/liberation", u"/usr/share/fonts/truetype/dejavu",
                u"/usr/share/fonts/liberation", u"/usr/share/fonts/dejavu",
                u"/usr/share/fonts/TTF"};
#endif
    }
};

// Only a want of memory gets here; the files are as they were.
template <class Work>
int guarded(StandardPorts& ports, Work work) {
    try {
        return work();
    } catch (const std::exception&) {
        ports.writeError(u"melvorin-cli: There is not enough memory.\n");
        return EXIT_FAILURE;
    }
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** values) {
    melvorin::searchOnlySystemFolder();
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    StandardPorts ports;
    return guarded(ports, [&] {
        std::vector<Text> arguments;
        for (int i = 1; i < count; ++i) {
            const std::wstring_view argument = values[i];
            arguments.emplace_back(argument.begin(), argument.end());
        }
        melvorin::Win32Files files;
        return runCli(arguments, files, ports, melvorin::systemAnsiCodec());
    });
}
#else
int main(int count, char** values) {
    // A file that grows beyond its limit is an error to report, not a reason to die half-way.
    std::signal(SIGXFSZ, SIG_IGN);
    StandardPorts ports;
    return guarded(ports, [&] {
        std::vector<Text> arguments;
        for (int i = 1; i < count; ++i) {
            arguments.push_back(melvorin::textFromNativePath(values[i]));
        }
        melvorin::NativeFiles files;
        return runCli(arguments, files, ports, melvorin::windows1252());
    });
}
#endif
