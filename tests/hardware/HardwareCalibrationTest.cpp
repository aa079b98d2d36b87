#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using simulator::CalibrationMemory;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(HardwareCalibration, EachBoardsTableGoesToItsOwnMemory) {
    UnitRig rig;
    ASSERT_EQ(rig.BringUp(), 1);
    CHardware& hardware = rig.hardware;
    EXPECT_EQ(hardware.SetMainBoardCalibrationValue(48, -300.0), 1);
    EXPECT_EQ(hardware.SetAnalogueCalibrationValue(48, 400.0), 1);
    EXPECT_EQ(hardware.SetMainBoardUnitSerialNum(0x1122), 1);
    EXPECT_EQ(hardware.SetAnalogueUnitSerialNum(0x3344), 1);
    EXPECT_EQ(hardware.WriteMainBoardTable(), 1);
    EXPECT_EQ(hardware.WriteAnalogueMasterTable(), 1);
    EXPECT_THAT(rig.unit.ProtocolErrors(), IsEmpty());

    const auto main = rig.unit.ReadCalibration(CalibrationMemory::MainBoard);
    const auto analogue = rig.unit.ReadCalibration(CalibrationMemory::AnalogueBoard);
    EXPECT_EQ(main[128 + 48] + 256 * main[128 + 49], 0xFED4);
    EXPECT_EQ(analogue[2048 + 128 + 48] + 256 * analogue[2048 + 128 + 49], 400);
    EXPECT_THAT(std::vector(main.begin() + 80, main.begin() + 82), ElementsAre(0x22, 0x11));
    EXPECT_THAT(std::vector(main.begin() + 11, main.begin() + 13), ElementsAre(0x05, 0x11));
    EXPECT_THAT(std::vector(analogue.begin() + 2048 + 11, analogue.begin() + 2048 + 13),
                ElementsAre(0x13, 0x12));

    EXPECT_EQ(hardware.GetMainBoardHardwareVersion(), 0x11);
    EXPECT_EQ(hardware.GetMainBoardHardwareOptions(), 0x05);
    EXPECT_EQ(hardware.GetAnalogueHardwareVersion(), 0x12);
    EXPECT_EQ(hardware.GetAnalogueHardwareOptions(), 0x13);
    EXPECT_EQ(hardware.GetMainBoardSoftwareVersion(), 0x0B01);
    EXPECT_EQ(hardware.GetAnalogueSoftwareVersionLetter(), "g");
    EXPECT_EQ(hardware.GetMainBoardCalibrationValueForID(24), -300.0);
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
