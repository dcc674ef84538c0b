#include "dictionary/BookLookup.h"

#include <algorithm>

#include "app/LetterCase.h"
#include "chords/SuffixNormaliser.h"
#include "dictionary/ChordDictionary.h"

namespace melvorin {

BookLookup::BookLookup(const Recordset& records) {
    const auto& fields = records.fields();
    const auto symbol = std::find_if(fields.begin(), fields.end(), [](const Text& field) {
        return equalWithoutCase(field, u"Fname");
    });
    if (symbol == fields.end())
        return;
    const auto column = static_cast<std::size_t>(symbol - fields.begin());
    for (std::size_t row = 0; row < records.count(); ++row) {
        if (const std::optional<Text>& name = records.cell(row, column))
            symbols_.insert(toUpperCase(*name));
    }
}

bool BookLookup::contains(TextView chord) const {
    return symbols_.contains(toUpperCase(searchText(chord, normaliseSuffixes)));
}

}  // namespace melvorin
