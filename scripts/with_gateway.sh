#!/usr/bin/env bash
# with_gateway.sh BIN PROGRAM [ARGUMENT...]: runs a receiver program of that folder beside lumbrine-web, which prints
# the address for browsers, and ends both together.
set -euo pipefail
bin=$1 program=$2
shift 2

gateway_options=()
if [[ " $* " == *' --tour '* ]]; then # leaves another receiver and its gateway alone
    free_port='import socket; s = socket.socket(type=socket.SOCK_DGRAM); s.bind(("", 0)); print(s.getsockname()[1])'
    QV_PORT=$(/usr/bin/python3 -c "$free_port")
    export QV_PORT
    gateway_options=(--port 0)
fi

"$bin/lumbrine-web" "${gateway_options[@]}" </dev/null &
gateway=$!
trap 'kill "$gateway" 2>/dev/null && wait "$gateway" || true' EXIT
"$bin/$program" "$@"
