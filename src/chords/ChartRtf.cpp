#include "chords/ChartRtf.h"

#include <algorithm>
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

// The faces and colours of the diagrams, numbered behind those of the chart itself.
class DiagramLooks {
  public:
    DiagramLooks(const std::vector<ImportedLine>& lines, const SongDiagrams& diagrams) {
        if (diagrams.isEmpty())
            return;
        for (const ImportedLine& line : lines) {
            for (const char16_t c : line.text) {
                const SongDiagram* const diagram = diagrams.find(c);
                if (diagram == nullptr || diagram->face.empty())
                    continue;
                if (placeOf(faces_, diagram->face) == faces_.size())
                    faces_.push_back(diagram->face);
                const Rgb colour = diagram->colour.value_or(Rgb{});
                if (placeOf(colours_, colour) == colours_.size())
                    colours_.push_back(colour);
            }
        }
    }

    std::string fonts() const {
        std::string fonts;
        for (std::size_t i = 0; i < faces_.size(); ++i)
            fonts += "{\\f" + std::to_string(kFonts + i) + "\\fnil\\fcharset0 " +
                     toUtf8(faces_[i]) + ";}";
        return fonts;
    }
    std::string colours() const {
        std::string colours;
        for (const Rgb& colour : colours_)
            colours += "\\red" + std::to_string(colour.red) + "\\green" +
                       std::to_string(colour.green) + "\\blue" + std::to_string(colour.blue) + ";";
        return colours;
    }
    void put(const SongDiagram& diagram, int points, std::string& rtf) const {
        rtf += "{\\f" + std::to_string(kFonts + placeOf(faces_, diagram.face)) + "\\fs" +
               std::to_string(diagram.halfPoints.value_or(2 * points)) + "\\cf" +
               std::to_string(kColours + placeOf(colours_, diagram.colour.value_or(Rgb{}))) + " ";
        putCharacter(printable(diagram.letter), rtf);
        rtf += "}";
    }

  private:
    static constexpr std::size_t kFonts = 1;    // of the chart
    static constexpr std::size_t kColours = 3;  // and the automatic one

    template <class Look>
    static std::size_t placeOf(const std::vector<Look>& looks, const Look& look) {
        return static_cast<std::size_t>(std::find(looks.begin(), looks.end(), look) -
                                        looks.begin());
    }

    std::vector<Text> faces_;
    std::vector<Rgb> colours_;
};

// A picture has no letter of its own.
char16_t letterOf(const SongDiagram& diagram) {
    return diagram.face.empty() ? u' ' : printable(diagram.letter);
}

}  // namespace

std::string chartRtf(const std::vector<ImportedLine>& lines, TextView face, int points,
                     const SongDiagrams& diagrams) {
    const DiagramLooks looks(lines, diagrams);
    std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1{\\fonttbl{\\f0\\fmodern\\fcharset0 ";
    rtf += toUtf8(face);
    rtf += ";}" + looks.fonts() + "}{\\colortbl ;\\red0\\green0\\blue0;\\red192\\green0\\blue0;" +
           looks.colours() + "}\n\\pard\\f0\\fs";
    rtf += std::to_string(2 * points);
    rtf += "\\cf1 ";
    bool isChords = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0)
            rtf += "\\par\n";
        if (lines[i].isChords != isChords)
            rtf += lines[i].isChords ? "\\cf2 " : "\\cf1 ";
        isChords = lines[i].isChords;
        for (const char16_t c : lines[i].text) {
            const SongDiagram* const diagram = diagrams.find(c);
            if (diagram != nullptr && !diagram->face.empty())
                looks.put(*diagram, points, rtf);
            else
                putCharacter(diagram != nullptr ? u' ' : printable(c), rtf);
        }
    }
    return rtf + "}";
}

EditorText chartText(const std::vector<ImportedLine>& lines, const SongDiagrams& diagrams) {
    EditorText text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        text.chars.append(i > 0 ? u"\r" : u"");
        for (const char16_t c : lines[i].text) {
            const SongDiagram* const diagram = diagrams.find(c);
            text.chars += diagram != nullptr ? letterOf(*diagram) : printable(c);
        }
    }
    return text;
}

void setDiagram(Editor& editor, std::size_t position, const SongDiagram& diagram) {
    const auto begin = static_cast<std::int32_t>(position);
    editor.select({begin, begin + 1});
    editor.setSelectionFace(diagram.face);
    if (diagram.halfPoints)
        editor.setSelectionSize(*diagram.halfPoints);
    if (diagram.colour)
        editor.setSelectionColour(*diagram.colour);
}

}  // namespace melvorin
