// The side panel of the main window: looks chords up and puts their diagrams into the document.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "base/Services.h"
#include "dictionary/ChordDictionary.h"
#include "dictionary/PanelLayout.h"
#include "platform/DiagramFonts.h"
#include "platform/Form.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class DictionaryPanel : public Form {
  public:
    // What the main window does for the panel.
    struct Actions {
        // Puts a diagram into the document.
        std::function<void(TextView glyph, TextView face)> insert;
        // The panel was shown, hidden or given another width.
        std::function<void()> layOut;
        // The keyboard goes back to the document.
        std::function<void()> leave;
    };

    // What `services` refers to outlives the panel.
    DictionaryPanel(const Services& services, Actions actions);

    // Creates the panel, hidden. False when Windows refuses.
    bool create(HWND parent);
    // Makes the diagram fonts known, opens the database and shows its first entry. What is missing
    // is told in the panel.
    void openDictionary();

    // Closed means hidden.
    PanelWidth width() const { return shown_ ? widthOf(view_) : PanelWidth::Closed; }
    // Shows the panel with the keyboard in its search box. A database that could not be opened is
    // tried again.
    void show();
    // Looks up what stands in the search box; nothing for an empty one.
    void findChord();
    void hide();
    void place(const Area& area);
    // A key that edits the search text, which no shortcut of the document may take.
    bool editsText(const MSG& message) const;

    const ChordDictionary& dictionary() const { return dictionary_; }
    PanelView view() const { return view_; }
    HWND part(PanelPart part) const { return parts_[static_cast<std::size_t>(part)]; }
    void choose(SearchField field);
    void press(PanelPart part);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool onKeyDown(WPARAM key) override;
    LRESULT onNotify(LPARAM lParam);
    void onGridText(NMLVDISPINFOW& info) const;
    void onGridChange(const NMLISTVIEW& change);
    LRESULT onGridFind(const NMLVFINDITEMW& find) const;

    void createLabels();
    void createButtons();
    void createGrid();
    HWND createControl(PanelPart part, const wchar_t* className, const wchar_t* text, DWORD style,
                       DWORD extendedStyle = 0);
    TarnelButton& button(PanelPart part);

    void findOther();
    void insertDiagram(std::size_t index);
    void switchTo(PanelView view);
    void move(void (ChordDictionary::*where)());

    void layOutParts();
    void showRecords();
    void showCurrent();
    void showOther();
    void showEntryButtons();
    void showGridRow();
    void fitDiagramFont();
    PanelNotice notice() const;
    Text noticeText() const;
    void setText(PanelPart part, TextView text);

    Actions actions_;
    ChordDictionary dictionary_;
    ButtonSounds sounds_;
    DiagramFonts fonts_;
    std::size_t fontCount_ = 0;
    Text trouble_;  // why there is no database
    PanelView view_ = PanelView::Search;
    PanelLayout layout_{};
    bool shown_ = false;
    bool followsGrid_ = true;  // off while the grid is told what to select
    UniqueFont labelFont_;
    UniqueFont nameFont_;
    UniqueFont diagramFont_;
    std::vector<HWND> parts_;
    std::vector<std::unique_ptr<TarnelButton>> buttons_;
};

}  // namespace melvorin
