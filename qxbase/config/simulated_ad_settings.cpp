#include "qxbase/config/simulated_ad_settings.h"

#include <QLabel>
#include <QLineEdit>

#include "qxbase/config/ad_extended_property_page.h"
#include "qxbase/config/dialog_controls.h"
#include "qxbase/framework/number_text.h"
#include "qxbase/panels/smart_edit.h"
#include "qxbase/resources/common_texts.h"
#include "qxbase/resources/config_texts.h"
#include "qxbase/sources/simulated_source.h"

namespace qx {

namespace {

constexpr TADChangedSet SimulatedSettings{adsResolution, adsCutOffFilter, adsExternalClockDiv};

// Selects the entry holding `Value`, adding one with `Text` when there is none.
void SelectValue(QComboBox& Combo, const QVariant& Value, const QString& Text)
{
    int index = Combo.findData(Value);
    if (index < 0) {
        Combo.addItem(Text, Value);
        index = Combo.count() - 1;
    }
    Combo.setCurrentIndex(index);
}

QString ResolutionText(int Bits)
{
    return Bits == 0 ? res::_rsADResolutionIdeal.Text() : res::_rsADResolutionBits.Text().arg(Bits);
}

QString CutOffText(double Hz)
{
    return Hz == 0 ? res::_rsADCutOffOff.Text() : res::_rsADCutOffHz.Text().arg(FloatToStr(Hz));
}

}  // namespace

void FillADExtendedPage(TADExtendedPropertyPage& Page, const TQXADExtendedSettings& Settings)
{
    TComboBox* resolution = Page.ResolutionComboBox();
    resolution->clear();
    for (int bits : {0, 8, 12, 16, 24}) resolution->addItem(ResolutionText(bits), bits);
    SelectValue(*resolution, Settings.Resolution, ResolutionText(Settings.Resolution));

    TComboBox* cutOff = Page.CutOffFilterComboBox();
    cutOff->clear();
    for (double hz : {0.0, 1.0, 10.0, 100.0, 1000.0, 10000.0}) cutOff->addItem(CutOffText(hz), hz);
    SelectValue(*cutOff, Settings.CutOffFrequency, CutOffText(Settings.CutOffFrequency));

    THVKSmartEdit* divider = Page.ExternalClockDivEdit();
    divider->SetKind(sekInteger);
    divider->SetValue(Variant(Settings.ExternalClockDiv));

    for (QWidget* unused : std::initializer_list<QWidget*>{
             Page.EncodingComboBox(), Page.DMAUsageEdit(), Page.BufferCountEdit(), Page.ClockSourceComboBox(),
             Page.TriggerModeCombo(), Page.TriggerScanCombo(), Page.ReTriggerCombo(), Page.ReTriggerFreqEdit(),
             Page.EMultiscancount(), Page.UDMultiscancount()})
        unused->setEnabled(false);
    Page.LabelOf(Page.DMAUsageEdit())->setText(res::_rsADDMAUsageLabel);
}

TADChangedSet ReadADExtendedPage(const TADExtendedPropertyPage& Page, TQXADExtendedSettings& Settings)
{
    TADChangedSet changed = Page.GetChanged() * SimulatedSettings;
    Settings.Resolution = Page.ResolutionComboBox()->currentData().toInt();
    Settings.CutOffFrequency = Page.CutOffFilterComboBox()->currentData().toDouble();
    Variant divider;
    if (Page.ExternalClockDivEdit()->GetValue(divider)) Settings.ExternalClockDiv = divider.ToInteger();
    else changed.Exclude(adsExternalClockDiv);
    return changed;
}

TADChangedSet EditADExtendedSettings(TKSSimulatedSource& Source, QWidget* Parent)
{
    TADExtendedPropertyPage page(Parent);
    page.setWindowTitle(res::_rsPropertyCaptionHead.Text() + Source.GetObjectDescription());
    TQXADExtendedSettings settings = Source.GetADExtendedSettings();
    FillADExtendedPage(page, settings);
    if (page.exec() != TADExtendedPropertyPage::mrOk) return {};
    const TADChangedSet changed = ReadADExtendedPage(page, settings);
    return Source.ApplyADExtendedSettings(settings, changed);
}

}  // namespace qx
