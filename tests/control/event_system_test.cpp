#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

// Counts link changes; announces its removal at the start of its own destructor, as a panel
// does, so that the listeners still meet the whole object.
class TCountingSource : public TQXControlSource {
public:
    ~TCountingSource() override
    {
        BeginDestruction();
        if (ChangesAfterRemoval != nullptr) *ChangesAfterRemoval = Changes;
    }
    void EventLinksChanged() override { ++Changes; }
    int Changes = 0;
    int* ChangesAfterRemoval = nullptr;
};

}  // namespace

TEST(EventTable, HoldsTheSystemEventsAndRejectsDuplicateNames)
{
    TQXControlSource source;
    source.EventAdd(17, qxecUserEvent, "Start", "Start pressed");
    EXPECT_THAT([&] { source.EventAdd(18, qxecDataEvent, "SysDebug", "again"); },
                ::testing::ThrowsMessage<EQXControlSourceException>("Internal eventname not unique"));
    QStringList names;
    QStringList descriptions;
    TQXDynArrayEventClass classes;
    source.EventGetEvents(names, descriptions, classes);
    EXPECT_EQ(names, QStringList({"SysDebug", "SysPropertyUpdated", "SysControlSourceRemoved",
                                  "SysControlPropertiesChanged", "Start"}));
    EXPECT_EQ(classes, TQXDynArrayEventClass({qxecDebugMessage, qxecControlSourceUpdated, qxecControlSourceRemoved,
                                              qxecControlPropertiesChanged, qxecUserEvent}));
    EXPECT_EQ(descriptions.last(), "Start pressed");
    QString name;
    TQXEventClass c = qxecUserEvent;
    ASSERT_TRUE(source.EventHandleToName(0, name, descriptions[0], c));  // all system events are 0
    EXPECT_EQ(name, "SysDebug");
    source.EventClear();
    EXPECT_EQ(source.GetEventCount(), 4);
}

TEST(EventLinks, AttachingTwiceKeepsOneEntryAndALinkListensToOneSource)
{
    TCountingSource first;
    TCountingSource second;
    QStringList log;
    auto link = LoggingLink(log, "A");
    first.EventLinkAdd(link.get());
    first.EventLinkAdd(link.get());
    EXPECT_EQ(first.GetEventLinkCount(), 1);
    EXPECT_EQ(first.Changes, 1);

    second.EventLinkAdd(link.get());  // moves it
    EXPECT_EQ(first.Changes, 2);
    EXPECT_EQ(link->GetEventSource(), &second);
    first.UpdatedProperties();
    EXPECT_TRUE(log.isEmpty());
    EXPECT_FALSE(first.EventLinkRemove(link.get()));

    link.reset();  // freeing detaches
    EXPECT_EQ(second.GetEventLinkCount(), 0);
    EXPECT_EQ(second.Changes, 2);
}

TEST(EventDelivery, OrderAndHandlersDependOnTheEventClass)
{
    TLinkedSource f(3);
    TDebugViewer viewer;
    f.Source->EventFire(0, qxecDebugMessage, "hello");  // for the viewer, not the own links
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"hello"}}));
    f.Source->EventFire(4, qxecControlSourceUpdated, "");
    f.Source->UpdatedProperties();
    f.Source->EventFire(0, qxecDataEvent, "");
    f.Source->EventFire(0, qxecControlSourceRemoved, "");
    EXPECT_EQ(f.Log, QStringList({"A:U4", "A:E5", "B:U4", "B:E5", "C:U4", "C:E5",
                                  "C:P", "C:E7", "B:P", "B:E7", "A:P", "A:E7",
                                  "A:E8", "B:E8", "C:E8",
                                  "C:D", "B:D", "A:D"}));
}

TEST(EventDelivery, ThrowingHandlersDoNotStopTheOthers)
{
    class TFailingLink : public TQXEventLink {
    public:
        void EventReceiver(std::uint32_t, TQXEventClass, const QString&) override
        {
            throw std::logic_error("broken receiver");
        }
    };
    TQXControlSource source;
    QStringList log;
    TQXEventLink bad;
    bad.OnValueUpdated = [](TQXEventLink*, std::uint32_t) { throw std::runtime_error("x"); };
    bad.OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
        log << "bad:E";
        throw 42;
    };
    TFailingLink failing;
    auto good = LoggingLink(log, "G");
    for (TQXEventLink* link : {&bad, static_cast<TQXEventLink*>(&failing), good.get()})
        link->SetEventSource(&source);
    source.EventFire(1, qxecControlSourceUpdated, "");
    EXPECT_EQ(log, QStringList({"bad:E", "G:U1", "G:E5"}));
}

TEST(SourceDestruction, TellsLinksLastFirstAndLinksMayLeaveButNotJoinMeanwhile)
{
    TQXControlSource next;  // outlives the links, so that it never calls B's handler
    QStringList log;
    auto a = LoggingLink(log, "A");
    auto b = LoggingLink(log, "B");
    auto late = LoggingLink(log, "N");
    int changesAfter = -1;
    int changesBefore = -2;
    {
        TCountingSource source;
        source.ChangesAfterRemoval = &changesAfter;
        b->OnSourceDestroyed = [&](TQXEventLink* self) {
            log << (source.GetDestroying() ? "B:D" : "B:alive");
            source.EventLinkAdd(late.get());
            self->SetEventSource(&next);
        };
        a->SetEventSource(&source);
        b->SetEventSource(&source);
        changesBefore = source.Changes;
    }
    EXPECT_EQ(log, QStringList({"B:D", "A:D"}));
    EXPECT_EQ(changesAfter, changesBefore);
    EXPECT_EQ(a->GetEventSource(), nullptr);
    EXPECT_EQ(late->GetEventSource(), nullptr);
    EXPECT_EQ(next.GetEventLinks(), std::vector<TQXEventLink*>({b.get()}));
    EXPECT_EQ(b->GetEventSource(), &next);
}
