#!/usr/bin/env bash
# macos-libraries.sh FOLDER: makes the libraries that the tests need, besides the SDK, to be compiled and linked for
# macOS on Linux. They come from Debian's packages, for the processor in LUMBRINE_MACOS_ARCH. If FOLDER is complete, the
# script does nothing. The programs are never run, so some libraries are only stubs:
#   GoogleTest      compiled
#   nlohmann-json   the headers, since it has no compiled part
#   nghttp2         the headers, and a list of its functions' names for the linker
#   protobuf        the headers; its functions stay undefined until the program is loaded
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$1
prefix=$folder/usr
[ ! -e "$folder/complete" ] || exit 0

rm -rf "$folder"
mkdir -p "$prefix/include" "$prefix/lib/cmake/protobuf" "$prefix/lib/pkgconfig" "$prefix/share/cmake"
ln -s /usr/include/{google,nghttp2,nlohmann} "$prefix/include/"
cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"

cmake -G Ninja -S /usr/src/googletest -B "$folder/googletest" --toolchain "$PWD/cmake/macos-cross.cmake" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_STANDARD=17
cmake --build "$folder/googletest"
cmake --install "$folder/googletest" --prefix "$prefix"

nghttp2=/usr/lib/$(gcc -print-multiarch)/libnghttp2.so
cat >"$prefix/lib/libnghttp2.tbd" <<TBD
--- !tapi-tbd
tbd-version:  4
targets:      [ $LUMBRINE_MACOS_ARCH-macos ]
install-name: '/usr/local/lib/libnghttp2.dylib'
exports:
  - targets:  [ $LUMBRINE_MACOS_ARCH-macos ]
    symbols:  [ $(llvm-nm-19 --dynamic --defined-only --format=just-symbols "$nghttp2" | sed 's/^/_/; s/$/,/' | xargs) ]
...
TBD
cat >"$prefix/lib/pkgconfig/libnghttp2.pc" <<PC
Name: libnghttp2
Description: $nghttp2 as the linker sees it
Version: $(env -u PKG_CONFIG_LIBDIR pkg-config --modversion libnghttp2)
Libs: -L$prefix/lib -lnghttp2
Cflags: -I$prefix/include
PC

cat >"$prefix/lib/cmake/protobuf/protobuf-config.cmake" <<CMAKE
add_library(protobuf::libprotobuf INTERFACE IMPORTED)
target_include_directories(protobuf::libprotobuf INTERFACE "$prefix/include")
target_link_options(protobuf::libprotobuf INTERFACE -Wl,-undefined,dynamic_lookup)
add_executable(protobuf::protoc IMPORTED)
set_target_properties(protobuf::protoc PROPERTIES IMPORTED_LOCATION "$(type -P protoc)")
CMAKE
touch "$folder/complete"
