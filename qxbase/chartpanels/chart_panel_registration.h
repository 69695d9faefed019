#pragma once

#include "qxbase/framework/export.h"

namespace qx {

// Registers the recorder, the scope and the spectrum display as panel classes; later calls do
// nothing. Raises EPanelRegistryError while the registries do not exist.
QXBASE_EXPORT void RegisterChartPanels();

}  // namespace qx
