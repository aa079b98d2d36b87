#include "simulator/VirtualUnit.h"

#include "simulator/boards/CalibrationImage.h"
#include "simulator/commands/CommandCarrier.h"
#include "simulator/commands/DriverPort.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

struct VirtualUnit::State {
    State(UnitClock unitClock, UnitOptions unitOptions)
        : clock(std::move(unitClock)),
          options(std::move(unitOptions)),
          lastTick(clock.now()),
          boards(options, lastTick),
          carrier(boards),
          endpoint(boards.faults, [this](const CommandFrame& frame) { return carrier.Carry(frame); }),
          port(boards.faults, endpoint, options.releaseNumber) {}

    // Lets unit time pass and tells what time it is: never earlier than before, though callers may
    // overtake each other between the clock and the lock.
    std::uint32_t PassTime(std::uint32_t tick);
    [[nodiscard]] bool CanOpen(std::string_view name);
    Transfer Handle(DeviceHandle device, const DriverRequest& request, std::uint32_t tick);
    void Note(const DriverRequest& request, const Transfer& transfer);
    void SetDefaultCalibration(CalibrationMemory memory);
    // The DSP that has such a word; null when there is none.
    [[nodiscard]] DspMemory* FindDsp(int dsp, char space, std::uint32_t address);

    const UnitClock clock;
    mutable std::mutex lock; // guards everything below
    UnitOptions options;
    std::uint32_t lastTick;
    UnitBoards boards;
    CommandCarrier carrier;
    CommandEndpoint endpoint;
    DriverPort port;
    DeviceHandle handle = DeviceHandle::None;
    std::uint32_t lastHandle = 0;
    std::uint32_t requestCount = 0;
    Log<RequestRecord> requests;
};

std::uint32_t VirtualUnit::State::PassTime(std::uint32_t tick) {
    if (static_cast<std::int32_t>(tick - lastTick) > 0)
        lastTick = tick;
    boards.measurement.Advance(lastTick);
    return lastTick;
}

bool VirtualUnit::State::CanOpen(std::string_view name) {
    if (name != options.deviceName || !options.present || handle != DeviceHandle::None ||
        boards.faults.HasBegun(FaultKind::Disconnect))
        return false;
    if (options.absentOpens == 0)
        return true;
    --options.absentOpens;
    return false;
}

Transfer VirtualUnit::State::Handle(DeviceHandle device, const DriverRequest& request, std::uint32_t tick) {
    const std::uint32_t passed = PassTime(tick);
    Transfer transfer;
    if (device == DeviceHandle::None || device != handle)
        transfer = Transfer::Failed(kErrorInvalidHandle);
    else if (!options.present)
        transfer = Transfer::Failed(kErrorNotConnected);
    else
        transfer = port.Handle(request, passed);
    Note(request, transfer);
    return transfer;
}

void VirtualUnit::State::Note(const DriverRequest& request, const Transfer& transfer) {
    ++requestCount;
    const std::size_t length = request.dataToUnit.size() + request.dataFromUnit.size();
    requests.Add({request.code,
                  {request.input.begin(), request.input.end()},
                  static_cast<std::uint32_t>(length),
                  transfer.ok});
    if (!transfer.complaint.empty())
        boards.protocolErrors.Add(transfer.complaint);
}

void VirtualUnit::State::SetDefaultCalibration(CalibrationMemory memory) {
    const bool isMain = memory == CalibrationMemory::MainBoard;
    const ByteVector image =
        MakeCalibrationImage(memory, isMain ? options.mainBoardVersion : options.analogueVersion,
                             isMain ? options.mainBoardOptions : options.linkFit);
    boards.i2c.Memory(memory).Put(kCalibrationMirror, image);
    boards.i2c.Memory(memory).Put(kCalibrationMaster, image);
}

DspMemory* VirtualUnit::State::FindDsp(int dsp, char space, std::uint32_t address) {
    const bool exists = (dsp == 0 || dsp == 1) &&
                        DspMemory::Check(static_cast<std::uint8_t>(space), address, 1) == UnitError::None;
    return exists ? &boards.dsps[static_cast<std::size_t>(dsp)] : nullptr;
}

VirtualUnit::VirtualUnit(UnitClock clock, UnitOptions options)
    : m_state(std::make_unique<State>(std::move(clock), std::move(options))) {
    SetDefaultCalibration(CalibrationMemory::MainBoard);
    SetDefaultCalibration(CalibrationMemory::AnalogueBoard);
}

VirtualUnit::~VirtualUnit() = default;

DeviceHandle VirtualUnit::Open(std::string_view name) {
    const std::scoped_lock guard(m_state->lock);
    if (!m_state->CanOpen(name))
        return DeviceHandle::None;
    m_state->handle = DeviceHandle{++m_state->lastHandle};
    return m_state->handle;
}

DriverReply VirtualUnit::Control(DeviceHandle device, const DriverRequest& request) {
    const std::uint32_t tick = m_state->clock.now();
    Transfer transfer;
    {
        const std::scoped_lock guard(m_state->lock);
        transfer = m_state->Handle(device, request, tick);
    }
    if (transfer.delayMs != 0)
        m_state->clock.sleep(transfer.delayMs);
    return {transfer.ok, transfer.bytes, transfer.error};
}

void VirtualUnit::Close(DeviceHandle device) {
    const std::scoped_lock guard(m_state->lock);
    if (device == DeviceHandle::None || device != m_state->handle)
        return;
    m_state->handle = DeviceHandle::None;
    m_state->endpoint.Reset();
}

void VirtualUnit::SetPresent(bool present) {
    const std::scoped_lock guard(m_state->lock);
    m_state->options.present = present;
}

void VirtualUnit::SetReleaseNumber(std::uint16_t release) {
    const std::scoped_lock guard(m_state->lock);
    m_state->port.SetReleaseNumber(release);
}

void VirtualUnit::SetDeviceUnderTest(DeviceUnderTest device) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.measurement.SetDevice(std::move(device), m_state->PassTime(tick));
}

void VirtualUnit::SetResultCadence(std::uint32_t milliseconds) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    m_state->PassTime(tick);
    m_state->boards.measurement.SetCadence(milliseconds);
}

Stimulus VirtualUnit::GetStimulus(int channel) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.measurement.GetStimulus(channel == 1 ? 1 : 0);
}

void VirtualUnit::AddFault(const Fault& fault) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.faults.Add(fault);
}

void VirtualUnit::ClearFaults() {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.faults.Clear();
}

std::uint32_t VirtualUnit::FaultsShown() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.faults.Shown();
}

std::vector<std::string> VirtualUnit::ProtocolErrors() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.protocolErrors.Copy();
}

void VirtualUnit::ClearProtocolErrors() {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.protocolErrors.Clear();
}

std::vector<Exchange> VirtualUnit::Exchanges() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->carrier.Exchanges();
}

std::vector<RequestRecord> VirtualUnit::Requests() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->requests.Copy();
}

void VirtualUnit::ClearLogs() {
    const std::scoped_lock guard(m_state->lock);
    m_state->carrier.ClearExchanges();
    m_state->requests.Clear();
}

std::uint32_t VirtualUnit::RequestCount() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->requestCount;
}

std::vector<RegisterWrite> VirtualUnit::RegisterWrites() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.analogue.Writes().Copy();
}

std::vector<LoadedImage> VirtualUnit::Images() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.images.Copy();
}

bool VirtualUnit::IsInitialised() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.initialised;
}

bool VirtualUnit::IsOpen() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->handle != DeviceHandle::None;
}

std::vector<std::string> VirtualUnit::RelayViolations() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.analogue.Violations();
}

std::uint8_t VirtualUnit::PeekMicro(char space, std::uint16_t address) const {
    const std::scoped_lock guard(m_state->lock);
    std::uint8_t value = 0;
    m_state->boards.micro.Read(static_cast<std::uint8_t>(space), address, {&value, 1});
    return value;
}

void VirtualUnit::PokeMicro(char space, std::uint16_t address, std::uint8_t value) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.micro.Write(static_cast<std::uint8_t>(space), address, {&value, 1});
}

std::uint32_t VirtualUnit::PeekDsp(int dsp, char space, std::uint32_t address) const {
    const std::scoped_lock guard(m_state->lock);
    const DspMemory* memory = m_state->FindDsp(dsp, space, address);
    return memory == nullptr ? 0 : memory->Get(static_cast<std::uint8_t>(space), address);
}

void VirtualUnit::PokeDsp(int dsp, char space, std::uint32_t address, std::uint32_t value) {
    const std::scoped_lock guard(m_state->lock);
    if (DspMemory* memory = m_state->FindDsp(dsp, space, address))
        memory->Put(static_cast<std::uint8_t>(space), address, value);
}

std::uint8_t VirtualUnit::PeekRegister(char reg) const {
    const std::scoped_lock guard(m_state->lock);
    return reg >= kFirstRegister && reg <= kLastRegister ? m_state->boards.analogue.Written(reg)
                                                         : std::uint8_t{0};
}

std::array<std::uint8_t, 8> VirtualUnit::MainBoardRelays() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.relays;
}

std::vector<std::uint8_t> VirtualUnit::ReadCalibration(CalibrationMemory memory) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.i2c.Memory(memory).Contents();
}

void VirtualUnit::WriteCalibration(CalibrationMemory memory, std::size_t offset,
                                   std::span<const std::uint8_t> bytes) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.i2c.Memory(memory).Put(offset, bytes);
}

void VirtualUnit::SetDefaultCalibration(CalibrationMemory memory) {
    const std::scoped_lock guard(m_state->lock);
    m_state->SetDefaultCalibration(memory);
}

void VirtualUnit::AttachPeripheral(std::uint8_t address, Peripheral peripheral) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.peripherals.Attach(address, std::move(peripheral));
}

std::uint32_t VirtualUnit::PeripheralAttempts(std::uint8_t address) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.peripherals.Attempts(address);
}

} // namespace kalvio::simulator
