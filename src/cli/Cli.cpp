#include "cli/Cli.h"

#include <algorithm>
#include <utility>

#include "chords/Chart.h"
#include "chords/ChordProExport.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"
#include "cli/ChordReport.h"
#include "cli/CliArguments.h"
#include "find/TabExpansion.h"
#include "find/TextSearch.h"

namespace melvorin {

namespace {

constexpr std::string_view helpText =
    "melvorin-cli - chord charts in plain text, moved to another key\n"
    "\n"
    "  melvorin-cli transpose (--up | --down) [--steps N] (--sharps | --flats)\n"
    "                         [--output FILE | --output-dir DIR] [FILE...]\n"
    "  melvorin-cli lines [FILE]\n"
    "  melvorin-cli expand-tabs [FILE]\n"
    "  melvorin-cli replace --find TEXT --with TEXT [--word] [--case] [FILE]\n"
    "  melvorin-cli normalize [FILE]\n"
    "  melvorin-cli import [--verdicts] [FILE]\n"
    "  melvorin-cli export-chordpro [FILE]\n"
    "  melvorin-cli chord [--database FILE] (NAME... | --list)\n"
    "  melvorin-cli --help\n"
    "  melvorin-cli --version\n"
    "\n"
    "transpose moves the chords of every chord line N half steps (1 to 11, or 1\n"
    "without --steps) and keeps each chord in its column. Encoding, byte-order mark\n"
    "and line ends stay as they are.\n"
    "  --up, --down        the direction\n"
    "  --sharps, --flats   how new accidentals are written\n"
    "  --output FILE       write to FILE instead of the standard output\n"
    "  --output-dir DIR    write every file to DIR, under its own name; needed with\n"
    "                      more than one FILE. DIR must exist.\n"
    "\n"
    "lines prints a line for every line of the chart, in UTF-8: C for a chord line,\n"
    "L for a lyric line. Behind a C follow, each after a tab, the chords from left to\n"
    "right as column:chord; columns count from 0.\n"
    "\n"
    "import makes a chart of a song from the web: chords over lyrics, chords in\n"
    "brackets, ChordPro. With --verdicts a list comes first: for every line its\n"
    "number, what it was taken for and, where there is something to know, a remark,\n"
    "with tabs between them; then an empty line and the chart. export-chordpro writes\n"
    "a chart as a ChordPro song, whose import is the chart again.\n"
    "\n"
    "normalize writes the text with its chord suffixes in one spelling: C7M as C7+,\n"
    "A-7 as Am7, C/3 as C/E. It looks at every line, also at lyrics.\n"
    "\n"
    "expand-tabs turns every tab into blanks up to the next column that is a multiple\n"
    "of 8. replace replaces TEXT as the editor's Replace All does:\n"
    "  --word              only where neither a letter nor a digit stands beside it\n"
    "  --case              only with the same capitals\n"
    "They all write to the standard output.\n"
    "\n"
    "chord prints a line for every diagram of each chord, which is named by its symbol\n"
    "(C7) or by its name (C Seventh): symbol, name, number of the diagram font,\n"
    "character, frets and fingers from the low E string up, with tabs between. --list\n"
    "prints every row of the chord database, which lies in Dbase beside the tool, or\n"
    "is FILE.\n"
    "\n"
    "Without FILE the chart is read from the standard input. Text is UTF-8, UTF-16\n"
    "with a byte-order mark, or else in the ANSI code page of the machine. A file may\n"
    "be its own output. -- ends the options.\n"
    "\n"
    "Exit code: 0 done, 1 a file could not be read or written, 2 wrong arguments.\n";

using Command = CliRequest::Command;

// Why a text cannot be worked on, as a sentence; empty if it can.
TextView whyNotAChart(const DecodedText& decoded) {
    if (decoded.lossy) {
        return u"Its text is damaged or in an unknown encoding.";
    }
    // Counting is done many characters at a time, which searching is not.
    const auto zeros = std::count(decoded.text.begin(), decoded.text.end(), u'\0');
    return zeros == 0 ? u"" : u"It is not a text file.";
}

// Hands the text of a file to `take` in parts of whole lines, so that what is worked on stays small
// however large the file is. Ends with a failure where a part cannot be worked on, or where `take`
// returns false.
template <class Take>
Result<Done> forEachPart(std::string_view bytes, TextEncoding encoding, const AnsiCodec& ansi,
                         Take take) {
    // Small enough for the caches, large enough for the cost of a round not to count.
    constexpr std::size_t wanted = 1 << 15;
    bytes.remove_prefix(byteOrderMark(encoding).size());
    while (!bytes.empty()) {
        const std::size_t length = partLength(bytes, encoding, wanted);
        DecodedText part = decodePart(bytes.substr(0, length), encoding, ansi);
        if (const TextView trouble = whyNotAChart(part); !trouble.empty()) {
            return Result<Done>::failure(Text(trouble));
        }
        if (!take(std::move(part.text))) {
            return Result<Done>::failure(u"It does not fit its own encoding any more.");
        }
        bytes.remove_prefix(length);
    }
    return Result<Done>::success({});
}

void describeLines(TextView chart, std::string& report) {
    ChartReader reader(chart);
    ChartLine line;
    while (reader.next(line)) {
        report += line.isChordLine ? 'C' : 'L';
        for (const ChordToken& token : line.tokens) {
            report += '\t';
            report += std::to_string(token.column);
            report += ':';
            report += toUtf8(token.text);
        }
        report += '\n';
    }
}

// A song in, a chart out, with the list of verdicts in front where it is asked for.
Text importedChart(TextView song, bool verdicts) {
    const SongImport imported = importSong(song);
    Text text;
    for (std::size_t i = 0; verdicts && i < imported.source.size(); ++i) {
        const SourceLine& line = imported.source[i];
        text.append(decimal(static_cast<std::int64_t>(i + 1)))
            .append(u"\t")
            .append(nameOf(line.verdict));
        if (const Text remark = remarkText(line.remarks); !remark.empty())
            text.append(u"\t").append(remark);
        text += u'\n';
    }
    text.append(verdicts ? u"\n" : u"");
    return text.append(imported.chart());
}

// The bytes of a whole file rewritten in its own encoding.
Result<std::string> rewriteWhole(std::string_view bytes, const AnsiCodec& ansi,
                                 const std::function<Text(TextView)>& edit) {
    const DecodedText decoded = decodeText(bytes, ansi);
    if (const TextView trouble = whyNotAChart(decoded); !trouble.empty()) {
        return Result<std::string>::failure(Text(trouble));
    }
    std::optional<std::string> edited = encodeText(edit(decoded.text), decoded.encoding, ansi);
    return edited ? Result<std::string>::success(std::move(*edited))
                  : Result<std::string>::failure(u"It does not fit its own encoding any more.");
}

// One run of the tool, with its arguments understood.
class Run {
  public:
    Run(CliRequest request, Files& files, CliPorts& ports, const AnsiCodec& ansi)
        : request_(std::move(request)), files_(files), ports_(ports), ansi_(ansi) {}

    bool transposeAll();
    bool lines();
    bool expandTabs();
    bool replace();
    bool normalize();
    // The text in parts of whole lines, and as a whole.
    bool rewriteParts(const std::function<Text(Text)>& edit);
    bool rewriteSong(const std::function<Text(TextView)>& edit);
    bool import();
    bool chords();
    bool print(std::string_view bytes);

  private:
    template <class Rewrite>
    bool rewriteOne(Rewrite rewrite);
    bool transposeOne(const KeyChange& change, const Text* file);
    Result<std::string> read(const Text* file);
    bool write(const Text* file, std::string_view bytes);
    bool cannotRead(const Text* file, TextView cause);
    bool fail(TextView what, TextView name, TextView cause);

    CliRequest request_;
    Files& files_;
    CliPorts& ports_;
    const AnsiCodec& ansi_;
};

bool Run::transposeAll() {
    const KeyChange change(*request_.direction, *request_.spelling, request_.steps);
    if (request_.files.empty()) {
        return transposeOne(change, nullptr);
    }
    bool all = true;
    for (const Text& file : request_.files) {
        all = transposeOne(change, &file) && all;
    }
    return all;
}

// No `file` is the standard input, here and below.
bool Run::transposeOne(const KeyChange& change, const Text* file) {
    Result<std::string> chart = read(file);
    if (chart) {
        chart = transposeBytes(*chart.value, change, ansi_);
    }
    if (!chart) {
        return cannotRead(file, chart.cause);
    }
    return write(file, *chart.value);
}

bool Run::lines() {
    const Text* const file = request_.files.empty() ? nullptr : request_.files.data();
    const Result<std::string> bytes = read(file);
    if (!bytes) {
        return cannotRead(file, bytes.cause);
    }
    std::string report;
    const TextEncoding encoding = detectEncoding(*bytes.value);
    const Result<Done> described =
        forEachPart(*bytes.value, encoding, ansi_, [&report](const Text& part) {
            describeLines(part, report);
            return true;
        });
    return described ? print(report) : cannotRead(file, described.cause);
}

bool Run::expandTabs() {
    TabExpander expander;
    return rewriteParts([&](const Text& part) {
        Text expanded;
        expander.append(part, expanded);
        return expanded;
    });
}

bool Run::replace() {
    return rewriteSong([&](TextView chart) {
        GapText target(chart);
        replaceAll(target, *request_.find, *request_.with, request_.findOptions,
                   [] { return true; });
        return target.text();
    });
}

bool Run::normalize() {
    return rewriteParts([](const Text& part) { return normaliseSuffixes(part); });
}

// For the commands that write one text to the standard output.
template <class Rewrite>
bool Run::rewriteOne(Rewrite rewrite) {
    const Text* const file = request_.files.empty() ? nullptr : request_.files.data();
    Result<std::string> text = read(file);
    if (text) {
        text = rewrite(*text.value);
    }
    return text ? print(*text.value) : cannotRead(file, text.cause);
}

bool Run::rewriteParts(const std::function<Text(Text)>& edit) {
    return rewriteOne([&](std::string_view bytes) { return rewriteBytes(bytes, ansi_, edit); });
}

bool Run::rewriteSong(const std::function<Text(TextView)>& edit) {
    return rewriteOne([&](std::string_view bytes) { return rewriteWhole(bytes, ansi_, edit); });
}

bool Run::import() {
    return rewriteSong([this](TextView song) { return importedChart(song, request_.verdicts); });
}

bool Run::chords() {
    const Text path = request_.database.value_or(
        pathInFolder(pathInFolder(ports_.programFolder(), u"Dbase"), u"MlvDbase.db"));
    ChordReport book;
    if (const Result<Done> opened = book.open(path); !opened) {
        return fail(u"cannot read the chord database ", path, opened.cause);
    }
    std::string report;
    bool all = true;
    if (request_.list) {
        book.list(report);
    }
    for (const Text& chord : request_.files) {
        const Result<Done> described = book.describe(chord, report);
        all = (described || fail(u"cannot find the chord ", chord, described.cause)) && all;
    }
    return print(report) && all;
}

bool Run::cannotRead(const Text* file, TextView cause) {
    return fail(u"cannot read ", file ? TextView(*file) : u"the standard input", cause);
}

Result<std::string> Run::read(const Text* file) {
    return file ? files_.read(*file) : ports_.readInput();
}

bool Run::write(const Text* file, std::string_view bytes) {
    if (!request_.output && !request_.outputFolder) {
        return print(bytes);
    }
    const Text target =
        request_.output ? *request_.output : pathInFolder(*request_.outputFolder, *file);
    const Result<Done> written = files_.replace(target, bytes);
    return written ? true : fail(u"cannot write ", target, written.cause);
}

bool Run::print(std::string_view bytes) {
    const Result<Done> written = ports_.writeOutput(bytes);
    return written ? true : fail(u"cannot write ", u"the standard output", written.cause);
}

bool Run::fail(TextView what, TextView name, TextView cause) {
    Text message = u"melvorin-cli: ";
    message.append(what).append(name).append(u": ").append(cause).append(u"\n");
    ports_.writeError(message);
    return false;
}

}  // namespace

Result<std::string> rewriteBytes(std::string_view bytes, const AnsiCodec& ansi,
                                 const std::function<Text(Text)>& edit) {
    const TextEncoding encoding = detectEncoding(bytes);
    std::string result(byteOrderMark(encoding));
    result.reserve(bytes.size() + bytes.size() / 16);
    const Result<Done> rewritten = forEachPart(bytes, encoding, ansi, [&](Text part) {
        const std::optional<std::string> edited = encodePart(edit(std::move(part)), encoding, ansi);
        result += edited.value_or(std::string());
        return edited.has_value();
    });
    return rewritten ? Result<std::string>::success(std::move(result))
                     : Result<std::string>::failure(rewritten.cause);
}

Result<std::string> transposeBytes(std::string_view bytes, const KeyChange& change,
                                   const AnsiCodec& ansi) {
    return rewriteBytes(bytes, ansi,
                        [&change](const Text& part) { return transposeChart(part, change); });
}

int runCli(const std::vector<Text>& arguments, Files& files, CliPorts& ports,
           const AnsiCodec& ansi) {
    Result<CliRequest> request = parseCliArguments(arguments);
    if (!request) {
        ports.writeError(u"melvorin-cli: " + request.cause + u"\nTry \"melvorin-cli --help\".\n");
        return 2;
    }
    const Command command = request.value->command;
    Run run(std::move(*request.value), files, ports, ansi);
    bool done = false;
    switch (command) {
        case Command::Help:
            done = run.print(helpText);
            break;
        case Command::Version:
            done = run.print("melvorin-cli " MELVORIN_VERSION "\n");
            break;
        case Command::Transpose:
            done = run.transposeAll();
            break;
        case Command::Lines:
            done = run.lines();
            break;
        case Command::ExpandTabs:
            done = run.expandTabs();
            break;
        case Command::Replace:
            done = run.replace();
            break;
        case Command::Normalize:
            done = run.normalize();
            break;
        case Command::Import:
            done = run.import();
            break;
        case Command::ExportChordPro:
            done = run.rewriteSong(exportChordPro);
            break;
        case Command::Chord:
            done = run.chords();
            break;
    }
    return done ? 0 : 1;
}

}  // namespace melvorin
