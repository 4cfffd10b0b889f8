# SPDX-License-Identifier: MIT

# What a DLL has and a Linux library has not: version information, and an ordinal for each symbol.

enable_language(RC)
configure_file(cmake/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
target_sources(OmnarRaster PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
if(MINGW)
    target_sources(OmnarRaster PRIVATE cmake/exports.def)  # other compilers have other names for C++ functions
endif()
