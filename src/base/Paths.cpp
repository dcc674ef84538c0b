#include "base/Paths.h"

#include "base/LetterCase.h"

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

bool isSlash(char16_t c) {
    return c == u'\\' || c == u'/';
}

bool startsWithDrive(TextView path) {
    const auto letter = [](char16_t c) { return c >= u'a' && c <= u'z'; };
    return path.size() >= 2 && path[1] == u':' && letter(asciiLowerCase(path[0]));
}

// "con", "NUL.txt", "Com1 .x": whatever follows the first dot or colon, Windows means the device.
bool isDeviceName(TextView name) {
    Text base = asciiLowerCase(name.substr(0, name.find_first_of(u".:")));
    base.resize(base.find_last_not_of(u' ') + 1);
    for (const TextView device : {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"}) {
        if (base == device)
            return true;
    }
    constexpr TextView ports = u"0123456789\u00B9\u00B2\u00B3";
    return base.size() == 4 && (base.starts_with(u"com") || base.starts_with(u"lpt")) &&
           ports.find(base[3]) != TextView::npos;
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

Text joinPath(TextView folder, TextView name) {
    Text path(folder);
    if (!path.empty() && path.back() != u'\\')
        path += u'\\';
    return path += name;
}

TextView whyNotAFile(TextView path) {
    constexpr TextView aDevice = u"That is the name of a device, not of a file.";
    if (path.size() > 3 && isSlash(path[0]) && isSlash(path[1]) && isSlash(path[3])) {
        const bool isUnlimited =
            path[2] == u'?' && (startsWithDrive(path.substr(4)) || path.substr(4, 4) == u"UNC\\");
        if (path[2] == u'.' || (path[2] == u'?' && !isUnlimited))
            return aDevice;
        path.remove_prefix(path[2] == u'?' ? 4 : 0);
    }
    if (startsWithDrive(path))
        path.remove_prefix(2);
    const TextView name = path.substr(path.find_last_of(u"\\/") + 1);
    if (isDeviceName(name))
        return aDevice;
    if (path.find(u':') != TextView::npos)
        return u"A colon can only stand behind the letter of a drive.";
    const bool isWayUp = name == u"." || name == u"..";
    if (!isWayUp && (name.ends_with(u' ') || name.ends_with(u'.')))
        return u"A file name cannot end with a blank or a dot.";
    return {};
}

Text withoutLengthLimit(TextView fullPath) {
    if (startsWithDrive(fullPath) && fullPath.substr(2).starts_with(u'\\'))
        return u"\\\\?\\" + Text(fullPath);
    if (fullPath.starts_with(u"\\\\") && fullPath.substr(2, 1) != u"?" &&
        fullPath.substr(2, 1) != u".")
        return u"\\\\?\\UNC" + Text(fullPath.substr(1));
    return Text(fullPath);
}

Text quoted(TextView name) {
    return u"\"" + Text(name) + u"\"";
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

Text songName(TextView path) {
    const TextView ending = extensionPart(path);
    const bool isOfName =
        !ending.empty() &&
        (ending.starts_with(u' ') || ending.find_first_not_of(u"0123456789") == TextView::npos);
    return Text(isOfName ? path : withoutExtension(path));
}

}  // namespace melvorin
