#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QtTest/QTest>
#include <functional>

#include "qxbase/config/ad_extended_property_page.h"
#include "qxbase/config/dialog_controls.h"
#include "qxbase/config/line_recorder_confirm_dialog.h"
#include "qxbase/config/pad_search_result_dialog.h"
#include "qxbase/config/simulated_ad_settings.h"
#include "qxbase/panels/dialog_background.h"
#include "qxbase/panels/smart_edit.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

void ShowAndWait(QWidget& w)
{
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
}

}  // namespace

// Only the user's own edits and choices mark a setting; code that fills the page marks nothing,
// and neither do plain Qt controls nor typing into the multiscan edit.
TEST(ADExtendedPropertyPage, ChangedSetFollowsTheUser)
{
    TADExtendedPropertyPage page;
    page.ResolutionComboBox()->addItems({"12 bit", "16 bit"});
    page.ExternalClockDivEdit()->setText("1");
    ShowAndWait(page);
    EXPECT_EQ(page.GetBackground()->GetCaption(), "   A/D extended properties");
    EXPECT_EQ(page.LabelOf(page.DMAUsageEdit())->text(), "ExDiv");
    EXPECT_TRUE(page.GetChanged().Empty());

    QTest::keyClicks(page.EMultiscancount(), "7");
    EXPECT_TRUE(page.GetChanged().Empty());
    QTest::mouseClick(page.UDMultiscancount()->GetUpButton(), Qt::LeftButton);
    EXPECT_EQ(page.GetChanged(), TADChangedSet{adsMultiscanCount});
    EXPECT_EQ(page.EMultiscancount()->text(), "8");  // the arrows step from the typed "07"
    QTest::keyClicks(page.ExternalClockDivEdit(), "2");
    QTest::keyClick(page.ResolutionComboBox(), Qt::Key_Down);
    EXPECT_EQ(page.GetChanged(), (TADChangedSet{adsMultiscanCount, adsExternalClockDiv, adsResolution}));

    QComboBox plainCombo;
    QLineEdit plainEdit;
    TComboBox untagged, farTag;
    SetControlTag(&plainCombo, adsEncoding);
    SetControlTag(&plainEdit, adsBufferCount);
    SetControlTag(&farTag, 40);
    for (QObject* sender : std::initializer_list<QObject*>{&plainCombo, &plainEdit, &untagged, &farTag, nullptr})
        page.SenderChanged(sender);
    bool allow = false;
    page.UDMultiscancountChanging(page.EncodingComboBox(), allow);
    EXPECT_TRUE(allow);
    EXPECT_EQ(page.GetChanged(), (TADChangedSet{adsMultiscanCount, adsExternalClockDiv, adsResolution}));
}

TEST(ADExtendedPropertyPage, CancelClearsTheTwelveBitsOkKeepsThem)
{
    const TADChangedSet other = TADChangedSet::FromBits(1u << 30);
    struct Row {
        const char* Name;
        std::function<void(TADExtendedPropertyPage&)> Close;
        int Result;
        bool Kept;
    } rows[] = {
        {"Ok", [](auto& p) { QTest::mouseClick(p.OkButton(), Qt::LeftButton); }, 1, true},
        {"Enter", [](auto& p) { QTest::keyClick(p.ResolutionComboBox(), Qt::Key_Return); }, 1, true},
        {"Cancel", [](auto& p) { QTest::mouseClick(p.CancelButton(), Qt::LeftButton); }, 2, false},
        {"Escape", [](auto& p) { QTest::keyClick(p.ExternalClockDivEdit(), Qt::Key_Escape); }, 2, false},
        {"close icon", [](auto& p) { QTest::mouseClick(p.GetBackground()->GetCloseButton(), Qt::LeftButton); }, 2, false},
    };
    for (const Row& row : rows) {
        TADExtendedPropertyPage page;
        page.CutOffFilterComboBox()->addItems({"Off", "10 Hz"});
        page.SetChanged(other);
        ShowAndWait(page);
        QTest::mouseClick(page.UDMultiscancount()->GetDownButton(), Qt::LeftButton);
        QTest::keyClicks(page.BufferCountEdit(), "4");
        QTest::keyClick(page.CutOffFilterComboBox(), Qt::Key_Down);
        const TADChangedSet touched{adsMultiscanCount, adsBufferCount, adsCutOffFilter};
        row.Close(page);
        EXPECT_FALSE(page.isVisible()) << row.Name;
        EXPECT_EQ(page.result(), row.Result) << row.Name;
        EXPECT_EQ(page.GetChanged(), row.Kept ? touched + other : other) << row.Name;
    }
}

TEST(PadSearchResult, ADisabledOkCannotCloseTheForm)
{
    TFormPadSearchResult form;
    QSignalSpy finished(&form, &QDialog::finished);
    ShowAndWait(form);
    form.Disable();
    QTest::mouseClick(form.SBAllVisible(), Qt::LeftButton);
    form.SBAllVisible()->click();
    EXPECT_TRUE(form.isVisible());
    form.Enable();
    form.Enable();  // hooked once only
    QTest::mouseClick(form.SBAllVisible(), Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(form.result(), TFormPadSearchResult::mrOk);

    // The keys close whatever the button's state, so a running search can always be left.
    for (const auto& [key, result] : {std::pair{Qt::Key_Enter, 1}, std::pair{Qt::Key_Escape, 2}}) {
        form.Disable();
        ShowAndWait(form);
        QTest::keyClick(form.Memo1(), key);
        EXPECT_FALSE(form.isVisible()) << key;
        EXPECT_EQ(form.result(), result) << key;
    }
}

TEST(LineRecorderConfirmDlg, YesIsOkEverythingElseCancels)
{
    struct Row {
        const char* Name;
        std::function<void(TLineRecorderConfirmDlg&)> Close;
        int Result;
    } rows[] = {
        {"Yes", [](auto& d) { QTest::mouseClick(d.OkButton(), Qt::LeftButton); }, 1},
        {"No", [](auto& d) { QTest::mouseClick(d.CancelButton(), Qt::LeftButton); }, 2},
        {"image", [](auto& d) { QTest::mouseClick(d.Image1(), Qt::LeftButton); }, 2},
        {"close icon", [](auto& d) { QTest::mouseClick(d.GetBackground()->GetCloseButton(), Qt::LeftButton); }, 2},
    };
    for (const Row& row : rows) {
        TLineRecorderConfirmDlg dialog;
        EXPECT_EQ(dialog.GetBackground()->GetCaption(), "Default Delete Dialog");
        ShowAndWait(dialog);
        EXPECT_EQ(dialog.windowTitle(), "   Confirm");
        EXPECT_EQ(dialog.GetBackground()->GetCaption(), "   Confirm");
        EXPECT_EQ(dialog.OkButton()->text(), "Yes");
        row.Close(dialog);
        EXPECT_FALSE(dialog.isVisible()) << row.Name;
        EXPECT_EQ(dialog.result(), row.Result) << row.Name;
    }
}

// The page as the simulated converter fills it: a divider that is no number is not applied, and
// only what the user touched reaches the source.
TEST(SimulatedADSettings, OnlyTouchedSettingsReachTheSource)
{
    TADExtendedPropertyPage page;
    FillADExtendedPage(page, {.Resolution = 10, .CutOffFrequency = 100, .ExternalClockDiv = 2});
    EXPECT_EQ(page.ResolutionComboBox()->currentText(), "10 bit");  // not in the list: added
    EXPECT_FALSE(page.EncodingComboBox()->isEnabled());
    ShowAndWait(page);
    QTest::keyClicks(page.ExternalClockDivEdit(), "x");
    QTest::keyClick(page.ResolutionComboBox(), Qt::Key_Home);
    TQXADExtendedSettings read;
    EXPECT_EQ(ReadADExtendedPage(page, read), TADChangedSet{adsResolution});
    EXPECT_EQ(read, (TQXADExtendedSettings{.Resolution = 0, .CutOffFrequency = 100, .ExternalClockDiv = 1}));

    TKSSimulatedSource source;
    source.SetADResolution(12);
    for (const bool ok : {false, true}) {
        QTimer::singleShot(0, [ok] {
            auto* shown = qobject_cast<TADExtendedPropertyPage*>(QApplication::activeModalWidget());
            ASSERT_NE(shown, nullptr);
            EXPECT_TRUE(shown->windowTitle().startsWith("Properties of "));
            QTest::keyClick(shown->CutOffFilterComboBox(), Qt::Key_End);  // 10 kHz
            QTest::keyClick(shown, ok ? Qt::Key_Return : Qt::Key_Escape);
        });
        EXPECT_EQ(EditADExtendedSettings(source, nullptr), ok ? TADChangedSet{adsCutOffFilter} : TADChangedSet{});
        EXPECT_EQ(source.GetADCutOffFrequency(), ok ? 10000 : 0);
        EXPECT_EQ(source.GetADResolution(), 12);
    }
}
