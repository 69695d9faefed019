#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <vector>

#include "qxbase/framework/export.h"

class QObject;

// Worksheet files: the pages of a worksheet, in order, each with its panels, as one JSON document
//   {"format": "qxbase worksheet", "version": 1,
//    "pages": [{<page component>, "panels": [{<panel component>, "geometry": [l, t, w, h],
//                                             "components": [...]}]}]}
// where a component is what WriteComponent gives. "panels" holds what a page holds and
// "components" what a panel holds, nested the same way: panels (TKSMSSink and controller panels,
// TKSControlerPanelBase) and children of classes registered for streaming.
//
// Names: pages and what they hold share one namespace per worksheet (bindings find panels by name
// alone); the components inside a panel are unique within that panel. No name may be empty.
namespace qx {

class TKSMSSink;
class TKSPanelTabPage;

inline constexpr int KWorksheetVersion = 1;
// "qxbase worksheet", the value of "format".
QXBASE_EXPORT QString WorksheetFormatTag();

// The panels (TKSMSSink) of a page in child order (that is, stacking order), without nested ones.
QXBASE_EXPORT std::vector<TKSMSSink*> GetPagePanels(const TKSPanelTabPage& Page);
// Every panel on a page, nested ones included, each followed by those it holds.
QXBASE_EXPORT std::vector<TKSMSSink*> GetAllPagePanels(const TKSPanelTabPage& Page);

// The worksheet as indented JSON; the same pages always give the same bytes. Raises EStreamError
// for an empty or repeated name, a class not registered for streaming, or a property the stream
// cannot hold, naming the page and the component.
QXBASE_EXPORT QByteArray WriteWorksheet(const std::vector<TKSPanelTabPage*>& Pages);

// Builds the pages of a worksheet: each component is created through the streaming registry and
// gets its Loaded as soon as it is read; a widget's geometry is then set as it stands (a panel's
// CanResize is not asked); once the whole document is read every panel gets LoadFinished, page
// by page, a holder before the panels it holds, while the pages share one temporary parent
// widget, so that a panel finds panels of other pages by name. The pages returned have no parent.
// Raises EStreamError (EClassNotFound for an unknown class) whose message begins with `FileName`
// and names the page, the component and the property at fault; then nothing is returned, every
// object created is destroyed and no LoadFinished has been called. A LoadFinished that raises
// destroys the whole worksheet as well.
QXBASE_EXPORT std::vector<std::unique_ptr<TKSPanelTabPage>> ReadWorksheet(const QByteArray& Data,
                                                                          const QString& FileName);

// Writes the worksheet to `Path` through a temporary file, so a failure leaves the old file as it
// was. Raises EStreamError "Cannot save <path>: <reason>".
QXBASE_EXPORT void SaveWorksheetFile(const QString& Path, const std::vector<TKSPanelTabPage*>& Pages);
// Reads a worksheet file (Qt resource paths included). Raises EStreamError
// "Cannot read <path>: <reason>" or what ReadWorksheet raises, with `Path` as the file name.
QXBASE_EXPORT std::vector<std::unique_ptr<TKSPanelTabPage>> LoadWorksheetFile(const QString& Path);

}  // namespace qx
