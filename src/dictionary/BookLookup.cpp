#include "dictionary/BookLookup.h"

#include "base/LetterCase.h"
#include "chords/SuffixNormaliser.h"
#include "dictionary/ChordDictionary.h"

namespace melvorin {

BookLookup::BookLookup(const Recordset& records) {
    const std::optional<std::size_t> column = records.columnOf(u"Fname");
    if (!column)
        return;
    for (std::size_t row = 0; row < records.count(); ++row) {
        if (const std::optional<Text>& name = records.cell(row, *column))
            symbols_.insert(unicodeUpperCase(*name));
    }
}

bool BookLookup::contains(TextView chord) const {
    return symbols_.contains(unicodeUpperCase(searchText(chord, normaliseSuffixes)));
}

}  // namespace melvorin
