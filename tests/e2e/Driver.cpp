// Drives a running Melvorin from a second process, step by step, as named on its command line:
//
//   wait TITLE        until the main window is in view under this title
//   menu CAPTION      gives the menu command of this caption and waits until it is done
//   post CAPTION      gives it without waiting (for commands that open a dialog)
//   type TEXT         types into the editor
//   wait-text TEXT    until the editor holds this text (its lines ended by LF)
//   text              prints the editor's text
//   wait-window TITLE until a dialog of this title is in view
//   wait-front TITLE  until the window of this title has the keyboard
//   front TITLE       prints "yes" or "no": whether this window has the keyboard, soon at least
//   reach TITLE       until keys that are pressed outside come to the window of this title: prints
//                     "press" for somebody to hold Shift down, then "lost", and it begins again, or
//                     "held"
//   wait-field TEXT   until the control that has the keyboard holds this text
//   wait-menu         until a menu is open
//   wait-no-window TITLE  until no window of this title is in view
//   click ID          clicks the button of this number in the window in front
//   choose ID=ENTRY   chooses an entry (from 1) of a drop-down list there
//   film              prints the caption of a run's bar each time it changes, until the bar goes
//   message           prints the text of the message box in front, when there is one
//   place             prints where the window in front stands, as WIDTHxHEIGHT+LEFT+TOP
//   close             closes the main window, without waiting
//   wait-gone         until the main window is gone
//
// Exit code 1 and one line on stderr where a step cannot be done in a minute.
#include <cstdio>
#include <string>
#include <vector>

#include "RunningProgram.h"
#include "app/CommandMap.h"

namespace {

using namespace melvorin;

Text captionOf(HWND window) {
    Text buffer(512, u'\0');
    buffer.resize(static_cast<std::size_t>(::GetWindowTextW(window, wideBuffer(buffer), 512)));
    return buffer;
}

std::optional<WPARAM> idOfCaption(TextView caption) {
    for (const CommandRow& row : commands()) {
        if (row.menu.caption == caption && row.menu.kind == MenuKind::Entry)
            return idOf(row.id);
    }
    return std::nullopt;
}

bool giveCommand(TextView caption, bool wait) {
    const auto id = idOfCaption(caption);
    if (!id || mainWindow() == nullptr)
        return false;
    if (!wait)
        return ::PostMessageW(mainWindow(), WM_COMMAND, *id, 0) != 0;
    DWORD_PTR result = 0;
    return ::SendMessageTimeoutW(mainWindow(), WM_COMMAND, *id, 0, SMTO_NORMAL, kLimitMs,
                                 &result) != 0;
}

Text textIn(HWND control) {
    const auto length = static_cast<std::size_t>(::SendMessageW(control, WM_GETTEXTLENGTH, 0, 0));
    Text buffer(length + 1, u'\0');
    buffer.resize(static_cast<std::size_t>(
        ::SendMessageW(control, WM_GETTEXT, buffer.size(), lparamOf(buffer.data()))));
    return buffer;
}

Text withoutCarriageReturns(Text text) {
    std::erase(text, u'\r');
    return text;
}

bool print(const Text& text) {
    std::printf("%s\n", toUtf8(withoutCarriageReturns(text)).c_str());
    return true;
}

bool isInView(TextView title) {
    const HWND window = ::FindWindowW(nullptr, wide(Text(title)));
    return window != nullptr && ::IsWindowVisible(window);
}

// What the window in front is doing with the keyboard.
GUITHREADINFO keyboard() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    const HWND front = ::GetForegroundWindow();
    if (front != nullptr)
        ::GetGUIThreadInfo(::GetWindowThreadProcessId(front, nullptr), &info);
    return info;
}

bool isInFront(TextView title) {
    const HWND front = ::GetForegroundWindow();
    const HWND focus = keyboard().hwndFocus;
    return front != nullptr && captionOf(front) == title &&
           (focus == front || ::IsChild(front, focus));
}

bool say(const char* word) {
    std::printf("%s\n", word);
    return std::fflush(stdout) == 0;
}

// A window has the keyboard before the X server knows, and what is pressed in between is lost. So
// a key that does nothing by itself goes ahead, until it is seen on this side.
bool reach(TextView title) {
    const auto isHeld = [] { return ::GetAsyncKeyState(VK_SHIFT) < 0; };
    const auto isReached = [&] {
        if (!isInFront(title) || isHeld())
            return false;
        say("press");
        const bool seen = waitFor(isHeld, kSoonMs) && isInFront(title);
        say(seen ? "held" : "lost");
        return seen;
    };
    return waitFor(isReached);
}

// A message box keeps its text in the one static control that has any.
bool printMessage() {
    const HWND box = ::GetForegroundWindow();
    HWND part = nullptr;
    while ((part = ::FindWindowExW(box, part, L"Static", nullptr)) != nullptr) {
        const Text text = textIn(part);
        if (!text.empty())
            return print(text);
    }
    return false;
}

bool type(TextView text) {
    for (const char16_t c : text) {
        if (!::PostMessageW(editor(), WM_CHAR, c, 1))
            return false;
    }
    // The text has arrived when a message sent behind it is answered.
    DWORD_PTR result = 0;
    return ::SendMessageTimeoutW(editor(), WM_GETTEXTLENGTH, 0, 0, SMTO_NORMAL, kLimitMs,
                                 &result) != 0;
}

bool printPlace() {
    RECT place{};
    if (!::GetWindowRect(::GetForegroundWindow(), &place))
        return false;
    std::printf("%ldx%ld+%ld+%ld\n", place.right - place.left, place.bottom - place.top, place.left,
                place.top);
    return true;
}

// Posted: what a button begins may wait for an answer.
bool click(TextView id) {
    const HWND button = ::GetDlgItem(::GetForegroundWindow(), std::stoi(toUtf8(id)));
    return button != nullptr && ::PostMessageW(button, BM_CLICK, 0, 0) != 0;
}

bool choose(TextView idAndEntry) {
    const std::size_t sign = idAndEntry.find(u'=');
    const HWND list =
        ::GetDlgItem(::GetForegroundWindow(), std::stoi(toUtf8(idAndEntry.substr(0, sign))));
    const auto entry = static_cast<WPARAM>(std::stoi(toUtf8(idAndEntry.substr(sign + 1))));
    // A list may be filled only after its window is seen.
    const auto isThere = [&] {
        return ::SendMessageW(list, CB_GETCOUNT, 0, 0) >= static_cast<LRESULT>(entry);
    };
    if (!waitFor(isThere) ||
        ::SendMessageW(list, CB_SETCURSEL, entry - 1, 0) != static_cast<LRESULT>(entry - 1))
        return false;
    // What the list says of itself when somebody has chosen.
    ::SendMessageW(::GetParent(list), WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(list), CBN_SELCHANGE),
                   lparamOf(list));
    return true;
}

bool film() {
    const HWND bar = ::FindWindowW(L"MelvorinForm3", nullptr);
    Text last;
    while (::IsWindowVisible(bar)) {
        const Text caption = captionOf(bar);
        if (caption != last) {
            print(caption);
            std::fflush(stdout);
        }
        last = caption;
        ::Sleep(20);
    }
    return !last.empty();
}

bool runStep(TextView step, TextView argument) {
    if (step == u"wait")
        return waitFor([&] { return mainWindow() && captionOf(mainWindow()) == argument; });
    if (step == u"menu" || step == u"post")
        return giveCommand(argument, step == u"menu");
    if (step == u"type")
        return type(argument);
    if (step == u"wait-text")
        return waitFor([&] { return withoutCarriageReturns(textIn(editor())) == argument; });
    if (step == u"text")
        return editor() != nullptr && print(textIn(editor()));
    if (step == u"wait-window")
        return waitFor([&] { return isInView(argument); });
    if (step == u"wait-no-window")
        return waitFor([&] { return !isInView(argument); });
    if (step == u"wait-front")
        return waitFor([&] { return isInFront(argument); });
    if (step == u"front")
        return say(waitFor([&] { return isInFront(argument); }, kSoonMs) ? "yes" : "no");
    if (step == u"reach")
        return reach(argument);
    if (step == u"wait-field")
        return waitFor([&] {
            const HWND focus = keyboard().hwndFocus;
            return focus != nullptr && textIn(focus) == argument;
        });
    if (step == u"wait-menu")
        return waitFor([] { return (keyboard().flags & GUI_INMENUMODE) != 0; });
    if (step == u"click")
        return click(argument);
    if (step == u"choose")
        return choose(argument);
    if (step == u"film")
        return film();
    if (step == u"message")
        return waitFor(printMessage);  // boxes may follow each other
    if (step == u"place")
        return printPlace();
    if (step == u"close")
        return ::PostMessageW(mainWindow(), WM_CLOSE, 0, 0) != 0;
    if (step == u"wait-gone")
        return waitFor([] { return ::FindWindowW(L"MelvorinForm1", nullptr) == nullptr; });
    return false;
}

bool takesArgument(TextView step) {
    return step != u"text" && step != u"film" && step != u"wait-menu" && step != u"message" &&
           step != u"place" && step != u"close" && step != u"wait-gone";
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    for (int i = 1; i < count; ++i) {
        const TextView step = textOf(arguments[i]);
        TextView argument;
        if (takesArgument(step) && i + 1 < count)
            argument = textOf(arguments[++i]);
        if (!runStep(step, argument)) {
            std::fprintf(stderr, "driver: cannot do: %s %s (in front: \"%s\", editor: \"%s\")\n",
                         toUtf8(step).c_str(), toUtf8(argument).c_str(),
                         toUtf8(captionOf(::GetForegroundWindow())).c_str(),
                         toUtf8(textIn(editor())).c_str());
            return 1;
        }
    }
    return 0;
}
