# SPDX-License-Identifier: Apache-2.0
# The floors of platform/, with what each may include of the library besides itself. Included by CMakeLists.txt it makes
# the build check this; run as a script, it is the check: cmake -DTOP=... -P Floors.cmake
set(floors osl kit edit net xml fml snk trk)
set(below_osl)
set(below_kit osl)
foreach(floor edit net xml fml snk)
    set(below_${floor} osl kit)
endforeach()
set(below_trk osl kit fml)
set(for_all platform/kit/KIT_Export.h)   # the mark of what is exported

if(NOT CMAKE_SCRIPT_MODE_FILE)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/platform/*.h ${PROJECT_SOURCE_DIR}/platform/*.cpp)
    set(stamp ${PROJECT_BINARY_DIR}/floors.stamp)
    add_custom_command(OUTPUT ${stamp} DEPENDS ${sources} ${CMAKE_CURRENT_LIST_FILE} VERBATIM
        COMMAND ${CMAKE_COMMAND} -DTOP=${PROJECT_SOURCE_DIR} -P ${CMAKE_CURRENT_LIST_FILE}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp})
    add_custom_target(orvlang_floors DEPENDS ${stamp})
    return()
endif()

cmake_minimum_required(VERSION 3.25)

foreach(floor IN LISTS floors)
    list(JOIN below_${floor} | below)
    file(GLOB_RECURSE sources ${TOP}/platform/${floor}/*.h ${TOP}/platform/${floor}/*.cpp)
    foreach(source IN LISTS sources)
        file(STRINGS ${source} includes REGEX "^#include <orvlang/")
        foreach(include IN LISTS includes)
            string(REGEX REPLACE "^#include <orvlang/([^>]*)>.*" "\\1" header "${include}")
            if(NOT header STREQUAL for_all AND NOT header MATCHES "^platform/(${floor}|${below})/")
                message(SEND_ERROR "${source} may not include ${header}")
            endif()
        endforeach()
    endforeach()
endforeach()
