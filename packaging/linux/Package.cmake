# The Debian package: `cpack -G DEB` in the build's folder. packaging/linux/build does it all.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME carvelot)
set(CPACK_PACKAGE_VENDOR "The Carvelot authors")
set(CPACK_PACKAGE_CONTACT "The Carvelot authors <carvelot@tamrisk.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "analyser of JD Edwards debug logs")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Carvelot reads a JD Edwards debug log, or the log of the JAS web tier, and
rebuilds what happened: processes, threads or users; the call tree of
business functions with parameters, results and times; SQL by table;
jdeCache operations; long tasks, silences and errors. It tells where the
time went, and compares two runs.
.
This package holds the window, carvelot, and carvelot-report, which prints
the same analysis as text, JSON, tables or a database.")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/package")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of whoever packs.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS qt6-wayland)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CARVELOT_SOURCE_PACKAGING "${CMAKE_CURRENT_SOURCE_DIR}")
configure_file(Repack.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/Repack.cmake" @ONLY)
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_BINARY_DIR}/Repack.cmake")
include(CPack)
