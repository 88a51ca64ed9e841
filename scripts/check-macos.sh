#!/usr/bin/env bash
# check-macos.sh [--tests ARCHITECTURES] [--jobs N] [SDK...]: checks on Linux that the Mac code builds against each
# macOS SDK, one after another (check-macos-sdk.sh). An SDK is a folder with System/ and usr/. LUMBRINE_MACOS_SDK may
# name them instead, separated by colons. Without an SDK the script prints that nothing was checked, and succeeds. The
# tests and the simulated Pro Tools are built for ARCHITECTURES: 'arm64' (the default), 'arm64 x86_64', or '' for none;
# they take most of the time. No program is run.
set -euo pipefail
cd "$(dirname "$0")/.."
tests=arm64
jobs=$(nproc)
while [[ ${1:-} == --* ]]; do
    case $1 in
    --tests) tests=$2 ;;
    --jobs) jobs=$2 ;;
    *)
        echo "check-macos.sh: there is no option $1" >&2
        exit 2
        ;;
    esac
    shift 2
done
sdks=("$@")
[ $# -gt 0 ] || IFS=: read -ra sdks <<<"${LUMBRINE_MACOS_SDK:-}"

if [ ${#sdks[@]} -eq 0 ]; then
    echo 'macOS: not checked, since no SDK is given (LUMBRINE_MACOS_SDK)'
    exit 0
fi
for need in "${sdks[@]/%//System/Library/Frameworks/AppKit.framework}" /usr/bin/clang++-19 /usr/bin/ld64.lld-19 \
    /usr/bin/llvm-lipo-19 /usr/bin/dsymutil-19 /usr/lib/llvm-19/include/c++/v1/expected \
    ${tests:+/usr/src/googletest}; do
    if [ ! -e "$need" ]; then
        echo "macOS: not checked, since $need is missing" \
            "(packages clang-19, lld-19, llvm-19, libc++-19-dev, googletest)"
        exit 0
    fi
done
for sdk in "${sdks[@]}"; do
    scripts/check-macos-sdk.sh "$sdk" "$tests" "$jobs"
done
