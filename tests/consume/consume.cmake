# SPDX-License-Identifier: MIT

# Uses the library the ways that a host does, and runs the quick start with each.
# Given: BUILD (the library's build folder), WORK (a folder to work in), GENERATOR, COMPILER, TOOLCHAIN, EMULATOR and
# SUFFIX (those of its programs), PKG_CONFIG (empty if there is none).

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(run_project name)
    run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/${name} -B ${WORK}/${name} -G ${GENERATOR}
        -D CMAKE_BUILD_TYPE=Release -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK}/${name})
    run(${EMULATOR} ${WORK}/${name}/quick_start${SUFFIX})
endfunction()

# Moved after it was installed: nothing in the tree may remember where it was.
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
set(prefix ${WORK}/moved)
file(RENAME ${WORK}/installed ${prefix})
file(GLOB_RECURSE licence ${prefix}/LICENSE)
if(NOT licence)
    message(FATAL_ERROR "the licence is not installed")
endif()

run_project(find_package -D OmnarRaster_ROOT=${prefix} -D CMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH)
run_project(subdirectory -D OMNAR_MAX_LEVEL=scalar)  # one level, since it is not the levels that are looked at

if(PKG_CONFIG)
    file(GLOB_RECURSE description ${prefix}/omnarraster.pc)
    cmake_path(GET description PARENT_PATH folder)
    cmake_path(GET folder PARENT_PATH libraries)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} ${PKG_CONFIG} --cflags --libs omnarraster
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags)
    run(${COMPILER} -std=c++17 ${CMAKE_CURRENT_LIST_DIR}/quick_start.cpp ${flags} -Wl,-rpath,${libraries}
        -o ${WORK}/quick_start)
    run(${EMULATOR} ${WORK}/quick_start)
endif()
