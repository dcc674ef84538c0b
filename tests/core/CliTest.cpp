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

class Cli : public testing::Test {
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
        {{u"lines", u"song", u"tune"}, u"\"tune\""},
        {{u"lines", u"--up"}, u"\"--up\""},
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
        "Intro:\r\n       Am  C7+\r\nG           N.C.\r\nRow, {row}\xB0 row\r\n";
    EXPECT_EQ(run({u"import"}), 0);
    EXPECT_EQ(ports.output, chart);
    EXPECT_EQ(run({u"import", u"--verdicts"}), 0);
    EXPECT_EQ(ports.output, "1\tsection\n2\tlyrics\twill not change key\n\n" + chart);
    ports.input = chart;
    EXPECT_EQ(run({u"export-chordpro"}), 0);
    EXPECT_EQ(ports.output,
              "{comment: Intro:}\r\n       [Am]    [C7+]\r\n[G]Row, {row}\xB0 [N.C.]row\r\n");
    ports.input = std::string("C\0G", 3);
    EXPECT_EQ(run({u"import"}), 1);
    EXPECT_EQ(run({u"export-chordpro", u"--verdicts"}), 2);
    EXPECT_EQ(run({u"import", u"a", u"b"}), 2);
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
