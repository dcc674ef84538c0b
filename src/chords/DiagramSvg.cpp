#include "chords/DiagramSvg.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "chords/CapoChoice.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

constexpr std::size_t kStrings = 6;
constexpr int kMuted = -1;
// Of the picture, in its own units.
constexpr int kLeft = 16;
constexpr int kTop = 30;
constexpr int kString = 10;  // from one to the next
constexpr int kFret = 14;
constexpr int kLeastFrets = 4;
constexpr int kWidth = kLeft + 5 * kString + 10;

using Frets = std::array<int, kStrings>;

std::optional<int> fretOf(TextView text) {
    if (text == u"x" || text == u"X")
        return kMuted;
    if (text.empty() || text.size() > 2)
        return std::nullopt;
    int fret = 0;
    for (const char16_t c : text) {
        if (!isDigit(c))
            return std::nullopt;
        fret = fret * 10 + (c - u'0');
    }
    return fret;
}

std::optional<Frets> readFrets(TextView text) {
    const std::vector<Text> strings = fretsIn(text);
    if (strings.size() != kStrings)
        return std::nullopt;
    Frets frets{};
    for (std::size_t i = 0; i < kStrings; ++i) {
        const auto read = fretOf(strings[i]);
        if (!read)
            return std::nullopt;
        frets[i] = *read;
    }
    return frets;
}

class Drawing {
  public:
    Drawing(const DiagramShape& shape, const Frets& frets) : shape_(shape), frets_(frets) {}
    Text draw();

  private:
    int x(std::size_t string) const { return kLeft + static_cast<int>(string) * kString; }
    int y(int fret) const { return kTop + fret * kFret; }
    void put(TextView name, TextView value);
    void line(int x1, int y1, int x2, int y2, int width);
    void word(int x, int y, TextView text, int size, TextView fill = u"#000");
    void drawNeck();
    void drawBars();
    void drawDots();

    static Text number(int value) { return decimal(value); }

    const DiagramShape& shape_;
    const Frets& frets_;
    int rows_ = kLeastFrets;
    Text svg_;
};

void Drawing::put(TextView name, TextView value) {
    svg_.append(u" ").append(name).append(u"=\"").append(value).append(u"\"");
}

void Drawing::line(int x1, int y1, int x2, int y2, int width) {
    const auto point = [](int x, int y) { return number(x).append(u" ").append(number(y)); };
    svg_ += u"<path";
    put(u"d", Text(u"M").append(point(x1, y1)).append(u"L").append(point(x2, y2)));
    put(u"stroke", u"#000");
    put(u"stroke-linecap", u"round");
    put(u"stroke-width", number(width));
    svg_ += u"/>";
}

void Drawing::word(int x, int y, TextView text, int size, TextView fill) {
    svg_ += u"<text";
    put(u"x", number(x));
    put(u"y", number(y));
    put(u"font-size", number(size));
    put(u"fill", fill);
    put(u"text-anchor", u"middle");
    put(u"font-family", u"sans-serif");
    svg_.append(u">").append(text).append(u"</text>");
}

void Drawing::drawNeck() {
    for (std::size_t string = 0; string < kStrings; ++string)
        line(x(string), y(0), x(string), y(rows_), 1);
    for (int fret = 0; fret <= rows_; ++fret)
        line(x(0), y(fret), x(kStrings - 1), y(fret), fret == 0 && shape_.firstFret == 1 ? 3 : 1);
    if (shape_.firstFret > 1)
        word(kLeft - 10, y(1) - 4, number(shape_.firstFret), 9);
}

// One finger over several strings holds those between too.
void Drawing::drawBars() {
    for (char16_t finger = u'1'; finger <= u'4'; ++finger) {
        const std::size_t first = shape_.fingers.find(finger);
        const std::size_t last = shape_.fingers.rfind(finger);
        if (first == Text::npos || first == last || last >= kStrings ||
            frets_[first] != frets_[last] || frets_[first] < shape_.firstFret)
            continue;
        const int height = y(frets_[first] - shape_.firstFret) + kFret / 2;
        line(x(first), height, x(last), height, 8);
    }
}

void Drawing::drawDots() {
    for (std::size_t string = 0; string < kStrings; ++string) {
        const int fret = frets_[string];
        if (fret <= 0) {
            word(x(string), kTop - 4, fret == 0 ? u"\u25CB" : u"\u00D7", 8);
            continue;
        }
        const int height = y(fret - shape_.firstFret) + kFret / 2;
        line(x(string), height, x(string), height, 8);
        if (string < shape_.fingers.size() && isDigit(shape_.fingers[string]))
            word(x(string), height + 2, TextView(shape_.fingers).substr(string, 1), 6, u"#fff");
    }
}

Text Drawing::draw() {
    for (const int fret : frets_)
        rows_ = std::max(rows_, fret - shape_.firstFret + 1);
    const Text height = number(y(rows_) + 6);
    svg_.append(u"<svg viewBox=\"0 0 ")
        .append(number(kWidth))
        .append(u" ")
        .append(height)
        .append(u"\" role=\"img\"><title>")
        .append(shape_.symbol)
        .append(u"</title>");
    word(kLeft + 5 * kString / 2, 14, shape_.symbol, 13);
    drawNeck();
    drawBars();
    drawDots();
    return svg_.append(u"</svg>");
}

}  // namespace

std::optional<Text> diagramSvg(const DiagramShape& shape) {
    const auto frets = readFrets(shape.frets);
    if (!frets || shape.firstFret < 1 || shape.fingers.size() > kStrings)
        return std::nullopt;
    for (const int fret : *frets) {
        if (fret > 0 && fret < shape.firstFret)
            return std::nullopt;
    }
    return Drawing(shape, *frets).draw();
}

}  // namespace melvorin
