// A host program built against an installed qxbase: it reaches the exported classes of each
// folder through their installed headers and checks a few results.
#include <QCoreApplication>
#include <QStringList>
#include <cstdio>

#include "qxbase/config/thermocouple.h"
#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/framework/prop_ini_file.h"
#include "qxbase/measure/block_buffer.h"
#include "qxbase/measure/shortdef_text.h"

namespace {

int failures = 0;

void Check(bool ok, const char* what)
{
    std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
    if (!ok) ++failures;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);

    Check(qx::FloatToStr(1.7e30) == QStringLiteral("1.7E30"), "general float format");

    qx::TKSPropIniFile ini(QStringList{QStringLiteral("[Gain]"), QStringLiteral("Value=2.5")});
    Check(ini.ReadFloat(QStringLiteral("gain"), QStringLiteral("VALUE"), 0) == 2.5, "ini store");

    qx::TRVDataDouble block = qx::NewDataDouble(1024);
    Check(block.count == 1024 && reinterpret_cast<quintptr>(block.data) % 64 == 0, "block buffer");
    qx::FreeDataDouble(block);

    Check(qx::CreateShortDef(3, 0.5, 1e-3, 5, 1, 7, 2, -1.25, -4) ==
              QStringLiteral("3 0.5 0.001 4294967301 7 2 -1.25 -4"),
          "channel definition text");

    double level = 0;
    qx::TQXControlSource source;
    source.SetObjectDescription(QStringLiteral("Level meter"));
    source.RegisterProperty(QStringLiteral("Level"), QStringLiteral("Level"),
                            [&level](qx::TQXPropertyItem*, bool get, bool, qx::Variant& value) {
                                if (get) value = level; else level = value.ToDouble();
                                return qx::S_OK;
                            },
                            qx::varDouble, QString(), false, 0, 0, 0);
    QStringList traces;
    qx::TQXEventLink viewer;
    viewer.OnEvent = [&traces](qx::TQXEventLink*, std::uint32_t, qx::TQXEventClass, const QString& text) {
        traces << text;
    };
    viewer.SetEventSource(qx::FDebugEventSource());
    qx::TQXPropertyHandle handle = 0;
    source.GetPropertyHandle(QStringLiteral("Level"), handle);
    source.SetPropertyValue(nullptr, handle, qx::Variant(0.75));
    viewer.SetEventSource(nullptr);
    Check(level == 0.75, "property write through the callback");
    Check(traces == QStringList{QStringList{"1", "---", "Level meter", "Level", "0.75"}.join(QChar(8))},
          "debug trace of the write");

    qx::TThermoErrorStates state = qx::tesHighViolation;
    const double t = qx::DoLinearization(qx::tctK, 0.0, state);
    Check(state == qx::tesOk && t == 0.0, "thermocouple linearization");

    return failures == 0 ? 0 : 1;
}
