#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "qxbase/panels/controler_panel_base.h"
#include "qxbase/panels/panel_base.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

// What the recording panels saw, over all of them.
struct TLoadLog {
    int Alive = 0;
    int Loaded = 0;
    QStringList Finished;              // names, in the order LoadFinished came
    std::vector<int> LoadedAtFinish;   // Loaded count when each LoadFinished came
};
static TLoadLog GLog;

class TRecordingPanel : public TKSMSSink {
    Q_OBJECT
    Q_PROPERTY(double Gain READ GetGain WRITE SetGain)

public:
    explicit TRecordingPanel(QWidget* parent = nullptr) : TKSMSSink(parent) { ++GLog.Alive; }
    ~TRecordingPanel() override { --GLog.Alive; }

    double GetGain() const { return FGain; }
    void SetGain(double Value) { FGain = Value; }

    void Loaded() override { ++GLog.Loaded; }
    void LoadFinished() override
    {
        TKSMSSink::LoadFinished();
        GLog.Finished.append(objectName());
        GLog.LoadedAtFinish.push_back(GLog.Loaded);
    }

private:
    double FGain = 1.0;
};

// A component a panel may own that is not a widget.
class TStreamTag : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Text READ GetText WRITE SetText)

public:
    explicit TStreamTag(QObject* parent = nullptr) : QObject(parent) {}
    QString GetText() const { return FText; }
    void SetText(const QString& Value) { FText = Value; }

private:
    QString FText;
};

// A controller panel class nobody registered for streaming.
class TUnlistedControler : public TKSControlerPanelBase {
    Q_OBJECT
public:
    using TKSControlerPanelBase::TKSControlerPanelBase;
};

namespace {

class WorksheetFile : public ::testing::Test {
public:
    static void SetUpTestSuite()
    {
        if (FindStreamClass(QStringLiteral("TRecordingPanel")) == nullptr) {
            RegisterStreamClass<TRecordingPanel>();
            RegisterStreamClass<TStreamTag>();
            RegisterStreamClass<TKSControlerPanelBase>();
        }
    }
    void SetUp() override { GLog = {}; }
    void TearDown() override { FPages.clear(); }

    TKSPanelTabPage& AddPage(const QString& name)
    {
        FPages.push_back(std::make_unique<TKSPanelTabPage>());
        FPages.back()->setObjectName(name);
        return *FPages.back();
    }
    static TRecordingPanel& AddPanel(QWidget& owner, const QString& name, const QRect& bounds)
    {
        auto* panel = new TRecordingPanel(&owner);
        panel->setObjectName(name);
        panel->setGeometry(bounds);
        return *panel;
    }
    std::vector<TKSPanelTabPage*> Pages() const
    {
        std::vector<TKSPanelTabPage*> pages;
        for (const auto& page : FPages) pages.push_back(page.get());
        return pages;
    }

    std::vector<std::unique_ptr<TKSPanelTabPage>> FPages;
};

QString Names(const std::vector<TKSMSSink*>& panels)
{
    QStringList names;
    for (const TKSMSSink* panel : panels) names.append(panel->objectName());
    return names.join(',');
}

// Two pages: the first with panels a, b (holding panel n and tag t), c and controller panel k,
// stacked a, c, k, b.
TEST_F(WorksheetFile, ReadsBackWhatItWroteByteForByteAndFinishesOnlyAfterTheLastPanel)
{
    TKSPanelTabPage& p = AddPage("P");
    p.SetCaption("Furnace");
    p.SetShowGrid(false);
    TRecordingPanel& a = AddPanel(p, "a", {10, 19, 120, 61});
    a.SetGain(0.1);
    a.SetCaption("Zone 1 °C");
    TRecordingPanel& b = AddPanel(p, "b", {200, 29, 150, 91});
    AddPanel(b, "n", {5, 15, 60, 40});
    (new TStreamTag(&b))->setObjectName("t");
    AddPanel(p, "c", {0, 0, 20, 25});  // below the minimum size: a file keeps it anyway
    auto* k = new TKSControlerPanelBase(&p);
    k->setObjectName("k");
    k->setGeometry(400, 10, 80, 50);
    k->SetCaption("Stirrer");
    k->SetColor(clYellow);
    k->SetIsPinned(true);
    k->SetEnableRunTimePropPage(false);
    k->SetVersion("2.1");
    b.raise();
    AddPanel(AddPage("Q"), "d", {30, 30, 30, 30});

    const QByteArray written = WriteWorksheet(Pages());
    FPages.clear();
    ASSERT_EQ(GLog.Alive, 0);
    FPages = ReadWorksheet(written, "sheet.qxw");
    EXPECT_EQ(WriteWorksheet(Pages()), written);

    ASSERT_EQ(FPages.size(), 2U);
    EXPECT_EQ(Names(GetPagePanels(*FPages[0])), "a,c,b");
    EXPECT_EQ(Names(GetAllPagePanels(*FPages[0])), "a,c,b,n");
    EXPECT_EQ(FPages[0]->GetCaption(), "Furnace");
    EXPECT_FALSE(FPages[0]->GetShowGrid());
    auto* readA = FPages[0]->findChild<TRecordingPanel*>("a");
    ASSERT_NE(readA, nullptr);
    EXPECT_EQ(readA->geometry(), QRect(10, 19, 120, 61));
    EXPECT_EQ(readA->GetGain(), 0.1);
    EXPECT_EQ(readA->GetCaption(), "Zone 1 °C");
    auto* readN = FPages[0]->findChild<TRecordingPanel*>("n");
    ASSERT_NE(readN, nullptr);
    EXPECT_EQ(readN->parent()->objectName(), "b");
    EXPECT_EQ(readN->geometry(), QRect(5, 15, 60, 40));
    EXPECT_NE(FPages[0]->findChild<TStreamTag*>("t"), nullptr);
    auto* readK = FPages[0]->findChild<TKSControlerPanelBase*>("k");
    ASSERT_NE(readK, nullptr) << "a controller panel on a page";
    EXPECT_EQ(readK->geometry(), QRect(400, 10, 80, 50));
    EXPECT_EQ(readK->GetCaption(), "Stirrer");
    EXPECT_EQ(readK->GetColor(), clYellow);
    EXPECT_TRUE(readK->GetIsPinned());
    EXPECT_FALSE(readK->GetEnableRunTimePropPage());
    EXPECT_EQ(readK->GetVersion(), "2.1");

    // Once each, a holder before what it holds, and only when all five were read.
    EXPECT_EQ(GLog.Finished, QStringList({"a", "c", "b", "n", "d"}));
    EXPECT_EQ(GLog.LoadedAtFinish, std::vector<int>(5, 5));
}

TEST_F(WorksheetFile, WritingRefusesWhatCouldNotBeReadBack)
{
    struct Row {
        const char* name;
        std::function<void(WorksheetFile&)> build;
        QString message;
    };
    const Row rows[] = {
        {"panel named like another page's panel",
         [](WorksheetFile& f) {
             AddPanel(f.AddPage("P"), "a", {0, 0, 40, 40});
             AddPanel(f.AddPage("Q"), "a", {0, 0, 40, 40});
         },
         R"(page "Q", Component "a" (TRecordingPanel): the name "a" is used twice in the worksheet)"},
        {"panel named like a page",
         [](WorksheetFile& f) { AddPanel(f.AddPage("P"), "P", {0, 0, 40, 40}); },
         R"(page "P", Component "P" (TRecordingPanel): the name "P" is used twice in the worksheet)"},
        {"unnamed page", [](WorksheetFile& f) { f.AddPage(""); },
         R"(Component "" (TKSPanelTabPage): the name is empty)"},
        {"panel of an unregistered class",
         [](WorksheetFile& f) { (new TKSMSSink(&f.AddPage("P")))->setObjectName("x"); },
         R"(page "P", Component "x" (TKSMSSink): class TKSMSSink is not registered for streaming)"},
        {"controller panel of an unregistered class",
         [](WorksheetFile& f) { (new TUnlistedControler(&f.AddPage("P")))->setObjectName("x"); },
         R"(page "P", Component "x" (TUnlistedControler): class TUnlistedControler is not registered for streaming)"},
    };
    for (const Row& row : rows) {
        FPages.clear();
        row.build(*this);
        try {
            (void)WriteWorksheet(Pages());
            ADD_FAILURE() << row.name << ": written";
        } catch (const EStreamError& e) {
            EXPECT_EQ(e.Message(), row.message) << row.name;
        }
    }
}

// A valid first page with two panels, one of them holding a panel, then page "Q" with `panels`.
QByteArray Sheet(const QString& panels, const QString& qPage = R"("class": "TKSPanelTabPage", "name": "Q")")
{
    return QStringLiteral(R"({"format": "qxbase worksheet", "version": 1, "pages": [
        {"class": "TKSPanelTabPage", "name": "P", "panels": [
            {"class": "TRecordingPanel", "name": "a", "geometry": [0, 0, 40, 40],
             "components": [{"class": "TRecordingPanel", "name": "n", "geometry": [0, 0, 30, 30]}]},
            {"class": "TRecordingPanel", "name": "b", "geometry": [50, 0, 40, 40]}]},
        {%1, "panels": [%2]}]})")
        .arg(qPage, panels)
        .toUtf8();
}

QByteArray Panel(const QString& more, const QString& name = "x")
{
    return QStringLiteral(R"({"class": "TRecordingPanel", "name": "%1", "geometry": [0, 0, 40, 40] %2})")
        .arg(name, more)
        .toUtf8();
}

TEST_F(WorksheetFile, ABadFileNamesThePlaceAndLeavesNothingBehind)
{
    struct Row {
        QByteArray text;
        QString message;
    };
    const QString p = R"(sheet.qxw, page "Q", )";
    const QString x = p + R"(Component "x" (TRecordingPanel))";
    const Row rows[] = {
        {"{\"format\": ", "sheet.qxw: not a JSON document (unterminated object at offset 11)"},
        {"[1]", "sheet.qxw: not a worksheet file (a list, not an object, at the top)"},
        {R"({"format": "qxbase sheet", "version": 1, "pages": []})",
         R"(sheet.qxw: not a worksheet file ("format" is not "qxbase worksheet"))"},
        {R"({"format": "qxbase worksheet", "version": 2, "pages": []})",
         "sheet.qxw: version 2 is not supported (this program reads version 1)"},
        {R"({"format": "qxbase worksheet", "version": 1})", R"(sheet.qxw: "pages" is missing)"},
        {R"({"format": "qxbase worksheet", "version": 1, "pages": [], "title": ""})",
         R"(sheet.qxw: unknown entry "title")"},
        {Sheet("", R"("class": "TKSPanelTabPage", "name": "Q", "tabs": 1)"), R"(sheet.qxw, page 2: unknown entry "tabs")"},
        {Sheet("", R"("class": "TKSPanelTabPage")"), R"(sheet.qxw, page 2: "name" is missing)"},
        {Sheet("", R"("class": "TRecordingPanel", "name": "Q")"),
         R"(sheet.qxw, Component "Q" (TRecordingPanel): not a worksheet page)"},
        {Sheet("", R"("class": "TKSPanelTabPage", "name": "Q", "properties": {"ShowGrid": 1})"),
         R"(sheet.qxw, Component "Q" (TKSPanelTabPage), property "ShowGrid": boolean expected but integer found)"},
        {Sheet("7"), p + "panel 1: object expected but integer found"},
        {Sheet(R"({"class": "TNoSuchPanel", "name": "x"})"), p + R"(Component "x": Class TNoSuchPanel not found)"},
        {Sheet(Panel(R"(, "properties": {"Gain": "high"})")), x + R"(, property "Gain": float expected but string found)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x"})"), x + R"(: "geometry" is missing)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x", "geometry": [0, 0, 40]})"),
         x + R"(: "geometry" must be [left, top, width, height] in whole pixels)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x", "geometry": [0, 0, -40, 40]})"),
         x + R"(: "geometry" [0, 0, -40, 40] is out of range (width and height from 0 to 16777215))"},
        {Sheet(Panel("", "a")), p + R"(panel 1: the name "a" is used twice in the worksheet)"},
        {Sheet(Panel("", "Q")), p + R"(panel 1: the name "Q" is used twice in the worksheet)"},
        {Sheet(Panel("", "")), p + "panel 1: the name is empty"},
        {Sheet(Panel(R"(, "components": [{"class": "TStreamTag", "name": "t"}, {"class": "TStreamTag", "name": "t"}])")),
         x + R"(, component 2: the name "t" is used twice in Component "x" (TRecordingPanel))"},
        {Sheet(Panel(R"(, "components": [{"class": "TStreamTag", "name": "t", "geometry": [0, 0, 1, 1]}])")),
         x + R"(, Component "t" (TStreamTag): "geometry" given for a component that is not a widget)"},
    };
    for (const Row& row : rows) {
        GLog = {};
        try {
            FPages = ReadWorksheet(row.text, "sheet.qxw");
            ADD_FAILURE() << "read: " << row.text.toStdString();
        } catch (const EStreamError& e) {
            EXPECT_EQ(e.Message(), row.message);
        }
        EXPECT_TRUE(FPages.empty());
        EXPECT_EQ(GLog.Alive, 0) << row.message.toStdString();
        EXPECT_TRUE(GLog.Finished.isEmpty()) << row.message.toStdString();
    }
    EXPECT_THROW((void)ReadWorksheet(Sheet(R"({"class": "TNoSuchPanel", "name": "x"})"), "s"), EClassNotFound);
}

TEST_F(WorksheetFile, NestedComponentsHaveTheirOwnNamespace)
{
    FPages = ReadWorksheet(Sheet(Panel(R"(, "components": [{"class": "TStreamTag", "name": "a"}])")), "s");
    EXPECT_EQ(FPages.size(), 2U);
}

TEST_F(WorksheetFile, FilesSaveWholeOrNotAtAll)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("sheet.qxw");
    AddPanel(AddPage("P"), "a", {0, 0, 40, 40});
    SaveWorksheetFile(path, Pages());
    const QByteArray saved = WriteWorksheet(Pages());

    AddPanel(*FPages[0], "a", {0, 0, 40, 40});
    EXPECT_THROW(SaveWorksheetFile(path, Pages()), EStreamError);
    FPages = LoadWorksheetFile(path);
    EXPECT_EQ(WriteWorksheet(Pages()), saved);

    const QString missing = dir.filePath("none/sheet.qxw");
    EXPECT_THROW(SaveWorksheetFile(missing, Pages()), EStreamError);
    try {
        FPages = LoadWorksheetFile(missing);
        ADD_FAILURE() << "loaded a missing file";
    } catch (const EStreamError& e) {
        EXPECT_TRUE(e.Message().startsWith("Cannot read " + missing + ": ")) << e.Message().toStdString();
    }
}

}  // namespace

#include "worksheet_file_test.moc"
