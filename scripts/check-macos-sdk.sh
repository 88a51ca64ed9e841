#!/usr/bin/env bash
# check-macos-sdk.sh SDK TESTS JOBS: compiles all product code for arm64 and x86_64 against this macOS SDK, links
# Lumbrine, makes the unsigned bundle and its dSYM, and checks the program's headers. Then compiles and links the tests
# and the simulated Pro Tools for the architectures in TESTS. A warning is an error. Called by check-macos.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
sdk=$1
tests=$2
jobs=$3
version=$(sed -n 's/.*"Version": *"\([0-9.]*\)".*/\1/p' "$sdk/SDKSettings.json" | head -n 1)
builds=build/macos$version # the beginning of each build folder's name
out=$builds

fail() {
    echo "macOS: $*" >&2
    exit 1
}

# configure FOLDER OPTION... and build FOLDER TARGET: end the script on an error; build also on a warning.
configure() {
    local folder=$1 log=$out/${1##*/}.log
    shift
    cmake -G Ninja -S . -B "$folder" --toolchain cmake/macos-cross.cmake "$@" >"$log" 2>&1 ||
        { cat "$log"; fail "$folder cannot be configured"; }
}
build() {
    local folder=$1 target=$2 log=$out/${1##*/}.log
    cmake --build "$folder" --target "$target" -- -j "$jobs" >"$log" 2>&1 ||
        { cat "$log"; fail "$folder does not build"; }
    if grep -n 'warning:' "$log"; then fail "$folder builds with warnings"; fi
}

mkdir -p "$out"
export LUMBRINE_MACOS_SDK=$sdk LUMBRINE_MACOS_ARCH LUMBRINE_MACOS_LIBRARIES=''
for LUMBRINE_MACOS_ARCH in arm64 x86_64; do
    configure "$builds-$LUMBRINE_MACOS_ARCH" -DCMAKE_BUILD_TYPE=Release -DLUMBRINE_TESTS=OFF
    build "$builds-$LUMBRINE_MACOS_ARCH" lumbrine_product
    echo "macOS $version: $LUMBRINE_MACOS_ARCH compiled and linked without a warning"
done

llvm-lipo-19 -create "$builds-arm64/bin/Lumbrine" "$builds-x86_64/bin/Lumbrine" -output "$out/Lumbrine"
# dsymutil looks for lipo under the name that it has on a Mac.
mkdir -p "$out/tools"
ln -sf /usr/bin/llvm-lipo-19 "$out/tools/lipo"
PATH=$PWD/$out/tools:$PATH scripts/macos-bundle.sh "$out/Lumbrine" "$out"
program=$out/Lumbrine.app/Contents/MacOS/Lumbrine

# identifiers FILE: of each architecture, by which a dSYM belongs to a program.
identifiers() {
    llvm-dwarfdump-19 --uuid "$1" | awk '{print $2, $3}' | sort
}
[ "$(identifiers "$program")" = "$(identifiers "$out/Lumbrine.app.dSYM")" ] ||
    fail 'the dSYM belongs to another program'

architectures=$(llvm-lipo-19 -archs "$program")
[ "$(tr ' ' '\n' <<<"$architectures" | sort | xargs)" = 'arm64 x86_64' ] || fail "architectures: $architectures"
echo "macOS: architectures $architectures"

for arch in $architectures; do
    thin=$out/Lumbrine.$arch
    llvm-lipo-19 -thin "$arch" "$program" -output "$thin"
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

for LUMBRINE_MACOS_ARCH in $tests; do
    folder=$builds-tests-$LUMBRINE_MACOS_ARCH
    LUMBRINE_MACOS_LIBRARIES=$PWD/$builds-libraries-$LUMBRINE_MACOS_ARCH
    export PKG_CONFIG_LIBDIR=$LUMBRINE_MACOS_LIBRARIES/usr/lib/pkgconfig
    scripts/macos-libraries.sh "$LUMBRINE_MACOS_LIBRARIES" >"$out/libraries.log" 2>&1 ||
        { cat "$out/libraries.log"; fail 'what the tests need does not build'; }
    # Sources are compiled in batches of 12, which is much faster. The Linux builds check that each compiles alone.
    configure "$folder" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_FIND_PACKAGE_PREFER_CONFIG=ON \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=12
    build "$folder" lumbrine_tests
    # They are linked without protobuf and gRPC, whose symbols stay undefined (dynamic lookup). No others may.
    symbols=$out/tests-$LUMBRINE_MACOS_ARCH.symbols
    llvm-nm-19 -m "$folder"/bin/* >"$symbols"
    elsewhere='6google8protobuf|N4absl|N4grpc|_grpc_|_gpr_'
    unknown=$(grep 'dynamically looked up' "$symbols" | grep -vE "$elsewhere" || true)
    [ -z "$unknown" ] || fail "$folder: nobody has $unknown"
    [ -e "$folder/bin/lumbrine-simulator" ] || fail "$folder has no simulated Pro Tools"
    programs=("$folder"/bin/*_tests)
    echo "macOS $version: $LUMBRINE_MACOS_ARCH: ${#programs[@]} test programs and the simulated Pro Tools compiled" \
        "and linked without a warning"
done
