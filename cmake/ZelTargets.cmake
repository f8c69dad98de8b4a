# SPDX-License-Identifier: MIT
# The words in which the folders list what they hold.

# zel_folder([PUBLIC header...] [PRIVATE file...])
# Adds a folder's files to the library. PUBLIC headers are installed as <zeltools/...>; PRIVATE are its
# sources and the headers that stay inside.
function(zel_folder)
    cmake_parse_arguments(arg "" "" "PUBLIC;PRIVATE" ${ARGN})
    list(TRANSFORM arg_PUBLIC PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(zeltools-objects PRIVATE ${arg_PRIVATE})
    set_property(GLOBAL APPEND PROPERTY ZELTOOLS_PUBLIC_HEADERS ${arg_PUBLIC})
endfunction()

# zel_test_program(FOLDER source...)
# One test program for one folder of the library. It links the library's objects statically, so that what is
# not exported can be tested too.
function(zel_test_program folder)
    if(NOT ARGN)
        return()
    endif()
    set(target ${folder}_tests)
    add_executable(${target} ${ARGN})
    target_link_libraries(${target} PRIVATE zeltools-internal zeltools-test-support)
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# zel_plugin(NAME SHELL source... BACKEND source... LIBRARIES library...)
# A plug-in: NAME.so, which a host loads and which links nothing heavy, and backends/NAME_backend.so, which links the
# libraries. Built into build/<preset>/plugins/, installed below the library's folder.
function(zel_plugin name)
    cmake_parse_arguments(arg "" "" "SHELL;BACKEND;LIBRARIES" ${ARGN})
    set(built ${PROJECT_BINARY_DIR}/plugins)
    set(installed ${CMAKE_INSTALL_LIBDIR}/zeltools/plugins)
    add_library(${name}-shell MODULE ${arg_SHELL})
    target_link_libraries(${name}-shell PRIVATE zeltools-plugin-common zeltools-warnings)
    set_target_properties(${name}-shell PROPERTIES PREFIX "" OUTPUT_NAME ${name} LIBRARY_OUTPUT_DIRECTORY ${built}
                                                   INSTALL_RPATH "$ORIGIN/../..")
    add_library(${name}-backend MODULE ${arg_BACKEND})
    target_link_libraries(${name}-backend PRIVATE zeltools-plugin-common zeltools-warnings ${arg_LIBRARIES})
    target_link_options(${name}-backend PRIVATE -Wl,-z,now) # what is missing is told at the opening (backend_library.cpp)
    set_target_properties(${name}-backend PROPERTIES PREFIX "" OUTPUT_NAME ${name}_backend
                                                     LIBRARY_OUTPUT_DIRECTORY ${built}/backends
                                                     INSTALL_RPATH "$ORIGIN/../../..")
    add_dependencies(${name}-shell ${name}-backend)
    set_property(GLOBAL APPEND PROPERTY ZELTOOLS_PLUGINS ${name}-shell)
    install(TARGETS ${name}-shell LIBRARY DESTINATION ${installed})
    install(TARGETS ${name}-backend LIBRARY DESTINATION ${installed}/backends)
endfunction()

# zel_benchmark(NAME source... [LIBRARIES peer...])
# A Google Benchmark program. `./dev bench` prints the ratio between Work/zel/... and Work/<peer>/...
function(zel_benchmark name)
    cmake_parse_arguments(arg "" "" "LIBRARIES" ${ARGN})
    add_executable(${name}_benchmark ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name}_benchmark PRIVATE zeltools-internal zeltools-warnings benchmark::benchmark_main ${arg_LIBRARIES})
    set_property(GLOBAL APPEND PROPERTY ZELTOOLS_BENCHMARKS ${name})
endfunction()

# zel_fuzzer(NAME)
# A libFuzzer target from NAME_fuzzer.cpp; its corpus stands in corpus/NAME/.
function(zel_fuzzer name)
    add_executable(${name}_fuzzer ${name}_fuzzer.cpp)
    target_link_libraries(${name}_fuzzer PRIVATE zeltools-internal zeltools-warnings)
    target_link_options(${name}_fuzzer PRIVATE -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY ZELTOOLS_FUZZERS ${name})
endfunction()

# zel_collect(TARGET PROPERTY SUFFIX)
# TARGET builds every program that PROPERTY names, and build/<preset>/<suffix>s.txt lists the names for the scripts.
function(zel_collect target property suffix)
    get_property(names GLOBAL PROPERTY ${property})
    list(JOIN names "\n" lines)
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/${suffix}s.txt CONTENT "${lines}\n")
    add_custom_target(${target})
    if(names)
        list(TRANSFORM names APPEND _${suffix})
        add_dependencies(${target} ${names})
    endif()
endfunction()
