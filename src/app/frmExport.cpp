#include "app/frmExport.h"

#include <array>

#include "base/ProgramSettings.h"
#include "base/TextFormat.h"
#include "chords/ChordProExport.h"

namespace melvorin {
namespace {

constexpr std::size_t kPreviewChars = 4000;

// In the order of `SongFormat` and `ChordNames`.
constexpr std::array kFormatNames{L"ChordPro (.cho)", L"Text (.txt)", L"Web page (.html)"};
constexpr std::array kChordNames{L"As they are written here", L"As other programs write them",
                                 L"Numbers of the scale", L"German (H, B, Fis)", L"Do, Re, Mi"};

TextView firstLines(TextView chart) {
    if (chart.size() <= kPreviewChars)
        return chart;
    const std::size_t end = chart.find(u'\r', kPreviewChars);
    return chart.substr(0, end);
}

}  // namespace

std::optional<ExportChoice> frmExport::ask(HWND owner, TextView chart, ExportChoice choice) {
    taken_.reset();
    whole_ = chart;
    chart_ = firstLines(chart);
    if (!createWindow(owner))
        return std::nullopt;
    ::SendMessageW(item(kFormats), LB_SETCURSEL, static_cast<WPARAM>(choice.format), 0);
    ::SendMessageW(item(kNames), LB_SETCURSEL, static_cast<WPARAM>(choice.names), 0);
    showPreview();
    ::SetFocus(item(kFormats));
    runModal(owner);
    return taken_;
}

bool frmExport::createWindow(HWND owner) {
    if (!createForm(L"MelvorinfrmExport", L"Export", owner))
        return false;
    const auto listed = [this](const wchar_t* title, int id, const auto& entries, int height) {
        const Cell caption = label(title);
        const Cell made = list(id);
        for (const wchar_t* entry : entries)
            ::SendMessageW(windowOf(made), LB_ADDSTRING, 0, lparamOf(entry));
        return columnOf({caption, made.least(210, height)}).close();
    };
    const Cell formats = listed(L"&Format:", kFormats, kFormatNames, 66);
    const Cell names = listed(L"&Chords:", kNames, kChordNames, 100);
    const Cell text = columnOf({label(L"&The first lines:"), createPreview()}).close();
    layOut(columnOf({rowOf({columnOf({formats, names, blank()}), text}),
                     atRight({button(export_, kExport, u"Export...", WS_TABSTOP | BS_DEFPUSHBUTTON),
                              button(cancel_, kCancel, u"Cancel")})})
               .apart(),
           owner);
    return true;
}

Cell frmExport::createPreview() {
    const Cell preview =
        songPreview(kPreview, editorFontFace(services_), kEditorFontPoints, previewFont_);
    return preview.least(430, 260).grows(1, 1);
}

LRESULT frmExport::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // The text stands on paper, as it will in the file.
    if (message == WM_CTLCOLORSTATIC && reinterpret_cast<HWND>(lParam) == item(kPreview))
        return onPaper(wParam);
    return Form::onMessage(message, wParam, lParam);
}

void frmExport::onCommand(int id, int event) {
    const bool isList = id == kFormats || id == kNames;
    if (isList && event == LBN_SELCHANGE) {
        showPreview();
    } else if (id == kExport || (isList && event == LBN_DBLCLK)) {
        taken_ = marked();
        endModal();
    } else {
        Form::onCommand(id, event);
    }
}

ExportChoice frmExport::marked() const {
    const auto chosen = [this](int id) {
        const LRESULT row = ::SendMessageW(item(id), LB_GETCURSEL, 0, 0);
        return row == LB_ERR ? 0 : static_cast<int>(row);
    };
    return {static_cast<SongFormat>(chosen(kFormats)), static_cast<ChordNames>(chosen(kNames))};
}

// A page shows the chart as a text does. The whole song tells what its names are, and its key.
void frmExport::showPreview() {
    const ExportChoice choice = marked();
    const bool isChordPro = choice.format == SongFormat::ChordPro;
    Text shown;
    if (chart_.size() == whole_.size() || choice.names == ChordNames::House) {
        shown =
            isChordPro ? exportChordPro(chart_, choice.names) : exportText(chart_, choice.names);
    } else {
        const SongChordNames names(whole_, choice.names);
        shown = isChordPro ? exportChordPro(chart_, names) : exportText(chart_, names);
    }
    ::SetWindowTextW(item(kPreview), wide(toCrLf(shown).chars));
}

}  // namespace melvorin
