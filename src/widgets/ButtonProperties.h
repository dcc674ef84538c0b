// The settings of a picture button, and how they are kept.
#pragma once

#include "widgets/PropertyBag.h"

namespace melvorin {

// Colours of the system's table that buttons use.
inline constexpr SystemOrRgb kShadowColour = 0x80000010;
inline constexpr SystemOrRgb kFaceColour = 0x8000000F;
inline constexpr SystemOrRgb kButtonTextColour = 0x80000012;
inline constexpr SystemOrRgb kHighlightColour = 0x80000014;

// Where the picture stands. Without a caption it is always in the middle.
enum PicturePosition : std::int32_t {
    kPictureAbove = 0,
    kPictureLeft = 1,
    kPictureRight = 2,
    kPictureBelow = 3,
    kPictureBehind = 4,  // in the middle, the caption over it
};

// What the drawn size of the picture is.
enum PictureSize : std::int32_t {
    kSizeOfSource = 0,
    kSizeAsGiven = 1,   // PictureWidth and PictureHeight
    kSizeOfButton = 2,  // as large as the button allows, its proportions kept
};

enum MousePointer : std::int32_t {
    kPointerDefault = 0,  // the hand, or the arrow where DefCurHand is off
    kPointerArrow = 1,
    kPointerCross = 2,
    kPointerIBeam = 3,
    kPointerHand = 4,
    kPointerWait = 5,
    kPointerNo = 6,
    kPointerCustom = 99,  // MouseIcon
};

// Pictures go by where they come from: "#" and the number of a bitmap among the program's
// resources, or the path of a BMP file (ICO or CUR for the pointer); empty for none. A font is its
// face, its size in points and, if so, the words bold and italic, with commas between; empty for
// the font of the window.
struct ButtonProperties {
    SystemOrRgb BackColor = kFaceColour;
    SystemOrRgb ForeColor = kButtonTextColour;
    Text Caption;  // "&" underlines the letter behind it
    std::int32_t PicturePosition = kPictureLeft;
    std::int32_t ButtonStyle = 2;  // 0 and 1 are pushed in while pressed; 1 is flat otherwise
    Text Picture;
    Text PictureHover;
    std::int32_t PictureWidth = 32;  // drawn, in pixels at 96 dpi
    std::int32_t PictureHeight = 32;
    std::int32_t PictureSize = kSizeAsGiven;
    std::int32_t OriginalPicSizeW = 32;  // of the source, in its own pixels
    std::int32_t OriginalPicSizeH = 32;
    Text Font;
    Text MouseIcon;
    std::int32_t MousePointer = kPointerDefault;
    bool DefCurHand = true;
    bool TransparentBG = false;  // the colour of the picture's first pixel lets the face through
    std::int32_t BEVEL = 1;
    std::int32_t BEVELDEPTH = 8;  // in eighths of a pixel at 96 dpi

    friend bool operator==(const ButtonProperties&, const ButtonProperties&) = default;
};

// Reads every property in its fixed order, Font and Picture twice.
ButtonProperties readButtonProperties(PropertyBag& bag);
// Writes the properties in their fixed order. DefCurHand and TransparentBG are not among them:
// they come back at their defaults.
void writeButtonProperties(const ButtonProperties& properties, PropertyBag& bag);

// A caption font, taken apart.
struct ButtonFont {
    Text face;
    int points = 0;
    bool bold = false;
    bool italic = false;

    friend bool operator==(const ButtonFont&, const ButtonFont&) = default;
};

// No face, or no size from 1 to 144: the window's font is meant, and the face is empty.
ButtonFont parseButtonFont(TextView font);

}  // namespace melvorin
