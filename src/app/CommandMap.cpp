#include "app/CommandMap.h"

#include <algorithm>

namespace melvorin {
namespace {

using enum Command;

constexpr MenuEntry submenu(Command item, Command parent, TextView caption) {
    return {item, parent, caption, true, false};
}
constexpr MenuEntry entry(Command item, Command parent, TextView caption) {
    return {item, parent, caption, false, false};
}
constexpr MenuEntry recent(Command item) {
    return {item, mnuRecent, u"Not Used", false, true};
}

constexpr MenuEntry kMenu[] = {
    submenu(mnuFile, none, u"F&ile"),
    entry(mnuFileNew, mnuFile, u"New"),
    entry(mnuFileOpen, mnuFile, u"Open"),
    entry(mnuFileSave3, mnuFile, u"Save"),
    entry(mnuFileSaveAs, mnuFile, u"Save As"),
    submenu(mnuRecent, mnuFile, u"Recent Files"),
    entry(mnuRecentFile0, mnuRecent, u"(Empty)"),
    recent(mnuRecentFile1),
    recent(mnuRecentFile2),
    recent(mnuRecentFile3),
    recent(mnuRecentFile4),
    recent(mnuRecentFile5),
    recent(mnuRecentFile6),
    recent(mnuRecentFile7),
    recent(mnuRecentFile8),
    {mnuLn, mnuRecent, u"-", false, true},
    {mnuReset, mnuRecent, u"Clean List of Recent Files", false, true},
    entry(mnuFileSpace, mnuFile, u"-"),
    entry(mnuFileExit, mnuFile, u"Exit"),

    submenu(mnuEdit, none, u"&Edit"),
    entry(mnuEditCut, mnuEdit, u"Cut (Ctrl+X)"),
    entry(mnuEditCopy, mnuEdit, u"Copy (Ctrl+C)"),
    entry(mnuEditPaste, mnuEdit, u"Paste (Ctrl+V)"),
    entry(mnuEditDelete, mnuEdit, u"Delete (Del)"),
    entry(mnuSelectAll, mnuEdit, u"Select All (Ctrl+A)"),
    entry(mnuFind, mnuEdit, u"Find and Replace"),
    entry(mnuEditSpace1, mnuEdit, u"-"),
    entry(mnuEditUndo, mnuEdit, u"Undo"),
    entry(mnuEditRedo, mnuEdit, u"Redo"),

    submenu(mnuFormat, none, u"Format"),
    entry(mnuFont, mnuFormat, u"Font and Colors"),
    entry(mnuPss, mnuFormat, u"-"),
    entry(mnuBold, mnuFormat, u"Bold"),
    entry(mnuItalic, mnuFormat, u"Italic"),
    entry(mnuUnderline, mnuFormat, u"Underline"),
    entry(mnuUnder2, mnuFormat, u"-"),
    entry(mnuUpper, mnuFormat, u"To Upper Case"),
    entry(mnuLowe, mnuFormat, u"To Lower Case"),

    submenu(Exibir, none, u"&View"),
    entry(mnuEditDic, Exibir, u"Dictionary"),
    entry(mnuFullScreen, Exibir, u"Full Screen"),

    submenu(mnuCifrar, none, u"Chord Notation"),
    entry(mnuEditCifra, mnuCifrar, u"Create Chord Notation"),
    entry(mnuChDigt, mnuCifrar, u"Change the Fingering of the Chord"),
    entry(mnuTab, mnuCifrar, u"Insert Tablature"),
    entry(mnuDps, mnuCifrar, u"Melvorin Guitar Tuner"),
    submenu(mnuTom, mnuCifrar, u"Key"),
    entry(mnuDwn, mnuTom, u"Go Down a Half Step"),
    entry(mnuUp, mnuTom, u"Go Up a Half Step"),
    submenu(mnuSgn, mnuCifrar, u"Alteration Signs"),
    // kept: first-sharps-caption
    entry(mnuSus, mnuSgn, u">> Use Sharps"),
    entry(mnuBem, mnuSgn, u"Use Flats"),

    submenu(mnuExp, none, u"Examples"),
    entry(mnuEpl, mnuExp, u"Example 1 (Read this first)"),
    entry(mnuEpl2, mnuExp, u"Example 2"),
    entry(ExMovie1, mnuExp, u"First Demonstration"),
    entry(ExMovie2, mnuExp, u"Second Demonstration"),
    entry(ExMovie3, mnuExp, u"Melvorin Home Page"),
    entry(ExMovie4, mnuExp, u"Melvorin on the Social Network"),

    submenu(About, none, u"Help"),
    entry(mnuHlpTcs, About, u"Help Contents"),
    entry(mnuLn2, About, u"-"),
    entry(mnuFileAbout, About, u"About Melvorin"),
};

constexpr ToolButton push(TextView key, Command runs, TextView tip) {
    return {key, runs, tip, ToolButtonKind::Push};
}
constexpr ToolButton check(TextView key, Command runs, TextView tip) {
    return {key, runs, tip, ToolButtonKind::Check};
}
constexpr ToolButton kSeparator = {{}, none, {}, ToolButtonKind::Separator};

constexpr ToolButton kToolbar[] = {
    push(u"New", mnuFileNew, u"New (Ctrl+N)"),
    push(u"Open", mnuFileOpen, u"Open (Ctrl+O)"),
    push(u"Save", mnuFileSave, u"Save (Ctrl+S)"),
    kSeparator,
    push(u"Cut", mnuEditCut, u"Cut (Ctrl+X)"),
    push(u"Copy", mnuEditCopy, u"Copy (Ctrl+C)"),
    push(u"Paste", mnuEditPaste, u"Paste (Ctrl+V)"),
    push(u"Delete", mnuEditDelete, u"Delete (Del)"),
    kSeparator,
    push(u"Find", toolbarFind, u"Find and Replace (Ctrl+F)"),
    kSeparator,
    push(u"Undo", mnuEditUndo, u"Undo (Ctrl+Z)"),
    push(u"Redo", mnuEditRedo, u"Redo (Ctrl+Y)"),
    kSeparator,
    check(u"Bold", mnuBold, u"Bold (Ctrl+B)"),
    check(u"Italic", mnuItalic, u"Italic (Ctrl+I)"),
    check(u"Underline", mnuUnderline, u"Underline (Ctrl+U)"),
    kSeparator,
    check(u"Left", alignLeft, u"Align Left (Ctrl+L)"),
    check(u"Center", alignCenter, u"Center (Ctrl+E)"),
    check(u"Right", alignRight, u"Align Right (Ctrl+R)"),
    kSeparator,
    push(u"Cifra", mnuEditCifra, u"Create Chord Notation"),
    push(u"Tab", mnuTab, u"Insert Tablature"),
    push(u"Font", mnuFont, u"Font and Colors"),
    push(u"Tune", mnuDps, u"Melvorin Guitar Tuner"),
    kSeparator,
    {u"ChgTune1", mnuDwn, u"Go Down a Half Step", ToolButtonKind::DropDown},
    push(u"ChgTune2", mnuUp, u"Go Up a Half Step"),
    kSeparator,
    push(u"Dic", mnuEditDic, u"Dictionary"),
    push(u"FScreen", mnuFullScreen, u"Full Screen"),
    kSeparator,
    push(u"Help", mnuHlpTcs, u"Help Contents"),
};

constexpr std::uint16_t kFindAgainKey = 0x72;  // F3

constexpr Shortcut kShortcuts[] = {
    {u'N', true, mnuFileNew},          {u'O', true, mnuFileOpen},  {u'S', true, mnuFileSave},
    {u'Z', true, mnuEditUndo},         {u'Y', true, mnuEditRedo},  {u'B', true, mnuBold},
    {u'I', true, mnuItalic},           {u'U', true, mnuUnderline}, {u'L', true, alignLeft},
    {u'E', true, alignCenter},         {u'R', true, alignRight},   {u'D', true, mnuChDigt},
    {kFindAgainKey, false, findAgain},
};

static_assert(std::size(kToolbar) == 34);
static_assert(kToolbar[kUndoButton - 1].runs == mnuEditUndo);
static_assert(kToolbar[kRedoButton - 1].runs == mnuEditRedo);
static_assert(kToolbar[kBoldButton - 1].runs == mnuBold);
static_assert(kToolbar[kItalicButton - 1].runs == mnuItalic);
static_assert(kToolbar[kUnderlineButton - 1].runs == mnuUnderline);
static_assert(kToolbar[kLeftButton - 1].runs == alignLeft);
static_assert(kToolbar[kCenterButton - 1].runs == alignCenter);
static_assert(kToolbar[kRightButton - 1].runs == alignRight);
static_assert(kToolbar[kKeyDownButton - 1].runs == mnuDwn);
static_assert(kToolbar[kKeyUpButton - 1].runs == mnuUp);

}  // namespace

std::span<const MenuEntry> menuEntries() {
    return kMenu;
}

std::span<const ToolButton> toolButtons() {
    return kToolbar;
}

std::span<const Shortcut> shortcuts() {
    return kShortcuts;
}

std::optional<Command> commandOfKey(TextView key) {
    const auto found = std::find_if(std::begin(kToolbar), std::end(kToolbar),
                                    [&](const ToolButton& b) { return b.key == key; });
    if (key.empty() || found == std::end(kToolbar))
        return std::nullopt;
    return found->runs;
}

}  // namespace melvorin
