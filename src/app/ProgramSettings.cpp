#include "app/ProgramSettings.h"

#include "app/Paths.h"

namespace melvorin {

Text programIniPath(ProgramFolder& program) {
    return joinPath(program.folder(), withoutExtension(program.programFileName())) + u".ini";
}

Text editorFontFace(const Services& services) {
    constexpr std::uint32_t capacity = 255;
    const Text option =
        services.profiles.read(u"Tela", u"Option", u"", programIniPath(services.program), capacity);
    return option == u"0" ? u"Courier New" : u"Lucida Console";
}

}  // namespace melvorin
