# SPDX-License-Identifier: Apache-2.0
# PROGRAM reads session.cmd of EXAMPLE, in FOLDER with a copy of the example's files, and writes what undo.out holds.
file(REMOVE_RECURSE ${FOLDER})
file(COPY ${EXAMPLE}/ DESTINATION ${FOLDER})
execute_process(COMMAND ${PROGRAM} INPUT_FILE session.cmd WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
file(READ ${EXAMPLE}/undo.out expected)
if(NOT status EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} ended with ${status} and wrote:\n${output}\ninstead of:\n${expected}")
endif()
