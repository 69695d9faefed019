#include <gtest/gtest.h>

#include <QAction>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTextStream>

#include "apps/qxsheet/command_line.h"
#include "apps/qxsheet/module_scan_demo.h"
#include "apps/qxsheet/worksheet_app.h"
#include "qxbase/config/pad_search_result_dialog.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/framework/print_qstring.h"

namespace {

using qxsheet::ParseCommandLine;
using qxsheet::TCommand;

TEST(CommandLine, ChoosesWorksheetTourScanOrHelp)
{
    const TCommand bundled = ParseCommandLine({});
    EXPECT_EQ(bundled.Kind, TCommand::cmdWorksheet);
    EXPECT_TRUE(bundled.File.isEmpty());
    const TCommand snapshot = ParseCommandLine({"--snapshot", "out.png", "plant.qxw"});
    EXPECT_EQ(snapshot.Kind, TCommand::cmdWorksheet);
    EXPECT_EQ(snapshot.File, "plant.qxw");
    EXPECT_EQ(snapshot.Snapshot, "out.png");
    EXPECT_EQ(ParseCommandLine({"tour"}).Kind, TCommand::cmdTour);
    const TCommand bindings = ParseCommandLine({"bindings", "plant.qxw"});
    EXPECT_EQ(bindings.Kind, TCommand::cmdBindings);
    EXPECT_EQ(bindings.File, "plant.qxw");
    const TCommand datapath = ParseCommandLine({"datapath", "--cycles", "3", "plant.qxw"});
    EXPECT_EQ(datapath.Kind, TCommand::cmdDatapath);
    EXPECT_EQ(datapath.Cycles, 3);
    EXPECT_EQ(datapath.File, "plant.qxw");
    EXPECT_EQ(ParseCommandLine({"datapath"}).Cycles, 5);
    EXPECT_EQ(ParseCommandLine({"--help"}).Kind, TCommand::cmdHelp);
    EXPECT_EQ(ParseCommandLine({"plant.qxw", "--port", "3"}).Port, 3);
    const TCommand scan = ParseCommandLine({"scan", "--port", "7"});
    EXPECT_EQ(scan.Kind, TCommand::cmdScan);
    EXPECT_EQ(scan.Port, 7);
}

TEST(CommandLine, RefusesBadArgumentsWithAReason)
{
    struct Row {
        QStringList args;
        const char* error;
    };
    const Row rows[] = {
        {{"tour", "now"}, "tour takes no arguments"},
        {{"datapath", "--cycles", "0"}, "--cycles needs a number from 1 to 1000"},
        {{"datapath", "--cycles"}, "--cycles needs a number from 1 to 1000"},
        {{"datapath", "a.qxw", "b.qxw"}, "datapath takes one worksheet at most"},
        {{"bindings", "a.qxw", "b.qxw"}, "bindings takes one worksheet at most"},
        {{"bindings", "--snapshot"}, "unknown option \"--snapshot\""},
        {{"a.qxw", "b.qxw"}, "one worksheet at a time, not \"a.qxw\" and \"b.qxw\""},
        {{"a.qxw", "--snapshot"}, "--snapshot needs the name of a PNG file"},
        {{"--snap", "x.png"}, "unknown option \"--snap\""},
        {{"scan"}, "scan needs --port N"},
        {{"scan", "-p", "3"}, "scan needs --port N"},
        {{"scan", "--port", "0"}, "port must be a number from 1 to 255, not \"0\""},
        {{"scan", "--port", "256"}, "port must be a number from 1 to 255, not \"256\""},
        {{"scan", "--port", "COM3"}, "port must be a number from 1 to 255, not \"COM3\""},
        {{"--port"}, "--port needs a number from 1 to 255"},
    };
    for (const Row& row : rows) {
        const TCommand command = ParseCommandLine(row.args);
        EXPECT_EQ(command.Kind, TCommand::cmdError) << row.error;
        EXPECT_EQ(command.Error, QString::fromUtf8(row.error));
    }
}

TEST(ModuleScan, APortThatDoesNotOpenIsReportedNotScanned)
{
    qputenv("QX_COM77", "/nonexistent/qxsheet-test-port");
    QString text;
    QTextStream out(&text);
    EXPECT_EQ(qxsheet::RunModuleScan(out, 77), 1);
    out.flush();
    EXPECT_TRUE(text.contains("COM77 (/nonexistent/qxsheet-test-port) did not open")) << text.toStdString();
    qunsetenv("QX_COM77");
}

// The demo's own bus: every module the simulator places is found through the real serial code.
TEST(ModuleScan, TheSimulatedBusShowsEveryModule)
{
    QString text;
    QTextStream out(&text);
    qxsheet::ShowSimulatedBusScan(out);
    out.flush();
    EXPECT_TRUE(text.contains("COM64: 8 module(s) found")) << text.toStdString();
    EXPECT_TRUE(text.contains("address  1  DAQP  DAQP-V      range 10V, filter 1kHz, remote"));
    EXPECT_TRUE(text.contains("address 20  PAD   PAD-VTH8    range CJC K, 8 channels"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("QX_COM64"));
}

// The menu entry searches the simulated bus while the window's sources keep running; "Ok" waits
// for the end, and closing the form early leaves nothing behind.
TEST(ModuleScan, TheWindowSearchesWhileItKeepsRunning)
{
    const auto window = qxsheet::OpenWorksheetWindow(QString());
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    auto* source = window->findChild<qx::TKSSimulatedSource*>();
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(window->GetSearchModulesAction()->text(), "Search &amplifier modules...");

    window->GetSearchModulesAction()->trigger();
    QPointer<qx::TFormPadSearchResult> form = window->findChild<qx::TFormPadSearchResult*>();
    ASSERT_TRUE(form);
    EXPECT_TRUE(form->Memo1()->toPlainText().startsWith("Searching the module bus on COM64"));
    const std::uint64_t position = source->GetStreamPosition();
    QTest::mouseClick(form->SBAllVisible(), Qt::LeftButton);
    ASSERT_TRUE(form);
    ASSERT_TRUE(QTest::qWaitFor([&] { return form->SBAllVisible()->isEnabled(); }, 30000));
    EXPECT_GT(source->GetStreamPosition(), position);
    EXPECT_TRUE(form->Memo1()->toPlainText().contains("COM64: 8 module(s) found")) << form->Memo1()->toPlainText().toStdString();
    QTest::mouseClick(form->SBAllVisible(), Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }));
    EXPECT_FALSE(qEnvironmentVariableIsSet("QX_COM64"));

    window->GetSearchModulesAction()->trigger();
    form = window->findChild<qx::TFormPadSearchResult*>();
    ASSERT_TRUE(form);
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }, 2000));
    EXPECT_FALSE(qEnvironmentVariableIsSet("QX_COM64"));
}

}  // namespace
