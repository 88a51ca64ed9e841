#!/usr/bin/env bash
# fuzz.sh SECONDS [JOBS]: gives each fuzzer that many seconds, starting from its seed corpus. What it finds new stays in
# build/fuzz/corpus; an input that crashes is left beside it and ends the run.
set -euo pipefail
cd "$(dirname "$0")/.."
duration=$1
jobs=${2:-$(nproc)}

scripts/build.sh fuzz "$jobs" --target fuzzers
run_one() {
    local fuzzer=$1 duration=$2
    local name=${fuzzer##*/fuzz_}
    local found=build/fuzz/corpus/$name log=build/fuzz/$name.log
    mkdir -p "$found" build/fuzz/crashes
    if "$fuzzer" "$found" "fuzz/corpus/$name" -max_total_time="$duration" -timeout=5 -rss_limit_mb=1024 \
        -artifact_prefix="build/fuzz/crashes/$name-" -print_final_stats=1 >"$log" 2>&1; then
        printf '%-24s %s runs, no crash\n' "$name" "$(awk '/number_of_executed_units/ {print $2}' "$log")"
    else
        printf '%-24s FAILED, see %s\n' "$name" "$log"
        tail -n 40 "$log"
        return 1
    fi
}
export -f run_one
printf '%s\n' build/fuzz/bin/fuzz_* | xargs -P "$jobs" -I{} bash -c 'run_one {} '"$duration"
