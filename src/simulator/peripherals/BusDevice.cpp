#include "simulator/peripherals/BusDevice.h"

#include "simulator/peripherals/BusFrame.h"

#include <cstdio>
#include <utility>

namespace kalvio::simulator {

std::string AboutCommand(std::uint8_t command, const std::string& what) {
    char code[8];
    std::snprintf(code, sizeof code, "0x%02X: ", command);
    return code + what;
}

BusDevice::BusDevice(std::uint8_t address, DeviceIdentity identity)
    : m_address(address), m_identity(identity) {}

PeripheralReply BusDevice::Answer(ByteView frame, std::uint32_t tick) {
    const std::scoped_lock guard(m_lock);
    if (!HasPower(tick) || !IsFor(frame, m_address)) {
        return {};
    }
    if (std::string fault = FrameFault(frame); !fault.empty()) {
        Refuse(std::move(fault));
        return {};
    }
    const std::optional<DeviceAnswer> answer = Carry(frame, tick);
    if (!answer) {
        return {};
    }
    ++m_obeyed;
    if (!WantsAnswer(frame)) {
        return {};
    }
    return {MakeFrame(m_address, answer->command.value_or(frame[3]), answer->data), m_delayMs};
}

std::optional<DeviceAnswer> BusDevice::Carry(ByteView frame, std::uint32_t tick) {
    const std::uint8_t command = frame[3];
    const ByteView data = FrameData(frame);
    if (command == kCommandReset) {
        return Reset(data, tick);
    }
    if (frame[1] == kBroadcastAddress) {
        return Refuse(AboutCommand(command, "not for all"));
    }
    if (command == kCommandStatus) {
        return data.empty() ? Status() : Refuse(AboutCommand(command, "wrong number of data bytes"));
    }
    if (!m_on) {
        return Refuse(AboutCommand(command, "in standby"));
    }
    return Obey(command, data, tick);
}

std::optional<DeviceAnswer> BusDevice::Reset(ByteView data, std::uint32_t tick) {
    if (data.size() != 1 || data[0] > 1) {
        return Refuse(AboutCommand(kCommandReset, "neither on nor standby"));
    }
    PowerUp(tick);
    m_on = data[0] == 1;
    return Status();
}

DeviceAnswer BusDevice::Status() const {
    const auto version = static_cast<std::uint8_t>(m_identity.firmware << 4 | m_identity.hardware);
    const auto flags = static_cast<std::uint8_t>(StatusFlags() | (m_on ? 1 : 0));
    return {{m_identity.classType, version, flags}, {}};
}

std::optional<DeviceAnswer> BusDevice::Refuse(std::string why) {
    m_faults.Add(std::move(why));
    return std::nullopt;
}

bool BusDevice::IsOn() const {
    const std::scoped_lock guard(m_lock);
    return m_on;
}

std::vector<std::string> BusDevice::Faults() const {
    const std::scoped_lock guard(m_lock);
    return m_faults.Copy();
}

std::uint32_t BusDevice::FramesObeyed() const {
    const std::scoped_lock guard(m_lock);
    return m_obeyed;
}

void BusDevice::SetAnswerDelay(std::uint32_t milliseconds) {
    const std::scoped_lock guard(m_lock);
    m_delayMs = milliseconds;
}

} // namespace kalvio::simulator
