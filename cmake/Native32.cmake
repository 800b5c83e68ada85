# Toolchain for the 32-bit native build (Debian's g++ with -m32, from g++-multilib): the portable core
# and its unit tests with a 4-byte size_t and pointers, so that every size and offset computed from
# file data is tried with the width the 32-bit game has. Used with -DTAVIREL_CORE_ONLY=ON.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
# SSE2 doubles, as the 32-bit Windows build must use too: with the x87 unit's default 80-bit
# intermediates, scale factors such as 100 / 300 * 3 truncate to 0 instead of 1, so a picture enlarged
# threefold loses a column and a thumbnail comes out a row short (a saved game of another size).
# TAVIREL_EXPECT_32BIT lets a unit test check that -m32 really took effect.
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -DTAVIREL_EXPECT_32BIT")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-m32")
