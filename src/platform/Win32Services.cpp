#include "platform/Win32Services.h"

#include <commdlg.h>
#include <mmsystem.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>

#include "base/FileSize.h"
#include "base/Paths.h"
#include "platform/Handles.h"
#include "platform/SystemLibrary.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

// "name\0pattern\0...\0\0", as the file dialogs take filters.
Text filterList(const std::vector<FileFilter>& filters) {
    Text list;
    for (const FileFilter& filter : filters) {
        list.append(filter.name).push_back(u'\0');
        list.append(filter.pattern).push_back(u'\0');
    }
    list.push_back(u'\0');
    return list;
}

std::optional<FileChoice> runFileDialog(const FileDialogRequest& request, HWND owner, DWORD flags,
                                        decltype(&::GetOpenFileNameW) show) {
    const Text filters = filterList(request.filters);
    constexpr std::size_t capacity = 32768;
    Text path = request.fileName;
    path.resize(capacity);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = wide(filters);
    dialog.nFilterIndex = static_cast<DWORD>(request.filterIndex);
    dialog.lpstrFile = wideBuffer(path);
    dialog.nMaxFile = static_cast<DWORD>(capacity);
    dialog.lpstrInitialDir = request.initialFolder.empty() ? nullptr : wide(request.initialFolder);
    dialog.lpstrTitle = wide(request.title);
    dialog.Flags = flags | OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    if (!show(&dialog))
        return std::nullopt;
    path.resize(path.find(u'\0'));
    return FileChoice{path, static_cast<int>(dialog.nFilterIndex)};
}

UniqueRegistryKey openKey(TextView key, REGSAM access) {
    HKEY handle = nullptr;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, wide(Text(key)), 0, access, &handle);
    return UniqueRegistryKey(handle);
}

}  // namespace

Answer Win32MessageBoxes::show(TextView text, TextView title, MessageIcon icon,
                               MessageButtons buttons) {
    UINT type = buttons == MessageButtons::Ok      ? MB_OK
                : buttons == MessageButtons::YesNo ? MB_YESNO
                                                   : MB_YESNOCANCEL;
    switch (icon) {
        case MessageIcon::Critical:
            type |= MB_ICONERROR;
            break;
        case MessageIcon::Information:
            type |= MB_ICONINFORMATION;
            break;
        case MessageIcon::Question:
            type |= MB_ICONQUESTION;
            break;
        case MessageIcon::None:
            break;
    }
    const int answer =
        ::MessageBoxW(owner_.current(), wide(Text(text)), wide(Text(title)), type | MB_TASKMODAL);
    switch (answer) {
        case IDYES:
            return Answer::Yes;
        case IDNO:
            return Answer::No;
        case IDCANCEL:
            return Answer::Cancel;
        default:
            return Answer::Ok;
    }
}

std::optional<FileChoice> Win32FileDialogs::open(const FileDialogRequest& request) {
    // A name may be typed without its ending, so whoever asked looks whether the file exists.
    return runFileDialog(request, owner_.current(), 0, ::GetOpenFileNameW);
}

std::optional<FileChoice> Win32FileDialogs::save(const FileDialogRequest& request) {
    // The name gets another ending, so whoever asked asks about the file that will be written.
    return runFileDialog(request, owner_.current(), 0, ::GetSaveFileNameW);
}

Text Win32ProfileFiles::read(TextView section, TextView key, TextView fallback, TextView file,
                             std::uint32_t capacity) {
    Text value(capacity, u'\0');
    const DWORD length =
        ::GetPrivateProfileStringW(wide(Text(section)), wide(Text(key)), wide(Text(fallback)),
                                   wideBuffer(value), capacity, wide(Text(file)));
    value.resize(length);
    return value;
}

bool Win32ProfileFiles::write(TextView section, TextView key, TextView value, TextView file) {
    // A new file is begun as UTF-16, so that paths in any script survive; the profile functions
    // keep the encoding that they find.
    const bool isBare = folderPart(file).empty();
    Text path(file);
    if (isBare) {
        Text windows(MAX_PATH + 1, u'\0');
        windows.resize(::GetWindowsDirectoryW(wideBuffer(windows), MAX_PATH));
        path = joinPath(windows, file);
    }
    UniqueFile created(::CreateFileW(wide(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    if (created) {
        constexpr unsigned char mark[] = {0xFF, 0xFE};
        DWORD done = 0;
        ::WriteFile(created.get(), mark, sizeof mark, &done, nullptr);
    }
    created.close();
    // Some systems keep what they cannot write in memory and report success.
    const DWORD attributes = ::GetFileAttributesW(wide(path));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return false;
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE;
    UniqueFile probe(::CreateFileW(wide(path), GENERIC_WRITE, sharing, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!probe)
        return false;
    probe.close();
    return ::WritePrivateProfileStringW(wide(Text(section)), wide(Text(key)), wide(Text(value)),
                                        wide(Text(file))) != 0;
}

void RegistrySettingsStore::write(TextView application, TextView section, TextView key,
                                  TextView value) {
    const Text path = u"Software\\" + Text(application) + u"\\" + Text(section);
    Win32SystemSettings().setRegistryString(path, key, value);
}

bool Win32SystemSettings::setFontSmoothing(bool on) {
    return ::SystemParametersInfoW(SPI_SETFONTSMOOTHING, on ? TRUE : FALSE, nullptr,
                                   SPIF_UPDATEINIFILE | SPIF_SENDCHANGE) != 0;
}

bool Win32SystemSettings::fontSmoothing() {
    BOOL on = FALSE;
    ::SystemParametersInfoW(SPI_GETFONTSMOOTHING, 0, &on, 0);
    return on != FALSE;
}

std::optional<Text> Win32SystemSettings::registryString(TextView key, TextView name) {
    const UniqueRegistryKey opened = openKey(key, KEY_QUERY_VALUE);
    if (!opened)
        return std::nullopt;
    DWORD type = 0;
    DWORD size = 0;
    const Text valueName(name);
    if (::RegQueryValueExW(opened.get(), wide(valueName), nullptr, &type, nullptr, &size) !=
            ERROR_SUCCESS ||
        type != REG_SZ)
        return std::nullopt;
    Text value(size / sizeof(char16_t) + 1, u'\0');
    if (::RegQueryValueExW(opened.get(), wide(valueName), nullptr, nullptr,
                           reinterpret_cast<BYTE*>(value.data()), &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.resize(value.find(u'\0'));
    return value;
}

void Win32SystemSettings::setRegistryString(TextView key, TextView name, TextView value) {
    HKEY handle = nullptr;
    ::RegCreateKeyExW(HKEY_CURRENT_USER, wide(Text(key)), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                      &handle, nullptr);
    const UniqueRegistryKey created(handle);
    if (!created)
        return;
    const Text stored(value);
    ::RegSetValueExW(created.get(), wide(Text(name)), 0, REG_SZ,
                     reinterpret_cast<const BYTE*>(stored.c_str()),
                     static_cast<DWORD>((stored.size() + 1) * sizeof(char16_t)));
}

Text Win32SystemSettings::documentsFolder() {
    Text folder(MAX_PATH + 1, u'\0');
    if (FAILED(::SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT,
                                  wideBuffer(folder))))
        return {};
    folder.resize(folder.find(u'\0'));
    return folder;
}

void Win32SystemSettings::initCommonControls() {
    ::InitCommonControls();
}

namespace {

Text programPath() {
    Text path(32768, u'\0');
    path.resize(::GetModuleFileNameW(nullptr, wideBuffer(path), static_cast<DWORD>(path.size())));
    return path;
}

}  // namespace

Text Win32ProgramFolder::folder() {
    return Text(folderPart(programPath()));
}

Text Win32ProgramFolder::programFileName() {
    return Text(fileNamePart(programPath()));
}

bool Win32ProgramFolder::contains(TextView path) {
    WIN32_FIND_DATAW found{};
    return static_cast<bool>(UniqueSearch(Text(path), found));
}

bool Win32ProgramFolder::writeWithAttributes(TextView path, std::string_view bytes,
                                             std::uint32_t attributes) {
    const Text target(path);
    UniqueFile file(::CreateFileW(wide(target), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD done = 0;
    if (!file ||
        !::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr))
        return false;
    file.close();
    return ::SetFileAttributesW(wide(target), attributes) != 0;
}

std::optional<std::string> Win32ProgramFolder::resource(TextView type, int id) {
    const HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(id), wide(Text(type)));
    if (found == nullptr)
        return std::nullopt;
    const HGLOBAL loaded = ::LoadResource(nullptr, found);
    const void* const bytes = loaded != nullptr ? ::LockResource(loaded) : nullptr;
    if (bytes == nullptr)
        return std::nullopt;
    return std::string(static_cast<const char*>(bytes), ::SizeofResource(nullptr, found));
}

// ---- Clipboard --------------------------------------------------------------------------------

namespace {

UINT richTextFormat() {
    static const UINT format = ::RegisterClipboardFormatW(L"Rich Text Format");
    return format;
}

// Another program may have the clipboard open for a moment.
class OpenClipboardScope {
  public:
    OpenClipboardScope() {
        constexpr int attempts = 20;
        constexpr DWORD pauseMs = 10;
        for (int i = 0; i < attempts && !(isOpen_ = ::OpenClipboard(nullptr) != 0); ++i)
            ::Sleep(pauseMs);
    }
    OpenClipboardScope(const OpenClipboardScope&) = delete;
    OpenClipboardScope& operator=(const OpenClipboardScope&) = delete;
    ~OpenClipboardScope() {
        if (isOpen_)
            ::CloseClipboard();
    }
    explicit operator bool() const { return isOpen_; }

  private:
    bool isOpen_ = false;
};

const Text kClipboardIsTaken = u"Another program is using the clipboard.";

// The characters of a clipboard format up to the first NUL.
template <class Char>
Result<std::basic_string<Char>> clipboardData(UINT format, std::uint64_t limit) {
    using Data = std::basic_string<Char>;
    const OpenClipboardScope clipboard;
    if (!clipboard)
        return Failure{kClipboardIsTaken};
    const HANDLE data = ::GetClipboardData(format);
    const std::size_t bytes = data == nullptr ? 0 : ::GlobalSize(data);
    if (bytes > limit)
        return Failure{u"It is too large (" + sizeInWords(bytes) + u"); at most " +
                       sizeInWords(limit) + u" can be pasted at once."};
    const void* const start = data == nullptr ? nullptr : ::GlobalLock(data);
    if (start == nullptr)
        return Failure{u"It is no longer there."};
    const auto* const first = static_cast<const Char*>(start);
    const Char* const end = std::find(first, first + bytes / sizeof(Char), Char{});
    Data copy(first, end);
    ::GlobalUnlock(data);
    return Result<Data>::success(std::move(copy));
}

// Onto the clipboard, which is open, with a NUL behind.
template <class Char>
Result<Done> putData(UINT format, const std::basic_string<Char>& data) {
    const std::size_t size = data.size() + 1;
    const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, size * sizeof(Char));
    void* const place = memory == nullptr ? nullptr : ::GlobalLock(memory);
    if (place != nullptr) {
        std::copy_n(data.c_str(), size, static_cast<Char*>(place));
        ::GlobalUnlock(memory);
        // The system owns the memory from then on.
        if (::SetClipboardData(format, memory) != nullptr)
            return done();
    }
    ::GlobalFree(memory);
    return Failure{u"The clipboard does not take it."};
}

}  // namespace

bool Win32Clipboard::hasRichText() {
    return ::IsClipboardFormatAvailable(richTextFormat()) != 0;
}

bool Win32Clipboard::hasText() {
    return ::IsClipboardFormatAvailable(CF_UNICODETEXT) != 0;
}

Result<std::string> Win32Clipboard::richText(std::uint64_t limit) {
    return clipboardData<char>(richTextFormat(), limit);
}

Result<Text> Win32Clipboard::text(std::uint64_t limit) {
    return clipboardData<char16_t>(CF_UNICODETEXT, limit);
}

Result<Done> Win32Clipboard::put(const CrLfText& text) {
    const OpenClipboardScope clipboard;
    if (!clipboard || !::EmptyClipboard())
        return Failure{kClipboardIsTaken};
    return putData(CF_UNICODETEXT, text.chars);
}

Result<Done> Win32Clipboard::put(const CrLfText& text, const std::string& rtf) {
    const OpenClipboardScope clipboard;
    if (!clipboard || !::EmptyClipboard())
        return Failure{kClipboardIsTaken};
    const auto rich = putData(richTextFormat(), rtf);
    return rich ? putData(CF_UNICODETEXT, text.chars) : rich;
}

// ---- Shell ------------------------------------------------------------------------------------

namespace {

// The help viewer's commands.
constexpr UINT kDisplayTopic = 0;
constexpr UINT kCloseAll = 18;

// The viewer shows its pages by the system's HTML engine; without one its window stays empty.
bool showsPages() {
    constexpr CLSID document = {
        0x25336920, 0x03F9, 0x11CF, {0x8F, 0xDF, 0x00, 0xAA, 0x00, 0x68, 0x9D, 0xC9}};
    const HRESULT begun = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    IUnknown* engine = nullptr;
    const HRESULT made = ::CoCreateInstance(document, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                            reinterpret_cast<void**>(&engine));
    if (engine != nullptr)
        engine->Release();
    if (SUCCEEDED(begun))
        ::CoUninitialize();
    return SUCCEEDED(made);
}

}  // namespace

bool Win32ShellOpener::showHelp(TextView file, TextView page) {
    if (htmlHelp_ == nullptr && showsPages())
        htmlHelp_ = systemFunction<HtmlHelp>(L"hhctrl.ocx", "HtmlHelpW");
    return htmlHelp_ != nullptr &&
           htmlHelp_(nullptr, wide(Text(file) + u"::/" + Text(page)), kDisplayTopic, 0) != nullptr;
}

Win32ShellOpener::~Win32ShellOpener() {
    if (htmlHelp_ != nullptr)
        htmlHelp_(nullptr, nullptr, kCloseAll, 0);
}

Result<Done> Win32ShellOpener::open(TextView target) {
    const auto code = reinterpret_cast<INT_PTR>(
        ::ShellExecuteW(nullptr, L"open", wide(Text(target)), nullptr, nullptr, SW_SHOWNORMAL));
    if (code > 32)
        return done();
    if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND)
        return Failure{u"The file was not found."};
    return Failure{code == SE_ERR_NOASSOC ? u"No program is set up to show it."
                                          : u"Windows could not open it."};
}

ScreenSize Win32Screen::size() {
    return {::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
}

ScreenSize Win32Screen::workArea() {
    RECT area{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return {area.right - area.left, area.bottom - area.top};
}

namespace {

BOOL CALLBACK addMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM list) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (::GetMonitorInfoW(monitor, &info))
        reinterpret_cast<std::vector<Monitor>*>(list)->push_back(
            {areaOf(info.rcMonitor), areaOf(info.rcWork)});
    return TRUE;
}

}  // namespace

Monitor Win32Screen::monitorAfter(const Area& window) {
    const Monitor now = monitorOf(window);
    std::vector<Monitor> all;
    ::EnumDisplayMonitors(nullptr, nullptr, addMonitor, lparamOf(&all));
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].whole == now.whole)
            return all[(i + 1) % all.size()];
    }
    return now;
}

Monitor Win32Screen::monitorOf(const Area& window) {
    const RECT rectangle = rectOf(window);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    ::GetMonitorInfoW(::MonitorFromRect(&rectangle, MONITOR_DEFAULTTONEAREST), &info);
    return {areaOf(info.rcMonitor), areaOf(info.rcWork)};
}

void Win32Screen::keepOn(bool on) {
    ::SetThreadExecutionState(ES_CONTINUOUS | (on ? ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED : 0U));
}

std::int64_t Win32Clock::nowMs() {
    return static_cast<std::int64_t>(::GetTickCount64());
}

std::optional<Rgb> Win32ColorDialogs::choose(Rgb marked) {
    // The user's own colours last for the run.
    static COLORREF custom[16] = {
        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255),
        RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255), RGB(255, 255, 255)};
    CHOOSECOLORW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner_.current();
    dialog.rgbResult = RGB(marked.red, marked.green, marked.blue);
    dialog.lpCustColors = custom;
    dialog.Flags = CC_RGBINIT | CC_FULLOPEN;
    if (!::ChooseColorW(&dialog))
        return std::nullopt;
    return Rgb{GetRValue(dialog.rgbResult), GetGValue(dialog.rgbResult),
               GetBValue(dialog.rgbResult)};
}

// Loaded with the first sound: linked, it would be looked for beside the program.
constexpr const wchar_t* kMultimediaLibrary = L"winmm.dll";

void Win32Sounds::play(TextView path) {
    // Of a file that is missing the system would make its own sound.
    const Text file(path);
    static const auto playSound =
        systemFunction<decltype(&::PlaySoundW)>(kMultimediaLibrary, "PlaySoundW");
    if (playSound != nullptr && ::GetFileAttributesW(wide(file)) != INVALID_FILE_ATTRIBUTES)
        playSound(wide(file), nullptr, SND_FILENAME | SND_ASYNC);
}

std::uint32_t Win32Multimedia::send(TextView command) {
    static const auto sendString =
        systemFunction<decltype(&::mciSendStringW)>(kMultimediaLibrary, "mciSendStringW");
    return sendString == nullptr ? MCIERR_DRIVER
                                 : sendString(wide(Text(command)), nullptr, 0, nullptr);
}

}  // namespace melvorin
