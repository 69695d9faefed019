#pragma once

#include <QString>
#include <QStringList>

namespace qxsheet {

// What the demo host was asked to do.
struct TCommand {
    enum TKind { cmdWorksheet, cmdTour, cmdBindings, cmdDatapath, cmdScan, cmdHelp, cmdError } Kind = cmdWorksheet;
    int Port = 0;       // cmdScan, cmdWorksheet: the COM port number; 0 for none
    int Cycles = 5;     // cmdDatapath: acquisition cycles to step
    QString File;       // cmdWorksheet, cmdBindings, cmdDatapath: the worksheet; empty for the bundled one
    QString Snapshot;   // cmdWorksheet: the PNG to render to instead of opening a window
    QString Page;       // cmdWorksheet with Snapshot: the caption of the page to render
    QString Error;      // cmdError: what is wrong with the arguments
};

// Reads the arguments after the program name: none opens the bundled worksheet; a file name
// opens that worksheet ("--port N" gives its module search a COM port); "--snapshot PNG" renders it headless instead ("--page CAPTION" that page); "tour" runs the console
// tour; "bindings [FILE]" runs the binding walk-through on the worksheet;
// "datapath [FILE] [--cycles N]" (N from 1 to 1000) steps its simulated source by hand; "scan --port N" (N from 1 to 255) searches the module bus on COM N; "--help" or "-h"
// prints the usage.
TCommand ParseCommandLine(const QStringList& arguments);

QString UsageText();

}  // namespace qxsheet
