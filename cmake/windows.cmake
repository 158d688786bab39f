# Cross-compiles for Windows with mingw-w64. TAVCC_WINDOWS_TRIPLET is set by the preset.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVCC_WINDOWS_TRIPLET)
if(TAVCC_WINDOWS_TRIPLET MATCHES "^x86_64")
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
else()
  set(CMAKE_SYSTEM_PROCESSOR i686)
endif()
# The variant with the standard library's threads, which GoogleTest wants.
set(CMAKE_C_COMPILER ${TAVCC_WINDOWS_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TAVCC_WINDOWS_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${TAVCC_WINDOWS_TRIPLET}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${TAVCC_WINDOWS_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No DLL stands beside ours: the compiler's runtime is linked in. Loaded anywhere, with data that
# cannot be run.
set(link_options "-static -Wl,--dynamicbase,--nxcompat")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
  string(APPEND link_options ",--high-entropy-va")
endif()
set(CMAKE_EXE_LINKER_FLAGS_INIT "${link_options}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${link_options}")
