#include <QCoreApplication>
#include <QTextStream>

#include "apps/qxsheet/console_demo.h"

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    return qxsheet::RunConsoleDemo(out);
}
