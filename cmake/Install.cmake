# SPDX-License-Identifier: Apache-2.0
# What lands on a system: the library, the public headers, the program, the documents, and what a build that uses the
# library needs to find it (a CMake package and a pkg-config file).
include(CMakePackageConfigHelpers)

install(TARGETS orvlang EXPORT orvlangTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS orvlang_console RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(header IN LISTS ORVLANG_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH place)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvlang/${place})
endforeach()
install(FILES ${ORVLANG_INCLUDE_TREE}/orvlang/version.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvlang)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orvlang)
configure_package_config_file(cmake/orvlangConfig.cmake.in ${PROJECT_BINARY_DIR}/orvlangConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orvlangConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT orvlangTargets NAMESPACE orvlang:: DESTINATION ${package_folder})
install(FILES ${PROJECT_BINARY_DIR}/orvlangConfig.cmake ${PROJECT_BINARY_DIR}/orvlangConfigVersion.cmake
    DESTINATION ${package_folder})

configure_file(cmake/orvlang.pc.in ${PROJECT_BINARY_DIR}/orvlang.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvlang.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The pages lie as in the tree, so that their links hold. What they link to in the sources is not installed: of such a link
# the text alone is left.
install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} REGEX "/examples/CMakeLists.txt$" EXCLUDE)
install(CODE "cmake_path(APPEND CMAKE_INSTALL_PREFIX \"${CMAKE_INSTALL_DOCDIR}\" OUTPUT_VARIABLE folder)")
install(CODE [=[
    file(GLOB pages $ENV{DESTDIR}${folder}/*.md $ENV{DESTDIR}${folder}/docs/*.md)
    foreach(page IN LISTS pages)
        file(READ ${page} text)
        string(REGEX REPLACE
            "\\[([^]\n]*)\\]\\((\\.\\./)?(CONTRIBUTING\\.md|(bridge|builtins|console|engine|flow|platform|port|symbols|tests)(/[^) ]*)?)\\)"
            "\\1" text "${text}")
        file(WRITE ${page} "${text}")
    endforeach()
]=])
if(EXISTS ${PROJECT_SOURCE_DIR}/help)
    install(DIRECTORY help DESTINATION ${CMAKE_INSTALL_DATADIR}/orvlang FILES_MATCHING PATTERN "*.help")
    # The build tree's copy: a link, so that an edited help text shows at once.
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/share/orvlang)
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/help ${PROJECT_BINARY_DIR}/share/orvlang/help SYMBOLIC)
endif()
