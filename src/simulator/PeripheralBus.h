#pragma once

// The peripheral bus as the unit drives it: a frame goes out to every device, an answer is waited for and
// judged.

#include "simulator/FaultPlan.h"
#include "simulator/Log.h"
#include "simulator/Peripheral.h"

#include <map>
#include <memory>
#include <string>

namespace kalvio::simulator {

inline constexpr std::size_t kPeripheralBlockBytes = 44;         // of general command 12, out and in alike
inline constexpr std::uint32_t kDefaultPeripheralTimeoutMs = 20; // what a time-out of 0 selects

// How an exchange ended: the block with status and answer, and how long it took.
struct BusExchange {
    ByteVector block;
    std::uint32_t tookMs = 0;
};

class PeripheralBus {
public:
    PeripheralBus(FaultPlan& faults, Log<std::string>& protocolErrors);

    void Attach(std::shared_ptr<Peripheral> peripheral);
    void Detach(const Peripheral& peripheral);
    void Vacate(std::uint8_t address);
    [[nodiscard]] std::uint32_t Attempts(std::uint8_t address) const;
    [[nodiscard]] std::uint32_t Collisions() const { return m_collisions; }
    // The way of the signals as all peripherals leave it; of several in the way the one attached last rules.
    [[nodiscard]] SignalPath Path() const;

    // One exchange of the block with the frame in it.
    BusExchange Exchange(ByteView block, std::uint32_t command, std::uint32_t tick);

private:
    struct Heard {
        ByteVector answer;
        std::uint32_t afterMs = 0;
        bool collided = false;
    };

    Heard Send(ByteView frame, std::uint32_t tick, std::uint32_t timeoutMs);
    void Spoil(ByteVector& answer, std::uint32_t command);

    FaultPlan& m_faults;
    Log<std::string>& m_protocolErrors;
    std::vector<std::shared_ptr<Peripheral>> m_peripherals;
    std::map<std::uint8_t, std::uint32_t> m_attempts;
    std::uint32_t m_collisions = 0;
};

} // namespace kalvio::simulator
