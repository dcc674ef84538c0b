#include "app/frmCodePage.h"

#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kTextHeight = 36;
constexpr int kLabelHeight = 18;
constexpr int kListWidth = 190;
constexpr int kPreviewWidth = 390;
constexpr int kListHeight = 230;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 26;
constexpr int kWidth = kMargin + kListWidth + kGap + kPreviewWidth + kMargin;
constexpr int kLabelTop = kMargin + kTextHeight + kGap;
constexpr int kListTop = kLabelTop + kLabelHeight;
constexpr int kButtonTop = kListTop + kListHeight + kMargin;
constexpr int kHeight = kButtonTop + kButtonHeight + kMargin;
constexpr int kPreviewLeft = kMargin + kListWidth + kGap;

RECT placeOf(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
}

}  // namespace

std::optional<std::size_t> frmCodePage::ask(HWND owner, TextView fileName,
                                            const std::vector<CodePageReading>& readings) {
    readings_ = readings;
    taken_.reset();
    if (!createWindow(owner, fileName))
        return std::nullopt;
    showPreview();
    centreOver(handle(), owner);
    ::SetFocus(::GetDlgItem(handle(), kList));
    runModal(owner);
    return taken_;
}

bool frmCodePage::createWindow(HWND owner, TextView fileName) {
    if (!create(smallWindow(L"MelvorinfrmCodePage", L"Open Text", scaled(kWidth), scaled(kHeight),
                            owner)))
        return false;
    const Text question =
        u"\"" + Text(fileName) +
        u"\" does not tell its encoding. Choose the one in which the words can be "
        u"read; it is kept when you save.";
    createControl(handle(), L"STATIC", wide(question), SS_LEFT | SS_NOPREFIX, -1,
                  placeOf(kMargin, kMargin, kWidth - 2 * kMargin, kTextHeight));

    // A screen reader reads the label before a control as its name.
    createControl(handle(), L"STATIC", L"&Encoding:", SS_LEFT, -1,
                  placeOf(kMargin, kLabelTop, kListWidth, kLabelHeight));
    const HWND list =
        createControl(handle(), L"LISTBOX", L"",
                      WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                      kList, placeOf(kMargin, kListTop, kListWidth, kListHeight));
    for (const CodePageReading& reading : readings_)
        ::SendMessageW(list, LB_ADDSTRING, 0, lparamOf(wide(Text(reading.name))));
    ::SendMessageW(list, LB_SETCURSEL, 0, 0);

    createControl(handle(), L"STATIC", L"&The text in it:", SS_LEFT, -1,
                  placeOf(kPreviewLeft, kLabelTop, kPreviewWidth, kLabelHeight));
    const HWND preview =
        createControl(handle(), L"EDIT", L"",
                      WS_TABSTOP | WS_BORDER | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE |
                          ES_READONLY | ES_AUTOHSCROLL,
                      kPreview, placeOf(kPreviewLeft, kListTop, kPreviewWidth, kListHeight));
    previewFont_.reset(::CreateFontW(-::MulDiv(kEditorFontPoints, systemDpi(), 72), 0, 0, 0,
                                     FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                     OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                     FIXED_PITCH | FF_MODERN, wide(editorFontFace(services_))));
    ::SendMessageW(preview, WM_SETFONT, reinterpret_cast<WPARAM>(previewFont_.get()), FALSE);

    const int cancelLeft = kWidth - kMargin - kButtonWidth;
    open_.create(handle(), kOpen,
                 placeOf(cancelLeft - kGap - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight),
                 u"Open", WS_TABSTOP | BS_DEFPUSHBUTTON);
    cancel_.create(handle(), kCancel, placeOf(cancelLeft, kButtonTop, kButtonWidth, kButtonHeight),
                   u"Cancel");
    return true;
}

LRESULT frmCodePage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_CTLCOLORSTATIC: {
            // The text stands on paper, as it will in the editor.
            if (::GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) != kPreview)
                return passOn(message, wParam, lParam);
            const HDC dc = reinterpret_cast<HDC>(wParam);
            ::SetTextColor(dc, ::GetSysColor(COLOR_WINDOWTEXT));
            ::SetBkColor(dc, ::GetSysColor(COLOR_WINDOW));
            return reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_WINDOW));
        }
        case DM_GETDEFID:
            return MAKELRESULT(kOpen, DC_HASDEFID);
        case WM_CLOSE:
            endModal();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void frmCodePage::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

void frmCodePage::onCommand(int id, int event) {
    if (id == kList && event == LBN_SELCHANGE)
        showPreview();
    else if (id == kOpen || (id == kList && event == LBN_DBLCLK))
        take();
    else if (id == kCancel)
        endModal();
}

void frmCodePage::showPreview() {
    const LRESULT chosen = ::SendMessageW(::GetDlgItem(handle(), kList), LB_GETCURSEL, 0, 0);
    if (chosen == LB_ERR)
        return;
    ::SetWindowTextW(::GetDlgItem(handle(), kPreview),
                     wide(readings_[static_cast<std::size_t>(chosen)].preview));
}

void frmCodePage::take() {
    const LRESULT chosen = ::SendMessageW(::GetDlgItem(handle(), kList), LB_GETCURSEL, 0, 0);
    if (chosen == LB_ERR)
        return;
    taken_ = static_cast<std::size_t>(chosen);
    endModal();
}

}  // namespace melvorin
