# SPDX-License-Identifier: MIT

# Every source names the licence in its first line or in the line after `#!`.
# Given: SOURCE (the project's folder).

file(GLOB_RECURSE sources RELATIVE ${SOURCE} ${SOURCE}/*)
list(FILTER sources EXCLUDE REGEX "^(build|out|\\.git)(/|$)")
# Files without comments, files that are no sources, and configuration files of tools.
list(FILTER sources EXCLUDE REGEX "(\\.(json|md|png)|(^|/)LICENSE|(^|/)\\.[a-z-]+)$")

set(unlicensed)
foreach(source IN LISTS sources)
    file(READ ${SOURCE}/${source} start LIMIT 200)
    if(NOT start MATCHES "^(#![^\n]*\n)?(//|/\\*|#|;|<!--) SPDX-License-Identifier: MIT( \\*/| -->)?\n")
        list(APPEND unlicensed ${source})
    endif()
endforeach()
list(LENGTH sources count)
if(unlicensed OR NOT ";${sources};" MATCHES ";include/OmnarRaster.h;")
    message(FATAL_ERROR "of ${count} sources these do not name the licence: ${unlicensed}")
endif()
