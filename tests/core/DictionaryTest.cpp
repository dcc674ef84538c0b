// The chord dictionary: recordset, database, search, what the panel shows.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Diagrams.h"
#include "StandIns.h"
#include "cli/ChordReport.h"
#include "cli/NativeFiles.h"
#include "dictionary/BookLookup.h"
#include "dictionary/ChordDictionary.h"
#include "dictionary/PanelLayout.h"
#include "dictionary/SqliteSource.h"

namespace melvorin {
namespace {

TEST(Recordset, ReadsCriteria) {
    const struct {
        TextView criterion;
        const char* expected;  // "field|value", or a part of the cause
    } cases[] = {
        {u"Fname = 'C7'", "Fname|C7"},
        {u"  Course='C Major'  ", "Course|C Major"},
        {u"Fname = ''", "Fname|"},
        {u"Fname = ' = '", "Fname| = "},
        {u"Fname = 'C'7'", "ends the text of the search criterion early"},
        {u"Fname = 'C'' or ''a'", "ends the text of the search criterion early"},
        {u"Fname = 'x'; drop table Borrower", "ends the text of the search criterion early"},
        {u"Fname = 'C", "has no end"},
        {u"Fname = C", "has no text in apostrophes"},
        {u"Fname", "has no field"},
        {u" = 'C'", "has no field"},
    };
    for (const auto& [criterion, expected] : cases) {
        const Result<Criterion> read = readCriterion(criterion);
        const std::string got =
            toUtf8(read ? read.value->field + u"|" + read.value->value : read.cause);
        EXPECT_NE(got.find(expected), std::string::npos) << toUtf8(criterion) << ": " << got;
        EXPECT_EQ(read.value.has_value(), std::string(expected).find('|') != std::string::npos);
    }
}

Recordset recordsOf(Table table) {
    Recordset records;
    records.open(std::make_unique<testing::ScriptedRows>(std::move(table)), u"", u"");
    return records;
}

TEST(Recordset, MovesAndFinds) {
    Recordset records = recordsOf({{u"Name"}, {{u"Äb"}, {std::nullopt}, {u"c"}, {u"äB"}}});
    const auto at = [&] {
        if (records.eof() || records.bof())
            return std::string(records.eof() ? "eof" : "bof");
        return toUtf8(records.field(u"NAME").value_or(u"null"));
    };
    EXPECT_EQ(at(), "Äb");
    records.movePrevious();
    EXPECT_EQ(at(), "bof");
    records.movePrevious();
    records.moveNext();
    EXPECT_EQ(at(), "Äb");
    records.moveNext();
    EXPECT_EQ(at(), "null");
    records.moveLast();
    EXPECT_EQ(at(), "äB");
    records.moveNext();
    records.moveNext();
    EXPECT_EQ(at(), "eof");
    EXPECT_FALSE(records.field(u"Name"));
    records.movePrevious();
    EXPECT_EQ(at(), "äB");

    // The current row counts; what lies before it does not.
    records.moveFirst();
    EXPECT_TRUE(records.find(u"Name = 'ÄB'").value.value());
    EXPECT_EQ(records.position(), 0U);
    records.moveNext();
    EXPECT_TRUE(records.find(u"name = 'ÄB'").value.value());
    EXPECT_EQ(records.position(), 3U);
    EXPECT_FALSE(records.find(u"Name = 'C'").value.value());
    EXPECT_EQ(at(), "eof");
    records.moveTo(2);
    EXPECT_FALSE(records.find(u"Nom = 'C'"));
    EXPECT_EQ(at(), "c");

    Recordset empty = recordsOf({{u"Name"}, {}});
    empty.moveLast();
    EXPECT_FALSE(empty.find(u"Name = 'c'").value.value());
    EXPECT_TRUE(empty.eof() && empty.bof());
}

// A program folder of the test's own. Paths have "\" in them, which is a letter here.
class Folder {
  public:
    Folder() {
        // The call fills in the end of the name.
        std::string name = std::filesystem::temp_directory_path() / "melvorin-XXXXXX";
        path_ = ::mkdtemp(name.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::filesystem::remove_all(path_);
        std::filesystem::remove(file());
    }

    Text path() const { return fromUtf8(path_); }
    std::string file() const { return toUtf8(sqliteDatabasePath(path())); }
    void run(const char* sql) {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(file().c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

  private:
    std::string path_;
};

constexpr const char* kBook =
    "create table Borrower(Fname text, Course text, Mname text, Refum text, Refdois text,"
    " Reftres text, Refquatro text, Refcinco text);"
    "insert into Borrower values"
    " ('C','C Major','09','a','A','s','S','²'),"
    " ('Cm7','C Minor Seventh','09','n','N','§','§','§'),"
    " ('C4','C Fourth','10','g','G','h','§','j'),"
    " ('X',null,null,'x','X','§','§','§')";

struct Dictionary {
    testing::ScriptedMessages messages;
    NativeFiles files;
    std::vector<Text> normalised;
    ChordDictionary dictionary{messages, {}, [this](TextView text) {
                                   normalised.emplace_back(text);
                                   return Text(text);
                               }};

    std::string shown() const {
        const ShownEntry& entry = dictionary.shown();
        std::string text = toUtf8(entry.face + u"|" + entry.LB + u"|");
        for (std::size_t i = 0; i < kDiagramButtons; ++i)
            text += entry.visible[i] ? toUtf8(entry.captions[i]) : "-";
        return text;
    }
};

TEST(ChordDictionary, FindsAndShows) {
    Folder folder;
    folder.run(kBook);
    Dictionary panel;
    ChordDictionary& dictionary = panel.dictionary;
    ASSERT_TRUE(dictionary.open(folder.path(), panel.files));
    EXPECT_EQ(panel.shown(), "Melvorin 09|C Major|aAsS²J");

    constexpr const char* kNotFound = "Chord Not Found";
    const struct {
        TextView search;
        SearchField field;
        const char* text;
        const char* shown;
        const char* box;
    } cases[] = {
        {u"  cm7 ", SearchField::Symbol, "cm7", "Melvorin 09|C Minor Seventh|nN---J", ""},
        {u"C(sus4)", SearchField::Symbol, "C(sus4)", "Melvorin 10|C Fourth|gGh-j-", ""},
        {u"Cmin7", SearchField::Symbol, "Cmin7", "Melvorin 09|C Minor Seventh|nN---J", ""},
        {u"   ", SearchField::Symbol, "", "Melvorin 09|C Minor Seventh|nN---J", ""},
        {u"c fourth", SearchField::Name, "c fourth", "Melvorin 10|C Fourth|gGh-j-", ""},
        {u"C", SearchField::Name, "C", "Melvorin 10|C Fourth|gGh-j-", kNotFound},
        {u"D'", SearchField::Symbol, "D'", "Melvorin 10|C Fourth|gGh-j-", "cannot look for \"D'\""},
        {u"' or '1'='1", SearchField::Symbol, "' or '1'='1", "Melvorin 10|C Fourth|gGh-j-",
         "ends the text of the search criterion early"},
        {u"x", SearchField::Symbol, "x", "Melvorin 10|C Fourth|xX---J", ""},
        {u"C Minor Seventh", SearchField::Name, "C Minor Seventh",
         "Melvorin 09|C Minor Seventh|nN---J", ""},
    };
    for (const auto& [search, field, text, shown, box] : cases) {
        panel.messages.boxes.clear();
        EXPECT_EQ(toUtf8(dictionary.find(search, field)), text);
        EXPECT_EQ(panel.normalised.back(), search);
        EXPECT_EQ(panel.shown(), shown) << text;
        EXPECT_EQ(panel.messages.boxes.size(), std::string(box).empty() ? 0U : 1U) << text;
        if (panel.messages.boxes.empty())
            continue;
        const testing::ShownMessage& shownBox = panel.messages.boxes[0];
        EXPECT_NE(shownBox.text.find(box), std::string::npos) << shownBox.text;
        const bool notFound = box == kNotFound;
        EXPECT_EQ(shownBox.title, notFound ? " Melvorin Database          " : " Melvorin");
        EXPECT_EQ(shownBox.icon, notFound ? MessageIcon::Information : MessageIcon::Critical);
        // A search that breaks leaves the row where the failed one before it had left it.
        EXPECT_TRUE(dictionary.records().eof());
    }
}

TEST(MajorSymbol, IsForACapitalMBehindTheRoot) {
    const struct {
        TextView typed;
        const char* symbol;  // empty for none
    } cases[] = {
        {u"CM", "C"},      {u"CM7", "C7+"},   {u"C#M7", "C#7+"},    {u"BbM7", "Bb7+"},
        {u"CM9", "C7+/9"}, {u"cM7", "C7+"},   {u"CM7/E", "C7+/E"},  {u"CM/G", "C/G"},
        {u"CMaj7", "C7+"}, {u"CMAJ7", "C7+"}, {u"AM7#5", "A7+/5#"}, {u"FM7(#11)", "F7+/11#"},
        {u"Cm7", ""},      {u"cm7", ""},      {u"CmM7", ""},        {u"CMin7", ""},
        {u"CMIN7", ""},    {u"C7M", ""},      {u"C", ""},           {u"", ""},
        {u"C Major", ""},  {u"CMx", ""},      {u"M7", ""},          {u"##", ""},
    };
    for (const auto& [typed, symbol] : cases)
        EXPECT_EQ(toUtf8(majorSymbol(typed).value_or(Text())), symbol) << toUtf8(typed);
}

// Each chord of the book in its own row; "CM7" finds Cm7, as the database compares without case.
constexpr const char* kMinors =
    "create table Borrower(Fname text, Course text, Mname text, Refum text, Refdois text,"
    " Reftres text, Refquatro text, Refcinco text);"
    "create table Diagram(Font text, Character text, Frets text, Fingers text);"
    "insert into Borrower values"
    " ('C','C Major','09','a','A','§','§','§'), ('Cm','C Minor','09','d','D','§','§','§'),"
    " ('Cm7','C Minor Seventh','09','3','Ø','§','§','§'),"
    " ('C7+','C Major Seventh','09','5','ç','§','§','§'),"
    " ('Cmaj7','C Major Seventh','09','5','ç','§','§','§'),"
    " ('Cm/G','C Minor over G','10','5','ç','§','§','§'),"
    " ('C/G','C Major over G','10','3','Ø','§','§','§'),"
    " ('Gm','G Minor','31','d','D','§','§','§'), ('G4','G Fourth','31','4','Ù','§','§','§'),"
    " ('G11','G Added Eleventh','31','ä','Ä','§','§','§');"
    "insert into Diagram values ('09','5','x32000','-32---'), ('09','3','x35343','-13121'),"
    " ('31','ä','320013','32--14')";

TEST(ChordDictionary, OffersTheMajorChordThatACapitalMMeans) {
    Folder folder;
    folder.run(kMinors);
    Dictionary panel;
    ChordDictionary& dictionary = panel.dictionary;
    ASSERT_TRUE(dictionary.open(folder.path(), panel.files));
    const struct {
        TextView search;
        const char* found;
        const char* offered;  // symbol|caption
    } cases[] = {
        {u"CM7", "C Minor Seventh", "C7+|Major seventh: C7+"},
        {u"CM", "C Minor", "C|Major: C"},
        {u"CM/G", "C Minor over G", "C/G|Major over G: C/G"},
        {u"Cm7", "C Minor Seventh", ""},
        {u"CMaj7", "C Major Seventh", ""},  // found already
        {u"GM", "G Minor", ""},             // this book has no G major
        {u"CM9", "G Minor", ""},            // not found at all
        {u"Gadd4", "G Added Eleventh", ""},
        {u"Gsus4", "G Fourth", ""},
    };
    const auto offered = [&] {
        const auto& other = dictionary.otherReading();
        return other ? toUtf8(other->symbol + u"|" + other->caption) : "";
    };
    for (const auto& [search, found, expected] : cases) {
        dictionary.find(search, SearchField::Symbol);
        EXPECT_EQ(toUtf8(dictionary.shown().LB), found) << toUtf8(search);
        EXPECT_EQ(offered(), expected) << toUtf8(search);
        const std::optional<std::size_t> row = dictionary.records().position();
        if (row) {
            EXPECT_EQ(dictionary.records().field(u"Course"), dictionary.shown().LB);
        }
    }
    dictionary.find(u"CM7", SearchField::Symbol);
    dictionary.moveNext();
    EXPECT_EQ(offered(), "") << "the search is over";
    dictionary.find(u"CM7", SearchField::Name);
    EXPECT_EQ(offered(), "") << "a name has no such sign";
}

TEST(ChordReport, ReadsACapitalMAsMajor) {
    Folder folder;
    folder.run(kMinors);
    ChordReport book;
    ASSERT_TRUE(book.open(fromUtf8(folder.file())));
    const struct {
        TextView chord;
        const char* begin;  // of the report; empty where there is no such chord
    } cases[] = {
        {u"CM7", "C7+\tC Major Seventh\t09\t5\tx32000\t-32---\n"},
        {u"cm7", "Cm7\tC Minor Seventh\t09\t3\tx35343\t-13121\n"},
        {u"CM", "C\tC Major\t"},
        {u"c minor", "Cm\tC Minor\t"},
        {u"GM", ""},  // and not its minor chord
        {u"Gadd4", "G11\tG Added Eleventh\t31\tä\t320013\t32--14\n"},
    };
    for (const auto& [chord, begin] : cases) {
        std::string report;
        EXPECT_EQ(static_cast<bool>(book.describe(chord, report)), *begin != '\0');
        EXPECT_EQ(report.substr(0, std::string(begin).size()), begin);
        EXPECT_EQ(report.empty(), *begin == '\0');
    }
}

TEST(Recordset, FindsWhatBeginsSo) {
    const Recordset records =
        recordsOf({{u"Name"}, {{u"C"}, {u"Dm"}, {std::nullopt}, {u"dm7"}, {u"E7"}, {u"E"}}});
    const struct {
        TextView text;
        std::size_t from;
        std::optional<std::size_t> row;
    } cases[] = {{u"d", 0, 1}, {u"d", 2, 3},  {u"d", 4, 1}, {u"DM", 2, 1},
                 {u"e", 1, 5}, {u"e7", 5, 4}, {u"x", 0, {}}};  // an exact row comes first
    for (const auto& [text, from, row] : cases)
        EXPECT_EQ(records.rowBeginningWith(text, 0, from), row) << toUtf8(text) << from;
    EXPECT_EQ(Recordset().rowBeginningWith(u"C", 0, 0), std::nullopt);
}

TEST(BookLookup, KnowsTheChordsOfTheBook) {
    const BookLookup book(recordsOf(
        {{u"Course", u"Fname"}, {{u"C Major", u"C"}, {u"x", u"F#m7"}, {u"y", std::nullopt}}}));
    EXPECT_FALSE(book.isEmpty());
    EXPECT_TRUE(book.contains(u"C") && book.contains(u"F#m7") && book.contains(u"F#-7"));
    EXPECT_FALSE(book.contains(u"C Major") || book.contains(u"G") || book.contains(u""));
    EXPECT_TRUE(BookLookup(Recordset()).isEmpty());
}

TEST(ChordDictionary, DataControlStopsAtTheEnds) {
    Folder folder;
    folder.run(kBook);
    Dictionary panel;
    ChordDictionary& dictionary = panel.dictionary;
    ASSERT_TRUE(dictionary.open(folder.path(), panel.files));
    const auto symbol = [&] { return toUtf8(dictionary.records().field(u"Fname").value()); };
    dictionary.movePrevious();
    EXPECT_EQ(symbol(), "C");
    dictionary.moveNext();
    EXPECT_EQ(symbol() + panel.shown(), "Cm7Melvorin 09|C Minor Seventh|nN---J");
    dictionary.moveLast();
    dictionary.moveNext();
    EXPECT_EQ(symbol(), "X");
    dictionary.moveTo(2);
    EXPECT_EQ(panel.shown(), "Melvorin 10|C Fourth|gGh-j-");
    dictionary.find(u"nothing", SearchField::Symbol);
    dictionary.movePrevious();
    EXPECT_EQ(symbol(), "X");
    dictionary.moveFirst();
    EXPECT_EQ(symbol(), "C");
}

TEST(ChordDictionary, TellsWhyADatabaseCannotBeUsed) {
    constexpr const char* kDamaged = "The file is no chord database, or it is damaged.";
    const struct {
        const char* name;
        std::function<void(Folder&)> prepare;
        const char* cause;
    } cases[] = {
        {"missing", [](Folder&) {}, "The file does not exist or may not be read."},
        {"no database",
         [](Folder& folder) { std::ofstream(folder.file()) << std::string(999, 'x'); }, kDamaged},
        {"cut short",
         [](Folder& folder) {
             folder.run(kBook);
             std::filesystem::resize_file(folder.file(), 5000);
         },
         kDamaged},
        {"empty", [](Folder& folder) { std::ofstream(folder.file()).flush(); },
         "no such table: Borrower"},
        {"no such field", [](Folder& folder) { folder.run("create table Borrower(Fname text)"); },
         "no such column"},
    };
    for (const auto& [name, prepare, cause] : cases) {
        Folder folder;
        prepare(folder);
        Dictionary panel;
        const Result<Done> opened = panel.dictionary.open(folder.path(), panel.files);
        ASSERT_FALSE(opened) << name;
        const std::string told = toUtf8(opened.cause);
        EXPECT_NE(told.find(cause), std::string::npos) << name << ": " << told;
        EXPECT_NE(told.find("MlvDbase.db"), std::string::npos) << told;
        // The panel of a dictionary that is not there still answers.
        panel.dictionary.moveNext();
        EXPECT_EQ(toUtf8(panel.dictionary.find(u"C", SearchField::Symbol)), "C");
        EXPECT_EQ(panel.messages.boxes.size(), 1U) << name;
    }
}

// Whatever the file holds, it is only read, nothing else is made, and a search comes to its end.
TEST(ChordDictionary, TheFileIsOnlyRead) {
    const std::string renamed = std::string(kBook) + ";alter table Borrower rename to Chords;";
    const auto viewOf = [&](const char* rows) {
        return renamed + "create view Borrower as select Fname, Course, Mname, Refum, Refdois," +
               " Reftres, Refquatro, Refcinco from " + rows;
    };
    const struct {
        const char* name;
        std::string sql;
        bool opens;
    } cases[] = {
        {"book", kBook, true},
        {"write-ahead log", std::string("pragma journal_mode=wal;") + kBook, true},
        {"view", viewOf("Chords"), true},
        {"view that calls", viewOf("Chords where length(hex(randomblob(9000000))) > 1"), false},
        {"view without end",
         viewOf("Chords, (with recursive n(i) as (select 1 union all select i from n)"
                " select i from n)"),
         false},
        {"view of too much",
         viewOf("Chords where Fname > (select a.Fname from Chords a cross join Chords b"
                " cross join Chords c cross join Chords d cross join Chords e cross join Chords f"
                " cross join Chords g cross join Chords h cross join Chords i cross join Chords j"
                " cross join Chords k cross join Chords l cross join Chords m cross join Chords n"
                " where a.Fname || b.Fname || n.Fname > 'z')"),
         false},
    };
    for (const auto& [name, sql, opens] : cases) {
        SCOPED_TRACE(name);
        Folder folder;
        folder.run(sql.c_str());
        const auto bytes = NativeFiles().read(fromUtf8(folder.file())).value.value();
        Dictionary panel;
        EXPECT_EQ(static_cast<bool>(panel.dictionary.open(folder.path(), panel.files)), opens);
        panel.dictionary.find(u"Cm7", SearchField::Symbol);
        if (opens) {
            EXPECT_EQ(panel.shown().substr(0, 28), "Melvorin 09|C Minor Seventh|");
        }
        SqliteSource source;
        ASSERT_TRUE(source.open(fromUtf8(folder.file())));
        for (const TextView change :
             {u"delete from Borrower", u"pragma user_version=7", u"attach 'other.db' as other",
              u"create temp table x(y)", u"vacuum into 'copy.db'"})
            EXPECT_FALSE(source.read(change)) << toUtf8(change);
        for (const char* beside : {"-journal", "-wal", "-shm"})
            EXPECT_FALSE(std::filesystem::exists(folder.file() + beside)) << beside;
        EXPECT_EQ(NativeFiles().read(fromUtf8(folder.file())).value, bytes);
    }
}

TEST(ChordDictionary, ALockedOrReplacedFileIsToldAndTheEntryStays) {
    Folder folder;
    folder.run(kBook);
    Dictionary panel;
    ASSERT_TRUE(panel.dictionary.open(folder.path(), panel.files));
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(folder.file().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "begin exclusive", nullptr, nullptr, nullptr), SQLITE_OK);
    panel.dictionary.find(u"C4", SearchField::Symbol);
    ASSERT_EQ(panel.messages.boxes.size(), 1U);
    EXPECT_NE(panel.messages.boxes[0].text.find("keeps the file locked"), std::string::npos);
    EXPECT_EQ(panel.shown(), "Melvorin 09|C Major|aAsS²J");
    sqlite3_exec(other, "rollback; delete from Borrower", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    // An emptied table: nothing is found, and nothing is said.
    panel.dictionary.find(u"C4", SearchField::Symbol);
    EXPECT_EQ(panel.messages.boxes.size(), 1U);
    EXPECT_TRUE(panel.dictionary.records().eof() && panel.dictionary.records().bof());
}

// The older format comes first where its file is there, and gives way to the other when its
// provider is missing.
TEST(ChordDictionary, OlderDatabase) {
    EXPECT_EQ(toUtf8(jetConnection(u"C:\\Melvorin")),
              "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\Melvorin.\\Dbase\\MlvDbase.mdb;"
              "Persist Security Info=False; Jet OLEDB:Database Password = zm84pa6tu72wgc9nvb31");
    Folder folder;
    const std::string jetFile = toUtf8(jetDatabasePath(folder.path()));
    std::ofstream(jetFile) << "older";
    testing::ScriptedMessages messages;
    NativeFiles files;
    const auto same = [](TextView text) { return Text(text); };
    ChordDictionary without(
        messages, [] { return std::make_unique<testing::ScriptedRows>(std::nullopt); }, same);
    const Result<Done> failed = without.open(folder.path(), files);
    EXPECT_NE(toUtf8(failed.cause).find("MlvDbase.mdb\r\n\r\nNo provider."), std::string::npos);
    folder.run(kBook);
    EXPECT_TRUE(without.open(folder.path(), files));
    EXPECT_EQ(without.records().count(), 4U);

    const Table table{{u"Fname", u"Mname"}, {{u"C", u"09"}}};
    ChordDictionary with(
        messages, [&] { return std::make_unique<testing::ScriptedRows>(table); }, same);
    EXPECT_TRUE(with.open(folder.path(), files));
    EXPECT_EQ(with.records().count(), 1U);
    std::filesystem::remove(jetFile);
}

bool overlap(const Area& a, const Area& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

TEST(PanelLayout, PartsNeitherOverlapNorLeaveThePanel) {
    const struct {
        int width;
        int height;
        int dpi;
        bool isUsual;  // a size that the main window really gives
    } sizes[] = {{0, 0, 96, false},      {20, 30, 96, false},   {250, 460, 96, true},
                 {385, 460, 96, true},   {393, 880, 96, true},  {600, 880, 96, true},
                 {590, 1300, 144, true}, {900, 1300, 144, true}};
    for (const auto& [width, height, dpi, isUsual] : sizes) {
        // A caption that needs more than half of the row that it shares.
        const PanelTexts texts{15 * dpi / 96, [&](PanelPart part) {
                                   return part == PanelPart::GB7 ? width * 6 / 10 : 20;
                               }};
        for (const PanelView view : {PanelView::Search, PanelView::Diagrams, PanelView::Grid}) {
            for (const PanelNotice notice :
                 {PanelNotice::None, PanelNotice::Strip, PanelNotice::Page}) {
                for (const bool other : {false, true}) {
                    const PanelLayout layout =
                        layoutPanel(view, notice, other, width, height, dpi, texts);
                    std::vector<Area> placed;
                    for (const Area& area : layout.areas) {
                        if (area.width <= 0 || area.height <= 0)
                            continue;
                        EXPECT_TRUE(area.left >= 0 && area.top >= 0 &&
                                    area.left + area.width <= width &&
                                    area.top + area.height <= height)
                            << width << "x" << height;
                        for (const Area& former : placed)
                            EXPECT_FALSE(overlap(area, former)) << width << "x" << height;
                        placed.push_back(area);
                    }
                    if (isUsual && view != PanelView::Search) {
                        EXPECT_EQ(layout[PanelPart::GB7].width, texts.width(PanelPart::GB7));
                    }
                    if (!isUsual || notice == PanelNotice::Page)
                        continue;
                    EXPECT_GE(layout[PanelPart::GB6].width, 34 * dpi / 96);
                    EXPECT_GE(layout[PanelPart::GB6].height, 45 * dpi / 96);
                    EXPECT_EQ(layout[PanelPart::dtaDel].height > 0, view == PanelView::Grid);
                    EXPECT_EQ(layout[PanelPart::Other].height > 0,
                              other && view != PanelView::Grid);
                }
            }
        }
    }
}

TEST(InsertDiagram, IsBlueReadableAndLetsTextGoOn) {
    const DiagramStyle text{u"Lucida Console", 20, {9, 9, 9}};
    const DiagramStyle large{u"Courier New", 96, {0, 0, 0}};
    const DiagramStyle diagram{u"Melvorin 03", 40, {1, 2, 3}};
    const struct {
        DiagramStyle around;
        int halfPoints;
        DiagramStyle typed;
    } cases[] = {
        {text, 56, text},
        {large, 96, large},
        {diagram, 40, {u"Melvorin 09", 40, {0, 0, 255}}},
    };
    for (const auto& [around, halfPoints, typed] : cases) {
        testing::LineOfDiagrams line(u"ab cd", around);
        line.select({2, 4});
        EXPECT_EQ(insertDiagram(line, u"S", u"Melvorin 09"), typed);
        EXPECT_EQ(toUtf8(line.text()), "abSd");
        EXPECT_EQ(line.at(2), (DiagramStyle{u"Melvorin 09", halfPoints, {0, 0, 255}}));
        EXPECT_EQ(line.at(1), around);
        EXPECT_EQ(line.selection(), (Selection{3, 3}));
    }
}

}  // namespace
}  // namespace melvorin
