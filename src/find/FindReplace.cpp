#include "find/FindReplace.h"

#include <algorithm>
#include <utility>

#include "find/ReplacePlan.h"
#include "rtf/EditCommands.h"

namespace melvorin {
namespace {

constexpr TextView kDefaultTitle = u"Melvorin";
// kept: finished-texts
constexpr TextView kFinished = u"  The Melvorin Editor has finished searching the document.       ";
constexpr TextView kFinishedReplacing =
    u"  The Melvorin Editor has finished searching the document       ";

void tell(MessageBoxes& messages, TextView text) {
    messages.show(text, kDefaultTitle, MessageIcon::None, MessageButtons::Ok);
}

bool hasControlCharacters(TextView text) {
    return std::any_of(text.begin(), text.end(), [](char16_t c) { return c < u' '; });
}

// The control takes about as long for one replacement as for loading so many lines.
constexpr std::ptrdiff_t kLinesPerReplacement = 25;

bool isWorthALoad(TextView text, int matches) {
    return std::count(text.begin(), text.end(), u'\r') < matches * kLinesPerReplacement;
}

// Whether the control finds in its text what the search in memory does.
bool findsTheSame(const Editor& editor, TextView text, const FindReplace::Request& request) {
    for (std::int32_t from = 0;;) {
        const auto here =
            findText(text, request.what, static_cast<std::size_t>(from), request.options);
        const auto there = editor.find(request.what, from, request.options);
        if (here.has_value() != there.has_value() ||
            (here && there->begin != static_cast<std::int32_t>(*here)))
            return false;
        if (!here)
            return true;
        from = there->begin + static_cast<std::int32_t>(request.what.size());
    }
}

// Many replacements as one change of the Rich Text. Nothing where that does not pay, or would not
// give what the control does; the document is then what it was.
std::optional<Replaced> replaceByLoad(Editor& editor, const FindReplace::Request& request,
                                      const std::function<bool()>& mayGoOn) {
    if (hasControlCharacters(request.what) || hasControlCharacters(request.with))
        return std::nullopt;
    const Text text = editor.text().chars;
    ReplacePlan plan(text);
    const Replaced done = replaceAll(plan, request.what, request.with, request.options, mayGoOn);
    if (!isWorthALoad(text, done.count) || !findsTheSame(editor, text, request))
        return std::nullopt;
    const std::string rtf = editor.rtf();
    const std::optional<RtfMap> map = RtfMap::matching(rtf, text);
    if (!map || !loadRewritten(editor, rtf, text, map->rewrite(plan.parts(), {}), plan.text()))
        return std::nullopt;
    return done;
}

}  // namespace

Replaced replaceAll(FindTarget& target, TextView what, TextView with, FindOptions options,
                    const std::function<bool()>& mayGoOn) {
    const bool containsItself = findText(with, what, 0, {options.matchCase, false}).has_value();
    const auto advance = static_cast<std::int32_t>(containsItself ? with.size() : what.size());
    Replaced done;
    while (!what.empty() && mayGoOn()) {
        const std::optional<Selection> match = target.find(what, done.nextStart, options);
        if (!match) {
            done.nextStart = 0;
            break;
        }
        done.nextStart = match->begin + advance;
        ++done.count;
        target.replace(*match, with);
    }
    return done;
}

bool FindReplace::findNext(const Request& request) {
    std::optional<Selection> match;
    {
        const EditorWork work(editor_);
        // kept: search-from-top
        match = editor_.find(request.what, nextStart_, request.options);
        if (match)
            editor_.select(*match);
    }
    if (!match) {
        nextStart_ = 0;
        tell(messages_, kFinished);
        return false;
    }
    editor_.scrollCaretIntoView();
    nextStart_ = match->begin + static_cast<std::int32_t>(request.what.size());
    focusEditor_();
    return true;
}

void FindReplace::replaceOne(const Request& request) {
    const auto hasSelection = [&] {
        const Selection selection = editor_.selection();
        return selection.end > selection.begin;
    };
    // kept: replace-selection
    if (hasSelection() || (findNext(request) && hasSelection())) {
        const EditorWork work(editor_);
        editor_.replaceSelection(request.with);
    }
    changed_();
}

void FindReplace::replaceEach(const Request& request, const std::function<void()>& pump) {
    Replaced done;
    bool stopped = false;
    {
        const EditorWork work(editor_);
        busy_ = true;
        stop_ = false;
        editor_.select({0, 0});
        const auto mayGoOn = [&] {
            pump();
            return !stop_;
        };
        try {
            const auto loaded = replaceByLoad(editor_, request, mayGoOn);
            EditorTarget target(editor_);
            done = loaded
                       ? *loaded
                       : replaceAll(target, request.what, request.with, request.options, mayGoOn);
            if (done.count > 0)
                focusEditor_();
        } catch (...) {
            // What was replaced already can be undone.
            busy_ = false;
            changed_();
            throw;
        }
        stopped = std::exchange(stop_, false);
        nextStart_ = done.nextStart;
        editor_.select({0, 0});
        busy_ = false;
        if (done.count > 0)
            changed_();
    }
    editor_.scrollCaretIntoView();
    if (done.count > 0)
        tell(messages_, replacedMessage(done.count));
    else if (!stopped)
        tell(messages_, kFinished);
}

bool isSearchText(TextView what) {
    return what.find_first_not_of(u' ') != TextView::npos;
}

Text replacedMessage(int count) {
    return Text(kFinishedReplacing) + u"\r\n  and " + decimal(count) +
           (count == 1 ? u" item was replaced.  " : u" items were replaced.  ");
}

}  // namespace melvorin
