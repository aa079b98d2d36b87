// What switching adds to the exchanges that it makes: one operation of a switcher, and an exclusive switch in
// arrays of 16 to 2,048 channels. Fails when an aim is missed.

#include "AnsweringBus.h"
#include "RunningHardware.h"
#include "Timing.h"

#include "peripheral_network/KvNetSettings.h"
#include "switching/ChannelArray.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <array>

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;

constexpr double kMostPerOperation = 500.0;   // ns beside the bare exchange
constexpr double kMostPerSwitch = 100000.0;   // ns beside the exchanges, at 2,048 channels
constexpr double kMostGrowthPerChannel = 2.0; // of the largest array over one an eighth its size
constexpr int kLargest = 2048;
constexpr int kSmallest = 16;
constexpr int kChannelsOfDevice = 32;

struct Rig {
    Rig() {
        running.application.kvNet = &network;
        network.Initialise();
    }

    AnsweringBus bus;
    RunningHardware running{bus};
    CKvNetSettings network;
};

struct Operation {
    const char* name;
    std::array<std::uint8_t, 10> frame; // the same without the library's help
    std::uint8_t frameBytes;
    std::uint8_t answerBytes;
    short (*run)(CIOSwitcher& device);
};

constexpr Operation kOperations[] = {
    {"BusAll",
     {0x55, 3, 3, 0x82, 0xFF, 0xFF, 0, 0xCF, 0xAA},
     9,
     9,
     [](CIOSwitcher& device) { return device.BusAll(0, 0, 1); }},
    {"BusGroupExclusiveChannel",
     {0x55, 3, 1, 0x8C, 4, 0xC1, 0xAA},
     7,
     7,
     [](CIOSwitcher& device) { return device.BusGroupExclusiveChannel(0, 0, 2, 1); }},
    {"BusExclusiveChannel",
     {0x55, 3, 3, 0x82, 4, 0, 0, 0xC9, 0xAA},
     9,
     9,
     [](CIOSwitcher& device) { return device.BusExclusiveChannel(0, 0, 2, 0, 1); }},
};

double BareExchange(Rig& rig, const Operation& operation) {
    std::array<std::uint8_t, 16> answer{};
    return PerCall([&] {
        rig.running.hardware.SendKvNetCommand(operation.frame.data(), operation.frameBytes, answer.data(),
                                              operation.answerBytes, 0);
    });
}

bool CompareOperations(Rig& rig) {
    std::printf("%-28s %12s %12s %10s\n", "operation", "library", "bare", "own");
    double most = 0.0;
    bool sound = true;
    CIOSwitcher& device = *rig.network.GetSwitcherSettings()->GetIOSwitcherSettings()->GetIOSwitcher(3);
    for (const Operation& operation : kOperations) {
        const double bare = BareExchange(rig, operation);
        sound = sound && operation.run(device) == KVNET_OK;
        const double own = PerCall([&] { operation.run(device); }) - bare;
        std::printf("%-28s %9.1f ns %9.1f ns %7.1f ns\n", operation.name, bare + own, bare, own);
        most = std::max(most, own);
    }
    return Aim("Operations answer well:", sound) &
           Aim("At most 0.5 us of our own per operation:", most <= kMostPerOperation);
}

// Both groups of both buses of one device after the other.
void Fill(CChannelArray& array, int channels) {
    for (int entry = 0; entry < channels; ++entry) {
        const auto place = static_cast<unsigned>(entry % kChannelsOfDevice);
        array.AddChannel({static_cast<std::uint8_t>(entry / kChannelsOfDevice), kClassTypeIOSwitcher,
                          static_cast<std::uint8_t>(place / 16), static_cast<std::uint8_t>(place / 8 % 2),
                          static_cast<std::uint8_t>(place % 8), 0, 0});
    }
}

void SetStates(CChannelArray& array, bool all) {
    ChannelDetails entry;
    for (short index = 0; array.GetChannelDetails(index, entry) != 0; ++index) {
        entry.state = all || index == 0 ? 1 : 0;
        array.SetChannelDetails(index, entry);
    }
}

struct Switch {
    int exchanges;
    int due; // by the rules
    double own;
    bool sound;
};

// Switches the last channel on, with the first one or all of them on before.
Switch Measure(Rig& rig, int channels, bool all, double bare, int requestsOfExchange) {
    CChannelArray array("array");
    Fill(array, channels);
    const auto last = static_cast<short>(channels);
    SetStates(array, all);
    rig.bus.requests = 0;
    const bool sound = array.ExclusiveChannel(last, 1) == KVNET_OK;
    const int exchanges = rig.bus.requests / requestsOfExchange;
    // The run of the channel and the channel itself; besides, every other run of which a channel was on.
    const int runs = (channels + 15) / 16;
    const int others = all ? runs - 1 : std::min(runs - 1, 1);
    const double time = Fastest(
        400, [&] { SetStates(array, all); }, [&] { array.ExclusiveChannel(last, 1); });
    return {exchanges, 2 + others, time - exchanges * bare, sound};
}

bool CompareGrowth(Rig& rig) {
    const double bare = BareExchange(rig, kOperations[0]);
    rig.bus.requests = 0;
    std::array<std::uint8_t, 16> answer{};
    rig.running.hardware.SendKvNetCommand(kOperations[0].frame.data(), 9, answer.data(), 9, 0);
    const int requestsOfExchange = rig.bus.requests;
    std::printf("\nExclusive switch (an exchange is %d driver requests and %.1f ns):\n", requestsOfExchange,
                bare);
    std::printf("%8s %8s | %-34s | %-34s\n", "", "", "one channel on before", "all channels on before");
    std::printf("%8s %8s | %9s %4s %9s %9s | %9s %4s %9s %9s\n", "channels", "devices", "exchanges", "due",
                "own", "a channel", "exchanges", "due", "own", "a channel");
    bool counts = true;
    double most = 0.0;
    double perChannel[2] = {0.0, 0.0}; // of an eighth of the largest, and of the largest
    for (int channels = kSmallest; channels <= kLargest; channels *= 2) {
        std::printf("%8d %8d", channels, (channels + kChannelsOfDevice - 1) / kChannelsOfDevice);
        for (const bool all : {false, true}) {
            const Switch measured = Measure(rig, channels, all, bare, requestsOfExchange);
            std::printf(" | %9d %4d %6.2f us %6.1f ns", measured.exchanges, measured.due,
                        measured.own / 1000.0, measured.own / channels);
            counts = counts && measured.sound && measured.exchanges == measured.due;
            most = std::max(most, measured.own);
            if (all && channels * 8 >= kLargest) {
                perChannel[channels == kLargest ? 1 : 0] = channels * 8 == kLargest || channels == kLargest
                                                               ? measured.own / channels
                                                               : perChannel[0];
            }
        }
        std::printf("\n");
    }
    return Aim("No exchange more than the rules demand:", counts) &
           Aim("At most 100 us of our own for a switch among 2,048 channels:", most <= kMostPerSwitch) &
           Aim("Linear growth (at most twice as much a channel as with an eighth of them):",
               perChannel[1] <= kMostGrowthPerChannel * perChannel[0]);
}

} // namespace

int main() {
    Rig rig;
    const bool operations = CompareOperations(rig);
    const bool growth = CompareGrowth(rig);
    return operations && growth ? EXIT_SUCCESS : EXIT_FAILURE;
}
