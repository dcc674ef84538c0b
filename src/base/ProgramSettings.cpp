#include "base/ProgramSettings.h"

#include "base/Paths.h"

namespace melvorin {
namespace {

struct OtherLinesName {
    TextView name;
    OtherLines means;
};
constexpr OtherLinesName kOtherLines[] = {
    {u"Ask", OtherLines::Ask}, {u"Move", OtherLines::Move}, {u"Leave", OtherLines::Leave}};

}  // namespace

Text shortSetting(const Services& services, TextView section, TextView key) {
    constexpr std::uint32_t capacity = 16;
    return services.profiles.read(section, key, u"", programIniPath(services.program), capacity);
}

bool storeSetting(const Services& services, TextView section, TextView key, TextView value) {
    return services.profiles.write(section, key, value, programIniPath(services.program));
}

int numberSetting(const Services& services, TextView section, TextView key,
                  const NumberRange& range) {
    const Text digits = shortSetting(services, section, key);
    int number = 0;
    for (const char16_t c : digits) {
        if (c < u'0' || c > u'9' || number > range.most)
            return range.fallback;
        number = number * 10 + (c - u'0');
    }
    return digits.empty() || number < range.least || number > range.most ? range.fallback : number;
}

Text programIniPath(ProgramFolder& program) {
    return joinPath(program.folder(), withoutExtension(program.programFileName())) + u".ini";
}

Text editorFontFace(const Services& services) {
    constexpr std::uint32_t capacity = 255;
    // kept: tela-option
    const Text option =
        services.profiles.read(u"Tela", u"Option", u"", programIniPath(services.program), capacity);
    return Text(option == u"0" ? kCourierNew : kLucidaConsole);
}

bool chordsFollow(const Services& services) {
    return shortSetting(services, u"Edit", u"Follow") != u"0";
}

bool storeChordsFollow(const Services& services, bool on) {
    return storeSetting(services, u"Edit", u"Follow", on ? u"1" : u"0");
}

OtherLines otherLines(const Services& services) {
    const Text choice = shortSetting(services, u"Key", u"Others");
    for (const auto& [name, means] : kOtherLines) {
        if (choice == name)
            return means;
    }
    return OtherLines::Ask;
}

bool storeOtherLines(const Services& services, OtherLines choice) {
    for (const auto& [name, means] : kOtherLines) {
        if (choice == means)
            return storeSetting(services, u"Key", u"Others", name);
    }
    return false;
}

bool followsKey(const Services& services) {
    return shortSetting(services, u"Key", u"FollowKey") == u"1";
}

bool storeFollowsKey(const Services& services, bool on) {
    return storeSetting(services, u"Key", u"FollowKey", on ? u"1" : u"0");
}

int editorZoom(const Services& services) {
    return numberSetting(services, u"View", u"Zoom", {50, 500, 100});
}

bool storeEditorZoom(const Services& services, int percent) {
    return storeSetting(services, u"View", u"Zoom", decimal(percent));
}

bool showsStatusLine(const Services& services) {
    return shortSetting(services, u"View", u"StatusLine") != u"0";
}

bool storeShowsStatusLine(const Services& services, bool shown) {
    return storeSetting(services, u"View", u"StatusLine", shown ? u"1" : u"0");
}

bool storeEditorFont(const Services& services, TextView face) {
    services.profiles.write(u"Tela", u"Option", face == kCourierNew ? u"0" : u"1",
                            programIniPath(services.program));
    return editorFontFace(services) == face;
}

}  // namespace melvorin
