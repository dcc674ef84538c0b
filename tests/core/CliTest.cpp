#include "cli/Cli.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace melvorin {
namespace {

// A disk of a few files, some of which cannot be read or written.
class FakeFiles final : public Files {
  public:
    std::map<Text, std::string> contents;
    std::map<Text, Text> unwritable;

    bool exists(TextView path) override { return contents.count(Text(path)) != 0; }
    Result<std::uint64_t> size(TextView path) override {
        return Result<std::uint64_t>::success(contents.at(Text(path)).size());
    }
    Result<std::string> read(TextView path) override {
        const auto found = contents.find(Text(path));
        return found == contents.end() ? Result<std::string>::failure(u"Not there.")
                                       : Result<std::string>::success(found->second);
    }
    Result<Done> write(TextView /*path*/, std::string_view /*bytes*/) override {
        return Result<Done>::failure(u"A document is replaced, never written in place.");
    }
    Result<Done> replace(TextView path, std::string_view bytes) override {
        const auto trouble = unwritable.find(Text(path));
        if (trouble != unwritable.end()) {
            return Result<Done>::failure(trouble->second);
        }
        contents[Text(path)] = bytes;
        return Result<Done>::success({});
    }
    Result<Done> remove(TextView path) override {
        contents.erase(Text(path));
        return Result<Done>::success({});
    }
    Result<Text> createTemporary(TextView /*prefix*/) override {
        return Result<Text>::failure(u"The batch tool needs no temporary files.");
    }
};

class FakePorts final : public CliPorts {
  public:
    std::string input;
    std::string output;
    Text errors;
    bool inputBroken = false;
    bool outputFull = false;

    Result<std::string> readInput() override {
        return inputBroken ? Result<std::string>::failure(u"Broken.")
                           : Result<std::string>::success(input);
    }
    Result<Done> writeOutput(std::string_view bytes) override {
        if (outputFull) {
            return Result<Done>::failure(u"Full.");
        }
        output += bytes;
        return Result<Done>::success({});
    }
    void writeError(TextView message) override { errors += message; }
    Text programFolder() override { return u"nowhere"; }
};

class Cli : public ::testing::Test {
  protected:
    int run(const std::vector<Text>& arguments) {
        ports.output.clear();
        ports.errors.clear();
        return runCli(arguments, files, ports, windows1252());
    }

    FakeFiles files;
    FakePorts ports;
};

TEST_F(Cli, RefusesArgumentsThatMakeNoSense) {
    const struct {
        std::vector<Text> arguments;
        TextView named;
    } cases[] = {
        {{}, u"command"},
        {{u""}, u"\"\""},
        {{u"transport"}, u"\"transport\""},
        {{u"--up"}, u"\"--up\""},
        {{u"transpose"}, u"--up or --down"},
        {{u"transpose", u"--up"}, u"--sharps or --flats"},
        {{u"transpose", u"--flats"}, u"--up or --down"},
        {{u"transpose", u"--up", u"--down", u"--flats"}, u"\"--down\""},
        {{u"transpose", u"--up", u"--flats", u"--sharps"}, u"\"--sharps\""},
        {{u"transpose", u"--up", u"--flats", u"--octave"}, u"\"--octave\""},
        {{u"transpose", u"-u", u"--flats"}, u"\"-u\""},
        {{u"transpose", u"--up=1", u"--flats"}, u"\"--up=1\""},
        {{u"transpose", u"--up", u"--flats", u"--steps"}, u"\"--steps\""},
        {{u"transpose", u"--up", u"--flats", u"--steps", u"0"}, u"\"0\""},
        {{u"transpose", u"--up", u"--flats", u"--steps", u"12"}, u"\"12\""},
        {{u"transpose", u"--up", u"--flats", u"--steps", u"-1"}, u"\"-1\""},
        {{u"transpose", u"--up", u"--flats", u"--steps=1x"}, u"\"1x\""},
        {{u"transpose", u"--up", u"--flats", u"--steps=4294967297"}, u"\"4294967297\""},
        {{u"transpose", u"--up", u"--flats", u"--steps=1", u"--steps=1"}, u"\"--steps\""},
        {{u"transpose", u"--up", u"--flats", u"--output"}, u"\"--output\""},
        {{u"transpose", u"--up", u"--flats", u"--output="}, u"\"--output\""},
        {{u"transpose", u"--up", u"--flats", u"song", u"tune"}, u"\"tune\""},
        {{u"transpose", u"--up", u"--flats", u"--output=x", u"song", u"tune"}, u"\"tune\""},
        {{u"transpose", u"--up", u"--flats", u"--output=x", u"--output-dir=y", u"song"},
         u"--output-dir"},
        {{u"transpose", u"--up", u"--flats", u"--output-dir", u"keys"}, u"\"keys\""},
        {{u"transpose", u"--up", u"--flats", u"--output-dir", u"k", u"a/x", u"b", u"c/x"},
         u"\"a/x\" and \"c/x\""},
        {{u"transpose", u"--up", u"--accidentals", u"naturals"}, u"\"naturals\" is none of"},
        {{u"transpose", u"--up", u"--accidentals=key", u"--flats"}, u"--accidentals key excludes"},
        {{u"transpose", u"--up", u"--accidentals=sharps", u"--flats"}, u"contradicts"},
        {{u"respell", u"--accidentals=key", u"song"}, u"\"--accidentals=key\""},
        {{u"key", u"--output-dir=keys", u"song"}, u"\"--output-dir=keys\""},
        {{u"transpose", u"--up", u"--flats", u"--others"}, u"\"--others\" needs a value"},
        {{u"transpose", u"--up", u"--flats", u"--others=stay"}, u"\"stay\""},
        {{u"transpose", u"--up", u"--flats", u"--strict=yes"}, u"\"--strict=yes\""},
        {{u"lines", u"--strict"}, u"\"--strict\""},
        {{u"lines", u"song", u"tune"}, u"\"tune\""},
        {{u"lines", u"--up"}, u"\"--up\""},
        {{u"normalize", u"song", u"tune"}, u"several files need --output-dir"},
        {{u"import", u"--output-dir", u"keys"}, u"the standard input has no name"},
        {{u"replace", u"--find=a", u"--with=b", u"--output=x", u"--output-dir=y", u"song"},
         u"exclude each other"},
        {{u"expand-tabs", u"--output-dir=k", u"a/x", u"c/x"}, u"\"a/x\" and \"c/x\""},
        {{u"chord", u"--output-dir", u"keys", u"C"}, u"\"--output-dir\""},
        {{u"chord", u"--encoding", u"utf-8", u"C"}, u"\"--encoding\""},
        {{u"lines", u"--encoding", u"klingon"}, u"utf-16le, utf-16be, shift-jis"},
        {{u"lines", u"--encoding="}, u"\"--encoding\" needs a value"},
        {{u"lines", u"--encoding", u"1200"}, u"\"1200\" is not known"},
    };
    files.contents = {{u"song", "C"}, {u"tune", "G"}};
    const auto before = files.contents;
    for (const auto& example : cases) {
        EXPECT_EQ(run(example.arguments), 2) << toUtf8(example.named);
        EXPECT_NE(ports.errors.find(example.named), Text::npos) << toUtf8(ports.errors);
        EXPECT_EQ(ports.output, "");
    }
    EXPECT_EQ(files.contents, before);
}

TEST_F(Cli, HelpAndVersionGoToTheOutput) {
    const std::vector<Text> asked[] = {
        {u"--help"}, {u"transpose", u"--help"}, {u"lines", u"x", u"--help"}};
    for (const auto& arguments : asked) {
        EXPECT_EQ(run(arguments), 0);
        EXPECT_NE(ports.output.find("--output-dir"), std::string::npos);
    }
    EXPECT_EQ(run({u"--version"}), 0);
    EXPECT_EQ(ports.output.substr(0, 13), "melvorin-cli ");
    ports.outputFull = true;
    EXPECT_EQ(run({u"--help"}), 1);
}

TEST_F(Cli, KeepsEncodingMarkAndLineEnds) {
    const struct {
        std::string input, output;
    } cases[] = {
        {"", ""},
        {"C\nla la\n", "C#\nla la\n"},
        {"C\r\n\xE9t\xE9\rB\xB0", "C#\r\n\xE9t\xE9\rC\xB0"},
        {"B\xC2\xB0\n\xC3\xA9", "C\xC2\xB0\n\xC3\xA9"},
        {"\xEF\xBB\xBF"
         "C",
         "\xEF\xBB\xBF"
         "C#"},
        {std::string("\xFF\xFE"
                     "C\0\n\0",
                     6),
         std::string("\xFF\xFE"
                     "C\0#\0\n\0",
                     8)},
        {std::string("\xFE\xFF\0C", 4), std::string("\xFE\xFF\0C\0#", 6)},
    };
    for (const auto& example : cases) {
        ports.input = example.input;
        EXPECT_EQ(run({u"transpose", u"--up", u"--sharps"}), 0);
        EXPECT_EQ(ports.output, example.output);
    }
}

TEST_F(Cli, RefusesWhatItCouldNotWriteBack) {
    for (const std::string& bytes : {std::string("C\0G", 3),
                                     std::string("\xEF\xBB\xBF"
                                                 "C\xFF"),
                                     std::string("\xFF\xFE"
                                                 "C\0G",
                                                 5),
                                     std::string("\xFF\xFE\0\0C\0\0\0", 8)}) {
        files.contents[u"song"] = bytes;
        for (const std::vector<Text>& arguments :
             {std::vector<Text>{u"transpose", u"--up", u"--flats", u"--output", u"song", u"song"},
              std::vector<Text>{u"lines", u"song"}}) {
            EXPECT_EQ(run(arguments), 1);
            EXPECT_NE(ports.errors.find(u"song: "), Text::npos);
            EXPECT_EQ(ports.output, "");
            EXPECT_EQ(files.contents[u"song"], bytes);
        }
    }
}

TEST_F(Cli, WritesWhereItIsTold) {
    const std::map<Text, std::string> before = {
        {u"a/song", "C"}, {u"b/tune", "E\n"}, {u"--up", "G"}};
    const struct {
        std::vector<Text> arguments;
        TextView file;
        std::string written;
    } cases[] = {
        {{u"transpose", u"--up", u"--flats", u"--output", u"x", u"a/song"}, u"x", "Db"},
        {{u"transpose", u"--up", u"--flats", u"--output=a/song", u"a/song"}, u"a/song", "Db"},
        {{u"transpose", u"a/song", u"--output-dir", u"keys", u"--down", u"--sharps"},
         u"keys/song",
         "B"},
        {{u"transpose", u"--up", u"--flats", u"--output-dir=keys/", u"a/song", u"b/tune"},
         u"keys/tune",
         "F\n"},
        {{u"transpose", u"--steps", u"11", u"--up", u"--flats", u"--output=x", u"--", u"--up"},
         u"x",
         "Gb"},
        {{u"transpose", u"--steps=2", u"--down", u"--flats", u"--output=x"}, u"x", "Eb"},
    };
    ports.input = "F";
    for (const auto& example : cases) {
        files.contents = before;
        EXPECT_EQ(run(example.arguments), 0) << toUtf8(ports.errors);
        EXPECT_EQ(files.contents[Text(example.file)], example.written);
        EXPECT_EQ(ports.output, "");
        EXPECT_EQ(ports.errors, u"");
    }
}

TEST_F(Cli, ReportsTroubleAndCarriesOn) {
    files.contents = {{u"song", "C"}, {u"tune", "E"}, {u"keys/air", "old"}, {u"air", "G"}};
    files.unwritable = {{u"keys/air", u"No room."}};
    EXPECT_EQ(run({u"transpose", u"--up", u"--sharps", u"--output-dir", u"keys", u"gone", u"song",
                   u"air", u"tune"}),
              1);
    EXPECT_EQ(ports.errors,
              u"melvorin-cli: cannot read gone: Not there.\n"
              u"melvorin-cli: cannot write keys/air: No room.\n");
    EXPECT_EQ(files.contents[u"keys/song"], "C#");
    EXPECT_EQ(files.contents[u"keys/tune"], "F");
    EXPECT_EQ(files.contents[u"keys/air"], "old");

    ports.outputFull = true;
    EXPECT_EQ(run({u"transpose", u"--up", u"--sharps", u"song"}), 1);
    EXPECT_EQ(ports.errors, u"melvorin-cli: cannot write the standard output: Full.\n");
    ports.inputBroken = true;
    EXPECT_EQ(run({u"lines"}), 1);
    EXPECT_EQ(ports.errors, u"melvorin-cli: cannot read the standard input: Broken.\n");
}

TEST_F(Cli, NamesOrMovesLinesThatAKeyChangeLeaves) {
    const std::string plain = "C  G\nold folks\n";
    const std::string mixed = "C  G\r\nCmaj7\tF\r\n|Am|G/B|\r\nla\r\nIntro: D\r\n";
    const std::string german = "Hm  G\nCmaj7  D\n";
    const std::string open = "Hm  G\nB  Bb\nCmaj7  D\n";
    // Two parts, as large songs are read; a tablature stays one from its first line on.
    const std::string large = "{start_of_tab}\n" + std::string(40000, '-') + "\nCmaj7 G7sus2\n" +
                              "{end_of_tab}\nEm7 Cmaj7\n";
    const struct {
        std::string song, moved;
        TextView left, leftWhenMoved;
    } cases[] = {
        {plain, "Db Ab\nold folks\n", u"", u""},
        {mixed, "Db Ab\r\nDbmaj7  Gb\r\n|Bbm|Ab/C|\r\nla\r\nIntro: Eb\r\n",
         u"3 lines of chords left: 2, 3, 5", u""},
        {german, "Cm  Ab\nDbmaj7 Eb\n", u"2 lines of chords left: 1, 2", u""},
        {open, "", u"2 lines of chords left: 1, 3", u"2 lines of chords left: 1, 3"},
        {large, "", u"1 line of chords left: 5", u""},
    };
    for (const auto& c : cases) {
        ports.input = c.song;
        const auto report = [](TextView left) {
            return left.empty() ? Text() : u"the standard input: " + Text(left) + u"\n";
        };
        EXPECT_EQ(run({u"transpose", u"--up", u"--flats"}), 0);
        EXPECT_EQ(toUtf8(ports.errors), toUtf8(report(c.left)));
        const std::string leaving = ports.output;
        EXPECT_EQ(run({u"transpose", u"--up", u"--flats", u"--others=leave", u"--strict"}),
                  c.left.empty() ? 0 : 3);
        EXPECT_EQ(ports.output, leaving);
        EXPECT_EQ(run({u"transpose", u"--up", u"--flats", u"--others", u"move", u"--strict"}),
                  c.leftWhenMoved.empty() ? 0 : 3);
        EXPECT_EQ(toUtf8(ports.errors), toUtf8(report(c.leftWhenMoved)));
        if (!c.moved.empty()) {
            EXPECT_EQ(ports.output, c.moved);
        }
    }
    files.contents = {{u"song", mixed}};
    EXPECT_EQ(run({u"transpose", u"--up", u"--flats", u"--strict", u"song", u"--output=x"}), 3);
    EXPECT_EQ(ports.errors, u"song: 3 lines of chords left: 2, 3, 5\n");
    EXPECT_EQ(files.contents[u"x"].substr(0, 14), "Db Ab\r\nCmaj7\tF");
    // What failed comes first.
    EXPECT_EQ(
        run({u"transpose", u"--up", u"--flats", u"--strict", u"--output-dir=x", u"song", u"gone"}),
        1);
}

// Every command that writes a text, on two files, on one and on the standard input.
TEST_F(Cli, EveryCommandWritesWhereItIsTold) {
    const struct {
        std::vector<Text> command;
        std::string song;
        std::string written;
    } cases[] = {
        {{u"transpose", u"--up", u"--flats"}, "C7+  D\nla\tla\n", "Db7+ Eb\nla\tla\n"},
        {{u"transpose", u"--up", u"--accidentals=flats"}, "C7+  D\n", "Db7+ Eb\n"},
        {{u"transpose", u"--down", u"--steps=4", u"--accidentals=key"},
         "Key: G\nG  C  D7\n",
         "Key: Eb\nEb Ab Bb7\n"},
        {{u"respell"}, "Key: F\nF  A#  C\n", "Key: F\nF  Bb  C\n"},
        {{u"expand-tabs"}, "C7+  D\nla\tla\n", "C7+  D\nla      la\n"},
        {{u"replace", u"--find=D", u"--with=Em"}, "C7+  D\n", "C7+  Em\n"},
        {{u"normalize"}, "C7M  D\n", "C7+  D\n"},
        {{u"import"}, "[C7M]la [D]la\n", "C7+ D\nla  la\n"},
        {{u"export-chordpro"}, "C7+  D\nlala la\n", "[C7+]lala [D]la\n"},
        {{u"export-chordpro", u"--names=solfege"},
         "C7+  D/F#\nlala la\n",
         "[Do7+]lala [Re/Fa#]la\n"},
        {{u"transpose", u"--up", u"--steps=2", u"--flats", u"--others=move"},
         "Key: G, Capo 3 (sounds in Bb)\nG  C\n",
         "Key: A, Capo 3 (sounds in C)\nA  D\n"},
        {{u"lines"}, "C7+  D\nla\n", "C\t0:C7+\t5:D\nL\n"},
    };
    for (const auto& c : cases) {
        const auto with = [&](const std::vector<Text>& more) {
            std::vector<Text> arguments = c.command;
            arguments.insert(arguments.end(), more.begin(), more.end());
            files.contents = {{u"a/song", c.song}, {u"tune", c.song}};
            ports.input = c.song;
            EXPECT_EQ(run(arguments), 0) << toUtf8(ports.errors);
        };
        with({u"a/song"});
        const std::string written = ports.output;
        EXPECT_EQ(written, c.written);
        with({u"--output", u"x"});
        EXPECT_EQ(files.contents[u"x"], written);
        EXPECT_EQ(ports.output, "");
        with({u"--output-dir=new", u"a/song", u"tune"});
        EXPECT_EQ(files.contents[u"new/song"], written);
        EXPECT_EQ(files.contents[u"new/tune"], written);
        EXPECT_EQ(files.contents[u"tune"], c.song);
        EXPECT_EQ(ports.output, "");
    }
}

TEST_F(Cli, ReadsAndWritesTheEncodingItIsTold) {
    const struct {
        TextView encoding;
        std::string input;
        TextView find, with;
        std::string output;
        int code;
    } cases[] = {
        // ASCII takes everything.
        {u"", "a", u"a", u"á", "\xC3\xA1", 0},
        {u"", "a", u"a", u"中", "\xE4\xB8\xAD", 0},
        {u"", "a\xE9", u"a", u"á", "\xE1\xE9", 0},
        {u"", "a\xE9", u"a", u"中", "", 1},
        {u"Windows-1251", "\xEF\xE5", u"п", u"Я", "\xDF\xE5", 0},
        {u"1251", "\xEF\xE5", u"п", u"Я", "\xDF\xE5", 0},
        {u"1251", "a", u"a", u"中", "", 1},
        {u"KOI8-R", "\xD0\xC5", u"п", u"Я", "\xF1\xC5", 0},
        {u"shift-jis", "\x8Ft", u"春", u"歌", "\x89\xCC", 0},
        {u"shift-jis", "\x8Ft\x8F", u"春", u"歌", "", 1},
        {u"euc-jp", "\xBD\xD5", u"春", u"歌", "\xB2\xCE", 0},
        {u"big5", "\xAC\x4B", u"春", u"a", "a", 0},
        {u"iso-8859-2", "\xB1", u"ą", u"č", "\xE8", 0},
        // What looks like UTF-8, or like a mark, is letters here.
        {u"1252", "\xC3\xA9", u"Ã", u"x", "x\xA9", 0},
        {u"1252", "\xFF\xFE", u"ÿ", u"x", "x\xFE", 0},
        {u"utf-8", "\xC3\xA9", u"é", u"中", "\xE4\xB8\xAD", 0},
        {u"utf-8", "\xE9", u"é", u"e", "", 1},
        {u"utf-8",
         "\xEF\xBB\xBF"
         "a",
         u"a", u"b",
         "\xEF\xBB\xBF"
         "b",
         0},
        {u"utf-8-bom", "a", u"a", u"b",
         "\xEF\xBB\xBF"
         "b",
         0},
        {u"utf-16le", std::string("a\0", 2), u"a", u"中", "\x2D\x4E", 0},
        {u"utf-16be", std::string("\xFE\xFF\0a", 4), u"a", u"中", "\xFE\xFF\x4E\x2D", 0},
        {u"utf-16be", "\xFF\xFE\x2D\x4E", u"中", u"a", "", 1},
    };
    for (const auto& c : cases) {
        ports.input = c.input;
        std::vector<Text> arguments = {u"replace", u"--find", Text(c.find), u"--with",
                                       Text(c.with)};
        if (!c.encoding.empty()) {
            arguments.insert(arguments.end(), {u"--encoding", Text(c.encoding)});
        }
        EXPECT_EQ(run(arguments), c.code) << toUtf8(c.encoding) << toUtf8(ports.errors);
        EXPECT_EQ(ports.output, c.output) << toUtf8(c.encoding);
    }
}

TEST_F(Cli, TellsWhatHasNoPlaceAndReadsPartsInTheEncoding) {
    ports.input = "a\xE9";
    EXPECT_EQ(run({u"replace", u"--find=a", u"--with=中"}), 1);
    EXPECT_EQ(toUtf8(ports.errors),
              "melvorin-cli: cannot rewrite the standard input: In the encoding of the text there "
              "is no place for a new character.\n");
    ports.input = "C\n\xEF\xE5\xF1\xED\xFF\n";
    EXPECT_EQ(run({u"transpose", u"--up", u"--flats", u"--encoding=1251"}), 0);
    EXPECT_EQ(ports.output, "Db\n\xEF\xE5\xF1\xED\xFF\n");
}

TEST_F(Cli, NormalizesSuffixes) {
    ports.input = "A-7  C7M\r\nB\xB0 C/3";
    EXPECT_EQ(run({u"normalize"}), 0);
    EXPECT_EQ(ports.output, "Am7  C7+\r\nB\xB0 C/E");
    EXPECT_EQ(run({u"normalize", u"gone"}), 1);
    EXPECT_EQ(run({u"normalize", u"song", u"tune"}), 2);
}

TEST_F(Cli, ImportsAndExportsSongs) {
    ports.input = "Intro: Am  Cmaj7\r\n[G]Row, {row}\xB0 [N.C.]row\r\n";
    const std::string chart =
        "Intro:\r\n       Am  C7+\r\n            N.C.\r\nG\r\nRow, {row}\xB0 row\r\n";
    EXPECT_EQ(run({u"import"}), 0);
    EXPECT_EQ(ports.output, chart);
    EXPECT_EQ(run({u"import", u"--verdicts"}), 0);
    EXPECT_EQ(ports.output, "1\tsection\n2\tlyrics\tremarks on a line above\n\n" + chart);
    ports.input = chart;
    EXPECT_EQ(run({u"export-chordpro"}), 0);
    EXPECT_EQ(ports.output,
              "{comment: Intro:}\r\n       [Am]    [C7+]\r\n"
              "[G]Row, {row}\xB0 [N.C.]row\r\n");
    ports.input = "F7+  C\nla   la\n";
    EXPECT_EQ(run({u"export", u"--format", u"text", u"--international"}), 0);
    EXPECT_EQ(ports.output, "Fmaj7 C\nla    la\n");
    // Without an H in it B may be either; ChordPro says so, of a text the user is told.
    const Text note = u"nothing in it tells other programs how its notes are called\n";
    ports.input = "Bb  F\nla  la\n";
    EXPECT_EQ(run({u"export", u"--format", u"text", u"--names", u"german"}), 0);
    EXPECT_EQ(ports.output, "B   F\nla  la\n");
    EXPECT_TRUE(ports.errors.ends_with(note));
    ports.errors.clear();
    EXPECT_EQ(run({u"export-chordpro", u"--names", u"german"}), 0);
    EXPECT_EQ(ports.output, "{x_melvorin_names: german}\n[B]la  [F]la\n");
    ports.input = "Bb  F  B7\nla  la la\n";
    EXPECT_EQ(run({u"export", u"--format", u"text", u"--names", u"german"}), 0);
    EXPECT_EQ(ports.errors, u"");
    ports.input = "F7+  C\nla   la\n";
    EXPECT_EQ(run({u"export", u"--format=html"}), 0);
    EXPECT_NE(ports.output.find("<title>Song</title>"), std::string::npos);
    EXPECT_EQ(run({u"export"}), 2);
    EXPECT_EQ(run({u"export", u"--format=pdf"}), 2);
    EXPECT_EQ(run({u"export", u"--format=text", u"--international", u"--names=german"}), 2);
    ports.input = "Am  B  C9\nla  la la\n";
    EXPECT_EQ(run({u"import", u"--plain-b=flat", u"--plain-ninth", u"seventh"}), 0);
    EXPECT_EQ(ports.output, "Am  Bb C7/9\nla  la la\n");
    EXPECT_EQ(run({u"import", u"--plain-b", u"sharp"}), 2);
    EXPECT_EQ(run({u"import", u"--plain-ninth", u"eighth"}), 2);
    ports.input = std::string("C\0G", 3);
    EXPECT_EQ(run({u"import"}), 1);
    EXPECT_EQ(run({u"export-chordpro", u"--verdicts"}), 2);
    EXPECT_EQ(run({u"import", u"a", u"b"}), 2);
}

TEST_F(Cli, WhatIsLeftOverIsToldWhereTheKeyIsFollowedToo) {
    const std::vector<Text> up = {u"transpose", u"--up", u"--accidentals=key"};
    ports.input = "Key: G\nG  C  D7  G\nla\n| Cmaj7 | D7 |\n";
    EXPECT_EQ(run(up), 0);
    EXPECT_EQ(ports.output, "Key: Ab\nAb Db Eb7 Ab\nla\n| Cmaj7 | D7 |\n");
    EXPECT_NE(ports.errors.find(u": 1 line of chords left: 4\n"), Text::npos);
    EXPECT_EQ(run({up[0], up[1], up[2], u"--strict"}), 3);
    EXPECT_EQ(run({up[0], up[1], up[2], u"--others=move"}), 0);
    EXPECT_EQ(ports.output, "Key: Ab\nAb Db Eb7 Ab\nla\n| Dbmaj7 | Eb7 |\n");
    EXPECT_EQ(ports.errors, u"");
}

TEST_F(Cli, KeysAreToldForAllFilesInOnePlace) {
    files.contents = {{u"a/song", "C  F  G7  C\r\nla la\r\nAm  F  G7  C"},
                      {u"words", "la la"},
                      {u"bytes", std::string("C\0G", 3)},
                      {u"higher",
                       "C  F  G7  C\nAm  Dm  G7  C\nF  G7  C\n\n"
                       "D  G  A7  D\nBm  Em  A7  D\nG  A7  D\n"}};
    EXPECT_EQ(run({u"key", u"a/song", u"words", u"gone", u"bytes"}), 1);
    EXPECT_EQ(ports.output, "a/song\tC\t99\nwords\t?\t0\n");
    EXPECT_EQ(ports.errors,
              u"melvorin-cli: cannot read gone: Not there.\n"
              u"melvorin-cli: cannot read bytes: It is not a text file.\n");
    EXPECT_EQ(run({u"key", u"--output", u"x", u"higher"}), 0);
    EXPECT_EQ(ports.output, "");
    const std::string written = files.contents[u"x"];
    EXPECT_EQ(written.substr(0, 9), "higher\tC\t");
    EXPECT_EQ(written.substr(written.find('\n')), "\n\t5\tD\n");
    ports.input = "Key: Gb\nC  F  G7  C\n";
    EXPECT_EQ(run({u"key"}), 0);
    EXPECT_EQ(ports.output, "-\tC\t99\n");
    ports.input = "Key: Gb\nB\n";
    EXPECT_EQ(run({u"key"}), 0);
    EXPECT_EQ(ports.output, "-\tGb\t100\n");
}

TEST_F(Cli, LinesDescribeTheChart) {
    const struct {
        std::string chart, report;
    } cases[] = {
        {"", ""},
        {"\n", "C\n"},
        {"  C   Gdim/B\r\nWalking home\r\n\r\n   \r\nA2", "C\t2:C\t6:Gdim/B\nL\nC\nC\nL\n"},
        {"C\n", "C\t0:C\n"},
        {"\xEF\xBB\xBF"
         "A  B",
         "C\t0:A\t3:B\n"},
        {" B\xB0", "C\t1:B\xC2\xB0\n"},
    };
    for (const auto& example : cases) {
        ports.input = example.chart;
        EXPECT_EQ(run({u"lines"}), 0);
        EXPECT_EQ(ports.output, example.report);
        files.contents[u"song"] = example.chart;
        EXPECT_EQ(run({u"lines", u"song"}), 0);
        EXPECT_EQ(ports.output, example.report);
    }
}

TEST_F(Cli, ChordNeedsADatabaseAndEitherNamesOrTheList) {
    for (const std::vector<Text>& wrong : {std::vector<Text>{u"chord"},
                                           {u"chord", u"--list", u"C"},
                                           {u"chord", u"--steps", u"2", u"C"},
                                           {u"capo", u"--output-dir", u"x", u"song"},
                                           {u"export-chordpro", u"--names", u"french"},
                                           {u"import", u"--names", u"german"},
                                           {u"lines", u"--list"}}) {
        EXPECT_EQ(run(wrong), 2) << toUtf8(ports.errors);
    }
    EXPECT_EQ(run({u"chord", u"C"}), 1);
    EXPECT_EQ(toUtf8(ports.errors),
              "melvorin-cli: cannot read the chord database nowhere/Dbase/MlvDbase.db: "
              "The file does not exist or may not be read.\n");
    EXPECT_EQ(run({u"chord", u"--database", u"elsewhere.db", u"--list"}), 1);
    EXPECT_NE(ports.errors.find(u"elsewhere.db"), Text::npos);
}

}  // namespace
}  // namespace melvorin
