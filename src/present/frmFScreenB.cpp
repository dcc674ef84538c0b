#include "present/frmFScreenB.h"

#include <algorithm>

#include "present/RunPlan.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kTimer1 = 1;  // the run's clock
constexpr UINT_PTR kTimer2 = 2;  // fills the lists
constexpr UINT kTimerMs = 1;

constexpr int kLongestPace = 60;  // seconds
constexpr int kMostTimes = 99;
constexpr int kMostCountIn = 8;

// Pixels at 96 dpi.
constexpr int kNumberList = 56;
constexpr int kLineList = 68;
constexpr int kMeaning = 160;  // two lines of what a button does

bool isClosedList(HWND window) {
    wchar_t name[16] = L"";
    ::GetClassNameW(window, name, 16);
    return ::lstrcmpiW(name, L"COMBOBOX") == 0 &&
           ::SendMessageW(window, CB_GETDROPPEDSTATE, 0, 0) == FALSE;
}

}  // namespace

frmFScreenB::frmFScreenB(const Services& services, StageView& view)
    : Form(services),
      view_(view),
      run_(services_.clock, *this),
      bar_(services_,
           {[this] { pauseOrResume(); }, [this] { showPanel(); },
            [this](RunKey key) { run_.press(key); }, [this](WPARAM key) { return turnsRun(key); },
            [this](WPARAM command) { return refuses(command); }}),
      smallBar_(services_,
                {[this] { showPanel(); }, [this](WPARAM key) { return view_.takesKey(key); }}),
      pedals_(services_, {[this] { return run_.isRunning(); }, [this](PedalAct what) { act(what); },
                          [this] { tellNote(); }}),
      pedalWindow_(services_),
      sounds_(services_),
      Command4_(sounds_),
      Command6_(sounds_),
      Command7_(sounds_),
      Command8_(sounds_),
      startHere_(sounds_),
      rowFromHere_(sounds_),
      rowToHere_(sounds_),
      learn_(sounds_) {}

// ---- The window -------------------------------------------------------------------------------

bool frmFScreenB::open() {
    if (isOpen())
        ::SetWindowLongPtrW(handle(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(view_.window()));
    else if (!createWindow(view_.window()))
        return false;
    begin();
    moveToCorner();
    bringForward();
    ::SetFocus(Command4_.handle());
    return true;
}

void frmFScreenB::makeReady(HWND owner) {
    if (!isOpen())
        createWindow(owner);
}

bool frmFScreenB::createWindow(HWND owner) {
    if (!createForm(L"MelvorinfrmFScreenB", L"Full Screen", owner))
        return false;
    listed_ = 0;
    createControls(owner);
    return true;
}

// The first entries, and nothing of the song that was here before.
void frmFScreenB::begin() {
    prepared_ = false;
    lastRow_ = 0;
    lastLines_ = 1;
    sections_.clear();
    run_.forget();
    pedals_.listen();
    const auto first = [this](int id) { ::SendMessageW(item(id), CB_SETCURSEL, 0, 0); };
    for (const ControlId id : {Seconds, Seconds2, Seconds3, kCountIn})
        first(id);
    for (std::size_t number = 1; number <= 3 * kJumpRows; ++number)
        first(idAt(CB, number));
    for (std::size_t row = 1; row <= kJumpRows; ++row)
        ::CheckDlgButton(handle(), idAt(CK, row), BST_UNCHECKED);
    unrolled_.clear();
    for (const ControlId id : {Check1, kByDuration, kUnrolled})
        ::CheckDlgButton(handle(), id, BST_UNCHECKED);
    ::EnableWindow(item(Seconds), TRUE);
    for (const ControlId id : {Seconds3, kDuration})
        ::EnableWindow(item(id), FALSE);
    for (const ControlId id : {kDuration, kPlan})
        ::SetWindowTextW(item(id), L"");
    ::SetTimer(handle(), kTimer2, kTimerMs, nullptr);
}

// Its many lists take longer to make than all the rest of the view, so they stay.
void frmFScreenB::rest(HWND owner) {
    if (!isOpen())
        return;
    ::KillTimer(handle(), kTimer2);
    stop();
    pedals_.stop();
    bar_.hide();
    smallBar_.hide();
    hide();
    ::SetWindowLongPtrW(handle(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void frmFScreenB::stop() {
    run_.showPanel({});
    runClock(false);
    services_.screen.keepOn(false);
}

// In the order in which Tab walks them.
void frmFScreenB::createControls(HWND owner) {
    const Cell pace =
        gridOf(3, {label(L"Go up one line after each"),
                   numberList(Seconds, kLongestPace).least(kNumberList),
                   // kept: segunds
                   label(L"segund(s)"),
                   //
                   check(L"or the whole text in", kByDuration), edit(kDuration).least(kNumberList),
                   label(L"m:ss"),
                   //
                   check(L"Repeat the whole text", Check1),
                   numberList(Seconds3, kMostTimes).least(kNumberList), label(L"time(s)"),
                   //
                   label(L"Count in before the first line"), countInList(), label(L"step(s)")});
    Cell jumps = gridOf(6, {});
    for (std::size_t row = 1; row <= kJumpRows; ++row) {
        const Cell cells[] = {check(L"Jump from the line", idAt(CK, row)),
                              numberList(idAt(CB, 2 * row - 1), 0).least(kLineList),
                              label(L"to the line", 0, idAt(LK, row)),
                              numberList(idAt(CB, 2 * row), 0).least(kLineList),
                              numberList(idAt(CB, 10 + row), kMostTimes).least(kNumberList),
                              label(L"time(s)")};
        jumps.cells.insert(jumps.cells.end(), std::begin(cells), std::end(cells));
    }
    const Cell written =
        check(L"&Unrolled: all written out in the order in which it is played", kUnrolled);
    const Cell here = rowOf({label(L"The row takes the cursor's line:"),
                             button(rowFromHere_, kRowFromHere, u"from here"),
                             button(rowToHere_, kRowToHere, u"to here")});
    const Cell plan = label(
        L"4000-4999, 4000-4999, 4000-4999, 4000-4999, 4000-4999, 4000-4999, \u2026; 9999:59:59\r\n"
        L"The rows lead in circles for more than ten hours; Esc ends it. Rows 2, 3, 4 and 5 "
        L"never jump.",
        SS_NOPREFIX, kPlan);
    const Cell cursor =
        rowOf({label(L"The cursor is in the line number:"),
               control(L"EDIT", L"", ES_READONLY, Text1, WS_EX_CLIENTEDGE).least(kNumberList),
               label(L"Show the line:"), numberList(Seconds2, 0).least(kLineList)});
    // kept: f-keys
    const Cell keys = columnOf({label(L"Press (F1) to go up (1) one line"),
                                label(L"Press (F2) to go up (5) five lines"),
                                label(L"Press (F3) to go up (10) ten lines")});
    // Beside each other, so that all of it has room on a screen of 520 such pixels.
    const Cell top = rowOf({pace, keys.close()}).apart();
    layOut(columnOf({columnOf({top, jumps, here, plan, written, cursor}), buttons()}).apart(),
           owner);
}

// A drop-down list of the numbers from 1, the first one chosen.
Cell frmFScreenB::numberList(int id, int count) {
    Cell list = dropDown(id, CBS_DROPDOWNLIST);
    addNumbers(windowOf(list), 1, count);
    ::SendMessageW(windowOf(list), CB_SETCURSEL, 0, 0);
    return list;
}

Cell frmFScreenB::countInList() {
    Cell list = dropDown(kCountIn, CBS_DROPDOWNLIST);
    addNumbers(windowOf(list), 0, kMostCountIn);
    ::SendMessageW(windowOf(list), CB_SETCURSEL, 0, 0);
    return list.least(kNumberList);
}

// Two by two, each with its meaning beside it.
Cell frmFScreenB::buttons() {
    struct Entry {
        TarnelButton& button;
        int id;
        const char16_t* caption;
        int label;
        const wchar_t* meaning;
    };
    const Entry entries[] = {
        {Command4_, Command4, u"Start", LB2, L"moves the text up from the first line on"},
        {startHere_, kStartHere, u"From Here", -1, L"begins at the line on top\r\n(Ctrl+Enter)"},
        {Command6_, Command6, u"Update", LB3, L"counts the lines anew after the text was edited"},
        {Command8_, Command8, u"Reduce", -1, L"leaves the screen to the text and a small bar"},
        {learn_, kPedals, u"Pedals...", -1, L"learns which key or MIDI pedal does what"},
        {Command7_, Command7, u"Exit", -1, L"goes back to the editor"},
    };
    Cell cells = gridOf(4, {});
    for (const Entry& entry : entries) {
        const DWORD style = WS_TABSTOP | (entry.id == Command4 ? BS_DEFPUSHBUTTON : 0U);
        cells.cells.push_back(button(entry.button, entry.id, entry.caption, style));
        cells.cells.push_back(
            label(entry.meaning, entry.label > 0 ? SS_NOTIFY : 0U, entry.label).least(kMeaning));
    }
    return cells;
}

bool frmFScreenB::translate(MSG& message) {
    return bar_.translate(message) || smallBar_.translate(message) || Form::translate(message);
}

Monitor frmFScreenB::monitor() const {
    RECT own{};
    ::GetWindowRect(view_.window(), &own);
    return services_.screen.monitorOf(areaOf(own));
}

void frmFScreenB::moveToCorner() {
    RECT own{};
    ::GetWindowRect(handle(), &own);
    const Area place = placePanel(monitor().work, areaOf(own).width, areaOf(own).height);
    moveTopLeft(handle(), place.left, place.top);
}

void frmFScreenB::enableAll(bool enabled) {
    for (const HWND window : {handle(), bar_.handle(), smallBar_.handle()}) {
        if (window != nullptr)
            ::EnableWindow(window, enabled ? TRUE : FALSE);
    }
}

void frmFScreenB::arrange() {
    if (!isOpen())
        return;
    moveToCorner();
    moveBar(bar_.handle(), monitor().whole);
    moveBar(smallBar_.handle(), monitor().whole);
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT frmFScreenB::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_TIMER:
            onTimer(wParam);
            return 0;
        case DM_GETDEFID:
            return MAKELRESULT(Command4, DC_HASDEFID);
        case WM_DESTROY:
            // Here, because the panel also goes with the windows that own it.
            stop();
            pedals_.stop();
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void frmFScreenB::onClose() {
    view_.leave();
}

// Where a list has the focus, it takes the keys of a pedal; and Enter there means the number, which
// is chosen already, not the start of a run.
bool frmFScreenB::onKeyDown(WPARAM key) {
    if (key == VK_RETURN && ::GetKeyState(VK_CONTROL) < 0) {
        startHere();
        return true;
    }
    if (key == VK_RETURN && isClosedList(::GetFocus()))
        return true;
    const bool isPaging = key == VK_PRIOR || key == VK_NEXT;
    const LRESULT code = ::SendMessageW(::GetFocus(), WM_GETDLGCODE, 0, 0);
    return isPaging && !(code & DLGC_WANTARROWS) && view_.takesKey(key);
}

void frmFScreenB::onCommand(int control, int code) {
    switch (control) {
        case Seconds2:
            if (code == CBN_SELCHANGE)
                view_.bringToTop(shownLineOf(chosen(Seconds2)));
            break;
        case Check1:
            ::EnableWindow(item(Seconds3), ::IsDlgButtonChecked(handle(), Check1) == BST_CHECKED);
            tellPlan();
            break;
        case kByDuration: {
            const bool on = ::IsDlgButtonChecked(handle(), kByDuration) == BST_CHECKED;
            ::EnableWindow(item(kDuration), on);
            ::EnableWindow(item(Seconds), !on);
            if (on)
                ::SetFocus(item(kDuration));
            tellPlan();
            break;
        }
        case kUnrolled:
            unroll();
            break;
        case kRowFromHere:
        case kRowToHere:
            takeCaret(control == kRowToHere);
            break;
        case kStartHere:
            startHere();
            break;
        case kPedals:
            learnPedals();
            break;
        case LB2:
        case Command4:
            start();
            break;
        case LB3:
        case Command6:
            update();
            break;
        case Command8:
            reduce();
            break;
        default:
            if (control > CB && control <= CB + 10)
                lastRow_ = static_cast<std::size_t>(control - CB + 1) / 2;
            else if (control > CK && control <= CK + static_cast<int>(kJumpRows))
                lastRow_ = static_cast<std::size_t>(control - CK);
            // Whatever is chosen or typed changes the run.
            if (code == CBN_SELCHANGE || (code == EN_CHANGE && control == kDuration) ||
                (control > CK && control < LK))
                tellPlan();
            else
                Form::onCommand(control, code);
            break;
    }
}

void frmFScreenB::onTimer(UINT_PTR timer) {
    if (timer == kTimer1) {
        run_.tick();
        restPointer();
        return;
    }
    ::KillTimer(handle(), timer);
    if (timer == kTimer2)
        prepare();
}

void frmFScreenB::showCursorLine(int line) {
    if (isOpen())
        ::SetWindowTextW(item(Text1), wide(cursorLineText(songLineOf(line))));
}

// ---- Commands ---------------------------------------------------------------------------------

// From line 1, or from another one.
void frmFScreenB::startAt(std::optional<int> line) {
    prepare();
    view_.finishEdits();
    run_.setLineCount(view_.lineCount());
    if (::IsDlgButtonChecked(handle(), kByDuration) == BST_CHECKED && !duration()) {
        ::SetFocus(item(kDuration));
        ::SendMessageW(item(kDuration), EM_SETSEL, 0, -1);
        return;
    }
    const bool started = line ? run_.startAt(*line, settings(), view_.lineCount())
                              : run_.start(settings(), view_.lineCount());
    if (!started)
        return;
    view_.bringToTop(run_.currentLine());
    if (!bar_.open(handle(), monitor().whole)) {
        run_.showPanel(settings());
        return;
    }
    tellNote();
    ::ShowWindow(handle(), SW_HIDE);
    services_.screen.keepOn(true);
    runClock(true);
}

void frmFScreenB::update() {
    prepare();
    run_.setLineCount(view_.lineCount());
    fillLineLists();
    tellSections();
    tellPlan();
}

void frmFScreenB::reduce() {
    prepare();
    if (!view_.reduce())
        return;
    if (!smallBar_.open(handle(), monitor().whole)) {
        view_.enlarge();
        return;
    }
    ::ShowWindow(handle(), SW_HIDE);
}

void frmFScreenB::pauseOrResume() {
    view_.finishEdits();
    if (run_.isRunning())
        run_.pause();
    else
        run_.resume();
    bar_.showPaused(run_.isPaused());
    runClock(run_.isRunning());
}

void frmFScreenB::pause() {
    if (run_.isRunning())
        pauseOrResume();
}

void frmFScreenB::showPanel() {
    run_.showPanel(settings());
    runClock(false);
    services_.screen.keepOn(false);
    // The text that stays has all that was typed; without the other there is no view to lead.
    if (!view_.enlarge())
        return view_.leave();
    leftTop_ = view_.topLine();
    tellPlan();
    ::ShowWindow(handle(), SW_SHOW);
    ::RedrawWindow(handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    bar_.hide();
    smallBar_.hide();
    ::SetActiveWindow(handle());
    ::SetFocus(Command4_.handle());
}

void frmFScreenB::runClock(bool on) {
    if (on) {
        ::SetTimer(handle(), kTimer1, kTimerMs, nullptr);
    } else {
        ::KillTimer(handle(), kTimer1);
        hidePointer(false);
    }
}

// ---- The run ----------------------------------------------------------------------------------

void frmFScreenB::showLine(int line) {
    view_.bringToTop(line);
}

void frmFScreenB::showCaption(TextView caption) {
    if (bar_.isOpen())
        bar_.setCaption(caption);
}

void frmFScreenB::showNote(const RunNote&) {
    tellNote();
}

void frmFScreenB::runEnded() {
    showPanel();
}

void frmFScreenB::restPointer() {
    POINT point{};
    ::GetCursorPos(&point);
    hidePointer(rest_.isHidden(services_.clock.nowMs(), static_cast<int>(point.x),
                               static_cast<int>(point.y), run_.isRunning()));
}

void frmFScreenB::hidePointer(bool hidden) {
    if (hidden != pointerHidden_)
        ::ShowCursor(hidden ? FALSE : TRUE);
    pointerHidden_ = hidden;
}

bool frmFScreenB::refuses(WPARAM systemCommand) const {
    const WPARAM command = systemCommand & 0xFFF0;
    return (command == SC_SCREENSAVE || command == SC_MONITORPOWER) &&
           (run_.isRunning() || run_.isPaused());
}

}  // namespace melvorin
