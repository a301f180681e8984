# Toolchain: 64-bit Windows, cross-built on Linux.
set(TESSEL_WINDOWS_CPU x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
