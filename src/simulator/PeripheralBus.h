#pragma once

// The peripheral bus as the unit drives it: a frame goes out, an answer is waited for and checked.

#include "simulator/Bytes.h"
#include "simulator/FaultPlan.h"
#include "simulator/Log.h"

#include <functional>
#include <map>
#include <string>

namespace kalvio::simulator {

inline constexpr std::size_t kPeripheralBlockBytes = 44; // of general command 12, out and in alike

class PeripheralBus {
public:
    using Peripheral = std::function<ByteVector(ByteView frame)>;

    PeripheralBus(FaultPlan& faults, Log<std::string>& protocolErrors);

    // An empty peripheral takes the place off the bus.
    void Attach(std::uint8_t address, Peripheral peripheral);
    [[nodiscard]] std::uint32_t Attempts(std::uint8_t address) const;

    // One exchange: the block with the frame in, the block with status and answer out.
    ByteVector Exchange(ByteView block, std::uint32_t command);

private:
    [[nodiscard]] ByteVector Deliver(ByteView frame) const;
    ByteVector Spoil(ByteVector answer, std::uint32_t command);

    FaultPlan& m_faults;
    Log<std::string>& m_protocolErrors;
    std::map<std::uint8_t, Peripheral> m_peripherals;
    std::map<std::uint8_t, std::uint32_t> m_attempts;
};

} // namespace kalvio::simulator
