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

bool ParsePort(const QString& text, int& port, QString& error)
{
    std::int32_t value = 0;
    if (!qx::TryStrToInt(text, value) || value < 1 || value > 255) {
        error = QStringLiteral("port must be a number from 1 to 255, not \"%1\"").arg(text);
        return false;
    }
    port = value;
    return true;
}

TCommand ParseScan(const QStringList& arguments)
{
    if (arguments.size() != 3 || arguments[1] != "--port")
        return Error(QStringLiteral("scan needs --port N"));
    int port = 0;
    QString error;
    if (!ParsePort(arguments[2], port, error)) return Error(error);
    TCommand command;
    command.Kind = TCommand::cmdScan;
    command.Port = port;
    return command;
}

TCommand ParseBindings(const QStringList& arguments)
{
    if (arguments.size() > 2)
        return Error(QStringLiteral("bindings takes one worksheet at most"));
    TCommand command;
    command.Kind = TCommand::cmdBindings;
    if (arguments.size() == 2) {
        if (arguments[1].startsWith('-'))
            return Error(QStringLiteral("unknown option \"%1\"").arg(arguments[1]));
        command.File = arguments[1];
    }
    return command;
}

TCommand ParseDatapath(const QStringList& arguments)
{
    TCommand command;
    command.Kind = TCommand::cmdDatapath;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--cycles") {
            std::int32_t cycles = 0;
            if (i + 1 == arguments.size() || !qx::TryStrToInt(arguments[i + 1], cycles) || cycles < 1 || cycles > 1000)
                return Error(QStringLiteral("--cycles needs a number from 1 to 1000"));
            command.Cycles = cycles;
            ++i;
        } else if (argument.startsWith('-')) {
            return Error(QStringLiteral("unknown option \"%1\"").arg(argument));
        } else if (!command.File.isEmpty()) {
            return Error(QStringLiteral("datapath takes one worksheet at most"));
        } else {
            command.File = argument;
        }
    }
    return command;
}

TCommand ParseWorksheet(const QStringList& arguments)
{
    TCommand command;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--snapshot") {
            if (i + 1 == arguments.size() || arguments[i + 1].isEmpty())
                return Error(QStringLiteral("--snapshot needs the name of a PNG file"));
            command.Snapshot = arguments[++i];
        } else if (argument == "--page") {
            if (i + 1 == arguments.size() || arguments[i + 1].isEmpty())
                return Error(QStringLiteral("--page needs the caption of a page"));
            command.Page = arguments[++i];
        } else if (argument == "--port") {
            QString error;
            if (i + 1 == arguments.size() || !ParsePort(arguments[i + 1], command.Port, error))
                return Error(error.isEmpty() ? QStringLiteral("--port needs a number from 1 to 255") : error);
            ++i;
        } else if (argument.startsWith('-')) {
            return Error(QStringLiteral("unknown option \"%1\"").arg(argument));
        } else if (!command.File.isEmpty()) {
            return Error(QStringLiteral("one worksheet at a time, not \"%1\" and \"%2\"").arg(command.File, argument));
        } else {
            command.File = argument;
        }
    }
    return command;
}

}  // namespace

TCommand ParseCommandLine(const QStringList& arguments)
{
    if (arguments.isEmpty()) return {};
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        TCommand command;
        command.Kind = TCommand::cmdHelp;
        return command;
    }
    if (arguments[0] == "scan") return ParseScan(arguments);
    if (arguments[0] == "tour") {
        if (arguments.size() != 1) return Error(QStringLiteral("tour takes no arguments"));
        TCommand command;
        command.Kind = TCommand::cmdTour;
        return command;
    }
    if (arguments[0] == "bindings") return ParseBindings(arguments);
    if (arguments[0] == "datapath") return ParseDatapath(arguments);
    return ParseWorksheet(arguments);
}

QString UsageText()
{
    return QStringLiteral(
        "usage: qxsheet [FILE] [--port N]\n"
        "                             open a worksheet (the bundled demo worksheet when no FILE);\n"
        "                             its module search uses COM N, else a simulated bus\n"
        "       qxsheet [FILE] --snapshot PNG [--page CAPTION]\n"
        "                             render the worksheet in design mode to PNG, headless\n"
        "       qxsheet tour          the console tour: the property-and-event bus, the channel\n"
        "                             model, thermocouples and a module search on a simulated bus\n"
        "       qxsheet bindings [FILE]\n"
        "                             headless: toggle the worksheet's switch twice, press its\n"
        "                             button and print the property updates that follow\n"
        "       qxsheet datapath [FILE] [--cycles N]\n"
        "                             headless: step the worksheet's simulated source N times\n"
        "                             (default 5) and print what each data panel took, then\n"
        "                             the worksheet's connections\n"
        "       qxsheet scan --port N search the amplifier-module bus on COM N (the device is\n"
        "                             $QX_COM<N> if set, else /dev/ttyS<N-1>)\n");
}

}  // namespace qxsheet
