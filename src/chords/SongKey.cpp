#include "chords/SongKey.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "chords/KeyReading.h"

namespace melvorin {
namespace {

#include "chords/KeyModel.inc"

constexpr std::size_t kRoots = 12;
constexpr std::size_t kQualities = 7;
constexpr std::size_t kKeys = 24;
constexpr double kThousandths = 1000;

// What speaks for a key, by the place of each kind in a row of features.
constexpr std::size_t kFeatures = 56;
enum Feature : std::size_t {
    Share = 0,  // by quality
    ShareRoot = 7,
    First = 14,  // by family
    Last = 19,
    BeforeLast = 24,
    Resolution = 29,  // by kind, then by what it leads to
    Return = 47,      // from the last chord to the first, by kind
    Preparation = 53
};

// An answer is given from here on: some nine songs in ten have one.
constexpr int kSurePercent = 48;
constexpr int kSureOfTwoPercent = 75;
// A stated key as unlikely as that, with another as likely as that, is contradicted.
constexpr double kUnlikely = 0.01;
constexpr double kLikely = 0.9;
constexpr std::size_t kFewEvents = 4;  // contradict nothing

// Chords that follow each other, different ones.
struct Event {
    std::size_t root;
    ChordQuality quality;
    double time;
    const KeyChord* chord;
};

std::size_t stepsUp(std::size_t from, std::size_t to) {
    return (to + kRoots - from) % kRoots;
}

std::size_t familyOf(ChordQuality quality) {
    constexpr std::array<std::size_t, kQualities> families{0, 0, 1, 2, 3, 3, 4};
    return families[static_cast<std::size_t>(quality)];
}

std::size_t goalOf(ChordQuality quality) {
    constexpr std::array<std::size_t, kQualities> goals{0, 0, 1, 2, 1, 1, 2};
    return goals[static_cast<std::size_t>(quality)];
}

bool isMajor(ChordQuality quality) {
    return quality == ChordQuality::Major || quality == ChordQuality::MajorSeventh;
}

bool isDominant(ChordQuality quality) {
    return quality == ChordQuality::Dominant || quality == ChordQuality::Other;
}

// Which kind of step leads from one chord to the next, if any: a fall of a fifth from a dominant
// or from a major chord, the tritone substitute, the leading-tone chord, a rise of a fifth, a rise
// of a whole step.
std::optional<std::size_t> resolutionOf(const Event& from, const Event& to) {
    const ChordQuality quality = from.quality;
    switch (stepsUp(from.root, to.root)) {
        case 5:
            if (isDominant(quality))
                return 0;
            return isMajor(quality) ? std::optional<std::size_t>(1) : std::nullopt;
        case 11:
            return quality == ChordQuality::Dominant ? std::optional<std::size_t>(2) : std::nullopt;
        case 1:
            return quality == ChordQuality::HalfDiminished || quality == ChordQuality::Diminished
                       ? std::optional<std::size_t>(3)
                       : std::nullopt;
        case 7:
            return 4;
        case 2:
            return isMajor(quality) || quality == ChordQuality::Dominant
                       ? std::optional<std::size_t>(5)
                       : std::nullopt;
        default:
            return std::nullopt;
    }
}

std::vector<Event> eventsOf(std::span<const KeyChord> chords) {
    std::vector<Event> events;
    double total = 0;
    for (const KeyChord& chord : chords) {
        const auto root = static_cast<std::size_t>(chord.root);
        total += chord.time;
        if (!events.empty() && events.back().root == root && events.back().quality == chord.quality)
            events.back().time += chord.time;
        else
            events.push_back({root, chord.quality, chord.time, &chord});
    }
    for (Event& event : events)
        event.time /= total;
    return events;
}

using Features = std::array<std::array<double, kFeatures>, kRoots>;

void addPreparation(const std::vector<Event>& events, std::size_t at, Features& features) {
    const Event& dominant = events[at + 1];
    const ChordQuality quality = events[at].quality;
    if (stepsUp(events[at].root, dominant.root) != 5 || !isDominant(dominant.quality) ||
        (quality != ChordQuality::Minor && quality != ChordQuality::HalfDiminished))
        return;
    const std::size_t tonic = (dominant.root + 5) % kRoots;
    const bool reached = at + 2 < events.size() && events[at + 2].root == tonic;
    const std::size_t how = !reached ? 0 : isMajor(events[at + 2].quality) ? 1 : 2;
    features[tonic][Preparation + how] += 10.0 / static_cast<double>(events.size());
}

Features featuresOf(const std::vector<Event>& events) {
    Features features{};
    const std::size_t count = events.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Event& event = events[i];
        features[event.root][Share + static_cast<std::size_t>(event.quality)] += 10 * event.time;
        const bool isLast = i + 1 == count;
        const Event& goal = events[isLast ? 0 : i + 1];
        const auto kind = resolutionOf(event, goal);
        if (kind && !isLast)
            features[goal.root][Resolution + 3 * *kind + goalOf(goal.quality)] +=
                10.0 / static_cast<double>(count - 1);
        else if (kind)
            features[goal.root][Return + *kind] = 1;
        if (!isLast)
            addPreparation(events, i, features);
    }
    for (auto& root : features) {
        for (std::size_t quality = 0; quality < kQualities; ++quality)
            root[ShareRoot + quality] = 3 * std::sqrt(root[Share + quality] / 10);
    }
    features[events.front().root][First + familyOf(events.front().quality)] = 1;
    features[events.back().root][Last + familyOf(events.back().quality)] = 1;
    if (count > 1)
        features[events[count - 2].root][BeforeLast + familyOf(events[count - 2].quality)] = 1;
    return features;
}

double scoreOf(const Features& features, std::size_t tonic, bool minor) {
    double score = 0;
    const short* weight = kWeights + (minor ? kRoots * kFeatures : 0);
    for (std::size_t steps = 0; steps < kRoots; ++steps) {
        for (const double value : features[(tonic + steps) % kRoots])
            score += value * *weight++;
    }
    return score / kThousandths;
}

// The keys in an order of their own for each song: from the root of its first chord upwards, so
// that a song in another key has the same sums, roundings included.
Key keyAt(std::size_t place, std::size_t firstRoot) {
    return {static_cast<int>((firstRoot + place / 2) % kRoots), place % 2 == 1};
}

std::size_t placeOf(Key key, std::size_t firstRoot) {
    return 2 * stepsUp(firstRoot, static_cast<std::size_t>(key.tonic)) + (key.minor ? 1 : 0);
}

std::array<double, kKeys> probabilitiesOf(const std::vector<Event>& events) {
    const Features features = featuresOf(events);
    std::array<double, kKeys> likely{};
    for (std::size_t place = 0; place < kKeys; ++place) {
        const Key key = keyAt(place, events.front().root);
        likely[place] = scoreOf(features, static_cast<std::size_t>(key.tonic), key.minor);
    }
    const double most = *std::max_element(likely.begin(), likely.end());
    double sum = 0;
    for (double& value : likely)
        sum += value = std::exp(value - most);
    for (double& value : likely)
        value /= sum;
    return likely;
}

// ---- Changes of key ---------------------------------------------------------------------------

// What a change of key has to be better by, in thousandths of a logarithm; where a section begins
// less. A stretch shorter than this is a digression.
constexpr int kChangeCost = 9000;
constexpr int kChangeCostAtSection = 6000;
constexpr std::size_t kShortestStretch = 8;

int chordIn(std::size_t place, const Event& event, std::size_t firstRoot) {
    const Key key = keyAt(place, firstRoot);
    const std::size_t steps = stepsUp(static_cast<std::size_t>(key.tonic), event.root);
    const std::size_t row = (key.minor ? kRoots : 0) + steps;
    return kKeyChords[row * kQualities + static_cast<std::size_t>(event.quality)];
}

// The likeliest key of each event (Viterbi).
std::vector<std::size_t> pathOf(const std::vector<Event>& events) {
    const std::size_t firstRoot = events.front().root;
    std::vector<std::array<unsigned char, kKeys>> from(events.size());
    std::array<long long, kKeys> best{};
    for (std::size_t i = 0; i < events.size(); ++i) {
        const auto top = std::max_element(best.begin(), best.end());
        const auto topPlace = static_cast<unsigned char>(top - best.begin());
        const long long changed =
            *top - (events[i].chord->startsSection ? kChangeCostAtSection : kChangeCost);
        for (std::size_t place = 0; place < kKeys; ++place) {
            const bool stays = i == 0 || best[place] >= changed;
            from[i][place] = stays ? static_cast<unsigned char>(place) : topPlace;
            best[place] = (stays ? best[place] : changed) + chordIn(place, events[i], firstRoot);
        }
    }
    std::vector<std::size_t> path(events.size());
    auto place =
        static_cast<std::size_t>(std::max_element(best.begin(), best.end()) - best.begin());
    for (std::size_t i = events.size(); i-- > 0;) {
        path[i] = place;
        place = from[i][place];
    }
    return path;
}

// A minor key and its relative major are one place to be in.
int signatureOf(Key key) {
    return (key.tonic + (key.minor ? 3 : 0)) % static_cast<int>(kRoots);
}

bool hasTonic(const std::vector<Event>& events, std::size_t begin, std::size_t end, Key key) {
    return std::any_of(events.begin() + static_cast<std::ptrdiff_t>(begin),
                       events.begin() + static_cast<std::ptrdiff_t>(end), [&](const Event& event) {
                           return static_cast<int>(event.root) == key.tonic &&
                                  (event.quality == ChordQuality::Minor) == key.minor;
                       });
}

// The stretches in one key, without digressions; the first begins with the song.
std::vector<KeyStretch> stretchesOf(const std::vector<Event>& events) {
    const std::vector<std::size_t> path = pathOf(events);
    std::vector<KeyStretch> stretches;
    for (std::size_t begin = 0; begin < path.size();) {
        std::size_t end = begin + 1;
        while (end < path.size() && path[end] == path[begin])
            ++end;
        const Key key = keyAt(path[begin], events.front().root);
        if (end - begin >= kShortestStretch && hasTonic(events, begin, end, key))
            stretches.push_back({events[begin].chord->line, key});
        begin = end;
    }
    return stretches;
}

std::vector<KeyStretch> changesOf(const std::vector<KeyStretch>& stretches, Key home) {
    std::vector<KeyStretch> changes;
    Key now = home;
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        const Key key = stretches[i].key;
        if (signatureOf(key) == signatureOf(now))
            continue;
        now = signatureOf(key) == signatureOf(home) ? home : key;
        if (i > 0)
            changes.push_back({stretches[i].line, now});
    }
    return changes;
}

bool isStretch(const std::vector<KeyStretch>& stretches, Key key) {
    return std::any_of(stretches.begin(), stretches.end(), [&](const KeyStretch& stretch) {
        return signatureOf(stretch.key) == signatureOf(key);
    });
}

// Where a song that is in two keys, one after the other, makes both likely, its key is the one that
// it begins in, and as sure as the two are together.
void chooseBeginning(FoundKey& found, const std::vector<KeyStretch>& stretches, int both) {
    if (both < kSureOfTwoPercent || stretches.empty() || !isStretch(stretches, *found.first) ||
        !isStretch(stretches, *found.second) ||
        signatureOf(*found.first) == signatureOf(*found.second))
        return;
    if (signatureOf(stretches.front().key) == signatureOf(*found.second))
        std::swap(found.first, found.second);
    if (signatureOf(stretches.front().key) == signatureOf(*found.first))
        found.percent = both;
}

}  // namespace

Key movedKey(Key key, int steps) {
    return {((key.tonic + steps) % 12 + 12) % 12, key.minor};
}

int fifthsOf(Key key, Spelling side) {
    // Seven half steps are a fifth, and seven times seven are one half step more than four octaves.
    const int signature = signatureOf(key) * 7 % 12;  // sharps
    const bool flats = signature > 6 || (signature == 6 && side == Spelling::Flats);
    return signature - (flats ? 12 : 0) + (key.minor ? 3 : 0);
}

Text keyName(Key key, Spelling side) {
    const Spelling own = fifthsOf(key, side) > 5 ? Spelling::Sharps : Spelling::Flats;
    return Text(noteName(key.tonic, own)).append(key.minor ? u"m" : u"");
}

namespace {

// The likeliest first; a stated key before all others unless it is contradicted.
FoundKey candidatesOf(const std::vector<Event>& events, std::optional<Key> stated, int& both) {
    const std::size_t firstRoot = events.front().root;
    std::array<double, kKeys> likely = probabilitiesOf(events);
    const auto most = [&] {
        return static_cast<std::size_t>(std::max_element(likely.begin(), likely.end()) -
                                        likely.begin());
    };
    FoundKey found;
    std::size_t first = most();
    if (stated) {
        const Key relative{(stated->tonic + (stated->minor ? 3 : 9)) % 12, !stated->minor};
        const double told =
            likely[placeOf(*stated, firstRoot)] + likely[placeOf(relative, firstRoot)];
        found.isStated = events.size() < kFewEvents || told >= kUnlikely || likely[first] < kLikely;
        if (found.isStated)
            first = placeOf(*stated, firstRoot);
    }
    found.first = keyAt(first, firstRoot);
    const double own = std::exchange(likely[first], -1);
    const std::size_t second = most();
    found.second = keyAt(second, firstRoot);
    // Nothing that is found is certain.
    const auto percent = [](double share) {
        return std::min(99, static_cast<int>(std::lround(100 * share)));
    };
    found.percent = found.isStated ? 100 : percent(own);
    both = percent(own + likely[second]);
    return found;
}

}  // namespace

FoundKey findKey(std::span<const KeyChord> chords, std::optional<Key> stated) {
    if (chords.empty()) {
        FoundKey found;
        found.key = found.first = stated;
        found.isStated = stated.has_value();
        found.percent = stated ? 100 : 0;
        return found;
    }
    const std::vector<Event> events = eventsOf(chords);
    int both = 0;
    FoundKey found = candidatesOf(events, stated, both);
    if (events.size() == 1 && !found.isStated) {
        // One chord, however often, is no key: its own, or that of its fifth below.
        found.first = Key{chords.front().root, chords.front().quality == ChordQuality::Minor};
        found.second = movedKey(*found.first, 5);
        found.percent = 0;
    }
    const std::vector<KeyStretch> stretches = stretchesOf(events);
    if (found.percent < kSurePercent)
        chooseBeginning(found, stretches, both);
    if (found.percent >= kSurePercent) {
        found.key = found.first;
        found.changes = changesOf(stretches, *found.key);
    }
    return found;
}

FoundKey findKey(TextView song) {
    const SongChords read = readSongChords(song);
    return findKey(read.chords, read.stated ? std::optional<Key>(read.stated->key) : std::nullopt);
}

Text keyInWords(const FoundKey& found, Spelling side) {
    if (found.key)
        return keyName(*found.key, side);
    if (!found.first)
        return u"?";
    Text words = keyName(*found.first, side);
    if (found.second)
        words.append(u" or ").append(keyName(*found.second, side));
    return words.append(u"?");
}

}  // namespace melvorin
