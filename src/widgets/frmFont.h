// The font and colours window. It formats the selection of the editor, each change at once, and
// stays open beside the main window; it follows the selection meanwhile.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include "platform/Form.h"
#include "platform/RichEdit.h"
#include "widgets/FontChoice.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmFont : public Form {
  public:
    struct Callbacks {
        // The document's change notification.
        std::function<void()> changed;
        // Another command is under way: nothing may be changed now.
        std::function<bool()> isBusy;
    };

    // What is given outlives the window.
    frmFont(const Services& services, RichEdit& rtftext, Callbacks callbacks);

    // Opens the window over `owner`, or brings it forward. False when Windows refuses.
    bool open(HWND owner);

    // The ids of the controls, by their names; the swatches have kG1 and up.
    enum ControlId {
        kText2 = 101,
        kList1,
        kT1,
        kList2,
        kCheck1,
        kCheck2,
        kCheck3,
        kOp1Text,
        kOp1Back,
        kCommand3,
        kLabel3,
        kLabel4,
        kOption1,
        kOption2,
        kCommand1,
        kG1 = 200,
    };

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int code) override;
    void onClose() override;
    void onPlaced() override;
    void onClicked(int id);
    void onTimer(UINT_PTR timer);
    void onMeasureItem(LPARAM lParam) const;
    void onDrawItem(LPARAM lParam);
    LRESULT onLabelColour(HDC dc) const;

    bool createWindow(HWND owner);
    void createControls(HWND owner);
    Cell createPair(const wchar_t* caption, int width, int boxId, int listId);
    Cell createStyleBoxes();
    Cell createExample();
    Cell createSettings();
    Cell createSwatches();
    Cell createSwatch(std::size_t index);
    void fillLists();

    bool mayChange();
    template <class Change>
    void apply(Change change);
    void onFaceChosen();
    void onSizeChosen();
    void onTyped(int id);
    void takeTyped();
    void takeTypedFace();
    void takeTypedSize();
    void onBoxLeft(int id);
    bool isBadSize() const;
    bool tellBadSize();
    void applyFace(TextView face);
    void applySize(int halfPoints);
    void onStyleClicked(int id);
    void applyColour(Rgb colour);
    void onMoreColours();
    void onSwatchKey(int keyCode);
    void moveStop(std::size_t index);
    void onSave();

    void followSelection();
    Rgb colourOfFirst(Selection selection);
    void showStyle();
    void showExample();
    void markFace(TextView face);
    void markSize(std::optional<int> halfPoints);
    HFONT faceFont(const Text& face);

    // Text2 and List1 belong together, so do T1 and List2: up and down in the box move the list,
    // letters in the list go to the box.
    static LRESULT CALLBACK pairProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR self);

    RichEdit& rtftext_;
    Callbacks callbacks_;
    ButtonSounds sounds_;
    std::deque<TarnelButton> G1_;
    std::size_t stop_ = 0;  // the swatch that Tab leads to
    TarnelButton Command1_;
    TarnelButton Command2_;
    TarnelButton Command3_;
    std::vector<Text> faces_;
    std::map<Text, UniqueFont> faceFonts_;
    UniqueFont exampleFont_;
    UniqueBrush exampleBrush_;
    SelectionStyle style_;  // what the controls show
    Rgb firstColour_;
    std::optional<Rgb> background_;
    Selection selection_;
    int typedIn_ = 0;         // the box with text that the editor does not have yet
    bool typedSize_ = false;  // what stands in T1 was typed and not taken yet
    bool filling_ = false;    // the window itself changes its controls
};

}  // namespace melvorin
