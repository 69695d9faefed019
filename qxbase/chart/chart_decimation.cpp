#include "qxbase/chart/chart_decimation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "qxbase/measure/channel_types.h"

namespace qx {

namespace {

constexpr double Inf = std::numeric_limits<double>::infinity();
// How far to look past the plot's edge for a drawable sample to join the curve to.
constexpr std::size_t EdgeSearch = 64;

// Columns counted from the side where x is small, so the column of a sample grows with its
// index even on a mirrored axis.
struct ColumnOf {
    const TQXAxisMapping& XMap;
    double X0;
    double DX;
    double Anchor;
    double Direction;

    double operator()(std::size_t Index) const
    {
        const double pixel = XMap.ToPixel(X0 + static_cast<double>(Index) * DX);
        return std::floor(Direction * (pixel - Anchor) + 0.5);
    }
    // The sample index where column Column begins, by inverting the mapping.
    double Guess(double Column) const
    {
        const double x = XMap.FromPixel(Anchor + Direction * (Column - 0.5));
        return std::ceil((x - X0) / DX);
    }
};

// The first index in [Lo, Count] whose column is at least Column. The inverted mapping is right
// nearly always; the search only repairs rounding and degenerate axes.
std::size_t ColumnStart(const ColumnOf& Of, std::size_t Lo, std::size_t Count, double Column)
{
    const double guess = Of.Guess(Column);
    std::size_t index = Lo;
    if (guess > static_cast<double>(Count)) {
        index = Count;
    } else if (guess > static_cast<double>(Lo)) {
        index = static_cast<std::size_t>(guess);
    }
    const bool startsHere = (index == Lo || Of(index - 1) < Column) && (index == Count || Of(index) >= Column);
    if (startsHere) return index;
    std::size_t lo = Lo;
    std::size_t hi = Count;
    while (lo < hi) {
        const std::size_t mid = lo + (hi - lo) / 2;
        if (Of(mid) < Column) {
            lo = mid + 1;
        } else {
            hi = mid;
        }
    }
    return lo;
}

// One lane of the hot loop: a select instead of a branch. NaN fails the comparison too.
template <bool Magnitude>
inline void Accumulate(double Raw, double& Lo, double& Hi)
{
    const double v = Magnitude ? std::fabs(Raw) : Raw;
    const bool drawable = std::fabs(Raw) < NoValueMarker;
    const double forMin = drawable ? v : Inf;
    const double forMax = drawable ? v : -Inf;
    Lo = forMin < Lo ? forMin : Lo;
    Hi = forMax > Hi ? forMax : Hi;
}

// Four independent lanes, so no lane waits for the previous sample's comparison.
template <bool Magnitude>
void ColumnMinMax(const double* Samples, std::size_t Begin, std::size_t End, double& Min, double& Max)
{
    double lo[4] = {Inf, Inf, Inf, Inf};
    double hi[4] = {-Inf, -Inf, -Inf, -Inf};
    std::size_t i = Begin;
    for (; i + 4 <= End; i += 4) {
        for (std::size_t lane = 0; lane < 4; ++lane) Accumulate<Magnitude>(Samples[i + lane], lo[lane], hi[lane]);
    }
    for (; i < End; ++i) Accumulate<Magnitude>(Samples[i], lo[0], hi[0]);
    Min = std::min(std::min(lo[0], lo[1]), std::min(lo[2], lo[3]));
    Max = std::max(std::max(hi[0], hi[1]), std::max(hi[2], hi[3]));
}

double Drawn(double Value, bool Magnitude)
{
    return Magnitude ? std::fabs(Value) : Value;
}

TQXEdgeSample EdgeSample(const double* Samples, std::size_t Index, std::size_t End, std::ptrdiff_t Step,
                         const ColumnOf& Of, bool Magnitude)
{
    for (std::size_t tried = 0; tried < EdgeSearch && Index != End; ++tried, Index += Step) {
        if (IsDrawableSample(Samples[Index])) {
            const double x = Of.X0 + static_cast<double>(Index) * Of.DX;
            return {true, Of.XMap.ToPixel(x), Drawn(Samples[Index], Magnitude)};
        }
    }
    return {};
}

}  // namespace

bool IsDrawableSample(double Value)
{
    // One comparison covers NaN, the infinities and the marker (of either sign).
    return std::fabs(Value) < NoValueMarker;
}

void DecimateCurve(const double* Samples, std::size_t Count, double X0, double DX, const TQXAxisMapping& XMap,
                   int Left, int Width, bool Magnitude, TQXDecimation& Out)
{
    Out.LeftEdge = {};
    Out.RightEdge = {};
    Out.Columns.resize(static_cast<std::size_t>(std::max(Width, 0)));
    std::fill(Out.Columns.begin(), Out.Columns.end(), TQXColumnRange{Inf, -Inf, 0.0, 0.0, 0});
    if (Width <= 0 || Samples == nullptr || Count == 0 || !(DX > 0.0) || !std::isfinite(DX) || !std::isfinite(X0))
        return;

    const double direction = XMap.Scale < 0.0 ? -1.0 : 1.0;
    const ColumnOf of{XMap, X0, DX, direction > 0.0 ? Left : Left + Width - 1.0, direction};
    const std::size_t first = ColumnStart(of, 0, Count, 0.0);
    std::size_t begin = first;
    for (int c = 0; c < Width; ++c) {
        const std::size_t end = ColumnStart(of, begin, Count, c + 1.0);
        TQXColumnRange& column = Out.Columns[direction > 0.0 ? c : Width - 1 - c];
        column.Count = static_cast<std::uint32_t>(std::min<std::size_t>(end - begin, UINT32_MAX));
        if (Magnitude) {
            ColumnMinMax<true>(Samples, begin, end, column.Min, column.Max);
        } else {
            ColumnMinMax<false>(Samples, begin, end, column.Min, column.Max);
        }
        if (column.Min <= column.Max) {
            std::size_t i = begin;
            while (!IsDrawableSample(Samples[i])) ++i;
            column.First = Drawn(Samples[i], Magnitude);
            i = end - 1;
            while (!IsDrawableSample(Samples[i])) --i;
            column.Last = Drawn(Samples[i], Magnitude);
        }
        begin = end;
    }

    // Samples before `first` lie on the small-x side, those from `begin` on the other.
    const TQXEdgeSample before =
        first > 0 ? EdgeSample(Samples, first - 1, static_cast<std::size_t>(-1), -1, of, Magnitude) : TQXEdgeSample{};
    const TQXEdgeSample after = EdgeSample(Samples, begin, Count, 1, of, Magnitude);
    Out.LeftEdge = direction > 0.0 ? before : after;
    Out.RightEdge = direction > 0.0 ? after : before;
}

bool DrawableRange(const double* Samples, std::size_t Count, bool Magnitude, bool PositiveOnly, double& Min,
                   double& Max)
{
    double lo = Inf;
    double hi = -Inf;
    for (std::size_t i = 0; i < Count; ++i) {
        const double v = Drawn(Samples[i], Magnitude);
        const bool use = IsDrawableSample(Samples[i]) && (!PositiveOnly || v > 0.0);
        lo = use && v < lo ? v : lo;
        hi = use && v > hi ? v : hi;
    }
    if (lo > hi) return false;
    Min = lo;
    Max = hi;
    return true;
}

}  // namespace qx
