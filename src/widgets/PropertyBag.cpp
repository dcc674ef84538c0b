#include "widgets/PropertyBag.h"

#include <charconv>
#include <optional>

#include "base/Hex.h"

namespace melvorin {
namespace {

template <class Number>
std::optional<Number> parsed(std::string_view digits, int base) {
    Number number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty())
        return std::nullopt;
    return number;
}

Text colourText(SystemOrRgb colour) {
    Text text = u"&H";
    appendHex(text, colour, 8, 'A');
    return text;
}

Text escaped(TextView value) {
    Text text;
    for (const char16_t c : value) {
        if (c == u'\\')
            text += u"\\\\";
        else if (c == u'\r')
            text += u"\\r";
        else if (c == u'\n')
            text += u"\\n";
        else
            text.push_back(c);
    }
    return text;
}

Text unescaped(TextView value) {
    Text text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char16_t next = i + 1 < value.size() ? value[i + 1] : u'\0';
        if (value[i] == u'\\' && (next == u'\\' || next == u'r' || next == u'n')) {
            text.push_back(next == u'r' ? u'\r' : next == u'n' ? u'\n' : next);
            ++i;
        } else {
            text.push_back(value[i]);
        }
    }
    return text;
}

}  // namespace

std::int32_t PropertyBag::readNumber(TextView name, std::int32_t fallback) {
    return parsed<std::int32_t>(toUtf8(read(name, decimal(fallback))), 10).value_or(fallback);
}

void PropertyBag::writeNumber(TextView name, std::int32_t value, std::int32_t fallback) {
    write(name, decimal(value), decimal(fallback));
}

SystemOrRgb PropertyBag::readColour(TextView name, SystemOrRgb fallback) {
    const std::string stored = toUtf8(read(name, colourText(fallback)));
    if (!stored.starts_with("&H"))
        return fallback;
    return parsed<SystemOrRgb>(std::string_view(stored).substr(2), 16).value_or(fallback);
}

void PropertyBag::writeColour(TextView name, SystemOrRgb value, SystemOrRgb fallback) {
    write(name, colourText(value), colourText(fallback));
}

TextPropertyBag::TextPropertyBag(TextView text) {
    for (const TextView line : splitLines(text)) {
        const std::size_t equals = line.find(u'=');
        if (equals != TextView::npos && equals > 0)
            values_[Text(line.substr(0, equals))] = unescaped(line.substr(equals + 1));
    }
}

Text TextPropertyBag::text() const {
    Text all;
    for (const auto& [name, value] : values_)
        all += name + u"=" + escaped(value) + u"\r\n";
    return all;
}

Text TextPropertyBag::read(TextView name, TextView fallback) {
    const auto found = values_.find(name);
    return found == values_.end() ? Text(fallback) : found->second;
}

void TextPropertyBag::write(TextView name, TextView value, TextView fallback) {
    const auto found = values_.find(name);
    if (found != values_.end())
        values_.erase(found);
    if (value != fallback)
        values_.emplace(name, value);
}

}  // namespace melvorin
