#include "cli/PdfCommand.h"

#include <algorithm>
#include <utility>

#include "base/DiagramFont.h"
#include "base/LetterCase.h"
#include "cli/CliArguments.h"
#include "cli/PdfArguments.h"
#include "cli/PdfFonts.h"
#include "dictionary/BookDiagrams.h"
#include "paper/PaperDocument.h"
#include "paper/PaperNotes.h"
#include "paper/PdfWriter.h"
#include "rtf/FileKind.h"
#include "rtf/RtfCheck.h"

namespace melvorin {
namespace {

// Of plain text, in points.
constexpr double kUsualPoints = 11;

class PdfRun {
  public:
    PdfRun(PdfRequest request, Files& files, CliPorts& ports, const AnsiCodec& ansi)
        : request_(std::move(request)),
          files_(files),
          ports_(ports),
          ansi_(ansi),
          fonts_(files, ports) {}

    int run();

  private:
    struct Song {
        Text path;
        PaperSong song;
    };

    bool addFonts();
    bool readSongs();
    Result<PaperSong> readSong(const Text& path);
    void openDiagrams();
    std::optional<DiagramOfChord> diagramOf(TextView chord);
    PaperDocument layOut();
    LaidSong layOutOne(const Song& song);
    void report(const Song& song, const LaidSong& laid);
    bool fail(TextView what, TextView name, TextView cause);

    PdfRequest request_;
    Files& files_;
    CliPorts& ports_;
    const AnsiCodec& ansi_;
    PdfFonts fonts_;
    std::vector<Song> songs_;
    BookDiagrams book_;
    bool hasBook_ = false;
};

bool PdfRun::fail(TextView what, TextView name, TextView cause) {
    Text message = u"melvorin-cli: ";
    message.append(what).append(name).append(u": ").append(cause).append(u"\n");
    ports_.writeError(message);
    return false;
}

bool PdfRun::addFonts() {
    for (const Text& path : request_.fonts) {
        if (const Result<Done> added = fonts_.add(path); !added)
            return fail(u"cannot use the font ", path, added.cause);
    }
    return fonts_.addUsual() || fail(u"cannot write ", request_.output,
                                     u"No font was found on this machine; name one with --font.");
}

Result<PaperSong> PdfRun::readSong(const Text& path) {
    const Result<std::string> bytes = files_.read(path);
    if (!bytes)
        return Failure{bytes.cause};
    Text name = pathInFolder(u"", path);
    if (const std::size_t dot = name.rfind(u'.'); dot != Text::npos && dot > 0)
        name.resize(dot);
    const PaperLook look{.face = fonts_.shelf().trueType(0).family(), .points = kUsualPoints};
    if (looksLikeRtf(*bytes.value)) {
        const RtfVerdict verdict = checkRtf(*bytes.value);
        if (verdict.kind != RtfVerdict::Kind::Ok)
            return Failure{verdict.sentence};
        return Result<PaperSong>::success(paperSongOfRtf(verdict.document, look, name));
    }
    const NamedEncoding* const named = request_.encoding ? &*request_.encoding : nullptr;
    const Result<Text> text = textOfBytes(*bytes.value, ansi_, named);
    if (!text)
        return Failure{text.cause};
    return Result<PaperSong>::success(paperSong(*text.value, look, name));
}

bool PdfRun::readSongs() {
    bool all = true;
    songs_.reserve(request_.songs.size());
    for (const Text& path : request_.songs) {
        Result<PaperSong> song = readSong(path);
        if (song)
            songs_.push_back({path, std::move(*song.value)});
        else
            all = fail(u"cannot read ", path, song.cause);
    }
    if (request_.sortsByTitle) {
        std::stable_sort(songs_.begin(), songs_.end(), [](const Song& a, const Song& b) {
            return unicodeLowerCase(a.song.title) < unicodeLowerCase(b.song.title);
        });
    }
    for (const Song& song : songs_)
        fonts_.addFor(song.song);
    return all;
}

void PdfRun::openDiagrams() {
    const Text path = pathInFolder(pathInFolder(ports_.programFolder(), u"Dbase"), u"MlvDbase.db");
    const Result<Done> opened = book_.open(path);
    hasBook_ = opened || fail(u"cannot read the chord database ", path, opened.cause);
    if (!hasBook_)
        return;
    for (const Song& song : songs_) {
        for (const Text& chord : song.song.chords) {
            if (const auto found = book_.find(chord))
                fonts_.addDiagrams(Text(kDiagramFaceStart) + found->font);
        }
    }
}

std::optional<DiagramOfChord> PdfRun::diagramOf(TextView chord) {
    const auto found = book_.find(chord);
    if (!found)
        return std::nullopt;
    return DiagramOfChord{Text(kDiagramFaceStart) + found->font, found->character};
}

LaidSong PdfRun::layOutOne(const Song& song) {
    LaidSong laid = layOutSong(song.song, request_.setup, fonts_.shelf(),
                               [this](TextView chord) { return diagramOf(chord); });
    report(song, laid);
    return laid;
}

void PdfRun::report(const Song& song, const LaidSong& laid) {
    if (!laid.unwritable.empty())
        ports_.writeError(song.path + u": " + unwritableInWords(laid.unwritable) + u"\n");
}

PaperDocument PdfRun::layOut() {
    PaperDocument document;
    if (songs_.size() == 1) {
        document = songDocument(layOutOne(songs_[0]), songs_[0].song, request_.setup);
    } else {
        PaperBook book(request_.setup, fonts_.shelf());
        for (const Song& song : songs_)
            book.add(layOutOne(song), song.song);
        document = book.finish(fonts_.shelf().trueType(0).family());
    }
    if (!request_.title.empty())
        document.title = request_.title;
    document.author = request_.author;
    return document;
}

int PdfRun::run() {
    if (!addFonts())
        return 1;
    bool all = readSongs();
    if (songs_.empty())
        return 1;
    if (request_.setup.diagrams)
        openDiagrams();
    all = all && (!request_.setup.diagrams || hasBook_);
    const PaperDocument document = layOut();
    for (const Text& face : fonts_.shelf().missingFaces())
        ports_.writeError(u"melvorin-cli: the font " + face +
                          u" is not there; another stands for it\n");
    const Result<std::string> bytes = writePdf(document, fonts_.shelf());
    const Result<Done> written =
        bytes ? files_.replace(request_.output, *bytes.value) : Result<Done>::failure(bytes.cause);
    return (written || fail(u"cannot write ", request_.output, written.cause)) && all ? 0 : 1;
}

}  // namespace

int runPdf(const std::vector<Text>& arguments, Files& files, CliPorts& ports,
           const AnsiCodec& ansi) {
    Result<PdfRequest> request = parsePdfArguments(arguments);
    if (!request) {
        ports.writeError(u"melvorin-cli: " + request.cause +
                         u"\nTry \"melvorin-cli pdf --help\".\n");
        return 2;
    }
    if (request.value->help)
        return ports.writeOutput(kPdfHelp) ? 0 : 1;
    return PdfRun(std::move(*request.value), files, ports, ansi).run();
}

}  // namespace melvorin
