# SPDX-License-Identifier: MIT

# The library exports exactly what the header declares. The compiler supplies the mangled names: each declaration is turned
# into a definition, and the symbols of the resulting object file are compared with those of the library.
# Given: HEADER, LIBRARY, COMPILER, NM, OBJDUMP, WORK (a folder to work in).

# Reads the output of a command as a list of lines.
function(read_lines variable)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" lines "${output}")
    set(${variable} "${lines}" PARENT_SCOPE)
endfunction()

# Functions get bodies, extern variables become definitions, and templates are instantiated.
file(READ ${HEADER} header)
set(declaration "((template <[^;{}]*>[ \n])?OMNAR_API [^;{}]*\\))")
string(REGEX REPLACE "\n${declaration};" "\n\\1 { __builtin_trap(); }" header "${header}")
string(REPLACE "\nextern " "\n" header "${header}")
file(WRITE ${WORK}/declared.cpp "${header}")
execute_process(COMMAND ${COMPILER} -std=c++17 -w -D OMNAR_BUILDING -c ${WORK}/declared.cpp -o ${WORK}/declared.o
    COMMAND_ERROR_IS_FATAL ANY)
read_lines(declared ${NM} --extern-only --defined-only --format=posix ${WORK}/declared.o)
list(TRANSFORM declared REPLACE " .*" "")
list(FILTER declared INCLUDE REGEX "^(_Z[0-9]|g_)")

if(LIBRARY MATCHES "\\.dll$")
    include(${CMAKE_CURRENT_LIST_DIR}/dll_exports.cmake)
    read_dll_exports(exported ${OBJDUMP} ${LIBRARY})
    list(TRANSFORM exported REPLACE " .*" "")
else()
    read_lines(exported ${NM} --dynamic --defined-only --format=posix ${LIBRARY})
    list(TRANSFORM exported REPLACE " .*" "")
endif()

# The symbols of the exception are exported, too. A host needs the last two to catch it.
set(exception ${exported})
list(FILTER exception INCLUDE REGEX "^_Z(N|NK|T[ISV])15COmnarException")
list(APPEND declared _ZTV15COmnarException _ZTI15COmnarException)

set(undeclared ${exported})
list(REMOVE_ITEM undeclared ${declared} ${exception})
set(missing ${declared})
list(REMOVE_ITEM missing ${exported})
list(LENGTH exported count)
if(undeclared OR missing OR count EQUAL 0)
    message(FATAL_ERROR "exported but not declared: ${undeclared}\ndeclared but not exported: ${missing}\n"
        "exported in all: ${count}")
endif()
message(STATUS "${count} exported symbols, all declared")
