#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "qxbase/control/control_source.h"
#include "qxbase/framework/export.h"

class QGridLayout;

namespace qx {

// The properties a control source publishes on the bus, one row each: its description and the
// editor that suits it, as on the binding page (ValueEditorKindOf): a combo box for an
// enumeration, a colour panel for a colour, a smart edit for numbers and text. A change is
// written at once with SetPropertyValue, so bindings and events follow; every editor then shows
// the values again, since one write may change others. Revert writes back what every shown
// property held before the list's first write: the written ones latest first, then any other
// still changed as a side effect.
//
// Left out: "ShowPropertypage" (it would open the page again) and commands (enumerations of
// exactly "True" and "Unknown"), which are actions rather than values and could not be reverted.
// A text that does not convert to the property's kind is refused with a message through
// HostServices().MessageBox and the editor shows the value again. A source destroyed while the
// list shows it leaves the editors inert.
class QXBASE_EXPORT TKSPropertyValueList : public QWidget {
    Q_OBJECT

public:
    explicit TKSPropertyValueList(QWidget* parent = nullptr);
    ~TKSPropertyValueList() override;

    // Builds one row per shown property of `Source` (null: none) and forgets earlier writes.
    void SetSource(TQXControlSource* Source);
    TQXControlSource* GetSource() const;
    // The properties shown, in bus order.
    std::vector<TQXPropertyHandle> GetShownHandles() const;
    // The editor of a shown property; nullptr for another handle.
    QWidget* GetEditor(TQXPropertyHandle Handle) const;
    // Writes `Value` as the user's edit would: the first write keeps every shown value for
    // Revert. False when the source is gone, the property unknown or the write fails
    // (an exception of the source's callback is shown as a message, not raised).
    bool WriteValue(TQXPropertyHandle Handle, const Variant& Value);
    // Shows the current values in every editor.
    void RefreshValues();
    // Properties written since SetSource.
    int GetChangedCount() const;
    // Writes the kept former values back (see above) and forgets them.
    void Revert();

    // Whether a property is listed: not "ShowPropertypage", not a command.
    static bool IsShownProperty(const TQXPropertyItem& Item);

private:
    struct Private;
    std::unique_ptr<Private> d;

    void BuildRows();
    void EditorChanged(TQXPropertyHandle Handle);
};

}  // namespace qx
