#include "app/SongMemory.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr char kBetween = '|';
constexpr std::string_view kTonics = "0123456789AB";

std::string_view takePart(std::string_view& text) {
    const std::size_t end = std::min(text.find(kBetween), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

}  // namespace

// "up sharps 4:1|up sharps|b9m": the lines, the diagrams, then the side and the key.
std::string SongMemory::text() const {
    if (owesNothing() && side == Spelling::Sharps && !key)
        return {};
    std::string kept(1, side == Spelling::Sharps ? '#' : 'b');
    if (key) {
        kept += kTonics[static_cast<std::size_t>(key->tonic)];
        kept += key->minor ? "m" : "";
    }
    return lines.text() + kBetween + diagrams.text() + kBetween + kept;
}

SongMemory SongMemory::parse(std::string_view text) {
    SongMemory memory;
    memory.lines = KeyDebt::parse(takePart(text));
    memory.diagrams = KeyDebt::parse(takePart(text));
    memory.side = text.starts_with('b') ? Spelling::Flats : Spelling::Sharps;
    text.remove_prefix(std::min<std::size_t>(text.size(), 1));
    const std::size_t tonic = text.empty() ? std::string_view::npos : kTonics.find(text[0]);
    if (tonic != std::string_view::npos && (text.size() == 1 || text.substr(1) == "m"))
        memory.key = Key{static_cast<int>(tonic), text.size() == 2};
    return memory;
}

}  // namespace melvorin
