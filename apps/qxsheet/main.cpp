#include <QCoreApplication>
#include <QTextStream>

#include "apps/qxsheet/command_line.h"
#include "apps/qxsheet/console_demo.h"
#include "apps/qxsheet/module_scan_demo.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();

    const qxsheet::TCommand command = qxsheet::ParseCommandLine(arguments);
    switch (command.Kind) {
    case qxsheet::TCommand::cmdHelp:
        out << qxsheet::UsageText();
        return 0;
    case qxsheet::TCommand::cmdError: {
        QTextStream err(stderr);
        err << "qxsheet: " << command.Error << Qt::endl << qxsheet::UsageText();
        return 2;
    }
    case qxsheet::TCommand::cmdScan:
        return qxsheet::RunModuleScan(out, command.Port);
    case qxsheet::TCommand::cmdDemo:
        break;
    }
    const int result = qxsheet::RunConsoleDemo(out);
    qxsheet::ShowSimulatedBusScan(out);
    return result;
}
