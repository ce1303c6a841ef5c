# Toolchain of the windows preset: Debian's g++-mingw-w64-x86-64-posix. That of windows32 includes this
# file with a machine of its own.
if(NOT DEFINED LORIMAT_MINGW_MACHINE)
  set(LORIMAT_MINGW_MACHINE x86_64)
endif()
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${LORIMAT_MINGW_MACHINE})
set(CMAKE_C_COMPILER ${LORIMAT_MINGW_MACHINE}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${LORIMAT_MINGW_MACHINE}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${LORIMAT_MINGW_MACHINE}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${LORIMAT_MINGW_MACHINE}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# __USE_MINGW_ANSI_STDIO: printf with the formats of the C standard.
add_compile_definitions(__USE_MINGW_ANSI_STDIO=1)
