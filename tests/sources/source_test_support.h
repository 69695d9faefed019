#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <memory>
#include <vector>

#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/measure_source.h"

namespace qxtest {

using namespace qx;

// One cycle's blocks: Channels blocks of Samples values, sample n of channel c = c * 1000 + n,
// and a time block per channel.
struct TBlockSet {
    TBlockSet(int Channels, int Samples)
        : Defs(static_cast<std::size_t>(Channels)), Data(static_cast<std::size_t>(Channels)),
          Time(static_cast<std::size_t>(Channels))
    {
        for (int c = 0; c < Channels; ++c) {
            const auto i = static_cast<std::size_t>(c);
            Defs[i].ChannelNo = c;
            Data[i] = NewDataDouble(Samples);
            Time[i] = NewDataDouble(Samples);
            for (int n = 0; n < Samples; ++n) {
                Data[i].data[n] = c * 1000.0 + n;
                Time[i].data[n] = n * 0.001;
            }
        }
    }
    ~TBlockSet()
    {
        FreeDataDoubleArray(Data);
        FreeDataDoubleArray(Time);
    }
    TBlockSet(const TBlockSet&) = delete;
    TBlockSet& operator=(const TBlockSet&) = delete;

    void SendFrom(TQXMeasureSourceEx& Source, double StartTime = 0) { Source.SendData(Defs, Data, Time, StartTime); }

    TRVShortdefs Defs;
    TRVDataDoubleArray Data;
    TRVDataDoubleArray Time;
};

// A consumer: an owner object with one link that copies every block set it receives and logs
// "<name>:data", "<name>:settings" and "<name>:gone".
class TConsumer : public QObject {
public:
    TConsumer(const QString& Name, QStringList& Log) : FLog(Log)
    {
        setObjectName(Name);
        Link.OnNewData = [this](TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                                const TRVDataDoubleArray&, double StartTime) {
            FLog << objectName() + ":data";
            Received.emplace_back();
            for (const TRVDataDouble& block : Data) Received.back().emplace_back(block.data, block.data + block.count);
            LastDefs = Defs;
            LastStart = StartTime;
            if (AfterData) AfterData();
        };
        Link.OnUpdateSettings = [this](TQXMeasureLinkEx*) { FLog << objectName() + ":settings"; };
        Link.OnSourceDestroyed = [this](TQXMeasureSourceEx* Source) {
            FLog << objectName() + ":gone";
            GoneSource = Source;
            if (AfterGone) AfterGone();
        };
    }

    TQXMeasureLinkEx Link{this};
    std::vector<std::vector<std::vector<double>>> Received;  // per set, per channel
    TRVShortdefs LastDefs;
    double LastStart = -1;
    TQXMeasureSourceEx* GoneSource = nullptr;
    std::function<void()> AfterData;
    std::function<void()> AfterGone;

private:
    QStringList& FLog;
};

// A processor that multiplies every sample by Factor and sends the result on, one block per
// input block, with the input's definitions and time blocks copied.
class TScaler : public TQXMLSBaseEx {
public:
    explicit TScaler(double Factor, const QString& Description = QString()) : FFactor(Factor)
    {
        if (!Description.isEmpty()) SetObjectDescription(Description);
    }

    int Updates = 0;

protected:
    void MLSOnUpdateSettings(TQXMeasureLinkEx*) override { ++Updates; }
    void MLSOnNewData(TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                      const TRVDataDoubleArray& TimeChannel, double StartTime) override
    {
        TRVDataDoubleArray out(Data.size());
        TRVDataDoubleArray time(TimeChannel.size());
        for (std::size_t c = 0; c < Data.size(); ++c) {
            out[c] = NewDataDouble(Data[c].count);
            for (int n = 0; n < Data[c].count; ++n) out[c].data[n] = Data[c].data[n] * FFactor;
        }
        for (std::size_t c = 0; c < TimeChannel.size(); ++c) {
            time[c] = NewDataDouble(TimeChannel[c].count);
            std::copy_n(TimeChannel[c].data, TimeChannel[c].count, time[c].data);
        }
        SendData(Defs, out, time, StartTime);
    }

private:
    double FFactor;
};

// Listens to the debug event source as the debug viewer does (DoDebug is on while it lives) and
// keeps every trace line split into its fields.
struct TDebugViewer {
    TDebugViewer()
    {
        Link.OnEvent = [this](TQXEventLink*, std::uint32_t, TQXEventClass c, const QString& text) {
            if (c == qxecDebugClientMessage) Lines.append(text.split(QChar(8)));
        };
        Link.SetEventSource(FDebugEventSource());
    }
    // The trace lines of delivered data ("4", ...).
    QList<QStringList> DataLines() const
    {
        QList<QStringList> lines;
        for (const QStringList& line : Lines)
            if (line.value(0) == QLatin1String("4")) lines.append(line);
        return lines;
    }
    TQXEventLink Link;
    QList<QStringList> Lines;
};

}  // namespace qxtest
