#include "cli/Cli.h"

#include <algorithm>
#include <utility>

#include "base/Paths.h"
#include "base/TabExpansion.h"
#include "chords/Chart.h"
#include "chords/ChordProExport.h"
#include "chords/KeyGoal.h"
#include "chords/KeySpelling.h"
#include "chords/LeftOver.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"
#include "cli/CapoReport.h"
#include "cli/ChordReport.h"
#include "cli/CliArguments.h"
#include "cli/CliHelp.h"
#include "cli/PdfCommand.h"
#include "dictionary/BookGrips.h"
#include "find/TextSearch.h"

namespace melvorin {

namespace {

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

constexpr TextView kDoesNotFit =
    u"In the encoding of the text there is no place for a new character.";

// How the bytes of a text are read, and written again.
struct Coding {
    TextEncoding encoding;
    const AnsiCodec& codec;
    std::string_view mark;     // at the start of the text, not part of it
    std::string_view newMark;  // at the start of what is written
};

Result<Coding> codingOf(std::string_view bytes, const AnsiCodec& ansi, const NamedEncoding* named) {
    const TextEncoding found = detectEncoding(bytes);
    const std::string_view mark = byteOrderMark(found);
    if (named == nullptr) {
        return Result<Coding>::success({found, ansi, mark, mark});
    }
    const bool isUtf8 = named->encoding == TextEncoding::Utf8;
    const std::string_view ownMark =
        byteOrderMark(isUtf8 ? TextEncoding::Utf8WithBom : named->encoding);
    // A code page has letters that look like a mark.
    if (named->encoding != TextEncoding::Ansi && !mark.empty() && mark != ownMark) {
        return Failure{u"Its byte-order mark is that of another encoding."};
    }
    const std::string_view kept = named->encoding == TextEncoding::Ansi ? "" : mark;
    return Result<Coding>::success({named->encoding, named->codec ? *named->codec : ansi, kept,
                                    named->wantsMark ? ownMark : kept});
}

// Hands the text of a file to `take` in parts of whole lines, so that what is worked on stays small
// however large the file is. Ends with a failure where a part cannot be worked on, or where `take`
// returns false.
template <class Take>
Result<Done> forEachPart(std::string_view bytes, const Coding& coding, Take take) {
    // Small enough for the caches, large enough for the cost of a round not to count.
    constexpr std::size_t wanted = 1 << 15;
    bytes.remove_prefix(coding.mark.size());
    while (!bytes.empty()) {
        const std::size_t length = partLength(bytes, coding.encoding, wanted);
        DecodedText part = decodePart(bytes.substr(0, length), coding.encoding, coding.codec);
        if (const TextView trouble = whyNotAChart(part); !trouble.empty()) {
            return Failure{Text(trouble)};
        }
        if (!take(std::move(part.text))) {
            return Failure{Text(kDoesNotFit)};
        }
        bytes.remove_prefix(length);
    }
    return done();
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
Text importedChart(TextView song, bool verdicts, const ImportOptions& options) {
    const SongImport imported = importSong(song, {}, options);
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
                                 const NamedEncoding* named,
                                 const std::function<Text(TextView)>& edit) {
    const Result<Coding> coding = codingOf(bytes, ansi, named);
    if (!coding) {
        return Failure{coding.cause};
    }
    const Result<Text> text = textOfBytes(bytes, ansi, named);
    if (!text) {
        return Failure{text.cause};
    }
    const auto& [encoding, codec, mark, newMark] = *coding.value;
    const std::optional<std::string> edited = encodePart(edit(*text.value), encoding, codec);
    return edited ? Result<std::string>::success(std::string(newMark) + *edited)
                  : Result<std::string>::failure(Text(kDoesNotFit));
}

// One run of the tool, with its arguments understood.
class Run {
  public:
    Run(CliRequest request, Files& files, CliPorts& ports, const AnsiCodec& ansi)
        : request_(std::move(request)), files_(files), ports_(ports), ansi_(ansi) {}

    // What each command does with the bytes of one text.
    using Rewrite = std::function<Result<std::string>(std::string_view bytes)>;
    // Works on all files, or on the standard input.
    bool rewriteAll(const Rewrite& rewrite);

    bool transpose();
    Text followed(TextView chart);
    // Lines of chords were left, and the user wants to know by the exit code.
    bool isLacking() const { return request_.strict && leftSome_; }
    bool lines();
    bool expandTabs();
    bool replace();
    bool normalize();
    // The text in parts of whole lines, and as a whole.
    bool rewriteParts(const std::function<Text(Text)>& edit);
    bool rewriteSong(const std::function<Text(TextView)>& edit);
    bool import();
    bool exportSong();
    bool keys();
    bool capos();
    bool respell();
    bool chords();
    bool print(std::string_view bytes);

  private:
    bool rewriteOne(const Rewrite& rewrite, const Text* file);
    // Adds what `tell` says about each song to a report, which is written.
    using Tell = std::function<std::string(TextView name, TextView song)>;
    bool report(const Tell& tell);
    bool reportOne(const Text* file, const Tell& tell, std::string& report);
    Text databasePath();
    const NamedEncoding* named() const { return request_.encoding ? &*request_.encoding : nullptr; }
    Result<std::string> read(const Text* file);
    bool write(const Text* file, std::string_view bytes);
    bool fail(TextView what, TextView name, TextView cause);
    void reportLeft(const std::vector<std::size_t>& lines);

    CliRequest request_;
    TextView name_;  // of the text that is worked on
    bool leftSome_ = false;
    Files& files_;
    CliPorts& ports_;
    const AnsiCodec& ansi_;
};

bool Run::rewriteAll(const Rewrite& rewrite) {
    if (request_.files.empty()) {
        return rewriteOne(rewrite, nullptr);
    }
    bool all = true;
    for (const Text& file : request_.files) {
        all = rewriteOne(rewrite, &file) && all;
    }
    return all;
}

// No `file` is the standard input, here and below.
bool Run::rewriteOne(const Rewrite& rewrite, const Text* file) {
    const TextView name = file ? TextView(*file) : u"the standard input";
    name_ = name;
    const Result<std::string> bytes = read(file);
    if (!bytes) {
        return fail(u"cannot read ", name, bytes.cause);
    }
    const Result<std::string> result = rewrite(*bytes.value);
    if (!result) {
        const bool isRead = result.cause == kDoesNotFit;
        return fail(isRead ? u"cannot rewrite " : u"cannot read ", name, result.cause);
    }
    return write(file, *result.value);
}

bool Run::transpose() {
    if (!request_.spelling) {
        return rewriteSong([this](TextView chart) { return followed(chart); });
    }
    const KeyChange change(*request_.direction, *request_.spelling, request_.steps);
    return rewriteAll([&](std::string_view bytes) -> Result<std::string> {
        Result<TransposedSong> song =
            transposeSong(bytes, change, request_.moveOthers, ansi_, named());
        if (!song) {
            return Failure{song.cause};
        }
        reportLeft(song.value->left);
        return Result<std::string>::success(std::move(song.value->bytes));
    });
}

// A line that states the key goes along, also where the other lines are left.
Text Run::followed(TextView chart) {
    const int steps = static_cast<int>(request_.steps);
    const LeftOver left = findLeftOver(chart);
    const KeyWay way{findKey(chart), sideOf(chart), std::nullopt, true};
    const bool movesAll = request_.moveOthers && !left.hasH;
    LeftOver moving;
    moving.keyLines = left.keyLines;
    if (movesAll) {
        moving.lines = left.lines;
    } else {
        std::vector<std::size_t> numbers;
        for (const LeftOverLine& line : left.lines) {
            numbers.push_back(line.number);
        }
        reportLeft(numbers);
    }
    return movedSong(chart, way, *request_.direction == Direction::Up ? steps : -steps, moving);
}

void Run::reportLeft(const std::vector<std::size_t>& lines) {
    if (lines.empty()) {
        return;
    }
    leftSome_ = true;
    const auto number = [](std::size_t n) { return decimal(static_cast<std::int64_t>(n)); };
    Text message(name_);
    message.append(u": ").append(number(lines.size()));
    message.append(lines.size() == 1 ? u" line of chords left" : u" lines of chords left");
    TextView link = u": ";
    for (const std::size_t line : lines) {
        message.append(std::exchange(link, u", ")).append(number(line + 1));
    }
    ports_.writeError(message + u"\n");
}

bool Run::lines() {
    return rewriteAll([this](std::string_view bytes) -> Result<std::string> {
        const Result<Coding> coding = codingOf(bytes, ansi_, named());
        if (!coding) {
            return Failure{coding.cause};
        }
        std::string report;
        const Result<Done> described =
            forEachPart(bytes, *coding.value, [&report](const Text& part) {
                describeLines(part, report);
                return true;
            });
        return described ? Result<std::string>::success(std::move(report))
                         : Result<std::string>::failure(described.cause);
    });
}

bool Run::expandTabs() {
    return rewriteAll([this](std::string_view bytes) -> Result<std::string> {
        TabExpander expander;
        return rewriteBytes(
            bytes, ansi_,
            [&](const Text& part) {
                Text expanded;
                expander.append(part, expanded);
                return expanded;
            },
            named());
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

bool Run::rewriteParts(const std::function<Text(Text)>& edit) {
    return rewriteAll(
        [&](std::string_view bytes) { return rewriteBytes(bytes, ansi_, edit, named()); });
}

bool Run::rewriteSong(const std::function<Text(TextView)>& edit) {
    return rewriteAll(
        [&](std::string_view bytes) { return rewriteWhole(bytes, ansi_, named(), edit); });
}

bool Run::import() {
    return rewriteSong([this](TextView song) {
        return importedChart(song, request_.verdicts, request_.importOptions);
    });
}

bool Run::exportSong() {
    const ChordNames names = request_.names;
    if (request_.format == SongFormat::ChordPro)
        return rewriteSong([=](TextView chart) { return exportChordPro(chart, names); });
    if (request_.format == SongFormat::PlainText)
        return rewriteSong([this, names](TextView chart) {
            Text text = exportText(chart, names);
            if (!namesComeBack(chart, text, names))
                ports_.writeError(
                    Text(name_) +
                    u": nothing in it tells other programs how its notes are called\n");
            return text;
        });
    // A page says that it is in UTF-8, whatever the song is in.
    return rewriteAll([&](std::string_view bytes) -> Result<std::string> {
        const Result<Text> song = textOfBytes(bytes, ansi_, named());
        if (!song) {
            return Failure{song.cause};
        }
        const TextView title =
            request_.files.empty() ? TextView(u"Song") : withoutExtension(fileNamePart(name_));
        return Result<std::string>::success(toUtf8(exportHtml(*song.value, names, title)));
    });
}

bool Run::respell() {
    return rewriteSong(
        [](TextView chart) { return followKey(chart, findKey(chart), 0, sideOf(chart)); });
}

bool Run::report(const Tell& tell) {
    std::string report;
    bool all = true;
    if (request_.files.empty()) {
        all = reportOne(nullptr, tell, report);
    }
    for (const Text& file : request_.files) {
        all = reportOne(&file, tell, report) && all;
    }
    return write(nullptr, report) && all;
}

bool Run::reportOne(const Text* file, const Tell& tell, std::string& report) {
    const Text name = file ? *file : Text(u"the standard input");
    const Result<std::string> bytes = read(file);
    const Result<Text> song =
        bytes ? textOfBytes(*bytes.value, ansi_, named()) : Result<Text>::failure(bytes.cause);
    if (!song) {
        return fail(u"cannot read ", name, song.cause);
    }
    report += tell(file ? TextView(*file) : u"-", *song.value);
    return true;
}

bool Run::keys() {
    return report([](TextView name, TextView song) {
        const Spelling side = sideOf(song);
        const FoundKey found = findKey(song);
        std::string lines = toUtf8(name) + '\t' + toUtf8(keyInWords(found, side)) + '\t' +
                            std::to_string(found.percent) + '\n';
        for (const KeyStretch& change : found.changes) {
            lines += '\t' + std::to_string(change.line + 1) + '\t' +
                     toUtf8(keyName(change.key, side)) + '\n';
        }
        return lines;
    });
}

bool Run::capos() {
    const Text path = databasePath();
    BookGrips grips;
    if (const Result<Done> opened = grips.open(path); !opened) {
        return fail(u"cannot read the chord database ", path, opened.cause);
    }
    return report([&](TextView name, TextView song) { return capoReport(name, song, grips); });
}

Text Run::databasePath() {
    return request_.database.value_or(
        pathInFolder(pathInFolder(ports_.programFolder(), u"Dbase"), u"MlvDbase.db"));
}

bool Run::chords() {
    const Text path = databasePath();
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
    return write(nullptr, report) && all;
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

Result<Text> textOfBytes(std::string_view bytes, const AnsiCodec& ansi,
                         const NamedEncoding* named) {
    const Result<Coding> coding = codingOf(bytes, ansi, named);
    if (!coding) {
        return Failure{coding.cause};
    }
    DecodedText decoded = decodePart(bytes.substr(coding.value->mark.size()),
                                     coding.value->encoding, coding.value->codec);
    if (const TextView trouble = whyNotAChart(decoded); !trouble.empty()) {
        return Failure{Text(trouble)};
    }
    return Result<Text>::success(std::move(decoded.text));
}

Result<std::string> rewriteBytes(std::string_view bytes, const AnsiCodec& ansi,
                                 const std::function<Text(Text)>& edit,
                                 const NamedEncoding* named) {
    const Result<Coding> coding = codingOf(bytes, ansi, named);
    if (!coding) {
        return Failure{coding.cause};
    }
    std::string result(coding.value->newMark);
    result.reserve(bytes.size() + bytes.size() / 16);
    const Result<Done> rewritten = forEachPart(bytes, *coding.value, [&](Text part) {
        const std::optional<std::string> edited =
            encodePart(edit(std::move(part)), coding.value->encoding, coding.value->codec);
        result += edited.value_or(std::string());
        return edited.has_value();
    });
    return rewritten ? Result<std::string>::success(std::move(result))
                     : Result<std::string>::failure(rewritten.cause);
}

Result<std::string> transposeBytes(std::string_view bytes, const KeyChange& change,
                                   const AnsiCodec& ansi, const NamedEncoding* named) {
    return rewriteBytes(
        bytes, ansi, [&change](const Text& part) { return transposeChart(part, change); }, named);
}

Result<TransposedSong> transposeSong(std::string_view bytes, const KeyChange& change,
                                     bool moveOthers, const AnsiCodec& ansi,
                                     const NamedEncoding* named) {
    bool leavesSome = false;
    Result<std::string> moved = rewriteBytes(
        bytes, ansi, [&](const Text& part) { return transposeChart(part, change, &leavesSome); },
        named);
    if (!moved) {
        return Failure{moved.cause};
    }
    TransposedSong song{std::move(*moved.value), {}};
    if (!leavesSome && !moveOthers) {
        return Result<TransposedSong>::success(std::move(song));
    }
    // What a line is depends on those around it, so now the whole song is looked at.
    bool move = false;
    Result<std::string> whole = rewriteWhole(bytes, ansi, named, [&](TextView chart) {
        const LeftOver found = findLeftOver(chart);
        move = moveOthers && !found.hasH;
        if (move) {
            return transposeChartWith(chart, change, linesWithKeys(found));
        }
        for (const LeftOverLine& line : found.lines) {
            song.left.push_back(line.number);
        }
        return Text();
    });
    if (!whole) {
        return Failure{whole.cause};
    }
    if (move) {
        song.bytes = std::move(*whole.value);
    }
    return Result<TransposedSong>::success(std::move(song));
}

int runCli(const std::vector<Text>& arguments, Files& files, CliPorts& ports,
           const AnsiCodec& ansi) {
    if (!arguments.empty() && arguments[0] == u"pdf") {
        return runPdf({arguments.begin() + 1, arguments.end()}, files, ports, ansi);
    }
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
            done = run.print(cliHelp());
            break;
        case Command::Version:
            done = run.print("melvorin-cli " MELVORIN_VERSION "\n");
            break;
        case Command::Transpose:
            done = run.transpose();
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
        case Command::Export:
            done = run.exportSong();
            break;
        case Command::Key:
            done = run.keys();
            break;
        case Command::Respell:
            done = run.respell();
            break;
        case Command::Capo:
            done = run.capos();
            break;
        case Command::Chord:
            done = run.chords();
            break;
    }
    return !done ? 1 : run.isLacking() ? 3 : 0;
}

}  // namespace melvorin
