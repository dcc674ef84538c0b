// What the menus, the toolbar and the title show of the document.
#pragma once

#include "base/Text.h"

namespace melvorin {

struct ShellState {
    Text title = u"Chord Notation - Melvorin";
    bool dirty = false;       // mnuFileSave
    bool saveAs = false;      // mnuFileSaveAs
    bool undo = false;        // mnuEditUndo and its button
    bool redo = false;        // mnuEditRedo and its button
    bool keyButtons = false;  // the two key buttons
    bool keyCommands = true;  // the key and spelling commands: off while a song is worked on

    friend bool operator==(const ShellState&, const ShellState&) = default;
};

}  // namespace melvorin
