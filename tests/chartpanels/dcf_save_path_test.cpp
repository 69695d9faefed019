#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "qxbase/chartpanels/dcf_save_path.h"
#include "qxbase/framework/host_services.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

struct DcfSavePath : ::testing::Test {
    QTemporaryDir Dir;
    QString Name = Dir.filePath("run");
    const QDateTime Now{QDate(2026, 11, 25), QTime(14, 30, 5)};
    int Dialogs = 0, Questions = 0;
    int Answer = 7;          // the message box's button, No until a test says otherwise
    QString Chosen;          // what the dialog returns; empty: cancelled
    TQXDcfFileNameDialog Dialog = [this](QString& fileName) {
        ++Dialogs;
        fileName = Chosen.isEmpty() ? "garbage" : Chosen;  // a cancel must not leak this
        return !Chosen.isEmpty();
    };

    void SetUp() override
    {
        HostServices().MessageBox = [this](QWidget*, const QString&, const QString&, int buttons) {
            EXPECT_EQ(buttons, 4);
            ++Questions;
            return Answer;
        };
    }
    void TearDown() override { RestoreHostServices(); }
    void Touch(const QString& path) { QFile f(path); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); }
    QString Path(THVKSaveMethod method) { return GetDcfSavePath(method, Name, Now, Dialog); }
};

}  // namespace

TEST_F(DcfSavePath, ShowDialogTakesTheChosenNameOrNothing)
{
    const QString old = Name;
    EXPECT_EQ(Path(smShowDialog), "");
    EXPECT_EQ(Name, old);
    Chosen = Dir.filePath("picked");
    EXPECT_EQ(Path(smShowDialog), Chosen + ".dcf");
    EXPECT_EQ(Name, Chosen);
    EXPECT_EQ(Dialogs, 2);
}

TEST_F(DcfSavePath, CreateNameStampsAndNeverReplaces)
{
    const QString stamped = Name + "_20261125_143005";
    EXPECT_EQ(Path(smCreateName), stamped + ".dcf");
    Touch(stamped + ".dcf");
    Touch(stamped + "_2.dcf");
    EXPECT_EQ(Path(smCreateName), stamped + "_3.dcf");
    EXPECT_EQ(Dialogs + Questions, 0);
}

TEST_F(DcfSavePath, UseNameAsksOnlyWithTheWarningAndOnlyForAnExistingFile)
{
    EXPECT_EQ(Path(smUseNameWithOverwriteWarning), Name + ".dcf");
    Touch(Name + ".dcf");
    EXPECT_EQ(Path(smUseName), Name + ".dcf");
    EXPECT_EQ(Questions, 0);
    EXPECT_EQ(Path(smUseNameWithOverwriteWarning), "");
    Answer = 6;
    EXPECT_EQ(Path(smUseNameWithOverwriteWarning), Name + ".dcf");
    EXPECT_EQ(Questions, 2);
    Name += ".DCF";  // a name given with its extension keeps it
    EXPECT_EQ(Path(smUseName), Name);
}

TEST_F(DcfSavePath, EmptyNameFallsBackToTheDialog)
{
    for (THVKSaveMethod m : {smCreateName, smUseName, smUseNameWithOverwriteWarning}) {
        Name.clear();
        Chosen.clear();
        EXPECT_EQ(Path(m), "") << m;
        EXPECT_EQ(Name, "");
        Chosen = Dir.filePath("picked");
        EXPECT_EQ(Path(m), m == smCreateName ? Chosen + "_20261125_143005.dcf" : Chosen + ".dcf") << m;
        EXPECT_EQ(Name, Chosen);
    }
    EXPECT_EQ(Questions, 0);
    EXPECT_EQ(GetDcfSavePath(smShowDialog, Name, Now, nullptr), "");
}
