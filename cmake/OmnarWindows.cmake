# SPDX-License-Identifier: MIT

# Adds version information and an ordinal for each symbol to the DLL.

enable_language(RC)
configure_file(cmake/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
target_sources(OmnarRaster PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
if(MINGW)
    target_sources(OmnarRaster PRIVATE cmake/exports.def)  # other compilers mangle the names of C++ functions differently
endif()
