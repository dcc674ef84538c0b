#include "chords/SongDiagrams.h"

#include <algorithm>
#include <utility>

#include "chords/ChordLine.h"

namespace melvorin {

std::optional<char16_t> SongDiagrams::add(SongDiagram diagram, TextView song) {
    char16_t token = diagrams_.empty() ? kFirstDiagramToken
                                       : static_cast<char16_t>(diagrams_.rbegin()->first + 1);
    while (isDiagramToken(token) && song.find(token) != TextView::npos)
        ++token;
    if (!isDiagramToken(token))
        return std::nullopt;
    diagrams_.emplace(token, std::move(diagram));
    return token;
}

std::optional<char16_t> SongDiagrams::tokenOf(char16_t letter, TextView face) const {
    for (const auto& [token, diagram] : diagrams_) {
        if (diagram.letter == letter && diagram.face == face)
            return token;
    }
    return std::nullopt;
}

const SongDiagram* SongDiagrams::find(char16_t token) const {
    if (!isDiagramToken(token))
        return nullptr;
    const auto found = diagrams_.find(token);
    return found == diagrams_.end() ? nullptr : &found->second;
}

Text SongDiagrams::letters(TextView text) const {
    Text letters(text);
    for (char16_t& c : letters) {
        if (const SongDiagram* const diagram = find(c))
            c = diagram->letter;
    }
    return letters;
}

bool SongDiagrams::changesWithKey(TextView line) const {
    return std::any_of(line.begin(), line.end(),
                       [&](char16_t c) { return c != u' ' && find(c) == nullptr; }) &&
           IsChordLine(letters(line));
}

}  // namespace melvorin
