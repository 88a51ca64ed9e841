#!/usr/bin/env bash
# macos-simulator-bundle.sh BINARY FOLDER: makes "Simulated Pro Tools.app" in FOLDER, for a Mac without Pro Tools. It
# has Pro Tools' bundle identifier, by which Lumbrine finds Pro Tools, so keep it off computers that have Pro Tools. On
# a Mac it is signed for this Mac only.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
binary=$1
app="$2/Simulated Pro Tools.app"
version=$(sed -n 's/^project(Lumbrine VERSION \([0-9.]*\).*/\1/p' "$top/CMakeLists.txt")

rm -rf "$app"
mkdir -p "$app/Contents/MacOS"
cp "$binary" "$app/Contents/MacOS/lumbrine-simulator"
chmod 755 "$app/Contents/MacOS/lumbrine-simulator"
sed "s/@VERSION@/$version/" "$top/packaging/macos/simulator/Info.plist.in" >"$app/Contents/Info.plist"
printf 'APPL????' >"$app/Contents/PkgInfo"
echo "macOS: $app"
if command -v codesign >/dev/null 2>&1; then
    plutil -lint "$app/Contents/Info.plist"
    codesign --force --sign - "$app"
fi
