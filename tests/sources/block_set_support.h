#pragma once

#include <QString>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/measure_source.h"

namespace qxtest {

// Channels "AI 0", "AI 1", ... of a source, added in that order.
inline void AddChannels(qx::TQXMeasureSourceEx& Source, const std::vector<QString>& Names)
{
    for (const QString& name : Names)
        Source.ChannelListAdd(name, name + " unit", name + " text", -10, 10, {qx::msexTimeData}, 0,
                              Source.GetNewChannelHandle(), true);
}

// One cycle of a source as it sends it: channel c holds the samples Values[c], each channel's
// time block the times Times[c]. SendData takes the buffers.
struct BlockSet {
    qx::TRVShortdefs Shortdefs;
    qx::TRVDataDoubleArray Data;
    qx::TRVDataDoubleArray Time;

    BlockSet(const std::vector<std::vector<double>>& Values, const std::vector<std::vector<double>>& Times)
    {
        for (std::size_t c = 0; c < Values.size(); ++c) {
            qx::TRVShortdef def;
            def.ChannelNo = static_cast<int>(c);
            def.Handle = static_cast<std::uint32_t>(100 + c);
            Shortdefs.push_back(def);
            Data.push_back(Block(Values[c]));
        }
        for (const auto& times : Times) Time.push_back(Block(times));
    }
    ~BlockSet()
    {
        qx::FreeDataDoubleArray(Data);
        qx::FreeDataDoubleArray(Time);
    }
    BlockSet(const BlockSet&) = delete;
    BlockSet& operator=(const BlockSet&) = delete;

    void Send(qx::TQXMeasureSourceEx& Source, double StartTime = 0)
    {
        Source.SendData(Shortdefs, Data, Time, StartTime);
    }

    static qx::TRVDataDouble Block(const std::vector<double>& Values)
    {
        qx::TRVDataDouble block = qx::NewDataDouble(static_cast<int>(Values.size()));
        for (std::size_t i = 0; i < Values.size(); ++i) block.data[i] = Values[i];
        return block;
    }
};

}  // namespace qxtest
