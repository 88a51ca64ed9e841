#!/usr/bin/env bash
# fuzz.sh SECONDS [JOBS [COMMIT]]: runs each fuzzer for that many seconds, starting from its seed corpus. New inputs are
# kept in build/fuzz/corpus. An input that crashes is kept in build/fuzz/crashes and ends the run. With COMMIT, only
# those fuzzers run whose parser, harness or corpus has changed since; the test suite replays the corpora of all.
set -euo pipefail
cd "$(dirname "$0")/.."
duration=$1
jobs=${2:-$(nproc)}
since=${3:-}

# folders_of FUZZER: the folders with the code that it tests. Without base and platform, which all fuzzers use.
folders_of() {
    ninja -C build/fuzz -t inputs "fuzz_$1" | sed -nE 's#^([a-z_/]+)/lib[a-z_]+\.a$#\1#p' | grep -vE '^(base|platform)'
}
has_changed() {
    local folders
    mapfile -t folders < <(folders_of "$1")
    ! git diff --quiet "$since" -- "fuzz/$1_fuzzer.cpp" "fuzz/corpus/$1" "${folders[@]}" ':!*_test.cpp'
}

scripts/build.sh fuzz "$jobs" --target lumbrine_common_headers
chosen=()
for harness in fuzz/*_fuzzer.cpp; do
    name=$(basename "$harness" _fuzzer.cpp)
    if [ -z "$since" ] || has_changed "$name"; then
        chosen+=("fuzz_$name")
    else
        printf '%-24s as it was\n' "$name"
    fi
done
[ ${#chosen[@]} -gt 0 ] || exit 0

scripts/build.sh fuzz "$jobs" --target "${chosen[@]}"
run_one() {
    local name=${1#fuzz_} duration=$2
    local found=build/fuzz/corpus/$name log=build/fuzz/$name.log
    mkdir -p "$found" build/fuzz/crashes
    if "build/fuzz/bin/$1" "$found" "fuzz/corpus/$name" -max_total_time="$duration" -timeout=5 -rss_limit_mb=1024 \
        -artifact_prefix="build/fuzz/crashes/$name-" -print_final_stats=1 >"$log" 2>&1; then
        printf '%-24s %s runs, no crash\n' "$name" "$(awk '/number_of_executed_units/ {print $2}' "$log")"
    else
        printf '%-24s FAILED, see %s\n' "$name" "$log"
        tail -n 40 "$log"
        return 1
    fi
}
export -f run_one
printf '%s\n' "${chosen[@]}" | xargs -P "$jobs" -I{} bash -c 'run_one {} '"$duration"
