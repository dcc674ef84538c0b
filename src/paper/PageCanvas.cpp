#include "paper/PageCanvas.h"

#include <windowsx.h>

#include <algorithm>

#include "paper/PagePainter.h"

namespace melvorin {
namespace {

constexpr int kGap = 12;      // around a page, at 96 dpi
constexpr int kStep = 48;     // of an arrow key or a notch, at 96 dpi
constexpr int kNearness = 2;  // pictures are kept within so many windows above and below
// A larger page is painted where it is in sight, and not kept.
constexpr std::int64_t kMostPixels = 12'000'000;

}  // namespace

bool PageCanvas::open(HWND parent, int id) {
    WindowSpec spec;
    spec.className = L"MelvorinPageCanvas";
    spec.caption = L"Pages";
    spec.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL;
    spec.extendedStyle = WS_EX_CLIENTEDGE;
    spec.x = spec.y = spec.width = spec.height = 0;
    spec.parent = parent;
    spec.menu = reinterpret_cast<HMENU>(INT_PTR{id});
    document_ = nullptr;
    pictures_.clear();
    left_ = top_ = wheel_ = 0;
    return create(spec);
}

void PageCanvas::show(const PaperDocument& document, const SystemFonts& fonts) {
    const Spot before = spot();
    document_ = &document;
    fonts_ = &fonts;
    pictures_.clear();
    layOut();
    goTo(before);
}

void PageCanvas::setView(PreviewView view) {
    const Spot before = spot();
    view_ = view;
    layOut();
    goTo(before);
}

void PageCanvas::zoom(bool larger) {
    setView(nextSize(layout_.scale, larger, systemDpi()));
}

std::size_t PageCanvas::page() const {
    return pageAt(layout_, top_, room().height);
}

PageCanvas::Spot PageCanvas::spot() const {
    if (layout_.pages.empty())
        return {};
    const std::size_t number = page();
    const Area& place = layout_.pages[number];
    const int middle = top_ + room().height / 2;
    return {number, static_cast<double>(middle - place.top) / std::max(place.height, 1)};
}

// Where whole pages are shown, to the page.
void PageCanvas::goTo(const Spot& spot) {
    using enum PreviewView::Kind;
    if (view_.kind == OnePage || view_.kind == TwoPages || spot.page >= layout_.pages.size())
        return goTo(spot.page);
    const Area& place = layout_.pages[spot.page];
    const int down = static_cast<int>(spot.down * place.height);
    scrollTo(left_, place.top + down - room().height / 2);
}

void PageCanvas::goTo(std::size_t page) {
    if (layout_.pages.empty())
        return;
    const Area& place = layout_.pages[std::min(page, layout_.pages.size() - 1)];
    scrollTo(place.left - scaled(kGap), place.top - scaled(kGap));
}

ScreenSize PageCanvas::room() const {
    RECT client{};
    ::GetClientRect(handle(), &client);
    return {static_cast<int>(client.right), static_cast<int>(client.bottom)};
}

void PageCanvas::layOut() {
    if (!isOpen())
        return;
    const double before = layout_.scale;
    layout_ = layOutPreview(document_ == nullptr ? kA4 : document_->paper, pageCount(), view_,
                            room(), scaled(kGap), systemDpi());
    if (layout_.scale != before)
        pictures_.clear();
    scrollTo(left_, top_);
}

void PageCanvas::setBar(int bar, int whole, int seen, int at) const {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    // A bar that comes and goes would change the room that it is for.
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = whole - 1;
    info.nPage = static_cast<UINT>(std::max(seen, 1));
    info.nPos = at;
    ::SetScrollInfo(handle(), bar, &info, TRUE);
}

void PageCanvas::scrollTo(int left, int top) {
    const ScreenSize seen = room();
    left_ = std::clamp(left, 0, std::max(0, layout_.width - seen.width));
    top_ = std::clamp(top, 0, std::max(0, layout_.height - seen.height));
    setBar(SB_HORZ, layout_.width, seen.width, left_);
    setBar(SB_VERT, layout_.height, seen.height, top_);
    ::InvalidateRect(handle(), nullptr, FALSE);
    if (changed_)
        changed_();
}

LRESULT PageCanvas::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE: {
            const Spot before = spot();
            layOut();
            goTo(before);
            return 0;
        }
        case WM_VSCROLL:
            onScrollBar(SB_VERT, LOWORD(wParam));
            return 0;
        case WM_HSCROLL:
            onScrollBar(SB_HORZ, LOWORD(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            onWheel(wParam);
            return 0;
        case WM_LBUTTONDOWN:
            ::SetFocus(handle());
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_KEYDOWN:
            return onKey(wParam) ? 0 : passOn(message, wParam, lParam);
        default:
            return passOn(message, wParam, lParam);
    }
}

// By a page where whole pages are in sight, else by a few lines.
int PageCanvas::step() const {
    const bool isWhole =
        view_.kind == PreviewView::Kind::OnePage || view_.kind == PreviewView::Kind::TwoPages;
    return isWhole && !layout_.pages.empty() ? layout_.pages[0].height + scaled(kGap)
                                             : scaled(kStep);
}

void PageCanvas::onScrollBar(int bar, WORD action) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    ::GetScrollInfo(handle(), bar, &info);
    const bool isDown = bar == SB_VERT;
    int at = isDown ? top_ : left_;
    switch (action) {
        case SB_LINEUP:
            at -= step();
            break;
        case SB_LINEDOWN:
            at += step();
            break;
        case SB_PAGEUP:
            at -= static_cast<int>(info.nPage);
            break;
        case SB_PAGEDOWN:
            at += static_cast<int>(info.nPage);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            at = info.nTrackPos;
            break;
        case SB_TOP:
            at = 0;
            break;
        case SB_BOTTOM:
            at = info.nMax;
            break;
        default:
            return;
    }
    scrollTo(isDown ? left_ : at, isDown ? at : top_);
}

void PageCanvas::onWheel(WPARAM wParam) {
    wheel_ += GET_WHEEL_DELTA_WPARAM(wParam);
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (notches == 0)
        return;
    if ((GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0)
        zoom(notches > 0);
    else
        scrollTo(left_, top_ - notches * step());
}

bool PageCanvas::onKey(WPARAM key) {
    // A page of which more than the window shows is walked through first.
    const int height = room().height;
    const bool isTall = !layout_.pages.empty() && layout_.pages[0].height > height;
    const int most = isTall                  ? height - scaled(kGap)
                     : layout_.pages.empty() ? 0
                                             : layout_.pages[0].height + scaled(kGap);
    switch (key) {
        case VK_NEXT:
            scrollTo(left_, top_ + most);
            return true;
        case VK_PRIOR:
            scrollTo(left_, top_ - most);
            return true;
        case VK_HOME:
            scrollTo(0, 0);
            return true;
        case VK_END:
            scrollTo(left_, layout_.height);
            return true;
        case VK_DOWN:
            scrollTo(left_, top_ + step());
            return true;
        case VK_UP:
            scrollTo(left_, top_ - step());
            return true;
        case VK_RIGHT:
            scrollTo(left_ + scaled(kStep), top_);
            return true;
        case VK_LEFT:
            scrollTo(left_ - scaled(kStep), top_);
            return true;
        default:
            return false;
    }
}

void PageCanvas::onPaint() {
    const PaintScope paint(handle());
    const HDC dc = paint.dc();
    const ScreenSize seen = room();
    const int state = ::SaveDC(dc);
    for (std::size_t i = 0; i < layout_.pages.size() && document_ != nullptr; ++i) {
        Area place = layout_.pages[i];
        place.left -= left_;
        place.top -= top_;
        const bool isNear = place.top < (kNearness + 1) * seen.height &&
                            place.top + place.height > -kNearness * seen.height;
        if (!isNear)
            pictures_.erase(i);
        if (place.top >= seen.height || place.top + place.height <= 0)
            continue;
        paintPage(dc, i, place);
        ::ExcludeClipRect(dc, place.left, place.top, place.left + place.width,
                          place.top + place.height);
    }
    const RECT all{0, 0, seen.width, seen.height};
    ::FillRect(dc, &all, ::GetSysColorBrush(COLOR_APPWORKSPACE));
    ::RestoreDC(dc, state);
}

void PageCanvas::paintPage(HDC dc, std::size_t number, const Area& place) {
    const PaperPage& page = document_->pages[number];
    if (std::int64_t{place.width} * place.height > kMostPixels) {
        const RECT paper = rectOf(place);
        const int state = ::SaveDC(dc);
        ::IntersectClipRect(dc, place.left, place.top, place.left + place.width,
                            place.top + place.height);
        ::FillRect(dc, &paper, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
        PagePainter(*fonts_, PagePainter::Quality::Screen)
            .paint(dc, page,
                   {layout_.scale, layout_.scale, static_cast<double>(place.left),
                    static_cast<double>(place.top)},
                   false);
        ::RestoreDC(dc, state);
        return;
    }
    UniqueBitmap& picture = pictures_[number];
    if (!picture)
        picture = pictureOf(page, document_->paper, {place.width, place.height}, *fonts_);
    if (!picture) {  // memory ends
        const RECT paper = rectOf(place);
        ::FillRect(dc, &paper, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
        return;
    }
    const UniqueMemoryDc source(::CreateCompatibleDC(dc));
    const SelectedObject selected(source.get(), picture.get());
    ::BitBlt(dc, place.left, place.top, place.width, place.height, source.get(), 0, 0, SRCCOPY);
}

}  // namespace melvorin
