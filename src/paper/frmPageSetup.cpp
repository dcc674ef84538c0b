#include "paper/frmPageSetup.h"

namespace melvorin {

std::optional<PageChoices> frmPageSetup::ask(HWND owner, const PageChoices& now) {
    taken_.reset();
    if (!createForm(L"MelvorinfrmPageSetup", L"Page Setup", owner))
        return std::nullopt;
    const Cell controls = choiceControls(now);
    layOut(columnOf({controls, atRight({button(ok_, kOk, u"OK", WS_TABSTOP | BS_DEFPUSHBUTTON),
                                        button(cancel_, kCancel, u"Cancel")})})
               .apart(),
           owner);
    ::SetFocus(item(kPaper));
    runModal(owner);
    return taken_;
}

void frmPageSetup::onCommand(int id, int event) {
    if (isChoice(id, event)) {
        choices();
    } else if (id == kOk) {
        taken_ = choices();
        endModal();
    } else {
        PageForm::onCommand(id, event);
    }
}

}  // namespace melvorin
