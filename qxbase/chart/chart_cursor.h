#pragma once

#include <cstddef>

#include "qxbase/framework/export.h"

// Which sample a cursor snaps to.
namespace qx {

// The index of the sample nearest to X among Count samples at X0 + i * DX: ties go to the lower
// index, an X before the first sample gives 0 and one after the last gives Count - 1; with DX 0
// every sample sits at X0 and the answer is 0. -1 for no samples and for X or X0 not finite.
QXBASE_EXPORT std::ptrdiff_t NearestSample(double X0, double DX, std::size_t Count, double X);

// The same over the drawable samples only (IsDrawableSample): the nearest in x, ties to the lower
// index; -1 when none is drawable.
QXBASE_EXPORT std::ptrdiff_t NearestDrawableSample(const double* Samples, std::size_t Count, double X0,
                                                   double DX, double X);

}  // namespace qx
