#pragma once

#include <QCoreApplication>
#include <QString>

namespace qx {

// A translatable text of the library's resources. The source text is the English text the
// system shows; a host translates it by installing a QTranslator for the context "qx::res".
struct ResourceText {
    const char* Source;

    QString Text() const { return QCoreApplication::translate("qx::res", Source); }
    operator QString() const { return Text(); }
};

}  // namespace qx

// Marks a literal for lupdate under the library's translation context.
#define QX_RES(text) ::qx::ResourceText{QT_TRANSLATE_NOOP("qx::res", text)}
