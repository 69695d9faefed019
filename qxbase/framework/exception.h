#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

#include "qxbase/framework/export.h"

namespace qx {

// Base of every exception the library raises: a std::exception carrying a QString message.
class QXBASE_EXPORT Exception : public std::exception {
public:
    explicit Exception(QString message);
    const QString& Message() const noexcept { return FMessage; }
    const char* what() const noexcept override { return FUtf8.constData(); }

private:
    QString FMessage;
    QByteArray FUtf8;
};

// A text or value that does not convert to the requested number type.
class QXBASE_EXPORT EConvertError : public Exception {
public:
    using Exception::Exception;
};

// A variant operation that OLE rules do not allow (impossible conversion, bad array access).
class QXBASE_EXPORT EVariantError : public Exception {
public:
    using Exception::Exception;
};

// An index outside a list or array.
class QXBASE_EXPORT ERangeError : public Exception {
public:
    using Exception::Exception;
};

// A worksheet stream that cannot be written or read: wrong value type, missing or unknown
// entries, running past the end. The message names the place (component, property, item).
class QXBASE_EXPORT EStreamError : public Exception {
public:
    using Exception::Exception;
};

// A class name the streaming registry does not know.
class QXBASE_EXPORT EClassNotFound : public EStreamError {
public:
    using EStreamError::EStreamError;
};

}  // namespace qx
