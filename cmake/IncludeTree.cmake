# SPDX-License-Identifier: Apache-2.0
# A header is included as <orvlang/engine/CMD_Manager.h> in the tree just as when it is installed. This makes the two
# folders that such an include is looked up in:
# - ORVLANG_INCLUDE_TREE, for the library's own sources: links to the source folders;
# - ORVLANG_PUBLIC_INCLUDE_TREE, for everybody else: links to the public headers alone. So a public header that includes
#   a private one, or a host that needs one, does not compile.
# A header is public when it exports something, that is, when it mentions CMD_API, or when it stands in the list below.
# ORVLANG_PUBLIC_HEADERS lists them all, relative to the top.
set(ORVLANG_INCLUDE_TREE ${PROJECT_BINARY_DIR}/include)
set(ORVLANG_PUBLIC_INCLUDE_TREE ${PROJECT_BINARY_DIR}/public-include)
# What public headers need and what has nothing to export: templates, plain types.
set(public_without_exports
    engine/CMD_Line.h
    flow/CMD_IfState.h
    platform/kit/KIT_PtrArray.h
)

file(REMOVE_RECURSE ${ORVLANG_PUBLIC_INCLUDE_TREE})
file(MAKE_DIRECTORY ${ORVLANG_INCLUDE_TREE}/orvlang)

set(ORVLANG_PUBLIC_HEADERS)
foreach(folder engine symbols flow builtins bridge port platform)
    if(NOT IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${folder})
        continue()
    endif()
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${ORVLANG_INCLUDE_TREE}/orvlang/${folder} SYMBOLIC)
    file(GLOB_RECURSE headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    foreach(header IN LISTS headers)
        set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
        file(STRINGS ${PROJECT_SOURCE_DIR}/${header} mentions REGEX "CMD_API" LIMIT_COUNT 1)
        if(NOT mentions AND NOT header IN_LIST public_without_exports)
            continue()
        endif()
        list(APPEND ORVLANG_PUBLIC_HEADERS ${header})
        cmake_path(GET header PARENT_PATH place)
        file(MAKE_DIRECTORY ${ORVLANG_PUBLIC_INCLUDE_TREE}/orvlang/${place})
        file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${header} ${ORVLANG_PUBLIC_INCLUDE_TREE}/orvlang/${header} SYMBOLIC)
    endforeach()
endforeach()

configure_file(${PROJECT_SOURCE_DIR}/cmake/version.h.in ${ORVLANG_INCLUDE_TREE}/orvlang/version.h @ONLY)
file(MAKE_DIRECTORY ${ORVLANG_PUBLIC_INCLUDE_TREE}/orvlang)
file(CREATE_LINK ${ORVLANG_INCLUDE_TREE}/orvlang/version.h ${ORVLANG_PUBLIC_INCLUDE_TREE}/orvlang/version.h SYMBOLIC)
