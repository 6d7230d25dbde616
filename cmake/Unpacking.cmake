# carvelot_unpacking: the libraries that packed logs are read with (libarchive, zlib, zstd).
#
# A cross build takes static ones: zlib is the distribution's, the others stand below CARVELOT_LIBS_WINDOWS.
set(CARVELOT_LIBS_WINDOWS "" CACHE PATH "For a cross build: the prefix of libarchive and zstd for mingw-w64")
add_library(carvelot_unpacking INTERFACE)
if(CMAKE_CROSSCOMPILING AND WIN32)
  foreach(library archive zstd z)
    find_library(CARVELOT_LIBRARY_${library} NAMES lib${library}.a
        PATHS "${CARVELOT_LIBS_WINDOWS}/lib" /usr/x86_64-w64-mingw32/lib
        NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    target_link_libraries(carvelot_unpacking INTERFACE "${CARVELOT_LIBRARY_${library}}")
  endforeach()
  find_path(CARVELOT_INCLUDE_archive archive.h PATHS "${CARVELOT_LIBS_WINDOWS}/include"
      NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  target_include_directories(carvelot_unpacking SYSTEM INTERFACE "${CARVELOT_INCLUDE_archive}")
  target_compile_definitions(carvelot_unpacking INTERFACE LIBARCHIVE_STATIC)
  target_link_libraries(carvelot_unpacking INTERFACE bcrypt)
else()
  find_package(LibArchive REQUIRED)
  find_package(ZLIB REQUIRED)
  find_library(CARVELOT_LIBRARY_zstd zstd REQUIRED)
  target_link_libraries(carvelot_unpacking INTERFACE LibArchive::LibArchive ZLIB::ZLIB "${CARVELOT_LIBRARY_zstd}")
endif()
