#pragma once

// The communications control as the library calls it: one operation for reading and one for setting each
// property.

#include "platform/CommunicationsControl.h"
#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <memory>
#include <utility>

class CWnd;

// What the properties mean stands in platform/CommunicationsControl.h. Each operation answers the value or
// the control's error; before Create every one answers an error. User-interface thread.
class KALVIO_API CMSComm {
public:
    using Result = kalvio::AutomationResult;

    // Makes the control as a child of a window: 1, or 0 when the host application has none to give.
    int Create(CWnd& parent, int controlId);

    Result GetCDHolding() { return Get(Property::CDHolding); }
    Result SetCDHolding(bool value) { return Set(Property::CDHolding, VARIANT::Bool(value)); }
    Result GetCommID() { return Get(Property::CommID); }
    Result SetCommID(std::int32_t value) { return Set(Property::CommID, VARIANT::Long(value)); }
    Result GetCommPort() { return Get(Property::CommPort); }
    Result SetCommPort(std::int16_t value) { return Set(Property::CommPort, VARIANT::Short(value)); }
    Result GetCTSHolding() { return Get(Property::CTSHolding); }
    Result SetCTSHolding(bool value) { return Set(Property::CTSHolding, VARIANT::Bool(value)); }
    Result GetDSRHolding() { return Get(Property::DSRHolding); }
    Result SetDSRHolding(bool value) { return Set(Property::DSRHolding, VARIANT::Bool(value)); }
    Result GetDTREnable() { return Get(Property::DTREnable); }
    Result SetDTREnable(bool value) { return Set(Property::DTREnable, VARIANT::Bool(value)); }
    Result GetHandshaking() { return Get(Property::Handshaking); }
    Result SetHandshaking(std::int32_t value) { return Set(Property::Handshaking, VARIANT::Long(value)); }
    Result GetInBufferSize() { return Get(Property::InBufferSize); }
    Result SetInBufferSize(std::int16_t value) { return Set(Property::InBufferSize, VARIANT::Short(value)); }
    Result GetInBufferCount() { return Get(Property::InBufferCount); }
    Result SetInBufferCount(std::int16_t value) {
        return Set(Property::InBufferCount, VARIANT::Short(value));
    }
    Result GetBreak() { return Get(Property::Break); }
    Result SetBreak(bool value) { return Set(Property::Break, VARIANT::Bool(value)); }
    Result GetInputLen() { return Get(Property::InputLen); }
    Result SetInputLen(std::int16_t value) { return Set(Property::InputLen, VARIANT::Short(value)); }
    Result GetNullDiscard() { return Get(Property::NullDiscard); }
    Result SetNullDiscard(bool value) { return Set(Property::NullDiscard, VARIANT::Bool(value)); }
    Result GetOutBufferSize() { return Get(Property::OutBufferSize); }
    Result SetOutBufferSize(std::int16_t value) {
        return Set(Property::OutBufferSize, VARIANT::Short(value));
    }
    Result GetOutBufferCount() { return Get(Property::OutBufferCount); }
    Result SetOutBufferCount(std::int16_t value) {
        return Set(Property::OutBufferCount, VARIANT::Short(value));
    }
    Result GetParityReplace() { return Get(Property::ParityReplace); }
    Result SetParityReplace(CString value) {
        return Set(Property::ParityReplace, VARIANT::String(std::move(value)));
    }
    Result GetPortOpen() { return Get(Property::PortOpen); }
    Result SetPortOpen(bool value) { return Set(Property::PortOpen, VARIANT::Bool(value)); }
    Result GetRThreshold() { return Get(Property::RThreshold); }
    Result SetRThreshold(std::int16_t value) { return Set(Property::RThreshold, VARIANT::Short(value)); }
    Result GetRTSEnable() { return Get(Property::RTSEnable); }
    Result SetRTSEnable(bool value) { return Set(Property::RTSEnable, VARIANT::Bool(value)); }
    Result GetSettings() { return Get(Property::Settings); }
    Result SetSettings(CString value) { return Set(Property::Settings, VARIANT::String(std::move(value))); }
    Result GetSThreshold() { return Get(Property::SThreshold); }
    Result SetSThreshold(std::int16_t value) { return Set(Property::SThreshold, VARIANT::Short(value)); }
    Result GetOutput() { return Get(Property::Output); }
    Result SetOutput(const VARIANT& value) { return Set(Property::Output, value); }
    Result GetInput() { return Get(Property::Input); }
    Result SetInput(const VARIANT& value) { return Set(Property::Input, value); }
    Result GetCommEvent() { return Get(Property::CommEvent); }
    Result SetCommEvent(std::int16_t value) { return Set(Property::CommEvent, VARIANT::Short(value)); }
    Result GetEOFEnable() { return Get(Property::EOFEnable); }
    Result SetEOFEnable(bool value) { return Set(Property::EOFEnable, VARIANT::Bool(value)); }
    Result GetInputMode() { return Get(Property::InputMode); }
    Result SetInputMode(std::int32_t value) { return Set(Property::InputMode, VARIANT::Long(value)); }

    // Any property by its dispatch id.
    Result Get(kalvio::CommProperty property);
    Result Set(kalvio::CommProperty property, const VARIANT& value);

    // What is called with every event of the control; empty for nobody. After Create.
    void SetEventHandler(std::function<void(kalvio::CommEvent event)> handler);

private:
    using Property = kalvio::CommProperty;

    std::unique_ptr<kalvio::CommunicationsControl> m_control; // null before Create
};
