# SQLite::SQLite3 for Windows, from the source that the npm package better-sqlite3 carries.
set(folder ${PROJECT_BINARY_DIR}/sqlite)
if(NOT EXISTS ${folder}/node_modules/better-sqlite3/deps/sqlite3/sqlite3.c)
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/package.json ${CMAKE_CURRENT_LIST_DIR}/package-lock.json
       DESTINATION ${folder})
  # Its own build scripts are not wanted, only the source.
  execute_process(COMMAND npm ci --ignore-scripts --no-audit --no-fund WORKING_DIRECTORY ${folder}
                  RESULT_VARIABLE failed OUTPUT_QUIET)
  if(failed)
    message(FATAL_ERROR "npm could not bring SQLite's source; see cmake/sqlite/package.json")
  endif()
endif()
set(source ${folder}/node_modules/better-sqlite3/deps/sqlite3)
add_library(sqlite3 STATIC ${source}/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${source})
target_compile_options(sqlite3 PRIVATE ${quick_options})  # only tests work with it
target_compile_definitions(sqlite3 PRIVATE SQLITE_OMIT_LOAD_EXTENSION SQLITE_THREADSAFE=1)
add_library(SQLite::SQLite3 ALIAS sqlite3)
