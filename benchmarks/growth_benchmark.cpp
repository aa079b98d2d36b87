// How costs grow with the number of what is supervised, waited for or traced. Prints one table and ends with
// an error when an aim is missed.

#include "bench/trace/DriverTrace.h"
#include "host/HostApplication.h"
#include "platform/Sync.h"
#include "platform/Thread.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettlingWatcher.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <vector>

namespace {

using Steady = std::chrono::steady_clock;

constexpr int kDetector = 1;
constexpr int kFirstResult = 10000; // of results that nobody else names

double MicrosecondsSince(Steady::time_point start) {
    return std::chrono::duration<double, std::micro>(Steady::now() - start).count();
}

// The best of several rounds: what the code costs when no other program interrupts.
template<typename Round>
double Best(int rounds, Round round) {
    double best = 1e300;
    for (int i = 0; i < rounds; ++i) {
        best = std::min(best, round());
    }
    return best;
}

double AddingDistinctResults(int count) {
    return Best(5, [count] {
        CSettlingWatcher watcher(nullptr, nullptr, nullptr);
        const auto start = Steady::now();
        for (int i = 0; i < count; ++i) {
            watcher.AddSignal(kFirstResult + i, kDetector);
        }
        return MicrosecondsSince(start) / count;
    });
}

double DestroyingWatches(int count) {
    return Best(5, [count] {
        std::vector<std::unique_ptr<CSettlingWatcher>> watchers;
        for (int i = 0; i < count; ++i) {
            watchers.push_back(std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr));
            watchers.back()->AddSignal(kFirstResult + i, kDetector);
        }
        const auto start = Steady::now();
        watchers.clear();
        return MicrosecondsSince(start) / count;
    });
}

// Each watched result in turn; none has a field, so what is timed is the way to its filter.
double NotifyingOneOf(int count) {
    CSettlingWatcher watcher(nullptr, nullptr, nullptr);
    for (int i = 0; i < count; ++i) {
        watcher.AddSignal(kFirstResult + i, kDetector);
    }
    watcher.Start(1);
    constexpr int kRounds = 200000;
    return Best(5, [count] {
        const auto start = Steady::now();
        for (int i = 0; i < kRounds; ++i) {
            NPreProcessor::NotifyNewFFTData(kFirstResult + i % count, kDetector);
        }
        return MicrosecondsSince(start) / kRounds;
    });
}

// Threads that wait for an event of their own, until the end.
class IdleWaiters {
public:
    explicit IdleWaiters(int count) : m_events(static_cast<std::size_t>(count)) {
        for (CEvent& event : m_events) {
            m_threads.push_back(kalvio::Thread::Start([&event] { event.Wait(); }));
        }
    }
    ~IdleWaiters() {
        for (CEvent& event : m_events) {
            event.SetEvent();
        }
        for (const auto& thread : m_threads) {
            thread->WaitForEnd(10000);
        }
    }
    IdleWaiters(const IdleWaiters&) = delete;
    IdleWaiters& operator=(const IdleWaiters&) = delete;

private:
    std::vector<CEvent> m_events;
    std::vector<std::unique_ptr<kalvio::Thread>> m_threads;
};

double EventRoundTrip(int waiters) {
    const IdleWaiters idle(waiters);
    CEvent there;
    CEvent back;
    std::atomic<bool> over{false};
    const auto partner = kalvio::Thread::Start([&] {
        while (there.Wait() && !over.load()) {
            back.SetEvent();
        }
    });
    constexpr int kRounds = 2000;
    const double cost = Best(7, [&] {
        const auto start = Steady::now();
        for (int i = 0; i < kRounds; ++i) {
            there.SetEvent();
            back.Wait();
        }
        return MicrosecondsSince(start) / kRounds;
    });
    over.store(true);
    there.SetEvent();
    partner->WaitForEnd(10000);
    return cost;
}

// Answers every read with the echo of a command that reads a byte.
class AnsweringDriver final : public kalvio::DeviceDriver {
public:
    kalvio::DeviceHandle Open(std::string_view) override { return kalvio::DeviceHandle{1}; }
    kalvio::DriverReply Control(kalvio::DeviceHandle, const kalvio::DriverRequest& request) override {
        constexpr std::uint8_t kAnswer[16] = {0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0, 7};
        const std::size_t length = std::min(request.dataFromUnit.size(), std::size(kAnswer));
        std::copy_n(kAnswer, length, request.dataFromUnit.begin());
        return {true, static_cast<std::uint32_t>(length), 0};
    }
    void Close(kalvio::DeviceHandle) override {}
};

// Processor time, in microseconds a command: one thread, which others may keep from its processor.
double RunCommands(kalvio::DeviceDriver& driver, int count) {
    constexpr std::uint8_t kCommand[20] = {0, 0, 0xAB, 0xCD, 0, 0, 0,    3,    0,   0,
                                           0, 0, 0,    0,    0, 0, 0x7A, 0xFC, 'X', 0};
    std::uint8_t answer[16] = {};
    const std::clock_t start = std::clock();
    for (int i = 0; i < count; ++i) {
        driver.Control(kalvio::DeviceHandle{1}, {kalvio::kControlBulkWrite, {}, kCommand, {}});
        driver.Control(kalvio::DeviceHandle{1}, {kalvio::kControlBulkRead, {}, {}, answer});
    }
    return static_cast<double>(std::clock() - start) * 1e6 / CLOCKS_PER_SEC / count;
}

// A command with its bytes, three lines in a file, beside the same without a trace.
double TracingCommands(int count) {
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "kalvio-trace-benchmark.txt";
    AnsweringDriver bare;
    const double cost = Best(3, [&] {
        std::ofstream out(file, std::ios::binary);
        kalvio::bench::DriverTrace trace(
            bare, [&out](const std::string& line) { out << line << '\n'; }, true);
        const double traced = RunCommands(trace, count);
        return traced - RunCommands(bare, count);
    });
    std::filesystem::remove(file);
    return cost;
}

struct Row {
    const char* what;
    std::vector<int> sizes;
    std::function<double(int size)> measure; // microseconds each
    double aim;                              // at any size; 0: at most twice the first
};

// Whether the aim is met at every size.
bool Show(const Row& row) {
    std::printf("%-34s", row.what);
    double first = 0.0;
    double worst = 0.0;
    for (const int size : row.sizes) {
        const double cost = row.measure(size);
        first = size == row.sizes.front() ? cost : first;
        worst = std::max(worst, cost);
        std::printf("  %6d: %8.3f us", size, cost);
    }
    const double aim = row.aim != 0.0 ? row.aim : 2.0 * first;
    const bool met = worst <= aim;
    std::printf("  aim %.3f us: %s\n", aim, met ? "met" : "MISSED");
    return met;
}

} // namespace

int main() {
    CHostApplication application;
    InstallHostApplication(&application);
    kalvio::preprocessor::SetThreaded(false);
    const Row rows[] = {
        {"adding distinct watched results", {100, 1000, 4000}, AddingDistinctResults, 2.0},
        {"destroying watches", {100, 1000, 10000}, DestroyingWatches, 0.5},
        {"notifying one of n results", {100, 1000, 4000}, NotifyingOneOf, 0.1},
        {"event round trip, n idle waiters", {0, 4, 16, 64, 256}, EventRoundTrip, 0.0},
        {"commands traced with their bytes", {30000, 300000}, TracingCommands, 1.0},
    };
    bool met = true;
    for (const Row& row : rows) {
        met = Show(row) && met;
    }
    InstallHostApplication(nullptr);
    return met ? 0 : 1;
}
