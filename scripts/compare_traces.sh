#!/usr/bin/env bash
# compare_traces.sh OLD_BINARY NEW_BINARY [SEEDS] [OPTION...]: whether two builds of simulation_tests say and do the
# same in each of SEEDS sessions (200): every datagram, MIDI packet and wish to the scripting service, with its time.
# Tells the first difference of each session, and that of the log by itself. Options go to both, as --with NAME does.
# The traces stay in build/traces.
set -euo pipefail
old=$(realpath "$1")
new=$(realpath "$2")
seeds=${3:-200}
options=("${@:4}")
cd "$(dirname "$0")/.."
traces=build/traces

rm -rf "$traces"
mkdir -p "$traces"
pids=()
"$old" --traces "$traces/old" --seeds "$seeds" "${options[@]}" & pids+=($!)
"$new" --traces "$traces/new" --seeds "$seeds" "${options[@]}" & pids+=($!)
for pid in "${pids[@]}"; do wait "$pid"; done

# The first line that differs, of either, and how many there are.
tell_difference() {
    if cmp -s <(sort "$1") <(sort "$2"); then
        printf 'the same lines, in another order within a moment, '
    else
        printf '%d lines differ, ' "$(diff --speed-large-files "$1" "$2" | grep -c '^[<>]' || true)"
    fi
    awk -v old="$1" 'BEGIN { more = 1 }
        {
            if (more) more = (getline line < old) > 0
            if (more && line == $0) next
            printf "the first is line %d:\n    old: %s\n    new: %s\n", NR, more ? line : "(has ended)", $0
            found = 1
            exit
        }
        END { if (!found) printf "the new one ends after line %d\n", NR }' "$2"
}

same=0 only_log=0 traffic=0
for seed in $(seq "$seeds"); do
    verdict=same
    for kind in traffic log; do
        cmp -s "$traces/old/$seed.$kind" "$traces/new/$seed.$kind" && continue
        [ "$verdict" = same ] && verdict=$kind
        printf 'seed %d, %s: ' "$seed" "$kind"
        tell_difference "$traces/old/$seed.$kind" "$traces/new/$seed.$kind"
    done
    case $verdict in
    same) same=$((same + 1)) ;;
    log) only_log=$((only_log + 1)) ;;
    traffic) traffic=$((traffic + 1)) ;;
    esac
done
printf '%d sessions: %d the same, %d with another log alone, %d with other traffic\n' \
    "$seeds" "$same" "$only_log" "$traffic"
[ "$((only_log + traffic))" -eq 0 ]
