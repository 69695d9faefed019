#pragma once

#include <QString>
#include <vector>

#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/measure_source.h"

namespace qxtest {

// Replaces the source's channels with channels of these names and tells its links.
inline void SetChannels(qx::TQXMeasureSourceEx& Source, const std::vector<QString>& Names)
{
    Source.ChannelListClear();
    for (const QString& name : Names) Source.ChannelListAdd(name, "V", "", -10, 10, {}, 0, Source.GetNewChannelHandle(), true);
    Source.ChannelChangeUpdate();
}

// One cycle as a source sends it: channel c holds Values[c], time block t holds Times[t].
// Whatever SendData did not take is freed at the end.
struct BlockSet {
    qx::TRVShortdefs Shortdefs;
    qx::TRVDataDoubleArray Data, Time;

    BlockSet(const std::vector<std::vector<double>>& Values, const std::vector<std::vector<double>>& Times)
    {
        const auto block = [](const std::vector<double>& v) {
            qx::TRVDataDouble b = qx::NewDataDouble(static_cast<int>(v.size()));
            std::copy(v.begin(), v.end(), b.data);
            return b;
        };
        for (std::size_t c = 0; c < Values.size(); ++c) {
            Shortdefs.emplace_back().ChannelNo = static_cast<int>(c);
            Data.push_back(block(Values[c]));
        }
        for (const auto& times : Times) Time.push_back(block(times));
    }
    ~BlockSet()
    {
        qx::FreeDataDoubleArray(Data);
        qx::FreeDataDoubleArray(Time);
    }
    BlockSet(const BlockSet&) = delete;
    BlockSet& operator=(const BlockSet&) = delete;

    void Send(qx::TQXMeasureSourceEx& Source, double StartTime = 0) { Source.SendData(Shortdefs, Data, Time, StartTime); }
};

}  // namespace qxtest
