# SPDX-License-Identifier: MIT

# The DLL has no aligned moves of wide vectors: 64-bit Windows aligns the stack to 16 bytes, but GCC assumes more.
# Given: LIBRARY, OBJDUMP.

execute_process(COMMAND ${OBJDUMP} --disassemble --no-show-raw-insn ${LIBRARY} OUTPUT_VARIABLE code
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "[^\n]*vmov(aps|apd|dqa[0-9]*) [^\n]*%[yz]mm[^\n]*" aligned "${code}")
if(aligned)
    message(FATAL_ERROR "aligned move of a wide vector: ${aligned}")
endif()
if(NOT code MATCHES "vmov(ups|upd|dqu[0-9]*) [^\n]*%[yz]mm")
    message(FATAL_ERROR "the DLL has no moves of wide vectors, so nothing was checked")
endif()
