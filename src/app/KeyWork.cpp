#include "app/KeyWork.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/EditorLine.h"
#include "base/Paths.h"
#include "chords/CellWidth.h"
#include "chords/DocumentDiagrams.h"
#include "chords/KeyReading.h"
#include "chords/KeySpelling.h"

namespace melvorin {
namespace {

// Where each line of a song stands, without its end.
std::vector<Selection> linePlaces(TextView song) {
    std::vector<Selection> places;
    std::int32_t position = 0;
    for (TextView rest = song;;) {
        const TextLine line = takeEditorLine(rest);
        const auto end = position + static_cast<std::int32_t>(line.chars.size());
        places.push_back({position, end});
        position = end + static_cast<std::int32_t>(line.end.size());
        if (line.end.empty())
            return places;
    }
}

TextView textAt(TextView song, const Selection& place) {
    return song.substr(static_cast<std::size_t>(place.begin),
                       static_cast<std::size_t>(place.end - place.begin));
}

Direction directionOf(int steps) {
    return steps > 0 ? Direction::Up : Direction::Down;
}

unsigned sizeOf(int steps) {
    return static_cast<unsigned>(std::abs(steps));
}

Text counted(std::size_t count, TextView one, TextView many) {
    return decimal(static_cast<std::int64_t>(count)) + Text(count == 1 ? one : many);
}

}  // namespace

// ---- The key change ---------------------------------------------------------------------------

ChooseOthers KeyWork::chooseOthers(int steps, Spelling spelling) {
    return [=, this](const LeftOver& found, TextView song) {
        found_ = found;
        misread_ = found.misreadsB       ? Misread::FlatB
                   : found.misreadsNames ? Misread::Names
                                         : Misread::No;
        words_.clear();
        const KeyDebt& debt = documents_.songMemory().lines;
        const std::vector<Selection> places = linePlaces(song);
        for (const std::size_t line : found.changedWords) {
            if (!debt.isLeftAlone(line))
                words_.push_back({line, {}, rtftext_.piecesOf(places[line])});
        }
        return debt.othersOfKeyChange(found, directionOf(steps), spelling, sizeOf(steps),
                                      movesAll());
    };
}

KeyWay KeyWork::way(Spelling spelling, bool followsKey) const {
    return {key(), documents_.songMemory().side,
            followsKey ? std::nullopt : std::optional(spelling), others_ == OtherLines::Move};
}

void KeyWork::move(int steps, Spelling spelling, bool followsKey,
                   const std::function<void()>& lineDone) {
    spelling_ = spelling;
    unsure_.clear();
    toldOf_.reset();
    if (!followsKey) {
        const KeyChange change(directionOf(steps), spelling, sizeOf(steps));
        return changeDocumentKey(rtftext_, change, lineDone, chooseOthers(steps, spelling));
    }
    const KeyWay goal = way(spelling, followsKey);
    spelling_ = goal.found.first ? spellingOf(goal, steps) : spelling;
    if (!goal.found.key && goal.found.first)
        unsure_ = keyInWords(goal.found, goal.side);
    followKeyInDocument(rtftext_, goal.found, steps, goal.side, lineDone,
                        chooseOthers(steps, spelling_));
}

// A line that states a key which is no longer that of the song is read as the one that it owes.
FoundKey KeyWork::keyOf(Text song) const {
    FoundKey found;
    const SongMemory& memory = documents_.songMemory();
    if (memory.key) {
        found.key = found.first = memory.key;
        found.percent = 100;
        found.isStated = true;
        return found;
    }
    std::replace(song.begin(), song.end(), u'\v', u'\r');
    const SongChords read = readSongChords(song);
    std::optional<Key> stated;
    if (read.stated) {
        const auto behind = static_cast<int>(memory.lines.stepsBehind(read.stated->line));
        stated = movedKey(read.stated->key, behind);
    }
    return findKey(read.chords, stated);
}

void KeyWork::tellKey(std::optional<Key> key) {
    documents_.changeSongMemory([&](SongMemory& memory) { memory.key = key; });
    documents_.keepSongMemory();
    tell();
}

void KeyWork::respell() {
    run([this] {
        const FoundKey found = key();
        toldOf_.reset();
        const Spelling side = documents_.songMemory().side;
        unsure_ = !found.key && found.first ? keyInWords(found, side) : Text();
        followKeyInDocument(rtftext_, found, 0, side, [] {});
    });
}

void KeyWork::keyChanged(int steps) {
    const Spelling spelling = spelling_;
    const Direction direction = directionOf(steps);
    const unsigned size = sizeOf(steps);
    if (!words_.empty()) {
        const Text song = rtftext_.text().chars;
        const std::vector<Selection> places = linePlaces(song);
        for (NamedLine& line : words_)
            line.now = textAt(song, places[line.number]);
    }
    std::vector<LeftOverLine> diagrams(found_.diagramLines.size());
    std::transform(found_.diagramLines.begin(), found_.diagramLines.end(), diagrams.begin(),
                   [](std::size_t line) {
                       return LeftOverLine{line, {}, false};
                   });
    documents_.changeSongMemory([&](SongMemory& debt) {
        debt.diagrams.keyChanged(direction, spelling, size, diagrams);
        debt.lines.keyChanged(direction, spelling, size,
                              movesAll() ? std::vector<LeftOverLine>() : linesWithKeys(found_));
        if (movesAll())
            debt.lines.moved();
        if (debt.key)
            debt.key = movedKey(*debt.key, steps);
    });
    if (movesAll())
        moveDiagrams(spelling);
}

void KeyWork::moveDiagrams(Spelling spelling) {
    const KeyDebt debt = documents_.songMemory().diagrams;
    moveDiagramsInDocument(rtftext_, spelling,
                           [&](std::size_t line) { return debt.stepsBehind(line); });
    documents_.changeSongMemory([](SongMemory& all) { all.diagrams.moved(); });
}

std::vector<OtherMove> KeyWork::behind(const LeftOver& found, TextView song) const {
    return linesBehind(documents_.songMemory().lines, found, song);
}

void KeyWork::moveOthers() {
    run([this] {
        const EditorWork work(rtftext_);
        bool hasH = false;
        moveOthersInDocument(
            rtftext_,
            [&](const LeftOver& found, TextView song) {
                hasH = found.hasH;
                return hasH ? std::vector<OtherMove>() : behind(found, song);
            },
            [] {});
        moveDiagrams(spelling_);
        if (!hasH)
            documents_.changeSongMemory([](SongMemory& debt) { debt.lines.moved(); });
    });
}

void KeyWork::run(const std::function<void()>& command) {
    if (!shell_.mayBegin())
        return;
    try {
        command();
        documents_.changed();
    } catch (const std::exception& error) {
        shell_.fails(error);
    }
    tell();
}

// What was words is words again, with its formats, and is left alone from now on.
void KeyWork::putBack() {
    run([this] {
        const EditorWork work(rtftext_);
        const Selection selection = rtftext_.selection();
        const Text song = rtftext_.text().chars;
        const std::vector<Selection> places = linePlaces(song);
        // The button may be pressed before the line at the foot has heard of the last edit.
        dropUntrue(words_, song);
        // From the last to the first, as a line may have another length.
        for (auto line = words_.rbegin(); line != words_.rend(); ++line) {
            rtftext_.select(places[line->number]);
            rtftext_.put(line->before);
        }
        rtftext_.select(selection);
        documents_.changeSongMemory([this](SongMemory& debt) {
            for (const NamedLine& line : words_)
                debt.lines.leaveAlone(line.number);
        });
        words_.clear();
    });
}

// ---- What there is to say ---------------------------------------------------------------------

void KeyWork::songReplaced() {
    words_.clear();
    found_ = {};
    unsure_.clear();
    misread_ = Misread::No;
    isStale_ = true;
}

void KeyWork::idle() {
    if (std::exchange(isStale_, false))
        tell();
}

StatusNote KeyWork::noteOnMisread() {
    const StatusNote::Action tidy{u"Tidy It", [this] {
                                      undoMisread();
                                      misread_ = Misread::No;
                                      shell_.tidy();
                                      tell();
                                  }};
    if (misread_ == Misread::Undone)
        return {u"This song writes notes in a way that a key change does not read", {tidy}};
    const TextView text =
        misread_ == Misread::FlatB
            ? TextView(
                  u"This song writes H: its B is B flat, but was moved as B natural. Undo, "
                  u"and tidy it")
            : TextView(
                  u"This song writes notes in a way that a key change does not read. Undo, "
                  u"and tidy it");
    return {Text(text),
            {{u"Undo",
              [this] {
                  undoMisread();
                  tell();
              }},
             tidy}};
}

// Tidied is the song as it was.
void KeyWork::undoMisread() {
    if (misread_ == Misread::Undone)
        return;
    shell_.undo();
    misread_ = Misread::Undone;
    toldOf_.reset();
}

// Goes to the next of these places behind the cursor, and selects it.
StatusNote::Action KeyWork::show(std::vector<Selection> places) {
    return {u"Show", [this, places = std::move(places)] {
                const std::int32_t from = rtftext_.selection().begin;
                auto next = std::find_if(places.begin(), places.end(),
                                         [&](const Selection& p) { return p.begin > from; });
                if (next == places.end())
                    next = places.begin();
                rtftext_.select(*next);
                rtftext_.scrollCaretIntoView();
            }};
}

StatusNote KeyWork::noteOnLines(const LeftOver& found, std::vector<Selection> places) {
    StatusNote note;
    note.text = counted(places.size(), u" line of chords did not change key",
                        u" lines of chords did not change key");
    if (found.hasH)
        note.text += u": this song writes H, so what its B means is open";
    note.actions.push_back({u"Move Them Too", [this] { moveOthers(); }, !found.hasH});
    note.actions.push_back(show(std::move(places)));
    if (others_ == OtherLines::Ask)
        note.actions.push_back({u"Always",
                                [this] {
                                    shell_.othersChosen(OtherLines::Move);
                                    moveOthers();
                                },
                                !found.hasH});
    return note;
}

std::vector<Selection> KeyWork::diagramsBehind() const {
    std::vector<Selection> places;
    const KeyDebt& debt = documents_.songMemory().diagrams;
    if (debt.isZero())
        return places;
    for (const DiagramRun& run : diagramsOfDocument(rtftext_)) {
        for (std::int32_t at = run.place.begin;
             debt.stepsBehind(run.line) > 0 && at < run.place.end; ++at)
            places.push_back({at, at + 1});
    }
    return places;
}

void KeyWork::dropUntrue(std::vector<NamedLine>& lines, TextView song) const {
    if (lines.empty())
        return;
    const std::vector<Selection> places = linePlaces(song);
    std::erase_if(lines, [&](const NamedLine& line) {
        return line.number >= places.size() || textAt(song, places[line.number]) != line.now;
    });
}

void KeyWork::addNoteOnWords(std::vector<StatusNote>& notes, TextView song) {
    dropUntrue(words_, song);
    if (words_.empty())
        return;
    const std::vector<Selection> lines = linePlaces(song);
    std::vector<Selection> places(words_.size());
    std::transform(words_.begin(), words_.end(), places.begin(),
                   [&](const NamedLine& line) { return lines[line.number]; });
    notes.push_back(
        {counted(words_.size(), u" line of words was changed", u" lines of words were changed"),
         {show(std::move(places)),
          {words_.size() == 1 ? u"Put It Back" : u"Put Them Back", [this] { putBack(); }}}});
}

// Lines of chords are counted; a line that states a key is named.
void KeyWork::addNotesOnLines(std::vector<StatusNote>& notes, TextView song) {
    if (documents_.songMemory().lines.isZero())
        return;
    const LeftOver found = leftOverInDocument(rtftext_);
    const std::vector<Selection> places = linePlaces(song);
    std::vector<Selection> left;
    std::vector<Selection> keys;
    for (const OtherMove& move : behind(found, song)) {
        const std::size_t number = move.line.number;
        const auto isThis = [&](const auto& line) { return line.number == number; };
        const bool statesKey = std::any_of(found.keyLines.begin(), found.keyLines.end(), isThis) &&
                               std::none_of(found.lines.begin(), found.lines.end(), isThis);
        (statesKey ? keys : left).push_back(places[number]);
    }
    if (!left.empty())
        notes.push_back(noteOnLines(found, std::move(left)));
    if (!keys.empty())
        notes.push_back(
            {quoted(trimmed(textAt(song, keys.front()))) + u" names the key before",
             {{u"Move Them Too", [this] { moveOthers(); }, !found.hasH}, show(std::move(keys))}});
}

void KeyWork::tell() {
    std::vector<StatusNote> notes;
    const Text song = rtftext_.text().chars;
    if (toldOf_.value_or(song) != song) {
        misread_ = Misread::No;
        unsure_.clear();
    }
    toldOf_ = misread_ != Misread::No || !unsure_.empty() ? std::optional(song) : std::nullopt;
    if (misread_ != Misread::No)
        notes.push_back(noteOnMisread());
    addNotesOnLines(notes, song);
    if (std::vector<Selection> diagrams = diagramsBehind(); !diagrams.empty())
        notes.push_back({counted(diagrams.size(), u" diagram shows the old chord",
                                 u" diagrams show the old chords"),
                         {{u"Move Them Too", [this] { moveOthers(); }}, show(diagrams)}});
    addNoteOnWords(notes, song);
    if (!unsure_.empty())
        notes.push_back({u"The key is not sure (" + unsure_ +
                             u"): accidentals are of the kind that fits it better",
                         {}});
    Text written = writing();
    hasDiagrams_ = written != song;
    const auto capo = findCapo(written);
    shownKey_ = keyOf(std::move(written));
    const Text words = keyAndCapo(shownKey_, documents_.songMemory().side,
                                  capo ? std::optional(capo->fret) : std::nullopt);
    shell_.sayKey(words.empty() ? words : u"Key: " + words);
    isStale_ = false;
    shell_.say(std::move(notes));
}

}  // namespace melvorin
