#include "paper/PaperMeasure.h"

#include <algorithm>
#include <map>

#include "base/DiagramFont.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

struct CodeRange {
    char32_t first;
    char32_t last;
};

bool isIn(char32_t c, const CodeRange& range) {
    return c >= range.first && c <= range.last;
}

// Scripts whose letters change with their neighbours or run from right to left.
constexpr CodeRange kShapedScripts[] = {
    {0x0590, 0x0DFF}, {0x0F00, 0x109F}, {0x1780, 0x17FF}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFC}};
// Nothing that is seen: joiners, marks of direction, variants, the soft hyphen, controls.
constexpr CodeRange kUnseen[] = {{0x0000, 0x0008}, {0x000B, 0x001F}, {0x007F, 0x009F},
                                 {0x00AD, 0x00AD}, {0x200B, 0x200F}, {0x202A, 0x202E},
                                 {0x2060, 0x2064}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}};

template <std::size_t Size>
bool isAnyOf(char32_t c, const CodeRange (&ranges)[Size]) {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const CodeRange& range) { return isIn(c, range); });
}

bool isUnseen(char32_t c) {
    return isAnyOf(c, kUnseen);
}

constexpr char32_t kReplacement = 0xFFFD;

class LineMeasure {
  public:
    LineMeasure(const PaperSong& song, PaperFonts& fonts, MeasuredSong& result)
        : song_(song), fonts_(fonts), result_(result) {
        for (const PaperLook& look : song.looks)
            lookFonts_.push_back(fonts.find({look.face, look.bold, look.italic}));
    }

    MeasuredLine measure(std::size_t number);
    void makeBold(MeasuredLine& line);

  private:
    void add(const CellCharacter& character);
    void addBlank(const CellCharacter& character);
    void addVisible(Text text, double advance, FontNumber font, bool isMark);
    void grow(std::uint16_t look);

    const PaperSong& song_;
    PaperFonts& fonts_;
    MeasuredSong& result_;
    std::vector<FontNumber> lookFonts_;
    // Of the line at hand.
    const PaperLine* line_ = nullptr;
    MeasuredLine measured_;
    double x_ = 0;
    double lastAdvance_ = 0;
    bool inWord_ = false;
    std::size_t index_ = 0;
    std::uint16_t look_ = 0;
};

MeasuredLine LineMeasure::measure(std::size_t number) {
    line_ = &song_.lines[number];
    measured_ = {.kind = line_->kind, .alignment = line_->alignment, .number = number};
    x_ = 0;
    inWord_ = false;
    CellReader reader(line_->text);
    CellCharacter character;
    while (reader.next(character))
        add(character);
    measured_.width = x_;
    if (measured_.words.empty())
        grow(line_->endLook);
    return std::move(measured_);
}

// Makes room for the height of a look.
void LineMeasure::grow(std::uint16_t look) {
    const PaperFont& font = fonts_.font(lookFonts_[look]);
    const double points = song_.looks[look].points;
    measured_.ascent = std::max(measured_.ascent, font.ascent() * points);
    measured_.descent = std::max(measured_.descent, font.descent() * points);
}

void LineMeasure::add(const CellCharacter& character) {
    index_ = character.index;
    look_ = line_->looks[index_];
    const PaperLook& look = song_.looks[look_];
    if (!look.isDiagram && isUnseen(character.code))
        return;
    if (isAnyBlank(character.code)) {
        addBlank(character);
        return;
    }
    grow(look_);
    const Text text = line_->text.substr(index_, character.length);
    const FontNumber base = lookFonts_[look_];
    std::optional<FontNumber> font;
    if (look.isDiagram) {
        const bool isThere = fonts_.hasFace(look.face) && fonts_.font(base).advance(character.code);
        font = isThere ? std::optional(base) : std::nullopt;
    } else if (!isAnyOf(character.code, kShapedScripts)) {
        font = fonts_.fontWith(character.code, base);
    }
    if (font) {
        const double advance = fonts_.font(*font).advance(character.code).value_or(0);
        addVisible(text, advance, *font, character.width == 0);
        return;
    }
    result_.unwritable.emplace(character.code, measured_.number);
    const std::optional<FontNumber> sign = fonts_.fontWith(kReplacement, base);
    const char32_t stand = sign ? kReplacement : U'?';
    const FontNumber standFont = sign.value_or(base);
    // It takes as many cells as what it stands for, so that chords behind it stay where they are.
    const double cells = static_cast<double>(character.width) *
                         fonts_.font(base).advance(U' ').value_or(0.5) * look.points;
    const double end = x_ + cells;
    addVisible(Text(1, static_cast<char16_t>(stand)),
               fonts_.font(standFont).advance(stand).value_or(0.5), standFont, false);
    x_ = std::max(x_, end);
}

void LineMeasure::addBlank(const CellCharacter& character) {
    const double size = song_.looks[look_].points;
    const PaperFont& font = fonts_.font(lookFonts_[look_]);
    const double own = font.advance(character.code).value_or(0);
    const double plain = font.advance(U' ').value_or(0.5);
    const bool isOrdinary = character.code == U'\t' || own == 0;
    x_ += size * (isOrdinary ? plain * static_cast<double>(character.width) : own);
    inWord_ = false;
}

void LineMeasure::addVisible(Text text, double advance, FontNumber font, bool isMark) {
    const PaperLook& look = song_.looks[look_];
    const double width = advance * look.points;
    std::vector<PaperWord>& words = measured_.words;
    const bool goesOn = inWord_ && !isMark && !look.isDiagram && words.back().look == look_ &&
                        words.back().font == font && words.back().end() >= x_ - 1e-6;
    if (goesOn) {
        words.back().text += text;
        words.back().width += width;
    } else {
        // A mark stands over its letter: fonts of one width have it in a cell of its own.
        const double x = isMark && width > 0 ? x_ - (lastAdvance_ + width) / 2 : x_;
        words.push_back({std::move(text), std::max(x, 0.0), width, look.points, font, look_, index_,
                         inWord_, look.isDiagram});
    }
    inWord_ = true;
    if (isMark)
        return;
    x_ += width;
    lastAdvance_ = width;
}

// Where every chord keeps its place and none touches its neighbour.
void LineMeasure::makeBold(MeasuredLine& line) {
    std::vector<PaperWord> words = line.words;
    for (PaperWord& word : words) {
        const PaperLook& look = song_.looks[word.look];
        if (word.isDiagram || word.font != lookFonts_[word.look])
            continue;
        word.font = fonts_.find({look.face, true, look.italic});
        word.width = 0;
        CellReader reader(word.text);
        CellCharacter character;
        while (reader.next(character)) {
            const std::optional<double> advance = fonts_.font(word.font).advance(character.code);
            if (!advance)
                return;
            word.width += *advance * word.size;
        }
    }
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const double room = words[i + 1].x - words[i].x;
        if (words[i].width > room + 0.01)
            return;
    }
    line.words = std::move(words);
}

void findCommonLook(const PaperSong& song, MeasuredSong& result) {
    std::vector<std::size_t> counts(song.looks.size());
    std::map<double, std::size_t> sizes;
    for (const PaperLine& line : song.lines) {
        for (const std::uint16_t look : line.looks) {
            const bool counted = !song.looks[look].isDiagram;
            counts[look] += counted ? 1U : 0U;
            sizes[song.looks[look].points] += counted ? 1U : 0U;
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    if (most == counts.end())
        return;
    result.look = static_cast<std::uint16_t>(most - counts.begin());
    result.points = song.looks[result.look].points;
    std::size_t count = 0;
    for (const auto& [points, uses] : sizes) {
        if (uses > count)
            result.points = points;
        count = std::max(count, uses);
    }
}

}  // namespace

MeasuredSong measureSong(const PaperSong& song, PaperFonts& fonts, bool boldChords) {
    MeasuredSong result;
    findCommonLook(song, result);
    LineMeasure measure(song, fonts, result);
    result.lines.reserve(song.lines.size());
    for (std::size_t i = 0; i < song.lines.size(); ++i) {
        result.lines.push_back(measure.measure(i));
        if (boldChords && result.lines.back().kind == PaperLineKind::Chords)
            measure.makeBold(result.lines.back());
    }
    return result;
}

std::vector<PaperWord> measureText(TextView text, const WantedFont& font, double size,
                                   PaperFonts& fonts) {
    PaperSong song;
    song.looks.push_back({.face = font.face,
                          .points = size,
                          .bold = font.bold,
                          .italic = font.italic,
                          .isDiagram = isDiagramFace(font.face)});
    song.lines.push_back({.text = Text(text), .looks = std::vector<std::uint16_t>(text.size())});
    return measureSong(song, fonts, false).lines[0].words;
}

std::optional<PaperWord> cutWord(PaperWord& word, double limit, const PaperFonts& fonts) {
    CellReader reader(word.text);
    CellCharacter character;
    double x = word.x;
    while (reader.next(character)) {
        const double width = fonts.font(word.font).advance(character.code).value_or(0) * word.size;
        if (character.index > 0 && x + width > limit) {
            PaperWord rest = word;
            rest.text = word.text.substr(character.index);
            rest.x = x;
            rest.width = word.end() - x;
            rest.index += character.index;
            rest.isJoined = false;
            word.text.resize(character.index);
            word.width = x - word.x;
            return rest;
        }
        x += width;
    }
    return std::nullopt;
}

}  // namespace melvorin
