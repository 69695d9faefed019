#include <gtest/gtest.h>

#include <QImage>
#include <QStringList>

#include "qxbase/control/atelier_connection.h"
#include "qxbase/panels/panel_base.h"

using namespace qx;

// A repository host that installs the page's apply and project-changed handlers when it
// accepts the page.
TEST(AtelierConnection, HostDecidesWhichPageConnectsAndClosingUnsetsOnlyThePageHandlers)
{
    TAtelierConnection connection;
    TKSMSSink first;
    TKSMSSink second;
    QStringList log;
    connection.OnConnectPropertyPage = [&](TKSMSSink* panel, QWidget*, bool& canConnect, const auto& apply,
                                           const auto&, const auto&, const auto&, const auto&, const auto& changed) {
        log << QStringLiteral("connect, current %1").arg(connection.GetCurrentPanel() == panel);
        canConnect = panel == &first;
        if (canConnect) {
            connection.OnApply = apply;
            connection.OnProjectChanged = changed;
        }
    };
    connection.OnPropertyPageClosed = [&](TAtelierConnection* sender) {
        log << QStringLiteral("closed, first %1").arg(sender->GetCurrentPanel() == &first);
    };
    const auto connect = [&](TKSMSSink& panel) {
        bool canConnect = false;
        connection.ConnectPropertyPage(
            &panel, nullptr, canConnect,
            [&](TAtelierConnection* sender) { log << (sender == &connection ? "apply" : "apply?"); }, {}, {}, {}, {},
            [&](bool moved) { log << QStringLiteral("moved %1").arg(moved); });
        return canConnect;
    };

    ASSERT_TRUE(connect(first));
    EXPECT_FALSE(connect(second));
    EXPECT_EQ(connection.GetCurrentPanel(), &first);
    connection.Apply();
    connection.ProjectChanged(true);
    connection.PropertyPageHasClosed();
    EXPECT_EQ(log, QStringList({"connect, current 1", "connect, current 1", "apply", "moved 1", "closed, first 1"}));
    EXPECT_EQ(connection.GetCurrentPanel(), nullptr);
    EXPECT_FALSE(connection.OnApply || connection.OnProjectChanged);
    EXPECT_TRUE(connection.OnConnectPropertyPage && connection.OnPropertyPageClosed);
}

TEST(AtelierConnection, WithoutHandlersGroupsComeBackEmptyAndAHandlerMayUnsetItself)
{
    TAtelierConnection connection;
    QString top;
    std::int32_t topId = 7;
    std::int32_t imageId = 3;
    TAtelierItemList groups;
    groups.push_back(std::make_unique<TAtelierItemBase>());
    connection.GetGroups(top, topId, imageId, groups);
    EXPECT_EQ(topId, -1);
    EXPECT_TRUE(groups.empty());

    QStringList log;
    connection.OnOK = [&log, tag = QStringLiteral("ok")](TAtelierConnection* sender) {
        sender->OnOK = nullptr;  // destroys the stored handler, captures included
        log << tag;
    };
    connection.OK();
    connection.OK();
    EXPECT_EQ(log, QStringList{"ok"});
}

TEST(AtelierItem, AnEmptyPictureClearsTheItemsAMissingOneIsIgnored)
{
    TAtelierItemBase item;
    const QImage picture(4, 4, QImage::Format_RGB32);
    item.SetBitmap(&picture);
    item.SetIcon(&picture);
    item.SetBitmap(nullptr);
    EXPECT_EQ(item.GetBitmap().size(), QSize(4, 4));
    const QImage empty;
    item.SetBitmap(&empty);
    item.SetIcon(&empty);
    EXPECT_TRUE(item.GetBitmap().isNull() && item.GetIcon().isNull());
}
