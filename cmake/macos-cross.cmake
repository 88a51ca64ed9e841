# Toolchain file that compiles and links for macOS on Linux, to check that the Mac code builds. It uses Clang, LLD and
# the libc++ headers of LLVM 19. Environment variables: LUMBRINE_MACOS_SDK is the folder of a macOS SDK,
# LUMBRINE_MACOS_ARCH is arm64 or x86_64, and LUMBRINE_MACOS_LIBRARIES is the folder of the libraries that only the
# tests need (made by scripts/macos-libraries.sh).
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR $ENV{LUMBRINE_MACOS_ARCH})
set(CMAKE_OSX_ARCHITECTURES "" CACHE STRING "")
set(CMAKE_OSX_SYSROOT $ENV{LUMBRINE_MACOS_SDK} CACHE PATH "")

set(triple $ENV{LUMBRINE_MACOS_ARCH}-apple-macos12.0)
set(CMAKE_C_COMPILER /usr/bin/clang-19)
set(CMAKE_CXX_COMPILER /usr/bin/clang++-19)
set(CMAKE_OBJCXX_COMPILER /usr/bin/clang++-19)
foreach(language C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER_TARGET ${triple})
endforeach()
set(CMAKE_AR /usr/bin/llvm-ar-19)
set(CMAKE_RANLIB /usr/bin/llvm-ranlib-19)
set(CMAKE_INSTALL_NAME_TOOL /usr/bin/llvm-install-name-tool-19)
foreach(language CXX OBJCXX)
    set(CMAKE_${language}_FLAGS_INIT "-isystem ${CMAKE_CURRENT_LIST_DIR}/macos-cross")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT -fuse-ld=lld)

# In a complete SDK, AppKit re-exports the text classes of the private framework UIFoundation, and ApplicationServices
# the Accessibility functions of HIServices. An SDK without private frameworks lacks these re-exports, so they are
# added here.
if(NOT EXISTS "${CMAKE_OSX_SYSROOT}/System/Library/PrivateFrameworks/UIFoundation.framework")
    string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " ${CMAKE_CURRENT_LIST_DIR}/macos-cross/AppKit.tbd -framework HIServices"
        " -F${CMAKE_OSX_SYSROOT}/System/Library/Frameworks/ApplicationServices.framework/Frameworks")
endif()

# find_program looks on this computer; libraries, headers and packages come only from the SDK and the folder above.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_OSX_SYSROOT} $ENV{LUMBRINE_MACOS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
