# SPDX-License-Identifier: MIT

# read_dll_exports(VARIABLE OBJDUMP DLL): reads the exports of a DLL as a list of "NAME @ORDINAL".

function(read_dll_exports variable objdump dll)
    execute_process(COMMAND ${objdump} --private-headers ${dll} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "Ordinal Base[ \t]+([0-9]+)" base "${headers}")
    set(base ${CMAKE_MATCH_1})
    string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\][^\n]* [_A-Za-z][_A-Za-z0-9]*" entries "${headers}")
    list(FILTER entries EXCLUDE REGEX " RVA$")

    set(exports)
    foreach(entry IN LISTS entries)
        string(REGEX MATCH "\\[ *([0-9]+)\\].* ([_A-Za-z0-9]+)$" entry "${entry}")
        math(EXPR ordinal "${CMAKE_MATCH_1} + ${base}")
        list(APPEND exports "${CMAKE_MATCH_2} @${ordinal}")
    endforeach()
    set(${variable} "${exports}" PARENT_SCOPE)
endfunction()
