# Build rules that every folder shares.

include(GNUInstallDirs)
# A folder of the program's own, which no other program searches.
set(BRIXTEL_LIBDIR "${CMAKE_INSTALL_LIBDIR}/brixtel")
if(CMAKE_LIBRARY_ARCHITECTURE)
  set(BRIXTEL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}/brixtel")
endif()

# A build uses three folders, laid out as in an installed tree: programs
# find the module, and the module finds its resources, the same way in
# both.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/${BRIXTEL_LIBDIR}")

# A built file holds no path of the build folder, whatever its length.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# brixtel_finds_libraries(TARGET FOLDER)
# Names the folder, from the installed file's own, in which the file finds the libraries. The
# built file has the same path: CMake would append colons to one that it replaces while installing,
# and the dynamic linker searches the current folder for each.
function(brixtel_finds_libraries target folder)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${folder}"
                        BUILD_WITH_INSTALL_RPATH ON)
endfunction()

add_library(brixtel_flags INTERFACE)
target_include_directories(brixtel_flags INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_definitions(brixtel_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS
                           QT_NO_FOREACH)
target_compile_options(brixtel_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow
                       -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
                       -Wnull-dereference -Wimplicit-fallthrough
                       # Designated initialisers fill option structs, and
                       # omitted members keep their defaults.
                       -Wno-missing-field-initializers
                       # No code replaces a library's own functions from
                       # outside, so a library may inline them.
                       -fno-semantic-interposition)
target_link_options(brixtel_flags INTERFACE -Wl,--no-undefined -Wl,--as-needed)
if(BRIXTEL_STRICT)
  target_compile_options(brixtel_flags INTERFACE -Werror)
  target_compile_definitions(brixtel_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()
# What each program and test has more under a sanitizer.
set(BRIXTEL_SANITIZE_SOURCES "${PROJECT_SOURCE_DIR}/tests/support/BusThreadGone.cpp"
    "${PROJECT_SOURCE_DIR}/tests/support/KeepLibraries.cpp")
if(BRIXTEL_SANITIZE)
  target_compile_options(brixtel_flags INTERFACE -fsanitize=${BRIXTEL_SANITIZE}
                         -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(brixtel_flags INTERFACE -fsanitize=${BRIXTEL_SANITIZE})
endif()

# brixtel_floor(NAME SOURCES ... [LINKS ...] [PRIVATE_LINKS ...] [MOC])
# Makes one shared library for one folder. LINKS are visible to the floors above.
function(brixtel_floor name)
  cmake_parse_arguments(F "MOC" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} SHARED ${F_SOURCES})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME "brixtel-${name}" AUTOMOC ${F_MOC})
  brixtel_finds_libraries(${name} "$ORIGIN")
  # The linker binds what the library uses of itself, as no code replaces it from outside. The
  # dynamic linker would look up 1,200 names of types and templates in every start.
  if(NOT BRIXTEL_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,-Bsymbolic)
  endif()
  target_link_libraries(${name} PUBLIC brixtel_flags ${F_LINKS} PRIVATE ${F_PRIVATE_LINKS})
  install(TARGETS ${name} LIBRARY DESTINATION "${BRIXTEL_LIBDIR}")
endfunction()

# brixtel_first_libraries(PROGRAM)
# Names the libraries that most symbols come from before the program's own ones. The dynamic
# linker asks one library after another for each symbol, in the order in which the program names
# them.
function(brixtel_first_libraries name)
  # A sanitizer's library has to be the first.
  if(BRIXTEL_SANITIZE)
    return()
  endif()
  set(libraries -lstdc++ $<TARGET_FILE:Qt6::Core> $<TARGET_FILE:Qt6::Gui>
      $<TARGET_FILE:Qt6::DBus>)
  list(JOIN libraries " " libraries)
  target_link_options(${name} PRIVATE
                      "SHELL:-Wl,--push-state,--no-as-needed ${libraries} -Wl,--pop-state")
endfunction()

# brixtel_support_objects(LIST): compiles each source of tests/support in the list once
# for all tests, and puts the object in the source's place.
function(brixtel_support_objects list)
  set(sources "")
  foreach(source IN LISTS ${list})
    get_filename_component(path "${source}" ABSOLUTE)
    if(NOT path MATCHES "^${PROJECT_SOURCE_DIR}/tests/support/([A-Za-z_]+)\\.cpp$")
      list(APPEND sources "${source}")
      continue()
    endif()
    set(object "steun_${CMAKE_MATCH_1}")
    if(NOT TARGET ${object})
      add_library(${object} OBJECT "${path}")
      target_link_libraries(${object} PRIVATE brixtel_flags Qt6::Gui GTest::gtest)
      target_include_directories(${object} PRIVATE "${CMAKE_BINARY_DIR}/gemaakt")
      target_compile_options(${object} PRIVATE -O1)
    endif()
    list(APPEND sources "$<TARGET_OBJECTS:${object}>")
  endforeach()
  set(${list} "${sources}" PARENT_SCOPE)
endfunction()

# brixtel_optimise_test(NAME BUSY): sets how far the compiler optimises a test program, and gives
# the program the libraries' headers precompiled, from an object that all such tests share.
#
# Tests compile more often than they run. At -O0 a sanitizer's checks take half the time to
# compile that they take at -O1, and twice the time to run: busy tests, with loops of their own
# over many pixels, keep -O1.
#
# By clang each source is compiled with what it includes itself, so that a missing #include is
# seen.
function(brixtel_optimise_test name busy)
  set(level 1)
  if(BRIXTEL_SANITIZE AND NOT busy)
    set(level 0)
  endif()
  target_compile_options(${name} PRIVATE -O${level})
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    return()
  endif()
  # A compiler takes a precompiled header only where every definition is the same, the level's own
  # included. libpulse defines _REENTRANT, which the standard library asks for.
  set(links brixtel_flags Qt6::Gui GTest::gtest GTest::gmock)
  set(object "steun_precompiled_O${level}")
  if(NOT TARGET ${object})
    add_library(${object} OBJECT "${PROJECT_SOURCE_DIR}/tests/support/Precompiled.cpp")
    target_link_libraries(${object} PRIVATE ${links})
    target_compile_definitions(${object} PRIVATE _REENTRANT)
    target_compile_options(${object} PRIVATE -O${level})
    target_precompile_headers(${object} PRIVATE
                              "${PROJECT_SOURCE_DIR}/tests/support/Precompiled.h")
  endif()
  target_link_libraries(${name} PRIVATE ${links})
  target_compile_definitions(${name} PRIVATE _REENTRANT)
  target_precompile_headers(${name} REUSE_FROM ${object})
endfunction()

# brixtel_test(NAME SOURCES ... LINKS ... LABELS ... [CORE|GUI] [BUSY] [PROPERTIES ...])
# Makes one GoogleTest program; every test in it is a ctest entry of its own.
# CORE runs the tests under a QCoreApplication, GUI under an off-screen
# QGuiApplication; neither needs a display. BUSY is for loops over many pixels.
function(brixtel_test name)
  cmake_parse_arguments(T "BUSY;CORE;GUI;MOC" "" "SOURCES;LINKS;LABELS;PROPERTIES" ${ARGN})
  if(T_GUI)
    list(APPEND T_SOURCES "${PROJECT_SOURCE_DIR}/tests/support/main_gui.cpp")
    list(APPEND T_LINKS Qt6::Gui GTest::gtest)
  elseif(T_CORE)
    list(APPEND T_SOURCES "${PROJECT_SOURCE_DIR}/tests/support/main_core.cpp")
    list(APPEND T_LINKS Qt6::Core GTest::gtest)
  else()
    list(APPEND T_LINKS GTest::gtest_main)
  endif()
  if(BRIXTEL_SANITIZE)
    list(APPEND T_SOURCES ${BRIXTEL_SANITIZE_SOURCES})
  endif()
  brixtel_support_objects(T_SOURCES)
  add_executable(${name} ${T_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ${T_MOC}
                        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  target_link_libraries(${name} PRIVATE brixtel_flags ${T_LINKS} GTest::gmock)
  brixtel_optimise_test(${name} ${T_BUSY})
  target_include_directories(${name} PRIVATE "${CMAKE_BINARY_DIR}/gemaakt")
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
                       PROPERTIES LABELS "${T_LABELS}" TIMEOUT 120 ${T_PROPERTIES})
endfunction()

# brixtel_bench(NAME SOURCES ... LINKS ...): one Google Benchmark program.
function(brixtel_bench name)
  cmake_parse_arguments(B "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${B_SOURCES})
  set_target_properties(${name} PROPERTIES
                        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
  target_link_libraries(${name} PRIVATE brixtel_flags ${B_LINKS} benchmark::benchmark)
endfunction()
