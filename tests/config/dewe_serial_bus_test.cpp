#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QThread>
#include <QtTest/QTest>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <tuple>

#include "qxbase/config/dewe_bus_simulator.h"
#include "qxbase/config/dewe_modules.h"
#include "qxbase/config/dewe_protocol.h"
#include "qxbase/config/dewe_scan.h"
#include "qxbase/config/dewe_scan_runner.h"
#include "tests/framework/print_qstring.h"

using namespace qx;

namespace {

constexpr int Port = 7;

// Points "COM7" at a device while it lives.
class ComPortGuard {
public:
    explicit ComPortGuard(const QString& device) { qputenv(FName.constData(), device.toLocal8Bit()); }
    ~ComPortGuard() { qunsetenv(FName.constData()); }

private:
    QByteArray FName = "QX_COM" + QByteArray::number(Port);
};

using Found = std::tuple<int, QString, QString, QString, bool, int>;

std::vector<Found> Describe(const TDeweScanResult& result)
{
    std::vector<Found> found;
    for (const TDeweModuleSummary& m : result.Modules)
        found.emplace_back(m.Address, m.ModuleTypeText, m.InputRangeText, m.FilterRangeText, m.Remote, m.ChannelCount);
    return found;
}

// Both searches on a line where nothing answers: every read runs to its time-out.
constexpr qint64 SilentSearchesLowerBound = 2 * (DeweMaxAddress + 1) * DeweLineSettings.ReadTimeout * 9 / 10;
// ... and where also every write takes its whole time-out: flush, then write, wait and read
// per address, twice.
constexpr qint64 SilentSearchesUpperBound =
    2 * (DeweLineSettings.ReadTimeout +
         (DeweMaxAddress + 1) * (DeweLineSettings.WriteTimeout + 20 + DeweLineSettings.ReadTimeout));

// Everything the far end of a pseudo-terminal gets until nothing more comes for 100 ms.
QByteArray ReadUntilQuiet(int master)
{
    QByteArray got;
    pollfd fd{master, POLLIN, 0};
    char buffer[4096];
    while (poll(&fd, 1, 100) > 0) {
        const ssize_t n = read(master, buffer, sizeof buffer);
        if (n <= 0) break;
        got.append(buffer, n);
    }
    return got;
}

}  // namespace

TEST(DeweSerialBus, ComPortNumbersMapToDevices)
{
    qunsetenv("QX_COM7");
    EXPECT_EQ(ComPortDevice(12), "/dev/ttyS11");
    EXPECT_EQ(ComPortDevice(0), "");
    THVKDeweModules modules;
    for (const char* device : {"/nonexistent/tty", "/dev/null" /* not a terminal */}) {
        ComPortGuard com(device);
        EXPECT_FALSE(modules.OpenComm(Port)) << device;
    }
    TDeweBusSimulator bus;
    ComPortGuard com(bus.GetDevicePath());
    ASSERT_TRUE(modules.OpenComm(Port));
    ASSERT_TRUE(modules.OpenComm(Port));  // the port held so far is closed first
    EXPECT_TRUE(modules.GetPortOpen());
    EXPECT_EQ(bus.GetReceived(), "\r\r\r\r");
    EXPECT_FALSE(modules.OpenComm(0));
    EXPECT_FALSE(modules.GetPortOpen());
}

// Bad replies in general are met on a line in memory (dewe_driver_test); here are those whose
// timing only a real line gives: a reply split within the read time-out, surplus bytes that
// spoil the next address, a module that vanishes between two requests, and a short PAD reply.
TEST(DeweSerialBus, ScanFindsTheModulesThatAnswerWell)
{
    TDeweBusSimulator bus;
    bus.PopulateDemoBus();
    bus.AddDAQPModule(7, 0x04, 0x00, 0x04, false);
    bus.SetFault(7, dsfSplitReply);
    bus.AddDAQPModule(14, 0x06, 0x00, 0x00, true);
    bus.SetFault(14, dsfLongReply);
    bus.AddDAQPModule(15, 0x00, 0x00, 0x00, false);  // its reply comes after 14's surplus
    bus.AddPADModule(22, "PAD-TH8", 0x0F, {});
    bus.SetFault(22, dsfSilent, 1);  // vanishes between configuration and name
    bus.AddPADModule(30, "PAD-V8", 0x08, {});
    bus.SetFault(30, dsfShortReply);
    bus.AddPADModule(32, "PAD-V8", 0x0D, {});
    ComPortGuard com(bus.GetDevicePath());

    const TDeweScanResult result = ScanDeweModules(Port);
    ASSERT_TRUE(result.PortOpen);
    const std::vector<Found> expected = {
        {1, "DAQP-V", "10V", "1kHz", true, 0},
        {2, "DAQP-Bridge", "1mV", "100Hz", false, 0},
        {4, "DAQP-DMM", "10V", "20kHz", true, 0},
        {5, "DAQP-Charge", "20dB", "10kHz", false, 0},
        {7, "DAQP-DMM", "1000V", "10Hz", false, 0},
        {8, "DAQP-Freq", "10 kHz", "1 kHz", false, 0},
        {14, QStringLiteral("DAQP-µV"), "25mV", "20kHz", true, 0},
        {10, "PAD-V8", "10V", "Unassigned", false, 8},
        {12, "PAD-RTD3", QStringLiteral("Pt100 -100..100°C a=0.00385"), "Unassigned", false, 3},
        {20, "PAD-VTH8", "CJC K", "Unassigned", false, 8},
        {32, "PAD-V8", "20mA", "Unassigned", false, 8},
    };
    EXPECT_EQ(Describe(result), expected);
    EXPECT_TRUE(ScanDeweModules(0).Modules.empty());
}

// The set command's tail differs for charge and frequency modules; the simulator reads it.
TEST(DeweSerialBus, SetCommandsReachTheModules)
{
    TDeweBusSimulator bus;
    bus.PopulateDemoBus();
    ComPortGuard com(bus.GetDevicePath());
    THVKDeweModules modules;
    ASSERT_TRUE(modules.OpenComm(Port) && modules.AddModule(1) && modules.AddModule(5) && modules.AddModule(8));
    THVKDeweModule& volts = *modules.GetModule(0);
    THVKDeweModule& charge = *modules.GetModule(1);
    volts.SetNextInputRange();
    volts.SetPreviousFilterRange();
    volts.SetRemote(false);
    charge.SetFilterRange(firCHARGE1kHz);
    charge.SetRemote(true);
    modules.GetModule(2)->SetInputRange(dirFREQ100Hz);
    auto state = [&](int address) {
        const TDeweSimDAQPState s = bus.GetDAQPState(address).value();
        return std::tuple(s.InputCode, s.FilterCode, s.Remote);
    };
    EXPECT_EQ(state(1), std::tuple(0x00, 0x03, false));
    EXPECT_EQ(state(5), std::tuple(0x01, 0x0F, true));
    EXPECT_EQ(state(8), std::tuple(0x05, 0x04, false));
    EXPECT_EQ(std::tuple(volts.GetInputRange(), volts.GetFilterRange(), volts.GetRemote()),
              std::tuple(dirV50V, firV100Hz, false));
    EXPECT_TRUE(bus.GetReceived().contains("##05010F01990\r##05010F01991\r"));
}

// A silent line runs every read of both searches to its time-out and no longer; once the far end
// is gone, nothing hangs either.
TEST(DeweSerialBus, SilentOrVanishedLineEndsWithinItsTimeOuts)
{
    auto bus = std::make_unique<TDeweBusSimulator>();
    ComPortGuard com(bus->GetDevicePath());
    THVKDeweModules modules;
    ASSERT_TRUE(modules.OpenComm(Port));
    const auto search = [&] {
        modules.FindModules();
        modules.FindPADModules();
        return modules.GetModuleCount() + modules.GetModuleCountPAD();
    };
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(search(), 0);
    EXPECT_GE(clock.elapsed(), SilentSearchesLowerBound);
    EXPECT_LE(clock.elapsed(), 2 * SilentSearchesUpperBound);

    bus->PopulateDemoBus();
    ASSERT_TRUE(modules.AddModule(1));
    THVKDeweModule& module = *modules.GetModule(0);
    bus.reset();
    clock.restart();
    EXPECT_FALSE(module.UpdateConfiguration(dirV1V, firV10Hz, true));
    EXPECT_FALSE(modules.AddModulePAD(10));
    EXPECT_EQ(search(), 0);
    EXPECT_LE(clock.elapsed(), 2 * SilentSearchesUpperBound);
}

// The search runs beside the event loop and reports on the runner's thread, in order; a stop
// keeps what was found, and a runner destroyed mid-search waits for one probe at most.
TEST(DeweSerialBus, RunnerSearchesOnAWorkerThread)
{
    TDeweBusSimulator bus;
    bus.PopulateDemoBus();
    ComPortGuard com(bus.GetDevicePath());
    TDeweScanRunner runner;
    std::vector<std::pair<bool, int>> steps;
    TDeweScanResult result;
    QObject::connect(&runner, &TDeweScanRunner::progress, [&](bool pad, int address) {
        EXPECT_EQ(QThread::currentThread(), runner.thread());
        steps.emplace_back(pad, address);
    });
    QObject::connect(&runner, &TDeweScanRunner::finished, [&](const TDeweScanResult& r) { result = r; });

    ASSERT_TRUE(runner.Start(Port));
    EXPECT_FALSE(runner.Start(Port));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !runner.IsRunning(); }, 30000));
    ASSERT_EQ(steps.size(), 2u * (DeweMaxAddress + 1));
    EXPECT_EQ(steps.front(), std::pair(false, 0));
    EXPECT_EQ(steps.back(), std::pair(true, DeweMaxAddress));
    EXPECT_EQ(result.Modules.size(), 8u);
    EXPECT_FALSE(result.Stopped);

    steps.clear();
    QObject::connect(&runner, &TDeweScanRunner::progress, [&](bool, int address) {
        if (address == 3) runner.Stop();
    });
    ASSERT_TRUE(runner.Start(Port));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !runner.IsRunning(); }, 30000));
    EXPECT_TRUE(result.Stopped);
    // Addresses 1 and 2, unless a slow loop let the worker reach 4 before the stop.
    EXPECT_GE(result.Modules.size(), 2u);
    EXPECT_LT(result.Modules.size(), 5u);

    auto early = std::make_unique<TDeweScanRunner>();
    ASSERT_TRUE(early->Start(Port));
    QTest::qWait(50);
    QElapsedTimer clock;
    clock.start();
    early.reset();
    EXPECT_LT(clock.elapsed(), 1000);
}

// The far end stops reading until a write times out; when it reads again, what that write left
// queued must not follow the next command.
TEST(DeweSerialBus, AWriteThatTimedOutNeverGoesOutLater)
{
    const struct Master {
        int Fd = posix_openpt(O_RDWR | O_NOCTTY);
        ~Master() { close(Fd); }
    } pty;
    const int master = pty.Fd;
    ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    const auto line = OpenSerialLine(QString::fromLocal8Bit(ptsname(master)), DeweLineSettings);
    ASSERT_TRUE(line);
    const QByteArray block(1024, 'a');
    for (int blocks = 0; line->Write(block); ++blocks) ASSERT_LT(blocks, 1024) << "the far end never filled up";
    ReadUntilQuiet(master);
    ASSERT_TRUE(line->Write("##01\r"));
    EXPECT_EQ(ReadUntilQuiet(master), "##01\r");
}
