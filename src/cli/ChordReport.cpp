#include "cli/ChordReport.h"

#include <utility>
#include <vector>

#include "dictionary/BookDiagrams.h"
#include "dictionary/ChordDictionary.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {
namespace {

constexpr TextView kShapes = u"Select Font, Character, Frets, Fingers from Diagram";
constexpr TextView kDiagrams[] = {u"Refum", u"Refdois", u"Reftres", u"Refquatro", u"Refcinco"};

Text valueOf(const Recordset& records, TextView field) {
    return records.field(field).value_or(Text());
}

void addLine(std::string& report, const std::vector<Text>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0)
            report += '\t';
        report += toUtf8(fields[i]);
    }
    report += '\n';
}

}  // namespace

Result<Done> ChordReport::open(TextView databasePath) {
    Result<Done> opened =
        chords_.open(std::make_unique<SqliteSource>(), databasePath, kRecordSource);
    if (!opened)
        return opened;
    Recordset shapes;
    Result<Done> read = shapes.open(std::make_unique<SqliteSource>(), databasePath, kShapes);
    for (; read && !shapes.eof(); shapes.moveNext()) {
        shapes_[valueOf(shapes, u"Font") + valueOf(shapes, u"Character")] = {
            valueOf(shapes, u"Frets"), valueOf(shapes, u"Fingers")};
    }
    return read;
}

Result<Done> ChordReport::describe(TextView chord, std::string& report) {
    Result<Done> found = seekChord(chords_, chord);
    if (!found)
        return found;
    const Text font = valueOf(chords_, u"Mname");
    for (const TextView field : kDiagrams) {
        const Text character = valueOf(chords_, field);
        if (character.empty() || character == kNoDiagram)
            continue;
        const auto shape = shapes_.find(font + character);
        const Shape known = shape == shapes_.end() ? Shape() : shape->second;
        addLine(report, {valueOf(chords_, u"Fname"), valueOf(chords_, u"Course"), font, character,
                         known.frets, known.fingers});
    }
    return done();
}

void ChordReport::list(std::string& report) const {
    for (std::size_t row = 0; row < chords_.count(); ++row) {
        std::vector<Text> fields;
        for (std::size_t column = 0; column < chords_.fields().size(); ++column)
            fields.push_back(chords_.cell(row, column).value_or(Text()));
        addLine(report, fields);
    }
}

}  // namespace melvorin
