# brixtel_shaders(VARIABLE FILE...)
# Makes of each shader a header of the same name with `.h` behind it, which
# defines one constant: rects.frag becomes `kRectsFrag` in rects.frag.h. The
# headers' paths are left in VARIABLE; they land in the folder's build folder.
function(brixtel_shaders variable)
  set(headers "")
  foreach(file IN LISTS ARGN)
    set(header "${CMAKE_CURRENT_BINARY_DIR}/${file}.h")
    add_custom_command(
      OUTPUT "${header}"
      COMMAND "${CMAKE_COMMAND}" "-DSHADER=${CMAKE_CURRENT_SOURCE_DIR}/${file}"
              "-DHEADER=${header}" -P "${PROJECT_SOURCE_DIR}/cmake/WrapShader.cmake"
      DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}" "${PROJECT_SOURCE_DIR}/cmake/WrapShader.cmake"
      VERBATIM)
    list(APPEND headers "${header}")
  endforeach()
  set(${variable} "${headers}" PARENT_SCOPE)
endfunction()
