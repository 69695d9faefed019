#pragma once

#include <QString>
#include <QStringList>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/framework/variant.h"

namespace qx {

// The class names of the panels and of the data sources the host can place on a worksheet, in
// registration order; duplicates stay. Both raise EPanelRegistryError while the registries do not
// exist (after the last QxbasePanelsFinalize).
QXBASE_EXPORT QStringList& ClassNames();
QXBASE_EXPORT QStringList& SourceClassNames();

// Counted start and end of the panel unit. Loading the library calls Initialize once and
// unloading it calls Finalize; a host may add balanced pairs of its own. Only the first
// Initialize creates the two lists and registers TKSPanelTabPage for streaming; only the last
// Finalize frees the lists and removes from the streaming registry the page class and every
// class the register functions added there, so a new Initialize starts as the first did. A
// Finalize without a matching Initialize does nothing.
QXBASE_EXPORT void QxbasePanelsInitialize();
QXBASE_EXPORT void QxbasePanelsFinalize();

class QXBASE_EXPORT EPanelRegistryError : public Exception {
public:
    using Exception::Exception;
};

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

// Registers a class with the streaming registry (where registering it again keeps the first
// registration) and appends its name to one of the two lists, also when it is listed already.
// Raises EStreamError when another class is registered for streaming under the name, and
// EPanelRegistryError while the lists do not exist; the list is then unchanged.
QXBASE_EXPORT void RegisterKSPanelClass(const QString& ClassName, TStreamClassDescriptor Descriptor);
QXBASE_EXPORT void RegisterKSSourceClass(const QString& ClassName, TStreamClassDescriptor Descriptor);

template <class... T>
void RegisterKSPanels()
{
    (RegisterKSPanelClass(StreamClassName(T::staticMetaObject), MakePanelClassDescriptor<T>()), ...);
}

template <class... T>
void RegisterKSSources()
{
    (RegisterKSSourceClass(StreamClassName(T::staticMetaObject), MakePanelClassDescriptor<T>()), ...);
}

// The integer 0 for an empty list, otherwise an array of strings 0..count-1.
QXBASE_EXPORT Variant StringlistToOleVariant(const QStringList& Strings);
// Clears `Strings` and appends each element of an array value as text; a value that is not an
// array leaves the list empty. Raises EVariantError for an element without a text (Null, an
// array); the list is then empty.
QXBASE_EXPORT void OleVariantToStringList(const Variant& Value, QStringList& Strings);

}  // namespace qx
