#include <gtest/gtest.h>

#include "control_test_support.h"

using namespace qx;
using namespace qxtest;

TEST(PropertyList, IsNullWithoutPropertiesElseNamesInRegistrationOrder)
{
    TQXControlSource source;
    Variant list = "stale";
    source.GetPropertyList(list);
    EXPECT_TRUE(list.IsNull());
    for (const char* name : {"Zeta", "Alpha", "Mid"}) AddPlain(source, name);
    source.GetPropertyList(list);
    EXPECT_EQ(list, StringArray(0, {"Zeta", "Alpha", "Mid"}));
    source.ClearProperties();
    source.GetPropertyList(list);
    EXPECT_TRUE(list.IsNull());
}

TEST(PropertyRegistration, DuplicateNameRaisesWithEachOverloadsMessageAndChangesNothing)
{
    TQXControlSource source;
    AddPlain(source, "Gain");
    EXPECT_EQ(ExceptionMessage([&] { AddPlain(source, "Gain", {}, "other"); }),
              "PropertyName or is not unique: <Gain>");
    EXPECT_EQ(ExceptionMessage([&] { source.RegisterProperty("d", "Gain", {}, 0, StringArray(0, {"a"}), 1); }),
              "PropertyName or handle not unique: <Gain>");
    EXPECT_EQ(source.GetPropertyCount(), 1);
    QString description;
    EXPECT_TRUE(source.GetDescriptionFromName("Gain", description));
    EXPECT_EQ(description, "Gain text");
}

TEST(PropertyRegistration, OnlyTheExactNameMustBeUnique)
{
    TQXControlSource source;
    const TQXPropertyHandle upper = AddPlain(source, "Gain", {}, "same");
    const TQXPropertyHandle lower = AddPlain(source, "gain", {}, "same");
    EXPECT_NE(upper, lower);
    EXPECT_TRUE(source.IsUniqueProperty("GAIN"));
    TQXPropertyHandle h = 0;
    EXPECT_TRUE(source.GetPropertyHandleFromDescription("same", h));
    EXPECT_EQ(h, upper);
}

TEST(PropertyLookup, UnknownNamesAndHandleZeroGiveFalseAndClearedOutputs)
{
    TQXControlSource source;
    AddPlain(source, "Gain");
    TQXPropertyHandle h = 99;
    EXPECT_FALSE(source.GetPropertyHandle("gain", h));
    EXPECT_EQ(h, 0u);
    QString text = "stale";
    EXPECT_FALSE(source.GetPropertyDescriptionFromHandle(0, text));
    EXPECT_TRUE(text.isEmpty());
    text = "stale";
    EXPECT_FALSE(source.GetNameFromDescription("Missing", text));
    EXPECT_TRUE(text.isEmpty());
    std::uint16_t type = 5;
    text = "stale";
    EXPECT_FALSE(source.GetPropertyType(0, type, text));
    EXPECT_EQ(type, 0);
    EXPECT_TRUE(text.isEmpty());
}

TEST(PropertyLookup, StaleAndForeignHandlesNameNoProperty)
{
    TQXControlSource a;
    TQXControlSource b;
    TValueHolder holder;
    const TQXPropertyHandle ha = AddPlain(a, "Gain", holder.Callback());
    const TQXPropertyHandle hb = AddPlain(b, "Gain", holder.Callback());
    QString name;
    Variant value = 1;
    EXPECT_FALSE(a.GetPropertyNameFromHandle(hb, name));
    EXPECT_FALSE(a.GetPropertyValue(hb, value));
    EXPECT_TRUE(value.IsNull());
    EXPECT_FALSE(a.SetPropertyValue(nullptr, hb, 5));
    EXPECT_EQ(holder.Writes, 0);

    EXPECT_FALSE(a.RemovePropertyByName("Missing"));
    EXPECT_TRUE(a.RemovePropertyByName("Gain"));
    EXPECT_NE(AddPlain(a, "Gain", holder.Callback()), ha);  // a new registration, a new identity
    EXPECT_FALSE(a.GetEnumerationList(ha, value));
    std::uint32_t index = 3;
    EXPECT_FALSE(a.GetEnumerationHandle(ha, "x", index));
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(a.GetPropertyItem(ha), nullptr);
}

TEST(EnumerationProperty, KeepsACopyOfTheListAndIgnoresTheDataTypeArgument)
{
    TQXControlSource source;
    Variant choices = StringArray(0, {"Off", "Low", "High"});
    source.RegisterProperty("Mode text", "Mode", {}, varDouble, choices, 3);
    choices.SetArrayElement(0, Variant("Changed"));
    TQXPropertyHandle h = 0;
    source.GetPropertyHandle("Mode", h);
    std::uint16_t type = 0;
    QString info = "x";
    ASSERT_TRUE(source.GetPropertyType(h, type, info));
    EXPECT_EQ(type, varQXEnumeration);
    EXPECT_TRUE(info.isEmpty());
    Variant list;
    ASSERT_TRUE(source.GetEnumerationList(h, list));
    EXPECT_EQ(list, StringArray(0, {"Off", "Low", "High"}));

    const TQXPropertyHandle plain = AddPlain(source, "Gain");
    list = 1;
    EXPECT_TRUE(source.GetEnumerationList(plain, list));
    EXPECT_TRUE(list.IsNull());
}

TEST(EnumerationProperty, HandleIsTheArrayIndexWhateverTheLowBound)
{
    TQXControlSource source;
    source.RegisterProperty("d", "Mode", {}, 0, StringArray(5, {"Off", "Low", "High", "Low"}), 0);
    TQXPropertyHandle h = 0;
    source.GetPropertyHandle("Mode", h);
    std::uint32_t index = 99;
    EXPECT_TRUE(source.GetEnumerationHandle(h, "Off", index));
    EXPECT_EQ(index, 5u);
    EXPECT_TRUE(source.GetEnumerationHandle(h, "Low", index));
    EXPECT_EQ(index, 6u);
    EXPECT_FALSE(source.GetEnumerationHandle(h, "high", index));
    EXPECT_EQ(index, 0u);
}

TEST(PropertyValue, ReadAndWriteGoThroughTheCallbackAndOnlyTheWriteIsAnnounced)
{
    TQXControlSource source;
    QStringList log;
    const TQXPropertyHandle h = AddPlain(source, "Gain",
        [&](TQXPropertyItem* item, bool get, bool isEnum, Variant& value) -> HRESULT {
            log << QString("%1 get=%2 enum=%3 %4")
                       .arg(item->FName).arg(get).arg(isEnum).arg(get ? "" : value.ToString());
            if (get) value = 42;
            return E_FAIL;  // never inspected
        });
    const TQXPropertyHandle none = AddPlain(source, "NoCallback");
    auto link = LoggingLink(log, "L");
    link->SetEventSource(&source);

    Variant value;
    EXPECT_TRUE(source.GetPropertyValue(h, value));
    EXPECT_EQ(value, Variant(42));
    EXPECT_TRUE(source.SetPropertyValue(nullptr, h, 12));
    EXPECT_EQ(log, QStringList({"Gain get=1 enum=0 ", "Gain get=0 enum=0 12",
                                "L:U" + QString::number(h), "L:E5"}));
    log.clear();
    EXPECT_FALSE(source.GetPropertyValue(none, value));
    EXPECT_TRUE(value.IsNull());
    EXPECT_FALSE(source.SetPropertyValue(nullptr, none, 1));
    EXPECT_FALSE(source.SetPropertyValue(nullptr, 0, 1));
    EXPECT_TRUE(log.isEmpty());
}

namespace {

// Maps an alias name to a real one: the name/description helpers must use the overridable
// look-ups.
class TAliasSource : public TQXControlSource {
public:
    bool GetPropertyHandle(const QString& Name, TQXPropertyHandle& Handle) const override
    {
        return TQXControlSource::GetPropertyHandle(Name == "Alias" ? "Real" : Name, Handle);
    }
};

}  // namespace

TEST(PropertyLookup, NameHelpersUseTheOverridableLookups)
{
    TAliasSource source;
    AddPlain(source, "Real", {}, "The real one");
    QString text;
    EXPECT_TRUE(source.GetDescriptionFromName("Alias", text));
    EXPECT_EQ(text, "The real one");
}
