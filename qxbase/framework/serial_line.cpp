#include "qxbase/framework/serial_line.h"

#include <QDeadlineTimer>
#include <QSerialPort>
#include <chrono>
#include <thread>

namespace qx {

TSerialLine::~TSerialLine() = default;

void TSerialLine::Wait(int milliseconds)
{
    if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

QString ComPortDevice(int portNumber)
{
    const QByteArray variable = "QX_COM" + QByteArray::number(portNumber);
    if (qEnvironmentVariableIsSet(variable.constData())) return qEnvironmentVariable(variable.constData());
    if (portNumber < 1) return {};
    return QStringLiteral("/dev/ttyS%1").arg(portNumber - 1);
}

namespace {

// Qt Serial Port used only through its blocking calls, so no event loop is needed.
class TQtSerialLine final : public TSerialLine {
public:
    explicit TQtSerialLine(const TSerialLineSettings& settings) : FSettings(settings) {}

    bool Open(const QString& device)
    {
        if (device.isEmpty()) return false;
        FPort.setPortName(device);
        if (!FPort.open(QIODevice::ReadWrite)) return false;
        const bool configured = FPort.setBaudRate(FSettings.BaudRate) && FPort.setDataBits(QSerialPort::Data8) &&
                                FPort.setParity(QSerialPort::NoParity) &&
                                FPort.setStopBits(QSerialPort::OneStop) &&
                                FPort.setFlowControl(QSerialPort::NoFlowControl);
        if (!configured) {
            FPort.close();
            return false;
        }
        // Modem lines off as well; pseudo-terminals have none, so a refusal is not an error.
        FPort.setDataTerminalReady(false);
        FPort.setRequestToSend(false);
        FPort.clearError();
        FPort.setReadBufferSize(FSettings.QueueSize);
        return true;
    }

    bool Write(const QByteArray& bytes) override
    {
        if (bytes.isEmpty()) return true;
        if (FPort.write(bytes) == bytes.size()) {
            const QDeadlineTimer deadline(FSettings.WriteTimeout);
            bool sent = true;
            while (sent && FPort.bytesToWrite() > 0) {
                const qint64 left = deadline.remainingTime();
                sent = left > 0 && FPort.waitForBytesWritten(int(left));
            }
            if (sent) return true;
        }
        // What is left would go out with the next read or write, and a module would carry out
        // a command the caller already counts as failed.
        FPort.clear(QSerialPort::Output);
        return false;
    }

    QByteArray Read(int maxBytes) override
    {
        if (maxBytes <= 0) return {};
        // A reply may come in several pieces; gather them until enough or the time-out.
        const QDeadlineTimer deadline(FSettings.ReadTimeout);
        while (FPort.bytesAvailable() < maxBytes) {
            const qint64 left = deadline.remainingTime();
            if (left <= 0 || !FPort.waitForReadyRead(int(left))) break;
        }
        return FPort.read(maxBytes);
    }

private:
    TSerialLineSettings FSettings;
    QSerialPort FPort;
};

}  // namespace

std::unique_ptr<TSerialLine> OpenSerialLine(const QString& device, const TSerialLineSettings& settings)
{
    auto line = std::make_unique<TQtSerialLine>(settings);
    if (!line->Open(device)) return nullptr;
    return line;
}

}  // namespace qx
