// Keys as data: strokes, their names as people read them, and tables of what they run. The main
// window, the stage and the creator have a table each.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/Text.h"

namespace melvorin {

// Virtual-key codes of the keys that tables name; that of a letter or a digit is its character.
namespace keys {
inline constexpr std::uint16_t kBackspace = 0x08;
inline constexpr std::uint16_t kTab = 0x09;
inline constexpr std::uint16_t kEnter = 0x0D;
inline constexpr std::uint16_t kEscape = 0x1B;
inline constexpr std::uint16_t kSpace = 0x20;
inline constexpr std::uint16_t kPageUp = 0x21;
inline constexpr std::uint16_t kPageDown = 0x22;
inline constexpr std::uint16_t kEnd = 0x23;
inline constexpr std::uint16_t kHome = 0x24;
inline constexpr std::uint16_t kLeft = 0x25;
inline constexpr std::uint16_t kUp = 0x26;
inline constexpr std::uint16_t kRight = 0x27;
inline constexpr std::uint16_t kDown = 0x28;
inline constexpr std::uint16_t kInsert = 0x2D;
inline constexpr std::uint16_t kDelete = 0x2E;
inline constexpr std::uint16_t kPadPlus = 0x6B;
inline constexpr std::uint16_t kPadMinus = 0x6D;
inline constexpr std::uint16_t kF1 = 0x70;
inline constexpr std::uint16_t kF2 = 0x71;
inline constexpr std::uint16_t kF3 = 0x72;
inline constexpr std::uint16_t kF4 = 0x73;
inline constexpr std::uint16_t kF6 = 0x75;
inline constexpr std::uint16_t kF7 = 0x76;
inline constexpr std::uint16_t kF8 = 0x77;
inline constexpr std::uint16_t kF24 = 0x87;
inline constexpr std::uint16_t kVolumeDown = 0xAE;
inline constexpr std::uint16_t kVolumeUp = 0xAF;
inline constexpr std::uint16_t kNextTrack = 0xB0;
inline constexpr std::uint16_t kPreviousTrack = 0xB1;
inline constexpr std::uint16_t kPlayPause = 0xB3;
inline constexpr std::uint16_t kPlus = 0xBB;
inline constexpr std::uint16_t kMinus = 0xBD;
}  // namespace keys

// A key with what is held with it. Key 0 is no key.
struct KeyStroke {
    std::uint16_t key = 0;
    bool control = false;
    bool alt = false;
    bool shift = false;

    friend constexpr bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

constexpr KeyStroke plainKey(std::uint16_t key) {
    return {key};
}
constexpr KeyStroke ctrl(std::uint16_t key) {
    return {key, true};
}
constexpr KeyStroke alt(std::uint16_t key) {
    return {key, false, true};
}
constexpr KeyStroke shift(std::uint16_t key) {
    return {key, false, false, true};
}

// "Ctrl+N", "Shift+Ins", "F3"; empty for no key and for one that has no name here.
Text nameOf(const KeyStroke& stroke);

template <typename Id>
struct KeyRow {
    Id runs;
    KeyStroke stroke;
};

// What a stroke runs by a table; nothing where it has no row.
template <typename Id, std::size_t Size>
constexpr std::optional<Id> runBy(const KeyRow<Id> (&table)[Size], const KeyStroke& stroke) {
    for (const KeyRow<Id>& row : table) {
        if (row.stroke == stroke)
            return row.runs;
    }
    return std::nullopt;
}

// The same where Shift does not count, because the key needs it on some keyboards or nobody's
// fingers are on it.
template <typename Id, std::size_t Size>
constexpr std::optional<Id> runWithoutShift(const KeyRow<Id> (&table)[Size], KeyStroke stroke) {
    stroke.shift = false;
    return runBy(table, stroke);
}

// The two strokes that paste, in every text of the program.
inline constexpr KeyStroke kPasteStrokes[] = {ctrl(u'V'), shift(keys::kInsert)};
// Some controls paste by Ctrl+Shift+V too, in a way of their own.
constexpr bool pastes(KeyStroke stroke) {
    if (stroke.key == u'V')
        stroke.shift = false;
    return stroke == kPasteStrokes[0] || stroke == kPasteStrokes[1];
}

// Those that copy and that cut.
constexpr bool copies(KeyStroke stroke) {
    if (stroke.key == u'C')
        stroke.shift = false;
    return stroke == ctrl(u'C') || stroke == ctrl(keys::kInsert);
}
constexpr bool cuts(KeyStroke stroke) {
    if (stroke.key == u'X')
        stroke.shift = false;
    return stroke == ctrl(u'X') || stroke == shift(keys::kDelete);
}

}  // namespace melvorin
