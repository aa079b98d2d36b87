#include "simulator/commands/CommandCarrier.h"

#include "simulator/commands/Firmware.h"
#include "simulator/commands/GeneralCommands.h"

#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::uint32_t kStatusAccepted = 0x0000600D; // anything but the other one
constexpr std::uint32_t kStatusRefused = 0x0000B00B;
constexpr std::uint32_t kWrongEchoBits = 0x80;

} // namespace

Answer CommandCarrier::Carry(const CommandFrame& frame) {
    CommandOutcome outcome = CarryOut(frame);
    Record(frame, outcome);
    FaultPlan& faults = m_boards.faults;
    const std::uint32_t command = frame.Code();
    Answer answer;
    answer.response = MakeResponse(frame, outcome);
    answer.inData = std::move(outcome.inData);
    answer.delayMs = outcome.delayMs;
    answer.silent = faults.Strike(FaultKind::Silence, command).has_value();
    if (const auto stale = faults.Strike(FaultKind::StaleInput, command)) {
        answer.staleReads = stale->value;
    }
    if (const auto slow = faults.Strike(FaultKind::SlowAnswer, command)) {
        answer.delayMs += slow->value;
    }
    return answer;
}

CommandOutcome CommandCarrier::CarryOut(const CommandFrame& frame) {
    if (frame.shape->code == CommandCode::General) {
        KeepCommandBuffer(frame, m_boards);
    }
    if (const auto refusal = m_boards.faults.Strike(FaultKind::Refuse, frame.Code())) {
        return CommandOutcome::Refused(static_cast<UnitError>(refusal->value));
    }
    return ExecuteCommand(frame, m_boards);
}

ByteVector CommandCarrier::MakeResponse(const CommandFrame& frame, const CommandOutcome& outcome) {
    const bool wrongEcho = m_boards.faults.Strike(FaultKind::WrongEcho, frame.Code()).has_value();
    const bool refused = outcome.error != UnitError::None;
    ByteVector response(frame.shape->responseBytes);
    StoreBig(response, 0, refused ? kStatusRefused : kStatusAccepted, 4);
    StoreBig(response, 4, wrongEcho ? frame.Code() ^ kWrongEchoBits : frame.Code(), 4);
    StoreBig(response, 8, static_cast<std::uint32_t>(outcome.error), 2);
    if (response.size() > 12) {
        StoreBig(response, 12, outcome.value, 4);
    }
    return response;
}

void CommandCarrier::Record(const CommandFrame& frame, const CommandOutcome& outcome) {
    m_exchanges.Add({frame.Code(), frame.parameters, frame.outData, frame.inLength,
                     outcome.error != UnitError::None, static_cast<std::uint16_t>(outcome.error),
                     frame.tick});
}

} // namespace kalvio::simulator
