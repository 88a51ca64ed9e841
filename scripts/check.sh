#!/usr/bin/env bash
# check.sh [JOBS]: the checks that run no test of behaviour: format, the tidy tests, the types and the codec
# of the page for browsers, the packaging, the Mac build, clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${1:-$(nproc)}

echo '== clang-format'
git ls-files '*.h' '*.cpp' '*.mm' | xargs -r clang-format-19 --dry-run --Werror

echo '== tidy tests'
scripts/build.sh release "$jobs" --target tidy_tests
build/release/bin/tidy_tests --gtest_brief=1

echo '== page for browsers'
if [ -d web/node_modules/typescript ]; then
    node web/node_modules/typescript/bin/tsc -p web
    node --test web/tests/*.test.js
else
    echo 'not checked: scripts/setup.sh could not install the packages of npm'
fi

echo '== packaging'
scripts/lint_packaging.sh

echo '== macOS'
scripts/check-macos.sh --jobs "$jobs"

echo '== clang-tidy'
# Only the product and the tools. Tests, fuzzers and benchmarks have to pass the compilers' warnings, but not
# clang-tidy. Nothing but the sanitizers' builds and a Mac's compiles turn_threads.cpp.
scripts/build.sh tidy "$jobs" --target lumbrine_common_headers lumbrine_generated_sources
git ls-files '*.cpp' |
    grep -vE '(_test\.cpp$|^(tests|fuzz|benchmarks)/|^platform/macos/|/turn_threads\.cpp$|/testing/)' |
    xargs /usr/bin/python3 scripts/tidy.py build/tidy "$jobs"
