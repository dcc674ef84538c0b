#include "present/frmPedals.h"

#include <algorithm>

#include "base/ProgramSettings.h"
#include "platform/HeldKeys.h"

namespace melvorin {
namespace {

constexpr TextView kIdle =
    u"Choose what is to be done, then Learn, and press the key or the pedal.";
constexpr TextView kNoInput = u"No MIDI input is there. Pedals that send keys need none.";

// Pixels at 96 dpi.
constexpr int kListWidth = 460;
constexpr int kListHeight = 100;
// Dialog units.
constexpr UINT kSignalColumn = 72;

Text listed(const std::vector<Text>& names) {
    Text text;
    for (const Text& name : names)
        text += (text.empty() ? u"" : u", ") + deviceName(name);
    return text;
}

}  // namespace

Pedals frmPedals::learn(HWND owner, const Pedals& now) {
    pedals_ = now;
    presses_ = {};
    learning_ = unstored_ = false;
    if (!createForm(L"MelvorinfrmPedals", L"Pedals and Keys", owner))
        return pedals_;
    const Cell caption = label(L"&On stage:");
    Cell acts = control(L"LISTBOX", L"", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_USETABSTOPS,
                        kActs, WS_EX_CLIENTEDGE);
    const Cell buttons = rowOf({button(learn_, kLearn, u"&Learn", WS_TABSTOP | BS_DEFPUSHBUTTON),
                                button(forget_, kForget, u"&Forget")});
    // Room for two lines.
    constexpr const wchar_t* longest = L"MIDI controller 127, channel 16\r\nof the other one.";
    const Cell state = label(longest, SS_NOPREFIX, kState);
    const Cell inputs = label(longest, SS_NOPREFIX, kInputs);
    const Cell closing = atRight({button(close_, kClose, u"Close")});
    layOut(columnOf({columnOf({caption, acts.least(kListWidth, kListHeight).grows(1, 1)}).close(),
                     buttons, state.grows(1, 0), inputs.grows(1, 0), closing})
               .apart(),
           owner);
    const UINT column = kSignalColumn;
    ::SendMessageW(item(kActs), LB_SETTABSTOPS, 1, lparamOf(&column));
    showActs();
    ::SendMessageW(item(kActs), LB_SETCURSEL, 0, 0);
    openInputs();
    tell(kIdle);
    ::SetFocus(item(kActs));
    runModal(owner);
    services_.midi.stop();
    return pedals_;
}

LRESULT frmPedals::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // A key is meant for the window that somebody looks at.
    if (message == WM_ACTIVATE && LOWORD(wParam) == WA_INACTIVE)
        endLearning();
    return Form::onMessage(message, wParam, lParam);
}

void frmPedals::onCommand(int id, int event) {
    switch (id) {
        case kActs:
            if (event == LBN_DBLCLK)
                beginLearning();
            else if (event == LBN_SELCHANGE)
                endLearning();
            break;
        case IDOK:  // Enter in the list
        case kLearn:
            beginLearning();
            break;
        case kForget:
            forget();
            break;
        default:
            Form::onCommand(id, event);
            break;
    }
}

// Every key is meant while one is learned, but for those that go before another.
bool frmPedals::onKeyDown(WPARAM key) {
    const KeyStroke stroke = strokeOf(key);
    if (!learning_) {
        if (stroke != plainKey(keys::kDelete) || ::GetFocus() != item(kActs))
            return false;
        forget();
        return true;
    }
    // The one that pressed the button may be down still.
    if (keyRepeats() || isNoKey(stroke.key))
        return true;
    if (stroke == plainKey(keys::kEscape)) {
        endLearning();
        return true;
    }
    if (const Text reason = whyNotLearned(stroke); !reason.empty())
        tell(reason);
    else
        take({stroke, {}});
    return true;
}

PedalAct frmPedals::chosen() const {
    const LRESULT row = ::SendMessageW(item(kActs), LB_GETCURSEL, 0, 0);
    return static_cast<PedalAct>(std::clamp<LRESULT>(row, 0, kPedalActs - 1));
}

// ---- Learning ---------------------------------------------------------------------------------

void frmPedals::beginLearning() {
    learning_ = true;
    ::SetFocus(item(kActs));
    tell(Text(actInWords(chosen())) + u": press the key or the pedal now. Esc: leave it as it is.");
}

void frmPedals::endLearning() {
    if (!std::exchange(learning_, false))
        return;
    tell(kIdle);
}

void frmPedals::take(const PedalSignal& signal) {
    learning_ = false;
    const PedalAct act = chosen();
    const auto former = melvorin::learn(pedals_, act, signal);
    Text sentence = Text(actInWords(act)) + u": " + signalInWords(signal) + u".";
    for (const PedalAct other : former)
        sentence += u" \u201c" + Text(actInWords(other)) + u"\u201d has none now.";
    if (signal.isKey() && !actOf(pedals_, signal.key, {.runGoes = false, .onBar = true}))
        sentence += u" It acts while the clock of a run goes, and types otherwise.";
    showActs();
    tell(sentence);
    store();
}

void frmPedals::forget() {
    const PedalAct act = chosen();
    learning_ = false;
    melvorin::learn(pedals_, act, {});
    showActs();
    tell(Text(actInWords(act)) + u": none.");
    store();
}

void frmPedals::store() {
    if (!storePedals(services_, pedals_) && !std::exchange(unstored_, true))
        services_.messages.show(kNotStored, kMessageTitle, MessageIcon::Information,
                                MessageButtons::Ok);
}

// ---- What it shows ----------------------------------------------------------------------------

void frmPedals::showActs() {
    const HWND list = item(kActs);
    const LRESULT row = ::SendMessageW(list, LB_GETCURSEL, 0, 0);
    ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (std::size_t i = 0; i < kPedalActs; ++i) {
        const Text signal = signalInWords(pedals_[i]);
        const Text line = Text(actInWords(static_cast<PedalAct>(i))) + u"\t" +
                          (signal.empty() ? Text(u"\u2013") : signal);
        ::SendMessageW(list, LB_ADDSTRING, 0, lparamOf(wide(line)));
    }
    ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(list, nullptr, TRUE);
}

// Screen readers hear of it.
void frmPedals::tell(TextView sentence) {
    ::SetWindowTextW(item(kState), wide(Text(sentence)));
    ::NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, item(kState), OBJID_CLIENT, CHILDID_SELF);
}

Text frmPedals::inputsInWords() const {
    if (inputs_.empty())
        return Text(kNoInput);
    Text text = u"MIDI inputs: " + listed(inputs_) + u".";
    if (!refused_.empty())
        text += u" Another program has " + listed(refused_) + u".";
    return text;
}

// ---- MIDI -------------------------------------------------------------------------------------

void frmPedals::openInputs() {
    inputs_ = services_.midi.names();
    refused_ = services_.midi.listen(inputs_, *this);
    ::SetWindowTextW(item(kInputs), wide(inputsInWords()));
}

// What is pressed without being learned shows what it does.
void frmPedals::heard(TextView device, const MidiMessage& message) try {
    const auto signal = presses_.press(device, message);
    if (!signal)
        return;
    if (learning_)
        return take({{}, *signal});
    const auto act = actOf(pedals_, *signal, true);
    if (act)
        ::SendMessageW(item(kActs), LB_SETCURSEL, static_cast<WPARAM>(*act), 0);
    tell(signalInWords({{}, *signal}) + u": " +
         (act ? Text(actInWords(*act)) : Text(u"nothing is learned")) + u".");
} catch (const std::exception& error) {
    onException(error);
}

void frmPedals::inputsChanged() {
    openInputs();
}

}  // namespace melvorin
