#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <cstdint>
#include <vector>

#include "qxbase/framework/export.h"

// The typed value stream behind defined properties: a sequence of lists, strings, booleans,
// floats and integers held as a JSON array.
namespace qx {

// vaNull marks the end of the current list (or of all values).
enum TValueType : std::uint8_t { vaNull, vaList, vaString, vaBoolean, vaFloat, vaInteger };

// A double as JSON: {"float": "<text>"} with the shortest decimal text that reads back to the
// same bits ("-0", "1.7e+30", "5e-324"), or "nan", "inf", "-inf".
QXBASE_EXPORT QJsonValue FloatToJson(double value);
// Reads the form FloatToJson writes; returns false for anything else (plain numbers included).
QXBASE_EXPORT bool FloatFromJson(const QJsonValue& json, double& value);

// Collects written values. `place` names the owner of the values in error messages.
class QXBASE_EXPORT TWriter {
public:
    explicit TWriter(QString place = {});

    void WriteListBegin();
    // Raises EStreamError when no list is open.
    void WriteListEnd();
    void WriteString(const QString& value);
    void WriteBoolean(bool value);
    void WriteFloat(double value);
    void WriteInteger(std::int64_t value);

    // The values written so far. Raises EStreamError while a list is still open.
    QJsonArray GetValues() const;
    const QString& GetPlace() const { return FPlace; }

private:
    void Append(const QJsonValue& value);

    QString FPlace;
    std::vector<QJsonArray> FLists;  // [0] holds the top level
};

// Reads values back in the order written. Every failing read raises EStreamError naming the
// place and the item ("<place>, item [2][0]: integer expected but string found") and leaves
// the position unchanged.
class QXBASE_EXPORT TReader {
public:
    explicit TReader(QJsonArray values, QString place = {});

    // The type of the next value; vaNull at the end of the current list. Raises EStreamError
    // for an item that is none of the stream's values.
    TValueType NextValue() const;
    bool EndOfList() const { return NextValue() == vaNull; }

    QString ReadString();
    bool ReadBoolean();
    // Also accepts an integer item, converted to double.
    double ReadFloat();
    std::int64_t ReadInteger();
    void ReadListBegin();
    // Raises EStreamError unless the current list has been read to its end.
    void ReadListEnd();
    // Skips one value, a whole list included.
    void SkipValue();

    // True when every value has been read and no list is open.
    bool AtEnd() const { return FLevels.size() == 1 && EndOfList(); }
    const QString& GetPlace() const { return FPlace; }
    // The index path of the next item, "[2][0]".
    QString GetItemPath() const;

private:
    struct TLevel {
        QJsonArray Items;
        qsizetype Index = 0;
    };
    const QJsonValue& Take(TValueType expected, bool advance = true);
    [[noreturn]] void Fail(const QString& problem) const;

    QString FPlace;
    std::vector<TLevel> FLevels;
    QJsonValue FTaken;  // QJsonArray::at returns a copy; Take hands out a reference to this
};

}  // namespace qx
