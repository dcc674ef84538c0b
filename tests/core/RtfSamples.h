// Random Rich Text documents whose text and formatting are known, random changes to them, and
// random damage. The same seed gives the same documents everywhere.
#pragma once

#include <array>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "rtf/RtfMap.h"

namespace melvorin::samples {

inline constexpr std::array<TextView, 3> kFaces{u"Courier New", u"Melvorin 07", u"Arial"};
inline constexpr std::array<Rgb, 3> kColours{Rgb{192, 0, 0}, Rgb{0, 0, 255}, Rgb{0, 0, 0}};

struct Format {
    std::size_t face = 0;
    std::size_t colour = 0;  // 0: automatic, else 1 + index into kColours
    bool bold = false;

    friend bool operator==(const Format&, const Format&) = default;
};

struct Cell {
    char16_t c = 0;
    Format format;

    friend bool operator==(const Cell&, const Cell&) = default;
};

struct Line {
    std::vector<Cell> cells;
    Format end;             // at the line's end
    std::size_t begin = 0;  // of its source, in bytes
    std::size_t finish = 0;
};

struct Sample {
    std::string rtf;
    std::vector<Line> lines;

    Text text() const {
        Text all;
        for (const Line& line : lines) {
            if (&line != lines.data())
                all += u'\r';
            for (const Cell& cell : line.cells)
                all += cell.c;
        }
        return all;
    }
};

using Random = std::mt19937;

inline std::size_t below(Random& random, std::size_t limit) {
    return random() % limit;
}

struct Written {
    char16_t c;
    std::string_view source;
};
inline constexpr std::array<Written, 16> kAlphabet{Written{u'A', "A"},
                                                   {u'b', "b"},
                                                   {u'-', "-"},
                                                   {u'7', "7"},
                                                   {u' ', " "},
                                                   {u'{', "\\{"},
                                                   {u'\\', "\\\\"},
                                                   {u'\u00E9', "\\'e9"},
                                                   {u'\u0161', "\\'9A"},
                                                   {u'\u4E2D', "\\u20013?"},
                                                   {u'\t', "\\tab "},
                                                   {u'\u2014', "\\emdash "},
                                                   {u'\u20AC', "\\u8364\\'80"},
                                                   {u'\u00A0', "\\~"},
                                                   {u'x', "x"},
                                                   {u'G', "G"}};

// Writes one document, keeping account of what it says.
class Writer {
  public:
    explicit Writer(Random& random) : random_(random) {}

    Sample write() {
        hasColours_ = below(random_, 4) != 0;
        out() =
            "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}"
            "{\\f1\\fcharset0 Melvorin 07{\\*\\falt X};}{\\f2\\fswiss\\fcharset0 Arial;}}\r\n";
        if (hasColours_)
            out() +=
                "{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green0\\blue255;"
                "\\red0\\green0\\blue0;}\r\n";
        out() += "{\\*\\generator Sample;}\\viewkind4\\uc1 \r\n\\pard\\b0\\f0\\fs20 ";
        const std::size_t count = 1 + below(random_, 12);
        for (std::size_t i = 0; i < count; ++i)
            line(i + 1 == count);
        out().append(outer_.size(), '}').append("}\r\n");
        out() += '\0';
        return std::move(sample_);
    }

  private:
    std::string& out() { return sample_.rtf; }

    void line(bool isLast) {
        Line line;
        line.begin = out().size();
        for (std::size_t i = below(random_, 30); i > 0; --i) {
            if (below(random_, 4) == 0)
                control();
            const Written& written = kAlphabet[below(random_, kAlphabet.size())];
            separate(written.source.front());
            out() += written.source;
            line.cells.push_back({written.c, format_});
        }
        if (below(random_, 3) == 0)
            control();
        line.end = format_;
        line.finish = out().size();
        isOpen_ = false;
        // A \par that ends the document is no line end, an empty last line needs one.
        if (!isLast || line.cells.empty() || below(random_, 2) == 0)
            out() += "\\par\r\n";
        else if (!outer_.empty())
            line.end = outer_.front();
        sample_.lines.push_back(std::move(line));
    }

    void control() {
        switch (below(random_, 7)) {
            case 0:
                format_.colour = hasColours_ ? below(random_, kColours.size() + 1) : 0;
                word("\\cf" + std::to_string(format_.colour));
                break;
            case 1:
                format_.face = below(random_, kFaces.size());
                word("\\f" + std::to_string(format_.face));
                break;
            case 2:
                format_.bold = !format_.bold;
                word(format_.bold ? "\\b" : "\\b0");
                break;
            case 3:
                format_ = {};
                word("\\plain\\fs20\\f0");
                break;
            case 4:
                outer_.push_back(format_);
                out() += '{';
                isOpen_ = false;
                break;
            case 5:
                if (!outer_.empty()) {
                    format_ = outer_.back();
                    outer_.pop_back();
                    out() += '}';
                    isOpen_ = false;
                }
                break;
            default:
                word("\\lang1033");
        }
    }

    void word(const std::string& source) {
        out() += source;
        isOpen_ = below(random_, 2) == 0;
        if (!isOpen_)
            out() += ' ';
    }

    void separate(char next) {
        if (isOpen_ && next != '\\')
            out() += ' ';
        isOpen_ = false;
    }

    Random& random_;
    Sample sample_;
    bool hasColours_ = true;
    bool isOpen_ = false;
    Format format_;
    std::vector<Format> outer_;
};

inline Sample randomSample(Random& random) {
    return Writer(random).write();
}

// Rewrites some lines, and says what the document then holds. `colour` is 1 + an index into
// kColours.
inline std::vector<LineRewrite> randomRewrites(Random& random, Sample& sample, std::size_t colour) {
    std::vector<LineRewrite> rewrites;
    std::size_t start = 0;
    for (Line& line : sample.lines) {
        const std::size_t length = line.cells.size();
        if (below(random, 2) == 0) {
            LineRewrite rewrite{start, length, {}, {}, {}};
            std::vector<Cell> cells;
            const bool keeps = below(random, 2) == 0;
            for (std::size_t column = 0; column <= length; column += below(random, 3)) {
                if (cells.size() > 40 || (column == length && below(random, 3) != 0))
                    break;
                const char16_t c = kAlphabet[below(random, kAlphabet.size())].c;
                Format format = column < length ? line.cells[column].format : line.end;
                rewrite.text += c;
                rewrite.source.push_back(static_cast<std::uint32_t>(column));
                if (keeps)
                    rewrite.keepColour.push_back(below(random, 3) == 0);
                if (!keeps || !rewrite.keepColour.back())
                    format.colour = colour;
                cells.push_back({c, format});
            }
            line.cells = std::move(cells);
            rewrites.push_back(std::move(rewrite));
        }
        start += length + 1;
    }
    return rewrites;
}

// The document with one to four pieces of damage.
inline std::string damaged(Random& random, std::string rtf) {
    static constexpr auto words = std::to_array<std::string_view>(
        {"{",         "}",          "\\",        "\\par ",   "\\f1 ",      "\\cf2",
         "\\plain ",  "\\'e9",      "\\u233?",   "\\u-3 ",   "\\uc0 ",     "\\uc2 ",
         "\\bin3 }{", "\\bin9999 ", "\\intbl ",  "\\row ",   "\\cell ",    "\\trowd\\cellx9 ",
         "{\\*\\x ",  "{\\fonttbl", "\\v ",      "\\line ",  "{\\pict 0",  "{\\colortbl;",
         ";",         " ",          "\\ansicpg", "\\deff2 ", "{\\info x}", "\\'zz",
         "-",         "9",          "\\-",       "{\\b x}",  "\\header ",  "\\fcharset2 "});
    for (std::size_t i = 1 + below(random, 4); i > 0; --i) {
        const std::size_t at = 6 + below(random, rtf.size() - 6);
        switch (below(random, 4)) {
            case 0:
                rtf[at] = static_cast<char>(static_cast<unsigned char>(below(random, 256)));
                break;
            case 1:
                rtf.erase(at, 1 + below(random, std::min<std::size_t>(12, rtf.size() / 2)));
                break;
            case 2:
                rtf.insert(at, rtf.substr(below(random, rtf.size()), below(random, 60)));
                break;
            default:
                rtf.insert(at, words[below(random, words.size())]);
        }
    }
    return rtf;
}

}  // namespace melvorin::samples
