# SPDX-License-Identifier: MIT

# Every function runs on a thread with 64 KiB of stack: no function of the library has a stack frame above LIMIT bytes.
# The compiler's warning is not enough: it omits the vector levels, which a system header includes
# (hwy/foreach_target.h).
# Given: OBJECTS (the folder of the library's object files, each with a .su file of -fstack-usage beside it), LIMIT.

file(GLOB_RECURSE objects ${OBJECTS}/*.o ${OBJECTS}/*.obj)
if(NOT objects)
    message(FATAL_ERROR "${OBJECTS} holds no object files")
endif()
set(largest 0)
foreach(object IN LISTS objects)
    string(REGEX REPLACE "[.]o(bj)?$" ".su" usage ${object})
    if(NOT EXISTS ${usage})
        message(FATAL_ERROR "${usage} is missing")
    endif()
    file(STRINGS ${usage} functions)
    foreach(function IN LISTS functions)
        if(NOT function MATCHES "^(.*)\t([0-9]+)\t")
            continue()  # part of a function name that holds a list separator
        endif()
        if(CMAKE_MATCH_2 GREATER LIMIT)
            message(SEND_ERROR "${CMAKE_MATCH_2} bytes, more than ${LIMIT}: ${CMAKE_MATCH_1}")
        endif()
        if(CMAKE_MATCH_2 GREATER largest)
            set(largest ${CMAKE_MATCH_2})
        endif()
    endforeach()
endforeach()
if(largest EQUAL 0)
    message(FATAL_ERROR "no function has a frame")
endif()
message("the largest stack frame has ${largest} bytes")
