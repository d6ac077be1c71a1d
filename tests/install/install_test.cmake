# SPDX-License-Identifier: Apache-2.0
# Installs to a staging folder, moves that (so that nothing can refer to where it was), and builds the example against
# it twice: by the CMake package and by pkg-config. Both must write what embed.out says. BUILD, STAGE, EXAMPLE, EXPECTED,
# GENERATOR, COMPILER, NM, SANITIZE and PKG_CONFIG come from the caller.
cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        list(JOIN ARGV " " command)
        string(REGEX REPLACE "-- Installing: [^\n]*\n" "" output "${output}")
        message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_example program)
    run(${program})
    file(READ ${EXPECTED} expected)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} wrote:\n${output}\ninstead of:\n${expected}")
    endif()
endfunction()

set(flags)
if(SANITIZE)
    set(flags -fsanitize=${SANITIZE})
endif()

file(REMOVE_RECURSE ${STAGE})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${STAGE}/first)
file(RENAME ${STAGE}/first ${STAGE}/system)

run(${STAGE}/system/bin/orvlang -c "echo installed")
if(NOT output STREQUAL "installed\n")
    message(FATAL_ERROR "the installed program wrote: ${output}")
endif()

run(${STAGE}/system/bin/orvlang -c "help upwd")
if(NOT output MATCHES "^upwd\n    upwd\n")
    message(FATAL_ERROR "the installed help is: ${output}")
endif()

file(GLOB pages ${STAGE}/system/share/doc/orvlang/*.md ${STAGE}/system/share/doc/orvlang/docs/*.md)
foreach(page IN LISTS pages)
    file(READ ${page} text)
    string(REPLACE "](" "@LINK " text "${text}")
    string(REGEX MATCHALL "@LINK [^) #]+\\)" links "${text}")
    cmake_path(GET page PARENT_PATH folder)
    foreach(link IN LISTS links)
        string(REGEX REPLACE "^@LINK (.*)\\)$" "\\1" link "${link}")
        if(NOT link MATCHES "^https?:" AND NOT EXISTS ${folder}/${link})
            list(APPEND dangling ${page}:${link})
        endif()
    endforeach()
endforeach()
if(NOT pages OR dangling)
    message(FATAL_ERROR "links of installed pages that lead nowhere: ${dangling}")
endif()

# " u ": what the standard library must have once in a process.
run(${NM} --dynamic --defined-only --demangle ${STAGE}/system/lib/liborvlang.so)
string(REGEX REPLACE "[^\n]*( u |CMD|KIT|VIO|OSL|TRK|FML|fml_|SNK|Orvane|getUnixCwd)[^\n]*\n" "" foreign "${output}")
if(foreign)
    message(FATAL_ERROR "the library exports what is none of its own:\n${foreign}")
endif()

# Python and XML are found from where the library lies; without their components the library works, and says what is
# missing.
file(WRITE ${STAGE}/ask.sh
    "printf '<?xml version=\"1.0\"?><orvlang>echo x</orvlang>' | nc -N 127.0.0.1 $1 | tr -d '\\0'")
set(xml "openport -a -p -r 'sh ${STAGE}/ask.sh'")
run(${STAGE}/system/bin/orvlang -c "${xml}")
if(NOT output MATCHES "^x\nOpened [0-9]+\n$")
    message(FATAL_ERROR "XML, installed, wrote: ${output}")
endif()
set(python "python -c 'print(6 * 7)'\necho next")
run(${STAGE}/system/bin/orvlang -c "${python}")
if(NOT output STREQUAL "42\nnext\n")
    message(FATAL_ERROR "Python, installed, wrote: ${output}")
endif()
file(RENAME ${STAGE}/system/lib/orvlang ${STAGE}/component)
run(${STAGE}/system/bin/orvlang -c "${xml}")
if(NOT output MATCHES "<parse_error>XML is not available: liborvlang_xml.so is not installed in /[^\n]*/lib/orvlang</parse_error>")
    message(FATAL_ERROR "without the component of XML the port wrote: ${output}")
endif()
run(${STAGE}/system/bin/orvlang -c "${python}")
file(RENAME ${STAGE}/component ${STAGE}/system/lib/orvlang)
if(NOT output MATCHES "^(next\n)?Python is not available: liborvlang_python.so is not installed in /.*/lib/orvlang\n")
    message(FATAL_ERROR "without the component of Python the program wrote: ${output}")
endif()

run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${EXAMPLE} -B ${STAGE}/build -DCMAKE_PREFIX_PATH=${STAGE}/system
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${STAGE}/build)
expect_example(${STAGE}/build/embed)

if(PKG_CONFIG)
    set(ENV{PKG_CONFIG_PATH} ${STAGE}/system/lib/pkgconfig)
    run(${PKG_CONFIG} --cflags --libs orvlang)
    separate_arguments(found UNIX_COMMAND "${output}")
    run(${COMPILER} -std=c++20 ${flags} ${EXAMPLE}/embed.cpp -o ${STAGE}/embed ${found} -Wl,-rpath,${STAGE}/system/lib)
    expect_example(${STAGE}/embed)
endif()
