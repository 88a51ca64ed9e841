# One function for each kind of target, so that a module's CMakeLists.txt is a list of its files.

# Precompiled headers: one set for all programs and libraries, one for all tests.
file(WRITE "${CMAKE_BINARY_DIR}/precompiled.cpp" "")

function(lumbrine_precompile name)
    cmake_parse_arguments(ARG "" "" "HEADERS;DEPENDS" ${ARGN})
    add_library(${name} OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} Threads::Threads)
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

lumbrine_precompile(lumbrine_common_headers
    HEADERS <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <span> <string> <string_view> <variant>
        <vector>)
# Tests are compiled without optimisation, which takes a third less time. Few of them have so much to do that this pays.
set(LUMBRINE_TEST_OPTIONS -O0 -g1)
if(LUMBRINE_TESTS)
    find_package(GTest REQUIRED)
    lumbrine_precompile(lumbrine_test_headers
        DEPENDS GTest::gmock GTest::gtest_main
        HEADERS <gmock/gmock.h> <gtest/gtest.h> <algorithm> <functional> <map> <memory> <optional> <string> <vector>)
    target_compile_options(lumbrine_test_headers PRIVATE ${LUMBRINE_TEST_OPTIONS})
endif()

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Network Widgets)
    add_library(lumbrine_toolkit INTERFACE)
    target_link_libraries(lumbrine_toolkit INTERFACE Qt6::DBus Qt6::Network Qt6::Widgets)
    target_compile_definitions(lumbrine_toolkit INTERFACE QT_NO_KEYWORDS)
    if(LUMBRINE_TESTS)
        lumbrine_precompile(lumbrine_toolkit_test_headers
            DEPENDS GTest::gmock GTest::gtest_main lumbrine_toolkit
            HEADERS <gmock/gmock.h> <gtest/gtest.h> <functional> <memory> <string> <vector>)
        target_compile_options(lumbrine_toolkit_test_headers PRIVATE ${LUMBRINE_TEST_OPTIONS})
    endif()
endif()

function(lumbrine_batch name)
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    target_compile_options(${name} PRIVATE -Wno-shadow) # files compiled together see each other's names
endfunction()

# lumbrine_library(NAME SOURCES ... DEPENDS ... TOOLKIT): a static library. #include paths start at the top of the tree.
# TOOLKIT is for libraries that use Qt: its compiler options do not fit the precompiled header, so all their files are
# compiled as one instead. Libraries of the tools and tests with more than eight files are compiled eight files at a
# time, to save time. The product's files are compiled one by one, so that a missing #include is an error.
function(lumbrine_library name)
    cmake_parse_arguments(ARG "TOOLKIT" "" "SOURCES;DEPENDS" ${ARGN})
    if(ARG_SOURCES)
        add_library(${name} STATIC ${ARG_SOURCES})
        target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}")
        target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} Threads::Threads)
        if(ARG_TOOLKIT)
            set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
        else()
            target_precompile_headers(${name} REUSE_FROM lumbrine_common_headers)
            list(LENGTH ARG_SOURCES count)
            file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
            if(count GREATER 8 AND folder MATCHES "^(simulator|remote|tests|tools)")
                lumbrine_batch(${name})
            endif()
        endif()
    else()
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE "${CMAKE_SOURCE_DIR}")
        target_link_libraries(${name} INTERFACE ${ARG_DEPENDS} Threads::Threads)
    endif()
endfunction()

# lumbrine_program(NAME SOURCES ... DEPENDS ...): an executable in build/<preset>/bin.
function(lumbrine_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_compile_definitions(${name} PRIVATE LUMBRINE_VERSION="${PROJECT_VERSION}")
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS})
endfunction()

# lumbrine_test_library(NAME SOURCES ... DEPENDS ...): a library that several tests share; built only with the tests.
function(lumbrine_test_library name)
    if(LUMBRINE_TESTS)
        lumbrine_library(${name} ${ARGN})
    endif()
endfunction()

# Builds all test programs and the programs that they start.
add_custom_target(lumbrine_tests)

# lumbrine_test(NAME SOURCES ... DEPENDS ... MAIN library TIMEOUT seconds LABELS ... TOOLKIT OPTIMISED): a GoogleTest
# program and one CTest entry that runs it. The time-out is 120 s if none is given. MAIN names a library whose `main`
# replaces GoogleTest's. TOOLKIT is for tests that use Qt. OPTIMISED is for tests that run for many seconds: where a
# test and the product have the same instance of a template, the program gets the test's. The files of a test are
# compiled eight at a time, which halves the compile time.
function(lumbrine_test name)
    if(NOT LUMBRINE_TESTS)
        return()
    endif()
    cmake_parse_arguments(ARG "TOOLKIT;OPTIMISED" "MAIN;TIMEOUT" "SOURCES;DEPENDS;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    if(NOT ARG_MAIN)
        set(ARG_MAIN GTest::gtest_main)
    endif()
    lumbrine_program(${name} SOURCES ${ARG_SOURCES} DEPENDS ${ARG_DEPENDS} ${ARG_MAIN} GTest::gmock)
    target_compile_definitions(${name} PRIVATE LUMBRINE_SOURCE_DIR="${LUMBRINE_TESTS_SOURCE_DIR}"
        LUMBRINE_BIN_DIR="${LUMBRINE_TESTS_BIN_DIR}")
    if(ARG_OPTIMISED)
        # Precompiled with the same options as the test, so not reused.
        target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    else()
        target_compile_options(${name} PRIVATE ${LUMBRINE_TEST_OPTIONS})
        if(ARG_TOOLKIT)
            target_precompile_headers(${name} REUSE_FROM lumbrine_toolkit_test_headers)
        else()
            target_precompile_headers(${name} REUSE_FROM lumbrine_test_headers)
        endif()
    endif()
    lumbrine_batch(${name})
    add_dependencies(lumbrine_tests ${name})
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}")
endfunction()

# lumbrine_fuzzer(NAME SOURCES ... DEPENDS ...): in the fuzz preset, a libFuzzer program; in the others, a test that
# replays the fuzzer's seed corpus, fuzz/corpus/NAME.
function(lumbrine_fuzzer name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    if(LUMBRINE_FUZZERS)
        lumbrine_program(fuzz_${name} SOURCES ${ARG_SOURCES} DEPENDS ${ARG_DEPENDS})
        target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
        if(NOT TARGET fuzzers)
            add_custom_target(fuzzers)
        endif()
        add_dependencies(fuzzers fuzz_${name})
    elseif(LUMBRINE_TESTS)
        lumbrine_program(replay_${name} SOURCES ${ARG_SOURCES} DEPENDS ${ARG_DEPENDS} lumbrine_replay)
        target_compile_options(replay_${name} PRIVATE ${LUMBRINE_TEST_OPTIONS})
        add_dependencies(lumbrine_tests replay_${name})
        add_test(NAME replay_${name} COMMAND replay_${name} "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}")
        set_tests_properties(replay_${name} PROPERTIES TIMEOUT 60)
    endif()
endfunction()
