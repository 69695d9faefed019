#include <gtest/gtest.h>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

TEST(DebugSwitch, FollowsTheLinksOfTheDebugSource)
{
    ASSERT_EQ(FDebugEventSource(), FDebugEventSource());
    EXPECT_FALSE(DoDebug);
    {
        TDebugViewer first;
        EXPECT_TRUE(DoDebug);
        { TDebugViewer second; }
        EXPECT_TRUE(DoDebug);
        first.Link.SetEventSource(nullptr);
        EXPECT_FALSE(DoDebug);
        first.Link.SetEventSource(FDebugEventSource());
        EXPECT_TRUE(DoDebug);
    }
    EXPECT_FALSE(DoDebug);
}

struct TWriteTraceRow {
    const char* Name;
    bool Enumeration;
    Variant Value;
    QString Expected;
};
void PrintTo(const TWriteTraceRow& row, std::ostream* os) { *os << row.Name; }

class PropertyWriteTrace : public ::testing::TestWithParam<TWriteTraceRow> {};

TEST_P(PropertyWriteTrace, NamesSenderSourcePropertyAndValue)
{
    const TWriteTraceRow& row = GetParam();
    TQXControlSource source;
    source.SetObjectDescription("Meter");
    TValueHolder holder;
    TQXPropertyHandle h = 0;
    if (row.Enumeration) {
        source.RegisterProperty("Mode", "M", holder.Callback(), 0,
                                StringArray(0, {"Off", "Low", "High"}), 0);
        source.GetPropertyHandle("M", h);
    } else {
        h = AddPlain(source, "G", holder.Callback(), "Gain");
    }
    TQXControlSource sender;
    sender.SetObjectDescription("Switch");
    TDebugViewer viewer;
    ASSERT_TRUE(source.SetPropertyValue(&sender, h, row.Value));
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"1", "Switch", "Meter",
                                                 row.Enumeration ? "Mode" : "Gain", row.Expected}}));
    EXPECT_EQ(holder.Value, row.Value);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PropertyWriteTrace,
    ::testing::Values(
        TWriteTraceRow{"PlainDouble", false, Variant(2.5), "2.5"},
        TWriteTraceRow{"PlainBoolean", false, Variant(true), "True"},
        TWriteTraceRow{"PlainNull", false, Variant::Null(), ""},
        TWriteTraceRow{"PlainArray", false, StringArray(0, {"x"}), "<array data>"},
        TWriteTraceRow{"ChoiceByIndex", true, Variant(2), "High"},
        TWriteTraceRow{"IndexBeyondTheList", true, Variant(7), ""},
        TWriteTraceRow{"NegativeIndex", true, Variant(-1), ""},
        TWriteTraceRow{"IndexOfAnotherType", true, Variant::FromSmallint(1), "1"},
        TWriteTraceRow{"TextOnEnumeration", true, Variant("Low"), "Low"},
        TWriteTraceRow{"ArrayOnEnumeration", true, StringArray(1, {"a"}), "<array data>"}),
    [](const ::testing::TestParamInfo<TWriteTraceRow>& row) { return row.param.Name; });

TEST(PropertyWriteTrace, NoSenderTracesDashesAndALowBoundAboveZeroIsRespected)
{
    TQXControlSource source;
    TValueHolder holder;
    source.RegisterProperty("d", "Mode", holder.Callback(), 0, StringArray(1, {"One", "Two"}), 0);
    TQXPropertyHandle h = 0;
    source.GetPropertyHandle("Mode", h);
    TDebugViewer viewer;
    source.SetPropertyValue(nullptr, h, 0);
    source.SetPropertyValue(nullptr, h, 2);
    ASSERT_EQ(viewer.Lines.size(), 2);
    EXPECT_EQ(viewer.Lines[0].value(1), "---");
    EXPECT_EQ(viewer.Lines[0].value(4), "");
    EXPECT_EQ(viewer.Lines[1].value(4), "Two");
}

TEST(PropertyWriteTrace, NothingIsTracedWhileTheSwitchIsOffOrForReads)
{
    TQXControlSource source;
    TValueHolder holder;
    const TQXPropertyHandle h = AddPlain(source, "Gain", holder.Callback());
    TDebugViewer viewer;
    Variant value;
    source.GetPropertyValue(h, value);
    DoDebug = false;  // the switch gates the trace, not the viewer's link
    source.SetPropertyValue(nullptr, h, 3);
    source.EventFire(0, qxecErrorCriticalLevel, "lost");
    source.EventFirePropertyUpdated("Gain");
    source.EventFire(0, qxecDebugMessage, "direct");  // forwarded whatever the switch says
    DoDebug = true;
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"direct"}}));
    EXPECT_EQ(holder.Writes, 1);
}

TEST(EventTrace, ErrorLevelsUserEventsAndUpdateNoticesHaveTheirOwnLines)
{
    TQXControlSource source;
    source.SetObjectDescription("Button");
    source.EventAdd(5, qxecDataEvent, "Data5", "not a user event");
    source.EventAdd(5, qxecUserEvent, "Click", "Button clicked");
    TDebugViewer viewer;
    source.EventFire(3, qxecErrorWarningLevel, "disk low");
    source.EventFire(3, qxecErrorCriticalLevel, "disk full");
    source.EventFire(3, qxecDataEvent, "not traced");
    source.EventFire(5, qxecUserEvent, "left");
    source.EventFire(9, qxecUserEvent, "unknown");
    source.EventFireAllPropertiesUpdated();
    EXPECT_EQ(viewer.Lines, QList<QStringList>({{"5", "Button", "0", "disk low"},
                                                {"5", "Button", "2", "disk full"},
                                                {"3", "Button", "9", "Button clicked", "left"},
                                                {"3", "Button", "9", "", "unknown"},
                                                {"2", "Button"}}));
}
