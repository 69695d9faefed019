#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

#include "qxbase/framework/export.h"

namespace qx {

// A byte line with blocking, time-limited reads and writes on the caller's thread. The serial
// port is one implementation; tests put an in-memory line behind the same interface.
class QXBASE_EXPORT TSerialLine {
public:
    virtual ~TSerialLine();

    // Sends every byte; false when the line refuses them or the write time-out passes first.
    // Bytes not sent by then are dropped, never sent later.
    virtual bool Write(const QByteArray& bytes) = 0;
    // Returns up to maxBytes: at once when that many have arrived, else what has arrived when
    // the read time-out passes (possibly nothing). Never blocks longer than the time-out.
    virtual QByteArray Read(int maxBytes) = 0;
    // Pauses the caller; lines that simulate a device may skip the pause.
    virtual void Wait(int milliseconds);
};

// Line settings; the frame is always 8 data bits, no parity, one stop bit, no flow control.
struct TSerialLineSettings {
    std::int32_t BaudRate = 9600;
    int ReadTimeout = 100;   // ms a Read waits at most for its bytes
    int WriteTimeout = 30;   // ms a Write may take at most
    int QueueSize = 1024;    // bytes held in the input buffer before reading pauses
};

// The device behind the port name "COM"+n: the environment variable QX_COM<n> when it is set,
// else /dev/ttyS<n-1>; an empty name for n < 1 without such a variable.
QXBASE_EXPORT QString ComPortDevice(int portNumber);

// Opens a serial device (a path such as /dev/ttyS0 or a pseudo-terminal) for reading and
// writing with the given settings. Null when the device is missing, busy, not a terminal or
// refuses the settings. Needs a QCoreApplication; the line then belongs to the calling thread.
QXBASE_EXPORT std::unique_ptr<TSerialLine> OpenSerialLine(const QString& device,
                                                          const TSerialLineSettings& settings);

}  // namespace qx
