# SPDX-License-Identifier: Apache-2.0
# PROGRAM writes what EXPECTED holds, and nothing else.
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
file(READ ${EXPECTED} expected)
if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} ended with ${status} and wrote:\n${output}\ninstead of:\n${expected}")
endif()
