#include "qxbase/chart/chart_ticks.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "qxbase/chart/chart_mapping.h"
#include "qxbase/chart/eng_units.h"

namespace qx {

namespace {

// Tolerance, in steps, for ticks that land on a limit up to rounding.
constexpr double StepSlack = 1e-9;

// How many MinSpacing fit into the axis, not rounded: a step only needs to be that wide.
double TickIntervals(double PixelLength, double MinSpacing)
{
    const double n = PixelLength / MinSpacing;
    if (!(n >= 1.0)) return 1.0;  // also NaN
    return std::min(n, 1000.0);
}

void AppendMultiples(double Lo, double Hi, double Step, std::vector<double>& Ticks)
{
    const double first = std::ceil(Lo / Step - StepSlack);
    const double last = std::floor(Hi / Step + StepSlack);
    for (double k = first; k <= last; k += 1.0) {
        const double value = k * Step;
        // k * step leaves noise where zero is meant ("-1.4e-17").
        Ticks.push_back(std::fabs(value) < Step * StepSlack ? 0.0 : value);
    }
}

// True when the range is empty or too narrow for the doubles around it to tell ticks apart.
bool PushMiddleIfDegenerate(double Lo, double Hi, std::vector<double>& Ticks)
{
    const double halfSpan = Hi / 2.0 - Lo / 2.0;
    if (halfSpan > std::max(std::fabs(Lo), std::fabs(Hi)) * 1e-13) return false;
    Ticks.push_back(Lo / 2.0 + Hi / 2.0);
    return true;
}

void LinearTicks(double Lo, double Hi, double Intervals, std::vector<double>& Ticks)
{
    if (PushMiddleIfDegenerate(Lo, Hi, Ticks)) return;
    const double step = RoundTickStep((Hi / 2.0 - Lo / 2.0) / Intervals * 2.0);
    if (step == 0.0 || !std::isfinite(step)) {
        Ticks.push_back(Lo);
        Ticks.push_back(Hi);
        return;
    }
    AppendMultiples(Lo, Hi, step, Ticks);
}

void LogTicks(double Lo, double Hi, double PixelLength, double MinSpacing, std::vector<double>& Ticks)
{
    SaneLogLimits(Lo, Hi);
    if (PushMiddleIfDegenerate(Lo, Hi, Ticks)) return;
    const double l0 = std::log10(Lo);
    const double l1 = std::log10(Hi);
    const double firstDecade = std::ceil(l0 - StepSlack);
    const double lastDecade = std::floor(l1 + StepSlack);
    if (lastDecade < firstDecade) {
        // Inside one decade: plain round values read better than none.
        LinearTicks(Lo, Hi, TickIntervals(PixelLength, MinSpacing), Ticks);
        return;
    }
    const double pixelsPerDecade = std::isfinite(PixelLength) ? PixelLength / (l1 - l0) : 0.0;
    // 1, 2 and 5 are log10(2) = 0.3 of a decade apart at the closest.
    const bool withTwoAndFive = pixelsPerDecade * std::log10(2.0) >= MinSpacing;
    const double every = pixelsPerDecade > 0.0 ? std::max(1.0, std::ceil(MinSpacing / pixelsPerDecade)) : 1.0;
    const double lo = Lo * (1.0 - StepSlack);
    const double hi = Hi * (1.0 + StepSlack);
    for (double decade = std::floor(l0); decade <= lastDecade; decade += 1.0) {
        const double power = std::pow(10.0, decade);
        if (withTwoAndFive) {
            for (double factor : {1.0, 2.0, 5.0}) {
                const double value = factor * power;
                if (value >= lo && value <= hi) Ticks.push_back(value);
            }
        } else if (std::fmod(decade, every) == 0.0 && power >= lo && power <= hi) {
            Ticks.push_back(power);
        }
    }
    // Every n-th decade may skip all decades of a short range: keep its first one.
    if (Ticks.empty()) Ticks.push_back(std::pow(10.0, firstDecade));
}

void DateTimeTicks(double Lo, double Hi, double Intervals, std::vector<double>& Ticks)
{
    if (PushMiddleIfDegenerate(Lo, Hi, Ticks)) return;
    const double raw = (Hi / 2.0 - Lo / 2.0) / Intervals * 2.0;
    // Seconds, minutes, hours, days and a week as a clock reader expects them.
    static constexpr double ClockSteps[] = {1,    2,    5,     10,    15,    30,    60,     120,    300,   600,
                                            900,  1800, 3600,  7200,  10800, 21600, 43200,  86400,  172800,
                                            604800};
    double step = 0.0;
    if (raw < 1.0) {
        step = RoundTickStep(raw);
    } else {
        const auto* found = std::lower_bound(std::begin(ClockSteps), std::end(ClockSteps), raw);
        step = found != std::end(ClockSteps) ? *found : RoundTickStep(raw / 86400.0) * 86400.0;
    }
    if (step == 0.0 || !std::isfinite(step)) {
        Ticks.push_back(Lo);
        Ticks.push_back(Hi);
        return;
    }
    AppendMultiples(Lo, Hi, step, Ticks);
}

QString WithPrefix(const QString& Number, int Exponent)
{
    return Exponent == 0 ? Number : Number + QLatin1Char(' ') + GetEngUnitString(Exponent);
}

void LinearLabels(const std::vector<double>& Ticks, QStringList& Labels)
{
    double largest = 0.0;
    for (double tick : Ticks) largest = std::max(largest, std::fabs(tick));
    const int exponent = EngineeringExponent(largest);
    const double scale = std::pow(10.0, exponent);
    if (Ticks.size() == 1) {
        Labels.append(WithPrefix(QString::number(Ticks[0] / scale, 'g', 6), exponent));
        return;
    }
    double step = HUGE_VAL;
    for (std::size_t i = 1; i < Ticks.size(); ++i) step = std::min(step, std::fabs(Ticks[i] - Ticks[i - 1]));
    const double decimals = std::ceil(-std::log10(step / scale) - StepSlack);
    const int digits = std::isfinite(decimals) ? static_cast<int>(std::clamp(decimals, 0.0, 17.0)) : 0;
    const double zeroBelow = 0.5 * std::pow(10.0, -digits);
    for (double tick : Ticks) {
        double scaled = tick / scale;
        if (std::fabs(scaled) < zeroBelow) scaled = 0.0;  // no "-0.0"
        Labels.append(WithPrefix(QString::number(scaled, 'f', digits), exponent));
    }
}

QString DateTimeLabel(double Seconds, const QString& TimeFormat)
{
    if (!std::isfinite(Seconds)) return {};
    // Some 3 million years either way: far beyond any recording, within what QDateTime holds.
    const double clamped = std::clamp(Seconds, -1e14, 1e14);
    const auto msecs = static_cast<qint64>(std::llround(clamped * 1000.0));
    return QDateTime::fromMSecsSinceEpoch(msecs, QTimeZone::utc()).toString(TimeFormat);
}

}  // namespace

double RoundTickStep(double Raw)
{
    if (!(Raw > 0.0) || !std::isfinite(Raw)) return 0.0;
    const double magnitude = std::pow(10.0, std::floor(std::log10(Raw)));
    const double normalized = Raw / magnitude;
    if (magnitude == 0.0 || !std::isfinite(normalized)) return Raw;
    // The slack keeps 2.0000000001 (from a division) at 2.
    if (normalized <= 1.0 + StepSlack) return magnitude;
    if (normalized <= 2.0 + StepSlack) return 2.0 * magnitude;
    if (normalized <= 5.0 + StepSlack) return 5.0 * magnitude;
    return 10.0 * magnitude;
}

void ComputeTicks(TQXTickKind Kind, double Min, double Max, double PixelLength, double MinSpacing,
                  std::vector<double>& Ticks)
{
    Ticks.clear();
    if (!std::isfinite(Min) || !std::isfinite(Max)) return;
    const double lo = std::min(Min, Max);
    const double hi = std::max(Min, Max);
    switch (Kind) {
    case tkLinear: LinearTicks(lo, hi, TickIntervals(PixelLength, MinSpacing), Ticks); break;
    case tkLogarithmic: LogTicks(lo, hi, PixelLength, MinSpacing, Ticks); break;
    case tkDateTime: DateTimeTicks(lo, hi, TickIntervals(PixelLength, MinSpacing), Ticks); break;
    }
}

void FormatTickLabels(TQXTickKind Kind, const std::vector<double>& Ticks, const QString& TimeFormat,
                      QStringList& Labels)
{
    Labels.clear();
    if (Ticks.empty()) return;
    switch (Kind) {
    case tkLinear: LinearLabels(Ticks, Labels); break;
    case tkLogarithmic:
        for (double tick : Ticks) {
            const int exponent = EngineeringExponent(tick);
            Labels.append(WithPrefix(QString::number(tick / std::pow(10.0, exponent), 'g', 6), exponent));
        }
        break;
    case tkDateTime:
        for (double tick : Ticks) Labels.append(DateTimeLabel(tick, TimeFormat));
        break;
    }
}

}  // namespace qx
