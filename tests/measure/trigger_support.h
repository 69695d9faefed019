#pragma once

// Streams cut into block sets for the trigger, and a receiver that keeps what it captures.

#include <algorithm>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/trigger.h"

namespace qx::test {

// Channels of equal length sharing one time channel.
struct TStream {
    std::vector<std::vector<double>> Data;
    std::vector<double> Time;
    int Size() const { return static_cast<int>(Time.size()); }
};

// Samples [From, To) of every channel, one axis unit per sample; the buffers are freed when
// the set goes, as a sending source frees them.
struct TBlockSet {
    TRVShortdefs Defs;
    TRVDataDoubleArray Data, Time;
    TBlockSet(const TStream& S, int From, int To)
    {
        auto block = [&](const std::vector<double>& v) {
            TRVDataDouble b = NewDataDouble(To - From);
            if (b.data) std::copy(v.begin() + From, v.begin() + To, b.data);
            return b;
        };
        for (std::size_t c = 0; c < S.Data.size(); ++c) {
            Defs.push_back({.ChannelNo = int(c), .XStart = double(From), .XEnd = double(To), .YMin = -1, .YMax = 1});
            Data.push_back(block(S.Data[c]));
            Time.push_back(block(S.Time));
        }
    }
    TBlockSet(const TBlockSet&) = delete;
    ~TBlockSet()
    {
        FreeDataDoubleArray(Data);
        FreeDataDoubleArray(Time);
    }
};

// Feeds the stream cut at the given positions.
inline void FeedCut(TRVTrigger& Trigger, const TStream& S, const std::vector<int>& Cuts)
{
    int from = 0;
    for (int to : Cuts) {
        TBlockSet set(S, from, to);
        Trigger.ProcessData(set.Defs, set.Data, set.Time);
        from = to;
    }
    TBlockSet set(S, from, S.Size());
    Trigger.ProcessData(set.Defs, set.Data, set.Time);
}

struct TCapture {
    TRVShortdefs Defs;
    std::vector<std::vector<double>> Data, Time;
    double StartTime = 0;
};

inline TCapture CopyCapture(const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                            const TRVDataDoubleArray& Time, double StartTime)
{
    TCapture c{Defs, {}, {}, StartTime};
    for (const TRVDataDouble& b : Data) c.Data.emplace_back(b.data, b.data + b.count);
    for (const TRVDataDouble& b : Time) c.Time.emplace_back(b.data, b.data + b.count);
    return c;
}

// A trigger that keeps a copy of every capture and frees its buffers, as a source's SendData
// would.
struct TLoggedTrigger : TRVTrigger {
    std::vector<TCapture> Log;
    TLoggedTrigger()
    {
        OnCapture = [this](const TRVShortdefs& Defs, TRVDataDoubleArray& Data, TRVDataDoubleArray& Time,
                           double StartTime) {
            Log.push_back(CopyCapture(Defs, Data, Time, StartTime));
            FreeDataDoubleArray(Data);
            FreeDataDoubleArray(Time);
        };
    }
    TLoggedTrigger(TRVTriggerType Type, int Size, int Pre = 0) : TLoggedTrigger()
    {
        SetTriggerType(Type);
        SetBufferSize(Size);
        SetPreTrigger(Pre);
    }
};

}  // namespace qx::test
