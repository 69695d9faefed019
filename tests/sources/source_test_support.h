#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/sources/measure_source.h"
#include "tests/framework/print_qstring.h"

namespace qxtest {

using namespace qx;

// One cycle's blocks: sample n of channel c is c * 1000 + n; a time block per channel.
struct TBlockSet {
    TBlockSet(int Channels, int Samples) : Defs(Size(Channels)), Data(Size(Channels)), Time(Size(Channels))
    {
        for (std::size_t c = 0; c < Data.size(); ++c) {
            Data[c] = NewDataDouble(Samples);
            Time[c] = NewDataDouble(Samples);
            for (int n = 0; n < Samples; ++n) Data[c].data[n] = static_cast<double>(c) * 1000 + n;
        }
    }
    ~TBlockSet()
    {
        FreeDataDoubleArray(Data);
        FreeDataDoubleArray(Time);
    }
    static std::size_t Size(int n) { return static_cast<std::size_t>(n); }
    void SendFrom(TQXMeasureSourceEx& Source, double Start = 0) { Source.SendData(Defs, Data, Time, Start); }
    bool Empty() const
    {
        for (const auto* blocks : {&Data, &Time})
            for (const TRVDataDouble& b : *blocks)
                if (b.data != nullptr || b.count != 0) return false;
        return true;
    }

    TRVShortdefs Defs;
    TRVDataDoubleArray Data;
    TRVDataDoubleArray Time;
};

// An owner with one link: copies what it receives and logs "<name>:data", ":settings", ":gone".
class TConsumer : public QObject {
public:
    TConsumer(const QString& Name, QStringList& Log)
    {
        setObjectName(Name);
        Link.OnNewData = [this, &Log](TQXMeasureLinkEx*, const TRVShortdefs&, const TRVDataDoubleArray& Data,
                                      const TRVDataDoubleArray&, double Start) {
            Log << objectName() + ":data";
            Received.emplace_back();
            for (const TRVDataDouble& b : Data) Received.back().emplace_back(b.data, b.data + b.count);
            LastStart = Start;
            if (AfterData) AfterData();
        };
        Link.OnUpdateSettings = [this, &Log](TQXMeasureLinkEx*) { Log << objectName() + ":settings"; };
        Link.OnSourceDestroyed = [this, &Log](TQXMeasureSourceEx* Source) {
            Log << objectName() + ":gone";
            GoneSource = Source;
            if (AfterGone) AfterGone();
        };
    }

    TQXMeasureLinkEx Link{this};
    std::vector<std::vector<std::vector<double>>> Received;  // per set, per channel
    double LastStart = -1;
    TQXMeasureSourceEx* GoneSource = nullptr;
    std::function<void()> AfterData;
    std::function<void()> AfterGone;
};

// A processor that multiplies every sample by Factor and sends the result on.
class TScaler : public TQXMLSBaseEx {
public:
    explicit TScaler(double Factor) : FFactor(Factor) {}

protected:
    void MLSOnNewData(TQXMeasureLinkEx*, const TRVShortdefs& Defs, const TRVDataDoubleArray& Data,
                      const TRVDataDoubleArray&, double Start) override
    {
        TRVDataDoubleArray out(Data.size());
        TRVDataDoubleArray time;
        for (std::size_t c = 0; c < Data.size(); ++c) {
            out[c] = NewDataDouble(Data[c].count);
            for (int n = 0; n < Data[c].count; ++n) out[c].data[n] = Data[c].data[n] * FFactor;
        }
        SendData(Defs, out, time, Start);
    }

private:
    double FFactor;
};

// Listens to the debug event source (DoDebug is on while it lives) and keeps the data trace
// lines ("4", ...) split into their fields.
struct TDebugViewer {
    TDebugViewer()
    {
        Link.OnEvent = [this](TQXEventLink*, std::uint32_t, TQXEventClass c, const QString& text) {
            if (c == qxecDebugClientMessage && text.startsWith(QLatin1String("4"))) Lines.append(text.split(QChar(8)));
        };
        Link.SetEventSource(FDebugEventSource());
    }
    TQXEventLink Link;
    QList<QStringList> Lines;
};

}  // namespace qxtest
