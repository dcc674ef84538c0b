// Rich Text as other programs write it, in the real control. Longer by make rtf-corpus, through
//   MELVORIN_RTF_FILES  a folder of documents (NAME.rtf), each with its words (NAME.txt)
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "../core/RtfDialects.h"
#include "Scripted.h"
#include "chords/ChordLine.h"
#include "chords/DocumentKey.h"
#include "rtf/DocumentLoss.h"
#include "rtf/RtfCheck.h"

namespace melvorin::testing {
namespace {

std::vector<std::string> linesOf(TextView text) {
    std::vector<std::string> lines;
    for (const TextView line : splitLines(text))
        lines.push_back(shown(line));
    return lines;
}

// Blanks that differ, and the words without what stands between them.
std::string words(TextView text) {
    std::string out;
    for (const char16_t c : text) {
        if (c > u' ' && c != u'\u00A0')
            out += shown(TextView(&c, 1));
    }
    return out;
}

// Words of one text that another has not, each as often as it is there.
std::string missing(TextView wanted, TextView present) {
    const auto sorted = [](TextView text) {
        std::vector<std::string> words(1);
        for (const char16_t c : text) {
            if (c <= u' ' || c == u'\u00A0')
                words.emplace_back();
            else
                words.back() += shown(TextView(&c, 1));
        }
        std::sort(words.begin(), words.end());
        return words;
    };
    const std::vector<std::string> left = sorted(wanted);
    const std::vector<std::string> right = sorted(present);
    std::string out;
    std::size_t at = 0;
    for (const std::string& word : left) {
        while (at < right.size() && right[at] < word)
            ++at;
        if (at < right.size() && right[at] == word)
            ++at;
        else if (!word.empty())
            out += "[" + word + "]";
    }
    return out;
}

bool hasTable(const dialects::Chart& chart) {
    return std::any_of(chart.lines.begin(), chart.lines.end(), [](const dialects::Line& line) {
        return line.kind == dialects::Line::Kind::Row;
    });
}

TEST(ForeignRtf, ShowsEveryWordOfEveryProgram) {
    Program program(kNoSong);
    RichEdit& editor = program.editor();
    for (const dialects::Dialect& dialect : dialects::all()) {
        for (const dialects::Chart& chart : dialects::charts()) {
            SCOPED_TRACE(std::string(dialect.name) + ", " + chart.name);
            const std::string file = dialect.write(chart);
            const RtfVerdict verdict = checkRtf(file);
            ASSERT_EQ(shown(verdict.sentence), "");
            ASSERT_TRUE(editor.loadRtf(verdict.document));
            const Text text = editor.text().chars;
            const std::vector<std::string> wanted = linesOf(dialects::textOf(chart));
            const std::vector<std::string> found = linesOf(text);
            for (std::size_t i = 0; i < wanted.size() && !hasTable(chart); ++i) {
                ASSERT_LT(i, found.size());
                EXPECT_TRUE(words(fromUtf8(found[i])).ends_with(words(fromUtf8(wanted[i]))))
                    << found[i] << "\n"
                    << wanted[i];
            }
            const std::string loss = shown(lossInWords(readRtf(file), text, editor.rtf()));
            EXPECT_EQ(loss.find("word"), std::string::npos) << loss;
            EXPECT_EQ(loss.find("list"), std::string::npos) << loss;
        }
    }
}

// What a word processor puts on the clipboard: both kinds of text.
TEST(ForeignRtf, IsPastedWithEveryWord) {
    for (const dialects::Dialect& dialect : dialects::all()) {
        Program program(kNoSong);
        for (const dialects::Chart& chart : dialects::charts()) {
            SCOPED_TRACE(std::string(dialect.name) + ", " + chart.name);
            program.command(Command::mnuSelectAll);
            program.clipboard.rich = dialect.write(chart);
            program.clipboard.plain = dialects::textOf(chart);
            program.command(Command::mnuEditPaste);
            EXPECT_EQ(missing(dialects::textOf(chart), program.editor().text().chars), "");
        }
        EXPECT_TRUE(program.messages.boxes.empty());
    }
}

// ---- Opened, transposed there and back, saved, opened again -----------------------------------

struct Document {
    std::string name;
    std::string bytes;
    Text words;
};

std::vector<Document> composed() {
    std::vector<Document> documents;
    std::size_t number = 0;
    for (const dialects::Dialect& dialect : dialects::all()) {
        for (const dialects::Chart& chart : dialects::charts()) {
            // Each dialect and each chart a few times.
            if (number++ % 3 == 0)
                documents.push_back({std::string(dialect.name) + ", " + chart.name,
                                     dialect.write(chart), dialects::textOf(chart)});
        }
    }
    return documents;
}

std::vector<Document> documentsIn(const char* folder) {
    std::vector<Document> documents;
    const Text path = fromUtf8(folder);
    WIN32_FIND_DATAW data{};
    const HANDLE search = ::FindFirstFileW(wide(joinPath(path, u"*.rtf")), &data);
    if (search == INVALID_HANDLE_VALUE)
        return documents;
    do {
        const Text name(textOf(data.cFileName));
        const Text words = joinPath(path, name.substr(0, name.size() - 3) + u"txt");
        documents.push_back({shown(name), *Win32Files().read(joinPath(path, name)).value,
                             fromUtf8(*Win32Files().read(words).value)});
    } while (::FindNextFileW(search, &data));
    ::FindClose(search);
    return documents;
}

// A chord with its notes as numbers of half steps, so that C# and Db are the same.
std::string pitches(TextView chord) {
    std::string out;
    for (std::size_t i = 0; i < chord.size(); ++i) {
        constexpr TextView names = u"C D EF G A B";
        std::size_t pitch = names.find(chord[i]);
        if (chord[i] < u'A' || chord[i] > u'G' || pitch == TextView::npos) {
            out += shown(chord.substr(i, 1));
            continue;
        }
        const char16_t next = i + 1 < chord.size() ? chord[i + 1] : u' ';
        if (next == u'#' || next == u'b') {
            pitch += next == u'#' ? 1 : 11;
            ++i;
        }
        out += "<" + std::to_string(pitch % 12) + ">";
    }
    return out;
}

struct Chord {
    std::string pitches;
    std::size_t column;
    std::size_t end;
};

std::vector<std::vector<Chord>> chordLinesOf(TextView text) {
    std::vector<std::vector<Chord>> lines;
    for (const TextView line : splitLines(text)) {
        if (!IsChordLine(line))
            continue;
        lines.emplace_back();
        for (std::size_t at = line.find_first_not_of(u' '); at != TextView::npos;
             at = line.find_first_not_of(u' ', at)) {
            const std::size_t end = std::min(line.find(u' ', at), line.size());
            lines.back().push_back({pitches(line.substr(at, end - at)), at, end});
            at = end;
        }
    }
    return lines;
}

// Chords with room for any other name stay in their columns.
bool hasRoom(const std::vector<Chord>& line) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (line[i].column < line[i - 1].end + 3)
            return false;
    }
    return true;
}

void moveAnOctave(Editor& editor, Direction direction) {
    for (int i = 0; i < 12; ++i)
        changeDocumentKey(editor, KeyChange(direction, Spelling::Sharps), [] {});
}

struct Tally {
    unsigned refused = 0;
    unsigned named = 0;  // documents with something that is told to be lost
    unsigned chordLines = 0;
    unsigned pushed = 0;
};

void expectSameChords(const std::vector<std::vector<Chord>>& before,
                      const std::vector<std::vector<Chord>>& after, Tally& tally) {
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        ASSERT_EQ(after[i].size(), before[i].size());
        ++tally.chordLines;
        bool isPushed = false;
        for (std::size_t j = 0; j < before[i].size(); ++j) {
            EXPECT_EQ(after[i][j].pitches, before[i][j].pitches);
            isPushed = isPushed || after[i][j].column != before[i][j].column;
        }
        EXPECT_FALSE(isPushed && hasRoom(before[i]));
        if (isPushed)
            ++tally.pushed;
    }
}

void examine(Program& program, const ScratchFolder& folder, const Document& document,
             Tally& tally) {
    auto& documents = const_cast<Documents&>(program.form->documents());
    const Text path = folder.add(u"song.rtf", document.bytes);
    if (!documents.openPath(path, false)) {
        ++tally.refused;
        ADD_FAILURE() << "refused: " << program.messages.boxes.back().text;
        return;
    }
    const Text text = program.editor().text().chars;
    EXPECT_EQ(missing(document.words, text), "");
    const Text loss = lossInWords(readRtf(document.bytes), text, program.editor().rtf());
    EXPECT_EQ(shown(loss).find("word"), std::string::npos) << shown(loss);
    if (!loss.empty())
        ++tally.named;

    moveAnOctave(program.editor(), Direction::Up);
    moveAnOctave(program.editor(), Direction::Down);
    expectSameChords(chordLinesOf(text), chordLinesOf(program.editor().text().chars), tally);
    const Text moved = program.editor().text().chars;
    const RtfContents kept = readRtf(program.editor().rtf());
    ASSERT_TRUE(documents.save());
    ASSERT_TRUE(documents.openPath(path, false));
    EXPECT_EQ(missing(moved, program.editor().text().chars), "");
    EXPECT_EQ(shown(lossInWords(kept, program.editor().text().chars, program.editor().rtf())), "");
}

TEST(ForeignRtf, SurvivesOpeningTwelveKeysSavingAndOpeningAgain) {
    const char* const folderName = std::getenv("MELVORIN_RTF_FILES");
    const std::vector<Document> documents =
        folderName != nullptr ? documentsIn(folderName) : composed();
    ASSERT_GT(documents.size(), 20U);
    const ScratchFolder folder;
    Program program(kNoSong);
    program.messages.otherwise = Answer::Yes;
    Tally tally;
    for (const Document& document : documents) {
        SCOPED_TRACE(document.name);
        examine(program, folder, document, tally);
    }
    std::printf(
        "%zu documents, %u refused, %u with something named as lost; %u chord lines, %u of "
        "them pushed\n",
        documents.size(), tally.refused, tally.named, tally.chordLines, tally.pushed);
    EXPECT_GT(tally.chordLines, documents.size());
}

}  // namespace
}  // namespace melvorin::testing
