#!/usr/bin/env bash
# build.sh PRESET [JOBS [CMAKE OPTIONS...]]: builds a preset, and configures it first if CMakePresets.json has changed
# since the last time. Quiet unless something goes wrong.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
jobs=${2:-$(nproc)}

[ "build/$preset/build.ninja" -nt CMakePresets.json ] || cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" "${@:3}" -- -j "$jobs"
