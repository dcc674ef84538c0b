// How the user wants songs on paper: what the windows of paper ask, kept in section "Page" of the
// program's INI file.
#pragma once

#include "base/Services.h"
#include "paper/PageMaker.h"

namespace melvorin {

struct PageChoices {
    static constexpr int kLeastMargin = 5;
    static constexpr int kMostMargin = 50;
    static constexpr int kLeastPoints = 6;
    static constexpr int kMostPoints = 36;

    PaperName paper = PaperName::A4;
    bool landscape = false;
    int marginMm = 15;
    int columns = 2;  // with `fit` the most that are tried
    bool fit = true;
    int leastPoints = 9;    // with `fit`
    int mostPoints = 14;    // with `fit`; never below `leastPoints`
    bool colours = true;    // else black, and chords bold
    bool header = true;     // title, key, capo, page of pages
    bool diagrams = false;  // of the song's chords, at its head

    friend bool operator==(const PageChoices&, const PageChoices&) = default;
};

// What the file does not have, or has in a way that makes no sense, is as above; the paper is the
// one of the user's country.
PageChoices pageChoices(const Services& services);
// False when the INI file cannot be written.
bool storePageChoices(const Services& services, const PageChoices& choices);

TextView paperCaption(PaperName paper);
PaperSize paperSize(const PageChoices& choices);
PageSetup setupOf(const PageChoices& choices);

}  // namespace melvorin
