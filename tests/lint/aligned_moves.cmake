# SPDX-License-Identifier: MIT

# No move in the DLL wants memory aligned to a wide vector: 64-bit Windows aligns the stack to 16 bytes only, and GCC keeps
# wide vectors there as if it were more.
# Given: LIBRARY, OBJDUMP.

execute_process(COMMAND ${OBJDUMP} --disassemble --no-show-raw-insn ${LIBRARY} OUTPUT_VARIABLE code
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "[^\n]*vmov(aps|apd|dqa[0-9]*) [^\n]*%[yz]mm[^\n]*" aligned "${code}")
if(aligned)
    message(FATAL_ERROR "a wide vector is moved as if its memory were aligned: ${aligned}")
endif()
if(NOT code MATCHES "vmov(ups|upd|dqu[0-9]*) [^\n]*%[yz]mm")
    message(FATAL_ERROR "nothing moves a wide vector, so that nothing was looked at")
endif()
