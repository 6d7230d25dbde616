# carvelot_databases: the library that writes databases.
#
# A cross build takes a static one, which stands below CARVELOT_LIBS_WINDOWS as those that unpack do.
add_library(carvelot_databases INTERFACE)
if(CMAKE_CROSSCOMPILING AND WIN32)
  find_library(CARVELOT_LIBRARY_sqlite3 NAMES libsqlite3.a PATHS "${CARVELOT_LIBS_WINDOWS}/lib"
      NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  find_path(CARVELOT_INCLUDE_sqlite3 sqlite3.h PATHS "${CARVELOT_LIBS_WINDOWS}/include"
      NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  target_link_libraries(carvelot_databases INTERFACE "${CARVELOT_LIBRARY_sqlite3}")
  target_include_directories(carvelot_databases SYSTEM INTERFACE "${CARVELOT_INCLUDE_sqlite3}")
else()
  find_package(SQLite3 REQUIRED)
  target_link_libraries(carvelot_databases INTERFACE SQLite::SQLite3)
endif()
