#include "bench/output/NetworkReport.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

namespace kalvio::bench {

using Json = nlohmann::ordered_json;

namespace {

constexpr std::uint32_t kHalfFirmware = 0x20000; // of the status word

std::string Letter(std::uint8_t version) {
    return {static_cast<char>('A' + version)};
}

bool IsHalf(const CKvNetStatus& device) {
    return (device.GetStatusWord() & kHalfFirmware) != 0;
}

} // namespace

std::string DeviceTable(std::span<const CKvNetStatus> devices) {
    if (devices.empty()) {
        return "no device answers\n";
    }
    constexpr const char* kLine = "%7s  %-16s  %-12s  %-8s  %-8s  %s\n";
    std::string text = Format(kLine, "address", "class", "type", "hardware", "firmware", "state");
    for (const CKvNetStatus& device : devices) {
        const std::string state =
            std::string(device.IsOn() ? "on" : "standby") + (IsHalf(device) ? ", half a firmware" : "");
        text += Format(kLine, std::to_string(device.GetAddress()).c_str(), device.ClassName().c_str(),
                       device.TypeName().c_str(), Letter(device.GetHardwareVersion()).c_str(),
                       Letter(device.GetFirmwareVersion()).c_str(), state.c_str());
    }
    return text;
}

Json DevicesJson(std::span<const CKvNetStatus> devices) {
    Json list = Json::array();
    for (const CKvNetStatus& device : devices) {
        list.push_back({{"address", device.GetAddress()},
                        {"class", device.ClassName()},
                        {"type", device.TypeName()},
                        {"class-type", device.GetDeviceClassType()},
                        {"hardware", Letter(device.GetHardwareVersion())},
                        {"firmware", Letter(device.GetFirmwareVersion())},
                        {"on", device.IsOn()},
                        {"half-firmware", IsHalf(device)}});
    }
    return {{"devices", list}};
}

} // namespace kalvio::bench
