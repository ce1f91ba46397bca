# brixtel_shaders(VARIABLE FILE...)
# Wraps each shader in a header of the same name plus `.h`, which defines one
# constant: rects.frag becomes `kRectsFrag` in rects.frag.h. The headers lie in
# the folder's build folder; VARIABLE receives their paths.
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
