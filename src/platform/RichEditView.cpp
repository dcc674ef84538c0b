// Which part of the document the rich-text control shows, and how large.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "platform/RichEdit.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

constexpr int kLine = 15;  // about the height of a line, in pixels at 96 dpi
// Characters of a line whose width tells whether the control has taken a size.
constexpr std::int32_t kProbe = 40;

}  // namespace

// ---- Scrolling --------------------------------------------------------------------------------

ScrollPosition RichEdit::scrollPosition() const {
    const POINT point = page();
    return {static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y),
            firstVisibleLine()};
}

// Controls count pixels up to 65,535 only: beyond, some begin anew and some give a share. What
// comes of it is many lines off; then the line is what counts.
void RichEdit::scrollTo(ScrollPosition position) {
    constexpr std::int32_t farOff = 100;
    POINT point{position.x, position.y};
    send(EM_SETSCROLLPOS, 0, lparamOf(&point));
    const std::int32_t missing = position.line < 0 ? 0 : position.line - firstVisibleLine();
    if (std::abs(missing) > farOff)
        send(EM_LINESCROLL, 0, missing);
}

void RichEdit::scrollCaretIntoView() {
    send(EM_SCROLLCARET);
}

bool RichEdit::isInView(std::int32_t position) const {
    const POINT point = pointOf(position);
    RECT text{};
    send(EM_GETRECT, 0, lparamOf(&text));
    text.bottom -= scaled(kLine);
    return ::PtInRect(&text, point) != FALSE;
}

void RichEdit::centre(std::int32_t position) {
    const POINT point = pointOf(position);
    RECT text{};
    send(EM_GETRECT, 0, lparamOf(&text));
    ScrollPosition place = scrollPosition();
    place.line =
        std::max(0, lineOf(position) -
                        static_cast<std::int32_t>((text.bottom - text.top) / 2) / scaled(kLine));
    place.y = std::max(0, place.y + static_cast<int>(point.y - (text.top + text.bottom) / 2));
    if (point.x < text.left || point.x >= text.right)
        place.x = std::max(0, place.x + static_cast<int>(point.x - (text.left + text.right) / 2));
    scrollTo(place);
}

POINT RichEdit::page() const {
    POINT point{};
    send(EM_GETSCROLLPOS, 0, lparamOf(&point));
    return point;
}

std::int32_t RichEdit::firstVisibleLine() const {
    return static_cast<std::int32_t>(send(EM_GETFIRSTVISIBLELINE));
}

// From the end of the text the line is scrolled up to, no farther than it has to. That works by
// the caret on every control, where positions in pixels end at 65,535 on some.
void RichEdit::bringToTop(std::int32_t line) {
    const std::int32_t end = length();
    const std::int32_t first = firstOfLine(line);
    beginWork();
    select({end, end});
    scrollCaretIntoView();
    select({first, first});
    scrollCaretIntoView();
    endWork();
    ::UpdateWindow(handle_);
}

// ---- Zoom -------------------------------------------------------------------------------------

void RichEdit::applyZoom(HWND control) const {
    ::SendMessageW(control, EM_SETZOOM, static_cast<WPARAM>(zoom_), 100);
}

// The first characters of the first line from `line` on that has some; empty where none is near.
Selection RichEdit::beginningOfText(std::int32_t line) const {
    constexpr std::int32_t lines = 50;
    for (std::int32_t at = line; at < std::min(line + lines, lineCount()); ++at) {
        if (const std::int32_t length = lengthOfLine(at); length > 0)
            return {firstOfLine(at), firstOfLine(at) + std::min(kProbe, length)};
    }
    return {};
}

int RichEdit::widthOf(Selection range) const {
    return static_cast<int>(pointOf(range.end).x - pointOf(range.begin).x);
}

void RichEdit::setZoom(int percent) {
    const int former = std::exchange(zoom_, percent);
    if (handle_ == nullptr)
        return;
    const std::int32_t top = firstVisibleLine();
    const Selection selected = selection();
    const EditorWork work(*this);
    const Selection probe = beginningOfText(top);
    const int before = widthOf(probe);
    const double wanted = static_cast<double>(before) * percent / former;
    applyZoom(handle_);
    // Some controls go on with the former widths until a format changes; of a small step these may
    // be near what is wanted. The author of a revision is one that nobody sees and no Rich Text
    // has.
    const int now = widthOf(probe);
    const bool follows = probe.end > probe.begin && now != before &&
                         std::abs(now - wanted) <= std::max(2.0, wanted / 20);
    if (!follows) {
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        format.dwMask = CFM_REVAUTHOR;
        format.bRevAuthor = revisionAuthor_ = static_cast<BYTE>(1 - revisionAuthor_);
        send(EM_SETCHARFORMAT, SCF_ALL, lparamOf(&format));
    }
    bringToTop(top);
    // A cursor out of sight would take the view along.
    const ScrollPosition place = scrollPosition();
    select(selected);
    scrollTo(place);
}

}  // namespace melvorin
