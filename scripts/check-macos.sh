#!/usr/bin/env bash
# check-macos.sh [--tests ARCHITECTURES] [SDK [JOBS]]: checks on Linux that the Mac code builds. It compiles all product
# code for arm64 and x86_64 against a macOS SDK, links Lumbrine, checks the binary's headers, and makes the unsigned
# bundle. SDK is a folder with System/ and usr/; LUMBRINE_MACOS_SDK may name it instead. Without an SDK the script
# prints that nothing was checked, and succeeds. The tests are compiled and linked for ARCHITECTURES: 'arm64' (the
# default), 'arm64 x86_64', or '' for none; they take most of the time. No program is run.
set -euo pipefail
cd "$(dirname "$0")/.."
tests=arm64
if [ "${1:-}" = --tests ]; then
    tests=$2
    shift 2
fi
sdk=${1:-${LUMBRINE_MACOS_SDK:-}}
jobs=${2:-$(nproc)}
out=build/macos

if [ -z "$sdk" ]; then
    echo 'macOS: not checked, since no SDK is given (LUMBRINE_MACOS_SDK)'
    exit 0
fi
for need in "$sdk/System/Library/Frameworks/AppKit.framework" /usr/bin/clang++-19 /usr/bin/ld64.lld-19 \
    /usr/bin/llvm-lipo-19 /usr/lib/llvm-19/include/c++/v1/expected ${tests:+/usr/src/googletest}; do
    if [ ! -e "$need" ]; then
        echo "macOS: not checked, since $need is missing" \
            "(packages clang-19, lld-19, llvm-19, libc++-19-dev, googletest)"
        exit 0
    fi
done

fail() {
    echo "macOS: $*" >&2
    exit 1
}

# configure FOLDER OPTION... and build FOLDER TARGET: end the script on an error; build also on a warning.
configure() {
    local folder=$1
    shift
    cmake -G Ninja -S . -B "build/$folder" --toolchain cmake/macos-cross.cmake "$@" >"$out/$folder.log" 2>&1 ||
        { cat "$out/$folder.log"; fail "$folder cannot be configured"; }
}
build() {
    local folder=$1 target=$2 log=$out/$1.log
    cmake --build "build/$folder" --target "$target" -- -j "$jobs" >"$log" 2>&1 ||
        { cat "$log"; fail "$folder does not build"; }
    if grep -n 'warning:' "$log"; then fail "$folder builds with warnings"; fi
}

mkdir -p "$out"
export LUMBRINE_MACOS_SDK=$sdk LUMBRINE_MACOS_ARCH LUMBRINE_MACOS_LIBRARIES=''
for LUMBRINE_MACOS_ARCH in arm64 x86_64; do
    configure "macos-$LUMBRINE_MACOS_ARCH" -DCMAKE_BUILD_TYPE=Release -DLUMBRINE_TESTS=OFF
    build "macos-$LUMBRINE_MACOS_ARCH" lumbrine_product
    echo "macOS: $LUMBRINE_MACOS_ARCH compiled and linked without a warning"
done

for LUMBRINE_MACOS_ARCH in $tests; do
    folder=macos-tests-$LUMBRINE_MACOS_ARCH
    LUMBRINE_MACOS_LIBRARIES=$PWD/build/macos-libraries-$LUMBRINE_MACOS_ARCH
    export PKG_CONFIG_LIBDIR=$LUMBRINE_MACOS_LIBRARIES/usr/lib/pkgconfig
    scripts/macos-libraries.sh "$LUMBRINE_MACOS_LIBRARIES" >"$out/libraries.log" 2>&1 ||
        { cat "$out/libraries.log"; fail 'what the tests need does not build'; }
    # Sources are compiled in batches of 12, which is much faster. The Linux builds check that each compiles alone.
    configure "$folder" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_FIND_PACKAGE_PREFER_CONFIG=ON \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=12
    build "$folder" lumbrine_tests
    # The tests are linked without protobuf, so its symbols stay undefined (dynamic lookup). No others may.
    llvm-nm-19 -m "build/$folder"/bin/* >"$out/$folder.symbols"
    unknown=$(grep 'dynamically looked up' "$out/$folder.symbols" | grep -v 6google8protobuf || true)
    [ -z "$unknown" ] || fail "$folder: nobody has $unknown"
    programs=("build/$folder"/bin/*_tests)
    echo "macOS: $LUMBRINE_MACOS_ARCH: ${#programs[@]} test programs compiled and linked without a warning"
done

llvm-lipo-19 -create build/macos-arm64/bin/Lumbrine build/macos-x86_64/bin/Lumbrine -output "$out/Lumbrine"

architectures=$(llvm-lipo-19 -archs "$out/Lumbrine")
[ "$(tr ' ' '\n' <<<"$architectures" | sort | xargs)" = 'arm64 x86_64' ] || fail "architectures: $architectures"
echo "macOS: architectures $architectures"

for arch in $architectures; do
    thin=build/macos-$arch/bin/Lumbrine
    commands=$out/$arch.commands
    llvm-objdump-19 --macho --private-headers "$thin" >"$commands"
    # A linker may drop a framework that only a class looked up by name needs: then nobody logs in with Lumbrine.
    llvm-otool-19 -L "$thin" | grep -q ServiceManagement || fail "$arch does not load ServiceManagement"
    foreign=$(llvm-otool-19 -L "$thin" | awk 'NR > 1 {print $1}' | grep -vE '^(/usr/lib/|/System/Library/)' || true)
    [ -z "$foreign" ] || fail "$arch needs more than the system: $foreign"
    if grep -q LC_RPATH "$commands"; then fail "$arch looks for libraries in places of its own"; fi
    grep -qw PIE "$commands" || fail "$arch is not position independent"
    # The hardened runtime refuses segments that are both writable and executable.
    if grep -E '^ *(max|init)prot rwx' "$commands"; then fail "$arch has a segment to write and execute"; fi
    minimum=$(awk '/LC_BUILD_VERSION/ {found = 1} found && $1 == "minos" {print $2; exit}' "$commands")
    [ "$minimum" = 12.0 ] || fail "$arch wants macOS $minimum"
    if strings -a "$thin" | grep -F -e "$PWD" -e "$sdk" -e "$HOME/"; then fail "$arch tells where it was built"; fi
    echo "macOS: $arch needs $(llvm-otool-19 -L "$thin" | awk 'NR > 1 {n = split($1, p, "/"); print p[n]}' | xargs);" \
        "macOS $minimum or later; $(stat -c %s "$thin") bytes"
done

scripts/macos-bundle.sh "$out/Lumbrine" "$out"
python3 - "$out/Lumbrine.app/Contents" <<'PYTHON'
import plistlib, re, sys
from pathlib import Path

contents = Path(sys.argv[1])
info = plistlib.loads((contents / "Info.plist").read_bytes())
assert info["CFBundleIdentifier"] == "com.tarnwick.lumbrine" and info["LSUIElement"] is True
assert (contents / "MacOS" / info["CFBundleExecutable"]).is_file()
icon = (contents / "Resources" / (info["CFBundleIconFile"] + ".icns")).read_bytes()
assert icon[:4] == b"icns" and int.from_bytes(icon[4:8]) == len(icon)
for language in info["CFBundleLocalizations"]:
    texts = (contents / "Resources" / f"{language}.lproj" / "InfoPlist.strings").read_text(encoding="utf-8")
    lines = texts.splitlines()
    pairs = [re.fullmatch(r'"(\w+)" = "[^"]+";', line) for line in lines]
    assert all(pairs) and {pair[1] for pair in pairs} <= info.keys(), language
    assert any(pair[1] == "NSLocalNetworkUsageDescription" for pair in pairs), language
PYTHON
echo 'macOS: the bundle has its papers in order'
