#include "reference_host/ports/HostPorts.h"

#include "reference_host/ports/SerialControl.h"
#include "reference_host/ports/SerialDevices.h"

namespace kalvio::reference_host {

namespace {

constexpr int kOpenVersion = 4;      // a system that lets programs write to its ports
constexpr int kProtectedVersion = 5; // one that does not

} // namespace

HostPorts::HostPorts(const PortOptions& options, SerialPortNames::Turns turns)
    : m_options(options),
      m_record([this](const PortWrite& write) { return m_device.IsOpen() && m_device.Write(write); }),
      m_names(m_ports, std::move(turns)) {
    if (!m_options.portDevice.empty()) {
        m_complaint = m_device.Open(m_options.portDevice);
    }
    StartInstruments();
}

void HostPorts::StartInstruments() {
    for (auto& [number, device] : m_options.serialPorts) {
        if (device != kEchoDevice) {
            continue;
        }
        device = m_instruments.emplace_back(std::make_unique<EchoInstrument>())->Device();
        if (device.empty()) {
            m_complaint +=
                (m_complaint.empty() ? "" : "\n") +
                Format("There is no pseudo-terminal for the instrument at serial port %d.", number);
        }
    }
}

std::unique_ptr<CommunicationsControl> HostPorts::MakeControl(CWnd& parent, int controlId) {
    return std::make_unique<SerialControl>(
        parent, controlId, [this](std::int16_t port) { return DeviceOfPort(port, m_options.serialPorts); });
}

int HostPorts::WindowsVersion() const {
    return m_device.IsOpen() ? kOpenVersion : kProtectedVersion;
}

} // namespace kalvio::reference_host
