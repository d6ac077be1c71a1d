# SPDX-License-Identifier: Apache-2.0
# A component: a shared object beside the library, around a foreign one, loaded at its first use.
#     orvlang_component(orvlang_xml LINK PkgConfig::ORVLANG_XML SOURCES XML_Parse.cpp)
function(orvlang_component name)
    cmake_parse_arguments(PARSE_ARGV 1 component "" "" "LINK;SOURCES")
    add_library(${name} MODULE ${component_SOURCES})
    set_target_properties(${name} PROPERTIES PREFIX lib
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/orvlang)
    target_include_directories(${name} PRIVATE ${ORVLANG_INCLUDE_TREE})
    target_link_libraries(${name} PRIVATE ${component_LINK})
    if(NOT ORVLANG_SANITIZE)
        target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orvlang)
endfunction()
