# Writes HEADER: the text of SHADER as a C++ constant named after the file.
# Leaves out the lines above `#version`, which must come first in a shader.
cmake_minimum_required(VERSION 3.25)
get_filename_component(file "${SHADER}" NAME)
string(REGEX MATCHALL "[A-Za-z0-9]+" words "${file}")
set(name "k")
foreach(word IN LISTS words)
  string(SUBSTRING "${word}" 0 1 first)
  string(SUBSTRING "${word}" 1 -1 rest)
  string(TOUPPER "${first}" first)
  string(APPEND name "${first}${rest}")
endforeach()
file(READ "${SHADER}" text)
string(FIND "${text}" "#version" start)
if(start LESS 0)
  message(FATAL_ERROR "${SHADER}: no #version")
endif()
string(SUBSTRING "${text}" 0 ${start} above)
string(REGEX MATCHALL "\n" lines "${above}")
list(LENGTH lines skipped)
string(SUBSTRING "${text}" ${start} -1 text)
# The compiler's messages use the file's own line numbers.
math(EXPR next "${skipped} + 2")
string(REGEX REPLACE "^(#version[^\n]*\n)" "\\1#line ${next}\n" text "${text}")
file(WRITE "${HEADER}" "// Made of ${file}.
#pragma once

namespace platform {
inline constexpr const char* ${name} = R\"glsl(${text})glsl\";
}
")
