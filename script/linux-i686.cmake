# Toolchain of the m32 preset: the compiler of Debian's amd64 with its libraries of 32 bits,
# g++-12-multilib. What it makes runs on the same machine.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc-12)
set(CMAKE_CXX_COMPILER g++-12)
# The kernel's headers, which are those of both widths, lie where those of 64 bits are looked for. The
# package that would link them, gcc-multilib, does not go with compilers for other processors.
set(CMAKE_C_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
