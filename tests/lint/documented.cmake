# SPDX-License-Identifier: MIT

# Every declaration at the left margin of the header has a documentation comment above it, or behind it in its line.
# Given: HEADER.

file(READ ${HEADER} header)
string(REGEX REPLACE "[][;]" "" header "${header}")  # they have a meaning in the lists below
set(declaration "(template <[^\n]*>[ \n])?((extern )?OMNAR_API|class|struct|enum|using|constexpr) [^\n]*")
string(REGEX MATCHALL "[^\n]*\n${declaration}" declarations "${header}")

set(bare ${declarations})
list(FILTER bare EXCLUDE REGEX "^///|///<")
list(LENGTH declarations count)
if(bare OR count EQUAL 0)
    message(FATAL_ERROR "${count} declarations, of which these lack documentation: ${bare}")
endif()
