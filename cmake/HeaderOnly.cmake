# carvelot_header_only: the header-only libraries of the distribution (CLI11, RapidJSON).
#
# They are linked into a folder of the build tree, because a cross compiler must never see the whole of /usr/include.
add_library(carvelot_header_only INTERFACE)
set(CARVELOT_HEADER_ONLY_FOLDER "${CMAKE_BINARY_DIR}/header-only")
file(MAKE_DIRECTORY "${CARVELOT_HEADER_ONLY_FOLDER}")
foreach(header CLI/CLI.hpp rapidjson/document.h)
  get_filename_component(folder "${header}" DIRECTORY)
  find_path(CARVELOT_${folder}_INCLUDE "${header}" PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
  if(CARVELOT_${folder}_INCLUDE AND CMAKE_HOST_WIN32)
    # Links need rights there that few have, and no other system's headers stand beside these.
    target_include_directories(carvelot_header_only SYSTEM INTERFACE "${CARVELOT_${folder}_INCLUDE}")
  elseif(CARVELOT_${folder}_INCLUDE)
    file(CREATE_LINK "${CARVELOT_${folder}_INCLUDE}/${folder}" "${CARVELOT_HEADER_ONLY_FOLDER}/${folder}" SYMBOLIC)
  else()
    message(STATUS "${header} not found: what needs it does not build")
  endif()
endforeach()
target_include_directories(carvelot_header_only SYSTEM INTERFACE "${CARVELOT_HEADER_ONLY_FOLDER}")
