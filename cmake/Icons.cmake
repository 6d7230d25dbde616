# The pictures of the window: src/resources/icons/*.svg, rendered at the sizes that screens ask for (100 %, 125 %, 150 %,
# 200 % and 300 %) and put into the room of the widgets as ":/icons/<name>-<width>.png". A changed drawing is rendered
# alone.
find_program(CARVELOT_RSVG_CONVERT rsvg-convert)
if(NOT CARVELOT_RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert, which renders the icons, is not there: install librsvg2-bin")
endif()
set(CARVELOT_ICON_SIZES 16 20 24 32 48)
# The program's own is also shown large: in its box and by the desktop.
set(CARVELOT_LARGE_ICON_SIZES 64 128 256)

carvelot_glob(drawings src/resources/icons/*.svg)
set(folder "${CMAKE_BINARY_DIR}/icons")
file(MAKE_DIRECTORY "${folder}")
set(pictures "")
foreach(drawing IN LISTS drawings)
  get_filename_component(name "${drawing}" NAME_WE)
  set(sizes ${CARVELOT_ICON_SIZES})
  if(name STREQUAL "application")
    list(APPEND sizes ${CARVELOT_LARGE_ICON_SIZES})
  endif()
  foreach(size IN LISTS sizes)
    set(picture "${folder}/${name}-${size}.png")
    add_custom_command(OUTPUT "${picture}" DEPENDS "${drawing}" VERBATIM
        COMMAND "${CARVELOT_RSVG_CONVERT}" --width=${size} --keep-aspect-ratio "--output=${picture}" "${drawing}"
        COMMENT "Rendering ${name}-${size}.png")
    list(APPEND pictures "${picture}")
  endforeach()
endforeach()
# Pictures are packed already, and the first version of the format has no times of files: the same sources make the same
# program.
qt_add_resources(carvelot_ui_kit icons PREFIX "/icons" BASE "${folder}" FILES ${pictures}
    OPTIONS --no-compress --format-version 1)
