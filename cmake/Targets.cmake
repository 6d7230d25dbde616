# Helpers by which every target of ours gets the same flags.

# Collects sources by pattern, relative to the source tree. New files are seen at the next build.
function(carvelot_glob variable)
  list(TRANSFORM ARGN PREPEND "${CMAKE_SOURCE_DIR}/")
  file(GLOB found CONFIGURE_DEPENDS ${ARGN})
  set(${variable} "${found}" PARENT_SCOPE)
endfunction()

function(carvelot_target name)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_BINARY_DIR}/generated")
  if(MSVC)
    # Sources are UTF-8; the warnings of /W4 that the others' sets do not know are no errors, and attributes of
    # theirs (5030) are no mistakes.
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:/utf-8 /permissive- /Zc:__cplusplus /EHsc /W4 /wd5030 /bigobj>)
    target_compile_definitions(${name} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN _CRT_SECURE_NO_WARNINGS)
  else()
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wconversion>)
    if(CARVELOT_WERROR)
      target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Werror>)
    endif()
  endif()
  if(MINGW)
    # The same sources make the same program.
    target_link_options(${name} PRIVATE -Wl,--no-insert-timestamp)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 takes every "text" + std::string for an overlapping copy (GCC bug 105651).
    target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
  endif()
  if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Sources that are compiled as one look like headers, whose classes should hold nothing that is theirs alone.
    target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
  endif()
  # The library's cheap checks cost little where speed is not the point.
  target_compile_definitions(${name} PRIVATE $<$<NOT:$<CONFIG:Release>>:_GLIBCXX_ASSERTIONS>)
  if(CARVELOT_SANITIZE)
    target_compile_options(${name} PRIVATE
        -fsanitize=${CARVELOT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${name} PRIVATE -fsanitize=${CARVELOT_SANITIZE} -fno-sanitize-recover=all)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
      target_compile_options(${name} PRIVATE
          "-fsanitize-ignorelist=${CMAKE_SOURCE_DIR}/cmake/sanitize-ignore.txt")
    endif()
  endif()
endfunction()

# The target of a room: a static library of its folder, with what the table of rooms links to it. Without the toolkit a
# room of the window has none.
function(carvelot_room room)
  string(REPLACE "/" "_" name "carvelot_${room}")
  foreach(library IN LISTS CARVELOT_LIBRARIES_${room})
    if(NOT TARGET ${library})
      return()
    endif()
  endforeach()
  carvelot_glob(sources "src/${room}/*.cpp" "src/${room}/*.h")
  if(room STREQUAL "platform")
    carvelot_glob(implementation "src/platform/${CARVELOT_PLATFORM_FOLDER}/*.cpp")
    list(APPEND sources ${implementation})
  endif()
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  carvelot_target(${name})
  if(CARVELOT_FUZZ)
    carvelot_coverage(${name} fuzzer-no-link)
  endif()
  if("Qt6::Widgets" IN_LIST CARVELOT_LIBRARIES_${room})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  endif()
  foreach(used IN LISTS CARVELOT_DIRECTLY_${room})
    string(REPLACE "/" "_" used "carvelot_${used}")
    target_link_libraries(${name} PUBLIC ${used})
  endforeach()
  target_link_libraries(${name} PUBLIC ${CARVELOT_LIBRARIES_${room}})
  if(NOT CARVELOT_LIBRARIES_${room} MATCHES "Qt6")
    carvelot_library_headers(${name})
  endif()
endfunction()

# What nearly every source of a room includes is read once, which halves the time of a build. The build under
# ThreadSanitizer doesn't, nor does it compile several sources as one, so that a source which forgets to include
# something fails there.
function(carvelot_library_headers name)
  if(CMAKE_CROSSCOMPILING OR MSVC OR CARVELOT_SANITIZE)
    return()
  endif()
  if(name STREQUAL "carvelot_platform")
    target_precompile_headers(${name} PRIVATE <algorithm> <array> <cstdint> <cstring> <functional> <memory> <optional>
        <span> <string> <string_view> <unordered_map> <variant> <vector>)
  else()
    target_precompile_headers(${name} REUSE_FROM carvelot_platform)
  endif()
endfunction()

# A fuzzer learns from the branches that an input takes. The operands of each comparison would tell it more, at half
# the inputs a second: the dictionaries name the words instead.
function(carvelot_coverage name kind)
  target_compile_options(${name} PRIVATE -fsanitize=${kind} -fno-sanitize-coverage=trace-cmp
      "-fsanitize-coverage-ignorelist=${CMAKE_SOURCE_DIR}/cmake/coverage-ignore.txt")
endfunction()

# A program that brings the compiler's run time with it, so that it starts wherever it is copied.
function(carvelot_stand_alone name)
  if(MINGW)
    target_link_options(${name} PRIVATE -static)
  endif()
endfunction()

# Code of tests runs once: what all of it includes is read once, and no time is spent on making it fast.
function(carvelot_test_code name)
  if("REUSE_FROM" IN_LIST ARGN)
    target_precompile_headers(${name} ${ARGN})
  else()
    target_precompile_headers(${name} PRIVATE ${ARGN})
  endif()
  if(NOT MSVC)
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O0>)
  endif()
endfunction()

# A Windows program whose resources bring its manifest, so that the linker must not add one.
function(carvelot_own_manifest name)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src/resources")
  if(MSVC)
    target_link_options(${name} PRIVATE /MANIFEST:NO)
  endif()
endfunction()
