// The editing control as the rules of the program see it: text, rich text, selection. RichEdit
// implements it, and DarkEditor over one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Text.h"

namespace melvorin {

// Positions of the control: 0-based, a line end counts 1, begin <= end.
struct Selection {
    std::int32_t begin = 0;
    std::int32_t end = 0;

    friend bool operator==(const Selection&, const Selection&) = default;
};

// How far the view is scrolled: in device pixels from the document's top left corner, and the line
// at the top, from 0, where it is known.
struct ScrollPosition {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t line = -1;

    friend bool operator==(const ScrollPosition&, const ScrollPosition&) = default;
};

// A colour as red, green and blue, 0 to 255.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

enum class Alignment { Left = 0, Right = 1, Center = 2 };

// The attributes of a selection; an attribute that is mixed across it has no value.
struct SelectionStyle {
    std::optional<Text> face;
    std::optional<int> halfPoints;
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<Rgb> colour;
    std::optional<Alignment> alignment;

    friend bool operator==(const SelectionStyle&, const SelectionStyle&) = default;
};

struct FindOptions {
    bool matchCase = false;
    bool wholeWord = false;
};

class Editor {
  public:
    virtual ~Editor() = default;

    virtual bool isEmpty() const = 0;
    virtual EditorText text() const = 0;
    // The whole document as Rich Text, as the control writes it, without the trailing NUL.
    virtual std::string rtf() const = 0;

    // Replaces the document, caret at its start. False when the control refuses the Rich Text or
    // reads none of its text; the document is then what it was.
    virtual bool loadRtf(std::string_view rtf) = 0;
    // Replaces the document by plain text in the given face at `points` size, black, which are
    // the editor's default format from then on. Fails as loadRtf does.
    virtual bool loadPlain(const EditorText& text, TextView face, int points) = 0;
    // Face and size of the selection, which is also what is typed next.
    virtual void setSelectionFont(TextView face, int points) = 0;
    virtual void setSelectionFace(TextView face) = 0;
    virtual void setSelectionSize(int halfPoints) = 0;
    virtual void setSelectionColour(Rgb colour) = 0;
    virtual void setBold(bool on) = 0;
    virtual void setItalic(bool on) = 0;
    virtual void setUnderline(bool on) = 0;
    virtual SelectionStyle selectionStyle() const = 0;
    // Replaces the selected text; the new text takes the format of the first replaced character.
    // The caret is behind it afterwards.
    virtual void replaceSelection(TextView text) = 0;
    // The same with Rich Text in its own formats; false when the control refuses it.
    virtual bool replaceSelectionRtf(std::string_view rtf) = 0;
    // The standard undo message. The control keeps no undo of its own, so it changes nothing.
    virtual void sendUndo() = 0;
    // Face of the character at `position`.
    virtual Text faceAt(std::int32_t position) = 0;
    // First match at or after `from`, not selected; nothing when there is none. A whole word is
    // what the control takes for one: neither a letter nor a digit stands beside it.
    virtual std::optional<Selection> find(TextView what, std::int32_t from,
                                          FindOptions options) const = 0;

    // The colour behind the whole document; nothing for the system's. It is no part of the Rich
    // Text and stays through a load.
    virtual std::optional<Rgb> background() const = 0;
    virtual void setBackground(std::optional<Rgb> colour) = 0;

    virtual Selection selection() const = 0;
    virtual void select(Selection selection) = 0;
    virtual ScrollPosition scrollPosition() const = 0;
    virtual void scrollTo(ScrollPosition position) = 0;
    virtual void scrollCaretIntoView() = 0;
    // A position that the view shows, and the view scrolled so that it stands in the middle, as far
    // as the document allows.
    virtual bool isInView(std::int32_t position) const = 0;
    virtual void centre(std::int32_t position) = 0;

    // Nested: while the count is above zero nothing is drawn and no change event is sent, so
    // that a command is one visible step and one undo step.
    virtual void beginWork() = 0;
    virtual void endWork() = 0;
};

// beginWork and endWork.
class EditorWork {
  public:
    explicit EditorWork(Editor& editor) : editor_(editor) { editor_.beginWork(); }
    EditorWork(const EditorWork&) = delete;
    EditorWork& operator=(const EditorWork&) = delete;
    ~EditorWork() { editor_.endWork(); }

  private:
    Editor& editor_;
};

}  // namespace melvorin
