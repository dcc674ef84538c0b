#include "cli/Cli.h"

#include <algorithm>
#include <utility>

#include "base/TabExpansion.h"
#include "chords/Chart.h"
#include "chords/ChordProExport.h"
#include "chords/KeySpelling.h"
#include "chords/LeftOver.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"
#include "cli/ChordReport.h"
#include "cli/CliArguments.h"
#include "cli/PdfCommand.h"
#include "find/TextSearch.h"

namespace melvorin {

namespace {

constexpr std::string_view helpText =
    "melvorin-cli - chord charts in plain text, moved to another key\n"
    "\n"
    "  melvorin-cli transpose (--up | --down) [--steps N]\n"
    "                         (--sharps | --flats | --accidentals sharps|flats|key)\n"
    "                         [--others move|leave] [--strict]\n"
    "                         [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli lines [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli expand-tabs [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli replace --find TEXT --with TEXT [--word] [--case]\n"
    "                       [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli normalize [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli import [--verdicts] [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli export-chordpro [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli key [--output FILE] [--encoding NAME] [FILE...]\n"
    "  melvorin-cli respell [TEXT OPTIONS] [FILE...]\n"
    "  melvorin-cli pdf [OPTIONS] -o FILE SONG...\n"
    "  melvorin-cli chord [--database FILE] [--output FILE] (NAME... | --list)\n"
    "  melvorin-cli --help\n"
    "  melvorin-cli --version\n"
    "\n"
    "Text options, the same for all of them:\n"
    "  --output FILE       write to FILE instead of the standard output\n"
    "  --output-dir DIR    write every result to DIR, under the name of its FILE;\n"
    "                      needed with more than one FILE. DIR must exist.\n"
    "  --encoding NAME     what the text is in, and is written in again: utf-8,\n"
    "                      utf-8-bom, utf-16le, utf-16be, shift-jis, euc-jp, euc-kr,\n"
    "                      gbk, big5, koi8-r, windows-1251, iso-8859-2 or the number\n"
    "                      of a code page\n"
    "\n"
    "transpose moves the chords of every chord line N half steps (1 to 11, or 1\n"
    "without --steps) and keeps each chord in its column. Encoding, byte-order mark\n"
    "and line ends stay as they are.\n"
    "  --up, --down        the direction\n"
    "  --sharps, --flats   how new accidentals are written\n"
    "  --accidentals HOW   the same (sharps, flats), or with key as the key of each song\n"
    "                      has them; a line such as \"Key: G\" then moves too\n"
    "  --others WHAT       what happens to lines of chords that hold something else too\n"
    "                      (Cmaj7, bars, tabs, labels, remarks, chords in brackets):\n"
    "                      move moves their chords as well, leave names the lines by\n"
    "                      their numbers on the standard error, as without --others.\n"
    "                      Where some chord is an H they are left in any case.\n"
    "  --strict            the exit code tells that lines were left\n"
    "\n"
    "key prints FILE, the key of the song and how sure it is in percent, with tabs\n"
    "between them: G, F#m, \"G or Em?\" where it is not sure, \"?\" without chords. For\n"
    "each change of key a line follows that begins with a tab: number of the line,\n"
    "counted from 1, and the new key. respell writes the roots and basses of a chart as\n"
    "its key has them, and moves nothing.\n"
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
    "\n"
    "chord prints a line for every diagram of each chord, which is named by its symbol\n"
    "(C7) or by its name (C Seventh): symbol, name, number of the diagram font,\n"
    "character, frets and fingers from the low E string up, with tabs between. --list\n"
    "prints every row of the chord database, which lies in Dbase beside the tool, or\n"
    "is FILE.\n"
    "\n"
    "pdf writes songs as a PDF; melvorin-cli pdf --help tells its options.\n"
    "\n"
    "Without FILE the text is read from the standard input. Without --encoding it is\n"
    "UTF-8, UTF-16 with a byte-order mark, or else in the ANSI code page of the\n"
    "machine. A file may be its own output. -- ends the options.\n"
    "\n"
    "Exit code: 0 done, 1 a file could not be read or written, 2 wrong arguments,\n"
    "3 lines of chords were left (transpose --strict).\n";

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
    bool keys();
    bool respell();
    bool chords();
    bool print(std::string_view bytes);

  private:
    bool rewriteOne(const Rewrite& rewrite, const Text* file);
    bool describeKey(const Text* file, std::string& report);
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

// What a key change leaves over has no names by the key: it takes the kind of its signature.
Text Run::followed(TextView chart) {
    const int way = *request_.direction == Direction::Up ? 1 : -1;
    const int steps = way * static_cast<int>(request_.steps);
    const FoundKey found = findKey(chart);
    const Spelling side = sideOf(chart);
    Text moved = followKey(chart, found, steps, side, true);
    const LeftOver left = findLeftOver(chart);
    if (!request_.moveOthers || left.hasH) {
        std::vector<std::size_t> numbers;
        for (const LeftOverLine& line : left.lines) {
            numbers.push_back(line.number);
        }
        reportLeft(numbers);
        return moved;
    }
    const Key goal = movedKey(found.first.value_or(Key()), steps);
    const bool flats = fifthsOf(goal, side) < (goal.minor ? 3 : 0);
    const KeyChange change(*request_.direction, flats ? Spelling::Flats : Spelling::Sharps,
                           request_.steps);
    Text result;
    auto other = left.lines.begin();
    std::size_t number = 0;
    for (TextView rest = moved; !rest.empty(); ++number) {
        const TextLine line = takeLine(rest);
        const bool isOther = other != left.lines.end() && other->number == number;
        result += isOther ? moveLeftOver(line.chars, *other++, change).line : Text(line.chars);
        result += line.end;
    }
    return result;
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
    return rewriteSong([this](TextView song) { return importedChart(song, request_.verdicts); });
}

bool Run::respell() {
    return rewriteSong(
        [](TextView chart) { return followKey(chart, findKey(chart), 0, sideOf(chart)); });
}

bool Run::keys() {
    std::string report;
    bool all = true;
    if (request_.files.empty()) {
        all = describeKey(nullptr, report);
    }
    for (const Text& file : request_.files) {
        all = describeKey(&file, report) && all;
    }
    return write(nullptr, report) && all;
}

bool Run::describeKey(const Text* file, std::string& report) {
    const Text name = file ? *file : Text(u"the standard input");
    const Result<std::string> bytes = read(file);
    const Result<Text> song =
        bytes ? textOfBytes(*bytes.value, ansi_, named()) : Result<Text>::failure(bytes.cause);
    if (!song) {
        return fail(u"cannot read ", name, song.cause);
    }
    const Spelling side = sideOf(*song.value);
    const FoundKey found = findKey(*song.value);
    report += toUtf8(file ? *file : u"-") + '\t' + toUtf8(keyInWords(found, side)) + '\t' +
              std::to_string(found.percent) + '\n';
    for (const KeyStretch& change : found.changes) {
        report += '\t' + std::to_string(change.line + 1) + '\t' +
                  toUtf8(keyName(change.key, side)) + '\n';
    }
    return true;
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
    if (!leavesSome) {
        return Result<TransposedSong>::success(std::move(song));
    }
    // What a line is depends on those around it, so now the whole song is looked at.
    bool move = false;
    Result<std::string> whole = rewriteWhole(bytes, ansi, named, [&](TextView chart) {
        const LeftOver found = findLeftOver(chart);
        move = moveOthers && !found.hasH;
        if (move) {
            return transposeChartWith(chart, change, found.lines);
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
            done = run.print(helpText);
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
        case Command::ExportChordPro:
            done = run.rewriteSong(exportChordPro);
            break;
        case Command::Key:
            done = run.keys();
            break;
        case Command::Respell:
            done = run.respell();
            break;
        case Command::Chord:
            done = run.chords();
            break;
    }
    return !done ? 1 : run.isLacking() ? 3 : 0;
}

}  // namespace melvorin
