#include <gtest/gtest.h>

#include <string>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

// Listeners that change the link list, free links or the source, or fire further events while a
// delivery runs. Under AddressSanitizer any freed link or source touched afterwards fails.

namespace {

struct TFixture {
    explicit TFixture(int Count)
    {
        for (int i = 0; i < Count; ++i) {
            Links.push_back(LoggingLink(Log, QString(QChar('A' + i))));
            Links.back()->SetEventSource(Source.get());
        }
    }
    TQXEventLink& Link(int i) { return *Links[static_cast<std::size_t>(i)]; }
    // Link i logs its tag and then runs Act when it gets a data event.
    void OnData(int i, std::function<void()> Act)
    {
        Link(i).OnEvent = [this, i, Act](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
            Log << QString(QChar('A' + i));
            Act();
        };
    }

    QStringList Log;
    std::unique_ptr<TQXControlSource> Source = std::make_unique<TQXControlSource>();
    std::vector<std::unique_ptr<TQXEventLink>> Links;
    std::unique_ptr<TQXEventLink> Late = LoggingLink(Log, "N");
};

struct TForwardCase {
    const char* Name;
    std::function<void(TFixture&)> Act;  // run by link B during a data event to A..D
    QStringList Expected;
    QStringList Next;  // the following event shows the list the first one left behind
};

}  // namespace

TEST(ReentrantDelivery, ForwardWalkCallsEveryLinkThatStillListensExactlyOnce)
{
    const std::vector<TForwardCase> cases = {
        {"B detaches itself", [](TFixture& f) { f.Link(1).SetEventSource(nullptr); },
         {"A:E8", "B", "C:E8", "D:E8"}, {"A:E8", "C:E8", "D:E8"}},
        {"B detaches A", [](TFixture& f) { f.Link(0).SetEventSource(nullptr); },
         {"A:E8", "B", "C:E8", "D:E8"}, {"B", "C:E8", "D:E8"}},
        {"B detaches C", [](TFixture& f) { f.Link(2).SetEventSource(nullptr); },
         {"A:E8", "B", "D:E8"}, {"A:E8", "B", "D:E8"}},
        {"B frees C, A and itself",
         [](TFixture& f) {
             f.Links[2].reset();
             f.Links[0].reset();
             f.Links[1].reset();
         },
         {"A:E8", "B", "D:E8"}, {"D:E8"}},
        {"B attaches N and re-attaches itself",
         [](TFixture& f) {
             f.Late->SetEventSource(f.Source.get());
             f.Link(1).SetEventSource(f.Source.get());
         },
         {"A:E8", "B", "C:E8", "D:E8"}, {"A:E8", "C:E8", "D:E8", "N:E8", "B"}},
        {"B destroys the source", [](TFixture& f) { f.Source.reset(); },
         {"A:E8", "B", "D:D", "C:D", "B:D", "A:D"}, {}},
    };
    for (const TForwardCase& c : cases) {
        SCOPED_TRACE(c.Name);
        TFixture f(4);
        f.OnData(1, [&f, &c] { c.Act(f); });
        f.Source->EventFire(0, qxecDataEvent, "");
        EXPECT_EQ(f.Log, c.Expected);
        if (!f.Source) continue;
        f.Log.clear();
        if (f.Links[1]) f.OnData(1, [] {});
        f.Source->EventFire(0, qxecDataEvent, "");
        EXPECT_EQ(f.Log, c.Next);
    }
}

TEST(ReentrantDelivery, NestedEventReachesEveryoneAndTheOuterOneGoesOn)
{
    TFixture f(3);
    bool nested = false;
    f.OnData(1, [&] {
        if (std::exchange(nested, true)) return;
        f.Link(0).SetEventSource(nullptr);
        f.Source->EventFire(0, qxecDataEvent, "");
        f.Link(2).SetEventSource(nullptr);
    });
    f.Source->EventFire(0, qxecDataEvent, "");
    EXPECT_EQ(f.Log, QStringList({"A:E8", "B", "B", "C:E8"}));
    EXPECT_EQ(f.Source->GetEventLinks(), std::vector<TQXEventLink*>({&f.Link(1)}));
}

TEST(ReentrantDelivery, BackwardWalkSurvivesRemovalAtAndBelowTheCursor)
{
    TFixture f(5);
    f.Link(3).OnPropertiesChanged = [&](TQXEventLink*) {
        f.Log << "D";
        f.Links[3].reset();
        f.Link(1).SetEventSource(nullptr);
    };
    f.Source->UpdatedProperties();
    EXPECT_EQ(f.Log, QStringList({"E:P", "E:E7", "D", "C:P", "C:E7", "A:P", "A:E7"}));
}

TEST(ReentrantDelivery, HandlersMayFreeTheirLinkOrReplaceThemselves)
{
    TFixture f(2);
    f.Link(0).OnValueUpdated = [&](TQXEventLink*, std::uint32_t) {
        f.Log << "A:U";
        f.Links[0].reset();  // the general handler must not run on the freed link
    };
    auto captured = std::make_shared<std::string>("B replaced");
    f.Link(1).OnEvent = [&f, captured](TQXEventLink* self, std::uint32_t, TQXEventClass,
                                       const QString&) {
        self->OnEvent = nullptr;  // frees the stored copy of this very handler
        f.Log << QString::fromStdString(*captured);
    };
    f.Source->EventFire(3, qxecControlSourceUpdated, "");
    f.Source->EventFire(3, qxecControlSourceUpdated, "");
    EXPECT_EQ(f.Log, QStringList({"A:U", "B:U3", "B replaced", "B:U3"}));
}

TEST(ReentrantDelivery, SourceDestroyedFromANestedDeliveryOfAnotherSource)
{
    TFixture f(2);
    TQXControlSource other;
    TQXEventLink killer;
    killer.OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
        f.Source.reset();
    };
    killer.SetEventSource(&other);
    f.Link(0).OnPropertiesChanged = [&](TQXEventLink*) {
        f.Log << "A";
        other.EventFire(0, qxecDataEvent, "");
    };
    f.Source->UpdatedProperties();
    // A's link outlives the source, so its general handler still runs.
    EXPECT_EQ(f.Log, QStringList({"B:P", "B:E7", "A", "B:D", "A:D", "A:E7"}));
}

TEST(ReentrantDelivery, DestructionHandlersMayFreeOrMoveTheirLinks)
{
    TFixture f(3);
    TQXControlSource next;
    f.Link(2).OnSourceDestroyed = [&](TQXEventLink* self) { self->SetEventSource(&next); };
    f.Link(1).OnSourceDestroyed = [&](TQXEventLink*) {
        f.Links[1].reset();
        f.Links[0].reset();
    };
    f.Source.reset();
    EXPECT_TRUE(f.Log.isEmpty());
    EXPECT_EQ(next.GetEventLinks(), std::vector<TQXEventLink*>({&f.Link(2)}));
}

TEST(ReentrantProperties, CallbackRemovingItsOwnPropertyStillAnnouncesTheWrite)
{
    TQXControlSource source;
    auto state = std::make_shared<QString>("written");
    QStringList log;
    const TQXPropertyHandle h = AddPlain(source, "Once",
        [&source, &log, state](TQXPropertyItem*, bool, bool, Variant&) -> HRESULT {
            source.RemovePropertyByName("Once");  // frees the item and its stored callback
            log << *state;
            return S_OK;
        });
    auto link = LoggingLink(log, "L");
    link->SetEventSource(&source);
    EXPECT_TRUE(source.SetPropertyValue(nullptr, h, 1));
    EXPECT_FALSE(source.SetPropertyValue(nullptr, h, 1));
    EXPECT_EQ(log, QStringList({"written", "L:U" + QString::number(h), "L:E5"}));
}

TEST(ReentrantProperties, DestroyingTheSourceDuringAWriteEndsIt)
{
    for (const bool fromTrace : {false, true}) {
        SCOPED_TRACE(fromTrace ? "from the trace" : "from the callback");
        auto source = std::make_unique<TQXControlSource>();
        QStringList log;
        auto link = LoggingLink(log, "L");
        link->SetEventSource(source.get());
        int writes = 0;
        const TQXPropertyHandle h = AddPlain(*source, "Close",
            [&](TQXPropertyItem*, bool, bool, Variant&) -> HRESULT {
                ++writes;
                source.reset();
                return S_OK;
            });
        TDebugViewer viewer;
        if (fromTrace) {
            viewer.Link.OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
                source.reset();
            };
        } else {
            viewer.Link.SetEventSource(nullptr);
        }
        EXPECT_EQ(source->SetPropertyValue(nullptr, h, true), !fromTrace);
        EXPECT_EQ(writes, fromTrace ? 0 : 1);
        EXPECT_EQ(log, QStringList({"L:D"}));
    }
}

TEST(ReentrantProperties, AllPropertiesNoticeSkipsPropertiesRemovedMeanwhile)
{
    TQXControlSource source;
    const TQXPropertyHandle ha = AddPlain(source, "A");
    AddPlain(source, "B");
    const TQXPropertyHandle hc = AddPlain(source, "C");
    QStringList log;
    TQXEventLink link;
    link.OnValueUpdated = [&](TQXEventLink*, std::uint32_t h) {
        log << QString::number(h);
        if (h != ha) return;
        source.RemovePropertyByName("B");
        AddPlain(source, "D");
    };
    link.SetEventSource(&source);
    source.EventFireAllPropertiesUpdated();
    EXPECT_EQ(log, QStringList({QString::number(ha), QString::number(hc)}));
}
