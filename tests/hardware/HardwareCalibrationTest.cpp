#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using testing::ElementsAre;

TEST(HardwareCalibration, GettersAnswerNothingWithoutTheUnit) {
    UnitRig rig;
    const auto expectNothing = [&rig] {
        const CHardware& hardware = rig.hardware;
        VARIANT year = VARIANT::Short(7);
        EXPECT_EQ(hardware.GetMainBoardCalibrationByte(1), 0);
        EXPECT_EQ(hardware.GetAnalogueCalibrationValue(0), 0.0);
        EXPECT_EQ(hardware.GetMainBoardCalibrationValueForID(0), 0.0);
        EXPECT_EQ(hardware.GetAnalogueCalibrationString(84, 4), "");
        EXPECT_EQ(hardware.GetMainBoardCalibrationDate(&year, &year, &year, &year, &year, &year), 0);
        EXPECT_EQ(year.ToText(), "7");
        EXPECT_EQ(hardware.GetAnalogueHardwareVersion(), 0);
        EXPECT_EQ(hardware.GetMainBoardHardwareVersion(), 0);
        EXPECT_EQ(hardware.GetMainBoardSoftwareVersionLetter(), "");
        EXPECT_EQ(hardware.GetJTAPhaseBaseCalibOffset(0), 0);
        EXPECT_EQ(hardware.GetJTAXPHCalibValue(0), 1);
    };
    expectNothing();
    EXPECT_EQ(rig.hardware.SetMainBoardCalibrationByte(1, 2), 0);
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.hardware.SetMainBoardCalibrationByte(1, 0x40), 1);
    EXPECT_EQ(rig.hardware.GetMainBoardCalibrationByte(1), 0x40);
    rig.hardware.SuspendDevice();
    expectNothing();
    rig.hardware.UnsuspendDevice();
    EXPECT_EQ(rig.hardware.GetMainBoardCalibrationByte(1), 0x40);
}

TEST(HardwareCalibration, ResetCopiesBothMastersOrStopsAtTheFirstFailure) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    EXPECT_EQ(rig.hardware.ResetCalibration(), 1);
    rig.unit.ClearLogs();
    rig.unit.AddFault({simulator::FaultKind::WriteProtect, 1, 0});
    rig.host.clock.SetLocal({2027, 1, 1, 0, 0, 0}); // so that the protected mirror differs
    EXPECT_EQ(rig.hardware.ResetCalibration(), 0);
    EXPECT_THAT(
        rig.host.user.Texts(),
        ElementsAre("The calibration details have been successfully reset to the factory defaults.",
                    "VERIFY FAILED : The calibration table does not match the values in the hardware.",
                    "Failed to reset the calibration to factory defaults. "));
    EXPECT_EQ(rig.host.user.Boxes().back().icon, BoxIcon::Exclamation);
    for (const std::string& parameters : rig.ParametersOf(11)) {
        EXPECT_NE(parameters.substr(0, 4), "0054") << "the analogue board was tried";
    }
}

TEST(HardwareCalibration, JitterPhaseOffsetsComeFromTheMainBoard) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    rig.hardware.SetMainBoardCalibrationValue(48, 6.0);  // entry 24
    rig.hardware.SetMainBoardCalibrationValue(50, -5.0); // entry 25
    EXPECT_EQ(rig.hardware.GetJTAPhaseBaseCalibOffset(0), -3);
    EXPECT_EQ(rig.hardware.GetJTAXPHCalibValue(0), 0);
    EXPECT_EQ(rig.hardware.GetJTAPhaseBaseCalibOffset(1), 3);
    EXPECT_EQ(rig.hardware.GetJTAXPHCalibValue(1), 1);
}

} // namespace
} // namespace kalvio::test
