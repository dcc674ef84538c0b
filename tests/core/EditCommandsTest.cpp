#include "rtf/EditCommands.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "ScriptedEditor.h"

namespace melvorin {
namespace {

// The first press on a mixed selection sets all of it, the next one clears all of it.
TEST(EditCommands, AnEffectIsToggledForTheWholeSelection) {
    const struct {
        TextEffect effect;
        std::optional<bool> before;
        std::optional<bool> bold, italic, underline;
    } cases[] = {
        {kBold, {}, true, {}, {}},         {kBold, false, true, {}, {}},
        {kBold, true, false, {}, {}},      {kItalic, {}, {}, true, {}},
        {kItalic, true, {}, false, {}},    {kUnderline, {}, {}, {}, true},
        {kUnderline, false, {}, {}, true}, {kUnderline, true, {}, {}, false},
    };
    for (const auto& example : cases) {
        ScriptedEditor editor(u"la la");
        editor.style.*example.effect.state = example.before;
        toggle(editor, example.effect);
        const auto after = std::tie(editor.style.bold, editor.style.italic, editor.style.underline);
        EXPECT_EQ(after, std::tie(example.bold, example.italic, example.underline))
            << (&example - cases);
    }
}

TEST(EditCommands, ColumnsBeginBehindTheRowOfATable) {
    ScriptedEditor editor(u"x\t\r\nC  G\vAm");
    for (const auto& [position, column] : {std::pair(1, 1U), {4, 0U}, {7, 3U}, {10, 1U}}) {
        editor.select({position, position});
        EXPECT_EQ(columnOfSelection(editor), column) << position;
    }
}

}  // namespace
}  // namespace melvorin
