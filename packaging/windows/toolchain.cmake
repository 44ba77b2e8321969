# MinGW-w64 on Debian: programs for 64-bit Windows. The libraries that `libraries` builds lie in one folder, named by
# BRINDLE_WINDOWS_PREFIX, of the cache or of the environment.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

if(NOT BRINDLE_WINDOWS_PREFIX)
  set(BRINDLE_WINDOWS_PREFIX "$ENV{BRINDLE_WINDOWS_PREFIX}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BRINDLE_WINDOWS_PREFIX)

# Programs (moc, rcc) are this machine's own; all else is taken from the libraries for Windows, never from this machine.
set(CMAKE_FIND_ROOT_PATH ${BRINDLE_WINDOWS_PREFIX} /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${BRINDLE_WINDOWS_PREFIX}/lib/pkgconfig")

# The import library of the same name would make a DLL of it.
set(ZLIB_LIBRARY /usr/${triple}/lib/libz.a CACHE FILEPATH "")

# One file a program: the compiler's own libraries too.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
