# SPDX-License-Identifier: MIT

# Provides GTest::gtest and GTest::gtest_main: the installed ones or, when cross-compiling, built from the sources in the
# Debian package googletest.

if(CMAKE_CROSSCOMPILING)
    find_path(OMNAR_GOOGLETEST_SOURCE_DIR googletest/CMakeLists.txt PATHS /usr/src/googletest
        DOC "Folder of the GoogleTest sources" NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    set(BUILD_GMOCK OFF CACHE BOOL "Build GoogleMock" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "Install GoogleTest" FORCE)
    add_subdirectory(${OMNAR_GOOGLETEST_SOURCE_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
    find_package(GTest REQUIRED)
endif()
