#include "app/frmCodePage.h"

#include "base/ProgramSettings.h"

namespace melvorin {
std::optional<std::size_t> frmCodePage::ask(HWND owner, TextView fileName,
                                            const std::vector<CodePageReading>& readings) {
    readings_ = readings;
    taken_.reset();
    if (!createWindow(owner, fileName))
        return std::nullopt;
    showPreview();
    ::SetFocus(item(kList));
    runModal(owner);
    return taken_;
}

bool frmCodePage::createWindow(HWND owner, TextView fileName) {
    if (!createForm(L"MelvorinfrmCodePage", L"Open Text", owner))
        return false;
    const Text question =
        u"\"" + Text(fileName) +
        u"\" does not tell its encoding. Choose the one in which the words can be "
        u"read; it is kept when you save.";
    const Cell words = label(wide(question), SS_NOPREFIX | SS_EDITCONTROL).least(588);
    // A screen reader reads the label before a control as its name.
    const Cell encodings = columnOf({label(L"&Encoding:"), createList()}).close();
    const Cell text = columnOf({label(L"&The text in it:"), createPreview()}).close();
    layOut(columnOf({words, rowOf({encodings, text}),
                     atRight({button(open_, kOpen, u"Open", WS_TABSTOP | BS_DEFPUSHBUTTON),
                              button(cancel_, kCancel, u"Cancel")})})
               .apart(),
           owner);
    return true;
}

Cell frmCodePage::createList() {
    const Cell made = list(kList);
    for (const CodePageReading& reading : readings_)
        ::SendMessageW(windowOf(made), LB_ADDSTRING, 0, lparamOf(wide(Text(reading.name))));
    ::SendMessageW(windowOf(made), LB_SETCURSEL, 0, 0);
    return made.least(190, 230).grows(0, 1);
}

Cell frmCodePage::createPreview() {
    const Cell preview =
        songPreview(kPreview, editorFontFace(services_), kEditorFontPoints, previewFont_);
    return preview.least(390, 230).grows(1, 1);
}

LRESULT frmCodePage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CTLCOLORSTATIC:
            // The text stands on paper, as it will in the editor.
            if (reinterpret_cast<HWND>(lParam) == item(kPreview))
                return onPaper(wParam);
            return passOn(message, wParam, lParam);
        case DM_GETDEFID:
            return MAKELRESULT(kOpen, DC_HASDEFID);
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void frmCodePage::onCommand(int id, int event) {
    if (id == kList && event == LBN_SELCHANGE)
        showPreview();
    else if (id == kOpen || (id == kList && event == LBN_DBLCLK))
        take();
    else
        Form::onCommand(id, event);
}

void frmCodePage::showPreview() {
    const LRESULT chosen = ::SendMessageW(item(kList), LB_GETCURSEL, 0, 0);
    if (chosen == LB_ERR)
        return;
    ::SetWindowTextW(item(kPreview), wide(readings_[static_cast<std::size_t>(chosen)].preview));
}

void frmCodePage::take() {
    const LRESULT chosen = ::SendMessageW(item(kList), LB_GETCURSEL, 0, 0);
    if (chosen == LB_ERR)
        return;
    taken_ = static_cast<std::size_t>(chosen);
    endModal();
}

}  // namespace melvorin
