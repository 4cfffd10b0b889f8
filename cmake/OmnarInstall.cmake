# SPDX-License-Identifier: MIT

# Installs the header, the library, a CMake package, a pkg-config file and the licence.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(OMNAR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/OmnarRaster)
set(OMNAR_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS OmnarRaster OmnarPattern EXPORT OmnarRasterTargets FILE_SET HEADERS)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(EXPORT OmnarRasterTargets NAMESPACE OmnarRaster:: DESTINATION ${OMNAR_CMAKE_DIR})

# Before 1.0 a minor version may be incompatible.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OmnarRasterConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file(cmake/OmnarRasterConfig.cmake.in ${PROJECT_BINARY_DIR}/OmnarRasterConfig.cmake
    INSTALL_DESTINATION ${OMNAR_CMAKE_DIR} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
install(FILES ${PROJECT_BINARY_DIR}/OmnarRasterConfig.cmake ${PROJECT_BINARY_DIR}/OmnarRasterConfigVersion.cmake
    DESTINATION ${OMNAR_CMAKE_DIR})

# The prefix relative to the pkg-config file, so that an installed tree can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE OMNAR_PREFIX_FROM_PKGCONFIG)
configure_file(cmake/omnarraster.pc.in ${PROJECT_BINARY_DIR}/omnarraster.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/omnarraster.pc DESTINATION ${OMNAR_PKGCONFIG_DIR})
