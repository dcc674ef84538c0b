#include "rtf/EditCommands.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "base/DiagramFont.h"
#include "base/LetterCase.h"
#include "base/ProgramSettings.h"
#include "rtf/DocumentLoss.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfRepair.h"

namespace melvorin {
namespace {

// Up to here single edits of the control are faster than loading the document anew.
constexpr std::size_t kFewLetters = 200;

const Text kCannotPaste = u"The text on the clipboard cannot be pasted.\r\n\r\n";

bool tell(MessageBoxes& messages, TextView text) {
    messages.show(text, kMessageTitle, MessageIcon::Information, MessageButtons::Ok);
    return false;
}

// Only what was found sound reaches the control.
Result<std::string> soundRichText(Clipboard& clipboard) {
    const Result<std::string> bytes = clipboard.richText(kLargestPaste);
    if (!bytes)
        return Failure{bytes.cause};
    RtfVerdict verdict = checkRtf(*bytes.value);
    if (verdict.kind != RtfVerdict::Kind::Ok)
        return Failure{verdict.sentence};
    // A control that has lost characters on the way out may have put the plain text beside.
    const Result<Text> text = clipboard.text(kLargestPaste);
    return Result<std::string>::success(
        text ? withLostCharacters(std::move(verdict.document), toEditorText(*text.value).chars)
             : std::move(verdict.document));
}

void receive(Editor& editor, TextView face) {
    setIncomingFormat(editor, face);
    editor.sendUndo();
}

// The parts of a range that are no diagrams, from first to last. A part of one face is judged whole
// and any other in two halves, so that the number of looks goes with the number of faces.
void findWords(Editor& editor, Selection range, std::vector<Selection>& words) {
    editor.select(range);
    const std::optional<Text> face = editor.selectionStyle().face;
    if (!face && range.end - range.begin > 1) {
        const std::int32_t middle = range.begin + (range.end - range.begin) / 2;
        findWords(editor, {range.begin, middle}, words);
        findWords(editor, {middle, range.end}, words);
    } else if (!face || !isDiagramFace(*face)) {
        if (!words.empty() && words.back().end == range.begin)
            words.back().end = range.end;
        else
            words.push_back(range);
    }
}

std::vector<Selection> rangesOfWords(Editor& editor, Selection range) {
    const std::optional<Text> face = editor.selectionStyle().face;
    if (face)
        return isDiagramFace(*face) ? std::vector<Selection>() : std::vector<Selection>{range};
    std::vector<Selection> words;
    const EditorWork work(editor);
    findWords(editor, range, words);
    editor.select(range);
    return words;
}

// The selection replaced by Rich Text; where the control refuses it, the document is as it was.
bool replaceByRtf(Editor& editor, TextView face, const std::string& rtf) {
    const std::string before = editor.rtf();
    const Selection selection = editor.selection();
    const EditorWork work(editor);
    receive(editor, face);
    if (editor.replaceSelectionRtf(rtf))
        return true;
    editor.loadRtf(before);
    editor.select(selection);
    return false;
}

enum class Pasted { Done, Refused, PlainWanted };

// Words that are in the plain text beside and that the control has not shown are offered:
// equations, notes and what else it leaves out.
Pasted pasteRich(Editor& editor, Clipboard& clipboard, MessageBoxes& messages, TextView face,
                 const std::string& rtf) {
    const std::string before = editor.rtf();
    const Selection selection = editor.selection();
    if (!replaceByRtf(editor, face, rtf))
        return Pasted::Refused;
    const Result<Text> plain = clipboard.text(kLargestPaste);
    if (!plain)
        return Pasted::Done;
    const auto begin = static_cast<std::size_t>(selection.begin);
    const auto end = static_cast<std::size_t>(editor.selection().end);
    const RtfContents copied = readRtf(rtf);
    Text present = editor.text().chars.substr(begin, end - begin);
    // The control makes the numbers of lists itself.
    for (const RtfContents::Part& label : copied.labels)
        present += u' ' + copied.text.substr(label.begin, label.length);
    const std::size_t missing = wordsMissing(*plain.value, present);
    if (missing == 0 ||
        messages.show(
            decimal(static_cast<std::int64_t>(missing)) +
                (missing == 1 ? u" word of what was copied is" : u" words of what was copied are") +
                u" missing with the formats.\r\n\r\nPaste it as plain text instead, which "
                u"has every word?",
            kMessageTitle, MessageIcon::Question, MessageButtons::YesNo) != Answer::Yes)
        return Pasted::Done;
    const EditorWork work(editor);
    editor.loadRtf(before);
    editor.select(selection);
    return Pasted::PlainWanted;
}

}  // namespace

void setFace(Editor& editor, TextView face) {
    const Selection selection = editor.selection();
    const std::vector<Selection> words = rangesOfWords(editor, selection);
    if (words.empty() || words.front() == selection)
        return editor.setSelectionFace(face);
    const EditorWork work(editor);
    for (const Selection& range : words) {
        editor.select(range);
        editor.setSelectionFace(face);
    }
    editor.select(selection);
}

void toggle(Editor& editor, TextEffect effect) {
    (editor.*effect.set)(editor.selectionStyle().*effect.state != true);
}

bool hasDiagrams(Editor& editor) {
    if (editor.rtf().find(toUtf8(kDiagramFaceStart)) == std::string::npos)
        return false;
    const Selection all{0, static_cast<std::int32_t>(editor.text().chars.size())};
    const EditorWork work(editor);
    const Selection selection = editor.selection();
    const ScrollPosition page = editor.scrollPosition();
    editor.select(all);
    const std::vector<Selection> words = rangesOfWords(editor, all);
    editor.select(selection);
    editor.scrollTo(page);
    return all.end > 0 && (words.empty() || words.front() != all);
}

void setIncomingFormat(Editor& editor, TextView face) {
    setFace(editor, face);
    editor.setSelectionSize(2 * kEditorFontPoints);
    editor.setSelectionColour({0, 0, 0});
}

void showDifference(Editor& editor, ScrollPosition page, TextView before, std::int32_t otherwise) {
    const Text after = editor.text().chars;
    const auto [old, now] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const bool isAlike = old == before.end() && now == after.end();
    const auto length = static_cast<std::int32_t>(after.size());
    const std::int32_t place =
        isAlike ? std::min(otherwise, length) : static_cast<std::int32_t>(now - after.begin());
    editor.scrollTo(page);
    if (!editor.isInView(place))
        editor.centre(place);
}

std::size_t columnOfSelection(const Editor& editor) {
    const auto begin = static_cast<std::size_t>(editor.selection().begin);
    const Text text = editor.text().chars;
    const TextView before = TextView(text).substr(0, std::min(begin, text.size()));
    const std::size_t lineEnd = before.find_last_of(u"\r\n\v");
    return lineEnd == TextView::npos ? before.size() : before.size() - lineEnd - 1;
}

bool pasteClipboard(Editor& editor, Clipboard& clipboard, MessageBoxes& messages, TextView face,
                    const ExpandTabs& expand) {
    // All of it is in hand before the document is touched, whatever the clipboard does meanwhile.
    Text richCause;
    if (clipboard.hasRichText()) {
        const Result<std::string> rich = soundRichText(clipboard);
        switch (rich ? pasteRich(editor, clipboard, messages, face, *rich.value)
                     : Pasted::Refused) {
            case Pasted::Done:
                return true;
            case Pasted::Refused:
                richCause = rich ? Text(u"The editor does not take it.") : rich.cause;
                break;
            case Pasted::PlainWanted:
                break;
        }
    }
    if (!clipboard.hasText())
        return tell(messages, richCause.empty()
                                  ? u"The clipboard holds no text that could be pasted."
                                  : kCannotPaste + richCause);
    Result<Text> plain = clipboard.text(kLargestPaste);
    if (!plain)
        return tell(messages, kCannotPaste + plain.cause);
    const Selection selection = editor.selection();
    const std::optional<Text> text =
        expand(toEditorText(*plain.value).chars, columnOfSelection(editor));
    if (!text)
        return false;
    {
        const EditorWork work(editor);
        // Messages ran meanwhile, and something may have moved the caret.
        editor.select(selection);
        receive(editor, face);
        editor.replaceSelection(*text);
        // Over a diagram it would have come in as more of them.
        const Selection caret = editor.selection();
        editor.select({selection.begin, caret.end});
        setIncomingFormat(editor, face);
        editor.select(caret);
    }
    if (!richCause.empty())
        tell(messages,
             u"The formatted text on the clipboard cannot be pasted; only its plain text "
             u"was.\r\n\r\n" +
                 richCause);
    return true;
}

// ---- Case -------------------------------------------------------------------------------------

namespace {

struct Letter {
    std::size_t position;
    char16_t becomes;
};

std::vector<Letter> lettersToChange(TextView text, Selection range, LetterCase to) {
    std::vector<Letter> letters;
    for (auto at = static_cast<std::size_t>(range.begin);
         at < std::min(static_cast<std::size_t>(range.end), text.size()); ++at) {
        const char16_t c = text[at];
        const char16_t changed =
            to == LetterCase::Upper ? unicodeUpperCase(c) : unicodeLowerCase(c);
        if (changed != c)
            letters.push_back({at, changed});
    }
    return letters;
}

void editLetters(Editor& editor, const std::vector<Letter>& letters) {
    for (const Letter& letter : letters) {
        const auto position = static_cast<std::int32_t>(letter.position);
        editor.select({position, position + 1});
        editor.replaceSelection({&letter.becomes, 1});
    }
}

// One part per run of letters that stand side by side.
std::vector<LineRewrite> rewritesOf(const std::vector<Letter>& letters) {
    std::vector<LineRewrite> parts;
    for (const Letter& letter : letters) {
        if (parts.empty() || parts.back().start + parts.back().length != letter.position)
            parts.push_back({letter.position, 0, {}, {}, {}});
        LineRewrite& part = parts.back();
        part.source.push_back(static_cast<std::uint32_t>(part.length++));
        part.text += letter.becomes;
        part.keepColour.push_back(true);
    }
    return parts;
}

bool loadConverted(Editor& editor, const std::string& rtf, const RtfMap& map,
                   const std::vector<Letter>& letters) {
    Text expected(map.text());
    for (const Letter& letter : letters)
        expected[letter.position] = letter.becomes;
    return loadRewritten(editor, rtf, map.text(), map.rewrite(rewritesOf(letters), {}), expected);
}

}  // namespace

bool loadRewritten(Editor& editor, const std::string& rtf, TextView text,
                   const std::string& rewritten, TextView expected) {
    if (editor.loadRtf(rewritten) && editor.text().chars == expected)
        return true;
    // Edits one by one begin with what was there before.
    if (!editor.loadRtf(rtf) || editor.text().chars != text)
        throw std::runtime_error("the editor does not take its own text back");
    return false;
}

void convertCase(Editor& editor, LetterCase to) {
    const Selection selection = editor.selection();
    const Text text = editor.text().chars;
    std::vector<Letter> letters = lettersToChange(text, selection, to);
    const std::string rtf = editor.rtf();
    const std::optional<RtfMap> map = RtfMap::matching(rtf, text);

    const EditorWork work(editor);
    const ScrollPosition scroll = editor.scrollPosition();
    std::erase_if(letters, [&](const Letter& letter) {
        return map ? isDiagramFace(map->fontNameAt(letter.position))
                   : isDiagramFace(editor.faceAt(static_cast<std::int32_t>(letter.position)));
    });
    const bool loaded =
        map && letters.size() > kFewLetters && loadConverted(editor, rtf, *map, letters);
    if (!loaded)
        editLetters(editor, letters);
    editor.select(selection);
    editor.scrollTo(scroll);
}

}  // namespace melvorin
