// Text files keep the encoding and the line ends they came with; in doubt the code page is asked.
#include <gtest/gtest.h>

#include <random>

#include "app/DocumentFile.h"
#include "base/CodePages.h"
#include "base/LetterCase.h"
#include "base/TextGuess.h"

namespace melvorin {
namespace {

std::vector<Text> wordsOf(TextView list) {
    std::vector<Text> words;
    for (std::size_t end; !list.empty(); list.remove_prefix(std::min(end + 1, list.size()))) {
        end = std::min(list.find(u' '), list.size());
        words.emplace_back(list.substr(0, end));
    }
    return words;
}

// A song of these words, `between` them in a line, with chord lines above some lines.
Text songOf(const std::vector<Text>& words, TextView between, std::size_t count,
            std::mt19937& random) {
    Text song;
    for (std::size_t i = 0; i < count; ++i) {
        const bool startsLine = i % 5 == 0;
        if (startsLine && i > 0)
            song += u"\r\n";
        if (startsLine && random() % 2 == 0)
            song += u"Am   G7/B  [F]  x3\r\n";
        song.append(startsLine ? u"" : between).append(words[random() % words.size()]);
    }
    return song + u"\r\n";
}

struct Language {
    unsigned codePage;
    TextView words;
};

// The words with the most accents are the likeliest to be mistaken.
constexpr Language kAccented[] = {
    {1252, u"été où à élève forêt ça français naïf cœur âme île même déjà voilà être Noël Émile"},
    {1252, u"für über schön Mädchen Straße Grüße Äpfel Öl Übermut größer hören süß Herz Vögel"},
    {1252, u"não coração canção você é mãe irmão às ações avó avô saudade até amanhã pôr-do-sol"},
    {1252, u"niño corazón canción ¿qué? ¡ay! mañana está también sueño años árbol único día"},
    {1252, u"för är på från själ hjärta måste våren blå också älska ögon Åska ängel sång"},
    {1252, u"ærø å på blåbær sjø kjærlighet Øyvind går så når også år hånd Årets Ærlig Åse"},
    {1250, u"szív őszi dűlő szőlő álom kék ég élő fény csönd újság tűz virág úgy és Árpád Ősz"},
    {1250, u"płynie wisła była łza łączy są żółw źle śpiew będę ćma ląd głos miłość łódź że"},
    {1250, u"žluťoučký kůň příliš píseň láska dítě být můj tvář řeka šťastný ústa více ďábel"},
    {1253, u"καλημέρα τραγούδι αγάπη μου θάλασσα ψυχή και το φως ήλιος έρωτας ουρανός ώρα τα"},
    {1254, u"şarkı gönül aşk güneş çiçek ığdır sevdiğim yağmur kış gözlerin söyle İstanbul dağ"},
    {1255, u"שיר אהבה שלום לילה ים שמש ירח מים אני אתה הלב שלי עם אבא אמא ארץ ישראל"},
};

TEST(TextGuess, AccentsAreNeverTakenForAnotherScript) {
    std::mt19937 random(1);
    for (const Language& language : kAccented) {
        const AnsiCodec& own = *codePage(language.codePage);
        const std::vector<Text> words = wordsOf(language.words);
        for (int round = 0; round < 400; ++round) {
            // Mostly a few words of a few: there the ratios say least.
            std::vector<Text> some;
            for (std::size_t i = 0, wanted = 1 + random() % 6; i < wanted; ++i)
                some.push_back(words[random() % words.size()]);
            Text song = songOf(some, u" ", 2 + random() % 40, random);
            if (round % 4 == 0)
                song = unicodeUpperCase(song);
            const std::optional<std::string> bytes = own.encode(song);
            ASSERT_TRUE(bytes) << toUtf8(song);
            ASSERT_EQ(likelyCodePages(*bytes), std::vector<unsigned>())
                << language.codePage << ": " << toUtf8(song);
            ASSERT_TRUE(doubtfulReadings(*bytes, own).empty());
        }
    }
}

struct Script {
    unsigned codePage;
    TextView between;
    TextView words;
};

constexpr TextView kJapanese =
    u"君の 声が 聞こえる 春の風 と 歌おう ありがとう 「愛」 を 夜空 に ラララ コード、 さよなら。 "
    u"ずっと";
constexpr TextView kRussian =
    u"песня любовь моя Ночь тихая звёзды над рекой мы поём вместе с тобой о весне и доме Моём "
    u"утро радость берёзы грустный ветер Родная пришла зима сердце дорога старый город";
constexpr Script kOtherScripts[] = {
    {932, u"　", kJapanese},
    {20932, u"　", kJapanese},
    {949, u" ",
     u"사랑 해요 노래를 부르자 봄이 오면 그대 와 함께 하늘 바람 별 나의 너에게 우리는 꿈을!"},
    {936, u"，",
     u"我们 一起 唱歌 春天 来了 你的 眼睛 爱情 月亮 在 天上 星星 不要 忘记 故乡 的 风 吹过 田野 "
     u"河水 "
     u"慢慢 流 孩子 笑 声音 远方 朋友 今夜 雨 下 梦 里 回家 路"},
    {950, u" ",
     u"我們 一起 唱歌 春天 來了 你的 眼睛 愛情 月亮 在 天上 星星 不要 忘記 故鄉 的 風 吹過 田野 "
     u"河水 "
     u"慢慢 流 孩子 笑 聲音 遠方 朋友 今夜 雨 下 夢 裡 回家 路"},
    {1251, u" ", kRussian},
    {20866, u" ", kRussian},
};

TEST(TextGuess, OtherScriptsAskWithTheRightPageFirst) {
    std::mt19937 random(2);
    const AnsiCodec& western = windows1252();
    for (const Script& script : kOtherScripts) {
        const AnsiCodec& own = *codePage(script.codePage);
        const std::vector<Text> words = wordsOf(script.words);
        for (int round = 0; round < 100; ++round) {
            Text song = songOf(words, script.between, 30 + random() % 60, random);
            // All in capitals KOI8-R could be Greek, and does not ask.
            if (round % 4 == 0 && script.codePage != 20866)
                song = unicodeUpperCase(song);
            const std::optional<std::string> bytes = own.encode(song);
            ASSERT_TRUE(bytes) << toUtf8(song);
            const std::vector<CodePageReading> readings = doubtfulReadings(*bytes, western);
            ASSERT_FALSE(readings.empty()) << script.codePage << ": " << toUtf8(song);
            ASSERT_EQ(readings[0].codePage, script.codePage) << toUtf8(song);
            ASSERT_TRUE(song.find(readings[0].preview.substr(0, 40)) != Text::npos)
                << toUtf8(readings[0].preview);
            // Where the machine reads it so anyway, nobody asks.
            ASSERT_TRUE(doubtfulReadings(*bytes, own).empty()) << toUtf8(song);
        }
    }
}

// Bytes that another program's codecs made.
TEST(TextGuess, ReadsWhatOtherProgramsWrote) {
    const struct {
        unsigned number;
        std::string bytes;
        TextView text;
    } samples[] = {
        {932, "Am  G\n\x8Ft\x82\xCC\x89\xCC\x82\xF0\n\x8CN\x82\xC6\x89\xCC\x82\xA8\x82\xA4\n",
         u"Am  G\n春の歌を\n君と歌おう\n"},
        {20932,
         "Am  G\n\xBD\xD5\xA4\xCE\xB2\xCE\xA4\xF2\n"
         "\xB7\xAF\xA4\xC8\xB2\xCE\xA4\xAA\xA4\xA6\n",
         u"Am  G\n春の歌を\n君と歌おう\n"},
        {949,
         "Am  G\n\xBA\xBD\xC0\xCC \xBF\xC0\xB8\xE9 \xB3\xEB\xB7\xA1\xB8\xA6\n"
         "\xC7\xD4\xB2\xB2 \xBA\xCE\xB8\xA3\xC0\xDA\n",
         u"Am  G\n봄이 오면 노래를\n함께 부르자\n"},
        {936,
         "Am  G\n\xB4\xBA\xCC\xEC\xC0\xB4\xC1\xCB\n"
         "\xCE\xD2\xC3\xC7\xD2\xBB\xC6\xF0\xB3\xAA\xB8\xE8\n",
         u"Am  G\n春天来了\n我们一起唱歌\n"},
        {950,
         "Am  G\n\xACK\xA4\xD1\xA8\xD3\xA4"
         "F\n\xA7\xDA\xAD\xCC\xA4@\xB0_\xB0\xDB\xBAq\n",
         u"Am  G\n春天來了\n我們一起唱歌\n"},
        {1251,
         "Am  G\n\xC2\xE5\xF1\xED\xEE\xE9 \xEF\xEE\xB8\xEC\n"
         "\xEC\xFB \xEF\xE5\xF1\xED\xFE \xE2\xEC\xE5\xF1\xF2\xE5\n",
         u"Am  G\nВесной поём\nмы песню вместе\n"},
        {20866,
         "Am  G\n\xF7\xC5\xD3\xCE\xCF\xCA \xD0\xCF\xA3\xCD\n"
         "\xCD\xD9 \xD0\xC5\xD3\xCE\xC0 \xD7\xCD\xC5\xD3\xD4\xC5\n",
         u"Am  G\nВесной поём\nмы песню вместе\n"},
    };
    for (const auto& sample : samples) {
        const auto readings = doubtfulReadings(sample.bytes, windows1252());
        ASSERT_FALSE(readings.empty()) << sample.number;
        EXPECT_EQ(readings[0].codePage, sample.number);
        EXPECT_EQ(readings[0].preview,
                  toCrLf(sample.text.substr(0, sample.text.size() - 1)).chars + u"\r\n");
        // Nobody is offered what cannot be read, and everything only once.
        for (const CodePageReading& reading : readings) {
            const AnsiCodec& codec = *codePage(reading.codePage);
            EXPECT_EQ(codec.encode(codec.decode(sample.bytes)), sample.bytes);
        }
    }
    // What the machine cannot read is asked, although no other script is likely.
    EXPECT_TRUE(doubtfulReadings("caf\xE9 \xE0 la", windows1252()).empty());
    const auto french = doubtfulReadings("caf\xE9 \xE0 la", *codePage(932));
    ASSERT_FALSE(french.empty());
    EXPECT_EQ(french[0].codePage, 1252U);
    EXPECT_EQ(toUtf8(french[0].preview), "café à la");
}

// ---- There and back ---------------------------------------------------------------------------

// A file as some editor left it: lines in one encoding, with one kind of line end.
std::string randomFile(std::mt19937& random, const TextFormat& format) {
    static const std::vector<Text> anywhere = wordsOf(u"C Am7 word {x} # 1234 la-la F#m/C#");
    static const std::vector<Text> western = wordsOf(u"é ÿþ Ã© ï»¿ ßü € “x”");
    static const std::vector<Text> more = wordsOf(u"Ω 中文 𝄞 Жизнь \uFFFD e\u0301 \u200B");
    const std::vector<Text> japanese = wordsOf(kJapanese);
    Text text;
    for (std::size_t i = 0, count = random() % 30; i < count; ++i) {
        std::vector<Text> words = anywhere;
        const auto& special = format.codePage == 932                  ? japanese
                              : format.encoding == TextEncoding::Ansi ? western
                                                                      : more;
        words.insert(words.end(), special.begin(), special.end());
        text += words[random() % words.size()];
        text += random() % 4 == 0 ? u"\n" : u" ";
    }
    const AnsiCodec& codec = format.codePage == 0 ? windows1252() : *codePage(format.codePage);
    return encodeText(withLineEnds(text, format.lineEnd), format.encoding, codec).value();
}

TEST(DocumentFile, AFileThatIsSavedUnchangedIsTheSame) {
    std::mt19937 random(3);
    int files = 0;
    for (int round = 0; round < 3000; ++round) {
        const TextFormat format{static_cast<TextEncoding>(random() % 5),
                                random() % 2 == 0 ? 932U : 0U, static_cast<LineEnd>(random() % 3),
                                FinalLineEnd::Yes};
        const std::string bytes = randomFile(random, format);
        // One that reads as something else is no file of this encoding.
        if (format.encoding == TextEncoding::Ansi && detectEncoding(bytes) != TextEncoding::Ansi)
            continue;
        ++files;
        std::size_t asked = 0;
        const auto content = readDocument(
            bytes, u"txt", windows1252(),
            [&](const std::vector<CodePageReading>& readings) -> std::optional<std::size_t> {
                ++asked;
                for (std::size_t i = 0; i < readings.size(); ++i) {
                    if (readings[i].codePage == format.codePage ||
                        (format.codePage == 0 && readings[i].codePage == 1252))
                        return i;
                }
                ADD_FAILURE() << "the right one was not offered: " << bytes;
                return 0;
            });
        ASSERT_TRUE(static_cast<bool>(content)) << bytes;
        ASSERT_LE(asked, 1U);
        const PlainFile saved =
            plainDocument(content.value->text, content.value->format, windows1252());
        ASSERT_EQ(saved.bytes, bytes);
        ASSERT_EQ(saved.format, content.value->format);
    }
    EXPECT_GT(files, 2500);
}

struct SavedFile {
    std::string bytes;  // the file
    TextView text;      // what the user makes of it
    std::string saved;
    bool told;  // the encoding is another
};

void expectSaved(std::initializer_list<SavedFile> cases) {
    for (const SavedFile& c : cases) {
        const auto content = readDocument(c.bytes, u"txt", windows1252());
        ASSERT_TRUE(static_cast<bool>(content)) << c.bytes;
        const PlainFile saved = plainDocument({Text(c.text)}, content.value->format, windows1252());
        EXPECT_EQ(saved.bytes, c.saved);
        EXPECT_EQ(saved.format != content.value->format, c.told) << c.saved;
        // The next save has nothing to tell.
        EXPECT_EQ(plainDocument({Text(c.text)}, saved.format, windows1252()).format, saved.format);
        const auto again = readDocument(saved.bytes, u"txt", windows1252());
        ASSERT_TRUE(static_cast<bool>(again));
        // Of a file without a final line end the last empty line is one.
        const bool isPlainer = c.text.ends_with(u'\r') || c.text.find(u'\v') != TextView::npos;
        if (!isPlainer) {
            EXPECT_EQ(toUtf8(again.value->text.chars), toUtf8(c.text));
        }
    }
}

std::string marked(std::string_view bytes) {
    return "\xEF\xBB\xBF" + std::string(bytes);
}

TEST(DocumentFile, KeepsTheFormat) {
    expectSaved({
        {"C\nla\n", u"C\rla\u00E1", "C\nla\xC3\xA1\n", false},
        {"C\r\nla", u"C\rla\r", "C\r\nla\r\n", false},
        {"C\rla\r", u"D\rla", "D\rla\r", false},
        // The majority, and CR LF where there is none.
        {"a\nb\nc\r\n", u"a\rb\rc", "a\nb\nc\n", false},
        {"a\nb\r\n", u"a\rb", "a\r\nb\r\n", false},
        {"a\nb\r\nc\rd", u"a\rb\rc\rd", "a\r\nb\r\nc\r\nd", false},
        {"a\nb\nc\rd\r", u"a", "a\r\n", false},
        // An empty file gets a line end with its first text.
        {"", u"", "", false},
        {"", u"C", "C\r\n", false},
        {"\r\n", u"", "\r\n", false},
        {marked(""), u"\u00E9", marked("\xC3\xA9\r\n"), false},
        {marked("C"), u"\u4E2D", marked("\xE4\xB8\xAD"), false},
        {"caf\xE9\n", u"caf\u00E9 \u20AC", "caf\xE9 \x80\n", false},
        {"caf\xE9\n", u"caf\u00E9 \u4E2D", marked("caf\xC3\xA9 \xE4\xB8\xAD\n"), true},
    });
    EXPECT_EQ(plainDocument({u"C\u00E9"}, TextFormat(), windows1252()).bytes, "C\xC3\xA9\r\n");
}

TEST(DocumentFile, SaysThatItChangedWhereOthersWouldMisreadIt) {
    expectSaved({
        // These would be read as UTF-8, or as having a mark.
        {"caf\xE9", u"\u00C3\u00A9", marked("\xC3\x83\xC2\xA9"), true},
        {"caf\xE9", u"\u00FF\u00FEC",
         marked("\xC3\xBF\xC3\xBE"
                "C"),
         true},
        {"C",
         u"\uFEFF"
         u"C",
         marked("\xEF\xBB\xBF"
                "C"),
         true},
        // Half a character has its place in UTF-16 alone.
        {"C",
         {u"a\xD83Cz", 3},
         std::string("\xFF\xFE"
                     "a\0\x3C\xD8z\0",
                     8),
         true},
        {std::string("\xFE\xFF\xD8\x3C\0C", 6),
         {u"\xD83C"
          u"D",
          2},
         std::string("\xFE\xFF\xD8\x3C\0D", 6),
         false},
        {"C\n", u"C\vla", "C\nla\n", false},
    });
}

TEST(DocumentFile, TheUserSaysHowADoubtfulTextIsRead) {
    const std::string song = "\x8Ft\x82\xCC\x89\xCC\x82\xF0\n\x8CN\x82\xC6\x89\xCC\x82\xA8\x82\xA4";
    const auto opened = readDocument(song, u"txt", windows1252(), [](const auto&) { return 0; });
    ASSERT_TRUE(static_cast<bool>(opened));
    EXPECT_EQ(opened.value->format.codePage, 932U);
    EXPECT_EQ(toUtf8(opened.value->text.chars), "春の歌を\r君と歌おう");
    EXPECT_EQ(plainDocument({u"春"}, opened.value->format, windows1252()).bytes, "\x8Ft");
    // A code page that another machine had.
    TextFormat foreign = opened.value->format;
    foreign.codePage = 4;
    EXPECT_EQ(plainDocument({u"春"}, foreign, windows1252()).format.encoding,
              TextEncoding::Utf8WithBom);

    const auto cancelled =
        readDocument(song, u"txt", windows1252(), [](const auto&) { return std::nullopt; });
    EXPECT_FALSE(static_cast<bool>(cancelled));
    EXPECT_TRUE(cancelled.cause.empty());
    // Without somebody to ask it is read as the machine has it.
    EXPECT_EQ(readDocument(song, u"txt", windows1252()).value.value().format.codePage, 0U);
}

}  // namespace
}  // namespace melvorin
