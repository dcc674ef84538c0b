#include "app/frmAbout.h"

#include "base/Paths.h"
#include "dictionary/SqliteSource.h"
#include "platform/ResourceIds.h"

namespace melvorin {
namespace {

constexpr int kIcon = 64;  // pixels at 96 dpi
constexpr int kTitlePoints = 15;

constexpr const wchar_t* kLicenceFolder = L"Licences";
constexpr const wchar_t* kTitle = L"Melvorin " MELVORIN_VERSION;

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
    ::SetFocus(ok_.handle());
    runModal(owner);
    return true;
}

bool frmAbout::createWindow(HWND owner) {
    if (!createForm(L"MelvorinfrmAbout", L"About Melvorin", owner))
        return false;
    const int side = scaled(kIcon);
    icon_.reset(
        static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kProgramIcon),
                                        IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
    const Cell icon = control(L"STATIC", L"", SS_ICON | SS_REALSIZECONTROL, -1);
    ::SendMessageW(windowOf(icon), STM_SETICON, reinterpret_cast<WPARAM>(icon_.get()), 0);

    // A screen reader reads the label before a box as the name of the box.
    const Cell title = label(kTitle, SS_NOPREFIX);
    LOGFONTW font{};
    ::GetObjectW(uiFont(), sizeof font, &font);
    font.lfHeight = -::MulDiv(kTitlePoints, systemDpi(), 72);
    font.lfWeight = FW_BOLD;
    titleFont_.reset(::CreateFontIndirectW(&font));
    ::SendMessageW(windowOf(title), WM_SETFONT, reinterpret_cast<WPARAM>(titleFont_.get()), FALSE);
    const Cell text =
        control(L"EDIT", wide(description()), WS_TABSTOP | ES_MULTILINE | ES_READONLY, kText);
    ::SendMessageW(windowOf(text), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);

    layOut(columnOf({rowOf({columnOf({icon.least(kIcon, kIcon)}), blank(),
                            columnOf({title, text.least(370)})}),
                     atRight({button(licences_, kLicences, u"&Licences"),
                              button(ok_, kOk, u"OK", WS_TABSTOP | BS_DEFPUSHBUTTON)})})
               .apart(),
           owner);
    return true;
}

void frmAbout::onCommand(int id, int event) {
    if (id == kLicences)
        openLicences();
    else if (id == kOk)
        endModal();
    else
        Form::onCommand(id, event);
}

void frmAbout::openLicences() {
    const Text folder = joinPath(services_.program.folder(), textOf(kLicenceFolder));
    const Result<Done> opened = services_.shell.open(folder);
    if (!opened)
        reportFailure(services_.messages,
                      u"Melvorin cannot open \"" + folder + u"\".\r\n\r\n" + opened.cause);
}

}  // namespace melvorin
