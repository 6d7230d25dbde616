# The plan of the house: a line a room (a folder of src/), what it may use, and its libraries. Arrows point down only:
# a room may include its own headers, those of the rooms it uses and of all rooms below them.
#
# The targets, their links and the test of every include are made from this table; a folder that is not in it does not
# build. docs/architecture.md says what lives in each room.
#
#   room              uses                                   libraries
set(CARVELOT_ROOMS
    "platform        |                                      |"
    "text            | platform                             | carvelot_header_only"
    "records         | text                                 |"
    "sources         | text                                 | carvelot_unpacking"
    "parse           | records sources                      |"
    "parse/fast      | parse                                |"
    "analysis        | records                              |"
    "session         | parse/fast analysis                  |"
    "trees           | session                              |"
    "lists           | session                              |"
    "explore         | session                              |"
    "explore/lists   | explore                              |"
    "explore/pictures | explore/lists                       |"
    "tables          | explore lists                         | carvelot_header_only"
    "sqlite          | tables                                | carvelot_databases"
    "settings        | records                              |"
    "live            | settings                             |"
    "cachebrowser    | live                                 |"
    "tools           | settings                             |"
    "report          | trees explore/lists sqlite           | carvelot_header_only"
    "ui/kit          | settings                             | Qt6::Widgets"
    "ui/session      | ui/kit lists trees                   | Qt6::Widgets"
    "ui/live         | ui/kit live                          | Qt6::Widgets"
    "ui/cachebrowser | ui/kit cachebrowser                  | Qt6::Widgets"
    "ui/tools        | ui/kit tools                         | Qt6::Widgets"
    "ui/explore      | ui/kit explore/pictures               | Qt6::Widgets"
    "ui/app          | ui/session ui/live ui/cachebrowser ui/tools ui/explore | Qt6::Widgets")

# carvelot_rooms_read(): CARVELOT_ROOM_NAMES in the table's order, and for each CARVELOT_USES_<room> (itself and all below
# it) and CARVELOT_LIBRARIES_<room>. A room can only use what stands above it in the table, so there is no circle.
function(carvelot_rooms_read)
  set(names "")
  foreach(line IN LISTS CARVELOT_ROOMS)
    string(REPLACE "|" ";" fields "${line}")
    list(GET fields 0 name)
    list(GET fields 1 uses)
    list(GET fields 2 libraries)
    string(STRIP "${name}" name)
    separate_arguments(uses UNIX_COMMAND "${uses}")
    separate_arguments(libraries UNIX_COMMAND "${libraries}")
    set(all "${name}")
    foreach(used IN LISTS uses)
      if(NOT used IN_LIST names)
        message(FATAL_ERROR "Layers.cmake: ${name} uses ${used}, which is no room above it in the table")
      endif()
      list(APPEND all ${CARVELOT_USES_${used}})
    endforeach()
    list(REMOVE_DUPLICATES all)
    list(APPEND names "${name}")
    set(CARVELOT_USES_${name} "${all}")
    set(CARVELOT_USES_${name} "${all}" PARENT_SCOPE)
    set(CARVELOT_DIRECTLY_${name} "${uses}" PARENT_SCOPE)
    set(CARVELOT_LIBRARIES_${name} "${libraries}" PARENT_SCOPE)
  endforeach()
  set(CARVELOT_ROOM_NAMES "${names}" PARENT_SCOPE)
endfunction()
