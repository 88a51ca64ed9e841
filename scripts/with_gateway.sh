#!/usr/bin/env bash
# with_gateway.sh BIN PROGRAM [ARGUMENT...]: runs a receiver program of that folder beside lumbrine-web, which prints
# the address for browsers, and ends both together.
set -euo pipefail
bin=$1 program=$2
shift 2

"$bin/lumbrine-web" </dev/null &
gateway=$!
trap 'kill "$gateway" 2>/dev/null && wait "$gateway" || true' EXIT
"$bin/$program" "$@"
