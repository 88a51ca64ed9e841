#!/usr/bin/env bash
# bench.sh BIN: runs all benchmarks, prints their table, the cost of idling and the cost of the window, and writes
# build/bench.json. Our code and its peers take turns within one run, so that both meet the same load of the machine.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=$1
mkdir -p build

"$bin/lumbrine-benchmarks" --benchmark_repetitions=9 --benchmark_min_time=0.1 \
    --benchmark_enable_random_interleaving=true --benchmark_out=build/bench-raw.json --benchmark_out_format=json \
    >build/bench.log 2>&1 || { cat build/bench.log; exit 1; }
"$bin/feedback_benchmark" >build/bench-feedback.json
"$bin/hello_benchmark" >build/bench-hello.json
"$bin/latency_benchmark" >build/bench-latency.json
"$bin/main_queue_benchmark" >build/bench-main-queue.json
"$bin/scan_benchmark" >build/bench-scan.json
"$bin/scripting_call_benchmark" >build/bench-scripting-call.json
"$bin/studio_benchmark" >build/bench-studio.json
"$bin/track_list_benchmark" >build/bench-track-list.json
"$bin/web_gateway_benchmark" >build/bench-web-gateway.json
if [ -x /usr/bin/chromium ] && [ -d web/node_modules/playwright-core ]; then
    LUMBRINE_BIN=$(realpath "$bin") node web/tests/measure.js >build/bench-web-page.json
else
    echo 'The page is not measured: there is no Chromium, or the packages of npm are missing'
    echo '[]' >build/bench-web-page.json
fi
/usr/bin/python3 scripts/bench_table.py build/bench-raw.json build/bench-feedback.json build/bench-hello.json \
    build/bench-latency.json build/bench-main-queue.json build/bench-scan.json build/bench-scripting-call.json \
    build/bench-studio.json build/bench-track-list.json build/bench-web-gateway.json \
    build/bench-web-page.json build/bench.json
"$bin/virtual_time_bench"
/usr/bin/python3 scripts/bench_idle.py "$bin"
/usr/bin/python3 scripts/bench_window.py "$bin"
