#include "qxbase/sources/measure_source_lookup.h"

#include <QObject>

#include "qxbase/framework/host_services.h"
#include "qxbase/sources/measure_source.h"

namespace qx {
namespace {

TQXMeasureSourceEx* FindIn(const QObject& Parent, const QString& Name, const QObject& Skip)
{
    for (QObject* child : Parent.children()) {
        if (child != &Skip && child->objectName() == Name)
            if (auto* source = qobject_cast<TQXMeasureSourceEx*>(child))
                return source;
        if (TQXMeasureSourceEx* found = FindIn(*child, Name, Skip))
            return found;
    }
    return nullptr;
}

}  // namespace

TQXMeasureSourceEx* FindMeasureSourceByName(const QObject& From, const QString& Name)
{
    if (Name.isEmpty())
        return nullptr;
    const QObject* top = From.parent() != nullptr ? &From : HostServices().GetContainer(&From);
    if (top == nullptr)
        return nullptr;
    while (top->parent() != nullptr)
        top = top->parent();
    return FindIn(*top, Name, From);
}

}  // namespace qx
