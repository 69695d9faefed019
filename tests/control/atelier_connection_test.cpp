#include <gtest/gtest.h>

#include <QImage>
#include <QStringList>

#include "qxbase/control/atelier_connection.h"
#include "qxbase/panels/panel_base.h"

using namespace qx;

namespace {

class AtelierConnectionTest : public ::testing::Test {
protected:
    // A repository host that installs the page's handlers and answers as `FAccept` says.
    void InstallHost()
    {
        FConnection.OnConnectPropertyPage = [this](TKSMSSink* panel, QWidget*, bool& canConnect,
                                                   const TAtelierNotifyEvent& apply, const TAtelierNotifyEvent& cancel,
                                                   const TAtelierNotifyEvent& ok, const TAtelierGetGroup& group,
                                                   const TAtelierGetGroups& groups, const TQXProjectChanged& changed) {
            FLog << "connect " + panel->objectName() + (FConnection.GetCurrentPanel() == panel ? " current" : "");
            canConnect = FAccept;
            if (!FAccept)
                return;
            FConnection.OnApply = apply;
            FConnection.OnCancel = cancel;
            FConnection.OnOK = ok;
            FConnection.OnGetGroup = group;
            FConnection.OnGetGroups = groups;
            FConnection.OnProjectChanged = changed;
        };
        FConnection.OnPropertyPageClosed = [this](TAtelierConnection* sender) {
            FLog << "closed " + sender->GetCurrentPanel()->objectName();
        };
    }
    bool Connect(TKSMSSink& panel)
    {
        bool canConnect = false;
        const auto log = [this](const char* what) { return [this, what](TAtelierConnection* sender) {
            FLog << QString::fromLatin1(what) + (sender == &FConnection ? "" : " from elsewhere");
        }; };
        FConnection.ConnectPropertyPage(
            &panel, nullptr, canConnect, log("apply"), log("cancel"), log("ok"),
            [this](std::int32_t id, TAtelierItemList& items) {
                FLog << "group " + QString::number(id) + " of " + QString::number(items.size());
            },
            {}, [this](bool moved) { FLog << QStringLiteral("moved %1").arg(moved); });
        return canConnect;
    }

    TAtelierConnection FConnection;
    QStringList FLog;
    bool FAccept = true;
    TKSMSSink FFirst;
    TKSMSSink FSecond;

    void SetUp() override
    {
        FFirst.setObjectName(QStringLiteral("First"));
        FSecond.setObjectName(QStringLiteral("Second"));
    }
};

TEST_F(AtelierConnectionTest, WithoutAHostEveryPanelConnectsAndNothingIsRelayed)
{
    EXPECT_TRUE(Connect(FFirst));
    EXPECT_EQ(FConnection.GetCurrentPanel(), &FFirst);
    FConnection.Apply();
    FConnection.GroupsHaveChanged();
    FConnection.ProjectChanged(true);
    EXPECT_TRUE(FLog.isEmpty()) << "the page's handlers are the host's to install";

    QString top = QStringLiteral("kept");
    std::int32_t topId = 7;
    std::int32_t imageId = 3;
    TAtelierItemList groups;
    groups.push_back(std::make_unique<TAtelierItemBase>());
    FConnection.GetGroups(top, topId, imageId, groups);
    EXPECT_EQ(topId, -1);
    EXPECT_TRUE(groups.empty());
    EXPECT_EQ(top, "kept");
    EXPECT_EQ(imageId, 3);
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
    FConnection.Cancel();
    FConnection.OK();
    FConnection.ProjectChanged(true);
    TAtelierItemList items;
    items.push_back(std::make_unique<TAtelierItemBase>());
    FConnection.GetGroup(12, items);
    EXPECT_EQ(FLog, QStringList({"connect First current", "apply", "cancel", "ok", "moved 1", "group 12 of 0"}));

    FLog.clear();
    FConnection.PropertyPageHasClosed();
    EXPECT_EQ(FLog, QStringList({"closed First"})) << "the host hears it while the panel is current";
    EXPECT_EQ(FConnection.GetCurrentPanel(), nullptr);
    EXPECT_FALSE(FConnection.OnApply || FConnection.OnCancel || FConnection.OnOK || FConnection.OnGetGroup ||
                 FConnection.OnProjectChanged);
    EXPECT_TRUE(FConnection.OnConnectPropertyPage && FConnection.OnPropertyPageClosed);
}

TEST_F(AtelierConnectionTest, HandlerMayReplaceItselfWhileItRuns)
{
    int calls = 0;
    FConnection.OnOK = [&](TAtelierConnection* sender) {
        sender->OnOK = nullptr;  // destroys the stored handler while this call runs
        ++calls;
    };
    FConnection.OK();
    FConnection.OK();
    EXPECT_EQ(calls, 1);
}

TEST(AtelierItem, PicturesAreCopiedAndMissingOnesIgnored)
{
    TAtelierItemBase item;
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    item.SetBitmap(&picture);
    item.SetIcon(&picture);
    picture.fill(Qt::blue);
    EXPECT_EQ(item.GetBitmap().pixel(0, 0), qRgb(255, 0, 0));

    const QImage empty;
    item.SetBitmap(nullptr);
    item.SetIcon(&empty);
    EXPECT_EQ(item.GetBitmap().size(), QSize(3, 2));
    EXPECT_EQ(item.GetIcon().size(), QSize(3, 2));
}

}  // namespace
