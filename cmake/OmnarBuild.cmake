# SPDX-License-Identifier: MIT

# How every target of this project is compiled and linked.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

if(WIN32 AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)  # Windows looks for a DLL in the program's folder
endif()

# Only the headers of Highway are used. Its CMake and pkg-config packages would link a library that is not needed.
find_path(OMNAR_HWY_INCLUDE_DIR hwy/highway.h DOC "Folder that holds hwy/highway.h" REQUIRED)
if(CMAKE_CROSSCOMPILING)
    # The folder also holds the host system's headers, which must not precede those of the target system.
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/highway)
    file(CREATE_LINK ${OMNAR_HWY_INCLUDE_DIR}/hwy ${PROJECT_BINARY_DIR}/highway/hwy SYMBOLIC)
    set(OMNAR_HWY_INCLUDE_DIR ${PROJECT_BINARY_DIR}/highway)
endif()

# 64-bit Windows aligns the stack to 16 bytes, but GCC moves wide vectors on it with aligned moves. The assembler can
# replace those by unaligned moves.
if(MINGW)
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag(-Wa,-muse-unaligned-vector-move OMNAR_HAS_UNALIGNED_VECTOR_MOVE)
endif()

set(_omnar_levels scalar sse4 avx2 avx512)
if(OMNAR_MAX_LEVEL STREQUAL neon)
    set(_omnar_max_level 1)
else()
    list(FIND _omnar_levels "${OMNAR_MAX_LEVEL}" _omnar_max_level)
endif()
if(_omnar_max_level LESS 0)
    message(FATAL_ERROR "OMNAR_MAX_LEVEL is '${OMNAR_MAX_LEVEL}'; it must be scalar, sse4, neon, avx2 or avx512")
endif()

# All warnings of Clang except those about deliberate choices.
if(OMNAR_EVERY_WARNING AND CMAKE_CXX_COMPILER_ID MATCHES Clang)
    set(OMNAR_EVERY_WARNING_OPTIONS -Weverything
        -Wno-c++98-compat -Wno-c++98-compat-pedantic -Wno-c++20-compat      # the language is C++20, the header's C++17
        -Wno-pre-c++14-compat -Wno-pre-c++17-compat -Wno-pre-c++17-compat-pedantic -Wno-pre-c++20-compat
        -Wno-reserved-identifier                             # the public names _EDropKind, _EMotionCopyMode and so on
        -Wno-weak-vtables                                    # public interfaces are all pure virtual
        -Wno-padded                                          # layouts are fixed by the interface or have no effect
        -Wno-global-constructors -Wno-exit-time-destructors  # the vector level is chosen while the module loads
        -Wno-float-equal                                     # doubles are compared exactly
        -Wno-unsafe-buffer-usage                             # buffers are pointers with a size
        -Wno-unknown-warning-option)                         # some of these are newer than the compiler
endif()

# Optimises `target` in every configuration except Debug, also inside a project without a build type or with -O0, where
# vector code would run at a hundredth of its speed. The last optimising option of a configuration's flags is kept; it is
# repeated, since inherited options follow those flags.
function(omnar_optimize target)
    if(MSVC)
        set(option_regex " [-/]O[12dx]")
        set(best /O2)
    else()
        set(option_regex " -O[0-9a-z]*")
        set(best -O3)
    endif()
    foreach(config IN LISTS CMAKE_CONFIGURATION_TYPES CMAKE_BUILD_TYPE ITEMS "")  # "": no build type
        string(TOUPPER "${config}" suffix)
        string(REGEX MATCHALL "${option_regex}" options " ${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${suffix}}")
        list(POP_BACK options option)
        if(NOT option MATCHES "O[123sxz]$")
            set(option ${best})
        endif()
        string(STRIP ${option} option)
        target_compile_options(${target} PRIVATE $<$<AND:$<CONFIG:${config}>,$<NOT:$<CONFIG:Debug>>>:${option}>)
    endforeach()
    target_compile_definitions(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:NDEBUG>)
endfunction()

# Sets the language, warnings and definitions that all targets of the project share.
function(omnar_configure target)
    omnar_optimize(${target})
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
    target_compile_definitions(${target} PRIVATE OMNAR_MAX_LEVEL=${_omnar_max_level}
        $<$<BOOL:${OMNAR_CHECKED}>:OMNAR_CHECKED=1>)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /permissive- /fp:precise $<$<BOOL:${OMNAR_WERROR}>:/WX>)
    else()
        # Equal bits everywhere: no fused multiply-add, and no -march, which would enable one. Buffers of different pixel
        # types may overlap, so a store of one type can change a load of another.
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
            -ffp-contract=off -fno-strict-aliasing $<$<BOOL:${OMNAR_WERROR}>:-Werror>
            $<$<BOOL:${OMNAR_HAS_UNALIGNED_VECTOR_MOVE}>:-Wa,-muse-unaligned-vector-move>)
        if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
            # False warnings about std::string (GCC bug 105651).
            target_compile_options(${target} PRIVATE -Wno-restrict)
        endif()
    endif()
    if(OMNAR_SANITIZE)
        # Without constant folding, as in instrumented code, GCC warns about conversions that never happen.
        target_compile_options(${target} PRIVATE -fsanitize=${OMNAR_SANITIZE} -fno-sanitize-recover=all
            -fno-omit-frame-pointer -Wno-sign-conversion)
        target_link_options(${target} PUBLIC -fsanitize=${OMNAR_SANITIZE})
    endif()
endfunction()

# Links a shared library that needs only the language's and the system's libraries and has no undefined symbols.
function(omnar_link_options target)
    if(OMNAR_SANITIZE)
        target_link_options(${target} PUBLIC -fsanitize=${OMNAR_SANITIZE})
    elseif(MINGW)
        target_link_options(${target} PRIVATE -static)
    elseif(UNIX AND NOT APPLE)
        target_link_options(${target} PRIVATE -Wl,--no-undefined -Wl,--as-needed)
    endif()
    if(UNIX AND NOT APPLE)
        set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
        target_link_options(${target} PRIVATE -Wl,--version-script=${exports})
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    elseif(WIN32)
        set_target_properties(${target} PROPERTIES PREFIX "")  # OmnarRaster.dll with every compiler
        target_link_libraries(${target} PRIVATE gdiplus gdi32 oleaut32)
    endif()
endfunction()
