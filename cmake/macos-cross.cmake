# Compiling for macOS on Linux, to see that it compiles and links: Clang, LLD and libc++'s headers of LLVM 19, and an
# SDK whose folder is in the environment variable LUMBRINE_MACOS_SDK. LUMBRINE_MACOS_ARCH is arm64 or x86_64. What the
# tests need besides is below LUMBRINE_MACOS_LIBRARIES (scripts/macos-libraries.sh).
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

# In an SDK that was trimmed, frameworks do not pass on what others of theirs have: AppKit the text classes of a private
# framework, ApplicationServices the Accessibility functions of HIServices.
if(NOT EXISTS "${CMAKE_OSX_SYSROOT}/System/Library/PrivateFrameworks/UIFoundation.framework")
    string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT " ${CMAKE_CURRENT_LIST_DIR}/macos-cross/AppKit.tbd -framework HIServices"
        " -F${CMAKE_OSX_SYSROOT}/System/Library/Frameworks/ApplicationServices.framework/Frameworks")
endif()

# Nothing of this computer is for the Mac but its tools.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_OSX_SYSROOT} $ENV{LUMBRINE_MACOS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
