# SPDX-License-Identifier: MIT

# The library is relocatable, and none of its memory is both writable and executable.
# Given: LIBRARY, OBJDUMP.

execute_process(COMMAND ${OBJDUMP} --private-headers ${LIBRARY} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
if(LIBRARY MATCHES "\\.dll$")
    foreach(flag DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT)
        if(NOT headers MATCHES "\t${flag}\n")
            message(FATAL_ERROR "${LIBRARY} is not marked ${flag}")
        endif()
    endforeach()
    if(headers MATCHES "\nEntry 5 0+ 0+ Base Relocation")
        message(FATAL_ERROR "${LIBRARY} has no relocations, so it is not relocatable")
    endif()
elseif(NOT headers MATCHES " STACK [^\n]*\n[^\n]* flags rw-\n" OR headers MATCHES " flags rwx\n")
    message(FATAL_ERROR "${LIBRARY} has memory that is both writable and executable")
endif()
