#pragma once

#include <QString>
#include <QStringList>

namespace qxsheet {

// What the demo host was asked to do.
struct TCommand {
    enum TKind { cmdDemo, cmdScan, cmdHelp, cmdError } Kind = cmdDemo;
    int Port = 0;       // cmdScan: the COM port number
    QString Error;      // cmdError: what is wrong with the arguments
};

// Reads the arguments after the program name: none runs the demo; "scan --port N" (N from 1
// to 255) searches the module bus on COM N; "--help" or "-h" prints the usage.
TCommand ParseCommandLine(const QStringList& arguments);

QString UsageText();

}  // namespace qxsheet
