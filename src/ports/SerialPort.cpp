#include "ports/SerialPort.h"

#include "host/HostApplication.h"
#include "platform/AutomationTable.h"
#include "platform/Controls.h"
#include "platform/DebugFile.h"

#include <stdexcept>

namespace {

using kalvio::AutomationResult;
using kalvio::CommProperty;
using kalvio::DispatchEntry;
using kalvio::DispatchKind;
using kalvio::SetOutcome;
using kalvio::automation::Take;
using kalvio::automation::TypeOf;

constexpr int kParentIdBase = 1000; // the window's id is this less the port's number
constexpr const char* kParentTitle = "MSComm Parent Window";

CMSComm& ControlOf(const CCmdTarget& target) {
    // Reading a property may take bytes out of the control, so that it is not const; tables are reached
    // through the object.
    return static_cast<CSerialPort&>(const_cast<CCmdTarget&>(target)).GetControl();
}

// A row of the table for a property of the control that is only read. The dispatcher makes a fault of what is
// thrown.
template<typename T>
DispatchEntry Read(const char* name, CommProperty property) {
    DispatchEntry entry;
    entry.name = name;
    entry.kind = DispatchKind::ReadOnlyProperty;
    entry.result = TypeOf<T>::value;
    entry.get = [property](const CCmdTarget& target) {
        const AutomationResult result = ControlOf(target).Get(property);
        if (!result.Ok()) {
            throw std::runtime_error(result.text);
        }
        return TypeOf<T>::Make(Take<T>(result.value));
    };
    return entry;
}

template<typename T>
DispatchEntry ReadAndSet(const char* name, CommProperty property) {
    DispatchEntry entry = Read<T>(name, property);
    entry.kind = DispatchKind::Property;
    entry.set = [property](CCmdTarget& target, const VARIANT& value) {
        const AutomationResult result = ControlOf(target).Set(property, value);
        return result.Ok() ? SetOutcome{} : SetOutcome::Refused(result.text + ".");
    };
    return entry;
}

} // namespace

CSerialPort::~CSerialPort() {
    bool open = false;
    if (m_control.GetPortOpen().value.Get(open) && open) {
        m_control.SetPortOpen(false);
    }
}

int CSerialPort::Create() {
    const int id = kParentIdBase - m_port;
    m_parent = std::make_unique<CButton>(id, GetHostApplication().mainWindow);
    m_parent->SetText(kParentTitle);
    m_parent->ShowWindow(false);
    if (m_control.Create(*m_parent, id) == 0) {
        return 0;
    }
    CMSComm::Result result = m_control.SetCommPort(m_port);
    // Opened once now, so that a port that cannot be opened fails here.
    for (const bool open : {true, false}) {
        if (result.Ok()) {
            result = m_control.SetPortOpen(open);
        }
    }
    if (!result.Ok()) {
        TraceError("CSerialPort::Create", result.text);
    }
    return result.Ok() ? 1 : 0;
}

const kalvio::DispatchTable& CSerialPort::DispatchMap() {
    static const kalvio::DispatchTable table{
        Read<bool>("SP_CDHolding", CommProperty::CDHolding),
        Read<bool>("SP_CTSHolding", CommProperty::CTSHolding),
        Read<bool>("SP_DSRHolding", CommProperty::DSRHolding),
        ReadAndSet<bool>("SP_DTREnable", CommProperty::DTREnable),
        ReadAndSet<std::int32_t>("SP_Handshaking", CommProperty::Handshaking),
        ReadAndSet<std::int16_t>("SP_InBufferSize", CommProperty::InBufferSize),
        ReadAndSet<std::int16_t>("SP_InBufferCount", CommProperty::InBufferCount),
        ReadAndSet<bool>("SP_Break", CommProperty::Break),
        ReadAndSet<std::int16_t>("SP_InputLen", CommProperty::InputLen),
        ReadAndSet<bool>("SP_NullDiscard", CommProperty::NullDiscard),
        ReadAndSet<std::int16_t>("SP_OutBufferSize", CommProperty::OutBufferSize),
        ReadAndSet<std::int16_t>("SP_OutBufferCount", CommProperty::OutBufferCount),
        ReadAndSet<CString>("SP_ParityReplace", CommProperty::ParityReplace),
        ReadAndSet<bool>("SP_PortOpen", CommProperty::PortOpen),
        ReadAndSet<bool>("SP_RTSEnable", CommProperty::RTSEnable),
        ReadAndSet<CString>("SP_Settings", CommProperty::Settings),
        ReadAndSet<VARIANT>("SP_Output", CommProperty::Output),
        ReadAndSet<VARIANT>("SP_Input", CommProperty::Input),
        Read<std::int16_t>("SP_CommEvent", CommProperty::CommEvent),
        ReadAndSet<bool>("SP_EOFEnable", CommProperty::EOFEnable),
        ReadAndSet<std::int32_t>("SP_InputMode", CommProperty::InputMode),
    };
    return table;
}
