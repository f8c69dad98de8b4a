# SPDX-License-Identifier: MIT
# How every translation unit of the project is compiled: C++20 without extensions, hidden symbols,
# warnings as errors, and the sanitizers that were asked for.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# A compiler cache makes the second build directory almost free.
find_program(ZELTOOLS_CCACHE ccache)
if(ZELTOOLS_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ZELTOOLS_CCACHE})
endif()

# GCC 12 sees an overlap in the optimised operator+ of std::string that is not there, so -Wrestrict is off for it.
add_library(zeltools-warnings INTERFACE)
target_compile_options(
    zeltools-warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
                                $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion> $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(ZELTOOLS_SANITIZE)
    add_compile_options(-fsanitize=${ZELTOOLS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZELTOOLS_SANITIZE})
endif()
