#include "rtf/RtfRows.h"

namespace melvorin {

bool RtfRows::word(const RtfToken& token) {
    const std::string_view name = token.name;
    if (name == "pard") {
        inTable_ = false;
    } else if (name == "intbl" || name == "itap") {
        hasText_ = hasText_ && isOpen_;
        inTable_ = name == "intbl" || token.number > 0;
        isOpen_ = isOpen_ || inTable_;
        return token.number <= 1;
    } else if (name == "trowd") {
        defined_ = 0;
    } else if (name == "cellx") {
        return ++defined_ <= kMaxRtfCells;
    } else if (name == "cell") {
        return endCell();
    } else if (name == "row") {
        return endRow();
    } else if (name == "par" || name == "line" || name == "tab") {
        text();
    }
    return name != "nestcell" && name != "nestrow" && name != "nesttableprops";
}

void RtfRows::text() {
    isBroken_ = isBroken_ || (isOpen_ && !inTable_);
    isOpen_ = isOpen_ || inTable_;
    hasText_ = true;
}

bool RtfRows::isRowWord(std::string_view name) {
    return name == "trowd" || name == "cellx" || name == "cell" || name == "row" ||
           name == "intbl" || name == "itap";
}

bool RtfRows::endCell() {
    text();
    hasText_ = false;
    // Cells outside a table are no cells to a control.
    return !isOpen_ || ++used_ <= defined_;
}

bool RtfRows::endRow() {
    // Text behind the last cell would need one more.
    const bool fits = !isOpen_ || used_ + (hasText_ ? 1 : 0) <= defined_;
    // What follows stays in the table until \pard.
    inTable_ = inTable_ || isOpen_;
    isOpen_ = hasText_ = false;
    used_ = 0;
    return fits;
}

}  // namespace melvorin
