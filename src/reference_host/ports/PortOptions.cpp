#include "reference_host/ports/PortOptions.h"

#include <charconv>
#include <limits>

namespace kalvio::reference_host {

std::string ParseSerialOption(std::string_view text, PortOptions& options) {
    const std::string whole = text == kEchoDevice ? "1=" + std::string(text) : std::string(text);
    const std::size_t equals = whole.find('=');
    std::int16_t number = 0;
    const char* end = whole.data() + (equals == std::string::npos ? 0 : equals);
    const auto result = std::from_chars(whole.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < 1 || equals + 1 == whole.size()) {
        return "\"" + std::string(text) + "\" is neither N=DEVICE, with N from 1 to " +
               std::to_string(std::numeric_limits<std::int16_t>::max()) + ", nor " + std::string(kEchoDevice);
    }
    options.serialPorts[number] = whole.substr(equals + 1);
    return {};
}

} // namespace kalvio::reference_host
