#include <gtest/gtest.h>

#include <QComboBox>
#include <QTest>
#include <QTimer>

#include "qxbase/chartpanels/recorder_panel.h"
#include "qxbase/chartpanels/scope_panel.h"
#include "qxbase/config/check_tree_view.h"
#include "qxbase/config/panel_property_page.h"
#include "qxbase/config/property_page_handler.h"
#include "qxbase/panels/histo_ui.h"
#include "qxbase/framework/host_services.h"
#include "qxbase/panels/property_page_opener.h"
#include "qxbase/panels/property_value_list.h"
#include "qxbase/panels/smart_edit.h"
#include "qxbase/panels/source_control_client.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

// A page with a simulated source, a recorder on its channels 0 and 2, and a client bound to the
// recorder's "CursorDecimals".
struct TSheet {
    TSheet()
    {
        Page.setObjectName("Page");
        Source = new TKSSimulatedSource(&Page);
        Source->setObjectName("Sim");
        Other = new TKSSimulatedSource(&Page);
        Other->setObjectName("Other");
        Other->SetObjectDescription("Other source");
        Other->SetWaveformLines({"sine 1 1 0 0"});
        Recorder = new TKSRecorderPanel(&Page);
        Recorder->setObjectName("Rec");
        Recorder->SetChannels("0 2");
        Recorder->SetSourceName("Sim");
        Client = new TKSSourceControlClient(&Page);
        Client->setObjectName("Client");
        Client->ReadControlSourceClientEx({"[Listitems]", "Len=1", "listitem.0.FPanelName=Rec",
                                           "listitem.0.FPropertyName=CursorDecimals", "listitem.0.FDataType=0",
                                           "listitem.0.vartypeinfo=3", "listitem.0.FActiveValue=7",
                                           "listitem.0.FPassiveValue=1"});
        Client->InstallControlSourceConnections();
    }
    TQXPropertyHandle Handle(const QString& Name) const
    {
        TQXPropertyHandle handle = 0;
        Recorder->GetPropertyHandle(Name, handle);
        return handle;
    }
    Variant BoundValue() const { return Client->GetPropInputList().front()->FActualValue; }

    QWidget Page;
    TKSSimulatedSource* Source = nullptr;
    TKSSimulatedSource* Other = nullptr;
    TKSRecorderPanel* Recorder = nullptr;
    TKSSourceControlClient* Client = nullptr;
};

}  // namespace

TEST(PanelPropertyPage, EditsActAtOnceAndCancelRestoresThem)
{
    TSheet sheet;
    TKSPanelPropertyPage page(*sheet.Recorder);
    EXPECT_EQ(page.windowTitle(), "Properties of Recorder");
    ASSERT_NE(page.GetPicker(), nullptr);
    EXPECT_EQ(page.GetSelector(), nullptr);

    // Typed into the smart edit: the recorder changes and the client bound to it follows.
    auto* decimals = qobject_cast<THVKSmartEdit*>(page.GetValueList()->GetEditor(sheet.Handle("CursorDecimals")));
    ASSERT_NE(decimals, nullptr);
    decimals->setFocus();
    decimals->selectAll();
    QTest::keyClicks(decimals, "5");
    QTest::keyClick(decimals, Qt::Key_Return);
    EXPECT_EQ(sheet.Recorder->GetCursorDecimals(), 5);
    EXPECT_EQ(sheet.BoundValue().ToInteger(), 5);
    auto* legend = qobject_cast<QComboBox*>(page.GetValueList()->GetEditor(sheet.Handle("LegendPosition")));
    ASSERT_NE(legend, nullptr);
    ASSERT_TRUE(page.GetValueList()->WriteValue(sheet.Handle("LegendPosition"), Variant(std::int32_t{1})));
    EXPECT_EQ(legend->currentText(), "Vertical");
    // Commands are actions, not values: not listed.
    EXPECT_EQ(page.GetValueList()->GetEditor(sheet.Handle("SaveBuffer")), nullptr);

    // The picker moves the recorder to another source and changes its channels.
    QComboBox* sources = page.GetPicker()->GetSourceCombo();
    sources->setCurrentIndex(sources->findText("Other source"));
    emit sources->activated(sources->currentIndex());
    EXPECT_EQ(sheet.Recorder->GetMeasureSource(), sheet.Other);
    page.GetPicker()->GetTreeView()->topLevelItem(0)->setCheckState(0, Qt::Checked);
    EXPECT_EQ(sheet.Recorder->GetChart().GetCurveCount(), 1);

    page.reject();
    EXPECT_EQ(sheet.Recorder->GetCursorDecimals(), 3);
    EXPECT_EQ(sheet.BoundValue().ToInteger(), 3);
    EXPECT_EQ(sheet.Recorder->GetLegendPosition(), lpHorizontal);
    EXPECT_EQ(sheet.Recorder->GetMeasureSource(), sheet.Source);
    EXPECT_EQ(sheet.Recorder->GetChannels(), "0 2");
    EXPECT_EQ(sheet.Recorder->GetChart().GetCurveCount(), 2);
}

// A smaller buffer pulls the pre-trigger down with it; Cancel puts both back.
TEST(PanelPropertyPage, CancelRestoresWhatAnEditChangedOnTheSide)
{
    TSheet sheet;
    auto* scope = new TKSScopePanel(&sheet.Page);
    const std::int32_t pre = scope->GetPreTrigger();
    const std::int32_t size = scope->GetTriggerBufferSize();
    TKSPanelPropertyPage page(*scope);
    TQXPropertyHandle sizeHandle = 0;
    TQXPropertyHandle preHandle = 0;
    scope->GetPropertyHandle("TriggerBufferSize", sizeHandle);
    scope->GetPropertyHandle("PreTrigger", preHandle);
    ASSERT_TRUE(page.GetValueList()->WriteValue(sizeHandle, Variant(std::int32_t{3})));
    ASSERT_TRUE(page.GetValueList()->WriteValue(preHandle, Variant(std::int32_t{1})));
    page.reject();
    EXPECT_EQ(scope->GetPreTrigger(), pre);
    EXPECT_EQ(scope->GetTriggerBufferSize(), size);
}

TEST(PanelPropertyPage, OkKeepsEditsAndCancelRestoresBindings)
{
    TSheet sheet;
    {
        TKSPanelPropertyPage page(*sheet.Recorder);
        page.GetValueList()->WriteValue(sheet.Handle("ShowCursor"), Variant(true));
        page.accept();
    }
    EXPECT_TRUE(sheet.Recorder->GetShowCursor());

    {
        // The converter settings changed behind "A/D extended..." go back with Cancel too.
        TKSPanelPropertyPage page(*sheet.Source);
        ASSERT_NE(page.GetADButton(), nullptr);
        TQXADExtendedSettings coarse = sheet.Source->GetADExtendedSettings();
        coarse.Resolution = 4;
        sheet.Source->ApplyADExtendedSettings(coarse, ADExtendedSettingsAll);
        page.reject();
    }
    EXPECT_NE(sheet.Source->GetADExtendedSettings().Resolution, 4);

    TKSPanelPropertyPage page(*sheet.Client);
    ASSERT_NE(page.GetSelector(), nullptr);
    EXPECT_EQ(page.GetADButton(), nullptr);
    EXPECT_EQ(page.GetPicker(), nullptr);  // a client reads no data source
    sheet.Client->GetPropInputList().clear();
    page.reject();
    ASSERT_EQ(sheet.Client->GetPropInputList().size(), 1U);
    EXPECT_EQ(sheet.Client->GetPropInputList().front()->FPropertyName, "CursorDecimals");
    EXPECT_TRUE(sheet.Client->GetPropInputList().front()->IsResolved());
}

// "Properties" in the panel menu opens the installed page, in design mode only; the panel may go
// while the page is open.
TEST(PanelPropertyPage, TheMenuOpensThePageAndSurvivesThePanelGoing)
{
    TSheet sheet;
    InstallPanelPropertyPages();
    int opened = 0;
    QTimer::singleShot(0, [&] {
        auto* page = qobject_cast<TKSPanelPropertyPage*>(QApplication::activeModalWidget());
        ASSERT_NE(page, nullptr);
        ++opened;
        page->GetValueList()->WriteValue(sheet.Handle("CursorDecimals"), Variant(std::int32_t{6}));
        delete sheet.Recorder;
        page->reject();
    });
    sheet.Recorder->DoPropertyButtonItem();
    EXPECT_EQ(opened, 0);
    sheet.Recorder->SetDesignMode(true);
    sheet.Recorder->DoPropertyButtonItem();
    EXPECT_EQ(opened, 1);
    SetPropertyPageOpener(nullptr);
}
