#include "dictionary/BookDrawings.h"

#include "base/DiagramFont.h"
#include "chords/CellWidth.h"
#include "dictionary/Recordset.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {

Result<Done> BookDrawings::open(TextView databasePath) {
    Recordset rows;
    Result<Done> opened =
        rows.open(std::make_unique<SqliteSource>(), databasePath,
                  u"Select Font, Character, Symbol, Frets, Fingers, FirstFret from Diagram");
    const auto field = [&rows](TextView name) { return rows.field(name).value_or(Text()); };
    for (; opened && !rows.eof(); rows.moveNext()) {
        const Text first = field(u"FirstFret");
        const bool isNumber =
            !first.empty() && first.size() <= 2 && isDigit(first.front()) && isDigit(first.back());
        if (!isNumber)
            continue;
        int fret = 0;
        for (const char16_t c : first)
            fret = fret * 10 + (c - u'0');
        shapes_[field(u"Font") + field(u"Character")] = {field(u"Symbol"), field(u"Frets"),
                                                         field(u"Fingers"), fret};
    }
    return opened;
}

std::optional<Text> BookDrawings::svgOf(char16_t letter, TextView face) const {
    if (!isDiagramFace(face))
        return std::nullopt;
    const auto found = shapes_.find(Text(face.substr(face.size() - 2)) + letter);
    return found == shapes_.end() ? std::nullopt : diagramSvg(found->second);
}

}  // namespace melvorin
