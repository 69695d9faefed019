#include "qxbase/measure/block_buffer.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <new>
#include <type_traits>

#include "qxbase/framework/exception.h"

namespace qx {
namespace {

constexpr auto Align = static_cast<std::size_t>(BlockBufferAlignment);
// Each buffer starts with one alignment unit holding its byte size, so that a freed buffer can
// be kept for the next request of the same size.
constexpr std::size_t HeaderBytes = Align;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Sanitizers must see every buffer freed, or use after free would go unnoticed.
constexpr bool CacheEnabled = false;
#else
constexpr bool CacheEnabled = true;
#endif

// Large buffers freed and taken again each cycle would otherwise go back to the system and be
// faulted in anew every time (the allocator trims its heap once enough is free at its top).
// Small ones are cheap for the allocator and are not kept.
class TBufferCache {
public:
    static constexpr std::size_t Entries = 32;

    // A kept buffer of exactly `Bytes` (whole block, header included), or nullptr.
    void* Take(std::size_t Bytes) noexcept
    {
        const std::lock_guard<std::mutex> lock(FLock);
        for (std::size_t i = FCount; i-- > 0;) {
            if (FBytes[i] != Bytes) continue;
            void* block = FBlocks[i];
            --FCount;
            FBlocks[i] = FBlocks[FCount];
            FBytes[i] = FBytes[FCount];
            FKeptBytes -= Bytes;
            return block;
        }
        return nullptr;
    }
    // True when the cache keeps the block; otherwise the caller frees it.
    bool Keep(void* Block, std::size_t Bytes) noexcept
    {
        const std::lock_guard<std::mutex> lock(FLock);
        if (FCount == Entries || FKeptBytes + Bytes > BlockBufferCacheBytes) return false;
        FBlocks[FCount] = Block;
        FBytes[FCount] = Bytes;
        ++FCount;
        FKeptBytes += Bytes;
        return true;
    }

    std::size_t KeptBytes() noexcept
    {
        const std::lock_guard<std::mutex> lock(FLock);
        return FKeptBytes;
    }

private:
    std::mutex FLock;
    std::array<void*, Entries> FBlocks{};
    std::array<std::size_t, Entries> FBytes{};
    std::size_t FCount = 0;
    std::size_t FKeptBytes = 0;
};

// Buffers may be freed by static objects of the host at exit, after this one's destruction
// would have run: it has nothing to destroy.
static_assert(std::is_trivially_destructible_v<TBufferCache>);

TBufferCache& Cache()
{
    static TBufferCache cache;
    return cache;
}

std::size_t BlockBytes(std::int32_t Count)
{
    const std::size_t bytes = static_cast<std::size_t>(Count) * sizeof(double);
    return HeaderBytes + (bytes + Align - 1) / Align * Align;
}

}  // namespace

double* AllocBlockBuffer(std::int32_t count)
{
    if (count <= 0) return nullptr;
    if (count > MaxBlockSamples)
        throw ERangeError(QStringLiteral("A block of %1 samples exceeds the limit of %2 samples")
                              .arg(count)
                              .arg(MaxBlockSamples));
    const std::size_t bytes = BlockBytes(count);
    void* block = nullptr;
    if (CacheEnabled && bytes >= BlockBufferCacheMinBytes) block = Cache().Take(bytes);
    if (block == nullptr) block = std::aligned_alloc(Align, bytes);
    if (block == nullptr) throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = bytes;
    return reinterpret_cast<double*>(static_cast<std::byte*>(block) + HeaderBytes);
}

void FreeBlockBuffer(double* buffer) noexcept
{
    if (buffer == nullptr) return;
    void* block = reinterpret_cast<std::byte*>(buffer) - HeaderBytes;
    const std::size_t bytes = *static_cast<const std::size_t*>(block);
    if (CacheEnabled && bytes >= BlockBufferCacheMinBytes && Cache().Keep(block, bytes)) return;
    std::free(block);
}

std::size_t GetBlockBufferCacheBytes() noexcept
{
    return Cache().KeptBytes();
}

}  // namespace qx
