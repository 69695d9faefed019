#pragma once

#include <QString>
#include <QStringList>

#include "qxbase/framework/export.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/framework/variant.h"

namespace qx {

// The class names of the panels and of the data sources the host can place on a worksheet, in
// registration order; duplicates stay. Created with the library's first load and freed with its
// last unload (QxbasePanelsInitialize / QxbasePanelsFinalize, counted).
QXBASE_EXPORT QStringList& ClassNames();
QXBASE_EXPORT QStringList& SourceClassNames();

// The descriptor RegisterKSPanels and RegisterKSSources register: the stream factory of T and its
// static GetDescription, GetClassIcon and GetDependencies.
template <class T>
TStreamClassDescriptor MakePanelClassDescriptor()
{
    TStreamClassDescriptor descriptor = MakeStreamClassDescriptor<T>();
    descriptor.Description = [] { return T::GetDescription(T::staticMetaObject); };
    descriptor.ClassIcon = [] { return T::GetClassIcon(); };
    descriptor.Dependencies = [] { return T::GetDependencies(); };
    return descriptor;
}

// Registers a class with the streaming registry and appends its name to one of the two lists.
// Raises EStreamError when the class is registered for streaming already; the list is then
// unchanged.
QXBASE_EXPORT void RegisterKSPanelClass(const QString& ClassName, TStreamClassDescriptor Descriptor);
QXBASE_EXPORT void RegisterKSSourceClass(const QString& ClassName, TStreamClassDescriptor Descriptor);

template <class... T>
void RegisterKSPanels()
{
    (RegisterKSPanelClass(QLatin1String(T::staticMetaObject.className()), MakePanelClassDescriptor<T>()), ...);
}

template <class... T>
void RegisterKSSources()
{
    (RegisterKSSourceClass(QLatin1String(T::staticMetaObject.className()), MakePanelClassDescriptor<T>()), ...);
}

// The integer 0 for an empty list, otherwise an array of strings 0..count-1.
QXBASE_EXPORT Variant StringlistToOleVariant(const QStringList& Strings);
// Clears `Strings` and appends each element of an array value as text; a value that is not an
// array leaves the list empty.
QXBASE_EXPORT void OleVariantToStringList(const Variant& Value, QStringList& Strings);

}  // namespace qx
