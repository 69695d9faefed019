#pragma once

#include <cstdint>

namespace qx {

// COM result code, as property callbacks return it; the library never interprets it.
using HRESULT = std::int32_t;
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);

}  // namespace qx
