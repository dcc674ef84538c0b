// What the panel's lists, boxes and rows say, and the run that comes of it.
#include <algorithm>
#include <utility>

#include "present/RunPlan.h"
#include "present/frmFScreenB.h"

namespace melvorin {

int frmFScreenB::idAt(int base, std::size_t number) {
    return base + static_cast<int>(number);
}

void frmFScreenB::addNumbers(HWND list, int first, int last) {
    ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(list, CB_INITSTORAGE, static_cast<WPARAM>(std::max(0, last - first + 1)), 16);
    for (int number = first; number <= last; ++number)
        ::SendMessageW(list, CB_ADDSTRING, 0, lparamOf(wide(decimal(number))));
    ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(list, nullptr, TRUE);
}

// ---- The lists --------------------------------------------------------------------------------

void frmFScreenB::prepare() {
    if (prepared_)
        return;
    prepared_ = true;
    view_.caretToEnd();
    run_.setLineCount(view_.lineCount());
    fillLineLists();
    tellSections();
    tellPlan();
}

// kept: short-line-lists
// One line short of the last: from there no jump would be seen.
void frmFScreenB::fillLineLists() {
    const int lines = view_.songLines();
    const int wanted = std::max(0, lines - 1);
    const auto fill = [&](int id) {
        const HWND list = item(id);
        const int former = chosen(id);
        const int now = std::clamp(former, 1, std::max(1, wanted));
        if (wanted == listed_ && now == former)
            return;
        if (wanted < listed_)
            ::SendMessageW(list, CB_RESETCONTENT, 0, 0);
        addNumbers(list, wanted < listed_ ? 1 : listed_ + 1, wanted);
        ::SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(now - 1), 0);
    };
    fill(Seconds2);
    for (std::size_t number = 1; number <= 2 * kJumpRows; ++number)
        fill(idAt(CB, number));
    listed_ = wanted;
}

// The number chosen in a list; 0 where none is.
int frmFScreenB::chosen(int list) const {
    return static_cast<int>(::SendMessageW(item(list), CB_GETCURSEL, 0, 0)) + 1;
}

// What is written out needs no jumps and no passes.
RunSettings frmFScreenB::settings() const {
    RunSettings settings = rowSettings();
    if (isUnrolled()) {
        settings.repeats = false;
        settings.rows = {};
    }
    return settings;
}

bool frmFScreenB::isUnrolled() const {
    return ::IsDlgButtonChecked(handle(), kUnrolled) == BST_CHECKED;
}

// The view follows the check box, and the rows while it is on.
void frmFScreenB::unroll() {
    prepare();
    bool done = true;
    if (isUnrolled()) {
        RunPlan plan = planRun(rowSettings(), view_.songLines());
        unrolled_ = std::move(plan.parts);
        done = view_.unroll(unrolled_);
    }
    if (!isUnrolled() || !done) {
        ::CheckDlgButton(handle(), kUnrolled, BST_UNCHECKED);
        unrolled_.clear();
        view_.rollUp();
    }
    run_.forget();
    run_.setLineCount(view_.lineCount());
    tellSections();
    tellPlan();
}

RunSettings frmFScreenB::rowSettings() const {
    RunSettings settings;
    settings.secondsPerLine = chosen(Seconds);
    settings.passes = chosen(Seconds3);
    settings.repeats = ::IsDlgButtonChecked(handle(), Check1) == BST_CHECKED;
    for (std::size_t row = 1; row <= kJumpRows; ++row)
        settings.rows[row - 1] = {::IsDlgButtonChecked(handle(), idAt(CK, row)) == BST_CHECKED,
                                  chosen(idAt(CB, 2 * row - 1)), chosen(idAt(CB, 2 * row)),
                                  chosen(idAt(CB, 10 + row))};
    settings.countIn = chosen(kCountIn) - 1;
    if (::IsDlgButtonChecked(handle(), kByDuration) == BST_CHECKED)
        settings.wholeMs = duration().value_or(0);
    return settings;
}

// The row that somebody was at last, or else the first that is off.
std::size_t frmFScreenB::rowAtHand() const {
    if (lastRow_ > 0)
        return lastRow_;
    for (std::size_t row = 1; row < kJumpRows; ++row) {
        if (::IsDlgButtonChecked(handle(), idAt(CK, row)) != BST_CHECKED)
            return row;
    }
    return kJumpRows;
}

void frmFScreenB::takeCaret(bool asTarget) {
    prepare();
    const std::size_t row = rowAtHand();
    lastRow_ = row;
    const int line = std::clamp(songLineOf(view_.caretLine()), 1, std::max(1, listed_));
    ::SendMessageW(item(idAt(CB, asTarget ? 2 * row : 2 * row - 1)), CB_SETCURSEL,
                   static_cast<WPARAM>(line - 1), 0);
    ::CheckDlgButton(handle(), idAt(CK, row), BST_CHECKED);
    tellPlan();
}

std::optional<std::int64_t> frmFScreenB::duration() const {
    return readMinutes(windowText(item(kDuration)));
}

void frmFScreenB::tellPlan() {
    if (!prepared_)
        return;
    Text text;
    if (::IsDlgButtonChecked(handle(), kByDuration) == BST_CHECKED && !duration()) {
        text = u"The time is minutes and seconds, as in 4:30; at most ten hours.";
    } else if (view_.songLines() >= 2) {
        const RunSettings chosen = rowSettings();
        RunPlan plan = planRun(chosen, view_.songLines());
        if (isUnrolled() && plan.parts != unrolled_)
            return unroll();
        // Written out, a pass does not end with a line beyond the text.
        if (isUnrolled())
            plan.steps = planRun(settings(), view_.lineCount()).steps;
        text = planInWords(plan, chosen, view_.songLines());
        TextView before = u"\r\n";
        for (const Text& remark : {circlesInWords(plan, chosen), idleRowsInWords(plan, chosen)}) {
            if (remark.empty())
                continue;
            text.append(before).append(remark);
            before = u" ";
        }
    }
    ::SetWindowTextW(item(kPlan), wide(text));
}

// The lists are counted anew by "Update" alone.
void frmFScreenB::songChanged() {
    if (!prepared_ || run_.isOn())
        return;
    run_.setLineCount(view_.lineCount());
    tellPlan();
}

// The lines of the song and those that are written out.
int frmFScreenB::songLineOf(int shown) const {
    for (const RunPart& part : unrolled_) {
        const int count = std::min(part.last, view_.songLines()) - part.first + 1;
        if (shown <= count)
            return part.first + shown - 1;
        shown -= std::max(count, 0);
    }
    return shown;
}

// The first time that it is played; where it never is, the nearest after it.
int frmFScreenB::shownLineOf(int songLine) const {
    int before = 0;
    for (const RunPart& part : unrolled_) {
        const int count = std::min(part.last, view_.songLines()) - part.first + 1;
        if (songLine >= part.first && songLine < part.first + count)
            return before + songLine - part.first + 1;
        before += std::max(count, 0);
    }
    return unrolled_.empty() ? songLine : std::min(songLine, before);
}

// Beside the line numbers of the lists, as their tips.
void frmFScreenB::tellSections() {
    sections_ = view_.sections();
    const Text tip = labelsInWords(sections_);
    addTip(item(Seconds2), tip);
    for (std::size_t number = 1; number <= 2 * kJumpRows; ++number)
        addTip(item(idAt(CB, number)), tip);
}

}  // namespace melvorin
