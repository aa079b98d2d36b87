#pragma once

// String ids of the ports' texts.

#include "platform/Text.h"

namespace kalvio {

enum PortsText : unsigned {
    kTextSerialPort = 12632,
    kTextCreateSerialPort = 12633,
    kTextSetSerialPort = 12634,
    kTextDeleteSerialPort = 12635,
    kTextSerialPortNotCreated = 12637, // %d: port
    kTextSerialPortNotSet = 12638,     // %d: port
};

} // namespace kalvio
