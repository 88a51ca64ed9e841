#!/usr/bin/env bash
# Run as root on a bare system with both packages installed: what a user does with them works, and removing them leaves
# nothing. Waits look for what they wait for, and give up after half a minute.
set -euo pipefail

tell() { printf '%s\n' "$*"; }
fail() { tell "FAILED: $*" >&2; exit 1; }

# until_there FILE TEXT
until_there() {
    local tries
    for ((tries = 0; tries < 300; ++tries)); do
        ! grep -qF -- "$2" "$1" 2>/dev/null || return 0
        sleep 0.1
    done
    cat "$1" >&2
    fail "'$2' never appeared"
}

# In front of a command: as an ordinary user. It becomes the command, so that $! is the program itself.
as_player=(setpriv --reuid=player --regid=player --init-groups --inh-caps=-all env HOME=/home/player LANG=C)

# ends_in_order PROCESS: SIGTERM, and the program's own end.
ends_in_order() {
    kill -TERM "$1"
    wait "$1" || fail "exit status $? after SIGTERM"
}

tell '== packages are whole'
dpkg --verify lumbrine lumbrine-tools
[ -z "$(dpkg --audit)" ] || fail "$(dpkg --audit)"

tell '== the product has nothing of the simulator in it'
grep -qa SimulatedProTools /usr/bin/lumbrine-simulator || fail 'no way to tell'
for program in $(dpkg -L lumbrine | grep '^/usr/bin/.'); do
    ! grep -qa SimulatedProTools "$program" || fail "$program has"
done

tell '== every program tells its version'
for program in $(dpkg -L lumbrine lumbrine-tools | grep '^/usr/bin/.'); do
    "${as_player[@]}" "$program" --version
    "${as_player[@]}" "$program" --help >/dev/null
done

install -d -o player -m 700 /tmp/player

tell '== the receiver runs and ends'
log=/tmp/headless.log
"${as_player[@]}" QV_PORT=52711 QV_NO_BONJOUR=1 lumbrine-headless >"$log" &
receiver=$!
until_there "$log" '✓ UDP listening on :52711'
"${as_player[@]}" lumbrine-remote 127.0.0.1:52711 --timeout 10 --send hello --expect pong >/dev/null
ends_in_order "$receiver"

tell '== the page for browsers is served'
log=/tmp/web.log
"${as_player[@]}" QV_WEB_PORT=52781 lumbrine-web >"$log" &
gateway=$!
until_there "$log" '/#'
exec 3<>/dev/tcp/127.0.0.1/52781
printf 'GET / HTTP/1.0\r\nHost: localhost\r\n\r\n' >&3
page=$(cat <&3)
exec 3>&-
[[ $page == *'<!doctype html>'* ]] || fail "no page: $page"
[ "$(stat -c %a /home/player/.local/state/lumbrine/web-key)" = 600 ] || fail 'others can read the key'
ends_in_order "$gateway"

tell '== the window opens and its program ends'
log=/tmp/window.log
"${as_player[@]}" QV_PORT=52713 QV_NO_BONJOUR=1 QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=/tmp/player lumbrine >"$log" &
window=$!
until_there "$log" '✓ UDP listening on :52713'
ends_in_order "$window"

tell '== a client moves a fader of the simulated session'
log=/tmp/demo.log
"${as_player[@]}" QV_PORT=52712 QV_NO_BONJOUR=1 lumbrine-demo --scripting-port 31499 >"$log" &
demo=$!
until_there "$log" 'Connect a client'
"${as_player[@]}" lumbrine-remote 127.0.0.1:52712 --timeout 20 --expect 'bank first=1' --send 'touch 3' \
    --send 'fader 3 0.72' --send 'release 3' --expect 'fader 3 ~0.72' >/dev/null
ends_in_order "$demo"

tell '== what was removed is gone'
files=$(dpkg -L lumbrine lumbrine-tools | grep -i lumbrine)
apt-get purge -y -q lumbrine lumbrine-tools >/dev/null
for file in $files; do
    [ ! -e "$file" ] || fail "$file is still there"
done
