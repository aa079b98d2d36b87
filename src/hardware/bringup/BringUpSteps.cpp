#include "hardware/bringup/BringUpSteps.h"

#include "hardware/CommandSet.h"
#include "hardware/registers/RelayGuard.h"
#include "hardware/registers/UnitAddresses.h"

namespace kalvio {

namespace {

using enum BringUpAction;

constexpr BringUpStep Analogue(char reg, std::uint8_t value, int code, const char* trace = nullptr) {
    return {PutAnalogue, static_cast<std::uint8_t>(reg), value, code, trace};
}

constexpr BringUpStep Control(std::uint16_t reg, std::uint8_t value, int code, const char* trace) {
    return {PutControl, reg, value, code, trace};
}

constexpr BringUpStep RelayOff(std::uint8_t relay, const char* trace = nullptr) {
    return {PutRelay, relay, 0, 30 + relay, trace};
}

constexpr BringUpStep Micro(std::uint8_t space, std::uint16_t address, std::uint8_t value, int code,
                            const char* trace = nullptr) {
    return {PutMicro, address, value, code, trace, space};
}

constexpr BringUpStep MonCtrl(std::uint8_t index, std::uint8_t value, const char* trace = nullptr) {
    return Micro(kSpaceS, static_cast<std::uint16_t>(address::kMonitorControl + index), value, 50 + index,
                 trace);
}

constexpr BringUpStep ControlWord(std::uint8_t dsp, int code, const char* trace = nullptr) {
    return {.action = PutControlWord, .stepCode = code, .trace = trace, .dsp = dsp};
}

constexpr BringUpStep Calibration(std::uint8_t dsp, std::uint16_t address, std::uint8_t entry, int code,
                                  const char* trace = nullptr) {
    return {PutCalibration, address, entry, code, trace, kSpaceX, dsp};
}

// clang-format off
constexpr BringUpStep kSteps[] = {
    Analogue('p', 0xFE, 2),
    Analogue('q', 0xFE, 3),
    Analogue('t', 0xFE, 4),
    Analogue('u', 0xFE, 5),
    Analogue('r', 0xFF, 6, "initialised analogue relays (part 1)"),
    {BusyWait, 0, kRelayHoldMs, 0},

    Analogue('p', 0x80, 10),
    Analogue('q', 0x80, 11),
    Analogue('r', 0x20, 12),
    Analogue('s', 0x80, 13),
    Analogue('t', 0xC0, 14),
    Analogue('u', 0xC0, 15),
    Analogue('v', 0x77, 16),
    Analogue('w', 0x00, 17),
    {StampConverters, 0, 0, 0, "initialised analogue relays (part 2)"},

    {ReadLinks, 'q', 0, 20, "read LINK_FIT settings"},
    Control(address::kControl0, 0x07, 29, "Written CTRL0 settings"),

    RelayOff(0),
    RelayOff(1),
    RelayOff(2),
    RelayOff(3),
    RelayOff(4),
    RelayOff(5),
    RelayOff(6),
    RelayOff(7, "Set main board relays"),

    Control(address::kControl1, 0xF5, 40, "Written CTRL1 settings"),
    Control(address::kControl2, 0x22, 41, "Written CTRL2 settings"),
    Control(address::kControl3, 0xFF, 42, "Written CTRL3 settings"),

    MonCtrl(0, 1),
    MonCtrl(1, 1),
    MonCtrl(2, 1),
    MonCtrl(3, 1),
    MonCtrl(4, 2),
    MonCtrl(5, 6),
    MonCtrl(6, 5),
    MonCtrl(7, 7, "Written MONCTRL settings"),

    Micro(kSpaceS, address::kAesReceiver1, 0x00, 60),
    Micro(kSpaceS, address::kAesReceiver1, 0x81, 61, "Written AES receiver settings (CR1)"),
    Micro(kSpaceS, address::kAesReceiver2, 0xCB, 65, "Written AES receiver settings (CR2)"),
    Micro(kSpaceX, address::kAesInterrupt1, 0x00, 70),
    Micro(kSpaceX, address::kAesInterrupt2, 0x00, 71, "Written AES receiver interrupt registers"),

    ControlWord(0, 80),
    ControlWord(1, 81, "Initialised DSP control words"),

    Micro(kSpaceI2c, address::kMainBoardSensor, 0, 90),
    Micro(kSpaceI2c, address::kAnalogueBoardSensor, 0, 91, "Initialised temperature sensors"),

    Calibration(0, address::kAnalyserCoefficients, 71, 100),
    Calibration(0, address::kAnalyserCoefficients + 1, 79, 101),
    Calibration(1, address::kAnalyserCoefficients, 75, 102),
    Calibration(1, address::kAnalyserCoefficients + 1, 83, 103, "Initialised analyzer calibration coefficients"),

    Calibration(0, address::kGeneratorCoefficients, 24, 110),
    Calibration(0, address::kGeneratorCoefficients + 1, 32, 111),
    Calibration(0, address::kGeneratorCoefficients + 2, 28, 112),
    Calibration(0, address::kGeneratorCoefficients + 3, 36, 113, "Initialised generator calibration coefficients"),

    Micro(kSpaceS, address::kLastSetting, 7, 120, "finished"),
};
// clang-format on

} // namespace

std::span<const BringUpStep> BringUpSteps() {
    return kSteps;
}

} // namespace kalvio
