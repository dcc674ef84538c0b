#include "platform/SystemAnsiCodec.h"

#include <algorithm>
#include <map>

#include "base/CodePages.h"
#include "platform/Win.h"

namespace melvorin {
namespace {

// The conversion calls count in int; larger texts go through in pieces of this many units, cut
// only where no character is split.
constexpr std::size_t kPiece = 1u << 24;

class WindowsCodePage : public AnsiCodec {
  public:
    explicit WindowsCodePage(UINT number) : number_(number) {}

    Text decode(std::string_view bytes) const override {
        Text text;
        while (!bytes.empty()) {
            const std::string_view piece = bytes.substr(0, pieceLength(bytes));
            const int length = static_cast<int>(piece.size());
            const int units = ::MultiByteToWideChar(number_, 0, piece.data(), length, nullptr, 0);
            const std::size_t former = text.size();
            text.resize(former + static_cast<std::size_t>(units));
            ::MultiByteToWideChar(number_, 0, piece.data(), length, wideBuffer(text) + former,
                                  units);
            bytes.remove_prefix(piece.size());
        }
        return text;
    }

    std::optional<std::string> encode(TextView text) const override {
        std::string bytes;
        while (!text.empty()) {
            std::size_t count = std::min(text.size(), kPiece);
            if (count < text.size() && text[count - 1] >= 0xD800 && text[count - 1] < 0xDC00)
                --count;
            if (!encodePiece(text.substr(0, count), bytes))
                return std::nullopt;
            text.remove_prefix(count);
        }
        return bytes;
    }

  private:
    // A piece ends behind a line feed where there is one, which is a character of its own in
    // every code page.
    static std::size_t pieceLength(std::string_view bytes) {
        if (bytes.size() <= kPiece)
            return bytes.size();
        const std::size_t lineEnd = bytes.rfind('\n', kPiece - 1);
        return lineEnd == std::string_view::npos ? kPiece : lineEnd + 1;
    }

    bool encodePiece(TextView text, std::string& bytes) const {
        const auto* source = reinterpret_cast<const wchar_t*>(text.data());
        const int units = static_cast<int>(text.size());
        // Without a look-alike ("best fit"), so that what is written reads back the same. Where
        // the code page is UTF-8 that question does not arise, and Windows refuses to be asked.
        const bool isUtf8 = number_ == CP_UTF8 || (number_ == CP_ACP && ::GetACP() == CP_UTF8);
        const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
        BOOL lost = FALSE;
        BOOL* const lossAsked = isUtf8 ? nullptr : &lost;
        const int length =
            ::WideCharToMultiByte(number_, flags, source, units, nullptr, 0, nullptr, lossAsked);
        if (lost || length <= 0)
            return false;
        const std::size_t former = bytes.size();
        bytes.resize(former + static_cast<std::size_t>(length));
        ::WideCharToMultiByte(number_, flags, source, units, bytes.data() + former, length, nullptr,
                              lossAsked);
        return !lost;
    }

    UINT number_;
};

}  // namespace

const AnsiCodec& systemAnsiCodec() {
    static const WindowsCodePage codec(CP_ACP);
    return codec;
}

const AnsiCodec* codePage(unsigned number) {
    static std::map<unsigned, WindowsCodePage> known;
    if (number == CP_ACP || !::IsValidCodePage(number))
        return nullptr;
    return &known.try_emplace(number, number).first->second;
}

}  // namespace melvorin
