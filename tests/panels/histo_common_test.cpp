#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "qxbase/chart/eng_units.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/histo_common.h"
#include "qxbase/panels/histo_cursor_panel.h"
#include "qxbase/panels/histo_toolbar.h"
#include "qxbase/panels/histo_ui.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

TEST(HistoText, PrefixesOfEveryThirdPowerAndXOtherwise)
{
    const QString expected[] = {"a", "f", "p", "n", QString(QChar(0xB5)), "m", "", "k", "M", "G", "T", "P"};
    for (int i = 0; i < 12; ++i) EXPECT_EQ(GetEngUnitString(-18 + 3 * i), expected[i]) << -18 + 3 * i;
    for (int exponent : {1, 18, -21, -1}) EXPECT_EQ(GetEngUnitString(exponent), "x") << exponent;
}

TEST(HistoText, CursorNumbersKeepSevenDigitsAndThePanelsPlaces)
{
    struct Row { double value; int decimals; const char* text; };
    const Row rows[] = {
        {1.23456789, 9, "1.234568000"},  // digits bind, zeros fill the places
        {1.23456789, 3, "1.235"},        // places bind
        {-123.456789, 6, "-123.456800"},
        {9.9999999, 6, "10.000000"},     // rounding carries into a new digit
        {0.00012345678, 12, "0.000123456800"},
        {-0.0001, 2, "0.00"},            // no "-0.00"
        {42.7, 0, "43"},
        {123456789.0, 2, "1.234568E8"},  // more than 7 integer digits
        {1.5, 40, "1.500000000000000"},  // places clamped to 15
    };
    for (const Row& r : rows) EXPECT_EQ(FormatCursorNumber(r.value, r.decimals), r.text) << r.value;
    EXPECT_EQ(FormatCursorTime(1e300, "hh:mm"), "? ");
}

TEST(HistoText, NameFromFullPathAndExtensions)
{
    EXPECT_EQ(GetNameFromFullPath("a.b.c.d"), "c.d");
    EXPECT_EQ(GetNameFromFullPath("a.b.c"), "c");
    EXPECT_EQ(GetNameFromFullPath("a.b"), "b");
    EXPECT_EQ(GetNameFromFullPath("abc"), "abc");
    EXPECT_EQ(RemoveFileExtension("/data/run.1/plot.dcf"), "/data/run.1/plot");
    EXPECT_EQ(RemoveFileExtension("C:\\run.1\\plot"), "C:\\run.1\\plot");
    EXPECT_EQ(FilterToQtFilter("Text|*.txt;*.log|KS file format (*.dcf)|*.dcf"),
              "Text (*.txt *.log);;KS file format (*.dcf)");
}

TEST(HistoText, SaveDialogCancelledKeepsTheDefaultAndConfirmedDropsTheExtension)
{
    QString caption, filter, offered, answer;
    HostServices().GetSaveFileName = [&](QWidget*, const QString& c, const QString& f, const QString& name) {
        caption = c, filter = f, offered = name;
        return answer;
    };
    QString fileName = "old";
    EXPECT_FALSE(SelectDCFSaveFileName(nullptr, "scope1", fileName));
    EXPECT_EQ(fileName, "scope1");
    EXPECT_EQ(caption, "Save data file");
    EXPECT_EQ(filter, "KS file format (*.dcf)");
    EXPECT_EQ(offered, "scope1");

    answer = "/tmp/x.y/run.dcf";
    EXPECT_TRUE(SelectDCFSaveFileName(nullptr, "scope1", fileName));
    EXPECT_EQ(fileName, "/tmp/x.y/run");
    RestoreHostServices();
}

// The texts the panel shows after SetValues.
QStringList Texts(const TKSHistoCursorPanel& p)
{
    return {p.GetLabelX(1)->text(), p.GetLabelY(1)->text(), p.GetLabelX(2)->text(), p.GetLabelY(2)->text(),
            p.GetLabelDX()->text(), p.GetLabelDY()->text(), p.GetLabelFrequency()->text()};
}

TEST(HistoCursorPanel, ValuesDifferencesAndFrequency)
{
    TKSHistoCursorPanel p;
    p.SetDecimalsX(3);
    p.SetDecimalsY(2);
    // 1.5 ms and 3.5 ms; -250 mV and 2 V.
    p.SetValues(1.5, -250, -3, -3, 3.5, 2, -3, 0, xasLinear, "V");
    EXPECT_EQ(Texts(p), QStringList({"x = 1.500 m", "y = -250.00 mV", "x = 3.500 m", "y = 2.00 V", "dx = 2.000 m",
                                     "dy = 2.25 V", "500.000 Hz"}));
    p.SetValues(2, 1, 3, 0, 2000, -1, 0, 0, xasLinear, "");
    EXPECT_EQ(Texts(p)[4], "dx = 0.000 ");
    EXPECT_EQ(Texts(p)[5], "dy = -2.00 ");
    EXPECT_EQ(Texts(p)[6], "? Hz");

    // Seconds since 1970 in the panel's time format; dx as a signed span.
    p.SetTimeFormat("hh:mm:ss.zzz");
    p.SetValues(86400.5, 0, 0, 0, 86.4, 0, 3, 0, xasDateTime, "");
    EXPECT_EQ(Texts(p)[0], "x = 00:00:00.500");
    EXPECT_EQ(Texts(p)[2], "x = 00:00:00.000");
    EXPECT_EQ(Texts(p)[4], "dx = -00:00:00.500");
    EXPECT_EQ(Texts(p)[6], "2.000 Hz");
}

TEST(HistoCursorPanel, RowsForTopAndBottomOneColumnForLeftAndRight)
{
    QWidget host;
    auto* p = new TKSHistoCursorPanel(&host);
    p->SetMargin(8);
    p->SetCursorPanelPosition(cppTop);
    EXPECT_FALSE(p->GetLabelDX()->isVisibleTo(p) || p->GetLabelFrequency()->isVisibleTo(p));
    EXPECT_EQ(p->GetLabelX(1)->x(), p->GetLabelX(2)->x());
    EXPECT_GT(p->GetLabelX(2)->y(), p->GetLabelX(1)->y());
    EXPECT_GT(p->GetLabelY(1)->x(), p->GetLabelX(1)->x());
    EXPECT_GT(p->GetChannelEdit(1)->x(), p->GetLabelY(1)->geometry().right());
    EXPECT_GE(p->sizeHint().width(), p->GetChannelEdit(1)->geometry().right() + 8);

    p->SetCursorPanelPosition(cppRight);
    EXPECT_TRUE(p->GetLabelDX()->isVisibleTo(p) && p->GetLabelDY()->isVisibleTo(p));
    const int spacing = p->GetLineSpacing();
    EXPECT_EQ(p->GetLabelX(1)->x(), p->GetLabelY(2)->x());
    EXPECT_EQ(p->GetCursorRadio(2)->y(), p->GetChannelEdit(1)->geometry().bottom() + 1 + spacing + 4);
    EXPECT_GT(p->GetLabelDX()->y(), p->GetChannelEdit(2)->geometry().bottom());
    EXPECT_GT(p->GetLabelFrequency()->y(), p->GetLabelDY()->y());
    EXPECT_TRUE(p->isVisibleTo(&host));

    p->SetCursorPanelPosition(cppHide);
    EXPECT_FALSE(p->isVisibleTo(&host));
    EXPECT_EQ(p->GetCursorPanelPosition(), cppHide);
}

TEST(HistoCursorPanel, ChannelFieldsWidenToTheLongerNameBelowTheLimitOnly)
{
    TKSHistoCursorPanel p;
    p.SetCursorPanelPosition(cppTop);
    EXPECT_EQ(p.GetChannelEdit(1)->width(), 30);
    const QFontMetrics fm(p.GetChannelEdit(1)->font());
    p.UpdateCurveLabel(1, "Ch");
    EXPECT_EQ(p.GetChannelEdit(2)->width(), 30) << "narrow names keep the start width";
    p.UpdateCurveLabel(2, "Temperature 12");
    const int wide = fm.horizontalAdvance("Temperature 12") + 8;
    EXPECT_EQ(p.GetChannelEdit(1)->width(), wide);
    EXPECT_EQ(p.GetChannelEdit(2)->width(), wide);
    p.UpdateCurveLabel(2, "T");
    EXPECT_EQ(p.GetChannelEdit(2)->width(), wide) << "never narrows";
    p.SetChannelEditMaxWidth(wide + 20);
    p.UpdateCurveLabel(1, QString(60, 'W'));
    EXPECT_EQ(p.GetChannelEdit(1)->width(), wide) << "a name past the limit changes nothing";
}

TEST(HistoCursorPanel, RadioButtonsSelectAndUpDownStepsTheSelectedCursorsCurve)
{
    QWidget host;
    auto* p = new TKSHistoCursorPanel(&host);
    p->SetCursorPanelPosition(cppTop);
    host.resize(p->sizeHint());
    host.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&host));
    QSignalSpy selected(p, &TKSHistoCursorPanel::cursorSelected);
    QSignalSpy curves(p, &TKSHistoCursorPanel::curveChanged);
    int handlerCurve = -1;
    p->OnCurveChange = [&](TKSHistoCursorPanel*, int, int Curve) { handlerCurve = Curve; };

    QTest::mouseClick(p->GetCursorRadio(2), Qt::LeftButton, {}, QPoint(6, p->GetCursorRadio(2)->height() / 2));
    EXPECT_EQ(p->GetSelectedCursorIndex(), 2);
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected[0][0].toInt(), 2);
    p->SetSelectedCursorIndex(1);
    EXPECT_TRUE(p->GetCursorRadio(1)->isChecked());
    EXPECT_EQ(selected.size(), 1) << "a programmatic selection fires nothing";

    QTest::mouseClick(p->GetUpButton(), Qt::LeftButton);
    EXPECT_TRUE(curves.isEmpty()) << "no curves, nothing to step to";
    p->SetCurveCount(3);
    p->SetCursorCurve(1, 2);
    QTest::mouseClick(p->GetUpButton(), Qt::LeftButton);  // wraps to 0
    QTest::mouseClick(p->GetDownButton(), Qt::LeftButton);  // and back to 2
    ASSERT_EQ(curves.size(), 2);
    EXPECT_EQ(curves[0], QList<QVariant>({1, 0}));
    EXPECT_EQ(curves[1], QList<QVariant>({1, 2}));
    EXPECT_EQ(handlerCurve, 2);
    EXPECT_EQ(p->GetCursorCurve(1), 2);
    EXPECT_EQ(p->GetCursorCurve(2), -1);
}

TEST(HistoToolbar, TenFlatButtonsInOrderWithHintsGlyphsAndToggles)
{
    TKSHistoToolbar bar;
    const char* names[] = {"BAxisSetup", "BAutoscale", "BCaptureScale", "BDefault", "BCursorPanel",
                           "BPrint", "BVisible", "BHold", "BBackward", "BForward"};
    const char* hints[] = {"Axis setup", "Autoscale", "Capture scale", "Default scale", "Cursor panel",
                           "Print", "Channel visibilities", "Hold", "Scroll backward", ""};
    ASSERT_EQ(bar.GetButtons().size(), 10);
    for (int i = 0; i < 10; ++i) {
        const QToolButton* b = bar.GetButtons()[i];
        EXPECT_EQ(b->objectName(), names[i]);
        EXPECT_EQ(b->toolTip(), hints[i]);
        EXPECT_TRUE(b->autoRaise());
        EXPECT_FALSE(b->icon().isNull()) << names[i];
        EXPECT_EQ(b->isCheckable(), i == 1 || i == 4 || i == 7) << names[i];
        EXPECT_EQ(b->isVisibleTo(&bar), i < 8) << names[i];
    }
    EXPECT_EQ(bar.BHold(), bar.GetButtons()[7]);
    bar.BAutoscale()->click();
    bar.BHold()->click();
    bar.BHold()->click();
    EXPECT_TRUE(bar.BAutoscale()->isChecked());
    EXPECT_FALSE(bar.BHold()->isChecked()) << "a toggle may be up again, alone in its group";
}

// A surface with a voltage and a current curve, x 0..9 ms, and a read-out attached.
TEST(HistoUI, KeepsTheReadOutCurrentAndFollowsItsChoices)
{
    TKSHistoUI ui;
    const int u = ui.AddCurve("U", "V", clRed, 0);
    const int i = ui.AddCurve("I", "A", clLime, 0);
    for (TQXChartCurve* c : {ui.GetCurve(u), ui.GetCurve(i)}) {
        c->DX = 0.001;
        for (int k = 0; k < 10; ++k) c->Samples.push_back(k * (c->Unit == "V" ? 1000.0 : 0.5));
    }
    ui.CurvesChanged();
    auto* panel = new TKSHistoCursorPanel(&ui);
    panel->SetDecimalsX(1);
    panel->SetDecimalsY(1);
    ui.SetCursorPanel(panel);
    ui.SetCursorX(0, 0.002);
    ui.SetCursorX(1, 0.007);
    EXPECT_EQ(Texts(*panel), QStringList({"x = 2.0 m", "y = 2.0 kV", "x = 7.0 m", "y = 7.0 kV", "dx = 5.0 m",
                                          "dy = 5.0 kV", "200.0 Hz"}));
    EXPECT_EQ(panel->GetChannelEdit(2)->text(), "U");
    EXPECT_EQ(panel->GetCurveCount(), 2);

    panel->SetSelectedCursorIndex(2);
    panel->UpDownClick(btNext);
    EXPECT_EQ(ui.GetCursorCurve(1), i);
    EXPECT_EQ(panel->GetChannelEdit(2)->text(), "I");
    EXPECT_EQ(Texts(*panel)[3], "y = 3.5 ") << "no unit while the cursors' curves differ in it";
    QTest::mouseClick(panel->GetCursorRadio(1), Qt::LeftButton, {}, QPoint(6, panel->GetCursorRadio(1)->height() / 2));
    EXPECT_EQ(ui.GetSelectedCursor(), 0);

    EXPECT_EQ(YAxisDataObjectGet(0, &ui), ui.GetYAxis(0));
    EXPECT_EQ(YAxisDataObjectGet(1, &ui), nullptr);
    EXPECT_EQ(YAxisDataObjectGet(0, nullptr), nullptr);
    delete panel;
    ui.SetCursorX(0, 0.004);  // a read-out destroyed under the surface is forgotten
    EXPECT_EQ(ui.GetCursorPanel(), nullptr);
}

}  // namespace
