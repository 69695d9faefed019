#include <gtest/gtest.h>

#include <QWidget>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/panels/panel_tab_page.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

class TRegistryGauge : public QWidget {
    Q_OBJECT
public:
    explicit TRegistryGauge(QWidget* parent = nullptr) : QWidget(parent) {}
    static QString GetDescription(const QMetaObject& Class)
    {
        return QStringLiteral("gauge ") + QLatin1String(Class.className());
    }
    static QImage GetClassIcon() { return QImage(4, 4, QImage::Format_RGB32); }
    static QString GetDependencies() { return QStringLiteral("gauge.bpl"); }
};

class TRegistrySource : public TRegistryGauge {
    Q_OBJECT
public:
    using TRegistryGauge::TRegistryGauge;
};

const QString KPageClass = QLatin1String(TKSPanelTabPage::staticMetaObject.className());

TEST(StringListVariant, EmptyListTravelsAsTheIntegerZero)
{
    const Variant value = StringlistToOleVariant({});
    EXPECT_EQ(value, Variant(std::int32_t{0}));
    QStringList lines{QStringLiteral("old")};
    OleVariantToStringList(value, lines);
    EXPECT_TRUE(lines.isEmpty());
}

TEST(StringListVariant, LinesTravelAsAStringArrayFromZero)
{
    const QStringList lines{QStringLiteral("a"), QString(), QStringLiteral("c,d")};
    const Variant value = StringlistToOleVariant(lines);
    EXPECT_EQ(value.VarType(), varArray | varOleStr);
    EXPECT_EQ(value.ArrayLowBound(), 0);
    EXPECT_EQ(value.ArrayHighBound(), 2);
    QStringList back{QStringLiteral("old")};
    OleVariantToStringList(value, back);
    EXPECT_EQ(back, lines);
}

TEST(StringListVariant, AnyArrayConvertsElementByElement)
{
    Variant value = Variant::CreateArray(3, 4, varVariant);
    value.SetArrayElement(3, 1.5);
    value.SetArrayElement(4, true);
    QStringList lines;
    OleVariantToStringList(value, lines);
    EXPECT_EQ(lines, QStringList({"1.5", "True"}));

    value.SetArrayElement(4, Variant::Null());
    EXPECT_THROW(OleVariantToStringList(value, lines), EVariantError);
    EXPECT_TRUE(lines.isEmpty());
}

TEST(PanelRegistry, DuplicateRegistrationRaisesAndLeavesTheListAlone)
{
    const QString gauge = QLatin1String(TRegistryGauge::staticMetaObject.className());
    const QString source = QLatin1String(TRegistrySource::staticMetaObject.className());
    const QStringList panelsBefore = ClassNames();
    RegisterKSPanels<TRegistryGauge>();
    RegisterKSSources<TRegistrySource>();
    EXPECT_EQ(ClassNames(), panelsBefore + QStringList{gauge});
    EXPECT_EQ(SourceClassNames().count(source), 1);

    const TStreamClassDescriptor* descriptor = FindStreamClass(gauge);
    ASSERT_NE(descriptor, nullptr);
    EXPECT_EQ(descriptor->Description(), "gauge " + gauge);
    EXPECT_EQ(descriptor->Dependencies(), "gauge.bpl");
    EXPECT_EQ(descriptor->ClassIcon().size(), QSize(4, 4));

    EXPECT_THROW(RegisterKSPanels<TRegistryGauge>(), EStreamError);
    EXPECT_THROW(RegisterKSSources<TRegistryGauge>(), EStreamError);
    EXPECT_EQ(ClassNames().count(gauge), 1);
    EXPECT_FALSE(SourceClassNames().contains(gauge));

    UnregisterStreamClass(gauge);
    UnregisterStreamClass(source);
    ClassNames().removeAll(gauge);
    SourceClassNames().removeAll(source);
}

TEST(PanelRegistry, OnlyTheLastFinalizeFreesTheListsAndThePageClass)
{
    ASSERT_NE(FindStreamClass(KPageClass), nullptr) << "registered at load";
    QxbasePanelsInitialize();
    QxbasePanelsFinalize();
    EXPECT_NO_THROW(ClassNames());
    EXPECT_NE(FindStreamClass(KPageClass), nullptr);

    QxbasePanelsFinalize();
    EXPECT_THROW(ClassNames(), EPanelRegistryError);
    EXPECT_THROW(RegisterKSPanels<TRegistryGauge>(), EPanelRegistryError);
    EXPECT_EQ(FindStreamClass(QLatin1String(TRegistryGauge::staticMetaObject.className())), nullptr);
    EXPECT_EQ(FindStreamClass(KPageClass), nullptr);
    QxbasePanelsFinalize();  // unbalanced: ignored

    QxbasePanelsInitialize();
    EXPECT_TRUE(ClassNames().isEmpty());
    EXPECT_NE(FindStreamClass(KPageClass), nullptr);
}

}  // namespace

#include "panel_registry_test.moc"
