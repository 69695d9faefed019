#include <gtest/gtest.h>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

// Listeners that change the link list, free links or the source, or fire further events while a
// delivery runs. Under AddressSanitizer any freed link or source touched afterwards fails.

TEST(ReentrantDelivery, ForwardWalkCallsEveryLinkThatStillListensExactlyOnce)
{
    struct TCase {
        const char* Name;
        std::function<void(TLinkedSource&)> Act;  // run by link B during a data event to A..D
        QStringList Expected;
        QStringList Next;  // the following event shows the list the first one left behind
    };
    const std::vector<TCase> cases = {
        {"B detaches A and itself",
         [](TLinkedSource& f) { f.Link(0).SetEventSource(nullptr); f.Link(1).SetEventSource(nullptr); },
         {"A:E8", "B", "C:E8", "D:E8"}, {"C:E8", "D:E8"}},
        {"B detaches C", [](TLinkedSource& f) { f.Link(2).SetEventSource(nullptr); },
         {"A:E8", "B", "D:E8"}, {"A:E8", "B", "D:E8"}},
        {"B frees C, A and itself",
         [](TLinkedSource& f) { f.Links[2].reset(); f.Links[0].reset(); f.Links[1].reset(); },
         {"A:E8", "B", "D:E8"}, {"D:E8"}},
        {"B attaches N and re-attaches itself",
         [](TLinkedSource& f) {
             f.Links.push_back(LoggingLink(f.Log, "N"));
             f.Links.back()->SetEventSource(f.Source.get());
             f.Link(1).SetEventSource(f.Source.get());
         },
         {"A:E8", "B", "C:E8", "D:E8"}, {"A:E8", "C:E8", "D:E8", "N:E8", "B"}},
        {"B detaches A, fires again, then detaches C",  // only the outermost walk closes gaps
         [](TLinkedSource& f) {
             if (f.Log.count("B") > 1) return;
             f.Link(0).SetEventSource(nullptr);
             f.Source->EventFire(0, qxecDataEvent, "");
             f.Link(2).SetEventSource(nullptr);
         },
         {"A:E8", "B", "B", "C:E8", "D:E8", "D:E8"}, {"B", "D:E8"}},
        {"B destroys the source, whose notice makes C free itself and A",
         [](TLinkedSource& f) {
             f.Link(2).OnSourceDestroyed = [&f](TQXEventLink*) { f.Links[2].reset(); f.Links[0].reset(); };
             f.Source.reset();
         },
         {"A:E8", "B", "D:D", "B:D"}, {}},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        TLinkedSource f(4);
        bool act = true;
        f.Link(1).OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
            f.Log << "B";
            if (act) c.Act(f);
        };
        f.Source->EventFire(0, qxecDataEvent, "");
        EXPECT_EQ(f.Log, c.Expected);
        if (!f.Source) continue;
        f.Log.clear();
        act = false;
        f.Source->EventFire(0, qxecDataEvent, "");
        EXPECT_EQ(f.Log, c.Next);
    }
}

TEST(ReentrantDelivery, HandlersMayFreeTheirLinkOrReplaceThemselves)
{
    TLinkedSource f(2);
    f.Link(0).OnValueUpdated = [&](TQXEventLink*, std::uint32_t) {
        f.Log << "A:U";
        f.Links[0].reset();  // the general handler must not run on the freed link
    };
    auto captured = std::make_shared<QString>("B replaced");
    f.Link(1).OnEvent = [&f, captured](TQXEventLink* self, std::uint32_t, TQXEventClass,
                                       const QString&) {
        self->OnEvent = nullptr;  // frees the stored copy of this very handler
        f.Log << *captured;
    };
    f.Source->EventFire(3, qxecControlSourceUpdated, "");
    f.Source->EventFire(3, qxecControlSourceUpdated, "");
    EXPECT_EQ(f.Log, QStringList({"A:U", "B:U3", "B replaced", "B:U3"}));
}

TEST(ReentrantDelivery, SourceDestroyedFromANestedDeliveryOfAnotherSource)
{
    TLinkedSource f(2);
    TQXControlSource other;
    TQXEventLink killer;
    killer.OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
        f.Source.reset();
    };
    killer.SetEventSource(&other);
    f.Link(1).OnPropertiesChanged = [&](TQXEventLink*) {
        f.Log << "B";
        other.EventFire(0, qxecDataEvent, "");
    };
    f.Source->UpdatedProperties();
    // B's link outlives the source, so its general handler still runs; A is not called.
    EXPECT_EQ(f.Log, QStringList({"B", "B:D", "A:D", "B:E7"}));
}

TEST(ReentrantProperties, CallbacksRemovingTheirOwnPropertyFinishTheCall)
{
    TLinkedSource f(1);
    auto state = std::make_shared<QString>("done");
    const auto removeSelf = [&f, state](TQXPropertyItem* item, bool get, bool, Variant&) -> HRESULT {
        f.Source->RemovePropertyByName(QString(item->FName));  // frees the item and this callback
        f.Log << *state + (get ? " read" : " written");
        return S_OK;
    };
    const TQXPropertyHandle r = AddProperty(*f.Source, "Read", removeSelf);
    const TQXPropertyHandle w = AddProperty(*f.Source, "Write", removeSelf);
    Variant value;
    EXPECT_TRUE(f.Source->GetPropertyValue(r, value));
    EXPECT_TRUE(f.Source->SetPropertyValue(nullptr, w, 1));
    EXPECT_FALSE(f.Source->SetPropertyValue(nullptr, w, 1));
    EXPECT_EQ(f.Log, QStringList({"done read", "done written", "A:U" + QString::number(w), "A:E5"}));
}

TEST(ReentrantProperties, ACallEndsWhenAListenerDestroysTheSourceOrRemovesTheProperty)
{
    enum TWho { Callback, Viewer, ValueListener };
    enum TFire { Write, ErrorEvent, AllNotices };
    struct TCase {
        const char* Name;
        TWho Who;
        bool Destroy;  // else the property is removed
        TFire Fire;
        QStringList Expected;
    };
    const std::vector<TCase> cases = {
        {"write callback destroys", Callback, true, Write, {"written", "A:D", "true"}},
        {"write trace destroys", Viewer, true, Write, {"A:D", "false"}},
        {"write trace removes the property", Viewer, false, Write, {"false"}},
        {"error trace destroys", Viewer, true, ErrorEvent, {"A:D"}},
        {"first update notice destroys", ValueListener, true, AllNotices, {"A:U", "A:D", "A:E5"}},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        TLinkedSource f(1);
        const auto act = [&](TWho who) {
            if (who != c.Who) return;
            if (c.Destroy) f.Source.reset();
            else f.Source->RemovePropertyByName("Close");
        };
        const TQXPropertyHandle h = AddProperty(*f.Source, "Close",
            [&](TQXPropertyItem*, bool, bool, Variant&) -> HRESULT {
                f.Log << "written";
                act(Callback);
                return S_OK;
            });
        AddProperty(*f.Source, "Other");
        f.Link(0).OnValueUpdated = [&](TQXEventLink*, std::uint32_t) {
            f.Log << "A:U";
            act(ValueListener);
        };
        TDebugViewer viewer;
        viewer.Link.OnEvent = [&](TQXEventLink*, std::uint32_t, TQXEventClass, const QString&) {
            act(Viewer);
        };
        if (c.Fire == Write) f.Log << (f.Source->SetPropertyValue(nullptr, h, 1) ? "true" : "false");
        if (c.Fire == ErrorEvent) f.Source->EventFire(0, qxecErrorWarningLevel, "x");
        if (c.Fire == AllNotices) f.Source->EventFireAllPropertiesUpdated();
        EXPECT_EQ(f.Log, c.Expected);
    }
}

TEST(PropertyNotices, NameHandlesInRegistrationOrderAndSkipPropertiesRemovedMeanwhile)
{
    TQXControlSource source;
    const QString a = QString::number(AddProperty(source, "A"));
    AddProperty(source, "B");
    const QString c = QString::number(AddProperty(source, "C"));
    QStringList log;
    TQXEventLink link;
    link.OnValueUpdated = [&](TQXEventLink*, std::uint32_t h) {
        log << QString::number(h);
        if (log.size() != 2) return;
        source.RemovePropertyByName("B");
        AddProperty(source, "D");
    };
    link.SetEventSource(&source);
    source.EventFirePropertyUpdated("C");
    source.EventFirePropertyUpdated("Missing");
    source.EventFireAllPropertiesUpdated();
    EXPECT_EQ(log, QStringList({c, a, c}));
}
