# Builds for 64-bit Windows with mingw-w64. The posix flavour has the standard library's threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KAL_TRIPLET x86_64-w64-mingw32)
set(KAL_TYPELIB_TARGET --win64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
