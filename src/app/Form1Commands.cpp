// The main window's commands on text, and the keys of its editor.
#include <windowsx.h>

#include <utility>

#include "app/Form1.h"
#include "app/ShippedPages.h"
#include "app/frmAbout.h"
#include "app/frmCodePage.h"
#include "base/DiagramFont.h"
#include "base/Paths.h"
#include "base/ProgramSettings.h"
#include "base/TabExpansion.h"
#include "chords/CellWidth.h"
#include "chords/LineVerdict.h"
#include "dictionary/RichEditDiagrams.h"
#include "platform/HeldKeys.h"
#include "rtf/EditCommands.h"

namespace melvorin {
namespace {

// What a line is, in the words of whoever sings it.
TextView placeName(LineVerdict verdict) {
    switch (verdict) {
        case LineVerdict::Lyrics:
            return u"words";
        case LineVerdict::Section:
            return u"label";
        default:
            return nameOf(verdict);
    }
}

}  // namespace

// ---- Keys of the editor -----------------------------------------------------------------------

bool Form1::onEditorInput(UINT message, WPARAM wParam, LPARAM lParam) try {
    switch (message) {
        case WM_SYSKEYDOWN:
            return follower_.onKeyDown(strokeOf(wParam));
        case WM_KEYDOWN:
            return follower_.onKeyDown(strokeOf(wParam)) || onEditorKey(wParam);
        case WM_CHAR:
            return onEditorCharacter(wParam);
        case WM_MOUSEWHEEL:
            return onWheel(wParam);
        case WM_LBUTTONDBLCLK:
            return selectAt({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        default:
            ::SendMessageW(handle(), message, wParam, lParam);
            return true;
    }
} catch (const std::exception& error) {
    onException(error);
    return true;
}

// Keys that the control would answer in a way of its own. Those that come as characters too run
// their commands then.
bool Form1::onEditorKey(WPARAM key) {
    KeyStroke stroke = strokeOf(key);
    const bool isLetter = key >= u'A' && key <= u'Z';
    if (isLetter)
        stroke.shift = false;
    const auto command = commandInText(stroke);
    if (command && !isLetter)
        ::SendMessageW(handle(), WM_COMMAND, idOf(*command), 0);
    return command.has_value();
}

bool Form1::onEditorCharacter(WPARAM character) {
    constexpr WPARAM ctrlA = 1;
    constexpr WPARAM ctrlZ = 26;
    constexpr WPARAM ctrlBackspace = 0x7F;
    if (follower_.onCharacter(static_cast<char16_t>(character)))
        return true;
    if (character == u'\t') {
        typeTab();
        return true;
    }
    if (character < ctrlA || character > ctrlZ)
        return character == ctrlBackspace;
    const auto command = commandInText(ctrl(static_cast<std::uint16_t>(u'A' + character - ctrlA)));
    if (command)
        ::SendMessageW(handle(), WM_COMMAND, idOf(*command), 0);
    return command.has_value();
}

// A double click takes a diagram, or a chord without the blanks behind it.
bool Form1::selectAt(POINT point) {
    return RichEditDiagrams(rtftext_).selectAt(point) || follower_.selectChordAt(point);
}

// What is typed is in the editor's font, unless the user is at work with formatted text; behind a
// diagram always, or it would be another diagram.
std::optional<RichEdit::TypingFormat> Form1::typingFormat(TextView face) {
    if (services_.clipboard.hasRichText() && !isDiagramFace(face))
        return std::nullopt;
    return textFont();
}

// That of what is typed where nothing else says so.
RichEdit::TypingFormat Form1::textFont() const {
    return {editorFontFace(services_), kEditorFontPoints};
}

// A tab would move with the font; blanks keep chords over their words.
void Form1::typeTab() {
    if (::GetKeyState(VK_SHIFT) >= 0)
        rtftext_.type(expandTabs(u"\t", columnOfSelection(rtftext_)));
}

void Form1::onDrop(HDROP drop) {
    Text path(32768, u'\0');
    path.resize(::DragQueryFileW(drop, 0, wideBuffer(path), static_cast<UINT>(path.size())));
    ::DragFinish(drop);
    if (!path.empty() && mayBegin())
        documents_.openPath(path, true);
}

void Form1::onContextMenu(LPARAM lParam) {
    POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (lParam == -1) {  // from the keyboard: at the caret
        point = rtftext_.pointOf(rtftext_.selection().end);
        ::ClientToScreen(rtftext_.handle(), &point);
    }
    RECT editor{};
    ::GetWindowRect(rtftext_.handle(), &editor);
    if (::PtInRect(&editor, point))
        ::TrackPopupMenu(menuBar_.submenu(Command::mnuEdit), TPM_LEFTALIGN | TPM_TOPALIGN, point.x,
                         point.y, 0, handle(), nullptr);
}

// ---- Commands ---------------------------------------------------------------------------------

void Form1::changeText(const std::function<void()>& change, bool keepsLines) {
    {
        const EditorWork work(rtftext_);
        follower_.around(change, keepsLines);
    }
    documents_.changed();
}

void Form1::editCut() {
    changeText([this] { rtftext_.cut(); });
}

void Form1::editDelete() {
    changeText([this] { rtftext_.clear(); });
}

void Form1::editPaste() {
    const auto expand = [this](Text text, std::size_t startColumn) {
        const Busy busy(*this);
        return FrmTxt(services_).convert(handle(), std::move(text), startColumn);
    };
    const CursorScope hourglass(IDC_WAIT);
    bool pasted = false;
    follower_.around([&] {
        pasted = pasteClipboard(rtftext_, services_.clipboard, services_.messages,
                                editorFontFace(services_), expand);
    });
    if (!pasted)
        return;
    rtftext_.scrollCaretIntoView();
    documents_.changed();
}

// What the clipboard holds is looked at when somebody may choose it.
void Form1::onMenuOpens(HMENU menu) {
    if (menu != menuBar_.submenu(Command::mnuEdit))
        return;
    menuBar_.enable(Command::mnuCopyChords, chordClipboard_.mayCopy());
    menuBar_.enable(Command::mnuPasteChords, chordClipboard_.mayPaste());
}

void Form1::copyChords() {
    if (const auto copied = chordClipboard_.copy(); !copied)
        reportFailure(services_.messages, u"The chords cannot be copied. " + copied.cause);
}

void Form1::pasteChords() {
    Result<std::size_t> left;
    {
        const EditorWork work(rtftext_);
        left = chordClipboard_.paste();
    }
    follower_.formatsChanged();
    if (!left)
        return reportFailure(services_.messages, u"The chords cannot be pasted. " + left.cause);
    rtftext_.scrollCaretIntoView();
    documents_.changed();
    if (*left.value > 0)
        services_.messages.show(
            decimal(static_cast<std::int64_t>(*left.value)) +
                (*left.value == 1 ? u" line of chords was left: there is no line of words for it."
                                  : u" lines of chords were left: there are no lines of words for "
                                    u"them."),
            kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

void Form1::fileSave() {
    documents_.save();
    keyWork_.tell();
}

// ---- The view ---------------------------------------------------------------------------------

// Ctrl with the wheel; alone it scrolls.
bool Form1::onWheel(WPARAM wParam) {
    if ((GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) == 0)
        return false;
    run(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? Command::zoomIn : Command::zoomOut);
    return true;
}

void Form1::zoom(int percent) {
    rtftext_.setZoom(percent);
    rtftext_.scrollCaretIntoView();
    status_.tellZoom(percent);
    storeEditorZoom(services_, percent);
}

void Form1::switchStatusLine() {
    const bool shown = !status_.isShown();
    showStatusLine(shown);
    onSize();
    if (!storeShowsStatusLine(services_, shown))
        reportFailure(services_.messages, kNotStored);
}

void Form1::showStatusLine(bool shown) {
    status_.show(shown);
    menuBar_.check(Command::mnuStatus, shown);
    if (shown)
        tellPlace();
}

void Form1::toStatusLine() {
    if (::IsChild(status_.handle(), ::GetFocus()))
        ::SetFocus(rtftext_.handle());
    else if (status_.isShown())
        status_.enter();
}

void Form1::tellPlace() {
    ::KillTimer(handle(), kPlaceTimer);
    if (!status_.isShown() || rtftext_.atWork())
        return;
    const std::int32_t caret = rtftext_.selection().end;
    const std::int32_t line = rtftext_.lineOf(caret);
    const std::int32_t start = rtftext_.firstOfLine(line);
    const Text text = rtftext_.textBetween({start, start + rtftext_.lengthOfLine(line)});
    const std::size_t column =
        cellsOf(TextView(text).substr(0, static_cast<std::size_t>(std::max(caret - start, 0))));
    Text place = u"Line " + decimal(line + 1) + u", Column " +
                 decimal(static_cast<std::int64_t>(column) + 1);
    if (!trimmed(text).empty())
        place += u": " + Text(placeName(judgeLine(text)));
    status_.tellPlace(place);
    status_.tellReason(keyWork_.reasonAt(caret));
}

void Form1::selectAll() {
    rtftext_.select({0, static_cast<std::int32_t>(rtftext_.text().chars.size())});
}

void Form1::toggleEffect(TextEffect effect) {
    {
        const EditorWork work(rtftext_);
        toggle(rtftext_, effect);
    }
    documents_.changed();
}

void Form1::toggleBold() {
    toggleEffect(kBold);
}
void Form1::toggleItalic() {
    toggleEffect(kItalic);
}
void Form1::toggleUnderline() {
    toggleEffect(kUnderline);
}

void Form1::changeCase(LetterCase to) {
    changeText([&] { convertCase(rtftext_, to); }, true);
}

void Form1::align(Alignment alignment) {
    {
        const EditorWork work(rtftext_);
        rtftext_.setAlignment(alignment);
    }
    documents_.changed();
}

// Text selected within a line is what the user wants to find.
void Form1::openFind() {
    closeDictionary();
    const Text selected = rtftext_.textBetween(rtftext_.selection());
    const bool isInLine = selected.find_first_of(u"\r\v") == Text::npos;
    find_.open(handle(), isInLine ? TextView(selected) : TextView());
}

// The button also stands for the dictionary's own search, as far as it has something to look for.
void Form1::toolbarFind() {
    dictionary_.findChord();
    openFind();
}

void Form1::findAgain() {
    if (!find_.findNext())
        openFind();
}

void Form1::insertTablature() {
    closeDictionary();
    tab_.open(handle());
}

void Form1::guitarTuner() {
    song_.open(handle(), SoundFolder::Strings);
}

// A change that another window makes of the document: one undo step, and none while a command
// waits for an answer.
void Form1::edit(const std::function<bool()>& change) {
    if (!mayBegin())
        return;
    try {
        if (change())
            documents_.changed();
    } catch (const std::exception& error) {
        onException(error);
    }
}

// A path that the list cannot hold is told once: the next song from that folder would bring the
// same message.
void Form1::remember(TextView path) {
    if (recent_.add(path) || std::exchange(longPathTold_, true))
        return;
    services_.messages.show(
        u"This path is too long for the list of recent files, so it is not listed "
        u"there:\r\n\r\n" +
            Text(path),
        kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
}

void Form1::showRecent(const RecentMenu& menu) {
    menuBar_.show(Command::mnuRecentFile0, menu.empty);
    auto item = static_cast<std::uint16_t>(Command::mnuRecentFile1);
    for (const RecentMenu::Entry& entry : menu.entries) {
        const auto command = static_cast<Command>(item++);
        menuBar_.show(command, entry.visible);
        // An ampersand in a path is no access key.
        Text caption;
        for (const char16_t c : entry.caption)
            caption.append(c == u'&' ? 2 : 1, c);
        if (entry.visible)
            menuBar_.setCaption(command, caption);
    }
    menuBar_.show(Command::mnuLn, menu.clean);
    menuBar_.show(Command::mnuReset, menu.clean);
}

void Form1::cleanRecent() {
    if (!recent_.clean())
        reportFailure(
            services_.messages,
            u"The list of recent files cannot be cleaned: its file \"Melvorin.INI\" in the "
            u"Windows folder cannot be written.");
}

// A page that is missing does not keep the example from opening, nor the other way round.
void Form1::openShipped(Command command) {
    const std::optional<ShippedPages> pages = pagesOf(command);
    if (!pages->document.empty()) {
        if (!documents_.mayLeave())
            return;
        documents_.openExample(joinPath(services_.program.folder(), pages->document));
    }
    showPage(services_, pages->help, pages->page);
}

// Every window of the program hands its F1 up to its owner, and so in the end to this one. The page
// is that of the innermost window that has one.
void Form1::onHelp(const HELPINFO& info) {
    if (info.iContextType == HELPINFO_MENUITEM)
        return showPage(services_, kHelpFile, kCommandsPage);
    TextView page;
    for (auto window = static_cast<HWND>(info.hItemHandle); window != nullptr && page.empty();
         window = ::GetParent(window)) {
        Text name(256, u'\0');
        name.resize(static_cast<std::size_t>(::GetClassNameW(window, wideBuffer(name), 256)));
        page = pageOfWindow(name);
    }
    showPage(services_, kHelpFile, page.empty() ? pageOfWindow(u"MelvorinForm1") : page);
}

void Form1::about() {
    const Busy busy(*this);
    frmAbout(services_).show(handle());
}

std::optional<std::size_t> Form1::chooseReading(TextView path,
                                                const std::vector<CodePageReading>& readings) {
    const Busy busy(*this);
    return frmCodePage(services_).ask(handle(), fileNamePart(path), readings);
}

}  // namespace melvorin
