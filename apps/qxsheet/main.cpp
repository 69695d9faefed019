#include <QApplication>
#include <QCoreApplication>
#include <QTextStream>

#include "apps/qxsheet/bindings_demo.h"
#include "apps/qxsheet/command_line.h"
#include "apps/qxsheet/console_demo.h"
#include "apps/qxsheet/datapath_demo.h"
#include "apps/qxsheet/module_scan_demo.h"
#include "apps/qxsheet/worksheet_app.h"

namespace {

int RunWorksheet(int argc, char** argv, const qxsheet::TCommand& command, QTextStream& out, QTextStream& err)
{
    const bool noPlatform = qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    const bool headless = !command.Snapshot.isEmpty() || command.Kind == qxsheet::TCommand::cmdBindings
                          || command.Kind == qxsheet::TCommand::cmdDatapath;
    if (headless && noPlatform) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else if (!headless && noPlatform && qEnvironmentVariableIsEmpty("DISPLAY")
               && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        err << "qxsheet: no display to open a window on (DISPLAY and WAYLAND_DISPLAY are empty);"
               " try --snapshot FILE.png or \"qxsheet tour\""
            << Qt::endl;
        return 1;
    }
    QApplication app(argc, argv);
    if (command.Kind == qxsheet::TCommand::cmdBindings)
        return qxsheet::RunBindingsDemo(command.File, out, err);
    if (command.Kind == qxsheet::TCommand::cmdDatapath)
        return qxsheet::RunDatapathDemo(command.File, command.Cycles, out, err);
    if (!command.Snapshot.isEmpty())
        return qxsheet::RunSnapshot(command.File, command.Snapshot, out, err, command.Page);
    return qxsheet::RunWorksheetWindow(command.File, err, command.Port);
}

}  // namespace

int main(int argc, char** argv)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    const qxsheet::TCommand command = qxsheet::ParseCommandLine(arguments);
    switch (command.Kind) {
    case qxsheet::TCommand::cmdHelp:
        out << qxsheet::UsageText();
        return 0;
    case qxsheet::TCommand::cmdError:
        err << "qxsheet: " << command.Error << Qt::endl << qxsheet::UsageText();
        return 2;
    case qxsheet::TCommand::cmdScan: {
        QCoreApplication app(argc, argv);
        return qxsheet::RunModuleScan(out, command.Port);
    }
    case qxsheet::TCommand::cmdTour: {
        QCoreApplication app(argc, argv);
        const int result = qxsheet::RunConsoleDemo(out);
        qxsheet::ShowSimulatedBusScan(out);
        return result;
    }
    case qxsheet::TCommand::cmdWorksheet:
    case qxsheet::TCommand::cmdBindings:
    case qxsheet::TCommand::cmdDatapath:
        break;
    }
    return RunWorksheet(argc, argv, command, out, err);
}
