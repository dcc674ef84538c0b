#include "base/Keys.h"

#include <utility>

namespace melvorin {
namespace {

constexpr std::pair<std::uint16_t, TextView> kNames[] = {
    {keys::kBackspace, u"Backspace"},
    {keys::kTab, u"Tab"},
    {keys::kEnter, u"Enter"},
    {keys::kEscape, u"Esc"},
    {keys::kSpace, u"Space"},
    {keys::kPageUp, u"Page Up"},
    {keys::kPageDown, u"Page Down"},
    {keys::kLeft, u"Left"},
    {keys::kUp, u"Up"},
    {keys::kRight, u"Right"},
    {keys::kDown, u"Down"},
    {keys::kInsert, u"Ins"},
    {keys::kDelete, u"Del"},
    {keys::kPadPlus, u"Plus"},
    {keys::kPadMinus, u"Minus"},
    {keys::kEnd, u"End"},
    {keys::kHome, u"Home"},
    {keys::kVolumeDown, u"Volume Down"},
    {keys::kVolumeUp, u"Volume Up"},
    {keys::kNextTrack, u"Next Track"},
    {keys::kPreviousTrack, u"Previous Track"},
    {keys::kPlayPause, u"Play/Pause"},
    {keys::kPlus, u"Plus"},
    {keys::kMinus, u"Minus"},
};

Text nameOfKey(std::uint16_t key) {
    if ((key >= u'0' && key <= u'9') || (key >= u'A' && key <= u'Z'))
        return Text(1, static_cast<char16_t>(key));
    if (key >= keys::kF1 && key <= keys::kF24)
        return u"F" + decimal(key - keys::kF1 + 1);
    for (const auto& [code, name] : kNames) {
        if (code == key)
            return Text(name);
    }
    return {};
}

}  // namespace

Text nameOf(const KeyStroke& stroke) {
    Text key = nameOfKey(stroke.key);
    if (key.empty())
        return key;
    return Text(stroke.control ? u"Ctrl+" : u"") + (stroke.alt ? u"Alt+" : u"") +
           (stroke.shift ? u"Shift+" : u"") + key;
}

}  // namespace melvorin
