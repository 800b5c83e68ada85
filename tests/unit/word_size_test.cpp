// The 32-bit native build really is 32-bit: its readers' size and offset arithmetic runs with a 4-byte size_t.
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstddef>
#include <cstdint>

#ifdef TAVIREL_EXPECT_32BIT
TEST(WordSize, ThirtyTwoBitBuildHasFourByteSizesAndPointers) {
    std::printf("sizeof(size_t) = %u, sizeof(void*) = %u\n", unsigned(sizeof(std::size_t)), unsigned(sizeof(void*)));
    EXPECT_EQ(sizeof(std::size_t), 4u);
    EXPECT_EQ(sizeof(void*), 4u);
    EXPECT_EQ(SIZE_MAX, std::size_t(UINT32_MAX));
}
#endif
