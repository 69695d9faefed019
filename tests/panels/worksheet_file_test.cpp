#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
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
public:
    explicit TRecordingPanel(QWidget* parent = nullptr) : TKSMSSink(parent) { ++GLog.Alive; }
    ~TRecordingPanel() override { --GLog.Alive; }
    void Loaded() override { ++GLog.Loaded; }
    void LoadFinished() override
    {
        TKSMSSink::LoadFinished();
        GLog.Finished.append(objectName());
        GLog.LoadedAtFinish.push_back(GLog.Loaded);
    }
};

// A component a panel may own that is not a widget.
class TStreamTag : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
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
        RegisterStreamClass<TRecordingPanel>();
        RegisterStreamClass<TStreamTag>();
        RegisterStreamClass<TKSControlerPanelBase>();
    }
    void SetUp() override { GLog = {}; }

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

// Two pages: the first with panels a, b (holding panel n and tag a, named like panel a: the inside
// of a panel has its own names), c and controller panel k, stacked a, c, k, b; the second with a
// tiled background image and its own run-time colour.
TEST_F(WorksheetFile, ReadsBackWhatItWroteByteForByteAndFinishesOnlyAfterTheLastPanel)
{
    TKSPanelTabPage& p = AddPage("P");
    p.SetCaption("Furnace");
    p.SetShowGrid(false);
    TRecordingPanel& a = AddPanel(p, "a", {10, 19, 120, 61});
    a.SetCaption("Zone 1 °C");
    TRecordingPanel& b = AddPanel(p, "b", {200, 29, 150, 91});
    AddPanel(b, "n", {5, 15, 60, 40});
    (new TStreamTag(&b))->setObjectName("a");
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
    TKSPanelTabPage& q = AddPage("Q");
    AddPanel(q, "d", {30, 30, 30, 30});
    QImage image(2, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.setPixel(1, 2, qRgb(0, 0, 255));
    q.SetBackgroundImage(QPixmap::fromImage(image));
    q.SetBackgroundPaintStyle(bipsTile);
    q.SetRuntimeColor(clInfoBk);

    const QByteArray written = WriteWorksheet(Pages());
    FPages.clear();
    ASSERT_EQ(GLog.Alive, 0);
    FPages = ReadWorksheet(written, "sheet.qxw");
    EXPECT_EQ(WriteWorksheet(Pages()), written);
    EXPECT_EQ(written.count("BackgroundImage"), 1) << "only a page with an image writes one";

    ASSERT_EQ(FPages.size(), 2U);
    const std::vector<TKSMSSink*> onPage = GetPagePanels(*FPages[0]);  // not n, not k
    ASSERT_EQ(onPage.size(), 3U);
    EXPECT_EQ(onPage[2]->objectName(), "b");
    EXPECT_EQ(FPages[0]->GetCaption(), "Furnace");
    EXPECT_FALSE(FPages[0]->GetShowGrid());
    EXPECT_EQ(FPages[1]->GetBackgroundImage().toImage(), image);
    EXPECT_EQ(FPages[1]->GetBackgroundPaintStyle(), bipsTile);
    EXPECT_EQ(FPages[1]->GetRuntimeColor(), clInfoBk);
    auto* readA = FPages[0]->findChild<TRecordingPanel*>("a");
    ASSERT_NE(readA, nullptr);
    EXPECT_EQ(readA->geometry(), QRect(10, 19, 120, 61));
    EXPECT_EQ(readA->GetCaption(), "Zone 1 °C");
    EXPECT_NE(FPages[0]->findChild<TStreamTag*>("a"), nullptr);
    auto* readK = FPages[0]->findChild<TKSControlerPanelBase*>("k");
    ASSERT_NE(readK, nullptr) << "a controller panel on a page";
    EXPECT_EQ(readK->geometry(), QRect(400, 10, 80, 50));
    EXPECT_EQ(readK->GetCaption(), "Stirrer");
    EXPECT_EQ(readK->GetColor(), clYellow);
    EXPECT_TRUE(readK->GetIsPinned());
    EXPECT_FALSE(readK->GetEnableRunTimePropPage());
    EXPECT_EQ(readK->GetVersion(), "2.1");

    // Once each, in stacking order, a holder before what it holds, and only when all five were read.
    EXPECT_EQ(GLog.Finished, QStringList({"a", "c", "b", "n", "d"}));
    EXPECT_EQ(GLog.LoadedAtFinish, std::vector<int>(5, 5));
}

TEST_F(WorksheetFile, WritingRefusesWhatCouldNotBeReadBack)
{
    struct Row {
        std::function<void(WorksheetFile&)> build;
        QString message;
    };
    const Row rows[] = {
        {[](WorksheetFile& f) {
             f.AddPage("P");
             AddPanel(f.AddPage("Q"), "P", {0, 0, 40, 40});
         },
         R"(page "Q", Component "P" (TRecordingPanel): the name "P" is used twice in the worksheet)"},
        {[](WorksheetFile& f) { f.AddPage(""); }, R"(Component "" (TKSPanelTabPage): the name is empty)"},
        {[](WorksheetFile& f) { (new TKSMSSink(&f.AddPage("P")))->setObjectName("x"); },
         R"(page "P", Component "x" (TKSMSSink): class TKSMSSink is not registered for streaming)"},
        {[](WorksheetFile& f) { (new TUnlistedControler(&f.AddPage("P")))->setObjectName("x"); },
         R"(page "P", Component "x" (TUnlistedControler): class TUnlistedControler is not registered for streaming)"},
    };
    for (const Row& row : rows) {
        FPages.clear();
        row.build(*this);
        EXPECT_THAT([&] { (void)WriteWorksheet(Pages()); },
                    ::testing::ThrowsMessage<EStreamError>(::testing::StrEq(row.message.toStdString())));
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
    const QString q = R"("class": "TKSPanelTabPage", "name": "Q")";
    const QString image = R"(sheet.qxw, Component "Q" (TKSPanelTabPage), defined property "BackgroundImage": )";
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
        {Sheet("", q + R"(, "tabs": 1)"), R"(sheet.qxw, page 2: unknown entry "tabs")"},
        {Sheet("", R"("class": "TKSPanelTabPage")"), R"(sheet.qxw, page 2: "name" is missing)"},
        {Sheet("", R"("class": "TRecordingPanel", "name": "Q")"),
         R"(sheet.qxw, Component "Q" (TRecordingPanel): not a worksheet page)"},
        {Sheet("", q + R"(, "defined": {"BackgroundImage": ["not base64 !"]})"), image + "the text is not base64"},
        {Sheet("", q + R"(, "defined": {"BackgroundImage": ["AAAA"]})"), image + "the data is not a PNG image"},
        {Sheet("7"), p + "panel 1: object expected but integer found"},
        {Sheet(Panel(R"(, "properties": {"Caption": 1})")), x + R"(, property "Caption": string expected but integer found)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x"})"), x + R"(: "geometry" is missing)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x", "geometry": [0, 0, 40]})"),
         x + R"(: "geometry" must be [left, top, width, height] in whole pixels)"},
        {Sheet(R"({"class": "TRecordingPanel", "name": "x", "geometry": [0, 0, -40, 40]})"),
         x + R"(: "geometry" [0, 0, -40, 40] is out of range (width and height from 0 to 16777215))"},
        {Sheet(Panel("", "P")), p + R"(panel 1: the name "P" is used twice in the worksheet)"},
        {Sheet(Panel("", "")), p + "panel 1: the name is empty"},
        {Sheet(Panel(R"(, "components": [{"class": "TStreamTag", "name": "t"}, {"class": "TStreamTag", "name": "t"}])")),
         x + R"(, component 2: the name "t" is used twice in Component "x" (TRecordingPanel))"},
        {Sheet(Panel(R"(, "components": [{"class": "TStreamTag", "name": "t", "geometry": [0, 0, 1, 1]}])")),
         x + R"(, Component "t" (TStreamTag): "geometry" given for a component that is not a widget)"},
    };
    for (const Row& row : rows) {
        GLog = {};
        EXPECT_THAT([&] { FPages = ReadWorksheet(row.text, "sheet.qxw"); },
                    ::testing::ThrowsMessage<EStreamError>(::testing::StrEq(row.message.toStdString())));
        EXPECT_EQ(GLog.Alive, 0) << row.message.toStdString();
        EXPECT_TRUE(GLog.Finished.isEmpty()) << row.message.toStdString();
    }
    EXPECT_THROW((void)ReadWorksheet(Sheet(R"({"class": "TNoSuchPanel", "name": "x"})"), "s"), EClassNotFound);
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
    EXPECT_THAT([&] { FPages = LoadWorksheetFile(missing); },
                ::testing::ThrowsMessage<EStreamError>(::testing::StartsWith(("Cannot read " + missing + ": ").toStdString())));
}

}  // namespace

#include "worksheet_file_test.moc"
