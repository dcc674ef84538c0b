// The picture button's rules: how it answers mouse and keys, what is kept of it, where its parts
// stand, what its picture looks like.
#include <gtest/gtest.h>

#include <functional>

#include "widgets/ButtonLogic.h"
#include "widgets/ButtonPicture.h"

namespace melvorin {
namespace {

// ---- Mouse and keys ---------------------------------------------------------------------------

class LoggedSurface : public ButtonSurface {
  public:
    void redraw() override { add("draw"); }
    void runOverTimer(bool on) override { add(on ? "timer" : "no timer"); }
    void processPending() override { add("pending"); }
    void play(ButtonSound sound) override { add(sound == ButtonSound::Click ? "tick" : "tock"); }
    void raise(const ButtonEvent& event) override {
        constexpr const char* names[] = {"Click", "KeyDown", "KeyUp", "KeyPress", "MouseDown",
                                         "Move",  "MouseUp", "In",    "Out"};
        add(names[static_cast<int>(event.kind)]);
    }
    std::string log;

  private:
    void add(const std::string& word) { log += (log.empty() ? "" : ", ") + word; }
};

constexpr PointerState over(MouseButton button) {
    return {button, 0, 5, 5, true};
}
constexpr PointerState away(MouseButton button) {
    return {button, 0, -5, 5, false};
}

struct ButtonCase {
    const char* name;
    std::function<void(ButtonLogic&)> before;
    std::function<void(ButtonLogic&)> act;
    std::string log;
    bool pressed;
    bool hovering;
};

void nothing(ButtonLogic&) {}
void hover(ButtonLogic& b) {
    b.mouseMove(over(MouseButton::None));
}
void press(ButtonLogic& b) {
    hover(b);
    b.mouseDown(over(MouseButton::Left));
}

void expectAnswers(std::initializer_list<ButtonCase> cases) {
    for (const ButtonCase& c : cases) {
        SCOPED_TRACE(c.name);
        LoggedSurface surface;
        ButtonLogic logic(surface);
        c.before(logic);
        surface.log.clear();
        c.act(logic);
        EXPECT_EQ(surface.log, c.log);
        EXPECT_EQ(logic.isPressed(), c.pressed);
        EXPECT_EQ(logic.isHovering(), c.hovering);
    }
}

TEST(ButtonLogic, AnswersThePointerInAFixedOrder) {
    expectAnswers({
        {"pointer comes", nothing, hover, "timer, In, draw, pending, tock, Move", false, true},
        {"pointer moves on", hover, hover, "Move", false, true},
        {"a move outside", nothing, [](auto& b) { b.mouseMove(away(MouseButton::Left)); }, "Move",
         false, false},
        {"still over", hover, [](auto& b) { b.overTimer(true, 0); }, "", false, true},
        {"pointer goes", hover, [](auto& b) { b.overTimer(false, 0); }, "no timer, Out, draw",
         false, false},
        {"pointer goes while pressed", press, [](auto& b) { b.overTimer(false, 0); },
         "no timer, Out, draw", false, false},
        {"a tick too late", nothing, [](auto& b) { b.overTimer(false, 0); }, "", false, false},
        {"left down", hover, [](auto& b) { b.mouseDown(over(MouseButton::Left)); },
         "draw, MouseDown", true, true},
        {"left up", press, [](auto& b) { b.mouseUp(over(MouseButton::Left)); },
         "draw, tick, Click, MouseUp", false, true},
        {"left up outside", press, [](auto& b) { b.mouseUp(away(MouseButton::Left)); },
         "draw, MouseUp", false, true},
        {"middle clicks too", nothing, [](auto& b) { b.mouseUp(over(MouseButton::Middle)); },
         "draw, tick, Click, MouseUp", false, false},
        {"right down", nothing, [](auto& b) { b.mouseDown(over(MouseButton::Right)); }, "MouseDown",
         false, false},
        {"right up", press, [](auto& b) { b.mouseUp(over(MouseButton::Right)); }, "MouseUp", true,
         true},
    });
}

TEST(ButtonLogic, AnswersKeysAndCommandsInAFixedOrder) {
    expectAnswers({
        {"space down", nothing, [](auto& b) { b.keyDown(kSpaceKey, 0); }, "draw, KeyDown", true,
         false},
        {"space held", [](auto& b) { b.keyDown(kSpaceKey, 0); },
         [](auto& b) { b.keyDown(kSpaceKey, 0); }, "KeyDown", true, false},
        {"space up", press, [](auto& b) { b.keyUp(kSpaceKey, 0); },
         "no timer, draw, draw, tick, Click, MouseUp, KeyUp", false, false},
        {"another key", press,
         [](auto& b) {
             b.keyDown('A', 0);
             b.keyPress(u'a');
             b.keyUp('A', 0);
         },
         "KeyDown, KeyPress, KeyUp", true, true},
        {"clicked from elsewhere", press, [](auto& b) { b.click(); }, "draw, tick, Click", false,
         true},
        {"focus goes", press, [](auto& b) { b.release(); }, "draw", false, true},
        {"disabled", press, [](auto& b) { b.reset(); }, "no timer, draw", false, false},
    });
}

// ---- Settings ---------------------------------------------------------------------------------

class LoggedBag : public TextPropertyBag {
  public:
    Text read(TextView name, TextView fallback) override {
        names += toUtf8(name) + " ";
        return TextPropertyBag::read(name, fallback);
    }
    void write(TextView name, TextView value, TextView fallback) override {
        names += toUtf8(name) + " ";
        TextPropertyBag::write(name, value, fallback);
    }
    std::string names;
};

TEST(ButtonProperties, AreReadAndWrittenInOrder) {
    LoggedBag bag;
    const ButtonProperties none = readButtonProperties(bag);
    EXPECT_EQ(none, ButtonProperties{});
    EXPECT_EQ(bag.names,
              "BackColor ForeColor Caption PicturePosition ButtonStyle Picture PictureWidth "
              "PictureHeight PictureSize OriginalPicSizeW OriginalPicSizeH Font Font PictureHover "
              "Picture MouseIcon MousePointer DefCurHand TransparentBG BEVEL BEVELDEPTH ");
    bag.names.clear();
    writeButtonProperties(none, bag);
    EXPECT_EQ(bag.names,
              "Caption PicturePosition ButtonStyle Picture PictureWidth PictureHeight PictureSize "
              "OriginalPicSizeW OriginalPicSizeH PictureHover Font MouseIcon MousePointer "
              "BackColor ForeColor BEVEL BEVELDEPTH ");
    EXPECT_EQ(bag.text(), u"");
}

TEST(ButtonProperties, ComeBackExceptThoseNeverWritten) {
    const ButtonProperties all{
        0x00FF8000, 0x80000005, u"&Click\\n\r\nme=", 4,        0,  u"#12", u"over.bmp", 16, 17, 2,
        64,         65,         u"Tahoma, 9",        u"x.cur", 99, false,  true,        0,  -3};
    LoggedBag stored;
    writeButtonProperties(all, stored);
    EXPECT_NE(stored.text().find(u"Caption=&Click\\\\n\\r\\nme="), Text::npos);
    TextPropertyBag bag(stored.text());
    ButtonProperties expected = all;
    expected.DefCurHand = true;
    expected.TransparentBG = false;
    EXPECT_EQ(readButtonProperties(bag), expected);

    // They are read where some other hand has stored them.
    TextPropertyBag other(u"DefCurHand=0\r\nTransparentBG=1\r\n");
    EXPECT_FALSE(readButtonProperties(other).DefCurHand);
    EXPECT_TRUE(readButtonProperties(other).TransparentBG);
}

TEST(ButtonProperties, WhatIsNoValueCountsAsMissing) {
    TextPropertyBag bag(
        u"\r\n=5\r\nno line\r\nBEVEL=\r\nBEVELDEPTH=8x\r\nButtonStyle=99999999999\r\nPictureWidth="
        u" 5\r\nBackColor=15\r\nForeColor=&H123456789\r\nPictureHeight=1\r\nPictureHeight=2");
    ButtonProperties expected;
    expected.PictureHeight = 2;
    EXPECT_EQ(readButtonProperties(bag), expected);
}

TEST(ButtonProperties, Font) {
    struct Case {
        TextView text;
        ButtonFont font;
    };
    const Case cases[] = {
        {u"Courier New, 12", {u"Courier New", 12, false, false}},
        {u" Tahoma ,9,italic , bold", {u"Tahoma", 9, true, true}},
        {u"", {}},
        {u"Tahoma", {}},
        {u", 9", {}},
        {u"Tahoma, ", {}},
        {u"Tahoma, 0", {}},
        {u"Tahoma, 145", {}},
        {u"Tahoma, 99999999999", {}},
        {u"Tahoma, -9", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(parseButtonFont(c.text), c.font) << toUtf8(c.text);
}

// ---- Picture ----------------------------------------------------------------------------------

TEST(ButtonPicture, Layout) {
    constexpr Extent button{100, 40};
    constexpr Area whole{0, 0, 100, 40};
    struct Case {
        Extent picture;
        Extent caption;
        std::int32_t position;
        Area pictureArea;
        Area captionArea;
    };
    const Case cases[] = {
        {{16, 16}, {}, kPictureLeft, {42, 12, 16, 16}, whole},
        {{}, {30, 10}, kPictureLeft, {50, 20, 0, 0}, whole},
        {{16, 16}, {30, 10}, kPictureLeft, {25, 12, 16, 16}, {45, 0, 30, 40}},
        {{16, 16}, {30, 10}, kPictureRight, {59, 12, 16, 16}, {25, 0, 30, 40}},
        {{16, 16}, {30, 10}, kPictureAbove, {42, 5, 16, 16}, {0, 25, 100, 10}},
        {{16, 16}, {30, 10}, kPictureBelow, {42, 19, 16, 16}, {0, 5, 100, 10}},
        {{16, 16}, {30, 10}, kPictureBehind, {42, 12, 16, 16}, whole},
        {{16, 16}, {30, 10}, -7, {42, 12, 16, 16}, whole},
        {{16, 16}, {300, 10}, kPictureLeft, {0, 12, 16, 16}, {20, 0, 80, 40}},
        {{300, 300}, {30, 10}, kPictureAbove, {-100, -132, 300, 300}, {0, 172, 100, 0}},
    };
    for (const Case& c : cases) {
        const ButtonLayout layout = layoutButton(button, c.picture, c.caption, c.position, 4);
        EXPECT_EQ(layout.picture, c.pictureArea) << &c - cases;
        EXPECT_EQ(layout.caption, c.captionArea) << &c - cases;
    }
}

TEST(ButtonPicture, DrawnSize) {
    struct Case {
        std::int32_t mode;
        Extent source;
        Extent room;
        Extent drawn;
    };
    for (const auto& [mode, source, room, drawn] :
         {Case{kSizeOfSource, {24, 20}, {90, 30}, {24, 20}},
          {kSizeAsGiven, {24, 20}, {90, 30}, {32, 33}},
          {9, {24, 20}, {90, 30}, {32, 33}},
          {kSizeOfButton, {20, 40}, {90, 30}, {15, 30}},
          {kSizeOfButton, {40, 10}, {80, 30}, {80, 20}},
          {kSizeOfButton, {0, 10}, {80, 30}, {0, 10}},
          {kSizeOfSource, {-1, 2'000'000'000}, {80, 30}, {0, 4096}}})
        EXPECT_EQ(drawnSize(mode, source, {32, 33}, room), drawn) << mode;
}

TEST(ButtonPicture, LetsTheFaceThrough) {
    constexpr std::uint32_t face = 0xF0F0F0;
    const Pixels opaque{2, 1, {0x00FF00FF, 0x00102030}, false};
    const Pixels alpha{3, 1, {0x00102030, 0xFF102030, 0x80000000}, true};
    using Row = std::vector<std::uint32_t>;
    EXPECT_EQ(onFace(opaque, {2, 1}, face, false, false).argb, (Row{0xFF00FF, 0x102030}));
    EXPECT_EQ(onFace(opaque, {2, 1}, face, true, false).argb, (Row{face, 0x102030}));
    EXPECT_EQ(onFace(alpha, {3, 1}, face, false, false).argb, (Row{face, 0x102030, 0x787878}));
    // A disabled picture is 96 parts of 255 of itself.
    EXPECT_EQ(onFace(opaque, {2, 1}, 0xFFFFFF, true, true).argb, (Row{0xFFFFFF, 0xA5ABB1}));
    // Larger and smaller than the picture.
    EXPECT_EQ(onFace(opaque, {3, 2}, face, false, false).argb,
              (Row{0xFF00FF, 0x102030, face, face, face, face}));
    EXPECT_EQ(onFace(opaque, {1, 1}, face, false, false).argb, (Row{0xFF00FF}));
    EXPECT_TRUE(onFace(opaque, {0, 5}, face, false, false).argb.empty());
    EXPECT_EQ(onFace({}, {1, 1}, face, true, false).argb, (Row{face}));
}

}  // namespace
}  // namespace melvorin
