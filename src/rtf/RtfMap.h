// The way between the plain text of a Rich Text document and its source bytes.
//
// To rewrite many lines of a document, one rewritten source loaded once is far cheaper than many
// edits of the control, and it keeps all other formatting byte for byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Editor.h"
#include "base/Text.h"
#include "rtf/RtfFontPage.h"

namespace melvorin {

// A part of the text, of one line or of several, and what becomes of it. Positions count UTF-16
// units of RtfMap::text().
struct LineRewrite {
    std::size_t start = 0;   // first character to replace
    std::size_t length = 0;  // how many, line ends and soft line breaks too
    Text text;               // CR is a line end, U+000B a soft line break; without LF
    // For every character of `text` the column, from `start`, of the old character whose
    // formatting it takes. Never decreasing, at most `length`; `length` itself stands for the
    // formatting at the end of the replaced part.
    std::vector<std::uint32_t> source;
    // Characters of `text` that keep the colour of their source. Empty: none does.
    std::vector<bool> keepColour;
};

class RtfMap {
  public:
    // Reads the source of a whole document as a rich-edit control writes it. Nothing where the
    // text does not follow exactly from the source: tables, objects, page and section breaks,
    // bytes that no code page of this machine explains, words that are not known here, and
    // malformed source. Compare text() with the control's own before relying on the map: controls
    // have their own idea of \-, of hidden text and of what a field shows. Call it from one thread.
    static std::optional<RtfMap> parse(std::string_view rtf);
    // The same for source whose text the control shows as `shown`; nothing where the two differ in
    // more than what some controls show as blanks.
    static std::optional<RtfMap> matching(std::string_view rtf, TextView shown);

    // The text as the control has it: U+000D for \par, U+000B for \line, U+FFFC for a picture,
    // and nothing for a last \par, which only ends the last paragraph.
    TextView text() const { return text_; }

    // Some controls show a blank for a soft line break or a picture. Where `shown`, the control's
    // own text, does, text() does too from now on; rewritten, such a blank stays what it is in the
    // source. Without effect where the two differ in length.
    void takeBlanks(TextView shown);

    // Whether the character at `position` is a picture, or a blank of takeBlanks: its source goes
    // over into a rewritten line whole, or not at all. Positions may be the end of the text.
    bool isWholeAt(std::size_t position) const { return chars_[position].isWhole; }

    // Whether the character at `position` is in a symbol font, whose bytes mean U+F020 and up.
    bool isSymbolAt(std::size_t position) const;

    // Face name of the character at `position` (at most text().size()); lives as long as the
    // map.
    TextView fontNameAt(std::size_t position) const;

    // Its colour; nothing for the automatic one.
    std::optional<Rgb> colourAt(std::size_t position) const;

    // Where its source begins, in bytes.
    std::size_t sourceAt(std::size_t position) const { return chars_[position].begin; }

    // The source with the given parts rewritten and everything else byte for byte as it was
    // (but for a colour added to the colour table). New characters get `colour`, unless they keep
    // their own. The parts are in ascending order, with at least one character between two; a
    // part that breaks a rule of LineRewrite throws std::invalid_argument. Linear time.
    std::string rewrite(std::span<const LineRewrite> lines, Rgb colour) const;

  private:
    friend class RtfMapParser;
    friend class RtfRewriter;

    enum class Charset : std::uint8_t {
        Latin,    // Windows-1252
        Default,  // the machine's, whose code page the document says
        Other,    // of the font's own code page
        Symbol
    };

    struct Font {
        std::int32_t number = 0;
        Text face;
        Charset charset = Charset::Default;
        const RtfFontPage* page = nullptr;  // of Other; without one only ASCII is sure
    };

    static constexpr std::uint16_t kNoFont = 0xFFFF;

    // A character of the text and its source, with the formatting in force there.
    struct Char {
        std::uint32_t begin = 0;  // byte offsets
        std::uint32_t end = 0;
        std::uint16_t font = kNoFont;  // index into fonts_
        std::uint16_t colour = 0;      // index into colours_
        std::uint8_t skip = 1;         // characters to skip behind a \u
        bool endsOpen = false;         // its source is a control word without the blank behind
        bool isWhole = false;          // its source is no spelling of a character
    };

    // What matters to colours between two characters.
    struct Piece {
        enum class Kind : std::uint8_t { Colour, Open, Reset };  // Reset: } and \plain
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
        Kind kind = Kind::Colour;
        std::uint16_t colour = 0;  // in force behind it, in the original
    };

    RtfMap() = default;

    std::string source_;
    Text text_;
    // One more than text_ has: the last stands for the end of the text.
    std::vector<Char> chars_;
    std::vector<Piece> pieces_;
    std::vector<Font> fonts_;
    std::vector<std::optional<Rgb>> colours_;
    std::size_t bodyStart_ = 0;                // behind font and colour table
    std::size_t fontsEnd_ = 0;                 // behind the font table
    std::optional<std::size_t> coloursClose_;  // of the colour table's closing brace
};

}  // namespace melvorin
