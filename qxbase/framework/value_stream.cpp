#include "qxbase/framework/value_stream.h"

#include <QJsonObject>
#include <QVariant>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "qxbase/framework/exception.h"

namespace qx {

namespace {

const QString KFloatKey = QStringLiteral("float");

QString TypeName(TValueType type, bool topLevel)
{
    switch (type) {
    case vaList: return QStringLiteral("list");
    case vaString: return QStringLiteral("string");
    case vaBoolean: return QStringLiteral("boolean");
    case vaFloat: return QStringLiteral("float");
    case vaInteger: return QStringLiteral("integer");
    case vaNull: break;
    }
    return topLevel ? QStringLiteral("end of data") : QStringLiteral("end of list");
}

// Qt keeps integral JSON numbers that fit 64 bits as integers, in memory and in text.
bool IsJsonInteger(const QJsonValue& value)
{
    return value.isDouble() && value.toVariant().metaType().id() == QMetaType::LongLong;
}

// False when the item is none of the stream's values.
bool TypeOf(const QJsonValue& value, TValueType& type)
{
    double ignored = 0;
    if (value.isArray())
        type = vaList;
    else if (value.isString())
        type = vaString;
    else if (value.isBool())
        type = vaBoolean;
    else if (IsJsonInteger(value))
        type = vaInteger;
    else if (FloatFromJson(value, ignored))
        type = vaFloat;
    else
        return false;
    return true;
}

}  // namespace

QJsonValue FloatToJson(double value)
{
    QString text;
    if (std::isnan(value)) {
        text = QStringLiteral("nan");
    } else if (std::isinf(value)) {
        text = value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    } else {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        text = QString::fromLatin1(buffer, result.ptr - buffer);
    }
    return QJsonObject{{KFloatKey, text}};
}

bool FloatFromJson(const QJsonValue& json, double& value)
{
    if (!json.isObject())
        return false;
    const QJsonObject object = json.toObject();
    if (object.size() != 1 || !object.value(KFloatKey).isString())
        return false;
    const QByteArray text = object.value(KFloatKey).toString().toLatin1();
    if (text == "nan") {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (text == "inf" || text == "-inf") {
        value = text == "inf" ? HUGE_VAL : -HUGE_VAL;
        return true;
    }
    double parsed = 0;
    const char* end = text.constData() + text.size();
    const auto result = std::from_chars(text.constData(), end, parsed);
    // from_chars also knows "infinity" and "nan(...)": only the three names above count.
    if (text.isEmpty() || result.ec != std::errc() || result.ptr != end || !std::isfinite(parsed))
        return false;
    value = parsed;
    return true;
}

// --- TWriter ---

TWriter::TWriter(QString place) : FPlace(std::move(place)), FLists(1) {}

void TWriter::Append(const QJsonValue& value) { FLists.back().append(value); }

void TWriter::WriteListBegin() { FLists.emplace_back(); }

void TWriter::WriteListEnd()
{
    if (FLists.size() == 1)
        throw EStreamError(QStringLiteral("%1: list end written without a list begin").arg(FPlace));
    QJsonArray list = std::move(FLists.back());
    FLists.pop_back();
    Append(list);
}

void TWriter::WriteString(const QString& value) { Append(value); }
void TWriter::WriteBoolean(bool value) { Append(value); }
void TWriter::WriteFloat(double value) { Append(FloatToJson(value)); }
void TWriter::WriteInteger(std::int64_t value) { Append(QJsonValue(static_cast<qint64>(value))); }

QJsonArray TWriter::GetValues() const
{
    if (FLists.size() != 1)
        throw EStreamError(QStringLiteral("%1: %2 list(s) written without a list end").arg(FPlace).arg(FLists.size() - 1));
    return FLists.front();
}

// --- TReader ---

TReader::TReader(QJsonArray values, QString place) : FPlace(std::move(place))
{
    FLevels.push_back(TLevel{std::move(values), 0});
}

QString TReader::GetItemPath() const
{
    QString path;
    for (const TLevel& level : FLevels)
        path += QStringLiteral("[%1]").arg(level.Index);
    return path;
}

void TReader::Fail(const QString& problem) const
{
    throw EStreamError(QStringLiteral("%1, item %2: %3").arg(FPlace, GetItemPath(), problem));
}

TValueType TReader::NextValue() const
{
    const TLevel& level = FLevels.back();
    if (level.Index >= level.Items.size())
        return vaNull;
    TValueType type = vaNull;
    if (!TypeOf(level.Items.at(level.Index), type))
        Fail(QStringLiteral("not a stream value"));
    return type;
}

const QJsonValue& TReader::Take(TValueType expected, bool advance)
{
    const TValueType found = NextValue();
    if (found != expected && !(expected == vaFloat && found == vaInteger))
        Fail(QStringLiteral("%1 expected but %2 found").arg(TypeName(expected, false), TypeName(found, FLevels.size() == 1)));
    TLevel& level = FLevels.back();
    FTaken = level.Items.at(level.Index);
    if (advance)
        ++level.Index;
    return FTaken;
}

QString TReader::ReadString() { return Take(vaString).toString(); }

bool TReader::ReadBoolean() { return Take(vaBoolean).toBool(); }

double TReader::ReadFloat()
{
    const QJsonValue& value = Take(vaFloat);
    if (IsJsonInteger(value))
        return static_cast<double>(value.toInteger());
    double result = 0;
    FloatFromJson(value, result);
    return result;
}

std::int64_t TReader::ReadInteger() { return Take(vaInteger).toInteger(); }

void TReader::ReadListBegin()
{
    // The parent moves on at the list's end, so item paths name the list while inside it.
    QJsonArray list = Take(vaList, false).toArray();
    FLevels.push_back(TLevel{std::move(list), 0});
}

void TReader::ReadListEnd()
{
    if (FLevels.size() == 1)
        Fail(QStringLiteral("end of list read outside a list"));
    const TValueType found = NextValue();
    if (found != vaNull)
        Fail(QStringLiteral("end of list expected but %1 found").arg(TypeName(found, false)));
    FLevels.pop_back();
    ++FLevels.back().Index;
}

void TReader::SkipValue()
{
    if (NextValue() == vaNull)
        Fail(QStringLiteral("value expected but %1 found").arg(TypeName(vaNull, FLevels.size() == 1)));
    ++FLevels.back().Index;
}

}  // namespace qx
