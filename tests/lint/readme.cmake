# SPDX-License-Identifier: MIT

# The program in the README equals the one that the tests build and run, except for its licence line.
# Given: README, PROGRAM.

file(READ ${README} readme)
file(READ ${PROGRAM} program)
string(REGEX REPLACE "^// SPDX-[^\n]*\n\n" "" program "${program}")
string(FIND "${readme}" "```cpp\n${program}```" position)
if(position EQUAL -1)
    message(FATAL_ERROR "no block of ${README} is the text of ${PROGRAM}")
endif()
