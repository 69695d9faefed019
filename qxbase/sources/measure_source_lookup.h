#pragma once

#include <QString>
#include <vector>

#include "qxbase/framework/export.h"

class QObject;

namespace qx {

class TQXMeasureSourceEx;

// The data source whose component name is exactly `Name` in the worksheet `From` belongs to:
// searched depth first, in child order, below the topmost ancestor of `From` (or below the host's
// container when `From` has no parent). Null for an empty name or when there is none; `From`
// itself is never returned, so a consumer cannot pick itself.
QXBASE_EXPORT TQXMeasureSourceEx* FindMeasureSourceByName(const QObject& From, const QString& Name);

// Every data source of the worksheet `From` belongs to, in the order FindMeasureSourceByName
// searches, `From` itself included when it is one. Empty when `From` has neither a parent nor a
// container.
QXBASE_EXPORT std::vector<TQXMeasureSourceEx*> ListMeasureSources(const QObject& From);

}  // namespace qx
