#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/axis_setup_dialog.h"
#include "qxbase/panels/channel_visibilities_dialog.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

// An axis dialog over `count` channels with limits -i..10i, shown; message boxes are recorded.
class AxisSetup : public ::testing::Test {
protected:
    void Show(int count)
    {
        QStringList names;
        std::vector<double> min, max;
        for (int i = 0; i < count; ++i) {
            names << QStringLiteral("ch%1").arg(i);
            min.push_back(-i);
            max.push_back(10.5 * i);
        }
        F.SetNames(names);
        F.SetMinValues(min);
        F.SetMaxValues(max);
        HostServices().MessageBox = [this](QWidget*, const QString& text, const QString& caption, int) {
            Messages << caption + ": " + text;
            return 1;
        };
        F.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&F));
    }
    void Type(QLineEdit* field, const QString& text)
    {
        field->clear();
        QTest::keyClicks(field, text);
    }
    void TearDown() override { RestoreHostServices(); }

    TFormAxisSetup F;
    QStringList Messages;
};

TEST_F(AxisSetup, OneChannelSelectsTheFirstTwoSelectTheSecond)
{
    Show(1);
    EXPECT_EQ(F.CBNames()->currentText(), "0: ch0");
    EXPECT_EQ(F.EMax()->text(), "0");
    F.hide();
    F.SetNames({"a", "b"});
    F.SetMinValues({1, 2.25});
    F.SetMaxValues({3, 4});
    F.show();
    EXPECT_EQ(F.CBNames()->count(), 2);
    EXPECT_EQ(F.CBNames()->currentText(), "1: b");
    EXPECT_EQ(F.GetIndex(), 1);
    EXPECT_EQ(F.EMin()->text(), "2.25");
}

TEST_F(AxisSetup, ChangingTheChannelStoresThePreviousOneAndCancelKeepsEdits)
{
    Show(3);
    Type(F.EMin(), "-7,5");  // a typed comma becomes the decimal point
    EXPECT_EQ(F.EMin()->text(), "-7.5");
    Type(F.EMax(), "1e3x");  // letters other than the exponent are refused
    EXPECT_EQ(F.EMax()->text(), "1e3");
    F.CBNames()->setCurrentIndex(2);
    EXPECT_EQ(F.GetMinValues()[1], -7.5);
    EXPECT_EQ(F.GetMaxValues()[1], 1000);
    EXPECT_EQ(F.EMax()->text(), "21");
    EXPECT_EQ(F.GetIndex(), 2);

    Type(F.EMin(), "-1");
    QTest::mouseClick(F.Button2(), Qt::LeftButton);
    EXPECT_FALSE(F.isVisible());
    EXPECT_EQ(F.result(), TFormAxisSetup::mrCancel);
    EXPECT_EQ(F.GetMinValues()[2], -1) << "stored on every close; the caller ignores it on Cancel";
}

TEST_F(AxisSetup, ButtonsAndKeysGiveTheirResults)
{
    Show(2);
    QTest::mouseClick(F.Button3(), Qt::LeftButton);
    EXPECT_EQ(F.result(), TFormAxisSetup::mrIgnore);
    F.show();
    QTest::keyClick(F.EMin(), Qt::Key_Return);
    EXPECT_EQ(F.result(), TFormAxisSetup::mrOk);
    F.show();
    QTest::keyClick(F.EMin(), Qt::Key_Escape);
    EXPECT_EQ(F.result(), TFormAxisSetup::mrCancel);
    EXPECT_TRUE(Messages.isEmpty());
}

TEST_F(AxisSetup, BadNumberIsReportedAndKeepsTheDialogOpen)
{
    Show(2);
    Type(F.EMax(), "1.2.3");
    EXPECT_THROW(F.StoreFields(), EConvertError);
    QTest::mouseClick(F.Button1(), Qt::LeftButton);
    EXPECT_TRUE(F.isVisible());
    EXPECT_EQ(Messages, QStringList({"Error: '1.2.3' is not a valid floating point value"}));
    EXPECT_EQ(F.GetMinValues()[1], -1) << "nothing stored, the good field neither";
    EXPECT_EQ(F.focusWidget(), F.EMax());

    F.CBNames()->setCurrentIndex(0);
    EXPECT_EQ(F.CBNames()->currentIndex(), 1) << "the channel stays while its text is bad";
    EXPECT_EQ(Messages.size(), 2);
    Type(F.EMax(), "5");
    QTest::mouseClick(F.Button1(), Qt::LeftButton);
    EXPECT_FALSE(F.isVisible());
    EXPECT_EQ(F.GetMaxValues()[1], 5);
}

TEST_F(AxisSetup, EmptyNamesOrShortArraysLeaveTheFieldsAlone)
{
    F.EMin()->setText("keep");
    Show(0);
    EXPECT_EQ(F.CBNames()->count(), 0);
    EXPECT_EQ(F.GetIndex(), -1);
    EXPECT_EQ(F.EMin()->text(), "keep");
    QTest::mouseClick(F.Button1(), Qt::LeftButton);
    EXPECT_EQ(F.result(), TFormAxisSetup::mrOk) << "nothing to store, so no error";

    F.SetNames({"a", "b"});
    F.SetMinValues({1});
    F.show();
    EXPECT_EQ(F.EMin()->text(), "keep");
}

TEST(ChannelVisibilities, AllNoneAndOk)
{
    TFChannelVisibilities f;
    f.SetChannels({"a", "b", "c"}, {true, false});
    EXPECT_EQ(f.GetVisibilities(), std::vector<bool>({true, false, true}));
    f.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&f));
    QTest::mouseClick(f.BTNNoChannelVisible(), Qt::LeftButton);
    EXPECT_EQ(f.GetVisibilities(), std::vector<bool>(3, false));
    QTest::mouseClick(f.BTNAllChannelsVisible(), Qt::LeftButton);
    EXPECT_EQ(f.GetVisibilities(), std::vector<bool>(3, true));
    EXPECT_TRUE(f.isVisible());
    QTest::mouseClick(f.BTNOk(), Qt::LeftButton);
    EXPECT_FALSE(f.isVisible());
    EXPECT_EQ(f.result(), TFChannelVisibilities::mrOk);
}

}  // namespace
