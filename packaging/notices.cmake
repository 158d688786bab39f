# tavcc_notices(OUT NAME FOLDER…): writes the notices of the libraries of headers that are compiled
# in, one `NAME FOLDER` after the other, behind this project's own; the folders are those of their
# Debian packages, which carry them.
function(tavcc_notices out)
  set(notices "TavM_CC_PlugIns

Copyright (C) 2026 the TavM_CC_PlugIns developers. All rights reserved.

Libraries of others are compiled in. Their notices follow.
")
  while(ARGN)
    list(POP_FRONT ARGN name package)
    set(notice /usr/share/doc/${package}/copyright)
    if(EXISTS ${notice})
      file(READ ${notice} text)
      string(APPEND notices "\n---- ${name} ----\n\n${text}")
      set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${notice})
    else()
      message(WARNING "${notice} is missing: packages will lack the notice of ${name}")
    endif()
  endwhile()
  file(CONFIGURE OUTPUT ${out} CONTENT "@notices@" @ONLY)
endfunction()
