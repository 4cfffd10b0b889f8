# SPDX-License-Identifier: MIT

# Brings GTest::gtest and GTest::gtest_main: the installed ones, or, for another system than this one, built from the
# sources that the package googletest puts down.

if(CMAKE_CROSSCOMPILING)
    find_path(OMNAR_GOOGLETEST_SOURCE_DIR googletest/CMakeLists.txt PATHS /usr/src/googletest
        DOC "Folder of the GoogleTest sources" NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    set(BUILD_GMOCK OFF CACHE BOOL "Build GoogleMock" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "Install GoogleTest" FORCE)
    add_subdirectory(${OMNAR_GOOGLETEST_SOURCE_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
    find_package(GTest REQUIRED)
endif()
