# carvelot_qt_files: what a window program cross-built with mingw-w64 needs beside it, copied into the build's bin folder.
# The file runtime-files.txt lists it, "source|path beside the program", for whoever packs the program.
set(CARVELOT_RUNTIME_FILES "")
foreach(library Core Gui Widgets)
  list(APPEND CARVELOT_RUNTIME_FILES "${CARVELOT_QT_WINDOWS}/bin/Qt6${library}.dll|Qt6${library}.dll")
endforeach()
list(APPEND CARVELOT_RUNTIME_FILES
    "${CARVELOT_QT_WINDOWS}/plugins/platforms/qwindows.dll|platforms/qwindows.dll"
    "${CARVELOT_QT_WINDOWS}/plugins/styles/qwindowsvistastyle.dll|styles/qwindowsvistastyle.dll")
foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${library}.dll"
      OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
  get_filename_component(found "${found}" REALPATH)
  list(APPEND CARVELOT_RUNTIME_FILES "${found}|${library}.dll")
endforeach()

# The tests run without a display.
set(copied ${CARVELOT_RUNTIME_FILES})
if(CARVELOT_TESTS)
  list(APPEND copied "${CARVELOT_QT_WINDOWS}/bin/Qt6Test.dll|Qt6Test.dll"
      "${CARVELOT_QT_WINDOWS}/plugins/platforms/qoffscreen.dll|platforms/qoffscreen.dll")
endif()
set(outputs "")
foreach(pair IN LISTS copied)
  string(REPLACE "|" ";" pair "${pair}")
  list(GET pair 0 from)
  list(GET pair 1 to)
  set(to "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${to}")
  get_filename_component(folder "${to}" DIRECTORY)
  add_custom_command(OUTPUT "${to}" DEPENDS "${from}"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}"
      COMMAND "${CMAKE_COMMAND}" -E copy "${from}" "${to}")
  list(APPEND outputs "${to}")
endforeach()
# Without a display Qt takes its fonts from a folder.
if(CARVELOT_TESTS AND EXISTS /usr/share/fonts/truetype/liberation)
  file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/lib")
  file(CREATE_LINK /usr/share/fonts/truetype/liberation "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/lib/fonts" SYMBOLIC)
endif()
add_custom_target(carvelot_qt_files ALL DEPENDS ${outputs})

string(REPLACE ";" "\n" lines "${CARVELOT_RUNTIME_FILES}")
file(WRITE "${CMAKE_BINARY_DIR}/runtime-files.txt" "${lines}\n")
