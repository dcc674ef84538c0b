#include "rtf/FileKind.h"

#include <algorithm>
#include <cstddef>

#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

bool isUtf16WithMark(std::string_view bytes) {
    return bytes.size() % 2 == 0 &&
           (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"));
}

}  // namespace

std::string_view fromDocumentStart(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return bytes.substr(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
}

bool looksLikeRtf(std::string_view bytes) {
    const std::string_view document = fromDocumentStart(bytes);
    if (!document.starts_with("{\\rtf"))
        return false;
    RtfLexer lexer(document, 1);
    return lexer.next().name == "rtf";
}

bool looksBinary(std::string_view bytes) {
    if (isUtf16WithMark(bytes)) {
        for (std::size_t i = 0; i < bytes.size(); i += 2) {
            if (bytes[i] == '\0' && bytes[i + 1] == '\0')
                return true;
        }
        return false;
    }
    std::size_t controls = 0;
    for (const char c : bytes) {
        if (c == '\0')
            return true;
        constexpr std::string_view usual = "\t\n\v\f\r\x1B\x1A";
        if (static_cast<unsigned char>(c) < 0x20 && usual.find(c) == std::string_view::npos)
            ++controls;
    }
    return controls > 3 + bytes.size() / 100;
}

}  // namespace melvorin
