#pragma once

// The communications control over a serial device of this computer.

#include "platform/CommunicationsControl.h"
#include "platform/Window.h"
#include "reference_host/ports/LineSettings.h"
#include "reference_host/ports/MarkedInput.h"
#include "reference_host/ports/SystemCalls.h"
#include "reference_host/ports/TerminalLine.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kalvio::reference_host {

// While the port is open, a timer of its window and every look at its buffers, events or lines move what has
// come in and what waits to be sent; nothing ever waits for the device but closing, half a second at most,
// until what was put out is sent. The rest is then dropped.
//
// The input buffer holds InBufferSize bytes. What comes in while it is full stays with the system, and so
// with the other side, when there is a handshake; else it is lost, which is counted and raises InputFull.
// User-interface thread.
class SerialControl final : public CommunicationsControl {
public:
    // The path of a port's device; empty: there is none.
    using DeviceFinder = std::function<std::string(std::int16_t port)>;

    SerialControl(CWnd& parent, int controlId, DeviceFinder devices,
                  const SystemCalls& calls = RealSystemCalls());
    ~SerialControl() override;

    AutomationResult GetProperty(CommProperty property) override;
    AutomationResult SetProperty(CommProperty property, const VARIANT& value) override;

    // Moves bytes and raises events.
    void Poll();
    // Bytes that were lost since the input buffer was full, in the life of the control.
    [[nodiscard]] std::uint64_t LostBytes() const { return m_lost; }

private:
    // What carries the timer.
    class Window final : public CWnd {
    public:
        Window(SerialControl& owner, CWnd& parent, int controlId)
            : CWnd(controlId, &parent), m_owner(owner) {}
        LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

    private:
        SerialControl& m_owner;
    };

    // Why something is refused, without a full stop; empty: it is not.
    using Refusal = std::string;
    struct Row {
        CommProperty property;
        const char* name;
        AutomationResult (SerialControl::*get)();
        Refusal (SerialControl::*set)(const VARIANT& value); // null: read-only
    };
    static std::span<const Row> Rows();

    template<auto Member>
    AutomationResult GetMember();
    template<auto Member, std::int32_t Lowest, std::int32_t Highest>
    Refusal SetNumber(const VARIANT& value);
    template<auto Member, std::int32_t Lowest, std::int32_t Highest>
    Refusal SetNumberWhenClosed(const VARIANT& value);
    template<auto Member>
    Refusal SetFlag(const VARIANT& value);
    template<auto Line>
    AutomationResult GetLine();

    AutomationResult GetCommId();
    AutomationResult GetPortOpen();
    AutomationResult GetInBufferCount();
    AutomationResult GetOutBufferCount();
    AutomationResult GetOutput();
    AutomationResult GetInput();
    AutomationResult GetCommEvent();

    Refusal SetDtr(const VARIANT& value);
    Refusal SetRts(const VARIANT& value);
    Refusal SetBreak(const VARIANT& value);
    Refusal SetHandshaking(const VARIANT& value);
    Refusal SetInBufferCount(const VARIANT& value);
    Refusal SetOutBufferCount(const VARIANT& value);
    Refusal SetParityReplace(const VARIANT& value);
    Refusal SetPortOpen(const VARIANT& value);
    Refusal SetSettings(const VARIANT& value);
    Refusal SetOutput(const VARIANT& value);
    Refusal SetEofEnable(const VARIANT& value);

    [[nodiscard]] bool IsOpen() const { return m_line.IsOpen(); }
    [[nodiscard]] bool HasHandshake() const { return m_handshaking != 0; }
    [[nodiscard]] CommHandshaking Handshake() const { return static_cast<CommHandshaking>(m_handshaking); }
    Refusal Open();
    void Close();
    void EmptyBuffers();
    Refusal ApplyLines();

    void SendOutput();
    void ReceiveInput();
    bool ReceivePiece();
    void TakeReceived(ReceivedBytes& received);
    void Store(std::string_view bytes);
    void WatchLines();
    void SetGone();
    void Raise(CommEvent event) { m_events.push_back(event); }
    void RaisePending();

    Window m_window;
    DeviceFinder m_devices;
    TerminalLine m_line;
    MarkedInput m_marks;

    std::int16_t m_commPort = 1;
    std::int32_t m_handshaking = 0;
    std::string m_settingsText = "9600,n,8,1";
    LineSettings m_settings;
    std::int16_t m_inBufferSize = 1024;
    std::int16_t m_outBufferSize = 512;
    std::int16_t m_inputLen = 0;
    std::int32_t m_inputMode = 0;
    std::int16_t m_receiveThreshold = 0;
    std::int16_t m_sendThreshold = 0;
    std::string m_parityReplace = "?";
    bool m_dtr = true;
    bool m_rts = true;
    bool m_break = false;
    bool m_nullDiscard = false;
    bool m_eofEnable = false;

    std::string m_input;  // what can be read
    std::string m_behind; // what came in behind the byte that stopped the input
    std::string m_output; // what waits to be sent
    bool m_stopped = false;
    bool m_gone = false; // the device; until the port is closed
    InputLines m_lines;  // as they were looked at last
    std::uint64_t m_lost = 0;
    CommEvent m_commEvent = CommEvent::None;
    std::vector<CommEvent> m_events; // to be raised
};

} // namespace kalvio::reference_host
