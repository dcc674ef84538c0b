// What keys and pedals do to a run and to the view.
#include <algorithm>

#include "platform/HeldKeys.h"
#include "present/frmFScreenB.h"

namespace melvorin {

// A key that moves the view; a run goes on from the line that is then on top.
bool frmFScreenB::turnsRun(WPARAM key) {
    const int before = view_.topLine();
    if (!view_.takesKey(key))
        return false;
    // At the end of the text the view goes no farther, and the run as it would.
    if (view_.topLine() != before)
        run_.turnTo(view_.topLine());
    return true;
}

void frmFScreenB::learnPedals() {
    const auto listenAgain = [this] {
        if (view_.window() != nullptr)
            pedals_.listen();
    };
    try {
        view_.ask([this](HWND view) { pedals_.take(pedalWindow_.learn(view, pedals_.pedals())); });
    } catch (...) {
        listenAgain();
        throw;
    }
    listenAgain();
}

// Not while something is asked.
bool frmFScreenB::mayAct() const {
    const auto isFree = [](HWND window) {
        return window == nullptr || ::IsWindowEnabled(window) != FALSE;
    };
    return isOpen() && isFree(view_.window()) && isFree(handle()) && isFree(bar_.handle()) &&
           isFree(smallBar_.handle());
}

// A foot that stays down is one press, also where what it did has taken the key its meaning.
bool frmFScreenB::takesPedal(const MSG& message) {
    const bool isHeldPedal = heldPedal_ != 0 && message.wParam == heldPedal_;
    if (message.message == WM_KEYUP && isHeldPedal) {
        heldPedal_ = 0;
        return true;
    }
    if (!isKeyDown(message))
        return false;
    if (isRepeat(message) && isHeldPedal)
        return true;
    heldPedal_ = 0;
    const HWND window = ::GetAncestor(message.hwnd, GA_ROOT);
    const bool onBar = window == bar_.handle() || window == smallBar_.handle();
    const auto what =
        pedals_.actOf(strokeOf(message.wParam), {.runGoes = run_.isRunning(), .onBar = onBar});
    if (!what || !mayAct())
        return false;
    heldPedal_ = message.wParam;
    if (!isRepeat(message))
        act(*what);
    return true;
}

void frmFScreenB::act(PedalAct act) try {
    if (!mayAct())
        return;
    switch (act) {
        case PedalAct::OneLine:
            return goOn(1);
        case PedalAct::FiveLines:
            return goOn(5);
        case PedalAct::TenLines:
            return goOn(10);
        case PedalAct::Back:
            return goBack();
        case PedalAct::Pause:
            return pause();
        case PedalAct::Restart:
            return restart();
    }
} catch (const std::exception& error) {
    onException(error);
}

// By the jumps and passes of a run; without one just down the song.
void frmFScreenB::goOn(int lines) {
    lastLines_ = lines;
    if (run_.isOn())
        run_.advance(lines);
    else
        view_.turnBy(lines);
}

// As far as the other pedal goes on.
void frmFScreenB::goBack() {
    if (run_.isOn())
        run_.goBack(lastLines_);
    else
        view_.turnBy(-lastLines_);
}

// What was paused or left goes on; or else a run begins, where the panel offers one.
void frmFScreenB::restart() {
    if (run_.isPaused())
        pauseOrResume();
    else if (!run_.isRunning() && isShown() && run_.wasLeft())
        startHere();
    else if (!run_.isRunning() && isShown())
        start();
}

// Where nobody has turned the page since a run was left, it goes on with the line that it had come
// to, which is not always the one on top.
void frmFScreenB::startHere() {
    const int top = view_.topLine();
    startAt(run_.wasLeft() && top == leftTop_ ? std::min(run_.leftLine(), view_.lineCount()) : top);
}

// Below the buttons of the bar. A pedal that is not there is told where nothing else is.
void frmFScreenB::tellNote() {
    Text note = noteInWords(run_.note(), sections_);
    if (note.empty() && !pedals_.missing().empty())
        note = u"without " + pedals_.missing();
    bar_.showNote(note);
}

}  // namespace melvorin
