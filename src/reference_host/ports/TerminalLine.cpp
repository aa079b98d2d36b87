#include "reference_host/ports/TerminalLine.h"

// Not <termios.h>: its structure has a fixed set of speeds.
#include <asm/termbits.h>
#include <cerrno>
#include <cstdint>
#include <sys/ioctl.h>
#include <system_error>

namespace kalvio::reference_host {

namespace {

constexpr unsigned char kXon = 0x11;
constexpr unsigned char kXoff = 0x13;

constexpr unsigned kParityFlags[] = {0, PARENB, PARENB | PARODD, PARENB | PARODD | CMSPAR,
                                     PARENB | CMSPAR}; // in the order of Parity
constexpr unsigned kSizeFlags[] = {CS5, CS6, CS7, CS8};
constexpr int kFewestDataBits = 5;

bool HasRts(CommHandshaking handshaking) {
    return handshaking == CommHandshaking::Rts || handshaking == CommHandshaking::RtsXonXoff;
}

bool HasXonXoff(CommHandshaking handshaking) {
    return handshaking == CommHandshaking::XonXoff || handshaking == CommHandshaking::RtsXonXoff;
}

void SetModes(termios2& modes, const LineSettings& settings, CommHandshaking handshaking) {
    modes.c_iflag = INPCK | PARMRK | (HasXonXoff(handshaking) ? IXON | IXOFF : 0);
    modes.c_oflag = 0;
    modes.c_lflag = 0;
    modes.c_cflag = BOTHER | CREAD | CLOCAL | kParityFlags[static_cast<std::size_t>(settings.parity)] |
                    kSizeFlags[settings.dataBits - kFewestDataBits] | (settings.longStop ? CSTOPB : 0) |
                    (HasRts(handshaking) ? CRTSCTS : 0);
    modes.c_ispeed = settings.baud;
    modes.c_ospeed = settings.baud;
    // With a minimum of one byte, a read that finds nothing differs from one of a line that was hung up.
    modes.c_cc[VMIN] = 1;
    modes.c_cc[VTIME] = 0;
    modes.c_cc[VSTART] = kXon;
    modes.c_cc[VSTOP] = kXoff;
}

// A request that takes a number in the pointer's place.
void* Number(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

} // namespace

std::string TerminalLine::Explain(int error) const {
    switch (-error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return "there is no " + m_device;
    case EACCES:
    case EPERM:
        return "this user has no rights to " + m_device;
    case EBUSY:
    case EWOULDBLOCK:
        return "another program holds " + m_device;
    case ENOTTY:
        return m_device + " is no serial device";
    case EINVAL:
        return m_device + " cannot be set to that";
    default:
        return m_device + ": " + std::generic_category().message(-error);
    }
}

std::string TerminalLine::Open(const std::string& device, const LineSettings& settings,
                               CommHandshaking handshaking) {
    m_device = device;
    const int descriptor = m_calls.open(device);
    if (descriptor < 0) {
        return Explain(descriptor);
    }
    m_descriptor = descriptor;
    std::string why = TakeDevice(settings, handshaking);
    if (!why.empty()) {
        Close();
    }
    return why;
}

std::string TerminalLine::TakeDevice(const LineSettings& settings, CommHandshaking handshaking) {
    if (std::string why = Configure(settings, handshaking); !why.empty()) {
        return why;
    }
    if (const int error = m_calls.lock(m_descriptor); error < 0) {
        return Explain(error);
    }
    // Keeps out programs that do not lock; some devices do not know it.
    m_calls.control(m_descriptor, TIOCEXCL, nullptr);
    int lines = 0;
    m_hasLines = m_calls.control(m_descriptor, TIOCMGET, &lines) >= 0;
    return {};
}

void TerminalLine::Close() {
    if (!IsOpen()) {
        return;
    }
    m_calls.control(m_descriptor, TIOCNXCL, nullptr);
    m_calls.close(m_descriptor);
    m_descriptor = -1;
}

std::string TerminalLine::Configure(const LineSettings& settings, CommHandshaking handshaking) {
    termios2 modes{};
    int error = m_calls.control(m_descriptor, TCGETS2, &modes);
    if (error >= 0) {
        SetModes(modes, settings, handshaking);
        error = m_calls.control(m_descriptor, TCSETS2, &modes);
    }
    return error < 0 ? Explain(error) : "";
}

long TerminalLine::Read(std::span<char> bytes) {
    const long count = m_calls.read(m_descriptor, bytes);
    if (count > 0) {
        return count;
    }
    return count == -EAGAIN ? 0 : -1;
}

long TerminalLine::Write(std::string_view bytes) {
    const long count = m_calls.write(m_descriptor, bytes);
    if (count >= 0) {
        return count;
    }
    return count == -EAGAIN ? 0 : -1;
}

bool TerminalLine::IsSent() const {
    int waiting = 0;
    return m_calls.control(m_descriptor, TIOCOUTQ, &waiting) < 0 || waiting == 0;
}

void TerminalLine::DiscardOutput() {
    m_calls.control(m_descriptor, TCFLSH, Number(TCOFLUSH));
}

InputLines TerminalLine::Lines() const {
    int lines = 0;
    if (!m_hasLines || m_calls.control(m_descriptor, TIOCMGET, &lines) < 0) {
        return {};
    }
    return {(lines & TIOCM_CD) != 0, (lines & TIOCM_CTS) != 0, (lines & TIOCM_DSR) != 0,
            (lines & TIOCM_RI) != 0};
}

std::string TerminalLine::SetLine(OutputLine line, bool high) {
    if (!m_hasLines) {
        return {};
    }
    int bit = line == OutputLine::Dtr ? TIOCM_DTR : TIOCM_RTS;
    const int error = m_calls.control(m_descriptor, high ? TIOCMBIS : TIOCMBIC, &bit);
    return error < 0 ? Explain(error) : "";
}

std::string TerminalLine::SetBreak(bool on) {
    const int error = m_calls.control(m_descriptor, on ? TIOCSBRK : TIOCCBRK, nullptr);
    return error < 0 ? Explain(error) : "";
}

} // namespace kalvio::reference_host
