#include "rtf/RtfUnfold.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "rtf/RtfLexer.h"
#include "rtf/RtfRows.h"
#include "rtf/RtfWords.h"

namespace melvorin {
namespace {

struct Edit {
    std::size_t begin;
    std::size_t end;
    std::string_view replacement;
};

enum class Kind {
    Text,
    Inert,   // nothing in it is the document's text
    Field,   // shows its result
    Object,  // likewise
    Result,
    Upr,    // two ways to say one thing
    Ud,     // the second of them
    Label,  // bullet or number
    Pn      // how a control makes bullets itself
};

struct Group {
    Kind kind = Kind::Text;
    std::size_t begin = 0;
    std::size_t starBegin = 0;  // of the opening \*
    bool started = false;       // something but an opening \* was seen
    bool starred = false;
    bool isText = true;      // read as the document's text
    bool inObject = false;   // in the result of an object
    bool hasText = false;    // of a label: anything but a tab
    bool hasResult = false;  // of a field or object
    bool isOfList = false;   // of a Pn: belongs to a list table
    bool isOdd = false;      // holds what such a group does not
    bool isHidden = false;   // \v, and
    bool isDeleted = false;  // \deleted, are in force
    std::int32_t skip = 1;   // stand-ins behind a \u
    std::size_t children = 0;
    std::size_t keptBegin = 0;  // of an Upr and Ud: the group that stays
    std::size_t keptEnd = 0;
    std::vector<Edit> edits;  // for when the group turns out to be as expected
};

constexpr std::string_view kInTable = "\\intbl ";

// Bullets are characters of symbol fonts, which the text around them does not have.
constexpr std::string_view kBullet = "\\bullet ";
bool isBullet(int byte) {
    constexpr std::array<int, 5> bullets{0x76, 0xA7, 0xB7, 0xD8, 0xFC};
    return std::find(bullets.begin(), bullets.end(), byte) != bullets.end();
}
bool isSymbol(std::uint32_t number) {
    return (number & 0xFFFFU) >= 0xF000 && (number & 0xFFFFU) <= 0xF0FF;
}

class Unfolder {
  public:
    explicit Unfolder(std::string_view rtf) : rtf_(rtf), lexer_(rtf) {}

    std::string run();
    // Nothing but the words that rows lack.
    std::string markRows() {
        marksOnly_ = true;
        return run();
    }

  private:
    void open(const RtfToken& token);
    void close(const RtfToken& token);
    void closeInto(const Group& closed, Group& outer, std::size_t end);
    void word(const RtfToken& token);
    bool begin(const RtfToken& token);
    void character(const RtfToken& token);
    void text();
    void hide(std::size_t begin, std::size_t end);
    void tableWord(const RtfToken& token);
    void outsideTable();
    void endRow();
    std::string edited();

    Group& group() { return groups_.back(); }
    void take(std::vector<Edit>& edits) {
        edits_.insert(edits_.end(), edits.begin(), edits.end());
        edits.clear();
    }

    std::string_view rtf_;
    RtfLexer lexer_;
    std::vector<Group> groups_;
    std::vector<Edit> edits_;
    bool marksOnly_ = false;

    // Behind a row: where \pard would go, and what was put there as long as it is not sure.
    std::optional<std::size_t> rowGap_;
    std::optional<std::size_t> doubtful_;
    // The row at hand.
    bool inTable_ = false;
    std::size_t defined_ = 0;
    std::size_t used_ = 0;
    std::optional<std::size_t> definitionEnd_;
};

std::string Unfolder::run() {
    for (;;) {
        const RtfToken token = lexer_.next();
        switch (token.kind) {
            case RtfToken::Kind::End:
                return std::string(rtf_);
            case RtfToken::Kind::Open:
                open(token);
                break;
            case RtfToken::Kind::Close:
                close(token);
                if (groups_.empty())
                    return edited();
                break;
            case RtfToken::Kind::Word:
                word(token);
                break;
            case RtfToken::Kind::Symbol:
                if (token.byte == '*' && !group().started) {
                    group().starred = true;
                    group().starBegin = token.begin;
                    break;
                }
                text();
                hide(token.begin, token.end);
                break;
            case RtfToken::Kind::Hex:
                if (group().kind == Kind::Label && isBullet(token.byte))
                    edits_.push_back({token.begin, token.end, kBullet});
                [[fallthrough]];
            case RtfToken::Kind::Byte:
                text();
                hide(token.begin, token.end);
                break;
            case RtfToken::Kind::Break:
                break;
        }
    }
}

void Unfolder::open(const RtfToken& token) {
    Group inner;
    inner.begin = token.begin;
    if (!groups_.empty()) {
        Group& outer = group();
        outer.started = true;
        ++outer.children;
        inner.isText = outer.isText;
        inner.inObject = outer.inObject;
        inner.skip = outer.skip;
        inner.isHidden = outer.isHidden;
        inner.isDeleted = outer.isDeleted;
        // What is in a label is part of it.
        inner.kind = outer.kind == Kind::Label || outer.kind == Kind::Pn ? outer.kind : Kind::Text;
    }
    if (!inner.isText)
        inner.kind = Kind::Inert;
    groups_.push_back(std::move(inner));
}

void Unfolder::close(const RtfToken& token) {
    Group closed = std::move(group());
    groups_.pop_back();
    if (rowGap_)
        rowGap_ = token.end;
    switch (closed.kind) {
        case Kind::Field:
        case Kind::Object:
            if (closed.hasResult)
                take(closed.edits);
            break;
        case Kind::Upr:
            if (!closed.isOdd && closed.children == 2 && closed.keptEnd != 0) {
                edits_.push_back({closed.begin, closed.keptBegin, {}});
                edits_.push_back({closed.keptEnd, token.end, {}});
            }
            break;
        default:
            break;
    }
    if (!groups_.empty())
        closeInto(closed, group(), token.end);
}

// What the group around makes of one in it.
void Unfolder::closeInto(const Group& closed, Group& outer, std::size_t end) {
    switch (outer.kind) {
        case Kind::Field:
        case Kind::Object:
            if (closed.kind != Kind::Result)
                outer.edits.push_back({closed.begin, end, "{}"});
            break;
        case Kind::Ud:
            outer.keptBegin = closed.begin;
            outer.keptEnd = end;
            break;
        case Kind::Upr:
            if (closed.kind == Kind::Ud && !closed.isOdd && closed.children == 1) {
                outer.keptBegin = closed.keptBegin;
                outer.keptEnd = closed.keptEnd;
            }
            break;
        case Kind::Label:
        case Kind::Pn:
            if (outer.kind == Kind::Label && closed.kind == Kind::Inert) {
                edits_.push_back({closed.begin, end, "{}"});
                break;
            }
            outer.hasText = outer.hasText || closed.hasText;
            outer.isOfList = outer.isOfList || closed.isOfList;
            break;
        default:
            if ((closed.kind == Kind::Pn && closed.isOfList) ||
                (closed.kind == Kind::Label && !closed.hasText))
                edits_.push_back({closed.begin, end, "{}"});
    }
}

// The first word of a group tells what the group is. True when it did.
bool Unfolder::begin(const RtfToken& token) {
    Group& here = group();
    const std::string_view name = token.name;
    const Edit gone{token.begin, token.end, kNoWord};
    const Kind around = groups_.size() > 1 ? groups_[groups_.size() - 2].kind : Kind::Text;
    if (here.kind == Kind::Label && (here.starred || isDestination(name))) {
        // A label is one text.
        here.kind = Kind::Inert;
        here.isText = false;
        return true;
    }
    if (here.kind != Kind::Text)
        return false;
    if (name == "ud" && around == Kind::Upr) {
        here.kind = here.starred ? Kind::Ud : Kind::Inert;
    } else if (name == "pn") {
        here.kind = Kind::Pn;
    } else if (name == "fldrslt" || (name == "result" && around == Kind::Object)) {
        here.kind = Kind::Result;
        here.inObject = here.inObject || around == Kind::Object;
        // One that may be passed over is not for that less of a result.
        edits_.push_back({here.starred ? here.starBegin : token.begin, token.end, kNoWord});
        if (groups_.size() > 1)
            groups_[groups_.size() - 2].hasResult = true;
    } else if (here.starred || (isDestination(name) && !isTextDestination(name))) {
        here.kind = name == "listtext" && !here.starred ? Kind::Label : Kind::Inert;
        if (here.kind == Kind::Label)
            edits_.push_back(gone);
    } else if (name == "field" || name == "object") {
        here.kind = name == "field" ? Kind::Field : Kind::Object;
        here.edits.push_back(gone);
    } else if (name == "upr") {
        here.kind = Kind::Upr;
    }
    here.isText = here.kind != Kind::Inert && here.kind != Kind::Pn;
    return here.kind != Kind::Text;
}

void Unfolder::word(const RtfToken& token) {
    if (token.name == "bin")
        return;
    Group& here = group();
    const bool isFirst = !here.started;
    here.started = true;
    const bool hasBegun = isFirst && begin(token);
    const std::string_view name = token.name;
    const Edit gone{token.begin, token.end, kNoWord};
    here.isOdd = here.isOdd || !isFirst;
    here.isOfList = here.isOfList || name == "ls";
    if (!here.isText || hasBegun)
        return;
    if (here.kind == Kind::Field || here.kind == Kind::Object) {
        if (name.starts_with("fld") || name.starts_with("obj") || name.starts_with("rslt"))
            here.edits.push_back(gone);
        return;
    }
    // An object stands within a paragraph, which it does not change; nor does a label.
    const bool isWithin = here.inObject || here.kind == Kind::Label;
    if (name == "ls" || name == "ilvl" || (name == "f" && here.kind == Kind::Label) ||
        (isWithin && (name == "pard" || RtfRows::isRowWord(name)))) {
        edits_.push_back(gone);
    } else if (name == "u") {
        character(token);
    } else {
        if (name == "uc")
            here.skip = token.hasNumber ? token.number : 1;
        const bool isOn = !token.hasNumber || token.number != 0;
        if (name == "v" || name == "deleted")
            (name == "v" ? here.isHidden : here.isDeleted) = isOn;
        if (name == "plain")
            here.isHidden = here.isDeleted = false;
        if (name == "line" || name == "column")
            edits_.push_back(
                {token.begin, token.end, here.kind == Kind::Label ? kNoWord : "\\par "});
        tableWord(token);
    }
}

void Unfolder::character(const RtfToken& token) {
    constexpr std::int32_t lineSeparator = 0x2028;
    constexpr std::int32_t paragraphSeparator = 0x2029;
    text();
    if (group().kind == Kind::Label && isSymbol(static_cast<std::uint32_t>(token.number))) {
        edits_.push_back({token.begin, takeStandIns(lexer_, group().skip), kBullet});
        return;
    }
    const Group& here = group();
    if (here.isText && (here.isHidden || here.isDeleted)) {
        hide(token.begin, takeStandIns(lexer_, here.skip));
        return;
    }
    if (token.number != lineSeparator && token.number != paragraphSeparator)
        return;
    const std::size_t end = takeStandIns(lexer_, group().skip);
    edits_.push_back({token.begin, end, group().kind == Kind::Label ? kNoWord : "\\par "});
}

void Unfolder::text() {
    Group& here = group();
    here.started = here.hasText = here.isOdd = true;
    if (here.isText)
        outsideTable();
}

// Characters that their writer hid or deleted are no words of the song. Side by side they are one
// edit.
void Unfolder::hide(std::size_t begin, std::size_t end) {
    const Group& here = group();
    if (!here.isText || !(here.isHidden || here.isDeleted) || here.kind == Kind::Label)
        return;
    if (!edits_.empty() && edits_.back().end == begin && edits_.back().replacement.empty())
        edits_.back().end = end;
    else
        edits_.push_back({begin, end, {}});
}

void Unfolder::tableWord(const RtfToken& token) {
    const std::string_view name = token.name;
    if (name == "pard") {
        inTable_ = false;
        definitionEnd_.reset();
    } else if (name == "intbl" || name == "itap") {
        inTable_ = name == "intbl" || token.number > 0;
    }
    if (name == "pard" || name == "intbl" || name == "itap" || name == "trowd") {
        rowGap_.reset();
        doubtful_.reset();
    }
    if (name == "trowd") {
        defined_ = used_ = 0;
        definitionEnd_.reset();
    } else if (name == "cellx") {
        ++defined_;
        definitionEnd_ = token.end;
    } else if (name == "cell") {
        ++used_;
    }
    if (name == "cell" || name == "row") {
        // The row goes on where the last one ended: nothing was behind the table.
        if (doubtful_)
            edits_.erase(edits_.begin() + static_cast<std::ptrdiff_t>(*doubtful_));
        doubtful_.reset();
        rowGap_.reset();
    }
    if (name == "row") {
        endRow();
        rowGap_ = token.end;
    } else if (name == "par" || name == "line" || name == "page" || name == "sect" ||
               name == "column") {
        outsideTable();
    }
}

void Unfolder::endRow() {
    // Some controls write rows without it, and read them as loose words then.
    if (!inTable_ && definitionEnd_ && used_ > 0 && used_ <= defined_ && defined_ <= kMaxRtfCells) {
        edits_.push_back({*definitionEnd_, *definitionEnd_, kInTable});
        inTable_ = true;
    }
    definitionEnd_.reset();
    used_ = 0;
}

// Text or a paragraph's end: if it stands right behind a row, the table must be over before.
void Unfolder::outsideTable() {
    if (!rowGap_)
        return;
    if (inTable_) {
        doubtful_ = edits_.size();
        edits_.push_back({*rowGap_, *rowGap_, "\\pard "});
    }
    rowGap_.reset();
}

std::string Unfolder::edited() {
    if (marksOnly_)
        std::erase_if(edits_, [](const Edit& edit) { return edit.replacement != kInTable; });
    std::stable_sort(edits_.begin(), edits_.end(), [](const Edit& a, const Edit& b) {
        return std::pair(a.begin, a.begin != a.end) < std::pair(b.begin, b.begin != b.end);
    });
    std::string result;
    result.reserve(rtf_.size());
    std::size_t copied = 0;
    for (const Edit& edit : edits_) {
        // Within what is gone already.
        if (edit.begin < copied)
            continue;
        result.append(rtf_.substr(copied, edit.begin - copied)).append(edit.replacement);
        copied = edit.end;
    }
    return result.append(rtf_.substr(copied));
}

}  // namespace

std::string unfoldRtf(std::string_view rtf) {
    return Unfolder(rtf).run();
}

std::string withTableRows(const std::string& rtf) {
    return rtf.find("\\trowd") == std::string::npos ? rtf : Unfolder(rtf).markRows();
}

}  // namespace melvorin
