#include "reference_host/ports/PseudoTerminal.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace kalvio::reference_host {

PseudoTerminal::PseudoTerminal() : m_descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    constexpr std::size_t kLongestPath = 128;
    std::array<char, kLongestPath> path{};
    if (m_descriptor < 0 || grantpt(m_descriptor) != 0 || unlockpt(m_descriptor) != 0 ||
        fcntl(m_descriptor, F_SETFL, O_NONBLOCK) != 0 ||
        ptsname_r(m_descriptor, path.data(), path.size()) != 0) {
        Close();
        return;
    }
    m_device = path.data();
}

std::size_t PseudoTerminal::Read(std::span<char> bytes) {
    return static_cast<std::size_t>(std::max<ssize_t>(0, read(m_descriptor, bytes.data(), bytes.size())));
}

std::size_t PseudoTerminal::Write(std::string_view bytes) {
    return static_cast<std::size_t>(std::max<ssize_t>(0, write(m_descriptor, bytes.data(), bytes.size())));
}

void PseudoTerminal::Close() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
    m_descriptor = -1;
}

} // namespace kalvio::reference_host
