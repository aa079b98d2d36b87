#include "reference_host/ports/SerialControl.h"

#include "platform/AutomationTable.h"
#include "platform/Clock.h"
#include "platform/DebugFile.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kalvio::reference_host {

namespace {

constexpr unsigned kTimerId = 1;
constexpr std::uint32_t kTimerMs = 5;
constexpr std::uint32_t kLongestCloseMs = 500;
constexpr std::size_t kPieceBytes = 16384;
constexpr int kMostPieces = 4; // in one turn, so that a fast sender does not hold the program up
constexpr char kEndOfFile = 26;
constexpr std::size_t kLongestShown = 60;
constexpr std::int32_t kLargestShort = std::numeric_limits<std::int16_t>::max();
constexpr const char* kNotOpen = "the port is not open";
constexpr const char* kOpen = "the port is open";
constexpr const char* kFlagRefusal = "it takes true or false";
constexpr const char* kCountRefusal = "it takes 0, which empties the buffer";

AutomationResult Value(VARIANT value) {
    return {AutomationFault::None, {}, std::move(value)};
}

std::string Shown(const VARIANT& value) {
    std::string text = value.ToJson();
    if (text.size() > kLongestShown) {
        text.resize(kLongestShown);
        text += "...";
    }
    return text;
}

// Whether the one value is given that empties a buffer.
bool IsZero(const VARIANT& value) {
    std::int32_t number = -1;
    return value.Get(number) && number == 0;
}

VARIANT ByteArray(std::string_view bytes) {
    VARIANT::Array array;
    array.reserve(bytes.size());
    for (const char byte : bytes) {
        array.push_back(VARIANT::Byte(static_cast<std::uint8_t>(byte)));
    }
    return VARIANT::FromArray(std::move(array));
}

bool AppendByte(const VARIANT& value, std::string& bytes) {
    std::uint8_t byte = 0;
    if (value.Type() == AutomationType::Bool || value.Type() == AutomationType::String || !value.Get(byte)) {
        return false;
    }
    bytes += static_cast<char>(byte);
    return true;
}

// The bytes of a text, an array of byte values, or one byte value; false for anything else.
bool TakeBytes(const VARIANT& value, std::string& bytes) {
    const VARIANT* resolved = value.Resolved();
    if (resolved == nullptr) {
        return false;
    }
    if (resolved->Type() == AutomationType::String) {
        return resolved->Get(bytes);
    }
    if (const VARIANT::Array* array = resolved->GetArray()) {
        return std::ranges::all_of(*array, [&](const VARIANT& each) { return AppendByte(each, bytes); });
    }
    return AppendByte(*resolved, bytes);
}

} // namespace

LRESULT SerialControl::Window::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER) {
        return CWnd::OnMessage(message, wParam, lParam);
    }
    m_owner.Poll();
    return 0;
}

SerialControl::SerialControl(CWnd& parent, int controlId, DeviceFinder devices, const SystemCalls& calls)
    : m_window(*this, parent, controlId), m_devices(std::move(devices)), m_line(calls) {
    m_window.ShowWindow(false);
}

SerialControl::~SerialControl() {
    onComm = nullptr;
    Close();
}

// --- Properties ---

template<auto Member>
AutomationResult SerialControl::GetMember() {
    using Type = std::remove_reference_t<decltype(this->*Member)>;
    return Value(automation::TypeOf<Type>::Make(this->*Member));
}

template<auto Member, std::int32_t Lowest, std::int32_t Highest>
SerialControl::Refusal SerialControl::SetNumber(const VARIANT& value) {
    std::int32_t number = 0;
    if (!value.Get(number) || number < Lowest || number > Highest) {
        return Format("it takes %d to %d", Lowest, Highest);
    }
    this->*Member = static_cast<std::remove_reference_t<decltype(this->*Member)>>(number);
    return {};
}

template<auto Member, std::int32_t Lowest, std::int32_t Highest>
SerialControl::Refusal SerialControl::SetNumberWhenClosed(const VARIANT& value) {
    return IsOpen() ? kOpen : SetNumber<Member, Lowest, Highest>(value);
}

template<auto Member>
SerialControl::Refusal SerialControl::SetFlag(const VARIANT& value) {
    bool flag = false;
    if (!value.Get(flag)) {
        return kFlagRefusal;
    }
    this->*Member = flag;
    return {};
}

template<auto Line>
AutomationResult SerialControl::GetLine() {
    Poll();
    return Value(VARIANT::Bool(IsOpen() && m_lines.*Line));
}

std::span<const SerialControl::Row> SerialControl::Rows() {
    using Control = SerialControl;
    using Property = CommProperty;
    static constexpr Row kRows[] = {
        {Property::CDHolding, "CDHolding", &Control::GetLine<&InputLines::carrier>, nullptr},
        {Property::CommID, "CommID", &Control::GetCommId, nullptr},
        {Property::CommPort, "CommPort", &Control::GetMember<&Control::m_commPort>,
         &Control::SetNumberWhenClosed<&Control::m_commPort, 1, kLargestShort>},
        {Property::CTSHolding, "CTSHolding", &Control::GetLine<&InputLines::clearToSend>, nullptr},
        {Property::DSRHolding, "DSRHolding", &Control::GetLine<&InputLines::dataSetReady>, nullptr},
        {Property::DTREnable, "DTREnable", &Control::GetMember<&Control::m_dtr>, &Control::SetDtr},
        {Property::Handshaking, "Handshaking", &Control::GetMember<&Control::m_handshaking>,
         &Control::SetHandshaking},
        {Property::InBufferSize, "InBufferSize", &Control::GetMember<&Control::m_inBufferSize>,
         &Control::SetNumberWhenClosed<&Control::m_inBufferSize, 1, kLargestShort>},
        {Property::InBufferCount, "InBufferCount", &Control::GetInBufferCount, &Control::SetInBufferCount},
        {Property::Break, "Break", &Control::GetMember<&Control::m_break>, &Control::SetBreak},
        {Property::InputLen, "InputLen", &Control::GetMember<&Control::m_inputLen>,
         &Control::SetNumber<&Control::m_inputLen, 0, kLargestShort>},
        {Property::NullDiscard, "NullDiscard", &Control::GetMember<&Control::m_nullDiscard>,
         &Control::SetFlag<&Control::m_nullDiscard>},
        {Property::OutBufferSize, "OutBufferSize", &Control::GetMember<&Control::m_outBufferSize>,
         &Control::SetNumberWhenClosed<&Control::m_outBufferSize, 1, kLargestShort>},
        {Property::OutBufferCount, "OutBufferCount", &Control::GetOutBufferCount,
         &Control::SetOutBufferCount},
        {Property::ParityReplace, "ParityReplace", &Control::GetMember<&Control::m_parityReplace>,
         &Control::SetParityReplace},
        {Property::PortOpen, "PortOpen", &Control::GetPortOpen, &Control::SetPortOpen},
        {Property::RThreshold, "RThreshold", &Control::GetMember<&Control::m_receiveThreshold>,
         &Control::SetNumber<&Control::m_receiveThreshold, 0, kLargestShort>},
        {Property::RTSEnable, "RTSEnable", &Control::GetMember<&Control::m_rts>, &Control::SetRts},
        {Property::Settings, "Settings", &Control::GetMember<&Control::m_settingsText>,
         &Control::SetSettings},
        {Property::SThreshold, "SThreshold", &Control::GetMember<&Control::m_sendThreshold>,
         &Control::SetNumber<&Control::m_sendThreshold, 0, kLargestShort>},
        {Property::Output, "Output", &Control::GetOutput, &Control::SetOutput},
        {Property::Input, "Input", &Control::GetInput, nullptr},
        {Property::CommEvent, "CommEvent", &Control::GetCommEvent, nullptr},
        {Property::EOFEnable, "EOFEnable", &Control::GetMember<&Control::m_eofEnable>,
         &Control::SetEofEnable},
        {Property::InputMode, "InputMode", &Control::GetMember<&Control::m_inputMode>,
         &Control::SetNumber<&Control::m_inputMode, 0, 1>},
    };
    return kRows;
}

AutomationResult SerialControl::GetProperty(CommProperty property) {
    const std::span<const Row> rows = Rows();
    const auto row = std::ranges::find(rows, property, &Row::property);
    if (row == rows.end()) {
        return {
            AutomationFault::UnknownName, Format("there is no property %d", static_cast<int>(property)), {}};
    }
    return (this->*row->get)();
}

AutomationResult SerialControl::SetProperty(CommProperty property, const VARIANT& value) {
    const std::span<const Row> rows = Rows();
    const auto row = std::ranges::find(rows, property, &Row::property);
    if (row == rows.end()) {
        return {
            AutomationFault::UnknownName, Format("there is no property %d", static_cast<int>(property)), {}};
    }
    const Refusal why = row->set == nullptr ? Refusal("it is read-only") : (this->*row->set)(value);
    if (why.empty()) {
        return {};
    }
    return {AutomationFault::Refused,
            Format("%s cannot be %s: %s", row->name, Shown(value).c_str(), why.c_str()),
            {}};
}

AutomationResult SerialControl::GetCommId() {
    return Value(VARIANT::Long(m_line.Descriptor()));
}

AutomationResult SerialControl::GetPortOpen() {
    return Value(VARIANT::Bool(IsOpen()));
}

AutomationResult SerialControl::GetInBufferCount() {
    Poll();
    return Value(VARIANT::Short(static_cast<std::int16_t>(m_input.size())));
}

AutomationResult SerialControl::GetOutBufferCount() {
    Poll();
    return Value(VARIANT::Short(static_cast<std::int16_t>(m_output.size())));
}

AutomationResult SerialControl::GetOutput() {
    return Value({}); // nothing that was put out can be read back
}

AutomationResult SerialControl::GetInput() {
    if (!IsOpen()) {
        return {AutomationFault::Failed, Format("Input cannot be read: %s", kNotOpen), {}};
    }
    Poll();
    std::string taken;
    if (m_inputLen == 0 || static_cast<std::size_t>(m_inputLen) >= m_input.size()) {
        taken.swap(m_input);
    } else {
        taken = m_input.substr(0, static_cast<std::size_t>(m_inputLen));
        m_input.erase(0, taken.size());
    }
    if (m_input.empty()) {
        m_stopped = false;
    }
    return Value(static_cast<CommInputMode>(m_inputMode) == CommInputMode::Bytes
                     ? ByteArray(taken)
                     : VARIANT::String(std::move(taken)));
}

AutomationResult SerialControl::GetCommEvent() {
    Poll();
    return Value(VARIANT::Short(static_cast<std::int16_t>(m_commEvent)));
}

SerialControl::Refusal SerialControl::SetDtr(const VARIANT& value) {
    bool high = false;
    if (!value.Get(high)) {
        return kFlagRefusal;
    }
    Refusal why = IsOpen() ? m_line.SetLine(OutputLine::Dtr, high) : Refusal();
    m_dtr = why.empty() ? high : m_dtr;
    return why;
}

SerialControl::Refusal SerialControl::SetRts(const VARIANT& value) {
    bool high = false;
    if (!value.Get(high)) {
        return kFlagRefusal;
    }
    // With its handshake the line is the system's.
    const bool own = Handshake() != CommHandshaking::Rts && Handshake() != CommHandshaking::RtsXonXoff;
    Refusal why = IsOpen() && own ? m_line.SetLine(OutputLine::Rts, high) : Refusal();
    m_rts = why.empty() ? high : m_rts;
    return why;
}

SerialControl::Refusal SerialControl::SetBreak(const VARIANT& value) {
    bool on = false;
    if (!value.Get(on)) {
        return kFlagRefusal;
    }
    if (!IsOpen()) {
        return kNotOpen;
    }
    Refusal why = m_line.SetBreak(on);
    m_break = why.empty() ? on : m_break;
    return why;
}

SerialControl::Refusal SerialControl::SetHandshaking(const VARIANT& value) {
    const std::int32_t before = m_handshaking;
    constexpr auto kLast = static_cast<std::int32_t>(CommHandshaking::RtsXonXoff);
    Refusal why = SetNumber<&SerialControl::m_handshaking, 0, kLast>(value);
    if (why.empty() && IsOpen()) {
        why = m_line.Configure(m_settings, Handshake());
    }
    if (!why.empty()) {
        m_handshaking = before;
    }
    return why;
}

SerialControl::Refusal SerialControl::SetInBufferCount(const VARIANT& value) {
    if (!IsZero(value)) {
        return kCountRefusal;
    }
    Poll(); // what has come in by now goes as well
    m_input.clear();
    m_behind.clear();
    m_stopped = false;
    return {};
}

SerialControl::Refusal SerialControl::SetOutBufferCount(const VARIANT& value) {
    if (!IsZero(value)) {
        return kCountRefusal;
    }
    m_output.clear();
    if (IsOpen()) {
        m_line.DiscardOutput();
    }
    return {};
}

SerialControl::Refusal SerialControl::SetParityReplace(const VARIANT& value) {
    CString text;
    if (!value.Get(text) || text.size() > 1) {
        return "it takes one character or none";
    }
    m_parityReplace = text;
    return {};
}

SerialControl::Refusal SerialControl::SetPortOpen(const VARIANT& value) {
    bool open = false;
    if (!value.Get(open)) {
        return kFlagRefusal;
    }
    if (!open) {
        Close();
        return {};
    }
    return IsOpen() ? Refusal(kOpen) : Open();
}

SerialControl::Refusal SerialControl::SetSettings(const VARIANT& value) {
    CString text;
    LineSettings settings;
    if (!value.Get(text)) {
        return "it takes a text";
    }
    Refusal why = ParseLineSettings(text, settings);
    if (why.empty() && IsOpen()) {
        why = m_line.Configure(settings, Handshake());
    }
    if (why.empty()) {
        m_settings = settings;
        m_settingsText = text;
    }
    return why;
}

SerialControl::Refusal SerialControl::SetOutput(const VARIANT& value) {
    std::string bytes;
    if (!TakeBytes(value, bytes)) {
        return "it takes a text, a byte value of 0 to 255 or an array of them";
    }
    if (!IsOpen()) {
        return kNotOpen;
    }
    SendOutput();
    if (m_gone) {
        return "the device has gone";
    }
    if (bytes.size() > static_cast<std::size_t>(m_outBufferSize) - m_output.size()) {
        const std::size_t free = static_cast<std::size_t>(m_outBufferSize) - m_output.size();
        Raise(CommEvent::OutputFull);
        RaisePending();
        return Format("its %zu bytes do not fit into the %zu that are free in the output buffer",
                      bytes.size(), free);
    }
    m_output += bytes;
    SendOutput();
    RaisePending();
    return {};
}

SerialControl::Refusal SerialControl::SetEofEnable(const VARIANT& value) {
    Refusal why = SetFlag<&SerialControl::m_eofEnable>(value);
    m_stopped = m_stopped && m_eofEnable;
    return why;
}

// --- The device ---

SerialControl::Refusal SerialControl::Open() {
    const std::string device = m_devices(m_commPort);
    if (device.empty()) {
        return Format("this computer has no serial port %d", m_commPort);
    }
    Refusal why = m_line.Open(device, m_settings, Handshake());
    if (why.empty() && !(why = ApplyLines()).empty()) {
        m_line.Close();
    }
    if (!why.empty()) {
        return why;
    }
    EmptyBuffers();
    m_gone = false;
    m_break = false;
    m_lines = m_line.Lines();
    SetTimer(m_window.Handle(), kTimerId, kTimerMs);
    return {};
}

SerialControl::Refusal SerialControl::ApplyLines() {
    Refusal why = m_line.SetLine(OutputLine::Dtr, m_dtr);
    const bool own = Handshake() != CommHandshaking::Rts && Handshake() != CommHandshaking::RtsXonXoff;
    return why.empty() && own ? m_line.SetLine(OutputLine::Rts, m_rts) : why;
}

void SerialControl::Close() {
    if (!IsOpen()) {
        return;
    }
    KillTimer(m_window.Handle(), kTimerId);
    const std::uint32_t start = GetTickCount();
    SendOutput();
    while (!m_gone && (!m_output.empty() || !m_line.IsSent()) && GetTickCount() - start < kLongestCloseMs) {
        Sleep(1);
        SendOutput();
    }
    if (!m_output.empty() || (!m_gone && !m_line.IsSent())) {
        CDebugFile::Write(
            Format("Serial port %d closed: %zu bytes were not sent\n", m_commPort, m_output.size()));
        m_line.DiscardOutput(); // or the system would go on waiting
    }
    if (m_break) {
        m_line.SetBreak(false);
    }
    m_break = false;
    m_line.Close();
    EmptyBuffers();
}

void SerialControl::EmptyBuffers() {
    m_input.clear();
    m_behind.clear();
    m_output.clear();
    m_marks.Reset();
    m_stopped = false;
    m_events.clear();
}

void SerialControl::SetGone() {
    if (!m_gone) {
        Raise(CommEvent::DeviceFault);
    }
    m_gone = true;
}

// --- Bytes and events ---

void SerialControl::Poll() {
    if (!IsOpen()) {
        return;
    }
    SendOutput();
    ReceiveInput();
    WatchLines();
    RaisePending();
}

void SerialControl::SendOutput() {
    const std::size_t before = m_output.size();
    std::size_t sent = 0;
    while (sent < before && !m_gone) {
        const long count = m_line.Write(std::string_view(m_output).substr(sent));
        if (count < 0) {
            SetGone();
        }
        if (count <= 0) {
            break;
        }
        sent += static_cast<std::size_t>(count);
    }
    m_output.erase(0, sent);
    const auto threshold = static_cast<std::size_t>(m_sendThreshold);
    if (before >= threshold && m_output.size() < threshold) {
        Raise(CommEvent::Send);
    }
}

void SerialControl::ReceiveInput() {
    const std::size_t before = m_input.size();
    if (!m_stopped && !m_behind.empty()) {
        ReceivedBytes behind;
        behind.bytes.swap(m_behind);
        TakeReceived(behind);
    }
    int pieces = 0;
    while (pieces < kMostPieces && !m_gone && !m_stopped && ReceivePiece()) {
        ++pieces;
    }
    const bool threshold =
        m_receiveThreshold != 0 && m_input.size() >= static_cast<std::size_t>(m_receiveThreshold);
    if (m_input.size() > before && threshold) {
        Raise(CommEvent::Receive);
    }
}

// Whether there may be more.
bool SerialControl::ReceivePiece() {
    std::array<char, kPieceBytes> bytes; // NOLINT: filled by the system
    const std::size_t room = static_cast<std::size_t>(m_inBufferSize) - m_input.size();
    const std::size_t most = HasHandshake() ? std::min(room, bytes.size()) : bytes.size();
    if (most == 0) {
        return false;
    }
    const long count = m_line.Read(std::span(bytes).first(most));
    if (count < 0) {
        SetGone();
    }
    if (count <= 0) {
        return false;
    }
    ReceivedBytes received;
    m_marks.Read({bytes.data(), static_cast<std::size_t>(count)}, received);
    TakeReceived(received);
    return static_cast<std::size_t>(count) == most;
}

void SerialControl::TakeReceived(ReceivedBytes& received) {
    for (const std::size_t place : received.damaged) {
        if (!m_parityReplace.empty()) {
            received.bytes[place] = m_parityReplace.front();
        }
        // Without parity it is the stop bit that was wrong.
        Raise(m_settings.parity == Parity::None ? CommEvent::Frame : CommEvent::Parity);
    }
    for (int i = 0; i < received.breaks; ++i) {
        Raise(CommEvent::BreakReceived);
    }
    if (m_nullDiscard) {
        std::erase(received.bytes, '\0');
    }
    const std::size_t end = m_eofEnable ? received.bytes.find(kEndOfFile) : std::string::npos;
    Store(std::string_view(received.bytes).substr(0, end));
    if (end == std::string::npos) {
        return;
    }
    m_behind = received.bytes.substr(end + 1);
    m_stopped = true;
    Raise(CommEvent::Eof);
}

void SerialControl::Store(std::string_view bytes) {
    const std::size_t room = static_cast<std::size_t>(m_inBufferSize) - m_input.size();
    m_input += bytes.substr(0, room);
    if (bytes.size() <= room) {
        return;
    }
    const std::size_t lost = bytes.size() - room;
    m_lost += lost;
    CDebugFile::Write(Format("Serial port %d: input buffer full, %zu bytes lost\n", m_commPort, lost));
    Raise(CommEvent::InputFull);
}

void SerialControl::WatchLines() {
    const InputLines before = m_lines;
    m_lines = m_line.Lines();
    if (m_lines.clearToSend != before.clearToSend) {
        Raise(CommEvent::Cts);
    }
    if (m_lines.dataSetReady != before.dataSetReady) {
        Raise(CommEvent::Dsr);
    }
    if (m_lines.carrier != before.carrier) {
        Raise(CommEvent::Cd);
    }
    if (m_lines.ring && !before.ring) {
        Raise(CommEvent::Ring);
    }
}

// A handler may use the control, which may raise more.
void SerialControl::RaisePending() {
    const std::vector<CommEvent> events = std::exchange(m_events, {});
    for (const CommEvent event : events) {
        m_commEvent = event;
        if (onComm) {
            onComm(event);
        }
    }
}

} // namespace kalvio::reference_host
