#include "qxbase/framework/host_services.h"

#include <QColorDialog>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>
#include <QWidget>

#include "qxbase/framework/debug_output.h"

namespace qx {

namespace {

bool DefaultHTMLHelp(const QString& topic, const QString& file)
{
    Q_UNUSED(topic);
    if (file.isEmpty() || !QFileInfo::exists(file))
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

QObject* DefaultGetContainer(const QObject* component)
{
    Q_UNUSED(component);
    return nullptr;
}

QString DefaultGetSaveFileName(QWidget* parent, const QString& caption, const QString& filter,
                               const QString& fileName)
{
    return QFileDialog::getSaveFileName(parent, caption, fileName, filter);
}

bool DefaultChooseColor(QWidget* parent, TColor& color)
{
    const QColor chosen = QColorDialog::getColor(ColorToQColor(color), parent);
    if (!chosen.isValid())
        return false;
    color = QColorToColor(chosen);
    return true;
}

int DefaultMessageBox(QWidget* parent, const QString& text, const QString& caption, int buttons)
{
    QMessageBox::StandardButtons shown = QMessageBox::Ok;
    if (buttons == 2)
        shown = QMessageBox::Ok | QMessageBox::Cancel;
    else if (buttons == 4)
        shown = QMessageBox::Yes | QMessageBox::No;
    switch (QMessageBox::information(parent, caption, text, shown)) {
    case QMessageBox::Cancel:
        return 2;
    case QMessageBox::Yes:
        return 6;
    case QMessageBox::No:
        return 7;
    default:
        return 1;
    }
}

THostServices Defaults()
{
    THostServices services;
    services.HTMLHelp = DefaultHTMLHelp;
    services.GetContainer = DefaultGetContainer;
    services.GetSaveFileName = DefaultGetSaveFileName;
    services.ChooseColor = DefaultChooseColor;
    services.MessageBox = DefaultMessageBox;
    services.DebugOutput = KSDebugOutputString;
    return services;
}

}  // namespace

THostServices& HostServices()
{
    static THostServices services = Defaults();
    return services;
}

void RestoreHostServices() { HostServices() = Defaults(); }

}  // namespace qx
