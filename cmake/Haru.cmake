# libharu, which writes PDF, as a static library with our repairs, from a source that is fetched into
# the build folder.

set(haru_source ${PROJECT_SOURCE_DIR}/build/deps/haru)
set(haru_repairs ${PROJECT_SOURCE_DIR}/cmake/haru/repairs.patch)
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/get-haru.sh ${haru_source} ${haru_repairs}
  COMMAND_ERROR_IS_FATAL ANY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${haru_repairs})

set(ZLIB_USE_STATIC_LIBS ON)
find_package(ZLIB REQUIRED)
file(GLOB haru_files ${haru_source}/src/*.c)
add_library(melvorin_haru STATIC ${haru_files})
target_include_directories(melvorin_haru SYSTEM PUBLIC
  ${PROJECT_SOURCE_DIR}/cmake/haru ${haru_source}/include)
target_link_libraries(melvorin_haru PUBLIC ZLIB::ZLIB)
# Not our code, so not our warnings.
target_compile_options(melvorin_haru PRIVATE -w -O2 -g0)
if(MELVORIN_SANITIZE)
  # It reads fonts, which come from outside. Overflows of its sums are its own affair.
  target_compile_options(melvorin_haru PRIVATE -fsanitize=address)
endif()
