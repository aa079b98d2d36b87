// Every driver request of a whole run fails once, in every way: nothing hangs, leaks or crashes, and the unit
// comes up again.

#include "support/UnitRig.h"

#include <gtest/gtest.h>

namespace kalvio::test {
namespace {

using simulator::Fault;
using simulator::FaultKind;

struct FaultShape {
    const char* name;
    FaultKind kind;
    std::uint32_t value;
};

// Under the sanitizers, where each run takes ten times as long, every third request.
#ifdef __SANITIZE_ADDRESS__
constexpr std::uint32_t kStride = 3;
#else
constexpr std::uint32_t kStride = 1;
#endif

// "any" is every write, read, reset and descriptor request.
constexpr FaultShape kShapes[] = {
    {"any", FaultKind::FailAny, 0},          {"echo", FaultKind::WrongEcho, 0},
    {"refusal", FaultKind::Refuse, 0x0205},  {"address check", FaultKind::Refuse, 0x0118},
    {"short", FaultKind::ShortAnswer, 0},    {"silence", FaultKind::Silence, 0},
    {"disconnect", FaultKind::Disconnect, 0}};

class FaultSweep : public testing::TestWithParam<FaultShape> {
protected:
    // Makes the k-th event of the kind fail while `operation` runs, for every k until it no longer comes;
    // a failed reset comes with it every other time. `check(shown)` judges each run.
    template<typename Operation, typename Check>
    void Sweep(Operation operation, Check check) {
        bool shown = true;
        for (std::uint32_t k = 1; shown; k += kStride) {
            SCOPED_TRACE(testing::Message() << GetParam().name << " " << k);
            rig.host.user.Clear();
            rig.host.debugLines.clear();
            rig.host.mainWindow.bringUpFailures.clear();
            rig.unit.ClearLogs();
            const std::uint32_t before = rig.unit.FaultsShown();
            rig.unit.AddFault({GetParam().kind, k, 1, GetParam().value});
            if (k % 2 == 0) {
                rig.unit.AddFault({FaultKind::FailReset, 1});
            }
            const int result = operation();
            shown = rig.unit.FaultsShown() != before;
            rig.unit.ClearFaults();
            check(result, shown);
            // What a failed reset left in the unit spoils one more exchange, not the next run.
            rig.hardware.DSPSendCommand(0, 0x3C);
            if (HasFailure()) {
                return;
            }
        }
    }

    // Whatever happened before: shut down, up again, and all is well.
    void ExpectRecovery() {
        rig.hardware.TerminateHardware();
        EXPECT_FALSE(rig.unit.IsOpen());
        EXPECT_EQ(rig.BringUp(), 1);
        EXPECT_TRUE(rig.unit.IsInitialised());
        EXPECT_EQ(rig.HWRunning(), 1);
    }

    // A refused address check is always told.
    void ExpectAddressCheckTold(bool shown) {
        if (shown && GetParam().value == 0x0118) {
            const std::vector<CString> texts = rig.host.user.Texts();
            EXPECT_TRUE(std::any_of(texts.begin(), texts.end(), [](const CString& text) {
                return text.starts_with("The I2C memory address check failed on a call to ");
            }));
        }
    }

    UnitRig rig;
};

TEST_P(FaultSweep, BringUp) {
    int runs = 0;
    Sweep([this] { return rig.BringUp(); },
          [this, &runs](int result, bool shown) {
              EXPECT_TRUE(shown || result == 1);
              EXPECT_TRUE(result == 1 || !rig.host.user.Texts().empty() ||
                          !rig.host.mainWindow.bringUpFailures.empty());
              // The next run shows that the unit comes up again as far as its own fault; all the way now and
              // then.
              if (++runs % 8 == 0) {
                  ExpectRecovery();
              }
              rig.hardware.TerminateHardware();
              EXPECT_FALSE(rig.unit.IsOpen());
          });
    ExpectRecovery();
}

TEST_P(FaultSweep, CalibrationWriteWithVerify) {
    ASSERT_EQ(rig.BringUp(), 1);
    Sweep([this] { return rig.hardware.WriteMainBoardTable(); },
          [this](int result, bool shown) {
              // Nobody notices that half of the board's version is missing from an answer.
              const bool unnoticed = GetParam().kind == FaultKind::ShortAnswer && result == 1;
              EXPECT_TRUE(unnoticed || result == (shown ? 0 : 1));
              ExpectAddressCheckTold(shown);
              if (GetParam().kind == FaultKind::Disconnect) {
                  ExpectRecovery();
              }
          });
    ExpectRecovery();
}

TEST_P(FaultSweep, ImageLoad) {
    ASSERT_EQ(rig.BringUp(), 1);
    const CString image = rig.directory.MakeFile("image", 70000);
    Sweep(
        [&] {
            const int fpga = rig.hardware.FPGALoad(image);
            return fpga != 0 ? fpga : rig.hardware.DSPLoad(1, image, 1);
        },
        [this](int result, bool shown) {
            EXPECT_EQ(result != 0, shown);
            ExpectRecovery();
        });
}

TEST_P(FaultSweep, SampleRateChange) {
    ASSERT_EQ(rig.BringUp(), 1);
    Sweep([this] { return rig.hardware.SetAnalogueSampleRate(SampleRate::k192kHz, 1, 1); },
          [this](int result, bool shown) {
              EXPECT_TRUE(shown || result == 0);
              ExpectAddressCheckTold(shown);
              if (GetParam().kind == FaultKind::Disconnect) {
                  ExpectRecovery();
              }
          });
    ExpectRecovery();
}

TEST_P(FaultSweep, Shutdown) {
    ASSERT_EQ(rig.BringUp(), 1);
    Sweep(
        [this] {
            rig.hardware.TerminateHardware();
            return rig.HWRunning();
        },
        [this](int running, bool) {
            EXPECT_EQ(running, 0);
            ExpectRecovery();
        });
}

INSTANTIATE_TEST_SUITE_P(EveryFault, FaultSweep, testing::ValuesIn(kShapes), [](const auto& shape) {
    std::string name = shape.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
});

} // namespace
} // namespace kalvio::test
