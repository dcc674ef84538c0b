// The words of Rich Text source, one at a time. Shared by the check of a document and by the map
// between its text and its source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace melvorin {

struct RtfToken {
    enum class Kind {
        Open,    // {
        Close,   // }
        Word,    // \name, \nameN, with the one blank that may end it
        Symbol,  // backslash and one other character
        Hex,     // \'hh
        Byte,    // one byte of text
        Break,   // CR or LF of the source, which is no text
        End
    };

    Kind kind = Kind::End;
    std::size_t begin = 0;  // byte offsets in the source
    std::size_t end = 0;
    std::string_view name;    // of a Word
    bool hasNumber = false;   // of a Word
    bool overflow = false;    // the number does not fit and was cut to the nearest that does
    std::int32_t number = 0;  // of a Word
    int byte = 0;             // of a Symbol, Hex (-1: not two hexadecimal digits), or Byte
    std::size_t data = 0;     // of \binN: where its raw bytes begin; they reach to `end`
    bool cut = false;         // the source ends inside this token

    // What may be a stand-in for a character of a \u.
    bool isCharacter() const {
        return kind == Kind::Byte || kind == Kind::Hex || kind == Kind::Symbol;
    }
    // A byte of text, whatever it is written as.
    bool isByte() const {
        return kind == Kind::Byte || (kind == Kind::Hex && byte >= 0) || isSymbol('{') ||
               isSymbol('}') || isSymbol('\\');
    }
    bool isWord(std::string_view wanted) const { return kind == Kind::Word && name == wanted; }
    bool isSymbol(char wanted) const { return kind == Kind::Symbol && byte == wanted; }
};

// Never reads behind the source, whatever it holds. The source must outlive lexer and tokens.
class RtfLexer {
  public:
    explicit RtfLexer(std::string_view source, std::size_t begin = 0)
        : source_(source), at_(begin) {}

    // The next token; from the end of the source on always End.
    RtfToken next();
    // Where the next token begins.
    std::size_t offset() const { return at_; }

  private:
    RtfToken escape();
    void word(RtfToken& token);
    void number(RtfToken& token);
    void rawData(RtfToken& token);
    bool isDigitAt(std::size_t offset) const;

    std::string_view source_;
    std::size_t at_;
};

// Takes the stand-ins behind a \u, at most `count`, from the lexer, which has just given the \u.
// Line ends and raw data among them are no stand-ins. The offset behind them.
std::size_t takeStandIns(RtfLexer& lexer, std::int32_t count);

}  // namespace melvorin
