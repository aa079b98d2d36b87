#pragma once

// What all peripherals have in common: they check each frame for themselves, tell their status, and can be
// reset or sent to standby.

#include "simulator/Log.h"
#include "simulator/Peripheral.h"

#include <mutex>
#include <optional>
#include <string>

namespace kalvio::simulator {

// What a device says of itself. Versions count from 0, shown to users as the letters A to P.
struct DeviceIdentity {
    std::uint8_t classType = 0;
    std::uint8_t hardware = 0;
    std::uint8_t firmware = 0;
};

// Data of an answer, with the frame's own command unless another is given.
struct DeviceAnswer {
    ByteVector data{};
    std::optional<std::uint8_t> command{};
};

// A device obeys only sound frames for its own address, and a reset for all. In standby it knows nothing
// but status and reset. To anything else it does not answer, and says why in Faults.
class BusDevice : public Peripheral {
public:
    PeripheralReply Answer(ByteView frame, std::uint32_t tick) final;
    [[nodiscard]] std::uint8_t Address() const final { return m_address; }

    [[nodiscard]] bool IsOn() const;
    // What reached it and was not obeyed, one sentence each.
    [[nodiscard]] std::vector<std::string> Faults() const;
    [[nodiscard]] std::uint32_t FramesObeyed() const;
    // How late every answer comes, in milliseconds; 0 at first.
    void SetAnswerDelay(std::uint32_t milliseconds);

protected:
    BusDevice(std::uint8_t address, DeviceIdentity identity);

    // All of these are called with the lock held.

    // Carries out a command of the device's own; nothing: it does not answer.
    virtual std::optional<DeviceAnswer> Obey(std::uint8_t command, ByteView data, std::uint32_t tick) = 0;
    // Goes to the state of a device just switched on, which standby shares.
    virtual void PowerUp(std::uint32_t tick) = 0;
    // Bits of the status flags above the on bit.
    [[nodiscard]] virtual std::uint8_t StatusFlags() const { return 0; }
    // Whether it has current at that time.
    virtual bool HasPower(std::uint32_t) { return true; }

    // Notes a fault and gives no answer.
    std::optional<DeviceAnswer> Refuse(std::string why);

    mutable std::mutex m_lock; // guards the whole device, derived classes included
    bool m_on = true;

private:
    std::optional<DeviceAnswer> Carry(ByteView frame, std::uint32_t tick);
    std::optional<DeviceAnswer> Reset(ByteView data, std::uint32_t tick);
    [[nodiscard]] DeviceAnswer Status() const;

    const std::uint8_t m_address;
    const DeviceIdentity m_identity;
    Log<std::string> m_faults;
    std::uint32_t m_obeyed = 0;
    std::uint32_t m_delayMs = 0;
};

// "0x84: " and the rest; for faults that name a command.
std::string AboutCommand(std::uint8_t command, const std::string& what);

} // namespace kalvio::simulator
