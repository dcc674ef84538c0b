// The keys of the stage, as tables: what acts in the view, on its panel and on its bars alike, what
// acts on the bar of a run, and what moves the view there.
#pragma once

#include "base/Keys.h"

namespace melvorin {

enum class ViewKey {
    Larger,
    Smaller,
    AsItWas,
    FitWidth,
    Dark,
    NextMonitor,
    Undo,
    Redo,
    HalfStepDown,
    HalfStepUp
};

// Shift does not count: on some keyboards Plus needs it.
inline constexpr KeyRow<ViewKey> kViewKeys[] = {
    {ViewKey::Larger, ctrl(keys::kPlus)},
    {ViewKey::Larger, ctrl(keys::kPadPlus)},
    {ViewKey::Smaller, ctrl(keys::kMinus)},
    {ViewKey::Smaller, ctrl(keys::kPadMinus)},
    {ViewKey::AsItWas, ctrl(u'0')},
    {ViewKey::FitWidth, ctrl(u'9')},
    {ViewKey::Undo, ctrl(u'Z')},
    {ViewKey::Redo, ctrl(u'Y')},
    {ViewKey::HalfStepDown, plainKey(keys::kF7)},
    {ViewKey::HalfStepUp, plainKey(keys::kF8)},
};

// The keys that move a run by hand.
enum class RunKey { OneLine, FiveLines, TenLines };

// kept: f-keys
// One key further than the panel's text says; so it is kept.
inline constexpr KeyRow<RunKey> kRunKeys[] = {
    {RunKey::OneLine, plainKey(keys::kF2)},
    {RunKey::FiveLines, plainKey(keys::kF3)},
    {RunKey::TenLines, plainKey(keys::kF4)},
};

// Those that are not to be reached by a slip.
inline constexpr KeyRow<ViewKey> kShiftedViewKeys[] = {
    {ViewKey::Dark, {u'D', true, false, true}},
    {ViewKey::NextMonitor, {u'M', true, false, true}},
};

// What pedals send: it moves the view, and a run along with it.
enum class PedalKey { PageForward, PageBack, LineForward, LineBack };

inline constexpr KeyRow<PedalKey> kPedalKeys[] = {
    {PedalKey::PageForward, plainKey(keys::kPageDown)},
    {PedalKey::PageForward, plainKey(keys::kRight)},
    {PedalKey::PageBack, plainKey(keys::kPageUp)},
    {PedalKey::PageBack, plainKey(keys::kLeft)},
    {PedalKey::LineForward, plainKey(keys::kDown)},
    {PedalKey::LineBack, plainKey(keys::kUp)},
};

}  // namespace melvorin
