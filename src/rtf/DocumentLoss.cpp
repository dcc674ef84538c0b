#include "rtf/DocumentLoss.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "rtf/RtfCharacters.h"

namespace melvorin {
namespace {

// Where words are glued together or cut apart, up to here the pieces are looked for.
constexpr std::size_t kMostPieces = 2'000;
constexpr std::size_t kLongestPieces = 20'000;

bool isSeparator(char16_t c) {
    return c <= u' ' || c == u'\u00A0' || (c >= u'\u2000' && c <= u'\u200A') || c == u'\u202F' ||
           c == u'\u3000';
}

// Characters that nobody sees.
bool isInvisible(char16_t c) {
    return c == u'\u00AD' || (c >= u'\u200B' && c <= u'\u200F') ||
           (c >= u'\u202A' && c <= u'\u202E') || c == u'\uFEFF';
}

// One spelling for what may be written in several ways.
char16_t folded(char16_t c) {
    // A symbol font's characters by their bytes.
    if (c >= u'\uF020' && c <= u'\uF0FF')
        return folded(latinCharacter(static_cast<unsigned char>(c & 0xFF)));
    if (c == u'\u00B7')
        return u'\u2022';
    return c == u'\u2010' || c == u'\u2011' ? u'-' : c;
}

std::vector<Text> wordsOf(TextView text) {
    std::vector<Text> words;
    bool isOpen = false;
    for (const char16_t unit : text) {
        const char16_t c = folded(unit);
        if (isSeparator(c)) {
            isOpen = false;
        } else if (!isInvisible(c)) {
            if (!isOpen)
                words.emplace_back();
            isOpen = true;
            words.back() += c;
        }
    }
    return words;
}

// How many words of one text are not in another, each as often as it is there.
std::size_t missingWords(const std::vector<Text>& wanted, TextView present) {
    std::unordered_map<Text, std::size_t> left;
    for (Text& word : wordsOf(present))
        ++left[std::move(word)];
    std::vector<const Text*> missing;
    for (const Text& word : wanted) {
        const auto found = left.find(word);
        if (found == left.end() || found->second == 0)
            missing.push_back(&word);
        else
            --found->second;
    }
    Text others;
    for (const auto& [word, count] : left) {
        for (std::size_t i = 0; i < count && others.size() <= kLongestPieces; ++i)
            others += word + u' ';
    }
    if (missing.size() > kMostPieces || others.size() > kLongestPieces)
        return missing.size();
    return static_cast<std::size_t>(
        std::count_if(missing.begin(), missing.end(), [&](const Text* word) {
            const std::size_t at = others.find(*word);
            if (at == Text::npos)
                return true;
            others.erase(at, word->size());
            return false;
        }));
}

// What a bullet is where the symbol font is not known in which it is one.
bool isBullet(TextView label) {
    constexpr TextView bullets = u"v\u00A7\u00D8\u00FC";
    const std::size_t at = label.find_first_not_of(u" \t");
    return at != TextView::npos && bullets.find(label[at]) != TextView::npos &&
           label.find_first_not_of(u" \t", at + 1) == TextView::npos;
}

// The text with each label as `written` says.
template <class Written>
Text withLabels(const RtfContents& contents, const Written& written) {
    Text text;
    std::size_t copied = 0;
    for (const RtfContents::Part& label : contents.labels) {
        text.append(contents.text, copied, label.begin - copied);
        text += written(TextView(contents.text).substr(label.begin, label.length));
        copied = label.begin + label.length;
    }
    return text.append(contents.text, copied);
}

class List {
  public:
    void add(std::size_t count, TextView one, TextView many) {
        if (count > 0)
            add(decimal(static_cast<std::int64_t>(count)) + u' ' + Text(count == 1 ? one : many));
    }
    void add(const Text& words) { text += (text.empty() ? Text() : Text(u", ")) + words; }

    Text text;
};

std::size_t fewer(std::size_t then, std::size_t now) {
    return then > now ? then - now : 0;
}

}  // namespace

std::size_t wordsMissing(TextView wanted, TextView present) {
    return missingWords(wordsOf(wanted), present);
}

Text lossInWords(const RtfContents& file, TextView shown, std::string_view written) {
    const RtfContents kept = readRtf(written);
    const std::vector<Text> words =
        wordsOf(withLabels(file, [](TextView) { return TextView(u" "); }));
    const std::size_t lost = std::max(missingWords(words, shown), missingWords(words, kept.text));
    const auto bulleted = [](TextView label) {
        return isBullet(label) ? TextView(u"\u2022 ") : label;
    };
    const std::size_t lostWithLabels =
        missingWords(wordsOf(withLabels(file, bulleted)), withLabels(kept, bulleted));

    List list;
    list.add(lost, u"word", u"words");
    list.add(fewer(lostWithLabels, missingWords(words, kept.text)), u"bullet or number of a list",
             u"bullets or numbers of lists");
    list.add(fewer(file.pictures, kept.pictures), u"picture", u"pictures");
    list.add(fewer(file.tables, kept.tables), u"table", u"tables");
    if (file.tables <= kept.tables)
        list.add(fewer(file.tableRows, kept.tableRows), u"row of a table", u"rows of tables");
    list.add(fewer(file.objects, kept.objects), u"object of another program",
             u"objects of other programs");
    list.add(fewer(file.textBoxes, kept.textBoxes), u"text box", u"text boxes");
    list.add(fewer(file.footnotes, kept.footnotes), u"footnote", u"footnotes");
    list.add(fewer(file.comments, kept.comments), u"comment", u"comments");
    list.add(fewer(file.headers, kept.headers), u"page header or footer",
             u"page headers or footers");
    list.add(fewer(file.links, kept.links), u"link's address", u"links' addresses");
    if (file.hidden && !kept.hidden)
        list.add(Text(u"hidden or deleted text"));
    if (file.textBehind)
        list.add(Text(u"what stands behind the end of the document"));
    return list.text;
}

}  // namespace melvorin
