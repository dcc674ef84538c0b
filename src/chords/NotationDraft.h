// A song on its way from the clipboard to the editor: the text as it was pasted, the verdicts the
// user has changed, the chart, and the chords in it by name.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/ChordLookup.h"
#include "chords/SongDiagrams.h"
#include "chords/SongImport.h"

namespace melvorin {

// A name and where it is used.
struct ListedChord {
    Text label;                     // "Cmaj7 = C7+  (3)"
    std::vector<std::size_t> uses;  // numbers in `NotationDraft::song().chords`
};

class NotationDraft {
  public:
    // Chords are looked up in `lookup`, which outlives the draft; without one every chord that can
    // be read counts as found.
    explicit NotationDraft(const ChordLookup* lookup = nullptr) : lookup_(lookup) {}
    NotationDraft(const NotationDraft&) = delete;
    NotationDraft& operator=(const NotationDraft&) = delete;

    // The diagrams whose tokens stand in the text; they outlive the draft.
    void setDiagrams(const SongDiagrams& diagrams) { diagrams_ = &diagrams; }
    // A new version of the text. The user's verdicts stay with their lines where these are the
    // same as before, above and below what has changed.
    void setSource(Text source);
    // A verdict of the user for a line; nothing leaves it to the program again.
    void choose(const std::vector<std::size_t>& lines, std::optional<LineVerdict> verdict);

    // What the user says about the whole song, until another one comes.
    void setOptions(const ImportOptions& options);
    const ImportOptions& options() const { return options_; }
    // Whether some chord has a plain B, so that the user may want to say what it is: a song without
    // a sign of its own may be German all the same.
    bool hasPlainB() const;

    const SongImport& song() const { return song_; }
    // Every item that was taken for a chord, as it is written in the song, in the order of the
    // first use of each.
    const std::vector<ListedChord>& researched() const { return researched_; }
    // The chords of the chart that the lookup has, and those that it has not or that nobody can
    // read.
    const std::vector<ListedChord>& found() const { return found_; }
    const std::vector<ListedChord>& notFound() const { return notFound_; }

    // Where a line of the source, or a place in it, stands in a control that holds the text.
    std::size_t sourcePosition(std::size_t line, std::size_t index = 0) const;
    std::size_t chartPosition(std::size_t line, std::size_t index = 0) const;

    // "12 lines: 4 chords, 8 lyrics. 2 lines will not change key."
    Text summary() const;

    // The lines of the chart; those of chords are the ones that a key change takes for chords.
    std::vector<ImportedLine> colouredLines() const;

  private:
    void import();
    void judgeDiagrams();
    void listChords();

    const ChordLookup* lookup_;
    const SongDiagrams* diagrams_ = nullptr;
    Text source_;
    ChosenVerdicts chosen_;
    ImportOptions options_;
    SongImport song_;
    std::vector<std::size_t> sourceStarts_;
    std::vector<std::size_t> chartStarts_;
    std::vector<ListedChord> researched_;
    std::vector<ListedChord> found_;
    std::vector<ListedChord> notFound_;
};

}  // namespace melvorin
