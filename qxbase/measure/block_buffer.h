#pragma once

#include <cstddef>
#include <cstdint>

#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"

namespace qx {

// Alignment of every block buffer, one cache line, so block loops vectorise without peeling.
inline constexpr std::int32_t BlockBufferAlignment = 64;
// Largest block the allocator hands out (2^28 samples, 2 GiB); a bigger count is a fault of the
// caller, not a request to honour.
inline constexpr std::int32_t MaxBlockSamples = 1 << 28;

// Freed buffers of at least this many bytes are kept (up to BlockBufferCacheBytes in all) for
// the next request of the same size, so that a steady cycle of large blocks does not give its
// memory back to the system and fault it in again each time. Builds with AddressSanitizer or
// ThreadSanitizer keep nothing.
inline constexpr std::size_t BlockBufferCacheMinBytes = std::size_t{32} << 10;
inline constexpr std::size_t BlockBufferCacheBytes = std::size_t{64} << 20;

// The bytes kept for reuse now (headers included).
QXBASE_EXPORT std::size_t GetBlockBufferCacheBytes() noexcept;

// A buffer for count samples, BlockBufferAlignment-aligned, contents uninitialised. Returns
// nullptr for count <= 0. Raises ERangeError for count > MaxBlockSamples and std::bad_alloc
// when memory runs out. Give it back with FreeBlockBuffer, never with free or delete.
QXBASE_EXPORT double* AllocBlockBuffer(std::int32_t count);
// Frees a buffer from AllocBlockBuffer; nullptr is allowed and ignored.
QXBASE_EXPORT void FreeBlockBuffer(double* buffer) noexcept;

// A block with a fresh buffer of count samples; the empty block for count <= 0.
inline TRVDataDouble NewDataDouble(std::int32_t count)
{
    TRVDataDouble block;
    block.data = AllocBlockBuffer(count);
    if (block.data) block.count = count;
    return block;
}

// Frees the block's buffer and leaves the block empty.
inline void FreeDataDouble(TRVDataDouble& block) noexcept
{
    FreeBlockBuffer(block.data);
    block.data = nullptr;
    block.count = 0;
}

// Frees every block's buffer; the array keeps its length, every block left empty.
inline void FreeDataDoubleArray(TRVDataDoubleArray& blocks) noexcept
{
    for (TRVDataDouble& block : blocks) FreeDataDouble(block);
}

}  // namespace qx
