// What a picture button looks like.
#include <algorithm>

#include "platform/Bitmaps.h"
#include "widgets/TarnelButton.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kGap = 6;
constexpr int kFocusInset = 3;
constexpr int kSideRoom = 12;
constexpr int kFaceRoom = 5;
constexpr int kFrame = 1;
COLORREF translated(SystemOrRgb colour) {
    constexpr SystemOrRgb systemBit = 0x80000000;
    constexpr SystemOrRgb rest = 0xFFFFFF;
    return (colour & systemBit) ? ::GetSysColor(static_cast<int>(colour & rest)) : colour & rest;
}

std::uint32_t rgbOf(COLORREF colour) {
    return static_cast<std::uint32_t>(GetRValue(colour) << 16 | GetGValue(colour) << 8 |
                                      GetBValue(colour));
}

void fill(HDC dc, const RECT& area, COLORREF colour) {
    const UniqueBrush brush(::CreateSolidBrush(colour));
    ::FillRect(dc, &area, brush.get());
}

// A frame of `thickness` pixels, upper left and lower right side in colours of their own.
void frame(HDC dc, RECT& area, int thickness, COLORREF upperLeft, COLORREF lowerRight) {
    const RECT inner{area.left + thickness, area.top + thickness, area.right - thickness,
                     area.bottom - thickness};
    if (inner.left >= inner.right || inner.top >= inner.bottom)
        return;
    fill(dc, {area.left, area.top, area.right, inner.top}, upperLeft);
    fill(dc, {area.left, inner.top, inner.left, area.bottom}, upperLeft);
    fill(dc, {inner.right, inner.top, area.right, area.bottom}, lowerRight);
    fill(dc, {inner.left, inner.bottom, inner.right, area.bottom}, lowerRight);
    area = inner;
}

HANDLE loadSource(TextView source, UINT kind, UINT flags) {
    const Text name(source);
    if (!name.starts_with(u"#"))
        return ::LoadImageW(nullptr, wide(name), kind, 0, 0, flags | LR_LOADFROMFILE);
    return ::LoadImageW(::GetModuleHandleW(nullptr), wide(name), kind, 0, 0, flags);
}

int fullHeight(const TEXTMETRICW& metrics) {
    return static_cast<int>(metrics.tmHeight);
}

}  // namespace

UniqueIcon loadPointer(TextView source) {
    if (source.empty())
        return UniqueIcon();
    return UniqueIcon(static_cast<HICON>(loadSource(source, IMAGE_CURSOR, 0)));
}

Pixels loadPicture(TextView source) {
    if (source.empty())
        return {};
    const UniqueBitmap bitmap(
        static_cast<HBITMAP>(loadSource(source, IMAGE_BITMAP, LR_CREATEDIBSECTION)));
    BITMAP size{};
    if (!bitmap || ::GetObjectW(bitmap.get(), sizeof size, &size) == 0)
        return {};
    Pixels pixels{
        static_cast<int>(size.bmWidth), std::abs(static_cast<int>(size.bmHeight)), {}, false};
    pixels.argb.resize(static_cast<std::size_t>(pixels.width) *
                       static_cast<std::size_t>(pixels.height));
    BITMAPINFO info = topDownInfo(pixels.width, pixels.height);
    const WindowDc screen(nullptr);
    if (::GetDIBits(screen.get(), bitmap.get(), 0, static_cast<UINT>(pixels.height),
                    pixels.argb.data(), &info, DIB_RGB_COLORS) == 0)
        return {};
    pixels.hasAlpha = size.bmBitsPixel == 32 &&
                      std::any_of(pixels.argb.begin(), pixels.argb.end(),
                                  [](std::uint32_t pixel) { return (pixel >> 24) != 0; });
    return pixels;
}

void TarnelButton::onPaint() {
    const PaintScope paint(handle());
    RECT client{};
    ::GetClientRect(handle(), &client);
    const UniqueMemoryDc memory(::CreateCompatibleDC(paint.dc()));
    const UniqueBitmap canvas(::CreateCompatibleBitmap(paint.dc(), static_cast<int>(client.right),
                                                       static_cast<int>(client.bottom)));
    if (!memory || !canvas) {
        draw(paint.dc());
        return;
    }
    const SelectedObject selected(memory.get(), canvas.get());
    draw(memory.get());
    ::BitBlt(paint.dc(), 0, 0, static_cast<int>(client.right), static_cast<int>(client.bottom),
             memory.get(), 0, 0, SRCCOPY);
}

void TarnelButton::draw(HDC dc) const {
    RECT client{};
    ::GetClientRect(handle(), &client);
    drawFace(dc, client);
    const Extent room{static_cast<int>(client.right) - 2 * scaled(kFaceRoom),
                      static_cast<int>(client.bottom) - 2 * scaled(kFaceRoom)};
    const SelectedObject selectedFont(dc, font());
    const ButtonLayout layout = layoutButton(
        {static_cast<int>(client.right), static_cast<int>(client.bottom)}, pictureExtent(room),
        captionExtent(dc), properties_.PicturePosition, scaled(kGap));
    const int shift = logic_.isPressed() ? scaled(1) : 0;
    drawPicture(dc, layout.picture, shift);
    drawCaption(dc, layout.caption, shift);
    drawFocus(dc, client);
}

void TarnelButton::drawFace(HDC dc, const RECT& client) const {
    fill(dc, client, translated(properties_.BackColor));
    RECT rest = client;
    const int line = scaled(kFrame);
    const bool isFlat = properties_.ButtonStyle == 1 && !logic_.isHovering() && !logic_.isPressed();
    if (meansEnter())
        frame(dc, rest, line, ::GetSysColor(COLOR_BTNTEXT), ::GetSysColor(COLOR_BTNTEXT));
    if (logic_.isHovering()) {
        const COLORREF hot = ::GetSysColor(COLOR_HIGHLIGHT);
        frame(dc, rest, line, hot, hot);
    }
    if (properties_.BEVEL == 0 || isFlat)
        return;
    const COLORREF light = translated(kHighlightColour);
    const COLORREF shadow = translated(kShadowColour);
    if (!logic_.isHovering())
        frame(dc, rest, line, shadow, shadow);
    const int least = static_cast<int>(std::min(client.right, client.bottom)) / 4;
    const int depth = std::min(
        least,
        std::max(1, ::MulDiv(std::clamp(properties_.BEVELDEPTH, 0, 800), systemDpi(), 8 * 96)));
    const bool isIn = logic_.isPressed() && properties_.ButtonStyle < 2;
    if (properties_.BEVELDEPTH > 0)
        frame(dc, rest, depth, isIn ? shadow : light, isIn ? light : shadow);
}

const Pixels& TarnelButton::shownPicture() const {
    return logic_.isHovering() && hoverPicture_.width > 0 ? hoverPicture_ : picture_;
}

Extent TarnelButton::pictureExtent(Extent room) const {
    if (shownPicture().width == 0)
        return {};
    return drawnSize(properties_.PictureSize,
                     {properties_.OriginalPicSizeW, properties_.OriginalPicSizeH},
                     {scaled(properties_.PictureWidth), scaled(properties_.PictureHeight)}, room);
}

void TarnelButton::drawPicture(HDC dc, const Area& area, int shift) const {
    if (area.width <= 0 || area.height <= 0)
        return;
    const Pixels shown =
        onFace(shownPicture(), {properties_.OriginalPicSizeW, properties_.OriginalPicSizeH},
               rgbOf(translated(properties_.BackColor)), properties_.TransparentBG,
               !::IsWindowEnabled(handle()));
    if (shown.argb.empty())
        return;
    const BITMAPINFO info = topDownInfo(shown.width, shown.height);
    ::SetStretchBltMode(dc, HALFTONE);
    ::SetBrushOrgEx(dc, 0, 0, nullptr);
    ::StretchDIBits(dc, area.left + shift, area.top + shift, area.width, area.height, 0, 0,
                    shown.width, shown.height, shown.argb.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

Extent TarnelButton::captionExtent(HDC dc) const {
    if (properties_.Caption.empty())
        return {};
    RECT measured{};
    Text caption = properties_.Caption;
    ::DrawTextExW(dc, wideBuffer(caption), -1, &measured, DT_CALCRECT | DT_SINGLELINE, nullptr);
    return {static_cast<int>(measured.right), static_cast<int>(measured.bottom)};
}

void TarnelButton::drawCaption(HDC dc, const Area& area, int shift) const {
    if (properties_.Caption.empty())
        return;
    const bool isEnabled = ::IsWindowEnabled(handle()) != FALSE;
    ::SetTextColor(dc,
                   isEnabled ? translated(properties_.ForeColor) : ::GetSysColor(COLOR_GRAYTEXT));
    ::SetBkMode(dc, TRANSPARENT);
    RECT place{area.left + shift, area.top + shift, area.left + area.width + shift,
               area.top + area.height + shift};
    Text caption = properties_.Caption;
    ::DrawTextExW(dc, wideBuffer(caption), -1, &place, DT_CENTER | DT_VCENTER | DT_SINGLELINE,
                  nullptr);
}

// Dots in the caption's colour, which stands out on every face.
void TarnelButton::drawFocus(HDC dc, const RECT& client) const {
    if (::GetFocus() != handle())
        return;
    constexpr WORD dots[] = {0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA};
    const UniqueBitmap pattern(::CreateBitmap(8, 8, 1, 1, dots));
    const UniqueBrush brush(::CreatePatternBrush(pattern.get()));
    ::SetTextColor(dc, translated(properties_.BackColor));
    ::SetBkColor(dc, translated(properties_.ForeColor));
    const int inset = scaled(kFocusInset);
    const int line = scaled(1);
    RECT area{inset, inset, client.right - inset, client.bottom - inset};
    for (int i = 0; i < line && area.left < area.right && area.top < area.bottom; ++i) {
        ::FrameRect(dc, &area, brush.get());
        ::InflateRect(&area, -1, -1);
    }
}

Extent TarnelButton::idealSize() const {
    const WindowDc dc(handle());
    const SelectedObject selected(dc.get(), font());
    const Extent caption = captionExtent(dc.get());
    const Extent picture = pictureExtent({scaled(16), scaled(16)});
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(dc.get(), &metrics);
    const int gap = caption.width > 0 && picture.width > 0 ? scaled(kGap) : 0;
    const bool isSideways =
        properties_.PicturePosition == kPictureLeft || properties_.PicturePosition == kPictureRight;
    const int line = std::max(caption.height, fullHeight(metrics));
    const Extent content =
        isSideways ? Extent{picture.width + gap + caption.width, std::max(picture.height, line)}
                   : Extent{std::max(picture.width, caption.width), picture.height + gap + line};
    const int sides = content.width > 0 ? 2 * scaled(kSideRoom) : 0;
    return {content.width + sides, content.height + 2 * scaled(kFaceRoom)};
}

}  // namespace melvorin
