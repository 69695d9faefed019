#include "apps/qxsheet/command_line.h"

#include "qxbase/framework/number_text.h"

namespace qxsheet {
namespace {

TCommand Error(const QString& text)
{
    TCommand command;
    command.Kind = TCommand::cmdError;
    command.Error = text;
    return command;
}

}  // namespace

TCommand ParseCommandLine(const QStringList& arguments)
{
    TCommand command;
    if (arguments.isEmpty()) return command;
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        command.Kind = TCommand::cmdHelp;
        return command;
    }
    if (arguments[0] != "scan") return Error(QStringLiteral("unknown command \"%1\"").arg(arguments[0]));
    if (arguments.size() != 3 || arguments[1] != "--port")
        return Error(QStringLiteral("scan needs --port N"));
    std::int32_t port = 0;
    if (!qx::TryStrToInt(arguments[2], port) || port < 1 || port > 255)
        return Error(QStringLiteral("port must be a number from 1 to 255, not \"%1\"").arg(arguments[2]));
    command.Kind = TCommand::cmdScan;
    command.Port = port;
    return command;
}

QString UsageText()
{
    return QStringLiteral(
        "usage: qxsheet               run the demo: the property-and-event bus, the channel model,\n"
        "                             thermocouples and a module search on a simulated bus\n"
        "       qxsheet scan --port N search the amplifier-module bus on COM N (the device is\n"
        "                             $QX_COM<N> if set, else /dev/ttyS<N-1>)\n");
}

}  // namespace qxsheet
