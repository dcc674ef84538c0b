#include "widgets/ButtonPicture.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr std::uint32_t kRgb = 0xFFFFFF;
constexpr std::uint32_t kFadedPart = 96;  // of 255
constexpr int kLargestExtent = 4096;

std::uint32_t mixed(std::uint32_t over, std::uint32_t under, std::uint32_t alpha) {
    std::uint32_t result = 0;
    for (const int shift : {0, 8, 16}) {
        const std::uint32_t a = (over >> shift) & 0xFF;
        const std::uint32_t b = (under >> shift) & 0xFF;
        result |= ((a * alpha + b * (255 - alpha) + 127) / 255) << shift;
    }
    return result;
}

std::size_t indexOf(int x, int y, int width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

Extent sane(Extent extent) {
    return {std::clamp(extent.width, 0, kLargestExtent),
            std::clamp(extent.height, 0, kLargestExtent)};
}

}  // namespace

ButtonLayout layoutButton(Extent button, Extent picture, Extent caption, std::int32_t position,
                          int gap) {
    const auto middle = [](int room, int extent) { return (room - extent) / 2; };
    const Area centred{middle(button.width, picture.width), middle(button.height, picture.height),
                       picture.width, picture.height};
    const Area whole{0, 0, button.width, button.height};
    const bool isAlone = picture == Extent{} || caption == Extent{};
    if (isAlone || position < kPictureAbove || position >= kPictureBehind)
        return {centred, whole};

    ButtonLayout layout{centred, whole};
    if (position == kPictureLeft || position == kPictureRight) {
        const int width = std::min(caption.width, std::max(0, button.width - picture.width - gap));
        const int left = middle(button.width, picture.width + gap + width);
        const bool first = position == kPictureLeft;
        layout.picture.left = first ? left : left + width + gap;
        layout.caption = {first ? left + picture.width + gap : left, 0, width, button.height};
    } else {
        const int height =
            std::min(caption.height, std::max(0, button.height - picture.height - gap));
        const int top = middle(button.height, picture.height + gap + height);
        const bool first = position == kPictureAbove;
        layout.picture.top = first ? top : top + height + gap;
        layout.caption = {0, first ? top + picture.height + gap : top, button.width, height};
    }
    return layout;
}

Extent drawnSize(std::int32_t mode, Extent source, Extent given, Extent room) {
    source = sane(source);
    room = sane(room);
    if (mode == kSizeOfSource ||
        (mode == kSizeOfButton && (source.width == 0 || source.height == 0)))
        return source;
    if (mode != kSizeOfButton)
        return sane(given);
    // The side that is the tighter one decides.
    if (room.width * source.height <= room.height * source.width)
        return {room.width, source.height * room.width / source.width};
    return {source.width * room.height / source.height, room.height};
}

Pixels onFace(const Pixels& picture, Extent size, std::uint32_t face, bool transparent,
              bool faded) {
    size = sane(size);
    Pixels result{size.width, size.height, {}, false};
    result.argb.assign(indexOf(0, size.height, size.width), face & kRgb);
    const int width = std::min(size.width, picture.width);
    const int height = std::min(size.height, picture.height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = picture.argb[indexOf(x, y, picture.width)];
            std::uint32_t alpha = picture.hasAlpha ? pixel >> 24 : 255;
            if (transparent && (pixel & kRgb) == (picture.argb.front() & kRgb))
                alpha = 0;
            if (faded)
                alpha = alpha * kFadedPart / 255;
            result.argb[indexOf(x, y, size.width)] = mixed(pixel & kRgb, face, alpha);
        }
    }
    return result;
}

}  // namespace melvorin
