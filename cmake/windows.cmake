# Cross-compiles for Windows, with the headers and libraries of mingw-w64: by clang and its linker.
# g++ takes more than twice as long, and the linker beside it a minute for a program that is not
# optimized, since its time grows with the square of an object's functions.
# TAVCC_WINDOWS_TRIPLET is set by the preset; TAVCC_WINDOWS_COMPILER may be `gcc`, for mingw-w64's
# own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVCC_WINDOWS_TRIPLET TAVCC_WINDOWS_COMPILER)
if(TAVCC_WINDOWS_TRIPLET MATCHES "^x86_64")
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
else()
  set(CMAKE_SYSTEM_PROCESSOR i686)
endif()

# No DLL stands beside ours: the compiler's runtime is linked in. Loaded anywhere, with data that
# cannot be run.
set(link_options "-static -Wl,--dynamicbase,--nxcompat")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
  string(APPEND link_options ",--high-entropy-va")
endif()

# The variant with the standard library's threads, which GoogleTest wants.
set(gcc ${TAVCC_WINDOWS_TRIPLET}-gcc-posix)
set(gxx ${TAVCC_WINDOWS_TRIPLET}-g++-posix)
if(TAVCC_WINDOWS_COMPILER STREQUAL gcc)
  set(CMAKE_C_COMPILER ${gcc})
  set(CMAKE_CXX_COMPILER ${gxx})
else()
  foreach(language C CXX)
    set(CMAKE_${language}_COMPILER_TARGET ${TAVCC_WINDOWS_TRIPLET})
    # Not the build machine's; and a thread's variables as the runtime has them.
    set(CMAKE_${language}_FLAGS_INIT "-nostdlibinc -femulated-tls")
    set(CMAKE_${language}_STANDARD_INCLUDE_DIRECTORIES /usr/${TAVCC_WINDOWS_TRIPLET}/include)
  endforeach()
  set(CMAKE_C_COMPILER clang)
  set(CMAKE_CXX_COMPILER clang++)
  # The standard library is g++'s, with what g++ defines for it: the names of a type are compared as
  # that library was compiled for.
  execute_process(COMMAND ${gxx} -print-libgcc-file-name OUTPUT_VARIABLE runtime
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  cmake_path(GET runtime PARENT_PATH runtime)
  string(APPEND CMAKE_CXX_FLAGS_INIT " -nostdinc++ -D__GXX_MERGED_TYPEINFO_NAMES=0"
                                     " -D__GXX_TYPEINFO_EQUALITY_INLINE=0")
  list(PREPEND CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${runtime}/include/c++
       ${runtime}/include/c++/${TAVCC_WINDOWS_TRIPLET})
  string(APPEND link_options " -fuse-ld=lld -pthread -B${runtime} -L${runtime}"
                             " -Wno-unused-command-line-argument")
endif()
set(CMAKE_RC_COMPILER ${TAVCC_WINDOWS_TRIPLET}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT "${link_options}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${link_options}")

set(CMAKE_FIND_ROOT_PATH /usr/${TAVCC_WINDOWS_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
