#pragma once

#include <QSize>
#include <QString>
#include <QTextStream>
#include <memory>

#include "apps/qxsheet/worksheet_window.h"

namespace qxsheet {

// The worksheet bundled with the demo, ":/qxsheet/default.qxw".
QString DefaultWorksheetPath();
inline constexpr QSize KSnapshotSize{960, 640};

// Registers the demo panels and loads `Path` (the bundled worksheet when empty) into a window,
// not yet shown. Raises what LoadWorksheetFile raises.
std::unique_ptr<TWorksheetWindow> OpenWorksheetWindow(const QString& Path);

// As OpenWorksheetWindow, then shown at KSnapshotSize in design mode with the first panel of
// the first page selected. With a page caption, that page is shown instead, its simulated
// sources stepped three times so that its charts have data and its cursors shown.
std::unique_ptr<TWorksheetWindow> CreateSnapshotWindow(const QString& Path, const QString& Page = {});

// OpenWorksheetWindow (or CreateSnapshotWindow when `Snapshot`), or null after writing the load
// error to `err`.
std::unique_ptr<TWorksheetWindow> OpenWorksheetWindowOrReport(const QString& Path, QTextStream& err,
                                                              bool Snapshot = false);

// Renders CreateSnapshotWindow(Path, Page) to the PNG file `Png` and says where it went.
// Returns 0, or 1 after writing the reason (a page of no such caption among them) to `err`.
int RunSnapshot(const QString& Path, const QString& Png, QTextStream& out, QTextStream& err,
                const QString& Page = {});

// Opens the worksheet in a window (its module search on COM `Port`, the simulated bus for 0) and
// runs the event loop until it closes. Returns the loop's result, or 1 after writing the reason
// to `err` when the worksheet does not load.
int RunWorksheetWindow(const QString& Path, QTextStream& err, int Port = 0);

}  // namespace qxsheet
