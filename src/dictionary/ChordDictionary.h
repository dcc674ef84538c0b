// The chord dictionary without its window: looking chords up in the database, and what the panel
// shows of the entry that was found.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "base/Services.h"
#include "dictionary/DiagramEditor.h"
#include "dictionary/Recordset.h"

namespace melvorin {

// The fields of a chord, as they are asked for.
// kept: small-refcinco
inline constexpr TextView kRecordSource =
    u"Select Fname, Course, Mname, Refum, Refdois, Reftres, Refquatro, refcinco from Borrower";

// How the Jet provider is told about the database below the program folder. The folder and the
// next part are joined without a separator: the "." that comes first vanishes from the path.
Text jetConnection(TextView programFolder);

// Both below the program folder.
Text sqliteDatabasePath(TextView programFolder);
Text jetDatabasePath(TextView programFolder);

// Stands in the database where an entry has no further diagram.
inline constexpr TextView kNoDiagram = u"§";

enum class SearchField { Symbol, Name };

// How a search text is brought into the program's own spelling of chords.
using Normalise = std::function<Text(TextView)>;

// What is looked for where the user typed `typed`: normalised, without blanks around it.
Text searchText(TextView typed, const Normalise& normalise);
// The criterion for a search text, an apostrophe in it left as it is.
Text searchCriterion(SearchField field, TextView searchText);
// Searches from the current row on; a symbol in another usual notation ("Bm7(9)") is looked for in
// the house's spelling where it is not found as it stands.
Result<bool> findChord(Recordset& records, SearchField field, TextView searchText);

inline constexpr std::size_t kDiagramButtons = 6;  // GB1 to GB6

// What the labels and buttons of the panel show.
struct ShownEntry {
    Text face;  // font of all diagram buttons
    Text LB;    // name of the chord
    std::array<Text, kDiagramButtons> captions;
    std::array<bool, kDiagramButtons> visible{true, true, true, true, true, true};
};

// A chord that is found beside another one.
struct OtherReading {
    Text symbol;   // as the dictionary has it: "C7+"
    Text caption;  // for the user: "Major seventh: C7+"
};

// The symbol of the chord that is meant by a capital M behind the root ("CM7", "C#M9/E", not
// "CMin"): a search compares without case and takes "CM7" for "Cm7". Nothing for other texts.
std::optional<Text> majorSymbol(TextView searchText);

// Shows the current record. What cannot be read stays as it was.
void showEntry(const Recordset& records, ShownEntry& shown);

class ChordDictionary {
  public:
    using MakeSource = std::function<std::unique_ptr<RowSource>()>;

    // `messages` outlive the object. `makeJet` may be empty where there is no such provider.
    ChordDictionary(MessageBoxes& messages, MakeSource makeJet, Normalise normalise)
        : messages_(messages), makeJet_(std::move(makeJet)), normalise_(std::move(normalise)) {}

    // Opens the database below the program folder, the older format first where one is there, and
    // shows its first entry. The cause of a failure names the file.
    Result<Done> open(TextView programFolder, Files& files);

    // Looks a chord up and returns the text that the search box then has. Where the entry is not
    // found or the text breaks the search, a message box says so and the shown entry stays.
    Text find(TextView typed, SearchField field);
    // The major chord that the text of the last search means by its capital M, where the search
    // led to another chord. Gone with the next move.
    const std::optional<OtherReading>& otherReading() const { return otherReading_; }
    // The data control's moves: they stop at the first and last record. Each shows the record.
    void moveFirst();
    void movePrevious();
    void moveNext();
    void moveLast();
    void moveTo(std::size_t row);

    const Recordset& records() const { return records_; }
    const ShownEntry& shown() const { return shown_; }

  private:
    void search(TextView text, SearchField field);
    void readOtherwise(TextView text);

    MessageBoxes& messages_;
    MakeSource makeJet_;
    Normalise normalise_;
    Recordset records_;
    ShownEntry shown_;
    std::optional<OtherReading> otherReading_;
};

// Puts a diagram in the place of the selection, blue. A diagram beside others has their size, any
// other one that can be read. Returns the style in which text behind it goes on.
DiagramStyle insertDiagram(DiagramEditor& editor, TextView glyph, TextView face);

}  // namespace melvorin
