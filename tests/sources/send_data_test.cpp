#include <gtest/gtest.h>

#include <stdexcept>

#include "qxbase/panels/panel_base.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

// Logs "event" for each data event of a source.
struct TDataEvents {
    TDataEvents(TQXControlSource& Source, QStringList& Log)
    {
        Link.OnEvent = [&Log](TQXEventLink*, std::uint32_t Handle, TQXEventClass Class, const QString& Text) {
            if (Class == qxecDataEvent && Handle == 0 && Text.isEmpty()) Log << "event";
        };
        Link.SetEventSource(&Source);
    }
    TQXEventLink Link;
};

}  // namespace

// SendData frees every buffer it is given; ForwardData leaves the borrowed leading blocks and
// the time blocks to the upstream source that owns them.
TEST(SendData, DeliversInOrderThenFreesWhatTheSourceOwnsAndFiresTheDataEvent)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TDataEvents events(source, log);
    TBlockSet lonely(3, 16);
    lonely.SendFrom(source);
    EXPECT_EQ(log, QStringList({"event"}));
    EXPECT_TRUE(lonely.Empty());

    TConsumer a("A", log);
    TConsumer b("B", log);
    a.Link.SetQXMeasureSourceEx(&source);
    b.Link.SetQXMeasureSourceEx(&source);
    a.AfterData = [] { throw std::runtime_error("consumer fault"); };  // must not stop B
    log.clear();
    TBlockSet set(2, 4);
    set.SendFrom(source, 2.5);
    EXPECT_EQ(log, QStringList({"A:data", "B:data", "event"}));
    EXPECT_EQ(b.Received.at(0).at(1), (std::vector<double>{1000, 1001, 1002, 1003}));
    EXPECT_EQ(b.LastStart, 2.5);
    EXPECT_TRUE(set.Empty());

    a.AfterData = nullptr;
    a.Link.SetQXMeasureSourceEx(nullptr);
    log.clear();
    TBlockSet upstream(2, 3);
    TRVDataDoubleArray data = upstream.Data;
    data.push_back(NewDataDouble(1));
    data.back().data[0] = 7;
    TRVShortdefs defs(3);
    source.ForwardData(defs, data, upstream.Time, 1.5, 2);
    EXPECT_EQ(log, QStringList({"B:data", "event"}));
    ASSERT_EQ(b.Received.at(1).size(), 3u);
    EXPECT_EQ(b.Received[1][2], std::vector<double>{7});
    EXPECT_EQ(data[2].data, nullptr);
    EXPECT_EQ(data[0].data, upstream.Data[0].data);
    EXPECT_EQ(upstream.Time[0].count, 3);
}

// The trace names a control source by its description, any other owner by its name, and an
// owner that leaves during its delivery still.
TEST(SendData, DebugTraceNamesSourceAndOwnerWhileTheViewerListens)
{
    QStringList log;
    TQXMeasureSourceEx source;
    source.SetObjectDescription("Analog In");
    TKSMSSink panel;
    panel.SetObjectDescription("Chart 1");
    panel.setObjectName("ChartPanel");
    TQXMeasureLinkEx panelLink(&panel);
    TQXMeasureLinkEx orphan;
    TConsumer leaving("leaving", log);
    panelLink.SetQXMeasureSourceEx(&source);
    orphan.SetQXMeasureSourceEx(&source);
    leaving.Link.SetQXMeasureSourceEx(&source);
    leaving.AfterData = [&] { leaving.Link.SetQXMeasureSourceEx(nullptr); };

    TDebugViewer viewer;
    TBlockSet(1, 2).SendFrom(source);
    EXPECT_EQ(viewer.Lines, (QList<QStringList>{{"4", "Analog In", "Chart 1"},
                                                {"4", "Analog In", ""},
                                                {"4", "Analog In", "leaving"}}));
}

// Consumers that leave, or send others away, during the delivery. Under the sanitizers this
// also shows that nothing is touched after it is freed.
TEST(SendData, ConsumersLeavingDuringDelivery)
{
    QStringList log;
    TQXMeasureSourceEx source;
    auto a = std::make_unique<TConsumer>("A", log);
    auto b = std::make_unique<TConsumer>("B", log);
    auto c = std::make_unique<TConsumer>("C", log);
    auto d = std::make_unique<TConsumer>("D", log);
    for (auto* x : {a.get(), b.get(), c.get(), d.get()}) x->Link.SetQXMeasureSourceEx(&source);

    // B detaches itself and C, which then misses the set.
    b->AfterData = [&] {
        b->Link.SetQXMeasureSourceEx(nullptr);
        c->Link.SetQXMeasureSourceEx(nullptr);
    };
    log.clear();
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:data", "B:data", "D:data"}));
    EXPECT_EQ(source.GetLinks(), (std::vector<TQXMeasureLinkEx*>{&a->Link, &d->Link}));

    // D frees A, which it passed already, and then itself; C, attached meanwhile, waits.
    b->AfterData = nullptr;
    b->Link.SetQXMeasureSourceEx(&source);
    d->AfterData = [&] {  // its last act frees the closure itself
        c->Link.SetQXMeasureSourceEx(&source);
        a.reset();
        d.reset();
    };
    log.clear();
    TBlockSet(1, 8).SendFrom(source);
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:data", "D:data", "C:settings", "B:data", "B:data", "C:data"}));
}

TEST(SendData, SourceDestroyedByAConsumerStillFreesTheBuffers)
{
    QStringList log;
    auto source = std::make_unique<TQXMeasureSourceEx>();
    TConsumer a("A", log);
    TConsumer b("B", log);
    a.Link.SetQXMeasureSourceEx(source.get());
    b.Link.SetQXMeasureSourceEx(source.get());
    a.AfterData = [&] { source.reset(); };
    TDebugViewer viewer;
    TBlockSet set(2, 4);
    log.clear();
    set.SendFrom(*source);
    EXPECT_EQ(log, QStringList({"A:data", "A:gone", "B:gone"}));
    EXPECT_TRUE(set.Empty());
    EXPECT_TRUE(viewer.Lines.isEmpty());
}
