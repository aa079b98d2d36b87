#pragma once

// A serial port as a control with properties, which programs bring: the library itself holds no serial code.

#include "platform/Automation.h"
#include "platform/Export.h"

#include <cstdint>
#include <functional>

namespace kalvio {

// The control's properties by their dispatch ids, with the type of each.
enum class CommProperty : int {
    CDHolding = 1,       // BOOL, read-only: the carrier-detect line is high
    CommID = 3,          // long, read-only: the system's handle of the open port
    CommPort = 4,        // short: the port's number, from 1; not while the port is open
    CTSHolding = 5,      // BOOL, read-only: the clear-to-send line is high
    DSRHolding = 7,      // BOOL, read-only: the data-set-ready line is high
    DTREnable = 9,       // BOOL: the data-terminal-ready line
    Handshaking = 10,    // long: a CommHandshaking
    InBufferSize = 11,   // short, bytes; not while the port is open
    InBufferCount = 12,  // short: bytes that wait to be read; 0 empties the buffer
    Break = 13,          // BOOL: the line is held in the break state
    InputLen = 14,       // short: bytes that one read of Input takes at most; 0: all
    NullDiscard = 16,    // BOOL: bytes of 0 that arrive are dropped
    OutBufferSize = 17,  // short, bytes; not while the port is open
    OutBufferCount = 18, // short: bytes that wait to be sent; 0 empties the buffer
    ParityReplace = 19,  // string: stands for a byte of wrong parity; empty: the byte stays
    PortOpen = 20,       // BOOL
    RThreshold = 21,     // short: bytes in the input buffer from which on arrivals raise Receive; 0: none
    RTSEnable = 22,      // BOOL: the request-to-send line
    Settings = 23,       // string "BAUD,PARITY,DATA,STOP", as "9600,n,8,1"
    SThreshold = 24,     // short: Send is raised when fewer bytes than that wait to be sent; 0: never
    Output = 25,         // VARIANT: what is to be sent
    Input = 26,          // VARIANT: takes bytes out of the input buffer
    CommEvent = 27,      // short, read-only: the newest CommEvent
    EOFEnable = 28,      // BOOL: a byte of 26 stops the input until the buffer was read
    InputMode = 29,      // long: a CommInputMode
};

enum class CommHandshaking : std::int32_t { None = 0, XonXoff = 1, Rts = 2, RtsXonXoff = 3 };

enum class CommInputMode : std::int32_t {
    Text = 0,  // Input is a string of bytes
    Bytes = 1, // Input is an array of bytes
};

enum class CommEvent : std::int16_t {
    None = 0,
    Send = 1,
    Receive = 2,
    Cts = 3,  // the line changed
    Dsr = 4,  // the line changed
    Cd = 5,   // the line changed
    Ring = 6, // a ring began
    Eof = 7,  // a byte of 26 arrived
    BreakReceived = 1001,
    Frame = 1004,       // a byte without its stop bit
    Overrun = 1006,     // the hardware lost bytes
    InputFull = 1008,   // bytes were lost since the input buffer was full
    Parity = 1009,      // a byte of wrong parity
    OutputFull = 1010,  // what was to be sent had no room
    DeviceFault = 1011, // the device does not answer any more
};

// An error of the control is a fault with a text that names the property and, where there is one, the value;
// the control is then as it was. User-interface thread.
class KALVIO_API CommunicationsControl {
public:
    CommunicationsControl() = default;
    virtual ~CommunicationsControl() = default;
    CommunicationsControl(const CommunicationsControl&) = delete;
    CommunicationsControl& operator=(const CommunicationsControl&) = delete;

    virtual AutomationResult GetProperty(CommProperty property) = 0;
    virtual AutomationResult SetProperty(CommProperty property, const VARIANT& value) = 0;

    // Called with every event, after CommEvent holds it. It may use the control, but not destroy it.
    std::function<void(CommEvent event)> onComm;
};

} // namespace kalvio
