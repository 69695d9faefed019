#pragma once

#include <QString>
#include <functional>

#include "qxbase/framework/color.h"
#include "qxbase/framework/export.h"

class QObject;
class QWidget;

namespace qx {

// What the host application supplies to the library. Every hook starts with a working Qt
// default; a host (or a test) replaces single hooks and RestoreHostServices brings the
// defaults back. Hooks are called on the GUI thread only.
struct QXBASE_EXPORT THostServices {
    // Opens help on `topic` in `file` (empty: the host's main help). Returns whether help was
    // shown. Default: opens `file` with the desktop's viewer when it exists, else false.
    std::function<bool(const QString& topic, const QString& file)> HTMLHelp;

    // The container message: the container (worksheet) of a component that has no owner, or
    // null. Default: null, as a component outside every worksheet has no container.
    std::function<QObject*(const QObject* component)> GetContainer;

    // Asks for a file to save to; an empty result means cancelled. Default: QFileDialog.
    std::function<QString(QWidget* parent, const QString& caption, const QString& filter,
                          const QString& fileName)>
        GetSaveFileName;

    // Asks for a colour; false means cancelled and leaves `color` alone. Default: QColorDialog.
    std::function<bool(QWidget* parent, TColor& color)> ChooseColor;

    // Shows a message and returns the button pressed as a dialog result (1 OK, 2 Cancel, 6 Yes,
    // 7 No). `buttons` uses the same codes: 1 OK only, 2 OK and Cancel, 4 Yes and No.
    // Default: QMessageBox.
    std::function<int(QWidget* parent, const QString& text, const QString& caption, int buttons)>
        MessageBox;

    // One line of the operating system's debug output. Default: KSDebugOutputString.
    std::function<void(const QString& text)> DebugOutput;
};

// The hooks in use. The reference stays valid for the life of the process.
QXBASE_EXPORT THostServices& HostServices();
// Puts every hook back to its default.
QXBASE_EXPORT void RestoreHostServices();

}  // namespace qx
