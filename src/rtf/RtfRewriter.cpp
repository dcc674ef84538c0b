// The rewriting half of RtfMap.
#include <algorithm>
#include <stdexcept>
#include <string>

#include "base/Hex.h"
#include "rtf/RtfCharacters.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

bool needsColour(const LineRewrite& line) {
    return line.keepColour.size() != line.text.size() ||
           std::find(line.keepColour.begin(), line.keepColour.end(), false) !=
               line.keepColour.end();
}

}  // namespace

// Writes the source anew, part by part.
class RtfRewriter {
  public:
    explicit RtfRewriter(const RtfMap& map) : map_(map), source_(map.source_) {}

    std::string rewrite(std::span<const LineRewrite> lines, Rgb colour);

  private:
    using Char = RtfMap::Char;
    using Piece = RtfMap::Piece;

    void chooseColour(Rgb colour);
    void copyUntil(std::size_t offset);
    void check(const LineRewrite& line, std::size_t minStart) const;
    void part(const LineRewrite& line);
    void controlsUntil(std::size_t offset);
    void controls(std::size_t begin, std::size_t end);
    void setColour(std::uint16_t colour);
    void whole(const Char& old);
    void character(char16_t c, const Char& format);
    void escaped(char16_t c, const Char& format);

    const RtfMap& map_;
    std::string_view source_;
    std::string out_;
    std::size_t done_ = 0;  // source bytes dealt with
    std::uint16_t newColour_ = 0;
    std::string addition_;        // to the colour table
    std::size_t additionAt_ = 0;  // where it goes; no place when empty
    std::size_t nextPiece_ = 0;
    std::uint16_t colourNow_ = 0;  // in force in what is written
    bool isOpen_ = false;          // written text ends in a control word without blank
};

std::string RtfRewriter::rewrite(std::span<const LineRewrite> lines, Rgb colour) {
    if (std::any_of(lines.begin(), lines.end(), needsColour))
        chooseColour(colour);
    std::size_t added = addition_.size();
    for (const LineRewrite& line : lines)
        added += line.text.size() + 16;
    out_.reserve(source_.size() + added);
    out_.append(source_.substr(0, additionAt_)).append(addition_);
    done_ = additionAt_;
    std::size_t minStart = 0;
    for (const LineRewrite& line : lines) {
        check(line, minStart);
        part(line);
        minStart = line.start + line.length + 1;
    }
    copyUntil(source_.size());
    return std::move(out_);
}

void RtfRewriter::chooseColour(Rgb colour) {
    const auto& colours = map_.colours_;
    // The first entry stands for the automatic colour, whatever it says.
    const auto first = colours.begin() + (colours.empty() ? 0 : 1);
    const auto found = std::find(first, colours.end(), std::optional(colour));
    newColour_ = static_cast<std::uint16_t>(found - colours.begin());
    additionAt_ = map_.coloursClose_.value_or(map_.fontsEnd_);
    if (found != colours.end())
        return;
    if (colours.empty()) {
        addition_ = ";";
        newColour_ = 1;
    }
    addition_ += "\\red" + std::to_string(colour.red) + "\\green" + std::to_string(colour.green) +
                 "\\blue" + std::to_string(colour.blue) + ";";
    if (!map_.coloursClose_)
        addition_ = "{\\colortbl" + addition_ + "}";
}

void RtfRewriter::copyUntil(std::size_t offset) {
    if (offset <= done_)
        return;
    out_.append(source_.substr(done_, offset - done_));
    done_ = offset;
}

void RtfRewriter::check(const LineRewrite& line, std::size_t minStart) const {
    const TextView text = map_.text_;
    const auto fits = [&] {
        if (line.start < minStart || line.start > text.size() ||
            line.length > text.size() - line.start)
            return false;
        if (line.text.find(u'\n') != Text::npos)
            return false;
        return line.source.size() == line.text.size() &&
               (line.keepColour.empty() || line.keepColour.size() == line.text.size()) &&
               std::is_sorted(line.source.begin(), line.source.end()) &&
               (line.source.empty() || line.source.back() <= line.length);
    };
    if (!fits())
        throw std::invalid_argument("RtfMap::rewrite: a part does not fit the text");
}

void RtfRewriter::part(const LineRewrite& line) {
    const Char* const old = map_.chars_.data() + line.start;
    const Char* const before = line.start == 0 ? nullptr : old - 1;
    copyUntil(before == nullptr ? map_.bodyStart_ : before->end);
    colourNow_ = before == nullptr ? std::uint16_t{0} : before->colour;
    isOpen_ = before != nullptr && before->endsOpen;
    while (nextPiece_ < map_.pieces_.size() && map_.pieces_[nextPiece_].begin < done_)
        ++nextPiece_;

    std::size_t column = 0;  // the first old character whose controls are not yet written
    const auto controlsFor = [&](std::size_t last) {
        for (; column <= last; ++column) {
            controlsUntil(old[column].begin);
            done_ = column < line.length ? old[column].end : old[column].begin;
        }
    };
    for (std::size_t i = 0; i < line.text.size(); ++i) {
        const std::size_t from = line.source[i];
        controlsFor(from);
        const bool keeps = !line.keepColour.empty() && line.keepColour[i];
        setColour(keeps ? old[from].colour : newColour_);
        const bool isWhole = old[from].isWhole && line.text[i] == map_.text_[line.start + from] &&
                             (i == 0 || line.source[i - 1] != from);
        if (isWhole)
            whole(old[from]);
        else
            character(line.text[i], old[from]);
    }
    controlsFor(line.length);
    setColour(old[line.length].colour);
    if (isOpen_ && done_ < source_.size() && source_[done_] != '\\' && source_[done_] != '}')
        out_ += ' ';
}

// Writes what stands between two old characters, without their colours.
void RtfRewriter::controlsUntil(std::size_t offset) {
    const auto& pieces = map_.pieces_;
    for (; nextPiece_ < pieces.size() && pieces[nextPiece_].begin < offset; ++nextPiece_) {
        const Piece& piece = pieces[nextPiece_];
        controls(done_, piece.begin);
        done_ = piece.end;
        if (piece.kind == Piece::Kind::Colour)
            continue;
        // What a group ends with counts again behind it: the original's colour, or a group that
        // ends in a later line would carry the new one there.
        if (piece.kind == Piece::Kind::Open)
            setColour(piece.colour);
        controls(piece.begin, piece.end);
        colourNow_ = piece.colour;
    }
    controls(done_, offset);
}

void RtfRewriter::controls(std::size_t begin, std::size_t end) {
    if (begin >= end)
        return;
    out_.append(source_.substr(begin, end - begin));
    isOpen_ = isAlphanumeric(out_.back());
}

void RtfRewriter::setColour(std::uint16_t colour) {
    if (colour == colourNow_)
        return;
    out_ += "\\cf";
    out_ += std::to_string(colour);
    out_ += ' ';
    isOpen_ = false;
    colourNow_ = colour;
}

// Takes the source of a character as it is.
void RtfRewriter::whole(const Char& old) {
    out_.append(source_.substr(old.begin, old.end - old.begin));
    isOpen_ = old.endsOpen;
}

void RtfRewriter::character(char16_t c, const Char& format) {
    const bool isSymbol = format.font != RtfMap::kNoFont &&
                          map_.fonts_[format.font].charset == RtfMap::Charset::Symbol;
    if (c >= 0x20 && c < 0x7F && c != u'\\' && c != u'{' && c != u'}' && !isSymbol) {
        if (isOpen_)
            out_ += ' ';
        out_ += static_cast<char>(c);
    } else {
        escaped(c, format);
    }
    isOpen_ = false;
}

void RtfRewriter::escaped(char16_t c, const Char& format) {
    const bool isLatin = format.font != RtfMap::kNoFont &&
                         map_.fonts_[format.font].charset == RtfMap::Charset::Latin;
    const int byte = isLatin ? latinByte(c) : -1;
    if (needsBackslash(c)) {
        out_ += '\\';
        out_ += static_cast<char>(c);
    } else if (c == u'\t') {
        out_ += "\\tab ";
    } else if (c == u'\r') {
        out_ += "\\par ";
    } else if (c == u'\v') {
        out_ += "\\line ";
    } else if (byte >= 0x20) {
        out_ += "\\'";
        appendHex(out_, static_cast<std::uint32_t>(byte), 2);
    } else {
        appendUnicode(out_, c, format.skip);
    }
}

std::string RtfMap::rewrite(std::span<const LineRewrite> lines, Rgb colour) const {
    return RtfRewriter(*this).rewrite(lines, colour);
}

}  // namespace melvorin
