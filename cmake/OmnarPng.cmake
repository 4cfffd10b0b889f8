# SPDX-License-Identifier: MIT

# Provides PNG::PNG: the installed library or, when cross-compiling, built from its sources, which are downloaded once and
# cached. Its zlib is that of the Debian package libz-mingw-w64-dev.

if(NOT CMAKE_CROSSCOMPILING)
    find_package(PNG REQUIRED)
    return()
endif()

enable_language(C)
find_package(ZLIB REQUIRED)
set(name libpng-1.6.39)
set(archive $ENV{XDG_CACHE_HOME})
if(NOT archive)
    set(archive $ENV{HOME}/.cache)
endif()
string(APPEND archive /OmnarRaster/${name}.tar.gz)
file(DOWNLOAD http://deb.debian.org/debian/pool/main/libp/libpng1.6/libpng1.6_1.6.39.orig.tar.gz ${archive}
    EXPECTED_HASH SHA256=a00e9d2f2f664186e4202db9299397f851aea71b36a35e74910b8820e380d441)
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${PROJECT_BINARY_DIR})
set(sources ${PROJECT_BINARY_DIR}/${name})
configure_file(${sources}/scripts/pnglibconf.h.prebuilt ${sources}/pnglibconf.h COPYONLY)

file(GLOB parts ${sources}/png*.c)
list(REMOVE_ITEM parts ${sources}/pngtest.c)
add_library(png STATIC EXCLUDE_FROM_ALL ${parts})
add_library(PNG::PNG ALIAS png)
target_include_directories(png SYSTEM PUBLIC ${sources})
target_compile_definitions(png PRIVATE PNG_INTEL_SSE_OPT=0)
target_link_libraries(png PUBLIC ZLIB::ZLIB)
