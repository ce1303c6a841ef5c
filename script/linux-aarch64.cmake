# Toolchain of the arm64 preset: Debian's g++-12-aarch64-linux-gnu. The package without a number,
# g++-aarch64-linux-gnu, would take gcc-multilib away.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc-12)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++-12)
