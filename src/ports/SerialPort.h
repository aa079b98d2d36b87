#pragma once

// One serial port: a communications control in an invisible window, and its properties under SP_ names.

#include "platform/Automation.h"
#include "platform/Export.h"
#include "platform/Window.h"
#include "ports/MSComm.h"

#include <cstdint>
#include <memory>

// Made by CPorts. User-interface thread.
class KALVIO_API CSerialPort : public CCmdTarget {
public:
    explicit CSerialPort(std::int16_t port) : m_port(port) {}
    // Closes the port when it is open.
    ~CSerialPort() override;
    CSerialPort(const CSerialPort&) = delete;
    CSerialPort& operator=(const CSerialPort&) = delete;

    // Makes the window and the control and opens and closes the port once: 1, or 0 when the host has no
    // control or the port cannot be opened; the debug file then says why. Once.
    int Create();

    [[nodiscard]] std::int16_t GetPort() const { return m_port; }
    [[nodiscard]] CMSComm& GetControl() { return m_control; }
    [[nodiscard]] CWnd* GetParentWindow() const { return m_parent.get(); } // null before Create

    // An error of the control is a fault of the request: a value that is not taken is refused, a property
    // that cannot be read has failed; the text is the control's.
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override { return DispatchMap(); }
    // The same table without a port, for whoever wants to know the names.
    [[nodiscard]] static const kalvio::DispatchTable& DispatchMap();

private:
    const std::int16_t m_port;
    std::unique_ptr<CWnd> m_parent; // outlives the control in it
    CMSComm m_control;
};
