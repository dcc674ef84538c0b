#!/bin/bash
# test-x86.sh [CASE...]: the second ground, a Debian root with Wine 10, for both builds: the package
# in build/package is installed, tested and removed again (32 bits, as it is shipped), and the
# end-to-end runs and the tests of the windows run in both widths. With arguments only the
# end-to-end cases of those names run; MELVORIN_WIDTHS names one width, MELVORIN_CORPUS and
# MELVORIN_SEED reach the tests. Needs root.
set -euo pipefail
. "$(dirname "$0")/wine-env.sh"
debian=$root/build/wine10-root
# Seen under the same path inside and outside: the prefix, temporary files.
shared=$root/build/wine10

if [ -z "${MELVORIN_X86:-}" ]; then
    "$root/tools/wine10-root.sh" "$debian"
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
    for folder in "$shared" "$root/build/win-x86" "$root/build/win-x64" "$root/build/package" \
        "$root/data" "$root/tests"; do
        mkdir -p "$debian$folder"
        mount --bind "$folder" "$debian$folder"
    done
    # Without TMPDIR, at which this Wine aborts.
    cat >"$shared/wine" <<END
#!/bin/bash
# Runs the program of this name inside, in the same folder and with what Wine and the tests look for.
exec chroot "$debian" /usr/bin/env -i -C "\$PWD" HOME="$shared/home" USER=musician LC_ALL=C.UTF-8 \\
    PATH=/usr/bin:/bin DISPLAY="\$DISPLAY" WINEPREFIX="\$WINEPREFIX" WINEARCH="\$WINEARCH" \\
    WINEDLLOVERRIDES="\$WINEDLLOVERRIDES;winemenubuilder.exe=d" WINEDEBUG="\$WINEDEBUG" \\
    ${MELVORIN_CORPUS:+MELVORIN_CORPUS="$MELVORIN_CORPUS"} ${MELVORIN_SEED:+MELVORIN_SEED="$MELVORIN_SEED"} \\
    "/usr/lib/wine/\$(basename "\$0")" "\$@"
END
    chmod +x "$shared/wine"
    ln -s wine "$shared/wine64"
    ln -s wine "$shared/wineserver64"
    export MELVORIN_WINE=$shared/wine64 MELVORIN_WINESERVER=$shared/wineserver64
    export MELVORIN_WINEPREFIX=$shared/prefix TMPDIR=$shared/tmp
    # Else Wine 10 keeps posting itself a message while a window covers the screen.
    export MELVORIN_WINE_DESKTOP=1280x1024
    cd "$shared"
    MELVORIN_X86=display exec "$root/tools/with-display.sh" --own "$root/tools/test-x86.sh" "$@"
fi

# ---- On the private display ---------------------------------------------------------------------

"$root/tools/wine-prefix.sh"
run=$root/tests/e2e/run.py
failures=0
drivers=(melvorin-driver.exe melvorin-faults.exe planted.dll)

# As it comes from the build, and for 32 bits as the installer leaves it.
test_width() { # BUILD PROGRAM-FOLDER CASE...
    local build=$1 program=$2
    shift 2
    MELVORIN_WIN_BUILD=$program "$run" "$@" || failures=1
    if [ $# -eq 0 ]; then
        timeout 1500 "$wine" "$build/ui_tests.exe" --gtest_brief=1 || failures=1
    fi
}

test_package() { # CASE...
    local build=$root/build/win-x86 setup installed left
    setup=$(echo "$root"/build/package/Melvorin-*-setup.exe)
    # The installer's cases begin with no program there; the driver is the build's.
    MELVORIN_CONTENT=$root/build/package/Melvorin MELVORIN_SETUP=$setup MELVORIN_WIN_BUILD=$build \
        "$run" setup_plain setup_associations setup_running || failures=1

    timeout 120 "$wine" "$setup" /S
    installed=$(echo "$WINEPREFIX"/drive_c/users/*/AppData/Local/Programs/Melvorin)
    installed=${installed##* /} # "Public" may stand before it
    cp "${drivers[@]/#/$build/}" "$installed"
    test_width "$build" "$installed" "$@"
    rm "${drivers[@]/#/$installed/}"
    timeout 60 "$wine" "$installed/Uninstall.exe" /S
    for _ in $(seq 300); do
        [ -e "$installed" ] || break
        sleep 0.1
    done
    left=$(find "$WINEPREFIX/drive_c" -iname '*melvorin*' -not -path '*/Temp/*' |
        grep -v -i '/drive_c/windows/melvorin.ini$' || true)
    [ -z "$left" ] || { echo "FAILED  left by the uninstaller: $left"; failures=1; }
}

for width in ${MELVORIN_WIDTHS:-32 64}; do
    echo "---- $width bits"
    if [ "$width" = 32 ]; then
        test_package "$@"
    else
        # One of an earlier build would keep the program from starting.
        rm -f "$root/build/win-x64/Melvorin.exe.manifest"
        test_width "$root/build/win-x64" "$root/build/win-x64" "$@"
    fi
done
[ $failures -eq 0 ] && echo "Wine 10: all well"
exit $failures
