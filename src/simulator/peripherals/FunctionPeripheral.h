#pragma once

// A peripheral that is a function: a sound frame for it goes in, its answer comes out.

#include "simulator/UnitPeripherals.h"
#include "simulator/peripherals/BusFrame.h"

namespace kalvio::simulator {

class FunctionPeripheral final : public Peripheral {
public:
    FunctionPeripheral(std::uint8_t address, UnitPeripherals::PeripheralFunction function)
        : m_address(address), m_function(std::move(function)) {}

    PeripheralReply Answer(ByteView frame, std::uint32_t) override {
        if (!IsFor(frame, m_address) || !FrameFault(frame).empty()) {
            return {};
        }
        ByteVector answer = m_function(frame);
        return WantsAnswer(frame) ? PeripheralReply{std::move(answer), 0} : PeripheralReply{};
    }
    [[nodiscard]] std::uint8_t Address() const override { return m_address; }

private:
    std::uint8_t m_address;
    UnitPeripherals::PeripheralFunction m_function;
};

} // namespace kalvio::simulator
