#!/usr/bin/env bash
# check.sh [JOBS]: what a machine can say about the style: format, the tidy tests, the packaging, clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${1:-$(nproc)}

echo '== clang-format'
git ls-files '*.h' '*.cpp' '*.mm' | xargs -r clang-format-19 --dry-run --Werror

echo '== tidy tests'
scripts/build.sh release "$jobs" --target tidy_tests
build/release/bin/tidy_tests --gtest_brief=1

echo '== packaging'
scripts/lint_packaging.sh

echo '== macOS'
scripts/check-macos.sh "${LUMBRINE_MACOS_SDK:-}" "$jobs"

echo '== clang-tidy'
# The product and its programs; tests are held to the compilers' warnings alone.
scripts/build.sh tidy "$jobs" --target lumbrine_common_headers lumbrine_generated_sources
git ls-files '*.cpp' | grep -vE '(_test\.cpp$|^(tests|fuzz|benchmarks)/|^platform/macos/|/testing/)' |
    xargs /usr/bin/python3 scripts/tidy.py build/tidy "$jobs"
