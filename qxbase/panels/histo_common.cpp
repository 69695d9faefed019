#include "qxbase/panels/histo_common.h"

#include <QDateTime>
#include <QStringList>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/resources/chart_texts.h"

namespace qx {

Variant LegendPositionTexts()
{
    return EnumerationTexts({res::_rsLegendHorizontal, res::_rsLegendVertical});
}

Variant DisplayStyleTexts()
{
    return EnumerationTexts({res::_rsDisplayStyleOneBand, res::_rsDisplayStyleMultipleBands});
}

Variant CursorPanelPositionTexts()
{
    return EnumerationTexts({res::_rsCursorPanelHide, res::_rsCursorPanelTop, res::_rsCursorPanelBottom,
                             res::_rsCursorPanelLeft, res::_rsCursorPanelRight});
}

Variant TriggerTypeTexts()
{
    return EnumerationTexts({res::_rsTriggerPositive, res::_rsTriggerNegative, res::_rsTriggerOff});
}

Variant YAxisScaleTexts()
{
    return EnumerationTexts({res::_rsAxisScaleLinear, res::_rsAxisScaleLogarithmic, res::_rsAxisScaleDB});
}

Variant XAxisScaleTexts()
{
    return EnumerationTexts({res::_rsAxisScaleLinear, res::_rsAxisScaleLogarithmic});
}

Variant SaveMethodTexts()
{
    return EnumerationTexts({res::_rsSaveMethodShowDialog, res::_rsSaveMethodCreateName,
                             res::_rsSaveMethodUseName, res::_rsSaveMethodUseNameWarning});
}

QString FormatCursorNumber(double Value, int Decimals)
{
    if (std::isnan(Value)) return QStringLiteral("NAN");
    if (std::isinf(Value)) return Value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    constexpr int Significant = 7;
    Decimals = std::clamp(Decimals, 0, 15);
    if (Value == 0.0) Value = 0.0;  // no "-0"

    // Rounded to 7 significant digits first: that decides the magnitude after rounding.
    char sci[32] = {};
    const auto sciEnd = std::to_chars(sci, sci + sizeof sci - 1, Value, std::chars_format::scientific,
                                      Significant - 1).ptr;
    const char* e = std::find(sci, sciEnd, 'e');
    const int exponent = std::atoi(e + 1);  // the buffer ends in a zero after the digits
    if (exponent >= Significant)
        return QString::fromLatin1(sci, e - sci) + QLatin1Char('E') + QString::number(exponent);

    QString text;
    if (Value == 0.0 || exponent + 1 + Decimals <= Significant) {
        // The places bind: one rounding to `Decimals` places.
        char fixed[64];
        const auto end = std::to_chars(fixed, fixed + sizeof fixed, Value, std::chars_format::fixed,
                                       Decimals).ptr;
        text = QString::fromLatin1(fixed, end - fixed);
    } else {
        // The significant digits bind: place the 7 digits, then pad with zeros.
        QString digits;
        for (const char* p = sci; p != e; ++p)
            if (*p >= '0' && *p <= '9') digits += QLatin1Char(*p);
        QString integer, fraction;
        if (exponent >= 0) {
            integer = digits.left(exponent + 1);
            fraction = digits.mid(exponent + 1);
        } else {
            integer = QStringLiteral("0");
            fraction = QString(-exponent - 1, QLatin1Char('0')) + digits;
        }
        fraction = fraction.leftJustified(Decimals, QLatin1Char('0'));
        text = (Value < 0 ? QStringLiteral("-") : QString()) + integer;
        if (Decimals > 0) text += QLatin1Char('.') + fraction;
    }
    // A small negative value rounded to zero reads "0.00", not "-0.00".
    if (text.startsWith(QLatin1Char('-')) && !std::any_of(text.begin(), text.end(), [](QChar c) {
            return c >= QLatin1Char('1') && c <= QLatin1Char('9');
        }))
        text.remove(0, 1);
    return text;
}

QString FormatCursorTime(double Seconds, const QString& TimeFormat)
{
    // 0001-01-01 to 9999-12-31: years QDateTime writes with four digits.
    constexpr double FirstMs = -62135596800000.0;
    constexpr double LastMs = 253402300799999.0;
    const double ms = std::round(Seconds * 1000.0);
    if (!std::isfinite(ms) || ms < FirstMs || ms > LastMs) return QStringLiteral("? ");
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(ms), Qt::UTC).toString(TimeFormat);
}

QString FilterToQtFilter(const QString& Filter)
{
    const QStringList parts = Filter.split(QLatin1Char('|'));
    QStringList result;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        if (i + 1 < parts.size()) {
            QString patterns = parts[i + 1].trimmed();
            patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
            if (!patterns.isEmpty() && !description.contains(QLatin1Char('(') + patterns + QLatin1Char(')')))
                description += QStringLiteral(" (") + patterns + QLatin1Char(')');
        }
        if (!description.isEmpty()) result << description;
    }
    return result.join(QStringLiteral(";;"));
}

QString RemoveFileExtension(const QString& FileName)
{
    const qsizetype fileStart =
        std::max(FileName.lastIndexOf(QLatin1Char('/')), FileName.lastIndexOf(QLatin1Char('\\'))) + 1;
    const qsizetype dot = FileName.lastIndexOf(QLatin1Char('.'));
    return dot >= fileStart ? FileName.left(dot) : FileName;
}

bool SelectDCFSaveFileName(QWidget* Owner, const QString& DefaultName, QString& FileName)
{
    FileName = DefaultName;
    const QString chosen = HostServices().GetSaveFileName(Owner, res::_rsSaveDataFile,
                                                          FilterToQtFilter(res::_rsDCFFilter), DefaultName);
    if (chosen.isEmpty()) return false;
    FileName = RemoveFileExtension(chosen);
    return true;
}

QString GetNameFromFullPath(const QString& Path)
{
    const qsizetype first = Path.indexOf(QLatin1Char('.'));
    if (first < 0) return Path;
    const qsizetype second = Path.indexOf(QLatin1Char('.'), first + 1);
    return Path.mid((second < 0 ? first : second) + 1);
}

}  // namespace qx
