#include "app/Paths.h"

namespace melvorin {
namespace {

std::size_t lastSeparator(TextView path) {
    return path.rfind(u'\\');
}

// Position of the "." before the extension, or npos.
std::size_t extensionDot(TextView path) {
    const std::size_t dot = path.rfind(u'.');
    const std::size_t separator = lastSeparator(path);
    const bool inName = dot != TextView::npos && (separator == TextView::npos || dot > separator);
    return inName ? dot : TextView::npos;
}

}  // namespace

TextView folderPart(TextView path) {
    const std::size_t separator = lastSeparator(path);
    return separator == TextView::npos ? TextView() : path.substr(0, separator);
}

TextView fileNamePart(TextView path) {
    const std::size_t separator = lastSeparator(path);
    return separator == TextView::npos ? path : path.substr(separator + 1);
}

TextView extensionPart(TextView path) {
    const std::size_t dot = extensionDot(path);
    return dot == TextView::npos ? TextView() : path.substr(dot + 1);
}

TextView withoutExtension(TextView path) {
    return path.substr(0, extensionDot(path));
}

Text lowerCase(TextView text) {
    Text lower(text);
    for (char16_t& c : lower) {
        if (c >= u'A' && c <= u'Z')
            c = static_cast<char16_t>(c - u'A' + u'a');
    }
    return lower;
}

Text joinPath(TextView folder, TextView name) {
    Text path(folder);
    if (!path.empty() && path.back() != u'\\')
        path += u'\\';
    return path += name;
}

Text pathFromCommandLine(TextView commandLine) {
    const auto trim = [](TextView text) {
        const std::size_t first = text.find_first_not_of(u" \t");
        if (first == TextView::npos)
            return TextView();
        return text.substr(first, text.find_last_not_of(u" \t") - first + 1);
    };
    TextView path = trim(commandLine);
    if (!path.empty() && path.front() == u'"') {
        path.remove_prefix(1);
        // Whatever follows the closing quote (further files) is not this document.
        path = path.substr(0, path.find(u'"'));
    }
    return Text(path);
}

}  // namespace melvorin
