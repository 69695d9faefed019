#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;
using ::testing::ThrowsMessage;

TEST(PropertyRegistration, OnlyTheExactNameMustBeUniqueAndADuplicateChangesNothing)
{
    TQXControlSource source;
    const TQXPropertyHandle lower = AddProperty(source, "gain", {}, "same");
    EXPECT_NE(AddProperty(source, "Gain", {}, "same"), lower);
    EXPECT_TRUE(source.IsUniqueProperty("GAIN"));
    EXPECT_THAT([&] { AddProperty(source, "Gain", {}, "other"); },
                ThrowsMessage<EQXControlSourceException>("PropertyName or is not unique: <Gain>"));
    EXPECT_THAT([&] { AddProperty(source, "Gain", {}, "other", StringArray(0, {"a"})); },
                ThrowsMessage<EQXControlSourceException>("PropertyName or handle not unique: <Gain>"));
    Variant list;
    source.GetPropertyList(list);
    EXPECT_EQ(list, StringArray(0, {"gain", "Gain"}));
    TQXPropertyHandle h = 0;
    EXPECT_TRUE(source.GetPropertyHandleFromDescription("same", h));  // the first match
    EXPECT_EQ(h, lower);
    source.ClearProperties();
    source.GetPropertyList(list);
    EXPECT_TRUE(list.IsNull());
}

TEST(PropertyLookup, StaleForeignAndZeroHandlesNameNoPropertyAndMissesClearTheOutputs)
{
    TQXControlSource a;
    TQXControlSource b;
    int writes = 0;
    const TQXPropertyHandle ha = AddProperty(a, "Gain", CountWrites(writes));
    const TQXPropertyHandle hb = AddProperty(b, "Gain", CountWrites(writes));
    QString name = "stale";
    QString description = "stale";
    QString info = "stale";
    std::uint16_t type = 5;
    TQXPropertyHandle h = 99;
    Variant value = 1;
    EXPECT_FALSE(a.GetPropertyNameFromHandle(hb, name) || a.GetPropertyDescriptionFromHandle(0, description) ||
                 a.GetPropertyType(hb, type, info) || a.GetPropertyHandle("gain", h) || a.GetPropertyValue(hb, value));
    EXPECT_TRUE(name.isEmpty() && description.isEmpty() && info.isEmpty() && type == 0 && h == 0 && value.IsNull());
    EXPECT_FALSE(a.SetPropertyValue(nullptr, hb, 5) || a.SetPropertyValue(nullptr, 0, 5));
    EXPECT_EQ(writes, 0);

    EXPECT_FALSE(a.RemovePropertyByName("Missing"));
    EXPECT_TRUE(a.RemovePropertyByName("Gain"));
    EXPECT_NE(AddProperty(a, "Gain", CountWrites(writes)), ha);  // a new registration, a new identity
    std::uint32_t index = 3;
    EXPECT_FALSE(a.GetEnumerationList(ha, value) || a.GetEnumerationHandle(ha, "x", index));
    EXPECT_EQ(index, 0u);
}

TEST(EnumerationProperty, KeepsACopyOfItsListAndMapsTextsToArrayIndices)
{
    TQXControlSource source;
    Variant choices = StringArray(5, {"Off", "Low", "High", "Low"});
    const TQXPropertyHandle h = AddProperty(source, "Mode", {}, {}, choices);  // given as varDouble
    choices.SetArrayElement(5, Variant("Changed"));
    std::uint16_t type = 0;
    QString info = "x";
    ASSERT_TRUE(source.GetPropertyType(h, type, info));
    EXPECT_EQ(type, varQXEnumeration);
    EXPECT_TRUE(info.isEmpty());
    Variant list;
    ASSERT_TRUE(source.GetEnumerationList(h, list));
    EXPECT_EQ(list, StringArray(5, {"Off", "Low", "High", "Low"}));
    std::uint32_t index = 99;
    EXPECT_TRUE(source.GetEnumerationHandle(h, "Low", index));  // the first match, as array index
    EXPECT_EQ(index, 6u);
    EXPECT_FALSE(source.GetEnumerationHandle(h, "high", index));
    EXPECT_EQ(index, 0u);
    EXPECT_TRUE(source.GetEnumerationList(AddProperty(source, "Gain"), list));
    EXPECT_TRUE(list.IsNull());
}

TEST(PropertyValue, ReadAndWriteGoThroughTheCallback)
{
    TQXControlSource source;
    QStringList log;
    const TQXPropertyHandle h = AddProperty(source, "Gain",
        [&](TQXPropertyItem* item, bool get, bool isEnum, Variant& value) -> HRESULT {
            log << QString("%1 get=%2 enum=%3 %4")
                       .arg(item->FName).arg(get).arg(isEnum).arg(get ? "" : value.ToString());
            if (get) value = 42;
            return E_FAIL;  // never inspected
        });
    Variant value;
    EXPECT_TRUE(source.GetPropertyValue(h, value));
    EXPECT_EQ(value, Variant(42));
    EXPECT_TRUE(source.SetPropertyValue(nullptr, h, 12));
    EXPECT_EQ(log, QStringList({"Gain get=1 enum=0 ", "Gain get=0 enum=0 12"}));
    const TQXPropertyHandle none = AddProperty(source, "NoCallback");
    EXPECT_FALSE(source.GetPropertyValue(none, value) || source.SetPropertyValue(nullptr, none, 1));
    EXPECT_TRUE(value.IsNull());
}

// A derived source may resolve names its own way; the name helpers must follow it.
TEST(PropertyLookup, NameHelpersUseTheOverridableLookups)
{
    class TAliasSource : public TQXControlSource {
    public:
        bool GetPropertyHandle(const QString& Name, TQXPropertyHandle& Handle) const override
        {
            return TQXControlSource::GetPropertyHandle(Name == "Alias" ? "Real" : Name, Handle);
        }
    };
    TAliasSource source;
    AddProperty(source, "Real", {}, "The real one");
    QString text;
    EXPECT_TRUE(source.GetDescriptionFromName("Alias", text));
    EXPECT_EQ(text, "The real one");
}
