#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"
#include "qxbase/measure/channel_types.h"

class QIODevice;

// The chart panels' data files (".dcf"): UTF-8 text, tab-separated, so a spreadsheet opens them
// directly, with every channel's attributes in the column above its samples:
//   DCF         1
//   Kind        time        time
//   Unit        V           A
//   X0          0           0
//   DX          0.001       0.001
//   Samples     3           2
//   Definition  <text form> <text form>
//   Time [s]    Voltage     Current
//   0           1.5         2
//   0.001       -INF        NAN
//   0.002       1.7e+30
// Numbers are the shortest text that reads back to the same double ("." whatever the locale);
// docs/design.md gives the rules of every line.
namespace qx {

inline constexpr int KDcfVersion = 1;

// What the x values are; the chart panels show one kind at a time.
enum TQXDcfDataKind : std::uint8_t { dkTime, dkFrequency, dkOther };

// One channel of a data file: sample i lies at x = X0 + i * DX.
struct TQXDcfChannel {
    QString Name;
    QString Unit;
    TQXDcfDataKind Kind = dkTime;
    // Handle and Reserved are not saved: they read back as zero.
    TRVShortdef Definition;
    double X0 = 0.0;
    double DX = 1.0;
    std::vector<double> Samples;
};

// A data file that cannot be written or read. The message begins with the file name (when
// there is one) and, for a fault in the text, names the line and the channel.
class QXBASE_EXPORT EDcfFileError : public Exception {
public:
    using Exception::Exception;
};

// Writes the channels to `Device` (open for writing). The x column is X0 + i * DX of the first
// channel, rows run to the longest channel and shorter channels leave empty cells. Raises
// EDcfFileError for more than 65536 channels, a channel with more than 2^31 - 1 samples or a kind
// outside the enumeration (before anything is written) and for a device that refuses the bytes.
QXBASE_EXPORT void WriteDcf(QIODevice& Device, const std::vector<TQXDcfChannel>& Channels);
QXBASE_EXPORT QByteArray WriteDcfText(const std::vector<TQXDcfChannel>& Channels);
// Writes through a temporary file that replaces `Path` only when complete, so a failed save
// leaves an old file as it was. Raises EDcfFileError "Cannot save <path>: <reason>".
QXBASE_EXPORT void WriteDcfFile(const QString& Path, const std::vector<TQXDcfChannel>& Channels);

// Reads what WriteDcf writes, with or without a UTF-8 byte order mark and with "\n" or "\r\n"
// line ends. Anything else raises EDcfFileError "<FileName>, line <n>: <fault>": a wrong first
// line or version, a missing or misplaced header line, more than 65536 channels, a row with more
// or fewer cells than channels, a cell that is not a number (or not empty past its channel's
// samples), a bad escape or invalid UTF-8, a count beyond 2^31 - 1, more or fewer rows than the
// longest channel, a last line without its line end (a cut file). Nothing is returned then.
QXBASE_EXPORT std::vector<TQXDcfChannel> ReadDcfText(const QByteArray& Data, const QString& FileName = {});
// Raises EDcfFileError "Cannot read <path>: <reason>" or what ReadDcfText raises.
QXBASE_EXPORT std::vector<TQXDcfChannel> ReadDcfFile(const QString& Path);

}  // namespace qx
