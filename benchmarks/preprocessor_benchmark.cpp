// What supervision costs: a notification, a filter step, the way from a notification to the owner's event,
// and an hour of measurement.

#include "VirtualClock.h"

#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettledResult.h"
#include "preprocessor/SettlingFilter.h"
#include "preprocessor/SettlingWatcher.h"
#include "settling/SettlingDetails.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;
using Steady = std::chrono::steady_clock;

class NoDriver final : public DeviceDriver {
public:
    DeviceHandle Open(std::string_view) override { return DeviceHandle::None; }
    DriverReply Control(DeviceHandle, const DriverRequest&) override { return {}; }
    void Close(DeviceHandle) override {}
};

// The application with its documents, in force for its lifetime.
struct Host {
    explicit Host(bool threaded) {
        application.fftDetectors = &detectors;
        application.settling = &settling;
        application.hardware = &hardware;
        InstallHostApplication(&application);
        preprocessor::SetThreaded(threaded);
    }
    ~Host() {
        preprocessor::SetThreaded(false); // ends the thread
        InstallHostApplication(nullptr);
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    CHostApplication application;
    CFFTDetectorList detectors;
    CSettlingDetails settling;
    NoDriver driver;
    CHardware hardware{driver};
};

using Times = std::vector<std::chrono::nanoseconds>;

// Not the mean: a round that another program interrupts takes a hundred times as long.
std::chrono::nanoseconds Median(Times times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// What one look at the clock and back costs, to be taken off short times.
std::chrono::nanoseconds ClockCost() {
    constexpr std::size_t kLooks = 10001;
    Times costs(kLooks);
    for (auto& cost : costs) {
        const auto start = Steady::now();
        cost = Steady::now() - start;
    }
    return Median(std::move(costs));
}

double Seconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double>(std::max(time, std::chrono::nanoseconds(0))).count();
}

// One result watched at so many detectors, driven by the benchmark itself.
struct WatchedDetectors {
    WatchedDetectors(int result, int count) {
        for (int detector = 1; detector <= count; ++detector) {
            host.detectors.Add("detector");
            watcher.AddSignal(result, detector);
        }
        watcher.Start(1);
    }

    VirtualClock clock;
    Host host{false};
    CSettlingWatcher watcher{nullptr, nullptr, nullptr};
};

// Every iteration times one notification of each of the watched results, all of which copy a value; the
// wake-up that takes the values again is not timed. Nobody sleeps on the event.
template<typename Notify>
void RunNotifications(benchmark::State& state, int result, Notify notifyAll) {
    const auto count = static_cast<int>(state.range(0));
    const WatchedDetectors watched(result, count);
    const auto clockCost = ClockCost();
    double seconds = 0.0;
    for (auto _ : state) {
        const auto start = Steady::now();
        notifyAll(count);
        const double taken = Seconds(Steady::now() - start - clockCost);
        state.SetIterationTime(taken);
        seconds += taken;
        while (preprocessor::RunPendingWakeUp()) {
        }
    }
    state.counters["ns_per_result"] = seconds * 1e9 / (static_cast<double>(state.iterations()) * count);
}

void SingleNotifications(benchmark::State& state) {
    RunNotifications(state, kResultFftDetectorA, [](int watched) {
        for (int detector = 1; detector <= watched; ++detector) {
            NPreProcessor::NotifyNewFFTData(kResultFftDetectorA, detector);
        }
    });
}

void BlockNotification(benchmark::State& state) {
    RunNotifications(state, kResultRmsA, [](int) { NPreProcessor::NotifyNewData(kResultRmsA, 1); });
}

// The last of the results, whose value nobody has taken yet.
void NotificationOfPendingValue(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const WatchedDetectors watched(kResultFftDetectorA, count);
    for (auto _ : state) {
        NPreProcessor::NotifyNewFFTData(kResultFftDetectorA, count);
    }
}

void FilterStep(benchmark::State& state) {
    Host host(false);
    host.settling.SetSignalAnalyserAmplitudeNumResults(static_cast<std::int16_t>(state.range(0)));
    CSettlingFilter filter(kResultRmsA, kNoDetector);
    filter.LoadParameters();
    double value = 1.0;
    for (auto _ : state) {
        WriteResult(host.application.analyserResults.rmsA, value += 1e-9);
        filter.Offer();
        filter.Step();
        benchmark::DoNotOptimize(filter.IsStable());
    }
}

// Two threads that hand a flag to and fro: the least that waking another thread and being woken can cost.
class PingPong {
public:
    PingPong()
        : m_partner([this] {
              while (Await(Turn::Partner) != Turn::Over) {
                  Give(Turn::Own);
              }
          }) {}
    ~PingPong() { Give(Turn::Over); }
    PingPong(const PingPong&) = delete;
    PingPong& operator=(const PingPong&) = delete;

    void Round() {
        Give(Turn::Partner);
        Await(Turn::Own);
    }

private:
    enum class Turn { Own, Partner, Over };

    void Give(Turn turn) {
        {
            const std::scoped_lock guard(m_lock);
            m_turn = turn;
        }
        m_changed.notify_one();
    }

    Turn Await(Turn turn) {
        std::unique_lock guard(m_lock);
        m_changed.wait(guard, [&] { return m_turn == turn || m_turn == Turn::Over; });
        return m_turn;
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    Turn m_turn = Turn::Own; // guarded by m_lock
    std::jthread m_partner;
};

// From a notification to the owner's event, through the thread. `ratio` compares the medians of this
// way and of the ping-pong, one round of each in turn.
void WakeUpToReport(benchmark::State& state) {
    Host host(true);
    CEvent done;
    CSettlingWatcher feeder(nullptr, nullptr, nullptr);
    feeder.AddSignal(kResultInputFrameRate, kNoDetector);
    CSettlingWatcher watcher(nullptr, &done, nullptr); // without signals: any new value settles it
    PingPong pingPong;
    Times own;
    Times bare;
    for (auto _ : state) {
        watcher.StartAndRequestNotification();
        const auto start = Steady::now();
        NPreProcessor::NotifyNewData(kResultInputFrameRate, 0);
        done.Wait();
        const auto between = Steady::now();
        pingPong.Round();
        bare.push_back(Steady::now() - between);
        own.push_back(between - start);
        state.SetIterationTime(Seconds(between - start));
    }
    state.counters["median_us"] = Seconds(Median(own)) * 1e6;
    state.counters["bare_us"] = Seconds(Median(bare)) * 1e6;
    state.counters["ratio"] = Seconds(Median(own)) / Seconds(Median(bare));
}

// Every result of the analyser block twenty times a second, every single result ten times, all watched; each
// watch begins again when it has finished.
class MeasuredHour {
public:
    MeasuredHour() {
        for (const int result : kBlockResults) {
            m_watcher.AddSignal(result, kNoDetector);
        }
        for (const int result : kSingleResults) {
            m_watcher.AddSignal(result, kNoDetector);
        }
        m_watcher.StartAndRequestNotification();
    }

    void Run() {
        for (std::uint32_t turn = 0; turn < kHourMs / kTurnMs; ++turn) {
            m_clock.Advance(kTurnMs);
            const double value = 1000.0 + turn % 7; // within the tolerance of its neighbours
            BringBlock(value);
            if (turn % 2 == 0) {
                BringSingles(value);
            }
            Supervise();
        }
    }

    std::int64_t wakeUps = 0;
    std::int64_t outcomes = 0;

private:
    static constexpr int kBlockResults[] = {kResultRmsA,       kResultFrequencyA, kResultRmsB,
                                            kResultFrequencyB, kResultPhase,      kResultCtDetectorA,
                                            kResultCtDetectorB};
    static constexpr int kSingleResults[] = {kResultInputFrameRate,        kResultInputFrameRateDeviation,
                                             kResultCarrierAmplitude,      kResultCarrierJitter,
                                             kResultCarrierPhase,          kResultSyncFrameRate,
                                             kResultSyncFrameRateDeviation};
    static constexpr std::uint32_t kHourMs = 3'600'000;
    static constexpr std::uint32_t kTurnMs = 50;

    static void Bring(int result, double value) {
        WriteResult(*GetResultFieldFromID(result, kNoDetector), value);
    }

    void BringBlock(double value) {
        for (const int result : kBlockResults) {
            Bring(result, value);
        }
        NPreProcessor::NotifyNewData(kResultRmsA, 1);
    }

    void BringSingles(double value) {
        for (const int result : kSingleResults) {
            Bring(result, value);
            m_host.hardware.SetResultReady(result, CHardware::GetResultIndex(result), 0);
        }
    }

    void Supervise() {
        while (preprocessor::RunPendingWakeUp()) {
            ++wakeUps;
        }
        if (m_status != NPreProcessor::None) {
            ++outcomes;
            m_status = NPreProcessor::None;
            m_watcher.StartAndRequestNotification();
        }
    }

    VirtualClock m_clock;
    Host m_host{false};
    int m_status = NPreProcessor::None;
    CSettlingWatcher m_watcher{nullptr, nullptr, &m_status};
};

void OneHourOfMeasurement(benchmark::State& state) {
    for (auto _ : state) {
        MeasuredHour hour;
        hour.Run();
        state.counters["wake_ups"] = static_cast<double>(hour.wakeUps);
        state.counters["outcomes"] = static_cast<double>(hour.outcomes);
    }
}

BENCHMARK(SingleNotifications)->Arg(1)->Arg(10)->Arg(40)->UseManualTime();
BENCHMARK(BlockNotification)->Arg(1)->Arg(10)->Arg(40)->UseManualTime();
BENCHMARK(NotificationOfPendingValue)->Arg(1)->Arg(10)->Arg(40);
BENCHMARK(FilterStep)->Arg(1)->Arg(3)->Arg(10);
BENCHMARK(WakeUpToReport)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(OneHourOfMeasurement)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
