#include "dictionary/ChordDictionary.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Paths.h"
#include "chords/ChordSpelling.h"
#include "dictionary/Fingering.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {
namespace {

constexpr TextView kEmptyNeck = u"J";
// The chord whose own last fingering is the empty neck.
constexpr TextView kNeckChord = u"g";
constexpr TextView kDiagramFields[] = {u"Refum", u"Refdois", u"Reftres", u"Refquatro", u"refcinco"};
constexpr Rgb kBlue{0, 0, 255};
constexpr int kReadableHalfPoints = 2 * 28;

Text trimmed(TextView text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == TextView::npos)
        return {};
    return Text(text.substr(first, text.find_last_not_of(u' ') - first + 1));
}

// What is behind the note that a symbol or a name begins with.
TextView behindRoot(TextView text) {
    const std::size_t accidental = text.find_first_not_of(u"#b", 1);
    return text.substr(std::min(accidental, text.size()));
}

// "C Major Seventh over E" as part of a sentence: "Major seventh over E".
Text kindOf(TextView name) {
    Text kind(behindRoot(name));
    kind.erase(0, kind.find_first_not_of(u' '));
    const std::size_t bass = std::min(kind.rfind(u" over "), kind.size());
    return kind.substr(0, 1) + unicodeLowerCase(kind.substr(1, bass - 1)) + kind.substr(bass);
}

}  // namespace

Text searchText(TextView typed, const Normalise& normalise) {
    return trimmed(normalise(typed));
}

// kept: bare-apostrophe
Text searchCriterion(SearchField field, TextView searchText) {
    return (field == SearchField::Symbol ? u"Fname = '" : u"Course = '") +
           unicodeUpperCase(searchText) + u"'";
}

Result<bool> findChord(Recordset& records, SearchField field, TextView searchText) {
    Result<bool> found = records.find(searchCriterion(field, searchText));
    if (!found || *found.value || field != SearchField::Symbol)
        return found;
    const std::optional<Text> spelled = houseSpelling(searchText);
    if (!spelled || *spelled == searchText)
        return found;
    records.moveFirst();
    return records.find(searchCriterion(field, *spelled));
}

std::optional<Text> majorSymbol(TextView searchText) {
    if (searchText.empty())
        return std::nullopt;
    const TextView suffix = behindRoot(searchText);
    const bool major =
        suffix.starts_with(u'M') && !suffix.starts_with(u"Mi") && !suffix.starts_with(u"MI");
    if (!major)
        return std::nullopt;
    // The root may have been typed small.
    return houseSpelling(unicodeUpperCase(searchText.substr(0, 1)) + Text(searchText.substr(1)));
}

// kept: dot-path
Text jetConnection(TextView programFolder) {
    return u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + Text(programFolder) +
           u".\\Dbase\\MlvDbase.mdb;Persist Security Info=False; Jet OLEDB:Database Password = " +
           u"zm84pa6tu72wgc9nvb31";
}

Text sqliteDatabasePath(TextView programFolder) {
    return joinPath(joinPath(programFolder, u"Dbase"), u"MlvDbase.db");
}

Text jetDatabasePath(TextView programFolder) {
    return joinPath(joinPath(programFolder, u"Dbase"), u"MlvDbase.mdb");
}

void showEntry(const Recordset& records, ShownEntry& shown) {
    const auto take = [&](TextView field, Text& place) {
        if (std::optional<Text> value = records.field(field))
            place = std::move(*value);
    };
    if (const std::optional<Text> font = records.field(u"Mname"))
        shown.face = u"Melvorin " + *font;
    for (std::size_t i = 0; i < std::size(kDiagramFields); ++i)
        take(kDiagramFields[i], shown.captions[i]);
    take(u"Course", shown.LB);
    // kept: neck-glyph
    shown.captions[5] = shown.captions[0] == kNeckChord ? kNoDiagram : kEmptyNeck;
    // Every entry has two diagrams at least.
    for (std::size_t i = 2; i < kDiagramButtons; ++i)
        shown.visible[i] = shown.captions[i] != kNoDiagram;
}

Result<Done> ChordDictionary::open(TextView programFolder, Files& files) {
    const auto openWith = [&](std::unique_ptr<RowSource> source, TextView connection,
                              TextView path) {
        Result<Done> opened = records_.open(std::move(source), connection, kRecordSource);
        if (opened)
            showEntry(records_, shown_);
        else
            opened.cause = Text(path) + u"\r\n\r\n" + opened.cause;
        return opened;
    };
    const Text jetPath = jetDatabasePath(programFolder);
    const Text sqlitePath = sqliteDatabasePath(programFolder);
    if (makeJet_ && files.exists(jetPath)) {
        Result<Done> opened = openWith(makeJet_(), jetConnection(programFolder), jetPath);
        if (opened || !files.exists(sqlitePath))
            return opened;
    }
    return openWith(std::make_unique<SqliteSource>(), sqlitePath, sqlitePath);
}

Text ChordDictionary::find(TextView typed, SearchField field) {
    Text text = searchText(typed, normalise_);
    if (text.empty())
        return text;
    otherReading_.reset();
    search(text, field);
    if (field == SearchField::Symbol)
        readOtherwise(text);
    return text;
}

void ChordDictionary::search(TextView text, SearchField field) {
    const auto fail = [&](TextView cause) {
        reportFailure(messages_,
                      u"Melvorin cannot look for \"" + Text(text) + u"\".\r\n\r\n" + Text(cause));
    };
    const std::size_t former = records_.position().value_or(records_.count());
    if (const Result<Done> refreshed = records_.refresh(); !refreshed)
        return fail(refreshed.cause);
    const Result<bool> found = findChord(records_, field, text);
    if (!found) {
        // The diagrams that are shown stay, and so does their row.
        records_.moveTo(former);
        return fail(found.cause);
    }
    if (*found.value) {
        showEntry(records_, shown_);
    } else if (records_.eof() && !records_.bof()) {
        // kept: not-found-title
        messages_.show(u"Chord Not Found", u" Melvorin Database          ",
                       MessageIcon::Information, MessageButtons::Ok);
    }
}

void ChordDictionary::readOtherwise(TextView text) {
    const auto found = records_.position();
    const std::optional<Text> major = majorSymbol(text);
    if (!found || !major)
        return;
    records_.moveFirst();
    const Result<bool> there = findChord(records_, SearchField::Symbol, *major);
    const std::optional<Text> symbol = records_.field(u"Fname");
    const std::optional<Text> name = records_.field(u"Course");
    // Two symbols may be the same chord.
    if (there && *there.value && symbol && name && *name != shown_.LB)
        otherReading_ = {*symbol, kindOf(*name) + u": " + *symbol};
    records_.moveTo(*found);
}

void ChordDictionary::moveFirst() {
    otherReading_.reset();
    records_.moveFirst();
    showEntry(records_, shown_);
}

void ChordDictionary::movePrevious() {
    otherReading_.reset();
    records_.movePrevious();
    if (records_.bof())
        records_.moveFirst();
    showEntry(records_, shown_);
}

void ChordDictionary::moveNext() {
    otherReading_.reset();
    records_.moveNext();
    if (records_.eof())
        records_.moveLast();
    showEntry(records_, shown_);
}

void ChordDictionary::moveLast() {
    otherReading_.reset();
    records_.moveLast();
    showEntry(records_, shown_);
}

void ChordDictionary::moveTo(std::size_t row) {
    otherReading_.reset();
    records_.moveTo(row);
    showEntry(records_, shown_);
}

DiagramStyle insertDiagram(DiagramEditor& editor, TextView glyph, TextView face) {
    const DiagramStyle around = editor.style();
    const bool besideDiagram = diagramFontNumber(around.face).has_value();
    const int size =
        besideDiagram ? around.halfPoints : std::max(around.halfPoints, kReadableHalfPoints);
    const DiagramStyle diagram{Text(face), size, kBlue};
    editor.put(glyph, diagram);
    return besideDiagram ? diagram : around;
}

}  // namespace melvorin
