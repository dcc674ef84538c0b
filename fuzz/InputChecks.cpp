// Checks of what comes from outside: files, settings, arguments, criteria.
#include <algorithm>

#include "Checks.h"
#include "Diagrams.h"
#include "MemoryFiles.h"
#include "StandIns.h"
#include "app/RecentFiles.h"
#include "app/RunJournal.h"
#include "base/LetterCase.h"
#include "cli/Cli.h"
#include "dictionary/Recordset.h"
#include "rtf/DocumentLoss.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfReader.h"
#include "rtf/RtfRepair.h"
#include "rtf/RtfUnfold.h"

namespace melvorin::fuzz {
namespace {

Text shown(std::string_view bytes) {
    return Text(bytes.begin(), bytes.end());
}

// Every line of the map's text rewritten to the same words, and one to others.
void checkMap(const RtfMap& map, const std::string& rtf) {
    require(map.rewrite({}, {}) == rtf, "what is not rewritten stays byte for byte", shown(rtf));
    const TextView text = map.text();
    std::vector<LineRewrite> lines;
    Text expected;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(u"\r\v", start), text.size());
        LineRewrite line{start, end - start, Text(text.substr(start, end - start)), {}, {}};
        for (std::uint32_t i = 0; i < line.length; ++i)
            line.source.push_back(i);
        // Beside writing: the font of an empty line need not be one that can be read.
        if (line.length > 0 && lines.size() % 3 == 1) {
            const std::size_t middle = line.length / 2;
            line.text.insert(middle, u"new");
            line.source.insert(line.source.begin() + static_cast<std::ptrdiff_t>(middle), 3,
                               static_cast<std::uint32_t>(middle));
        }
        expected += line.text;
        if (end < text.size())
            expected += text[end];
        lines.push_back(std::move(line));
        start = end + 1;
    }
    const auto again = RtfMap::parse(map.rewrite(lines, {1, 2, 3}));
    require(again.has_value() && again->text() == expected, "a rewritten document reads as meant",
            shown(rtf));
}

class MemoryPorts : public CliPorts {
  public:
    Result<std::string> readInput() override { return Result<std::string>::success("C G\n"); }
    Result<Done> writeOutput(std::string_view bytes) override {
        output += bytes;
        return Result<Done>::success({});
    }
    void writeError(TextView message) override { errors += message; }
    Text programFolder() override { return u"nowhere"; }

    std::string output;
    Text errors;
};

std::vector<Text> linesOf(std::string_view bytes) {
    std::vector<Text> lines(1);
    for (const char16_t c : fromUtf8(bytes)) {
        if (c == u'\n')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    return lines;
}

}  // namespace

void checkRichText(std::string_view bytes) {
    const RtfContents contents = readRtf(bytes);
    const Text loss = lossInWords(contents, contents.text, bytes);
    require(loss.empty() || contents.textBehind || !contents.labels.empty(),
            "a document loses nothing to itself", loss);
    const RtfVerdict verdict = checkRtf(bytes);
    if (verdict.kind != RtfVerdict::Kind::Ok)
        return require(!verdict.sentence.empty(), "a refusal has a reason", shown(bytes));
    const std::string& document = verdict.document;
    const RtfVerdict again = checkRtf(document);
    require(again.kind == RtfVerdict::Kind::Ok && again.document == document,
            "what was accepted is accepted as it is", shown(bytes));
    require(withLostCharacters(document, contents.text).size() >= document.size(),
            "nothing is taken from what a control wrote", shown(bytes));
    require(readRtf(withTableRows(document)).tableRows >= readRtf(document).tableRows,
            "rows that are marked are rows", shown(bytes));
    if (const auto map = RtfMap::parse(document))
        checkMap(*map, document);
}

void checkJournal(std::string_view bytes) {
    const auto run = replayJournal(bytes, u"C:\\Temp");
    if (!run)
        return;
    require(run->current < static_cast<int>(run->snapshots.size()) || run->current == 0,
            "the state exists", shown(bytes));
    for (const Snapshot& snapshot : run->snapshots) {
        const Text lower = asciiLowerCase(snapshot.path);
        require(lower.empty() || (lower.starts_with(u"c:\\temp\\bb") &&
                                  lower.find_first_of(u"\\/:", 8) == Text::npos),
                "snapshots lie in the folder", snapshot.path);
    }
    testing::MemoryFiles files;
    auto held = files.createHeld(u"bbj");
    held->append(bytes);
    held.reset();
    for (Remains& remains : remainsOf(files)) {
        require(remains.state.dirty && remains.state.current == 0,
                "without its snapshots a song can only be named", shown(bytes));
        discard(files, std::move(remains));
    }
    require(files.content.empty(), "what is done with is gone", shown(bytes));
}

void checkRecent(std::string_view bytes) {
    testing::ScriptedProfiles profiles;
    int slot = 1;
    for (Text& line : linesOf(bytes))
        profiles.write(u"Recent Files", Text(u"RecentFile") + decimal(slot++), line,
                       u"Melvorin.INI");
    RecentMenu shownMenu;
    RecentFiles recent(profiles, [&](const RecentMenu& menu) { shownMenu = menu; });
    recent.begin();
    recent.add(u"C:\\new.mvt");
    require(recent.isListed(u"C:\\new.mvt"), "what was opened is listed", shown(bytes));
    require(shownMenu == recent.menu(), "the menu shows the list", shown(bytes));
    require(recent.clean() && !recent.isListed(u"C:\\new.mvt"), "the list can be emptied",
            shown(bytes));
}

void checkArguments(std::string_view bytes) {
    testing::MemoryFiles files;
    files.content = {{u"song", "C  G\nla la\n"}, {u"broken", std::string("\0\xFF", 2)}};
    const auto before = files.content;
    MemoryPorts ports;
    const std::vector<Text> arguments = linesOf(bytes);
    const int code = runCli(arguments, files, ports, windows1252());
    require(code >= 0 && code <= 2, "an exit code", shown(bytes));
    require(code == 0 || !ports.errors.empty(), "trouble is told", shown(bytes));
    require(code != 2 || (files.content == before && ports.output.empty()),
            "nothing is done where the arguments make no sense", shown(bytes));
    for (const auto& [path, content] : files.content) {
        const auto old = before.find(path);
        if (old != before.end() && old->second == content)
            continue;
        const bool isNamed =
            std::any_of(arguments.begin(), arguments.end(), [&path = path](const Text& argument) {
                const std::size_t equals = argument.find(u'=');
                const TextView value =
                    equals == Text::npos ? argument : TextView(argument).substr(equals + 1);
                return (!argument.empty() && path.starts_with(argument)) ||
                       (!value.empty() && path.starts_with(value));
            });
        require(isNamed, "only what was named is written", path);
    }
}

void checkCriterion(std::string_view bytes) {
    const Text criterion = fromUtf8(bytes);
    const auto read = readCriterion(criterion);
    if (read) {
        require(read.value->value.find(u'\'') == Text::npos &&
                    read.value->field.find_first_of(u"='") == Text::npos,
                "field and text have their ends", criterion);
        const auto again = readCriterion(read.value->field + u" = '" + read.value->value + u"'");
        require(again && again.value->field == read.value->field &&
                    again.value->value == read.value->value,
                "a criterion means what it says", criterion);
    } else {
        require(!read.cause.empty(), "a refusal has a reason", criterion);
    }
    Recordset records;
    records.open(std::make_unique<testing::ScriptedRows>(
                     Table{{u"Acorde", u"Nome"}, {{u"Cm7", u"C minor 7"}, {std::nullopt, u"'"}}}),
                 {}, {});
    const auto found = records.find(criterion);
    require(!found || *found.value == !records.eof(), "found is where the recordset stands",
            criterion);
    require(found || records.position() == 0, "a refused search moves nothing", criterion);
}

}  // namespace melvorin::fuzz
