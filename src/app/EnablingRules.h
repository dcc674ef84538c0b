// When commands are enabled. The menu, the toolbar and the tests read this one table; whatever is
// not in it is always enabled.
#pragma once

#include <array>

#include "app/CommandMap.h"
#include "app/Documents.h"

namespace melvorin {

struct EnablingRule {
    Command item;  // its menu entry; none: the rule is for the button alone
    int button;    // its number on the toolbar; 0: none
    bool ShellState::*when;
};

inline constexpr std::array kEnablingRules{
    EnablingRule{Command::mnuFileSaveAs, 0, &ShellState::saveAs},
    EnablingRule{Command::mnuEditUndo, kUndoButton, &ShellState::undo},
    EnablingRule{Command::mnuEditRedo, kRedoButton, &ShellState::redo},
    EnablingRule{Command::none, kKeyDownButton, &ShellState::keyButtons},
    EnablingRule{Command::none, kKeyUpButton, &ShellState::keyButtons},
};

}  // namespace melvorin
