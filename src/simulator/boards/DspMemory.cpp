#include "simulator/boards/DspMemory.h"

namespace kalvio::simulator {

namespace {

std::size_t Index(std::uint8_t space) {
    return space == 'X' ? 0 : 1;
}

} // namespace

DspMemory::DspMemory()
    : m_words{std::vector<std::uint32_t>(kDspWords), std::vector<std::uint32_t>(kDspWords)} {}

UnitError DspMemory::Check(std::uint8_t space, std::uint32_t address, std::size_t words) {
    if (space != 'X' && space != 'Y') {
        return UnitError::UnknownSpace;
    }
    return address < kDspWords && words <= kDspWords - address ? UnitError::None : UnitError::AddressRange;
}

std::uint32_t DspMemory::Get(std::uint8_t space, std::uint32_t address) const {
    return m_words[Index(space)][address];
}

void DspMemory::Put(std::uint8_t space, std::uint32_t address, std::uint32_t value) {
    m_words[Index(space)][address] = value & kDspWordMask;
}

UnitError DspMemory::ReadBlock(std::uint8_t space, std::uint32_t address, std::size_t bytes,
                               ByteVector& into) const {
    const std::size_t words = bytes / kDspWordBytes;
    const UnitError error = Check(space, address, words);
    if (error != UnitError::None) {
        return error;
    }
    into.resize(words * kDspWordBytes);
    for (std::uint32_t i = 0; i < words; ++i) {
        StoreBig(into, i * kDspWordBytes, Get(space, address + i), kDspWordBytes);
    }
    return error;
}

UnitError DspMemory::WriteBlock(std::uint8_t space, std::uint32_t address, ByteView bytes) {
    const std::size_t words = bytes.size() / kDspWordBytes;
    const UnitError error = Check(space, address, words);
    if (error != UnitError::None) {
        return error;
    }
    for (std::uint32_t i = 0; i < words; ++i) {
        Put(space, address + i, ReadBig(bytes, i * kDspWordBytes, kDspWordBytes));
    }
    return error;
}

UnitError DspMemory::Fill(std::uint8_t space, std::uint32_t address, std::uint32_t words,
                          std::uint32_t value) {
    const UnitError error = Check(space, address, words);
    for (std::uint32_t i = 0; error == UnitError::None && i < words; ++i) {
        Put(space, address + i, value);
    }
    return error;
}

} // namespace kalvio::simulator
