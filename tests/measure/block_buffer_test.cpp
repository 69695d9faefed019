#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "qxbase/framework/exception.h"
#include "qxbase/measure/block_buffer.h"

using namespace qx;

TEST(BlockBuffer, BuffersAreAlignedAndWritableToTheLastSample)
{
    for (std::int32_t count : {1, 3, 9, 65536}) {
        double* p = AllocBlockBuffer(count);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % BlockBufferAlignment, 0u) << count;
        p[0] = p[count - 1] = 2;
        FreeBlockBuffer(p);
    }
}

TEST(BlockBuffer, EmptyAndAbsurdCountsAndFreeingAnArray)
{
    EXPECT_EQ(AllocBlockBuffer(0), nullptr);
    EXPECT_EQ(AllocBlockBuffer(-5), nullptr);
    EXPECT_THROW(AllocBlockBuffer(MaxBlockSamples + 1), ERangeError);
    EXPECT_THROW(NewDataDouble(std::numeric_limits<std::int32_t>::max()), ERangeError);

    TRVDataDoubleArray blocks{NewDataDouble(16), NewDataDouble(-1), NewDataDouble(1)};
    EXPECT_EQ(blocks[0].count, 16);
    EXPECT_TRUE(blocks[1].data == nullptr && blocks[1].count == 0);
    FreeDataDoubleArray(blocks);
    ASSERT_EQ(blocks.size(), 3u);
    for (const TRVDataDouble& b : blocks) EXPECT_TRUE(b.data == nullptr && b.count == 0);
    FreeDataDoubleArray(blocks);  // nothing left to free twice
}
