#include "app/CommandMap.h"

#include <algorithm>

namespace melvorin {
namespace {

using enum Command;
using enum ToolButtonKind;
constexpr auto kText = KeyReach::Editor;
constexpr auto kOwn = KeyReach::Own;

constexpr MenuPlace submenu(TextView caption, Command parent = none) {
    return {MenuKind::Submenu, parent, caption};
}
constexpr MenuPlace in(Command parent, TextView caption) {
    return {MenuKind::Entry, parent, caption};
}
constexpr MenuPlace separator(Command parent, bool startsHidden = false) {
    return {MenuKind::Separator, parent, u"-", startsHidden};
}
constexpr MenuPlace recent(TextView caption = u"Not Used") {
    return {MenuKind::Entry, mnuRecent, caption, true};
}

constexpr CommandRow kCommands[] = {
    // clang-format off
    {.id = mnuFile, .menu = submenu(u"F&ile")},
    {.id = mnuFileNew, .menu = in(mnuFile, u"New"),
     .keys = {{{ctrl(u'N')}}}, .button = {1, u"New"}},
    {.id = mnuFileOpen, .menu = in(mnuFile, u"Open"),
     .keys = {{{ctrl(u'O')}}}, .button = {2, u"Open"}},
    {.id = mnuFileSave3, .menu = in(mnuFile, u"Save"),
     .keys = {{{ctrl(u'S')}}}},
    {.id = mnuFileSaveAs, .menu = in(mnuFile, u"Save As"),
     .itemWhen = &ShellState::saveAs},
    {.id = mnuFileExport, .menu = in(mnuFile, u"Export...")},
    {.id = mnuPrint, .menu = in(mnuFile, u"Print..."), .keys = {{{ctrl(u'P')}}}},
    {.id = mnuPreview, .menu = in(mnuFile, u"Print Preview")},
    {.id = mnuPageSetup, .menu = in(mnuFile, u"Page Setup...")},
    {.id = mnuSavePdf, .menu = in(mnuFile, u"Save as PDF...")},
    {.id = mnuRecent, .menu = submenu(u"Recent Files", mnuFile)},
    {.id = mnuRecentFile0, .menu = in(mnuRecent, u"(Empty)")},
    {.id = mnuRecentFile1, .menu = recent()},
    {.id = mnuRecentFile2, .menu = recent()},
    {.id = mnuRecentFile3, .menu = recent()},
    {.id = mnuRecentFile4, .menu = recent()},
    {.id = mnuRecentFile5, .menu = recent()},
    {.id = mnuRecentFile6, .menu = recent()},
    {.id = mnuRecentFile7, .menu = recent()},
    {.id = mnuRecentFile8, .menu = recent()},
    {.id = mnuLn, .menu = separator(mnuRecent, true)},
    {.id = mnuReset, .menu = recent(u"Clean List of Recent Files")},
    {.id = mnuFileSpace, .menu = separator(mnuFile)},
    {.id = mnuFileExit, .menu = in(mnuFile, u"Exit"),
     .keys = {{{alt(keys::kF4), kOwn}}}},

    {.id = mnuEdit, .menu = submenu(u"&Edit")},
    {.id = mnuEditCut, .menu = in(mnuEdit, u"Cut (Ctrl+X)"),
     .keys = {{{ctrl(u'X'), kOwn}, {shift(keys::kDelete), kText}}}, .button = {5, u"Cut"}},
    {.id = mnuEditCopy, .menu = in(mnuEdit, u"Copy (Ctrl+C)"),
     .keys = {{{ctrl(u'C'), kOwn}, {ctrl(keys::kInsert), kText}}}, .button = {6, u"Copy"}},
    {.id = mnuEditPaste, .menu = in(mnuEdit, u"Paste (Ctrl+V)"),
     .keys = {{{kPasteStrokes[0], kText}, {kPasteStrokes[1], kText}}}, .button = {7, u"Paste"}},
    {.id = mnuEditDelete, .menu = in(mnuEdit, u"Delete (Del)"),
     .keys = {{{plainKey(keys::kDelete), kOwn}}}, .button = {8, u"Delete"}},
    {.id = mnuSelectAll, .menu = in(mnuEdit, u"Select All (Ctrl+A)"),
     .keys = {{{ctrl(u'A'), kText}}}},
    {.id = mnuFind, .menu = in(mnuEdit, u"Find and Replace"),
     .keys = {{{ctrl(u'F'), kText}}}},
    {.id = mnuEditSpace1, .menu = separator(mnuEdit)},
    {.id = mnuEditUndo, .menu = in(mnuEdit, u"Undo"),
     .keys = {{{ctrl(u'Z')}}}, .button = {12, u"Undo"},
     .itemWhen = &ShellState::undo, .buttonWhen = &ShellState::undo},
    {.id = mnuEditRedo, .menu = in(mnuEdit, u"Redo"),
     .keys = {{{ctrl(u'Y')}}}, .button = {13, u"Redo"},
     .itemWhen = &ShellState::redo, .buttonWhen = &ShellState::redo},
    {.id = mnuEditSpace2, .menu = separator(mnuEdit)},
    {.id = mnuCopyChords, .menu = in(mnuEdit, u"Copy Chords")},
    {.id = mnuPasteChords, .menu = in(mnuEdit, u"Paste Chords")},

    {.id = mnuFormat, .menu = submenu(u"Format")},
    {.id = mnuFont, .menu = in(mnuFormat, u"Font and Colors"), .button = {25, u"Font"}},
    {.id = mnuPss, .menu = separator(mnuFormat)},
    {.id = mnuBold, .menu = in(mnuFormat, u"Bold"),
     .keys = {{{ctrl(u'B')}}}, .button = {15, u"Bold", Check}},
    {.id = mnuItalic, .menu = in(mnuFormat, u"Italic"),
     .keys = {{{ctrl(u'I')}}}, .button = {16, u"Italic", Check}},
    {.id = mnuUnderline, .menu = in(mnuFormat, u"Underline"),
     .keys = {{{ctrl(u'U')}}}, .button = {17, u"Underline", Check}},
    {.id = mnuUnder2, .menu = separator(mnuFormat)},
    {.id = mnuUpper, .menu = in(mnuFormat, u"To Upper Case")},
    {.id = mnuLowe, .menu = in(mnuFormat, u"To Lower Case")},

    {.id = Exibir, .menu = submenu(u"&View")},
    {.id = mnuEditDic, .menu = in(Exibir, u"Dictionary"), .button = {31, u"Dic"}},
    {.id = mnuFullScreen, .menu = in(Exibir, u"Full Screen"), .button = {32, u"FScreen"}},
    {.id = mnuViewSpace, .menu = separator(Exibir)},
    {.id = mnuStatus, .menu = in(Exibir, u"Status Line")},

    {.id = mnuCifrar, .menu = submenu(u"Chord Notation")},
    {.id = mnuEditCifra, .menu = in(mnuCifrar, u"Create Chord Notation"),
     .button = {23, u"Cifra"}},
    {.id = mnuChDigt, .menu = in(mnuCifrar, u"Change the Fingering of the Chord"),
     .keys = {{{ctrl(u'D')}}}},
    {.id = mnuTab, .menu = in(mnuCifrar, u"Insert Tablature"), .button = {24, u"Tab"}},
    {.id = mnuDps, .menu = in(mnuCifrar, u"Melvorin Guitar Tuner"), .button = {26, u"Tune"}},
    {.id = mnuTom, .menu = submenu(u"Key", mnuCifrar)},
    {.id = mnuDwn, .menu = in(mnuTom, u"Go Down a Half Step"),
     .keys = {{{plainKey(keys::kF7)}}},
     .button = {28, u"ChgTune1", DropDown},
     .itemWhen = &ShellState::keyCommands, .buttonWhen = &ShellState::keyButtons},
    {.id = mnuUp, .menu = in(mnuTom, u"Go Up a Half Step"),
     .keys = {{{plainKey(keys::kF8)}}}, .button = {29, u"ChgTune2"},
     .itemWhen = &ShellState::keyCommands, .buttonWhen = &ShellState::keyButtons},
    {.id = mnuToKey, .menu = in(mnuTom, u"To Another Key..."), .keys = {{{ctrl(u'K')}}},
     .itemWhen = &ShellState::keyCommands},
    {.id = mnuOthers, .menu = submenu(u"Other Chord Lines", mnuTom)},
    {.id = mnuOthersAsk, .menu = in(mnuOthers, u"Ask")},
    {.id = mnuOthersMove, .menu = in(mnuOthers, u"Move")},
    {.id = mnuOthersLeave, .menu = in(mnuOthers, u"Leave")},
    {.id = mnuSgn, .menu = submenu(u"Alteration Signs", mnuCifrar)},
    // kept: first-sharps-caption
    {.id = mnuSus, .menu = in(mnuSgn, u">> Use Sharps"), .itemWhen = &ShellState::keyCommands},
    {.id = mnuBem, .menu = in(mnuSgn, u"Use Flats"), .itemWhen = &ShellState::keyCommands},
    {.id = mnuByKey, .menu = in(mnuSgn, u"         Follow the Key"),
     .itemWhen = &ShellState::keyCommands},
    {.id = mnuSgnSpace, .menu = separator(mnuSgn)},
    {.id = mnuRespell, .menu = in(mnuSgn, u"Respell"), .itemWhen = &ShellState::keyCommands},
    {.id = mnuFollow, .menu = in(mnuCifrar, u"Chords Follow the Words")},

    {.id = mnuExp, .menu = submenu(u"Examples")},
    {.id = mnuEpl, .menu = in(mnuExp, u"Example 1 (Read this first)")},
    {.id = mnuEpl2, .menu = in(mnuExp, u"Example 2")},
    {.id = ExMovie1, .menu = in(mnuExp, u"First Demonstration")},
    {.id = ExMovie2, .menu = in(mnuExp, u"Second Demonstration")},
    {.id = ExMovie3, .menu = in(mnuExp, u"Melvorin Home Page")},
    {.id = ExMovie4, .menu = in(mnuExp, u"Melvorin on the Social Network")},

    {.id = About, .menu = submenu(u"Help")},
    {.id = mnuHlpTcs, .menu = in(About, u"Help Contents"),
     .keys = {{{plainKey(keys::kF1), kOwn}}}, .button = {34, u"Help"}},
    {.id = mnuLn2, .menu = separator(About)},
    {.id = mnuFileAbout, .menu = in(About, u"About Melvorin")},

    {.id = mnuFileSave, .button = {3, u"Save"}, .standsFor = mnuFileSave3},
    {.id = alignLeft, .keys = {{{ctrl(u'L')}}}, .button = {19, u"Left", Check},
     .name = u"Align Left"},
    {.id = alignCenter, .keys = {{{ctrl(u'E')}}}, .button = {20, u"Center", Check},
     .name = u"Center"},
    {.id = alignRight, .keys = {{{ctrl(u'R')}}}, .button = {21, u"Right", Check},
     .name = u"Align Right"},
    {.id = findAgain, .keys = {{{plainKey(keys::kF3)}}}, .name = u"Find the Next"},
    {.id = zoomIn, .keys = {{{ctrl(keys::kPlus)}, {ctrl(keys::kPadPlus)}}}, .name = u"Larger View"},
    {.id = zoomOut, .keys = {{{ctrl(keys::kMinus)}, {ctrl(keys::kPadMinus)}}},
     .name = u"Smaller View"},
    {.id = zoomReset, .keys = {{{ctrl(u'0')}}}, .name = u"View in Its Own Size"},
    {.id = toStatus, .keys = {{{plainKey(keys::kF6)}}}, .name = u"To the Status Line"},
    {.id = toolbarFind, .button = {10, u"Find"}, .standsFor = mnuFind},
    // clang-format on
};

constexpr std::size_t indexOf(Command command) {
    return static_cast<std::size_t>(command) - 1;
}

// Row by row in the order of the enumeration, so that a command is its row's number.
consteval bool everyCommandHasItsRow() {
    if (std::size(kCommands) != indexOf(count))
        return false;
    for (std::size_t index = 0; index < std::size(kCommands); ++index) {
        if (indexOf(kCommands[index].id) != index)
            return false;
    }
    return true;
}
static_assert(everyCommandHasItsRow());

using Buttons = std::array<const CommandRow*, kLastButton>;

// Two commands with one number do not compile: a throw is no constant.
consteval Buttons buttonsInOrder() {
    Buttons buttons{};
    for (const CommandRow& row : kCommands) {
        if (row.button.number == 0)
            continue;
        const CommandRow*& place = buttons.at(static_cast<std::size_t>(row.button.number - 1));
        if (place != nullptr)
            throw "two commands on one button";
        place = &row;
    }
    return buttons;
}
constexpr Buttons kButtons = buttonsInOrder();
static_assert(kButtons.back() != nullptr);

}  // namespace

std::span<const CommandRow> commands() {
    return kCommands;
}

const CommandRow& rowOf(Command command) {
    return kCommands[indexOf(command)];
}

const CommandRow* rowOfButton(int number) {
    return kButtons.at(static_cast<std::size_t>(number - 1));
}

std::optional<Command> commandOfKey(TextView key) {
    const auto found = std::find_if(kButtons.begin(), kButtons.end(), [&](const CommandRow* row) {
        return row != nullptr && row->button.key == key;
    });
    return found == kButtons.end() ? std::nullopt : std::optional((*found)->id);
}

std::optional<Command> commandInText(const KeyStroke& stroke) {
    for (const CommandRow& row : kCommands) {
        for (const CommandKey& key : row.keys) {
            if (key.reach == KeyReach::Editor && key.stroke == stroke)
                return row.id;
        }
    }
    return std::nullopt;
}

KeyStroke shownKey(const CommandRow& row) {
    return row.standsFor == none ? row.keys.front().stroke : shownKey(rowOf(row.standsFor));
}

namespace {

Text withKey(const CommandRow& row, TextView caption, TextView before, TextView behind) {
    const Text key = nameOf(shownKey(row));
    Text shown(caption);
    if (!key.empty() && caption.find(key) == TextView::npos)
        shown.append(before).append(key).append(behind);
    return shown;
}

}  // namespace

Text menuText(const CommandRow& row, TextView caption) {
    return withKey(row, caption, u"\t", {});
}

Text tipOf(const CommandRow& row) {
    if (row.standsFor != none)
        return tipOf(rowOf(row.standsFor));
    const TextView name = row.name.empty() ? row.menu.caption : row.name;
    return withKey(row, name, u" (", u")");
}

}  // namespace melvorin
