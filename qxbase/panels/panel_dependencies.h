#pragma once

#include <QStringList>
#include <memory>

#include "qxbase/framework/export.h"

class QObject;

namespace qx {

// Collects the run-time package files that the panels below `root` need. Null root: returns 0
// and leaves `List` alone. Otherwise `List` is replaced by a new list, sorted and without
// duplicates (file names compared case-insensitively, the first spelling kept), of every entry
// of every panel's dependency text: the one its class was registered with, or
// TKSMSSink::GetDependencies when the class registered none. Entries are trimmed, empty ones
// dropped. Panels are searched depth-first through all owned objects, panels' own children
// included. Returns the number of entries; with no panel found `List` becomes null and the
// result is 0.
QXBASE_EXPORT int GetAllPanelDependencies(QObject* root, std::unique_ptr<QStringList>& List);

}  // namespace qx
