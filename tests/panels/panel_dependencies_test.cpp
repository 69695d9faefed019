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

// Entries are trimmed, empty ones dropped, sorted and kept once regardless of case; an
// unregistered class needs what the panel base needs; panels inside plain widgets and inside
// other panels count.
TEST_F(PanelDependencies, NestedPanelsGiveEachEntryOnceSortedIgnoringCase)
{
    new TDependentGauge(new TPlainMeter(new QWidget(&FPage)));
    EXPECT_EQ(GetAllPanelDependencies(&FPage, FList), 15);
    ASSERT_NE(FList, nullptr);
    EXPECT_EQ(*FList, QStringList({"Alpha.bpl", "chartpak_D7.bpl", "dbrtl70.bpl", "hvkutilcomponents.bpl",
                                   "OrreryZL.bpl", "QQSINFO.QQ2", "rtl70.bpl", "rvbase.bpl", "vcl70.bpl",
                                   "vcljpg70.bpl", "vclsmp70.bpl", "vclx70.bpl", "zeta.bpl", "ZLCoreKS.bpl",
                                   "ZLDeviceExchangeFilters.bpl"}));
}

}  // namespace

#include "panel_dependencies_test.moc"
