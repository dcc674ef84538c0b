#include "app/DocumentFile.h"

#include <algorithm>

#include "base/CodePages.h"
#include "base/LetterCase.h"
#include "base/Paths.h"
#include "base/TabExpansion.h"
#include "rtf/FileKind.h"
#include "rtf/RtfCheck.h"

namespace melvorin {
namespace {

bool dropFinalLineEnd(Text& text) {
    if (text.ends_with(u"\r\n"))
        text.resize(text.size() - 2);
    else if (text.ends_with(u'\r') || text.ends_with(u'\n'))
        text.pop_back();
    else
        return false;
    return true;
}

// Null where this machine has not got it.
const AnsiCodec* codecOf(const TextFormat& format, const AnsiCodec& ansi) {
    return format.codePage == 0 ? &ansi : codePage(format.codePage);
}

Result<DocumentContent> readPlain(std::string_view bytes, const AnsiCodec& ansi,
                                  const ReadingChooser& choose) {
    if (looksBinary(bytes))
        return Failure{u"The file holds neither text nor Rich Text."};
    TextFormat format;
    format.encoding = detectEncoding(bytes);
    if (format.encoding == TextEncoding::Ansi && choose) {
        const std::vector<CodePageReading> readings = doubtfulReadings(bytes, ansi);
        const auto chosen = readings.empty() ? std::nullopt : choose(readings);
        if (!readings.empty() && !chosen)
            return Failure{{}};
        if (chosen)
            format.codePage = readings.at(*chosen).codePage;
    }
    DecodedText decoded = decodeText(bytes, *codecOf(format, ansi));
    if (decoded.lossy)
        return Failure{
            format.encoding == TextEncoding::Ansi
                ? u"Its text is damaged, or in an encoding that this computer does not know."
                : u"The file is marked as Unicode text, but some of it is not."};
    Text& text = decoded.text;
    format.lineEnd = commonLineEnd(text);
    if (text.empty())
        format.finalLineEnd = FinalLineEnd::WithText;
    else
        format.finalLineEnd = dropFinalLineEnd(text) ? FinalLineEnd::Yes : FinalLineEnd::No;
    if (text.find(u'\t') != Text::npos)
        text = expandTabs(text);
    return Result<DocumentContent>::success({false, {}, toEditorText(text), format});
}

Result<DocumentContent> readRich(std::string_view bytes, bool asWhole) {
    RtfVerdict verdict = checkRtf(bytes);
    if (asWhole && verdict.textBehind)
        return Failure{u"There is more behind the Rich Text."};
    if (verdict.kind != RtfVerdict::Kind::Ok)
        return Failure{verdict.sentence};
    return Result<DocumentContent>::success({true, std::move(verdict.document), {}, {}});
}

}  // namespace

Result<DocumentContent> readDocument(std::string_view bytes, TextView extension,
                                     const AnsiCodec& ansi, const ReadingChooser& choose) {
    const bool isTextFile = asciiLowerCase(extension) == u"txt";
    if (bytes.empty() && !isTextFile)
        return Failure{u"The file is empty."};
    if (!looksLikeRtf(bytes))
        return readPlain(bytes, ansi, choose);
    // A text file may quote Rich Text; only a whole document is one.
    Result<DocumentContent> rich = readRich(bytes, isTextFile);
    return rich || !isTextFile ? rich : readPlain(bytes, ansi, choose);
}

PlainFile plainDocument(const EditorText& text, const TextFormat& format, const AnsiCodec& ansi) {
    // A soft line break ends a line in a text file as well.
    Text lines = text.chars;
    std::replace(lines.begin(), lines.end(), u'\v', u'\r');
    if (format.finalLineEnd == FinalLineEnd::Yes ||
        (format.finalLineEnd == FinalLineEnd::WithText && !lines.empty()))
        lines += u'\r';
    const Text chars = withLineEnds(lines, format.lineEnd);

    PlainFile file{{}, format};
    const AnsiCodec* const codec = codecOf(format, ansi);
    if (codec != nullptr) {
        auto bytes = encodeText(chars, format.encoding, *codec);
        // Some texts in a code page look like UTF-8 ("Ã©"), or as if they had a mark; those must
        // not come back as another.
        if (bytes && decodeText(*bytes, *codec).text == chars) {
            file.bytes = *std::move(bytes);
            return file;
        }
    }
    file.format.codePage = 0;
    file.format.encoding =
        loneSurrogates(chars) == 0 ? TextEncoding::Utf8WithBom : TextEncoding::Utf16LeWithBom;
    file.bytes = encodeText(chars, file.format.encoding, ansi).value();
    return file;
}

}  // namespace melvorin
