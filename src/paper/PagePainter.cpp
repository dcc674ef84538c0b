#include "paper/PagePainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "chords/CellWidth.h"
#include "platform/Bitmaps.h"

namespace melvorin {
namespace {

// Of an underline, in em, as in PDF.
constexpr double kLineBelow = 0.12;
constexpr double kLineWidth = 0.06;
// Outlines are asked for in this size, and are exact enough for any other.
constexpr int kOutlineHeight = 1000;
constexpr double kOneToOne = 96.0 / 72;
constexpr int kReduced = 4;
constexpr int kBand = 64;  // lines of a picture that are drawn at a time

int rounded(double number) {
    return static_cast<int>(std::lround(number));
}

COLORREF colourOf(const Rgb& colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

class TextState {
  public:
    TextState(HDC dc, COLORREF colour)
        : dc_(dc),
          colour_(::SetTextColor(dc, colour)),
          mode_(::SetBkMode(dc, TRANSPARENT)),
          align_(::SetTextAlign(dc, TA_BASELINE | TA_LEFT)) {}
    TextState(const TextState&) = delete;
    TextState& operator=(const TextState&) = delete;
    ~TextState() {
        ::SetTextColor(dc_, colour_);
        ::SetBkMode(dc_, mode_);
        ::SetTextAlign(dc_, align_);
    }

  private:
    HDC dc_;
    COLORREF colour_;
    int mode_;
    UINT align_;
};

double valueOf(const FIXED& number) {
    constexpr double whole = 65536;
    return number.value + number.fract / whole;
}

// The outline of one character, to be filled where it stands.
class Outline {
  public:
    Outline(HDC dc, const PaperPlace& place, const PlacedRun& run, double x)
        : dc_(dc), place_(place), run_(run), x_(x) {}

    void trace(const std::vector<char>& shape) {
        std::size_t at = 0;
        while (at + sizeof(TTPOLYGONHEADER) <= shape.size()) {
            TTPOLYGONHEADER header{};
            std::memcpy(&header, shape.data() + at, sizeof header);
            const POINT start = pointOf(header.pfxStart);
            ::MoveToEx(dc_, static_cast<int>(start.x), static_cast<int>(start.y), nullptr);
            traceCurves(shape, at + sizeof header, at + header.cb);
            ::CloseFigure(dc_);
            at += header.cb;
        }
    }

  private:
    POINT pointOf(const POINTFX& point) const {
        const double em = run_.size / kOutlineHeight;
        return {rounded(place_.left + (x_ + valueOf(point.x) * em) * place_.scaleX),
                rounded(place_.top + (run_.y - valueOf(point.y) * em) * place_.scaleY)};
    }

    void traceCurves(const std::vector<char>& shape, std::size_t at, std::size_t end) {
        constexpr std::size_t head = 2 * sizeof(WORD);
        while (at + head <= std::min(end, shape.size())) {
            WORD kind = 0;
            WORD count = 0;
            std::memcpy(&kind, shape.data() + at, sizeof kind);
            std::memcpy(&count, shape.data() + at + sizeof kind, sizeof count);
            std::vector<POINT> points(count);
            for (std::size_t i = 0; i < count; ++i) {
                POINTFX point{};
                std::memcpy(&point, shape.data() + at + head + i * sizeof point, sizeof point);
                points[i] = pointOf(point);
            }
            if (kind == TT_PRIM_LINE)
                ::PolylineTo(dc_, points.data(), count);
            else
                ::PolyBezierTo(dc_, points.data(), count);
            at += head + count * sizeof(POINTFX);
        }
    }

    HDC dc_;
    const PaperPlace& place_;
    const PlacedRun& run_;
    double x_;
};

// A picture in memory whose pixels can be read, its first line at the top.
class Canvas {
  public:
    Canvas(int width, int height) : dc_(::CreateCompatibleDC(nullptr)) {
        const BITMAPINFO info = topDownInfo(width, height);
        void* pixels = nullptr;
        bitmap_.reset(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
        pixels_ = static_cast<std::uint32_t*>(pixels);
        size_ = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        if (bitmap_)
            former_ = ::SelectObject(dc_.get(), bitmap_.get());
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() { leave(); }

    explicit operator bool() const { return static_cast<bool>(bitmap_); }
    HDC dc() const { return dc_.get(); }
    // To be read after GdiFlush.
    std::uint32_t* pixels() const { return pixels_; }
    void clear() const { std::fill_n(pixels_, size_, 0xFFFFFFU); }
    UniqueBitmap take() {
        leave();
        return std::move(bitmap_);
    }

  private:
    void leave() {
        if (former_ != nullptr)
            ::SelectObject(dc_.get(), std::exchange(former_, nullptr));
    }

    UniqueMemoryDc dc_;
    UniqueBitmap bitmap_;
    HGDIOBJ former_ = nullptr;
    std::uint32_t* pixels_ = nullptr;
    std::size_t size_ = 0;
};

// Each pixel is the mean of the 16 that it stands for.
void reduce(const std::uint32_t* from, std::uint32_t* to, int width, int lines) {
    const std::size_t row = static_cast<std::size_t>(width) * kReduced;
    for (int y = 0; y < lines; ++y) {
        for (int x = 0; x < width; ++x) {
            // Two colours beside each other in one number; no sum of 16 runs over.
            std::uint64_t outer = 0;
            std::uint64_t middle = 0;
            const std::uint32_t* block = from + static_cast<std::size_t>(y) * kReduced * row +
                                         static_cast<std::size_t>(x) * kReduced;
            for (int i = 0; i < kReduced; ++i, block += row) {
                for (int j = 0; j < kReduced; ++j) {
                    outer += block[j] & 0xFF00FFU;
                    middle += block[j] & 0x00FF00U;
                }
            }
            *to++ =
                static_cast<std::uint32_t>((outer >> 4U & 0xFF00FFU) | (middle >> 4U & 0x00FF00U));
        }
    }
}

}  // namespace

HFONT PagePainter::fontFor(FontNumber number, int height) {
    UniqueFont& font = made_[{number, height}];
    if (!font) {
        LOGFONTW wanted = fonts_.logFont(number);
        wanted.lfHeight = -height;
        wanted.lfQuality = static_cast<BYTE>(quality_ == Quality::Sharp ? NONANTIALIASED_QUALITY
                                                                        : ANTIALIASED_QUALITY);
        font.reset(::CreateFontIndirectW(&wanted));
    }
    return font.get();
}

void PagePainter::paint(HDC dc, const PaperPage& page, const PaperPlace& place, bool outlines) {
    RECT clip{};
    const bool isClipped = ::GetClipBox(dc, &clip) != ERROR;
    for (const PlacedRun& run : page.runs) {
        const double y = place.top + run.y * place.scaleY;
        const double high = run.size * place.scaleY;
        if (isClipped && (y + high < clip.top || y - 2 * high > clip.bottom))
            continue;
        if (!outlines || !run.isDiagram || !paintOutline(dc, run, place))
            paintText(dc, run, place);
        if (run.underline)
            underline(dc, run, place);
    }
}

void PagePainter::paintText(HDC dc, const PlacedRun& run, const PaperPlace& place) {
    const int height = std::max(1, rounded(run.size * place.scaleY));
    const SelectedObject selected(dc, fontFor(run.font, height));
    const TextState state(dc, colourOf(run.colour));
    // From pixel to pixel, so that no rounding adds up.
    std::vector<INT> advances(run.text.size(), 0);
    const int left = rounded(place.left + run.x * place.scaleX);
    double x = run.x;
    int pixel = left;
    CellReader reader(run.text);
    CellCharacter character;
    while (reader.next(character)) {
        x += fonts_.font(run.font).advance(character.code).value_or(0) * run.size;
        const int next = rounded(place.left + x * place.scaleX);
        advances[character.index] = next - pixel;
        pixel = next;
    }
    ::ExtTextOutW(dc, left, rounded(place.top + run.y * place.scaleY), 0, nullptr, wide(run.text),
                  static_cast<UINT>(run.text.size()), advances.data());
}

bool PagePainter::paintOutline(HDC dc, const PlacedRun& run, const PaperPlace& place) {
    const UniqueMemoryDc measure(::CreateCompatibleDC(nullptr));
    const SelectedObject selected(measure.get(), fontFor(run.font, kOutlineHeight));
    const MAT2 same{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
    const UniqueBrush brush(::CreateSolidBrush(colourOf(run.colour)));
    const SelectedObject filled(dc, brush.get());
    double x = run.x;
    for (const char16_t c : run.text) {
        GLYPHMETRICS metrics{};
        const auto ask = [&](DWORD size, void* into) {
            return ::GetGlyphOutlineW(measure.get(), c, GGO_BEZIER | GGO_UNHINTED, &metrics, size,
                                      into, &same);
        };
        const DWORD size = ask(0, nullptr);
        if (size == GDI_ERROR)
            return false;
        std::vector<char> shape(size);
        if (size > 0 && ask(size, shape.data()) == GDI_ERROR)
            return false;
        ::BeginPath(dc);
        Outline(dc, place, run, x).trace(shape);
        ::EndPath(dc);
        const int mode = ::SetPolyFillMode(dc, WINDING);
        ::FillPath(dc);
        ::SetPolyFillMode(dc, mode);
        x += fonts_.font(run.font).advance(c).value_or(0) * run.size;
    }
    return true;
}

void PagePainter::underline(HDC dc, const PlacedRun& run, const PaperPlace& place) {
    const double y = run.y + run.size * kLineBelow;
    const double half = run.size * kLineWidth / 2;
    RECT line{};
    line.left = rounded(place.left + run.x * place.scaleX);
    line.right = rounded(place.left + (run.x + run.width) * place.scaleX);
    line.top = rounded(place.top + (y - half) * place.scaleY);
    line.bottom = std::max<LONG>(line.top + 1, rounded(place.top + (y + half) * place.scaleY));
    const UniqueBrush brush(::CreateSolidBrush(colourOf(run.colour)));
    ::FillRect(dc, &line, brush.get());
}

UniqueBitmap pictureOf(const PaperPage& page, const PaperSize& paper, ScreenSize size,
                       const SystemFonts& fonts) {
    Canvas picture(size.width, size.height);
    if (!picture)
        return {};
    picture.clear();
    PaperPlace place{size.width / paper.width, size.height / paper.height};
    if (place.scaleY >= kOneToOne) {
        PagePainter(fonts, PagePainter::Quality::Screen).paint(picture.dc(), page, place, false);
        ::GdiFlush();
        return picture.take();
    }
    Canvas band(size.width * kReduced, kBand * kReduced);
    if (!band)
        return {};
    PagePainter painter(fonts, PagePainter::Quality::Sharp);
    place.scaleX *= kReduced;
    place.scaleY *= kReduced;
    for (int top = 0; top < size.height; top += kBand) {
        band.clear();
        place.top = -static_cast<double>(top) * kReduced;
        painter.paint(band.dc(), page, place, false);
        ::GdiFlush();
        reduce(
            band.pixels(),
            picture.pixels() + static_cast<std::size_t>(top) * static_cast<std::size_t>(size.width),
            size.width, std::min(kBand, size.height - top));
    }
    return picture.take();
}

}  // namespace melvorin
