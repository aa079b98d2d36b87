// What loading and saving a configuration with three adapters, ten arrays and 500 channels costs: requests to
// the unit, and time beside them. Fails when an aim is missed.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "reference_host/application/ReferenceHost.h"
#include "testing/ManualClock.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

using namespace kalvio;
using namespace kalvio::reference_host;
using Time = std::chrono::steady_clock;

constexpr int kArrays = 10;
constexpr int kChannelsOfArray = 50;
constexpr int kRuns = 20;
constexpr double kMostOwnMicroseconds = 2000.0; // of a load, beside the driver
constexpr double kMostSaveMicroseconds = 50000.0;

double Microseconds(Time::duration spent) {
    return std::chrono::duration<double, std::micro>(spent).count();
}

// Counts the requests and the time that the unit takes for them.
class CountingDriver final : public DeviceDriver {
public:
    explicit CountingDriver(DeviceDriver& unit) : m_unit(unit) {}
    DeviceHandle Open(std::string_view name) override { return m_unit.Open(name); }
    void Close(DeviceHandle device) override { m_unit.Close(device); }
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override {
        const auto start = Time::now();
        const DriverReply reply = m_unit.Control(device, request);
        ++requests;
        inUnit += Time::now() - start;
        return reply;
    }

    int requests = 0;
    Time::duration inUnit{};

private:
    DeviceDriver& m_unit;
};

void Fill(ReferenceHost& host) {
    for (int number = 0; number < kArrays; ++number) {
        const CString name = Format("array %d", number);
        host.Network().DefineArray(name.c_str(), 0, 0);
        CChannelArray& array = *host.Network().GetChannelArray(name.c_str());
        for (int channel = 0; channel < kChannelsOfArray; ++channel) {
            const auto place = static_cast<unsigned>(channel % 32);
            array.AddChannel({static_cast<std::uint8_t>(1 + channel / 32), kClassTypeIOSwitcher,
                              static_cast<std::uint8_t>(place / 16), static_cast<std::uint8_t>(place / 8 % 2),
                              static_cast<std::uint8_t>(place % 8), static_cast<std::uint8_t>(channel % 2),
                              0});
        }
    }
    constexpr std::uint8_t kAdapters[] = {8, 9, 10};
    for (const std::uint8_t address : kAdapters) {
        host.Network().GetFormatConverterSettings()->GetKEDAAdapterSettings()->GetKEDAAdapter(address);
    }
}

bool Aim(const char* what, bool met) {
    std::printf("%-78s %s\n", what, met ? "aim met" : "aim NOT met");
    return met;
}

} // namespace

int main() {
    const test::ManualClock clock; // waits cost nothing
    CountingDriver* driver = nullptr;
    ReferenceHostOptions options{.peripherals = "switcher@1,switcher@2,keda@8,keda@9,keda@10",
                                 .threaded = false};
    options.wrapDriver = [&driver](DeviceDriver& unit) {
        auto counting = std::make_unique<CountingDriver>(unit);
        driver = counting.get();
        return counting;
    };
    ReferenceHost host(options);
    if (!host.BringUp().Ok()) {
        return 1;
    }
    Fill(host);
    const Configuration configuration = host.MakeConfiguration();
    const auto bytes = configuration.Store();
    bool sound = true;
    double own = 1e12;
    int requests = 0;
    for (int run = 0; run < kRuns; ++run) {
        driver->requests = 0;
        driver->inUnit = {};
        const auto start = Time::now();
        const LoadOutcome outcome = configuration.LoadBytes(bytes);
        const auto spent = Time::now() - start;
        sound =
            sound && outcome.Ok() && outcome.notSent.empty() && (run == 0 || requests == driver->requests);
        requests = driver->requests;
        own = std::min(own, Microseconds(spent - driver->inUnit));
    }
    const CString path = (std::filesystem::temp_directory_path() / "kalvio-benchmark.kvc").string();
    double saving = 1e12;
    for (int run = 0; run < kRuns; ++run) {
        const auto start = Time::now();
        sound = sound && configuration.Save(path).empty();
        saving = std::min(saving, Microseconds(Time::now() - start));
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path + "~");
    std::printf("%zu bytes; load: %d driver requests, %.1f us beside them; save: %.1f us with the disk\n",
                bytes.size(), requests, own, saving);
    const bool loads = Aim("Loads and saves well, with the same requests each time:", sound);
    const bool quick = Aim("At most 2 ms of our own for a load:", own <= kMostOwnMicroseconds);
    return loads & quick & Aim("At most 50 ms for a save:", saving <= kMostSaveMicroseconds) ? 0 : 1;
}
