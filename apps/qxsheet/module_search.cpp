#include "apps/qxsheet/module_search.h"

#include <QPlainTextEdit>
#include <QTextStream>

#include "apps/qxsheet/module_scan_demo.h"
#include "qxbase/config/dewe_protocol.h"
#include "qxbase/config/dewe_scan_runner.h"
#include "qxbase/config/pad_search_result_dialog.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/serial_line.h"

namespace qxsheet {

TModuleSearch::TModuleSearch(qx::TFormPadSearchResult& Form, int Port)
    : QObject(&Form), FForm(Form), FPort(Port), FRunner(std::make_unique<qx::TDeweScanRunner>())
{
    if (FPort == 0) {
        try {
            FBus = std::make_unique<TSimulatedBusPort>();
            FPort = TSimulatedBusPort::Port;
        } catch (const qx::Exception& e) {
            FForm.Memo1()->setPlainText(QStringLiteral("no simulated bus: %1").arg(e.Message()));
            FForm.Enable();
            return;
        }
    }
    FHeading = QStringLiteral("Searching the module bus on COM%1 (%2)").arg(FPort).arg(qx::ComPortDevice(FPort));
    if (FBus) FHeading += QStringLiteral(", a simulated bus");
    FForm.Memo1()->setPlainText(FHeading + QStringLiteral(" ..."));
    connect(FRunner.get(), &qx::TDeweScanRunner::progress, this, &TModuleSearch::ShowProgress);
    connect(FRunner.get(), &qx::TDeweScanRunner::finished, this, &TModuleSearch::ShowResult);
    FForm.Disable();
    FRunner->Start(FPort);
}

TModuleSearch::~TModuleSearch()
{
    // Stops and joins the worker while the bus it talks to still exists.
    FRunner.reset();
}

bool TModuleSearch::IsRunning() const
{
    return FRunner->IsRunning();
}

void TModuleSearch::ShowProgress(bool Pad, int Address)
{
    FForm.Memo1()->setPlainText(QStringLiteral("%1 ...\n%2 modules: address %3 of %4")
                                    .arg(FHeading, Pad ? QStringLiteral("PAD") : QStringLiteral("DAQP"))
                                    .arg(Address)
                                    .arg(qx::DeweMaxAddress));
}

void TModuleSearch::ShowResult(const qx::TDeweScanResult& Result)
{
    QString text;
    QTextStream out(&text);
    PrintScanResult(out, FPort, Result);
    out.flush();
    FForm.Memo1()->setPlainText(text);
    FForm.Enable();
}

qx::TFormPadSearchResult* OpenModuleSearch(QWidget* Parent, int Port)
{
    auto* form = new qx::TFormPadSearchResult(Parent);
    form->setAttribute(Qt::WA_DeleteOnClose);
    new TModuleSearch(*form, Port);
    form->open();
    return form;
}

}  // namespace qxsheet
