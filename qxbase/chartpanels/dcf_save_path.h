#pragma once

#include <QDateTime>
#include <QString>
#include <functional>

#include "qxbase/framework/export.h"
#include "qxbase/panels/histo_types.h"

class QWidget;

namespace qx {

// Asks the user for a data file name. Given the panel's file name, returns true with the chosen
// name (extension removed) or false when cancelled. The chart panels pass SelectDCFSaveFileName.
using TQXDcfFileNameDialog = std::function<bool(QString& FileName)>;

// The path a chart panel saves its data to, or an empty string for nothing to save.
// `FileName` is the panel's stored file name, without extension: ".dcf" is appended unless the
// name already ends with it. It changes only when the dialog is confirmed.
//   smShowDialog: the dialog, with FileName as its default; cancelled: nothing.
//   smCreateName: "<FileName>_<yyyyMMdd>_<HHmmss>.dcf" from `Now`, with "_2", "_3" ... added
//     while such a file exists, so no file is ever replaced.
//   smUseName: FileName, replacing an existing file.
//   smUseNameWithOverwriteWarning: FileName; an existing file is replaced only after the host's
//     MessageBox (Yes/No) answers Yes, else nothing.
// An empty FileName asks through the dialog first with every method (cancelled: nothing);
// smCreateName then stamps the chosen name. A missing dialog counts as cancelled; a method
// outside the enumeration gives nothing.
QXBASE_EXPORT QString GetDcfSavePath(THVKSaveMethod Method, QString& FileName, const QDateTime& Now,
                                     const TQXDcfFileNameDialog& SelectFileName, QWidget* Parent = nullptr);

}  // namespace qx
