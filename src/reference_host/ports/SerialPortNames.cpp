#include "reference_host/ports/SerialPortNames.h"

#include "platform/AutomationTable.h"

#include <stdexcept>

namespace kalvio::reference_host {

namespace {

constexpr double kLongestMs = 86400000.0;
constexpr const char* kNoPort = "there is no current serial port; PORTS_CreateSerialPort makes one";

VARIANT Checked(const CMSComm::Result& result) {
    if (!result.Ok()) {
        throw std::runtime_error(result.text);
    }
    return result.value;
}

// Has each read of the input give one byte as text, and puts back what was set.
class ByteByByte {
public:
    explicit ByteByByte(CMSComm& control)
        : m_control(control),
          m_length(Checked(control.GetInputLen())),
          m_mode(Checked(control.GetInputMode())) {
        Checked(control.SetInputLen(1));
        Checked(control.SetInputMode(static_cast<std::int32_t>(CommInputMode::Text)));
    }
    ~ByteByByte() {
        m_control.Set(CommProperty::InputLen, m_length);
        m_control.Set(CommProperty::InputMode, m_mode);
    }
    ByteByByte(const ByteByByte&) = delete;
    ByteByByte& operator=(const ByteByByte&) = delete;

private:
    CMSComm& m_control;
    VARIANT m_length;
    VARIANT m_mode;
};

// Takes bytes until the text ends with `end`; false when they are used up before.
bool TakeUntil(CMSComm& control, const CString& end, CString& text) {
    for (;;) {
        CString byte;
        Checked(control.GetInput()).Get(byte);
        if (byte.empty()) {
            return false;
        }
        text += byte;
        if (text.ends_with(end)) {
            return true;
        }
    }
}

} // namespace

const DispatchTable& SerialPortNames::GetDispatchMap() const {
    static const DispatchTable table = [] {
        DispatchTable names;
        for (const DispatchEntry& entry : CSerialPort::DispatchMap()) {
            names.push_back(Forwarded(entry));
        }
        names.push_back(automation::Method("SERIAL_ReadUntil", &SerialPortNames::ReadUntil));
        return names;
    }();
    return table;
}

DispatchEntry SerialPortNames::Forwarded(const DispatchEntry& entry) {
    DispatchEntry forwarded = entry;
    forwarded.get = [get = entry.get](const CCmdTarget& target) {
        return get(static_cast<const SerialPortNames&>(target).Current());
    };
    if (entry.set) {
        forwarded.set = [set = entry.set](CCmdTarget& target, const VARIANT& value) {
            return set(static_cast<const SerialPortNames&>(target).Current(), value);
        };
    }
    return forwarded;
}

CSerialPort& SerialPortNames::Current() const {
    CSerialPort* port = m_ports.GetCurrentSerialPort();
    if (port == nullptr) {
        throw std::runtime_error(kNoPort);
    }
    return *port;
}

bool SerialPortNames::ReadUntil(const CString& end, double milliseconds, VARIANT* text) {
    if (end.empty() || !(milliseconds >= 0.0 && milliseconds <= kLongestMs)) {
        throw std::runtime_error("it takes an end that is not empty and 0 to 86400000 milliseconds");
    }
    CMSComm& control = Current().GetControl();
    const ByteByByte bytes(control);
    CString line;
    bool ended = false;
    m_turns([&] { return ended = TakeUntil(control, end, line); }, static_cast<std::uint32_t>(milliseconds));
    if (ended) {
        line.resize(line.size() - end.size());
    }
    *text = VARIANT::String(line);
    return ended;
}

} // namespace kalvio::reference_host
