#include "cli/PdfFonts.h"

#include <algorithm>
#include <array>

#include "base/DiagramFont.h"
#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "cli/CliArguments.h"
#include "paper/FontCollection.h"

namespace melvorin {
namespace {

// Faces by the names of their files: plain, bold, italic, both. The second row of a face is what
// other systems have in its place.
struct FaceFiles {
    TextView face;  // in lower case
    std::array<TextView, 4> names;
};

constexpr std::array<TextView, 4> kLiberationMono{
    u"LiberationMono-Regular.ttf", u"LiberationMono-Bold.ttf", u"LiberationMono-Italic.ttf",
    u"LiberationMono-BoldItalic.ttf"};
constexpr std::array<TextView, 4> kDejaVuMono{u"DejaVuSansMono.ttf", u"DejaVuSansMono-Bold.ttf",
                                              u"DejaVuSansMono-Oblique.ttf",
                                              u"DejaVuSansMono-BoldOblique.ttf"};
constexpr std::array<TextView, 4> kLiberationSans{
    u"LiberationSans-Regular.ttf", u"LiberationSans-Bold.ttf", u"LiberationSans-Italic.ttf",
    u"LiberationSans-BoldItalic.ttf"};
constexpr std::array<TextView, 4> kLiberationSerif{
    u"LiberationSerif-Regular.ttf", u"LiberationSerif-Bold.ttf", u"LiberationSerif-Italic.ttf",
    u"LiberationSerif-BoldItalic.ttf"};
constexpr std::array<TextView, 4> kDejaVuSans{u"DejaVuSans.ttf", u"DejaVuSans-Bold.ttf", u"", u""};

constexpr FaceFiles kFaces[] = {
    {u"courier new", {u"cour.ttf", u"courbd.ttf", u"couri.ttf", u"courbi.ttf"}},
    {u"courier new", kLiberationMono},
    {u"liberation mono", kLiberationMono},
    {u"lucida console", {u"lucon.ttf", u"", u"", u""}},
    {u"lucida console", kDejaVuMono},
    {u"dejavu sans mono", kDejaVuMono},
    {u"consolas", {u"consola.ttf", u"consolab.ttf", u"consolai.ttf", u"consolaz.ttf"}},
    {u"arial", {u"arial.ttf", u"arialbd.ttf", u"ariali.ttf", u"arialbi.ttf"}},
    {u"arial", kLiberationSans},
    {u"liberation sans", kLiberationSans},
    {u"times new roman", {u"times.ttf", u"timesbd.ttf", u"timesi.ttf", u"timesbi.ttf"}},
    {u"times new roman", kLiberationSerif},
    {u"liberation serif", kLiberationSerif},
    {u"verdana", {u"verdana.ttf", u"verdanab.ttf", u"verdanai.ttf", u"verdanaz.ttf"}},
    {u"tahoma", {u"tahoma.ttf", u"tahomabd.ttf", u"", u""}},
    {u"georgia", {u"georgia.ttf", u"georgiab.ttf", u"georgiai.ttf", u"georgiaz.ttf"}},
    {u"calibri", {u"calibri.ttf", u"calibrib.ttf", u"calibrii.ttf", u"calibriz.ttf"}},
    {u"segoe ui", {u"segoeui.ttf", u"segoeuib.ttf", u"segoeuii.ttf", u"segoeuiz.ttf"}},
    {u"dejavu sans", kDejaVuSans},
};

// For characters that the usual fonts lack.
constexpr TextView kWideFiles[] = {u"segoeui.ttf",   u"seguisym.ttf", u"simsunb.ttf",
                                   u"malgun.ttf",    u"msgothic.ttc", u"simsun.ttc",
                                   u"DejaVuSans.ttf"};

}  // namespace

Result<Done> PdfFonts::add(const Text& path) {
    Result<std::string> bytes = files_.read(path);
    if (!bytes)
        return Failure{bytes.cause};
    Result<std::vector<std::string>> fonts = fontsOf(std::move(*bytes.value));
    if (!fonts)
        return Failure{fonts.cause};
    Text trouble;
    bool some = false;
    for (std::string& font : *fonts.value) {
        const Result<FontNumber> added = shelf_.add(std::move(font));
        some = some || added.value;
        trouble = added.cause;
    }
    return some ? done() : Result<Done>::failure(trouble);
}

bool PdfFonts::addFile(const Text& path) {
    return files_.exists(path) && add(path);
}

// The first row that has files; false without one.
bool PdfFonts::addFace(TextView face) {
    const Text lower = unicodeLowerCase(face);
    bool found = false;
    for (const FaceFiles& row : kFaces) {
        if (row.face != lower || found)
            continue;
        for (const Text& folder : ports_.fontFolders()) {
            for (const TextView name : row.names)
                found = (!name.empty() && addFile(pathInFolder(folder, name))) || found;
        }
    }
    return found;
}

bool PdfFonts::addUsual() {
    return !shelf_.isEmpty() || addFace(u"Courier New") || addFace(u"DejaVu Sans Mono");
}

void PdfFonts::addDiagrams(TextView face) {
    if (!tried_.insert(Text(face)).second)
        return;
    Text name(face);
    std::erase(name, u' ');
    addFile(pathInFolder(pathInFolder(ports_.programFolder(), u"Fonts"), name + u".ttf"));
}

void PdfFonts::addFor(const PaperSong& song) {
    for (const PaperLook& look : song.looks) {
        if (look.isDiagram)
            addDiagrams(look.face);
        else if (!look.face.empty() && !shelf_.hasFace(look.face) &&
                 tried_.insert(look.face).second)
            addFace(look.face);
    }
    if (hasWide_)
        return;
    for (const PaperLine& line : song.lines) {
        CellReader reader(line.text);
        CellCharacter character;
        while (!hasWide_ && reader.next(character))
            hasWide_ = character.code > 0x7F && !shelf_.fontWith(character.code, 0);
    }
    for (const TextView name : kWideFiles) {
        for (const Text& folder : ports_.fontFolders()) {
            if (hasWide_)
                addFile(pathInFolder(folder, name));
        }
    }
}

}  // namespace melvorin
