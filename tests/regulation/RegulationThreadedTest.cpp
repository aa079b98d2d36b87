#include "regulation/Document.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

class RegulationThreadedTest : public DocumentTest {
protected:
    RegulationThreadedTest() {
        RegulateAmplitude();
        measurement = std::make_unique<BackgroundMeasurement>(host.clock, measure);
    }
    std::unique_ptr<BackgroundMeasurement> measurement;
};

} // namespace

// Start, stop and restart from this thread while the real one regulates.
TEST_F(RegulationThreadedTest, StopsAndRestartsWhileTheThreadWorks) {
    Set("REG_Timeout", 3600);
    Set("REG_Channel", kBothSeparately);
    for (int run = 0; run < 100; ++run) {
        ASSERT_EQ(document.StartRegulation(1), 1);
        for (int i = 0; i < run % 9; ++i) {
            std::this_thread::yield();
            PumpMessages();
        }
        document.StopRegulation();
        ASSERT_TRUE(document.GetStatus() == Aborted || document.GetStatus() == Succeeded);
    }
    ASSERT_EQ(document.StartRegulation(1), 1);
    while (document.IsRegulationRunning() != 0) {
        WaitAndPumpMessages(kInfinite);
    }
    EXPECT_EQ(document.GetStatus(), Succeeded);
    EXPECT_NEAR(Volts(kCtrlGeneratorAmplitudeA), 4.0, 0.03);
    EXPECT_NEAR(Volts(kCtrlGeneratorAmplitudeB), 8.0, 0.05);
}

} // namespace kalvio::test
