# SPDX-License-Identifier: MIT

# The program that the README shows is the one that the tests build and run, without its licence line.
# Given: README, PROGRAM.

file(READ ${README} readme)
file(READ ${PROGRAM} program)
string(REGEX REPLACE "^// SPDX-[^\n]*\n\n" "" program "${program}")
string(FIND "${readme}" "```cpp\n${program}```" place)
if(place EQUAL -1)
    message(FATAL_ERROR "no block of ${README} is the text of ${PROGRAM}")
endif()
