#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "qxbase/framework/export.h"
#include "qxbase/framework/value_stream.h"

// Components as JSON: {"class": ..., "name": ..., "properties": {...}, "defined": {...}}.
namespace qx {

using TReaderProc = std::function<void(TReader&)>;
using TWriterProc = std::function<void(TWriter&)>;

// Handed to DefineProperties while a component is written or read.
class QXBASE_EXPORT TFiler {
public:
    virtual ~TFiler() = default;
    // Declares a property the component streams itself. Writing calls `writer` when `hasData`
    // is true; reading calls `reader` when the stream holds the property. Either may be empty.
    // The reader must read exactly the values the writer wrote. Raises EStreamError for a name
    // declared twice, a writer leaving a list open, or a reader leaving values unread.
    virtual void DefineProperty(const QString& name, const TReaderProc& reader, const TWriterProc& writer,
                                bool hasData) = 0;
    virtual bool IsReading() const = 0;
};

// Implemented by components that stream more than their stored Q_PROPERTYs.
class QXBASE_EXPORT TStreamable {
public:
    virtual ~TStreamable() = default;
    virtual void DefineProperties(TFiler& filer);
    // Called once the component has been read.
    virtual void Loaded();
    // True from the start of reading until Loaded has returned.
    bool GetIsLoading() const { return FLoading; }

private:
    friend class TLoadingGuard;
    bool FLoading = false;
};

// The stored Q_PROPERTYs of a component: those declared by its own classes (class names not
// beginning with "Q" and a capital, so not QObject's or QWidget's), with STORED true and
// writable. Raises EStreamError naming component, class and property for a type the stream
// cannot hold.
QXBASE_EXPORT QJsonObject WriteStoredProperties(const QObject& component);
// Sets the properties found in `json`; absent ones keep their values. Raises EStreamError for
// an unknown property, a wrong JSON type or a value out of the property's range.
QXBASE_EXPORT void ReadStoredProperties(QObject& component, const QJsonObject& json);

// The component as {"class", "name", "properties", "defined"}. Raises EStreamError.
QXBASE_EXPORT QJsonObject WriteComponent(const QObject& component);
// Reads "properties" and "defined" into an existing component, without calling Loaded.
// Keys other than the four are left to the caller. Raises EStreamError; the component may then
// be partly read (ReadComponent destroys it, callers of this one decide).
QXBASE_EXPORT void ReadComponentData(QObject& component, const QJsonObject& json);
// Creates the component through the streaming registry as a child of `parent`, reads it and
// calls Loaded. On any failure (EStreamError, EClassNotFound, or what Loaded raises) the
// component and everything it created are destroyed before the exception leaves. `place`
// prefixes error messages (for example the page holding the component).
QXBASE_EXPORT std::unique_ptr<QObject> ReadComponent(const QJsonObject& json, QObject* parent,
                                                     const QString& place = {});
// "Component "Gauge1" (TGauge)": how error messages name a component.
QXBASE_EXPORT QString ComponentPlace(const QObject& component);

}  // namespace qx
