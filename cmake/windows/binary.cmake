# tavcc_windows_binary(TARGET DESCRIPTION): makes of a program or module what is delivered: with a
# version resource, for Windows 7 and later, and with its symbols beside it.
function(tavcc_windows_binary target description)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set(file_type VFT_APP)
    set(file_name ${target}.exe)
  else()
    set(file_type VFT_DLL)
    set(file_name ${target}.dll)
  endif()
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
    set(bits 64)
  else()
    set(bits 32)
  endif()
  set(file $<TARGET_FILE:${target}>)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/version.rc ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
  target_link_options(
    ${target} PRIVATE -Wl,--major-os-version,6,--minor-os-version,1
    -Wl,--major-subsystem-version,6,--minor-subsystem-version,1)
  # Delivered without its symbols, which a dump is read with.
  add_custom_command(
    TARGET ${target}
    POST_BUILD
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
    COMMAND ${CMAKE_STRIP} --strip-all ${file}
    COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file}
    VERBATIM)
endfunction()
