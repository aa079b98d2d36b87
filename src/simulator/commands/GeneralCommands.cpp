#include "simulator/commands/GeneralCommands.h"

#include "simulator/signals/GeneratorRecord.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

constexpr std::size_t kPeakBytes = 18;
constexpr std::size_t kAutoRangeRegisters = 16; // offset of the new values of 'p', 'q', 'r' and 's'

CommandOutcome SetRelay(const CommandFrame& frame, UnitBoards& boards) {
    const std::uint8_t relay = frame.outData[0];
    const std::uint8_t state = frame.outData[1];
    if (relay >= kMainBoardRelayCount || state > 1) {
        return CommandOutcome::Refused(UnitError::Parameter);
    }
    boards.relays[relay] = state;
    return {};
}

CommandOutcome ReadPeaks(const CommandFrame& frame, UnitBoards& boards) {
    ByteVector reply(kPeakBytes);
    for (std::size_t channel = 0; channel < 2; ++channel) {
        if (frame.outData[channel] == 0) {
            continue;
        }
        const auto peaks = boards.measurement.Peaks(channel, frame.tick);
        StoreBig(reply, channel * 8, static_cast<std::uint32_t>(peaks[0]), 4);
        StoreBig(reply, channel * 8 + 4, static_cast<std::uint32_t>(peaks[1]), 4);
    }
    return CommandOutcome::Data(std::move(reply));
}

// Video sync and divisors act on nothing that can be seen from outside; the exchange log keeps them.
CommandOutcome Accept(const CommandFrame&, UnitBoards&) {
    return {};
}

CommandOutcome ArmAddress(const CommandFrame& frame, UnitBoards& boards) {
    boards.armedAddress = static_cast<std::uint16_t>(ReadBig(frame.outData, 0, 2));
    return {};
}

CommandOutcome ExchangePeripheral(const CommandFrame& frame, UnitBoards& boards) {
    BusExchange exchange = boards.peripherals.Exchange(frame.outData, frame.Code(), frame.tick);
    boards.measurement.SetPath(boards.peripherals.Path(), frame.tick);
    return CommandOutcome::Data(std::move(exchange.block), exchange.tookMs);
}

CommandOutcome SetGenerator(const CommandFrame& frame, UnitBoards& boards) {
    ApplyGeneratorRegisters(frame.outData, boards.analogue, frame.tick);
    boards.measurement.SetStimuli(DecodeStimuli(frame.outData), frame.tick);
    return {};
}

CommandOutcome SetAutoRange(const CommandFrame& frame, UnitBoards& boards) {
    for (std::size_t i = 0; i < 4; ++i) {
        boards.analogue.Write(static_cast<char>(kFirstRegister + static_cast<int>(i)),
                              frame.outData[kAutoRangeRegisters + i], frame.tick,
                              WriteSource::AutoRangeRecord);
    }
    return {};
}

struct GeneralCommand {
    std::uint8_t id;
    std::size_t outBytes;
    std::size_t inBytes;
    CommandOutcome (*execute)(const CommandFrame& frame, UnitBoards& boards);
};

constexpr GeneralCommand kGeneralCommands[] = {
    {2, 2, 0, SetRelay},
    {5, 2, kPeakBytes, ReadPeaks},
    {6, 20, 0, Accept},
    {7, 10, 0, Accept},
    {8, 2, 0, ArmAddress},
    {12, kPeripheralBlockBytes, kPeripheralBlockBytes, ExchangePeripheral},
    {13, kGeneratorRecordBytes, 0, SetGenerator},
    {14, 20, 0, SetAutoRange},
};

} // namespace

void KeepCommandBuffer(const CommandFrame& frame, UnitBoards& boards) {
    const std::size_t kept = std::min(frame.outData.size(), kCommandBufferBytes);
    boards.micro.Write('X', kCommandBuffer, ByteView(frame.outData).first(kept));
}

CommandOutcome ExecuteGeneral(const CommandFrame& frame, UnitBoards& boards) {
    for (const GeneralCommand& command : kGeneralCommands) {
        if (command.id != frame.GetByte(Field::Selector)) {
            continue;
        }
        if (frame.outLength != command.outBytes || frame.inLength != command.inBytes) {
            return CommandOutcome::Refused(UnitError::GeneralCommandLength);
        }
        return command.execute(frame, boards);
    }
    return CommandOutcome::Refused(UnitError::UnknownGeneralCommand);
}

} // namespace kalvio::simulator
