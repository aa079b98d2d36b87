#include "reference_host/ports/PortDevice.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace kalvio::reference_host {

PortDevice::~PortDevice() {
    if (IsOpen()) {
        close(m_descriptor);
    }
}

std::string PortDevice::Open(const std::string& path) {
    m_descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    return IsOpen() ? ""
                    : "I/O ports cannot be written through " + path + ": " +
                          std::generic_category().message(errno) + ".";
}

bool PortDevice::Write(const PortWrite& write) {
    constexpr unsigned kBitsInByte = 8;
    std::array<std::uint8_t, sizeof write.value> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(write.value >> (kBitsInByte * i));
    }
    const auto count = static_cast<std::size_t>(write.bytes);
    return count <= bytes.size() &&
           pwrite(m_descriptor, bytes.data(), count, write.port) == static_cast<ssize_t>(count);
}

} // namespace kalvio::reference_host
