# SPDX-License-Identifier: MIT

# The library takes part in what keeps attackers out: it may be loaded anywhere, and no memory is both written and run.
# Given: LIBRARY, OBJDUMP.

execute_process(COMMAND ${OBJDUMP} --private-headers ${LIBRARY} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
if(LIBRARY MATCHES "\\.dll$")
    foreach(flag DYNAMIC_BASE HIGH_ENTROPY_VA NX_COMPAT)
        if(NOT headers MATCHES "\t${flag}\n")
            message(FATAL_ERROR "${LIBRARY} is not marked ${flag}")
        endif()
    endforeach()
    if(headers MATCHES "\nEntry 5 0+ 0+ Base Relocation")
        message(FATAL_ERROR "${LIBRARY} has no relocations, so it cannot be loaded anywhere")
    endif()
elseif(NOT headers MATCHES " STACK [^\n]*\n[^\n]* flags rw-\n" OR headers MATCHES " flags rwx\n")
    message(FATAL_ERROR "${LIBRARY} wants memory that is written and run")
endif()
