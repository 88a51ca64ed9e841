#!/usr/bin/env bash
# check_package.sh: tests the packages of build/package in a minimal Debian system, made in a temporary folder with
# mmdebstrap. It installs them with their dependencies and nothing else, runs the programs as an ordinary user
# (tests/packaging/installed_programs.sh), and removes the packages again. A separate network and /dev/shm keep the
# programs apart from those of this computer. Debian's packages are downloaded once and kept in build/package/debian.
set -euo pipefail
cd "$(dirname "$0")/.."

kept=$PWD/build/package/debian
mkdir -p "$kept"
packages=()
for package in "$PWD"/build/package/*.deb; do
    packages+=(--include="$package")
done
[ ${#packages[@]} -gt 0 ] || { printf 'There are no packages; make package makes them.\n' >&2; exit 1; }

# shellcheck disable=SC2016 # $1 is for the hooks' shells: mmdebstrap passes them the new system's folder
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
