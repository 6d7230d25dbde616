# Locales in which every suite runs once more: decimal commas, and an "I" that is no upper-case "i".

set(CARVELOT_LOCALES "")
find_program(CARVELOT_LOCALEDEF localedef)
if(CMAKE_CROSSCOMPILING OR CARVELOT_SANITIZE)
  # The plain build has run them.
elseif(CARVELOT_LOCALEDEF AND EXISTS /usr/share/i18n/locales/de_DE)
  foreach(locale de_DE tr_TR)
    if(NOT EXISTS "${CMAKE_BINARY_DIR}/locales/${locale}.UTF-8")
      file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/locales")
      execute_process(COMMAND "${CARVELOT_LOCALEDEF}" -i ${locale} -f UTF-8 "${CMAKE_BINARY_DIR}/locales/${locale}.UTF-8")
    endif()
    list(APPEND CARVELOT_LOCALES ${locale})
  endforeach()
else()
  message(STATUS "No sources of locales found: the suites run in the user's locale alone")
endif()

# Runs a program of tests once in each of these locales, with ARGUMENTS and in ENVIRONMENT. What is for the program stands among
# the arguments: GoogleTest asks for GTEST_FiLTER in the Turkish one.
function(carvelot_test_in_locales name target)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "ARGUMENTS;ENVIRONMENT")
  foreach(locale IN LISTS CARVELOT_LOCALES)
    add_test(NAME "${locale}.${name}" COMMAND ${target} ${arg_ARGUMENTS})
    set_tests_properties("${locale}.${name}" PROPERTIES
        ENVIRONMENT "LC_ALL=${locale}.UTF-8;LOCPATH=${CMAKE_BINARY_DIR}/locales;${arg_ENVIRONMENT}")
  endforeach()
endfunction()
