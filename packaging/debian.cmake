# `cpack` in the build folder makes two Debian packages: tavcc, the program, and libtavcc-dev, the
# libraries. What they depend on is found by dpkg-shlibdeps, and for the static libraries said here.
set(documents ${PROJECT_BINARY_DIR}/packaging/debian)
set(compiled_in CLI11 libcli11-dev fmt libfmt-dev "JSON for Modern C++" nlohmann-json3-dev)
tavcc_notices(${documents}/tavcc/copyright ${compiled_in})
tavcc_notices(${documents}/libtavcc-dev/copyright)
foreach(package tavcc libtavcc-dev)
  file(COPY ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents}/${package})
  file(RENAME ${documents}/${package}/CHANGELOG.md ${documents}/${package}/changelog)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog
                 ${documents}/${package}/changelog.Debian COPYONLY)
  execute_process(COMMAND ${GZIP} -9nf changelog changelog.Debian
                  WORKING_DIRECTORY ${documents}/${package} COMMAND_ERROR_IS_FATAL ANY)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/lintian-overrides
                 ${documents}/overrides/${package} @ONLY)
  set(component tool)
  if(package STREQUAL libtavcc-dev)
    set(component library)
  endif()
  install(
    DIRECTORY ${documents}/${package}/
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    COMPONENT ${component}
    EXCLUDE_FROM_ALL)
  install(
    FILES ${documents}/overrides/${package}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    COMPONENT ${component}
    EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL tool library)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "The TavM_CC_PlugIns developers <developers@tavcc.invalid>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tavcc)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION database)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
    "business rules of an ERP's inventory module, from a shell
tavcc audits bills, says why a bill is refused and what an audit changes,
and runs scenarios of the rules: on an embedded database that speaks the
dialect of SQL Server, or on a SQL Server over ODBC.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtavcc-dev)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "libsqlite3-dev, unixodbc-dev")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
    "business rules of an ERP's inventory module, libraries for C++
Static libraries, headers and a CMake package: the rules, the embedded
database that speaks the dialect of SQL Server (of use by itself, in tests
without a server), connections over ODBC, and the reference host.")
include(CPack)
