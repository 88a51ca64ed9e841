#!/usr/bin/env bash
# macos-day.sh LUMBRINE SIMULATOR TESTS: a small day of Lumbrine.app with "Simulated Pro Tools.app" on a Mac without Pro
# Tools. Starts both as the Finder does, and fails unless Lumbrine maps the session and answers a phone.
# Then TESTS, the program macos_screen_tests, reads the simulated windows and presses OK in the Peripherals dialog as
# Reconnect does; it is skipped where the system does not let it read other programs' windows. Quits both.
set -euo pipefail
lumbrine=$1
simulator=$2
tests=$3
port=52799
log=$(mktemp)
simulated=$(mktemp)

finish() {
    osascript -e 'tell application id "com.tarnwick.lumbrine" to quit' || true
    osascript -e 'tell application id "com.avid.ProTools" to quit' || true
    cat "$simulated" "$log"
}
trap finish EXIT

# wait_for TEXT SECONDS: until a line of Lumbrine's log has the text.
wait_for() {
    for _ in $(seq "$(($2 * 10))"); do
        if grep -qF "$1" "$log"; then return; fi
        sleep 0.1
    done
    echo "no '$1' in Lumbrine's log within $2 s" >&2
    exit 1
}

open -n "$simulator" --stdout "$simulated" --stderr "$simulated"
open -n "$lumbrine" --stdout "$log" --stderr "$log" --env QV_PORT=$port --env QV_NO_BONJOUR=1
wait_for 'UDP listening' 30
python3 - $port <<'PYTHON'
import socket, sys, time

phone = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
phone.settimeout(1)
end = time.monotonic() + 60
pongs = 0
while time.monotonic() < end and pongs < 20:
    phone.sendto(b"\x01\x00", ("127.0.0.1", int(sys.argv[1])))
    try:
        while phone.recv(2048) != b"\x01\x7f":
            pass
        pongs += 1
        time.sleep(0.5)
    except OSError:
        pass
sys.exit(0 if pongs == 20 else "the phone was not answered")
PYTHON
wait_for 'Mapped all ' 60
"$tests"
