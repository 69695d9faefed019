// The trigger's state machine: pre-fill, scan, and filling the capture buffers.
//
// Positions: FCursor.Position is the next sample of the current block not yet consumed. Once
// the pre-fill is complete, the store holds the pre-trigger samples just before it, so a
// trigger finds its pre-trigger part there and scanning can resume right after a capture.

#include <algorithm>
#include <cstring>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/trigger.h"

namespace qx {

namespace {

// Copies Count samples from Source + From; a channel that cannot be placed gives no-values.
void CopySamples(const double* Source, std::int32_t From, std::int32_t Count,
                 double* Target) noexcept
{
    if (Count <= 0) return;
    if (Source)
        std::memcpy(Target, Source + From, static_cast<std::size_t>(Count) * sizeof(double));
    else
        std::fill_n(Target, Count, NoValueMarker);
}

// Keeps the last Size samples of the store followed by Source[From, To).
void ShiftIntoStore(double* Store, std::int32_t Size, const double* Source, std::int32_t From,
                    std::int32_t To) noexcept
{
    const std::int32_t count = To - From;
    if (count >= Size) {
        CopySamples(Source, To - Size, Size, Store);
        return;
    }
    std::memmove(Store, Store + count, static_cast<std::size_t>(Size - count) * sizeof(double));
    CopySamples(Source, From, count, Store + (Size - count));
}

}  // namespace

template <class F>
bool TRVTrigger::SurvivesHandler(F&& Call)
{
    const bool* const gone = FGone;
    Call();
    return !*gone && Unchanged();
}

void TRVTrigger::TriggerOnData()
{
    if (FSingleShot && FSingleShotDone) {
        if (FCursor.Position < FCursor.Count) FRefillStore = true;
        return;
    }
    FLoopGeneration = FGeneration;
    if (FRefillStore) {
        // The store holds samples from before the pause: pre-trigger samples must be the
        // ones just before the trigger, so fill it again.
        FRefillStore = false;
        FPreFillComplete = false;
        FPreFillCount = 0;
        FDetector.Disarm();
    }
    bool more = FCursor.Position < FCursor.Count;
    while (more && !(FSingleShot && FSingleShotDone)) {
        if (!FTriggered)
            more = FPreTrigger < 1 || FPreFillComplete ? WaitForTrigger() : FillPreTrigger();
        else if (FTriggerMode == tmChartRecorder)
            more = FillTriggerChartRecorder();
        else
            more = FillTrigger();
    }
    // A single shot that ended before the end of the block leaves the rest unscanned, so the
    // store no longer ends just before the next sample. A shot re-armed from a handler goes on
    // scanning and keeps it.
    if (more) FRefillStore = true;
}

bool TRVTrigger::FillPreTrigger()
{
    const std::int32_t from = FCursor.Position;
    const std::int32_t count = std::min(FPreTrigger - FPreFillCount, FCursor.Count - from);
    if (FPreFillCount == 0) std::fill(FStoreTimeRun.begin(), FStoreTimeRun.end(), 0);
    for (std::size_t i = 0; i < FSourceData.size(); ++i) {
        CopySamples(FSourceData[i], from, count, FStoreData[i].data() + FPreFillCount);
        // The time block's length is that of the data block of the same index.
        CopySamples(FSourceTime[i], from, count, FStoreTime[i].data() + FPreFillCount);
        FStoreTimeRun[i] = FSourceTime[i] ? FStoreTimeRun[i] + count : 0;
    }
    FPreFillCount += count;
    FCursor.Position += count;
    if (FPreFillCount >= FPreTrigger) FPreFillComplete = true;
    return FCursor.Position < FCursor.Count;
}

void TRVTrigger::AppendToStore(std::int32_t From, std::int32_t To) noexcept
{
    if (FPreTrigger < 1 || To <= From) return;
    for (std::size_t i = 0; i < FSourceData.size(); ++i) {
        ShiftIntoStore(FStoreData[i].data(), FPreTrigger, FSourceData[i], From, To);
        ShiftIntoStore(FStoreTime[i].data(), FPreTrigger, FSourceTime[i], From, To);
        FStoreTimeRun[i] = FSourceTime[i] ? std::min(FStoreTimeRun[i] + (To - From), FPreTrigger) : 0;
    }
}

bool TRVTrigger::WaitForTrigger()
{
    FDetector.Setup(FTriggerType, FLevel, FLowSlopeTolerance * FTriggerRange,
                    FHighSlopeTolerance * FTriggerRange);
    const double* scan = FTriggerType == trtTime ? FCursor.TriggerTime : FCursor.TriggerData;
    const std::int32_t from = FCursor.Position;
    const std::int32_t found = FDetector.ScanForTrigger(scan, from, FCursor.Count);
    AppendToStore(from, found);
    FCursor.Position = found;
    if (found >= FCursor.Count) return false;

    FTriggered = true;
    FCaptureTookBlock = false;
    FFillPosition = 0;
    FStoreToCapture = std::max(FPreTrigger, 0);
    FStopPending = false;
    FStopDetector.Disarm();
    return SurvivesHandler([this] { SendStartEvent(); });
}

void TRVTrigger::FillCapture(bool WatchStop)
{
    const std::size_t channels = FSourceData.size();
    if (FFillPosition == 0) {
        EnsureCaptureBuffers();
        // The pre-trigger part is the whole store; one sample there without a time is enough.
        for (std::size_t i = 0; i < channels; ++i)
            FCaptureTimeMissing[i] = FStoreToCapture > 0 && FStoreTimeRun[i] < FPreTrigger;
    }
    if (FStoreToCapture > 0) {
        const std::int32_t count = std::min(FStoreToCapture, FBufferSize - FFillPosition);
        const std::int32_t from = FPreTrigger - FStoreToCapture;
        for (std::size_t i = 0; i < channels; ++i) {
            CopySamples(FStoreData[i].data(), from, count, FCaptureData[i].data + FFillPosition);
            CopySamples(FStoreTime[i].data(), from, count, FCaptureTime[i].data + FFillPosition);
        }
        FFillPosition += count;
        FStoreToCapture -= count;
    }
    if (FFillPosition >= FBufferSize || FStoreToCapture > 0) return;

    const std::int32_t from = FCursor.Position;
    const std::int32_t count = std::min(FBufferSize - FFillPosition, FCursor.Count - from);
    if (WatchStop && !FStopPending) {
        FStopDetector.Setup(FTriggerType, FLevel, FLowSlopeTolerance * FStopRange,
                            FHighSlopeTolerance * FStopRange);
        const double* scan = FTriggerType == trtTime ? FCursor.StopTime : FCursor.StopData;
        if (scan && FStopDetector.ScanForTrigger(scan, from, from + count) < from + count)
            FStopPending = true;
    }
    for (std::size_t i = 0; i < channels; ++i) {
        CopySamples(FSourceData[i], from, count, FCaptureData[i].data + FFillPosition);
        CopySamples(FSourceTime[i], from, count, FCaptureTime[i].data + FFillPosition);
        FCaptureTimeMissing[i] |= static_cast<std::uint8_t>(count > 0 && !FSourceTime[i]);
    }
    AppendToStore(from, from + count);
    FCursor.Position += count;
    FFillPosition += count;
    FCaptureTookBlock = true;
}

bool TRVTrigger::FillTrigger()
{
    FillCapture(false);
    if (FFillPosition < FBufferSize) return FCursor.Position < FCursor.Count;

    FTriggered = false;
    FCaptureFinished = true;
    FFillPosition = 0;
    if (!FCaptureTookBlock) {
        // The capture ended before the trigger sample; scanning goes on after it.
        FStoreToCapture = 0;
        AppendToStore(FCursor.Position, FCursor.Position + 1);
        ++FCursor.Position;
    }
    if (FSingleShot) FSingleShotDone = true;
    if (!HandOnCapture() || !SurvivesHandler([this] { SendStopEvent(); })) return false;
    return FCursor.Position < FCursor.Count;
}

bool TRVTrigger::FillTriggerChartRecorder()
{
    FillCapture(FActiveStopChannel >= 0);
    if (FFillPosition < FBufferSize) return FCursor.Position < FCursor.Count;

    FCaptureFinished = true;
    FFillPosition = 0;
    const bool endRun = FStopPending;
    if (endRun) {
        FTriggered = false;
        FStopPending = false;
        if (FSingleShot) FSingleShotDone = true;
    }
    if (!HandOnCapture()) return false;
    if (endRun && !SurvivesHandler([this] { SendStopEvent(); })) return false;
    return FCursor.Position < FCursor.Count;
}

bool TRVTrigger::HandOnCapture()
{
    const TRVTriggerCaptureEvent handler = OnCapture;  // the handler may replace OnCapture
    if (!handler) return true;  // no receiver: the buffers serve the next capture
    const double startTime =
        FCaptureTime[static_cast<std::size_t>(FActiveTriggerChannel)].data[0];

    // The receiver takes over the buffers; whatever it leaves is freed here, also when it
    // raises.
    struct THandedOn {
        TRVDataDoubleArray Data;
        TRVDataDoubleArray Time;
        ~THandedOn()
        {
            FreeDataDoubleArray(Data);
            FreeDataDoubleArray(Time);
        }
    } handedOn{std::move(FCaptureData), std::move(FCaptureTime)};
    FCaptureData.clear();
    // A time block with samples that came without a time goes out empty; its buffer stays.
    FCaptureTime.assign(handedOn.Time.size(), TRVDataDouble{});
    for (std::size_t i = 0; i < handedOn.Time.size(); ++i)
        if (FCaptureTimeMissing[i] != 0) std::swap(FCaptureTime[i], handedOn.Time[i]);
    return SurvivesHandler([&] { handler(FShortdefs, handedOn.Data, handedOn.Time, startTime); });
}

}  // namespace qx
