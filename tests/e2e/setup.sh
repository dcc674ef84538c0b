# Cases of the installer that MELVORIN_SETUP names, whose content is the folder MELVORIN_CONTENT.
# Sourced by run.sh. Each leaves the prefix as it found it.
# shellcheck shell=bash disable=SC2154 # the steps and folders are those of run.sh

classes='HKCU\Software\Classes'
entry='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Melvorin'
appdata=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local)
appdata=${appdata#* } # "Public" stands before it, where it has one
installed=$appdata/Programs/Melvorin
desktop=${appdata%/AppData/Local}/Desktop
start_menu="${appdata%/Local}/Roaming/Microsoft/Windows/Start Menu/Programs/Melvorin"

install_silently() { # SWITCH...
    timeout 120 "$wine" "$MELVORIN_SETUP" /S "$@" 2>/dev/null
}
# The uninstaller goes on in a copy of itself, so its end is when the entry is gone.
uninstall_silently() {
    timeout 60 "$wine" "$installed/Uninstall.exe" /S 2>/dev/null
    for _ in $(seq 300); do
        [ -e "$installed/Uninstall.exe" ] || ! wine_tool reg query "$entry" >/dev/null || sleep 0.2
        [ -e "$installed/Uninstall.exe" ] || wine_tool reg query "$entry" >/dev/null || return 0
        sleep 0.1
    done
    fail "the uninstaller does not end"
}
# The uninstaller itself, which then is not deleted, for its exit code.
uninstaller_says() { timeout 60 "$wine" "$installed/Uninstall.exe" /S "_?=$(dos_path "$installed")" 2>/dev/null; }
dos_path() { printf 'C:%s' "${1#"$WINEPREFIX"/drive_c}" | tr / '\\'; }

value() { # KEY [NAME]: a value in the registry, the key's own without NAME; "none" where it is not
    local name=(/ve)
    [ $# -eq 1 ] || name=(/v "$2")
    { wine_tool reg query "$1" "${name[@]}" || echo none; } | tr -d '\r' |
        sed -n 's/^none$/none/p; s/^.*  REG_[A-Z]*  *//p'
}
set_value() { wine_tool reg add "$1" /ve /d "$2" /f >/dev/null || fail "reg add $1"; }
forget() { wine_tool reg delete "$1" /f >/dev/null; }

# Every file of the machine and the user's registry, but what is temporary.
state() { # FILE
    (cd "$WINEPREFIX/drive_c" && find . -path '*/Temp/*' -prune -o -print | sort) >"$1"
    wine_tool reg export HKCU "$(windows_path "$1.reg")" /y >/dev/null || fail "reg export"
    iconv -f UTF-16 -t UTF-8 "$1.reg" | tr -d '\r' |
        awk '/^\[/ { skip = /Temporary System Parameters/ } !skip' >>"$1"
}
expect_no_difference() { # WHAT BEFORE AFTER
    diff "$2" "$3" >"$work/diff" || fail "$1: $(head -n 12 "$work/diff")"
}
expect_installed() {
    diff -r "$MELVORIN_CONTENT" "$installed" | grep -v "^Only in .*: Uninstall.exe$" >"$work/diff"
    [ ! -s "$work/diff" ] || fail "not what was packed: $(head -n 3 "$work/diff")"
}

cat_all() { find "$1" -type f -exec cat {} +; }

# Without any switch: the program and the Start menu, nothing else; and gone again without a trace.
setup_plain() {
    # What any other program's installer would have made.
    mkdir -p "${installed%/Melvorin}"
    wine_tool reg add "${entry%\\Melvorin}" /f >/dev/null
    state "$work/before"
    install_silently
    expect "exit code" 0 $?
    expect_installed
    expect "version" "$("$native/melvorin-cli" --version | cut -d ' ' -f 2)" \
        "$(value "$entry" DisplayVersion)"
    expect "place" "$(dos_path "$installed")" "$(value "$entry" InstallLocation)"
    expect "size in KB" "$((($(cat_all "$MELVORIN_CONTENT" | wc -c) + 1023) / 1024))" \
        $(($(value "$entry" EstimatedSize)))
    expect "Start menu" "Melvorin.lnk Uninstall Melvorin.lnk" "$(ls "$start_menu" | xargs -d '\n')"
    # Where a first song is offered to be saved.
    tr -d '\0' <"$start_menu/Melvorin.lnk" | grep -q '\\Documents' || fail "no start in Documents"
    expect "desktop" "" "$(ls "$desktop" | grep Melvorin)"
    expect "associations" "none none" "$(value "$classes\\.mlv") $(value "$classes\\.mvt")"
    uninstall_silently
    state "$work/after"
    expect_no_difference "traces" "$work/before" "$work/after"
}

# Associations by a switch, kept by an update, and given back without harm to other programs.
setup_associations() {
    set_value "$classes\\.mvt" Other.Program
    state "$work/before"
    install_silently /ASSOC=1 /DESKTOP=1 /STARTMENU=0
    expect "extensions" "Melvorin.Song Melvorin.Song" \
        "$(value "$classes\\.mlv") $(value "$classes\\.mvt")"
    expect "command" "\"$(dos_path "$installed")\\Melvorin.exe\" \"%1\"" \
        "$(value "$classes\\Melvorin.Song\\shell\\open\\command")"
    expect "icon" "$(dos_path "$installed")\\Melvorin.exe,0" \
        "$(value "$classes\\Melvorin.Song\\DefaultIcon")"
    [ -e "$desktop/Melvorin.lnk" ] || fail "no shortcut on the desktop"
    [ ! -e "$start_menu" ] || fail "entries in the Start menu"

    # That command; Wine's own shell does not look for the user's associations.
    printf 'C  G' >"$work/my song.mlv"
    exe=$installed/Melvorin.exe start "$(windows_path "$work/my song.mlv")"
    title "my song.mlv - Melvorin"
    drive close
    ended

    # An update: a file of the former version goes, the user's own and his choices stay.
    echo "mine" >"$installed/Fonts/mine.txt"
    echo "[Tela]" >"$installed/Melvorin.ini"
    rm "$installed/Dbase/MlvDbase.db"
    install_silently
    expect "exit code of the update" 0 $?
    expect "extension after the update" "Melvorin.Song" "$(value "$classes\\.mvt")"
    expect "the program before" "Other.Program" "$(value "$classes\\.mvt" Melvorin.before)"
    expect "mine after the update" "mine [Tela]" \
        "$(cat "$installed/Fonts/mine.txt" "$installed/Melvorin.ini" | xargs)"
    [ -e "$desktop/Melvorin.lnk" ] || fail "no shortcut on the desktop after the update"
    [ ! -e "$start_menu" ] || fail "entries in the Start menu after the update"
    rm "$installed/Melvorin.ini"
    mv "$installed/Melvorin.exe.manifest" "$work/manifest"
    rm "$installed/Fonts/mine.txt"
    expect_installed
    mv "$work/manifest" "$installed/Melvorin.exe.manifest"

    # Switched off, and on again.
    install_silently /ASSOC=0
    expect "given back" "none Other.Program" "$(value "$classes\\.mlv") $(value "$classes\\.mvt")"
    install_silently /ASSOC=1
    # Another program takes one: it keeps it.
    set_value "$classes\\.mlv" New.Program
    echo "mine" >"$installed/mine.txt"
    uninstall_silently
    expect "extensions after uninstalling" "New.Program Other.Program" \
        "$(value "$classes\\.mlv") $(value "$classes\\.mvt")"
    expect "what stays" "mine.txt" "$(ls -A "$installed")"
    rm -r "$installed"
    forget "$classes\\.mlv"
    state "$work/after"
    expect_no_difference "traces" <(own_traces "$work/before") <(own_traces "$work/after")
    forget "$classes\\.mvt"
}
# A program that has run leaves traces of Windows' own making; these are about ours.
own_traces() { grep -i -e melvorin -e '\.mlv' -e '\.mvt' -e 'Other.Program' "$1"; }

# Over a running program nothing is installed and nothing removed.
setup_running() {
    install_silently
    timeout 300 "$wine" start /wait /unix "$start_menu/Melvorin.lnk" 2>/dev/null &
    program=$!
    title "Chord Notation - Melvorin"
    state "$work/before"
    install_silently /ASSOC=1
    expect "exit code of the installer" 2 $?
    uninstaller_says
    expect "exit code of the uninstaller" 2 $?
    state "$work/after"
    expect_no_difference "state" "$work/before" "$work/after"
    enter 'Em'
    drive wait-text 'Em' close wait-front " Melvorin"
    press alt+n
    # What started it has an exit code of its own, which is not the program's everywhere.
    drive wait-gone
    wait "$program"
    program=
    # In two words, because the installer wants it without quotes.
    install_silently "/D=C:\\My" "music\\Melvorin"
    expect "exit code of the move" 0 $?
    [ ! -e "$installed" ] || fail "left behind by a move: $(ls -A "$installed")"
    installed="$WINEPREFIX/drive_c/My music/Melvorin" expect_installed
    installed="$WINEPREFIX/drive_c/My music/Melvorin" uninstall_silently
    [ ! -e "$WINEPREFIX/drive_c/My music/Melvorin" ] || fail "the moved program stays"
    rmdir "$WINEPREFIX/drive_c/My music"
}
