#include "qxbase/measure/trigger.h"

#include <algorithm>
#include <cmath>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/resources/measure_texts.h"

namespace qx {

namespace {

bool IsValidBlock(const TRVDataDouble& Block) noexcept
{
    return Block.count >= 0 && (Block.count == 0 || Block.data != nullptr);
}

// The span that the slope tolerances are fractions of.
double ChannelRange(const TRVShortdef& Def) noexcept
{
    const double range = std::fabs(Def.YMax - Def.YMin);
    return range > 0 && std::isfinite(range) ? range : 1.0;
}

bool IsChannelOf(std::int32_t Channel, std::size_t Count) noexcept
{
    return Channel >= 0 && static_cast<std::size_t>(Channel) < Count;
}

}  // namespace

TRVTrigger::~TRVTrigger()
{
    if (FGone) *FGone = true;
    FreeDataDoubleArray(FCaptureData);
    FreeDataDoubleArray(FCaptureTime);
}

void TRVTrigger::SetTriggerType(TRVTriggerType Value) noexcept
{
    if (Value != FTriggerType) FDetector.Disarm();
    FTriggerType = Value;
}

void TRVTrigger::SetLevel(double Value) noexcept
{
    if (!std::isnan(Value)) FLevel = Value;
}

void TRVTrigger::SetLowSlopeTolerance(float Value) noexcept
{
    if (Value >= 0 && std::isfinite(Value)) FLowSlopeTolerance = Value;
}

void TRVTrigger::SetHighSlopeTolerance(float Value) noexcept
{
    if (Value >= 0 && std::isfinite(Value)) FHighSlopeTolerance = Value;
}

void TRVTrigger::SetSingleShot(bool Value) noexcept
{
    if (Value && !FSingleShot) FSingleShotDone = false;
    FSingleShot = Value;
}

void TRVTrigger::SetPreTrigger(std::int32_t Value)
{
    if (Value >= MaxBlockSamples) return;  // so that Value + 1 is still a buffer size
    // Deliberately from the previous pre-trigger, not from Value.
    if (Value >= FBufferSize) FBufferSize = std::max(FPreTrigger, 0) + 1;
    FPreTrigger = Value;
    StateReset();
}

void TRVTrigger::SetBufferSize(std::int32_t Value)
{
    if (Value <= 2 || Value > MaxBlockSamples) return;
    FBufferSize = Value;
    if (Value <= FPreTrigger) FPreTrigger = Value - 1;
    StateReset();
}

void TRVTrigger::RestoreSizes(std::int32_t PreTrigger, std::int32_t BufferSize)
{
    if (BufferSize < 1 || BufferSize > MaxBlockSamples || PreTrigger >= MaxBlockSamples) return;
    FPreTrigger = PreTrigger;
    FBufferSize = BufferSize;
    StateReset();
}

void TRVTrigger::SetStopTriggerChannel(std::int32_t Value)
{
    FStopTriggerChannel = Value;
    Reset();
}

void TRVTrigger::StateReset() noexcept
{
    FTriggered = false;
    FPreFillComplete = false;
    FCaptureFinished = false;
    FStopPending = false;
    FRefillStore = false;
    FDetector.Disarm();
    FStopDetector.Disarm();
    FPreFillCount = 0;
    FFillPosition = 0;
    FStoreToCapture = 0;
    ++FGeneration;
}

void TRVTrigger::Reset()
{
    StateReset();
    FSingleShotDone = false;
    SendStopEvent();
}

void TRVTrigger::StartSingleShot()
{
    if (FTriggerChannel < 0 || (FChannelCount >= 0 && FTriggerChannel >= FChannelCount))
        throw TRVTriggerException(res::_rsInvalidTriggerChannel.Text());
    FSingleShotDone = false;
}

TRVTriggerState TRVTrigger::GetTriggerState()
{
    TRVTriggerState state = qxtsFillPreTrigger;
    if (FTriggered)
        state = qxtsFillTrigger;
    else if (FPreTrigger < 1 || FPreFillComplete)
        state = (FSingleShot && FSingleShotDone) || FCaptureFinished ? qxtsTriggerDone
                                                                     : qxtsWaitForTrigger;
    FCaptureFinished = false;
    return state;
}

void TRVTrigger::SendStartEvent()
{
    if (FStarted) return;
    FStarted = true;
    const TRVTriggerNotifyEvent handler = OnStart;  // the handler may replace OnStart
    if (handler) handler(this);
}

void TRVTrigger::SendStopEvent()
{
    if (!FStarted) return;
    FStarted = false;
    const TRVTriggerNotifyEvent handler = OnStop;
    if (handler) handler(this);
}

void TRVTrigger::ProcessData(const TRVShortdefs& Shortdefs, const TRVDataDoubleArray& Data,
                             const TRVDataDoubleArray& TimeChannel)
{
    const std::size_t channels = Shortdefs.size();
    if (FGone || !IsChannelOf(FTriggerChannel, channels)) return;

    // A channel may come without a time block (a spectrum, fewer time blocks than channels, a
    // time block too short): it is captured without one. Only what cannot be read is refused.
    if (Data.size() != channels) throw TRVTriggerException(res::_rsInvalidData.Text());
    for (std::size_t i = 0; i < channels; ++i) {
        if (!IsValidBlock(Data[i]) || (i < TimeChannel.size() && !IsValidBlock(TimeChannel[i])))
            throw TRVTriggerException(res::_rsInvalidData.Text());
    }
    const bool watchStop = FTriggerMode == tmChartRecorder && FStopTriggerChannel >= 0;
    if (watchStop && !IsChannelOf(FStopTriggerChannel, channels))
        throw TRVTriggerException(res::_rsInvalidTriggerChannel.Text());

    bool gone = false;
    FGone = &gone;
    struct TProcessingGuard {
        bool*& Flag;
        const bool& Gone;
        ~TProcessingGuard()
        {
            if (!Gone) Flag = nullptr;
        }
    } guard{FGone, gone};

    FShortdefs.resize(channels);
    for (std::size_t i = 0; i < channels; ++i) {
        TRVShortdef& def = FShortdefs[i];
        if (Data[i].count == 0) {
            def.XEnd = 0;
            continue;
        }
        def = Shortdefs[i];
        def.XEnd = def.XStart + static_cast<double>(FBufferSize) * (def.XEnd - def.XStart) /
                                    static_cast<double>(Data[i].count);
    }

    if (static_cast<std::int32_t>(channels) != FChannelCount) {
        const bool first = FChannelCount < 0;
        FChannelCount = static_cast<std::int32_t>(channels);
        if (!first) {
            // A store of other channels does not continue this stream.
            StateReset();
            const std::uint32_t generation = FGeneration;
            SendStopEvent();
            if (gone || generation != FGeneration) return;
        }
    }
    RedimensionStore(channels);

    FActiveTriggerChannel = FTriggerChannel;
    FActiveStopChannel = watchStop ? FStopTriggerChannel : -1;
    const auto trigger = static_cast<std::size_t>(FActiveTriggerChannel);
    FTriggerRange = ChannelRange(Shortdefs[trigger]);
    FCursor = TBlockCursor{};
    FCursor.Count = Data[trigger].count;
    PrepareSources(Data, TimeChannel, FCursor.Count);
    FCursor.TriggerData = Data[trigger].data;
    FCursor.TriggerTime = FSourceTime[trigger];
    if (FActiveStopChannel >= 0) {
        const auto stop = static_cast<std::size_t>(FActiveStopChannel);
        FStopRange = ChannelRange(Shortdefs[stop]);
        FCursor.StopData = FSourceData[stop];
        FCursor.StopTime = FSourceTime[stop];
    }
    TriggerOnData();
}

void TRVTrigger::RedimensionStore(std::size_t Channels)
{
    const auto pre = static_cast<std::size_t>(std::max(FPreTrigger, 0));
    FStoreData.resize(Channels);
    FStoreTime.resize(Channels);
    FStoreTimeRun.resize(Channels);
    FCaptureTimeMissing.resize(Channels);
    for (std::size_t i = 0; i < Channels; ++i) {
        if (FStoreData[i].size() != pre) FStoreData[i].resize(pre);
        if (FStoreTime[i].size() != pre) FStoreTime[i].resize(pre);
    }
    // A capture buffer of another size is of no further use; capture starts allocate anew.
    if (!FTriggered) {
        for (TRVDataDoubleArray* capture : {&FCaptureData, &FCaptureTime}) {
            for (TRVDataDouble& block : *capture)
                if (block.count != FBufferSize) FreeDataDouble(block);
        }
    }
}

void TRVTrigger::PrepareSources(const TRVDataDoubleArray& Data,
                                const TRVDataDoubleArray& TimeChannel, std::int32_t Count)
{
    const std::size_t channels = Data.size();
    FSourceData.resize(channels);
    FSourceTime.resize(channels);
    for (std::size_t i = 0; i < channels; ++i) {
        const bool placed = Count > 0 && Data[i].count == Count;
        const bool timed = placed && i < TimeChannel.size() && TimeChannel[i].count >= Count;
        FSourceData[i] = placed ? Data[i].data : nullptr;
        FSourceTime[i] = timed ? TimeChannel[i].data : nullptr;
    }
}

void TRVTrigger::EnsureCaptureBuffers()
{
    const auto channels = static_cast<std::size_t>(FChannelCount);
    for (TRVDataDoubleArray* capture : {&FCaptureData, &FCaptureTime}) {
        for (std::size_t i = channels; i < capture->size(); ++i) FreeDataDouble((*capture)[i]);
        capture->resize(channels);
        for (TRVDataDouble& block : *capture) {
            if (block.count == FBufferSize) continue;
            FreeDataDouble(block);
            block = NewDataDouble(FBufferSize);
        }
    }
}

}  // namespace qx
