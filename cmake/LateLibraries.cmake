# SPDX-License-Identifier: GPL-2.0-or-later
# Libraries that velmora_core loads when it first needs them (base/LateLibrary.h): their headers are seen when it is
# compiled, but nothing is linked with them.
#
# late_library(NAME FILE [header options...]): FILE is what the linker would be given. The name by which the loader finds
# it becomes k<NAME>Library in LateNames.h. Where dpkg knows it, its package is appended to VELMORA_LATE_PACKAGES, in the
# version that was there at the build or newer: the package's dependencies are otherwise read from what is linked.
set(VELMORA_LATE_NAMES "")
set(VELMORA_LATE_PACKAGES "")

function(late_library name file)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${file} OUTPUT_VARIABLE headers ERROR_QUIET)
  if(NOT headers MATCHES "SONAME +([^ \n]+)")
    message(FATAL_ERROR "${file} is no shared library that has a name of its own")
  endif()
  set(soname ${CMAKE_MATCH_1})
  string(APPEND VELMORA_LATE_NAMES "inline constexpr const char* k${name}Library = \"${soname}\";\n")
  set(VELMORA_LATE_NAMES ${VELMORA_LATE_NAMES} PARENT_SCOPE)
  target_compile_options(velmora_core PRIVATE ${ARGN})

  find_program(DPKG_QUERY_PROGRAM dpkg-query)
  mark_as_advanced(DPKG_QUERY_PROGRAM)
  if(DPKG_QUERY_PROGRAM)
    execute_process(COMMAND ${DPKG_QUERY_PROGRAM} -S "*/${CMAKE_LIBRARY_ARCHITECTURE}/${soname}"
      OUTPUT_VARIABLE owner ERROR_QUIET)
    if(owner MATCHES "^([^:,\n ]+)")
      set(package ${CMAKE_MATCH_1})
      execute_process(COMMAND ${DPKG_QUERY_PROGRAM} -W -f "\${Version}" ${package} OUTPUT_VARIABLE version ERROR_QUIET)
      string(REGEX REPLACE "-[^-]*$" "" version "${version}") # the packaging's own part
      set(VELMORA_LATE_PACKAGES ${VELMORA_LATE_PACKAGES} "${package} (>= ${version})" PARENT_SCOPE)
    endif()
  endif()
endfunction()

# late_libraries_are_named(): after the last of them, writes LateNames.h.
function(late_libraries_are_named)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/LateNames.h @ONLY CONTENT
"// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

// The names by which the system's loader finds the libraries whose headers were there at the build.
namespace velmora {
@VELMORA_LATE_NAMES@} // namespace velmora
")
endfunction()
