#include "qxbase/chartpanels/dcf_save_path.h"

#include <QFileInfo>

#include "qxbase/framework/host_services.h"
#include "qxbase/resources/dcf_texts.h"

namespace qx {
namespace {

constexpr int KButtonsYesNo = 4;
constexpr int KResultYes = 6;

QString WithExtension(const QString& Name)
{
    return Name.endsWith(QLatin1String(".dcf"), Qt::CaseInsensitive) ? Name : Name + QStringLiteral(".dcf");
}

QString StampedPath(QString Name, const QDateTime& Now)
{
    if (Name.endsWith(QLatin1String(".dcf"), Qt::CaseInsensitive)) Name.chop(4);
    const QString base = Name + QLatin1Char('_') + Now.toString(QStringLiteral("yyyyMMdd_HHmmss"));
    QString path = base + QStringLiteral(".dcf");
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = base + QLatin1Char('_') + QString::number(n) + QStringLiteral(".dcf");
    return path;
}

bool AskFileName(QString& FileName, const TQXDcfFileNameDialog& SelectFileName)
{
    QString chosen = FileName;
    if (!SelectFileName || !SelectFileName(chosen) || chosen.isEmpty()) return false;
    FileName = chosen;
    return true;
}

}  // namespace

QString GetDcfSavePath(THVKSaveMethod Method, QString& FileName, const QDateTime& Now,
                       const TQXDcfFileNameDialog& SelectFileName, QWidget* Parent)
{
    if (Method > smUseNameWithOverwriteWarning) return {};
    // The name the user picks in the dialog is the answer to every question asked here.
    if (Method == smShowDialog || FileName.isEmpty()) {
        if (!AskFileName(FileName, SelectFileName)) return {};
        return Method == smCreateName ? StampedPath(FileName, Now) : WithExtension(FileName);
    }
    switch (Method) {
    case smCreateName: return StampedPath(FileName, Now);
    case smUseName: return WithExtension(FileName);
    case smUseNameWithOverwriteWarning: {
        const QString path = WithExtension(FileName);
        if (!QFileInfo::exists(path)) return path;
        const int answer = HostServices().MessageBox(Parent, res::_rsDcfOverwriteQuestion.Text().arg(path),
                                                     res::_rsDcfOverwriteCaption, KButtonsYesNo);
        return answer == KResultYes ? path : QString();
    }
    default: return {};
    }
}

}  // namespace qx
