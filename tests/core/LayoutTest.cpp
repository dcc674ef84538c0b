// Rows, columns and groups: where their parts stand, by rectangles that were worked out by hand.
#include <gtest/gtest.h>

#include <map>
#include <ostream>

#include "platform/Layout.h"

namespace melvorin {

void PrintTo(const Placed& placed, std::ostream* out) {
    *out << placed.part << ": " << placed.area.left << "," << placed.area.top << " "
         << placed.area.width << "x" << placed.area.height;
}

void PrintTo(const Size& size, std::ostream* out) {
    *out << size.width << "x" << size.height;
}

namespace {

// Parts and what they need in pixels. A text that wraps has 13 pixels a line and 6 a character.
enum Part { kLabel, kBox, kOk, kCancel, kList, kFrame, kLongLabel, kWrapping };
constexpr int kWrappingCharacters = 100;

Size needOf(int part, int width) {
    if (part == kWrapping && width > 0) {
        const int perLine = width / 6;
        return {width, 13 * ((kWrappingCharacters + perLine - 1) / perLine)};
    }
    const std::map<int, Size> needs = {
        {kLabel, {50, 13}}, {kBox, {0, 21}},    {kOk, {40, 20}},         {kCancel, {70, 20}},
        {kList, {0, 0}},    {kFrame, {90, 13}}, {kLongLabel, {170, 17}}, {kWrapping, {600, 13}},
    };
    return needs.at(part);
}

Cell part(Part which) {
    return partOf(which);
}

struct Example {
    const char* name;
    Cell root;
    int dpi;
    Size least;
    Size client;  // what the window has
    std::vector<Placed> places;
};

// The margin is 12, the gap 8 and 4 where cells are close, a group's inset 10.
std::vector<Example> examples() {
    const Cell buttons = atRight({part(kOk).least(60, 26), part(kCancel).least(60, 26)});
    const Cell fields = gridOf(2, {part(kLabel), part(kBox).least(100).grows(1, 0),
                                   part(kLongLabel), part(kList).least(0, 40).grows(0, 1)});
    return {
        {"a row stands in the middle of its height",
         rowOf({part(kLabel), part(kBox).least(100)}),
         96,
         {182, 45},
         {182, 45},
         {{kLabel, {12, 16, 50, 13}}, {kBox, {70, 12, 100, 21}}}},
        {"a row that is stretched gives the rest to what grows, by shares",
         rowOf({part(kBox).least(100).grows(2, 0), part(kLabel),
                part(kList).least(30, 10).grows(1, 0)}),
         96,
         {220, 45},
         {251, 45},
         {{kBox, {12, 12, 120, 21}}, {kLabel, {140, 16, 50, 13}}, {kList, {198, 17, 41, 10}}}},
        {"nothing grows: the places stay in a larger window",
         columnOf({part(kOk), part(kCancel)}),
         96,
         {94, 72},
         {200, 300},
         {{kOk, {12, 12, 70, 20}}, {kCancel, {12, 40, 70, 20}}}},
        {"buttons at the right, as wide as the widest caption needs",
         columnOf({part(kList).least(200, 50).grows(1, 1), buttons}),
         96,
         {224, 108},
         {254, 208},
         {{kList, {12, 12, 230, 150}}, {kOk, {104, 170, 60, 26}}, {kCancel, {172, 170, 70, 26}}}},
        {"the columns of a grid are as wide as their widest cell",
         fields,
         96,
         {302, 93},
         {312, 103},
         {{kLabel, {12, 16, 170, 13}},
          {kBox, {190, 12, 110, 21}},
          {kLongLabel, {12, 57, 170, 17}},
          {kList, {190, 41, 110, 50}}}},
        {"a group is as large as its content, its inset and its caption's line",
         groupOf(kFrame, columnOf({part(kLabel), part(kBox).least(100)}).close()),
         96,
         {144, 89},
         {144, 89},
         {{kFrame, {12, 12, 120, 65}}, {kLabel, {22, 29, 100, 13}}, {kBox, {22, 46, 100, 21}}}},
        {"a group with a long caption",
         groupOf(kFrame, part(kLabel)),
         96,
         {114, 64},
         {114, 64},
         {{kFrame, {12, 12, 90, 40}}, {kLabel, {22, 29, 70, 13}}}},
        {"a group grows with what is in it",
         groupOf(kFrame, part(kList).least(80, 30).grows(1, 1)),
         96,
         {124, 81},
         {174, 101},
         {{kFrame, {12, 12, 150, 77}}, {kList, {22, 29, 130, 50}}}},
        {"a caption that is wider than its place was made for pushes its neighbours",
         rowOf({part(kLongLabel).least(92), part(kBox).least(100)}),
         96,
         {302, 45},
         {302, 45},
         {{kLongLabel, {12, 14, 170, 17}}, {kBox, {190, 12, 100, 21}}}},
        {"a text wraps at its width",
         columnOf({part(kWrapping).least(300), part(kOk)}),
         96,
         {324, 78},
         {324, 78},
         {{kWrapping, {12, 12, 300, 26}}, {kOk, {12, 46, 300, 20}}}},
        {"options stand together in the middle of what is beside them",
         rowOf({part(kList).least(50, 60), columnOf({part(kLabel), part(kOk)}).close().centred()}),
         96,
         {132, 84},
         {132, 84},
         {{kList, {12, 12, 50, 60}}, {kLabel, {70, 23, 50, 13}}, {kOk, {70, 40, 50, 20}}}},
        {"at twice the resolution all of it is twice as large, but for what is measured",
         columnOf({part(kLabel), part(kOk).least(60, 26)}),
         192,
         {168, 129},
         {168, 129},
         {{kLabel, {24, 24, 120, 13}}, {kOk, {24, 53, 120, 52}}}},
    };
}

TEST(FormLayout, PlacesItsParts) {
    for (const Example& example : examples()) {
        SCOPED_TRACE(example.name);
        const Layout layout(example.root, example.dpi, needOf);
        EXPECT_EQ(layout.least(), example.least);
        EXPECT_EQ(layout.place(example.client), example.places);
    }
}

// What decides whether a window has a border to drag.
TEST(FormLayout, GrowsWithWhatItHolds) {
    const struct {
        const char* name;
        Cell root;
        bool across, down;
    } cases[] = {
        {"a list", columnOf({part(kLabel), part(kList).grows(1, 1)}), true, true},
        {"a box to type in", rowOf({part(kLabel), part(kBox).grows(1, 0)}), true, false},
        {"in a group", groupOf(kFrame, columnOf({part(kList).grows(0, 1)})), false, true},
        {"buttons at the right", columnOf({part(kLabel), atRight({part(kOk)})}), false, false},
        {"options in the middle", columnOf({part(kList).grows(1, 1)}).centred(), true, false},
    };
    for (const auto& example : cases) {
        const Layout layout(example.root, 96, needOf);
        EXPECT_EQ(layout.growsAcross(), example.across) << example.name;
        EXPECT_EQ(layout.growsDown(), example.down) << example.name;
    }
}

// A pixel that cannot be shared goes to one of those that grow, so that right edges stay aligned.
TEST(FormLayout, LosesNoPixel) {
    const Cell third = part(kList).least(10, 10).grows(1, 0);
    const Layout layout(rowOf({third, third, third}), 96, needOf);
    for (int width = layout.least().width; width < layout.least().width + 10; ++width) {
        const Area last = layout.place({width, 34}).back().area;
        EXPECT_EQ(last.left + last.width, width - 12);
    }
}

}  // namespace
}  // namespace melvorin
