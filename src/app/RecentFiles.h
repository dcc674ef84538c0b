// The list of recent files: eight paths in an INI file, mirrored by the entries of a menu.
#pragma once

#include <array>
#include <functional>

#include "base/Services.h"

namespace melvorin {

// What the menu "Recent Files" shows.
struct RecentMenu {
    struct Entry {
        Text caption = u"Not Used";  // the full path
        bool visible = false;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    bool empty = true;             // mnuRecentFile(0), "(Empty)"
    std::array<Entry, 8> entries;  // mnuRecentFile(1) to (8), newest first
    bool clean = false;            // mnuReset and the line above it

    friend bool operator==(const RecentMenu&, const RecentMenu&) = default;
};

class RecentFiles {
  public:
    // `profiles` outlives the object; `changed` is called with what the menu is to show.
    RecentFiles(ProfileFiles& profiles, std::function<void(const RecentMenu&)> changed)
        : profiles_(profiles), changed_(std::move(changed)) {}

    // Reads the list, at the start of the program.
    void begin();
    // The comparison is exact: two spellings of a path are two files.
    bool isListed(TextView path) const;
    // Puts a path on top, unless it is listed: the order tells when a file was first used. The menu
    // then shows what the file holds, which another run may have written. Where the INI file cannot
    // be written the list stays as it is; the song is open all the same. False for a path that is
    // longer than what can be read again; it is not added.
    bool add(TextView path);
    // Empties the list. False when the INI file cannot be written; the menu then still shows
    // what the file holds.
    bool clean();

    const RecentMenu& menu() const { return menu_; }

  private:
    Text read(int slot) const;
    bool write(int slot, TextView value);
    void load();
    void hideEmpty();
    void reload();

    ProfileFiles& profiles_;
    std::function<void(const RecentMenu&)> changed_;
    RecentMenu menu_;
};

}  // namespace melvorin
