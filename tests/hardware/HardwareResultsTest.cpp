#include "hardware/ByteAllocation.h"
#include "hardware/NotificationProbe.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ResultFlags, EveryResultHasItsIndex) {
    struct Case {
        int result;
        int index;
    };
    for (const Case& c : {Case{4008, 0},
                          {1234, 0},
                          {4009, 1},
                          {3008, 2},
                          {3009, 3},
                          {3051, 4},
                          {3054, 5},
                          {3057, 6},
                          {3216, 7},
                          {9991, 7},
                          {3208, 8},
                          {3210, 9},
                          {3209, 10},
                          {3211, 11},
                          {3251, 12},
                          {3253, 13},
                          {3351, 14},
                          {3352, 15}}) {
        EXPECT_EQ(CHardware::GetResultIndex(c.result), c.index) << c.result;
    }
}

TEST(ResultFlags, AreClearedByReadingAndNotifyInOppositeSenses) {
    UnitRig rig;
    CHardware& hardware = rig.hardware;
    const int detector = rig.host.fftDetectors.Add("Hum")->Id();
    static_cast<void>(TakeNotifications());

    hardware.SetResultReady(3208, kResRmsA, 0); // the pre-processor is not enabled
    hardware.SetFFTResultReady(3352, detector, 1);
    EXPECT_THAT(TakeNotifications(), IsEmpty());
    hardware.EnablePreprocessor(true);
    hardware.SetResultReady(3208, kResRmsA, 1);
    hardware.SetFFTResultReady(3352, detector, 0);
    EXPECT_THAT(TakeNotifications(), IsEmpty());
    EXPECT_EQ(hardware.IsResultReady(3208, 0), 1);
    EXPECT_EQ(hardware.IsResultReady(3208, 0), 0);
    EXPECT_EQ(hardware.IsResultReady(3351, detector), 0);
    EXPECT_EQ(hardware.IsResultReady(3352, detector), 1);
    EXPECT_EQ(hardware.IsResultReady(3352, detector), 0);
    hardware.SetResultReady(3208, kResRmsA, 0);
    hardware.SetFFTResultReady(3351, detector, 1);
    EXPECT_THAT(TakeNotifications(), ElementsAre("data 3208 0", Format("fft 3351 %d", detector)));
    EXPECT_EQ(hardware.IsResultReady(3351, detector), 1);
}

TEST(ResultFlags, UnknownDetectorsAndIndicesSetNothing) {
    UnitRig rig;
    CHardware& hardware = rig.hardware;
    const int last = [&rig] {
        int id = 0;
        for (int i = 0; i < kFftDetectorSlots; ++i) {
            id = rig.host.fftDetectors.Add(Format("D%d", i))->Id();
        }
        return id;
    }();
    EXPECT_EQ(hardware.GetIndexForFFTDetectorID(last), 39);
    EXPECT_EQ(hardware.GetIndexForFFTDetectorID(777), 40);
    hardware.SetFFTResultReady(3352, 777, 0);
    EXPECT_EQ(hardware.IsResultReady(3352, 777), 0);
    EXPECT_EQ(hardware.IsResultReady(3352, last), 0);
    rig.host.application.fftDetectors = nullptr;
    EXPECT_EQ(hardware.GetIndexForFFTDetectorID(last), -1);
    hardware.SetFFTResultReady(3352, last, 0);
    EXPECT_EQ(hardware.IsResultReady(3352, last), 0);
    hardware.SetResultReady(4008, static_cast<EResIndex>(16), 0);
    hardware.SetResultReady(4008, static_cast<EResIndex>(-1), 0);
    EXPECT_EQ(hardware.IsResultReady(4008, 0), 0);
}

TEST(SampleBuffers, RealAndDemoBuffersKeepTheirOwnSizes) {
    UnitRig rig;
    CHardware& hardware = rig.hardware;
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelA), nullptr);
    EXPECT_EQ(hardware.SetBufferSize(1000), 1);
    std::uint8_t* const real = hardware.GetSampleBuffer(kChannelB);
    ASSERT_NE(real, nullptr);
    EXPECT_NE(hardware.GetCTABuffer(kChannelA), nullptr);
    real[2999] = 7;
    EXPECT_EQ(hardware.SetBufferSize(1000), 1); // the same size: nothing is replaced
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelB)[2999], 7);

    hardware.SuspendDevice();
    EXPECT_EQ(hardware.GetBufferSize(), 0x80000U);
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelB), hardware.GetDemoSampleBuffer(kChannelB));
    EXPECT_EQ(hardware.GetDemoSampleBuffer(kChannelB)[0x80000 * 3 - 1], 0);
    EXPECT_EQ(hardware.SetBufferSize(2000), 1);
    hardware.UnsuspendDevice();
    EXPECT_EQ(hardware.GetBufferSize(), 1000U);
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelB), real);
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelBoth), nullptr);
}

TEST(SampleBuffers, RunningOutOfMemoryKeepsTheNewSize) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    static int left;
    left = 3; // of the four buffers
    InstallAllocationGate([](std::size_t) { return left-- > 0; });
    EXPECT_EQ(rig.hardware.SetBufferSize(500), 0);
    InstallAllocationGate(nullptr);
    EXPECT_EQ(rig.hardware.GetBufferSize(), 500U);
    EXPECT_NE(rig.hardware.GetSampleBuffer(kChannelB), nullptr);
    EXPECT_EQ(rig.hardware.GetCTABuffer(kChannelB), nullptr);
}

TEST(DspWords, CarryTheLow24Bits) {
    const DSPWord word = LongToDSPWord(-2);
    EXPECT_THAT(word.bytes, ElementsAre(0xFF, 0xFF, 0xFE));
    EXPECT_EQ(DSPWordToLong(word), 16777214);
    EXPECT_EQ(DSPWordToULong(LongToDSPWord(0x7F123456)), 0x123456U);
}

TEST(DspMap, TakesWholeBlocksAndResetsParts) {
    std::array<std::uint8_t, 45> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i + 1);
    }
    CDSPMap map;
    EXPECT_EQ(map.SetDSPWords(bytes.data(), 44), 0);
    EXPECT_EQ(DSPWordToULong(map.GetAt(0)), 0U);
    EXPECT_EQ(map.SetDSPWords(bytes.data(), 45), 1);
    map.SetPeakValue(long{0x010203});
    map.SetPeakRead(1);
    map.SetResultsRead(1);
    CDSPMap copy(map);
    map.Reset(-5, 3, 0, 0);
    EXPECT_EQ(DSPWordToULong(map.GetAt(3)), 0U);
    EXPECT_EQ(DSPWordToULong(map.GetAt(4)), 0x0D0E0FU);
    EXPECT_EQ(map.GetPeakValueAsLong(), 0x010203);
    EXPECT_EQ(map.GetPeakRead(), 1);
    map.Reset(14, 99, 1, 1);
    EXPECT_EQ(DSPWordToULong(map.GetAt(13)), 0x28292AU);
    EXPECT_EQ(DSPWordToULong(map.GetAt(14)), 0U);
    EXPECT_EQ(DSPWordToULong(map.GetAt(15)), 0U);
    EXPECT_EQ(map.GetPeakValueAsLong(), 0);
    EXPECT_EQ(map.GetResultsRead() + map.GetPeakRead(), 0);
    EXPECT_EQ(DSPWordToULong(copy.GetAt(0)), 0x010203U);
    EXPECT_EQ(copy.GetResultsRead(), 1);
}

} // namespace
} // namespace kalvio::test
