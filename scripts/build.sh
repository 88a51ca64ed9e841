#!/usr/bin/env bash
# build.sh PRESET [JOBS [CMAKE OPTIONS...]]: configures where the presets are newer than the last time, and builds;
# quiet unless something goes wrong.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
jobs=${2:-$(nproc)}

[ "build/$preset/build.ninja" -nt CMakePresets.json ] || cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" "${@:3}" -- -j "$jobs"
