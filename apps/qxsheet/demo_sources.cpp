#include "apps/qxsheet/demo_sources.h"

#include <QStringList>

#include "qxbase/framework/number_text.h"

namespace qxsheet {
namespace {

enum : std::uint32_t { idTemperature = 1, idUnit, idAlarm };
constexpr std::uint32_t kOverTemperatureEvent = 1;

qx::Variant TextArray(const QStringList& texts)
{
    qx::Variant list = qx::Variant::CreateArray(0, static_cast<int>(texts.size()) - 1, qx::varOleStr);
    for (int i = 0; i < texts.size(); ++i) list.SetArrayElement(i, texts[i]);
    return list;
}

}  // namespace

DemoThermometer::DemoThermometer(const QString& description)
{
    SetObjectDescription(description);
    SetControlSourceCapabilities({qx::qxcscSupportsProperties});
    auto getSet = [this](qx::TQXPropertyItem* item, bool get, bool, qx::Variant& value) {
        return GetSet(item, get, value);
    };
    RegisterProperty(QStringLiteral("Temperature in degrees"), QStringLiteral("Temperature"), getSet,
                     qx::varDouble, QStringLiteral("degrees"), true, -50.0, 150.0, idTemperature);
    RegisterProperty(QStringLiteral("Temperature unit"), QStringLiteral("Unit"), getSet, qx::varInteger,
                     TextArray({QStringLiteral("°C"), QStringLiteral("°F"), QStringLiteral("K")}), idUnit);
    RegisterProperty(QStringLiteral("Alarm active"), QStringLiteral("Alarm"), getSet, qx::varBoolean,
                     QString(), false, 0, 0, idAlarm);
    EventAdd(kOverTemperatureEvent, qx::qxecUserEvent, QStringLiteral("OverTemperature"),
             QStringLiteral("Temperature above the limit"));
}

qx::HRESULT DemoThermometer::GetSet(qx::TQXPropertyItem* item, bool get, qx::Variant& value)
{
    switch (item->FIdentifier) {
    case idTemperature:
        if (get) value = FTemperature; else FTemperature = value.ToDouble();
        break;
    case idUnit:
        if (get) value = qx::Variant(std::int32_t{FUnit}); else FUnit = value.ToInteger();
        break;
    case idAlarm:
        if (get) value = FAlarm; else FAlarm = value.ToBoolean();
        break;
    default:
        return qx::E_FAIL;
    }
    return qx::S_OK;
}

void DemoThermometer::FireOverTemperature()
{
    EventFire(kOverTemperatureEvent, qx::qxecUserEvent,
              qx::FloatToStr(FTemperature) + QStringLiteral(" degrees"));
}

DemoSwitch::DemoSwitch(const QString& description)
{
    SetObjectDescription(description);
    SetControlSourceCapabilities({qx::qxcscSupportsProperties});
    RegisterProperty(
        QStringLiteral("Switch state"), QStringLiteral("State"),
        [this](qx::TQXPropertyItem*, bool get, bool, qx::Variant& value) {
            if (get) value = qx::Variant(std::int32_t{FState}); else FState = value.ToInteger();
            return qx::S_OK;
        },
        qx::varInteger, TextArray({QStringLiteral("Off"), QStringLiteral("On")}), 0);
}

}  // namespace qxsheet
