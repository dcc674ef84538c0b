#include "chords/ChartRtf.h"

#include <cstddef>

#include "base/Hex.h"
#include "rtf/RtfCharacters.h"

namespace melvorin {
namespace {

void putCharacter(char16_t c, std::string& rtf) {
    if (needsBackslash(c)) {
        rtf += '\\';
        rtf += static_cast<char>(c);
    } else if (c >= u' ' && c < 0x7F) {
        rtf += static_cast<char>(c);
    } else if (const int byte = latinByte(c); c > 0x7F && byte >= 0) {
        rtf += "\\'";
        appendHex(rtf, static_cast<std::uint32_t>(byte), 2);
    } else {
        appendUnicode(rtf, c, 1);
    }
}

// A control character is nothing to see; a blank keeps what is behind it in its column.
char16_t printable(char16_t c) {
    return c < u' ' || (c >= 0x7F && c < 0xA0) ? u' ' : c;
}

}  // namespace

std::string chartRtf(const std::vector<ImportedLine>& lines, TextView face, int points) {
    std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl{\\f0\\fmodern\\fcharset0 ";
    rtf += toUtf8(face);
    rtf += ";}}{\\colortbl ;\\red0\\green0\\blue0;\\red192\\green0\\blue0;}\n\\pard\\f0\\fs";
    rtf += std::to_string(2 * points);
    rtf += "\\cf1 ";
    bool isChords = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0)
            rtf += "\\par\n";
        if (lines[i].isChords != isChords)
            rtf += lines[i].isChords ? "\\cf2 " : "\\cf1 ";
        isChords = lines[i].isChords;
        for (const char16_t c : lines[i].text)
            putCharacter(printable(c), rtf);
    }
    return rtf + "}";
}

EditorText chartText(const std::vector<ImportedLine>& lines) {
    EditorText text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        text.chars.append(i > 0 ? u"\r" : u"");
        for (const char16_t c : lines[i].text)
            text.chars += printable(c);
    }
    return text;
}

}  // namespace melvorin
