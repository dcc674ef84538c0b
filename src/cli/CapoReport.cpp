#include "cli/CapoReport.h"

#include "chords/KeyGoal.h"
#include "chords/KeySpelling.h"

namespace melvorin {

std::string capoReport(TextView name, TextView song, const ChordGrips& grips) {
    const FoundKey found = findKey(song);
    if (!found.first)
        return toUtf8(name) + "\t?\n";
    const Spelling side = sideOf(song);
    const auto now = findCapo(song);
    const int capo = now ? now->fret : 0;
    const std::string sounds = toUtf8(soundingName(*found.first, capo, side));
    std::string report;
    for (const CapoChoice& choice : capoChoices(chordsOfSong(song), *found.first, capo, &grips)) {
        report += toUtf8(name) + '\t' + std::to_string(choice.fret) + '\t' +
                  toUtf8(keyName(choice.shapes, side)) + '\t' + sounds;
        for (const std::size_t count : {choice.open, choice.barres, choice.closed, choice.unknown})
            report += '\t' + std::to_string(count);
        report += '\n';
    }
    return report;
}

}  // namespace melvorin
