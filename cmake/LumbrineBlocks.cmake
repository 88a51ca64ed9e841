# lumbrine_blocks_test(NAME FAKES ... SOURCES ... DEPENDS ...): a test of sources that call the Mac's C functions, on a
# system without them. The functions are declared by the headers in FAKES (FRAMEWORK/HEADER.h=HEADER of the project) and
# defined in SOURCES. Clang compiles it all, whatever compiles the rest: the sources have blocks in them.
function(lumbrine_blocks_test name)
    cmake_parse_arguments(ARG "" "" "FAKES;SOURCES;DEPENDS" ${ARGN})
    if(NOT GTest_FOUND)
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

    set(options -std=c++23 -fblocks -pthread -O1 -g1 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wthread-safety
        -ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -I${CMAKE_SOURCE_DIR} -I${fakes}
        -include gtest/gtest.h -include memory -include optional -include string -include vector)
    if(LUMBRINE_WERROR)
        list(APPEND options -Werror)
    endif()
    if(LUMBRINE_SANITIZE)
        list(APPEND options -fsanitize=${LUMBRINE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    endif()
    set(objects "")
    foreach(source ${ARG_SOURCES})
        string(REPLACE "/" "_" object "${name}_${source}.o")
        set(object "${CMAKE_CURRENT_BINARY_DIR}/${object}")
        add_custom_command(OUTPUT "${object}"
            COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${BLOCKS_COMPILER} ${options} -MD -MF "${object}.d"
                -c "${CMAKE_CURRENT_SOURCE_DIR}/${source}" -o "${object}"
            DEPENDS "${source}" DEPFILE "${object}.d" VERBATIM)
        list(APPEND objects "${object}")
    endforeach()
    add_executable(${name} ${objects})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest_main ${BLOCKS_RUNTIME})
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()
