#include "apps/qxsheet/console_demo.h"

#include <QStringList>
#include <memory>

#include "apps/qxsheet/demo_sources.h"
#include "apps/qxsheet/thermocouple_demo.h"
#include "apps/qxsheet/trace_format.h"
#include "qxbase/control/debug_event_source.h"
#include "qxbase/control/event_link.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/measure/shortdef_text.h"

namespace qxsheet {
namespace {

void Section(QTextStream& out, const QString& title)
{
    out << Qt::endl << "== " << title << " ==" << Qt::endl;
}

// Writes one channel definition as text, reads it back and shows every field.
void ShowChannelDefinition(QTextStream& out)
{
    Section(out, "Channel definition as text");
    qx::TRVShortdef def;
    def.ChannelNo = 3;
    def.XStart = 0.5;
    def.XEnd = 1e-3;
    def.FirstSample = (std::uint64_t{1} << 32) + 5;
    def.Flags = qx::TQXMSChannelFlags{qx::msexArrayData, qx::msexTimeData, qx::msexADChannel}.Bits();
    def.YMin = 2;
    def.YMax = -1.25;
    def.Color = -4;
    const QString text = qx::CreateShortDef(def);
    out << "written: " << text << Qt::endl;

    qx::TRVShortdef back;
    qx::ParseShortItemDef(text, back);
    out << "read:    ChannelNo=" << back.ChannelNo << " XStart=" << qx::FloatToStr(back.XStart)
        << " XEnd=" << qx::FloatToStr(back.XEnd) << " FirstSample=" << back.FirstSample
        << " Flags=" << back.Flags << " YMin=" << qx::FloatToStr(back.YMin)
        << " YMax=" << qx::FloatToStr(back.YMax) << " Color=" << back.Color << Qt::endl;
    out << "same fields after the round trip: " << (back == def ? "yes" : "NO") << Qt::endl;

    try {
        qx::ParseShortItemDef(QStringLiteral("3 0.5 oops 5 7 2 -1.25 -4"), back);
    } catch (const qx::EConvertError& e) {
        out << "a damaged definition is refused: " << e.Message() << Qt::endl;
    }
}

}  // namespace

int RunConsoleDemo(QTextStream& out)
{
    out << "qxsheet - the qxbase demo host (console walk-through of the bus and the channel model)"
        << Qt::endl;

    Section(out, "Debug viewer");
    qx::TQXEventLink viewer;
    viewer.OnEvent = [&out](qx::TQXEventLink*, std::uint32_t, qx::TQXEventClass eventClass,
                            const QString& text) {
        if (eventClass == qx::qxecDebugClientMessage) out << "  trace  " << FormatTraceLine(text) << Qt::endl;
    };
    out << "DoDebug before the viewer is attached: " << (qx::DoDebug ? "on" : "off") << Qt::endl;
    viewer.SetEventSource(qx::FDebugEventSource());
    out << "DoDebug after:                         " << (qx::DoDebug ? "on" : "off") << Qt::endl;

    Section(out, "Two control sources");
    auto thermometer = std::make_unique<DemoThermometer>(QStringLiteral("Thermometer 1"));
    DemoSwitch heaterSwitch(QStringLiteral("Heater switch"));
    for (qx::TQXControlSource* source : {static_cast<qx::TQXControlSource*>(thermometer.get()),
                                         static_cast<qx::TQXControlSource*>(&heaterSwitch)}) {
        qx::Variant names;
        source->GetPropertyList(names);
        QStringList list;
        for (int i = names.ArrayLowBound(); i <= names.ArrayHighBound(); ++i)
            list << names.ArrayElement(i).ToString();
        out << source->GetObjectDescription() << ": properties " << list.join(QStringLiteral(", "))
            << Qt::endl;
    }
    try {
        thermometer->RegisterProperty(QStringLiteral("Again"), QStringLiteral("Temperature"), {},
                                      qx::varDouble, {}, false, 0, 0, 0);
    } catch (const qx::Exception& e) {
        out << "registering a name twice is refused: " << e.Message() << Qt::endl;
    }

    Section(out, "A display listens to the thermometer");
    qx::TQXEventLink display;
    display.OnValueUpdated = [&out, &thermometer](qx::TQXEventLink*, std::uint32_t handle) {
        QString name;
        thermometer->GetPropertyNameFromHandle(handle, name);
        out << "  display  " << name << " = " << PropertyValueText(*thermometer, handle) << Qt::endl;
    };
    display.OnSourceDestroyed = [&out](qx::TQXEventLink* link) {
        out << "  display  its source is being destroyed; the link lets go" << Qt::endl;
        link->SetEventSource(nullptr);
    };
    display.SetEventSource(thermometer.get());

    Section(out, "Writing values");
    qx::TQXPropertyHandle handle = 0;
    thermometer->GetPropertyHandle(QStringLiteral("Alarm"), handle);
    thermometer->SetPropertyValue(&heaterSwitch, handle, qx::Variant(true));
    thermometer->GetPropertyHandle(QStringLiteral("Unit"), handle);
    thermometer->SetPropertyValue(&heaterSwitch, handle, qx::Variant(std::int32_t{1}));
    thermometer->GetPropertyHandle(QStringLiteral("Temperature"), handle);
    thermometer->SetPropertyValue(nullptr, handle, qx::Variant(87.5));
    heaterSwitch.GetPropertyHandle(QStringLiteral("State"), handle);
    heaterSwitch.SetPropertyValue(thermometer.get(), handle, qx::Variant(std::int32_t{0}));

    Section(out, "Events");
    thermometer->FireOverTemperature();
    thermometer->EventFire(0, qx::qxecErrorWarningLevel, QStringLiteral("sensor cable loose"));
    thermometer->EventFireAllPropertiesUpdated();

    Section(out, "Destroying the thermometer");
    thermometer.reset();
    out << "display still attached: " << (display.GetEventSource() ? "yes" : "no") << Qt::endl;

    viewer.SetEventSource(nullptr);
    out << "DoDebug after the viewer is detached: " << (qx::DoDebug ? "on" : "off") << Qt::endl;

    ShowChannelDefinition(out);
    ShowThermocouples(out);
    return 0;
}

}  // namespace qxsheet
