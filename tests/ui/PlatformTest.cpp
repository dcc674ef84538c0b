// The outside services as Windows gives them: the real disk, profile files, registry, resources.
#include "../core/CodePageSamples.h"
#include "Scripted.h"
#include "base/LetterCase.h"
#include "platform/SystemLibrary.h"

namespace melvorin::testing {
namespace {

constexpr UINT kSampleCodePage = 1252;

// ---- Files ------------------------------------------------------------------------------------

TEST(RealFiles, ReplacePutsTheNewFileInPlaceOfTheOld) {
    for (const TextView name :
         {u"song.txt", u"no extension", u"Ein \u4E2D\u6587 'Lied' \u03A9.mlv"}) {
        for (const bool present : {false, true}) {
            const ScratchFolder folder;
            if (present)
                folder.add(name, std::string(100'000, 'o'));
            const Result<Done> saved = Win32Files().replace(folder.file(name), "new\r\n");
            EXPECT_TRUE(saved) << shown(saved.cause);
            EXPECT_EQ(folder.content(name), "new\r\n");
            EXPECT_EQ(folder.names(), std::vector<Text>{Text(name)});
        }
    }
}

TEST(RealFiles, ReplaceKeepsWhatIsNotContent) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.mvt", "old");
    WIN32_FILE_ATTRIBUTE_DATA before{};
    WIN32_FILE_ATTRIBUTE_DATA after{};
    ::SetFileAttributesW(wide(path), FILE_ATTRIBUTE_HIDDEN);
    ASSERT_TRUE(::GetFileAttributesExW(wide(path), GetFileExInfoStandard, &before));
    ASSERT_TRUE(Win32Files().replace(path, "new"));
    ASSERT_TRUE(::GetFileAttributesExW(wide(path), GetFileExInfoStandard, &after));
    EXPECT_EQ(after.dwFileAttributes, before.dwFileAttributes);
    EXPECT_TRUE(after.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(folder.content(u"song.mvt"), "new");
}

// Whatever stands in the way of a save, the old file stays whole and nothing is left behind.
TEST(RealFiles, RefusedReplaceKeepsTheOldFile) {
    struct Case {
        const char* name;
        TextView target;
        DWORD attributes;
        std::optional<DWORD> heldWithShare;
        std::string cause;
    };
    const Case cases[] = {
        {"read-only", u"song.txt", FILE_ATTRIBUTE_READONLY, std::nullopt,
         "Access to the file is denied."},
        {"open elsewhere", u"song.txt", FILE_ATTRIBUTE_NORMAL, 0,
         "Another program is using the file."},
        {"being read elsewhere", u"song.txt", FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ,
         "Another program is using the file."},
        {"missing folder", u"no folder\\song.txt", FILE_ATTRIBUTE_NORMAL, std::nullopt, ""},
        {"not a name", u"so?ng<>.txt", FILE_ATTRIBUTE_NORMAL, std::nullopt, ""},
        {"a file as folder", u"song.txt\\song.txt", FILE_ATTRIBUTE_NORMAL, std::nullopt, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const ScratchFolder folder;
        const Text song = folder.add(u"song.txt", "as before");
        ASSERT_TRUE(::SetFileAttributesW(wide(song), c.attributes));
        UniqueFile holder(c.heldWithShare
                              ? ::CreateFileW(wide(song), GENERIC_READ, *c.heldWithShare, nullptr,
                                              OPEN_EXISTING, 0, nullptr)
                              : INVALID_HANDLE_VALUE);
        const Result<Done> saved = Win32Files().replace(folder.file(c.target), "new");
        EXPECT_FALSE(saved);
        EXPECT_FALSE(saved.cause.empty());
        if (!c.cause.empty()) {
            EXPECT_EQ(shown(saved.cause), c.cause);
        }
        holder.close();
        EXPECT_EQ(folder.content(u"song.txt"), "as before");
        EXPECT_EQ(folder.names(), std::vector<Text>{u"song.txt"});
    }
}

TEST(RealFiles, FolderIsNoDocument) {
    const ScratchFolder folder;
    const Text path = folder.file(u"folder.mlv");
    ASSERT_TRUE(::CreateDirectoryW(wide(path), nullptr));
    Win32Files files;
    EXPECT_TRUE(files.exists(path));
    EXPECT_EQ(shown(files.size(path).cause), "It is a folder.");
    EXPECT_FALSE(files.read(path));
    EXPECT_FALSE(files.write(path, "new"));
    EXPECT_FALSE(files.replace(path, "new"));
    EXPECT_TRUE(files.exists(path));
    EXPECT_EQ(folder.names(), std::vector<Text>{});
    ::RemoveDirectoryW(wide(path));
}

TEST(RealFiles, ReadSaysWhyNot) {
    const ScratchFolder folder;
    const Text present = folder.add(u"song.txt", std::string("a\0\r\n\x1Az", 6));
    const Text empty = folder.add(u"empty.txt", "");
    const Text locked = folder.add(u"locked.txt", "x");
    UniqueFile lock(
        ::CreateFileW(wide(locked), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(static_cast<bool>(lock));
    struct Case {
        Text path;
        std::optional<std::string> bytes;
        std::string cause;
    };
    const Case cases[] = {
        {present, std::string("a\0\r\n\x1Az", 6), ""},
        {empty, "", ""},
        {locked, std::nullopt, "Another program is using the file."},
        {folder.file(u"none.txt"), std::nullopt, "The file does not exist."},
        {folder.file(u"none\\none.txt"), std::nullopt, "The file does not exist."},
    };
    for (const Case& c : cases) {
        const Result<std::string> read = Win32Files().read(c.path);
        EXPECT_EQ(read.value, c.bytes) << shown(c.path);
        EXPECT_EQ(shown(read.cause), c.cause) << shown(c.path);
    }
    EXPECT_EQ(Win32Files().size(present).value, 6U);
    EXPECT_FALSE(Win32Files().exists(folder.file(u"none.txt")));
    // Deleting what is not there is what was wanted.
    EXPECT_TRUE(Win32Files().remove(folder.file(u"none.txt")));
    EXPECT_FALSE(Win32Files().remove(locked));
    lock.close();
    EXPECT_TRUE(Win32Files().remove(locked));
    EXPECT_FALSE(Win32Files().exists(locked));
}

// A song deep in folders, whose full name has more than 400 characters, named in both ways.
TEST(RealFiles, LongNames) {
    const ScratchFolder folder;
    std::vector<Text> folders;
    Text deep = u"\\\\?\\" + folder.path();
    while (deep.size() < 400) {
        deep = joinPath(deep, Text(60, u'f'));
        ASSERT_TRUE(::CreateDirectoryW(wide(deep), nullptr));
        folders.push_back(deep);
    }
    Win32Files files;
    for (const Text& path : {joinPath(deep, u"song.txt"), joinPath(deep.substr(4), u"song.txt")}) {
        EXPECT_TRUE(files.write(path, "as before"));
        EXPECT_EQ(files.read(path).value, "as before");
        EXPECT_EQ(files.size(path).value, 9U);
        const Result<Done> saved = files.replace(path, "new");
        EXPECT_TRUE(saved) << shown(saved.cause);
        EXPECT_EQ(files.read(path).value, saved ? "new" : "as before");
        EXPECT_TRUE(files.remove(path));
    }
    // A folder that still holds something is not removed.
    for (; !folders.empty(); folders.pop_back())
        EXPECT_TRUE(::RemoveDirectoryW(wide(folders.back()))) << "something was left behind";
}

// Names that Windows would take for something else are refused before it sees them; those that lead
// somewhere by another way get there.
TEST(RealFiles, OddNames) {
    const ScratchFolder folder;
    folder.add(u"song.txt", "as before");
    Win32Files files;
    const Text name(fileNamePart(folder.path()));
    const struct {
        Text path;
        std::string cause;  // empty: it is song.txt
    } cases[] = {
        {folder.file(u"..\\" + name + u"\\song.txt"), ""},
        {folder.file(u".\\song.txt"), ""},
        {folder.file(u"CON"), "That is the name of a device, not of a file."},
        {folder.file(u"nul.txt"), "That is the name of a device, not of a file."},
        {u"COM1", "That is the name of a device, not of a file."},
        {u"\\\\.\\pipe\\song", "That is the name of a device, not of a file."},
        {folder.file(u"song.txt:x"), "A colon can only stand behind the letter of a drive."},
        {folder.file(u"song.txt::$DATA"), "A colon can only stand behind the letter of a drive."},
        {folder.file(u"song.txt. "), "A file name cannot end with a blank or a dot."},
        {folder.file(u"song.txt."), "A file name cannot end with a blank or a dot."},
        {folder.file(u"..\\no such folder\\song.txt"), "The file does not exist."},
        {u"\\\\no-such-server\\share\\song.txt", "any"},
        {folder.file(Text(300, u'n')), "any"},
        {folder.file(u"<?>.txt"), "any"},
    };
    for (const auto& [path, cause] : cases) {
        SCOPED_TRACE(shown(path));
        const Result<std::string> read = files.read(path);
        EXPECT_EQ(read.value.has_value(), cause.empty()) << shown(read.cause);
        const Result<std::uint64_t> size = files.size(path);
        const Result<Done> saved = files.replace(path, "as before");
        for (const Text& told : {read.cause, size.cause, saved.cause}) {
            EXPECT_EQ(told.empty(), cause.empty());
            if (cause != "any" && cause != "The file does not exist.") {
                EXPECT_EQ(shown(told), cause);
            }
        }
        EXPECT_EQ(folder.names(), std::vector<Text>{u"song.txt"});
        EXPECT_EQ(folder.content(u"song.txt"), "as before");
    }
}

// What is loaded during the run comes from the system's folder, under the same name or not at all.
TEST(SystemLibrary, OnlyFromTheSystemFolder) {
    searchOnlySystemFolder();
    Text system(MAX_PATH, u'\0');
    system.resize(::GetSystemDirectoryW(wideBuffer(system), MAX_PATH));
    for (const wchar_t* const name : {L"winmm.dll", L"Msftedit.dll", L"Riched20.dll"}) {
        const HMODULE library = systemLibrary(name);
        ASSERT_NE(library, nullptr);
        Text path(MAX_PATH, u'\0');
        path.resize(::GetModuleFileNameW(library, wideBuffer(path), MAX_PATH));
        EXPECT_EQ(shown(asciiLowerCase(path)),
                  shown(asciiLowerCase(joinPath(system, textOf(name)))));
    }
    EXPECT_EQ(systemLibrary(L"no such library.dll"), nullptr);
    EXPECT_EQ((systemFunction<void (*)()>(L"winmm.dll", "noSuchFunction")), nullptr);
}

class EnvironmentScope {
  public:
    EnvironmentScope(const wchar_t* name, const Text& value) : name_(name), former_(32768, u'\0') {
        former_.resize(::GetEnvironmentVariableW(name, wideBuffer(former_), 32768));
        ::SetEnvironmentVariableW(name, wide(value));
    }
    EnvironmentScope(const EnvironmentScope&) = delete;
    EnvironmentScope& operator=(const EnvironmentScope&) = delete;
    ~EnvironmentScope() {
        ::SetEnvironmentVariableW(name_, former_.empty() ? nullptr : wide(former_));
    }

  private:
    const wchar_t* name_;
    Text former_;
};

TEST(RealFiles, TemporaryNamesAreUniqueAndInTheTemporaryFolder) {
    const ScratchFolder folder;
    Win32Files files;
    {
        const EnvironmentScope temporary(L"TMP", folder.path());
        std::set<Text> names;
        for (int i = 0; i < 20; ++i) {
            const Result<Text> name = files.createTemporary(u"bb");
            ASSERT_TRUE(name) << shown(name.cause);
            EXPECT_EQ(asciiLowerCase(folderPart(*name.value)), asciiLowerCase(folder.path()));
            EXPECT_TRUE(fileNamePart(*name.value).starts_with(u"bb")) << shown(*name.value);
            EXPECT_EQ(files.size(*name.value).value, 0U);
            names.insert(*name.value);
        }
        EXPECT_EQ(names.size(), 20U);
    }
    const Text missing = folder.file(u"no such folder");
    const EnvironmentScope temporary(L"TMP", missing);
    const Result<Text> refused = files.createTemporary(u"bb");
    EXPECT_FALSE(refused);
    EXPECT_NE(shown(refused.cause).find("no such folder"), std::string::npos)
        << shown(refused.cause);
}

// ---- Profile files ----------------------------------------------------------------------------

TEST(RealProfiles, NewFileIsUnicodeAndKeepsPathsInAnyScript) {
    const TextView paths[] = {
        u"C:\\Songs\\a.mvt",
        u"C:\\\u03A4\u03C1\u03B1\u03B3\u03BF\u03CD\u03B4\u03B9\u03B1\\\u03B1.mvt",
        u"D:\\\u6B4C\\\u4E2D\u6587 song.rtf",
        u"C:\\\u041F\u0435\u0441\u043D\u0438\\caf\u00E9 \U0001F3B8.txt"};
    const ScratchFolder folder;
    const Text file = folder.file(u"Melvorin.INI");
    Win32ProfileFiles profiles;
    int number = 0;
    for (const TextView path : paths) {
        const Text key = u"RecentFile" + fromUtf8(std::to_string(++number));
        profiles.write(u"Recent Files", key, path, file);
    }
    number = 0;
    for (const TextView path : paths) {
        const Text key = u"RecentFile" + fromUtf8(std::to_string(++number));
        EXPECT_EQ(shown(profiles.read(u"Recent Files", key, u"", file, 255)), shown(path));
    }
    const std::string bytes = folder.content(u"Melvorin.INI");
    EXPECT_TRUE(bytes.starts_with("\xFF\xFE"));
    const DecodedText decoded = decodeText(bytes, systemAnsiCodec());
    EXPECT_NE(decoded.text.find(paths[2]), Text::npos) << shown(decoded.text);

    // The answer is the fallback where the file, the section or the key is missing.
    EXPECT_EQ(profiles.read(u"Recent Files", u"RecentFile8", u"none", file, 255), u"none");
    EXPECT_EQ(profiles.read(u"Tela", u"RecentFile1", u"none", file, 255), u"none");
    EXPECT_EQ(profiles.read(u"Tela", u"Option", u"none", folder.file(u"x.ini"), 255), u"none");
}

TEST(RealProfiles, FileOfAnOlderProgramStaysAnsi) {
    ASSERT_EQ(::GetACP(), kSampleCodePage) << "run the tests with LC_ALL=C.UTF-8";
    const ScratchFolder folder;
    const Text file = folder.add(u"old.ini", "[Tela]\r\nOption=caf\xE9\r\nOther=1\r\n");
    Win32ProfileFiles profiles;
    EXPECT_EQ(shown(profiles.read(u"Tela", u"Option", u"", file, 255)), "café");
    profiles.write(u"Tela", u"Other", u"Gr\u00FC\u00DFe", file);
    EXPECT_EQ(shown(profiles.read(u"Tela", u"Other", u"", file, 255)), "Grüße");
    const std::string bytes = folder.content(u"old.ini");
    EXPECT_NE(bytes.find("Option=caf\xE9\r\n"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("Other=Gr\xFC\xDF\x65\r\n"), std::string::npos) << bytes;
}

TEST(RealProfiles, ValueIsCutAtTheCapacity) {
    const ScratchFolder folder;
    const Text file = folder.file(u"long.ini");
    Win32ProfileFiles profiles;
    profiles.write(u"Tela", u"Option", Text(400, u'x'), file);
    for (const auto& [capacity, length] :
         {std::pair{255U, 254U}, {2U, 1U}, {401U, 400U}, {1000U, 400U}})
        EXPECT_EQ(profiles.read(u"Tela", u"Option", u"", file, capacity), Text(length, u'x'));
}

TEST(RealProfiles, BareNameIsInTheWindowsFolder) {
    constexpr TextView name = u"MelvorinSelfTest.INI";
    Text windows(MAX_PATH + 1, u'\0');
    windows.resize(::GetWindowsDirectoryW(wideBuffer(windows), MAX_PATH));
    const Text path = joinPath(windows, name);
    Win32Files files;
    ASSERT_TRUE(files.remove(path));
    Win32ProfileFiles profiles;
    profiles.write(u"Recent Files", u"RecentFile1", u"C:\\\u03A9.mvt", name);
    EXPECT_EQ(profiles.read(u"Recent Files", u"RecentFile1", u"", name, 255), u"C:\\\u03A9.mvt");
    EXPECT_EQ(profiles.read(u"Recent Files", u"RecentFile1", u"", path, 255), u"C:\\\u03A9.mvt");
    EXPECT_TRUE(files.remove(path));
}

// ---- Registry, system parameters ---------------------------------------------------------------

// A key of the tests' own below the current user's hive, gone afterwards.
class ScratchKey {
  public:
    ScratchKey() { ::RegDeleteTreeW(HKEY_CURRENT_USER, wide(kName)); }
    ScratchKey(const ScratchKey&) = delete;
    ScratchKey& operator=(const ScratchKey&) = delete;
    ~ScratchKey() { ::RegDeleteTreeW(HKEY_CURRENT_USER, wide(kName)); }

    static Text path() { return kName; }
    static void set(const wchar_t* name, DWORD type, std::string_view bytes) {
        ::RegSetKeyValueW(HKEY_CURRENT_USER, wide(kName), name, type, bytes.data(),
                          static_cast<DWORD>(bytes.size()));
    }

  private:
    static constexpr const char16_t* kName = u"Software\\MelvorinSelfTest";
};

TEST(RealRegistry, StringsComeBackAndOtherTypesAreNothing) {
    const ScratchKey key;
    Win32SystemSettings system;
    EXPECT_EQ(system.registryString(key.path(), u"UseClearType"), std::nullopt);
    for (const TextView value : {u"yes", u"", u"Z:\\\u03A9 \u4E2D\u6587\\caf\u00E9", u"no"}) {
        system.setRegistryString(key.path(), u"UseClearType", value);
        EXPECT_EQ(system.registryString(key.path(), u"UseClearType"), Text(value));
    }
    EXPECT_EQ(system.registryString(key.path(), u"Other"), std::nullopt);

    struct Case {
        const wchar_t* name;
        DWORD type;
        std::string_view bytes;
        std::optional<Text> value;
    };
    constexpr std::string_view yes("y\0e\0s\0\0\0", 8);
    const Case cases[] = {
        {L"string", REG_SZ, yes, u"yes"},
        {L"no end", REG_SZ, yes.substr(0, 6), u"yes"},
        {L"no bytes", REG_SZ, {}, u""},
        {L"number", REG_DWORD, yes.substr(0, 4), std::nullopt},
        {L"bytes", REG_BINARY, yes, std::nullopt},
        {L"to be expanded", REG_EXPAND_SZ, yes, std::nullopt},
        {L"several", REG_MULTI_SZ, yes, std::nullopt},
    };
    for (const Case& c : cases) {
        key.set(c.name, c.type, c.bytes);
        EXPECT_EQ(system.registryString(key.path(), textOf(c.name)), c.value)
            << shown(textOf(c.name));
    }
    system.setRegistryString(key.path(), u"number", u"now text");
    EXPECT_EQ(system.registryString(key.path(), u"number"), u"now text");
}

TEST(RealRegistry, SettingsAreBelowTheApplicationsName) {
    const ScratchKey key;
    RegistrySettingsStore().write(u"MelvorinSelfTest", u"Paths", u"LastOpened", u"Z:\\Lieder");
    EXPECT_EQ(Win32SystemSettings().registryString(key.path() + u"\\Paths", u"LastOpened"),
              u"Z:\\Lieder");
}

TEST(RealSystem, FontSmoothingGoesBothWays) {
    Win32SystemSettings system;
    const bool former = system.fontSmoothing();
    for (const bool on : {false, true, false}) {
        EXPECT_TRUE(system.setFontSmoothing(on));
        EXPECT_EQ(system.fontSmoothing(), on);
        BOOL asked = !on;
        EXPECT_TRUE(::SystemParametersInfoW(SPI_GETFONTSMOOTHING, 0, &asked, 0));
        EXPECT_EQ(asked != FALSE, on);
    }
    system.setFontSmoothing(former);
}

// ---- Program folder ---------------------------------------------------------------------------

TEST(RealProgramFolder, FindsWhatIsHidden) {
    const ScratchFolder folder;
    Win32ProgramFolder program;
    EXPECT_FALSE(program.contains(folder.file(u"Melvorin.exe.manifest")));
    const Text path = folder.add(u"Melvorin.exe.manifest", "x");
    for (const DWORD attributes :
         {DWORD{FILE_ATTRIBUTE_NORMAL}, DWORD{FILE_ATTRIBUTE_HIDDEN},
          DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY}}) {
        ASSERT_TRUE(::SetFileAttributesW(wide(path), attributes));
        EXPECT_TRUE(program.contains(path)) << attributes;
    }
    EXPECT_TRUE(program.contains(joinPath(program.folder(), program.programFileName())));
    EXPECT_EQ(asciiLowerCase(program.programFileName()), u"ui_tests.exe");
}

TEST(RealProgramFolder, WritesAFileWithItsAttributesOnce) {
    const ScratchFolder folder;
    constexpr DWORD attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                 FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
    // What this disk can show of the four: some under Wine keep no hidden and system bits.
    const Text sample = folder.add(u"sample", "x");
    ASSERT_TRUE(::SetFileAttributesW(wide(sample), attributes));
    const DWORD shownHere = ::GetFileAttributesW(wide(sample));
    EXPECT_TRUE(shownHere & FILE_ATTRIBUTE_READONLY);

    const Text path = folder.file(u"Melvorin.exe.manifest");
    Win32ProgramFolder program;
    EXPECT_TRUE(program.writeWithAttributes(path, "<xml/>\r\n", 39));
    EXPECT_EQ(folder.content(u"Melvorin.exe.manifest"), "<xml/>\r\n");
    EXPECT_EQ(::GetFileAttributesW(wide(path)), shownHere);

    EXPECT_FALSE(program.writeWithAttributes(path, "another", 39));
    EXPECT_EQ(folder.content(u"Melvorin.exe.manifest"), "<xml/>\r\n");
    EXPECT_FALSE(program.writeWithAttributes(folder.file(u"none\\x.manifest"), "x", 39));
}

TEST(RealProgramFolder, TemplateIsTheOnlyCustomResource) {
    Win32ProgramFolder program;
    const auto found = program.resource(u"Custom", 101);
    ASSERT_TRUE(found.has_value());
    EXPECT_TRUE(found->starts_with("{\\rtf1")) << *found;
    EXPECT_EQ(program.resource(u"Custom", 102), std::nullopt);
    EXPECT_EQ(program.resource(u"NoSuchType", 101), std::nullopt);
}

// ---- Code page --------------------------------------------------------------------------------

TEST(RealCodePage, GivesBackWhatItTakesAndRefusesTheRest) {
    ASSERT_EQ(::GetACP(), kSampleCodePage) << "run the tests with LC_ALL=C.UTF-8";
    struct Case {
        TextView text;
        std::optional<std::string> bytes;
    };
    const Case cases[] = {
        {u"", ""},
        {u"C#m7(9)\r\n\t", "C#m7(9)\r\n\t"},
        {u"caf\u00E9 \u00B0", "caf\xE9 \xB0"},
        {u"\u20AC \u201Csinging\u201D \u2014 \u0152uvre", "\x80 \x93singing\x94 \x97 \x8Cuvre"},
        // Each of these has a look-alike ("A", "-", "'", "O") that must not be taken for it.
        {u"\u0100", std::nullopt},
        {u"\u2212", std::nullopt},
        {u"\u02B9", std::nullopt},
        {u"song \u03A9", std::nullopt},
        {u"\u266F\u266D", std::nullopt},
        {u"\u4E2D\u6587", std::nullopt},
        {u"\U0001F3B8", std::nullopt},
    };
    const AnsiCodec& codec = systemAnsiCodec();
    for (const Case& c : cases) {
        EXPECT_EQ(codec.encode(c.text), c.bytes) << shown(c.text);
        if (c.bytes) {
            EXPECT_EQ(codec.decode(*c.bytes), c.text);
        }
    }
    const char16_t half[] = {u'a', 0xD83C, u'b'};
    EXPECT_EQ(codec.encode({half, 3}), std::nullopt);
}

// Texts longer than one conversion call takes, with and without line ends to cut at.
TEST(RealCodePage, ConvertsLargeTextsInPieces) {
    ASSERT_EQ(::GetACP(), kSampleCodePage) << "run the tests with LC_ALL=C.UTF-8";
    constexpr std::size_t piece = 1u << 24;
    std::string bytes(piece + 1000, '\xE9');
    for (const std::size_t lineEnd : {std::size_t{0}, piece - 1, piece, piece + 999}) {
        std::string sample = bytes;
        sample[lineEnd] = '\n';
        const Text text = systemAnsiCodec().decode(sample);
        ASSERT_EQ(text.size(), sample.size());
        EXPECT_EQ(text[lineEnd], u'\n');
        EXPECT_EQ(text.find_first_not_of(u"\u00E9\n"), Text::npos);
        EXPECT_TRUE(systemAnsiCodec().encode(text) == sample);
    }
    Text unfit(piece + 1, u'x');
    unfit[piece - 1] = 0xD83C;
    unfit[piece] = 0xDFB8;
    EXPECT_EQ(systemAnsiCodec().encode(unfit), std::nullopt);
}

TEST(CodePages, ReadAndWriteTheSameOnEverySystem) {
    checkCodePages();
}

}  // namespace
}  // namespace melvorin::testing
