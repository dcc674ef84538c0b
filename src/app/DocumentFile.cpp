#include "app/DocumentFile.h"

#include <algorithm>

#include "app/Paths.h"
#include "app/RtfCheck.h"
#include "find/TabExpansion.h"

namespace melvorin {
namespace {

void dropFinalLineEnd(Text& text) {
    if (text.ends_with(u"\r\n"))
        text.resize(text.size() - 2);
    else if (text.ends_with(u'\r') || text.ends_with(u'\n'))
        text.pop_back();
}

Result<DocumentContent> readPlain(std::string_view bytes, const AnsiCodec& ansi) {
    if (looksBinary(bytes))
        return Result<DocumentContent>::failure(u"The file holds neither text nor Rich Text.");
    DecodedText decoded = decodeText(bytes, ansi);
    if (decoded.lossy)
        return Result<DocumentContent>::failure(
            u"The file is marked as Unicode text, but some of it is not.");
    Text& text = decoded.text;
    dropFinalLineEnd(text);
    if (text.find(u'\t') != Text::npos)
        text = expandTabs(text);
    return Result<DocumentContent>::success({false, {}, toEditorText(text)});
}

Result<DocumentContent> readRich(std::string_view bytes, bool asWhole) {
    RtfVerdict verdict = checkRtf(bytes);
    if (asWhole && verdict.textBehind)
        return Result<DocumentContent>::failure(u"There is more behind the Rich Text.");
    if (verdict.kind != RtfVerdict::Kind::Ok)
        return Result<DocumentContent>::failure(verdict.sentence);
    return Result<DocumentContent>::success({true, std::move(verdict.document), {}});
}

}  // namespace

Result<DocumentContent> readDocument(std::string_view bytes, TextView extension,
                                     const AnsiCodec& ansi) {
    const bool isTextFile = lowerCase(extension) == u"txt";
    if (bytes.empty() && !isTextFile)
        return Result<DocumentContent>::failure(u"The file is empty.");
    if (!looksLikeRtf(bytes))
        return readPlain(bytes, ansi);
    // A text file may quote Rich Text; only a whole document is one.
    Result<DocumentContent> rich = readRich(bytes, isTextFile);
    return rich || !isTextFile ? rich : readPlain(bytes, ansi);
}

std::string plainDocument(const EditorText& text, const AnsiCodec& ansi) {
    // A soft line break ends a line in a text file as well.
    Text lines = text.chars;
    std::replace(lines.begin(), lines.end(), u'\v', u'\r');
    Text chars = toCrLf(lines).chars;
    chars += u"\r\n";
    // Some texts in the code page look like UTF-8 ("Ã©"); those must not come back as another.
    auto bytes = encodeText(chars, TextEncoding::Ansi, ansi);
    if (bytes && decodeText(*bytes, ansi).text == chars)
        return *std::move(bytes);
    return encodeText(chars, TextEncoding::Utf8WithBom, ansi).value();
}

Text sizeInWords(std::uint64_t bytes) {
    // One decimal, rounded, without touching floating point.
    const std::uint64_t tenths = (bytes * 10 + (1u << 19)) >> 20;
    return fromUtf8(std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB");
}

}  // namespace melvorin
