# SPDX-License-Identifier: GPL-2.0-or-later
# One standard, one set of warnings, ccache where present, sanitizers on request.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # What a precompiled header may differ in without the rest being compiled anew.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess) # without it no file that uses one is cached
  elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp") # nor without this
  endif()
endif()

add_library(velmora_warnings INTERFACE)
target_compile_options(velmora_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2)
if(VELMORA_WERROR)
  target_compile_options(velmora_warnings INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  # These versions take the joining of short strings for an overflow.
  target_compile_options(velmora_warnings INTERFACE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow)
endif()

if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -g1 -O1)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
endif()
