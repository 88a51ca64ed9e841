#!/usr/bin/env bash
# Installs the packages for building and testing on Debian 12, and those of npm that test the page for browsers. Does
# nothing if all are installed.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
    build-essential cmake ninja-build ccache mold pkg-config git
    clang-19 clang-tidy-19 clang-format-19 libclang-rt-19-dev llvm-19 libblocksruntime-dev
    libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev libncurses-dev libutf8proc-dev
    libzstd-dev nlohmann-json3-dev
    jackd2 libjack-jackd2-dev librtmidi-dev libasound2-dev
    libgrpc++-dev protobuf-compiler-grpc protobuf-compiler libprotobuf-dev libnghttp2-dev
    dbus avahi-daemon avahi-utils libavahi-client-dev
    desktop-file-utils appstream mandoc shellcheck systemd zsh fish librsvg2-bin lintian mmdebstrap iproute2
    qt6-base-dev libxcb1-dev xvfb imagemagick trayer openbox xdotool x11-utils x11-xserver-utils xauth fonts-vlgothic
    libboost1.81-dev libssl-dev libqrencode-dev openssl
    chromium fonts-noto-color-emoji webkit2gtk-driver
    liblo-dev python3 python3-rtmidi python3-grpcio nghttp2-server
)

# Node.js from elsewhere brings npm itself and conflicts with Debian's.
command -v npm >/dev/null 2>&1 || packages+=(nodejs npm)

if ! command -v dpkg-query >/dev/null 2>&1; then
    printf 'This is not a Debian system. Install the equivalents of these packages by hand, then build again:\n' >&2
    printf '  %s\n' "${packages[@]}" >&2
    exit 1
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done

install_missing() {
    [ ${#missing[@]} -gt 0 ] || return 0
    printf 'Installing: %s\n' "${missing[*]}"
    as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            printf 'Neither root nor sudo here. Install these packages, then build again: %s\n' "${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    export DEBIAN_FRONTEND=noninteractive
    "${as_root[@]}" apt-get update -q
    # The tests do not need the system's JACK, Avahi or D-Bus daemons: they start private ones.
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}
install_missing

# What is built needs none of these: without them, only the tests in a browser are skipped.
if ! cmp -s web/package-lock.json web/node_modules/.installed-lock; then
    if npm --prefix web ci --no-audit --no-fund --loglevel=error --fetch-retries=1 --fetch-timeout=30000; then
        cp web/package-lock.json web/node_modules/.installed-lock
    else
        printf 'npm could not install the packages that test the page for browsers\n' >&2
    fi
fi
