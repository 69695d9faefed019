#pragma once

#include <QString>

#include "qxbase/framework/export.h"

class QObject;

namespace qx {

class TQXMeasureSourceEx;

// The data source whose component name is exactly `Name` in the worksheet `From` belongs to:
// searched depth first, in child order, below the topmost ancestor of `From` (or below the host's
// container when `From` has no parent). Null for an empty name or when there is none; `From`
// itself is never returned, so a consumer cannot pick itself.
QXBASE_EXPORT TQXMeasureSourceEx* FindMeasureSourceByName(const QObject& From, const QString& Name);

}  // namespace qx
