// The chord-notation window as the creator of charts: a song on the left, the document's or a
// pasted one, what each of its lines was taken for below it, the chart on the right, and the chords
// by name.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "base/Services.h"
#include "chords/ChordLookup.h"
#include "chords/InsertChart.h"
#include "chords/NotationDraft.h"
#include "chords/TakenSong.h"
#include "platform/Form.h"
#include "platform/RichEdit.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class FrmCifraCreator : public Form {
  public:
    // `lookup` tells which chords the dictionary has; without one the chords that can be read
    // count as found.
    FrmCifraCreator(const Services& services, const ChordLookup* lookup)
        : Form(services), draft_(lookup), sounds_(services_) {}

    // Shows the window over `song` and returns when it is gone again: with the chart, or with
    // nothing after Cancel. The text has the creator's face, read anew here, at 10 points.
    std::optional<CreatedChart> run(HWND owner, const TakenSong& song);
    // Afterwards: the chart is to stand in the place of `song`.
    bool isInPlace() const { return inPlace_; }

    // The controls, for tests.
    RichEdit& rb1() { return Rb1_; }
    RichEdit& rtb2() { return RTB2_; }
    const NotationDraft& draft() const { return draft_; }
    enum Control : int {
        kRb1 = 100,
        kRtb2,
        kLines,
        kResearched,
        kFound,
        kNotFound,
        kCmd1,
        kOpenFile,
        kPaste,
        kMakeChart,
        kSummary,
        kSongLabel,
        kChartLabel,
        kInPlace,
        kFlatB,
        kSeventhInNinth,
    };
    using Form::item;

  private:
    // The columns of the list of lines.
    enum LineColumn { kNumberColumn, kVerdictColumn, kTextColumn, kRemarkColumn };

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onException(const std::exception& error) override;
    void onCommand(int id, int code) override;
    LRESULT onNotify(LPARAM lParam);
    void onLineKey(WORD key);
    LRESULT onLineDraw(LPARAM lParam) const;
    void onLineText(LPARAM lParam) const;
    void onListPick(int id);
    void onLinePick();
    void onPlaced() override;

    bool createWindow(HWND owner);
    void addTips();
    void chooseReading(int id);
    void showReading();
    void showSong();
    void setInPlace(bool on);
    bool createSong();
    Cell createLines();
    Cell createLists();
    Cell push(TextView caption, int id, DWORD style = 0);
    void openFile();
    void paste();
    void pasteAtCaret();
    std::optional<Text> clipboardText();
    Text sourceText() const;
    void setInput(TextView text);
    static constexpr int kFontPoints = 10;
    static LRESULT CALLBACK songBox(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR self);
    void inputChanged();
    void refresh();
    bool refreshIfTyped();
    void showChart();
    void showLists();
    bool hasResult() const;
    void goTo(const ImportedChord& chord);
    void showPlaces(std::size_t sourceLine);
    const std::vector<ListedChord>& listOf(int id) const;

    const TakenSong* taken_ = nullptr;  // while the window is open
    NotationDraft draft_;
    RichEdit Rb1_;
    RichEdit RTB2_;
    Text unseen_;  // the end of a song that is too long for its box
    Text face_;
    ButtonSounds sounds_;
    std::deque<TarnelButton> buttons_;
    Cell song_;
    Cell lines_;
    Cell chart_;
    // Cmd1 was the last command: RTB2 has the text with its suffixes rewritten, not the chart.
    bool converted_ = false;
    bool accepted_ = false;
    bool inPlace_ = false;
    bool settingInput_ = false;
    bool typed_ = false;  // and the draft does not know it yet
    CreatedChart result_;
    int lastList_ = 0;
    std::size_t lastEntry_ = 0;
    std::size_t lastUse_ = 0;
};

}  // namespace melvorin
