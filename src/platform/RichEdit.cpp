#include "platform/RichEdit.h"

#include <commdlg.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "platform/Handles.h"
#include "platform/PicturesOnly.h"
#include "platform/SystemLibrary.h"
#include "platform/Window.h"
#include "rtf/FileKind.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfRepair.h"
#include "rtf/RtfUnfold.h"

namespace melvorin {
namespace {

constexpr WPARAM kUnicode = 1200;
constexpr int kMargin = 6;  // pixels at 96 dpi between the frame and the text

// The newest rich-text class of the machine; the library stays loaded for the run.
const wchar_t* richEditClass() {
    static const wchar_t* const name = []() -> const wchar_t* {
        if (systemLibrary(L"Msftedit.dll") != nullptr)
            return MSFTEDIT_CLASS;
        return systemLibrary(L"Riched20.dll") != nullptr ? RICHEDIT_CLASSW : nullptr;
    }();
    return name;
}

struct Source {
    std::string_view rest;
};

DWORD CALLBACK readSource(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
    auto& source = *reinterpret_cast<Source*>(cookie);
    // An even count, so that no UTF-16 unit is cut in two.
    const std::size_t room = static_cast<std::size_t>(size) & ~std::size_t{1};
    const std::size_t count = std::min(room, source.rest.size());
    std::memcpy(buffer, source.rest.data(), count);
    source.rest.remove_prefix(count);
    *done = static_cast<LONG>(count);
    return 0;
}

DWORD CALLBACK writeTarget(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
    // An exception must not run through the control; the error ends the stream.
    try {
        reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<const char*>(buffer),
                                                       static_cast<std::size_t>(size));
    } catch (const std::exception&) {
        return 1;
    }
    *done = size;
    return 0;
}

CHARFORMAT2W charFormat(DWORD mask) {
    CHARFORMAT2W format{};
    format.cbSize = sizeof format;
    format.dwMask = mask;
    return format;
}

void setFace(CHARFORMAT2W& format, TextView face) {
    const std::size_t length = std::min<std::size_t>(face.size(), LF_FACESIZE - 1);
    std::copy_n(face.begin(), length, format.szFaceName);
    format.szFaceName[length] = 0;
    format.bCharSet = ANSI_CHARSET;
}

CHARFORMAT2W fontFormat(TextView face, int points) {
    CHARFORMAT2W format = charFormat(CFM_FACE | CFM_SIZE | CFM_CHARSET);
    setFace(format, face);
    format.yHeight = points * 20;
    return format;
}

// A plain, black beginning: the control's own default is bold.
CHARFORMAT2W plainFormat(TextView face, int points) {
    CHARFORMAT2W format = fontFormat(face, points);
    format.dwMask |= CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_STRIKEOUT | CFM_COLOR;
    format.crTextColor = RGB(0, 0, 0);
    return format;
}

COLORREF colourRef(Rgb colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

LPARAM formatParam(const CHARFORMAT2W& format) {
    return lparamOf(&format);
}

bool streamIn(HWND control, WPARAM format, std::string_view bytes) {
    Source source{bytes};
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, readSource};
    ::SendMessageW(control, EM_STREAMIN, format, lparamOf(&stream));
    return stream.dwError == 0;
}

bool rtfHasText(std::string_view rtf) {
    const auto map = RtfMap::parse(rtf);
    return map && !map->text().empty();
}

}  // namespace

void RichEdit::createOnLoad(HWND parent, int id, TextView face, int points) {
    parent_ = parent;
    id_ = id;
    defaultFormat_ = plainFormat(face, points);
    place_ = {};
    handle_ = nullptr;
}

void RichEdit::destroy() {
    if (handle_ != nullptr)
        ::DestroyWindow(std::exchange(handle_, nullptr));
}

bool RichEdit::create(HWND parent, int id, TextView face, int points) {
    createOnLoad(parent, id, face, points);
    handle_ = createControl();
    if (handle_ == nullptr)
        return false;
    thaw();
    return true;
}

// A control as the program wants it, empty, frozen and not yet placed.
HWND RichEdit::createControl() {
    const wchar_t* const windowClass = richEditClass();
    if (windowClass == nullptr)
        return nullptr;
    // Never wrapped: a chord line and its words must break together or not at all.
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | WS_VSCROLL |
                            WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL |
                            ES_NOHIDESEL | ES_WANTRETURN;
    // Text that is dragged in would go around the check and the tabs; files are dropped another
    // way.
    const HWND control = ::CreateWindowExW(edge_, windowClass, L"", style | ES_NOOLEDRAGDROP, 0, 0,
                                           0, 0, parent_, reinterpret_cast<HMENU>(INT_PTR{id_}),
                                           ::GetModuleHandleW(nullptr), nullptr);
    if (control == nullptr)
        return nullptr;
    ::SetWindowSubclass(control, &RichEdit::filterInput, 0, reinterpret_cast<DWORD_PTR>(this));
    ::DragAcceptFiles(control, TRUE);
    const auto set = [&](UINT message, WPARAM wParam, LPARAM lParam) {
        return ::SendMessageW(control, message, wParam, lParam);
    };
    set(WM_SETREDRAW, FALSE, 0);
    set(EM_SETUNDOLIMIT, 0, 0);
    set(EM_SETOLECALLBACK, 0, lparamOf(picturesOnly()));
    set(EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    // The control must not pick other faces for single characters: a diagram is its face.
    const LRESULT language = set(EM_GETLANGOPTIONS, 0, 0);
    set(EM_SETLANGOPTIONS, 0, language & ~LRESULT{IMF_AUTOFONT | IMF_DUALFONT});
    set(EM_SETCHARFORMAT, SCF_DEFAULT, formatParam(defaultFormat_));
    set(EM_SETCHARFORMAT, SCF_ALL, formatParam(defaultFormat_));
    set(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(colourRef(paper())));
    if (zoom_ != 100)
        applyZoom(control);
    return control;
}

LRESULT CALLBACK RichEdit::filterInput(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                       UINT_PTR id, DWORD_PTR self) {
    const bool isInput = message == WM_KEYDOWN || message == WM_SYSKEYDOWN || message == WM_CHAR ||
                         message == WM_LBUTTONDBLCLK || message == WM_DROPFILES ||
                         message == WM_MOUSEWHEEL;
    if (isInput) {
        RichEdit& editor = *reinterpret_cast<RichEdit*>(self);
        // No exception may run through the control.
        try {
            if (editor.inputFilter_ && editor.inputFilter_(message, wParam, lParam))
                return 0;
            if (editor.onTyped(window, message, wParam, lParam, id) ||
                editor.onDeleted(window, message, wParam, lParam, id))
                return 0;
        } catch (const std::exception&) {
            return 0;
        }
    }
    if (message == WM_IME_STARTCOMPOSITION || message == WM_IME_ENDCOMPOSITION) {
        reinterpret_cast<RichEdit*>(self)->onComposition(window, message, wParam, lParam, id);
        return 0;
    }
    return subclassDefault(filterInput, id, window, message, wParam, lParam);
}

bool RichEdit::fillFresh(WPARAM format, std::string_view bytes) {
    const CursorScope hourglass(IDC_WAIT);
    const HWND fresh = createControl();
    if (fresh == nullptr)
        return false;
    const HWND former = std::exchange(handle_, fresh);
    // Placed first and below the old one: a filled control would lay out its text once more.
    ::SetWindowPos(fresh, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    applyPlace();
    bool filled = false;
    try {
        // Some controls report success and show nothing.
        filled =
            streamIn(fresh, format, bytes) && !(format == SF_RTF && isEmpty() && rtfHasText(bytes));
    } catch (...) {
        handle_ = former;
        ::DestroyWindow(fresh);
        throw;
    }
    if (!filled) {
        handle_ = former;
        ::DestroyWindow(fresh);
        return false;
    }
    revisionAuthor_ = 0;
    select({0, 0});
    if (former != nullptr)
        ::SetWindowPos(fresh, former, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    scrollTo({0, 0});
    if (former == nullptr)
        return true;
    if (::GetFocus() == former)
        ::SetFocus(fresh);
    ::DestroyWindow(former);
    return true;
}

// For a rectangle that it has already, the control would lay out its whole text once more.
void RichEdit::place(const RECT& rectangle) {
    const bool isThere = ::EqualRect(&place_, &rectangle) != FALSE;
    place_ = rectangle;
    if (handle_ != nullptr && !isThere)
        applyPlace();
}

void RichEdit::applyPlace() const {
    ::SetWindowPos(handle_, nullptr, place_.left, place_.top, place_.right - place_.left,
                   place_.bottom - place_.top, SWP_NOZORDER | SWP_NOACTIVATE);
    // The formatting rectangle, because not every control knows the margins message.
    RECT text{};
    ::GetClientRect(handle_, &text);
    text.left += scaled(kMargin);
    text.top += scaled(kMargin) / 2;
    send(EM_SETRECT, 0, lparamOf(&text));
}

void RichEdit::show(bool visible) {
    shown_ = visible;
    if (handle_ == nullptr)
        return;
    ::SetWindowPos(handle_, HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE |
                       static_cast<UINT>(visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

bool RichEdit::isEmpty() const {
    GETTEXTLENGTHEX query{GTL_NUMCHARS, static_cast<UINT>(kUnicode)};
    return send(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&query)) == 0;
}

// With the characters that hold tables and formulas together, which other ways of asking leave out:
// positions count them. How many there are is seen when they have come.
EditorText RichEdit::text() const {
    constexpr std::size_t spare = 64;
    Text chars;
    for (std::size_t room = static_cast<std::size_t>(length()) + spare;; room *= 2) {
        chars.assign(room, u'\0');
        GETTEXTEX request{};
        request.cb = static_cast<DWORD>(room * sizeof(char16_t));
        request.flags = GT_RAWTEXT;
        request.codepage = static_cast<UINT>(kUnicode);
        const LRESULT copied =
            send(EM_GETTEXTEX, reinterpret_cast<WPARAM>(&request), lparamOf(chars.data()));
        if (copied + 1 < static_cast<LRESULT>(room)) {
            chars.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
            break;
        }
    }
    if (chars.empty() && !isEmpty())
        throw std::runtime_error("the editor does not give its text");
    return {std::move(chars)};
}

std::string RichEdit::streamOut(WPARAM what) const {
    std::string bytes;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, writeTarget};
    send(EM_STREAMOUT, what, lparamOf(&stream));
    // Half a document must never pass for a whole one.
    if (!::IsWindow(handle_) || stream.dwError != 0 || bytes.empty())
        throw std::runtime_error("the editor does not give its Rich Text");
    while (!bytes.empty() && bytes.back() == '\0')
        bytes.pop_back();
    return bytes;
}

// The text only helps to mend it: a control that does not give it keeps nobody from saving.
std::string RichEdit::mended(std::string written, const std::function<Text()>& text) const {
    Text shown;
    try {
        shown = text();
    } catch (const std::exception&) {
        return withTableRows(written);
    }
    return withTableRows(withLostCharacters(std::move(written), shown));
}

std::string RichEdit::rtf() const {
    return mended(streamOut(), [this] { return text().chars; });
}

// All of the text is asked for only where a part of it does not tell the whole: around tables.
std::string RichEdit::selectionRtf() const {
    const Selection range = selection();
    const auto length = static_cast<std::size_t>(range.end - range.begin);
    return mended(streamOut(SF_RTF | SFF_SELECTION), [&] {
        Text part = textBetween(range);
        if (part.size() == length)
            return part;
        const auto begin = static_cast<std::size_t>(range.begin);
        const Text all = text().chars;
        return begin < all.size() ? all.substr(begin, length) : Text();
    });
}

bool RichEdit::loadRtf(std::string_view rtf) {
    // A control takes anything else for an empty document.
    if (!looksLikeRtf(rtf))
        return false;
    const EditorWork work(*this);
    return fillFresh(SF_RTF, rtf);
}

bool RichEdit::replaceSelectionRtf(std::string_view rtf) {
    return streamIn(handle_, SF_RTF | SFF_SELECTION, rtf);
}

bool RichEdit::loadPlain(const EditorText& text, TextView face, int points) {
    const EditorWork work(*this);
    defaultFormat_ = plainFormat(face, points);
    // Streamed, because a set-text message would take text that begins like Rich Text for it.
    return fillFresh(SF_TEXT | SF_UNICODE, {reinterpret_cast<const char*>(text.chars.data()),
                                            text.chars.size() * sizeof(char16_t)});
}

void RichEdit::applyToSelection(const CHARFORMAT2W& format) {
    send(EM_SETCHARFORMAT, SCF_SELECTION, formatParam(format));
}

void RichEdit::setSelectionFont(TextView face, int points) {
    applyToSelection(fontFormat(face, points));
}

void RichEdit::setSelectionFace(TextView face) {
    CHARFORMAT2W format = charFormat(CFM_FACE | CFM_CHARSET);
    setFace(format, face);
    applyToSelection(format);
}

void RichEdit::setSelectionSize(int halfPoints) {
    CHARFORMAT2W format = charFormat(CFM_SIZE);
    format.yHeight = halfPoints * 10;
    applyToSelection(format);
}

void RichEdit::setSelectionColour(Rgb colour) {
    CHARFORMAT2W format = charFormat(CFM_COLOR);
    format.crTextColor = colourRef(colour);
    applyToSelection(format);
}

void RichEdit::setEffect(DWORD mask, DWORD effect, bool on) {
    CHARFORMAT2W format = charFormat(mask);
    format.dwEffects = on ? effect : 0;
    applyToSelection(format);
}

void RichEdit::setBold(bool on) {
    setEffect(CFM_BOLD, CFE_BOLD, on);
}
void RichEdit::setItalic(bool on) {
    setEffect(CFM_ITALIC, CFE_ITALIC, on);
}
void RichEdit::setUnderline(bool on) {
    setEffect(CFM_UNDERLINE, CFE_UNDERLINE, on);
}

void RichEdit::setAlignment(Alignment alignment) {
    PARAFORMAT2 format{};
    format.cbSize = sizeof format;
    format.dwMask = PFM_ALIGNMENT;
    format.wAlignment = alignment == Alignment::Left    ? PFA_LEFT
                        : alignment == Alignment::Right ? PFA_RIGHT
                                                        : PFA_CENTER;
    send(EM_SETPARAFORMAT, 0, lparamOf(&format));
}

void RichEdit::setBackground(std::optional<Rgb> colour) {
    background_ = colour;
    send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(colourRef(paper())));
}

Rgb RichEdit::paper() const {
    if (background_)
        return *background_;
    const COLORREF window = ::GetSysColor(COLOR_WINDOW);
    const Rgb colour{GetRValue(window), GetGValue(window), GetBValue(window)};
    return colour.red + colour.green + colour.blue < 3 * 128 ? Rgb{255, 255, 255} : colour;
}

SelectionStyle RichEdit::selectionStyle() const {
    CHARFORMAT2W format = charFormat(0);
    send(EM_GETCHARFORMAT, SCF_SELECTION, formatParam(format));
    SelectionStyle style;
    if (format.dwMask & CFM_FACE)
        style.face = Text(textOf(format.szFaceName));
    if (format.dwMask & CFM_SIZE)
        style.halfPoints = static_cast<int>(format.yHeight / 10);
    const auto effect = [&](DWORD mask, DWORD bit) -> std::optional<bool> {
        if (!(format.dwMask & mask))
            return std::nullopt;
        return (format.dwEffects & bit) != 0;
    };
    style.bold = effect(CFM_BOLD, CFE_BOLD);
    style.italic = effect(CFM_ITALIC, CFE_ITALIC);
    style.underline = effect(CFM_UNDERLINE, CFE_UNDERLINE);
    if (format.dwMask & CFM_COLOR) {
        // With the automatic colour the control leaves the colour field undefined.
        const COLORREF ref = (format.dwEffects & CFE_AUTOCOLOR) ? ::GetSysColor(COLOR_WINDOWTEXT)
                                                                : format.crTextColor;
        style.colour = Rgb{GetRValue(ref), GetGValue(ref), GetBValue(ref)};
    }
    PARAFORMAT2 paragraph{};
    paragraph.cbSize = sizeof paragraph;
    send(EM_GETPARAFORMAT, 0, lparamOf(&paragraph));
    if (paragraph.dwMask & PFM_ALIGNMENT)
        style.alignment = paragraph.wAlignment == PFA_RIGHT    ? Alignment::Right
                          : paragraph.wAlignment == PFA_CENTER ? Alignment::Center
                                                               : Alignment::Left;
    return style;
}

void RichEdit::replaceSelection(TextView text) {
    send(EM_REPLACESEL, FALSE, lparamOf(wide(Text(text))));
}

void RichEdit::sendUndo() {
    send(WM_UNDO);
}

void RichEdit::cut() {
    send(WM_CUT);
}
void RichEdit::copy() {
    send(WM_COPY);
}
void RichEdit::clear() {
    send(WM_CLEAR);
}

std::int32_t RichEdit::positionAt(POINT point) const {
    POINTL there{point.x, point.y};
    return static_cast<std::int32_t>(send(EM_CHARFROMPOS, 0, lparamOf(&there)));
}

POINT RichEdit::pointOf(std::int32_t position) const {
    POINTL point{};
    send(EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&point), position);
    return {point.x, point.y};
}

Text RichEdit::faceAt(std::int32_t position) {
    const Selection former = selection();
    select({position, position + 1});
    const SelectionStyle style = selectionStyle();
    select(former);
    return style.face.value_or(Text());
}

Selection RichEdit::selection() const {
    CHARRANGE range{};
    send(EM_EXGETSEL, 0, lparamOf(&range));
    return {static_cast<std::int32_t>(range.cpMin), static_cast<std::int32_t>(range.cpMax)};
}

void RichEdit::select(Selection selection) {
    CHARRANGE range{selection.begin, selection.end};
    send(EM_EXSETSEL, 0, lparamOf(&range));
}

void RichEdit::beginWork() {
    if (work_++ > 0)
        return;
    send(EM_SETEVENTMASK, 0, 0);
    send(WM_SETREDRAW, FALSE);
}

void RichEdit::endWork() {
    if (--work_ > 0 || handle_ == nullptr)
        return;
    thaw();
    tellSelection();
}

void RichEdit::tellSelection() const {
    SELCHANGE change{};
    change.nmhdr = {handle_, static_cast<UINT_PTR>(id_), EN_SELCHANGE};
    ::SendMessageW(parent_, WM_NOTIFY, static_cast<WPARAM>(id_), lparamOf(&change));
}

void RichEdit::thaw() const {
    drawAgain(true);
    send(EM_SETEVENTMASK, 0, ENM_CHANGE | ENM_SELCHANGE);
}

void RichEdit::drawAgain(bool changed) const {
    send(WM_SETREDRAW, TRUE);
    // The message has brought it into view, whatever it was before.
    if (!shown_)
        ::ShowWindow(handle_, SW_HIDE);
    // With its frame: scroll bars that moved meanwhile were not drawn.
    if (changed)
        ::RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
}

Text RichEdit::textBetween(Selection range) const {
    if (range.end <= range.begin)
        return {};
    Text chars(static_cast<std::size_t>(range.end - range.begin) + 1, u'\0');
    TEXTRANGEW request{{range.begin, range.end}, wideBuffer(chars)};
    const LRESULT copied = send(EM_GETTEXTRANGE, 0, lparamOf(&request));
    chars.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
    return chars;
}

std::optional<Selection> RichEdit::find(TextView what, std::int32_t from,
                                        FindOptions options) const {
    const Text needle(what);
    FINDTEXTEXW request{};
    request.chrg = {from, -1};
    request.lpstrText = wide(needle);
    const WPARAM flags =
        FR_DOWN | (options.matchCase ? FR_MATCHCASE : 0U) | (options.wholeWord ? FR_WHOLEWORD : 0U);
    if (send(EM_FINDTEXTEXW, flags, lparamOf(&request)) < 0)
        return std::nullopt;
    return Selection{static_cast<std::int32_t>(request.chrgText.cpMin),
                     static_cast<std::int32_t>(request.chrgText.cpMax)};
}

std::int32_t RichEdit::lineCount() const {
    return static_cast<std::int32_t>(send(EM_GETLINECOUNT));
}

std::int32_t RichEdit::lineOf(std::int32_t position) const {
    return static_cast<std::int32_t>(send(EM_EXLINEFROMCHAR, 0, position));
}

std::int32_t RichEdit::firstOfLine(std::int32_t line) const {
    return static_cast<std::int32_t>(send(EM_LINEINDEX, static_cast<WPARAM>(line)));
}

std::int32_t RichEdit::lengthOfLine(std::int32_t line) const {
    const std::int32_t first = firstOfLine(line);
    // The message takes a character index, not a line.
    return first < 0 ? 0
                     : static_cast<std::int32_t>(send(EM_LINELENGTH, static_cast<WPARAM>(first)));
}

std::int32_t RichEdit::length() const {
    GETTEXTLENGTHEX query{GTL_NUMCHARS, static_cast<UINT>(kUnicode)};
    return static_cast<std::int32_t>(send(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&query)));
}

}  // namespace melvorin
