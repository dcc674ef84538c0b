#include "editing/ChordClipboard.h"

#include <algorithm>
#include <utility>

#include "base/TabExpansion.h"

namespace melvorin {
namespace {

// A song is far smaller; of more nothing is taken.
constexpr std::uint64_t kMostBytes = 1u << 20;

}  // namespace

CopiedChords ChordClipboard::selected() {
    document_.forgetDiagrams();
    const Selection selection = editor_.selection();
    const auto text = document_.linesAround(selection);
    return text ? copyChords(*text, sizeOf(selection.begin), sizeOf(selection.end))
                : CopiedChords();
}

bool ChordClipboard::mayCopy() {
    return !selected().empty();
}

Result<Done> ChordClipboard::copy() {
    Taken taken{selected(), {}};
    if (taken.chords.empty())
        return Failure{u"No line of chords is selected."};
    const RichEdit::Quiet quiet(editor_);
    TextView rest = taken.chords.chords.chars;
    for (const std::size_t place : taken.chords.places) {
        const std::size_t length = std::min(rest.find(u'\r'), rest.size());
        if (!taken.formats.empty())
            taken.formats.push_back({u"\r", taken.formats.back().format, {}});
        const auto pieces = editor_.piecesOf({positionOf(place), positionOf(place + length)});
        taken.formats.insert(taken.formats.end(), pieces.begin(), pieces.end());
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    auto put = clipboard_.put(toCrLf(taken.chords.chords.chars));
    if (put)
        own_ = std::move(taken);
    return put;
}

ChordClipboard::Taken ChordClipboard::onClipboard() {
    if (!clipboard_.hasText())
        return {};
    const Result<Text> text = clipboard_.text(kMostBytes);
    if (!text)
        return {};
    if (!own_.chords.empty() && *text.value == toCrLf(own_.chords.chords.chars).chars)
        return own_;
    const Excerpt lines{0, expandTabs(toEditorText(*text.value).chars), {}};
    if (!FollowDocument::isPlain(lines.chars))
        return {};
    return {copyChords(lines, 0, lines.chars.size()), {}};
}

std::optional<Excerpt> ChordClipboard::wordsAtSelection() {
    document_.forgetDiagrams();
    document_.forgetPlace();
    const Selection selection = editor_.selection();
    if (selection.begin != selection.end)
        return document_.linesAround(selection);
    return document_.linesDownTo({selection.begin, editor_.length()});
}

bool ChordClipboard::mayPaste() {
    const CopiedChords chords = onClipboard().chords;
    const auto text = chords.empty() ? std::nullopt : wordsAtSelection();
    const Selection selection = editor_.selection();
    return text && pasteChords(*text, sizeOf(selection.begin), sizeOf(selection.end), chords);
}

Result<std::size_t> ChordClipboard::paste() {
    const Taken taken = onClipboard();
    if (taken.chords.empty())
        return Failure{u"There are no lines of chords on the clipboard."};
    const auto text = wordsAtSelection();
    const Selection selection = editor_.selection();
    const auto pasted =
        text ? pasteChords(*text, sizeOf(selection.begin), sizeOf(selection.end), taken.chords)
             : std::nullopt;
    if (!pasted)
        return Failure{u"There are no lines of words here that chords could be put over."};
    if (!document_.mayFollow(pasted->answer.edits, *text))
        return Failure{
            u"Chords stand over their syllables only in a font whose letters all have one width, "
            u"in lines that begin at the left. Give these lines such a font first."};
    document_.makeUnseen(pasted->answer, taken.formats);
    return Result<std::size_t>::success(pasted->left);
}

}  // namespace melvorin
