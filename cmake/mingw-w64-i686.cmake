# Cross toolchain: 32-bit Windows with MinGW-w64, the build we ship.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(TAVIREL_MINGW_PREFIX i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
# Doubles in SSE2 registers, as the 64-bit build has them: x87's 80-bit intermediates truncate some
# quotients differently (a threefold enlargement lost a column, a thumbnail a row). Windows calls back
# with a 4-byte-aligned stack, so functions that need more realign it themselves.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
