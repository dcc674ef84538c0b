#include "find/FindReplace.h"

#include <utility>

#include "find/TextSearch.h"

namespace melvorin {
namespace {

constexpr TextView kDefaultTitle = u"Melvorin";
constexpr TextView kFinished = u"  The Melvorin Editor has finished searching the document.       ";
constexpr TextView kFinishedReplacing =
    u"  The Melvorin Editor has finished searching the document       ";

void tell(MessageBoxes& messages, TextView text) {
    messages.show(text, kDefaultTitle, MessageIcon::None, MessageButtons::Ok);
}

class EditorTarget : public FindTarget {
  public:
    EditorTarget(Editor& editor, const std::function<void()>& firstMatch)
        : editor_(editor), firstMatch_(firstMatch) {}
    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override {
        return editor_.find(what, from, options);
    }
    void replace(Selection match, TextView with) override {
        if (!std::exchange(hasMatch_, true))
            firstMatch_();
        editor_.select(match);
        editor_.replaceSelection(with);
    }

  private:
    Editor& editor_;
    const std::function<void()>& firstMatch_;
    bool hasMatch_ = false;
};

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
        EditorTarget target(editor_, focusEditor_);
        try {
            done = replaceAll(target, request.what, request.with, request.options, [&] {
                pump();
                return !stop_;
            });
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
