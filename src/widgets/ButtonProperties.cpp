#include "widgets/ButtonProperties.h"

#include <algorithm>
#include <vector>

namespace melvorin {
namespace {

constexpr int kLargestPoints = 144;

std::vector<Text> partsOf(TextView list) {
    std::vector<Text> parts;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(u',', begin), list.size());
        TextView part = list.substr(begin, end - begin);
        part.remove_prefix(std::min(part.find_first_not_of(u' '), part.size()));
        part = part.substr(0, part.find_last_not_of(u' ') + 1);
        parts.emplace_back(part);
        begin = end + 1;
    }
    return parts;
}

}  // namespace

// kept: twice-read
ButtonProperties readButtonProperties(PropertyBag& bag) {
    const ButtonProperties none;
    ButtonProperties p;
    p.BackColor = bag.readColour(u"BackColor", none.BackColor);
    p.ForeColor = bag.readColour(u"ForeColor", none.ForeColor);
    p.Caption = bag.read(u"Caption", none.Caption);
    p.PicturePosition = bag.readNumber(u"PicturePosition", none.PicturePosition);
    p.ButtonStyle = bag.readNumber(u"ButtonStyle", none.ButtonStyle);
    p.Picture = bag.read(u"Picture", none.Picture);
    p.PictureWidth = bag.readNumber(u"PictureWidth", none.PictureWidth);
    p.PictureHeight = bag.readNumber(u"PictureHeight", none.PictureHeight);
    p.PictureSize = bag.readNumber(u"PictureSize", none.PictureSize);
    p.OriginalPicSizeW = bag.readNumber(u"OriginalPicSizeW", none.OriginalPicSizeW);
    p.OriginalPicSizeH = bag.readNumber(u"OriginalPicSizeH", none.OriginalPicSizeH);
    p.Font = bag.read(u"Font", none.Font);
    p.Font = bag.read(u"Font", none.Font);
    p.PictureHover = bag.read(u"PictureHover", none.PictureHover);
    p.Picture = bag.read(u"Picture", none.Picture);
    p.MouseIcon = bag.read(u"MouseIcon", none.MouseIcon);
    p.MousePointer = bag.readNumber(u"MousePointer", none.MousePointer);
    p.DefCurHand = bag.readFlag(u"DefCurHand", none.DefCurHand);
    p.TransparentBG = bag.readFlag(u"TransparentBG", none.TransparentBG);
    p.BEVEL = bag.readNumber(u"BEVEL", none.BEVEL);
    p.BEVELDEPTH = bag.readNumber(u"BEVELDEPTH", none.BEVELDEPTH);
    return p;
}

// kept: forgotten-properties
void writeButtonProperties(const ButtonProperties& p, PropertyBag& bag) {
    const ButtonProperties none;
    bag.write(u"Caption", p.Caption, none.Caption);
    bag.writeNumber(u"PicturePosition", p.PicturePosition, none.PicturePosition);
    bag.writeNumber(u"ButtonStyle", p.ButtonStyle, none.ButtonStyle);
    bag.write(u"Picture", p.Picture, none.Picture);
    bag.writeNumber(u"PictureWidth", p.PictureWidth, none.PictureWidth);
    bag.writeNumber(u"PictureHeight", p.PictureHeight, none.PictureHeight);
    bag.writeNumber(u"PictureSize", p.PictureSize, none.PictureSize);
    bag.writeNumber(u"OriginalPicSizeW", p.OriginalPicSizeW, none.OriginalPicSizeW);
    bag.writeNumber(u"OriginalPicSizeH", p.OriginalPicSizeH, none.OriginalPicSizeH);
    bag.write(u"PictureHover", p.PictureHover, none.PictureHover);
    bag.write(u"Font", p.Font, none.Font);
    bag.write(u"MouseIcon", p.MouseIcon, none.MouseIcon);
    bag.writeNumber(u"MousePointer", p.MousePointer, none.MousePointer);
    bag.writeColour(u"BackColor", p.BackColor, none.BackColor);
    bag.writeColour(u"ForeColor", p.ForeColor, none.ForeColor);
    bag.writeNumber(u"BEVEL", p.BEVEL, none.BEVEL);
    bag.writeNumber(u"BEVELDEPTH", p.BEVELDEPTH, none.BEVELDEPTH);
}

ButtonFont parseButtonFont(TextView font) {
    const std::vector<Text> parts = partsOf(font);
    if (parts.size() < 2 || parts[0].empty())
        return {};
    int points = 0;
    for (const char16_t c : parts[1]) {
        if (c < u'0' || c > u'9' || points > kLargestPoints)
            return {};
        points = points * 10 + (c - u'0');
    }
    if (points < 1 || points > kLargestPoints)
        return {};
    const auto has = [&](TextView word) {
        return std::find(parts.begin() + 2, parts.end(), word) != parts.end();
    };
    return {parts[0], points, has(u"bold"), has(u"italic")};
}

}  // namespace melvorin
