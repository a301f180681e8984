# Toolchain: 32-bit Windows, cross-built on Linux.
set(TESSEL_WINDOWS_CPU i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
