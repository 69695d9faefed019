#pragma once

#include "qxbase/framework/export.h"
#include "qxbase/sources/ad_conversion.h"

class QWidget;

namespace qx {

class TADExtendedPropertyPage;
class TKSSimulatedSource;

// The A/D extended page as the simulated converter uses it: the resolution ("Ideal" or 8, 12,
// 16, 24 bits), the cut-off filter ("Off" or 1 Hz to 10 kHz in decades) and the external clock
// divider are enabled; the other nine controls, which mean nothing without hardware, are
// disabled. A current value the lists lack is added to them.
QXBASE_EXPORT void FillADExtendedPage(TADExtendedPropertyPage& Page, const TQXADExtendedSettings& Settings);

// Reads the three settings back into `Settings` and returns the page's changed-set restricted
// to them. A divider text that is not a whole number keeps the old divider and drops its bit.
QXBASE_EXPORT TADChangedSet ReadADExtendedPage(const TADExtendedPropertyPage& Page, TQXADExtendedSettings& Settings);

// Shows the page for the source (modal, owned by `Parent`) and, after "Ok", applies the settings
// the user changed. Returns the settings that really changed; empty after a cancel.
QXBASE_EXPORT TADChangedSet EditADExtendedSettings(TKSSimulatedSource& Source, QWidget* Parent);

}  // namespace qx
