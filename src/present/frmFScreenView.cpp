// How the full-screen view shows its song: sizes, pages, colours, monitors, the order of a run.
#include <algorithm>
#include <utility>

#include "chords/LineVerdict.h"
#include "present/LineWidths.h"
#include "present/frmFScreen.h"

namespace melvorin {

// ---- Places and sizes -------------------------------------------------------------------------

int frmFScreen::topLine() const {
    const RichEdit& text = reduced_ ? FSRTB2_ : FSRTB_;
    return static_cast<int>(text.firstVisibleLine()) + 1;
}

int frmFScreen::caretLine() const {
    const RichEdit& text = reduced_ ? FSRTB2_ : FSRTB_;
    return static_cast<int>(text.lineOf(text.selection().begin)) + 1;
}

SectionLabels frmFScreen::sections() const {
    // Written out, they would stand in other lines than those of the song.
    const RichEdit& shown = reduced_ ? FSRTB2_ : FSRTB_;
    return sectionLabels((songLines_ > 0 ? rtftext_ : shown).text().chars);
}

// A page keeps two lines in sight, and begins with chords rather than with the words under them.
void frmFScreen::turnPage(bool forward) {
    RichEdit& text = shownText();
    RECT client{};
    ::GetClientRect(text.handle(), &client);
    const auto isInSight = [&](std::int32_t top, std::int32_t line) {
        const LONG height =
            text.pointOf(text.firstOfLine(line + 1)).y - text.pointOf(text.firstOfLine(top)).y;
        return height <= client.bottom;
    };
    const std::int32_t lines = text.lineCount();
    const std::int32_t top = text.firstVisibleLine();
    const auto isChords = [&](std::int32_t line) {
        const std::int32_t first = text.firstOfLine(line);
        return judgeLine(text.textBetween({first, first + text.lengthOfLine(line)})) ==
               LineVerdict::Chords;
    };
    constexpr std::int32_t overlap = 2;
    std::int32_t goal = top;
    if (forward) {
        std::int32_t last = top;
        while (last + 1 < lines && isInSight(top, last + 1))
            ++last;
        goal = std::max(top + 1, last + 1 - overlap);
    } else {
        // As far up as leaves the first two lines in sight at the foot.
        while (goal > 0 && isInSight(goal - 1, std::min(top + overlap - 1, lines - 1)))
            --goal;
        goal = std::min(goal, std::max(top - 1, 0));
    }
    const bool parts = goal > 0 && goal != top + 1 && isChords(goal - 1);
    if (parts && forward)
        --goal;
    else if (parts && goal + 1 < top)
        ++goal;
    turnTo(goal);
}

void frmFScreen::turnBy(int lines) {
    turnTo(shownText().firstVisibleLine() + lines);
}

// Without a run the caret stays where somebody has put it.
void frmFScreen::turnTo(std::int32_t line) {
    RichEdit& text = shownText();
    const bool runs = panel_.run().isRunning() || panel_.run().isPaused();
    const EditorWork work(text);
    const Selection selection = text.selection();
    text.bringToTop(std::clamp(line, 0, std::max(text.lineCount() - 1, 0)));
    if (runs)
        return;
    const ScrollPosition page = text.scrollPosition();
    text.select(selection);
    text.scrollTo(page);
}

// In pixels at the present size.
int frmFScreen::widestOf(const std::vector<std::int32_t>& lines) const {
    const RichEdit& text = reduced_ ? FSRTB2_ : FSRTB_;
    int widest = 0;
    for (const std::int32_t line : lines) {
        const std::int32_t first = text.firstOfLine(line);
        const std::int32_t end = first + text.lengthOfLine(line);
        widest = std::max(widest, static_cast<int>(text.pointOf(end).x - text.pointOf(first).x));
    }
    return widest;
}

// The longest line is as wide as the screen, as far as that can be read and is no poster.
void frmFScreen::fitWidth() {
    constexpr int least = 60;
    constexpr int most = 400;
    constexpr int attempts = 6;
    constexpr std::size_t looked = 12;  // the others are hardly wider
    RichEdit& text = shownText();
    // The scroll bar comes with the larger letters.
    RECT own{};
    ::GetWindowRect(text.handle(), &own);
    const int room = areaOf(own).width - ::GetSystemMetrics(SM_CXVSCROLL) - scaled(8);
    const std::vector<std::int32_t> lines = widestLines(text.rtf(), text.text().chars, looked);
    // Widths go in steps of whole pixels, so the first size is only near.
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const int width = widestOf(lines);
        if (width <= 0 || (attempt > 0 && width <= room))
            return;
        int percent = text.zoom() * room / width;
        if (width > room)
            percent = std::min(percent, text.zoom() - 1);
        percent = std::clamp(percent, least, most);
        if (percent == text.zoom())
            return;
        setZoom(percent);
    }
}

void frmFScreen::switchDark() {
    finishEdits();
    if (unwritten_)
        return;  // it was told
    isDark_ = !isDark_;
    takeBackground();
    RichEdit& text = shownText();
    const EditorWork work(text);
    const ScrollPosition page = text.scrollPosition();
    const Selection selection = text.selection();
    if (!reload(text)) {
        reportFailure(services_.messages, u"The song cannot be shown in these colors.");
        close();
        return;
    }
    text.select(selection);
    text.scrollTo(page);
    reducedEdited_ = reduced_;
}

// The song anew, or what is written out of it.
bool frmFScreen::reload(RichEdit& text) {
    if (songLines_ == 0)
        return show(text, rtftext_.rtf());
    if (!unroll(parts_))
        return false;
    return &text == &FSRTB_ || text.loadRtf(FSRTB_.rtf());
}

// ---- Written out ------------------------------------------------------------------------------

// The second text has the song meanwhile, in the colours of the view.
bool frmFScreen::unroll(const std::vector<RunPart>& parts) {
    constexpr std::int64_t most = 20'000;
    finishEdits();
    std::int64_t lines = 0;
    for (const RunPart& part : parts)
        lines += std::max(std::min(part.last, songLines()) - part.first + 1, 0);
    if (lines > most || parts.size() >= RunPlan::kMostParts) {
        services_.messages.show(u"Written out, the song would have more than 20,000 lines.",
                                kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
        return false;
    }
    const EditorWork work(FSRTB_);
    const EditorWork other(FSRTB2_);
    if (unwritten_ || !show(FSRTB2_, rtftext_.rtf()) ||
        !FSRTB_.loadPlain({}, textFont().face, textFont().points))
        return false;
    parts_ = parts;
    songLines_ = static_cast<int>(FSRTB2_.lineCount());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!appendLines(parts[i], i + 1 < parts.size()))
            return false;
    }
    FSRTB_.select({0, 0});
    FSRTB_.scrollCaretIntoView();
    return true;
}

bool frmFScreen::appendLines(const RunPart& part, bool goesOn) {
    const int last = std::min(part.last, songLines_);
    if (part.first > last)
        return true;
    const std::int32_t begin = FSRTB2_.firstOfLine(part.first - 1);
    const std::int32_t lastLine = FSRTB2_.firstOfLine(last - 1);
    const std::int32_t end = lastLine + FSRTB2_.lengthOfLine(last - 1);
    FSRTB2_.select({begin, end});
    const auto toEnd = [this] {
        const std::int32_t length = FSRTB_.length();
        FSRTB_.select({length, length});
    };
    if (begin < end) {
        const std::string lines = FSRTB2_.selectionRtf();
        toEnd();
        if (!FSRTB_.replaceSelectionRtf(lines))
            return false;
    }
    toEnd();
    if (goesOn)
        FSRTB_.replaceSelection(u"\r");
    return true;
}

bool frmFScreen::rollUp() {
    if (songLines_ == 0)
        return true;
    songLines_ = 0;
    const EditorWork work(FSRTB_);
    const bool shown = show(FSRTB_, rtftext_.rtf());
    if (!shown) {
        reportFailure(services_.messages, u"The song cannot be shown again here.");
        close();
    }
    FSRTB_.select({0, 0});
    FSRTB_.scrollCaretIntoView();
    return shown;
}

void frmFScreen::toNextMonitor() {
    RECT own{};
    ::GetWindowRect(handle(), &own);
    cover(services_.screen.monitorAfter(areaOf(own)).whole);
    if (fitsWidth_)
        fitWidth();
}

void frmFScreen::setZoom(int percent) {
    for (RichEdit* const text : {&FSRTB_, &FSRTB2_})
        text->setZoom(percent);
}

// ---- The two texts ----------------------------------------------------------------------------

void frmFScreen::caretToEnd() {
    const Selection here = FSRTB_.selection();
    if (here.begin == here.end && here.end >= FSRTB_.length())
        return panel_.showCursorLine(caretLine());
    const auto end = static_cast<std::int32_t>(FSRTB_.text().chars.size());
    const EditorWork work(FSRTB_);
    const ScrollPosition scroll = FSRTB_.scrollPosition();
    FSRTB_.select({end, end});
    FSRTB_.scrollTo(scroll);
}

// The run's step would also read the rich text and write it back as it was. That changes nothing
// that anyone could see, and takes longer than all the rest by far, so it is left out.
void frmFScreen::bringToTop(int line) {
    FSRTB_.bringToTop(shownLine(line, lineCount()) - 1);
}

// One of the texts takes over what the other shows. False, and the user is told, where it does not
// take it: shown all the same, the next key would write what it has over the song.
bool frmFScreen::takeOver(RichEdit& to, const RichEdit& from) {
    const ScrollPosition scroll = from.scrollPosition();
    const EditorWork work(to);
    if (!to.loadRtf(from.rtf())) {
        reportFailure(services_.messages,
                      u"The view cannot change its size now. The song is as it was.");
        return false;
    }
    to.select(from.selection());
    to.scrollTo(scroll);
    return true;
}

bool frmFScreen::reduce() {
    shownFollower().commandBegins();
    if (!takeOver(FSRTB2_, FSRTB_))
        return false;
    reduced_ = true;
    reducedEdited_ = false;
    FSRTB2_.show(true);
    FSRTB_.show(false);
    return true;
}

bool frmFScreen::enlarge() {
    if (!reduced_)
        return true;
    finishEdits();
    if (reducedEdited_ && !takeOver(FSRTB_, FSRTB2_))
        return false;
    reduced_ = reducedEdited_ = false;
    FSRTB_.show(true);
    FSRTB2_.show(false);
    return true;
}

}  // namespace melvorin
