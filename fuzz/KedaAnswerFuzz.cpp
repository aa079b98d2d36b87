// An adapter whose status, clocks and transfers are answered with anything.

#include "AnyBus.h"
#include "adapters/KEDAAdapter.h"

namespace {

using namespace kalvio;
using fuzz::AnyBus;
using fuzz::Require;

constexpr int kMostCalls = 80;
constexpr std::uint8_t kClassType = 0x21;

// A code of the library's own, or one that the bus gave.
void CheckCode(const AnyBus& bus, short code) {
    static const std::set<short> kOwn{KVNET_OK, KVNET_ERR_HARDWARE, KVNET_ERR_RESPONSE_MISMATCH};
    Require(kOwn.contains(code) || bus.statuses.contains(code), "a code is one that there is");
}

// Whatever the unit said: every accessor answers with a value of its table.
void CheckAdapter(CKEDAAdapter& adapter) {
    static const std::set<int> kRates{0, 32000, 44100, 48000, 88200, 96000, 176400, 192000};
    static const std::set<int> kMultipliers{64, 96, 128, 192, 256, 384, 512};
    for (const int which : {0, 1}) {
        const int slots = adapter.GetSubChannelsPerWire(which);
        Require(slots == 2 || slots == 4 || slots == 8 || slots == 16, "slots a wire are those of the table");
        Require(slots * adapter.GetNumWires(which) <= 16, "there are at most 16 slots");
        Require(adapter.GetSlotLength(which) % 8 == 0, "a slot has whole bytes");
        Require(kRates.contains(adapter.GetFrameClockFreq(which)), "a frame rate is one of the table");
        Require(kMultipliers.contains(adapter.GetMasterClockMultiplier(which)), "so is a multiplier");
        Require(adapter.GetBitClockFreq(which) ==
                    adapter.GetFrameClockFreq(which) * slots * adapter.GetSlotLength(which),
                "the bit clock follows");
        Require(adapter.GetDelay(which) % 7 == 0, "a delay is one of the steps");
        Require(adapter.GetAudioVoltageSelect() <= 7 && adapter.GetCtrlVoltageSelect() <= 7, "three bits");
    }
    Require(adapter.GetNumReceiveChars() <= CKEDAAdapter::kBufferBytes, "what was received fits");
    Require(adapter.GetI2CStatus() >= 0 && adapter.GetI2CStatus() <= 2, "a transfer has one of three states");
}

void ReadBack(CKEDAAdapter& adapter, const AnyBus& bus) {
    int wire = 0;
    int slot = 0;
    adapter.GetAnaRouting(0, wire, slot);
    const keda::Image before = adapter.Registers();
    const short code = adapter.GetUnitStatus();
    CheckCode(bus, code);
    const keda::Image& after = adapter.Registers();
    Require(code == KVNET_OK || after == before, "a status that failed changes nothing");
    for (const keda::Byte kept :
         {keda::kAnaRoutingA, keda::kAnaRoutingB, keda::kDelays, keda::kSlaveAddress}) {
        Require(after[kept] == before[kept], "what the unit does not tell stays");
    }
}

void One(CKEDAAdapter& adapter, const AnyBus& bus, std::uint8_t what, std::uint8_t argument) {
    const std::array<std::uint8_t, CKEDAAdapter::kBufferBytes> bytes{argument, what};
    const int count = argument % (CKEDAAdapter::kBufferBytes + 1);
    switch (what % 8) {
    case 0:
        return ReadBack(adapter, bus);
    case 1:
        return CheckCode(bus, adapter.ReadFrameClockFreq());
    case 2:
        Require(adapter.SetControlMode(0) == 1, "SPI is a mode");
        adapter.SendSPIData(count, bytes.data());
        return;
    case 3:
        Require(adapter.SetControlMode(1) == 1, "I2C is a mode");
        adapter.SendI2CData(count, bytes.data());
        return;
    case 4:
        adapter.UpdateDeviceFromSettings();
        return;
    case 5:
        return CheckCode(bus, adapter.BusExclusiveChannel(1 + (argument & 1), (argument >> 1) & 1,
                                                          argument >> 4, 0, what >> 7));
    case 6:
        adapter.RefreshStatus();
        return;
    default:
        adapter.SetSubChannelsPerWire(what >> 7, 2 << (argument & 3));
        return CheckCode(bus, adapter.UpdateGenAnaFormat(what >> 7));
    }
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    Bytes answered; // each call, its argument, then how the bus answers
    for (std::uint8_t call = 0; call < 60; ++call) {
        answered.insert(answered.end(), {call, static_cast<std::uint8_t>(call * 29), 0x47, call, 0x35});
    }
    return {Bytes(40), Bytes(120, 0x40), Bytes(200, 0x85), answered};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::OnAnyBus(data, size, [](CKvNetSettings&, AnyBus& bus, fuzz::FuzzInput& input) {
        CKEDAAdapter adapter(CKvNetStatus(8, std::uint32_t{kClassType}), 0);
        for (int call = 0; call < kMostCalls && !input.IsAtEnd(); ++call) {
            const std::uint8_t what = input.Byte();
            One(adapter, bus, what, input.Byte());
            CheckAdapter(adapter);
        }
    });
    return 0;
}
