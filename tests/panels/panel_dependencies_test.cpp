#include <gtest/gtest.h>

#include <QWidget>

#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_dependencies.h"
#include "qxbase/panels/panel_registry.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

class TDependentGauge : public TKSMSSink {
    Q_OBJECT
public:
    using TKSMSSink::TKSMSSink;
    static QString GetDependencies() { return QStringLiteral("zeta.bpl, Alpha.bpl,,rtl70.bpl,ALPHA.BPL"); }
};

// Not registered: it needs what the panel base needs.
class TPlainMeter : public TKSMSSink {
    Q_OBJECT
public:
    using TKSMSSink::TKSMSSink;
};

class PanelDependencies : public ::testing::Test {
protected:
    void SetUp() override { RegisterStreamClass(FGauge, MakePanelClassDescriptor<TDependentGauge>()); }
    void TearDown() override { UnregisterStreamClass(FGauge); }

    const QString FGauge = StreamClassName(TDependentGauge::staticMetaObject);
    QWidget FPage;
    std::unique_ptr<QStringList> FList = std::make_unique<QStringList>();
};

TEST_F(PanelDependencies, NoRootLeavesTheListAndNoPanelDropsIt)
{
    QStringList* const before = FList.get();
    EXPECT_EQ(GetAllPanelDependencies(nullptr, FList), 0);
    EXPECT_EQ(FList.get(), before);
    new QWidget(new QWidget(&FPage));
    EXPECT_EQ(GetAllPanelDependencies(&FPage, FList), 0);
    EXPECT_EQ(FList, nullptr);
}

TEST_F(PanelDependencies, TwoPanelsOfOneClassGiveEachEntryOnceSorted)
{
    new TDependentGauge(&FPage);
    new TDependentGauge(&FPage);
    EXPECT_EQ(GetAllPanelDependencies(&FPage, FList), 3);
    ASSERT_NE(FList, nullptr);
    EXPECT_EQ(*FList, QStringList({"Alpha.bpl", "rtl70.bpl", "zeta.bpl"}));
}

TEST_F(PanelDependencies, NestedPanelsAndUnregisteredClassesCount)
{
    new TDependentGauge(new TPlainMeter(new QWidget(&FPage)));
    const int count = GetAllPanelDependencies(&FPage, FList);
    ASSERT_NE(FList, nullptr);
    EXPECT_EQ(count, TKSMSSink::GetDependencies().split(',').size() + 2) << "rtl70.bpl is in both";
    EXPECT_TRUE(FList->contains("QQSINFO.QQ2"));
    EXPECT_TRUE(FList->contains("zeta.bpl"));
}

}  // namespace

#include "panel_dependencies_test.moc"
