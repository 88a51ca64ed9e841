#!/usr/bin/env bash
# run.sh TESTS...: runs these tests of this folder in Chromium, against the programs in $LUMBRINE_BIN. Ends with status
# 77 where a browser or the packages of npm are missing.
set -euo pipefail
bin=$(realpath "${LUMBRINE_BIN:-build/release/bin}")
cd "$(dirname "$0")"

skip() {
    printf 'SKIPPED: %s; scripts/setup.sh installs what is needed\n' "$1"
    exit 77
}
command -v node >/dev/null 2>&1 || skip 'there is no Node.js'
[ -x /usr/bin/chromium ] || skip 'there is no Chromium'
[ -d ../node_modules/playwright-core ] || skip 'the packages of npm are missing'

# What needs no browser runs while the first studio finds its tracks. The others run one after the other: each starts a
# studio of its own, and some measure time.
shopt -s nullglob
alone=() browser=()
for pattern in "$@"; do
    for test in $pattern; do
        if [[ $test == browser/* ]]; then browser+=("$test"); else alone+=("$test"); fi
    done
done
rules=
if [ ${#alone[@]} -gt 0 ]; then
    node --test "${alone[@]}" &
    rules=$!
fi
for test in "${browser[@]}"; do
    LUMBRINE_BIN=$bin node --test "$test"
done
if [ -n "$rules" ]; then wait "$rules"; fi
