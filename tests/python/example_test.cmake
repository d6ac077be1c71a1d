# SPDX-License-Identifier: Apache-2.0
# Runs the example script that uses the example commands, in a folder of its own. PROGRAM, EXAMPLES and FOLDER come from
# the caller.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
set(ENV{ORVANE_PATH} ${EXAMPLES})
set(ENV{PYTHONDONTWRITEBYTECODE} 1)   # the tree stays as it is
foreach(words "${EXAMPLES}/python/inventory.cmd" "-c;help table")
    execute_process(COMMAND ${PROGRAM} -P table=s:n -P jsonget=d: ${words}
        WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE part ERROR_VARIABLE errors)
    string(APPEND output "${part}")
    string(APPEND output "${errors}")
endforeach()
string(REPLACE "${EXAMPLES}/" "" output "${output}")
file(READ ${EXAMPLES}/python/inventory.out expected)
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The example wrote:\n${output}\ninstead of:\n${expected}")
endif()
