#include "cli/CliArguments.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#ifdef _WIN32
#include "base/LetterCase.h"
#endif

namespace melvorin {

namespace {

#ifdef _WIN32
constexpr TextView folderSeparators = u"\\/:";
constexpr char16_t folderSeparator = u'\\';
#else
constexpr TextView folderSeparators = u"/";
constexpr char16_t folderSeparator = u'/';
#endif

TextView fileName(TextView path) {
    const std::size_t separator = path.find_last_of(folderSeparators);
    return separator == TextView::npos ? path : path.substr(separator + 1);
}

// Two names with the same key are the same file of a folder.
Text nameKey(TextView path) {
#ifdef _WIN32
    return unicodeLowerCase(fileName(path));
#else
    return Text(fileName(path));
#endif
}

Text quoted(TextView argument) {
    return Text(u"\"").append(argument).append(u"\"");
}

class ArgumentParser {
  public:
    explicit ArgumentParser(const std::vector<Text>& arguments) : arguments_(arguments) {}

    Result<CliRequest> parse();

  private:
    using Command = CliRequest::Command;

    bool takeCommand();
    bool takeOption(const Text& argument);
    bool takeTransposeOption(const Text& name);
    bool takeImportOption(const Text& name);
    bool takeReplaceOption(const Text& name);
    // The options of several commands; nothing where it is none of them, or not of this one.
    std::optional<bool> takeCommonOption(const Text& name);
    bool takeEncoding();
    bool takeAccidentals();
    bool takeSteps();
    bool takeOthers();
    bool takeExportOption(const Text& name);
    bool takeNames(TextView value);
    bool takeFormat();
    bool readsChordBook() const {
        return request_.command == Command::Chord || request_.command == Command::Capo;
    }
    // For the options that stand for a value: fails where another one has been given.
    template <class Value>
    bool choose(std::optional<Value>& place, Value value, const Text& name);
    // For the options that are followed by one, in the same argument behind "=" or in the next.
    bool takeValue(std::optional<Text>& place, const Text& name, bool mayBeEmpty = false);
    bool complete();
    bool completeOutput();
    bool distinctNames();
    bool fail(Text cause);

    const std::vector<Text>& arguments_;
    std::size_t next_ = 0;
    std::optional<Text> inlineValue_;
    std::optional<Text> steps_;
    std::optional<Text> others_;
    std::optional<ChordNames> exportNames_;
    std::optional<Text> format_;
    std::optional<Text> encoding_;
    std::optional<Text> accidentals_;
    CliRequest request_;
    Text cause_;
};

bool ArgumentParser::fail(Text cause) {
    cause_ = std::move(cause);
    return false;
}

Result<CliRequest> ArgumentParser::parse() {
    if (!takeCommand()) {
        return Failure{cause_};
    }
    bool optionsEnded = false;
    while (next_ < arguments_.size() && request_.command != Command::Help &&
           request_.command != Command::Version) {
        const Text& argument = arguments_[next_++];
        if (optionsEnded || !argument.starts_with(u'-') || argument == u"-") {
            request_.files.push_back(argument);
        } else if (argument == u"--") {
            optionsEnded = true;
        } else if (!takeOption(argument)) {
            return Failure{cause_};
        }
    }
    return complete() ? Result<CliRequest>::success(request_) : Result<CliRequest>::failure(cause_);
}

bool ArgumentParser::takeCommand() {
    if (arguments_.empty()) {
        return fail(u"a command is missing");
    }
    const Text& command = arguments_[next_++];
    constexpr std::pair<TextView, Command> commands[] = {
        {u"transpose", Command::Transpose},
        {u"lines", Command::Lines},
        {u"expand-tabs", Command::ExpandTabs},
        {u"replace", Command::Replace},
        {u"normalize", Command::Normalize},
        {u"import", Command::Import},
        {u"export", Command::Export},
        {u"export-chordpro", Command::Export},
        {u"key", Command::Key},
        {u"respell", Command::Respell},
        {u"capo", Command::Capo},
        {u"chord", Command::Chord},
        {u"--help", Command::Help},
        {u"--version", Command::Version},
    };
    const auto* const found = std::find_if(std::begin(commands), std::end(commands),
                                           [&](const auto& row) { return row.first == command; });
    if (found == std::end(commands)) {
        return fail(quoted(command) + u" is not a command");
    }
    request_.command = found->second;
    if (command == u"export-chordpro") {
        format_ = u"chordpro";
    }
    return true;
}

bool ArgumentParser::takeOption(const Text& argument) {
    const std::size_t equals = argument.find(u'=');
    const Text name = argument.substr(0, equals);
    inlineValue_.reset();
    if (equals != Text::npos) {
        inlineValue_ = argument.substr(equals + 1);
    }
    if (name == u"--help" || name == u"--version") {
        request_.command = name == u"--help" ? Command::Help : Command::Version;
    } else if (const std::optional<bool> taken = takeCommonOption(name)) {
        return *taken;
    } else if (request_.command == Command::Import) {
        if (!takeImportOption(name)) {
            return false;
        }
    } else if (request_.command == Command::Chord && name == u"--list") {
        request_.list = true;
    } else if (readsChordBook() && name == u"--database") {
        return takeValue(request_.database, name);
    } else if (request_.command == Command::Export) {
        if (!takeExportOption(name)) {
            return false;
        }
    } else if (request_.command == Command::Transpose) {
        if (!takeTransposeOption(name)) {
            return false;
        }
    } else if (request_.command != Command::Replace) {
        return fail(quoted(argument) + u" is not an option of this command");
    } else if (!takeReplaceOption(name)) {
        return false;
    }
    if (inlineValue_) {
        return fail(quoted(argument) + u": " + name + u" takes no value");
    }
    return true;
}

bool ArgumentParser::takeTransposeOption(const Text& name) {
    if (name == u"--up") {
        return choose(request_.direction, Direction::Up, name);
    }
    if (name == u"--down") {
        return choose(request_.direction, Direction::Down, name);
    }
    if (name == u"--sharps") {
        return choose(request_.spelling, Spelling::Sharps, name);
    }
    if (name == u"--flats") {
        return choose(request_.spelling, Spelling::Flats, name);
    }
    if (name == u"--accidentals") {
        return takeAccidentals();
    }
    if (name == u"--steps") {
        return takeSteps();
    }
    if (name == u"--others") {
        return takeOthers();
    }
    if (name == u"--strict") {
        request_.strict = true;
        return true;
    }
    return fail(quoted(name) + u" is not an option of transpose");
}

bool ArgumentParser::takeImportOption(const Text& name) {
    if (name == u"--verdicts") {
        request_.verdicts = true;
        return true;
    }
    std::optional<Text> value;
    ImportOptions& options = request_.importOptions;
    if (name == u"--plain-b") {
        if (!takeValue(value, name)) {
            return false;
        }
        options.plainB = value == u"flat" ? PlainB::IsFlat : PlainB::IsNatural;
        return value == u"flat" || value == u"natural"
                   ? true
                   : fail(name + u" " + quoted(*value) + u" is neither flat nor natural");
    }
    if (name == u"--plain-ninth") {
        if (!takeValue(value, name)) {
            return false;
        }
        options.plainNinth = value == u"seventh" ? PlainNinth::HasSeventh : PlainNinth::IsAdded;
        return value == u"seventh" || value == u"added"
                   ? true
                   : fail(name + u" " + quoted(*value) + u" is neither seventh nor added");
    }
    return fail(quoted(name) + u" is not an option of import");
}

std::optional<bool> ArgumentParser::takeCommonOption(const Text& name) {
    if (name == u"--output") {
        return takeValue(request_.output, name);
    }
    if (request_.command == Command::Chord) {
        return std::nullopt;
    }
    if (name == u"--output-dir" && request_.command != Command::Key &&
        request_.command != Command::Capo) {
        return takeValue(request_.outputFolder, name);
    }
    return name == u"--encoding" ? std::optional(takeEncoding()) : std::nullopt;
}

bool ArgumentParser::takeEncoding() {
    if (!takeValue(encoding_, u"--encoding")) {
        return false;
    }
    request_.encoding = encodingNamed(*encoding_);
    return request_.encoding
               ? true
               : fail(u"--encoding " + quoted(*encoding_) + u" is not known; " + knownEncodings());
}

bool ArgumentParser::takeAccidentals() {
    const Text name = u"--accidentals";
    if (!takeValue(accidentals_, name)) {
        return false;
    }
    if (*accidentals_ == u"sharps") {
        return choose(request_.spelling, Spelling::Sharps, name);
    }
    if (*accidentals_ == u"flats") {
        return choose(request_.spelling, Spelling::Flats, name);
    }
    return *accidentals_ == u"key"
               ? true
               : fail(name + u" " + quoted(*accidentals_) + u" is none of sharps, flats and key");
}

bool ArgumentParser::takeReplaceOption(const Text& name) {
    if (name == u"--find") {
        return takeValue(request_.find, name);
    }
    if (name == u"--with") {
        return takeValue(request_.with, name, true);
    }
    if (name == u"--word" || name == u"--case") {
        (name == u"--word" ? request_.findOptions.wholeWord : request_.findOptions.matchCase) =
            true;
        return true;
    }
    return fail(quoted(name) + u" is not an option of replace");
}

template <class Value>
bool ArgumentParser::choose(std::optional<Value>& place, Value value, const Text& name) {
    if (place.value_or(value) != value) {
        return fail(quoted(name) + u" contradicts an option before it");
    }
    place = value;
    return true;
}

bool ArgumentParser::takeValue(std::optional<Text>& place, const Text& name, bool mayBeEmpty) {
    if (place) {
        return fail(quoted(name) + u" is given twice");
    }
    if (inlineValue_) {
        place = std::exchange(inlineValue_, std::nullopt);
    } else if (next_ < arguments_.size()) {
        place = arguments_[next_++];
    }
    return place && (mayBeEmpty || !place->empty()) ? true : fail(quoted(name) + u" needs a value");
}

bool ArgumentParser::takeSteps() {
    if (!takeValue(steps_, u"--steps")) {
        return false;
    }
    constexpr unsigned most = 11;
    unsigned steps = 0;
    for (const char16_t c : *steps_) {
        const bool digit = c >= u'0' && c <= u'9';
        steps = digit ? steps * 10 + (c - u'0') : most + 1;
        if (steps > most) {
            break;
        }
    }
    if (steps < 1 || steps > most) {
        return fail(u"--steps " + quoted(*steps_) + u" is not a number from 1 to 11");
    }
    request_.steps = steps;
    return true;
}

bool ArgumentParser::takeOthers() {
    if (!takeValue(others_, u"--others")) {
        return false;
    }
    request_.moveOthers = others_ == u"move";
    return request_.moveOthers || others_ == u"leave"
               ? true
               : fail(u"--others " + quoted(*others_) + u" is neither move nor leave");
}

bool ArgumentParser::takeExportOption(const Text& name) {
    if (name == u"--international") {
        return choose(exportNames_, ChordNames::International, name);
    }
    if (name == u"--names") {
        std::optional<Text> value;
        return takeValue(value, name) && takeNames(*value);
    }
    return name == u"--format" ? takeFormat() : fail(quoted(name) + u" is not an option of export");
}

bool ArgumentParser::takeNames(TextView value) {
    constexpr std::pair<TextView, ChordNames> names[] = {{u"nashville", ChordNames::Nashville},
                                                         {u"german", ChordNames::German},
                                                         {u"solfege", ChordNames::Solfege}};
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [&](const auto& row) { return row.first == value; });
    return found == std::end(names)
               ? fail(u"--names " + quoted(value) + u" is none of nashville, german and solfege")
               : choose(exportNames_, found->second, u"--names");
}

bool ArgumentParser::takeFormat() {
    constexpr std::pair<TextView, SongFormat> formats[] = {{u"chordpro", SongFormat::ChordPro},
                                                           {u"text", SongFormat::PlainText},
                                                           {u"html", SongFormat::Html}};
    if (!takeValue(format_, u"--format")) {
        return false;
    }
    const auto* const found = std::find_if(std::begin(formats), std::end(formats),
                                           [&](const auto& row) { return row.first == *format_; });
    if (found == std::end(formats)) {
        return fail(u"--format " + quoted(*format_) + u" is none of chordpro, text and html");
    }
    request_.format = found->second;
    return true;
}

bool ArgumentParser::complete() {
    switch (request_.command) {
        case Command::Help:
        case Command::Version:
            return true;
        case Command::Chord:
            return request_.list == request_.files.empty()
                       ? true
                       : fail(u"chord needs either the names of chords or --list");
        case Command::Transpose:
            if (!request_.direction) {
                return fail(u"transpose needs --up or --down");
            }
            if (!request_.spelling && !accidentals_) {
                return fail(u"transpose needs --sharps or --flats, or --accidentals");
            }
            if (request_.spelling && accidentals_ == u"key") {
                return fail(u"--accidentals key excludes --sharps and --flats");
            }
            break;
        case Command::Replace:
            if (!request_.find || !request_.with) {
                return fail(u"replace needs --find and --with");
            }
            break;
        case Command::Lines:
        case Command::ExpandTabs:
        case Command::Normalize:
        case Command::Import:
        case Command::Respell:
            break;
        case Command::Export:
            if (!format_) {
                return fail(u"export needs --format");
            }
            request_.names = exportNames_.value_or(ChordNames::House);
            break;
        // Tell of all their files in one place.
        case Command::Key:
        case Command::Capo:
            return true;
    }
    return completeOutput();
}

bool ArgumentParser::completeOutput() {
    const std::vector<Text>& files = request_.files;
    if (request_.output && request_.outputFolder) {
        return fail(u"--output and --output-dir exclude each other");
    }
    if (files.size() > 1 && !request_.outputFolder) {
        return fail(quoted(files[1]) + u": several files need --output-dir");
    }
    if (files.empty() && request_.outputFolder) {
        return fail(u"--output-dir " + quoted(*request_.outputFolder) +
                    u" needs files; the standard input has no name");
    }
    return !request_.outputFolder || distinctNames();
}

// One result must not overwrite another.
bool ArgumentParser::distinctNames() {
    std::vector<std::pair<Text, const Text*>> names;
    for (const Text& file : request_.files) {
        names.emplace_back(nameKey(file), &file);
    }
    std::sort(names.begin(), names.end());
    const auto twin =
        std::adjacent_find(names.begin(), names.end(),
                           [](const auto& a, const auto& b) { return a.first == b.first; });
    if (twin == names.end()) {
        return true;
    }
    return fail(quoted(*twin->second) + u" and " + quoted(*std::next(twin)->second) +
                u" would be written to the same file of --output-dir");
}

}  // namespace

Result<CliRequest> parseCliArguments(const std::vector<Text>& arguments) {
    return ArgumentParser(arguments).parse();
}

Text pathInFolder(TextView folder, TextView file) {
    Text path(folder);
    if (!path.empty() && folderSeparators.find(path.back()) == TextView::npos) {
        path += folderSeparator;
    }
    return path.append(fileName(file));
}

}  // namespace melvorin
