#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

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

    TRVDataDoubleArray blocks{NewDataDouble(16), NewDataDouble(-1), NewDataDouble(1)};
    EXPECT_EQ(blocks[0].count, 16);
    EXPECT_TRUE(blocks[1].data == nullptr && blocks[1].count == 0);
    FreeDataDoubleArray(blocks);
    ASSERT_EQ(blocks.size(), 3u);
    for (const TRVDataDouble& b : blocks) EXPECT_TRUE(b.data == nullptr && b.count == 0);
}

TEST(BlockBuffer, LargeBuffersAreKeptForTheNextRequestOfTheSameSize)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizer builds keep no buffers";
#else
    // A size no other test frees, so that the first request finds nothing kept.
    constexpr std::int32_t size = 50001;
    const std::size_t before = GetBlockBufferCacheBytes();
    double* large = AllocBlockBuffer(size);
    double* small = AllocBlockBuffer(1024);
    FreeBlockBuffer(small);  // below the size worth keeping
    EXPECT_EQ(GetBlockBufferCacheBytes(), before);
    FreeBlockBuffer(large);
    const std::size_t kept = GetBlockBufferCacheBytes() - before;
    EXPECT_GE(kept, size * sizeof(double));
    double* other = AllocBlockBuffer(size + 8);  // another size is not served from the cache
    EXPECT_EQ(GetBlockBufferCacheBytes(), before + kept);
    double* again = AllocBlockBuffer(size);
    EXPECT_EQ(again, large);
    EXPECT_EQ(GetBlockBufferCacheBytes(), before);
    FreeBlockBuffer(other);
    FreeBlockBuffer(again);

    std::vector<double*> huge;
    for (int i = 0; i < 3; ++i) huge.push_back(AllocBlockBuffer(1 << 22));  // 32 MiB each
    for (double* p : huge) FreeBlockBuffer(p);
    EXPECT_LE(GetBlockBufferCacheBytes(), BlockBufferCacheBytes);
    EXPECT_GT(GetBlockBufferCacheBytes(), std::size_t{1} << 25);
#endif
}
