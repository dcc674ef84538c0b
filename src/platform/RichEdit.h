// The rich-text control: one wrapper for everything the program asks of it.
//
// Positions are the control's own: 0-based UTF-16 units, a line end counts 1. The control's undo
// is off (the program keeps whole-document snapshots), so its undo message changes nothing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <richedit.h>
#include "base/Editor.h"
#include "platform/Handles.h"
#include "platform/Win.h"

namespace melvorin {

// Hears of every change that the user makes by a key, before and after it.
class EditObserver {
  public:
    virtual ~EditObserver() = default;
    // The selection and the length of the text, as they are.
    virtual void editBegins(Selection selected, std::int32_t length) = 0;
    // The control has made it. What is changed now is part of it, and no event comes of that. False
    // where the document is what it was, so that nobody is to be told.
    virtual bool editEnds(Selection selected, std::int32_t length) = 0;
};

// A document is loaded into a fresh control, which then takes the old one's place: emptying a
// control costs several times what filling one does (Wine), and a document that the control
// refuses leaves the old one untouched. The handle changes with every load.
class RichEdit : public Editor {
  public:
    // Creates the control inside `parent`, filling nothing yet (see `place`). False when no
    // rich-text library can be loaded. `id` comes back in the parent's WM_COMMAND.
    bool create(HWND parent, int id, TextView face, int points);
    // The same without a control until the first document is loaded, which would only take its
    // place. Whatever is set before then holds for it too.
    void createOnLoad(HWND parent, int id, TextView face, int points);
    // The control goes, with its text; the next load makes another.
    void destroy();
    // The control of the moment, null where there is none yet; ask again after a load.
    HWND handle() const { return handle_; }
    // Gets key, character, double-click, wheel and drop messages before the control does; that does
    // not see those it returns true for. The parent hears EN_CHANGE as WM_COMMAND and EN_SELCHANGE
    // as WM_NOTIFY, the latter also at the end of every piece of work.
    using InputFilter = std::function<bool(UINT message, WPARAM wParam, LPARAM lParam)>;
    void setInputFilter(InputFilter filter) { inputFilter_ = std::move(filter); }
    // The format that a typed character takes, given the face that it has otherwise; nothing where
    // it keeps what it has.
    struct TypingFormat {
        Text face;
        int points = 0;
        Rgb colour{};
    };
    using TypingRule = std::function<std::optional<TypingFormat>(TextView face)>;
    void setTypingRule(TypingRule rule) { typingRule_ = std::move(rule); }
    // Outlives the control; one at a time.
    void setEditObserver(EditObserver& observer) { observer_ = &observer; }
    void place(const RECT& rectangle);
    // Before `create`: no frame around the control.
    void setFrameless() { edge_ = 0; }
    // Shows the text larger or smaller without changing it; 100 is its own size. The line at the
    // top stays there.
    void setZoom(int percent);
    int zoom() const { return zoom_; }
    // Above its siblings, or out of sight.
    void show(bool visible);

    bool isEmpty() const override;
    EditorText text() const override;
    std::string rtf() const override;
    bool loadRtf(std::string_view rtf) override;
    bool loadPlain(const EditorText& text, TextView face, int points) override;
    void setSelectionFont(TextView face, int points) override;
    void setSelectionFace(TextView face) override;
    void setSelectionSize(int halfPoints) override;
    void setSelectionColour(Rgb colour) override;
    void setBold(bool on) override;
    void setItalic(bool on) override;
    void setUnderline(bool on) override;
    SelectionStyle selectionStyle() const override;
    void replaceSelection(TextView text) override;
    bool replaceSelectionRtf(std::string_view rtf) override;
    void sendUndo() override;
    std::optional<Rgb> background() const override { return background_; }
    // What is seen behind the text. Songs are written in black, so it is white where the system's
    // windows are too dark for that; after a change of the system's colours set the background
    // again.
    Rgb paper() const;
    void setBackground(std::optional<Rgb> colour) override;
    Text faceAt(std::int32_t position) override;
    std::optional<Selection> find(TextView what, std::int32_t from,
                                  FindOptions options) const override;
    Selection selection() const override;
    void select(Selection selection) override;
    ScrollPosition scrollPosition() const override;
    void scrollTo(ScrollPosition position) override;
    void scrollCaretIntoView() override;
    bool isInView(std::int32_t position) const override;
    void centre(std::int32_t position) override;
    void beginWork() override;
    void endWork() override;

    // True while a command works on the document; change events are then none of the user's.
    bool atWork() const { return work_ > 0; }

    Text textBetween(Selection range) const;
    // The selection as a document of its own.
    std::string selectionRtf() const;
    std::int32_t length() const;

    // A stretch of the text, all of it in one format, or a picture.
    struct Piece {
        Text text;
        CHARFORMAT2W format{};
        std::string picture;  // Rich Text
    };
    // These three leave selection and page where they were. Within a Quiet, or it would be seen.
    SelectionStyle styleOf(Selection range);
    std::vector<Piece> piecesOf(Selection range);
    // In place of the selection, which is behind them afterwards.
    void put(const std::vector<Piece>& pieces);
    // The stretches of a range that have one face, in order; at most so many, nothing where there
    // are more.
    struct FaceRun {
        Selection range;
        Text face;
    };
    // `until`: the last one may be the first that has such a face.
    std::optional<std::vector<FaceRun>> faceRuns(
        Selection range, std::size_t most,
        const std::function<bool(TextView face)>& until = nullptr);
    // Whether the text has such a face; true also where it has too many to look through.
    bool mayHaveFace(const std::function<bool(TextView face)>& is);

    // While it lives nothing is drawn and no event comes. What has changed is drawn at its end.
    class Quiet {
      public:
        explicit Quiet(RichEdit& editor);
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;
        ~Quiet();
        void changed() { changed_ = true; }

      private:
        RichEdit& editor_;
        LRESULT events_;
        UniqueRegion pending_;  // what was to be drawn when it began
        bool changed_ = false;
    };
    // The standard edit messages.
    void cut();
    void copy();
    void clear();
    // Puts text in place of the selection as if it was typed: in the format for that, with one
    // change event.
    void type(TextView text);
    // Runs a change that is one of the user's own, with one change event; none where nothing
    // changes.
    void change(const std::function<void()>& action) { changeBy(action, false); }
    // Where a character stands, in pixels of the control.
    POINT pointOf(std::int32_t position) const;
    // The character at a place of the control, in pixels; the nearest one where there is none.
    std::int32_t positionAt(POINT point) const;
    void setAlignment(Alignment alignment);

    std::int32_t lineCount() const;
    std::int32_t lineOf(std::int32_t position) const;
    std::int32_t firstOfLine(std::int32_t line) const;
    std::int32_t lengthOfLine(std::int32_t line) const;
    std::int32_t firstVisibleLine() const;
    // How far the text is scrolled, in pixels as far as the control counts them: to see whether it
    // has been.
    POINT page() const;
    // Puts the caret at the start of a line (from 0) and the line at the top of the control, or as
    // far up as it can go; one visible change, drawn at once.
    void bringToTop(std::int32_t line);

  private:
    class Look;
    std::optional<std::vector<FaceRun>> writtenFaceRuns(Selection range);

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageW(handle_, message, wParam, lParam);
    }
    void applyToSelection(const CHARFORMAT2W& format);
    void setEffect(DWORD mask, DWORD effect, bool on);
    std::string streamOut(WPARAM what = SF_RTF) const;
    std::string mended(std::string written, const std::function<Text()>& text) const;
    HWND createControl();
    static LRESULT CALLBACK filterInput(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                        UINT_PTR id, DWORD_PTR self);
    void applyPlace() const;
    void applyZoom(HWND control) const;
    Selection beginningOfText(std::int32_t line) const;
    int widthOf(Selection range) const;
    bool onTyped(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id);
    void changeBy(const std::function<void()>& action, bool types);
    bool observe(const std::function<bool()>& hear);
    bool onDeleted(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id);
    void onComposition(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id);
    void tellChange() const;
    void formatTyped(std::int32_t begin);
    void tellSelection() const;
    void drawAgain(bool changed) const;
    void thaw() const;
    // False when the control does not take the bytes; the old one then stays.
    bool fillFresh(WPARAM format, std::string_view bytes);

    InputFilter inputFilter_;
    TypingRule typingRule_;
    EditObserver* observer_ = nullptr;
    bool composes_ = false;     // an input method is at work
    bool returnTyped_ = false;  // the character of a key that was dealt with is still to come
    WPARAM firstHalf_ = 0;      // of a character of two units, until the second comes
    HWND handle_ = nullptr;     // owned by the parent window
    HWND parent_ = nullptr;
    int id_ = 0;
    RECT place_{};
    CHARFORMAT2W defaultFormat_{};
    std::optional<Rgb> background_;
    DWORD edge_ = WS_EX_CLIENTEDGE;
    int zoom_ = 100;
    BYTE revisionAuthor_ = 0;  // of all characters; only its change counts
    bool shown_ = true;
    int work_ = 0;
    int quiet_ = 0;
};

}  // namespace melvorin
