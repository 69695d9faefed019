#include <gtest/gtest.h>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

TEST(DebugSwitch, FollowsTheLinksOfTheDebugSource)
{
    EXPECT_FALSE(DoDebug);
    {
        TDebugViewer first;
        EXPECT_TRUE(DoDebug);
        { TDebugViewer second; }
        EXPECT_TRUE(DoDebug);  // one viewer still listens
    }
    EXPECT_FALSE(DoDebug);
}

TEST(PropertyWriteTrace, NamesSenderSourcePropertyAndValueAsText)
{
    struct TRow {
        const char* Name;
        bool Enumeration;  // choices "Off", "Low", "High" at indices 1 to 3
        Variant Value;
        QString Expected;
    };
    const std::vector<TRow> rows = {
        {"plain double", false, 2.5, "2.5"},
        {"plain array", false, StringArray(0, {"x"}), "<array data>"},
        {"choice by index", true, 3, "High"},
        {"index below the low bound", true, 0, ""},
        {"index beyond the list", true, 7, ""},
        {"index of another integer type", true, Variant::FromSmallint(1), "1"},
    };
    TQXControlSource sender;
    sender.SetObjectDescription("Switch");
    for (const TRow& row : rows) {
        SCOPED_TRACE(row.Name);
        TQXControlSource source;
        source.SetObjectDescription("Meter");
        int writes = 0;
        const TQXPropertyHandle h = AddProperty(source, "P", CountWrites(writes), "Gain",
            row.Enumeration ? StringArray(1, {"Off", "Low", "High"}) : Variant::Null());
        TDebugViewer viewer;
        EXPECT_TRUE(source.SetPropertyValue(&sender, h, row.Value));
        EXPECT_EQ(viewer.Lines, QList<QStringList>({{"1", "Switch", "Meter", "Gain", row.Expected}}));
        EXPECT_EQ(writes, 1);
    }
}

TEST(EventTrace, EachKindHasItsLineAndTheSwitchGatesAllButDirectMessages)
{
    TQXControlSource source;
    source.SetObjectDescription("Button");
    source.EventAdd(5, qxecDataEvent, "Data5", "not a user event");
    source.EventAdd(5, qxecUserEvent, "Click", "Button clicked");
    int writes = 0;
    const TQXPropertyHandle h = AddProperty(source, "Gain", CountWrites(writes));
    TDebugViewer viewer;
    const auto fireAll = [&] {
        source.SetPropertyValue(nullptr, h, 3);
        source.EventFire(3, qxecErrorWarningLevel, "disk low");
        source.EventFire(3, qxecErrorCriticalLevel, "disk full");
        source.EventFire(3, qxecDataEvent, "not traced");
        source.EventFire(5, qxecUserEvent, "left");
        source.EventFire(9, qxecUserEvent, "unknown");
        source.EventFirePropertyUpdated("Missing");
        source.EventFireAllPropertiesUpdated();
        source.EventFire(0, qxecDebugMessage, "direct");
    };
    Variant value;
    source.GetPropertyValue(h, value);  // reads are not traced
    fireAll();
    DoDebug = false;  // the switch gates the trace, not the viewer's link
    fireAll();
    DoDebug = true;
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"1", "---", "Button", "Gain text", "3"},
                                                {"5", "Button", "0", "disk low"},
                                                {"5", "Button", "2", "disk full"},
                                                {"3", "Button", "9", "Button clicked", "left"},
                                                {"3", "Button", "9", "", "unknown"},
                                                {"2", "Button"},
                                                {"2", "Button"},
                                                {"direct"},
                                                {"direct"}}));
    EXPECT_EQ(writes, 2);
}
