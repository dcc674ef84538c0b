#include "dictionary/Fingering.h"

#include <algorithm>
#include <iterator>

#include "base/DiagramFont.h"

namespace melvorin {
namespace {

constexpr std::size_t kColumns = kFingeringColumns;
constexpr std::size_t kHalf = kColumns / 2;
constexpr std::size_t kEntries = kFingeringRows * kColumns;
constexpr std::size_t kLastRow = kEntries - kColumns;
constexpr TextView kNone = u"§";

// Each row in two halves.
constexpr TextView kTable[][2] = {
    {u"îanüdóºéágvxzúm¼â/,.ê;ôkiyûöãùòñìèàäqýerï'13580",
     u"æ¹oðanüdóºéágvxzmâ/,.ê;ôkiyûãùòñèäqer'13580æoðí"},
    {u"ÎANÜDÓªÉÁGVXZÚM¾ÂÿåþÊ:ÔKIYÛÖÃÙÒÑÌÈÀÄQÝERÏƒŠØçš…",
     u"Æ‚OœANÜDÓªÉÁGVXZMÂÿåþÊ:ÔKIYÛÃÙÒÑÈÄQERƒŠØçš…ÆOœÍ"},
    {u"§s§§f§§í§hbc§§§§§§§§î§§l§Å§§õ§§§§§§§w§ët§§2469§",
     u"‡§pŒs§§f§§§§hbc§§§§§§§§§l§u§õ§§§§§wët§2469§‡pŒì"},
    {u"§S§§F§§Í§HBC§§§§§§§§Î§§L§u§§Õ§§§§§§§W§ËT§§ÐŸ7„§",
     u"†§PßS§§F§§§§HBC§§§§§§§§§L§U§Õ§§§§§WËT§ÐŸ7„§†PßÌ"},
    {u"§²§§³§§§§j§§§§§§§§§§§§§§§U§§§§§§§§§§§§§§§§§½Ç§§",
     u"Þ§§§²§§³§§§§j§§§§§§§§§§§§§§§§§§§§§§§§§½Ç§§Þ§§§§"},
    {u"§§§§§§§§§J§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§",
     u"§§§§§§§§§§§§J§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§§"},
};
static_assert(std::size(kTable) == kFingeringRows);
static_assert(std::all_of(std::begin(kTable), std::end(kTable), [](const auto& row) {
    return row[0].size() == kHalf && row[1].size() == kHalf;
}));

// Doubled in the table, so that the search never stops there.
// kept: table-fillers
bool isFiller(std::size_t row, std::size_t column) {
    return (column == 0 && row < 2) || (column == kColumns - 1 && row < 4);
}

// What comes before the table in the fonts with even numbers. An empty replacement ends the
// command.
struct Substitution {
    TextView glyph;
    TextView replacement;
};
// kept: even-fonts
constexpr Substitution kEvenFonts[] = {
    {u"É", u"é"}, {u"Ê", u"ê"}, {u"Y", u"u"}, {u"í", u"Í"}, {u"Í", u"ì"},
    {u"ì", u"Ì"}, {u"Ì", u"í"}, {u"î", {}},   {u"Î", {}},
};

const Substitution* substitutionOf(TextView glyph) {
    const auto found = std::find_if(std::begin(kEvenFonts), std::end(kEvenFonts),
                                    [&](const Substitution& s) { return s.glyph == glyph; });
    return found == std::end(kEvenFonts) ? nullptr : found;
}

bool askForDiagram(DiagramEditor& editor, MessageBoxes& messages) {
    // kept: ctlr
    messages.show(u"Select a Chord in the Document and Type Ctlr+D          ", u"Melvorin",
                  MessageIcon::Information, MessageButtons::Ok);
    const std::int32_t begin = editor.selection().begin;
    editor.select({begin, begin});
    return false;
}

}  // namespace

std::optional<int> diagramFontNumber(TextView face) {
    if (!isDiagramFace(face))
        return std::nullopt;
    const TextView digits = face.substr(face.size() - 2);
    return (digits[0] - u'0') * 10 + (digits[1] - u'0');
}

Text fingeringEntry(std::size_t position) {
    const std::size_t row = position / kColumns;
    const std::size_t column = position % kColumns;
    return Text(isFiller(row, column) ? 2 : 1, kTable[row][column / kHalf][column % kHalf]);
}

bool selectDiagramBeside(DiagramEditor& editor) {
    const Selection caret = editor.selection();
    if (caret.end != caret.begin)
        return false;
    for (const Selection beside :
         {Selection{caret.begin - 1, caret.begin}, Selection{caret.begin, caret.begin + 1}}) {
        if (beside.begin < 0)
            continue;
        editor.select(beside);
        // A line's end may be in that face too.
        const Text glyph = editor.selectedText();
        if (isDiagramFace(editor.style().face) && glyph.size() == 1 && glyph[0] > u' ')
            return true;
    }
    editor.select(caret);
    return false;
}

bool Fingering::change(DiagramEditor& editor, MessageBoxes& messages) {
    selectDiagramBeside(editor);
    const Selection selection = editor.selection();
    if (selection.end - selection.begin != 1)
        return askForDiagram(editor, messages);
    const DiagramStyle style = editor.style();
    const std::optional<int> font = diagramFontNumber(style.face);
    if (!font)
        return askForDiagram(editor, messages);

    const Text glyph = editor.selectedText();
    const Substitution* const fixed = *font % 2 == 0 ? substitutionOf(glyph) : nullptr;
    if (fixed != nullptr) {
        if (!fixed->replacement.empty())
            editor.put(fixed->replacement, style);
        return !fixed->replacement.empty();
    }
    const std::optional<Text> next = nextInTable(glyph);
    if (!next)
        return false;
    editor.put(*next, style);
    const std::int32_t caret = editor.selection().end;
    editor.select({caret - 1, caret});
    return true;
}

// The entry that follows a glyph; nothing for a glyph that the table does not have.
std::optional<Text> Fingering::nextInTable(TextView glyph) {
    // kept: last-row-shortcut
    if (position_ && *position_ > kLastRow) {
        *position_ -= kLastRow;
        return fingeringEntry(*position_);
    }
    std::size_t position = 0;
    while (position < kEntries && fingeringEntry(position) != glyph)
        ++position;
    if (position == kEntries)
        return std::nullopt;
    if (position + kColumns < kEntries)
        position += kColumns;
    if (fingeringEntry(position) == kNone) {
        do {
            position -= kColumns;
        } while (position > kColumns);
    }
    position_ = position;
    return fingeringEntry(position);
}

}  // namespace melvorin
