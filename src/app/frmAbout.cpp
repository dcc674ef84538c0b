#include "app/frmAbout.h"

#include "base/Paths.h"
#include "dictionary/SqliteSource.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kMargin = 16;
constexpr int kIcon = 64;
constexpr int kTextLeft = kMargin + kIcon + kMargin;
constexpr int kTextWidth = 370;
constexpr int kTitleHeight = 32;
constexpr int kTextTop = kMargin + kTitleHeight + 4;
constexpr int kTextHeight = 150;
constexpr int kButtonHeight = 26;
constexpr int kLicencesWidth = 110;
constexpr int kOkWidth = 88;
constexpr int kGap = 8;
constexpr int kWidth = kTextLeft + kTextWidth + kMargin;
constexpr int kButtonTop = kTextTop + kTextHeight + kMargin;
constexpr int kHeight = kButtonTop + kButtonHeight + kMargin;
constexpr int kTitlePoints = 15;

constexpr const wchar_t* kLicenceFolder = L"Licences";
constexpr const wchar_t* kTitle = L"Melvorin " MELVORIN_VERSION;

RECT placeOf(int left, int top, int width, int height) {
    return {scaled(left), scaled(top), scaled(left + width), scaled(top + height)};
}

Text description() {
    return u"An editor for chord charts: words with the chords above them.\r\n\r\n"
           u"You may use Melvorin free of charge, copy it, pass it on and change it. What you make "
           u"with it is yours.\r\n\r\n"
           u"In this program are:\r\n"
           u"SQLite " +
           sqliteVersion() +
           u", in the public domain\r\n"
           u"GNU C++ runtime " +
           decimal(__GNUC__) +
           u", GPL with runtime exception\r\n"
           u"mingw-w64 runtime " +
           decimal(__MINGW64_VERSION_MAJOR) + u", several free licences";
}

}  // namespace

bool frmAbout::show(HWND owner) {
    if (!createWindow(owner))
        return false;
    centreOver(handle(), owner);
    ::SetFocus(ok_.handle());
    runModal(owner);
    return true;
}

bool frmAbout::createWindow(HWND owner) {
    if (!create(smallWindow(L"MelvorinfrmAbout", L"About Melvorin", scaled(kWidth), scaled(kHeight),
                            owner)))
        return false;
    const int side = scaled(kIcon);
    icon_.reset(
        static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kProgramIcon),
                                        IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
    LOGFONTW title{};
    ::GetObjectW(uiFont(), sizeof title, &title);
    title.lfHeight = -::MulDiv(kTitlePoints, systemDpi(), 72);
    title.lfWeight = FW_BOLD;
    titleFont_.reset(::CreateFontIndirectW(&title));

    // A screen reader reads the label before a box as the name of the box.
    const HWND label = createControl(handle(), L"STATIC", kTitle, SS_LEFT | SS_NOPREFIX, -1,
                                     placeOf(kTextLeft, kMargin, kTextWidth, kTitleHeight));
    ::SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.get()), FALSE);
    const HWND text = createControl(handle(), L"EDIT", wide(description()),
                                    WS_TABSTOP | ES_MULTILINE | ES_READONLY, kText,
                                    placeOf(kTextLeft, kTextTop, kTextWidth, kTextHeight));
    ::SendMessageW(text, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);

    const int okLeft = kWidth - kMargin - kOkWidth;
    licences_.create(
        handle(), kLicences,
        placeOf(okLeft - kGap - kLicencesWidth, kButtonTop, kLicencesWidth, kButtonHeight),
        u"&Licences");
    ok_.create(handle(), kOk, placeOf(okLeft, kButtonTop, kOkWidth, kButtonHeight), u"OK",
               WS_TABSTOP | BS_DEFPUSHBUTTON);
    return true;
}

LRESULT frmAbout::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_COMMAND:
            if (LOWORD(wParam) == kLicences)
                openLicences();
            else if (LOWORD(wParam) == kOk || LOWORD(wParam) == IDCANCEL)
                endModal();
            return 0;
        case WM_CLOSE:
            endModal();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void frmAbout::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

void frmAbout::onPaint() {
    const PaintScope paint(handle());
    const int side = scaled(kIcon);
    if (icon_)
        ::DrawIconEx(paint.dc(), scaled(kMargin), scaled(kMargin), icon_.get(), side, side, 0,
                     nullptr, DI_NORMAL);
}

void frmAbout::openLicences() {
    const Text folder = joinPath(services_.program.folder(), textOf(kLicenceFolder));
    const Result<Done> opened = services_.shell.open(folder);
    if (!opened)
        reportFailure(services_.messages,
                      u"Melvorin cannot open \"" + folder + u"\".\r\n\r\n" + opened.cause);
}

}  // namespace melvorin
