#include "reference_host/ports/SerialDevices.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <tuple>

namespace kalvio::reference_host {

namespace {

namespace fs = std::filesystem;

// Of several that the system provides for, only those with hardware behind them have a type.
bool HasHardware(const fs::path& entry) {
    std::error_code error;
    if (!fs::exists(entry / "device", error)) {
        return false;
    }
    std::ifstream file(entry / "type");
    int type = 0;
    return !(file >> type) || type != 0;
}

// The name without its number, and the number.
std::tuple<std::string, unsigned long> SortKey(const std::string& name) {
    const std::size_t last = name.find_last_not_of("0123456789");
    const std::size_t digits = last == std::string::npos ? 0 : last + 1;
    constexpr std::size_t kMostDigits = 9;
    const std::string number = name.substr(digits, kMostDigits);
    return {name.substr(0, digits), number.empty() ? 0 : std::stoul(number)};
}

} // namespace

std::vector<std::string> FindSerialDevices(const std::string& classFolder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(classFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (HasHardware(entry->path())) {
            names.push_back(entry->path().filename().string());
        }
    }
    std::ranges::sort(names, {}, SortKey);
    for (std::string& name : names) {
        name.insert(0, "/dev/");
    }
    return names;
}

std::string DeviceOfPort(std::int16_t port, const std::map<std::int16_t, std::string>& chosen) {
    if (const auto found = chosen.find(port); found != chosen.end()) {
        return found->second;
    }
    const std::vector<std::string> devices = FindSerialDevices();
    return port >= 1 && static_cast<std::size_t>(port) <= devices.size()
               ? devices[static_cast<std::size_t>(port) - 1]
               : "";
}

} // namespace kalvio::reference_host
