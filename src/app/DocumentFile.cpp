#include "app/DocumentFile.h"

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
    Text text = decodeText(bytes, ansi).text;
    dropFinalLineEnd(text);
    // A NUL would end the text in the middle for every Windows call that takes a string.
    for (char16_t& c : text) {
        if (c == u'\0')
            c = u' ';
    }
    return Result<DocumentContent>::success({false, {}, toEditorText(expandTabs(text))});
}

Result<DocumentContent> readRich(std::string_view bytes) {
    RtfVerdict verdict = checkRtf(bytes);
    if (verdict.kind != RtfVerdict::Kind::Ok)
        return Result<DocumentContent>::failure(verdict.sentence);
    return Result<DocumentContent>::success({true, std::move(verdict.document), {}});
}

}  // namespace

Result<DocumentContent> readDocument(std::string_view bytes, TextView extension,
                                     const AnsiCodec& ansi) {
    if (bytes.empty() && lowerCase(extension) != u"txt")
        return Result<DocumentContent>::failure(u"The file is empty.");
    return looksLikeRtf(bytes) ? readRich(bytes) : readPlain(bytes, ansi);
}

std::string plainDocument(const EditorText& text, const AnsiCodec& ansi) {
    Text chars = toCrLf(text.chars).chars;
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
