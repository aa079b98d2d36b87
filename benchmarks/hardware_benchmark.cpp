// What the hardware layer adds to its driver: per command, per block, per register write, per calibration
// lookup; and what bringing a unit up takes. Ends with the ratios of this run and whether the aims were met.

#include "../tests/support/CountedAllocations.h"
#include "NullDriver.h"
#include "RunningHardware.h"
#include "VirtualClock.h"

#include "simulator/VirtualUnit.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;

constexpr double kMostOwnNanoseconds = 50.0;
constexpr int kCallers = 16;
constexpr double kMostOfLeast = 2.0; // commands of the caller that got most, of the one that got least
constexpr double kLeastOfCopyThroughput = 0.95;
constexpr std::uint32_t kBlockBytes = 16U << 20;

struct NullRig {
    NullDriver driver{kBlockBytes};
    RunningHardware running{driver};
    CHardware& hardware = running.hardware;
    DeviceDriver& bare = driver;
};

NullRig& Rig() {
    static NullRig rig;
    return rig;
}

// The requests that a command makes, without the library: the driver's share of its time.
class BareExchange {
public:
    BareExchange(std::uint32_t headerBytes, std::uint32_t responseBytes, std::uint32_t outBytes,
                 std::uint32_t inBytes)
        : m_headerBytes(headerBytes),
          m_responseBytes(responseBytes),
          m_outBytes(outBytes),
          m_inBytes(inBytes) {
        PutBig32(m_header.data(), 0x0000ABCD);
        PutBig32(&m_header[4], 7);
    }

    void Run(DeviceDriver& driver) {
        Write(driver, {m_header.data(), m_headerBytes});
        if (m_outBytes != 0) {
            Write(driver, {m_out.data(), m_outBytes});
        }
        Read(driver, {m_response.data(), m_responseBytes});
        if (m_inBytes != 0) {
            Read(driver, {m_in.data(), m_inBytes});
        }
    }

private:
    void Write(DeviceDriver& driver, std::span<const std::uint8_t> bytes) {
        benchmark::DoNotOptimize(driver.Control(
            DeviceHandle{1}, {.code = kControlBulkWrite, .input = m_transfer, .dataToUnit = bytes}));
    }

    void Read(DeviceDriver& driver, std::span<std::uint8_t> bytes) {
        benchmark::DoNotOptimize(driver.Control(
            DeviceHandle{1}, {.code = kControlBulkRead, .input = m_transfer, .dataFromUnit = bytes}));
    }

    std::uint32_t m_headerBytes;
    std::uint32_t m_responseBytes;
    std::uint32_t m_outBytes;
    std::uint32_t m_inBytes;
    std::array<std::uint8_t, 8> m_transfer{};
    std::array<std::uint8_t, kLongestHeader> m_header{};
    std::array<std::uint8_t, kLongestResponse> m_response{};
    std::array<std::uint8_t, 4> m_out{};
    std::array<std::uint8_t, 4> m_in{};
};

struct Command {
    const char* name;
    std::uint32_t headerBytes;
    std::uint32_t responseBytes;
    std::uint32_t outBytes;
    std::uint32_t inBytes;
    std::int16_t (*run)(CHardware& hardware);
};

std::array<std::uint8_t, 3> threeBytes{1, 2, 3};

// Every kind of command without bulk data; the last three are operations on top of one.
constexpr Command kCommands[] = {
    {"Initialise", 20, 12, 0, 0, [](CHardware& h) { return h.Initialise(0, 0); }},
    {"MicroGetMem", 20, 16, 0, 0,
     [](CHardware& h) {
         std::uint8_t value = 0;
         return h.MicroGetMem(kSpaceX, 0x8000, value);
     }},
    {"MicroGetBit", 24, 16, 0, 0,
     [](CHardware& h) {
         int value = 0;
         return h.MicroGetBit(kSpaceS, 0xA00008, value);
     }},
    {"DSPGetMem24", 24, 16, 0, 0,
     [](CHardware& h) {
         std::uint32_t value = 0;
         return h.DSPGetMem24(0, kSpaceX, 24, value);
     }},
    {"DSPGetBit", 28, 16, 0, 0,
     [](CHardware& h) {
         int value = 0;
         return h.DSPGetBit(0, kSpaceX, 24, 1, value);
     }},
    {"MicroPutMem", 24, 12, 0, 0, [](CHardware& h) { return h.MicroPutMem(kSpaceX, 0x7000, 1, 0); }},
    {"MicroPutBit", 24, 12, 0, 0, [](CHardware& h) { return h.MicroPutBit(kSpaceS, 0xA00008, 1); }},
    {"DSPPutMem24", 28, 12, 0, 0, [](CHardware& h) { return h.DSPPutMem24(0, kSpaceY, 1, 0x123456); }},
    {"DSPPutBit", 28, 12, 0, 0, [](CHardware& h) { return h.DSPPutBit(0, kSpaceX, 24, 1, 1); }},
    {"MicroGetMemBlock", 20, 12, 0, 3,
     [](CHardware& h) { return h.MicroGetMemBlock(kSpaceX, 0x7000, 3, threeBytes.data(), 0); }},
    {"DSPGetMemBlock24", 24, 12, 0, 3,
     [](CHardware& h) { return h.DSPGetMemBlock24(0, kSpaceX, 1, 3, threeBytes.data()); }},
    {"MicroPutMemBlock", 20, 12, 3, 0,
     [](CHardware& h) { return h.MicroPutMemBlock(kSpaceX, 0x7000, 3, threeBytes.data(), 0); }},
    {"DSPPutMemBlock24", 24, 12, 3, 0,
     [](CHardware& h) { return h.DSPPutMemBlock24(0, kSpaceX, 1, 3, threeBytes.data()); }},
    {"MicroFillMemBlock", 24, 12, 0, 0,
     [](CHardware& h) { return h.MicroFillMemBlock(kSpaceX, 0x7000, 3, 1); }},
    {"DSPFillMemBlock24", 32, 12, 0, 0,
     [](CHardware& h) { return h.DSPFillMemBlock24(0, kSpaceX, 1, 3, 1); }},
    {"MicroWaitBit", 24, 16, 0, 0,
     [](CHardware& h) {
         int value = 0;
         return h.MicroWaitBit(kSpaceX, 0xB02208, 1, 1, value);
     }},
    {"DSPWaitBit", 32, 16, 0, 0,
     [](CHardware& h) {
         int value = 0;
         return h.DSPWaitBit(0, kSpaceX, 24, 1, 1, 1, value);
     }},
    {"DoCommand", 20, 12, 2, 0,
     [](CHardware& h) { return h.DoCommand(kCommandMainBoardRelay, 2, threeBytes.data(), 0, nullptr); }},
    {"DSPSendCommand", 20, 12, 0, 0, [](CHardware& h) { return h.DSPSendCommand(0, 0x3C); }},
    {"MicroPutBits", 28, 12, 0, 0, [](CHardware& h) { return h.MicroPutBits(kSpaceX, 0x7000, 1, 1); }},
    {"SetMainBoardRelay", 20, 12, 2, 0, [](CHardware& h) { return h.SetMainBoardRelay(1, 1); }},
    {"DSPPutControlBits", 28, 12, 0, 0, [](CHardware& h) { return h.DSPPutControlBits(0, 1, 1); }},
    {"AnaloguePutMem", 24, 12, 0, 0, [](CHardware& h) { return h.AnaloguePutMem('r', 0x20); }},
};
constexpr const char* kBare = " bare";
constexpr const char* kBlockNames[] = {"BlockWrite", "BlockRead"};

void RunCommand(benchmark::State& state, const Command& command) {
    CHardware& hardware = Rig().hardware;
    const std::size_t before = test::allocationCount.load();
    for (auto _ : state) {
        benchmark::DoNotOptimize(command.run(hardware));
    }
    state.counters["allocations"] = static_cast<double>(test::allocationCount.load() - before);
}

void RunBare(benchmark::State& state, const Command& command) {
    BareExchange exchange(command.headerBytes, command.responseBytes, command.outBytes, command.inBytes);
    for (auto _ : state) {
        exchange.Run(Rig().bare);
    }
}

std::vector<std::uint8_t>& Block() {
    static std::vector<std::uint8_t> block(kBlockBytes, 0x5A);
    return block;
}

// The block chunk by chunk straight into the driver: `makeRequest` gives the request of a chunk.
template<typename MakeRequest>
void CopyInChunks(MakeRequest makeRequest) {
    const std::span<std::uint8_t> block = Block();
    for (std::size_t at = 0; at < block.size(); at += kBulkChunkBytes) {
        const auto chunk = block.subspan(at, std::min<std::size_t>(kBulkChunkBytes, block.size() - at));
        benchmark::DoNotOptimize(Rig().bare.Control(DeviceHandle{1}, makeRequest(chunk)));
    }
}

template<typename Work>
double SecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The library's transfer and the plain copy by turns, each first every other time, so that each is compared
// with its neighbour: the memory's own speed changes with what else the machine does.
template<typename Transfer, typename Copy>
void CompareBlocks(benchmark::State& state, Transfer transfer, Copy copy) {
    std::vector<double> ratios;
    std::vector<double> times;
    for (auto _ : state) {
        const bool copyFirst = times.size() % 2 == 0;
        const double before = copyFirst ? SecondsOf(copy) : 0.0;
        times.push_back(SecondsOf(transfer));
        ratios.push_back((copyFirst ? before : SecondsOf(copy)) / times.back());
    }
    state.counters["of_copy"] = Median(ratios);
    state.counters["GB_per_s"] = kBlockBytes / Median(times) / 1e9;
}

void BlockWrite(benchmark::State& state) {
    CompareBlocks(
        state, [] { Rig().hardware.DSPPutMemBlock24(0, kSpaceX, 0, kBlockBytes, Block().data()); },
        [] {
            CopyInChunks([](std::span<std::uint8_t> chunk) {
                return DriverRequest{.code = kControlBulkWrite, .dataToUnit = chunk};
            });
        });
}

void BlockRead(benchmark::State& state) {
    CompareBlocks(
        state, [] { Rig().hardware.DSPGetMemBlock24(0, kSpaceX, 0, kBlockBytes, Block().data()); },
        [] {
            CopyInChunks([](std::span<std::uint8_t> chunk) {
                return DriverRequest{.code = kControlBulkRead, .dataFromUnit = chunk};
            });
        });
}

// A relay bit that toggles with every write: each waits for the one before.
void RelayToggle(benchmark::State& state) {
    const VirtualClock clock;
    const std::uint32_t start = GetTickCount();
    std::uint8_t value = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Rig().hardware.AnaloguePutMem('r', value ^= 0x20));
    }
    state.counters["virtual_ms"] =
        static_cast<double>(GetTickCount() - start) / static_cast<double>(state.iterations());
}

// Every entry of the analogue board's table in turn.
template<typename Look>
void LookUp(benchmark::State& state, Look look) {
    const std::span<const CalibTableRecord> records = AnalogueBoardRecords();
    std::size_t id = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(look(static_cast<int>(id), static_cast<int>(records[id].offset)));
        id = id + 1 < records.size() ? id + 1 : 0;
    }
}

void CalibrationById(benchmark::State& state) {
    LookUp(state, [](int id, int) { return Rig().hardware.GetAnalogueCalibrationValueForID(id); });
}

void CalibrationByOffset(benchmark::State& state) {
    LookUp(state, [](int, int offset) { return Rig().hardware.GetAnalogueCalibrationValue(offset); });
}

void BringUp(benchmark::State& state) {
    const VirtualClock clock;
    const ImageFiles images;
    for (auto _ : state) {
        const std::uint32_t start = GetTickCount();
        simulator::VirtualUnit unit({[] { return GetTickCount(); }, [](std::uint32_t ms) { Sleep(ms); }});
        CHardware hardware(unit);
        if (hardware.InitialiseHardware(WindowHandle::None) != 1) {
            state.SkipWithError("the unit does not come up");
            return;
        }
        state.counters["commands"] = static_cast<double>(unit.Exchanges().size());
        state.counters["transfers"] = unit.RequestCount();
        state.counters["virtual_ms"] = GetTickCount() - start;
        hardware.TerminateHardware();
    }
}

// Prints the fastest of each benchmark's repetitions and keeps it for the table. Processor time counts: all
// that is measured runs in this thread and never sleeps.
class FastestReporter final : public benchmark::ConsoleReporter {
public:
    FastestReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            Run* const known = Find(run.run_name.function_name);
            if (run.run_type == Run::RT_Iteration &&
                (known == nullptr || run.GetAdjustedCPUTime() < known->GetAdjustedCPUTime())) {
                m_fastest[run.run_name.function_name] = run;
            }
        }
        if (!runs.empty() && runs.front().run_type == Run::RT_Iteration) {
            ConsoleReporter::ReportRuns({m_fastest.at(runs.front().run_name.function_name)});
        }
    }

    [[nodiscard]] std::size_t Count() const { return m_fastest.size(); }
    [[nodiscard]] double Time(const std::string& name) { return m_fastest.at(name).GetAdjustedCPUTime(); }
    [[nodiscard]] double Counter(const std::string& name, const char* counter) {
        return m_fastest.at(name).counters.at(counter);
    }

private:
    Run* Find(const std::string& name) {
        const auto found = m_fastest.find(name);
        return found == m_fastest.end() ? nullptr : &found->second;
    }

    std::map<std::string, Run> m_fastest;
};

bool PrintAim(const char* what, bool met) {
    std::printf("%-62s %s\n", what, met ? "aim met" : "aim NOT met");
    return met;
}

bool PrintCommands(FastestReporter& fastest) {
    std::printf("\n%-24s %10s %10s %8s %10s %12s\n", "command", "library", "bare", "ratio", "own",
                "allocations");
    double mostOwn = 0.0;
    double allocations = 0.0;
    for (const Command& command : kCommands) {
        const double time = fastest.Time(command.name);
        const double bare = fastest.Time(std::string(command.name) + kBare);
        const double allocated = fastest.Counter(command.name, "allocations");
        std::printf("%-24s %7.1f ns %7.1f ns %8.2f %7.1f ns %12.0f\n", command.name, time, bare, time / bare,
                    time - bare, allocated);
        mostOwn = std::max(mostOwn, time - bare);
        allocations += allocated;
    }
    const bool quick =
        PrintAim("At most 50 ns of our own per command, of every kind:", mostOwn <= kMostOwnNanoseconds);
    return PrintAim("No heap allocation for a command:", allocations == 0.0) && quick;
}

bool PrintBlocks(FastestReporter& fastest) {
    std::printf("\n%-24s %13s %18s\n", "16 MiB", "library", "of a plain copy");
    double least = 1.0;
    for (const char* name : kBlockNames) {
        const double ratio = fastest.Counter(name, "of_copy");
        std::printf("%-24s %8.2f GB/s %16.1f %%\n", name, fastest.Counter(name, "GB_per_s"), 100.0 * ratio);
        least = std::min(least, ratio);
    }
    return PrintAim("At least 95 % of the copy's throughput for blocks:", least >= kLeastOfCopyThroughput);
}

void PrintRest(FastestReporter& fastest) {
    std::printf("\nregister write with the guard / without      %8.2f   (toggling: %.0f virtual ms each)\n",
                fastest.Time("AnaloguePutMem") / fastest.Time("MicroPutMem"),
                fastest.Counter("RelayToggle", "virtual_ms"));
    std::printf("calibration lookup by offset / by id         %8.2f   (%.1f ns / %.1f ns)\n",
                fastest.Time("CalibrationByOffset") / fastest.Time("CalibrationById"),
                fastest.Time("CalibrationByOffset"), fastest.Time("CalibrationById"));
    std::printf("bring-up of the virtual unit: %.0f commands in %.0f transfers, %.0f virtual ms\n",
                fastest.Counter("BringUp", "commands"), fastest.Counter("BringUp", "transfers"),
                fastest.Counter("BringUp", "virtual_ms"));
}

// So many threads send commands; how many each within a second in which all of them are at work.
std::vector<std::uint64_t> RunCallers(int callers) {
    enum Phase { WarmUp, Counting, Done };
    constexpr auto kWarmUp = std::chrono::milliseconds(200);
    std::vector<std::uint64_t> counts(static_cast<std::size_t>(callers));
    std::atomic<Phase> phase{WarmUp};
    std::vector<std::thread> threads;
    for (std::uint64_t& count : counts) {
        threads.emplace_back([&phase, &count] {
            std::uint8_t value = 0;
            for (Phase now = WarmUp; now != Done; now = phase.load()) {
                Rig().hardware.MicroGetMem(kSpaceX, 0x8000, value);
                count += now == Counting ? 1 : 0;
            }
        });
    }
    std::this_thread::sleep_for(kWarmUp);
    phase.store(Counting);
    std::this_thread::sleep_for(std::chrono::seconds(1));
    phase.store(Done);
    for (std::thread& thread : threads) {
        thread.join();
    }
    return counts;
}

bool PrintCallers() {
    const std::uint64_t alone = RunCallers(1).front();
    const std::vector<std::uint64_t> counts = RunCallers(kCallers);
    const auto [least, most] = std::minmax_element(counts.begin(), counts.end());
    const double ratio = static_cast<double>(*most) / static_cast<double>(std::max<std::uint64_t>(*least, 1));
    std::printf("\n%-24s %12s %12s %8s %14s %14s\n", "callers for a second", "least", "most", "ratio",
                "together", "one alone");
    std::printf(
        "%-24d %12llu %12llu %8.2f %14llu %14llu\n", kCallers, static_cast<unsigned long long>(*least),
        static_cast<unsigned long long>(*most), ratio,
        static_cast<unsigned long long>(std::accumulate(counts.begin(), counts.end(), std::uint64_t{0})),
        static_cast<unsigned long long>(alone));
    return PrintAim("Callers within a factor of 2 of each other:", ratio <= kMostOfLeast);
}

struct Other {
    const char* name;
    void (*run)(benchmark::State& state);
    double seconds; // at least, each time
};

constexpr Other kOthers[] = {
    {kBlockNames[0], BlockWrite, 0.5},
    {kBlockNames[1], BlockRead, 0.5},
    {"RelayToggle", RelayToggle, 0.05},
    {"CalibrationById", CalibrationById, 0.05},
    {"CalibrationByOffset", CalibrationByOffset, 0.05},
    {"BringUp", BringUp, 0.05},
};

void Register() {
    for (const Command& command : kCommands) {
        benchmark::RegisterBenchmark(command.name, RunCommand, command);
        benchmark::RegisterBenchmark((std::string(command.name) + kBare).c_str(), RunBare, command);
    }
    for (const Other& other : kOthers) {
        benchmark::RegisterBenchmark(other.name, other.run)->MinTime(other.seconds);
    }
}

} // namespace

// Repeats everything in a random order, so that what else the machine does falls on both sides of a ratio.
int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    char repetitions[] = "--benchmark_repetitions=7";
    char shortRuns[] = "--benchmark_min_time=0.05";
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, {repetitions, shortRuns, interleaved});
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return EXIT_FAILURE;
    }
    Register();
    FastestReporter fastest;
    benchmark::RunSpecifiedBenchmarks(&fastest);
    if (fastest.Count() != 2 * std::size(kCommands) + std::size(kOthers)) {
        return EXIT_SUCCESS; // only some of them were asked for
    }
    bool met = PrintCommands(fastest);
    met = PrintBlocks(fastest) && met;
    met = PrintCallers() && met;
    PrintRest(fastest);
    return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
