// Locks, and the hardware object called from several threads at once: no exchange is parted, no relay is
// hurried, and an armed address check always meets its own write.

#include "hardware/EchoDriver.h"
#include "hardware/PeripheralExchange.h"
#include "hardware/link/Holding.h"
#include "hardware/link/QuietLock.h"
#include "support/CountedAllocations.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gtest/gtest.h>

#include <numeric>
#include <thread>

namespace kalvio::test {
namespace {

struct Link {
    Link() { EXPECT_TRUE(transport.USBInitialise()); }
    EchoDriver driver;
    UsbTransport transport{driver};
    CommandSet commands{transport};
};

template<typename Lock>
void WaitForWaiting(const Lock& lock, std::uint32_t callers) {
    while (lock.Waiting() != callers) {
        std::this_thread::yield();
    }
}

void JoinAll(std::vector<std::thread>& threads) {
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(ThreadedFairLock, ServesItsCallersInTheOrderInWhichTheyCame) {
    FairLock lock;
    std::vector<std::uint32_t> order;
    std::vector<std::thread> callers;
    lock.lock();
    for (std::uint32_t i = 0; i < 20; ++i) { // more than it has words to sleep on
        callers.emplace_back([&lock, &order, i] {
            const Holding hold(lock);
            order.push_back(i);
        });
        WaitForWaiting(lock, i + 1);
    }
    lock.unlock();
    JoinAll(callers);
    std::vector<std::uint32_t> expected(20);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
    EXPECT_EQ(lock.Waiting(), 0u);
}

TEST(ThreadedFairLock, IsItsOwnersToTakeAgain) {
    FairLock lock;
    const auto others = [&lock] {
        bool got = false;
        std::thread([&] {
            got = lock.try_lock();
            if (got) {
                lock.unlock();
            }
        }).join();
        return got;
    };
    lock.lock();
    EXPECT_TRUE(lock.try_lock());
    EXPECT_FALSE(others());
    lock.unlock();
    EXPECT_FALSE(others());
    lock.unlock();
    EXPECT_TRUE(others());
    EXPECT_TRUE(lock.try_lock());
    EXPECT_TRUE(lock.try_lock());
    lock.unlock();
    EXPECT_FALSE(others());
    lock.unlock();
    EXPECT_TRUE(others());
}

TEST(ThreadedHardware, EachOfItsLocksKeepsOthersOut) {
    UnitRig rig;
    CHardware& hardware = rig.hardware;
    using Step = std::function<void()>;
    const std::pair<Step, Step> locks[] = {
        {[&] { EXPECT_EQ(hardware.LockResults(), 1); }, [&] { EXPECT_EQ(hardware.UnlockResults(), 1); }},
        {[&] { EXPECT_EQ(hardware.LockHWAccess(), 1); }, [&] { EXPECT_EQ(hardware.UnlockHWAccess(), 1); }},
        {[&] { hardware.LockSampleBuffer(); }, [&] { hardware.UnlockSampleBuffer(); }}};
    for (const auto& [lock, unlock] : locks) {
        int counted = 0; // guarded by the lock
        std::vector<std::thread> callers;
        for (int caller = 0; caller < 4; ++caller) {
            callers.emplace_back([&, take = lock, release = unlock] {
                for (int i = 0; i < 100; ++i) {
                    take();
                    take();
                    const int seen = counted;
                    std::this_thread::yield();
                    release();
                    counted = seen + 1;
                    release();
                }
            });
        }
        JoinAll(callers);
        EXPECT_EQ(counted, 400);
    }
}

TEST(ThreadedPeripherals, AUnitThatIsParkedMeanwhileIsNotThere) {
    Link link;
    PeripheralExchange peripherals(link.commands);
    QuietLock& access = link.commands.HardwareAccess();
    const std::vector<std::uint8_t> frame = Hex("5505000050AA");
    std::vector<std::uint8_t> response(9, 7);
    std::uint16_t status = 0;
    access.lock();
    std::thread caller([&] { status = peripherals.Send(frame, response, 0); });
    WaitForWaiting(access, 1);
    link.commands.SetSuspended(true);
    access.unlock();
    caller.join();
    EXPECT_EQ(status, 0xFFFE);
    EXPECT_EQ(ToHex(response), "000000000000000000");
}

TEST(CommandSet, AClosingDeviceLeavesOutValuesAlone) {
    Link link;
    CommandSet& commands = link.commands;
    link.transport.SetTerminating(true);
    std::uint8_t byte = 0x77;
    std::uint32_t word = 0x78;
    EXPECT_EQ(commands.MicroGetMem('X', 1, byte), 0);
    EXPECT_EQ(commands.DSPGetMem24(0, 'X', 1, word), 0);
    std::array<int, 4> bits{1, 2, 3, 4};
    EXPECT_EQ(commands.MicroGetBit('S', 1, bits[0]), 0);
    EXPECT_EQ(commands.DSPGetBit(0, 'X', 1, 1, bits[1]), 0);
    EXPECT_EQ(commands.MicroWaitBit('X', 1, 1, 1, bits[2]), 0);
    EXPECT_EQ(commands.DSPWaitBit(0, 'X', 1, 1, 1, 1, bits[3]), 0);
    EXPECT_EQ(byte, 0x77);
    EXPECT_EQ(word, 0x78u);
    EXPECT_EQ(bits, (std::array<int, 4>{1, 2, 3, 4}));
}

TEST(CommandSet, NoCommandAllocates) {
    Link link;
    CommandSet& commands = link.commands;
    std::uint8_t block[44] = {};
    std::uint32_t word = 0;
    int bit = 0;
    const std::size_t before = allocationCount.load();
    commands.MicroPutMem('2', 0x52, 1, 1);
    commands.DSPGetMem24(0, 'X', 1, word);
    commands.DSPWaitBit(0, 'X', 1, 1, 1, 1, bit);
    commands.MicroPutMemBlock('2', 0x52, sizeof block, block, 1);
    commands.DSPGetMemBlock24(0, 'X', 1, 42, block);
    commands.DoCommand(12, sizeof block, block, sizeof block, block);
    EXPECT_EQ(allocationCount.load(), before);
}

TEST(ThreadedCommandSet, ArmingAndWriteAreNotParted) {
    Link link;
    std::vector<int> order; // 1 arms for thread 1, 101 writes of thread 1, …
    link.driver.onWrite = [&order](std::span<const std::uint8_t> bytes) {
        if (bytes.size() == 2) {
            order.push_back(bytes[1]);
        } else if (bytes.size() == 24) {
            order.push_back(bytes[17] + 100);
        }
    };
    std::vector<std::thread> threads;
    for (std::uint16_t device = 1; device <= 3; ++device) {
        threads.emplace_back([&link, device] {
            for (int i = 0; i < 50; ++i) {
                link.commands.MicroPutMem('2', device, 0, 1);
            }
        });
    }
    JoinAll(threads);
    ASSERT_EQ(order.size(), 300u);
    for (std::size_t i = 0; i < order.size(); i += 2) {
        EXPECT_EQ(order[i + 1], order[i] + 100);
    }
}

constexpr int kRounds = 60;
constexpr std::uint32_t kScratch = 600; // DSP memory that no result block is written to

TEST(ThreadedHardware, CallersDoNotPartEachOthersExchanges) {
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
            expect(rig.hardware.DSPPutControlBits(0, 0, 1U << (dsp + 2 * (i % 8))) == 0);
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
    JoinAll(callers);
    EXPECT_EQ(faults.load(), 0);
    EXPECT_EQ(rig.hardware.GetLinkErrorCount(), 0);
    EXPECT_TRUE(rig.unit.ProtocolErrors().empty());
    EXPECT_EQ(rig.unit.PeekDsp(0, 'X', 24) & 0xFFFF, 0xFFFFu) << "every caller's bits of the control word";
}

} // namespace
} // namespace kalvio::test
