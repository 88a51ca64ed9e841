#!/usr/bin/env bash
# macos-bundle.sh BINARY FOLDER: makes Lumbrine.app in FOLDER, and beside it Lumbrine.app.dSYM: keep that with each
# release, since only with it the addresses of a crash report have names. On a Mac it also signs the application and
# makes the disk image Lumbrine.dmg. Environment variables:
#
#   LUMBRINE_SIGN_IDENTITY   the name of a "Developer ID Application: ..." certificate in the keychain. Without it the
#                            signature is ad hoc, and the application starts only on this Mac.
#   LUMBRINE_NOTARY_PROFILE  a profile stored by `xcrun notarytool store-credentials`. With it the application and the
#                            image are notarised.
#   LUMBRINE_URL             the future download address of the image. With it and LUMBRINE_HOMEPAGE the script also
#                            writes a Homebrew cask, lumbrine.rb.
#
# The entitlements are empty: the application needs no exception from the hardened runtime.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
binary=$1
folder=$2
app=$folder/Lumbrine.app
image=$folder/Lumbrine.dmg
version=$(sed -n 's/^project(Lumbrine VERSION \([0-9.]*\).*/\1/p' "$top/CMakeLists.txt")

# tool NAME: where this tool of LLVM's is, as Debian's packages or a Mac name it.
tool() {
    command -v "llvm-$1-19" || command -v "$1-19" || command -v "$1"
}

rm -rf "$app" "$app.dSYM"
mkdir -p "$app/Contents/MacOS" "$app/Contents/Resources"
cp "$binary" "$app/Contents/MacOS/Lumbrine"
chmod 755 "$app/Contents/MacOS/Lumbrine"
"$(tool dsymutil)" "$binary" -o "$app.dSYM"
"$(tool strip)" -S "$app/Contents/MacOS/Lumbrine"
sed "s/@VERSION@/$version/" "$top/packaging/macos/Info.plist.in" >"$app/Contents/Info.plist"
printf 'APPL????' >"$app/Contents/PkgInfo"
cp -R "$top/packaging/macos/en.lproj" "$top/packaging/macos/ja.lproj" "$app/Contents/Resources/"
python3 "$top/scripts/macos_icon.py" "$app/Contents/Resources/Lumbrine.icns"
echo "macOS: $app, version $version"

if ! command -v codesign >/dev/null 2>&1; then
    echo 'macOS: not signed, since this is no Mac'
    exit 0
fi
plutil -lint "$app/Contents/Info.plist" "$app"/Contents/Resources/*.lproj/InfoPlist.strings
identity=${LUMBRINE_SIGN_IDENTITY:--}
stamp=--timestamp
[ "$identity" != - ] || stamp=--timestamp=none
codesign --force --options runtime "$stamp" --entitlements "$top/packaging/macos/Lumbrine.entitlements" \
    --sign "$identity" "$app"
codesign --verify --strict --verbose=2 "$app"

staged=$(mktemp -d)
trap 'rm -rf "$staged"' EXIT
notarise() {
    xcrun notarytool submit "$1" --keychain-profile "$LUMBRINE_NOTARY_PROFILE" --wait
}
if [ -n "${LUMBRINE_NOTARY_PROFILE:-}" ]; then
    ditto -c -k --keepParent "$app" "$staged/Lumbrine.zip"
    notarise "$staged/Lumbrine.zip"
    xcrun stapler staple "$app"
fi

mkdir "$staged/image"
cp -R "$app" "$staged/image/"
ln -s /Applications "$staged/image/Applications"
rm -f "$image"
hdiutil create -quiet -volname Lumbrine -srcfolder "$staged/image" -format UDZO "$image"
if [ "$identity" != - ]; then codesign "$stamp" --sign "$identity" "$image"; fi
if [ -n "${LUMBRINE_NOTARY_PROFILE:-}" ]; then
    notarise "$image"
    xcrun stapler staple "$image"
    spctl --assess --type open --context context:primary-signature --verbose "$image"
fi
sum=$(shasum -a 256 "$image" | cut -d ' ' -f 1)
echo "macOS: $image, SHA-256 $sum"

if [ -n "${LUMBRINE_URL:-}" ]; then
    sed -e "s|@VERSION@|$version|" -e "s|@SHA256@|$sum|" -e "s|@URL@|$LUMBRINE_URL|" \
        -e "s|@HOMEPAGE@|${LUMBRINE_HOMEPAGE:?}|" "$top/packaging/macos/lumbrine.rb.in" >"$folder/lumbrine.rb"
fi
