#include "base/ProgramSettings.h"

#include "base/Paths.h"

namespace melvorin {

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
    constexpr std::uint32_t capacity = 8;
    return services.profiles.read(u"Edit", u"Follow", u"1", programIniPath(services.program),
                                  capacity) != u"0";
}

bool storeChordsFollow(const Services& services, bool on) {
    return services.profiles.write(u"Edit", u"Follow", on ? u"1" : u"0",
                                   programIniPath(services.program));
}

bool storeEditorFont(const Services& services, TextView face) {
    services.profiles.write(u"Tela", u"Option", face == kCourierNew ? u"0" : u"1",
                            programIniPath(services.program));
    return editorFontFace(services) == face;
}

}  // namespace melvorin
