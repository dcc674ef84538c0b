// The control as other versions of Windows have it: its answers are scripted, message by message.
#include <objbase.h>
#include <objidl.h>

#include "Scripted.h"
#include "platform/PicturesOnly.h"

namespace melvorin::testing {
namespace {

// Answers messages to the program's editor in place of the control. A load makes a new control,
// which is taken over too.
class Answers {
  public:
    using Control = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)>;
    // Nothing: the control answers itself, through `control`.
    using Script = std::function<std::optional<LRESULT>(UINT message, WPARAM wParam, LPARAM lParam,
                                                        const Control& control)>;

    explicit Answers(RichEdit& editor) : parent_(::GetParent(editor.handle())) {
        take(editor.handle());
        ::SetWindowSubclass(parent_, watch, kId, reinterpret_cast<DWORD_PTR>(this));
    }
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;
    ~Answers() {
        ::RemoveWindowSubclass(parent_, watch, kId);
        for (const HWND control : controls_)
            ::RemoveWindowSubclass(control, answer, kId);
    }

    Script script;

  private:
    static constexpr UINT_PTR kId = 80;

    void take(HWND control) {
        controls_.push_back(control);
        ::SetWindowSubclass(control, answer, kId, reinterpret_cast<DWORD_PTR>(this));
    }
    static LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT_PTR, DWORD_PTR self) {
        const Control control = [window](UINT m, WPARAM w, LPARAM l) {
            return ::DefSubclassProc(window, m, w, l);
        };
        const Script& script = reinterpret_cast<Answers*>(self)->script;
        const auto scripted = script ? script(message, wParam, lParam, control) : std::nullopt;
        return scripted ? *scripted : control(message, wParam, lParam);
    }
    static LRESULT CALLBACK watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR self) {
        if (message == WM_PARENTNOTIFY && LOWORD(wParam) == WM_CREATE)
            reinterpret_cast<Answers*>(self)->take(reinterpret_cast<HWND>(lParam));
        return ::DefSubclassProc(window, message, wParam, lParam);
    }

    HWND parent_;
    std::vector<HWND> controls_;
};

// Where the control counts the characters that hold a table together only when it is asked for all.
TEST(ControlAnswers, TextIsAllThatPositionsCount) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", "{\\rtf1 C  G\\par la}"));
    Answers answers(program.editor());
    const Text raw = u"\uFFF9\rC  G\r\uFFFB\rla";
    answers.script = [&](UINT message, WPARAM wParam, LPARAM lParam,
                         const Answers::Control&) -> std::optional<LRESULT> {
        if (message == EM_GETTEXTLENGTHEX)
            return 7;
        if (message != EM_GETTEXTEX)
            return std::nullopt;
        const auto& request = *reinterpret_cast<const GETTEXTEX*>(wParam);
        const Text given = (request.flags & GT_RAWTEXT) != 0 ? raw : Text(u"C  G\rla");
        const std::size_t room = request.cb / sizeof(char16_t) - 1;
        const std::size_t count = std::min(room, given.size());
        std::copy_n(given.begin(), count, reinterpret_cast<char16_t*>(lParam));
        return static_cast<LRESULT>(count);
    };
    EXPECT_EQ(program.text(), shown(raw));
    // However the two numbers differ, the song can be saved and undone.
    program.editor().select({0, 0});
    answers.script = [](UINT message, WPARAM, LPARAM,
                        const Answers::Control&) -> std::optional<LRESULT> {
        return message == EM_GETTEXTEX ? std::optional<LRESULT>(0) : std::nullopt;
    };
    EXPECT_TRUE(program.editor().rtf().starts_with("{\\rtf1"));
    answers.script = nullptr;
    program.type(u"x");
    program.command(Command::mnuFileSave);
    EXPECT_FALSE(program.state().dirty);
}

// Positions in pixels end at 65,535: Windows begins anew there, Wine gives a share of that number.
// The page stays on its line either way.
TEST(ControlAnswers, TheFarEndOfALongSongStaysInView) {
    const ScratchFolder folder;
    std::string song;
    for (int i = 0; i < 3'000; ++i)
        song += "C  G\r\nla la\r\n";
    const Text path = folder.add(u"song.txt", song);
    for (const bool wraps : {false, true}) {
        Program program(path);
        RichEdit& editor = program.editor();
        const LONG lineHeight =
            editor.pointOf(editor.firstOfLine(1)).y - editor.pointOf(editor.firstOfLine(0)).y;
        editor.bringToTop(5'600);
        Answers answers(editor);
        const auto topOf = [](const Answers::Control& control) {
            return static_cast<LONG>(control(EM_GETFIRSTVISIBLELINE, 0, 0));
        };
        const auto scroll = [&](const Answers::Control& control, LONG y) {
            POINT point{0, y};
            return control(EM_SETSCROLLPOS, 0, lparamOf(&point));
        };
        int byLines = 0;
        answers.script = [&](UINT message, WPARAM, LPARAM lParam,
                             const Answers::Control& control) -> std::optional<LRESULT> {
            if (!wraps)
                return std::nullopt;
            if (message == EM_GETSCROLLPOS) {
                *reinterpret_cast<POINT*>(lParam) = {0, topOf(control) * lineHeight & 0xFFFF};
                return 1;
            }
            if (message == EM_SETSCROLLPOS)
                return scroll(control, reinterpret_cast<const POINT*>(lParam)->y & 0xFFFF);
            if (message != EM_LINESCROLL)
                return std::nullopt;
            ++byLines;
            return scroll(control, (topOf(control) + static_cast<LONG>(lParam)) * lineHeight);
        };
        const std::int32_t top = editor.firstVisibleLine();
        ASSERT_GT(top, 5'000);
        program.waitForKeyButtons();
        program.command(Command::mnuUp);
        EXPECT_NEAR(editor.firstVisibleLine(), top, 2);
        program.command(Command::mnuEditUndo);
        program.command(Command::mnuEditRedo);
        EXPECT_EQ(editor.lineOf(editor.selection().begin), top);
        EXPECT_EQ(byLines > 0, wraps);
    }
}

// A size of the view costs a format of the whole song only where the control needs it.
TEST(ControlAnswers, LargerLettersFormatNothingThatFollowsByItself) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "\r\nC  G  Am\r\nla la la la\r\n"));
    RichEdit& editor = program.editor();
    for (const bool follows : {false, true}) {
        Answers answers(editor);
        int formats = 0;
        WPARAM zoom = 100;
        answers.script = [&](UINT message, WPARAM wParam, LPARAM lParam,
                             const Answers::Control& control) -> std::optional<LRESULT> {
            if (message == EM_SETCHARFORMAT && wParam == SCF_ALL)
                ++formats;
            if (message == EM_SETZOOM && follows) {
                zoom = wParam;
                return TRUE;
            }
            if (message != EM_POSFROMCHAR || !follows)
                return std::nullopt;
            control(message, wParam, lParam);
            auto& point = *reinterpret_cast<POINTL*>(wParam);
            point.x = point.x * static_cast<LONG>(zoom) / 100;
            return 0;
        };
        editor.setZoom(200);
        EXPECT_EQ(formats, follows ? 0 : 1);
        editor.setZoom(100);
        EXPECT_EQ(formats, follows ? 0 : 2);
    }
}

TEST(ControlAnswers, PicturesHaveAPlaceAndNothingElseHas) {
    IRichEditOleCallback& answers = *picturesOnly();
    IStorage* storage = nullptr;
    ASSERT_EQ(answers.GetNewStorage(&storage), S_OK);
    IStream* stream = nullptr;
    EXPECT_EQ(storage->CreateStream(L"picture", STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                    0, 0, &stream),
              S_OK);
    if (stream != nullptr)
        stream->Release();
    storage->Release();

    CLSID kind{0x00000316, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};  // a static bitmap
    EXPECT_EQ(answers.QueryInsertObject(&kind, nullptr, 0), S_OK);
    kind.Data1 = 0x0003000C;  // a packaged file
    EXPECT_NE(answers.QueryInsertObject(&kind, nullptr, 0), S_OK);
    EXPECT_NE(answers.QueryAcceptData(nullptr, nullptr, RECO_DROP, TRUE, nullptr), S_OK);
    DWORD effect = DROPEFFECT_COPY;
    answers.GetDragDropEffect(FALSE, 0, &effect);
    EXPECT_EQ(effect, static_cast<DWORD>(DROPEFFECT_NONE));
    IOleInPlaceFrame* frame = nullptr;
    IOleInPlaceUIWindow* place = nullptr;
    EXPECT_NE(answers.GetInPlaceContext(&frame, &place, nullptr), S_OK);

    Program program(kNoSong);
    EXPECT_NE(::GetWindowLongPtrW(program.editor().handle(), GWL_STYLE) & ES_NOOLEDRAGDROP, 0);
}

}  // namespace
}  // namespace melvorin::testing
