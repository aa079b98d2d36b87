// What a KEDA adapter adds to the exchanges that it makes: a setter with the command that sends its register
// group, beside the bare exchange of the same frame; and which frames a whole adapter takes. Fails when an
// aim is missed.

#include "AnsweringBus.h"
#include "RunningHardware.h"
#include "Timing.h"

#include "adapters/KEDAAdapter.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/bus/KvNetErrors.h"

namespace {

using namespace kalvio;
using namespace kalvio::benchmarks;

constexpr double kMostOwn = 500.0; // ns of a setter with its command beside the bare exchange
constexpr std::uint8_t kDevice = 8;
constexpr std::uint8_t kClassType = 0x21;
constexpr std::uint8_t kAnswerBytes = 6;

struct Operation {
    const char* what;
    std::uint8_t command;
    std::uint8_t dataBytes;
    bool (*run)(CKEDAAdapter& adapter, int value); // another value each time, so that the image changes
};

constexpr Operation kOperations[] = {
    {"generator bypass", 0xC1, 1,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetGenBypass(value & 1) == 1 && adapter.UpdateRelayCtrl() == KVNET_OK;
     }},
    {"audio voltage", 0xC2, 1,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetAudioVoltageSelect(value % 6, 0) == 1 && adapter.UpdateIOCtrl() == KVNET_OK;
     }},
    {"generator routing", 0xC3, 4,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetGenRouting(1, 1, value % 3) == 1 && adapter.UpdateGenRouting() == KVNET_OK;
     }},
    {"analyser routing", 0xC6, 2,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetAnaRouting(0, 1, 1 + value % 2) == 1 && adapter.UpdateAnaRouting() == KVNET_OK;
     }},
    {"generator format", 0xC4, 3,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetDataLength(0, 16 + value % 8) == 1 && adapter.UpdateGenAnaFormat(0) == KVNET_OK;
     }},
    {"analyser clocks", 0xC8, 2,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetMasterClockMultiplier(1, value % 2 == 0 ? 128 : 256) == 1 &&
                adapter.UpdateGenAnaClocks(1) == KVNET_OK;
     }},
    {"delays", 0xCE, 1,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetDelay(1, 7 * (value % 6)) == 1 && adapter.UpdateDelays() == KVNET_OK;
     }},
    {"control mode", 0xC9, 1,
     [](CKEDAAdapter& adapter, int value) {
         return adapter.SetControlMode(value % 2) == 1 && adapter.UpdateCtrlMode() == KVNET_OK;
     }},
};

// What the whole adapter takes: the status, then every register group once.
constexpr std::uint8_t kWholeAdapter[] = {0x00, 0xC1, 0xC2, 0xC4, 0xC7, 0xC5, 0xC8, 0xC3, 0xC6, 0xCE, 0xC9};

struct Rig {
    Rig() {
        running.application.kvNet = &network;
        network.Initialise();
        adapter.SetSerialClockDir(1, CLOCKDIR_OUT); // or the analyser takes no delays
    }
    ~Rig() { running.application.kvNet = nullptr; }
    Rig(const Rig&) = delete;
    Rig& operator=(const Rig&) = delete;

    double Bare(const Operation& operation) {
        std::array<std::uint8_t, kKvNetLongestFrame> frame{kKvNetStart, kDevice, operation.dataBytes,
                                                           operation.command};
        std::array<std::uint8_t, kKvNetLongestFrame> answer{};
        const auto length = static_cast<std::uint8_t>(operation.dataBytes + kKvNetFramingBytes);
        return PerCall(
            [&] { running.hardware.SendKvNetCommand(frame.data(), length, answer.data(), kAnswerBytes, 0); });
    }

    AnsweringBus bus;
    RunningHardware running{bus};
    CKvNetSettings network;
    CKEDAAdapter adapter{CKvNetStatus(kDevice, std::uint32_t{kClassType}), 0};
};

bool Compare(Rig& rig, const Operation& operation) {
    int value = 0;
    bool done = true;
    const double whole = PerCall([&] { done = operation.run(rig.adapter, ++value) && done; });
    const double bare = rig.Bare(operation);
    std::printf("%-20s %9.1f ns %9.1f ns %9.1f ns\n", operation.what, whole, bare, whole - bare);
    return done && whole - bare <= kMostOwn;
}

bool SendsEachGroupOnce(Rig& rig) {
    rig.bus.recording = true;
    const bool done = rig.adapter.UpdateDeviceFromSettings() == 1;
    rig.bus.recording = false;
    std::printf("a whole adapter: %zu exchanges:", rig.bus.commands.size());
    for (const std::uint8_t command : rig.bus.commands) {
        std::printf(" %02X", command);
    }
    std::printf("\n");
    return done && std::ranges::equal(rig.bus.commands, kWholeAdapter);
}

} // namespace

int main() {
    Rig rig;
    std::printf("%-20s %12s %12s %12s\n", "setter and command", "library", "bare", "own");
    bool cheap = true;
    for (const Operation& operation : kOperations) {
        cheap = Compare(rig, operation) && cheap;
    }
    const bool exact = SendsEachGroupOnce(rig);
    const bool met = Aim("At most 0.5 us of our own for a setter with its command:", cheap);
    return Aim("The status and every register group once, in their order:", exact) && met ? EXIT_SUCCESS
                                                                                          : EXIT_FAILURE;
}
