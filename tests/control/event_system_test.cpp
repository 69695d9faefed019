#include <gtest/gtest.h>

#include <stdexcept>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

class TCountingSource : public TQXControlSource {
public:
    void EventLinksChanged() override { ++Changes; }
    int Changes = 0;
};

}  // namespace

TEST(EventTable, HoldsTheSystemEventsAndRejectsDuplicateNames)
{
    TQXControlSource source;
    source.EventAdd(17, qxecUserEvent, "Start", "Start pressed");
    EXPECT_EQ(ExceptionMessage([&] { source.EventAdd(18, qxecDataEvent, "SysDebug", "again"); }),
              "Internal eventname not unique");
    QStringList names;
    QStringList descriptions;
    TQXDynArrayEventClass classes;
    source.EventGetEvents(names, descriptions, classes);
    EXPECT_EQ(names, QStringList({"SysDebug", "SysPropertyUpdated", "SysControlSourceRemoved",
                                  "SysControlPropertiesChanged", "Start"}));
    EXPECT_EQ(descriptions, QStringList({"Debug messages", "Control property updated",
                                         "Control source removed", "Control properties changed",
                                         "Start pressed"}));
    EXPECT_EQ(classes, TQXDynArrayEventClass({qxecDebugMessage, qxecControlSourceUpdated,
                                              qxecControlSourceRemoved,
                                              qxecControlPropertiesChanged, qxecUserEvent}));
    QString name;
    QString description;
    TQXEventClass c = qxecUserEvent;
    ASSERT_TRUE(source.EventHandleToName(0, name, description, c));  // all system events are 0
    EXPECT_EQ(name, "SysDebug");

    source.EventClear();
    std::uint32_t handle = 1;
    EXPECT_FALSE(source.EventNameToHandle("Start", handle, c));
    EXPECT_EQ(source.GetEventCount(), 4);
}

TEST(EventLinks, AttachingTwiceKeepsOneEntryAndALinkListensToOneSource)
{
    TCountingSource first;
    TCountingSource second;
    QStringList log;
    auto link = LoggingLink(log, "A");
    EXPECT_TRUE(first.EventLinkAdd(link.get()));
    EXPECT_TRUE(first.EventLinkAdd(link.get()));
    EXPECT_EQ(first.GetEventLinkCount(), 1);
    EXPECT_EQ(first.Changes, 1);

    second.EventLinkAdd(link.get());  // moves it
    EXPECT_EQ(first.GetEventLinkCount(), 0);
    EXPECT_EQ(first.Changes, 2);
    EXPECT_EQ(link->GetEventSource(), &second);
    first.UpdatedProperties();
    EXPECT_TRUE(log.isEmpty());
    EXPECT_FALSE(first.EventLinkRemove(link.get()));
    EXPECT_EQ(first.Changes, 2);

    link.reset();  // freeing detaches
    EXPECT_EQ(second.GetEventLinkCount(), 0);
    EXPECT_EQ(second.Changes, 2);
}

TEST(EventDelivery, OrderAndHandlersDependOnTheEventClass)
{
    TQXControlSource source;
    QStringList log;
    auto a = LoggingLink(log, "A");
    auto b = LoggingLink(log, "B");
    auto c = LoggingLink(log, "C");
    for (auto* link : {a.get(), b.get(), c.get()}) link->SetEventSource(&source);

    source.EventFire(4, qxecControlSourceUpdated, "");
    EXPECT_EQ(log, QStringList({"A:U4", "A:E5", "B:U4", "B:E5", "C:U4", "C:E5"}));
    log.clear();
    source.UpdatedProperties();
    EXPECT_EQ(log, QStringList({"C:P", "C:E7", "B:P", "B:E7", "A:P", "A:E7"}));
    log.clear();
    source.EventFire(0, qxecDataEvent, "");
    EXPECT_EQ(log, QStringList({"A:E8", "B:E8", "C:E8"}));
    log.clear();
    source.EventFire(0, qxecControlSourceRemoved, "");
    EXPECT_EQ(log, QStringList({"C:D", "B:D", "A:D"}));
}

namespace {

class TFailingLink : public TQXEventLink {
public:
    void EventReceiver(std::uint32_t, TQXEventClass, const QString&) override
    {
        throw std::logic_error("broken receiver");
    }
};

}  // namespace

TEST(EventDelivery, ThrowingHandlersDoNotStopTheOthers)
{
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

TEST(EventDelivery, DebugMessageReachesTheViewerNotTheOwnLinks)
{
    TQXControlSource source;
    QStringList log;
    auto own = LoggingLink(log, "Own");
    own->SetEventSource(&source);
    TDebugViewer viewer;
    source.EventFire(0, qxecDebugMessage, "hello");
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"hello"}}));
}

TEST(EventDelivery, PropertyUpdateNoticesNameTheirHandlesInRegistrationOrder)
{
    TQXControlSource source;
    const TQXPropertyHandle ha = AddPlain(source, "A");
    const TQXPropertyHandle hb = AddPlain(source, "B");
    QStringList log;
    auto link = LoggingLink(log, "L");
    link->OnEvent = nullptr;
    link->SetEventSource(&source);
    source.EventFirePropertyUpdated("B");
    source.EventFirePropertyUpdated("Missing");
    source.EventFireAllPropertiesUpdated();
    EXPECT_EQ(log, QStringList({"L:U" + QString::number(hb), "L:U" + QString::number(ha),
                                "L:U" + QString::number(hb)}));
}

TEST(SourceDestruction, TellsEveryLinkLastFirstAndLeavesNoneBehind)
{
    QStringList log;
    auto a = LoggingLink(log, "A");
    auto b = LoggingLink(log, "B");
    {
        TQXControlSource source;
        a->SetEventSource(&source);
        b->SetEventSource(&source);
    }
    EXPECT_EQ(log, QStringList({"B:D", "A:D"}));
    EXPECT_EQ(a->GetEventSource(), nullptr);
    EXPECT_EQ(b->GetEventSource(), nullptr);
}

namespace {

// Announces its removal at the start of its own destructor, as a panel does, so that the
// listeners still meet the whole object.
class TEarlySource : public TCountingSource {
public:
    explicit TEarlySource(int& ChangesAfter) : FChangesAfter(ChangesAfter) {}
    ~TEarlySource() override
    {
        BeginDestruction();
        FChangesAfter = Changes;
    }

private:
    int& FChangesAfter;
};

}  // namespace

TEST(SourceDestruction, RemovingLinksMeanwhileOnlyClearsThemAndNoLinkIsAdded)
{
    QStringList log;
    TEarlySource* dying = nullptr;
    bool removeResult = false;
    bool destroying = false;
    int changesAfter = -1;
    int changesBefore = -2;
    TQXEventLink link;
    auto other = LoggingLink(log, "O");
    {
        TEarlySource source(changesAfter);
        dying = &source;
        link.OnSourceDestroyed = [&](TQXEventLink* self) {
            destroying = dying->GetDestroying();
            removeResult = dying->EventLinkRemove(self);
            dying->EventLinkAdd(other.get());
        };
        link.SetEventSource(&source);
        changesBefore = source.Changes;
    }
    EXPECT_TRUE(destroying);
    EXPECT_TRUE(removeResult);
    EXPECT_EQ(changesAfter, changesBefore);
    EXPECT_EQ(link.GetEventSource(), nullptr);
    EXPECT_EQ(other->GetEventSource(), nullptr);
}
