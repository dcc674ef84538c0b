// The keys that take the caret through the chords of a song and move a chord, in the editor and on
// stage.
#pragma once

#include "base/Keys.h"
#include "chords/ChordFollow.h"

namespace melvorin {

inline constexpr KeyRow<ChordFollow::Move> kChordMoveKeys[] = {
    {ChordFollow::Move::CellLeft, alt(keys::kLeft)},
    {ChordFollow::Move::CellRight, alt(keys::kRight)},
    {ChordFollow::Move::SyllableLeft, {keys::kLeft, false, true, true}},
    {ChordFollow::Move::SyllableRight, {keys::kRight, false, true, true}},
};

enum class ChordVisitKey { ToChords, Enter, Down, NextStop, FormerStop };
inline constexpr KeyRow<ChordVisitKey> kChordVisitKeys[] = {
    {ChordVisitKey::ToChords, ctrl(keys::kEnter)},  {ChordVisitKey::Enter, plainKey(keys::kEnter)},
    {ChordVisitKey::Down, plainKey(keys::kDown)},   {ChordVisitKey::NextStop, plainKey(keys::kTab)},
    {ChordVisitKey::FormerStop, shift(keys::kTab)},
};

}  // namespace melvorin
