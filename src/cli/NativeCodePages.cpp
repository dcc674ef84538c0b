// The code pages by iconv.
#include <iconv.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "base/CodePages.h"

namespace melvorin {
namespace {

// Where iconv's name is not "CP" and the number.
struct Name {
    unsigned number;
    const char* name;
};
constexpr auto kNames = std::to_array<Name>({{10000, "MACINTOSH"},
                                             {10001, "CP932"},
                                             {10007, "MAC-CYRILLIC"},
                                             {20866, "KOI8-R"},
                                             {20932, "EUC-JP-MS"},
                                             {21866, "KOI8-U"},
                                             {65001, "UTF-8"}});

std::string nameOf(unsigned number) {
    for (const Name& known : kNames) {
        if (known.number == number)
            return known.name;
    }
    constexpr unsigned isoBase = 28590;
    if (number > isoBase && number <= isoBase + 16)
        return "ISO-8859-" + std::to_string(number - isoBase);
    return "CP" + std::to_string(number);
}

class Iconv {
  public:
    Iconv(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    ~Iconv() {
        if (isOpen())
            ::iconv_close(handle_);
    }
    bool isOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

    // Appends what can be converted and returns what is left; empty when all of it was.
    std::string_view convert(std::string_view from, std::string& to) const {
        std::array<char, 1 << 14> buffer;
        for (;;) {
            char* in = const_cast<char*>(from.data());
            std::size_t left = from.size();
            char* out = buffer.data();
            std::size_t room = buffer.size();
            ::iconv(handle_, &in, &left, &out, &room);
            // Some code pages hold the last letter back, for an accent that may come.
            if (left == 0)
                ::iconv(handle_, nullptr, nullptr, &out, &room);
            to.append(buffer.data(), buffer.size() - room);
            from.remove_prefix(from.size() - left);
            if (from.empty() || room == buffer.size())
                return from;
        }
    }

  private:
    iconv_t handle_;
};

class IconvCodePage : public AnsiCodec {
  public:
    explicit IconvCodePage(const std::string& name)
        : reader_("UTF-16LE", name.c_str()), writer_(name.c_str(), "UTF-16LE") {}
    bool works() const { return reader_.isOpen() && writer_.isOpen(); }

    Text decode(std::string_view bytes) const override {
        std::string units;
        while (!(bytes = reader_.convert(bytes, units)).empty()) {
            units += "\xFD\xFF";
            bytes.remove_prefix(1);
        }
        return decodePart(units, TextEncoding::Utf16LeWithBom, windows1252()).text;
    }

    std::optional<std::string> encode(TextView text) const override {
        const std::optional<std::string> units =
            encodePart(text, TextEncoding::Utf16LeWithBom, windows1252());
        std::string bytes;
        if (!units || !writer_.convert(*units, bytes).empty())
            return std::nullopt;
        return bytes;
    }

  private:
    Iconv reader_;
    Iconv writer_;
};

}  // namespace

const AnsiCodec* codePage(unsigned number) {
    static std::map<unsigned, std::unique_ptr<IconvCodePage>> known;
    if (number == 1252)
        return &windows1252();
    const auto [entry, isNew] = known.try_emplace(number);
    if (isNew)
        entry->second = std::make_unique<IconvCodePage>(nameOf(number));
    return entry->second->works() ? entry->second.get() : nullptr;
}

}  // namespace melvorin
