#include "qxbase/framework/stream_registry.h"

#include <map>

namespace qx {

namespace {

// Node-based map: descriptor addresses stay valid while other classes come and go.
std::map<QString, TStreamClassDescriptor>& Registry()
{
    static std::map<QString, TStreamClassDescriptor> registry;
    return registry;
}

}  // namespace

bool RegisterStreamClass(const QString& className, TStreamClassDescriptor descriptor)
{
    if (className.isEmpty())
        throw EStreamError(QStringLiteral("A stream class needs a name"));
    if (!descriptor.Factory)
        throw EStreamError(QStringLiteral("Class %1 has no factory").arg(className));
    const QMetaObject* const cls = descriptor.Class;
    const auto [it, added] = Registry().try_emplace(className, std::move(descriptor));
    if (added)
        return true;
    // Hosts register their classes wherever they need them; only two classes under one name
    // are a conflict, since a file could not say which of them it holds.
    if (cls != nullptr && it->second.Class == cls)
        return false;
    throw EStreamError(QStringLiteral("A class named %1 already exists").arg(className));
}

QString StreamClassName(const QMetaObject& meta)
{
    const QString name = QLatin1String(meta.className());
    const qsizetype colon = name.lastIndexOf(QLatin1String("::"));
    return colon < 0 ? name : name.mid(colon + 2);
}

bool UnregisterStreamClass(const QString& className) { return Registry().erase(className) > 0; }

const TStreamClassDescriptor* FindStreamClass(const QString& className)
{
    const auto it = Registry().find(className);
    return it == Registry().end() ? nullptr : &it->second;
}

const TStreamClassDescriptor& GetStreamClass(const QString& className)
{
    const TStreamClassDescriptor* descriptor = FindStreamClass(className);
    if (descriptor == nullptr)
        throw EClassNotFound(QStringLiteral("Class %1 not found").arg(className));
    return *descriptor;
}

const TStreamClassDescriptor* FindStreamClassOf(const QObject& component)
{
    for (const QMetaObject* meta = component.metaObject(); meta != nullptr; meta = meta->superClass()) {
        if (const TStreamClassDescriptor* descriptor = FindStreamClass(StreamClassName(*meta)))
            return descriptor;
    }
    return nullptr;
}

std::unique_ptr<QObject> CreateStreamComponent(const QString& className, QObject* parent)
{
    // Copy the factory: it may register or unregister classes while it runs.
    const TStreamClassFactory factory = GetStreamClass(className).Factory;
    std::unique_ptr<QObject> component = factory(parent);
    if (!component)
        throw EStreamError(QStringLiteral("The factory of class %1 created nothing").arg(className));
    if (StreamClassName(*component->metaObject()) != className)
        throw EStreamError(QStringLiteral("The factory of class %1 created a %2")
                               .arg(className, StreamClassName(*component->metaObject())));
    return component;
}

}  // namespace qx
