# Compiler settings that every target shares.
option(LUMBRINE_WERROR "Treat warnings as errors" ON)
option(LUMBRINE_TESTS "Build the tests, and what only tests need" ON)
option(LUMBRINE_FUZZERS "Build the libFuzzer targets (Clang only)" OFF)
option(LUMBRINE_COVERAGE "Instrument for coverage" OFF)
set(LUMBRINE_SANITIZE "" CACHE STRING "Value of -fsanitize=, empty for none")

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# Named on the tests' command lines. A copy of the tree that names the original's shares its compiled tests by ccache.
set(LUMBRINE_TESTS_SOURCE_DIR "${CMAKE_SOURCE_DIR}" CACHE PATH "Where tests find documents and recorded data")
set(LUMBRINE_TESTS_BIN_DIR "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" CACHE PATH "Where tests find the programs they start")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Relative paths and no directory in the hash, so that every checkout shares the cache. The precompiled header is
    # named by its content, not by its time.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
    else()
        add_compile_options(-fpch-preprocess)
    endif()
endif()

# mold, where it is installed, links in a third of the time. Packages are linked by the system's own linker.
find_program(MOLD_LINKER mold)
if(MOLD_LINKER AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT LUMBRINE_PACKAGES)
    add_link_options(-fuse-ld=mold)
endif()

# -pthread on every target, even those without threads: a precompiled header fits only targets with the same options.
add_compile_options(-pthread)
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_options(-Wshadow -Wthread-safety)
else()
    add_compile_options(-Wshadow=local) # as Clang's: a constructor's parameters may have the members' names
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
    # What is newer than the oldest macOS that runs the program is asked for before it is used.
    add_compile_options(-Werror=unguarded-availability-new)
    # The bundle's script takes this information out of the program, into a dSYM that is kept beside the release.
    add_compile_options($<$<CONFIG:Release>:-g>)
endif()
if(CMAKE_UNITY_BUILD)
    add_compile_options(-Wno-shadow) # files compiled together see each other's names
endif()
if(LUMBRINE_WERROR)
    add_compile_options(-Werror)
endif()
if(LUMBRINE_SANITIZE)
    add_compile_options(-fsanitize=${LUMBRINE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${LUMBRINE_SANITIZE})
endif()
if(LUMBRINE_COVERAGE)
    # Also the tests: the linker keeps one copy of an inline function, and that copy may come from a test's object file.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
