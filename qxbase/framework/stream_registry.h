#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <type_traits>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/export.h"

namespace qx {

// The name a class is registered and streamed under: its meta-object class name without the C++
// namespaces ("TKSPanelTabPage" for qx::TKSPanelTabPage), so files do not depend on them.
QXBASE_EXPORT QString StreamClassName(const QMetaObject& meta);

// Creates one component of a class, owned by the caller; `parent` may be null. A widget class
// given a parent that is not a widget raises EStreamError.
using TStreamClassFactory = std::function<std::unique_ptr<QObject>(QObject* parent)>;

// What the streaming registry knows about a class: its factory and its class-level operations.
// The operations are optional; the panel registries fill them from the class's static
// GetDescription, GetClassIcon and GetDependencies. `Class` is the class the factory builds, by
// which a second registration of the same class is told from another class of the same name;
// null when not known.
struct TStreamClassDescriptor {
    TStreamClassFactory Factory;
    std::function<QString()> Description;
    std::function<QImage()> ClassIcon;
    std::function<QString()> Dependencies;
    const QMetaObject* Class = nullptr;
};

// Registers a class under its name and returns true. Registering the same class again (the same
// non-null `Class`) keeps the first registration and returns false. Raises EStreamError ("A class
// named <name> already exists") for a name taken by another class or by a descriptor without
// `Class`, and for an empty name or a missing factory.
QXBASE_EXPORT bool RegisterStreamClass(const QString& className, TStreamClassDescriptor descriptor);
// Removes a class; returns false when it was not registered.
QXBASE_EXPORT bool UnregisterStreamClass(const QString& className);
// The descriptor of a class, or null when unknown. The pointer stays valid until the class is
// unregistered.
QXBASE_EXPORT const TStreamClassDescriptor* FindStreamClass(const QString& className);
// As FindStreamClass, but raises EClassNotFound ("Class <name> not found") when unknown.
QXBASE_EXPORT const TStreamClassDescriptor& GetStreamClass(const QString& className);
// Creates a component of a registered class. Raises EClassNotFound for an unknown class and
// EStreamError when the factory returns nothing or an object of another class.
QXBASE_EXPORT std::unique_ptr<QObject> CreateStreamComponent(const QString& className, QObject* parent);

// As FindStreamClass for the class of `component`, or else for the nearest base class that is
// registered; null when none is.
QXBASE_EXPORT const TStreamClassDescriptor* FindStreamClassOf(const QObject& component);

// The descriptor registered by RegisterStreamClass<T>(): a factory calling T(parent), and T's
// meta-object as `Class`. T takes a QWidget* parent when it is a widget, otherwise a QObject*
// parent.
template <class T>
TStreamClassDescriptor MakeStreamClassDescriptor()
{
    static_assert(std::is_base_of_v<QObject, T>, "stream classes are QObjects");
    TStreamClassDescriptor descriptor;
    descriptor.Class = &T::staticMetaObject;
    descriptor.Factory = [](QObject* parent) -> std::unique_ptr<QObject> {
        if constexpr (std::is_base_of_v<QWidget, T>) {
            QWidget* widgetParent = qobject_cast<QWidget*>(parent);
            if (parent != nullptr && widgetParent == nullptr)
                throw EStreamError(QStringLiteral("Class %1 needs a widget as its parent")
                                       .arg(StreamClassName(T::staticMetaObject)));
            return std::make_unique<T>(widgetParent);
        } else {
            return std::make_unique<T>(parent);
        }
    };
    return descriptor;
}

// Registers T under its meta-object class name with MakeStreamClassDescriptor<T>().
template <class T>
bool RegisterStreamClass()
{
    return RegisterStreamClass(StreamClassName(T::staticMetaObject), MakeStreamClassDescriptor<T>());
}

}  // namespace qx
