#pragma once

// The ports of a reference host: the ports document, the devices behind it, and its names for scripts.

#include "ports/Ports.h"
#include "reference_host/ports/EchoInstrument.h"
#include "reference_host/ports/PortDevice.h"
#include "reference_host/ports/PortOptions.h"
#include "reference_host/ports/PortRecord.h"
#include "reference_host/ports/SerialPortNames.h"

#include <memory>
#include <vector>

namespace kalvio::reference_host {

// The host application makes it, enters its output and answers its requests through it, and then calls
// Ports().Initialise. User-interface thread.
class HostPorts {
public:
    HostPorts(const PortOptions& options, SerialPortNames::Turns turns);

    [[nodiscard]] CPorts& Ports() { return m_ports; }
    [[nodiscard]] PortRecord& Output() { return m_record; }
    // What automation names are looked for in.
    [[nodiscard]] std::vector<CCmdTarget*> AutomationObjects() { return {&m_ports, &m_names}; }
    [[nodiscard]] std::unique_ptr<CommunicationsControl> MakeControl(CWnd& parent, int controlId);
    // A code below that of systems which protect their ports once the port device is open.
    [[nodiscard]] int WindowsVersion() const;
    // What of the options could not be had, in sentences; empty: nothing.
    [[nodiscard]] const CString& Complaint() const { return m_complaint; }

private:
    void StartInstruments();

    PortOptions m_options;
    CString m_complaint;
    std::vector<std::unique_ptr<EchoInstrument>> m_instruments;
    PortDevice m_device;
    PortRecord m_record;
    CPorts m_ports;
    SerialPortNames m_names;
};

} // namespace kalvio::reference_host
