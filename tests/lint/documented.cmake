# SPDX-License-Identifier: MIT

# Every unindented declaration of the header has a documentation comment above it or at the end of its line.
# Given: HEADER.

file(READ ${HEADER} header)
string(REGEX REPLACE "[][;]" "" header "${header}")  # CMake lists treat them specially
set(declaration "(template <[^\n]*>[ \n])?((extern )?OMNAR_API|class|struct|enum|using|constexpr) [^\n]*")
string(REGEX MATCHALL "[^\n]*\n${declaration}" declarations "${header}")

set(undocumented ${declarations})
list(FILTER undocumented EXCLUDE REGEX "^///|///<")
list(LENGTH declarations count)
if(undocumented OR count EQUAL 0)
    message(FATAL_ERROR "${count} declarations, of which these lack documentation: ${undocumented}")
endif()
