#include "simulator/UnitState.h"

#include "simulator/boards/CalibrationImage.h"

#include <utility>

namespace kalvio::simulator {

UnitState::UnitState(UnitClock unitClock, UnitOptions unitOptions)
    : clock(std::move(unitClock)),
      options(std::move(unitOptions)),
      lastTick(clock.now()),
      boards(options, lastTick),
      carrier(boards),
      endpoint(boards.faults, [this](const CommandFrame& frame) { return carrier.Carry(frame); }),
      port(boards.faults, endpoint, options.releaseNumber) {
    SetDefaultCalibration(CalibrationMemory::MainBoard);
    SetDefaultCalibration(CalibrationMemory::AnalogueBoard);
}

std::uint32_t UnitState::PassTime(std::uint32_t tick) {
    if (static_cast<std::int32_t>(tick - lastTick) > 0) {
        lastTick = tick;
    }
    boards.measurement.Advance(lastTick);
    return lastTick;
}

void UnitState::FollowSignalPath(std::uint32_t tick) {
    boards.measurement.SetPath(boards.peripherals.Path(), PassTime(tick));
}

bool UnitState::CanOpen(std::string_view name) {
    if (name != options.deviceName || !options.present || handle != DeviceHandle::None ||
        boards.faults.HasBegun(FaultKind::Disconnect)) {
        return false;
    }
    if (options.absentOpens == 0) {
        return true;
    }
    --options.absentOpens;
    return false;
}

Transfer UnitState::Handle(DeviceHandle device, const DriverRequest& request, std::uint32_t tick) {
    const std::uint32_t passed = PassTime(tick);
    Transfer transfer;
    if (device == DeviceHandle::None || device != handle) {
        transfer = Transfer::Failed(kErrorInvalidHandle);
    } else if (!options.present) {
        transfer = Transfer::Failed(kErrorNotConnected);
    } else {
        transfer = port.Handle(request, passed);
    }
    Note(request, transfer);
    return transfer;
}

void UnitState::Note(const DriverRequest& request, const Transfer& transfer) {
    ++requestCount;
    const std::size_t length = request.dataToUnit.size() + request.dataFromUnit.size();
    requests.Add({request.code,
                  {request.input.begin(), request.input.end()},
                  static_cast<std::uint32_t>(length),
                  transfer.ok});
    if (!transfer.complaint.empty()) {
        boards.protocolErrors.Add(transfer.complaint);
    }
}

void UnitState::SetDefaultCalibration(CalibrationMemory memory) {
    const bool isMain = memory == CalibrationMemory::MainBoard;
    const ByteVector image =
        MakeCalibrationImage(memory, isMain ? options.mainBoardVersion : options.analogueVersion,
                             isMain ? options.mainBoardOptions : options.linkFit);
    boards.i2c.Memory(memory).Put(kCalibrationMirror, image);
    boards.i2c.Memory(memory).Put(kCalibrationMaster, image);
}

} // namespace kalvio::simulator
