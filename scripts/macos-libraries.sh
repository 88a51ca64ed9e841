#!/usr/bin/env bash
# macos-libraries.sh FOLDER: makes the libraries that the tests need, besides the SDK, to be compiled and linked for
# macOS on Linux. They come from Debian's packages, for the processor in LUMBRINE_MACOS_ARCH. If FOLDER is complete, the
# script does nothing. The programs are never run, so some libraries are only stubs:
#   GoogleTest      compiled
#   nlohmann-json   the headers, since it has no compiled part; so has CLI11
#   nghttp2         the headers, and a list of its functions' names for the linker
#   utf8proc        the same
#   protobuf, gRPC  the headers; their functions stay undefined until the program is loaded
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$1
prefix=$folder/usr
[ ! -e "$folder/complete" ] || exit 0

rm -rf "$folder"
mkdir -p "$prefix/include" "$prefix"/lib/cmake/{protobuf,grpc} "$prefix/lib/pkgconfig" "$prefix/share/cmake"
ln -s /usr/include/{CLI,absl,google,grpc,grpcpp,nghttp2,nlohmann,utf8proc.h} "$prefix/include/"
cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"

cmake -G Ninja -S /usr/src/googletest -B "$folder/googletest" --toolchain "$PWD/cmake/macos-cross.cmake" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_STANDARD=17
cmake --build "$folder/googletest"
cmake --install "$folder/googletest" --prefix "$prefix"

# linkable MODULE: a library without code, whose symbols are those of Debian's.
linkable() {
    local library
    library=/usr/lib/$(gcc -print-multiarch)/$1.so
    cat >"$prefix/lib/$1.tbd" <<TBD
--- !tapi-tbd
tbd-version:  4
targets:      [ $LUMBRINE_MACOS_ARCH-macos ]
install-name: '/usr/local/lib/$1.dylib'
exports:
  - targets:  [ $LUMBRINE_MACOS_ARCH-macos ]
    symbols:  [ $(llvm-nm-19 --dynamic --defined-only --format=just-symbols "$library" | sed 's/^/_/; s/$/,/' | xargs) ]
...
TBD
    cat >"$prefix/lib/pkgconfig/$1.pc" <<PC
Name: $1
Description: $library as the linker sees it
Version: $(env -u PKG_CONFIG_LIBDIR pkg-config --modversion "$1")
Libs: -L$prefix/lib -l${1#lib}
Cflags: -I$prefix/include
PC
}
linkable libnghttp2
linkable libutf8proc

cat >"$prefix/lib/cmake/protobuf/protobuf-config.cmake" <<CMAKE
add_library(protobuf::libprotobuf INTERFACE IMPORTED)
target_include_directories(protobuf::libprotobuf INTERFACE "$prefix/include")
target_link_options(protobuf::libprotobuf INTERFACE -Wl,-undefined,dynamic_lookup)
add_executable(protobuf::protoc IMPORTED)
set_target_properties(protobuf::protoc PROPERTIES IMPORTED_LOCATION "$(type -P protoc)")
CMAKE
cat >"$prefix/lib/cmake/grpc/grpc-config.cmake" <<CMAKE
find_package(Protobuf REQUIRED CONFIG)
add_library(gRPC::grpc++_unsecure INTERFACE IMPORTED)
target_include_directories(gRPC::grpc++_unsecure INTERFACE "$prefix/include")
target_link_options(gRPC::grpc++_unsecure INTERFACE -Wl,-undefined,dynamic_lookup)
add_executable(gRPC::grpc_cpp_plugin IMPORTED)
set_target_properties(gRPC::grpc_cpp_plugin PROPERTIES IMPORTED_LOCATION "$(type -P grpc_cpp_plugin)")
CMAKE
touch "$folder/complete"
