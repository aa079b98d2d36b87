#include "simulator/commands/CommandEndpoint.h"

#include "platform/DeviceDriver.h"

#include <algorithm>
#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kStaleByte = 0xEE;
constexpr std::size_t kStaleBytes = 12;

} // namespace

CommandEndpoint::CommandEndpoint(FaultPlan& faults, Carrier carry)
    : m_faults(faults), m_carry(std::move(carry)) {}

void CommandEndpoint::Announce(ByteView data) {
    if (m_phase == Phase::Header) {
        m_lastCommand = AnnouncedCommand(data);
    }
}

Transfer CommandEndpoint::Write(ByteView data, std::uint32_t tick) {
    if (m_phase == Phase::Header) {
        return TakeHeader(data, tick);
    }
    if (m_phase == Phase::OutData) {
        return TakeOutData(data);
    }
    return Transfer::Malformed("write of " + std::to_string(data.size()) + " bytes while " +
                               m_frame.shape->name + " still has output pending");
}

Transfer CommandEndpoint::TakeHeader(ByteView data, std::uint32_t tick) {
    std::string complaint;
    std::optional<CommandFrame> frame = ParseHeader(data, complaint);
    if (!frame) {
        return Transfer::Malformed(std::move(complaint));
    }
    m_frame = std::move(*frame);
    m_frame.tick = tick;
    m_phase = Phase::OutData;
    if (m_frame.outLength == 0) {
        CarryOut();
    }
    return Transfer::Done(data.size());
}

Transfer CommandEndpoint::TakeOutData(ByteView data) {
    const std::size_t due = std::min(kBulkChunkBytes, m_frame.outLength - m_frame.outData.size());
    if (data.size() != due) {
        return Transfer::Malformed(std::string(m_frame.shape->name) + ": chunk of " +
                                   std::to_string(data.size()) + " bytes where " + std::to_string(due) +
                                   " were due");
    }
    m_frame.outData.insert(m_frame.outData.end(), data.begin(), data.end());
    if (m_frame.outData.size() == m_frame.outLength) {
        CarryOut();
    }
    return Transfer::Done(data.size());
}

void CommandEndpoint::CarryOut() {
    m_answer = m_carry(m_frame);
    m_inSent = 0;
    m_staleReads += m_answer.staleReads;
    m_phase = m_answer.silent ? Phase::Header : Phase::Response;
}

Transfer CommandEndpoint::Read(ByteSpan buffer, std::uint32_t timeoutMs) {
    if (m_staleReads > 0) {
        --m_staleReads;
        const std::size_t count = std::min(buffer.size(), kStaleBytes);
        std::fill_n(buffer.begin(), count, kStaleByte);
        return Transfer::Done(count);
    }
    if (m_phase == Phase::Header) {
        return Transfer::Failed(kErrorSemaphoreTimeout);
    }
    if (m_phase == Phase::OutData) {
        return Transfer::Malformed(std::string(m_frame.shape->name) + ": read before all out data had come",
                                   kErrorSemaphoreTimeout);
    }
    const ByteView due = Due();
    // A drain takes whatever is there; any other read knows what it is owed.
    const bool drains = timeoutMs == kDrainTimeoutMs && buffer.size() >= due.size();
    if (buffer.size() != due.size() && !drains) {
        return Transfer::Malformed(std::string(m_frame.shape->name) + ": read of " +
                                   std::to_string(buffer.size()) + " bytes where " +
                                   std::to_string(due.size()) + " were due");
    }
    return Deliver(buffer, due);
}

ByteView CommandEndpoint::Due() const {
    if (m_phase == Phase::Response) {
        return m_answer.response;
    }
    const ByteView rest = ByteView(m_answer.inData).subspan(m_inSent);
    return rest.first(std::min(kBulkChunkBytes, rest.size()));
}

Transfer CommandEndpoint::Deliver(ByteSpan buffer, ByteView due) {
    const bool halved = m_faults.Strike(FaultKind::ShortAnswer, m_frame.Code()).has_value();
    const ByteView sent = due.first(halved ? due.size() / 2 : due.size());
    std::copy(sent.begin(), sent.end(), buffer.begin());
    Transfer transfer = Transfer::Done(sent.size());
    if (m_phase == Phase::Response) {
        transfer.delayMs = m_answer.delayMs;
    }
    Advance(due.size());
    return transfer;
}

void CommandEndpoint::Advance(std::size_t delivered) {
    if (m_phase == Phase::InData) {
        m_inSent += delivered;
    }
    m_phase = m_inSent < m_answer.inData.size() ? Phase::InData : Phase::Header;
}

void CommandEndpoint::Reset() {
    m_phase = Phase::Header;
    m_frame = {};
    m_answer = {};
}

void CommandEndpoint::ResetDevice() {
    Reset();
    m_staleReads = 0;
}

} // namespace kalvio::simulator
