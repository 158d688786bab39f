# tavcc_embed(TARGET HEADER FUNCTION FILE …): texts that travel inside a program. The target gets a
# source that carries out the header: each function returns its file byte for byte.
#
# The source is made by this file too:
# cmake -DHEADER=… -DOUT=… -DTEXTS=FUNCTION|FILE|… -P embed.cmake
if(CMAKE_SCRIPT_MODE_FILE)
  set(source "// Made by cmake/embed.cmake.\n#include \"${HEADER}\"\n\nnamespace tavcc {\n")
  string(REPLACE "|" ";" texts "${TEXTS}")
  while(texts)
    list(POP_FRONT texts function file)
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND source "\nstatic constexpr char k${function}[] = {${bytes}};\n"
           "std::string_view ${function}() { return {k${function}, sizeof(k${function})}; }\n")
  endwhile()
  file(WRITE ${OUT} "${source}\n}  // namespace tavcc\n")
  return()
endif()

function(tavcc_embed target header)
  set(texts)
  set(files)
  while(ARGN)
    list(POP_FRONT ARGN function file)
    cmake_path(ABSOLUTE_PATH file)
    list(APPEND texts ${function} ${file})
    list(APPEND files ${file})
  endwhile()
  list(JOIN texts "|" texts)
  string(MAKE_C_IDENTIFIER ${header} name)
  set(out ${CMAKE_CURRENT_BINARY_DIR}/${name}_texts.cpp)
  set(maker ${PROJECT_SOURCE_DIR}/cmake/embed.cmake)
  add_custom_command(
    OUTPUT ${out}
    COMMAND ${CMAKE_COMMAND} -DHEADER=${header} -DOUT=${out} "-DTEXTS=${texts}" -P ${maker}
    DEPENDS ${files} ${maker}
    VERBATIM)
  target_sources(${target} PRIVATE ${out})
  # A command of this target alone would wait for all that the target is linked with, and its
  # sources for the command. What two targets want waits for what both wait for: nothing.
  add_custom_target(${target}_${name}_texts DEPENDS ${out})
endfunction()
