#include "platform/Win32Printers.h"

#include <commdlg.h>
// The codes of failures; commdlg.h first.
#include <cderr.h>

#include <algorithm>
#include <utility>

namespace melvorin {
namespace {

// A block of the dialog's, as long as it is looked at.
class LockedGlobal {
  public:
    explicit LockedGlobal(HGLOBAL block) : block_(block), data_(::GlobalLock(block)) {}
    LockedGlobal(const LockedGlobal&) = delete;
    LockedGlobal& operator=(const LockedGlobal&) = delete;
    ~LockedGlobal() {
        if (data_ != nullptr)
            ::GlobalUnlock(block_);
    }
    void* data() const { return data_; }

  private:
    HGLOBAL block_;
    void* data_;
};

short paperCode(PaperName paper) {
    switch (paper) {
        case PaperName::A5:
            return DMPAPER_A5;
        case PaperName::Letter:
            return DMPAPER_LETTER;
        case PaperName::Legal:
            return DMPAPER_LEGAL;
        default:
            return DMPAPER_A4;
    }
}

Text printerOf(HGLOBAL names) {
    const LockedGlobal locked(names);
    const auto* const known = static_cast<const DEVNAMES*>(locked.data());
    if (known == nullptr)
        return {};
    return Text(textOf(reinterpret_cast<const wchar_t*>(known) + known->wDeviceOffset));
}

std::string settingsOf(HGLOBAL settings) {
    const LockedGlobal locked(settings);
    const auto* const known = static_cast<const DEVMODEW*>(locked.data());
    if (known == nullptr)
        return {};
    return {reinterpret_cast<const char*>(known),
            std::size_t{known->dmSize} + known->dmDriverExtra};
}

Text causeOf(DWORD error) {
    if (error == PDERR_NODEFAULTPRN || error == PDERR_NODEVICES)
        return u"There is no printer that is the usual one. Choose one in the settings of Windows, "
               u"or save "
               u"the song as PDF.";
    if (error == PDERR_PRINTERNOTFOUND || error == PDERR_DEFAULTDIFFERENT)
        return u"The printer is no longer there.";
    return u"The printer's driver refuses (error " + decimal(static_cast<std::int64_t>(error)) +
           u").";
}

}  // namespace

bool Win32Printers::usesLetter() {
    wchar_t code[4] = L"";
    ::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IPAPERSIZE, code, 4);
    const TextView paper = textOf(code);
    return paper == u"1" || paper == u"5";
}

bool Win32Printers::takeDefault() {
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.Flags = PD_RETURNDEFAULT | PD_NOWARNING;
    if (!::PrintDlgW(&dialog))
        return false;
    settings_.reset(dialog.hDevMode);
    names_.reset(dialog.hDevNames);
    return true;
}

void Win32Printers::setPaper(const PrintRequest& request) {
    const LockedGlobal locked(settings_.get());
    auto* const settings = static_cast<DEVMODEW*>(locked.data());
    if (settings == nullptr)
        return;
    settings->dmFields |= DM_PAPERSIZE | DM_ORIENTATION;
    settings->dmFields &= ~static_cast<DWORD>(DM_PAPERLENGTH | DM_PAPERWIDTH | DM_FORMNAME);
    settings->dmPaperSize = paperCode(request.paper);
    settings->dmOrientation = request.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
}

Result<std::optional<PrintChoice>> Win32Printers::choose(const PrintRequest& request) {
    if (!settings_ && !takeDefault())
        return Failure{causeOf(::CommDlgExtendedError())};
    setPaper(request);
    constexpr unsigned most = 0xFFFF;
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner_.current();
    // The dialog owns the blocks meanwhile, and may give others back.
    dialog.hDevMode = settings_.release();
    dialog.hDevNames = names_.release();
    dialog.Flags = PD_NOSELECTION | PD_ALLPAGES | PD_COLLATE | PD_NOWARNING;
    dialog.nMinPage = dialog.nFromPage = 1;
    dialog.nMaxPage = dialog.nToPage = static_cast<WORD>(std::min(request.pages, most));
    dialog.nCopies = 1;
    const bool chosen = ::PrintDlgW(&dialog) != 0;
    settings_.reset(dialog.hDevMode);
    names_.reset(dialog.hDevNames);
    if (!chosen) {
        const DWORD error = ::CommDlgExtendedError();
        if (error != 0) {
            // The next time begins with what there is then.
            settings_.reset();
            names_.reset();
            return Failure{causeOf(error)};
        }
        return Result<std::optional<PrintChoice>>::success(std::nullopt);
    }
    PrintChoice choice{.printer = printerOf(names_.get()),
                       .settings = settingsOf(settings_.get()),
                       .from = 1,
                       .to = request.pages,
                       .copies = std::max<unsigned>(dialog.nCopies, 1),
                       .collates = (dialog.Flags & PD_COLLATE) != 0,
                       .output = {}};
    if ((dialog.Flags & PD_PAGENUMS) != 0) {
        choice.from = dialog.nFromPage;
        choice.to = std::max(dialog.nFromPage, dialog.nToPage);
    }
    if ((dialog.Flags & PD_PRINTTOFILE) != 0)
        choice.output = u"FILE:";
    return Result<std::optional<PrintChoice>>::success(std::move(choice));
}

}  // namespace melvorin
