// Songs drawn with the caret in them, and keys by their names.
#pragma once

#include "Controls.h"

namespace melvorin::testing {

// A song with '^' at the caret or at both ends of the selection.
struct Drawn {
    explicit Drawn(std::string_view drawing) : chars(fromUtf8(drawing)) {
        std::replace(chars.begin(), chars.end(), u'\n', u'\r');
        const std::size_t begin = chars.find(u'^');
        chars.erase(begin, 1);
        const std::size_t end = chars.find(u'^');
        if (end != Text::npos)
            chars.erase(end, 1);
        selection.begin = static_cast<std::int32_t>(begin);
        selection.end = static_cast<std::int32_t>(end == Text::npos ? begin : end);
    }

    // As a file has it.
    std::string bytes() const {
        std::string lines;
        for (const char c : toUtf8(chars))
            lines += c == '\r' ? "\r\n" : std::string(1, c);
        return lines;
    }

    Text chars;
    Selection selection;
};

inline std::string drawn(RichEdit& editor) {
    Text text = editor.text().chars;
    const Selection selection = editor.selection();
    text.insert(static_cast<std::size_t>(selection.end), 1, u'^');
    if (selection.begin != selection.end)
        text.insert(static_cast<std::size_t>(selection.begin), 1, u'^');
    std::replace(text.begin(), text.end(), u'\r', u'\n');
    return toUtf8(text);
}

// Keys by name, between < and >; all else is typed.
inline void give(Program& program, RichEdit& editor, std::string_view keys) {
    struct Named {
        std::string_view name;
        WPARAM key;
        std::initializer_list<int> held;
    };
    static const Named named[] = {
        {"<bs>", VK_BACK, {}},
        {"<del>", VK_DELETE, {}},
        {"<enter>", VK_RETURN, {}},
        {"<shift+enter>", VK_RETURN, {VK_SHIFT}},
        {"<ctrl+enter>", VK_RETURN, {VK_CONTROL}},
        {"<home>", VK_HOME, {}},
        {"<up>", VK_UP, {}},
        {"<down>", VK_DOWN, {}},
        {"<ctrl+right>", VK_RIGHT, {VK_CONTROL}},
        {"<left>", VK_LEFT, {}},
        {"<tab>", VK_TAB, {}},
        {"<shift+tab>", VK_TAB, {VK_SHIFT}},
        {"<alt+left>", VK_LEFT, {VK_MENU}},
        {"<alt+right>", VK_RIGHT, {VK_MENU}},
        {"<alt+shift+right>", VK_RIGHT, {VK_MENU, VK_SHIFT}},
        {"<cut>", 'X', {VK_CONTROL}},
        {"<paste>", 'V', {VK_CONTROL}},
    };
    while (!keys.empty()) {
        const auto* const found = std::find_if(std::begin(named), std::end(named),
                                               [&](auto& n) { return keys.starts_with(n.name); });
        if (found != std::end(named)) {
            press(program, editor.handle(), found->key, found->held);
            keys.remove_prefix(found->name.size());
        } else {
            ::SendMessageW(editor.handle(), WM_CHAR, static_cast<WPARAM>(keys[0]), 1);
            keys.remove_prefix(1);
            program.pump();
        }
    }
}

}  // namespace melvorin::testing
