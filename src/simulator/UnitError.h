#pragma once

// The error codes with which the unit refuses a command (bytes 8-9 of the response).

#include <cstdint>

namespace kalvio::simulator {

enum class UnitError : std::uint16_t {
    None = 0,
    UnknownSpace = 0x0101, // no such memory space, or one that this command cannot reach
    AddressRange = 0x0102, // address, or address and length, outside the memory
    UnknownDsp = 0x0103,   // DSP index other than 0 and 1
    AddressCheck = 0x0118, // a checked write to another address than the armed one
    I2cNoDevice = 0x0119,  // no device acknowledges that address
    I2cTransfer = 0x011A,  // the device does not take a transfer of that length
    UnknownGeneralCommand = 0x0120,
    GeneralCommandLength = 0x0121, // out or in data of another length than the general command has
    Parameter = 0x0122,            // a value outside its range
    EmptyImage = 0x0123,           // an image of no bytes
};

} // namespace kalvio::simulator
