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

void CollectIn(const QObject& Parent, std::vector<TQXMeasureSourceEx*>& Sources)
{
    for (QObject* child : Parent.children()) {
        if (auto* source = qobject_cast<TQXMeasureSourceEx*>(child))
            Sources.push_back(source);
        CollectIn(*child, Sources);
    }
}

// The topmost ancestor of `From`, or of the host's container when `From` has no parent.
const QObject* WorksheetRoot(const QObject& From)
{
    const QObject* top = From.parent() != nullptr ? &From : HostServices().GetContainer(&From);
    if (top == nullptr)
        return nullptr;
    while (top->parent() != nullptr)
        top = top->parent();
    return top;
}

}  // namespace

TQXMeasureSourceEx* FindMeasureSourceByName(const QObject& From, const QString& Name)
{
    if (Name.isEmpty())
        return nullptr;
    const QObject* top = WorksheetRoot(From);
    return top != nullptr ? FindIn(*top, Name, From) : nullptr;
}

std::vector<TQXMeasureSourceEx*> ListMeasureSources(const QObject& From)
{
    std::vector<TQXMeasureSourceEx*> sources;
    if (const QObject* top = WorksheetRoot(From))
        CollectIn(*top, sources);
    return sources;
}

}  // namespace qx
