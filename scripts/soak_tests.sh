#!/usr/bin/env bash
# soak_tests.sh [COUNT] [PRESET]: runs the whole test suite COUNT times (50) while two compilers load the machine, to
# find tests that fail only sometimes. Prints how many runs failed, in which tests, and how long the runs took. The logs
# of failed runs are kept in build/soak/PRESET. Build the preset first. Environment variables: SOAK_TESTS is a regular
# expression that chooses tests, SOAK_JOBS the number of tests at the same time (twice the number of processors).
set -euo pipefail
cd "$(dirname "$0")/.."
count=${1:-50}
preset=${2:-release}
jobs=${SOAK_JOBS:-$((2 * $(nproc)))}
results=build/soak/$preset

rm -rf "$results"
mkdir -p "$results"

# Compiles the same expensive source for ever, without ccache.
compile_for_ever() {
    while true; do
        g++ -std=c++23 -O2 -x c++ -o /dev/null -c - <<<'#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <regex>
#include <string>
int main() {
    std::map<std::string, std::function<bool(std::string)>> rules{
        {"word", [](std::string text) { return std::regex_match(text, std::regex("\\w+")); }}};
    for (std::string line; std::getline(std::cin, line);) std::cout << rules["word"](line);
}'
    done
}

compilers=()
stop_compilers() {
    # Under `set -m` each loop leads its own process group; killing the group also ends the compiler that it started.
    for compiler in "${compilers[@]}"; do kill -- "-$compiler" 2>/dev/null || true; done
}
trap stop_compilers EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
set -m
for _ in 1 2; do
    compile_for_ever &
    compilers+=($!)
done
set +m

failed_runs=0
times=()
for run in $(seq "$count"); do
    log=$results/run-$run
    begin=$SECONDS
    if ctest --preset "$preset" -j "$jobs" -R "${SOAK_TESTS:-.}" >"$log" 2>&1; then
        verdict=passed
        rm "$log"
    else
        verdict=FAILED
        failed_runs=$((failed_runs + 1))
        sed -n '/The following tests FAILED/,$s/^[[:space:]]*[0-9]* - \([^ ]*\) (\(.*\)).*/\1 (\2)/p' "$log" \
            >>"$results/failures"
    fi
    times+=($((SECONDS - begin)))
    printf 'run %d of %d: %s, %d s\n' "$run" "$count" "$verdict" "${times[-1]}"
done

sorted=$(printf '%s\n' "${times[@]}" | sort -n)
printf '%d runs of preset %s beside two compilers, %d failed; %s s the shortest, %s s the median, %s s the longest\n' \
    "$count" "$preset" "$failed_runs" "$(head -1 <<<"$sorted")" \
    "$(sed -n "$(((count + 1) / 2))p" <<<"$sorted")" "$(tail -1 <<<"$sorted")"
if [ "$failed_runs" -gt 0 ]; then
    printf 'failures by test:\n'
    sort "$results/failures" | uniq -c | sort -rn
    printf 'their output is in %s\n' "$results"
    exit 1
fi
