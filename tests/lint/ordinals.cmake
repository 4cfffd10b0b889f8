# SPDX-License-Identifier: MIT

# Every symbol of the DLL has its ordinal from the committed list. Ordinals never change, since hosts may link by them.
# With APPEND, appends missing symbols to the list with the next free ordinals instead.
# Given: LIBRARY, LIST (the module definition file), OBJDUMP, APPEND.

include(${CMAKE_CURRENT_LIST_DIR}/dll_exports.cmake)
read_dll_exports(exported ${OBJDUMP} ${LIBRARY})
file(STRINGS ${LIST} listed REGEX "@[0-9]+")
list(TRANSFORM listed STRIP)
list(TRANSFORM listed REPLACE " DATA$" "")

set(last 0)
foreach(entry IN LISTS listed)
    string(REGEX REPLACE ".*@" "" ordinal "${entry}")
    if(NOT ordinal GREATER last)
        message(FATAL_ERROR "${LIST}: the ordinal of ${entry} does not increase, so lines were moved or changed")
    endif()
    set(last ${ordinal})
endforeach()

if(APPEND)
    foreach(entry IN LISTS exported)
        string(REGEX REPLACE " @.*" "" name "${entry}")
        if(NOT ";${listed}" MATCHES ";${name} @")
            math(EXPR last "${last} + 1")
            string(REGEX REPLACE "^(g_|_ZT).*" " DATA" data "${name}")
            if(data STREQUAL name)
                set(data)
            endif()
            file(APPEND ${LIST} "    ${name} @${last}${data}\n")
        endif()
    endforeach()
    return()
endif()

list(SORT exported)
list(SORT listed)
if(NOT exported STREQUAL listed OR NOT exported)
    set(unlisted ${exported})
    list(REMOVE_ITEM unlisted ${listed})
    list(REMOVE_ITEM listed ${exported})
    message(FATAL_ERROR "exported, but not so in ${LIST}: ${unlisted}\nlisted, but not exported so: ${listed}\n"
        "./dev exports appends what is new")
endif()
