#include "present/Form3b.h"

#include "present/Form3.h"

namespace melvorin {

Form3b::Form3b(const Services& services, Callbacks callbacks)
    : Form(services), callbacks_(std::move(callbacks)), sounds_(services), Cmd3_(sounds_) {}

bool Form3b::open(HWND owner, const Area& screen) {
    if (!isOpen() && !createWindow(owner))
        return false;
    moveBar(handle(), screen);
    bringForward();
    ::SetFocus(Cmd3_.handle());
    return true;
}

bool Form3b::createWindow(HWND owner) {
    if (!createForm(L"MelvorinForm3b", L"Full Screen", owner))
        return false;
    layOut(button(Cmd3_, Cmd3, u"Enlarge"), owner);
    return true;
}

}  // namespace melvorin
