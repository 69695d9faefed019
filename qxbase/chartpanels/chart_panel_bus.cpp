#include <QMetaProperty>
#include <QPointer>

#include "qxbase/chartpanels/chart_panel.h"
#include "qxbase/control/control_types.h"
#include "qxbase/panels/histo_common.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/panels/panel_registry.h"
#include "qxbase/resources/chart_texts.h"

// The chart panels' properties on the bus. Each is backed by the Q_PROPERTY of the same name
// (so the worksheet file and the bus see one value) or by a pair of accessors.
namespace qx {
namespace {

constexpr std::uint32_t FirstIdentifier = 0x4300;

// An enumeration's ordinal from a bus value: the ordinal itself or one of the choice texts.
// -1 when it is neither.
int Ordinal(const Variant& Value, const QStringList& Choices)
{
    std::int32_t ordinal = -1;
    if (Value.VarType() == varOleStr) {
        const QString text = Value.ToString();
        bool number = false;
        ordinal = static_cast<std::int32_t>(Choices.indexOf(text));
        if (ordinal < 0)
            ordinal = text.toInt(&number);
        if (!number && !Choices.contains(text))
            return -1;
    } else {
        ordinal = Value.ToInteger();
    }
    return ordinal >= 0 && ordinal < Choices.size() ? ordinal : -1;
}

QStringList Choices(const Variant& List)
{
    QStringList texts;
    OleVariantToStringList(List, texts);
    return texts;
}

bool RunsCommand(const Variant& Value)
{
    const TVarType type = Value.VarType();
    return (IsIntegerVarType(type) && Value.ToInt64() == 0) ||
           (type == varOleStr && Value.ToString() == QLatin1String("True"));
}

}  // namespace

void TKSChartPanel::RegisterBusAccess(const QString& Description, const QString& Name, std::uint16_t DataType,
                                      const QString& TypeInfo, const QStringList& Choices,
                                      std::function<Variant()> Get, std::function<void(const Variant&)> Set)
{
    auto getSet = [this, Name, Get = std::move(Get), Set = std::move(Set)](TQXPropertyItem*, bool IsGet, bool,
                                                                           Variant& Value) {
        if (IsGet) {
            Value = Get();
            return S_OK;
        }
        const QString before = FBusWriting;
        FBusWriting = Name;
        // A listener told of a change the write caused may delete the panel.
        const QPointer<TKSChartPanel> self(this);
        try {
            Set(Value);
        } catch (...) {
            if (self)
                FBusWriting = before;
            throw;
        }
        if (self)
            FBusWriting = before;
        return S_OK;
    };
    const auto identifier = FirstIdentifier + static_cast<std::uint32_t>(GetPropertyCount());
    if (Choices.isEmpty())
        RegisterProperty(Description, Name, std::move(getSet), DataType, TypeInfo, false, 0.0, 0.0, identifier);
    else
        RegisterProperty(Description, Name, std::move(getSet), varQXEnumeration, EnumerationTexts(Choices), identifier);
}

void TKSChartPanel::RegisterBusProperty(const QString& Description, const char* Name, std::uint16_t DataType,
                                        const QString& TypeInfo, const QStringList& Choices)
{
    const QMetaProperty property = metaObject()->property(metaObject()->indexOfProperty(Name));
    Q_ASSERT(property.isValid());
    auto get = [this, property]() -> Variant {
        const QVariant value = property.read(this);
        switch (value.typeId()) {
        case QMetaType::Bool: return Variant(value.toBool());
        case QMetaType::Double: return Variant(value.toDouble());
        case QMetaType::QString: return Variant(value.toString());
        default: return Variant(static_cast<std::int32_t>(value.toInt()));
        }
    };
    auto set = [this, property, DataType, Choices](const Variant& Value) {
        QVariant value;
        if (!Choices.isEmpty()) {
            const int ordinal = Ordinal(Value, Choices);
            if (ordinal < 0)
                return;
            value = ordinal;
        } else if (DataType == varBoolean) {
            value = Value.ToBoolean();
        } else if (DataType == varDouble) {
            value = Value.ToDouble();
        } else if (DataType == varOleStr) {
            value = Value.ToString();
        } else {
            value = static_cast<int>(Value.ToInteger());
        }
        property.write(this, value);
    };
    RegisterBusAccess(Description, QLatin1String(Name), DataType, TypeInfo, Choices, std::move(get), std::move(set));
}

void TKSChartPanel::RegisterBusCommand(const QString& Description, const QString& Name, std::function<void()> Command)
{
    RegisterBusAccess(
        Description, Name, varQXEnumeration, QString(), {QStringLiteral("True"), QStringLiteral("Unknown")},
        [] { return Variant(std::int32_t{1}); },
        [Command = std::move(Command)](const Variant& Value) {
            if (RunsCommand(Value)) Command();
        });
}

void TKSChartPanel::ClearProperties()
{
    TKSMSSink::ClearProperties();
    const QString color = QStringLiteral("TColor");
    RegisterBusProperty(res::_rsPropLegendPosition, "LegendPosition", varInteger, {}, Choices(LegendPositionTexts()));
    RegisterBusProperty(res::_rsPropDisplayStyle, "DisplayStyle", varInteger, {}, Choices(DisplayStyleTexts()));
    RegisterBusProperty(res::_rsPropXAxisScale, "XAxisScale", varInteger, {}, Choices(XAxisScaleTexts()));
    RegisterBusProperty(res::_rsPropYAxisScale, "YAxisScale", varInteger, {}, Choices(YAxisScaleTexts()));
    RegisterBusProperty(res::_rsPropAutoScale, "AutoScale", varBoolean);
    RegisterBusProperty(res::_rsPropBandColor, "BandColor", varInteger, color);
    RegisterBusProperty(res::_rsPropBackgroundColor, "BackgroundColor", varInteger, color);
    RegisterBusProperty(res::_rsPropCursorPanelPosition, "CursorPanelPosition", varInteger, {},
                        Choices(CursorPanelPositionTexts()));
    RegisterBusProperty(res::_rsPropShowCursor, "ShowCursor", varBoolean);
    RegisterBusProperty(res::_rsPropSaveMethod, "SaveMethod", varInteger, {}, Choices(SaveMethodTexts()));
    RegisterBusProperty(res::_rsPropFileName, "FileName", varOleStr);
    RegisterBusProperty(res::_rsPropUseEngineeringUnits, "UseEngineeringUnits", varBoolean);
    RegisterBusProperty(res::_rsPropCursorDecimals, "CursorDecimals", varInteger);
    RegisterBusProperty(res::_rsPropXAxisMin, "XAxisMin", varDouble);
    RegisterBusProperty(res::_rsPropXAxisMax, "XAxisMax", varDouble);
    const auto allBands = [this](void (TKSChartPanel::*Setter)(int, double)) {
        return [this, Setter](const Variant& Value) {
            const double number = Value.ToDouble();
            for (int b = 0; b < GetChart().GetBandCount(); ++b) (this->*Setter)(b, number);
        };
    };
    RegisterBusAccess(res::_rsPropYAxisOffset, QStringLiteral("YAxisOffset"), varDouble, {}, {},
                      [this] { return Variant(GetYAxisOffset(0)); }, allBands(&TKSChartPanel::SetYAxisOffset));
    RegisterBusAccess(res::_rsPropYAxisScaleValue, QStringLiteral("YAxisScaleValue"), varDouble, {}, {},
                      [this] { return Variant(GetYAxisScaleValue(0)); },
                      allBands(&TKSChartPanel::SetYAxisScaleValue));
    RegisterBusProperty(res::_rsPropYAxisVisible, "YAxisVisible", varBoolean);
    RegisterBusAccess(res::_rsPropYAxisOffsetActiveBand, QStringLiteral("YAxisOffsetActiveBand"), varDouble, {},
                      {}, [this] { return Variant(GetYAxisOffset(GetActiveBand())); },
                      [this](const Variant& Value) { SetYAxisOffset(GetActiveBand(), Value.ToDouble()); });
    RegisterBusAccess(res::_rsPropYAxisScaleActiveBand, QStringLiteral("YAxisScaleActiveBand"), varDouble, {},
                      {}, [this] { return Variant(GetYAxisScaleValue(GetActiveBand())); },
                      [this](const Variant& Value) { SetYAxisScaleValue(GetActiveBand(), Value.ToDouble()); });
    RegisterBusCommand(res::_rsPropChangeXAxis, QStringLiteral("ChangeXAxis"), [this] { ChangeXAxis(); });
    RegisterBusCommand(res::_rsPropResetXAxis, QStringLiteral("ResetXAxis"), [this] { ResetXAxis(); });
    RegisterBusProperty(res::_rsPropActiveBand, "ActiveBand", varInteger);
    RegisterBusCommand(res::_rsActionCaptureScale, QStringLiteral("CaptureScale"), [this] { CaptureScale(); });
    RegisterBusCommand(res::_rsActionResetDisplay, QStringLiteral("ResetDisplay"), [this] { ResetDisplay(); });
    RegisterBusCommand(res::_rsActionSaveBuffer, QStringLiteral("SaveBuffer"), [this] { SaveBufferReporting(); });
}

}  // namespace qx
