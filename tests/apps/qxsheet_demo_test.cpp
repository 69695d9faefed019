#include <gtest/gtest.h>

#include <QString>
#include <QTextStream>

#include "apps/qxsheet/console_demo.h"
#include "apps/qxsheet/trace_format.h"
#include "qxbase/control/control_source.h"

namespace {

const QChar kSep(8);

// The known kinds show in the console demo's output.
TEST(TraceFormat, UnknownKindsNumberTheirFields)
{
    EXPECT_EQ(qxsheet::FormatTraceLine(QStringList{"7", "a", "b"}.join(kSep)), "[7] 1=\"a\" 2=\"b\"");
    EXPECT_EQ(qxsheet::FormatTraceLine(QString()), "[]");
}

// The walk-through shows every kind of trace the bus writes, in the order the bus writes them,
// and leaves the debug switch as it found it.
TEST(ConsoleDemo, ShowsTheBusAndTheChannelModelAtWork)
{
    QString text;
    QTextStream out(&text);
    ASSERT_EQ(qxsheet::RunConsoleDemo(out), 0);
    out.flush();

    // A line for each step of the walk-through; what the library writes in between has its own tests.
    const QStringList expected = {
        "[1 property write] sender=\"Heater switch\" source=\"Thermometer 1\" property=\"Alarm active\" value=\"True\"",
        "display  Alarm = True",
        "display  Unit = °F",
        "[3 user event] source=\"Thermometer 1\" class=\"9\" event=\"Temperature above the limit\" text=\"87.5 degrees\"",
        "[5 error event] source=\"Thermometer 1\" class=\"0\" text=\"sensor cable loose\"",
        "[2 properties updated] source=\"Thermometer 1\"",
        "display  Temperature = 87.5",
        "its source is being destroyed",
        "DoDebug after the viewer is detached: off",
        "same fields after the round trip: yes",
        "a damaged definition is refused: 'oops' is not a valid floating point value",
        "type K  20.644 mV -> 499.980 degC (ok), exact 499.993 degC",
        "type B  14.000 mV -> 1835.739 degC (above the type's range), exact 1820.000 degC",
        "USB cold-junction sensor at 0.25 V: 25.00 degC, 298.16 K",
    };
    qsizetype from = 0;
    for (const QString& line : expected) {
        const qsizetype at = text.indexOf(line, from);
        ASSERT_GE(at, 0) << "missing or out of order: " << line.toStdString() << "\n" << text.toStdString();
        from = at + line.size();
    }
    EXPECT_FALSE(qx::DoDebug);
}

}  // namespace
