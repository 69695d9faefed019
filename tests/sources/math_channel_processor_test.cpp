#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>
#include <cmath>
#include <numbers>

#include "qxbase/framework/exception.h"
#include "qxbase/framework/value_stream.h"
#include "qxbase/panels/panel_tab_page.h"
#include "qxbase/panels/worksheet_file.h"
#include "qxbase/sources/math_channel_processor.h"
#include "qxbase/sources/simulated_source.h"
#include "tests/sources/source_test_support.h"

using namespace qx;
using namespace qxtest;

namespace {

constexpr TQXCoefficients NoCoefficients{};

// Sine of `Amplitude` V at `Hz`, sample n at `Rate`: the waveform settings written out by hand.
double SineAt(double Amplitude, double Hz, double Rate, int n)
{
    return Amplitude * std::sin(2 * std::numbers::pi * Hz * n / Rate);
}

int AddOp(TKSMathChannelProcessor& Math, const QString& Name, TQXVTOperation Op, int First, int Second,
          const QString& FirstName = {}, const QString& SecondName = {})
{
    return Math.GetTable().AddChannel(Name, "V", "math", -5, 5, clRed, Op, 0, First, Second, 0, 1, 0, 1,
                                      NoCoefficients, FirstName, SecondName);
}

}  // namespace

TEST(MathChannelProcessor, SumAndRmsOfSimulatedSinesReachTheConsumer)
{
    QStringList log;
    TKSSimulatedSource source;
    source.SetSampleRate(1000);
    source.SetBlockSize(100);
    source.SetWaveformLines({"sine 2 10 0 0", "sine 1 3 0 0"});
    TKSMathChannelProcessor math;
    math.SetQXMeasureSource(&source);
    AddOp(math, "Sum", qxvtSum, 0, 1);
    AddOp(math, "Rms", qxvtRMS, 0, -1);
    TConsumer consumer("c", log);
    consumer.Link.SetQXMeasureSourceEx(&math);

    source.Step();
    ASSERT_EQ(consumer.Received.size(), 1U);
    const auto& set = consumer.Received[0];
    ASSERT_EQ(set.size(), 4U);
    ASSERT_EQ(set[2].size(), 100U);
    double squares = 0;
    for (int n = 0; n < 100; ++n) {
        EXPECT_NEAR(set[2][static_cast<std::size_t>(n)], SineAt(2, 10, 1000, n) + SineAt(1, 3, 1000, n), 1e-12);
        squares += SineAt(2, 10, 1000, n) * SineAt(2, 10, 1000, n);
    }
    ASSERT_EQ(set[3].size(), 1U);
    EXPECT_NEAR(set[3][0], std::sqrt(squares / 100), 1e-12);
}

TEST(MathChannelProcessor, WorksheetKeepsChannelsSettingsAndInputAcrossPages)
{
    RegisterSimulatedSource();
    RegisterMathChannelProcessor();
    // The processor's page comes first, so its input exists only once the whole file is read.
    QWidget root;
    TKSPanelTabPage first(&root);
    first.setObjectName("Analysis");
    TKSPanelTabPage second(&root);
    second.setObjectName("Acquisition");
    auto* math = new TKSMathChannelProcessor(&first);
    math->setObjectName("Math");
    auto* source = new TKSSimulatedSource(&second);
    source->setObjectName("Sim");
    math->SetInputSource("Sim");
    ASSERT_EQ(math->GetQXMeasureSource(), source);

    AddOp(*math, "Sum", qxvtSum, 0, 1, "AI 1", "AI 2");
    math->GetTable().AddChannel("Scaled", "bar", "", -10, 10, clBlue, qxvtTwoPoint, 0, 1, -1, 0.5, 4.5, -1.25,
                                1e-7, {1, 2, 3, 4, 5, 6, 7});
    TQXMSExChannelInformation edited = *math->GetTable().GetChannelList(1);
    edited.ScalingValues[4] = 0.25;
    edited.ScalingValues[5] = -3;
    edited.OptionFlag = false;
    math->GetTable().UpdateChannelInformation(1, edited);
    math->SetFFTSpecType(ksfftPowerSpec);
    math->SetFFTWindow(qxltBlackman);

    const QByteArray saved = WriteWorksheet({&first, &second});
    const std::vector<std::unique_ptr<TKSPanelTabPage>> pages = ReadWorksheet(saved, "w.qxw");
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_EQ(WriteWorksheet({pages[0].get(), pages[1].get()}), saved);  // every field came back

    auto* read = pages[0]->findChild<TKSMathChannelProcessor*>("Math");
    auto* readSource = pages[1]->findChild<TKSSimulatedSource*>("Sim");
    ASSERT_NE(read, nullptr);
    ASSERT_NE(readSource, nullptr);
    EXPECT_EQ(read->GetQXMeasureSource(), readSource);
    EXPECT_EQ(read->GetTable().CountNumberOfChannelType(msexVirtualChannel), 2);  // flags are not stored
    EXPECT_EQ(read->GetChannelListCount(), readSource->GetChannelListCount() + 2);

    // A source that is not in the file leaves the processor detached but keeps its name.
    delete readSource;
    read->SetInputSource("Elsewhere");
    EXPECT_EQ(read->GetInputSource(), "Elsewhere");
    EXPECT_TRUE(WriteWorksheet({pages[0].get()}).contains("\"InputSource\": \"Elsewhere\""));
}

TEST(MathChannelProcessor, BadChannelListsRaiseNamingThePlaceAndChangeNothing)
{
    TKSMathChannelProcessor math;
    AddOp(math, "Keep", qxvtSum, 0, 1);
    TWriter writer("Math");
    math.WriteMathChannels(writer);
    const QJsonArray good = writer.GetValues()[0].toArray();
    ASSERT_EQ(good[0].toArray().size(), 26);

    // Each row spoils the second of two good channels (items: name, two texts, range, colour,
    // operation, parameter, first index and name, second index and name, 6 scaling values, 7
    // coefficients, option flag), one row per way a read fails.
    const std::pair<std::function<void(QJsonArray&)>, const char*> rows[] = {
        {[](QJsonArray& c) { c[6] = 18; }, "[0][1][6]: operation 18 outside 0..17"},
        {[](QJsonArray& c) { c[8] = 4294967296.0; }, "[0][1][8]: 4294967296 is outside"},
        {[](QJsonArray& c) { c[3] = "low"; }, "[0][1][3]: float expected"},
        {[](QJsonArray& c) { c.append(true); }, "[0][1][26]: end of list expected"},
    };
    for (const auto& [spoil, message] : rows) {
        SCOPED_TRACE(message);
        QJsonArray second = good[0].toArray();
        spoil(second);
        TReader reader(QJsonArray{QJsonArray{good[0], second}}, "Math");
        try {
            math.ReadMathChannels(reader);
            ADD_FAILURE() << "no error";
        } catch (const EStreamError& e) {
            EXPECT_TRUE(e.Message().startsWith(QStringLiteral("Math, item ") + message)) << e.Message().toStdString();
        }
        ASSERT_EQ(math.GetTable().GetChannelListCount(), 1);
        EXPECT_EQ(math.GetTable().GetChannelList(0)->Name, "Keep");
    }
}

TEST(MathChannelProcessor, FFTSettingsOnTheBusAnnounceChangesOnly)
{
    TKSMathChannelProcessor math;
    int updates = 0;
    TQXEventLink listener;
    listener.OnValueUpdated = [&](TQXEventLink*, std::uint32_t) { ++updates; };
    listener.SetEventSource(&math);
    TQXPropertyHandle window = 0;
    ASSERT_TRUE(math.GetPropertyHandle("FFTWindow", window));
    EXPECT_TRUE(math.SetPropertyValue(nullptr, window, std::int32_t{qxltHamming}));
    math.SetFFTSpecType(ksfftAutocorr);
    math.SetFFTSpecType(ksfftAutocorr);
    math.SetFFTSpecType(7);
    math.SetFFTWindow(-1);
    EXPECT_EQ(math.GetTable().GetFFT().GetSpecType(), ksfftAutocorr);
    EXPECT_EQ(math.GetTable().GetFFT().GetWindow(), qxltHamming);
    EXPECT_EQ(updates, 2);
}

// A receiver may destroy the processor that feeds it: the set it was sent once lived in the
// destroyed table's arrays.
TEST(MathChannelProcessor, AReceiverMayDestroyIt)
{
    QStringList log;
    TQXMeasureSourceEx source;
    auto* math = new TKSMathChannelProcessor;
    math->SetQXMeasureSource(&source);
    AddOp(*math, "Inverted", qxvtInverse, 0, -1);
    TConsumer consumer("c", log);
    consumer.AfterData = [&] { delete math; };
    consumer.Link.SetQXMeasureSourceEx(math);
    TBlockSet(1, 4).SendFrom(source);
    EXPECT_EQ(log, QStringList({"c:settings", "c:data", "c:gone"}));
}
