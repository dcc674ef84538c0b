#include "paper/frmPreview.h"

#include <windowsx.h>

#include <algorithm>

#include "paper/PaperNotes.h"

namespace melvorin {
namespace {

struct NamedView {
    const wchar_t* caption;
    PreviewView view;
};
using enum PreviewView::Kind;
constexpr NamedView kViews[] = {
    {L"One page", {OnePage}},     {L"Two pages", {TwoPages}}, {L"All pages", {AllPages}},
    {L"Page width", {PageWidth}}, {L"50 %", {Percent, 50}},   {L"75 %", {Percent, 75}},
    {L"100 %", {Percent, 100}},   {L"150 %", {Percent, 150}}, {L"200 %", {Percent, 200}}};
// Of the pages, at 96 dpi.
constexpr int kWidth = 260;
constexpr int kHeight = 200;
constexpr Size kUsual{1000, 720};
constexpr int kNotesWidth = 240;
constexpr int kNotesHeight = 46;  // three lines

}  // namespace

void frmPreview::show(HWND owner) {
    if (!createWindow(owner))
        return;
    take(taken_);
    showView();
    ::SetFocus(canvas_.handle());
    runModal(owner);
}

Cell frmPreview::viewList() {
    Cell made = dropDown(kView, CBS_DROPDOWNLIST);
    for (const NamedView& named : kViews)
        ::SendMessageW(windowOf(made), CB_ADDSTRING, 0, lparamOf(named.caption));
    return made;
}

bool frmPreview::createWindow(HWND owner) {
    if (!createForm(L"MelvorinfrmPreview", L"Print Preview", owner) ||
        !canvas_.open(handle(), kPages))
        return false;
    taken_ = desk_.choices();
    place_ = space({scaled(kWidth), scaled(kHeight)}).grows(1, 1);
    const Cell viewWord = label(L"Sho&w:");
    const Cell view = viewList();
    const Cell controls = choiceControls(taken_);
    const Cell said =
        label(L"Page 999 of 999, set in 11.25 points, in 2 columns", SS_NOPREFIX, kSaid);
    const Cell notes = label(L"", SS_NOPREFIX, kNotes).least(kNotesWidth, kNotesHeight).grows(1, 0);
    const Cell pages = rowOf(
        {place_, columnOf({rowOf({viewWord, view.grows(1, 0)}), controls, blank()}).grows(0, 1)});
    const Cell foot =
        rowOf({columnOf({said, notes}).close().grows(1, 0),
               button(print_, kPrint, u"P&rint...", WS_TABSTOP | BS_DEFPUSHBUTTON),
               button(savePdf_, kSavePdf, u"Sa&ve as PDF..."), button(close_, kClose, u"Close")});
    layOut(columnOf({pages, foot}).apart(), owner, kUsual);
    return true;
}

void frmPreview::onPlaced() {
    const Area area = placeOf(place_);
    ::SetWindowPos(canvas_.handle(), HWND_TOP, area.left, area.top, area.width, area.height,
                   SWP_NOACTIVATE);
}

LRESULT frmPreview::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // The wheel moves the pages, wherever the focus is.
    if (message == WM_MOUSEWHEEL)
        return ::SendMessageW(canvas_.handle(), message, wParam, lParam);
    return PageForm::onMessage(message, wParam, lParam);
}

bool frmPreview::onKeyDown(WPARAM key) {
    const bool withControl = ::GetKeyState(VK_CONTROL) < 0;
    if (withControl && (key == VK_ADD || key == VK_OEM_PLUS))
        canvas_.zoom(true);
    else if (withControl && (key == VK_SUBTRACT || key == VK_OEM_MINUS))
        canvas_.zoom(false);
    else if (withControl && (key == u'0' || key == VK_NUMPAD0))
        canvas_.setView({OnePage});
    else if (withControl && key == u'P')
        onCommand(kPrint, BN_CLICKED);
    else if (key == VK_NEXT || key == VK_PRIOR)
        return ::GetFocus() != canvas_.handle() && !withControl && canvas_.onKey(key);
    else
        return false;
    showView();
    return true;
}

void frmPreview::onCommand(int id, int event) {
    if (id == kView && event == CBN_SELCHANGE) {
        const LRESULT row = ::SendMessageW(item(kView), CB_GETCURSEL, 0, 0);
        canvas_.setView(kViews[std::max<LRESULT>(row, 0)].view);
    } else if (isChoice(id, event)) {
        const PageChoices chosen = choices();
        desk_.store(chosen);
        take(chosen);
    } else if (id == kPrint) {
        desk_.print(handle(), source_);
    } else if (id == kSavePdf) {
        desk_.savePdf(source_);
    } else {
        PageForm::onCommand(id, event);
    }
}

void frmPreview::take(const PageChoices& choices) {
    const CursorScope hourglass(IDC_WAIT);
    taken_ = choices;
    laid_ = desk_.layOut(source_, setupOf(choices), fonts_);
    canvas_.show(laid_.document, fonts_);
    ::SetWindowTextW(item(kNotes), wide(paperNotes(laid_, fonts_)));
}

// The list names the view where it knows it.
void frmPreview::showView() {
    const auto* const found =
        std::find_if(std::begin(kViews), std::end(kViews),
                     [this](const NamedView& named) { return named.view == canvas_.view(); });
    ::SendMessageW(item(kView), CB_SETCURSEL,
                   found == std::end(kViews) ? static_cast<WPARAM>(-1)
                                             : static_cast<WPARAM>(found - std::begin(kViews)),
                   0);
}

void frmPreview::tell() {
    if (laid_.document.pages.empty())
        return;
    const Text said = pageInWords(laid_.facts, canvas_.page(), laid_.document.pages.size());
    if (windowText(item(kSaid)) != said)
        ::SetWindowTextW(item(kSaid), wide(said));
    showView();
}

}  // namespace melvorin
