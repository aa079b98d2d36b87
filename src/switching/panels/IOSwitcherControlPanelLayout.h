#pragma once

// The controls of the I/O switcher panel.

#include "platform/Dialog.h"

#include <array>
#include <cstdint>

namespace kalvio {

inline constexpr int kSwitcherPanel = 251; // the dialog

enum SwitcherPanelControl : int {
    kCtrlSwitcherAddress = 2555,
    kCtrlSwitcherOn,
    kCtrlSwitcherDetect,
    kCtrlSwitcherStandby,
    kCtrlPositiveA = 2740,
    kCtrlNegativeA,
    kCtrlPositiveB,
    kCtrlNegativeB,
    kCtrlFirstVoltageLabel, // in the order of the voltages
};

inline constexpr int kSwitcherVoltages = 4;

// A check box and the bit that it stands for in the relay image, which is per bus the mask of group X, the
// mask of group Y and the flags.
struct SwitcherBox {
    int id;
    std::uint8_t bus;
    std::uint8_t part; // 0 group X, 1 group Y, 2 flags
    std::uint8_t bit;

    [[nodiscard]] constexpr bool IsRelay() const { return part < 2; }
    [[nodiscard]] constexpr std::size_t Place() const { return std::size_t{3} * bus + part; }
    [[nodiscard]] constexpr std::uint8_t Mask() const { return static_cast<std::uint8_t>(1U << bit); }
};

inline constexpr std::uint8_t kBalanceBit = 0;
inline constexpr std::uint8_t kLoadBit = 1;

consteval std::array<SwitcherBox, 36> MakeSwitcherBoxes() {
    std::array<SwitcherBox, 36> boxes{};
    std::size_t next = 0;
    for (std::uint8_t bus = 0; bus < 2; ++bus) {
        for (std::uint8_t group = 0; group < 2; ++group) {
            for (std::uint8_t relay = 0; relay < 8; ++relay) {
                boxes[next++] = {2510 + 20 * bus + 10 * group + relay, bus, group, relay};
            }
        }
        boxes[next++] = {2550 + bus, bus, 2, kBalanceBit};
        boxes[next++] = {2552 + bus, bus, 2, kLoadBit};
    }
    return boxes;
}

inline constexpr std::array<SwitcherBox, 36> kSwitcherBoxes = MakeSwitcherBoxes();

extern const DialogTemplate kSwitcherPanelLayout;

} // namespace kalvio
