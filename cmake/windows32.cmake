# Cross-builds for 32-bit Windows with Debian's g++-mingw-w64-i686-posix.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(MARLUNE_MINGW i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)

# SSE arithmetic: the x87 unit keeps more digits than a double has, and texts of numbers would
# differ from the other builds. Hosts of 32-bit programs align the stack to 4 bytes only.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
