#!/usr/bin/env bash
# screenshots.sh BIN: takes the pictures in docs/images from the programs in BIN, on the virtual X server Xvfb; and into
# build/pictures, to be looked at, the window in each state, in both languages, light and dark.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=$1
out=docs/images
work=$(mktemp -d)
started=()
finish() {
    for process in "${started[@]}"; do kill "$process" 2>/dev/null || true; done
    wait
    rm -rf "$work"
}
trap finish EXIT

mkdir -p "$out" build/pictures
"$bin/window_pictures" build/pictures
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
started+=("$!")
until [ -s "$work/display" ]; do sleep 0.05; done
DISPLAY=:$(cat "$work/display")
export DISPLAY QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$work QV_NO_BONJOUR=1 QV_PORT=52798 JACK_NO_START_SERVER=1
export LUMBRINE_BLACKBOX=0
export DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent

# wait_for FILE TEXT: waits until the log in FILE contains TEXT, 30 s at most.
wait_for() {
    for _ in $(seq 600); do
        if grep -q "$2" "$1"; then return 0; fi
        sleep 0.05
    done
    printf '%s never said "%s"\n' "$1" "$2" >&2
    return 1
}

# picture WIDTHxHEIGHT NAME: takes a picture of the window at that size, with 96 colours so that the file is small.
picture() {
    local window
    window=$(xdotool search --sync --onlyvisible --name '^Lumbrine — Receiver$')
    xdotool windowsize --sync "$window" "${1%x*}" "${1#*x}"
    sleep 1 # by then the window has repainted at its new size
    import -window "$window" "$work/picture.png"
    convert "$work/picture.png" -bordercolor '#b8b8b8' -border 1 -strip +dither -colors 96 \
        -define png:compression-level=9 "PNG8:$out/$2.png"
}

# run PROGRAM OPTIONS...: starts it in the background, in the language of $LANGUAGE; its log is in $work/log.
run() {
    local name=$1
    shift
    "$bin/$name" "$@" >"$work/log" 2>&1 &
    program=$!
    started+=("$program")
}

end() {
    kill "$program"
    wait "$program" || true
}

for LANGUAGE in en ja; do
    export LANGUAGE
    run lumbrine-demo-window --tracks 40 --scripting-port 31498
    wait_for "$work/log" 'PTSL'
    "$bin/lumbrine-remote" "127.0.0.1:$QV_PORT" --timeout 10 --expect bank \
        --send 'mute 4' --wait 0.3 --send 'select 2' --wait 0.3 --send 'mute 13' --wait 0.3 \
        --send 'touch 9' --send 'fader 9 0.62' --wait 0.2 --send 'release 9' --wait 1
    picture 720x660 "window-$LANGUAGE"
    end
done

# The page for browsers. All of its pictures stay in build/pictures to be looked at; docs/web.md shows two of them.
LUMBRINE_BIN=$bin node web/tests/pictures.js build/pictures
for name in strips-phone-en tracks-phone-ja; do
    convert "build/pictures/web-$name.png" -resize 50% -strip +dither -colors 96 \
        -define png:compression-level=9 "PNG8:$out/web-$name.png"
done
ls -l "$out"
