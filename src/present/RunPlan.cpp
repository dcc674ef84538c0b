#include "present/RunPlan.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr std::int64_t kSecondMs = 1000;
constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kMostMs = 10 * kMinute * kMinute * kSecondMs;

// The next line at which the way is not simply the next one.
int nextEvent(const RunPath& path) {
    int event = path.lastLine();
    for (std::size_t i = 0; i < kJumpRows; ++i) {
        const JumpRow& row = path.settings().rows[i];
        if (row.on && path.jumpsLeft(i) > 0 && row.from >= path.line())
            event = std::min(event, row.from);
    }
    return std::max(event, path.line());
}

void twoDigits(Text& text, std::int64_t number) {
    text += number < 10 ? u":0" : u":";
    text += decimal(number);
}

}  // namespace

RunPlan planRun(const RunSettings& settings, int linesInText,
                const std::optional<RunPath::Place>& place) {
    RunPlan plan;
    RunPath path;
    path.setLineCount(linesInText);
    if (place)
        path.beginAt(settings, *place);
    else
        path.begin(settings);
    for (RunPath::Step step = RunPath::Step::Moved; step != RunPath::Step::Ended;) {
        const int first = path.line();
        const int last = nextEvent(path);
        if (plan.parts.size() < RunPlan::kMostParts)
            plan.parts.push_back({first, last});
        plan.steps += last - first + 1;
        path.moveTo(last);
        const RunPath::Place before = path.place();
        step = path.step();
        for (std::size_t i = 0; i < kJumpRows; ++i)
            plan.acts[i] = plan.acts[i] || path.jumpsLeft(i) < before.jumpsLeft[i];
    }
    return plan;
}

std::int64_t runMs(const RunPlan& plan, const RunSettings& settings) {
    return settings.wholeMs > 0 ? settings.wholeMs
                                : plan.steps * settings.secondsPerLine * kSecondMs;
}

Text planInWords(const RunPlan& plan, const RunSettings& settings, int linesInText) {
    constexpr std::size_t most = 60;  // of one line
    Text text;
    for (std::size_t i = 0; i < plan.parts.size(); ++i) {
        if (text.size() > most) {
            text += u", \u2026";
            break;
        }
        const RunPart& part = plan.parts[i];
        const int last = std::min(part.last, linesInText);
        text.append(i == 0 ? u"" : u", ").append(decimal(std::min(part.first, last)));
        if (last > part.first)
            text.append(u"-").append(decimal(last));
    }
    return text + u"; " + minutesText(runMs(plan, settings));
}

Text idleRowsInWords(const RunPlan& plan, const RunSettings& settings) {
    std::vector<std::size_t> idle;
    for (std::size_t i = 0; i < kJumpRows; ++i) {
        if (settings.rows[i].on && !plan.acts[i])
            idle.push_back(i + 1);
    }
    if (idle.empty())
        return {};
    Text text = idle.size() == 1 ? u"Row " : u"Rows ";
    for (std::size_t i = 0; i < idle.size(); ++i) {
        text += i == 0 ? u"" : i + 1 == idle.size() ? u" and " : u", ";
        text += decimal(static_cast<std::int64_t>(idle[i]));
    }
    return text + (idle.size() == 1 ? u" never jumps." : u" never jump.");
}

Text circlesInWords(const RunPlan& plan, const RunSettings& settings) {
    bool leadsBack = false;
    for (std::size_t i = 0; i < kJumpRows; ++i)
        leadsBack = leadsBack || (plan.acts[i] && settings.rows[i].to < settings.rows[i].from);
    if (!leadsBack || runMs(plan, settings) <= kMostMs)
        return {};
    return u"The rows lead in circles for more than ten hours; Esc ends it.";
}

std::optional<int> nextJump(const RunSettings& settings, int linesInText,
                            const RunPath::Place& place, int within) {
    RunPath path;
    path.setLineCount(linesInText);
    path.beginAt(settings, place);
    for (int i = 0; i < within; ++i) {
        const int before = path.line();
        if (path.step() == RunPath::Step::Ended)
            return std::nullopt;
        if (path.line() != before + 1)
            return path.line();
    }
    return std::nullopt;
}

Text minutesText(std::int64_t ms) {
    const std::int64_t seconds = (ms + kSecondMs / 2) / kSecondMs;
    const std::int64_t hours = seconds / (kMinute * kMinute);
    const std::int64_t minutes = seconds / kMinute % kMinute;
    Text text;
    if (hours > 0) {
        text = decimal(hours);
        twoDigits(text, minutes);
    } else {
        text = decimal(minutes);
    }
    twoDigits(text, seconds % kMinute);
    return text;
}

std::optional<std::int64_t> readMinutes(TextView text) {
    while (!text.empty() && text.front() == u' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ')
        text.remove_suffix(1);
    std::vector<std::int64_t> numbers;
    bool inNumber = false;
    for (const char16_t c : text) {
        if (c >= u'0' && c <= u'9') {
            if (!inNumber)
                numbers.push_back(0);
            numbers.back() = std::min<std::int64_t>(numbers.back() * 10 + (c - u'0'), 100'000);
            inNumber = true;
        } else if ((c == u':' || c == u'.' || c == u',') && inNumber) {
            inNumber = false;
        } else {
            return std::nullopt;
        }
    }
    if (!inNumber || numbers.size() > 3)
        return std::nullopt;
    if (numbers.size() == 1)
        numbers.push_back(0);
    std::int64_t seconds = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0 && numbers[i] >= kMinute)
            return std::nullopt;
        seconds = seconds * kMinute + numbers[i];
    }
    const std::int64_t ms = seconds * kSecondMs;
    return ms > 0 && ms <= kMostMs ? std::optional(ms) : std::nullopt;
}

}  // namespace melvorin
