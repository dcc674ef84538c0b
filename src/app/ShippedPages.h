// The files beside the program that help, examples and links open. One table, easy to change when
// a link gets an address of its own.
#pragma once

#include <optional>

#include "app/CommandMap.h"
#include "base/Services.h"
#include "base/Text.h"

namespace melvorin {

// The whole help; it and the folder with its pages lie in the program folder.
inline constexpr TextView kHelpFile = u"Melvorin.chm";
inline constexpr TextView kPageFolder = u"Help";
// Its page with every command and key.
inline constexpr TextView kCommandsPage = u"commands.html";

struct ShippedPages {
    TextView help;      // a compiled help file, by its path below the program folder; empty: none
    TextView page;      // the page, in `help` and among those for the browser
    TextView document;  // loaded into the editor as an untitled document; empty: none
};

// Nothing for a command that opens none.
constexpr std::optional<ShippedPages> pagesOf(Command command) {
    switch (command) {
        case Command::mnuHlpTcs:
            return ShippedPages{kHelpFile, u"index.html", {}};
        case Command::mnuEpl:
            return ShippedPages{u"Examples\\Example1.chm", u"example-1.html",
                                u"Examples\\Abc Song.mvt"};
        case Command::mnuEpl2:
            return ShippedPages{u"Examples\\Example2.chm", u"example-2.html",
                                u"Examples\\Greensleeves.mvt"};
        case Command::ExMovie1:
            return ShippedPages{{}, u"first-song.html", {}};
        case Command::ExMovie2:
            return ShippedPages{{}, u"on-stage.html", {}};
        case Command::ExMovie3:
            return ShippedPages{{}, u"index.html", {}};
        case Command::ExMovie4:
            return ShippedPages{{}, u"questions.html", {}};
        default:
            return std::nullopt;
    }
}

// The help page of a window, by the name of its class.
struct WindowPage {
    TextView windowClass;
    TextView page;
};
inline constexpr WindowPage kWindowPages[] = {
    {u"MelvorinForm1", u"main-window.html"},   {u"MelvorinDictionary", u"dictionary.html"},
    {u"MelvorinFrmCifra", u"key-change.html"}, {u"MelvorinFrmCifraCreator", u"creator.html"},
    {u"MelvorinfrmFind", u"find.html"},        {u"MelvorinfrmFont", u"font.html"},
    {u"MelvorinFrmTab", u"tablature.html"},    {u"MelvorinFrmSong", u"tuner.html"},
    {u"MelvorinfrmFScreen", u"on-stage.html"}, {u"MelvorinfrmFScreenB", u"on-stage.html"},
    {u"MelvorinForm3b", u"on-stage.html"},     {u"MelvorinfrmCodePage", u"documents.html"},
    {u"MelvorinfrmPreview", u"paper.html"},    {u"MelvorinfrmPageSetup", u"paper.html"},
    {u"MelvorinfrmPrinting", u"paper.html"},   {u"MelvorinfrmExport", u"documents.html"},
    {u"MelvorinFrmToKey", u"key-change.html"}, {u"MelvorinfrmPedals", u"on-stage.html"},
};

// Empty for a window without a page of its own.
constexpr TextView pageOfWindow(TextView windowClass) {
    for (const WindowPage& entry : kWindowPages) {
        if (entry.windowClass == windowClass)
            return entry.page;
    }
    return {};
}

// Shows a page in the help viewer, or in the browser where there is no viewer or no `help`. Where
// neither can be had, the user is told which file is missing.
void showPage(const Services& services, TextView help, TextView page);

}  // namespace melvorin
