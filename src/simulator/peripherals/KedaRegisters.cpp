#include "simulator/peripherals/KedaRegisters.h"

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kAnalyserThrough = 0x02;
constexpr std::uint8_t kGeneratorThrough = 0x04;

// How the slots lie on the four wires.
struct Wiring {
    std::size_t slotsPerWire;
    std::size_t wires;
    std::size_t stride; // from wire to wire in an analyser routing byte
};

constexpr Wiring kWirings[] = {{2, 4, 4}, {4, 4, 4}, {8, 2, 8}, {16, 1, 16}};

const Wiring& WiringOf(std::uint8_t format) {
    return kWirings[format & 0x03];
}

bool IsSet(const KedaRegisters& registers, std::size_t pair, std::size_t slot) {
    const std::uint8_t byte = registers[pair + (slot < 8 ? 1 : 0)]; // slots 8 to 15 stand first
    return (byte >> (slot % 8) & 1) != 0;
}

SlotSource SourceOf(const KedaRegisters& registers, std::size_t slot) {
    const Wiring& wiring = WiringOf(registers[kKedaGenFormat]);
    if (slot >= wiring.slotsPerWire * wiring.wires || !IsSet(registers, kKedaGenRouting, slot)) {
        return SlotSource::Silence;
    }
    return IsSet(registers, kKedaGenRouting + 2, slot) ? SlotSource::GeneratorB : SlotSource::GeneratorA;
}

std::uint8_t HeardSlot(const KedaRegisters& registers, std::size_t channel) {
    const Wiring& wiring = WiringOf(registers[kKedaAnaFormat]);
    const std::size_t place = registers[kKedaAnaRouting + channel];
    const std::size_t wire = place / wiring.stride;
    const std::size_t slot = place % wiring.stride;
    if (wire >= wiring.wires || slot >= wiring.slotsPerWire) {
        return kNoSlot;
    }
    return static_cast<std::uint8_t>(wire * wiring.slotsPerWire + slot);
}

} // namespace

void RouteThrough(const KedaRegisters& registers, SignalPath& path) {
    if ((registers[kKedaRelays] & kGeneratorThrough) != 0) {
        for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
            path.driven[slot] = SourceOf(registers, slot);
        }
    }
    if ((registers[kKedaRelays] & kAnalyserThrough) != 0) {
        path.heard = {HeardSlot(registers, 0), HeardSlot(registers, 1)};
    }
}

} // namespace kalvio::simulator
