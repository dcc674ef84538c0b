#include "app/ThemeManifest.h"

#include "app/Paths.h"

namespace melvorin {

Text manifestPath(TextView folder, TextView programFileName) {
    const bool isExe = lowerCase(programFileName).ends_with(u".exe");
    return joinPath(folder, programFileName) + (isExe ? u".manifest" : u".exe.manifest");
}

std::string manifestContent() {
    static constexpr std::string_view lines[] = {
        R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)",
        R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">)",
        R"(     <assemblyIdentity version="1.0.0.0" processorArchitecture="X86" )"
        R"(name="Tessaly.WindowsXP.Example" type="win32" />)",
        R"(     <description>Windows XP Theme.</description>)",
        R"(     <dependency>)",
        R"(          <dependentAssembly>)",
        R"(               <assemblyIdentity type="win32" )"
        R"(name="Microsoft.Windows.Common-Controls" version="6.0.0.0" )"
        R"(processorArchitecture="X86" publicKeyToken="6595b64144ccf1df" language="*" />)",
        R"(          </dependentAssembly>)",
        R"(     </dependency>)",
        R"(</assembly>)",
    };
    std::string content;
    for (const std::string_view line : lines)
        content.append(line).append("\r\n");
    return content;
}

void writeManifestIfMissing(ProgramFolder& program) {
    const Text path = manifestPath(program.folder(), program.programFileName());
    if (!program.contains(path))
        program.writeWithAttributes(path, manifestContent(), kManifestAttributes);
}

void switchFontSmoothingOff(SystemSettings& system) {
    if (system.setFontSmoothing(false))
        system.fontSmoothing();
    constexpr TextView key = u"Software\\Microsoft\\Internet Explorer\\Main";
    constexpr TextView name = u"UseClearType";
    if (system.registryString(key, name) == u"yes")
        system.setRegistryString(key, name, u"no");
}

}  // namespace melvorin
