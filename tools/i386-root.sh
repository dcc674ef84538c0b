#!/bin/bash
# i386-root.sh ROOT: makes a small 32-bit Debian with Wine in the folder ROOT, once. The 64-bit
# Wine of the machine cannot run a 32-bit program, and its packages cannot stand beside each other.
# It takes about 0.9 GB. Needs root.
set -euo pipefail
root=$1
stamp=$root/.melvorin-1 # a change of what is in it counts this up
[ ! -e "$stamp" ] || exit 0
[ "$(id -u)" -eq 0 ] || { echo "i386-root: making a Debian root needs root" >&2; exit 1; }

# From where this machine has its own packages.
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(apt-get indextargets --format '$(SITE)' "Created-By: Packages" "Codename: $release" \
    "Component: main" | head -n 1)
[ -n "$mirror" ] || { echo "i386-root: apt knows no source of $release" >&2; exit 1; }

echo "making a 32-bit Debian with Wine in $root (once)"
rm -rf --one-file-system "$root"
log=$root.log
# Whatever is mounted in here goes with this process, however it ends.
unshare --mount bash -euo pipefail -c '
    root=$1
    debootstrap --arch=i386 --variant=minbase "$2" "$root" "$3"
    # No service of a package starts in there.
    printf "#!/bin/sh\nexit 101\n" >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"
    mount -t proc proc "$root/proc"
    export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
    chroot "$root" apt-get update -q
    chroot "$root" apt-get install -y -q --no-install-recommends \
        wine wine32 fonts-liberation fonts-dejavu-core fonts-wine
    chroot "$root" apt-get clean' - "$root" "$release" "$mirror" >"$log" 2>&1 ||
    { tail -n 20 "$log" >&2; exit 1; }
touch "$stamp"
