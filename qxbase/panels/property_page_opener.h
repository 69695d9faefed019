#pragma once

#include <functional>

#include "qxbase/framework/export.h"

namespace qx {

class TKSMSSink;

// What "Properties" in a panel's menu (and a double click in design mode) opens when the panel
// class has no page of its own. The panels cannot include the page, which needs the channel
// picker of a higher folder, so the page installs itself here (InstallPanelPropertyPages in
// qxbase/config/panel_property_page.h). Unset: nothing opens.
using TKSPropertyPageOpener = std::function<void(TKSMSSink& Panel)>;

QXBASE_EXPORT void SetPropertyPageOpener(TKSPropertyPageOpener Opener);
QXBASE_EXPORT const TKSPropertyPageOpener& GetPropertyPageOpener();

}  // namespace qx
