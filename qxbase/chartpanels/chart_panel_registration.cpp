#include "qxbase/chartpanels/chart_panel_registration.h"

#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/chartpanels/scope_panel.h"
#include "qxbase/chartpanels/amplitude_spectrum_panel.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/panel_registry.h"

namespace qx {

void RegisterChartPanels()
{
    // Registered again after the registries were finalized and created anew.
    if (FindStreamClass(StreamClassName(TKSRecorderPanel::staticMetaObject)) != nullptr)
        return;
    RegisterKSPanels<TKSRecorderPanel, TKSScopePanel, TKSSpectrumPanel>();
}

}  // namespace qx
