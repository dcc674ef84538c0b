#include "find/FindReplace.h"

#include <algorithm>
#include <utility>

#include "find/ReplacePlan.h"
#include "find/WholeChords.h"
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

constexpr int kMatchesPerLook = 64;

// Whether letters may be a match for the control alone: case and what is a letter are known to
// both in ASCII, whose letters a few others have for their small or capital forms.
bool isMatterOfOpinion(TextView text, const FindReplace::Request& request) {
    constexpr TextView foldToAscii = u"\u0130\u0131\u017F\u212A";
    const bool isAscii =
        std::all_of(request.what.begin(), request.what.end(), [](char16_t c) { return c < 0x80; });
    return request.options.wholeWord ||
           (!request.options.matchCase &&
            (!isAscii || text.find_first_of(foldToAscii) != TextView::npos));
}

// Whether the control finds in its text what the search in memory does.
bool findsTheSame(const Editor& editor, TextView text, const FindReplace::Request& request) {
    if (!isMatterOfOpinion(text, request))
        return true;
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

// Loads the document with the replacements, or with those and what follows them. False where the
// one load would not give what many edits do; the document is then what it was.
bool loadReplaced(Editor& editor, MappedDocument& document, const ReplacePlan& plan,
                  const std::optional<std::vector<FollowEdit>>& followed) {
    const RtfMap& map = *document.map();
    const auto load = [&](const std::vector<LineRewrite>& parts, const Text& expected) {
        return loadRewritten(editor, document.rtf(), document.text(), map.rewrite(parts, {}),
                             expected);
    };
    if (!followed)
        return load(plan.parts(), plan.text());
    const auto parts = partsOf(document.text(), *followed, [&](std::size_t position) {
        return map.isWholeAt(position) || document.isDiagramAt(position);
    });
    Text expected = document.text();
    applyEdits(expected, *followed);
    return parts && load(*parts, expected);
}

WantedMatches::IsWanted wholeChordsOf(MappedDocument& document) {
    return [isWholeChord = WholeChords(document)](Selection match) {
        return isWholeChord(static_cast<std::size_t>(match.begin),
                            static_cast<std::size_t>(match.end - match.begin));
    };
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

std::optional<Selection> FindReplace::nextMatch(const Request& request) {
    EditorTarget editor(editor_);
    if (!request.chordsOnly)
        return editor.find(request.what, nextStart_, request.options);
    MappedDocument document(editor_);
    return WantedMatches(editor, wholeChordsOf(document))
        .find(request.what, nextStart_, request.options);
}

bool FindReplace::findNext(const Request& request) {
    std::optional<Selection> match;
    {
        const EditorWork work(editor_);
        // kept: search-from-top
        match = nextMatch(request);
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
    chords_.begin();
    // kept: replace-selection
    if (hasSelection() || (findNext(request) && hasSelection())) {
        const EditorWork work(editor_);
        const std::int32_t begin = editor_.selection().begin;
        chords_.around([&] { editor_.replaceSelection(request.with); });
        // Chords that follow have moved what stands behind them.
        const std::int32_t end = begin + static_cast<std::int32_t>(request.with.size());
        if (nextStart_ > begin)
            nextStart_ += editor_.selection().end - end;
    }
    changed_();
}

// Many replacements as one change, and what follows them. Nothing where that would not give what
// the control does; the document is then what it was.
std::optional<Replaced> FindReplace::replaceTogether(const Request& request,
                                                     const std::function<bool()>& mayGoOn) {
    if (hasControlCharacters(request.what) || hasControlCharacters(request.with))
        return std::nullopt;
    MappedDocument document(editor_);
    const Text& text = document.text();
    ReplacePlan plan(text);
    const WholeChords isWholeChord(document);
    // In memory a match takes less time than a look for messages.
    int asked = 0;
    const auto mayGoOnNowAndThen = [&] { return asked++ % kMatchesPerLook != 0 || mayGoOn(); };
    WantedMatches wanted(plan, [&](Selection match) {
        const auto place = plan.formerPlace(static_cast<std::size_t>(match.begin));
        return !request.chordsOnly || (place && isWholeChord(*place, request.what.size()));
    });
    const Replaced done =
        replaceAll(wanted, request.what, request.with, request.options, mayGoOnNowAndThen);
    if (done.count == 0)
        return done;
    if (!findsTheSame(editor_, text, request))
        return std::nullopt;
    const auto followed = chords_.follow(document, plan.edits());
    const bool isWorthIt = isWorthALoad(text, done.count) && document.map() != nullptr;
    if (isWorthIt && loadReplaced(editor_, document, plan, followed))
        return done;
    if (!followed)
        return std::nullopt;
    chords_.make(*followed);
    return done;
}

Replaced FindReplace::replaceOneByOne(const Request& request,
                                      const std::function<bool()>& mayGoOn) {
    EditorTarget editor(editor_);
    WantedMatches wanted(editor, [&](Selection match) {
        if (!request.chordsOnly)
            return true;
        MappedDocument document(editor_);
        return wholeChordsOf(document)(match);
    });
    return replaceAll(wanted, request.what, request.with, request.options, mayGoOn);
}

void FindReplace::replaceEach(const Request& request, const std::function<void()>& pump) {
    Replaced done;
    bool stopped = false;
    {
        const EditorWork work(editor_);
        busy_ = true;
        stop_ = false;
        chords_.begin();
        editor_.select({0, 0});
        const auto mayGoOn = [&] {
            pump();
            return !stop_;
        };
        try {
            const auto together = replaceTogether(request, mayGoOn);
            done = together ? *together : replaceOneByOne(request, mayGoOn);
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
