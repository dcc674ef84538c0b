#include "widgets/ButtonSounds.h"

#include "base/ProgramSettings.h"

namespace melvorin {

Text soundPath(ProgramFolder& program, ButtonSound sound) {
    // kept: sound-paths
    return program.folder() +
           (sound == ButtonSound::Click ? u".\\Msnds\\Click.WAV" : u".\\Msnds\\over.WAV");
}

bool ButtonSounds::wanted() {
    // The unnamed value of this key is the name of the sound scheme.
    if (services_.system.registryString(u"AppEvents\\Schemes", u"") == u".None")
        return false;
    constexpr std::uint32_t capacity = 16;
    return services_.profiles.read(u"Sounds", u"Buttons", u"1", programIniPath(services_.program),
                                   capacity) != u"0";
}

void ButtonSounds::play(ButtonSound sound) {
    if (!wanted_)
        wanted_ = wanted();
    if (*wanted_)
        services_.sounds.play(soundPath(services_.program, sound));
}

}  // namespace melvorin
