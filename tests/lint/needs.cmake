# SPDX-License-Identifier: MIT

# The library needs only the language's and the system's libraries and has the right soname.
# Given: LIBRARY, OBJDUMP, SONAME (empty on systems without sonames).

execute_process(COMMAND ${OBJDUMP} --private-headers ${LIBRARY} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "(NEEDED|DLL Name:) +[^\n]+" needed "${headers}")
list(TRANSFORM needed REPLACE ".* " "")

set(foreign ${needed})
list(FILTER foreign EXCLUDE REGEX "^(libstdc\\+\\+|libgcc_s|libm|libc|ld-linux[-a-z0-9_]*)\\.so\\.[0-9]+$")
list(FILTER foreign EXCLUDE REGEX
    "^(KERNEL32|USER32|GDI32|gdiplus|OLEAUT32|msvcrt|ucrtbase|api-ms-win-crt-.*)\\.(dll|DLL)$")
if(foreign OR NOT needed)
    message(FATAL_ERROR "needs ${needed}, of which these are foreign: ${foreign}")
endif()
if(SONAME AND NOT headers MATCHES "SONAME +${SONAME}\n")
    message(FATAL_ERROR "its soname is not ${SONAME}")
endif()
