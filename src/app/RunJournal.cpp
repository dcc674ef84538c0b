#include "app/RunJournal.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "base/Hex.h"
#include "base/LetterCase.h"
#include "base/Paths.h"

namespace melvorin {
namespace {

// With a letter behind "bb" that is no hexadecimal digit it is never the name of a snapshot.
constexpr TextView kPrefix = u"bbj";
constexpr std::string_view kFirstLine = "melvorin journal 1\n";
constexpr std::string_view kNone = "-";

// ---- Writing ----------------------------------------------------------------------------------

// Any path, also one with halves of surrogate pairs, as one word: four digits per unit.
std::string hexOf(TextView text) {
    std::string hex;
    for (const char16_t c : text)
        appendHex(hex, c, 4);
    return hex.empty() ? std::string(kNone) : hex;
}

std::string markLine(const FileMark& mark) {
    return std::to_string(mark.size) + " " + std::to_string(mark.hash);
}

std::string formatLine(const TextFormat& format) {
    return "format " + std::to_string(static_cast<int>(format.encoding)) + " " +
           std::to_string(format.codePage) + " " +
           std::to_string(static_cast<int>(format.lineEnd)) + " " +
           std::to_string(static_cast<int>(format.finalLineEnd)) + "\n";
}

std::string snapshotLine(int index, const Snapshot& snapshot) {
    std::string background(kNone);
    if (snapshot.background) {
        const Rgb& colour = *snapshot.background;
        background = std::to_string(colour.red << 16 | colour.green << 8 | colour.blue);
    }
    return "snapshot " + std::to_string(index) + " " + hexOf(fileNamePart(snapshot.path)) + " " +
           std::to_string(snapshot.caret) + " " + background + " " + markLine(snapshot.mark) + "\n";
}

std::string songLine(int index, const Snapshot& snapshot) {
    return "song " + std::to_string(index) + " " + snapshot.songMemory + "\n";
}

// ---- Reading ----------------------------------------------------------------------------------

// The words of one line; the first that is not as it should be spoils the rest.
class Words {
  public:
    explicit Words(std::string_view line) : rest_(line) {}

    std::string_view word() {
        const std::size_t end = std::min(rest_.find(' '), rest_.size());
        const std::string_view found = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return found;
    }
    template <class Number>
    Number number(Number least, Number most) {
        const std::string_view digits = word();
        Number value{};
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        good_ = good_ && error == std::errc() && end == digits.data() + digits.size() &&
                value >= least && value <= most;
        return good_ ? value : least;
    }
    Text text() {
        const std::string_view hex = word();
        Text value;
        if (hex == kNone)
            return value;
        good_ = good_ && !hex.empty() && hex.size() % 4 == 0;
        for (std::size_t at = 0; good_ && at < hex.size(); at += 4) {
            std::uint16_t unit = 0;
            const auto [end, error] =
                std::from_chars(hex.data() + at, hex.data() + at + 4, unit, 16);
            good_ = error == std::errc() && end == hex.data() + at + 4;
            value += static_cast<char16_t>(unit);
        }
        return value;
    }
    // All that is left of the line.
    std::string_view rest() { return std::exchange(rest_, {}); }
    FileMark mark() {
        constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
        FileMark mark;
        mark.size = number<std::uint64_t>(0, most);
        mark.hash = number<std::uint64_t>(0, most);
        return mark;
    }
    std::optional<Rgb> colour() {
        if (rest_.starts_with("- ")) {
            word();
            return std::nullopt;
        }
        const auto value = number<std::uint32_t>(0, 0xFFFFFF);
        return Rgb{static_cast<std::uint8_t>(value >> 16),
                   static_cast<std::uint8_t>(value >> 8 & 0xFF),
                   static_cast<std::uint8_t>(value & 0xFF)};
    }
    // All words were good and there are no more.
    bool end() const { return good_ && rest_.empty(); }

  private:
    std::string_view rest_;
    bool good_ = true;
};

// As the system names temporary files: nothing else is ever read or deleted for a journal.
bool isSnapshotName(TextView name) {
    const Text lower = asciiLowerCase(name);
    constexpr TextView start = u"bb";
    constexpr TextView end = u".tmp";
    if (lower.size() <= start.size() + end.size() || !lower.starts_with(start) ||
        !lower.ends_with(end))
        return false;
    const TextView digits =
        TextView(lower).substr(start.size(), lower.size() - start.size() - end.size());
    return std::all_of(digits.begin(), digits.end(), [](char16_t c) { return hexDigit(c) >= 0; });
}

class Replay {
  public:
    explicit Replay(TextView folder) : folder_(folder) {}

    void line(std::string_view line) {
        Words words(line);
        const std::string_view kind = words.word();
        if (kind == "document")
            document(words);
        else if (kind == "format")
            format(words);
        else if (kind == "loss")
            loss(words);
        else if (kind == "snapshot")
            snapshot(words);
        else if (kind == "song")
            song(words);
        else if (kind == "state")
            state(words);
    }
    RunState take() { return std::move(run_); }

  private:
    static constexpr std::int16_t kMost = std::numeric_limits<std::int16_t>::max();

    void document(Words words) {
        const FileMark mark = words.mark();
        Text path = words.text();
        if (!words.end())
            return;
        run_.origin.mark = path.empty() ? std::nullopt : std::optional(mark);
        run_.origin.path = std::move(path);
    }
    void format(Words words) {
        TextFormat format;
        format.encoding = static_cast<TextEncoding>(
            words.number<int>(0, static_cast<int>(TextEncoding::Utf16BeWithBom)));
        format.codePage = words.number<unsigned>(0, 65535);
        format.lineEnd = static_cast<LineEnd>(words.number<int>(0, static_cast<int>(LineEnd::Cr)));
        format.finalLineEnd = static_cast<FinalLineEnd>(
            words.number<int>(0, static_cast<int>(FinalLineEnd::WithText)));
        if (words.end())
            run_.origin.format = format;
    }
    void loss(Words words) {
        Text loss = words.text();
        if (words.end())
            run_.origin.loss = std::move(loss);
    }
    void snapshot(Words words) {
        const auto index = words.number<std::int16_t>(1, kMost);
        const Text name = words.text();
        Snapshot snapshot;
        snapshot.caret = words.number<std::int32_t>(0, std::numeric_limits<std::int32_t>::max());
        snapshot.background = words.colour();
        snapshot.mark = words.mark();
        if (!words.end())
            return;
        if (isSnapshotName(name))
            snapshot.path = joinPath(folder_, name);
        const auto at = static_cast<std::size_t>(index);
        run_.snapshots.resize(std::max(run_.snapshots.size(), at + 1));
        run_.snapshots[at] = std::move(snapshot);
    }
    void song(Words words) {
        const auto index = words.number<std::int16_t>(1, kMost);
        const std::string_view text = words.rest();
        if (words.end() && static_cast<std::size_t>(index) < run_.snapshots.size())
            run_.snapshots[static_cast<std::size_t>(index)].songMemory = text;
    }
    void state(Words words) {
        const auto current = words.number<std::int16_t>(1, kMost);
        const auto count = words.number<std::int16_t>(current, kMost);
        const auto floor = words.number<std::int16_t>(1, current);
        const auto dirty = words.number<int>(0, 1);
        if (!words.end())
            return;
        run_.snapshots.resize(static_cast<std::size_t>(count) + 1);
        run_.current = current;
        run_.floor = floor;
        run_.dirty = dirty != 0;
    }

    TextView folder_;
    RunState run_;
};

bool isWhole(Files& files, const Snapshot& snapshot) {
    return !snapshot.path.empty() && compare(files, snapshot.path, snapshot.mark) == Compared::Same;
}

// Steps back to the last state that can be read. Undone states whose files were deleted for a
// change that was never finished are dropped.
void settle(Files& files, Remains& remains) {
    RunState& run = remains.state;
    while (static_cast<std::size_t>(run.current) + 1 < run.snapshots.size() &&
           !isWhole(files, run.snapshots.back()))
        run.snapshots.pop_back();
    for (; run.current >= run.floor; --run.current) {
        if (isWhole(files, run.snapshots[static_cast<std::size_t>(run.current)]))
            return;
        remains.isLast = false;
    }
    run.current = 0;
}

}  // namespace

std::optional<RunState> replayJournal(std::string_view bytes, TextView folder) {
    if (!bytes.starts_with(kFirstLine))
        return std::nullopt;
    bytes.remove_prefix(kFirstLine.size());
    Replay replay(folder);
    for (std::size_t end; (end = bytes.find('\n')) != std::string_view::npos;
         bytes.remove_prefix(end + 1))
        replay.line(bytes.substr(0, end));
    return replay.take();
}

void RunJournal::begin() {
    file_ = files_.createHeld(kPrefix);
    append(std::string(kFirstLine));
}

void RunJournal::append(const std::string& lines) {
    if (file_ && !lines.empty() && !file_->append(lines))
        file_.reset();
}

void RunJournal::keep(const DocumentOrigin& origin, const SnapshotHistory& history, bool dirty) {
    if (!file_ || history.count() == 0)
        return;
    std::string changes;
    const auto add = [&changes](std::string& last, std::string line) {
        if (line != last)
            changes += last = std::move(line);
    };
    add(document_,
        "document " + markLine(origin.mark.value_or(FileMark{})) + " " + hexOf(origin.path) + "\n");
    add(format_, formatLine(origin.format));
    add(loss_, "loss " + hexOf(origin.loss) + "\n");
    const std::string snapshot = snapshotLine(history.current(), history.currentSnapshot());
    // A snapshot begins without one.
    const bool isKept = !history.currentSnapshot().songMemory.empty();
    if (isKept && snapshot != snapshot_)
        song_.clear();
    add(snapshot_, snapshot);
    if (isKept || !song_.empty())
        add(song_, songLine(history.current(), history.currentSnapshot()));
    add(state_, "state " + std::to_string(history.current()) + " " +
                    std::to_string(history.count()) + " " + std::to_string(history.floor()) + " " +
                    (dirty ? "1\n" : "0\n"));
    append(changes);
}

void RunJournal::keepAll(const SnapshotHistory& history) {
    std::string lines;
    for (int index = 1; index <= history.count(); ++index)
        lines +=
            snapshotLine(index, history.snapshot(index)) + songLine(index, history.snapshot(index));
    append(lines);
}

void RunJournal::close() {
    append("state 1 1 1 0\n");
}

void RunJournal::end() {
    if (file_)
        std::exchange(file_, nullptr)->remove();
}

std::vector<Remains> remainsOf(Files& files) {
    std::vector<Remains> found;
    for (std::unique_ptr<HeldFile>& journal : files.takeHeld(kPrefix)) {
        const Text path = journal->path();
        const Result<std::string> bytes = journal->read();
        std::optional<RunState> run =
            bytes ? replayJournal(*bytes.value, folderPart(path)) : std::nullopt;
        Remains remains{std::move(journal), run ? *std::move(run) : RunState{}};
        if (remains.state.dirty) {
            settle(files, remains);
            found.push_back(std::move(remains));
        } else {
            discard(files, std::move(remains));
        }
    }
    std::sort(found.begin(), found.end(), [](const Remains& a, const Remains& b) {
        return a.journal->lastWritten() > b.journal->lastWritten();
    });
    return found;
}

void discard(Files& files, Remains remains) {
    for (const Snapshot& snapshot : remains.state.snapshots) {
        if (isWhole(files, snapshot))
            files.remove(snapshot.path);
    }
    remains.journal->remove();
}

}  // namespace melvorin
