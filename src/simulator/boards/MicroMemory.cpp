#include "simulator/boards/MicroMemory.h"

#include <algorithm>

namespace kalvio::simulator {

namespace {

struct ControlRegister {
    std::uint16_t address; // in 'S'
    std::uint16_t shadow;  // in 'X'
};

constexpr ControlRegister kControlRegisters[] = {
    {0x8000, 0x7AFC}, {0x8080, 0x7AFD}, {0x8800, 0x7AFE}, {0x8880, 0x7AFF}};

} // namespace

MicroMemory::MicroMemory()
    : m_spaces{{'X', ByteVector(0x10000)},
               {'S', ByteVector(0x10000)},
               {'C', ByteVector(0x8000)},
               {'I', ByteVector(0x100)}} {}

UnitError MicroMemory::Check(std::uint8_t space, std::uint32_t address, std::size_t length) const {
    const auto found = m_spaces.find(space);
    if (found == m_spaces.end()) {
        return UnitError::UnknownSpace;
    }
    const std::size_t size = found->second.size();
    return address < size && length <= size - address ? UnitError::None : UnitError::AddressRange;
}

UnitError MicroMemory::Read(std::uint8_t space, std::uint32_t address, ByteSpan into) const {
    const UnitError error = Check(space, address, into.size());
    if (error == UnitError::None) {
        std::copy_n(m_spaces.at(space).begin() + address, into.size(), into.begin());
    }
    return error;
}

UnitError MicroMemory::Write(std::uint8_t space, std::uint32_t address, ByteView bytes) {
    const UnitError error = Check(space, address, bytes.size());
    if (error != UnitError::None) {
        return error;
    }
    std::copy(bytes.begin(), bytes.end(), m_spaces[space].begin() + address);
    if (space == 'S') {
        MirrorControlRegisters();
    }
    return error;
}

UnitError MicroMemory::Fill(std::uint8_t space, std::uint32_t address, std::size_t length,
                            std::uint8_t value) {
    return Write(space, address, ByteVector(length, value));
}

UnitError MicroMemory::Modify(std::uint8_t space, std::uint32_t address, std::uint8_t clear,
                              std::uint8_t set) {
    std::uint8_t value = 0;
    const UnitError error = Read(space, address, {&value, 1});
    if (error != UnitError::None) {
        return error;
    }
    value = static_cast<std::uint8_t>((value & ~clear) | set);
    return Write(space, address, {&value, 1});
}

void MicroMemory::MirrorControlRegisters() {
    for (const ControlRegister& control : kControlRegisters) {
        m_spaces['X'][control.shadow] = m_spaces['S'][control.address];
    }
}

} // namespace kalvio::simulator
