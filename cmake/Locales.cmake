# The locale in which every suite runs once more: its numbers have decimal commas and are grouped by points, and its "I" is no
# upper-case "i".

set(CARVELOT_LOCALE "")
find_program(CARVELOT_LOCALEDEF localedef)
if(CMAKE_CROSSCOMPILING OR CARVELOT_SANITIZE)
  # The plain build has run them.
elseif(CARVELOT_LOCALEDEF AND EXISTS /usr/share/i18n/locales/tr_TR)
  set(CARVELOT_LOCALE tr_TR)
  if(NOT EXISTS "${CMAKE_BINARY_DIR}/locales/tr_TR.UTF-8")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/locales")
    execute_process(COMMAND "${CARVELOT_LOCALEDEF}" -i tr_TR -f UTF-8 "${CMAKE_BINARY_DIR}/locales/tr_TR.UTF-8")
  endif()
else()
  message(STATUS "No sources of locales found: the suites run in the user's locale alone")
endif()

# Runs a program of tests once more in this locale, with ARGUMENTS and in ENVIRONMENT. What is for the program stands among the
# arguments: GoogleTest asks for GTEST_FiLTER there.
function(carvelot_test_in_locale name target)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "ARGUMENTS;ENVIRONMENT")
  if(CARVELOT_LOCALE)
    add_test(NAME "${CARVELOT_LOCALE}.${name}" COMMAND ${target} ${arg_ARGUMENTS})
    set_tests_properties("${CARVELOT_LOCALE}.${name}" PROPERTIES
        ENVIRONMENT "LC_ALL=${CARVELOT_LOCALE}.UTF-8;LOCPATH=${CMAKE_BINARY_DIR}/locales;${arg_ENVIRONMENT}")
  endif()
endfunction()
