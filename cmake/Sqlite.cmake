# SQLite as a static library, from a source that is fetched into the build folder.

set(sqlite_source ${PROJECT_SOURCE_DIR}/build/deps/sqlite)
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/get-sqlite.sh ${sqlite_source}
  COMMAND_ERROR_IS_FATAL ANY)

add_library(melvorin_sqlite STATIC ${sqlite_source}/sqlite3.c)
target_include_directories(melvorin_sqlite SYSTEM PUBLIC ${sqlite_source})
# One thread, one read-only file, no extensions, no temporary files.
target_compile_definitions(melvorin_sqlite PRIVATE
  SQLITE_THREADSAFE=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_SHARED_CACHE SQLITE_DQS=0
  SQLITE_TEMP_STORE=3)
# Not our code, so not our warnings. A look-up takes no time that anybody would notice; at -O2 this
# one file took a third of the native build's time.
target_compile_options(melvorin_sqlite PRIVATE -w -O1 -g0)
