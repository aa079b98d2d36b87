#pragma once

// The driver's side of the unit: the seven control codes, each with exactly the buffers it takes.

#include "platform/DeviceDriver.h"
#include "simulator/commands/CommandEndpoint.h"

namespace kalvio::simulator {

class DriverPort {
public:
    DriverPort(FaultPlan& faults, CommandEndpoint& endpoint, std::uint16_t releaseNumber);

    Transfer Handle(const DriverRequest& request, std::uint32_t tick);
    void SetReleaseNumber(std::uint16_t release) { m_releaseNumber = release; }

private:
    [[nodiscard]] bool ShowsFault(const DriverRequest& request);
    Transfer Dispatch(const DriverRequest& request, std::uint32_t tick);
    Transfer GetDescriptor(ByteSpan into);
    Transfer ResetPipe(ByteView input);
    Transfer BulkRead(const DriverRequest& request);
    Transfer BulkWrite(const DriverRequest& request, std::uint32_t tick);
    Transfer VendorRequest(ByteView input);
    Transfer GetLastError(ByteSpan into);

    FaultPlan& m_faults;
    CommandEndpoint& m_endpoint;
    std::uint16_t m_releaseNumber;
    std::uint32_t m_lastStatus = 0;
};

} // namespace kalvio::simulator
