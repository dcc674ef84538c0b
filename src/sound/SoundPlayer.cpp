#include "sound/SoundPlayer.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Paths.h"

namespace melvorin {
namespace {

constexpr std::size_t kExtensionLength = 4;

}  // namespace

bool isSoundFile(TextView name) {
    const Text lower = asciiLowerCase(name);
    return lower.ends_with(u".mid") || lower.ends_with(u".wav");
}

Text soundExtension(TextView name) {
    return unicodeUpperCase(
        name.substr(name.size() - std::min<std::size_t>(name.size(), kExtensionLength)));
}

// kept: no-waves
bool isPlayable(TextView extension) {
    return extension == u".MID";
}

void SoundPlayer::play(TextView path, const std::function<void()>& betweenOpenAndPlay) {
    close();
    // No name on a disk of Windows holds a quotation mark; behind one the rest would be a command.
    if (path.find(u'"') != TextView::npos)
        return;
    Plays_ = u"Open \"" + Text(path) + u"\" type sequencer alias canyon";
    send(Plays_);
    betweenOpenAndPlay();
    send(u"play canyon");
}

void SoundPlayer::stop() {
    send(u"stop canyon");
}

void SoundPlayer::close() {
    send(u"close canyon");
}

}  // namespace melvorin
