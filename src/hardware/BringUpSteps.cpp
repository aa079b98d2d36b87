#include "hardware/BringUpSteps.h"

#include "hardware/CommandSet.h"
#include "hardware/RelayGuard.h"

namespace kalvio {

namespace {

using enum BringUpAction;

constexpr std::uint16_t kMonCtrl = 0x9000;

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
    return Micro(kSpaceS, static_cast<std::uint16_t>(kMonCtrl + index), value, 50 + index, trace);
}

constexpr BringUpStep ControlWord(std::uint8_t dsp, int code, const char* trace = nullptr) {
    return {PutControlWord, 0, 0, code, trace, 0, dsp};
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

    {ReadLinkFit, 'q', 0, 20, "read LINK_FIT settings"},
    Control(0x8000, 0x07, 29, "Written CTRL0 settings"),

    RelayOff(0),
    RelayOff(1),
    RelayOff(2),
    RelayOff(3),
    RelayOff(4),
    RelayOff(5),
    RelayOff(6),
    RelayOff(7, "Set main board relays"),

    Control(0x8080, 0xF5, 40, "Written CTRL1 settings"),
    Control(0x8800, 0x22, 41, "Written CTRL2 settings"),
    Control(0x8880, 0xFF, 42, "Written CTRL3 settings"),

    MonCtrl(0, 1),
    MonCtrl(1, 1),
    MonCtrl(2, 1),
    MonCtrl(3, 1),
    MonCtrl(4, 2),
    MonCtrl(5, 6),
    MonCtrl(6, 5),
    MonCtrl(7, 7, "Written MONCTRL settings"),

    Micro(kSpaceS, 0xA802, 0x00, 60),
    Micro(kSpaceS, 0xA802, 0x81, 61, "Written AES receiver settings (CR1)"),
    Micro(kSpaceS, 0xA803, 0xCB, 65, "Written AES receiver settings (CR2)"),
    Micro(kSpaceX, 0xA800, 0x00, 70),
    Micro(kSpaceX, 0xA801, 0x00, 71, "Written AES receiver interrupt registers"),

    ControlWord(0, 80),
    ControlWord(1, 81, "Initialised DSP control words"),

    Micro(kSpaceI2c, 72, 0, 90),
    Micro(kSpaceI2c, 73, 0, 91, "Initialised temperature sensors"),

    Calibration(0, 51, 71, 100),
    Calibration(0, 52, 79, 101),
    Calibration(1, 51, 75, 102),
    Calibration(1, 52, 83, 103, "Initialised analyzer calibration coefficients"),

    Calibration(0, 56, 24, 110),
    Calibration(0, 57, 32, 111),
    Calibration(0, 58, 28, 112),
    Calibration(0, 59, 36, 113, "Initialised generator calibration coefficients"),

    Micro(kSpaceS, 0xA001, 7, 120, "finished"),
};
// clang-format on

} // namespace

std::span<const BringUpStep> BringUpSteps() {
    return kSteps;
}

} // namespace kalvio
