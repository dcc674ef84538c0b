#include "app/RecentFiles.h"

#include <algorithm>

namespace melvorin {
namespace {

// Without a folder: the profile functions keep it in the Windows folder.
// kept: windows-ini
constexpr TextView kFile = u"Melvorin.INI";
constexpr TextView kSection = u"Recent Files";
// kept: not-used
constexpr TextView kUnused = u"Not Used";
constexpr std::uint32_t kCapacity = 255;
constexpr int kSlots = 8;

Text keyOf(int slot) {
    return Text(u"RecentFile") + static_cast<char16_t>(u'0' + slot);
}

bool isFile(TextView value) {
    return !value.empty() && !value.starts_with(kUnused);
}

}  // namespace

Text RecentFiles::read(int slot) const {
    return profiles_.read(kSection, keyOf(slot), kUnused, kFile, kCapacity);
}

bool RecentFiles::write(int slot, TextView value) {
    return profiles_.write(kSection, keyOf(slot), value, kFile);
}

void RecentFiles::load() {
    menu_.entries = {};
    for (int slot = 1; slot <= kSlots; ++slot) {
        Text value = read(slot);
        if (isFile(value))
            menu_.entries[static_cast<std::size_t>(slot - 1)] = {std::move(value), true};
    }
}

void RecentFiles::hideEmpty() {
    if (menu_.entries.front().visible)
        menu_.empty = false;
}

void RecentFiles::begin() {
    reload();
}

bool RecentFiles::isListed(TextView path) const {
    return std::any_of(menu_.entries.begin(), menu_.entries.end(),
                       [&](const RecentMenu::Entry& entry) { return entry.caption == path; });
}

void RecentFiles::reload() {
    load();
    hideEmpty();
    menu_.clean = !menu_.empty;
    changed_(menu_);
}

bool RecentFiles::add(TextView path) {
    // One character of the buffer is the end of the text.
    if (path.size() >= kCapacity)
        return false;
    // kept: recent-order
    if (isListed(path)) {
        reload();
        return true;
    }
    // kept: recent-gap
    // An unused slot is not copied, so what stands below a gap may come to stand in two.
    for (int slot = kSlots - 1; slot >= 1; --slot) {
        const Text value = read(slot);
        if (isFile(value) && !write(slot + 1, value))
            return true;  // else the newest entry would overwrite one that has no other place
    }
    if (write(1, path))
        reload();
    return true;
}

bool RecentFiles::clean() {
    bool written = true;
    for (int slot = 1; slot <= kSlots; ++slot)
        written = write(slot, kUnused) && written;
    menu_ = {};
    if (written)
        changed_(menu_);
    else
        reload();
    return written;
}

}  // namespace melvorin
