#include "qxbase/framework/component_stream.h"

#include <QJsonArray>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QSet>
#include <QStringList>
#include <QVariant>
#include <limits>
#include <utility>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"

namespace qx {

namespace {

const QString KClassKey = QStringLiteral("class");
const QString KNameKey = QStringLiteral("name");
const QString KPropertiesKey = QStringLiteral("properties");
const QString KDefinedKey = QStringLiteral("defined");

QString JsonTypeName(const QJsonValue& value)
{
    double ignored = 0;
    switch (value.type()) {
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Bool: return QStringLiteral("boolean");
    case QJsonValue::Double:
        return value.toVariant().metaType().id() == QMetaType::LongLong ? QStringLiteral("integer")
                                                                         : QStringLiteral("number");
    case QJsonValue::String: return QStringLiteral("string");
    case QJsonValue::Array: return QStringLiteral("list");
    case QJsonValue::Object:
        return FloatFromJson(value, ignored) ? QStringLiteral("float") : QStringLiteral("object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("nothing");
}

bool IsQtClass(const QMetaObject* meta)
{
    const char* name = meta->className();
    return name[0] == 'Q' && name[1] >= 'A' && name[1] <= 'Z';
}

template <class F>
void ForEachStoredProperty(const QMetaObject* meta, F&& f)
{
    for (int i = 0; i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (!property.isStored() || !property.isWritable())
            continue;
        const QMetaObject* declaring = meta;
        while (i < declaring->propertyOffset())
            declaring = declaring->superClass();
        if (!IsQtClass(declaring))
            f(property);
    }
}

class TPropertyError {
public:
    TPropertyError(const QObject& component, const QMetaProperty& property)
        : FPlace(QStringLiteral("%1, property \"%2\"").arg(ComponentPlace(component), QLatin1String(property.name())))
    {
    }
    [[noreturn]] void Fail(const QString& problem) const
    {
        throw EStreamError(QStringLiteral("%1: %2").arg(FPlace, problem));
    }
    [[noreturn]] void WrongType(const QString& expected, const QJsonValue& found) const
    {
        Fail(QStringLiteral("%1 expected but %2 found").arg(expected, JsonTypeName(found)));
    }

private:
    QString FPlace;
};

QJsonValue PropertyToJson(const QObject& component, const QMetaProperty& property)
{
    const TPropertyError error(component, property);
    const QVariant value = property.read(&component);
    if (property.isEnumType()) {
        const QMetaEnum enumerator = property.enumerator();
        const int ordinal = value.toInt();
        const QByteArray key =
            enumerator.isFlag() ? enumerator.valueToKeys(ordinal) : QByteArray(enumerator.valueToKey(ordinal));
        if (key.isEmpty() && !(enumerator.isFlag() && ordinal == 0))
            error.Fail(QStringLiteral("%1 has no name in %2").arg(ordinal).arg(QLatin1String(enumerator.name())));
        return QString::fromLatin1(key);
    }
    switch (property.metaType().id()) {
    case QMetaType::Bool: return value.toBool();
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong: return QJsonValue(value.toLongLong());
    case QMetaType::ULongLong: {
        const qulonglong n = value.toULongLong();
        if (n > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
            error.Fail(QStringLiteral("%1 is beyond the 64-bit integer range").arg(n));
        return QJsonValue(static_cast<qint64>(n));
    }
    case QMetaType::Float:
    case QMetaType::Double: return FloatToJson(value.toDouble());
    case QMetaType::QString: return value.toString();
    case QMetaType::QStringList: return QJsonArray::fromStringList(value.toStringList());
    default: break;
    }
    error.Fail(QStringLiteral("type %1 cannot be stored").arg(QLatin1String(property.typeName())));
}

bool IntegerRange(int typeId, qint64& low, qint64& high)
{
    switch (typeId) {
    case QMetaType::SChar: low = -128; high = 127; return true;
    case QMetaType::UChar: low = 0; high = 255; return true;
    case QMetaType::Short: low = -32768; high = 32767; return true;
    case QMetaType::UShort: low = 0; high = 65535; return true;
    case QMetaType::Int:
        low = std::numeric_limits<qint32>::min();
        high = std::numeric_limits<qint32>::max();
        return true;
    case QMetaType::UInt: low = 0; high = std::numeric_limits<quint32>::max(); return true;
    case QMetaType::LongLong: low = std::numeric_limits<qint64>::min(); high = std::numeric_limits<qint64>::max(); return true;
    case QMetaType::ULongLong: low = 0; high = std::numeric_limits<qint64>::max(); return true;
    default: return false;
    }
}

void JsonToProperty(QObject& component, const QMetaProperty& property, const QJsonValue& json)
{
    const TPropertyError error(component, property);
    const int typeId = property.metaType().id();
    QVariant value;
    qint64 low = 0;
    qint64 high = 0;
    if (property.isEnumType()) {
        if (!json.isString())
            error.WrongType(QStringLiteral("string"), json);
        const QMetaEnum enumerator = property.enumerator();
        const QByteArray key = json.toString().toLatin1();
        bool ok = false;
        int ordinal = 0;
        if (enumerator.isFlag())
            ordinal = key.isEmpty() ? (ok = true, 0) : enumerator.keysToValue(key.constData(), &ok);
        else
            ordinal = enumerator.keyToValue(key.constData(), &ok);
        if (!ok)
            error.Fail(QStringLiteral("\"%1\" is not a value of %2").arg(json.toString(), QLatin1String(enumerator.name())));
        value = ordinal;
    } else if (typeId == QMetaType::Bool) {
        if (!json.isBool())
            error.WrongType(QStringLiteral("boolean"), json);
        value = json.toBool();
    } else if (IntegerRange(typeId, low, high)) {
        if (JsonTypeName(json) != QLatin1String("integer"))
            error.WrongType(QStringLiteral("integer"), json);
        const qint64 n = json.toInteger();
        if (n < low || n > high)
            error.Fail(QStringLiteral("%1 is out of the range %2..%3").arg(n).arg(low).arg(high));
        value = n;
    } else if (typeId == QMetaType::Double || typeId == QMetaType::Float) {
        // A plain JSON number is accepted too: files edited by hand.
        double d = 0;
        if (json.isDouble())
            d = json.toDouble();
        else if (!FloatFromJson(json, d))
            error.WrongType(QStringLiteral("float"), json);
        value = d;
    } else if (typeId == QMetaType::QString) {
        if (!json.isString())
            error.WrongType(QStringLiteral("string"), json);
        value = json.toString();
    } else if (typeId == QMetaType::QStringList) {
        if (!json.isArray())
            error.WrongType(QStringLiteral("list of strings"), json);
        QStringList list;
        for (const QJsonValue item : json.toArray()) {
            if (!item.isString())
                error.Fail(QStringLiteral("item %1: string expected but %2 found").arg(list.size()).arg(JsonTypeName(item)));
            list.append(item.toString());
        }
        value = list;
    } else {
        error.Fail(QStringLiteral("type %1 cannot be stored").arg(QLatin1String(property.typeName())));
    }
    if (!property.write(&component, value))
        error.Fail(QStringLiteral("the value was not accepted"));
}

class TWritingFiler final : public TFiler {
public:
    explicit TWritingFiler(QString place) : FPlace(std::move(place)) {}

    void DefineProperty(const QString& name, const TReaderProc&, const TWriterProc& writer, bool hasData) override
    {
        if (FNames.contains(name))
            throw EStreamError(QStringLiteral("%1: defined property \"%2\" declared twice").arg(FPlace, name));
        FNames.insert(name);
        if (!hasData || !writer)
            return;
        TWriter stream(QStringLiteral("%1, defined property \"%2\"").arg(FPlace, name));
        writer(stream);
        FDefined.insert(name, stream.GetValues());
    }
    bool IsReading() const override { return false; }
    const QJsonObject& GetDefined() const { return FDefined; }

private:
    QString FPlace;
    QSet<QString> FNames;
    QJsonObject FDefined;
};

class TReadingFiler final : public TFiler {
public:
    TReadingFiler(QJsonObject defined, QString place) : FPlace(std::move(place)), FDefined(std::move(defined)) {}

    void DefineProperty(const QString& name, const TReaderProc& reader, const TWriterProc&, bool) override
    {
        if (FNames.contains(name))
            throw EStreamError(QStringLiteral("%1: defined property \"%2\" declared twice").arg(FPlace, name));
        FNames.insert(name);
        if (!reader || !FDefined.contains(name))
            return;
        const QString place = QStringLiteral("%1, defined property \"%2\"").arg(FPlace, name);
        const QJsonValue values = FDefined.value(name);
        if (!values.isArray())
            throw EStreamError(QStringLiteral("%1: list of values expected but %2 found").arg(place, JsonTypeName(values)));
        FRead.insert(name);
        TReader stream(values.toArray(), place);
        reader(stream);
        if (!stream.AtEnd())
            throw EStreamError(QStringLiteral("%1, item %2: values left unread").arg(place, stream.GetItemPath()));
    }
    bool IsReading() const override { return true; }

    // Raises EStreamError for a property in the stream that no reader took.
    void CheckAllRead() const
    {
        for (auto it = FDefined.begin(); it != FDefined.end(); ++it)
            if (!FRead.contains(it.key()))
                throw EStreamError(QStringLiteral("%1: unknown defined property \"%2\"").arg(FPlace, it.key()));
    }

private:
    QString FPlace;
    QJsonObject FDefined;
    QSet<QString> FNames;
    QSet<QString> FRead;
};

QJsonObject OptionalObject(const QJsonObject& json, const QString& key, const QString& place)
{
    const QJsonValue value = json.value(key);
    if (value.isUndefined())
        return {};
    if (!value.isObject())
        throw EStreamError(QStringLiteral("%1: \"%2\" must be an object but is a %3").arg(place, key, JsonTypeName(value)));
    return value.toObject();
}

QString RequiredString(const QJsonObject& json, const QString& key, const QString& place)
{
    const QJsonValue value = json.value(key);
    if (!value.isString())
        throw EStreamError(value.isUndefined()
                               ? QStringLiteral("%1: \"%2\" is missing").arg(place, key)
                               : QStringLiteral("%1: \"%2\" must be a string but is a %3").arg(place, key, JsonTypeName(value)));
    return value.toString();
}

QString Prefixed(const QString& place, const QString& message)
{
    return place.isEmpty() ? message : QStringLiteral("%1, %2").arg(place, message);
}

}  // namespace

// Marks a component as loading for its lifetime; nests, so the outer state comes back.
class TLoadingGuard {
public:
    explicit TLoadingGuard(QObject& component)
        : FStreamable(dynamic_cast<TStreamable*>(&component)),
          FWasLoading(FStreamable != nullptr && FStreamable->FLoading)
    {
        if (FStreamable != nullptr)
            FStreamable->FLoading = true;
    }
    ~TLoadingGuard()
    {
        if (FStreamable != nullptr)
            FStreamable->FLoading = FWasLoading;
    }
    TLoadingGuard(const TLoadingGuard&) = delete;
    TLoadingGuard& operator=(const TLoadingGuard&) = delete;

    TStreamable* GetStreamable() const { return FStreamable; }

private:
    TStreamable* FStreamable;
    bool FWasLoading;
};

void TStreamable::DefineProperties(TFiler&) {}

void TStreamable::Loaded() {}

QString ComponentPlace(const QObject& component)
{
    return QStringLiteral("Component \"%1\" (%2)").arg(component.objectName(), StreamClassName(*component.metaObject()));
}

QJsonObject WriteStoredProperties(const QObject& component)
{
    QJsonObject json;
    ForEachStoredProperty(component.metaObject(), [&](const QMetaProperty& property) {
        json.insert(QLatin1String(property.name()), PropertyToJson(component, property));
    });
    return json;
}

void ReadStoredProperties(QObject& component, const QJsonObject& json)
{
    // Unknown names first, so a file meant for another class changes nothing.
    QSet<QString> known;
    ForEachStoredProperty(component.metaObject(),
                          [&](const QMetaProperty& property) { known.insert(QLatin1String(property.name())); });
    for (auto it = json.begin(); it != json.end(); ++it)
        if (!known.contains(it.key()))
            throw EStreamError(QStringLiteral("%1: unknown property \"%2\"").arg(ComponentPlace(component), it.key()));
    ForEachStoredProperty(component.metaObject(), [&](const QMetaProperty& property) {
        const QJsonValue value = json.value(QLatin1String(property.name()));
        if (!value.isUndefined())
            JsonToProperty(component, property, value);
    });
}

QJsonObject WriteComponent(const QObject& component)
{
    const QString className = StreamClassName(*component.metaObject());
    if (FindStreamClass(className) == nullptr)
        throw EStreamError(QStringLiteral("%1: class %2 is not registered for streaming").arg(ComponentPlace(component), className));
    QJsonObject json;
    json.insert(KClassKey, className);
    json.insert(KNameKey, component.objectName());
    json.insert(KPropertiesKey, WriteStoredProperties(component));
    TWritingFiler filer(ComponentPlace(component));
    // DefineProperties is not const: writers only read state, as in every stream framework.
    if (auto* streamable = dynamic_cast<TStreamable*>(const_cast<QObject*>(&component)))
        streamable->DefineProperties(filer);
    json.insert(KDefinedKey, filer.GetDefined());
    return json;
}

void ReadComponentData(QObject& component, const QJsonObject& json)
{
    const QString place = ComponentPlace(component);
    const QJsonObject properties = OptionalObject(json, KPropertiesKey, place);
    const QJsonObject defined = OptionalObject(json, KDefinedKey, place);
    const TLoadingGuard loading(component);
    ReadStoredProperties(component, properties);
    TReadingFiler filer(defined, place);
    if (loading.GetStreamable() != nullptr)
        loading.GetStreamable()->DefineProperties(filer);
    filer.CheckAllRead();
}

std::unique_ptr<QObject> ReadComponent(const QJsonObject& json, QObject* parent, const QString& place)
{
    try {
        const QString name = RequiredString(json, KNameKey, QStringLiteral("Component"));
        const QString named = QStringLiteral("Component \"%1\"").arg(name);
        const QString className = RequiredString(json, KClassKey, named);
        std::unique_ptr<QObject> component;
        try {
            component = CreateStreamComponent(className, parent);
        } catch (const EClassNotFound& e) {
            throw EClassNotFound(QStringLiteral("%1: %2").arg(named, e.Message()));
        } catch (const EStreamError& e) {
            throw EStreamError(QStringLiteral("%1: %2").arg(named, e.Message()));
        }
        component->setObjectName(name);
        const TLoadingGuard loading(*component);
        ReadComponentData(*component, json);
        if (loading.GetStreamable() != nullptr)
            loading.GetStreamable()->Loaded();
        return component;
    } catch (const EClassNotFound& e) {
        throw EClassNotFound(Prefixed(place, e.Message()));
    } catch (const EStreamError& e) {
        throw EStreamError(Prefixed(place, e.Message()));
    }
}

}  // namespace qx
