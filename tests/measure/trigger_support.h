#pragma once

// Streams cut into block sets for the trigger, and a receiver that keeps what it captures.

#include <algorithm>
#include <cstdint>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/trigger.h"

namespace qx::test {

// Channels of equal length and one time channel shared by all of them.
struct TStream {
    std::vector<std::vector<double>> Data;
    std::vector<double> Time;
    int Size() const { return static_cast<int>(Time.size()); }
};

// One block set with its own buffers, freed when it goes, as a sending source frees them.
struct TBlockSet {
    TRVShortdefs Defs;
    TRVDataDoubleArray Data;
    TRVDataDoubleArray Time;
    TBlockSet() = default;
    TBlockSet(const TBlockSet&) = delete;
    ~TBlockSet()
    {
        FreeDataDoubleArray(Data);
        FreeDataDoubleArray(Time);
    }
};

inline TRVDataDouble BlockOf(const std::vector<double>& Samples, int From, int To)
{
    TRVDataDouble block = NewDataDouble(To - From);
    if (block.data) std::copy(Samples.begin() + From, Samples.begin() + To, block.data);
    return block;
}

// Samples [From, To) of every channel; the definitions give one axis unit per sample.
inline void MakeSet(TBlockSet& Set, const TStream& Stream, int From, int To)
{
    for (std::size_t c = 0; c < Stream.Data.size(); ++c) {
        TRVShortdef def;
        def.ChannelNo = static_cast<std::int32_t>(c);
        def.XStart = From;
        def.XEnd = To;
        def.YMin = -1;
        def.YMax = 1;
        Set.Defs.push_back(def);
        Set.Data.push_back(BlockOf(Stream.Data[c], From, To));
        Set.Time.push_back(BlockOf(Stream.Time, From, To));
    }
}

inline void Feed(TRVTrigger& Trigger, const TStream& Stream, int From, int To)
{
    TBlockSet set;
    MakeSet(set, Stream, From, To);
    Trigger.ProcessData(set.Defs, set.Data, set.Time);
}

// Feeds the stream cut at the given positions.
inline void FeedCut(TRVTrigger& Trigger, const TStream& Stream, const std::vector<int>& Cuts)
{
    int from = 0;
    for (int cut : Cuts) {
        Feed(Trigger, Stream, from, cut);
        from = cut;
    }
    Feed(Trigger, Stream, from, Stream.Size());
}

struct TCapture {
    TRVShortdefs Defs;
    std::vector<std::vector<double>> Data;
    std::vector<std::vector<double>> Time;
    double StartTime = 0;
};

// Copies every capture and frees its buffers, as a source's SendData would.
struct TCaptureLog {
    std::vector<TCapture> Captures;

    void Attach(TRVTrigger& Trigger)
    {
        Trigger.OnCapture = [this](const TRVShortdefs& Defs, TRVDataDoubleArray& Data,
                                   TRVDataDoubleArray& Time, double StartTime) {
            TCapture capture{Defs, {}, {}, StartTime};
            for (const TRVDataDouble& b : Data) capture.Data.emplace_back(b.data, b.data + b.count);
            for (const TRVDataDouble& b : Time) capture.Time.emplace_back(b.data, b.data + b.count);
            Captures.push_back(std::move(capture));
            FreeDataDoubleArray(Data);
            FreeDataDoubleArray(Time);
        };
    }
};

}  // namespace qx::test
