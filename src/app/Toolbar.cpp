#include "app/Toolbar.h"

#include <vector>

#include "platform/Window.h"

namespace melvorin {
namespace {

// The strip that fits the system's DPI: the largest of these that is not above it.
int pictureSize() {
    int best = 16;
    for (const int size : {20, 24, 32, 40, 48}) {
        if (size <= scaled(16))
            best = size;
    }
    return best;
}

struct Pixel {
    BYTE blue, green, red, alpha;
};

BYTE mixed(int over, int under, int alpha) {
    return static_cast<BYTE>((over * alpha + under * (255 - alpha) + 127) / 255);
}

// A disabled picture is grey and pale.
Pixel faded(Pixel pixel) {
    const auto grey = static_cast<BYTE>((pixel.red * 3 + pixel.green * 6 + pixel.blue) / 10);
    return {grey, grey, grey, static_cast<BYTE>(pixel.alpha * 2 / 5)};
}

// Common controls before version 6 know no alpha: the picture is blended onto the button face
// here, and a mask leaves out what is quite transparent.
UniqueImageList blendedList(const DIBSECTION& strip, int size, bool disabled) {
    const int width = static_cast<int>(strip.dsBm.bmWidth);
    const COLORREF face = ::GetSysColor(COLOR_BTNFACE);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const UniqueBitmap colour(
        ::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!colour)
        return {};
    // One bit per pixel, rows padded to words, top row first.
    const std::size_t rowBytes = (static_cast<std::size_t>(width) + 15) / 16 * 2;
    std::vector<BYTE> maskBits(rowBytes * static_cast<std::size_t>(size));
    const auto* source = static_cast<const Pixel*>(strip.dsBm.bmBits);
    auto* target = static_cast<Pixel*>(bits);
    for (int row = 0; row < size; ++row) {
        BYTE* maskRow = maskBits.data() + rowBytes * static_cast<std::size_t>(size - 1 - row);
        for (int x = 0; x < width; ++x) {
            const Pixel pixel = disabled ? faded(source[row * width + x]) : source[row * width + x];
            const int alpha = pixel.alpha;
            if (alpha == 0)
                maskRow[x / 8] = static_cast<BYTE>(maskRow[x / 8] | (0x80 >> (x % 8)));
            else
                target[row * width + x] = {mixed(pixel.blue, GetBValue(face), alpha),
                                           mixed(pixel.green, GetGValue(face), alpha),
                                           mixed(pixel.red, GetRValue(face), alpha), 255};
        }
    }
    const UniqueBitmap mask(::CreateBitmap(width, size, 1, 1, maskBits.data()));
    UniqueImageList list(::ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, width / size, 0));
    ::ImageList_Add(list.get(), colour.get(), mask.get());
    return list;
}

BYTE styleOf(ToolButtonKind kind) {
    switch (kind) {
        case ToolButtonKind::Check:
            return BTNS_CHECK;
        case ToolButtonKind::DropDown:
            return BTNS_DROPDOWN;
        case ToolButtonKind::Push:
            break;
    }
    return BTNS_BUTTON;
}

}  // namespace

bool Toolbar::create(HWND parent) {
    handle_ = ::CreateWindowExW(
        0, TOOLBARCLASSNAMEW, L"",
        WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_TOP, 0, 0,
        0, 0, parent, nullptr, ::GetModuleHandleW(nullptr), nullptr);
    if (handle_ == nullptr)
        return false;
    send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    send(TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_DRAWDDARROWS);
    reloadPictures();
    int picture = 0;
    for (int number = 1; number <= kLastButton; ++number) {
        TBBUTTON item{};
        item.fsStyle = BTNS_SEP;
        if (const CommandRow* const row = rowOfButton(number)) {
            item.fsStyle = styleOf(row->button.kind);
            item.iBitmap = picture++;
            item.idCommand = idOf(row->id);
            item.fsState = TBSTATE_ENABLED;
        }
        send(TB_ADDBUTTONSW, 1, lparamOf(&item));
    }
    send(TB_AUTOSIZE);
    return true;
}

void Toolbar::reloadPictures() {
    const int size = pictureSize();
    const UniqueBitmap strip(static_cast<HBITMAP>(
        ::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kToolbarStripBase + size),
                     IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    DIBSECTION section{};
    if (!strip || ::GetObjectW(strip.get(), sizeof section, &section) == 0 ||
        section.dsBm.bmBitsPixel != 32)
        return;
    pictures_ = blendedList(section, size, false);
    disabledPictures_ = blendedList(section, size, true);
    send(TB_SETIMAGELIST, 0, lparamOf(pictures_.get()));
    send(TB_SETDISABLEDIMAGELIST, 0, lparamOf(disabledPictures_.get()));
}

void Toolbar::enable(Command command, bool enabled) {
    send(TB_ENABLEBUTTON, idOf(command), MAKELPARAM(enabled, 0));
}

void Toolbar::setChecked(Command command, bool checked) {
    send(TB_CHECKBUTTON, idOf(command), MAKELPARAM(checked, 0));
}

bool Toolbar::isEnabled(Command command) const {
    return send(TB_ISBUTTONENABLED, idOf(command)) > 0;
}

RECT Toolbar::buttonOnScreen(Command command) const {
    RECT rectangle{};
    send(TB_GETRECT, idOf(command), lparamOf(&rectangle));
    ::MapWindowPoints(handle_, nullptr, reinterpret_cast<POINT*>(&rectangle), 2);
    return rectangle;
}

void Toolbar::showTips(bool show) {
    const auto tips = reinterpret_cast<HWND>(send(TB_GETTOOLTIPS));
    ::SendMessageW(tips, TTM_ACTIVATE, show ? TRUE : FALSE, 0);
}

int Toolbar::resize() {
    send(TB_AUTOSIZE);
    RECT rectangle{};
    ::GetWindowRect(handle_, &rectangle);
    return static_cast<int>(rectangle.bottom - rectangle.top);
}

}  // namespace melvorin
