#include <gtest/gtest.h>

#include <QStringList>

#include "qxbase/control/atelier_connection.h"
#include "qxbase/panels/panel_base.h"

using namespace qx;

namespace {

class AtelierConnectionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        FFirst.setObjectName(QStringLiteral("First"));
        FSecond.setObjectName(QStringLiteral("Second"));
    }
    // A repository host that installs the page's apply and project-changed handlers when it
    // accepts the page.
    void InstallHost()
    {
        FConnection.OnConnectPropertyPage = [this](TKSMSSink* panel, QWidget*, bool& canConnect, const auto& apply,
                                                   const auto&, const auto&, const auto&, const auto&,
                                                   const auto& changed) {
            FLog << "connect " + panel->objectName() + (FConnection.GetCurrentPanel() == panel ? " current" : "");
            canConnect = FAccept;
            if (FAccept) {
                FConnection.OnApply = apply;
                FConnection.OnProjectChanged = changed;
            }
        };
        FConnection.OnPropertyPageClosed = [this](TAtelierConnection* sender) {
            FLog << "closed " + sender->GetCurrentPanel()->objectName();
        };
    }
    bool Connect(TKSMSSink& panel)
    {
        bool canConnect = false;
        FConnection.ConnectPropertyPage(
            &panel, nullptr, canConnect,
            [this](TAtelierConnection* sender) { FLog << (sender == &FConnection ? "apply" : "apply?"); }, {}, {},
            {}, {}, [this](bool moved) { FLog << QStringLiteral("moved %1").arg(moved); });
        return canConnect;
    }

    TAtelierConnection FConnection;
    QStringList FLog;
    bool FAccept = true;
    TKSMSSink FFirst;
    TKSMSSink FSecond;
};

TEST_F(AtelierConnectionTest, WithoutHandlersGroupsComeBackEmpty)
{
    QString top;
    std::int32_t topId = 7;
    std::int32_t imageId = 3;
    TAtelierItemList groups;
    groups.push_back(std::make_unique<TAtelierItemBase>());
    FConnection.GetGroups(top, topId, imageId, groups);
    EXPECT_EQ(topId, -1);
    EXPECT_TRUE(groups.empty());
}

TEST_F(AtelierConnectionTest, RefusedPageLeavesThePreviousPanelCurrent)
{
    InstallHost();
    ASSERT_TRUE(Connect(FFirst));
    FAccept = false;
    EXPECT_FALSE(Connect(FSecond));
    EXPECT_EQ(FConnection.GetCurrentPanel(), &FFirst);
    EXPECT_EQ(FLog, QStringList({"connect First current", "connect Second current"}));
}

TEST_F(AtelierConnectionTest, ConnectedPageAnswersUntilItCloses)
{
    InstallHost();
    ASSERT_TRUE(Connect(FFirst));
    FConnection.Apply();
    FConnection.ProjectChanged(true);
    FConnection.PropertyPageHasClosed();
    EXPECT_EQ(FLog, QStringList({"connect First current", "apply", "moved 1", "closed First"}));
    EXPECT_EQ(FConnection.GetCurrentPanel(), nullptr);
    EXPECT_FALSE(FConnection.OnApply || FConnection.OnProjectChanged);
    EXPECT_TRUE(FConnection.OnConnectPropertyPage && FConnection.OnPropertyPageClosed);
}

TEST_F(AtelierConnectionTest, HandlerMayUnsetItselfWhileItRuns)
{
    FConnection.OnOK = [this, tag = QStringLiteral("ok")](TAtelierConnection* sender) {
        sender->OnOK = nullptr;  // destroys the stored handler, captures included
        FLog << tag;
    };
    FConnection.OK();
    FConnection.OK();
    EXPECT_EQ(FLog, QStringList{"ok"});
}

}  // namespace
