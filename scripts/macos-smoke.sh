#!/usr/bin/env bash
# macos-smoke.sh APPLICATION: starts Lumbrine.app on a Mac as the Finder does, greets it as a phone does, quits it, and
# fails when it does not answer or does not end.
set -euo pipefail
application=$1
port=52798
log=$(mktemp)

open -n "$application" --stdout "$log" --stderr "$log" --env QV_PORT=$port --env QV_NO_BONJOUR=1
if ! python3 - $port <<'PYTHON'
import socket, sys, time

phone = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
phone.settimeout(0.5)
end = time.monotonic() + 30
while time.monotonic() < end:
    phone.sendto(b"\x01\x00", ("127.0.0.1", int(sys.argv[1])))
    try:
        while phone.recv(2048) != b"\x01\x7f":
            pass
        sys.exit(0)
    except OSError:
        time.sleep(0.2)
sys.exit("no pong within 30 s")
PYTHON
then
    cat "$log"
    exit 1
fi

osascript -e 'tell application id "com.tarnwick.lumbrine" to quit'
for _ in $(seq 50); do
    pgrep -x Lumbrine >/dev/null || break
    sleep 0.1
done
cat "$log"
if pgrep -x Lumbrine; then
    echo 'it goes on running five seconds after it was asked to quit' >&2
    exit 1
fi
grep -q 'UDP' "$log"
