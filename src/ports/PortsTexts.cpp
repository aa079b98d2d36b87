#include "ports/PortsTexts.h"

namespace kalvio {
namespace {

constexpr TextResource kTexts[] = {
    {kTextSerialPort, "Serial Port"},
    {kTextCreateSerialPort, "Create Serial port object"},
    {kTextSetSerialPort, "Set current Serial port"},
    {kTextDeleteSerialPort, "Delete Serial port object"},
    {kTextSerialPortNotCreated,
     "Failed to create the Serial port object for port %d - this is not a valid port number."},
    {kTextSerialPortNotSet, "Failed to set the Serial port to port %d - you must use the "
                            "PORTS_CreateSerialPort method before trying to set the port."},

    // The properties in the browser.
    {12830, "'Carrier Detect' high/low"},
    {12831, "'Clear To Send' high/low"},
    {12832, "'Data Set Ready' high/low"},
    {12833, "'Data Terminal Ready' enabled"},
    {12834, "Handshaking protocol"},
    {12835, "Size of input buffer"},
    {12836, "Bytes in input buffer"},
    {12837, "Break signal state"},
    {12838, "Bytes to read from input buffer"},
    {12839, "Discard Null chars from input"},
    {12840, "Size of output buffer"},
    {12841, "Bytes in output buffer"},
    {12842, "Parity replacement character"},
    {12843, "Open/Close port"},
    {12845, "'Request To Send' enabled"},
    {12846, "Port settings (baud rate, etc)"},
    {12848, "Output data stream"},
    {12849, "Input data stream"},
    {12850, "Last Comm event"},
    {12851, "Stop input on EOF"},
    {12852, "Input data type (text/binary)"},
};

const TextTable kTable{kTexts};

} // namespace
} // namespace kalvio
