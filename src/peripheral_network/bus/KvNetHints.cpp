#include "peripheral_network/bus/KvNetHints.h"

#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetStatus.h"

namespace kalvio {
namespace {

void Tell(int hint, const DeviceWord& word) {
    UpdateViews(nullptr, hint, HintObject(PackDeviceWord(word)), 0);
}

} // namespace

std::uint32_t PackDeviceWord(const DeviceWord& word) {
    return std::uint32_t{word.classCode} << 24U | std::uint32_t{word.address} << 16U |
           std::uint32_t{word.bus} << 8U | word.group;
}

DeviceWord UnpackDeviceWord(std::uint32_t word) {
    return {static_cast<std::uint8_t>(word >> 24U), static_cast<std::uint8_t>(word >> 16U),
            static_cast<std::uint8_t>(word >> 8U), static_cast<std::uint8_t>(word)};
}

void* HintObject(std::uint32_t word) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(word));
}

std::uint32_t HintWord(const void* object) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object));
}

void TellSwitcherChanged(std::uint8_t address, std::uint8_t bus, std::uint8_t group) {
    Tell(HINT_SWITCHER_CHANGED, {kClassSwitcher, address, bus, group});
    Tell(HINT_DEVICE_CHANGED, {kClassTypeIOSwitcher, address, bus, group});
}

void TellDeviceReset(std::uint8_t address) {
    const DeviceWord word{0, address, kAllBuses, kAllGroups};
    Tell(HINT_SWITCHER_CHANGED, word);
    Tell(HINT_DEVICE_CHANGED, word);
}

} // namespace kalvio
