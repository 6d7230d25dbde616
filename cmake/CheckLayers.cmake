# cmake -DSOURCE=<source tree> -P CheckLayers.cmake
#
# Fails when a layer includes what stands above it, or when the core includes a toolkit or a system header.
set(bad "")

function(check_includes pattern what)
  foreach(file IN LISTS ARGN)
    file(STRINGS "${file}" lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]${pattern}")
    foreach(line IN LISTS lines)
      string(APPEND bad "${file}: ${line}  (${what})\n")
    endforeach()
  endforeach()
  set(bad "${bad}" PARENT_SCOPE)
endfunction()

file(GLOB platform "${SOURCE}/src/platform/*.h" "${SOURCE}/src/platform/*.cpp" "${SOURCE}/src/platform/posix/*"
     "${SOURCE}/src/platform/windows/*")
file(GLOB platform_headers "${SOURCE}/src/platform/*.h")
set(core "")
foreach(folder logcore analysis analysis/panes views live cachebrowser tools shell)
  file(GLOB found "${SOURCE}/src/${folder}/*.h" "${SOURCE}/src/${folder}/*.cpp")
  list(APPEND core ${found})
endforeach()
file(GLOB report "${SOURCE}/src/report/*.h" "${SOURCE}/src/report/*.cpp")

set(system_header "(windows|shlobj|shellapi|winreg|psapi|unistd|dlfcn|fcntl|sys/[a-z]+|pwd|dirent)\\.h>")
check_includes("(logcore|analysis|views|live|cachebrowser|tools|shell|report)/" "above the platform" ${platform})
check_includes("${system_header}" "a system header in a platform header" ${platform_headers})
check_includes("Q[A-Z][A-Za-z]*>" "the toolkit below the windows" ${platform} ${core} ${report})
check_includes("[a-z/]+/ui/" "a window below the windows" ${platform} ${core} ${report})
check_includes("report/" "the report in the core" ${core})
check_includes("platform/(posix|windows)/" "an implementation of the platform in the core" ${core} ${report})
check_includes("${system_header}" "a system header in the core" ${core})

if(bad)
  message(FATAL_ERROR "Includes that go upwards:\n${bad}")
endif()
