#include "qxbase/measure/block_buffer.h"

#include <cstddef>
#include <cstdlib>
#include <new>

#include "qxbase/framework/exception.h"

namespace qx {

double* AllocBlockBuffer(std::int32_t count)
{
    if (count <= 0) return nullptr;
    if (count > MaxBlockSamples)
        throw ERangeError(QStringLiteral("A block of %1 samples exceeds the limit of %2 samples")
                              .arg(count)
                              .arg(MaxBlockSamples));
    // aligned_alloc wants a size that is a multiple of the alignment.
    constexpr auto align = static_cast<std::size_t>(BlockBufferAlignment);
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(double);
    const std::size_t rounded = (bytes + align - 1) / align * align;
    void* p = std::aligned_alloc(align, rounded);
    if (!p) throw std::bad_alloc();
    return static_cast<double*>(p);
}

void FreeBlockBuffer(double* buffer) noexcept { std::free(buffer); }

}  // namespace qx
