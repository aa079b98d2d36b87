// The hardware object called from several threads at once: no exchange is parted, no relay is hurried, and an
// armed address check always meets its own write.

#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <thread>

namespace kalvio::test {
namespace {

constexpr int kRounds = 60;
constexpr std::uint32_t kScratch = 600; // DSP memory that no result block is written to

TEST(ThreadedHardwareTest, CallersDoNotPartEachOthersExchanges) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    std::atomic<int> faults{0};
    const auto expect = [&faults](bool good) { faults += good ? 0 : 1; };
    const auto repeat = [](auto round) {
        return std::thread([round] {
            for (int i = 0; i < kRounds; ++i) {
                round(i);
            }
        });
    };
    std::vector<std::thread> callers;
    for (const std::uint8_t dsp : {std::uint8_t{0}, std::uint8_t{1}}) {
        callers.push_back(repeat([&, dsp](int i) {
            const auto word = static_cast<std::uint32_t>(i);
            std::uint32_t read = 0;
            expect(rig.hardware.DSPPutMem24(dsp, 'X', kScratch, word) == 0);
            expect(rig.hardware.DSPGetMem24(dsp, 'X', kScratch, read) == 0 && read == word);
        }));
    }
    for (const std::uint16_t address : {std::uint16_t{0x1000}, std::uint16_t{0x2000}}) {
        callers.push_back(repeat([&, address](int i) {
            expect(rig.hardware.MicroPutMem('X', address, static_cast<std::uint8_t>(i), 1) == 0);
        }));
    }
    callers.push_back(repeat([&](int i) {
        expect(rig.hardware.AnaloguePutMem('r', static_cast<std::uint8_t>(i % 2 == 0 ? 0x21 : 0x20)) == 0);
    }));
    callers.push_back(repeat([&](int i) {
        DSPGeneratorDetails dsp;
        MicroGeneratorDetails micro;
        micro.m[5] = static_cast<std::uint8_t>(i % 2 == 0 ? 0x04 : 0x00);
        micro.m[4] = 0x04;
        expect(rig.hardware.SendGeneratorDetails(&dsp, &micro) == 0);
        rig.hardware.SetResultReady(kResultRmsA, kResRmsA, 1);
        rig.hardware.IsResultReady(kResultRmsA, kNoDetector);
    }));
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(faults.load(), 0);
    EXPECT_EQ(rig.hardware.GetLinkErrorCount(), 0);
    EXPECT_TRUE(rig.unit.ProtocolErrors().empty());
}

} // namespace
} // namespace kalvio::test
