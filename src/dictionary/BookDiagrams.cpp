#include "dictionary/BookDiagrams.h"

#include "chords/SuffixNormaliser.h"
#include "dictionary/ChordDictionary.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {

Result<Done> seekChord(Recordset& chords, TextView chord) {
    Text text = searchText(chord, normaliseSuffixes);
    // A search compares without case; here nobody sees which of two chords was found.
    if (const std::optional<Text> major = majorSymbol(text))
        text = *major;
    Result<bool> found = Result<bool>::success(false);
    for (const SearchField field : {SearchField::Symbol, SearchField::Name}) {
        if (text.empty() || !found || *found.value)
            continue;
        chords.moveFirst();
        found = findChord(chords, field, text);
    }
    if (!found)
        return Failure{found.cause};
    if (!*found.value)
        return Failure{u"There is no such chord."};
    return done();
}

Result<Done> BookDiagrams::open(TextView databasePath) {
    return chords_.open(std::make_unique<SqliteSource>(), databasePath, kRecordSource);
}

std::optional<BookDiagram> BookDiagrams::find(TextView chord) {
    const auto [entry, isNew] = known_.try_emplace(Text(chord));
    if (!isNew || !chords_.isOpen() || !seekChord(chords_, chord))
        return entry->second;
    Text character = chords_.field(u"Refum").value_or(Text());
    if (!character.empty() && character != kNoDiagram)
        entry->second = {chords_.field(u"Mname").value_or(Text()), std::move(character)};
    return entry->second;
}

}  // namespace melvorin
