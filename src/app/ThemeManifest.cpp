#include "app/ThemeManifest.h"

#include "base/LetterCase.h"
#include "base/Paths.h"

namespace melvorin {

Text manifestPath(TextView folder, TextView programFileName) {
    const bool isExe = asciiLowerCase(programFileName).ends_with(u".exe");
    return joinPath(folder, programFileName) + (isExe ? u".manifest" : u".exe.manifest");
}

std::string manifestContent(bool is64Bit) {
    // kept: manifest-name
    static constexpr std::string_view lines =
        R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
     <assemblyIdentity version="1.0.0.0" processorArchitecture="X86" name="Tessaly.WindowsXP.Example" type="win32" />
     <description>Windows XP Theme.</description>
     <dependency>
          <dependentAssembly>
               <assemblyIdentity type="win32" name="Microsoft.Windows.Common-Controls" version="6.0.0.0" processorArchitecture="X86" publicKeyToken="6595b64144ccf1df" language="*" />
          </dependentAssembly>
     </dependency>
</assembly>
)";
    std::string content;
    for (const char c : lines)
        content.append(c == '\n' ? std::string_view("\r\n") : std::string_view(&c, 1));
    constexpr std::string_view architecture = "\"X86\"";
    for (std::size_t at = 0; is64Bit && (at = content.find(architecture)) != std::string::npos;)
        content.replace(at, architecture.size(), "\"amd64\"");
    return content;
}

void writeManifestIfMissing(ProgramFolder& program) {
    const Text path = manifestPath(program.folder(), program.programFileName());
    if (!program.contains(path))
        program.writeWithAttributes(path, manifestContent(sizeof(void*) == 8), kManifestAttributes);
}

// kept: font-smoothing
void switchFontSmoothingOff(SystemSettings& system) {
    if (system.setFontSmoothing(false))
        system.fontSmoothing();
    constexpr TextView key = u"Software\\Microsoft\\Internet Explorer\\Main";
    constexpr TextView name = u"UseClearType";
    if (system.registryString(key, name) == u"yes")
        system.setRegistryString(key, name, u"no");
}

}  // namespace melvorin
