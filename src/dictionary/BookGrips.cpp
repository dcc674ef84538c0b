#include "dictionary/BookGrips.h"

#include "base/LetterCase.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {
namespace {

constexpr TextView kBestShapes =
    u"Select Fname, Frets, Fingers from Borrower, Diagram where Font = Mname and Character = Refum";

}  // namespace

Result<Done> BookGrips::open(TextView databasePath) {
    Recordset shapes;
    Result<Done> opened = shapes.open(std::make_unique<SqliteSource>(), databasePath, kBestShapes);
    for (; opened && !shapes.eof(); shapes.moveNext()) {
        const auto grip = melvorin::gripOf(shapes.field(u"Frets").value_or(Text()),
                                           shapes.field(u"Fingers").value_or(Text()));
        if (grip)
            grips_.emplace(unicodeUpperCase(shapes.field(u"Fname").value_or(Text())), *grip);
    }
    return opened;
}

std::optional<Grip> BookGrips::gripOf(TextView chord) const {
    const auto found = grips_.find(unicodeUpperCase(chord));
    return found == grips_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace melvorin
