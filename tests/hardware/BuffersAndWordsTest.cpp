// Sample buffers, DSP words and blocks, peripheral frames, image files.

#include "hardware/ByteAllocation.h"
#include "hardware/KvNetFrame.h"
#include "hardware/link/ImageFile.h"
#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <limits>

namespace kalvio::test {
namespace {

using testing::ElementsAre;

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

    hardware.TerminateHardware();
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(hardware.GetBufferSize(), 0U);
    EXPECT_EQ(hardware.GetSampleBuffer(kChannelA), nullptr);
    EXPECT_EQ(hardware.GetCTABuffer(kChannelA), nullptr);
    EXPECT_EQ(hardware.GetDemoSampleBuffer(kChannelA), nullptr);
    hardware.SuspendDevice();
    EXPECT_NE(hardware.GetSampleBuffer(kChannelA), nullptr);
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
    std::vector<std::uint8_t> buffer(5);
    EXPECT_FALSE(AllocateBytes(buffer, std::numeric_limits<std::size_t>::max()));
    EXPECT_TRUE(buffer.empty());
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
    for (const int outside : {-1, -100000, 15, 100000}) {
        EXPECT_EQ(DSPWordToULong(map.GetAt(outside)), 0U);
    }
    EXPECT_EQ(map.GetPeakValueAsLong(), 0);
    EXPECT_EQ(map.GetResultsRead() + map.GetPeakRead(), 0);
    EXPECT_EQ(DSPWordToULong(copy.GetAt(0)), 0x010203U);
    EXPECT_EQ(copy.GetResultsRead(), 1);
}

TEST(KvNetFrame, Bytes) {
    std::uint8_t frame[kKvNetLongestFrame] = {};
    const std::uint8_t data[35] = {1};
    const auto built = [&frame](std::size_t length) { return ToHex({frame, length}); };
    EXPECT_EQ(built(BuildKvNetFrame(frame, 5, 0x00, nullptr, 0, true)), "5505000050AA");
    EXPECT_EQ(built(BuildKvNetFrame(frame, 5, 0x00, nullptr, 0, false)), "5505000050A5");
    EXPECT_EQ(built(BuildKvNetFrame(frame, 255, 0xFF, data, 1, true)), "55FF01FF0155A5");
    EXPECT_EQ(BuildKvNetFrame(frame, 63, 0xB1, data, 34, true), 40u);
    EXPECT_EQ(frame[38], static_cast<std::uint8_t>(0x55 - (63 + 34 + 0xB1 + 1)));
    EXPECT_EQ(BuildKvNetFrame(frame, 63, 0xB1, data, 35, true), 0u);
    EXPECT_EQ(CalculateChecksum(frame, 3), 0x55);
}

TEST(ImageFile, OneThatIsTooLargeDoesNotFitIntoTheMemory) {
    const TemporaryDirectory directory;
    const CString huge = directory.MakeFile("huge", 1);
    std::filesystem::resize_file(huge, 0x40000001); // takes no room on the disk
    std::vector<std::uint8_t> image;
    EXPECT_EQ(ReadImageFile(huge, 3, image), kImageNoMemory);
}

} // namespace
} // namespace kalvio::test
