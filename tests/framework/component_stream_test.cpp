#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QObject>
#include <QStringList>
#include <QWidget>
#include <limits>

#include "qxbase/framework/component_stream.h"
#include "qxbase/framework/exception.h"
#include "qxbase/framework/stream_registry.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using ::testing::HasSubstr;
using ::testing::Property;
using ::testing::Throws;

namespace {

int GLiving = 0;  // stream test objects alive, children included

class TCounted : public QObject {
    Q_OBJECT
public:
    explicit TCounted(QObject* parent = nullptr) : QObject(parent) { ++GLiving; }
    ~TCounted() override { --GLiving; }
};

// A component with stored properties of every kind and a binding-like defined property.
class TStreamGauge : public TCounted, public TStreamable {
    Q_OBJECT
    Q_PROPERTY(QString Caption MEMBER FCaption)
    Q_PROPERTY(int Count MEMBER FCount)
    Q_PROPERTY(qint64 Big MEMBER FBig)
    Q_PROPERTY(uint Color MEMBER FColor)
    Q_PROPERTY(double Gain READ GetGain WRITE SetGain)  // MEMBER would skip -0 as equal to 0
    Q_PROPERTY(QStringList Tags MEMBER FTags)
    Q_PROPERTY(TMode Mode MEMBER FMode)
    Q_PROPERTY(int Scratch MEMBER FScratch STORED false)
public:
    enum TMode : int { gmOff, gmSlow, gmFast };  // fixed type: the write test stores 9
    Q_ENUM(TMode)

    explicit TStreamGauge(QObject* parent = nullptr) : TCounted(parent) {}

    double GetGain() const { return FGain; }
    void SetGain(double value) { FGain = value; }

    void DefineProperties(TFiler& filer) override
    {
        FLoadingSeen = GetIsLoading();
        filer.DefineProperty(
            QStringLiteral("Bindings"),
            [this](TReader& reader) {
                reader.ReadListBegin();
                while (!reader.EndOfList()) {
                    FLines.append(reader.ReadString());
                    new TCounted(this);  // what a reader may build on the way; owned by the gauge
                }
                reader.ReadListEnd();
                FLimit = reader.ReadFloat();
            },
            [this](TWriter& writer) {
                writer.WriteListBegin();
                for (const QString& line : FLines)
                    writer.WriteString(line);
                writer.WriteListEnd();
                writer.WriteFloat(FLimit);
            },
            true);
        // Read when present, never written.
        filer.DefineProperty(
            QStringLiteral("Legacy"), [this](TReader& reader) { FLegacy = reader.ReadInteger(); }, {}, false);
    }
    void Loaded() override
    {
        ++FLoadedCalls;
        if (FCaption == QLatin1String("fail in Loaded"))
            throw EStreamError(QStringLiteral("Loaded refused"));
    }

    QString FCaption;
    int FCount = 0;
    qint64 FBig = 0;
    uint FColor = 0;
    double FGain = 0;
    QStringList FTags;
    TMode FMode = gmOff;
    int FScratch = 0;
    QStringList FLines;
    double FLimit = 0;
    qint64 FLegacy = 0;
    int FLoadedCalls = 0;
    bool FLoadingSeen = false;
};

class TStreamPanel : public QWidget {
    Q_OBJECT
public:
    explicit TStreamPanel(QWidget* parent = nullptr) : QWidget(parent) {}
};

class ComponentStream : public ::testing::Test {
protected:
    void SetUp() override
    {
        RegisterStreamClass<TStreamGauge>();
        RegisterStreamClass<TStreamPanel>();
    }
    void TearDown() override
    {
        UnregisterStreamClass(QStringLiteral("TStreamGauge"));
        UnregisterStreamClass(QStringLiteral("TStreamPanel"));
        EXPECT_TRUE(FOwner.children().isEmpty());
        EXPECT_EQ(GLiving, 0);
    }

    static QJsonObject Parse(const char* text) { return QJsonDocument::fromJson(text).object(); }
    static QByteArray Text(const QJsonObject& json) { return QJsonDocument(json).toJson(); }

    QObject FOwner;
};

auto StreamErrorWith(const char* text)
{
    return Throws<EStreamError>(Property(&EStreamError::what, HasSubstr(text)));
}

TEST_F(ComponentStream, SavedComponentLoadsBackToTheSameFile)
{
    TStreamGauge gauge;
    gauge.setObjectName(QStringLiteral("Gauge \"1\""));
    gauge.FCaption = QStringLiteral("Temperatur °C");
    gauge.FCount = std::numeric_limits<int>::min();
    gauge.FBig = std::numeric_limits<qint64>::max();
    gauge.FColor = 0xFF000005u;
    gauge.FGain = -0.0;
    gauge.FTags = QStringList{"", "a=b"};
    gauge.FMode = TStreamGauge::gmFast;
    gauge.FLines = QStringList{"[General]", "PanelEnabled=1"};
    gauge.FLimit = 1.7e30;

    const QJsonObject json = WriteComponent(gauge);
    EXPECT_EQ(json.value("properties").toObject().keys(),
              (QStringList{"Big", "Caption", "Color", "Count", "Gain", "Mode", "Tags"}));
    EXPECT_EQ(json.value("properties").toObject().value("Mode").toString(), "gmFast");

    // A read-only defined property is read when a file has it, but never written back.
    const QByteArray text = Text(json);
    QJsonObject withLegacy = QJsonDocument::fromJson(text).object();
    QJsonObject defined = withLegacy.value("defined").toObject();
    defined.insert("Legacy", QJsonArray{42});
    withLegacy.insert("defined", defined);
    std::unique_ptr<QObject> loaded = ReadComponent(withLegacy, &FOwner);
    auto* copy = qobject_cast<TStreamGauge*>(loaded.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->parent(), &FOwner);
    EXPECT_EQ(copy->FBig, gauge.FBig);
    EXPECT_TRUE(std::signbit(copy->FGain));
    EXPECT_EQ(copy->FLegacy, 42);
    EXPECT_EQ(copy->FLoadedCalls, 1);
    EXPECT_TRUE(copy->FLoadingSeen);
    EXPECT_FALSE(copy->GetIsLoading());
    EXPECT_EQ(Text(WriteComponent(*copy)).toStdString(), text.toStdString());
}

TEST_F(ComponentStream, BadComponentsNameThePlaceAndLeaveNothingBehind)
{
    const struct {
        const char* json;
        const char* message;
    } cases[] = {
        {R"({"class":"TStreamGauge"})", R"(Sheet 1, Component: "name" is missing)"},
        {R"({"name":"g","class":7})", R"(Component "g": "class" must be a string but is a integer)"},
        {R"({"class":"TStreamGauge","name":"g","properties":[]})", R"(Component "g" (TStreamGauge): "properties" must be an object but is a list)"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Count":2147483648}})", "2147483648 is out of the range"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Count":1.5}})", "integer expected but number found"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Mode":"gmWarp"}})", R"("gmWarp" is not a value of TMode)"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Tags":["a",1]}})", "item 1: string expected but integer found"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Scratch":1}})", R"(unknown property "Scratch")"},
        {R"({"class":"TStreamGauge","name":"g","defined":{"Other":[]}})", R"(unknown defined property "Other")"},
        {R"({"class":"TStreamGauge","name":"g","defined":{"Bindings":{}}})", "list of values expected but object found"},
        {R"({"class":"TStreamGauge","name":"g","defined":{"Bindings":[["a","b",3],1]}})",
         R"(Component "g" (TStreamGauge), defined property "Bindings", item [0][2]: string expected but integer found)"},
        {R"({"class":"TStreamGauge","name":"g","defined":{"Bindings":[["a"],1,2]}})", "item [2]: values left unread"},
        {R"({"class":"TStreamGauge","name":"g","properties":{"Caption":"fail in Loaded"},"defined":{"Bindings":[["a"],1]}})",
         "Loaded refused"},
    };
    for (const auto& c : cases) {
        EXPECT_THAT([&] { (void)ReadComponent(Parse(c.json), &FOwner, QStringLiteral("Sheet 1")); }, StreamErrorWith(c.message))
            << c.json;
        EXPECT_TRUE(FOwner.children().isEmpty()) << c.json;
        EXPECT_EQ(GLiving, 0) << c.json;
    }
}

TEST_F(ComponentStream, RegistryKeepsAClassRegisteredTwiceAndRefusesTwoUnderOneName)
{
    EXPECT_FALSE(RegisterStreamClass<TStreamGauge>()) << "the same class again is kept";
    EXPECT_THAT([] { RegisterStreamClass(QStringLiteral("TStreamGauge"), MakeStreamClassDescriptor<TStreamPanel>()); },
                StreamErrorWith("A class named TStreamGauge already exists"));
    EXPECT_THAT([&] { (void)CreateStreamComponent(QStringLiteral("TStreamPanel"), &FOwner); },
                StreamErrorWith("Class TStreamPanel needs a widget as its parent"));
    QWidget page;
    std::unique_ptr<QObject> panel = CreateStreamComponent(QStringLiteral("TStreamPanel"), &page);
    EXPECT_EQ(panel->parent(), &page);

    // A factory that builds the wrong class would write files that load as something else.
    RegisterStreamClass(QStringLiteral("TImpostor"), {.Factory = [](QObject* parent) { return std::make_unique<TCounted>(parent); }, .Description = {}, .ClassIcon = {}, .Dependencies = {}, .Class = nullptr});
    EXPECT_THAT([&] { (void)CreateStreamComponent(QStringLiteral("TImpostor"), &FOwner); },
                StreamErrorWith("The factory of class TImpostor created a TCounted"));
    EXPECT_TRUE(UnregisterStreamClass(QStringLiteral("TImpostor")));
    EXPECT_FALSE(UnregisterStreamClass(QStringLiteral("TImpostor")));
}

TEST_F(ComponentStream, AnEnumValueWithoutANameRaisesOnWriting)
{
    TStreamGauge gauge;
    gauge.setObjectName(QStringLiteral("g"));
    gauge.FMode = static_cast<TStreamGauge::TMode>(9);
    EXPECT_THAT([&] { (void)WriteComponent(gauge); }, StreamErrorWith(R"(Component "g" (TStreamGauge), property "Mode": 9 has no name in TMode)"));
}

}  // namespace

#include "component_stream_test.moc"
