// What serial ports add to the system's own calls: a loop through a pseudo-terminal beside plain writes and
// reads on the same one, and the cost of reading a property. Fails when an aim is missed.

#include "host/HostApplication.h"
#include "platform/Clock.h"
#include "ports/Ports.h"
#include "reference_host/ports/PseudoTerminal.h"
#include "reference_host/ports/SerialControl.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;

constexpr double kLeastThroughput = 0.8; // of that of the plain calls
constexpr double kMostPerRead = 2000.0;  // ns
constexpr std::size_t kBlockBytes = 4000;
constexpr int kBlocks = 100;
constexpr int kLoopRuns = 80; // many short ones: the fastest of them had the processor to itself
constexpr int kReadRuns = 9;

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool Aim(const char* what, bool met) {
    std::printf("%-78s %s\n", what, met ? "aim met" : "aim NOT met");
    return met;
}

class Application final : public CHostApplication {
public:
    Application() { InstallHostApplication(this); }
    ~Application() override { InstallHostApplication(nullptr); }
    std::unique_ptr<CommunicationsControl> CreateCommunicationsControl(CWnd& parent, int id) override {
        return std::make_unique<SerialControl>(parent, id, [this](std::int16_t) { return peer.Device(); });
    }

    PseudoTerminal peer;
};

// Reads until a block is there; the system moves it in its own time.
void TakeBlock(const std::function<std::size_t()>& read) {
    for (std::size_t got = 0; got < kBlockBytes;) {
        const std::size_t count = read();
        if (count == 0) {
            SystemClock().Sleep(0);
        }
        got += count;
    }
}

// Blocks that go to the other side and come back.
void Loop(PseudoTerminal& peer, const std::function<void()>& write,
          const std::function<std::size_t()>& read) {
    std::array<char, kBlockBytes> bytes{};
    const std::string block(kBlockBytes, 'x');
    for (int i = 0; i < kBlocks; ++i) {
        write();
        TakeBlock([&] { return peer.Read(bytes); });
        peer.Write(block);
        TakeBlock(read);
    }
}

void LoopThroughPort(Application& application, CSerialPort& port) {
    const VARIANT block = VARIANT::String(std::string(kBlockBytes, 'x'));
    CString text;
    Loop(
        application.peer, [&] { port.SetProperty("SP_Output", block); },
        [&] {
            port.GetProperty("SP_Input").value.Get(text);
            return text.size();
        });
}

void LoopThroughCalls(Application& application, int descriptor) {
    const SystemCalls& calls = RealSystemCalls();
    const std::string block(kBlockBytes, 'x');
    std::array<char, kBlockBytes> bytes{};
    Loop(
        application.peer, [&] { calls.write(descriptor, block); },
        [&] { return static_cast<std::size_t>(std::max(0L, calls.read(descriptor, bytes))); });
}

bool CompareThroughput(Application& application, CSerialPort& port) {
    const int descriptor = RealSystemCalls().open(application.peer.Device());
    double best[2] = {1e12, 1e12};
    for (int run = 0; run < kLoopRuns; ++run) {
        best[0] = std::min(best[0], Seconds([&] { LoopThroughCalls(application, descriptor); }));
        port.SetProperty("SP_PortOpen", VARIANT::Bool(true));
        best[1] = std::min(best[1], Seconds([&] { LoopThroughPort(application, port); }));
        port.SetProperty("SP_PortOpen", VARIANT::Bool(false));
    }
    RealSystemCalls().close(descriptor);
    constexpr double kMegabytes = 2.0 * kBlocks * kBlockBytes / 1e6; // there and back
    const double ratio = best[0] / best[1];
    std::printf("plain calls %.1f MB/s, serial port %.1f MB/s: %.0f %%\n", kMegabytes / best[0],
                kMegabytes / best[1], ratio * 100.0);
    return Aim("At least 80 % of the plain calls' throughput:", ratio >= kLeastThroughput);
}

bool MeasureReads(CSerialPort& port) {
    constexpr int kReads = 20000;
    port.SetProperty("SP_PortOpen", VARIANT::Bool(true));
    double most = 0.0;
    for (const DispatchEntry& entry : port.GetDispatchMap()) {
        const CString name = entry.name;
        double best = 1e12;
        for (int run = 0; run < kReadRuns; ++run) {
            best = std::min(best, Seconds([&] {
                                for (int i = 0; i < kReads; ++i) {
                                    port.GetProperty(name);
                                }
                            }));
        }
        std::printf("  %-18s %7.1f ns\n", entry.name, best / kReads * 1e9);
        most = std::max(most, best / kReads * 1e9);
    }
    return Aim("At most 2 us for reading a property by its name:", most <= kMostPerRead);
}

} // namespace

int main() {
    Application application;
    CPorts ports;
    if (!ports.OLECreateSerialPort(1)) {
        std::printf("there is no pseudo-terminal to be had\n");
        return EXIT_FAILURE;
    }
    CSerialPort& port = *ports.GetCurrentSerialPort();
    port.SetProperty("SP_InBufferSize", VARIANT::Short(8192));
    port.SetProperty("SP_OutBufferSize", VARIANT::Short(8192));
    const bool throughput = CompareThroughput(application, port);
    const bool reads = MeasureReads(port);
    return throughput && reads ? EXIT_SUCCESS : EXIT_FAILURE;
}
