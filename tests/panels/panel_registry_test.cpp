#include <gtest/gtest.h>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

class TRegistryGauge : public TKSMSSink {
    Q_OBJECT
public:
    using TKSMSSink::TKSMSSink;
    static QString GetDependencies() { return QStringLiteral("gauge.bpl"); }
};

class TRegistryMeter : public TRegistryGauge {
    Q_OBJECT
public:
    using TRegistryGauge::TRegistryGauge;
};

const QString KGauge = StreamClassName(TRegistryGauge::staticMetaObject);
const QString KMeter = StreamClassName(TRegistryMeter::staticMetaObject);
const QString KPage = StreamClassName(TKSPanelTabPage::staticMetaObject);

TEST(StringListVariant, EmptyListIsTheIntegerZeroAndLinesAStringArrayFromZero)
{
    QStringList lines{QStringLiteral("old")};
    OleVariantToStringList(StringlistToOleVariant({}), lines);
    EXPECT_TRUE(lines.isEmpty());
    EXPECT_EQ(StringlistToOleVariant({}), Variant(std::int32_t{0}));

    const QStringList sent{QStringLiteral("a"), QString(), QStringLiteral("c,d")};
    const Variant value = StringlistToOleVariant(sent);
    EXPECT_EQ(value.VarType(), varArray | varOleStr);
    EXPECT_EQ(value.ArrayLowBound(), 0);
    OleVariantToStringList(value, lines);
    EXPECT_EQ(lines, sent);

    Variant mixed = Variant::CreateArray(3, 4, varVariant);
    mixed.SetArrayElement(3, 1.5);
    OleVariantToStringList(mixed, lines);
    EXPECT_EQ(lines, QStringList({"1.5", ""}));
    mixed.SetArrayElement(4, Variant::Null());
    EXPECT_THROW(OleVariantToStringList(mixed, lines), EVariantError);
    EXPECT_TRUE(lines.isEmpty());
}

TEST(PanelRegistry, DuplicatesAreListedAgainAndTheBatchGoesOn)
{
    const QStringList before = ClassNames();
    RegisterKSPanels<TRegistryGauge, TRegistryGauge, TRegistryMeter>();
    EXPECT_EQ(ClassNames(), before + QStringList({KGauge, KGauge, KMeter}));
    EXPECT_EQ(FindStreamClass(KGauge)->Dependencies(), "gauge.bpl");
    RegisterKSSources<TRegistryGauge>();
    EXPECT_EQ(SourceClassNames().count(KGauge), 1);

    for (const QString& name : {KGauge, KMeter}) {
        UnregisterStreamClass(name);
        ClassNames().removeAll(name);
        SourceClassNames().removeAll(name);
    }
}

TEST(PanelRegistry, OnlyTheLastFinalizeFreesTheListsAndAStartAfterItIsAFreshOne)
{
    ASSERT_NE(FindStreamClass(KPage), nullptr) << "registered at load";
    QxbasePanelsInitialize();
    RegisterKSPanels<TRegistryGauge>();
    QxbasePanelsFinalize();
    EXPECT_NO_THROW(ClassNames());

    QxbasePanelsFinalize();
    EXPECT_THROW(ClassNames(), EPanelRegistryError);
    EXPECT_THROW(RegisterKSPanels<TRegistryMeter>(), EPanelRegistryError);
    EXPECT_EQ(FindStreamClass(KGauge), nullptr);
    EXPECT_EQ(FindStreamClass(KMeter), nullptr);
    EXPECT_EQ(FindStreamClass(KPage), nullptr);
    QxbasePanelsFinalize();  // unbalanced: ignored

    QxbasePanelsInitialize();
    EXPECT_TRUE(ClassNames().isEmpty());
    EXPECT_NE(FindStreamClass(KPage), nullptr);
    RegisterKSPanels<TRegistryGauge>();
    EXPECT_EQ(ClassNames(), QStringList{KGauge});
    UnregisterStreamClass(KGauge);
    ClassNames().clear();
}

}  // namespace

#include "panel_registry_test.moc"
