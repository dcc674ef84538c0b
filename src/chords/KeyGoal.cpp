#include "chords/KeyGoal.h"

#include <algorithm>
#include <cstdlib>

#include "base/EditorLine.h"
#include "chords/Chart.h"
#include "chords/KeySpelling.h"

namespace melvorin {

int nearestSteps(int fromTonic, int toTonic) {
    constexpr int octave = 12;
    const int up = ((toTonic - fromTonic) % octave + octave) % octave;
    return up > octave / 2 ? up - octave : up;
}

Spelling spellingOf(const KeyWay& way, int steps) {
    if (way.table)
        return *way.table;
    const Key goal = movedKey(way.found.first.value_or(Key()), steps);
    return fifthsOf(goal, way.side) < (goal.minor ? 3 : 0) ? Spelling::Flats : Spelling::Sharps;
}

Text movedSong(TextView song, const KeyWay& way, int steps, const LeftOver& left) {
    if (steps == 0)
        return Text(song);
    const KeyChange change(steps > 0 ? Direction::Up : Direction::Down, spellingOf(way, steps),
                           static_cast<unsigned>(std::abs(steps)));
    std::vector<LeftOverLine> others;
    if (way.movesOthers && !left.hasH)
        others = linesWithKeys(left);
    if (way.table)
        return transposeChartWith(song, change, others);
    const Text moved = followKey(song, way.found, steps, way.side);
    Text result;
    result.reserve(moved.size());
    auto other = others.begin();
    std::size_t number = 0;
    for (TextView rest = moved; !rest.empty(); ++number) {
        const TextLine line = takeLine(rest);
        const bool isOther = other != others.end() && other->number == number;
        result += isOther ? moveLeftOver(line.chars, *other++, change).line : Text(line.chars);
        result += line.end;
    }
    return result;
}

Text firstLines(TextView text, std::size_t count) {
    std::size_t end = 0;
    for (TextView rest = text; count > 0 && !rest.empty(); --count) {
        const TextLine line = takeEditorLine(rest);
        end = text.size() - rest.size() - line.end.size();
    }
    return Text(text.substr(0, end));
}

Text withEdits(TextView song, std::span<const SongEdit> edits) {
    Text result;
    std::size_t copied = 0;
    for (const SongEdit& edit : edits) {
        result.append(song.substr(copied, edit.position - copied)).append(edit.text);
        copied = edit.position + edit.length;
    }
    return result.append(song.substr(copied));
}

Text soundingName(Key key, int capo, Spelling side) {
    return keyName(movedKey(key, capo), side);
}

Text keyAndCapo(const FoundKey& found, Spelling side, std::optional<int> capo) {
    if (!found.first)
        return {};
    Text words = keyInWords(found, side);
    if (!capo)
        return words;
    words.append(u", capo ").append(decimal(*capo));
    if (found.key)
        words.append(u", sounds ").append(soundingName(*found.key, *capo, side));
    return words;
}

}  // namespace melvorin
