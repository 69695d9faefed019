#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "qxbase/panels/panel_base.h"
#include "tests/framework/print_qstring.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

bool AllEmpty(const TRVDataDoubleArray& blocks)
{
    return std::all_of(blocks.begin(), blocks.end(),
                       [](const TRVDataDouble& b) { return b.data == nullptr && b.count == 0; });
}

// Counts the data events of a source, logging "event" for each.
struct TDataEventListener {
    TDataEventListener(TQXControlSource& Source, QStringList& Log)
    {
        Link.OnEvent = [&Log](TQXEventLink*, std::uint32_t Handle, TQXEventClass Class, const QString& Text) {
            if (Class == qxecDataEvent) Log << QStringLiteral("event %1 '%2'").arg(Handle).arg(Text);
        };
        Link.SetEventSource(&Source);
    }
    TQXEventLink Link;
};

}  // namespace

TEST(SendData, DeliversInOrderThenFreesTheBuffersAndFiresTheDataEvent)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TDataEventListener events(source, log);

    TBlockSet lonely(3, 16);
    lonely.SendFrom(source);
    EXPECT_EQ(log, QStringList({"event 0 ''"}));
    ASSERT_EQ(lonely.Data.size(), 3u);
    EXPECT_TRUE(AllEmpty(lonely.Data));
    EXPECT_TRUE(AllEmpty(lonely.Time));

    TConsumer a("A", log);
    TConsumer b("B", log);
    a.Link.SetQXMeasureSourceEx(&source);
    b.Link.SetQXMeasureSourceEx(&source);
    log.clear();
    TBlockSet set(2, 4);
    set.Defs[1].XEnd = 4;
    set.SendFrom(source, 2.5);
    EXPECT_EQ(log, QStringList({"A:data", "B:data", "event 0 ''"}));
    EXPECT_EQ(b.Received.at(0).at(1), (std::vector<double>{1000, 1001, 1002, 1003}));
    EXPECT_EQ(b.LastDefs.at(1).XEnd, 4);
    EXPECT_EQ(b.LastStart, 2.5);
    EXPECT_TRUE(AllEmpty(set.Data));
    EXPECT_TRUE(AllEmpty(set.Time));
}

TEST(SendData, DebugTraceNamesSourceAndOwnerWhileTheViewerListens)
{
    QStringList log;
    TQXMeasureSourceEx source;
    source.SetObjectDescription("Analog In");
    TKSMSSink panel;
    panel.SetObjectDescription("Chart 1");
    panel.setObjectName("ChartPanel");
    TQXMeasureLinkEx panelLink(&panel);
    TConsumer plain("recorder", log);
    TQXMeasureLinkEx orphan;
    panelLink.SetQXMeasureSourceEx(&source);
    plain.Link.SetQXMeasureSourceEx(&source);
    orphan.SetQXMeasureSourceEx(&source);

    TBlockSet(1, 2).SendFrom(source);  // nobody listens: nothing traced
    TDebugViewer viewer;
    ASSERT_TRUE(DoDebug);
    TBlockSet(1, 2).SendFrom(source);
    EXPECT_EQ(viewer.DataLines(), (QList<QStringList>{{"4", "Analog In", "Chart 1"},
                                                      {"4", "Analog In", "recorder"},
                                                      {"4", "Analog In", ""}}));
}

TEST(SendData, TraceNamesAnOwnerThatFreedItselfDuringDelivery)
{
    QStringList log;
    TQXMeasureSourceEx source;
    source.SetObjectDescription("S");
    auto leaving = std::make_unique<TConsumer>("leaving", log);
    leaving->Link.SetQXMeasureSourceEx(&source);
    TConsumer staying("staying", log);
    staying.Link.SetQXMeasureSourceEx(&source);
    leaving->AfterData = [&] { leaving->Link.SetQXMeasureSourceEx(nullptr); };

    TDebugViewer viewer;
    TBlockSet(1, 2).SendFrom(source);
    EXPECT_EQ(viewer.DataLines(), (QList<QStringList>{{"4", "S", "leaving"}, {"4", "S", "staying"}}));
}

// Consumers that leave, or send others away, while the set is being delivered. Under the
// sanitizers these also show that nothing is freed twice or left behind.
TEST(SendData, ConsumersLeavingDuringDelivery)
{
    QStringList log;
    TQXMeasureSourceEx source;
    auto a = std::make_unique<TConsumer>("A", log);
    auto b = std::make_unique<TConsumer>("B", log);
    auto c = std::make_unique<TConsumer>("C", log);
    auto d = std::make_unique<TConsumer>("D", log);
    for (auto* consumer : {a.get(), b.get(), c.get(), d.get()}) consumer->Link.SetQXMeasureSourceEx(&source);
    log.clear();

    // B detaches itself and C; A, B and D get this set.
    b->AfterData = [&] {
        b->Link.SetQXMeasureSourceEx(nullptr);
        c->Link.SetQXMeasureSourceEx(nullptr);
    };
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:data", "B:data", "D:data"}));
    EXPECT_EQ(source.GetLinks(), (std::vector<TQXMeasureLinkEx*>{&a->Link, &d->Link}));

    // D frees A, which it passed already, and then itself.
    b->AfterData = nullptr;
    b->Link.SetQXMeasureSourceEx(&source);
    d->AfterData = [&] {
        a.reset();
        d.reset();
    };
    log.clear();
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:data", "D:data", "B:data"}));
    EXPECT_EQ(source.GetLinks(), (std::vector<TQXMeasureLinkEx*>{&b->Link}));

    // A link attached during the delivery waits for the next set.
    log.clear();
    b->AfterData = [&] { c->Link.SetQXMeasureSourceEx(&source); };
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"B:data", "C:settings"}));
    b->AfterData = nullptr;
    log.clear();
    TBlockSet(1, 8).SendFrom(source);
    EXPECT_EQ(log, QStringList({"B:data", "C:data"}));
}

TEST(SendData, AFailingConsumerDoesNotStopTheOthers)
{
    QStringList log;
    TQXMeasureSourceEx source;
    TDataEventListener events(source, log);
    TConsumer a("A", log);
    TConsumer b("B", log);
    a.Link.SetQXMeasureSourceEx(&source);
    b.Link.SetQXMeasureSourceEx(&source);
    a.AfterData = [] { throw std::runtime_error("consumer fault"); };
    log.clear();
    TBlockSet set(2, 4);
    set.SendFrom(source);
    EXPECT_EQ(log, QStringList({"A:data", "B:data", "event 0 ''"}));
    EXPECT_TRUE(AllEmpty(set.Data));
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
    EXPECT_TRUE(AllEmpty(set.Data));
    EXPECT_TRUE(viewer.DataLines().isEmpty());
}

TEST(SendData, ChannelChangeUpdateSurvivesLinksLeaving)
{
    QStringList log;
    TQXMeasureSourceEx source;
    auto a = std::make_unique<TConsumer>("A", log);
    TConsumer b("B", log);
    a->Link.SetQXMeasureSourceEx(&source);
    b.Link.SetQXMeasureSourceEx(&source);
    a->Link.OnUpdateSettings = [&](TQXMeasureLinkEx*) {
        log << "A:settings";
        a.reset();
    };
    log.clear();
    source.ChannelChangeUpdate();
    EXPECT_EQ(log, QStringList({"A:settings", "B:settings"}));
    EXPECT_EQ(source.GetLinkCount(), 1);
}
