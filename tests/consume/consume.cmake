# SPDX-License-Identifier: MIT

# Builds and runs the quick start in each way that a host can use the library.
# Given: BUILD (the library's build folder), WORK (a folder to work in), GENERATOR, COMPILER, TOOLCHAIN, EMULATOR and
# SUFFIX (of its programs), PKG_CONFIG (empty if there is none).

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# configure NAME FOLDER [OPTION...]: configures the host project NAME in WORK/FOLDER.
function(configure name folder)
    run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/${name} -B ${WORK}/${folder}
        -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} ${ARGN})
endfunction()

function(run_project name)
    configure(${name} ${name} -G ${GENERATOR} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK}/${name})
    foreach(program quick_start pattern)
        run(${EMULATOR} ${WORK}/${name}/${program}${SUFFIX})
    endforeach()
endfunction()

# The installed tree is moved, since it must not hold absolute paths.
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
set(prefix ${WORK}/moved)
file(RENAME ${WORK}/installed ${prefix})
file(GLOB_RECURSE licence ${prefix}/LICENSE)
if(NOT licence)
    message(FATAL_ERROR "the licence is not installed")
endif()

run_project(find_package -D CMAKE_BUILD_TYPE=Release -D OmnarRaster_ROOT=${prefix} -D CMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH)
run_project(subdirectory -D OMNAR_MAX_LEVEL=scalar)  # one vector level compiles fastest

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

# The library is optimised in every host configuration except Debug.

# expect_optimization FOLDER CONFIG OPTION: expects OPTION as the last optimisation option of every source of the library,
# and NDEBUG unless OPTION is none.
function(expect_optimization folder config option)
    file(READ ${WORK}/${folder}/compile_commands.json commands)
    string(REGEX MATCHALL "\"command\": [^\n]*omnar_objects.dir/${config}[^\n]*" commands "${commands}")
    list(LENGTH commands count)
    if(count LESS 20)
        message(FATAL_ERROR "only ${count} sources of the library are compiled")
    endif()
    set(expected none)
    if(NOT option STREQUAL "none")
        set(expected "${option} NDEBUG")
    endif()
    foreach(command IN LISTS commands)
        string(REGEX MATCHALL " [-/]O[0-9a-z]*" options "${command}")
        set(found none)
        if(options)
            list(GET options -1 found)
            string(STRIP ${found} found)
        endif()
        if(command MATCHES "[-/]DNDEBUG")
            string(APPEND found " NDEBUG")
        endif()
        if(NOT found STREQUAL expected)
            message(FATAL_ERROR "compiled with ${found} instead of ${expected}: ${command}")
        endif()
    endforeach()
endfunction()

# expect_option OPTION [CMAKE_OPTION...]: expects OPTION in a host that is configured with the CMake options.
function(expect_option option)
    configure(subdirectory flags -G ${GENERATOR} -D OMNAR_MAX_LEVEL=scalar -D CMAKE_EXPORT_COMPILE_COMMANDS=ON
        -D CMAKE_BUILD_TYPE= -D CMAKE_CXX_FLAGS= -D HOST_OPTIONS= ${ARGN} OUTPUT_QUIET)
    expect_optimization(flags "" ${option})
endfunction()

if(GENERATOR MATCHES "Ninja|Makefiles")
    expect_option(-O3)
    expect_option(-O3 -D CMAKE_CXX_FLAGS=-O0)
    expect_option(-O3 -D HOST_OPTIONS=-O0)
    expect_option(-O2 -D CMAKE_CXX_FLAGS=-O2)
    expect_option(-O3 -D CMAKE_BUILD_TYPE=Release -D HOST_OPTIONS=-O0)
    expect_option(-O2 -D CMAKE_BUILD_TYPE=RelWithDebInfo -D CMAKE_CXX_FLAGS=-O0)
    expect_option(-Os -D CMAKE_BUILD_TYPE=MinSizeRel)
    expect_option(-O1 -D CMAKE_BUILD_TYPE=Own -D CMAKE_CXX_FLAGS_OWN=-O1)
    expect_option(-O3 -D CMAKE_BUILD_TYPE=Own -D CMAKE_CXX_FLAGS_OWN=-Og)
    expect_option(none -D CMAKE_BUILD_TYPE=Debug)
    expect_option(none -D CMAKE_BUILD_TYPE=debug)
endif()
if(GENERATOR STREQUAL "Ninja")
    configure(subdirectory multi -G "Ninja Multi-Config" -D OMNAR_MAX_LEVEL=scalar -D CMAKE_EXPORT_COMPILE_COMMANDS=ON
        -D CMAKE_CXX_FLAGS_RELEASE= OUTPUT_QUIET)
    expect_optimization(multi Debug/ none)
    expect_optimization(multi Release/ -O3)
    expect_optimization(multi RelWithDebInfo/ -O2)
endif()
