#include <gtest/gtest.h>

#include "StandIns.h"
#include "sound/FolderRows.h"
#include "sound/SoundPlayer.h"

namespace melvorin {
namespace {

TEST(Sound, KnowsWhatIsListedAndWhatIsPlayed) {
    const struct {
        TextView name;
        bool listed;
        TextView extension;
        bool played;
    } cases[] = {
        {u"1 E (thin, high).mid", true, u".MID", true},
        {u"A.MiD", true, u".MID", true},
        {u"a.wav", true, u".WAV", false},
        {u"a.midi", false, u"MIDI", false},
        {u"a.mid.txt", false, u".TXT", false},
        {u"mid", false, u"MID", false},
        {u"", false, u"", false},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(isSoundFile(example.name), example.listed) << toUtf8(example.name);
        EXPECT_EQ(soundExtension(example.name), example.extension);
        EXPECT_EQ(isPlayable(soundExtension(example.name)), example.played);
    }
}

// A name of a file stays inside its quotation marks.
TEST(Sound, NoNameBecomesACommand) {
    const std::pair<TextView, std::vector<std::string>> cases[] = {
        {u"C:\\a b; x.mid",
         {"close canyon", "Open \"C:\\a b; x.mid\" type sequencer alias canyon", "play canyon"}},
        {u"C:\\a\" alias x & record \"b.mid", {"close canyon"}},
    };
    for (const auto& [path, commands] : cases) {
        testing::RecordedMultimedia sent;
        SoundPlayer(sent).play(path, [] {});
        EXPECT_EQ(sent.commands, commands);
    }
}

TEST(Sound, FolderListShowsTheWayAndWhatIsInside) {
    const struct {
        TextView folder;
        std::vector<Text> inside;
        const char* captions;
        TextView lastPath;
    } cases[] = {
        {u"C:\\Melvorin\\Strings",
         {u"open", u"Bass"},
         "C:\\|  Melvorin|    Strings*|      Bass|      open|",
         u"C:\\Melvorin\\Strings\\open"},
        {u"C:\\", {u"x"}, "C:\\*|  x|", u"C:\\x"},
        {u"C:", {}, "C:\\*|", u"C:\\"},
        {u"\\\\server\\share\\songs",
         {},
         "\\\\server\\share|  songs*|",
         u"\\\\server\\share\\songs"},
    };
    for (const auto& example : cases) {
        const FolderRows list = folderRows(example.folder, example.inside);
        std::string captions;
        for (std::size_t i = 0; i < list.rows.size(); ++i)
            captions += toUtf8(list.rows[i].caption) + (i == list.current ? "*|" : "|");
        EXPECT_EQ(captions, example.captions);
        EXPECT_EQ(toUtf8(list.rows.back().path), toUtf8(example.lastPath));
    }
}

}  // namespace
}  // namespace melvorin
