# Installs the libraries, their public headers and the CMake package, for those who build on them.
#
# A header is public when it is in one of these lists. What a public header includes is public too:
# tests/packaging/installed_test.py compiles each by itself against an installed copy.
set(foundation_headers
    batch_session call_site connection connection_string conversions date_time decimal dictionary
    error host ladder plug_in recordset rule_watch sql_text text value vector verdict)
set(rules_headers registry/bilingual registry/bill_ladder registry/class_registry
                  registry/dictionary_keys registry/refusals)
set(embedded_headers embedded/embedded embedded/open_options embedded/script)
set(odbc_headers odbc/odbc)
set(host_headers
    host/answer_rows host/erp host/host_state host/ledger_check host/reference_host host/schema
    host/seen_rows host/statement_log host/tracing_host)
list(TRANSFORM foundation_headers PREPEND foundation/)

# The libraries of a component of find_package; the first is the one that is linked by its name.
set(component_names rules embedded odbc host)
set(foundation_libraries tavcc_foundation tavcc_options)
set(rules_libraries tavcc_registry tavcc_audit tavcc_checks tavcc_pricing tavcc_balances
                    tavcc_billtypes)
set(embedded_libraries tavcc_embedded)
set(odbc_libraries tavcc_odbc)
set(host_libraries tavcc_host tavcc_log)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/tavcc)
foreach(component foundation ${component_names})
  list(GET ${component}_libraries 0 linked)
  foreach(library IN LISTS ${component}_libraries)
    string(REPLACE tavcc_ "" exported ${library})
    if(library STREQUAL linked)
      set(exported ${component})
    endif()
    set_target_properties(${library} PROPERTIES EXPORT_NAME ${exported})
  endforeach()
  install(
    TARGETS ${${component}_libraries}
    EXPORT tavcc-${component}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
  install(
    EXPORT tavcc-${component}
    NAMESPACE tavcc::
    DESTINATION ${package_folder}
    COMPONENT library)
  foreach(header IN LISTS ${component}_headers)
    cmake_path(GET header PARENT_PATH folder)
    install(
      FILES ${PROJECT_SOURCE_DIR}/src/${header}.h
      DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tavcc/${folder}
      COMPONENT library)
  endforeach()
endforeach()

include(CMakePackageConfigHelpers)
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/tavcc-config.cmake.in ${PROJECT_BINARY_DIR}/packaging/tavcc-config.cmake
  INSTALL_DESTINATION ${package_folder})
# Before 1.0 every minor version may change what programs are compiled against.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/packaging/tavcc-config-version.cmake
                                 COMPATIBILITY SameMinorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/packaging/tavcc-config.cmake
        ${PROJECT_BINARY_DIR}/packaging/tavcc-config-version.cmake
  DESTINATION ${package_folder}
  COMPONENT library)
