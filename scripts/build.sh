#!/usr/bin/env bash
# build.sh PRESET [JOBS [CMAKE OPTIONS...]]: configures once and builds; quiet unless something goes wrong.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
jobs=${2:-$(nproc)}

[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" "${@:3}" -- -j "$jobs"
