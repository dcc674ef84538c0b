#!/bin/bash
# test-x86.sh [CASE...]: tests the package in build/package on 32 bits, in a Debian root of its own:
# the installer, then the end-to-end runs of the installed program and the tests of the windows,
# then the uninstaller. With arguments only the end-to-end cases of those names run. Needs root.
set -euo pipefail
. "$(dirname "$0")/wine-env.sh"
debian=$root/build/i386-root
# Seen under the same path inside and outside: the prefix, temporary files.
shared=$root/build/x86

if [ -z "${MELVORIN_X86:-}" ]; then
    "$root/tools/i386-root.sh" "$debian"
    # Mounts of this namespace go with its last process, whatever ends it.
    MELVORIN_X86=mounted exec unshare --mount --propagation private "$root/tools/test-x86.sh" "$@"
fi

if [ "$MELVORIN_X86" = mounted ]; then
    mount -t proc proc "$debian/proc"
    rm -rf "$shared"
    mkdir -p "$shared/tmp" "$shared/home/Desktop"
    mount --bind "$shared" "$shared"
    # What a test mounts below is there inside too.
    mount --make-shared "$shared"
    for folder in "$shared" "$root/build/win-x86" "$root/build/package"; do
        mkdir -p "$debian$folder"
        mount --bind "$folder" "$debian$folder"
    done
    cat >"$shared/wine" <<END
#!/bin/bash
# Runs the program of this name inside, in the same folder and with what Wine looks for.
exec chroot "$debian" /usr/bin/env -i -C "\$PWD" HOME="$shared/home" USER=musician LC_ALL=C.UTF-8 \\
    PATH=/usr/bin:/bin DISPLAY="\$DISPLAY" WINEPREFIX="\$WINEPREFIX" WINEARCH=win32 \\
    WINEDLLOVERRIDES="\$WINEDLLOVERRIDES;winemenubuilder.exe=d" WINEDEBUG="\$WINEDEBUG" \\
    WINESERVER=/usr/lib/wine/wineserver32 "/usr/lib/wine/\$(basename "\$0")" "\$@"
END
    chmod +x "$shared/wine"
    ln -s wine "$shared/wineserver32"
    export MELVORIN_WINE=$shared/wine MELVORIN_WINESERVER=$shared/wineserver32
    export MELVORIN_WINEPREFIX=$shared/prefix TMPDIR=$shared/tmp
    cd "$shared"
    MELVORIN_X86=display exec "$root/tools/with-display.sh" --own "$root/tools/test-x86.sh" "$@"
fi

# ---- On the private display ---------------------------------------------------------------------

"$root/tools/wine-prefix.sh"
run=$root/tests/e2e/run.sh
MELVORIN_SETUP=$(echo "$root"/build/package/Melvorin-*-setup.exe)
failures=0

# The installer's cases begin with no program there; the driver is the build's.
export MELVORIN_WIN_BUILD=$root/build/win-x86 MELVORIN_CONTENT=$root/build/package/Melvorin
MELVORIN_SETUP=$MELVORIN_SETUP "$run" setup_plain setup_associations setup_running || failures=1

timeout 120 "$wine" "$MELVORIN_SETUP" /S
installed=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/Melvorin)
cp "$root/build/win-x86/"{melvorin-driver.exe,melvorin-faults.exe,planted.dll} "$installed"
MELVORIN_WIN_BUILD=$installed "$run" "$@" || failures=1
if [ $# -eq 0 ]; then
    timeout 900 "$wine" "$root/build/win-x86/ui_tests.exe" --gtest_brief=1 || failures=1
fi

rm "$installed/"{melvorin-driver.exe,melvorin-faults.exe,planted.dll}
timeout 60 "$wine" "$installed/Uninstall.exe" /S
for _ in $(seq 300); do
    [ -e "$installed" ] || break
    sleep 0.1
done
left=$(find "$WINEPREFIX/drive_c" -iname '*melvorin*' -not -path '*/Temp/*' |
    grep -v -i '/drive_c/windows/melvorin.ini$' || true)
[ -z "$left" ] || { echo "FAILED  left by the uninstaller: $left"; failures=1; }
[ $failures -eq 0 ] && echo "32-bit tests: all well"
exit $failures
