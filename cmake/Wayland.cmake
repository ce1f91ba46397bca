# Code for Wayland protocols, made from their descriptions at build time.

pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(XKBCOMMON REQUIRED IMPORTED_TARGET xkbcommon)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
pkg_get_variable(WAYLAND_PROTOCOLS wayland-protocols pkgdatadir)
if(NOT WAYLAND_SCANNER OR NOT WAYLAND_PROTOCOLS)
  message(FATAL_ERROR "wayland-scanner or wayland-protocols is missing")
endif()

# brixtel_wayland_protocols(NAME FILE...)
# A static library of the protocols in the given description files. Of
# viewporter.xml come viewporter-client.h, and viewporter-server.h for the
# tests' own compositor.
function(brixtel_wayland_protocols name)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/protocols")
  file(MAKE_DIRECTORY "${folder}")
  set(made "")
  foreach(xml IN LISTS ARGN)
    get_filename_component(stem "${xml}" NAME_WE)
    foreach(kind "private-code:.c" "client-header:-client.h" "server-header:-server.h")
      string(REPLACE ":" ";" parts "${kind}")
      list(GET parts 0 mode)
      list(GET parts 1 ending)
      set(file "${folder}/${stem}${ending}")
      # The layer shell's argument `namespace` has a name that is a word of C++.
      add_custom_command(OUTPUT "${file}" COMMAND "${WAYLAND_SCANNER}" ${mode} "${xml}" "${file}"
                         COMMAND sed -i "s/\\bnamespace\\b/name_space/g" "${file}"
                         DEPENDS "${xml}" VERBATIM)
      list(APPEND made "${file}")
    endforeach()
  endforeach()
  add_library(${name} STATIC ${made})
  target_include_directories(${name} SYSTEM PUBLIC "${folder}")
  target_link_libraries(${name} PUBLIC PkgConfig::WAYLAND_CLIENT)
endfunction()
