#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"
#include "qxbase/measure/trigger_detector.h"

namespace qx {

enum TKSTriggerMode : std::uint8_t {
    tmNormal,         // one buffer per trigger
    tmChartRecorder,  // after a trigger, consecutive buffers until the stop trigger
};

enum TRVTriggerState : std::uint8_t {
    qxtsFillPreTrigger,
    qxtsWaitForTrigger,
    qxtsFillTrigger,
    qxtsTriggerDone,
};

// "Data format is invalid" or "TriggerChannel is invalid".
class QXBASE_EXPORT TRVTriggerException : public Exception {
public:
    using Exception::Exception;
};

class TRVTrigger;

using TRVTriggerNotifyEvent = std::function<void(TRVTrigger* Sender)>;
// A finished buffer: the definitions describe it, StartTime is the time of its first sample
// on the trigger channel (NoValueMarker when that sample came without one). The receiver
// takes over the block buffers (SendData does); any buffer still in Data or TimeChannel when
// the handler returns is freed by the trigger.
using TRVTriggerCaptureEvent =
    std::function<void(const TRVShortdefs& Shortdefs, TRVDataDoubleArray& Data,
                       TRVDataDoubleArray& TimeChannel, double StartTime)>;

// Captures buffers of a fixed length from a stream of block sets: the pre-trigger samples
// before a trigger sample on the trigger channel, the trigger sample and the samples after
// it. Every channel of a set is captured at the same positions; a channel whose block does
// not have the trigger channel's sample count cannot be placed and is captured as the
// no-value marker. A channel's time block in a capture holds the times of its samples when
// every one of them, the pre-trigger part included, came with a time; otherwise it is empty
// (no buffer, count 0). A set may lack time blocks (fewer than channels, or one shorter than
// its data block): those channels' samples come without times. Captures go to OnCapture;
// without a receiver their buffers serve the next.
//
// Scanning resumes with the sample after a capture, so every sample is scanned once and a
// capture's pre-trigger part may hold the end of the previous capture. In chart-recorder mode
// a trigger starts a run of consecutive buffers that ends with the buffer in which the stop
// trigger channel crosses (same type and level as the trigger), or with Reset.
//
// Not reentrant: a ProcessData call from inside one of its own handlers is ignored. A setting
// that resets the state, changed from inside a handler, drops the rest of the current block. A
// handler may destroy the trigger (its owner's receiver may delete the owner): the call then
// returns at once.
class QXBASE_EXPORT TRVTrigger {
public:
    TRVTrigger() = default;
    ~TRVTrigger();
    TRVTrigger(const TRVTrigger&) = delete;
    TRVTrigger& operator=(const TRVTrigger&) = delete;

    std::int32_t GetTriggerChannel() const noexcept { return FTriggerChannel; }
    void SetTriggerChannel(std::int32_t Value) noexcept { FTriggerChannel = Value; }
    TRVTriggerType GetTriggerType() const noexcept { return FTriggerType; }
    // A new type disarms the crossing detector.
    void SetTriggerType(TRVTriggerType Value) noexcept;
    double GetLevel() const noexcept { return FLevel; }
    // NaN is ignored.
    void SetLevel(double Value) noexcept;
    // The slope limits are these fractions of the trigger channel's range (YMax - YMin of its
    // definition; 1 when that is 0 or not finite): the low one for all slope types, the high
    // one for the top of trtRangeSlope's window. Negative or non-finite values are ignored.
    float GetLowSlopeTolerance() const noexcept { return FLowSlopeTolerance; }
    void SetLowSlopeTolerance(float Value) noexcept;
    float GetHighSlopeTolerance() const noexcept { return FHighSlopeTolerance; }
    void SetHighSlopeTolerance(float Value) noexcept;
    bool GetSingleShot() const noexcept { return FSingleShot; }
    // Switching single shot on arms a new single shot.
    void SetSingleShot(bool Value) noexcept;
    std::int32_t GetPreTrigger() const noexcept { return FPreTrigger; }
    // Ignored from MaxBlockSamples on. When Value >= buffer size, the buffer size becomes the
    // previous pre-trigger + 1 (at least 1); then the state reset. The pre-trigger may so end
    // up at or above the buffer size: a capture then holds the buffer-size samples that start
    // pre-trigger samples before the trigger sample, and scanning goes on after it.
    void SetPreTrigger(std::int32_t Value);
    std::int32_t GetBufferSize() const noexcept { return FBufferSize; }
    // Ignored unless 2 < Value <= MaxBlockSamples; a pre-trigger at or above the new size
    // becomes size - 1. Then the state reset.
    void SetBufferSize(std::int32_t Value);
    // Sets both at once, as stored, so that a pair that SetPreTrigger's rule left (pre-trigger
    // at or above the buffer size, a buffer of 1 or 2) reads back unchanged. Ignored unless
    // 1 <= BufferSize <= MaxBlockSamples and PreTrigger < MaxBlockSamples. Then the state reset.
    void RestoreSizes(std::int32_t PreTrigger, std::int32_t BufferSize);
    // Kept for the owner; a capture always holds buffer size samples.
    std::int32_t GetPostTrigger() const noexcept { return FPostTrigger; }
    void SetPostTrigger(std::int32_t Value) noexcept { FPostTrigger = Value; }
    TKSTriggerMode GetTriggerMode() const noexcept { return FTriggerMode; }
    void SetTriggerMode(TKSTriggerMode Value) noexcept { FTriggerMode = Value; }
    // The channel whose crossing (with the trigger's type and level) ends a chart-recorder
    // run; negative for none. Resets.
    std::int32_t GetStopTriggerChannel() const noexcept { return FStopTriggerChannel; }
    void SetStopTriggerChannel(std::int32_t Value);

    // The state reset, clears the single-shot done flag, and sends the stop event when a
    // capture or run was started.
    void Reset();
    // Arms a new single shot. Raises TRVTriggerException "TriggerChannel is invalid" when the
    // trigger channel is negative or, once block sets have arrived, not below their channel
    // count; the trigger is then unchanged.
    void StartSingleShot();
    // Clears the capture-finished flag, so qxtsTriggerDone after a capture is reported once.
    TRVTriggerState GetTriggerState();

    // Feeds one block set. Does nothing when the trigger channel is not a position in
    // Shortdefs; a set whose trigger-channel block is empty only updates the definitions, and
    // one with another channel count than the last restarts the pre-fill. Raises
    // TRVTriggerException, before anything changes:
    //   "Data format is invalid" when Data does not have one block per definition, or a data
    //   block or a channel's time block has a negative count or no buffer for its count;
    //   "TriggerChannel is invalid" in chart-recorder mode when the stop trigger channel is set
    //   but not below the channel count.
    void ProcessData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                     const TRVDataDoubleArray& TimeChannel);

    // Sets the started flag and calls OnStart, unless it is set already.
    void SendStartEvent();
    // Clears the started flag and calls OnStop, only when it is set.
    void SendStopEvent();
    bool GetStarted() const noexcept { return FStarted; }

    // Definitions of the last block set, rewritten to describe a captured buffer.
    const TRVShortdefs& GetShortdefs() const noexcept { return FShortdefs; }

    TRVTriggerCaptureEvent OnCapture;
    TRVTriggerNotifyEvent OnStart;
    TRVTriggerNotifyEvent OnStop;

private:
    // Where the current block set stands; lives for one ProcessData call.
    struct TBlockCursor {
        std::int32_t Count = 0;     // samples of the trigger channel's block
        std::int32_t Position = 0;  // next sample not yet consumed
        const double* TriggerData = nullptr;
        const double* TriggerTime = nullptr;
        const double* StopData = nullptr;  // null while no stop channel is watched
        const double* StopTime = nullptr;
    };

    void StateReset() noexcept;
    void RedimensionStore(std::size_t Channels);
    void PrepareSources(const TRVDataDoubleArray& Data, const TRVDataDoubleArray& TimeChannel,
                        std::int32_t Count);
    void TriggerOnData();
    bool FillPreTrigger();
    bool WaitForTrigger();
    bool FillTrigger();
    bool FillTriggerChartRecorder();
    void FillCapture(bool WatchStop);
    void EnsureCaptureBuffers();
    bool HandOnCapture();
    void AppendToStore(std::int32_t From, std::int32_t To) noexcept;
    // False once a handler has reset the state during this call.
    bool Unchanged() const noexcept { return FGeneration == FLoopGeneration; }
    // Calls a handler; false when it destroyed the trigger (then nothing of it may be touched)
    // or reset the state.
    template <class F>
    bool SurvivesHandler(F&& Call);

    // Settings
    std::int32_t FTriggerChannel = 0;
    // Deliberately not a crossing type: with equal tolerances its window is empty, so a new
    // trigger finds nothing until a type is set.
    TRVTriggerType FTriggerType = trtRangeSlope;
    double FLevel = 0;
    float FLowSlopeTolerance = 0.01f;
    float FHighSlopeTolerance = 0.01f;
    bool FSingleShot = false;
    std::int32_t FPreTrigger = 0;
    std::int32_t FBufferSize = 1024;
    std::int32_t FPostTrigger = 0;
    TKSTriggerMode FTriggerMode = tmNormal;
    std::int32_t FStopTriggerChannel = -1;

    // Run-time state
    bool FSingleShotDone = false;
    bool FTriggered = false;
    bool FPreFillComplete = false;
    bool FCaptureFinished = false;
    bool FStarted = false;
    bool FStopPending = false;   // the stop trigger came; the run ends with this buffer
    bool FRefillStore = false;   // the store predates a pause in single-shot mode
    bool FCaptureTookBlock = false;  // the capture reached the trigger sample
    bool* FGone = nullptr;  // while ProcessData runs: set when the trigger is destroyed
    std::int32_t FPreFillCount = 0;
    std::int32_t FFillPosition = 0;  // next position in the capture buffer
    std::int32_t FStoreToCapture = 0;  // store samples that still go into the capture
    std::int32_t FChannelCount = -1;   // channels of the last block set; -1 before any
    std::uint32_t FGeneration = 0;     // counts state resets, so handlers' resets are seen
    std::uint32_t FLoopGeneration = 0;
    TRVTriggerDetector FDetector;
    TRVTriggerDetector FStopDetector;
    TRVShortdefs FShortdefs;

    // Pre-trigger store: per channel the pre-trigger samples that precede the next unscanned
    // sample (once the pre-fill is complete), oldest first.
    std::vector<std::vector<double>> FStoreData;
    std::vector<std::vector<double>> FStoreTime;
    // Per channel, how many of the newest store samples came with a time.
    std::vector<std::int32_t> FStoreTimeRun;
    // Per channel, whether a sample of the capture being filled came without a time.
    std::vector<std::uint8_t> FCaptureTimeMissing;
    // The capture being filled; buffers from AllocBlockBuffer.
    TRVDataDoubleArray FCaptureData;
    TRVDataDoubleArray FCaptureTime;

    // The current block set, per channel; null for a channel that cannot be placed.
    std::vector<const double*> FSourceData;
    std::vector<const double*> FSourceTime;
    TBlockCursor FCursor;
    std::int32_t FActiveTriggerChannel = 0;
    std::int32_t FActiveStopChannel = -1;
    double FTriggerRange = 1;
    double FStopRange = 1;
};

}  // namespace qx
