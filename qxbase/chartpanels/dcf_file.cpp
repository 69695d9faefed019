#include "qxbase/chartpanels/dcf_file.h"

#include <QBuffer>
#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

#include "qxbase/measure/shortdef_text.h"

namespace qx {
namespace {

constexpr std::string_view KBom = "\xEF\xBB\xBF";
constexpr std::string_view KTag = "DCF";
constexpr std::string_view KKindKey = "Kind";
constexpr std::string_view KUnitKey = "Unit";
constexpr std::string_view KX0Key = "X0";
constexpr std::string_view KDXKey = "DX";
constexpr std::string_view KSamplesKey = "Samples";
constexpr std::string_view KDefinitionKey = "Definition";
constexpr std::array<std::string_view, 3> KKindNames = {"time", "frequency", "other"};
// The x column's title, after the first channel's kind.
constexpr std::array<std::string_view, 3> KXTitles = {"Time [s]", "Frequency [Hz]", "x"};
constexpr std::size_t KMaxSamples = std::numeric_limits<std::int32_t>::max();
// Far more than a chart shows; keeps a line of tabs from turning into gigabytes of channels.
constexpr std::size_t KMaxChannels = 65536;
constexpr std::size_t KFlushSize = 1 << 16;

// ------------------------------------------------------------------------------------ writing

// The shortest digits that read back to the same double; NaN and the infinities as the rest of
// the library writes them.
void AppendNumber(std::string& Out, double Value)
{
    if (std::isnan(Value)) {
        Out += "NAN";
    } else if (std::isinf(Value)) {
        Out += Value < 0 ? "-INF" : "INF";
    } else {
        char buf[32];
        const auto r = std::to_chars(buf, buf + sizeof buf, Value);
        Out.append(buf, r.ptr);
    }
}

// Tabs and line breaks would split the cell; a quote would start a spreadsheet's quoted field,
// which may swallow the cells after it.
void AppendText(std::string& Out, const QString& Text)
{
    for (const char c : Text.toUtf8()) {
        switch (c) {
        case '\\': Out += "\\\\"; break;
        case '\t': Out += "\\t"; break;
        case '\n': Out += "\\n"; break;
        case '\r': Out += "\\r"; break;
        case '"': Out += "\\\""; break;
        default: Out += c;
        }
    }
}

// The field order and integer forms of CreateShortDef, with exact floats so that the
// definition reads back bit for bit as well.
void AppendDefinition(std::string& Out, const TRVShortdef& Def)
{
    Out += std::to_string(static_cast<std::uint32_t>(Def.ChannelNo));
    Out += ' ';
    AppendNumber(Out, Def.XStart);
    Out += ' ';
    AppendNumber(Out, Def.XEnd);
    Out += ' ';
    Out += std::to_string(Def.FirstSample);
    Out += ' ';
    Out += std::to_string(Def.Flags);
    Out += ' ';
    AppendNumber(Out, Def.YMin);
    Out += ' ';
    AppendNumber(Out, Def.YMax);
    Out += ' ';
    Out += std::to_string(static_cast<std::int32_t>(Def.Color));
}

class TDcfWriter {
public:
    explicit TDcfWriter(QIODevice& Device) : FDevice(Device) { FLine.reserve(KFlushSize + 4096); }

    void Write(const std::vector<TQXDcfChannel>& Channels)
    {
        if (Channels.size() > KMaxChannels)
            throw EDcfFileError(QStringLiteral("more than %1 channels").arg(KMaxChannels));
        std::size_t rows = 0;
        for (std::size_t i = 0; i < Channels.size(); ++i) {
            const TQXDcfChannel& ch = Channels[i];
            if (ch.Kind >= KKindNames.size())
                throw EDcfFileError(QStringLiteral("channel %1: kind %2 is not a data kind")
                                        .arg(i + 1)
                                        .arg(static_cast<int>(ch.Kind)));
            if (ch.Samples.size() > KMaxSamples)
                throw EDcfFileError(
                    QStringLiteral("channel %1: more than %2 samples").arg(i + 1).arg(KMaxSamples));
            rows = std::max(rows, ch.Samples.size());
        }

        FLine += KBom;
        FLine += KTag;
        FLine += '\t';
        FLine += std::to_string(KDcfVersion);
        EndLine();
        std::string& out = FLine;
        HeaderLine(KKindKey, Channels, [&](const TQXDcfChannel& ch) { out += KKindNames[ch.Kind]; });
        HeaderLine(KUnitKey, Channels, [&](const TQXDcfChannel& ch) { AppendText(out, ch.Unit); });
        HeaderLine(KX0Key, Channels, [&](const TQXDcfChannel& ch) { AppendNumber(out, ch.X0); });
        HeaderLine(KDXKey, Channels, [&](const TQXDcfChannel& ch) { AppendNumber(out, ch.DX); });
        HeaderLine(KSamplesKey, Channels,
                   [&](const TQXDcfChannel& ch) { out += std::to_string(ch.Samples.size()); });
        HeaderLine(KDefinitionKey, Channels,
                   [&](const TQXDcfChannel& ch) { AppendDefinition(out, ch.Definition); });
        HeaderLine(Channels.empty() ? KXTitles.back() : KXTitles[Channels.front().Kind], Channels,
                   [&](const TQXDcfChannel& ch) { AppendText(out, ch.Name); });

        for (std::size_t row = 0; row < rows; ++row) {
            const TQXDcfChannel& first = Channels.front();
            AppendNumber(FLine, first.X0 + static_cast<double>(row) * first.DX);
            for (const TQXDcfChannel& ch : Channels) {
                FLine += '\t';
                if (row < ch.Samples.size()) AppendNumber(FLine, ch.Samples[row]);
            }
            EndLine();
        }
        Flush();
    }

private:
    template <typename Cell>
    void HeaderLine(std::string_view Key, const std::vector<TQXDcfChannel>& Channels, Cell AppendCell)
    {
        FLine += Key;
        for (const TQXDcfChannel& ch : Channels) {
            FLine += '\t';
            AppendCell(ch);
        }
        EndLine();
    }

    void EndLine()
    {
        FLine += '\n';
        if (FLine.size() >= KFlushSize) Flush();
    }

    void Flush()
    {
        if (FLine.empty()) return;
        const auto size = static_cast<qint64>(FLine.size());
        if (FDevice.write(FLine.data(), size) != size)
            throw EDcfFileError(FDevice.errorString());
        FLine.clear();
    }

    QIODevice& FDevice;
    std::string FLine;
};

// ------------------------------------------------------------------------------------ reading

bool ParseNumber(std::string_view Cell, double& Value)
{
    if (Cell.empty()) return false;
    const auto [ptr, ec] = std::from_chars(Cell.data(), Cell.data() + Cell.size(), Value);
    return ec == std::errc() && ptr == Cell.data() + Cell.size();
}

QString Quoted(std::string_view Cell)
{
    constexpr qsizetype KShown = 40;
    const QString text = QString::fromUtf8(Cell.data(), static_cast<qsizetype>(Cell.size()));
    return QLatin1Char('"') + (text.size() > KShown ? text.left(KShown) + QStringLiteral("...") : text) +
           QLatin1Char('"');
}

class TDcfReader {
public:
    TDcfReader(const QByteArray& Data, const QString& FileName)
        : FData(Data.constData(), static_cast<std::size_t>(Data.size())), FFileName(FileName)
    {
        if (FData.starts_with(KBom)) FPos = KBom.size();
    }

    std::vector<TQXDcfChannel> Read()
    {
        if (!NextLine()) Fail(QStringLiteral("the file is empty"));
        if (FCells.front() != KTag) Fail(QStringLiteral("not a data file: it does not begin with \"DCF\""));
        if (FCells.size() != 2 || FCells[1] != std::to_string(KDcfVersion))
            Fail(QStringLiteral("version %1 expected but %2 found")
                     .arg(KDcfVersion)
                     .arg(FCells.size() > 1 ? Quoted(FCells[1]) : QStringLiteral("none")));

        HeaderLine(KKindKey, -1);
        if (FCells.size() - 1 > KMaxChannels) Fail(QStringLiteral("more than %1 channels").arg(KMaxChannels));
        std::vector<TQXDcfChannel> channels(FCells.size() - 1);
        const auto count = static_cast<int>(channels.size());
        for (int i = 0; i < count; ++i) {
            const auto kind = std::find(KKindNames.begin(), KKindNames.end(), FCells[i + 1]);
            if (kind == KKindNames.end())
                FailAt(i, QStringLiteral("%1 is not a data kind").arg(Quoted(FCells[i + 1])));
            channels[i].Kind = static_cast<TQXDcfDataKind>(kind - KKindNames.begin());
        }
        HeaderLine(KUnitKey, count);
        for (int i = 0; i < count; ++i) channels[i].Unit = Text(i, FCells[i + 1]);
        HeaderLine(KX0Key, count);
        for (int i = 0; i < count; ++i) channels[i].X0 = Number(i, FCells[i + 1]);
        HeaderLine(KDXKey, count);
        for (int i = 0; i < count; ++i) channels[i].DX = Number(i, FCells[i + 1]);

        HeaderLine(KSamplesKey, count);
        std::vector<std::size_t> lengths(channels.size());
        std::size_t rows = 0;
        for (int i = 0; i < count; ++i) {
            lengths[i] = SampleCount(i, FCells[i + 1]);
            rows = std::max(rows, lengths[i]);
        }
        HeaderLine(KDefinitionKey, count);
        for (int i = 0; i < count; ++i) {
            const std::string_view cell = FCells[i + 1];
            try {
                ParseShortItemDef(QString::fromUtf8(cell.data(), static_cast<qsizetype>(cell.size())),
                                  channels[i].Definition);
            } catch (const EConvertError& e) {
                FailAt(i, e.Message());
            }
        }
        HeaderLine({}, count);
        Text(-1, FCells[0]);
        for (int i = 0; i < count; ++i) channels[i].Name = Text(i, FCells[i + 1]);
        FNames = &channels;

        // A cut file must not make us reserve what it claims: every row takes at least the
        // x cell, a tab per channel and a line end.
        const std::size_t fit = (FData.size() - FPos) / (channels.size() + 2);
        for (int i = 0; i < count; ++i) channels[i].Samples.reserve(std::min(lengths[i], fit));
        for (std::size_t row = 0; row < rows; ++row) {
            if (!NextLine())
                Fail(QStringLiteral("the file is cut after %1 of %2 sample rows").arg(row).arg(rows));
            CheckCellCount(count);
            double x = 0;
            if (!ParseNumber(FCells[0], x))
                Fail(QStringLiteral("x value %1 is not a number").arg(Quoted(FCells[0])));
            for (int i = 0; i < count; ++i) {
                const std::string_view cell = FCells[i + 1];
                if (row < lengths[i])
                    channels[i].Samples.push_back(Number(i, cell));
                else if (!cell.empty())
                    FailAt(i, QStringLiteral("%1 past the channel's %2 samples")
                                  .arg(Quoted(cell))
                                  .arg(lengths[i]));
            }
        }
        if (NextLine())
            Fail(QStringLiteral("more rows than the %1 samples of the longest channel").arg(rows));
        return channels;
    }

private:
    [[noreturn]] void Fail(const QString& What) const
    {
        const QString place = QStringLiteral("line %1: ").arg(FLineNo);
        throw EDcfFileError(FFileName.isEmpty() ? place + What
                                                : FFileName + QStringLiteral(", ") + place + What);
    }

    [[noreturn]] void FailAt(int Channel, const QString& What) const
    {
        QString name;
        if (FNames != nullptr && !(*FNames)[Channel].Name.isEmpty())
            name = QStringLiteral(" (\"%1\")").arg((*FNames)[Channel].Name);
        Fail(QStringLiteral("channel %1%2: %3").arg(Channel + 1).arg(name, What));
    }

    // Splits the next line into FCells; false at the end of the data, where the line number is
    // that of the missing line.
    bool NextLine()
    {
        ++FLineNo;
        if (FPos >= FData.size()) return false;
        const std::size_t end = FData.find('\n', FPos);
        if (end == std::string_view::npos)
            Fail(QStringLiteral("the line has no line end: the file is cut"));
        std::string_view line = FData.substr(FPos, end - FPos);
        FPos = end + 1;
        if (line.ends_with('\r')) line.remove_suffix(1);
        FCells.clear();
        for (;;) {
            const std::size_t tab = line.find('\t');
            FCells.push_back(line.substr(0, tab));
            if (tab == std::string_view::npos) break;
            line.remove_prefix(tab + 1);
        }
        return true;
    }

    // An empty key is the line of the channel names, whose first cell is the x column's title.
    // A count below zero takes the channels from this line.
    void HeaderLine(std::string_view Key, int Channels)
    {
        const QString what = Key.empty() ? QStringLiteral("the line of channel names")
                                         : QStringLiteral("the \"%1\" line").arg(QLatin1String(Key));
        if (!NextLine()) Fail(QStringLiteral("the file ends before %1").arg(what));
        if (!Key.empty() && FCells.front() != Key)
            Fail(QStringLiteral("%1 expected but %2 found").arg(what, Quoted(FCells.front())));
        if (Channels >= 0) CheckCellCount(Channels);
    }

    void CheckCellCount(int Channels) const
    {
        if (FCells.size() != static_cast<std::size_t>(Channels) + 1)
            Fail(QStringLiteral("%1 cells found where the x column and %2 channels take %3")
                     .arg(FCells.size())
                     .arg(Channels)
                     .arg(Channels + 1));
    }

    double Number(int Channel, std::string_view Cell) const
    {
        double v = 0;
        if (!ParseNumber(Cell, v)) FailAt(Channel, QStringLiteral("%1 is not a number").arg(Quoted(Cell)));
        return v;
    }

    std::size_t SampleCount(int Channel, std::string_view Cell) const
    {
        std::uint64_t v = 0;
        const auto [ptr, ec] = std::from_chars(Cell.data(), Cell.data() + Cell.size(), v);
        if (Cell.empty() || ec != std::errc() || ptr != Cell.data() + Cell.size() || v > KMaxSamples)
            FailAt(Channel, QStringLiteral("%1 is not a sample count from 0 to %2")
                                .arg(Quoted(Cell))
                                .arg(KMaxSamples));
        return static_cast<std::size_t>(v);
    }

    // Undoes AppendText; Channel -1 is the x column.
    QString Text(int Channel, std::string_view Cell) const
    {
        std::string raw;
        raw.reserve(Cell.size());
        for (std::size_t i = 0; i < Cell.size(); ++i) {
            if (Cell[i] != '\\') {
                raw += Cell[i];
                continue;
            }
            const char next = i + 1 < Cell.size() ? Cell[++i] : '\0';
            switch (next) {
            case '\\': raw += '\\'; break;
            case 't': raw += '\t'; break;
            case 'n': raw += '\n'; break;
            case 'r': raw += '\r'; break;
            case '"': raw += '"'; break;
            default: BadText(Channel, QStringLiteral("%1 holds an unknown escape").arg(Quoted(Cell)));
            }
        }
        // A name may begin with U+FEFF; only the file's own mark is dropped.
        QStringDecoder decoder(QStringDecoder::Utf8,
                               QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        QString text = decoder(QByteArrayView(raw.data(), static_cast<qsizetype>(raw.size())));
        if (decoder.hasError()) BadText(Channel, QStringLiteral("the text is not UTF-8"));
        return text;
    }

    [[noreturn]] void BadText(int Channel, const QString& What) const
    {
        if (Channel < 0) Fail(QStringLiteral("x column: ") + What);
        FailAt(Channel, What);
    }

    std::string_view FData;
    const QString& FFileName;
    std::size_t FPos = 0;
    qint64 FLineNo = 0;
    std::vector<std::string_view> FCells;
    const std::vector<TQXDcfChannel>* FNames = nullptr;
};

}  // namespace

void WriteDcf(QIODevice& Device, const std::vector<TQXDcfChannel>& Channels)
{
    TDcfWriter(Device).Write(Channels);
}

QByteArray WriteDcfText(const std::vector<TQXDcfChannel>& Channels)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    WriteDcf(buffer, Channels);
    return data;
}

void WriteDcfFile(const QString& Path, const std::vector<TQXDcfChannel>& Channels)
{
    const QString place = QStringLiteral("Cannot save %1: ").arg(Path);
    QSaveFile file(Path);
    if (!file.open(QIODevice::WriteOnly)) throw EDcfFileError(place + file.errorString());
    try {
        WriteDcf(file, Channels);
    } catch (const EDcfFileError& e) {
        throw EDcfFileError(place + e.Message());
    }
    if (!file.commit()) throw EDcfFileError(place + file.errorString());
}

std::vector<TQXDcfChannel> ReadDcfText(const QByteArray& Data, const QString& FileName)
{
    return TDcfReader(Data, FileName).Read();
}

std::vector<TQXDcfChannel> ReadDcfFile(const QString& Path)
{
    QFile file(Path);
    const auto fail = [&] {
        throw EDcfFileError(QStringLiteral("Cannot read %1: %2").arg(Path, file.errorString()));
    };
    if (!file.open(QIODevice::ReadOnly)) fail();
    const QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError) fail();
    return ReadDcfText(data, Path);
}

}  // namespace qx
