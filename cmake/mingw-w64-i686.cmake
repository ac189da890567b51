# Builds for 32-bit Windows with mingw-w64. SSE arithmetic gives the doubles of all other builds.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(KAL_TRIPLET i686-w64-mingw32)
set(KAL_TYPELIB_TARGET --win32)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-Wl,--kill-at -Wl,--enable-stdcall-fixup")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
