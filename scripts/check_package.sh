#!/usr/bin/env bash
# check_package.sh: installs the packages of build/package on a bare Debian in a folder of its own, with what they
# depend on and nothing else, uses the programs there as an ordinary user, and removes them again. They have a network
# and shared memory to themselves there. Debian's own packages are fetched once and kept in build/package/debian.
set -euo pipefail
cd "$(dirname "$0")/.."

kept=$PWD/build/package/debian
mkdir -p "$kept"
packages=()
for package in "$PWD"/build/package/*.deb; do
    packages+=(--include="$package")
done
[ ${#packages[@]} -gt 0 ] || { printf 'There are no packages; make package makes them.\n' >&2; exit 1; }

# shellcheck disable=SC2016 # $1 is the folder, which mmdebstrap tells each hook
mmdebstrap --quiet --variant=apt --components=main \
    --aptopt='APT::Install-Recommends "false"' \
    --skip=essential/unlink,download/empty,cleanup/apt \
    --setup-hook="mkdir -p \"\$1/var/cache/apt/archives\"" \
    --setup-hook="find '$kept' -name '*.deb' -exec cp -t \"\$1/var/cache/apt/archives\" {} +" \
    --hook-dir=/usr/share/mmdebstrap/hooks/file-mirror-automount \
    --customize-hook="find \"\$1/var/cache/apt/archives\" -name '*.deb' -exec cp -ut '$kept' {} +" \
    --customize-hook='useradd --root "$1" --create-home player' \
    --customize-hook='copy-in tests/packaging/installed_programs.sh /usr/local/bin' \
    --customize-hook='unshare --net --mount bash -c "
        ip link set lo up
        mount -t tmpfs tmpfs $1/dev/shm
        exec chroot $1 bash /usr/local/bin/installed_programs.sh"' \
    "${packages[@]}" bookworm /dev/null
