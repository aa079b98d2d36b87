// A scan and a download disturbed at every frame, in every way, and then in random pairs: whatever happens,
// the download says that it was sent only when the device holds the file, and a device that was left with
// half of one takes the next download.

#include "peripheral_network/NetworkRig.h"
#include "simulator/peripherals/FirmwareReceiver.h"

#include <random>

namespace kalvio::test {
namespace {

using simulator::FaultKind;

enum class Disturbance {
    LostThere,
    SpoiltThere,
    LostBack,
    SpoiltBack,
    Cut,
    Twice,
    OtherAddress,
    WrongEcho,
    PowerLost
};
constexpr int kDisturbances = 9;

// Which frame, counted from 0, is disturbed how.
using Plan = std::map<int, Disturbance>;

// A device that takes firmware, at the end of a line that disturbs what it carries.
class DisturbedDevice {
public:
    explicit DisturbedDevice(Plan given) : plan(std::move(given)) {}

    Bytes Exchange(std::span<const std::uint8_t> frame) {
        const auto planned = plan.find(frames++);
        if (planned == plan.end()) {
            return receiver.Answer(frame, 0).bytes;
        }
        if (planned->second == Disturbance::PowerLost && !std::exchange(isDark, true)) {
            receiver.LosePowerAtBlock(1);
        }
        if (planned->second == Disturbance::LostThere) {
            return {};
        }
        Bytes sent(frame.begin(), frame.end());
        if (planned->second == Disturbance::SpoiltThere) {
            sent[4] ^= 0x20;
        }
        return Disturbed(receiver.Answer(sent, 0).bytes, planned->second);
    }
    // Whether it holds every sector as the file has it.
    [[nodiscard]] bool Holds(const Bytes& file) const {
        std::map<std::uint8_t, Bytes> sectors;
        for (auto at = file.begin() + kFirmwareHeaderBytes; at != file.end(); at += kFirmwareRecordBytes) {
            Bytes& sector = sectors[static_cast<std::uint8_t>(*at >> 4)];
            sector.insert(sector.end(), at + 2, at + kFirmwareRecordBytes);
        }
        return receiver.Firmware() == sectors;
    }

    Plan plan;
    simulator::FirmwareReceiver receiver{9, {.identity = {0x21, 0, 1}}};

private:
    static Bytes Disturbed(Bytes answer, Disturbance what) {
        const Bytes data(answer.begin() + (answer.empty() ? 0 : 4), answer.end() - (answer.empty() ? 0 : 2));
        const std::uint8_t command = answer.empty() ? std::uint8_t{0} : answer[3];
        switch (answer.empty() ? Disturbance::LostBack : what) {
        case Disturbance::SpoiltBack:
            answer[3] ^= 0x10;
            return answer;
        case Disturbance::Cut:
        case Disturbance::Twice:
            answer.resize(what == Disturbance::Cut ? 4 : 2 * answer.size(), 0x55);
            return answer;
        case Disturbance::OtherAddress:
        case Disturbance::WrongEcho:
            return what == Disturbance::WrongEcho ? AnswerFrame(9, 0xB1, data)
                                                  : AnswerFrame(10, command, data);
        default: // lost on the way back, or too late to be heard
            return {};
        }
    }

    int frames = 0;
    bool isDark = false;
};

struct DisturbedBus : testing::Test {
    DisturbedBus() { rig.network.SetShowErrorMessages(0); }

    DownloadOutcome Send(int cancelAt, int killAt = -1) try {
        ProgressLog progress;
        progress.cancelAt = cancelAt;
        progress.killAt = killAt;
        return rig.network.DownloadFirmwareFile({9, 0x10021U}, path, progress).outcome;
    } catch (const Killed&) {
        return DownloadOutcome::Cancelled;
    }
    std::shared_ptr<DisturbedDevice> Put(const Plan& plan) {
        auto device = std::make_shared<DisturbedDevice>(plan);
        rig.unit.AttachPeripheral(9, [device](auto frame) { return device->Exchange(frame); });
        return device;
    }
    // Notes whether a fault of the unit showed; it is over then, and the unit up again.
    void EndFault() {
        shown = rig.unit.FaultsShown() != std::exchange(faultsBefore, rig.unit.FaultsShown());
        rig.unit.ClearFaults();
        if (shown) {
            rig.hardware.TerminateHardware();
            EXPECT_EQ(rig.BringUp(), 1);
        }
        rig.unit.ClearLogs();
    }
    // One disturbed download; true when all is as it must be.
    bool Survives(const Plan& plan, int cancelAt = -1, int killAt = -1) {
        ++cases;
        const std::shared_ptr<DisturbedDevice> device = Put(plan);
        const bool sent = Send(cancelAt, killAt) == DownloadOutcome::Sent;
        EndFault();
        if (sent) {
            return device->Holds(image);
        }
        device->plan.clear();
        device->receiver.PowerOn();
        return Send(-1) == DownloadOutcome::Sent && device->Holds(image);
    }

    NetworkRig rig;
    Bytes image = Firmware({{1, 6}});
    CString path = rig.WriteFile("image", image);
    int cases = 0;
    bool shown = true;
    std::uint32_t faultsBefore = rig.unit.FaultsShown();
};

TEST_F(DisturbedBus, DownloadAtEveryFrame) {
    for (int frame = 0; frame < 8; ++frame) {
        EXPECT_TRUE(Survives({}, frame)) << "cancelled after " << frame;
        EXPECT_TRUE(Survives({}, -1, frame)) << "killed after " << frame;
        for (int what = 0; what < kDisturbances; ++what) {
            EXPECT_TRUE(Survives({{frame, Disturbance{what}}})) << frame << " " << what;
        }
    }
    using enum FaultKind;
    for (const auto kind :
         {FailAny, WrongEcho, Refuse, ShortAnswer, StaleInput, Silence, SlowAnswer, Disconnect}) {
        shown = true;
        for (std::uint32_t k = 1; shown; ++k) {
            rig.unit.AddFault({kind, k, 1, kind == Refuse ? 0x0205U : 1U});
            ASSERT_TRUE(Survives({})) << static_cast<int>(kind) << " " << k;
        }
    }
    // Twice in a row, so that the unit's second try does not help; over the end of a sector.
    image = Firmware({{1, 512}, {2, 3}});
    path = rig.WriteFile("image", image);
    for (const int frame : {0, 300, 511, 512, 514}) {
        for (int what = 0; what < kDisturbances; ++what) {
            EXPECT_TRUE(Survives({{frame, Disturbance{what}}, {frame + 1, Disturbance{what}}}))
                << frame << what;
        }
    }
}

TEST_F(DisturbedBus, DownloadInRandomPairs) {
    std::mt19937 random(1);
    const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
    while (cases < 20'000) {
        const int first = below(10);
        const Plan plan{{first, Disturbance{below(kDisturbances)}},
                        {first + 1 + below(8), Disturbance{below(kDisturbances)}}};
        ASSERT_TRUE(Survives(plan, below(10) == 0 ? below(8) : -1)) << "case " << cases;
    }
}

TEST_F(DisturbedBus, ScanAtEveryFrame) {
    rig.Attach(30, {AnswerFrame(30, 0x00, {0x11, 0x10, 0x01})});
    for (int frame = 0; frame < 2; ++frame) {
        for (int what = 0; what < kDisturbances; ++what) {
            Put({{frame, Disturbance{what}}});
            EXPECT_EQ(rig.network.FillDeviceList(), 1);
            EXPECT_EQ(rig.network.Devices().size(), 2U)
                << "the unit asks once more: " << frame << " " << what;
        }
    }
    EXPECT_EQ(rig.network.GetShowErrorMessages(), 0);
}

} // namespace
} // namespace kalvio::test
