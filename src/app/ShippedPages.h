// The files beside the program that help, examples and links open. One table, easy to change when
// a link gets an address of its own.
#pragma once

#include <optional>

#include "app/CommandMap.h"
#include "app/Text.h"

namespace melvorin {

struct ShippedPages {
    TextView page;      // opened with the system's own program; empty: none
    TextView document;  // loaded into the editor as an untitled document; empty: none
};

// Paths below the program folder. Nothing for a command that opens none.
constexpr std::optional<ShippedPages> pagesOf(Command command) {
    switch (command) {
        case Command::mnuHlpTcs:
            return ShippedPages{u"Melvorin.chm", {}};
        case Command::mnuEpl:
            return ShippedPages{u"Examples\\Example1.chm", u"Examples\\Abc Song.mvt"};
        case Command::mnuEpl2:
            return ShippedPages{u"Examples\\Example2.chm", u"Examples\\House by the River.mvt"};
        case Command::ExMovie1:
            return ShippedPages{u"Help\\first-song.html", {}};
        case Command::ExMovie2:
            return ShippedPages{u"Help\\on-stage.html", {}};
        case Command::ExMovie3:
            return ShippedPages{u"Help\\index.html", {}};
        case Command::ExMovie4:
            return ShippedPages{u"Help\\questions.html", {}};
        default:
            return std::nullopt;
    }
}

}  // namespace melvorin
