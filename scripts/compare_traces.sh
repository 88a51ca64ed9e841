#!/usr/bin/env bash
# compare_traces.sh OLD_BINARY NEW_BINARY [SEEDS] [OPTION...]: checks that two builds of simulation_tests behave the
# same in the sessions 1 to SEEDS (200). It compares the traffic of each session (every datagram, MIDI packet and
# scripting request, with its time) and, separately, its log, and prints the first difference of each. The options are
# passed to both programs, for example --with NAME. The traces stay in build/traces.
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

# tell_difference OLD NEW: prints how many lines differ, and the first one in both files.
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
