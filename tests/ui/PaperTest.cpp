// Songs on paper: the real windows, a real printer's driver, and readers that are not ours.
#include <winspool.h>

#include <cmath>
#include <map>
#include <regex>

#include "Controls.h"
#include "paper/PagePainter.h"
#include "paper/PaperDesk.h"
#include "paper/PdfWriter.h"
#include "paper/PrintJob.h"
#include "paper/frmPageSetup.h"
#include "paper/frmPreview.h"
#include "platform/Bitmaps.h"
#include "platform/DiagramFonts.h"

namespace melvorin::testing {
namespace {

constexpr double kPixel = 72.0 / 96;  // in points

// Words in two proportional faces and one that is not, a diagram, a colour.
constexpr char kSong[] =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset0 Liberation Mono;}"
    "{\\f1\\fnil\\fcharset0 Melvorin 05;}{\\f2\\fswiss\\fcharset0 Liberation Sans;}"
    "{\\f3\\fswiss\\fcharset0 DejaVu Sans;}}"
    "{\\colortbl ;\\red200\\green0\\blue0;}\\pard\\f0\\fs20 Meadow Lane\\par\\par\n"
    "[Verse]\\par \\cf1 G        D7/F#     Em\\cf0\\par Down the green old caf\\'e9 lane\\par\n"
    "\\cf1 C    G   {\\f1\\fs60 a}\\cf0\\par rain and \\b bright \\b0\\i again\\i0\\par\\par\n"
    "{\\f2\\fs28 Wide AVATAR and To\\par}\\par e|--3--5---|\\par B|---------|\\par\\par\n"
    "\\ul under\\ulnone  the line {\\f3\\i slanted}}";

// A PostScript printer as the system has them, one for all tests: a driver that was just added is
// not taken again.
class PostScriptPrinter {
  public:
    static const PostScriptPrinter& only() {
        static const PostScriptPrinter printer;
        return printer;
    }
    PostScriptPrinter(const PostScriptPrinter&) = delete;
    PostScriptPrinter& operator=(const PostScriptPrinter&) = delete;
    bool isThere() const { return printer_ != nullptr; }
    const Text& name() const { return name_; }
    PrintChoice choice(const Text& output) const {
        return {.printer = name_, .settings = {}, .from = 1, .to = 999, .output = output};
    }

  private:
    PostScriptPrinter() {
        Text description = folder_.add(
            u"test.ppd",
            "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
            "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"T.PPD\"\n"
            "*Manufacturer: \"None\"\n*Product: \"(None)\"\n*PSVersion: \"(3010.000) 0\"\n"
            "*ModelName: \"Paper of tests\"\n*ShortNickName: \"Paper of tests\"\n"
            "*NickName: \"Paper of tests\"\n*LanguageLevel: \"3\"\n*ColorDevice: True\n"
            "*DefaultColorSpace: RGB\n*TTRasterizer: Type42\n*DefaultResolution: 600dpi\n"
            "*OpenUI *PageSize/Size: PickOne\n*DefaultPageSize: A4\n"
            "*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n"
            "*PageSize Letter/Letter: \"<</PageSize[612 792]>>setpagedevice\"\n"
            "*CloseUI: *PageSize\n*DefaultImageableArea: A4\n"
            "*ImageableArea A4/A4: \"18 18 577 824\"\n"
            "*ImageableArea Letter/Letter: \"18 18 594 774\"\n*DefaultPaperDimension: A4\n"
            "*PaperDimension A4/A4: \"595 842\"\n*PaperDimension Letter/Letter: \"612 792\"\n");
        Text driverName = u"Melvorin test driver";
        Text driverFile = u"wineps.drv";
        Text environment = sizeof(void*) == 8 ? u"Windows x64" : u"Windows NT x86";
        Text raw = u"RAW";
        DRIVER_INFO_3W driver{};
        driver.cVersion = 3;
        driver.pName = wideBuffer(driverName);
        driver.pEnvironment = wideBuffer(environment);
        driver.pDriverPath = wideBuffer(driverFile);
        driver.pDataFile = wideBuffer(description);
        driver.pConfigFile = wideBuffer(driverFile);
        driver.pDefaultDataType = wideBuffer(raw);
        constexpr DWORD flags = APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY;
        ::AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver), flags);
        Text port = u"FILE:";
        Text processor = u"WinPrint";
        PRINTER_INFO_2W printer{};
        printer.pPrinterName = wideBuffer(name_);
        printer.pPortName = wideBuffer(port);
        printer.pDriverName = wideBuffer(driverName);
        printer.pPrintProcessor = wideBuffer(processor);
        printer.pDatatype = wideBuffer(raw);
        printer_ = ::AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
        // One that a run left that did not come to its end.
        if (printer_ == nullptr && !::OpenPrinterW(wideBuffer(name_), &printer_, nullptr))
            printer_ = nullptr;
    }
    ~PostScriptPrinter() {
        if (printer_ != nullptr) {
            ::DeletePrinter(printer_);
            ::ClosePrinter(printer_);
        }
    }

    ScratchFolder folder_;
    Text name_ = u"Melvorin test printer";
    HANDLE printer_ = nullptr;
};

std::string unixPath(const Text& path) {
    using Convert = char*(CDECL*)(const wchar_t*);
    const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (convert == nullptr)
        throw std::runtime_error("not under Wine");
    char* const found = convert(wide(path));
    const std::string result = found == nullptr ? "" : found;
    ::HeapFree(::GetProcessHeap(), 0, found);
    return result;
}

// Runs a program of the machine below. From a process of its own: one that has started such a
// program prints no more. Its end is not waited for.
void runNative(const std::string& program, const std::string& arguments) {
    Text line = fromUtf8("start.exe /unix /usr/bin/" + program + " " + arguments);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(::CreateProcessW(nullptr, wideBuffer(line), nullptr, nullptr, FALSE, 0, nullptr,
                                 nullptr, &start, &process))
        << program << ' ' << ::GetLastError();
    ::WaitForSingleObject(process.hProcess, 60'000);
    ::CloseHandle(process.hProcess);
    ::CloseHandle(process.hThread);
}

struct Word {
    std::string text;
    double left;
    double right;
};

std::vector<Word> wordsOfPdf(const ScratchFolder& folder, TextView pdf) {
    const Text list = folder.file(Text(pdf) + u".list");
    folder.add(Text(pdf) + u".list", "");
    runNative("pdftotext",
              "-bbox \"" + unixPath(folder.file(pdf)) + "\" \"" + unixPath(list) + "\"");
    std::string text;
    // A program of the machine below is not waited for as others are.
    for (int i = 0; i < 600 && text.find("</html>") == std::string::npos; ++i) {
        ::Sleep(i > 0 ? 50 : 0);
        text = folder.content(Text(pdf) + u".list");
    }
    std::vector<Word> words;
    const std::regex row(
        "<word xMin=\"([0-9.]+)\" yMin=\"[0-9.]+\" xMax=\"([0-9.]+)\"[^>]*>([^<]*)<");
    // The driver names a hyphen by its other name.
    for (std::size_t at; (at = text.find("\u00AD")) != std::string::npos;)
        text.replace(at, 2, "-");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), row);
         it != std::sregex_iterator(); ++it)
        words.push_back({(*it)[3], std::stod((*it)[1]), std::stod((*it)[2])});
    return words;
}

// The dark rectangle in part of a picture, in pixels; empty where all is white.
struct Ink {
    int left = INT_MAX;
    int right = -1;
    int top = INT_MAX;
};
class Picture {
  public:
    Picture(int width, int height, std::vector<std::uint8_t> grey)
        : width_(width), height_(height), grey_(std::move(grey)) {}
    Ink inkIn(int left, int top, int right, int bottom) const {
        Ink ink;
        for (int y = std::max(top, 0); y < std::min(bottom, height_); ++y) {
            for (int x = std::max(left, 0); x < std::min(right, width_); ++x) {
                if (grey_[static_cast<std::size_t>(y * width_ + x)] < 160) {
                    ink.left = std::min(ink.left, x);
                    ink.right = std::max(ink.right, x);
                    ink.top = std::min(ink.top, y);
                }
            }
        }
        return ink;
    }

  private:
    int width_;
    int height_;
    std::vector<std::uint8_t> grey_;
};

// Of a run of text, at so many pixels per point.
Ink inkOf(const Picture& picture, const PlacedRun& run, double scale) {
    const auto at = [&](double points) { return static_cast<int>(points * scale); };
    return picture.inkIn(at(run.x) - 2, at(run.y - run.size), at(run.x + run.width) + 3,
                         at(run.y + run.size / 2));
}

Picture pictureOfBitmap(HBITMAP bitmap, int width, int height) {
    BITMAPINFO info = topDownInfo(width, height);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
    const WindowDc screen(nullptr);
    ::GetDIBits(screen.get(), bitmap, 0, static_cast<UINT>(height), pixels.data(), &info,
                DIB_RGB_COLORS);
    std::vector<std::uint8_t> grey;
    grey.reserve(pixels.size());
    for (const std::uint32_t pixel : pixels)
        grey.push_back(static_cast<std::uint8_t>(
            ((pixel & 0xFF) + (pixel >> 8 & 0xFF) + (pixel >> 16 & 0xFF)) / 3));
    return {width, height, std::move(grey)};
}

// What poppler paints of a page, in shades of grey.
Picture pictureOfPdf(const ScratchFolder& folder, TextView pdf) {
    folder.add(u"page.pgm", "");
    runNative("pdftoppm", "-gray -r 96 -singlefile \"" + unixPath(folder.file(pdf)) + "\" \"" +
                              unixPath(folder.file(u"")) + "/page\"");
    std::string bytes;
    int width = 0;
    int height = 0;
    int used = 0;
    for (int i = 0; i < 600; ++i) {
        ::Sleep(i > 0 ? 50 : 0);
        bytes = folder.content(u"page.pgm");
        if (std::sscanf(bytes.c_str(), "P5 %d %d 255%n", &width, &height, &used) == 2 &&
            bytes.size() == static_cast<std::size_t>(used + 1 + width * height))
            break;
    }
    return {width, height, std::vector<std::uint8_t>(bytes.begin() + used + 1, bytes.end())};
}

PaperSource sourceOfSong() {
    return {
        paperSongOfRtf(kSong, {.face = u"Liberation Mono", .points = 10}, u"song"), {}, u"song"};
}

TEST(Paper, PrintsWhatThePdfShows) {
    const ScratchFolder folder;
    const PostScriptPrinter& printer = PostScriptPrinter::only();
    ASSERT_TRUE(printer.isThere());
    Program program;
    program.program.programFolder = Win32ProgramFolder().folder();
    ASSERT_TRUE(program.start(folder.add(u"song.rtf", kSong)));
    const std::string before = program.text();
    const std::int16_t steps = program.history().count();
    program.editor().select({0, 3});  // what is selected does not count

    program.dialogs.choose(FileChoice{folder.file(u"song"), 1});
    program.command(Command::mnuSavePdf);
    EXPECT_EQ(shown(program.form->statusLine().message()), "Saved as song.pdf");
    EXPECT_EQ(folder.content(u"song.pdf").substr(0, 5), "%PDF-");

    const Text output = folder.file(u"print.ps");
    program.printers.answer = Result<std::optional<PrintChoice>>::success(printer.choice(output));
    program.command(Command::mnuPrint);
    EXPECT_EQ(program.messages.boxes.size(), 0U) << program.messages.boxes[0].text;
    ASSERT_EQ(program.printers.requests.size(), 1U);
    EXPECT_EQ(program.printers.requests[0].pages, 1U);
    EXPECT_EQ(shown(program.form->statusLine().message()),
              "Printed 1 page on " + shown(printer.name()));
    EXPECT_EQ(program.text(), before);
    EXPECT_EQ(program.editor().selection(), (Selection{0, 3}));
    EXPECT_EQ(program.history().count(), steps) << "no step of Undo";

    folder.add(u"print.pdf", "");
    runNative("ps2pdf",
              "\"" + unixPath(output) + "\" \"" + unixPath(folder.file(u"print.pdf")) + "\"");
    program.waitUntil(
        [&] { return folder.content(u"print.pdf").find("%%EOF") != std::string::npos; });
    const std::vector<Word> pdf = wordsOfPdf(folder, u"song.pdf");
    const std::vector<Word> printed = wordsOfPdf(folder, u"print.pdf");
    EXPECT_GE(printed.size(), 20U);
    // Diagrams are pictures on a printer.
    std::size_t compared = 0;
    for (const Word& word : printed) {
        const auto same = std::find_if(pdf.begin(), pdf.end(), [&](const Word& other) {
            return other.text == word.text && std::abs(other.left - word.left) < 2;
        });
        ASSERT_NE(same, pdf.end()) << word.text << " at " << word.left;
        EXPECT_NEAR(same->left, word.left, kPixel) << word.text;
        EXPECT_NEAR(same->right, word.right, kPixel) << word.text;
        ++compared;
    }
    EXPECT_GE(compared + 1, pdf.size());
    SystemFonts fonts(FontUse::Measures);
    ASSERT_TRUE(fonts.isReady());
    const LaidPaper laid =
        PaperDesk(program.services, {}).layOut(sourceOfSong(), setupOf({}), fonts);
    const Picture shownPage = pictureOfPdf(folder, u"song.pdf");
    const Picture printedPage = pictureOfPdf(folder, u"print.pdf");
    std::size_t diagrams = 0;
    for (const PlacedRun& run : laid.document.pages[0].runs) {
        diagrams += run.isDiagram ? 1U : 0U;
        const Ink a = inkOf(shownPage, run, 96.0 / 72);
        const Ink b = inkOf(printedPage, run, 96.0 / 72);
        ASSERT_GE(b.right, 0) << shown(run.text) << " does not print";
        EXPECT_NEAR(a.left, b.left, 1) << shown(run.text);
        EXPECT_NEAR(a.right, b.right, 1) << shown(run.text);
        EXPECT_NEAR(a.top, b.top, 1) << shown(run.text);
    }
    EXPECT_EQ(diagrams, 1U);
}

TEST(Paper, PrintsThePagesThatAreChosenOrNone) {
    using Order = std::vector<std::size_t>;
    const auto order = [](unsigned from, unsigned to, unsigned copies, bool collates) {
        return printOrder({.printer = {},
                           .settings = {},
                           .from = from,
                           .to = to,
                           .copies = copies,
                           .collates = collates,
                           .output = {}},
                          3);
    };
    EXPECT_EQ(order(1, 9, 1, true), (Order{0, 1, 2}));
    EXPECT_EQ(order(2, 3, 2, true), (Order{1, 2, 1, 2}));
    EXPECT_EQ(order(2, 3, 2, false), (Order{1, 1, 2, 2}));
    EXPECT_EQ(order(4, 9, 2, false), Order());
    EXPECT_EQ(order(3, 2, 1, true), Order());

    const ScratchFolder folder;
    const PostScriptPrinter& printer = PostScriptPrinter::only();
    ASSERT_TRUE(printer.isThere());
    std::string song = "Long song\r\n\r\n";
    for (int i = 0; i < 400; ++i)
        song += "C      G\r\nwords of the song\r\n\r\n";
    Program program(folder.add(u"song.txt", song));
    PrintChoice choice = printer.choice(folder.file(u"some.ps"));
    choice.from = choice.to = 2;
    program.printers.answer = Result<std::optional<PrintChoice>>::success(choice);
    program.command(Command::mnuPrint);
    for (const ShownMessage& box : program.messages.boxes)
        ADD_FAILURE() << box.text;
    EXPECT_EQ(shown(program.form->statusLine().message()),
              "Printed 1 page on " + shown(printer.name()));
    EXPECT_NE(folder.content(u"some.ps").find("%%Pages: 1"), std::string::npos);

    choice = printer.choice(folder.file(u"none.ps"));
    program.printers.answer = Result<std::optional<PrintChoice>>::success(choice);
    const WhileOpen window(L"MelvorinfrmPrinting",
                           [](HWND form) { ::SendMessageW(form, WM_COMMAND, IDCANCEL, 0); });
    program.command(Command::mnuPrint);
    EXPECT_EQ(window.seen(), 1);
    EXPECT_EQ(shown(program.form->statusLine().message()), "Printing was called off");
    EXPECT_TRUE(program.messages.boxes.empty());
}

TEST(Paper, ShowsInThePreviewWhatThePdfShows) {
    const ScratchFolder folder;
    const Program program;
    DiagramFonts diagrams;
    ASSERT_GT(diagrams.load(Win32ProgramFolder().folder()), 0U);
    const PaperSource source = sourceOfSong();
    const PaperDesk desk(program.services, {});
    PageSetup setup = setupOf({});
    SystemFonts fonts(FontUse::Documents);
    ASSERT_TRUE(fonts.isReady());
    const LaidPaper laid = desk.layOut(source, setup, fonts);
    EXPECT_EQ(shown(paperNotes(laid, fonts)), "");
    const auto bytes = writePdf(laid.document, fonts.shelf());
    ASSERT_TRUE(bytes);
    folder.add(u"song.pdf", *bytes.value);
    const ScreenSize size{794, 1123};
    const UniqueBitmap bitmap = pictureOf(laid.document.pages[0], setup.paper, size, fonts);
    ASSERT_TRUE(bitmap);
    const Picture own = pictureOfBitmap(bitmap.get(), size.width, size.height);
    // The same in half the size is drawn in another way.
    const UniqueBitmap half = pictureOf(laid.document.pages[0], setup.paper, {397, 561}, fonts);
    const Picture small = pictureOfBitmap(half.get(), 397, 561);
    const Picture other = pictureOfPdf(folder, u"song.pdf");
    std::size_t compared = 0;
    for (const PlacedRun& run : laid.document.pages[0].runs) {
        constexpr double scale = 96.0 / 72;
        const Ink a = inkOf(own, run, scale);
        const Ink b = inkOf(other, run, scale);
        const Ink c = inkOf(small, run, scale / 2);
        ASSERT_GE(a.right, 0) << shown(run.text) << " is not to be seen";
        ASSERT_GE(b.right, 0) << shown(run.text);
        EXPECT_NEAR(a.left, b.left, 1) << shown(run.text);
        EXPECT_NEAR(a.right, b.right, 1) << shown(run.text);
        EXPECT_NEAR(a.top, b.top, 1) << shown(run.text);
        EXPECT_NEAR(c.left * 2, b.left, 3) << shown(run.text);
        ++compared;
    }
    EXPECT_GE(compared, 25U);
}

TEST(Paper, TellsWhatDoesNotWork) {
    const ScratchFolder folder;
    Program program(kNoSong);
    program.command(Command::mnuSelectAll);
    program.command(Command::mnuEditDelete);
    for (const Command command : {Command::mnuPrint, Command::mnuPreview, Command::mnuSavePdf}) {
        program.messages.boxes.clear();
        program.command(command);
        expectOneBox(program, "There is no song to ");
    }
    EXPECT_TRUE(program.dialogs.requests.empty());
    program.type(u"la");

    program.messages.boxes.clear();
    program.command(Command::mnuPrint);
    expectOneBox(program, "There is no printer.");

    PrintChoice nowhere;
    nowhere.printer = u"No such printer";
    nowhere.to = 9;
    program.printers.answer = Result<std::optional<PrintChoice>>::success(nowhere);
    program.messages.boxes.clear();
    program.command(Command::mnuPrint);
    expectOneBox(program, "The printer \"No such printer\" cannot be reached.");

    program.printers.answer = Result<std::optional<PrintChoice>>::success(std::nullopt);
    program.messages.boxes.clear();
    program.command(Command::mnuPrint);  // called off in the dialog
    EXPECT_TRUE(program.messages.boxes.empty());

    const Text target = folder.add(u"kept.pdf", "another one");
    program.dialogs.choose(FileChoice{target, 1});
    program.messages.answer(Answer::Yes);
    program.files.diskFull = true;
    program.command(Command::mnuSavePdf);
    ASSERT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_NE(program.messages.boxes[1].text.find("The disk is full."), std::string::npos);
    EXPECT_EQ(folder.content(u"kept.pdf"), "another one");
    program.files.diskFull = false;
    // Letters from right to left are named, with the line, and the PDF is there all the same.
    program.type(u"\u05D0");
    program.messages.boxes.clear();
    program.dialogs.choose(FileChoice{folder.file(u"new.pdf"), 1});
    program.command(Command::mnuSavePdf);
    expectOneBox(program, "No font has U+05D0 (line 1).");
    EXPECT_EQ(folder.content(u"new.pdf").substr(0, 5), "%PDF-");
}

TEST(Paper, KeepsTheChoicesOfThePage) {
    Program program(kNoSong);
    const auto mark = [](HWND window, int id, int row) {
        const HWND box = ::GetDlgItem(window, id);
        ::SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
        notify(box, CBN_SELCHANGE);
    };
    {
        const WhileOpen window(L"MelvorinfrmPageSetup", [&](HWND form) {
            mark(form, frmPageSetup::kPaper, 1);
            clickOn(::GetDlgItem(form, frmPageSetup::kFit));
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(form, frmPageSetup::kMost)));
            clickOn(::GetDlgItem(form, frmPageSetup::kDiagrams));
            clickOn(::GetDlgItem(form, IDOK));
        });
        program.command(Command::mnuPageSetup);
        EXPECT_EQ(window.seen(), 1);
    }
    PageChoices kept = pageChoices(program.services);
    EXPECT_EQ(kept.paper, PaperName::A5);
    EXPECT_FALSE(kept.fit);
    EXPECT_TRUE(kept.diagrams);
    {
        const WhileOpen window(L"MelvorinfrmPageSetup", [&](HWND form) {
            clickOn(::GetDlgItem(form, frmPageSetup::kFit));
            // The smallest list's last is 12 points, the largest list's first 9.
            mark(form, frmPageSetup::kLeast, 6);
            mark(form, frmPageSetup::kMost, 0);
            EXPECT_EQ(captionOf(::GetDlgItem(form, frmPageSetup::kLeast)), "9 pt");
            clickOn(::GetDlgItem(form, IDCANCEL));
        });
        program.command(Command::mnuPageSetup);
    }
    EXPECT_EQ(pageChoices(program.services), kept) << "Cancel changes nothing";
    // What cannot be stored holds for this run, and that is said once.
    program.profiles.writable = false;
    for (const int paper : {2, 3}) {
        const WhileOpen window(L"MelvorinfrmPageSetup", [&](HWND form) {
            mark(form, frmPageSetup::kPaper, paper);
            clickOn(::GetDlgItem(form, IDOK));
        });
        program.command(Command::mnuPageSetup);
    }
    expectOneBox(program, "cannot be written");
    program.editor().loadPlain({u"C\rla"}, u"Liberation Mono", 10);
    program.command(Command::mnuPrint);
    ASSERT_EQ(program.printers.requests.size(), 1U);
    EXPECT_EQ(program.printers.requests[0].paper, PaperName::Legal);
}

TEST(Paper, PreviewFollowsTheChoicesAndTheKeys) {
    const ScratchFolder folder;
    std::string song = "Long song\r\n\r\n";
    for (int i = 0; i < 150; ++i)
        song += "C      G\r\nwords of the song\r\n\r\n";
    Program program(folder.add(u"song.txt", song));
    const WhileOpen window(L"MelvorinfrmPreview", [&](HWND form) {
        const auto said = [&] { return captionOf(::GetDlgItem(form, frmPreview::kSaid)); };
        const HWND pages = ::GetDlgItem(form, frmPreview::kPages);
        EXPECT_EQ(::GetFocus(), pages);
        EXPECT_EQ(said(), "Page 1 of 4, set in 9 points, in 2 columns");
        clickOn(::GetDlgItem(form, frmPreview::kFit));
        const std::string whole = said();
        EXPECT_EQ(whole, "Page 1 of 4, set in 10 points, in 2 columns");
        ::SendMessageW(pages, WM_KEYDOWN, VK_NEXT, 1);
        EXPECT_EQ(said().substr(0, 11), "Page 2 of 4");
        ::SendMessageW(pages, WM_KEYDOWN, VK_END, 1);
        EXPECT_EQ(said().substr(0, 11), "Page 4 of 4");
        ::SendMessageW(form, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
        EXPECT_EQ(said().substr(0, 11), "Page 3 of 4");
        // Another size keeps the page; the list is reached by the access key of its label.
        MSG key{pages, WM_SYSCHAR, u'w', 0x20000001, 0, {}};
        EXPECT_TRUE(Form::translateAny(key));
        EXPECT_EQ(::GetFocus(), ::GetDlgItem(form, frmPreview::kView));
        const HWND view = ::GetDlgItem(form, frmPreview::kView);
        ::SendMessageW(view, CB_SETCURSEL, 6, 0);
        notify(view, CBN_SELCHANGE);
        EXPECT_EQ(said().substr(0, 11), "Page 3 of 4");
        ::SendMessageW(pages, WM_KEYDOWN, VK_HOME, 1);
        ::SendMessageW(pages, WM_KEYDOWN, VK_NEXT, 1);
        EXPECT_EQ(said().substr(0, 11), "Page 1 of 4") << "a large page is walked through";
        clickOn(::GetDlgItem(form, frmPreview::kClose));
    });
    program.command(Command::mnuPreview);
    EXPECT_EQ(window.seen(), 1);
    EXPECT_FALSE(pageChoices(program.services).fit) << "kept at once";
}

}  // namespace
}  // namespace melvorin::testing
