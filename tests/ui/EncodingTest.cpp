// Plain text in its own encoding through the real editor, and the question for the code page.
#include "Controls.h"
#include "app/frmCodePage.h"

namespace melvorin::testing {
namespace {

// "春の歌を / 君と歌おう" in Shift-JIS.
constexpr char kJapanese[] = "\x8Ft\x82\xCC\x89\xCC\x82\xF0\n\x8CN\x82\xC6\x89\xCC\x82\xA8\x82\xA4";

constexpr wchar_t kQuestion[] = L"MelvorinfrmCodePage";

void press(WPARAM key) {
    ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
}

TEST(CodePageQuestion, ShowsTheTextAsItWouldBeRead) {
    const ScratchFolder folder;
    const Text path = folder.add(u"haru.txt", kJapanese);
    Program program(kNoSong);
    const WhileOpen question(kQuestion, [&](HWND window) {
        EXPECT_FALSE(::IsWindowEnabled(program.form->handle()));
        const HWND list = ::GetDlgItem(window, frmCodePage::kList);
        const HWND preview = ::GetDlgItem(window, frmCodePage::kPreview);
        EXPECT_EQ(::GetFocus(), list);
        EXPECT_EQ(captionOf(::GetWindow(list, GW_HWNDPREV)), "&Encoding:");
        EXPECT_EQ(chosenRowOf(list), "Japanese (Shift-JIS)");
        EXPECT_EQ(captionOf(preview), "春の歌を\r\n君と歌おう");
        ::SendMessageW(list, WM_KEYDOWN, VK_DOWN, 1);
        EXPECT_EQ(chosenRowOf(list), "Western European");
        EXPECT_TRUE(captionOf(preview).starts_with("\u008Ft‚Ì‰Ì‚ð\r\n")) << captionOf(preview);
        ::SendMessageW(list, WM_KEYDOWN, VK_UP, 1);
        // Tab goes to the preview and the buttons, and around.
        HWND next = list;
        for (const int id : {frmCodePage::kPreview, frmCodePage::kOpen, frmCodePage::kCancel,
                             frmCodePage::kList}) {
            next = ::GetNextDlgTabItem(window, next, FALSE);
            EXPECT_EQ(::GetDlgCtrlID(next), id);
        }
        press(VK_RETURN);
    });
    program.dialogs.choose(FileChoice{path, 3});
    program.command(Command::mnuFileOpen);
    EXPECT_EQ(program.text(), "春の歌を\r君と歌おう");
    EXPECT_EQ(program.caption(), "haru.txt - Melvorin");
    EXPECT_TRUE(program.messages.boxes.empty());
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));

    // The song stays in it, over a crash as well.
    program.editor().select({0, 0});
    program.type(u"Am ");
    program.command(Command::mnuFileSave);
    EXPECT_EQ(folder.content(u"haru.txt"), "Am " + std::string(kJapanese));
    program.editor().select({0, 2});
    program.type(u"E");
    program.crash();

    Program next;
    next.files.offersRemains = true;
    next.messages.answer(Answer::Yes);
    ASSERT_TRUE(next.start());
    ASSERT_EQ(next.messages.boxes.size(), 1U);
    next.command(Command::mnuFileSave);
    EXPECT_EQ(folder.content(u"haru.txt"), "E " + std::string(kJapanese));
    EXPECT_EQ(next.messages.boxes.size(), 1U);
    EXPECT_EQ(question.seen(), 1);
}

TEST(CodePageQuestion, CancelLeavesEverythingAsItWas) {
    const ScratchFolder folder;
    const Text path = folder.add(u"haru.txt", kJapanese);
    Program program(folder.add(u"other.txt", "Dm\n"));
    for (int way = 0; way < 2; ++way) {
        const WhileOpen question(kQuestion, [way](HWND window) {
            if (way == 0)
                press(VK_ESCAPE);
            else
                ::PostMessageW(window, WM_CLOSE, 0, 0);
        });
        program.dialogs.choose(FileChoice{path, 3});
        program.command(Command::mnuFileOpen);
        EXPECT_EQ(question.seen(), 1);
        EXPECT_EQ(program.text(), "Dm");
        EXPECT_EQ(program.caption(), "other.txt - Melvorin");
        EXPECT_TRUE(program.messages.boxes.empty());
    }
    // A start with such a song asks before the main window is there.
    Program second;
    const WhileOpen question(
        kQuestion, [](HWND window) { clickOn(::GetDlgItem(window, frmCodePage::kOpen)); });
    ASSERT_TRUE(second.start(path));
    EXPECT_EQ(second.text(), "春の歌を\r君と歌おう");
}

TEST(Encoding, ASaveKeepsItOrTells) {
    const auto mark = [](std::string_view bytes) { return "\xEF\xBB\xBF" + std::string(bytes); };
    const std::string halves("\xFF\xFE\x3C\xD8 \0C\0\n\0", 10);
    const struct {
        std::string bytes;
        TextView typed;  // in front
        std::string saved;
        std::size_t told;
        std::string words;
    } cases[] = {
        {"C\nla\n", u"\u00E9",
         "\xC3\xA9"
         "C\nla\n",
         0, ""},
        {"caf\xE9", u"\u00E9 ", "\xE9 caf\xE9", 0, ""},
        {"caf\xE9\r\n", u"\u4E2D",
         mark("\xE4\xB8\xAD"
              "caf\xC3\xA9\r\n"),
         1, "is saved as UTF-8 now"},
        {"C\rD\r", u"G", "GC\rD\r", 0, ""},
        {std::string("\xFE\xFF\0C\0\n", 6), u"G", std::string("\xFE\xFF\0G\0C\0\n", 8), 0, ""},
        {halves, u"G", std::string("\xFF\xFEG\0", 4) + halves.substr(2), 1,
         "has 1 damaged character,"},
    };
    for (const auto& c : cases) {
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", c.bytes));
        program.editor().select({0, 0});
        program.type(c.typed);
        for (int save = 0; save < 2; ++save) {
            program.command(Command::mnuFileSave3);
            EXPECT_EQ(folder.content(u"song.txt"), c.saved);
        }
        program.command(Command::mnuEditUndo);
        program.command(Command::mnuEditRedo);
        program.command(Command::mnuFileSave3);
        EXPECT_EQ(folder.content(u"song.txt"), c.saved);
        ASSERT_EQ(program.messages.boxes.size(), c.told) << c.saved;
        if (c.told > 0) {
            const ShownMessage& box = program.messages.boxes[0];
            EXPECT_TRUE(box.text.starts_with("\"") &&
                        box.text.find("song.txt\" " + c.words) != std::string::npos)
                << box.text;
        }
    }
}

// After another document nothing of the former one's is left.
TEST(Encoding, ANewDocumentHasItsOwn) {
    const ScratchFolder folder;
    Program program(folder.add(u"old.txt", "caf\xE9\n"));
    program.command(Command::mnuFileNew);
    program.type(u"\u00E9");
    program.dialogs.choose(FileChoice{folder.file(u"new.txt"), 3});
    program.command(Command::mnuFileSaveAs);
    EXPECT_EQ(folder.content(u"new.txt"), "\xC3\xA9\r\n");
}

}  // namespace
}  // namespace melvorin::testing
