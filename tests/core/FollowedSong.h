// A song in a control that does as the editing control does, with its chords following: what the
// editor's window does with the functions, in a few lines.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "chords/ChordFollow.h"
#include "chords/ChordKeys.h"

namespace melvorin::testing {

// Lines are drawn with '|' at the caret, or at both ends of the selection.
class FollowedSong {
  public:
    explicit FollowedSong(std::string_view drawn) { draw(fromUtf8(drawn)); }
    FollowedSong(Text text, std::size_t caret)
        : text_(std::move(text)), begin_(caret), end_(caret) {}

    // '\b' is Backspace, '\x7f' Delete, '\r' Enter; anything else is typed. "<left>" and "<right>"
    // move the caret, "<undo>" tells of one, "<command>" of a command.
    void press(std::string_view keys) {
        Text left = fromUtf8(keys);
        while (!left.empty()) {
            if (takeName(left, u"<left>"))
                moveTo(begin_ - 1);
            else if (takeName(left, u"<right>"))
                moveTo(end_ + 1);
            else if (takeName(left, u"<undo>"))
                follow.forget();
            else if (takeName(left, u"<command>"))
                follow.beginAnew();
            else {
                pressKey(left[0]);
                left.erase(0, 1);
            }
        }
    }

    void paste(TextView text) { put(begin_, end_, Text(text), end_); }
    void select(std::size_t begin, std::size_t end) {
        begin_ = begin;
        end_ = end;
        follow.caretAt(around(end, end), end);
    }
    void moveTo(std::size_t position) { select(position, position); }
    void take(const FollowAnswer& answer) {
        checkCarried(answer, text_, {});
        applyEdits(text_, answer.edits);
        begin_ = end_ = answer.caret;
        follow.caretAt(around(end_, end_), end_);
    }

    std::string drawn() const {
        Text text = text_;
        text.insert(end_, 1, u'|');
        if (begin_ != end_)
            text.insert(begin_, 1, u'|');
        std::replace(text.begin(), text.end(), u'\r', u'\n');
        return toUtf8(text);
    }
    const Text& text() const { return text_; }
    std::size_t caret() const { return end_; }
    Excerpt whole() const { return {0, text_, {}}; }

    // The lines that the functions may see around an edit.
    Excerpt around(std::size_t begin, std::size_t end) const {
        for (std::size_t i = 0; i <= kLinesAbove && begin > 0; ++i) {
            begin = text_.rfind(u'\r', begin - 1);
            if (begin == Text::npos)
                begin = 0;
        }
        if (begin > 0)
            ++begin;
        for (std::size_t i = 0; i <= kLinesBelow && end < text_.size(); ++i)
            end = std::min(text_.find(u'\r', end + (i > 0 ? 1 : 0)), text_.size());
        return {begin, text_.substr(begin, end - begin), {}};
    }

    // The text between two positions gives way to another one, in the way that the edit asks for.
    void put(std::size_t begin, std::size_t end, const Text& with, std::size_t caret) {
        const Excerpt before = around(begin, end);
        const TextEdit edit{begin, end - begin, with};
        const bool changesLines =
            (text_.substr(begin, end - begin) + with).find(u'\r') != Text::npos;
        if (changesLines && !correctsAfterwards) {
            if (const auto answer = follow.instead(before, edit, caret)) {
                checkCarried(*answer, text_, with);
                applyEdits(text_, answer->edits);
                return select(answer->caret, answer->caret);
            }
        }
        text_.replace(begin, end - begin, with);
        const std::size_t now = begin + with.size();
        Excerpt after = before;
        after.chars = text_.substr(before.start, before.chars.size() + with.size() - (end - begin));
        const FollowAnswer answer = begin < end && changesLines
                                        ? follow.replaced(before, edit, caret, after, now)
                                        : follow.edited(before, caret, after, now);
        checkCarried(answer, text_, {});
        applyEdits(text_, answer.edits);
        select(answer.caret, answer.caret);
    }

    ChordFollow follow;
    // Every edit is the control's, and what it did to line ends is put right behind it.
    bool correctsAfterwards = false;
    // An edit that brought a text from where it was not.
    bool hasWrongSource = false;

  private:
    static bool takeName(Text& keys, TextView name) {
        if (!keys.starts_with(name))
            return false;
        keys.erase(0, name.size());
        return true;
    }

    void draw(Text drawn) {
        std::replace(drawn.begin(), drawn.end(), u'\n', u'\r');
        begin_ = drawn.find(u'|');
        drawn.erase(begin_, 1);
        end_ = drawn.find(u'|');
        if (end_ == Text::npos)
            end_ = begin_;
        else
            drawn.erase(end_, 1);
        text_ = std::move(drawn);
        follow.caretAt(around(end_, end_), end_);
    }

    void pressKey(char16_t key) {
        if (begin_ != end_)
            return put(begin_, end_, key == u'\b' || key == u'\x7F' ? Text() : Text(1, key), end_);
        if (key == u'\b') {
            if (begin_ > 0)
                put(begin_ - 1, begin_, {}, begin_);
        } else if (key == u'\x7F') {
            if (end_ < text_.size())
                put(begin_, begin_ + 1, {}, begin_);
        } else {
            put(begin_, begin_, Text(1, key), begin_);
        }
    }

    void checkCarried(const FollowAnswer& answer, const Text& document, const Text& incoming) {
        for (const FollowEdit& edit : answer.edits) {
            const Text& source = edit.origin == Origin::Document ? document : incoming;
            if (edit.origin != Origin::New &&
                source.substr(edit.from, edit.text.size()) != edit.text)
                hasWrongSource = true;
        }
    }

    Text text_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace melvorin::testing
