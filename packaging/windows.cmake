# `cpack` in the build folder makes a zip: the server and what belongs to it, tavcc, its
# demonstration and a page to begin with.
set(texts ${PROJECT_BINARY_DIR}/packaging/windows)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
  set(bits 64)
  set(system_folder System32)
  set(register_note
      "Hosts of 32 bit want the other zip's server, registered with the regsvr32.exe"
      "of SysWOW64. Both may be registered side by side, each in a folder of its own.")
else()
  set(bits 32)
  set(system_folder SysWOW64)
  set(register_note
      "On a Windows of 32 bit the folder is System32. Hosts of 64 bit want the other"
      "zip's server, registered with the regsvr32.exe of System32. Both may be"
      "registered side by side, each in a folder of its own.")
endif()
list(JOIN register_note "\n" register_note)
# What Windows reads line by line ends its lines as Windows does.
function(tavcc_windows_text from to)
  configure_file(${from} ${to}.lf @ONLY)
  configure_file(${to}.lf ${to} @ONLY NEWLINE_STYLE DOS)
endfunction()
foreach(text README.txt demo.cmd)
  tavcc_windows_text(${CMAKE_CURRENT_LIST_DIR}/windows/${text} ${texts}/${text})
endforeach()
tavcc_notices(${texts}/notices CLI11 libcli11-dev fmt libfmt-dev "JSON for Modern C++"
              nlohmann-json3-dev "the runtime of mingw-w64" mingw-w64-common)
tavcc_windows_text(${texts}/notices ${texts}/NOTICES.txt)

set(server ${PROJECT_BINARY_DIR}/src/automation)
install(TARGETS TavM_CC_PlugIns tavcc RUNTIME DESTINATION .)
install(FILES ${server}/TavM_CC_PlugIns.manifest ${server}/TavM_CC_PlugIns.tlb
              ${texts}/README.txt ${texts}/NOTICES.txt ${texts}/demo.cmd
        DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME tavcc-${PROJECT_VERSION}-windows${bits})
include(CPack)
