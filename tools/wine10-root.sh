#!/bin/bash
# wine10-root.sh ROOT: makes a small Debian 13 in the folder ROOT, once, whose Wine 10 runs programs
# of both widths. It stands for a second kind of Windows beside this machine's Wine. It takes about
# 1.2 GB. Needs root.
set -euo pipefail
root=$1
release=trixie
stamp=$root/.melvorin-2 # a change of what is in it counts this up
[ ! -e "$stamp" ] || exit 0
[ "$(id -u)" -eq 0 ] || { echo "wine10-root: making a Debian root needs root" >&2; exit 1; }

# From where this machine has its own packages.
own=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(apt-get indextargets --format '$(SITE)' "Created-By: Packages" "Codename: $own" \
    "Component: main" | head -n 1)
[ -n "$mirror" ] || { echo "wine10-root: apt knows no source of $own" >&2; exit 1; }

echo "making a Debian 13 with Wine 10 in $root (once)"
rm -rf --one-file-system "$root"
mkdir -p "$(dirname "$root")"
log=$root.log
# Whatever is mounted in here goes with this process, however it ends.
unshare --mount bash -euo pipefail -c '
    root=$1
    debootstrap --variant=minbase "$2" "$root" "$3"
    # No service of a package starts in there.
    printf "#!/bin/sh\nexit 101\n" >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"
    mount -t proc proc "$root/proc"
    export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
    chroot "$root" dpkg --add-architecture i386
    chroot "$root" apt-get update -q
    chroot "$root" apt-get install -y -q --no-install-recommends \
        wine wine64 wine32:i386 fonts-liberation fonts-dejavu-core fonts-wine
    chroot "$root" apt-get clean' - "$root" "$release" "$mirror" >"$log" 2>&1 ||
    { tail -n 20 "$log" >&2; exit 1; }
touch "$stamp"
