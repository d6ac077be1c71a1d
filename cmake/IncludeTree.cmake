# SPDX-License-Identifier: Apache-2.0
# A header is included as <orvlang/engine/CMD_Manager.h> in the tree just as when it is installed. This
# makes the folder that such an include is looked up in: links to the source folders and the version header.
set(ORVLANG_INCLUDE_TREE ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${ORVLANG_INCLUDE_TREE}/orvlang)
foreach(folder engine symbols flow builtins bridge port platform)
    if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${folder})
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${ORVLANG_INCLUDE_TREE}/orvlang/${folder} SYMBOLIC)
    endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/version.h.in ${ORVLANG_INCLUDE_TREE}/orvlang/version.h @ONLY)
