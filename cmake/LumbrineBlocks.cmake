# lumbrine_blocks_test(NAME FAKES ... SOURCES ... FUNCTIONS ... DEPENDS ...): a test, on a system other than macOS, of
# SOURCES that call macOS's C functions. FAKES lists the headers that declare those functions, each as
# FRAMEWORK/HEADER.h=PROJECT_HEADER; FUNCTIONS are the sources that define them. Always compiled with Clang, even in a
# GCC build, because the sources contain blocks (-fblocks), which GCC does not have. SOURCES are compiled as one file
# and FUNCTIONS as another, which halves the compile time.
function(lumbrine_blocks_test name)
    cmake_parse_arguments(ARG "" "" "FAKES;SOURCES;FUNCTIONS;DEPENDS" ${ARGN})
    if(NOT LUMBRINE_TESTS)
        return()
    endif()
    find_program(BLOCKS_COMPILER clang++-19 REQUIRED)
    find_library(BLOCKS_RUNTIME BlocksRuntime REQUIRED)

    set(fakes "${CMAKE_CURRENT_BINARY_DIR}/fakes")
    foreach(fake ${ARG_FAKES})
        string(REPLACE "=" ";" parts "${fake}")
        list(GET parts 0 header)
        list(GET parts 1 declarations)
        file(CONFIGURE OUTPUT "${fakes}/${header}" CONTENT "#include \"${declarations}\"\n")
    endforeach()

    set(options -std=c++23 -fblocks -pthread -O1 -g1 -Wall -Wextra -Wpedantic -Wconversion -Wthread-safety
        -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -I${CMAKE_SOURCE_DIR} -I${fakes}
        -include gtest/gtest.h -include memory -include optional -include string -include vector)
    if(LUMBRINE_WERROR)
        list(APPEND options -Werror)
    endif()
    if(LUMBRINE_SANITIZE)
        list(APPEND options -fsanitize=${LUMBRINE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    endif()
    if(LUMBRINE_COVERAGE)
        list(APPEND options -fprofile-instr-generate -fcoverage-mapping)
    endif()
    set(objects "")
    file(RELATIVE_PATH folder "${CMAKE_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    foreach(piece SOURCES FUNCTIONS)
        set(includes "")
        foreach(source ${ARG_${piece}})
            string(APPEND includes "#include \"${folder}/${source}\"\n")
        endforeach()
        set(stem "${CMAKE_CURRENT_BINARY_DIR}/${name}_${piece}")
        file(CONFIGURE OUTPUT "${stem}.cpp" CONTENT "${includes}" @ONLY)
        add_custom_command(OUTPUT "${stem}.o"
            COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${BLOCKS_COMPILER} ${options} -MD -MF "${stem}.d"
                -c "${stem}.cpp" -o "${stem}.o"
            DEPENDS "${stem}.cpp" ${ARG_${piece}} DEPFILE "${stem}.d" VERBATIM)
        list(APPEND objects "${stem}.o")
    endforeach()
    add_executable(${name} ${objects})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest_main ${BLOCKS_RUNTIME})
    add_dependencies(lumbrine_tests ${name})
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
