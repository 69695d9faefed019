#include <QSet>
#include <algorithm>
#include <limits>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/framework/prop_ini_file.h"
#include "qxbase/panels/source_control_client.h"

namespace qx {
namespace {

const QString KGeneral = QStringLiteral("General");
const QString KListitems = QStringLiteral("Listitems");
const QString KItemPrefix = QStringLiteral("listitem.");

// How a binding's values are stored, chosen by the type code of its actual value.
enum TStoredKind : std::uint8_t { skString, skBoolean, skFloat, skInteger };

TStoredKind StoredKind(std::int64_t Code)
{
    switch (Code) {
    case varOleStr: return skString;
    case varBoolean: return skBoolean;
    case varDouble:
    case varSingle: return skFloat;
    default: return skInteger;
    }
}

QString KindName(TStoredKind Kind)
{
    switch (Kind) {
    case skString: return QStringLiteral("string");
    case skBoolean: return QStringLiteral("boolean");
    case skFloat: return QStringLiteral("floating-point");
    case skInteger: break;
    }
    return QStringLiteral("32-bit integer");
}

Variant ZeroOf(TStoredKind Kind)
{
    switch (Kind) {
    case skString: return Variant(QString());
    case skBoolean: return Variant(false);
    case skFloat: return Variant(0.0);
    case skInteger: break;
    }
    return Variant(std::int32_t{0});
}

// The value as a variant of its kind (string, boolean, double, 32-bit integer), by the variant
// conversions; false when it does not convert. The writer and the reader both decide with it, so
// a stored text reads back as the kind it was written as.
bool ConvertToKind(const Variant& Value, TStoredKind Kind, Variant& Out)
{
    try {
        switch (Kind) {
        case skString: Out = Variant(Value.ToString()); return true;
        case skBoolean: Out = Variant(Value.ToBoolean()); return true;
        case skFloat: Out = Variant(Value.ToDouble()); return true;
        case skInteger: Out = Variant(Value.ToInteger()); return true;
        }
    } catch (const Exception&) {
    }
    return false;
}

// The value as its kind stores it; Null counts as Empty. A value that does not convert keeps its
// own text, one without text (an array) becomes the kind's zero; Problem then says so, for the
// debug output.
Variant StoredValue(const Variant& Value, TStoredKind Kind, QString& Problem)
{
    Problem.clear();
    const Variant value = Value.IsNull() ? Variant() : Value;
    Variant stored;
    if (ConvertToKind(value, Kind, stored))
        return stored;
    try {
        Variant text(value.ToString());
        // Its shorter text may convert where the value did not (a float just beyond the integer
        // range): store what reading the text back gives.
        if (ConvertToKind(text, Kind, stored))
            return stored;
        Problem = QStringLiteral("\"%1\" is not a %2 value, stored as text").arg(text.ToString(), KindName(Kind));
        return text;
    } catch (const Exception&) {
    }
    Problem = QStringLiteral("a value of type %1 cannot be stored, stored as %2")
                  .arg(VarTypeAsText(value.VarType()), ZeroOf(Kind).ToString());
    return ZeroOf(Kind);
}

// Text read back by the kind: what the writer would have stored as the kind becomes the kind
// (no trimming of its own: "2\n" was written as text and stays text); the rest stays a string.
Variant ParseStoredText(const QString& Text, TStoredKind Kind)
{
    const Variant text(Text);
    Variant value;
    return ConvertToKind(text, Kind, value) ? value : text;
}

void WriteIniValue(TKSPropIniFile& Ini, const QString& Key, const Variant& Value)
{
    switch (Value.VarType()) {
    case varOleStr: Ini.WriteString(KListitems, Key, Value.ToString()); break;
    case varBoolean: Ini.WriteBool(KListitems, Key, Value.ToBoolean()); break;
    case varDouble: Ini.WriteFloat(KListitems, Key, Value.ToDouble()); break;
    default: Ini.WriteInteger(KListitems, Key, Value.ToInteger()); break;
    }
}

// An absent key leaves the value unassigned, so set-up fills it from the source.
Variant ReadIniValue(const TKSPropIniFile& Ini, const QString& Key, TStoredKind Kind)
{
    if (!Ini.ValueExists(KListitems, Key))
        return {};
    return ParseStoredText(Ini.ReadString(KListitems, Key, QString()), Kind);
}

void WriteStreamValue(TWriter& Writer, const Variant& Value)
{
    switch (Value.VarType()) {
    case varOleStr: Writer.WriteString(Value.ToString()); break;
    case varBoolean: Writer.WriteBoolean(Value.ToBoolean()); break;
    case varDouble: Writer.WriteFloat(Value.ToDouble()); break;
    default: Writer.WriteInteger(Value.ToInteger()); break;
    }
}

// A value of another stream kind than expected is taken as it is; a list raises.
Variant ReadStreamValue(TReader& Reader, TStoredKind Kind)
{
    switch (Reader.NextValue()) {
    case vaString: return Variant(Reader.ReadString());
    case vaBoolean: return Variant(Reader.ReadBoolean());
    case vaFloat: return Variant(Reader.ReadFloat());
    case vaInteger: {
        const std::int64_t value = Reader.ReadInteger();
        if (Kind == skFloat)
            return Variant(static_cast<double>(value));
        if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
            return Variant(value);
        return Variant(static_cast<std::int32_t>(value));
    }
    case vaNull:
    case vaList: break;
    }
    // Raises the reader's own message about what it found instead.
    switch (Kind) {
    case skString: Reader.ReadString(); break;
    case skBoolean: Reader.ReadBoolean(); break;
    case skFloat: Reader.ReadFloat(); break;
    case skInteger: Reader.ReadInteger(); break;
    }
    return {};
}

QString ItemKey(int Index, const char* Field)
{
    return KItemPrefix + QString::number(Index) + QLatin1Char('.') + QLatin1String(Field);
}

// The index of a "listitem.<i>.<field>" key, or -1 when the key has not that form.
int ItemIndexOfKey(const QString& Key)
{
    if (!Key.startsWith(KItemPrefix, Qt::CaseInsensitive))
        return -1;
    const qsizetype dot = Key.indexOf(QLatin1Char('.'), KItemPrefix.size());
    if (dot < 0)
        return -1;
    const QString digits = Key.mid(KItemPrefix.size(), dot - KItemPrefix.size());
    bool ok = false;
    const int index = digits.toInt(&ok);
    // Only the spelling the store is read with counts.
    return ok && index >= 0 && QString::number(index) == digits ? index : -1;
}

QString BindingName(int Index, const TKSControlSourcePropListItem& Item)
{
    return QStringLiteral("binding %1 (%2->%3)").arg(Index).arg(Item.FPanelName, Item.FPropertyName);
}

}  // namespace

void TKSSourceControlClient::ReportStored(const QString& Text) const
{
    HostServices().DebugOutput(ComponentPlace(*this) + QStringLiteral(": ") + Text);
}

QStringList TKSSourceControlClient::WriteControlSourceClientEx() const
{
    TKSPropIniFile ini;
    ini.WriteBool(KGeneral, QStringLiteral("PanelEnabled"), GetPanelEnabled());
    ini.WriteInteger(KListitems, QStringLiteral("Len"), static_cast<std::int32_t>(FPropList.size()));
    for (int i = 0; i < static_cast<int>(FPropList.size()); ++i) {
        const TKSControlSourcePropListItem& item = *FPropList[static_cast<std::size_t>(i)];
        const TVarType code = item.FActualValue.VarType();
        const TStoredKind kind = StoredKind(code);
        ini.WriteString(KListitems, ItemKey(i, "FPanelName"), item.FPanelName);
        ini.WriteString(KListitems, ItemKey(i, "FPropertyName"), item.FPropertyName);
        ini.WriteInteger(KListitems, ItemKey(i, "FDataType"), item.FDataType);
        ini.WriteInteger(KListitems, ItemKey(i, "vartypeinfo"), code);
        QString problem;
        WriteIniValue(ini, ItemKey(i, "FActiveValue"), StoredValue(item.FActiveValue, kind, problem));
        if (!problem.isEmpty())
            ReportStored(BindingName(i, item) + QStringLiteral(", FActiveValue: ") + problem);
        WriteIniValue(ini, ItemKey(i, "FPassiveValue"), StoredValue(item.FPassiveValue, kind, problem));
        if (!problem.isEmpty())
            ReportStored(BindingName(i, item) + QStringLiteral(", FPassiveValue: ") + problem);
    }
    QStringList lines;
    ini.WriteToStringlist(lines);
    return lines;
}

void TKSSourceControlClient::ReadControlSourceClientEx(const QStringList& Lines)
{
    const TKSPropIniFile ini(Lines);
    SetPanelEnable(ini.ReadBool(KGeneral, QStringLiteral("PanelEnabled"), true));
    const int count = std::max(0, ini.ReadInteger(KListitems, QStringLiteral("Len"), 0));

    QSet<int> present;
    int ignoredKeys = 0;
    for (const QString& key : ini.ReadSection(KListitems)) {
        if (key.compare(QStringLiteral("Len"), Qt::CaseInsensitive) == 0)
            continue;
        const int index = ItemIndexOfKey(key);
        if (index >= 0 && index < count)
            present.insert(index);
        else
            ++ignoredKeys;
    }
    if (ignoredKeys > 0)
        ReportStored(QStringLiteral("%1 key(s) of [Listitems] beyond Len=%2 ignored").arg(ignoredKeys).arg(count));
    if (present.size() < count)
        ReportStored(QStringLiteral("Len is %1 but %2 binding(s) are missing").arg(count).arg(count - present.size()));

    QList<int> indices = present.values();
    std::sort(indices.begin(), indices.end());
    for (int i : indices) {
        const QString panelKey = ItemKey(i, "FPanelName");
        const QString propertyKey = ItemKey(i, "FPropertyName");
        if (!ini.ValueExists(KListitems, panelKey) && !ini.ValueExists(KListitems, propertyKey)) {
            ReportStored(QStringLiteral("binding %1 has neither FPanelName nor FPropertyName, skipped").arg(i));
            continue;
        }
        auto item = std::make_unique<TKSControlSourcePropListItem>();
        item->FPanelName = ini.ReadString(KListitems, panelKey, QString());
        item->FPropertyName = ini.ReadString(KListitems, propertyKey, QString());
        const QString dataTypeText = ini.ReadString(KListitems, ItemKey(i, "FDataType"), QStringLiteral("0"));
        std::int32_t dataType = 0;
        if (!TryStrToInt(dataTypeText.trimmed(), dataType) || dataType < 0 || dataType > 255) {
            ReportStored(BindingName(i, *item)
                         + QStringLiteral(": FDataType \"%1\" is not a number from 0 to 255, skipped").arg(dataTypeText));
            continue;
        }
        item->FDataType = static_cast<std::uint8_t>(dataType);
        const TStoredKind kind = StoredKind(ini.ReadInteger(KListitems, ItemKey(i, "vartypeinfo"), 0));
        item->FActiveValue = ReadIniValue(ini, ItemKey(i, "FActiveValue"), kind);
        item->FPassiveValue = ReadIniValue(ini, ItemKey(i, "FPassiveValue"), kind);
        FPropList.push_back(std::move(item));
    }
}

void TKSSourceControlClient::WriteProperties(TWriter& Writer) const
{
    Writer.WriteListBegin();
    for (int i = 0; i < static_cast<int>(FPropList.size()); ++i) {
        const TKSControlSourcePropListItem& item = *FPropList[static_cast<std::size_t>(i)];
        const TVarType code = item.FActualValue.VarType();
        const TStoredKind kind = StoredKind(code);
        Writer.WriteString(item.FPanelName);
        Writer.WriteString(item.FPropertyName);
        Writer.WriteInteger(item.FDataType);
        Writer.WriteInteger(code);
        QString problem;
        WriteStreamValue(Writer, StoredValue(item.FActiveValue, kind, problem));
        if (!problem.isEmpty())
            ReportStored(BindingName(i, item) + QStringLiteral(", FActiveValue: ") + problem);
        WriteStreamValue(Writer, StoredValue(item.FPassiveValue, kind, problem));
        if (!problem.isEmpty())
            ReportStored(BindingName(i, item) + QStringLiteral(", FPassiveValue: ") + problem);
    }
    Writer.WriteListEnd();
}

void TKSSourceControlClient::ReadProperties(TReader& Reader)
{
    Reader.ReadListBegin();
    for (int i = 0; !Reader.EndOfList(); ++i) {
        auto item = std::make_unique<TKSControlSourcePropListItem>();
        std::int64_t dataType = 0;
        TStoredKind kind = skInteger;
        int fields = 0;
        for (; fields < 6 && !Reader.EndOfList(); ++fields) {
            switch (fields) {
            case 0: item->FPanelName = Reader.ReadString(); break;
            case 1: item->FPropertyName = Reader.ReadString(); break;
            case 2: dataType = Reader.ReadInteger(); break;
            case 3: kind = StoredKind(Reader.ReadInteger()); break;
            case 4: item->FActiveValue = ReadStreamValue(Reader, kind); break;
            default: item->FPassiveValue = ReadStreamValue(Reader, kind); break;
            }
        }
        if (fields < 6) {
            ReportStored(BindingName(i, *item)
                         + QStringLiteral(": the list ends after %1 of its 6 values, skipped").arg(fields));
            break;
        }
        if (dataType < 0 || dataType > 255) {
            ReportStored(BindingName(i, *item)
                         + QStringLiteral(": FDataType %1 is not from 0 to 255, skipped").arg(dataType));
            continue;
        }
        item->FDataType = static_cast<std::uint8_t>(dataType);
        FPropList.push_back(std::move(item));
    }
    Reader.ReadListEnd();
}

void TKSSourceControlClient::DefineProperties(TFiler& Filer)
{
    TKSMSSink::DefineProperties(Filer);
    Filer.DefineProperty(
        QStringLiteral("FakeControlSourceClient"),
        [this](TReader& Reader) {
            ReadProperties(Reader);
            InitContol();
        },
        {}, false);
    Filer.DefineProperty(
        QStringLiteral("ControlSourceClientEx"),
        [this](TReader& Reader) {
            QStringList lines;
            Reader.ReadListBegin();
            while (!Reader.EndOfList())
                lines.append(Reader.ReadString());
            Reader.ReadListEnd();
            ReadControlSourceClientEx(lines);
            InitContol();
        },
        [this](TWriter& Writer) {
            Writer.WriteListBegin();
            for (const QString& line : WriteControlSourceClientEx())
                Writer.WriteString(line);
            Writer.WriteListEnd();
        },
        true);
}

}  // namespace qx
