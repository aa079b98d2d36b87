// The analyser document, the FFT detectors and the measurement helpers.

#include "platform/Thread.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace {

using namespace kalvio;
using kalvio::test::TestHost;

constexpr double kVolt = 27516.337208519708;

TEST(FftDetectors, ListGivesTheLowestFreeId) {
    CFFTDetectorList list;
    for (int id = 1; id <= 40; ++id) {
        ASSERT_EQ(list.Add("THD")->Id(), id);
    }
    EXPECT_EQ(list.Add("one too many"), nullptr);
    EXPECT_TRUE(list.Remove(7));
    EXPECT_FALSE(list.Remove(7));
    EXPECT_EQ(list.SlotOf(7), 40);
    EXPECT_EQ(list.SlotOf(40), 39);
    EXPECT_EQ(list.All().size(), 39U);
    for (const int id : {0, 7, 41, -1, kNoDetector}) {
        EXPECT_EQ(list.Find(id), nullptr) << id;
        EXPECT_EQ(list.SlotOf(id), 40) << id;
    }
    EXPECT_EQ(list.Add("SINAD")->Id(), 7);
    EXPECT_EQ(list.Find(7)->Name(), "SINAD");
}

TEST(FftDetectors, RelativeDetectorsOfferRelativeUnits) {
    TestHost host;
    CFFTDetectorSettings* detector = host.fftDetectors.Add("THD");
    EXPECT_EQ(detector->IsEnumValueValid(kResultFftDetectorA, kUnitDbu), 1);
    EXPECT_EQ(detector->IsEnumValueValid(kResultFftDetectorA, kUnitPercent), 0);
    detector->SetUnit(kUnitPercent);
    detector->SetRelativeReference(2.0 * kVolt);
    EXPECT_EQ(detector->IsEnumValueValid(kResultFftDetectorA, kUnitDbu), 0);
    EXPECT_EQ(detector->IsEnumValueValid(kResultFftDetectorA, kUnitDb), 1);
    WriteResult(*detector->ResultB(), kVolt);
    CPhyValueMessenger get;
    get.ctrlID = kResultFftDetectorB;
    get.get = true;
    get.unit = kUnitNone;
    ASSERT_TRUE(detector->OnMessenger(&get));
    EXPECT_NEAR(get.value, 50.0, 1e-9);
    EXPECT_EQ(get.references.reference, 2.0 * kVolt);
}

// Looked up on one thread while another edits the list.
TEST(FftDetectors, LookUpWhileEdited) {
    CFFTDetectorList list;
    const CFFTDetectorSettings* kept = list.Add("kept");
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    const auto reader = Thread::Start([&] {
        while (!stop) {
            wrong += list.Find(1) != kept || list.SlotOf(1) != 0;
        }
    });
    for (int i = 0; i < 500; ++i) {
        list.Remove(list.Add("coming and going")->Id());
    }
    stop = true;
    ASSERT_TRUE(reader->WaitForEnd(10000));
    EXPECT_EQ(wrong.load(), 0);
}

TEST(MeasurementHelpers, AnalyserChannels) {
    TestHost host;
    const int pairs[][2] = {{0, 0}, {1, 1}, {0, 1}};
    for (int channel = 0; channel < 3; ++channel) {
        SetAnalyserChannel(channel);
        int first = -1;
        int second = -1;
        GetSWAnalyserChannels(first, second);
        EXPECT_EQ(first, pairs[channel][0]);
        EXPECT_EQ(second, pairs[channel][1]);
    }
    SetAnalyserChannel(3);
    EXPECT_EQ(host.hints.size(), 3U);
    EXPECT_EQ(host.analyser.secondChannel.Get(), 1);
}

TEST(MeasurementHelpers, CountsAndTrigger) {
    TestHost host;
    DecFFTUsageCount();
    IncFFTUsageCount();
    EXPECT_EQ(host.application.fftUsageCount.load(), 1);
    ToggleTrigger(1);
    EXPECT_EQ(host.fftParameters.pending, 1);
    ToggleTrigger(0);
    EXPECT_EQ(host.fftParameters.pending, 0);
    EXPECT_EQ(host.application.triggerToggles.load(), 1);
    for (const int resultID : {3208, 3209, 3210, 3211, 3251, 3253, 3351, 3352}) {
        EXPECT_EQ(IsMultiChannelResult(resultID), 1) << resultID;
    }
    for (const int resultID : {3216, 3008, 3057, 4008, 9991, 65535}) {
        EXPECT_EQ(IsMultiChannelResult(resultID), 0) << resultID;
    }
}

TEST(MeasurementHelpers, WithoutDocumentsNothingHappens) {
    TestHost host;
    CHostApplication bare;
    CHostApplication* previous = InstallHostApplication(&bare);
    int first = 5;
    int second = 6;
    GetSWAnalyserChannels(first, second);
    SetAnalyserChannel(2);
    ToggleTrigger(1);
    EXPECT_EQ(first + second, 11);
    EXPECT_EQ(GetFFTDetectorFromID(1), nullptr);
    EXPECT_FALSE(IsJDO() || AreChannelsReversed());
    EXPECT_EQ(bare.GetDocForID(kResultRmsA), nullptr);
    EXPECT_FALSE(bare.CheckSecurityLevel(3));
    EXPECT_EQ(bare.GetOLEDisplay(), 0);
    EXPECT_EQ(bare.GetWindowsVersion(), 5);
    CWnd window;
    EXPECT_EQ(bare.CreateCommunicationsControl(window, 1), nullptr);
    EXPECT_EQ(InstallHostApplication(previous), &bare);
    host.analyser.channelsReversed = 1;
    EXPECT_TRUE(AreChannelsReversed() && !IsJDO());
    host.analyser.jitterDomain = 1;
    host.analyser.channelsReversed = 0;
    EXPECT_TRUE(IsJDO() && !AreChannelsReversed());
}

} // namespace
