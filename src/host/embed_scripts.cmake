# Writes OUT, a C++ source that holds the three SQL scripts of DIR byte for byte.
# Called as: cmake -DDIR=… -DOUT=… -P embed_scripts.cmake
set(source "// Made from the SQL files of src/host by embed_scripts.cmake.\n")
string(APPEND source "#include \"host/schema.h\"\n\nnamespace tavcc {\n")
foreach(script schema base sample)
  file(READ ${DIR}/${script}.sql bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  string(SUBSTRING ${script} 0 1 first)
  string(SUBSTRING ${script} 1 -1 rest)
  string(TOUPPER ${first} first)
  string(APPEND source
         "\nstatic constexpr char k${script}[] = {${bytes}};\n"
         "std::string_view ${first}${rest}Script() { return {k${script}, sizeof(k${script})}; }\n")
endforeach()
string(APPEND source "\n}  // namespace tavcc\n")
file(WRITE ${OUT} "${source}")
