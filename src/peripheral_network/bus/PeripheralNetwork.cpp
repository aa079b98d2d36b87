#include "peripheral_network/bus/PeripheralNetwork.h"

#include "host/HostApplication.h"

namespace kalvio {

PeripheralNetwork* CurrentPeripheralNetwork() {
    return static_cast<PeripheralNetwork*>(GetHostApplication().kvNet);
}

void ReportKvNetError(const CString& method, short code) {
    if (PeripheralNetwork* network = CurrentPeripheralNetwork()) {
        network->ReportMethodError(method, GetErrorMessageID(code), kNoParameterText);
    }
}

} // namespace kalvio
