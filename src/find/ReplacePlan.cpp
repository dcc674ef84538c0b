#include "find/ReplacePlan.h"

#include <algorithm>
#include <utility>

namespace melvorin {

void ReplacePlan::replace(Selection match, TextView with) {
    const auto begin = static_cast<std::size_t>(match.begin);
    const auto end = static_cast<std::size_t>(match.end);
    // Replacements that touch are one part: a rewritten text keeps a character between two.
    if (parts_.empty() || begin > partEnd()) {
        parts_.push_back({begin - partEnd() + formerEnd(), 0, {}, {}, {}});
        partBegin_ = begin;
    }
    LineRewrite& part = parts_.back();
    const std::size_t at = begin - partBegin_;
    const std::size_t within = std::min(end - partBegin_, part.text.size()) - at;
    const auto format = static_cast<std::uint32_t>(within > 0 ? part.source[at] : part.length);
    part.length += end - begin - within;
    part.text.replace(at, within, with);
    const auto place = part.source.begin() + static_cast<std::ptrdiff_t>(at);
    part.source.insert(part.source.erase(place, place + static_cast<std::ptrdiff_t>(within)),
                       with.size(), format);
    part.keepColour.resize(part.text.size(), true);
    text_.replace(match, with);
}

std::vector<TextEdit> ReplacePlan::edits() const {
    std::vector<TextEdit> edits;
    edits.reserve(parts_.size());
    for (const LineRewrite& part : parts_)
        edits.push_back({part.start, part.length, part.text});
    return edits;
}

std::optional<std::size_t> ReplacePlan::formerPlace(std::size_t position) const {
    if (position < partEnd())
        return std::nullopt;
    return position - partEnd() + formerEnd();
}

namespace {

// Edits that touch are one part.
class PartWriter {
  public:
    PartWriter(TextView text, const std::function<bool(std::size_t)>& isPicture)
        : text_(text), isPicture_(isPicture) {}

    // False where the new text has no format to take.
    bool add(const FollowEdit& edit) {
        if (edit.origin == Origin::Document)
            return false;
        const bool isPutIn = edit.length == 0 && !edit.text.empty();
        const bool hasBefore = isPutIn && edit.position > 0 && isWriting(edit.position - 1);
        const std::size_t start = edit.position - (hasBefore ? 1 : 0);
        if (parts_.empty() || formerEnd() < start)
            parts_.push_back({start, 0, {}, {}, {}});
        // What is in front is part of it, so that its format can be taken.
        if (hasBefore && formerEnd() == start)
            replace(1, text_.substr(start, 1));
        LineRewrite& part = parts_.back();
        if (isPutIn) {
            write(edit.text, hasBefore ? part.length - 1 : part.length);
            return hasBefore || isWriting(edit.position);
        }
        replace(edit.length, edit.text);
        return true;
    }

    std::vector<LineRewrite> take() { return std::move(parts_); }

  private:
    bool isWriting(std::size_t position) const {
        return position < text_.size() && text_[position] != u'\r' && text_[position] != u'\v' &&
               !isPicture_(position);
    }
    std::size_t formerEnd() const { return parts_.back().start + parts_.back().length; }
    void replace(std::size_t length, TextView with) {
        write(with, parts_.back().length);
        parts_.back().length += length;
    }
    void write(TextView text, std::size_t source) {
        LineRewrite& part = parts_.back();
        part.text += text;
        part.source.resize(part.text.size(), static_cast<std::uint32_t>(source));
        part.keepColour.resize(part.text.size(), true);
    }

    TextView text_;
    const std::function<bool(std::size_t)>& isPicture_;
    std::vector<LineRewrite> parts_;
};

}  // namespace

std::optional<std::vector<LineRewrite>> partsOf(
    TextView text, const std::vector<FollowEdit>& edits,
    const std::function<bool(std::size_t position)>& isPicture) {
    PartWriter writer(text, isPicture);
    for (const FollowEdit& edit : edits) {
        if (!writer.add(edit))
            return std::nullopt;
    }
    return writer.take();
}

}  // namespace melvorin
