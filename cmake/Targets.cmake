# How every target of this tree is compiled, and the one way to add a test.

add_library(melvorin_options INTERFACE)
target_compile_features(melvorin_options INTERFACE cxx_std_20)
target_compile_options(melvorin_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wextra-semi -Werror)
# GCC 12 sees overlaps in string concatenation that are not there.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(melvorin_options INTERFACE -Wno-restrict)
endif()
target_include_directories(melvorin_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

# Overruns end the program instead of going on, in the database's code too. The sanitizers see more.
if(NOT MELVORIN_SANITIZE)
  add_compile_options(-fstack-protector-strong)
  add_link_options(-fstack-protector-strong)
  add_compile_definitions(_FORTIFY_SOURCE=2)
endif()

if(MELVORIN_SANITIZE)
  target_compile_options(melvorin_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # The fuzzers watch which branches a text takes.
  target_compile_options(melvorin_options INTERFACE
    $<$<CXX_COMPILER_ID:Clang>:-fsanitize=fuzzer-no-link>)
  target_link_options(melvorin_options INTERFACE -fsanitize=address,undefined)
endif()


if(WIN32)
  # Text is handed to Windows through reinterpreted pointers (see src/platform/Win.h).
  target_compile_options(melvorin_options INTERFACE -fno-strict-aliasing)
  target_compile_definitions(melvorin_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT
    WINVER=0x0601 _WIN32_WINNT=0x0601 _WIN32_IE=0x0700)
  # One file to copy: nothing of the compiler's runtime has to be shipped.
  target_link_options(melvorin_options INTERFACE -static)
endif()

# GoogleTest comes as source from Debian, so that the same version serves every compiler.
function(melvorin_enable_tests)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endfunction()

# Targets that a build without tests makes only where they are named.
function(melvorin_only_for_tests)
  if(NOT MELVORIN_TESTS_IN_ALL)
    set_target_properties(${ARGN} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endfunction()

# melvorin_test(NAME SOURCES ... LIBS ...): one executable, one ctest entry. A cold start under
# Wine costs seconds, so cases are not split into entries of their own.
function(melvorin_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  melvorin_only_for_tests(${name})
  target_link_libraries(${name} PRIVATE melvorin_options ${arg_LIBS} gtest gtest_main)
  # A test's own code runs once and has nothing to gain from the optimizer.
  target_compile_options(${name} PRIVATE -O1)
  target_compile_definitions(${name} PRIVATE
    MELVORIN_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(WIN32)
    add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tools/wine.sh $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
  else()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  endif()
endfunction()

# melvorin_folder(NAME CORE ... WINDOWS ... BELOW ...): the libraries of a folder of src, its core and,
# where the target is Windows, its windows. Each is linked to its like in the folders below.
function(melvorin_folder name)
  cmake_parse_arguments(arg "" "" "CORE;WINDOWS;BELOW" ${ARGN})
  set(core)
  set(windows)
  foreach(folder ${arg_BELOW})
    # A folder without a core, or without windows, passes on what is below it.
    list(APPEND core melvorin_${folder})
    list(APPEND windows melvorin_${folder}_windows)
  endforeach()
  if(arg_CORE)
    add_library(melvorin_${name} STATIC ${arg_CORE})
    target_link_libraries(melvorin_${name} PUBLIC melvorin_options ${core})
  else()
    add_library(melvorin_${name} INTERFACE)
    target_link_libraries(melvorin_${name} INTERFACE melvorin_options ${core})
  endif()
  if(NOT WIN32)
    return()
  endif()
  if(arg_WINDOWS)
    add_library(melvorin_${name}_windows STATIC ${arg_WINDOWS})
    target_link_libraries(melvorin_${name}_windows PUBLIC melvorin_${name} ${windows})
  else()
    add_library(melvorin_${name}_windows INTERFACE)
    target_link_libraries(melvorin_${name}_windows INTERFACE melvorin_${name} ${windows})
  endif()
endfunction()
