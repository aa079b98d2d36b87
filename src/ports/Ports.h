#pragma once

// The ports of the computer for scripts: writes to I/O ports, and serial ports of which one is current.

#include "host/Trees.h"
#include "platform/Automation.h"
#include "platform/Export.h"
#include "platform/PortOutput.h"
#include "ports/SerialPort.h"

#include <cstdint>
#include <map>
#include <memory>

// Made by the program, which calls Initialise once. User-interface thread.
class KALVIO_API CPorts : public CCmdTarget {
public:
    CPorts() = default;
    ~CPorts() override; // deletes every serial port; open ones are closed
    CPorts(const CPorts&) = delete;
    CPorts& operator=(const CPorts&) = delete;

    // Finds out whether programs may write to I/O ports on this system: those whose version the host
    // application gives as less than 5 let them. 1.
    int Initialise();
    [[nodiscard]] int PortsEnabled() const { return m_portsEnabled; }

    // One access of that width to an I/O port: 1 when it was made. 0, silently, when ports are not enabled or
    // the host application has no way to write or could not.
    int OutputByte(std::uint16_t port, std::uint8_t value) const { return Write({port, value, 1}); }
    int OutputWord(std::uint16_t port, std::uint16_t value) const { return Write({port, value, 2}); }
    int OutputDWord(std::uint16_t port, std::uint32_t value) const { return Write({port, value, 4}); }
    int WriteValue(std::int16_t port, std::int16_t value) const; // the value's low byte

    [[nodiscard]] CSerialPort* GetCurrentSerialPort() const { return m_current; } // null: none
    // What scripts reach the current serial port through; null without one. It goes with its port: objects
    // here are not counted, so that `addRef` changes nothing.
    [[nodiscard]] CCmdTarget* GetSerialPortDispatchInterface(int addRef) const;

    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) const;

    // --- Automation ---
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    bool OLEWriteValue(std::int16_t port, std::int16_t value) { return WriteValue(port, value) != 0; }
    // Makes the object of a port, which becomes the current one; one that was there goes first. False when
    // the port cannot be used: there is then no object and no current port, and the user is told when the
    // host's automation display is on.
    bool OLECreateSerialPort(std::int16_t port);
    // Makes a port that was created the current one; false when it was not, which the user is told.
    bool OLESetSerialPort(std::int16_t port);
    // Closes and deletes a port; nothing for one that was not created.
    void OLEDeleteSerialPort(std::int16_t port);

private:
    [[nodiscard]] int Write(const kalvio::PortWrite& write) const;

    int m_portsEnabled = 0;
    std::map<std::int16_t, std::unique_ptr<CSerialPort>> m_serialPorts;
    CSerialPort* m_current = nullptr; // in the map
};
