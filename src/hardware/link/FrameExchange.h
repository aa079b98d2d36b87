#pragma once

// One command frame to the unit and back: header, data out, response, data in.

#include "hardware/UsbTransport.h"
#include "hardware/link/DriverRequests.h"

#include <atomic>

namespace kalvio {

// One exchange at a time. Counts what went wrong as link errors.
class FrameExchange {
public:
    FrameExchange(DriverRequests& requests, std::atomic<int>& linkErrors)
        : m_requests(requests), m_linkErrors(linkErrors) {}

    // Header bytes 0 to 15 are filled in here; response bytes 4 to 7 come back in host order, 0 to 3 too when
    // the echo was right, 8 to 9 too when the unit refused. Never CommandNotSent.
    ExchangeOutcome Run(const UsbExchange& exchange);

private:
    ExchangeOutcome CheckResponse(const UsbExchange& exchange);
    ExchangeOutcome AfterFailure(LinkFailure failure);

    DriverRequests& m_requests;
    std::atomic<int>& m_linkErrors;
};

} // namespace kalvio
